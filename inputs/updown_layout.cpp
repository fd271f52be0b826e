#include "inputs/updown_layout.h"

#include "foundation/numbers.h"

namespace tarn {

namespace {
constexpr float kInset = 30, kTextHeight = 285, kTextNarrower = 360, kArrowOffset = 90, kTextLeft = 60;
} // namespace

UpdownGeometry UpdownLayout(float W, float H, bool themed, int16_t border_style)
{
    UpdownGeometry g{};
    g.background = {0, 0, W, H};
    g.inner = {kInset, kInset, W - 2 * kInset, H - 2 * kInset};
    g.text = {kTextLeft, (H - kTextHeight) / 2, W - kTextNarrower, kTextHeight};
    g.arrows = {W - kTextNarrower + kArrowOffset, kInset, kTextNarrower - kArrowOffset - kInset, H - 2 * kInset};
    if (themed) {
        g.border = g.inner;
        g.border_shown = false;
        g.background_border = border_style == 1 ? 1 : 0;
    } else {
        g.border = {0, 0, W, H};
        g.border_shown = true;
        g.background_border = 0;
    }
    // A control too small for its parts: sizes below 0 are 0.
    for (PartBox *b : {&g.background, &g.border, &g.inner, &g.text, &g.arrows}) {
        if (b->width < 0) b->width = 0;
        if (b->height < 0) b->height = 0;
    }
    return g;
}

float UpdownHeight(float combo_height)
{
    return static_cast<float>(LeadingNumber(FormatFixed(combo_height, 0)));
}

} // namespace tarn
