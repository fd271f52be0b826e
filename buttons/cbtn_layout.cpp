#include "buttons/cbtn_layout.h"

#include <algorithm>
#include <iterator>

namespace tarn {

ButtonLayout LayoutButton(int32_t W, int32_t H, bool picture_visible, int32_t pic_w, int32_t pic_h)
{
    ButtonLayout L;
    L.W = W;
    L.H = H;
    L.caption = {0, 0, W, H - 2};
    L.caption2 = {0, 0, W, H - 2};
    L.inner = {4, 4, W - 4, H - 4};
    if (!picture_visible) {
        L.caption2.left = 0;
        L.caption.left = 2;
        return L;
    }
    L.picture_fits = pic_h - 8 < H;
    if (L.picture_fits) {
        const PxRect r[6] = {{0, 0, W, H - 8}, {1, 1, W, H - 8}, {4, 4, W - 4, H - 4},
                             {1, 1, W - 7, H - 7}, {1, 1, W - 7, H - 7}, {0, 0, W - 8, H - 8}};
        std::copy(std::begin(r), std::end(r), L.rects);
        L.caption2.left = 21;
        L.caption.left = 23;
        // At its own size, centred in the strip left of the caption, cut to the strip.
        int32_t w = std::clamp(pic_w, 0, 18), h = std::clamp(pic_h, 0, std::max(H, 0));
        int32_t top = std::max((H - h) / 2, 0);
        L.picture = {2, top, 2 + w, top + h};
    } else {
        const PxRect r[6] = {{0, 0, W, H - 8}, {-1, -1, W, H - 9}, {4, 4, W - 4, H - 4},
                             {1, 1, W - 1, H - 7}, {-1, 0, W - 1, H - 7}, {0, 0, W - 1, H - 8}};
        std::copy(std::begin(r), std::end(r), L.rects);
        L.caption2.left = 26;
        L.caption.left = 26;
        L.caption2.top = L.caption.top = 0;
        // Shrunk into a 22-pixel strip, four pixels from top and bottom, keeping its proportions.
        int32_t h = std::max(H - 8, 0);
        int32_t w = pic_h > 0 ? static_cast<int32_t>(static_cast<int64_t>(pic_w) * h / pic_h) : 0;
        if (w > 22) {
            h = pic_w > 0 ? static_cast<int32_t>(static_cast<int64_t>(pic_h) * 22 / pic_w) : 0;
            w = 22;
        }
        int32_t top = std::max((H - h) / 2, 0);
        L.picture = {2 + (22 - w) / 2, top, 2 + (22 - w) / 2 + w, top + h};
    }
    return L;
}

ButtonShape ShapeOf(int32_t type)
{
    switch (type) {
    case btype::WindowsXP:
    case btype::WindowsXPPressed:
        return ButtonShape::RoundedXP;
    case btype::ToolbarTabSelect:
        return ButtonShape::Tab;
    default:
        return ButtonShape::Rectangle;
    }
}

GlyphColors GlyphColorTable(Rgb face)
{
    Rgb tint = AdjustColor(AdjustColor(AdjustColor(face, 22, true), 24, true), -24, true);
    return {{make_rgb(255, 0, 255), make_rgb(128, 128, 128), tint, syscolor::ButtonShadow}};
}

Rgb RecolorPixel(Rgb pixel, Rgb tint, Rgb shadow)
{
    if (pixel == make_rgb(255, 0, 255)) pixel = tint;
    if (pixel == make_rgb(128, 128, 128)) pixel = shadow;
    return pixel;
}

bool LowColorDisplay(int32_t bits) { return bits == 4 || bits == 8; }

int32_t CursorForPointer(int32_t p)
{
    // IDC_* numbers: arrow 32512, cross 32515, I-beam 32513, size-all 32646, NE-SW 32643,
    // N-S 32645, NW-SE 32642, W-E 32644, up arrow 32516, wait 32514, no 32648,
    // app-starting 32650, help 32651, hand 32649.
    switch (p) {
    case 1: return 32512;
    case 2: return 32515;
    case 3: return 32513;
    case 4: return 32512;
    case 5: return 32646;
    case 6: return 32643;
    case 7: return 32645;
    case 8: return 32642;
    case 9: return 32644;
    case 10: return 32516;
    case 11: return 32514;
    case 12: return 32648;
    case 13: return 32650;
    case 14: return 32651;
    case 15: return 32646;
    default: return 0;
    }
}

TipPlace PlaceTip(int32_t cx, int32_t cy, int32_t cursor_h, int32_t w, int32_t h, const PxRect &work)
{
    int64_t x = cx, y = static_cast<int64_t>(cy) + cursor_h;
    if (x + w > work.right) x = static_cast<int64_t>(work.right) - w;
    if (x < work.left) x = work.left;
    if (y + h > work.bottom) y = static_cast<int64_t>(cy) - h; // no room below: above the pointer
    if (y + h > work.bottom) y = static_cast<int64_t>(work.bottom) - h;
    if (y < work.top) y = work.top;
    return {static_cast<int32_t>(x), static_cast<int32_t>(y)};
}

} // namespace tarn
