#include "frames/cframe_layout.h"

#include <gtest/gtest.h>

using namespace tarn;

TEST(FrameInset, IsTwentyFiveOnceMetricsAreFilledAndMinus315Before)
{
    EXPECT_EQ(25, FrameInset(340 * 15, 15.0));
    EXPECT_EQ(25, FrameInset(340 * 10, 10.0)); // 144 DPI
    EXPECT_EQ(-315, FrameInset(0, 15.0));
}

TEST(LayoutFrame, PlacesTheLinesInTheLastPixelsAt96Dpi)
{
    FrameGeometry g = FrameDesignGeometry();
    const float W = 3000, H = 435; // 200 x 29 pixels
    LayoutFrame(g, W, H, 25, true, true);
    EXPECT_FLOAT_EQ(H - 12, g.left_highlight.Y2);
    EXPECT_FLOAT_EQ(H - 25, g.left_light_shadow.Y2);
    EXPECT_FLOAT_EQ(W, g.top_highlight.X2);
    EXPECT_FLOAT_EQ(15, g.top_light_shadow.X1);
    EXPECT_FLOAT_EQ(W - 15, g.top_light_shadow.X2);
    EXPECT_FLOAT_EQ(W - 12, g.right_dark_shadow.X1);
    EXPECT_FLOAT_EQ(W - 25, g.right_shadow.X1);
    EXPECT_FLOAT_EQ(H - 12, g.bottom_dark_shadow.Y1);
    EXPECT_FLOAT_EQ(H - 25, g.bottom_shadow.Y1);
    EXPECT_FLOAT_EQ(W - 15, g.bottom_shadow.X2);
    // Int(T / 2) = 12 lands in the last pixel row (423 / 15 = 28.2), T in the one before.
    EXPECT_EQ(28, static_cast<int>(g.bottom_dark_shadow.Y1 / 15));
    EXPECT_EQ(27, static_cast<int>(g.bottom_shadow.Y1 / 15));
    EXPECT_FLOAT_EQ(60, g.caption_left);
    EXPECT_FLOAT_EQ(30, g.caption_top);
    EXPECT_FLOAT_EQ(W - 125, g.caption_width);
    // Coordinates the layout does not name keep their design values.
    EXPECT_FLOAT_EQ(15, g.left_light_shadow.Y1);
    EXPECT_FLOAT_EQ(15, g.right_shadow.Y1);
    EXPECT_FLOAT_EQ(195, g.caption_height);
}

TEST(LayoutFrame, HiddenOuterLinesPullTheTopInnerLineInToT)
{
    FrameGeometry g = FrameDesignGeometry();
    LayoutFrame(g, 3000, 435, 25, false, false);
    EXPECT_FLOAT_EQ(25, g.top_light_shadow.X1);
    EXPECT_FLOAT_EQ(3000 - 25 - 12, g.top_light_shadow.X2);
}

TEST(LayoutFrame, FirstLayoutOfAThreadUsesMinus315)
{
    FrameGeometry g = FrameDesignGeometry();
    LayoutFrame(g, 3000, 435, -315, true, true);
    EXPECT_FLOAT_EQ(435 + 158, g.left_highlight.Y2); // Int(-157.5) = -158
    EXPECT_FLOAT_EQ(435 + 315, g.left_light_shadow.Y2);
    EXPECT_FLOAT_EQ(3000 + 158, g.right_dark_shadow.X1);
}

TEST(LayoutFrame, NarrowFrameKeepsItsCaptionWidthAndTinyOnesGoNegative)
{
    FrameGeometry g = FrameDesignGeometry();
    LayoutFrame(g, 100, 435, 25, true, true);
    EXPECT_FLOAT_EQ(330, g.caption_width);
    LayoutFrame(g, 125, 10, 25, true, true);
    EXPECT_FLOAT_EQ(330, g.caption_width); // W - 125 = 0 is not greater than 0
    EXPECT_FLOAT_EQ(10 - 25, g.bottom_shadow.Y1); // a line outside the frame, no failure
    LayoutFrame(g, -3000, -435, 25, true, true);
    EXPECT_FLOAT_EQ(-3000 - 15, g.bottom_shadow.X2);
}
