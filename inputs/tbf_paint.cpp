#include "inputs/tbf_paint.h"

#include <algorithm>

#include "foundation/handles.h"

namespace tarn {

namespace {

constexpr Rgb kXpBorder = make_rgb(145, 155, 156), kXpHot = make_rgb(255, 200, 60),
              kXpSelected = make_rgb(230, 139, 44), kWhite = make_rgb(255, 255, 255);

void fill(HDC dc, int l, int t, int r, int b, Rgb colour)
{
    if (r <= l || b <= t) return;
    RECT rc{l, t, r, b};
    SetBkColor(dc, colour);
    ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &rc, nullptr, 0, nullptr); // a solid fill without a brush
}
void hline(HDC dc, int x0, int x1, int y, Rgb c) { fill(dc, x0, y, x1, y + 1, c); }
void vline(HDC dc, int x, int y0, int y1, Rgb c) { fill(dc, x, y0, x + 1, y1, c); }

Rgb mix(Rgb a, Rgb b, int alpha)
{
    return make_rgb((red_of(a) * alpha + red_of(b) * (255 - alpha)) / 255,
                    (green_of(a) * alpha + green_of(b) * (255 - alpha)) / 255,
                    (blue_of(a) * alpha + blue_of(b) * (255 - alpha)) / 255);
}

// Top to bottom, from `top` to `bottom` colour.
void gradient(HDC dc, const TabBox &r, Rgb top, Rgb bottom)
{
    const int h = r.bottom - r.top;
    for (int y = 0; y < h; ++y) hline(dc, r.left, r.right, r.top + y, mix(bottom, top, h > 1 ? 255 * y / (h - 1) : 0));
}

void caption(HDC dc, const TabBox &r, const std::wstring &text, const TabStripLook &look, int dx, int dy, bool focus)
{
    RECT rc{r.left + look.pad / 2 + dx, r.top + dy, r.right - look.pad / 2 + dx, r.bottom + dy};
    const UINT format = DT_SINGLELINE | DT_VCENTER | DT_CENTER | DT_END_ELLIPSIS;
    SetBkMode(dc, TRANSPARENT);
    if (look.enabled) {
        SetTextColor(dc, look.fore);
        DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &rc, format);
    } else {
        // Embossed, as disabled captions are drawn.
        RECT lit = rc;
        OffsetRect(&lit, 1, 1);
        SetTextColor(dc, GetSysColor(COLOR_BTNHIGHLIGHT));
        DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &lit, format);
        SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
        DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &rc, format);
    }
    if (focus) {
        RECT f{r.left + 3, r.top + 3, r.right - 3, r.bottom - 2};
        SetTextColor(dc, look.fore);
        SetBkColor(dc, look.back);
        DrawFocusRect(dc, &f);
    }
}

void classic_tab(HDC dc, const TabBox &r, const TabStripLook &look)
{
    const Rgb light = GetSysColor(COLOR_BTNHIGHLIGHT), shadow = GetSysColor(COLOR_BTNSHADOW),
              dark = GetSysColor(COLOR_3DDKSHADOW);
    fill(dc, r.left, r.top, r.right, r.bottom, look.back);
    vline(dc, r.left, r.top + 2, r.bottom, light);
    hline(dc, r.left + 1, r.left + 2, r.top + 1, light);
    hline(dc, r.left + 2, r.right - 2, r.top, light);
    vline(dc, r.right - 2, r.top + 1, r.bottom, shadow);
    vline(dc, r.right - 1, r.top + 2, r.bottom, dark);
    hline(dc, r.right - 2, r.right - 1, r.top + 1, dark);
}

