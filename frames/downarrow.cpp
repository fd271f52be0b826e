#include "frames/downarrow.h"

#include "foundation/themes.h"

namespace tarn {

const ControlClass downarrow::Class = {
    L"downarrow",
    L"Tarn Controls drop-down arrow",
    &CLSID_downarrow,
    &IID_Idownarrow,
    nullptr,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_NOUIACTIVATE,
    &downarrow::Create,
    true, // draws itself, touches no file and no other window
};

namespace {
constexpr float kWidth = 185, kHeight = 210; // twips, whatever the host asks for
constexpr float kRow = 15;                    // one design pixel: each line is that thick
constexpr double kFlatFrom = 4.99;            // versions from here on get the flat surface
} // namespace

downarrow::downarrow()
    : lneARROW1(L"lneARROW1", 0, 45, 180, 45), lneARROW2(L"lneARROW2", 15, 60, 165, 60),
      lneARROW3(L"lneARROW3", 30, 75, 150, 75), lneARROW4(L"lneARROW4", 45, 90, 135, 90),
      lneARROW5(L"lneARROW5", 60, 105, 120, 105), lneARROW6(L"lneARROW6", 75, 120, 105, 120)
{
    for (Line *l : {&lneARROW1, &lneARROW2, &lneARROW3, &lneARROW4, &lneARROW5, &lneARROW6}) {
        l->Thickness = kRow;
        add_constituent(*l);
    }
    lneARROW1.Visible = false;
    lneARROW2.Visible = false;
}

void downarrow::Initialize()
{
    double version = read_step<double>([] { return WindowsVersionNumber(); });
    SetAppearance(version >= kFlatFrom ? 0 : 1);
    force_size();
}

void downarrow::force_size()
{
    step([&] { SetSizeTwips(kWidth, kHeight); });
}

STDMETHODIMP downarrow::get_Appearance(short *v) { return get_value(v, [&] { return Appearance(); }); }

} // namespace tarn
