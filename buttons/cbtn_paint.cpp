// cbtn's paint routine: the fourteen looks in their normal, hover, pressed and disabled faces,
// the picture, the focus rectangle and the recoloured glyphs. Everything is drawn into the
// button's memory DC and copied to the screen in one go.
//
// Where no detail was given, each look copies the control it is named after, in the system
// colours: the Windows 98/2000 push button, scroll-bar spin button, combo box and flat
// toolbar button (with the dithered checked state); the flat Office-style button and combo
// box; a web link; the Windows XP (Luna) push button, toolbar button and toolbar tab.
#include "buttons/cbtn.h"

#include "foundation/color_translate.h"
#include "foundation/handles.h"
#include "runtime/picture_draw.h"

#include <algorithm>

namespace tarn {

namespace {

// DrawText formats: single line, vertically centred, tabs expanded; left-aligned or centred.
constexpr UINT kLeft = 100, kCentred = 101;

constexpr Rgb kLinkBlue = make_rgb(26, 74, 155), kWhite = make_rgb(255, 255, 255);
constexpr Rgb kFlatLight = make_rgb(227, 229, 233), kFlatLighter = make_rgb(214, 215, 227);
// The Luna theme's own colours (not system colours): border, hover glow, disabled border.
constexpr Rgb kLunaBorder = make_rgb(0, 60, 116), kHotTop = make_rgb(255, 240, 207), kHotBottom = make_rgb(229, 151, 0),
              kHotSide = make_rgb(248, 179, 48), kFocusTop = make_rgb(206, 231, 255), kFocusBottom = make_rgb(105, 130, 238),
              kFocusSide = make_rgb(137, 173, 228), kTabHot = make_rgb(255, 200, 60);

struct Colours {
    Rgb back, face, btnface, shadow, hilight, dark, light, text, gray, window, selection;
    Rgb flat_hover, flat_pressed;
    Rgb link; // the tinted caption colour, or the plain one on a low-colour display
};

Rgb sys(int index) { return GetSysColor(index); }

Rgb translated(OleColor c, Rgb fallback)
{
    Rgb r = TranslateColor(c);
    return r == kInvalidColor ? fallback : r;
}

// The registry's display settings, asked at most once a second per thread: the question is a
// registry round trip that would otherwise cost most of a paint, and the depth rarely changes.
bool low_colour_display()
{
    thread_local DWORD asked_at = 0;
    thread_local bool asked = false, low = false;
    DWORD now = GetTickCount();
    if (!asked || now - asked_at >= 1000) {
        DEVMODEW dm{};
        dm.dmSize = sizeof dm;
        low = EnumDisplaySettingsW(nullptr, ENUM_REGISTRY_SETTINGS, &dm) &&
              LowColorDisplay(static_cast<int32_t>(dm.dmBitsPerPel));
        asked = true;
        asked_at = now;
    }
    return low;
}

void fill(HDC dc, int l, int t, int r, int b, Rgb c)
{
    if (r <= l || b <= t) return;
    RECT rc{l, t, r, b};
    SetDCBrushColor(dc, c);
    FillRect(dc, &rc, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}
void hline(HDC dc, int x1, int x2, int y, Rgb c) { fill(dc, x1, y, x2, y + 1, c); }
void vline(HDC dc, int x, int y1, int y2, Rgb c) { fill(dc, x, y1, x + 1, y2, c); }
void frame(HDC dc, int l, int t, int r, int b, Rgb c)
{
    if (r <= l || b <= t) return;
    RECT rc{l, t, r, b};
    SetDCBrushColor(dc, c);
    FrameRect(dc, &rc, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}
// A one-pixel ring: top and left in `tl`, bottom and right in `br` (which own the corners).
void edge(HDC dc, int l, int t, int r, int b, Rgb tl, Rgb br)
{
    if (r - l < 1 || b - t < 1) return;
    hline(dc, l, r - 1, t, tl);
    vline(dc, l, t, b - 1, tl);
    hline(dc, l, r, b - 1, br);
    vline(dc, r - 1, t, b, br);
}
void gradient(HDC dc, int l, int t, int r, int b, Rgb top, Rgb bottom)
{
    if (r <= l || b <= t) return;
    TRIVERTEX v[2] = {{l, t, static_cast<COLOR16>(red_of(top) << 8), static_cast<COLOR16>(green_of(top) << 8),
                       static_cast<COLOR16>(blue_of(top) << 8), 0},
                      {r, b, static_cast<COLOR16>(red_of(bottom) << 8), static_cast<COLOR16>(green_of(bottom) << 8),
                       static_cast<COLOR16>(blue_of(bottom) << 8), 0}};
    GRADIENT_RECT g{0, 1};
    GradientFill(dc, v, 2, &g, 1, GRADIENT_FILL_RECT_V);
}

// The colours of the moment for a back colour, its custom flag and a fore colour.
Colours colours(OleColor back_colour, bool custom, OleColor fore_colour)
{
    Rgb back = translated(back_colour, sys(COLOR_BTNFACE));
    Colours c{};
    c.back = back;
    c.btnface = sys(COLOR_BTNFACE);
    c.face = custom ? back : c.btnface;
    c.shadow = sys(COLOR_BTNSHADOW);
    c.hilight = sys(COLOR_BTNHIGHLIGHT);
    c.dark = sys(COLOR_3DDKSHADOW);
    c.light = sys(COLOR_3DLIGHT);
    c.text = translated(fore_colour, sys(COLOR_BTNTEXT));
    c.gray = sys(COLOR_GRAYTEXT);
    c.window = custom ? back : sys(COLOR_WINDOW);
    c.selection = sys(COLOR_HIGHLIGHT);
    c.flat_hover = custom ? AdjustColor(back, 16, true) : kFlatLight;
    c.flat_pressed = custom ? AdjustColor(back, -16, true) : kFlatLighter;
    c.link = low_colour_display() ? c.text : kLinkBlue;
    return c;
}

// The font object's own handle (it stays the font object's).
HFONT caption_font(const ComPtr<IFontDisp> &font)
{
    HFONT h = nullptr;
    if (ComPtr<IFont> f = font.as<IFont>(IID_IFont)) f->get_hFont(&h);
    return h;
}

RECT rect_of(const PxRect &r) { return RECT{r.left, r.top, r.right, r.bottom}; }

// The glyph templates: '.' the magenta key, 'g' the grey key, 'k' black, 'w' white.
const char *const kArrow[] = {"kkkkkkk", ".kkkkk.", "..kkk..", "...k..."};
const char *const kArrowDisabled[] = {"ggggggg.", ".gggggww", "..gggww.", "...gww.."};

} // namespace

// ---------------------------------------------------------------- glyphs

void cbtn::recolor_glyphs()
{
    Rgb face = sys(COLOR_BTNFACE);
    GlyphColors table = GlyphColorTable(face);
    Rgb tint = translated(table.entry[2], face), shadow = translated(table.entry[3], sys(COLOR_BTNSHADOW));
    const char *const *templates[2] = {kArrow, kArrowDisabled};
    const int widths[2] = {7, 8};
    window_dc screen(nullptr);
    unique_dc mem(CreateCompatibleDC(screen.get()));
    if (!mem) return;
    for (int i = 0; i < 2; ++i) {
        int w = widths[i], h = 4;
        unique_bitmap bits(CreateCompatibleBitmap(screen.get(), w, h));
        if (!bits) continue;
        select_guard use(mem.get(), bits.get());
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                char c = templates[i][y][x];
                Rgb px = c == 'k' ? make_rgb(0, 0, 0) : c == 'g' ? make_rgb(128, 128, 128)
                       : c == 'w' ? make_rgb(255, 255, 255) : make_rgb(255, 0, 255);
                SetPixelV(mem.get(), x, y, px);
            }
        // The template in the key colours, recoloured to the current system colours; both
        // bounds inclusive, as the routine walks them (the pixel past the edge reads invalid).
        for (int x = 0; x <= w; ++x)
            for (int y = 0; y <= h; ++y) {
                Rgb px = GetPixel(mem.get(), x, y);
                if (px == table.entry[0]) SetPixelV(mem.get(), x, y, tint);
                px = GetPixel(mem.get(), x, y);
                if (px == table.entry[1]) SetPixelV(mem.get(), x, y, shadow);
            }
        // Kept as pixels: drawing them is a handful of fills, no DC or blit per paint.
        Glyph g{w, h, tint, {}};
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) g.pixels.push_back(GetPixel(mem.get(), x, y));
        glyphs_[i] = std::move(g);
    }
    glyph_face_ = face;
}

namespace {

// The glyph's pixels other than its tint background, a run of one colour per fill.
void draw_glyph(HDC dc, const cbtn::Glyph &g, int x, int y)
{
    for (int row = 0; row < g.h; ++row)
        for (int col = 0; col < g.w;) {
            Rgb c = g.pixels[static_cast<size_t>(row * g.w + col)];
            int end = col + 1;
            while (end < g.w && g.pixels[static_cast<size_t>(row * g.w + end)] == c) ++end;
            if (c != g.tint && c != CLR_INVALID) hline(dc, x + col, x + end, y + row, c);
            col = end;
        }
}

} // namespace

// ---------------------------------------------------------------- the paint routine

void cbtn::compose(HDC dc)
{
    int W = layout_.W, H = layout_.H;
    if (W != PixelWidth() || H != PixelHeight()) {
        layout();
        W = layout_.W;
        H = layout_.H;
    }
    // 1. The whole client area in BACKCOLOR.
    fill(dc, 0, 0, W, H, translated(back_, sys(COLOR_BTNFACE)));
    if (sys(COLOR_BTNFACE) != glyph_face_) step([&] { recolor_glyphs(); });
    SetBkMode(dc, TRANSPARENT);
    // 2. The disabled look, or the look of the face state.
    if (!enabled_) step([&] { draw_disabled(dc); });
    else if (face_ >= face::Normal && face_ <= face::Pressed) step([&] { draw_face(dc, face_); });
    if (enabled_ && focus_rect_ && focused() && type_ >= btype::First && type_ <= btype::Last)
        step([&] { draw_focus(dc); });
    // 3. The form's default button (the container's "display as default"): the face framed
    // once more in the window-frame colour, as every default button of the system is.
    if (enabled_ && display_default_) {
        step([&] {
            unique_brush b(CreateSolidBrush(sys(COLOR_WINDOWFRAME)));
            RECT r{0, 0, W, H};
            if (b) FrameRect(dc, &r, b.get());
        });
    }
}

namespace {

// What one look needs: the colours of the moment, the font, the caption rectangles.
struct Painter {
    HDC dc;
    int W, H;
    Colours c;
    const ButtonLayout &L;
    const std::wstring &caption;
    HFONT font;