void xp_tab(HDC dc, const TabBox &r, const TabStripLook &look, bool selected, bool hot)
{
    if (selected) fill(dc, r.left, r.top, r.right, r.bottom, mix(kWhite, look.back, 160));
    else gradient(dc, r, kWhite, look.back);
    vline(dc, r.left, r.top + 2, r.bottom, kXpBorder);
    vline(dc, r.right - 1, r.top + 2, r.bottom, kXpBorder);
    hline(dc, r.left + 2, r.right - 2, r.top, kXpBorder);
    hline(dc, r.left + 1, r.left + 2, r.top + 1, kXpBorder);
    hline(dc, r.right - 2, r.right - 1, r.top + 1, kXpBorder);
    if (selected || hot) {
        // The coloured edge along the top, as thick as the resolution makes three pixels.
        const int bar = std::max(MulDiv(3, look.dpi, 96), 2);
        hline(dc, r.left + 2, r.right - 2, r.top, selected ? kXpSelected : kXpHot);
        for (int y = 1; y < bar; ++y) hline(dc, r.left + 1, r.right - 1, r.top + y, kXpHot);
    }
}

void flat_button(HDC dc, const TabBox &r, const TabStripLook &look, bool selected, bool hot)
{
    RECT rc{r.left, r.top, r.right, r.bottom};
    if (selected) {
        fill(dc, r.left, r.top, r.right, r.bottom, mix(GetSysColor(COLOR_BTNHIGHLIGHT), look.back, 128));
        DrawEdge(dc, &rc, BDR_SUNKENOUTER, BF_RECT);
    } else if (hot && look.enabled) {
        DrawEdge(dc, &rc, BDR_RAISEDINNER, BF_RECT);
    }
}

} // namespace

void PaintTabStrip(HDC dc, int width, int height, const std::vector<TabBox> &tabs,
                   const std::vector<std::wstring> &captions, const TabStripLook &look)
{
    saved_dc keep(dc);
    fill(dc, 0, 0, width, height, look.back);
    if (look.font) SelectObject(dc, look.font);
    const int n = static_cast<int>(std::min(tabs.size(), captions.size()));
    const bool has_selected = look.selected >= 0 && look.selected < n;

    if (look.style == tabstyle::FlatButtons) {
        for (int i = 0; i < n; ++i) {
            const TabBox &r = tabs[static_cast<size_t>(i)];
            const bool sel = i == look.selected;
            flat_button(dc, r, look, sel, i == look.hot);
            if (i + 1 < n) { // an etched separator in the gap
                const int x = (r.right + tabs[static_cast<size_t>(i + 1)].left) / 2;
                vline(dc, x, r.top + 3, r.bottom - 3, GetSysColor(COLOR_BTNSHADOW));
                vline(dc, x + 1, r.top + 3, r.bottom - 3, GetSysColor(COLOR_BTNHIGHLIGHT));
            }
            caption(dc, r, captions[static_cast<size_t>(i)], look, sel ? 1 : 0, sel ? 1 : 0, sel && look.focused);
        }
        return;
    }

    // The line the tabs stand on, open under the selected tab.
    const Rgb line = look.style == tabstyle::XP ? kXpBorder : GetSysColor(COLOR_BTNHIGHLIGHT);
    const TabBox *sel = has_selected ? &tabs[static_cast<size_t>(look.selected)] : nullptr;
    if (sel) {
        hline(dc, 0, sel->left + 1, height - 1, line);
        hline(dc, sel->right - 1, width, height - 1, line);
    } else {
        hline(dc, 0, width, height - 1, line);
    }
    // The others first, the selected one last: it stands in front of its neighbours.
    for (int pass = 0; pass < 2; ++pass) {
        for (int i = 0; i < n; ++i) {
            if ((i == look.selected) != (pass == 1)) continue;
            const TabBox &r = tabs[static_cast<size_t>(i)];
            const bool is_sel = i == look.selected;
            if (look.style == tabstyle::XP) xp_tab(dc, r, look, is_sel, i == look.hot && look.enabled);
            else classic_tab(dc, r, look);
            caption(dc, r, captions[static_cast<size_t>(i)], look, 0, is_sel ? -1 : 0, is_sel && look.focused);
        }
    }
}

} // namespace tarn
