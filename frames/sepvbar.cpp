#include "frames/sepvbar.h"

#include "foundation/themes.h"

namespace tarn {

const ControlClass sepvbar::Class = {
    L"sepvbar",
    L"Tarn Controls vertical separator bar",
    &CLSID_sepvbar,
    &IID_Isepvbar,
    nullptr,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_NOUIACTIVATE,
    &sepvbar::Create,
    true, // draws itself, touches no file and no other window
};

// No width: the frame collapses to its two-pixel upright line, 45 twips from the left; its top
// and bottom lie far outside any bar.
sepvbar::sepvbar() : framMAIN(L"framMAIN", 45, -30000, 0, 60000)
{
    add_constituent(framMAIN);
}

void sepvbar::Initialize()
{
    SetDesignSize(120, 1005);
    framMAIN.Themed = ThemedLook();
}

} // namespace tarn