    // The caption in `colour`, moved by (dx, dy); underlined for a link under the pointer.
    void text(UINT format, bool second_rect, Rgb colour, int dx = 0, int dy = 0, bool underline = false,
              int right_cut = 0) const
    {
        RECT r = rect_of(second_rect ? L.caption2 : L.caption);
        r.right -= right_cut;
        OffsetRect(&r, dx, dy);
        select_guard use(dc, font);
        SetTextColor(dc, colour);
        int n = static_cast<int>(std::min<size_t>(caption.size(), 0x7FFFFFF));
        DrawTextW(dc, caption.c_str(), n, &r, format);
        if (underline && n > 0) {
            // Under the text: its width from the platform, its line from the font's metrics.
            RECT m = r;
            DrawTextW(dc, caption.c_str(), n, &m, format | DT_CALCRECT);
            int w = m.right - m.left;
            int left = (format & DT_CENTER) ? r.left + (r.right - r.left - w) / 2 : r.left;
            TEXTMETRICW tm{};
            GetTextMetricsW(dc, &tm);
            int y = r.top + (r.bottom - r.top - tm.tmHeight) / 2 + tm.tmAscent + 1;
            hline(dc, std::max<int>(left, r.left), std::min<int>(left + w, r.right), y, colour);
        }
    }
    // The engraved caption of a disabled classic control.
    void engraved(UINT format, bool second_rect, int right_cut = 0) const
    {
        text(format, second_rect, c.hilight, 1, 1, false, right_cut);
        text(format, second_rect, c.shadow, 0, 0, false, right_cut);
    }
    UINT format(bool centred_look) const { return centred_look && L.picture.width() == 0 ? kCentred : kLeft; }
    bool second(bool centred_look) const { return centred_look && L.picture.width() == 0; }

