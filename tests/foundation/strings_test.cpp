#include "foundation/strings.h"

#include <gtest/gtest.h>

using tarn::StringPiece;
using tarn::StringWordCount;

TEST(StringPiece, PicksPiecesCountedFromOneAndTheDigitZeroForMissingOnes)
{
    EXPECT_EQ(L"a", StringPiece(L"a,b,c", L",", 1));
    EXPECT_EQ(L"c", StringPiece(L"a,b,c", L",", 3));
    EXPECT_EQ(L"", StringPiece(L"a,,c", L",", 2));
    EXPECT_EQ(L"", StringPiece(L"", L",", 1));
    EXPECT_EQ(L"", StringPiece(L"a,", L",", 2)); // a trailing delimiter ends with an empty piece
    EXPECT_EQ(L"0", StringPiece(L"a,b,c", L",", 4));
    EXPECT_EQ(L"0", StringPiece(L"a,b,c", L",", 0));
    EXPECT_EQ(L"0", StringPiece(L"a,b,c", L",", INT32_MIN));
    EXPECT_EQ(L"0", StringPiece(L"", L",", 2));
    // Only a one-character delimiter splits, and its case counts.
    EXPECT_EQ(L"a,b", StringPiece(L"a,b", L",,", 1));
    EXPECT_EQ(L"0", StringPiece(L"a,b", L",,", 2));
    EXPECT_EQ(L"a,b", StringPiece(L"a,b", L"", 1));
    EXPECT_EQ(L"BXC", StringPiece(L"AxBXC", L"x", 2));
}

TEST(StringWordCount, CountsPiecesOfAnyDelimiter)
{
    EXPECT_EQ(0, StringWordCount(L"", L","));
    EXPECT_EQ(1, StringWordCount(L"abc", L","));
    EXPECT_EQ(3, StringWordCount(L"a,,b", L","));
    EXPECT_EQ(2, StringWordCount(L"a,,b", L",,"));
    EXPECT_EQ(3, StringWordCount(L"a\\b\\", L"\\"));
    EXPECT_EQ(1, StringWordCount(L"aXb", L"x"));
    EXPECT_EQ(1, StringWordCount(L"abc", L""));
}
