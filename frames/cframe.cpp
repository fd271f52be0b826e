#include "foundation/checked.h"
#include "frames/cframe.h"

#include "foundation/metrics.h"
#include "frames/cframe_layout.h"
#include "runtime/property_values.h"

namespace tarn {

const ControlClass cframe::Class = {
    L"cframe",
    L"Tarn Controls 3-D frame",
    &CLSID_cframe,
    &IID_Icframe,
    &DIID_IcframeEvents,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_NOUIACTIVATE,
    &cframe::Create,
    true, // draws itself, touches no file and no other window
};

namespace {
constexpr wchar_t kDefaultCaption[] = L"VBAR";

// The geometry the layout works on, read from and written back to the line constituents.
template <class F> void with_lines(Line *lines[8], Label &caption, F &&f)
{
    FrameGeometry g{};
    LineTwips *slots[8] = {&g.left_highlight, &g.left_light_shadow, &g.top_highlight, &g.top_light_shadow,
                           &g.right_dark_shadow, &g.right_shadow, &g.bottom_dark_shadow, &g.bottom_shadow};
    for (int i = 0; i < 8; ++i) *slots[i] = {lines[i]->X1, lines[i]->Y1, lines[i]->X2, lines[i]->Y2};
    g.caption_left = caption.Left;
    g.caption_top = caption.Top;
    g.caption_width = caption.Width;
    g.caption_height = caption.Height;
    f(g);
    for (int i = 0; i < 8; ++i) {
        lines[i]->X1 = slots[i]->X1;
        lines[i]->Y1 = slots[i]->Y1;
        lines[i]->X2 = slots[i]->X2;
        lines[i]->Y2 = slots[i]->Y2;
    }
    caption.Left = g.caption_left;
    caption.Top = g.caption_top;
    caption.Width = g.caption_width;
    caption.Height = g.caption_height;
}
} // namespace

cframe::cframe()
    : lneLEFTHIGHLIGHT(L"lneLEFTHIGHLIGHT", 0, 0, 0, 1065, syscolor::Highlight3D),
      lneLEFTLIGHTSHADOW(L"lneLEFTLIGHTSHADOW", 15, 15, 15, 1065, syscolor::Light3D),
      lneTOPHIGHLIGHT(L"lneTOPHIGHLIGHT", 0, 0, 3510, 0, syscolor::Highlight3D),
      lneTOPLIGHTSHADOW(L"lneTOPLIGHTSHADOW", 0, 15, 3495, 15, syscolor::Light3D),
      lneRIGHTDARKSHADOW(L"lneRIGHTDARKSHADOW", 2595, 0, 2595, 240, syscolor::DarkShadow3D),
      lneRIGHTSHADOW(L"lneRIGHTSHADOW", 2580, 15, 2580, 240, syscolor::ButtonShadow),
      lneBOTTOMDARKSHADOW(L"lneBOTTOMDARKSHADOW", 0, 255, 3510, 255, syscolor::DarkShadow3D),
      lneBOTTOMSHADOW(L"lneBOTTOMSHADOW", 15, 240, 3510, 240, syscolor::ButtonShadow),
      lblDESC(L"lblDESC", 240, 15, 330, 195)
{
    for (Line *l : {&lneLEFTHIGHLIGHT, &lneLEFTLIGHTSHADOW, &lneTOPHIGHLIGHT, &lneTOPLIGHTSHADOW, &lneRIGHTDARKSHADOW,
                    &lneRIGHTSHADOW, &lneBOTTOMDARKSHADOW, &lneBOTTOMSHADOW})
        add_constituent(*l);
    add_constituent(lblDESC);
    RaiseMouseEventsOf(lblDESC);
}

void cframe::Initialize()
{
    // The design values a new frame shows until its first restore or property write.
    SetDesignSize(3000, 435);
    SetBackColor(syscolor::ButtonFace);
    SetForeColor(syscolor::WindowText);
    lblDESC.Caption = kDefaultCaption;
    lblDESC.Font = DesignFont();
}

// ---------------------------------------------------------------- persistence

void cframe::ReadProperties(PropertyBag &bag)
{
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { lblDESC.Font = bag.read_font(L"FONT", ambient.get()); });
    step([&] { SetForeColor(bag.read_color(L"FORECOLOR", syscolor::WindowText)); });
    step([&] { SetBackColor(bag.read_color(L"BACKCOLOR", syscolor::ButtonFace)); });
    step([&] { lneLEFTHIGHLIGHT.BorderColor = bag.read_color(L"LEFTHIGHLIGHTCOLOR", syscolor::Highlight3D); });
    step([&] { lneLEFTLIGHTSHADOW.BorderColor = bag.read_color(L"LEFTLIGHTSHADOWCOLOR", syscolor::Light3D); });
    step([&] { lneTOPHIGHLIGHT.BorderColor = bag.read_color(L"TOPHIGHLIGHTCOLOR", syscolor::Highlight3D); });
    step([&] { lneTOPLIGHTSHADOW.BorderColor = bag.read_color(L"TOPLIGHTSHADOWCOLOR", syscolor::Light3D); });
    step([&] { lneRIGHTSHADOW.BorderColor = bag.read_color(L"RIGHTSHADOWCOLOR", syscolor::ButtonShadow); });
    step([&] { lneRIGHTDARKSHADOW.BorderColor = bag.read_color(L"RIGHTDARKSHADOWCOLOR", syscolor::DarkShadow3D); });
    step([&] { lneBOTTOMSHADOW.BorderColor = bag.read_color(L"BOTTOMSHADOWCOLOR", syscolor::ButtonShadow); });
    // Restoring re-runs the visibility rule for the two outer lines only; the right inner line
    // keeps its design visibility.
    step([&] { apply_visibility(lneLEFTHIGHLIGHT); });
    step([&] { apply_visibility(lneRIGHTDARKSHADOW); });
    step([&] { lneBOTTOMDARKSHADOW.BorderColor = bag.read_color(L"BOTTOMDARKSHADOWCOLOR", syscolor::DarkShadow3D); });
    step([&] { lblDESC.Alignment = bag.read_int(L"ALIGNMENT", 0); });
    step([&] { lblDESC.Caption = bag.read_string(L"CAPTION", kDefaultCaption); });
}