    void raised(int l, int t, int r, int b) const
    {
        edge(dc, l, t, r, b, c.hilight, c.dark);
        edge(dc, l + 1, t + 1, r - 1, b - 1, c.light, c.shadow);
    }
    void scroll_raised(int l, int t, int r, int b) const
    {
        edge(dc, l, t, r, b, c.light, c.dark);
        edge(dc, l + 1, t + 1, r - 1, b - 1, c.hilight, c.shadow);
    }
    void sunken_field(int l, int t, int r, int b) const
    {
        edge(dc, l, t, r, b, c.shadow, c.hilight);
        edge(dc, l + 1, t + 1, r - 1, b - 1, c.dark, c.light);
    }
    void luna_border(Rgb colour) const
    {
        hline(dc, 2, W - 2, 0, colour);
        hline(dc, 2, W - 2, H - 1, colour);
        vline(dc, 0, 2, H - 2, colour);
        vline(dc, W - 1, 2, H - 2, colour);
        for (POINT p : {POINT{1, 1}, POINT{W - 2, 1}, POINT{1, H - 2}, POINT{W - 2, H - 2}}) SetPixelV(dc, p.x, p.y, colour);
    }
    void luna_glow(Rgb top, Rgb side, Rgb bottom) const
    {
        hline(dc, 2, W - 2, 1, top);
        hline(dc, 2, W - 2, 2, BlendRgb(top, side, 128));
        vline(dc, 1, 2, H - 2, side);
        vline(dc, W - 2, 2, H - 2, side);
        hline(dc, 2, W - 2, H - 2, bottom);
        hline(dc, 2, W - 2, H - 3, BlendRgb(bottom, side, 128));
    }
    void luna_face(bool pressed) const
    {
        Rgb light = AdjustColor(c.face, 20, true), dark = AdjustColor(c.face, -18, true);
        if (pressed) gradient(dc, 1, 1, W - 1, H - 1, AdjustColor(c.face, -22, true), AdjustColor(c.face, 8, true));
        else {
            gradient(dc, 1, 1, W - 1, H * 3 / 4, light, c.face);
            gradient(dc, 1, H * 3 / 4, W - 1, H - 1, c.face, dark);
        }
    }
    int combo_arrow_width() const { return std::min(GetSystemMetrics(SM_CXVSCROLL), std::max(W - 4, 0)); }
};

} // namespace

void cbtn::draw_face(HDC dc, int state)
{
    Painter p{dc, layout_.W, layout_.H, colours(back_, back_custom_, fore_), layout_, caption_, caption_font(font_)};
    const Colours &c = p.c;
    const int W = p.W, H = p.H;
    const bool hover = state == face::Hover, pressed = state == face::Pressed;
    int dx = 0; // how far the caption and picture move in a pushed face

    switch (type_) {
    case btype::Button:
        fill(dc, 0, 0, W, H, c.face);
        if (pressed) {
            frame(dc, 0, 0, W, H, c.dark);
            frame(dc, 1, 1, W - 1, H - 1, c.shadow);
            dx = 1;
        } else {
            p.raised(0, 0, W, H);
        }
        p.text(p.format(true), p.second(true), c.text, dx, dx);
        break;
    case btype::ButtonFlat:
        fill(dc, 0, 0, W, H, pressed ? c.flat_pressed : hover ? c.flat_hover : c.face);
        frame(dc, 0, 0, W, H, pressed || hover ? c.dark : c.shadow);
        dx = pressed ? 1 : 0;
        p.text(p.format(true), p.second(true), c.text, dx, dx);
        break;
    case btype::ComboBox: {
        int bw = p.combo_arrow_width();
        fill(dc, 2, 2, W - 2, H - 2, c.window);
        p.sunken_field(0, 0, W, H);
        int l = W - 2 - bw;
        fill(dc, l, 2, W - 2, H - 2, c.face);
        if (pressed) {
            frame(dc, l, 2, W - 2, H - 2, c.shadow);
            dx = 1;
        } else {
            p.scroll_raised(l, 2, W - 2, H - 2);
        }
        draw_glyph(dc, glyphs_[0], l + (bw - 7) / 2 + dx, (H - 4) / 2 + dx);
        p.text(kLeft, false, c.text, 0, 0, false, bw + 2);
        break;
    }
    case btype::ComboBoxFlat: {
        int bw = p.combo_arrow_width();
        fill(dc, 1, 1, W - 1, H - 1, c.window);
        int l = W - 1 - bw;
        Rgb border = hover || pressed ? c.selection : c.shadow;
        frame(dc, 0, 0, W, H, border);
        fill(dc, l, 1, W - 1, H - 1, pressed ? AdjustColor(c.flat_pressed, -24, true) : hover ? c.flat_pressed : c.face);
        if (hover || pressed) vline(dc, l, 1, H - 1, border);
        dx = pressed ? 1 : 0;
        draw_glyph(dc, glyphs_[0], l + (bw - 7) / 2 + dx, (H - 4) / 2 + dx);
        p.text(kLeft, false, c.text, 0, 0, false, bw + 1);
        break;
    }
    case btype::Toolbar:
        fill(dc, 0, 0, W, H, c.face);
        if (hover) edge(dc, 0, 0, W, H, c.hilight, c.shadow);
        if (pressed) {
            edge(dc, 0, 0, W, H, c.shadow, c.hilight);
            dx = 1;
        }
        p.text(p.format(true), p.second(true), c.text, dx, dx);
        break;
    case btype::ToolbarChecked:
        if (state == face::Normal && dots_.Brush()) {
            // The checked button's dither: button face and highlight in a one-pixel checkerboard.
            RECT in{1, 1, W - 1, H - 1};
            SetTextColor(dc, c.face);
            SetBkColor(dc, c.hilight);
            FillRect(dc, &in, dots_.Brush());
        } else {
            fill(dc, 1, 1, W - 1, H - 1, c.face);
        }
        edge(dc, 0, 0, W, H, c.shadow, c.hilight);
        // Pressed once more: the inner ring darkens and the caption goes one pixel deeper.
        if (pressed) edge(dc, 1, 1, W - 1, H - 1, c.dark, c.light);
        dx = pressed ? 2 : 1;
        p.text(p.format(true), p.second(true), c.text, dx, dx);
        break;
    case btype::Hyperlink:
    case btype::HyperlinkWhite: {
        Rgb ink = type_ == btype::Hyperlink ? c.link : kWhite;
        dx = pressed ? 1 : 0;
        p.text(kLeft, false, ink, dx, dx, hover || pressed);
        break;
    }
    case btype::SpinButton:
    case btype::SpinButtonPressed:
        fill(dc, 0, 0, W, H, c.face);
        if (pressed || type_ == btype::SpinButtonPressed) {
            frame(dc, 0, 0, W, H, pressed && type_ == btype::SpinButtonPressed ? c.dark : c.shadow);
            dx = pressed && type_ == btype::SpinButtonPressed ? 2 : 1;
        } else {
            p.scroll_raised(0, 0, W, H);
        }
        p.text(p.format(true), p.second(true), c.text, dx, dx);
        break;
    case btype::WindowsXP:
    case btype::WindowsXPPressed: {
        bool latched = type_ == btype::WindowsXPPressed;
        p.luna_face(pressed || latched);
        p.luna_border(kLunaBorder);
        if (hover) p.luna_glow(kHotTop, kHotSide, kHotBottom);
        else if (!pressed && !latched && focused()) p.luna_glow(kFocusTop, kFocusSide, kFocusBottom);
        dx = pressed ? 1 : 0;
        p.text(p.format(true), p.second(true), c.text, dx, dx);
        break;
    }
    case btype::ToolbarTabSelect:
        fill(dc, 0, 0, W, H, c.face);
        // The selected tab: highlight up the left and across the top, shadows down the right,
        // open at the bottom where it joins its page.
        vline(dc, 0, 2, H, c.hilight);
        SetPixelV(dc, 1, 1, c.hilight);
        hline(dc, 2, W - 2, 0, c.hilight);
        SetPixelV(dc, W - 2, 1, c.dark);
        vline(dc, W - 1, 2, H, c.dark);
        vline(dc, W - 2, 2, H, c.shadow);
        if (hover) {
            hline(dc, 2, W - 2, 0, kTabHot);
            hline(dc, 1, W - 1, 1, kTabHot);
            hline(dc, 1, W - 1, 2, BlendRgb(kTabHot, c.face, 128));
        }
        dx = pressed ? 1 : 0;
        p.text(p.format(true), p.second(true), hover || pressed ? c.link : c.text, dx, dx);
        break;
    case btype::WindowsXPToolbar:
        fill(dc, 0, 0, W, H, c.face);
        if (hover || pressed) {
            gradient(dc, 1, 1, W - 1, H - 1, pressed ? c.flat_pressed : AdjustColor(c.flat_hover, 12, true),
                     pressed ? AdjustColor(c.flat_pressed, 10, true) : c.flat_hover);
            p.luna_border(pressed ? c.shadow : AdjustColor(c.shadow, 50, true));
            // Rounded: the corner pixels take the face.
            for (POINT q : {POINT{0, 0}, POINT{W - 1, 0}, POINT{0, H - 1}, POINT{W - 1, H - 1}}) SetPixelV(dc, q.x, q.y, c.face);
        }
        dx = pressed ? 1 : 0;
        p.text(p.format(true), p.second(true), c.text, dx, dx);
        break;
    default:
        return; // outside 1 to 14: the plain filled face
    }
    draw_picture(dc, dx, dx);
}

void cbtn::draw_disabled(HDC dc)
{
    Colours face_colours = colours(back_, back_custom_, fore_);
    face_colours.window = face_colours.face; // a disabled field shows the face
    Painter p{dc, layout_.W, layout_.H, face_colours, layout_, caption_, caption_font(font_)};
    const Colours &c = p.c;
    const int W = p.W, H = p.H;

    switch (type_) {
    case btype::Button:
        fill(dc, 0, 0, W, H, c.face);
        p.raised(0, 0, W, H);
        p.engraved(p.format(true), p.second(true));
        break;
    case btype::ButtonFlat:
        fill(dc, 0, 0, W, H, c.face);
        frame(dc, 0, 0, W, H, c.shadow);
        p.engraved(p.format(true), p.second(true));
        break;
    case btype::ComboBox:
    case btype::ComboBoxFlat: {
        int bw = p.combo_arrow_width();
        fill(dc, 0, 0, W, H, c.face);
        int l;
        if (type_ == btype::ComboBox) {
            p.sunken_field(0, 0, W, H);
            l = W - 2 - bw;
            p.scroll_raised(l, 2, W - 2, H - 2);
        } else {
            frame(dc, 0, 0, W, H, c.shadow);
            l = W - 1 - bw;
        }
        draw_glyph(dc, glyphs_[1], l + (bw - 7) / 2, (H - 4) / 2);
        p.text(kLeft, false, c.gray, 0, 0, false, bw + 2);
        break;
    }
    case btype::Toolbar:
        fill(dc, 0, 0, W, H, c.face);
        p.engraved(p.format(true), p.second(true));
        break;
    case btype::ToolbarChecked:
        if (dots_.Brush()) {
            RECT in{1, 1, W - 1, H - 1};
            SetTextColor(dc, c.face);
            SetBkColor(dc, c.hilight);
            FillRect(dc, &in, dots_.Brush());
        }
        edge(dc, 0, 0, W, H, c.shadow, c.hilight);
        p.engraved(p.format(true), p.second(true));
        break;
    case btype::Hyperlink:
    case btype::HyperlinkWhite:
        p.text(kLeft, false, type_ == btype::Hyperlink ? c.gray : c.shadow);
        break;
    case btype::SpinButton:
        fill(dc, 0, 0, W, H, c.face);
        p.scroll_raised(0, 0, W, H);
        p.engraved(p.format(true), p.second(true));
        break;
    case btype::SpinButtonPressed:
        fill(dc, 0, 0, W, H, c.face);
        frame(dc, 0, 0, W, H, c.shadow);
        p.engraved(p.format(true), p.second(true));
        break;
    case btype::WindowsXP:
    case btype::WindowsXPPressed:
        fill(dc, 1, 1, W - 1, H - 1, AdjustColor(c.face, 10, true));
        p.luna_border(BlendRgb(c.shadow, c.face, 96));
        p.text(p.format(true), p.second(true), c.gray);
        break;
    case btype::ToolbarTabSelect:
        fill(dc, 0, 0, W, H, c.face);
        vline(dc, 0, 2, H, c.hilight);
        SetPixelV(dc, 1, 1, c.hilight);
        hline(dc, 2, W - 2, 0, c.hilight);
        vline(dc, W - 1, 2, H, c.dark);
        vline(dc, W - 2, 2, H, c.shadow);
        p.text(p.format(true), p.second(true), c.gray);
        break;
    case btype::WindowsXPToolbar:
        fill(dc, 0, 0, W, H, c.face);
        p.text(p.format(true), p.second(true), c.gray);
        break;
    default:
        return;
    }
    draw_picture(dc, 0, 0);
}

void cbtn::draw_picture(HDC dc, int dx, int dy)
{
    if (!picture_visible_ || layout_.picture.width() <= 0 || layout_.picture.height() <= 0) return;
    RECT at = rect_of(layout_.picture);
    OffsetRect(&at, dx, dy);
    Rgb key = TranslateColor(mask_);
    // Disabled: picBOXdis when it holds a picture, else a greyed copy of the picture.
    if (!enabled_ && picBOXdis.Picture) {
        if (ComPtr<IPicture> pic = picBOXdis.Picture.as<IPicture>(IID_IPicture)) DrawPicture(dc, pic.get(), at, key, false);
        return;
    }
    if (ComPtr<IPicture> pic = picBOX.Picture.as<IPicture>(IID_IPicture)) DrawPicture(dc, pic.get(), at, key, !enabled_);
}

void cbtn::draw_focus(HDC dc)
{
    int W = layout_.W, H = layout_.H;
    RECT r = rect_of(layout_.inner);
    switch (type_) {
    case btype::ComboBox:
    case btype::ComboBoxFlat:
        r = {3, 3, W - 3 - std::min(GetSystemMetrics(SM_CXVSCROLL), std::max(W - 4, 0)), H - 3};
        break;
    case btype::WindowsXP:
    case btype::WindowsXPPressed:
    case btype::WindowsXPToolbar:
        r = {3, 3, W - 3, H - 3};
        break;
    case btype::Hyperlink:
    case btype::HyperlinkWhite:
        r = {0, 0, W, H};
        break;
    default:
        break;
    }
    SetTextColor(dc, translated(fore_, sys(COLOR_BTNTEXT)));
    SetBkColor(dc, sys(COLOR_BTNFACE));
    if (r.right > r.left && r.bottom > r.top) DrawFocusRect(dc, &r);
    if (picture_visible_ && layout_.picture.width() > 0) {
        RECT pr = rect_of(layout_.picture);
        InflateRect(&pr, 1, 1);
        DrawFocusRect(dc, &pr);
    }
}

} // namespace tarn
