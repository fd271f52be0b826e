#include "frames/pnl.h"

#include <cmath>
#include <stdexcept>

#include "foundation/clsPICGRDNT.h"
#include "foundation/color_translate.h"
#include "foundation/font_object.h"
#include "foundation/gradient.h"
#include "foundation/handles.h"

namespace tarn {

const ControlClass pnl::Class = {
    L"pnl",
    L"Tarn Controls panel",
    &CLSID_pnl,
    &IID_Ipnl,
    &DIID_IpnlEvents,
    OLEMISC_SIMPLEFRAME | OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT |
        OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_SETCLIENTSITEFIRST | OLEMISC_NOUIACTIVATE,
    &pnl::Create,
};

namespace {
constexpr float kCaptionMargin = 60; // twips between the border and the caption
const clsPICGRDNT kGradient;          // the gradient's defaults

// The border's width in pixels: 3-D borders take two, a single line one.
int border_px(int16_t style)
{
    switch (style) {
    case panelBorderNone: return 0;
    case panelBorderSingle: return 1;
    default: return 2;
    }
}

Rgb drawn(OleColor c, Rgb fallback)
{
    Rgb rgb = TranslateColor(c);
    return rgb == kInvalidColor ? fallback : rgb;
}

void check_colour(OLE_COLOR v)
{
    if (TranslateColor(v) == kInvalidColor) throw std::invalid_argument("not a colour");
}
} // namespace

pnl::pnl()
    : gradient1_(kGradient.Color1), gradient2_(kGradient.Color2), angle_(kGradient.Angle),
      lblCAPTION(L"lblCAPTION", 0, 0, 0, 0), described_(ROLE_SYSTEM_GROUPING, [this] { return lblCAPTION.Caption; })
{
    lblCAPTION.Alignment = captionCentre;
    lblCAPTION.CentreVertically = true;
    add_constituent(lblCAPTION);
    lblCAPTION.on_click = [this] { raise(events::Click); };
    lblCAPTION.on_mouse_down = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseDown, b, s, x, y); };
    lblCAPTION.on_mouse_move = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseMove, b, s, x, y); };
    lblCAPTION.on_mouse_up = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseUp, b, s, x, y); };
}

void pnl::Initialize()
{
    SetDesignSize(3000, 1500);
    lblCAPTION.ForeColor = ForeColor();
    FontSpec design;
    design.name = L"Tahoma";
    design.size = 8.25;
    lblCAPTION.Font = ComPtr<IFontDisp>::attach(CreateFontObject(design));
}

void pnl::InitProperties()
{
    step([&] { lblCAPTION.Font = ComPtr<IFontDisp>::attach(CloneFontObject(Ambient().Font().get())); });
}

// ---------------------------------------------------------------- persistence

void pnl::ReadProperties(PropertyBag &bag)
{
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { lblCAPTION.Font = bag.read_font(L"FONT", ambient.get()); });
    step([&] {
        SetForeColor(bag.read_color(L"FORECOLOR", syscolor::ButtonText));
        lblCAPTION.ForeColor = ForeColor();
    });
    step([&] { SetBackColor(bag.read_color(L"BACKCOLOR", syscolor::ButtonFace)); });
    step([&] {
        int16_t b = bag.read_int(L"BORDERSTYLE", panelBorderRaised);
        if (b >= panelBorderNone && b <= panelBorderSingle) border_ = b;
    });
    step([&] {
        int16_t f = bag.read_int(L"FILLSTYLE", panelFillSolid);
        if (f >= panelFillSolid && f <= panelFillDotted) fill_ = f;
    });
    step([&] { dot_colour_ = bag.read_color(L"DOTCOLOR", syscolor::Highlight3D); });
    step([&] { gradient1_ = bag.read_color(L"GRADIENTCOLOR1", kGradient.Color1); });
    step([&] { gradient2_ = bag.read_color(L"GRADIENTCOLOR2", kGradient.Color2); });
    step([&] {
        float a = bag.read_single(L"GRADIENTANGLE", kGradient.Angle);
        if (std::isfinite(a)) angle_ = a;
    });
    step([&] {
        int16_t a = bag.read_int(L"ALIGNMENT", captionCentre);
        if (a >= captionLeft && a <= captionCentre) lblCAPTION.Alignment = a;
    });
    step([&] { lblCAPTION.Caption = bag.read_string(L"CAPTION", L""); });
}

