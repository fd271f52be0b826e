#include "inputs/updown_layout.h"
#include "inputs/updown_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <stdexcept>

#include "foundation/checked.h"
#include "foundation/colors.h"

using namespace tarn;

TEST(KeyLock, LetsDigitsBackspaceAndOnePointThrough)
{
    for (int16_t c = '0'; c <= '9'; ++c) EXPECT_EQ(c, KeyLock(c, true, L"12"));
    EXPECT_EQ(8, KeyLock(8, true, L"1.2"));
    EXPECT_EQ(8, KeyLock(8, false, L""));
    EXPECT_EQ('7', KeyLock('7', false, L"1.2"));
    EXPECT_EQ(46, KeyLock(46, true, L"12"));
    EXPECT_EQ(0, KeyLock(46, true, L"1.2")); // the second point
    EXPECT_EQ(0, KeyLock(46, false, L""));   // without the extra check no point at all
    // The full stop's key code never passes, with or without a point in the text.
    EXPECT_EQ(0, KeyLock(190, true, L"12"));
    EXPECT_EQ(0, KeyLock(190, true, L"1.2"));
    // No sign, separator, exponent, letter, control character or anything beyond 8 bits.
    for (int c : {int('-'), int('+'), int(','), int('e'), int('E'), int('a'), int(' '), 13, 9, 27, 0, -1, 302, 0x20AC,
                  SHRT_MIN, SHRT_MAX})
        EXPECT_EQ(0, KeyLock(static_cast<int16_t>(c), true, L"")) << c;
}

TEST(KeyLock, TypingSwallowsEveryPointUnlessAllowedAndThenTheSecond)
{
    EXPECT_EQ(0, TypedKey('.', false, L"12"));
    EXPECT_EQ('.', TypedKey('.', true, L"12"));
    EXPECT_EQ(0, TypedKey('.', true, L"1.2"));
    EXPECT_EQ('5', TypedKey('5', false, L""));
    EXPECT_EQ(8, TypedKey(8, false, L"1"));
    EXPECT_EQ(0, TypedKey('-', true, L""));
    EXPECT_EQ(0, TypedKey(',', true, L""));
}

TEST(DecimalPointCheck, FindsAPointAnywhere)
{
    EXPECT_EQ(1, DecimalPointCheck(L"1.5"));
    EXPECT_EQ(1, DecimalPointCheck(L"."));
    EXPECT_EQ(1, DecimalPointCheck(L"12."));
    EXPECT_EQ(0, DecimalPointCheck(L"12"));
    EXPECT_EQ(0, DecimalPointCheck(L""));
    EXPECT_EQ(0, DecimalPointCheck(L"1,5"));
}

TEST(Stepping, AddsTheIntervalInTheTextsFormat)
{
    EXPECT_EQ(L"11", SteppedText(L"10", 1, 0));
    EXPECT_EQ(L"10.5", SteppedText(L"9.5", 1, 1));
    EXPECT_EQ(L"11", SteppedText(L"9.5", 1, 0)); // 10.5, rounded half away from zero
    EXPECT_EQ(L"-1", SteppedText(L"0", -1, 0));
    EXPECT_EQ(L"3.5", SteppedText(L"1", 2.5, 1));
    EXPECT_EQ(L"0.0", SteppedText(L"0.04", -0.05, 1)); // never "-0.0"
    EXPECT_THROW(SteppedText(L"", 1, 0), std::invalid_argument);
    EXPECT_THROW(SteppedText(L"abc", 1, 0), std::invalid_argument);
    EXPECT_THROW(SteppedText(L"1e308", 1e308, 0), Overflow);
}

TEST(Stepping, BoundsAreWholeNumbersInEitherFormat)
{
    EXPECT_EQ(L"10", AboveMax(L"11", 10, 0).value());
    EXPECT_EQ(L"10.0", AboveMax(L"10.5", 10, 1).value());
    EXPECT_FALSE(AboveMax(L"10", 10, 0));
    EXPECT_FALSE(AboveMax(L"-3", 10, 1));
    EXPECT_EQ(L"0.0", BelowMin(L"-0.5", 0, 1).value());
    EXPECT_EQ(L"-2147483648", BelowMin(L"-2147483649", INT32_MIN, 0).value());
    EXPECT_EQ(L"2147483647.0", AboveMax(L"2147483648", INT32_MAX, 1).value());
    EXPECT_FALSE(BelowMin(L"0", 0, 0));
    EXPECT_THROW(AboveMax(L"ten", 10, 0), std::invalid_argument);
    EXPECT_THROW(BelowMin(L"", 0, 0), std::invalid_argument);
}

