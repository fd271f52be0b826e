#include "frames/cframe_layout.h"

#include <gtest/gtest.h>

using namespace tarn;

TEST(FrameLayout, TheInsetIs25OnceMetricsAreFilledAndMinus315OnAThreadsFirstLayout)
{
    EXPECT_EQ(25, FrameInset(340 * 15, 15.0));
    EXPECT_EQ(25, FrameInset(340 * 10, 10.0)); // 144 DPI
    EXPECT_EQ(-315, FrameInset(0, 15.0));
    // With T = -315 the lines land outside the frame.
    FrameGeometry g = FrameDesignGeometry();
    LayoutFrame(g, 3000, 435, -315, true, true);
    EXPECT_FLOAT_EQ(435 + 158, g.left_highlight.Y2); // Int(-157.5) = -158
    EXPECT_FLOAT_EQ(435 + 315, g.left_light_shadow.Y2);
    EXPECT_FLOAT_EQ(3000 + 158, g.right_dark_shadow.X1);
    // Otherwise the outer lines sit Int(T / 2) in from the edges and the inner ones T.
    const float W = 3000, H = 435; // 200 x 29 pixels
    LayoutFrame(g, W, H, 25, true, true);
    EXPECT_FLOAT_EQ(H - 12, g.left_highlight.Y2);
    EXPECT_FLOAT_EQ(H - 25, g.left_light_shadow.Y2);
    EXPECT_FLOAT_EQ(W - 12, g.right_dark_shadow.X1);
    EXPECT_FLOAT_EQ(W - 25, g.right_shadow.X1);
    EXPECT_FLOAT_EQ(H - 12, g.bottom_dark_shadow.Y1);
    EXPECT_FLOAT_EQ(H - 25, g.bottom_shadow.Y1);
    EXPECT_FLOAT_EQ(W - 125, g.caption_width);
    // The top and bottom inner lines keep a fixed 15 from the sides while the outer lines show;
    // hidden outer lines pull the top one in to T.
    EXPECT_FLOAT_EQ(15, g.top_light_shadow.X1);
    EXPECT_FLOAT_EQ(W - 15, g.top_light_shadow.X2);
    EXPECT_FLOAT_EQ(W - 15, g.bottom_shadow.X2);
    LayoutFrame(g, W, H, 25, false, false);
    EXPECT_FLOAT_EQ(25, g.top_light_shadow.X1);
    EXPECT_FLOAT_EQ(W - 25 - 12, g.top_light_shadow.X2);
    // A frame too small keeps its caption width and puts lines outside itself, without failing.
    LayoutFrame(g, 125, 10, 25, true, true);
    EXPECT_FLOAT_EQ(W - 125, g.caption_width); // the last one: 125 - 125 = 0 is not greater than 0
    EXPECT_FLOAT_EQ(10 - 25, g.bottom_shadow.Y1);
}
