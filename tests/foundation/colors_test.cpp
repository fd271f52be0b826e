#include "foundation/checked.h"
#include "foundation/colors.h"

#include <gtest/gtest.h>

using namespace tarn;

TEST(BlendRgb, WeightsRunFromSecondToFirstAndOverflowFailsInsteadOfWrapping)
{
    const Rgb white = make_rgb(255, 255, 255), black = 0;
    EXPECT_EQ(0x808080u, BlendRgb(white, black, 128));
    EXPECT_EQ(white, BlendRgb(white, black, 255));
    EXPECT_EQ(black, BlendRgb(white, black, 0));
    EXPECT_THROW(BlendRgb(white, black, 20'000'000), Overflow); // 255 * alpha > 2^31
    EXPECT_THROW(BlendRgb(black, make_rgb(255, 0, 0), -20'000'000), Overflow);
    // Weights outside 0..255 that do not overflow follow the contract's RGB(): above 255 is 255.
    EXPECT_EQ(white, BlendRgb(white, black, 300));
}

TEST(AdjustColor, ShiftsRedAndGreenPlainlyAndBlueProportionallyAndOverflowIsAnError)
{
    const Rgb face = make_rgb(236, 233, 216);
    EXPECT_EQ(make_rgb(211, 208, 188), AdjustColor(face, -25, true)); // blue 216 - 216*25/192 = 188
    EXPECT_EQ(make_rgb(255, 255, 244), AdjustColor(face, 25, true));
    EXPECT_EQ(make_rgb(211, 208, 191), AdjustColor(face, -25, false));
    EXPECT_EQ(make_rgb(0, 0, 0), AdjustColor(make_rgb(10, 10, 10), -300, false)); // clamped
    EXPECT_THROW(AdjustColor(make_rgb(255, 255, 255), INT32_MAX, false), Overflow);
    EXPECT_THROW(AdjustColor(make_rgb(0, 0, 255), INT32_MAX / 2, true), Overflow); // blue * amount
}

TEST(Checked, SixteenAndThirtyTwoBitOverflowThrows)
{
    EXPECT_THROW(add16(32767, 1), Overflow);
    EXPECT_THROW(mul32(65536, 65536), Overflow);
    EXPECT_THROW(idiv32(INT32_MIN, -1), Overflow);
    EXPECT_THROW(idiv32(1, 0), Overflow);
    EXPECT_EQ(-28, idiv32(-5400, 192)); // truncates toward zero
    EXPECT_EQ(2, to_int32(2.5));        // halves to even
    EXPECT_EQ(4, to_int32(3.5));
    EXPECT_THROW(to_int16(32767.6), Overflow);
}
