#include "frames/lnev.h"

#include <stdexcept>

#include "foundation/color_translate.h"

namespace tarn {

const ControlClass lnev::Class = {
    L"lnev",
    L"Tarn Controls vertical divider line",
    &CLSID_lnev,
    &IID_Ilnev,
    nullptr,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_NOUIACTIVATE,
    &lnev::Create,
    true, // draws itself, touches no file and no other window
};

namespace {
constexpr float kWidth = 30;        // twips, whatever the host asks for
constexpr float kLineOffset = 15;   // the light line, one pixel right of the dark one at 96 DPI
} // namespace

lnev::lnev()
    : Picture1(L"Picture1", 0, 0, 30, 1005), lneHIGHLIGHT(L"lneHIGHLIGHT", 15, 0, 15, 1005, syscolor::Highlight3D),
      lneSHADOW(L"lneSHADOW", 0, 0, 0, 1005, syscolor::ButtonShadow)
{
    add_constituent(Picture1);
    add_constituent(lneHIGHLIGHT);
    add_constituent(lneSHADOW);
}

void lnev::Initialize()
{
    SetDesignSize(kWidth, 1005);
    step([&] { Picture1.SetVisible(false); });
    Resize();
}

void lnev::InitProperties() { Resize(); }
void lnev::ReadProperties(PropertyBag &) { Resize(); }

void lnev::Resize()
{
    step([&] {
        lneSHADOW.X1 = 0;
        lneSHADOW.X2 = 0;
        lneSHADOW.Y1 = 0;
        lneSHADOW.Y2 = ScaleHeight();
        lneHIGHLIGHT.X1 = lneSHADOW.X1 + kLineOffset;
        lneHIGHLIGHT.X2 = lneSHADOW.X2 + kLineOffset;
    });
    step([&] { SetSizeTwips(kWidth, ScaleHeight()); });
    step([&] {
        lneHIGHLIGHT.Y1 = 0;
        lneHIGHLIGHT.Y2 = ScaleHeight(); // read again after the width changed
    });
    ColourDividerLines(lneSHADOW, lneHIGHLIGHT);
}

STDMETHODIMP lnev::get_BACKCOLOR(OLE_COLOR *v) { return get_value(v, [&] { return BackColor(); }); }

STDMETHODIMP lnev::put_BACKCOLOR(OLE_COLOR v)
{
    // The picture box's fore colour follows the announcement; nothing of it is saved.
    step([&] {
        if (TranslateColor(v) == kInvalidColor) throw std::invalid_argument("not a colour");
        SetBackColor(v);
    });
    step([&] { PropertyChanged(L"BACKCOLOR"); });
    step([&] { Picture1.SetForeColor(v); });
    return S_OK;
}

STDMETHODIMP lnev::ColBACK(OLE_COLOR color)
{
    step([&] { Picture1.SetBackColor(color); });
    return S_OK;
}

} // namespace tarn
