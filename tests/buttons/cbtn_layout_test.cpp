// The button's pure logic: layout per picture case, window shapes, the glyph colour table,
// the low-colour rule, pointer cursors and where the tooltip goes.
#include <gtest/gtest.h>

#include "buttons/cbtn_layout.h"

using namespace tarn;

TEST(ButtonLayout, WithoutAPictureTheCaptionStartsTwoPixelsIn)
{
    ButtonLayout L = LayoutButton(100, 25, false, 16, 16);
    EXPECT_EQ((PxRect{2, 0, 100, 23}), L.caption);
    EXPECT_EQ((PxRect{0, 0, 100, 23}), L.caption2);
    EXPECT_EQ((PxRect{4, 4, 96, 21}), L.inner);
    EXPECT_EQ(0, L.picture.width());
    for (const PxRect &r : L.rects) EXPECT_EQ(PxRect{}, r);
}

TEST(ButtonLayout, APictureThatFitsMovesTheCaptionTo23)
{
    // Fits while its height less 8 is below the button's: 32 - 8 < 25.
    ButtonLayout L = LayoutButton(100, 25, true, 16, 32);
    EXPECT_TRUE(L.picture_fits);
    EXPECT_EQ(23, L.caption.left);
    EXPECT_EQ(21, L.caption2.left);
    const PxRect expected[6] = {{0, 0, 100, 17}, {1, 1, 100, 17}, {4, 4, 96, 21}, {1, 1, 93, 18}, {1, 1, 93, 18}, {0, 0, 92, 17}};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(expected[i], L.rects[i]) << i;
    EXPECT_EQ(2, L.picture.left);
    EXPECT_EQ(16, L.picture.width());
}

TEST(ButtonLayout, APictureThatDoesNotFitMovesBothCaptionsTo26AndShrinks)
{
    ButtonLayout L = LayoutButton(100, 25, true, 64, 33); // 33 - 8 is not below 25
    EXPECT_FALSE(L.picture_fits);
    EXPECT_EQ(26, L.caption.left);
    EXPECT_EQ(26, L.caption2.left);
    const PxRect expected[6] = {{0, 0, 100, 17}, {-1, -1, 100, 16}, {4, 4, 96, 21}, {1, 1, 99, 18}, {-1, 0, 99, 18}, {0, 0, 99, 17}};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(expected[i], L.rects[i]) << i;
    // Shrunk into the 22-pixel strip keeping its proportions.
    EXPECT_LE(L.picture.width(), 22);
    EXPECT_LE(L.picture.right, 24);
    EXPECT_GE(L.picture.left, 2);
    EXPECT_NEAR(64.0 / 33.0, static_cast<double>(L.picture.width()) / L.picture.height(), 0.2);
}

TEST(ButtonLayout, DegenerateSizesStayHarmless)
{
    for (int32_t W : {0, 1, -5, 100000})
        for (int32_t H : {0, 1, -7, 100000}) {
            ButtonLayout L = LayoutButton(W, H, true, 16, 16);
            EXPECT_GE(L.picture.width(), 0);
            EXPECT_GE(L.picture.height(), 0);
            L = LayoutButton(W, H, true, 0, 0);
            EXPECT_GE(L.picture.height(), 0);
            L = LayoutButton(W, H, true, 2147483647, 2147483647);
            EXPECT_GE(L.picture.width(), 0);
        }
}

TEST(ButtonLayout, ShapesPerType)
{
    EXPECT_EQ(ButtonShape::RoundedXP, ShapeOf(btype::WindowsXP));
    EXPECT_EQ(ButtonShape::RoundedXP, ShapeOf(btype::WindowsXPPressed));
    EXPECT_EQ(ButtonShape::Tab, ShapeOf(btype::ToolbarTabSelect));
    for (int32_t t : {0, 1, 2, 5, 14, 15, -1, 32767}) EXPECT_EQ(ButtonShape::Rectangle, ShapeOf(t)) << t;
}