void pnl::WriteProperties(PropertyBag &bag)
{
    step([&] { bag.write_int(L"ALIGNMENT", lblCAPTION.Alignment, captionCentre); });
    step([&] { bag.write_string(L"CAPTION", lblCAPTION.Caption, std::wstring()); });
    step([&] { bag.write_color(L"FORECOLOR", ForeColor(), syscolor::ButtonText); });
    step([&] { bag.write_color(L"BACKCOLOR", BackColor(), syscolor::ButtonFace); });
    step([&] { bag.write_int(L"BORDERSTYLE", border_, panelBorderRaised); });
    step([&] { bag.write_int(L"FILLSTYLE", fill_, panelFillSolid); });
    step([&] { bag.write_color(L"DOTCOLOR", dot_colour_, syscolor::Highlight3D); });
    step([&] { bag.write_color(L"GRADIENTCOLOR1", gradient1_, kGradient.Color1); });
    step([&] { bag.write_color(L"GRADIENTCOLOR2", gradient2_, kGradient.Color2); });
    step([&] { bag.write_single(L"GRADIENTANGLE", angle_, kGradient.Angle); });
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { bag.write_font(L"FONT", lblCAPTION.Font.get(), ambient.get()); });
}

// ---------------------------------------------------------------- layout and drawing

void pnl::Resize()
{
    // The caption fills the inside of the border less a margin; it sits in the middle of it.
    Scale s = scale();
    float inset = to_twips_x(border_px(border_), s) + kCaptionMargin;
    lblCAPTION.Left = inset;
    lblCAPTION.Top = to_twips_y(border_px(border_), s);
    lblCAPTION.Width = ScaleWidth() - 2 * inset;
    lblCAPTION.Height = ScaleHeight() - 2 * lblCAPTION.Top;
}

void pnl::fill_gradient(HDC dc) const
{
    int w = PixelWidth(), h = PixelHeight();
    Rgb first = drawn(gradient1_, kGradient.Color1), second = drawn(gradient2_, kGradient.Color2);
    std::array<Rgb, 4> corner = GradientCorners(w, h, angle_, first, second);
    const POINT at[4] = {{0, 0}, {w, 0}, {w, h}, {0, h}};
    TRIVERTEX v[4];
    for (int i = 0; i < 4; ++i)
        v[i] = {at[i].x, at[i].y, static_cast<COLOR16>(red_of(corner[i]) << 8),
                static_cast<COLOR16>(green_of(corner[i]) << 8), static_cast<COLOR16>(blue_of(corner[i]) << 8), 0};
    GRADIENT_TRIANGLE halves[2] = {{0, 1, 2}, {0, 2, 3}};
    GradientFill(dc, v, 4, halves, 2, GRADIENT_FILL_TRIANGLE);
}

void pnl::DrawSurface(HDC dc, const Scale &)
{
    RECT all{0, 0, PixelWidth(), PixelHeight()};
    if (fill_ == panelFillGradient) {
        fill_gradient(dc);
    } else if (fill_ == panelFillDotted && dots_.Brush()) {
        // Dots where the pattern has zeros (the text colour), the back colour between them;
        // the pattern starts at the panel's corner wherever the DC's origin is.
        SetTextColor(dc, drawn(dot_colour_, GetSysColor(COLOR_3DHILIGHT)));
        SetBkColor(dc, drawn(BackColor(), GetSysColor(COLOR_BTNFACE)));
        POINT origin{};
        GetViewportOrgEx(dc, &origin);
        SetBrushOrgEx(dc, origin.x & 7, origin.y & 7, nullptr);
        FillRect(dc, &all, dots_.Brush());
    }
    switch (border_) {
    case panelBorderRaised: DrawEdge(dc, &all, EDGE_RAISED, BF_RECT); break;
    case panelBorderSunken: DrawEdge(dc, &all, EDGE_SUNKEN, BF_RECT); break;
    case panelBorderEtched: DrawEdge(dc, &all, EDGE_ETCHED, BF_RECT); break;
    case panelBorderSingle: {
        unique_brush line(CreateSolidBrush(GetSysColor(COLOR_WINDOWFRAME)));
        if (line) FrameRect(dc, &all, line.get());
        break;
    }
    default: break;
    }
}

void pnl::Click() { raise(events::Click); }
void pnl::DblClick() { raise(events::DblClick); }
void pnl::MouseDown(int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseDown, b, s, x, y); }
void pnl::MouseMove(int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseMove, b, s, x, y); }
void pnl::MouseUp(int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseUp, b, s, x, y); }

LRESULT pnl::OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled)
{
    handled = false;
    if (msg == WM_GETOBJECT) return described_.answer(hWnd(), wp, lp, handled);
    return 0;
}

// ---------------------------------------------------------------- properties

HRESULT pnl::put_colour(OleColor &field, OLE_COLOR v, const wchar_t *key)
{
    return put_value(key, [&] {
        check_colour(v);
        field = v;
        Invalidate();
    });
}