TEST(ShiftColor, ShiftsRedAndGreenLessFourAndBluePlainOrProportional)
{
    EXPECT_EQ(0, ShiftColor(0, 25, true));
    EXPECT_EQ(0, ShiftColor(0, -25, false));
    EXPECT_EQ(static_cast<int32_t>(make_rgb(251, 251, 255)), ShiftColor(0x00FFFFFF, 0, false));
    EXPECT_EQ(static_cast<int32_t>(make_rgb(251, 251, 255)), ShiftColor(0x00FFFFFF, 0, true));
    // RGB(236, 233, 216): +10 plain, and proportional (216 + 216 * 10 \ 192 = 227).
    const int32_t face = static_cast<int32_t>(make_rgb(236, 233, 216));
    EXPECT_EQ(static_cast<int32_t>(make_rgb(242, 239, 226)), ShiftColor(face, 10, false));
    EXPECT_EQ(static_cast<int32_t>(make_rgb(242, 239, 227)), ShiftColor(face, 10, true));
    EXPECT_EQ(static_cast<int32_t>(make_rgb(207, 204, 188)), ShiftColor(face, -25, true));
    // Clamped before the 4 comes off: a channel that ends below 4 fails RGB(), leaving 0.
    EXPECT_EQ(static_cast<int32_t>(make_rgb(251, 251, 255)), ShiftColor(0x00FFFFFF, 500, false));
    EXPECT_EQ(0, ShiftColor(0x00000101, 0, false));
}

TEST(ShiftColor, AnOverflowSkipsOnlyItsOwnStep)
{
    // blue * value overflows: blue keeps 255; red and green overflow too and stay 0, so the
    // result (RGB of -4, -4, 255) fails as a whole.
    EXPECT_EQ(0, ShiftColor(0x00FFFFFF, INT32_MAX, true));
    // Only the proportional product overflows: red and green still shift, blue stays.
    EXPECT_EQ(static_cast<int32_t>(make_rgb(251, 251, 255)), ShiftColor(0x00FFFFFF, 20'000'000, true));
    // A system colour's negative Long: its channels come out negative, clamp to 0 and fail RGB().
    EXPECT_EQ(0, ShiftColor(static_cast<int32_t>(0x80000005u), 100, false));
    EXPECT_EQ(0, ShiftColor(INT32_MIN, 0, true));
}

TEST(UpdownLayout, TextAndArrowsShareTheWidthAndTheTextIsCentred)
{
    const float W = 1500, H = 315;
    UpdownGeometry g = UpdownLayout(W, H, true, 1);
    EXPECT_FLOAT_EQ(W - 360, g.text.width);
    EXPECT_FLOAT_EQ(285, g.text.height);
    EXPECT_FLOAT_EQ(15, g.text.top);
    EXPECT_FLOAT_EQ(W - 360 + 90, g.arrows.left);
    EXPECT_LE(g.text.left + g.text.width, g.arrows.left);
    EXPECT_FLOAT_EQ(W - 30, g.arrows.left + g.arrows.width);
    EXPECT_FLOAT_EQ(30, g.arrows.top);
    EXPECT_FLOAT_EQ(H - 60, g.arrows.height);
    // Themed: the background box fills the control and carries a flat border; the border box
    // is the inner box and stays hidden.
    EXPECT_FLOAT_EQ(W, g.background.width);
    EXPECT_EQ(1, g.background_border);
    EXPECT_FALSE(g.border_shown);
    EXPECT_FLOAT_EQ(30, g.border.left);
    EXPECT_FLOAT_EQ(W - 60, g.border.width);
    EXPECT_EQ(0, UpdownLayout(W, H, true, 0).background_border);
    // Un-themed: the border box fills the control in the chosen style.
    UpdownGeometry old = UpdownLayout(W, H, false, 1);
    EXPECT_TRUE(old.border_shown);
    EXPECT_EQ(0, old.background_border);
    EXPECT_FLOAT_EQ(W, old.border.width);
    EXPECT_FLOAT_EQ(H, old.border.height);
    EXPECT_FLOAT_EQ(30, old.inner.top);
}

TEST(UpdownLayout, ATinyControlGetsNoNegativeSizes)
{
    UpdownGeometry g = UpdownLayout(100, 50, false, 1);
    EXPECT_FLOAT_EQ(0, g.text.width);
    EXPECT_FLOAT_EQ(285, g.text.height);
    EXPECT_FLOAT_EQ(0, g.inner.height);
    EXPECT_FLOAT_EQ(-117.5f, g.text.top); // above the control: accepted
}

TEST(UpdownLayout, TheHeightIsTheCombosInWholeTwips)
{
    EXPECT_FLOAT_EQ(315, UpdownHeight(315));
    EXPECT_FLOAT_EQ(316, UpdownHeight(315.5f));
    EXPECT_FLOAT_EQ(330, UpdownHeight(329.6f));
}
