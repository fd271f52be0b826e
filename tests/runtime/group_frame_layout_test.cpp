// Where a group frame's border, fill and caption gap go: a full frame, frames collapsed to a
// line across or upright (how the separator bars are made), and captions that do not fit.
#include <gtest/gtest.h>

#include "runtime/group_frame_layout.h"

using namespace tarn;

TEST(GroupFrameLayout, BorderDropsHalfALineAndCollapsedFramesKeepATwoPixelLine)
{
    // Font line 13 pixels, caption 40 pixels, the gap 8 in with 2 pixels each side.
    const struct {
        const char *what;
        PixelRect frame;
        int text_height, caption;
        GroupFrameParts want;
    } cases[] = {
        {"full frame", {0, 0, 100, 50}, 13, 40, {{0, 0, 100, 50}, {0, 6, 100, 50}, {8, 0, 52, 13}, false, false}},
        {"no caption: the border still drops", {10, 20, 60, 90}, 13, 0, {{10, 20, 60, 90}, {10, 26, 60, 90}, {}, false, false}},
        {"no height: a captioned line", {0, 0, 100, 0}, 13, 40, {{0, 0, 100, 8}, {0, 6, 100, 8}, {8, 0, 52, 13}, true, false}},
        {"shorter than its caption", {0, 0, 100, 7}, 13, 0, {{0, 0, 100, 8}, {0, 6, 100, 8}, {}, true, false}},
        {"no width: an upright line", {3, -100, 3, 100}, 13, 0, {{3, -100, 5, 100}, {3, -94, 5, 100}, {}, false, true}},
        {"a caption wider than the frame is cut", {0, 0, 30, 50}, 13, 100, {{0, 0, 30, 50}, {0, 6, 30, 50}, {8, 0, 29, 13}, false, false}},
        {"a gap that would start past the border", {0, 0, 8, 50}, 13, 10, {{0, 0, 8, 50}, {0, 6, 8, 50}, {}, false, false}},
        {"a font of no height", {0, 0, 100, 50}, -4, 40, {{0, 0, 100, 50}, {0, 0, 100, 50}, {8, 0, 52, 0}, false, false}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        GroupFrameParts got = LayOutGroupFrame(c.frame, c.text_height, c.caption, 8, 2);
        EXPECT_EQ(c.want.fill, got.fill);
        EXPECT_EQ(c.want.border, got.border);
        EXPECT_EQ(c.want.caption.empty(), got.caption.empty());
        if (!c.want.caption.empty()) {
            EXPECT_EQ(c.want.caption, got.caption);
        }
        EXPECT_EQ(c.want.across, got.across);
        EXPECT_EQ(c.want.down, got.down);
    }
}
