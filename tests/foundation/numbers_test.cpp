#include "foundation/font_spec.h"
#include "foundation/numbers.h"

#include <gtest/gtest.h>

using namespace tarn;

TEST(Numbers, LeadingNumberReadsTheStartAndToDoubleOnlyAWholeNumber)
{
    EXPECT_DOUBLE_EQ(6.1, LeadingNumber(L"6.1"));
    EXPECT_DOUBLE_EQ(5.0, LeadingNumber(L" 5.0 build"));
    EXPECT_DOUBLE_EQ(1.0, LeadingNumber(L"1,5"));
    EXPECT_DOUBLE_EQ(-2.0, LeadingNumber(L"-2x"));
    EXPECT_DOUBLE_EQ(0.0, LeadingNumber(L""));
    EXPECT_DOUBLE_EQ(0.0, LeadingNumber(L"."));
    EXPECT_DOUBLE_EQ(1200.0, LeadingNumber(L"1.2e3"));
    EXPECT_DOUBLE_EQ(1.0, LeadingNumber(L"1e")); // an exponent without digits is not part of it
    EXPECT_DOUBLE_EQ(0.0, LeadingNumber(L"1e999999")); // out of range reads as nothing
    EXPECT_DOUBLE_EQ(12.0, ToDouble(L" 12 "));
    EXPECT_THROW(ToDouble(L"12a"), std::invalid_argument);
    EXPECT_THROW(ToDouble(L""), std::invalid_argument);
}

TEST(Numbers, FormatFixedRoundsHalfAwayFromZeroWithoutSeparators)
{
    EXPECT_EQ(L"10", FormatFixed(10, 0));
    EXPECT_EQ(L"3.50", FormatFixed(3.5, 2));
    EXPECT_EQ(L"3", FormatFixed(2.5, 0));
    EXPECT_EQ(L"-3", FormatFixed(-2.5, 0));
    EXPECT_EQ(L"0.00", FormatFixed(-0.001, 2));
    EXPECT_EQ(L"1234567.00", FormatFixed(1234567, 2));
}

TEST(FontSpecFromLogFont, ConvertsHeightAndWeight)
{
    FontSpec f = FontSpecFromLogFont(L"Tahoma", -11, 400, 0, 0, 0, 0, 96);
    EXPECT_DOUBLE_EQ(8.25, f.size);
    EXPECT_FALSE(f.bold);
    EXPECT_TRUE(FontSpecFromLogFont(L"Tahoma", -11, 401, 0, 0, 0, 0, 96).bold);
    EXPECT_DOUBLE_EQ(8.0, FontSpecFromLogFont(L"x", 0, 400, 0, 0, 0, 0, 96).size);
    EXPECT_DOUBLE_EQ(12.0, FontSpecFromLogFont(L"x", 12, 400, 0, 0, 0, 0, 96).size);
    EXPECT_DOUBLE_EQ(8.5, FontSpecFromLogFont(L"x", -17, 400, 0, 0, 0, 0, 144).size);
    FontSpec styled = FontSpecFromLogFont(L"x", -11, 700, 1, 2, 3, 2, 96);
    EXPECT_TRUE(styled.italic && styled.underline && styled.strikethrough);
    EXPECT_EQ(2, styled.charset);
}
