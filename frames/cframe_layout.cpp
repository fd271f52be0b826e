#include "frames/cframe_layout.h"

#include "foundation/checked.h"

#include <cmath>

namespace tarn {

FrameGeometry FrameDesignGeometry()
{
    FrameGeometry g{};
    g.left_highlight = {0, 0, 0, 1065};
    g.left_light_shadow = {15, 15, 15, 1065};
    g.top_highlight = {0, 0, 3510, 0};
    g.top_light_shadow = {0, 15, 3495, 15};
    g.right_dark_shadow = {2595, 0, 2595, 240};
    g.right_shadow = {2580, 15, 2580, 240};
    g.bottom_dark_shadow = {0, 255, 3510, 255};
    g.bottom_shadow = {15, 240, 3510, 240};
    g.caption_left = 240;
    g.caption_top = 15;
    g.caption_width = 330;
    g.caption_height = 195;
    return g;
}

int32_t FrameInset(int32_t metric_twips, double twips_per_pixel)
{
    return to_int32(metric_twips / twips_per_pixel - 315);
}

void LayoutFrame(FrameGeometry &g, float W, float H, int32_t T, bool left_outer_shown, bool right_outer_shown)
{
    const float t = static_cast<float>(T);
    const float half = static_cast<float>(std::floor(T / 2.0)); // Int(T / 2)

    g.caption_left = 60;
    g.caption_top = 30;
    if (W - 125 > 0) g.caption_width = W - 125;

    g.left_highlight.Y1 = 0;
    g.left_highlight.Y2 = H - half;
    g.left_light_shadow.Y2 = H - t;

    g.top_highlight.X1 = 0;
    g.top_highlight.X2 = W;
    g.top_light_shadow.X1 = left_outer_shown ? 15 : t;
    g.top_light_shadow.X2 = right_outer_shown ? W - 15 : W - t - half;

    g.right_shadow.X1 = W - t;
    g.right_shadow.X2 = W - t;
    g.right_shadow.Y2 = H - t;

    g.right_dark_shadow.X1 = W - half;
    g.right_dark_shadow.X2 = W - half;
    g.right_dark_shadow.Y2 = H - half;

    // The fixed 15-twip insets here do not follow T; the mix is part of the frame's look.
    g.bottom_shadow.X1 = 15;
    g.bottom_shadow.X2 = W - 15;
    g.bottom_shadow.Y1 = H - t;
    g.bottom_shadow.Y2 = H - t;

    g.bottom_dark_shadow.X1 = 0;
    g.bottom_dark_shadow.X2 = W;
    g.bottom_dark_shadow.Y1 = H - half;
    g.bottom_dark_shadow.Y2 = H - half;
}

} // namespace tarn