TEST(ButtonColours, GlyphTableTintIsThreeProportionalAdjustments)
{
    Rgb face = make_rgb(212, 208, 200);
    GlyphColors t = GlyphColorTable(face);
    EXPECT_EQ(make_rgb(255, 0, 255), t.entry[0]);
    EXPECT_EQ(make_rgb(128, 128, 128), t.entry[1]);
    EXPECT_EQ(0x80000010u, t.entry[3]);
    // +22: (234, 230, 200 + 200*22/192 = 222); +24: (255, 254, 222 + 222*24/192 = 249);
    // -24: (231, 230, 249 - 249*24/192 = 249 - 31 = 218).
    EXPECT_EQ(make_rgb(231, 230, 218), t.entry[2]);
    // Only the key colours change; magenta first, then grey.
    EXPECT_EQ(make_rgb(1, 2, 3), RecolorPixel(make_rgb(255, 0, 255), make_rgb(1, 2, 3), make_rgb(9, 9, 9)));
    EXPECT_EQ(make_rgb(9, 9, 9), RecolorPixel(make_rgb(128, 128, 128), make_rgb(1, 2, 3), make_rgb(9, 9, 9)));
    // A tint that is itself the grey key is replaced once more, as the second test reads again.
    EXPECT_EQ(make_rgb(9, 9, 9), RecolorPixel(make_rgb(255, 0, 255), make_rgb(128, 128, 128), make_rgb(9, 9, 9)));
    EXPECT_EQ(make_rgb(0, 0, 0), RecolorPixel(make_rgb(0, 0, 0), make_rgb(1, 2, 3), make_rgb(9, 9, 9)));
}

TEST(ButtonColours, LowColourOnlyAtFourAndEightBits)
{
    EXPECT_TRUE(LowColorDisplay(4));
    EXPECT_TRUE(LowColorDisplay(8));
    for (int32_t b : {0, 1, 2, 15, 16, 24, 32, -8}) EXPECT_FALSE(LowColorDisplay(b)) << b;
}

TEST(ButtonPointer, MousePointerValuesMapToSystemCursors)
{
    EXPECT_EQ(0, CursorForPointer(0));
    EXPECT_EQ(0, CursorForPointer(kCustomPointer));
    EXPECT_EQ(32515, CursorForPointer(2)); // cross
    EXPECT_EQ(32513, CursorForPointer(3)); // I-beam
    EXPECT_EQ(32514, CursorForPointer(11)); // hourglass
    EXPECT_EQ(0, CursorForPointer(16));
    EXPECT_EQ(0, CursorForPointer(-1));
}

TEST(TooltipPlace, BelowThePointerAndKeptOnTheWorkArea)
{
    PxRect work{0, 0, 800, 600};
    EXPECT_EQ(100, PlaceTip(100, 100, 20, 50, 18, work).x);
    EXPECT_EQ(120, PlaceTip(100, 100, 20, 50, 18, work).y);
    // Right edge: pulled left; bottom edge: above the pointer.
    EXPECT_EQ(750, PlaceTip(790, 100, 20, 50, 18, work).x);
    EXPECT_EQ(572, PlaceTip(100, 590, 20, 50, 18, work).y);
    // Wider than the screen: starts at its left edge.
    EXPECT_EQ(0, PlaceTip(100, 100, 20, 2000, 18, work).x);
    // A work area that does not start at 0 (a second monitor, a taskbar on the left).
    PxRect shifted{-1024, 40, 0, 768};
    TipPlace t = PlaceTip(-2000, 0, 20, 100, 18, shifted);
    EXPECT_EQ(-1024, t.x);
    EXPECT_EQ(40, t.y);
    // Extreme coordinates do not overflow.
    t = PlaceTip(2147483647, 2147483647, 2147483647, 10, 10, work);
    EXPECT_EQ(790, t.x);
    EXPECT_EQ(590, t.y);
}