void cframe::WriteProperties(PropertyBag &bag)
{
    step([&] { bag.write_int(L"ALIGNMENT", lblDESC.Alignment, 0); });
    step([&] { bag.write_string(L"CAPTION", lblDESC.Caption, std::wstring(kDefaultCaption)); });
    // Saved against button face but restored against window text: a fore colour equal to
    // button face is not stored and comes back as window text.
    step([&] { bag.write_color(L"FORECOLOR", ForeColor(), syscolor::ButtonFace); });
    step([&] { bag.write_color(L"BACKCOLOR", BackColor(), syscolor::ButtonFace); });
    step([&] { bag.write_color(L"LEFTHIGHLIGHTCOLOR", lneLEFTHIGHLIGHT.BorderColor, syscolor::Highlight3D); });
    step([&] { bag.write_color(L"LEFTLIGHTSHADOWCOLOR", lneLEFTLIGHTSHADOW.BorderColor, syscolor::Light3D); });
    step([&] { bag.write_color(L"TOPHIGHLIGHTCOLOR", lneTOPHIGHLIGHT.BorderColor, syscolor::Highlight3D); });
    step([&] { bag.write_color(L"TOPLIGHTSHADOWCOLOR", lneTOPLIGHTSHADOW.BorderColor, syscolor::Light3D); });
    step([&] { bag.write_color(L"RIGHTSHADOWCOLOR", lneRIGHTSHADOW.BorderColor, syscolor::ButtonShadow); });
    step([&] { bag.write_color(L"RIGHTDARKSHADOWCOLOR", lneRIGHTDARKSHADOW.BorderColor, syscolor::DarkShadow3D); });
    step([&] { bag.write_color(L"BOTTOMSHADOWCOLOR", lneBOTTOMSHADOW.BorderColor, syscolor::ButtonShadow); });
    step([&] { bag.write_color(L"BOTTOMDARKSHADOWCOLOR", lneBOTTOMDARKSHADOW.BorderColor, syscolor::DarkShadow3D); });
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { bag.write_font(L"FONT", lblDESC.Font.get(), ambient.get()); });
}

