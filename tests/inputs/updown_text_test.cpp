#include "inputs/updown_layout.h"
#include "inputs/updown_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <stdexcept>

#include "foundation/colors.h"

using namespace tarn;

TEST(KeyLock, LetsDigitsBackspaceAndOnePointThrough)
{
    for (int16_t c = '0'; c <= '9'; ++c) EXPECT_EQ(c, KeyLock(c, true, L"12"));
    EXPECT_EQ(8, KeyLock(8, false, L""));
    EXPECT_EQ(0, KeyLock(46, false, L""));   // without the extra check no point at all
    EXPECT_EQ(0, KeyLock(190, true, L"12")); // the full stop's key code never passes
    // No sign, separator, exponent, letter, control character or anything beyond 8 bits.
    for (int c : {int('-'), int('+'), int(','), int('e'), int('E'), int('a'), int(' '), 13, 9, 27, 0, -1, 302, 0x20AC,
                  SHRT_MIN, SHRT_MAX})
        EXPECT_EQ(0, KeyLock(static_cast<int16_t>(c), true, L"")) << c;
    for (const wchar_t *text : {L"1.5", L".", L"12."}) EXPECT_EQ(1, DecimalPointCheck(text));
    for (const wchar_t *text : {L"12", L"", L"1,5"}) EXPECT_EQ(0, DecimalPointCheck(text));
}

TEST(Stepping, AddsTheIntervalInTheTextsFormatAndClampsToWholeBounds)
{
    EXPECT_EQ(L"11", SteppedText(L"9.5", 1, 0)); // 10.5, rounded half away from zero
    EXPECT_EQ(L"-1", SteppedText(L"0", -1, 0));
    EXPECT_EQ(L"0.0", SteppedText(L"0.04", -0.05, 1)); // never "-0.0"
    EXPECT_THROW(SteppedText(L"", 1, 0), std::invalid_argument);
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
    const auto rgb = [](int r, int g, int b) { return static_cast<int32_t>(make_rgb(r, g, b)); };
    EXPECT_EQ(0, ShiftColor(0, 25, true));
    EXPECT_EQ(rgb(251, 251, 255), ShiftColor(0x00FFFFFF, 0, true));
    // RGB(236, 233, 216): +10 plain, and proportional (216 + 216 * 10 \ 192 = 227).
    const int32_t face = rgb(236, 233, 216);
    EXPECT_EQ(rgb(242, 239, 226), ShiftColor(face, 10, false));
    EXPECT_EQ(rgb(242, 239, 227), ShiftColor(face, 10, true));
    EXPECT_EQ(rgb(207, 204, 188), ShiftColor(face, -25, true));
    // Clamped before the 4 comes off: a channel that ends below 4 fails RGB(), leaving 0.
    EXPECT_EQ(rgb(251, 251, 255), ShiftColor(0x00FFFFFF, 500, false));
    EXPECT_EQ(0, ShiftColor(0x00000101, 0, false));
    // An overflow skips only its own step: here only the proportional product overflows, so
    // red and green still shift and blue stays.
    EXPECT_EQ(rgb(251, 251, 255), ShiftColor(0x00FFFFFF, 20'000'000, true));
    // A system colour's negative Long: its channels come out negative, clamp to 0 and fail RGB().
    EXPECT_EQ(0, ShiftColor(static_cast<int32_t>(0x80000005u), 100, false));
    EXPECT_EQ(0, ShiftColor(INT32_MIN, 0, true));
}

TEST(UpdownLayout, TextAndArrowsShareTheWidthAndATinyControlGetsNoNegativeSizes)
{
    const float W = 1500, H = 315;
    UpdownGeometry g = UpdownLayout(W, H, true, 1);
    EXPECT_FLOAT_EQ(W - 360, g.text.width);
    EXPECT_FLOAT_EQ(285, g.text.height);
    EXPECT_FLOAT_EQ(15, g.text.top); // centred
    EXPECT_FLOAT_EQ(W - 360 + 90, g.arrows.left);
    EXPECT_LE(g.text.left + g.text.width, g.arrows.left);
    EXPECT_FLOAT_EQ(W - 30, g.arrows.left + g.arrows.width);
    EXPECT_FLOAT_EQ(H - 60, g.arrows.height);
    // A tiny control gets no negative sizes, though its text may sit above it.
    UpdownGeometry tiny = UpdownLayout(100, 50, false, 1);
    EXPECT_FLOAT_EQ(0, tiny.text.width);
    EXPECT_FLOAT_EQ(0, tiny.inner.height);
    EXPECT_FLOAT_EQ(-117.5f, tiny.text.top);
    // The height is the combo's in whole twips.
    EXPECT_FLOAT_EQ(316, UpdownHeight(315.5f));
    EXPECT_FLOAT_EQ(330, UpdownHeight(329.6f));
}
