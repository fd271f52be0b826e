// The resize lock's rules: loading, first display, writes of the maxima, and the exact bytes
// of the size-limit record it fills.
#include <gtest/gtest.h>

#include <cstring>

#include "services/resize_limits.h"

using namespace tarn;

namespace {
const ScreenTwips kScreen{15360, 11520}; // 1024 x 768 pixels at 15 twips per pixel
}

TEST(ResizeLimits, LoadingWithoutAMaximumTakesTheScreensSizeInTwips)
{
    ResizeLimits l;
    l.MaxWidth = 300;
    l.MaxHeight = 300;
    l.MinWidth = l.MinHeight = 200;
    SettleLoadedLimits(l, kScreen);
    EXPECT_EQ(15360, l.MaxWidth);
    EXPECT_EQ(11520, l.MaxHeight);
    EXPECT_EQ(200, l.MinWidth);
}

TEST(ResizeLimits, LoadingRaisesAMaximumBelowItsMinimum)
{
    ResizeLimits l;
    l.HasMaxSize = true;
    l.MaxWidth = 300;
    l.MinWidth = 400;
    l.MaxHeight = 500;
    l.MinHeight = 100;
    SettleLoadedLimits(l, kScreen);
    EXPECT_EQ(400, l.MaxWidth);
    EXPECT_EQ(500, l.MaxHeight);
    // Even the screen's size is raised to a larger minimum.
    ResizeLimits huge;
    huge.MinHeight = 20000;
    SettleLoadedLimits(huge, kScreen);
    EXPECT_EQ(20000, huge.MaxHeight);
}

TEST(ResizeLimits, FirstDisplayFillsOnlyWhatIsStillZero)
{
    ResizeLimits zero;
    FillUnsetLimits(zero, kScreen);
    EXPECT_EQ(15360, zero.MaxWidth);
    EXPECT_EQ(11520, zero.MaxHeight);
    EXPECT_EQ(200, zero.MinWidth);
    EXPECT_EQ(200, zero.MinHeight);
    ResizeLimits set{640, -1, 480, 50, true};
    FillUnsetLimits(set, kScreen);
    EXPECT_EQ(640, set.MaxWidth);
    EXPECT_EQ(-1, set.MinWidth);
    EXPECT_EQ(480, set.MaxHeight);
    EXPECT_EQ(50, set.MinHeight);
}

TEST(ResizeLimits, WritingAMaximumRaisesItWithHasMaxSizeAndIgnoresItWithout)
{
    ResizeLimits l{0, 400, 0, 200, true};
    int32_t value = 300;
    WriteMaximum(l, l.MaxWidth, l.MinWidth, value, kScreen.width);
    EXPECT_EQ(400, l.MaxWidth);
    EXPECT_EQ(400, value); // the caller's variable receives the raised value
    value = 900;
    WriteMaximum(l, l.MaxWidth, l.MinWidth, value, kScreen.width);
    EXPECT_EQ(900, l.MaxWidth);
    l.HasMaxSize = false;
    value = 300;
    WriteMaximum(l, l.MaxHeight, l.MinHeight, value, kScreen.height);
    EXPECT_EQ(11520, l.MaxHeight);
    EXPECT_EQ(300, value); // ignored, and left as it was
}

TEST(ResizeLimits, TheRecordGetsTheTrackingSizesAndNothingElse)
{
    unsigned char record[kMinMaxInfoSize];
    for (size_t i = 0; i < sizeof record; ++i) record[i] = static_cast<unsigned char>(0xA0 + i);
    unsigned char before[kMinMaxInfoSize];
    std::memcpy(before, record, sizeof record);
    ResizeLimits l{0x01020304, 200, -2, 0x7FFFFFFF, true};
    PatchMinMaxInfo(record, l);
    EXPECT_EQ(0, std::memcmp(before, record, 24)); // reserved, maximised size and position
    int32_t fields[4];
    std::memcpy(fields, record + 24, sizeof fields);
    EXPECT_EQ(200, fields[0]);        // minimum tracking width
    EXPECT_EQ(0x7FFFFFFF, fields[1]); // minimum tracking height
    EXPECT_EQ(0x01020304, fields[2]); // maximum tracking width
    EXPECT_EQ(-2, fields[3]);         // maximum tracking height
    EXPECT_EQ(0x04, record[32]);      // little-endian
}