STDMETHODIMP pnl::get_Alignment(enum CaptionAlignments *v)
{
    return get_value(v, [&] { return static_cast<enum CaptionAlignments>(lblCAPTION.Alignment); });
}
STDMETHODIMP pnl::put_Alignment(enum CaptionAlignments v)
{
    return put_value(L"ALIGNMENT", [&] {
        if (v < captionLeft || v > captionCentre) throw std::out_of_range("no such alignment");
        lblCAPTION.Alignment = static_cast<int16_t>(v);
        Invalidate();
    });
}

STDMETHODIMP pnl::get_BACKCOLOR(OLE_COLOR *v) { return get_value(v, [&] { return BackColor(); }); }
STDMETHODIMP pnl::put_BACKCOLOR(OLE_COLOR v)
{
    return put_value(L"BACKCOLOR", [&] {
        check_colour(v);
        SetBackColor(v);
    });
}

STDMETHODIMP pnl::get_BorderStyle(enum PanelBorderStyles *v)
{
    return get_value(v, [&] { return static_cast<enum PanelBorderStyles>(border_); });
}
STDMETHODIMP pnl::put_BorderStyle(enum PanelBorderStyles v)
{
    return put_value(L"BORDERSTYLE", [&] {
        if (v < panelBorderNone || v > panelBorderSingle) throw std::out_of_range("no such border");
        border_ = static_cast<int16_t>(v);
        Resize();
        Invalidate();
    });
}

STDMETHODIMP pnl::get_CAPTION(BSTR *v) { return get_string(v, [&] { return lblCAPTION.Caption; }); }
STDMETHODIMP pnl::put_CAPTION(BSTR v)
{
    return put_value(L"CAPTION", [&] {
        lblCAPTION.Caption = from_bstr(v);
        Invalidate();
    });
}

STDMETHODIMP pnl::get_DotColor(OLE_COLOR *v) { return get_value(v, [&] { return dot_colour_; }); }
STDMETHODIMP pnl::put_DotColor(OLE_COLOR v) { return put_colour(dot_colour_, v, L"DOTCOLOR"); }

STDMETHODIMP pnl::get_FillStyle(enum PanelFillStyles *v)
{
    return get_value(v, [&] { return static_cast<enum PanelFillStyles>(fill_); });
}
STDMETHODIMP pnl::put_FillStyle(enum PanelFillStyles v)
{
    return put_value(L"FILLSTYLE", [&] {
        if (v < panelFillSolid || v > panelFillDotted) throw std::out_of_range("no such fill");
        fill_ = static_cast<int16_t>(v);
        Invalidate();
    });
}

STDMETHODIMP pnl::get_Font(IFontDisp **v) { return get_object(v, [&] { return lblCAPTION.Font; }); }
STDMETHODIMP pnl::put_Font(IFontDisp *v) { return set_font(v); }
STDMETHODIMP pnl::putref_Font(IFontDisp *v) { return set_font(v); }
HRESULT pnl::set_font(IFontDisp *v)
{
    return put_value(L"FONT", [&] {
        ComPtr<IFontDisp> copy = ComPtr<IFontDisp>::attach(CloneFontObject(v));
        if (!copy) throw std::invalid_argument("not a font");
        lblCAPTION.Font = copy;
        Invalidate();
    });
}

STDMETHODIMP pnl::get_ForeColor(OLE_COLOR *v) { return get_value(v, [&] { return ForeColor(); }); }
STDMETHODIMP pnl::put_ForeColor(OLE_COLOR v)
{
    return put_value(L"FORECOLOR", [&] {
        check_colour(v);
        SetForeColor(v);
        lblCAPTION.ForeColor = v;
        Invalidate();
    });
}

STDMETHODIMP pnl::get_GradientAngle(float *v) { return get_value(v, [&] { return angle_; }); }
STDMETHODIMP pnl::put_GradientAngle(float v)
{
    return put_value(L"GRADIENTANGLE", [&] {
        if (!std::isfinite(v)) throw std::invalid_argument("not an angle");
        angle_ = v;
        Invalidate();
    });
}

STDMETHODIMP pnl::get_GradientColor1(OLE_COLOR *v) { return get_value(v, [&] { return gradient1_; }); }
STDMETHODIMP pnl::put_GradientColor1(OLE_COLOR v) { return put_colour(gradient1_, v, L"GRADIENTCOLOR1"); }
STDMETHODIMP pnl::get_GradientColor2(OLE_COLOR *v) { return get_value(v, [&] { return gradient2_; }); }
STDMETHODIMP pnl::put_GradientColor2(OLE_COLOR v) { return put_colour(gradient2_, v, L"GRADIENTCOLOR2"); }

} // namespace tarn
