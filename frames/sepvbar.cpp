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
};

// No width: the frame collapses to its two-pixel upright line, 45 twips from the left; its top
// and bottom lie far outside any bar.
sepvbar::sepvbar()
    : framMAIN(L"framMAIN", 45, -30000, 0, 60000), described_(ROLE_SYSTEM_SEPARATOR, nullptr)
{
    add_constituent(framMAIN);
}

void sepvbar::Initialize()
{
    SetDesignSize(120, 1005);
    framMAIN.Themed = ThemedLook();
}

LRESULT sepvbar::OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled)
{
    handled = false;
    if (msg == WM_GETOBJECT) return described_.answer(hWnd(), wp, lp, handled);
    return 0;
}

} // namespace tarn
