// The button's pure logic: layout per picture case, the glyph colour table, pointer cursors
// and where the tooltip goes.
#include <gtest/gtest.h>

#include "buttons/cbtn_layout.h"

using namespace tarn;

TEST(ButtonLayout, TheCaptionStartsAt2Or23Or26AfterThePicture)
{
    struct Case {
        bool picture;
        int32_t pw, ph, caption_left, caption2_left;
        bool fits;
        PxRect rects[6]; // all zero without a picture
    };
    // A picture fits while its height less 8 is below the button's: 32 - 8 < 25, 33 - 8 is not.
    const Case cases[] = {
        {false, 16, 16, 2, 0, false, {}},
        {true, 16, 32, 23, 21, true, {{0, 0, 100, 17}, {1, 1, 100, 17}, {4, 4, 96, 21}, {1, 1, 93, 18}, {1, 1, 93, 18}, {0, 0, 92, 17}}},
        {true, 64, 33, 26, 26, false, {{0, 0, 100, 17}, {-1, -1, 100, 16}, {4, 4, 96, 21}, {1, 1, 99, 18}, {-1, 0, 99, 18}, {0, 0, 99, 17}}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.caption_left);
        ButtonLayout L = LayoutButton(100, 25, c.picture, c.pw, c.ph);
        EXPECT_EQ(c.fits, L.picture_fits);
        EXPECT_EQ((PxRect{c.caption_left, 0, 100, 23}), L.caption);
        EXPECT_EQ((PxRect{c.caption2_left, 0, 100, 23}), L.caption2);
        for (int i = 0; i < 6; ++i) EXPECT_EQ(c.rects[i], L.rects[i]) << i;
    }
    EXPECT_EQ(0, LayoutButton(100, 25, false, 16, 16).picture.width());
    PxRect fits = LayoutButton(100, 25, true, 16, 32).picture;
    EXPECT_EQ(2, fits.left);
    EXPECT_EQ(16, fits.width());
    // Shrunk into the 22-pixel strip keeping its proportions.
    PxRect shrunk = LayoutButton(100, 25, true, 64, 33).picture;
    EXPECT_LE(shrunk.width(), 22);
    EXPECT_LE(shrunk.right, 24);
    EXPECT_GE(shrunk.left, 2);
    EXPECT_NEAR(64.0 / 33.0, static_cast<double>(shrunk.width()) / shrunk.height(), 0.2);
}

TEST(ButtonLayout, DegenerateSizesStayHarmless)
{
    for (int32_t W : {0, 1, -5, 100000})
        for (int32_t H : {0, 1, -7, 100000})
            for (int32_t pic : {0, 16, 2147483647}) {
                PxRect p = LayoutButton(W, H, true, pic, pic).picture;
                EXPECT_GE(p.width(), 0) << W << "x" << H << ", picture " << pic;
                EXPECT_GE(p.height(), 0) << W << "x" << H << ", picture " << pic;
            }
}

TEST(ButtonColours, GlyphTableTintIsThreeProportionalAdjustments)
{
    GlyphColors t = GlyphColorTable(make_rgb(212, 208, 200));
    // +22: (234, 230, 200 + 200*22/192 = 222); +24: (255, 254, 222 + 222*24/192 = 249);
    // -24: (231, 230, 249 - 249*24/192 = 249 - 31 = 218).
    EXPECT_EQ(make_rgb(231, 230, 218), t.entry[2]);
    // Only the key colours change; magenta first, then grey.
    const Rgb tint = make_rgb(1, 2, 3), shadow = make_rgb(9, 9, 9);
    EXPECT_EQ(tint, RecolorPixel(make_rgb(255, 0, 255), tint, shadow));
    EXPECT_EQ(shadow, RecolorPixel(make_rgb(128, 128, 128), tint, shadow));
    EXPECT_EQ(make_rgb(0, 0, 0), RecolorPixel(make_rgb(0, 0, 0), tint, shadow));
    // A tint that is itself the grey key is replaced once more, as the second test reads again.
    EXPECT_EQ(shadow, RecolorPixel(make_rgb(255, 0, 255), make_rgb(128, 128, 128), shadow));
}

TEST(ButtonPointer, MousePointerValuesMapToSystemCursors)
{
    // Cross, I-beam and hourglass; none for the default, the custom pointer and unknown values.
    const int32_t cases[][2] = {{2, 32515}, {3, 32513}, {11, 32514}, {0, 0}, {kCustomPointer, 0}, {16, 0}, {-1, 0}};
    for (auto [pointer, cursor] : cases) EXPECT_EQ(cursor, CursorForPointer(pointer)) << pointer;
}

TEST(TooltipPlace, BelowThePointerAndKeptOnTheWorkArea)
{
    const PxRect work{0, 0, 800, 600};
    auto place = [](int32_t x, int32_t y, int32_t cursor_h, int32_t w, int32_t h, const PxRect &area) {
        TipPlace t = PlaceTip(x, y, cursor_h, w, h, area);
        return std::pair{t.x, t.y};
    };
    EXPECT_EQ(std::pair(100, 120), place(100, 100, 20, 50, 18, work));
    // Right edge: pulled left; bottom edge: above the pointer.
    EXPECT_EQ(std::pair(750, 120), place(790, 100, 20, 50, 18, work));
    EXPECT_EQ(std::pair(100, 572), place(100, 590, 20, 50, 18, work));
    // Wider than the screen: starts at its left edge.
    EXPECT_EQ(std::pair(0, 120), place(100, 100, 20, 2000, 18, work));
    // A work area that does not start at 0 (a second monitor, a taskbar on the left).
    EXPECT_EQ(std::pair(-1024, 40), place(-2000, 0, 20, 100, 18, {-1024, 40, 0, 768}));
    // Extreme coordinates do not overflow.
    EXPECT_EQ(std::pair(790, 590), place(2147483647, 2147483647, 2147483647, 10, 10, work));
}
