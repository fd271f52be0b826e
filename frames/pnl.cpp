#include "frames/pnl.h"

#include <cmath>
#include <stdexcept>

#include "foundation/clsPICGRDNT.h"
#include "foundation/color_translate.h"
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
    true, // draws itself; the controls on it are the container's
};

namespace {
constexpr float kCaptionMargin = 60; // twips between the border and the caption
const clsPICGRDNT kGradient;          // the gradient's defaults

// The border's width in pixels: 3-D borders take two, a single line one.
int border_px(int16_t style)
{
    switch (style) {
    case Borderless: return 0;
    case Single_Line: return 1;
    default: return 2;
    }
}

Rgb drawn(OleColor c, Rgb fallback)
{
    Rgb rgb = TranslateColor(c);
    return rgb == kInvalidColor ? fallback : rgb;
}
} // namespace

pnl::pnl()
    : CaptionedControl(Centre), gradient1_(kGradient.Color1), gradient2_(kGradient.Color2), angle_(kGradient.Angle)
{
    lblCAPTION.CentreVertically = true;
    add_constituent(lblCAPTION);
}

void pnl::Initialize()
{
    SetDesignSize(3000, 1500);
    InitializeCaption();
}

// ---------------------------------------------------------------- persistence

void pnl::ReadProperties(PropertyBag &bag)
{
    ReadCaption(bag);
    step([&] {
        int16_t b = bag.read_int(L"BORDERSTYLE", Raised);
        if (b >= Borderless && b <= Single_Line) border_ = b;
    });
    step([&] {
        int16_t f = bag.read_int(L"FILLSTYLE", Solid);
        if (f >= Solid && f <= Dotted) fill_ = f;
    });
    step([&] { dot_colour_ = bag.read_color(L"DOTCOLOR", syscolor::Highlight3D); });
    step([&] { gradient1_ = bag.read_color(L"GRADIENTCOLOR1", kGradient.Color1); });
    step([&] { gradient2_ = bag.read_color(L"GRADIENTCOLOR2", kGradient.Color2); });
    step([&] {
        float a = bag.read_single(L"GRADIENTANGLE", kGradient.Angle);
        if (std::isfinite(a)) angle_ = a;
    });
}

void pnl::WriteProperties(PropertyBag &bag)
{
    WriteCaption(bag);
    step([&] { bag.write_int(L"BORDERSTYLE", border_, Raised); });
    step([&] { bag.write_int(L"FILLSTYLE", fill_, Solid); });
    step([&] { bag.write_color(L"DOTCOLOR", dot_colour_, syscolor::Highlight3D); });
    step([&] { bag.write_color(L"GRADIENTCOLOR1", gradient1_, kGradient.Color1); });
    step([&] { bag.write_color(L"GRADIENTCOLOR2", gradient2_, kGradient.Color2); });
    step([&] { bag.write_single(L"GRADIENTANGLE", angle_, kGradient.Angle); });
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
    if (fill_ == Gradient) {
        fill_gradient(dc);
    } else if (fill_ == Dotted && dots_.Brush()) {
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
    case Raised: DrawEdge(dc, &all, EDGE_RAISED, BF_RECT); break;
    case Sunken: DrawEdge(dc, &all, EDGE_SUNKEN, BF_RECT); break;
    case Etched: DrawEdge(dc, &all, EDGE_ETCHED, BF_RECT); break;
    case Single_Line: {
        unique_brush line(CreateSolidBrush(GetSysColor(COLOR_WINDOWFRAME)));
        if (line) FrameRect(dc, &all, line.get());
        break;
    }
    default: break;
    }
}

// ---------------------------------------------------------------- properties

HRESULT pnl::put_colour(OleColor &field, OLE_COLOR v, const wchar_t *key)
{
    return put_value(key, [&] {
        RequireColour(v);
        field = v;
        Invalidate();
    });
}

STDMETHODIMP pnl::get_BorderStyle(PanelBorderStyles *v)
{
    return get_value(v, [&] { return static_cast<PanelBorderStyles>(border_); });
}
STDMETHODIMP pnl::put_BorderStyle(PanelBorderStyles v)
{
    return put_value(L"BORDERSTYLE", [&] {
        int32_t b = static_cast<int32_t>(v);
        if (b < Borderless || b > Single_Line) throw std::out_of_range("no such border");
        border_ = static_cast<int16_t>(b);
        Resize();
        Invalidate();
    });
}

STDMETHODIMP pnl::get_DotColor(OLE_COLOR *v) { return get_value(v, [&] { return dot_colour_; }); }
STDMETHODIMP pnl::put_DotColor(OLE_COLOR v) { return put_colour(dot_colour_, v, L"DOTCOLOR"); }

STDMETHODIMP pnl::get_FillStyle(PanelFillStyles *v)
{
    return get_value(v, [&] { return static_cast<PanelFillStyles>(fill_); });
}
STDMETHODIMP pnl::put_FillStyle(PanelFillStyles v)
{
    return put_value(L"FILLSTYLE", [&] {
        int32_t f = static_cast<int32_t>(v);
        if (f < Solid || f > Dotted) throw std::out_of_range("no such fill");
        fill_ = static_cast<int16_t>(f);
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