// ---------------------------------------------------------------- layout and events

void cframe::Resize()
{
    // The metric word is read before ScaledMetric refreshes the record, so the thread's very
    // first layout sees 0 and an inset of -315.
    int32_t word = static_cast<int32_t>(ThreadMetrics().nonclient.cbSize);
    int32_t T = FrameInset(ScaledMetric(word), TwipsPerPixelX());
    Line *lines[8] = {&lneLEFTHIGHLIGHT, &lneLEFTLIGHTSHADOW, &lneTOPHIGHLIGHT, &lneTOPLIGHTSHADOW,
                      &lneRIGHTDARKSHADOW, &lneRIGHTSHADOW, &lneBOTTOMDARKSHADOW, &lneBOTTOMSHADOW};
    with_lines(lines, lblDESC, [&](FrameGeometry &g) {
        LayoutFrame(g, ScaleWidth(), ScaleHeight(), T, lneLEFTHIGHLIGHT.BorderColor != BackColor(),
                    lneRIGHTDARKSHADOW.BorderColor != BackColor());
    });
}

void cframe::Click() { raise(events::Click); }
void cframe::DblClick() { raise(events::DblClick); }
void cframe::MouseDown(int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseDown, b, s, x, y); }
void cframe::MouseMove(int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseMove, b, s, x, y); }
void cframe::MouseUp(int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseUp, b, s, x, y); }

// ---------------------------------------------------------------- properties

void cframe::apply_visibility(Line &line) { line.Visible = line.BorderColor != BackColor(); }

HRESULT cframe::put_color(Line &line, OLE_COLOR value, const wchar_t *key, bool visibility_rule)
{
    return put_value(key, [&] {
        line.BorderColor = value;
        if (visibility_rule) apply_visibility(line);
        Invalidate();
    });
}

STDMETHODIMP cframe::get_Alignment(Alignments *v)
{
    return get_value(v, [&] { return static_cast<Alignments>(lblDESC.Alignment); });
}
STDMETHODIMP cframe::put_Alignment(Alignments v)
{
    if (!fits16(v)) return S_OK; // kept in 16 bits: a wider value is skipped
    return put_value(L"ALIGNMENT", [&] {
        lblDESC.Alignment = static_cast<int16_t>(static_cast<int32_t>(v));
        Invalidate();
    });
}

STDMETHODIMP cframe::get_BACKCOLOR(OLE_COLOR *v) { return get_value(v, [&] { return BackColor(); }); }
STDMETHODIMP cframe::put_BACKCOLOR(OLE_COLOR v)
{
    // The visibility rule is not run again here: lines keep their visibility.
    return put_value(L"BACKCOLOR", [&] { SetBackColor(v); });
}

STDMETHODIMP cframe::get_BottomDarkShadowColor(OLE_COLOR *v) { return get_value(v, [&] { return lneBOTTOMDARKSHADOW.BorderColor; }); }
STDMETHODIMP cframe::put_BottomDarkShadowColor(OLE_COLOR v) { return put_color(lneBOTTOMDARKSHADOW, v, L"BOTTOMDARKSHADOWCOLOR", false); }
STDMETHODIMP cframe::get_BottomShadowColor(OLE_COLOR *v) { return get_value(v, [&] { return lneBOTTOMSHADOW.BorderColor; }); }
STDMETHODIMP cframe::put_BottomShadowColor(OLE_COLOR v) { return put_color(lneBOTTOMSHADOW, v, L"BOTTOMSHADOWCOLOR", false); }

