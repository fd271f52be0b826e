// The frame's layout arithmetic: where its eight edge lines and its caption go for an inner
// size W x H (twips) and the inset T.
#pragma once
#include <cstdint>

namespace tarn {

struct LineTwips {
    float X1, Y1, X2, Y2;
};

struct FrameGeometry {
    LineTwips left_highlight, left_light_shadow;   // left edge: outer, inner
    LineTwips top_highlight, top_light_shadow;     // top edge
    LineTwips right_dark_shadow, right_shadow;     // right edge: outer, inner
    LineTwips bottom_dark_shadow, bottom_shadow;   // bottom edge
    float caption_left, caption_top, caption_width, caption_height;
};

// The positions the frame's constituents have at design time.
FrameGeometry FrameDesignGeometry();

// The inset T from the metric value converted to twips: twips / twips-per-pixel - 315, as a
// whole number (25 once the metrics record is filled, whose size word is 340; -315 before).
int32_t FrameInset(int32_t metric_twips, double twips_per_pixel);

// Moves the lines and the caption for a W x H frame; coordinates the layout does not name keep
// their value. `left_outer_shown` and `right_outer_shown` say whether the left and right outer
// lines' colours differ from the back colour.
void LayoutFrame(FrameGeometry &g, float W, float H, int32_t T, bool left_outer_shown, bool right_outer_shown);

} // namespace tarn
