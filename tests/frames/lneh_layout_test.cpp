// The captioned line's layout: the caption where its alignment puts it, the line's pieces a
// gap away from it, a line the whole width without a caption, and captions that do not fit.
#include <gtest/gtest.h>

#include "frames/lneh_layout.h"

using namespace tarn;

TEST(CaptionLineLayout, TheCaptionGoesWhereItsAlignmentSaysAndTheLineFillsTheRest)
{
    const struct {
        const char *what;
        int width, caption, alignment;
        Span caption_span, left, right;
    } cases[] = {
        {"left", 200, 50, 0, {0, 50}, {}, {54, 200}},
        {"right", 200, 50, 1, {150, 200}, {0, 146}, {}},
        {"centre", 200, 50, 2, {75, 125}, {0, 71}, {129, 200}},
        {"an unknown alignment is left", 200, 50, 7, {0, 50}, {}, {54, 200}},
        {"no caption: the whole width", 200, 0, 2, {}, {}, {0, 200}},
        {"a caption wider than the control", 40, 50, 2, {0, 40}, {}, {}},
        {"a caption that leaves less than the gap", 52, 50, 0, {0, 50}, {}, {}},
        {"no width at all", -10, 50, 1, {0, 0}, {}, {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        CaptionLineLayout l = LayOutCaptionLine(c.width, c.caption, 13, c.alignment, 4);
        EXPECT_EQ(c.caption_span, l.caption);
        EXPECT_EQ(c.left, l.left);
        EXPECT_EQ(c.right, l.right);
    }
    // The two rows in the middle of the caption's line, never above the control.
    EXPECT_EQ(5, LayOutCaptionLine(100, 0, 13, 0, 4).dark_row);
    EXPECT_EQ(9, LayOutCaptionLine(100, 0, 20, 0, 4).dark_row);
    EXPECT_EQ(0, LayOutCaptionLine(100, 0, 1, 0, 4).dark_row);
}