STDMETHODIMP cframe::get_CAPTION(BSTR *v) { return get_string(v, [&] { return lblDESC.Caption; }); }
STDMETHODIMP cframe::put_CAPTION(BSTR v)
{
    return put_value(L"CAPTION", [&] {
        lblDESC.Caption = from_bstr(v);
        Invalidate();
    });
}

STDMETHODIMP cframe::get_Font(IFontDisp **v) { return get_object(v, [&] { return lblDESC.Font; }); }
STDMETHODIMP cframe::put_Font(IFontDisp *v) { return set_font(v); }
STDMETHODIMP cframe::putref_Font(IFontDisp *v) { return set_font(v); }
HRESULT cframe::set_font(IFontDisp *v)
{
    return put_value(L"FONT", [&] {
        lblDESC.Font = CopyOfFont(v);
        Invalidate();
    });
}

STDMETHODIMP cframe::get_ForeColor(OLE_COLOR *v) { return get_value(v, [&] { return ForeColor(); }); }
STDMETHODIMP cframe::put_ForeColor(OLE_COLOR v)
{
    return put_value(L"FORECOLOR", [&] { SetForeColor(v); });
}

STDMETHODIMP cframe::get_LeftHighlightColor(OLE_COLOR *v) { return get_value(v, [&] { return lneLEFTHIGHLIGHT.BorderColor; }); }
STDMETHODIMP cframe::put_LeftHighlightColor(OLE_COLOR v) { return put_color(lneLEFTHIGHLIGHT, v, L"LEFTHIGHLIGHTCOLOR", true); }
STDMETHODIMP cframe::get_LeftLightShadowColor(OLE_COLOR *v) { return get_value(v, [&] { return lneLEFTLIGHTSHADOW.BorderColor; }); }
STDMETHODIMP cframe::put_LeftLightShadowColor(OLE_COLOR v) { return put_color(lneLEFTLIGHTSHADOW, v, L"LEFTLIGHTSHADOWCOLOR", false); }
STDMETHODIMP cframe::get_RightDarkShadowColor(OLE_COLOR *v) { return get_value(v, [&] { return lneRIGHTDARKSHADOW.BorderColor; }); }
STDMETHODIMP cframe::put_RightDarkShadowColor(OLE_COLOR v) { return put_color(lneRIGHTDARKSHADOW, v, L"RIGHTDARKSHADOWCOLOR", true); }
STDMETHODIMP cframe::get_RightShadowColor(OLE_COLOR *v) { return get_value(v, [&] { return lneRIGHTSHADOW.BorderColor; }); }
STDMETHODIMP cframe::put_RightShadowColor(OLE_COLOR v) { return put_color(lneRIGHTSHADOW, v, L"RIGHTSHADOWCOLOR", true); }
STDMETHODIMP cframe::get_TopHighlightColor(OLE_COLOR *v) { return get_value(v, [&] { return lneTOPHIGHLIGHT.BorderColor; }); }
STDMETHODIMP cframe::put_TopHighlightColor(OLE_COLOR v) { return put_color(lneTOPHIGHLIGHT, v, L"TOPHIGHLIGHTCOLOR", false); }
STDMETHODIMP cframe::get_TopLightShadowColor(OLE_COLOR *v) { return get_value(v, [&] { return lneTOPLIGHTSHADOW.BorderColor; }); }
STDMETHODIMP cframe::put_TopLightShadowColor(OLE_COLOR v) { return put_color(lneTOPLIGHTSHADOW, v, L"TOPLIGHTSHADOWCOLOR", false); }

std::wstring cframe::Caption()
{
    // A caption drawn without mnemonics reads its ampersands as they are.
    if (lblDESC.UseMnemonic) return lblDESC.Caption;
    std::wstring doubled;
    for (wchar_t c : lblDESC.Caption) doubled += c == L'&' ? L"&&" : std::wstring(1, c);
    return doubled;
}

} // namespace tarn
