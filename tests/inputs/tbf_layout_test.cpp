// The tab strip's pure rules: where the tabs go in each look, which tab a point and a key pick,
// and the access keys the captions mark.
#include "inputs/tbf_layout.h"

#include <gtest/gtest.h>

using namespace tarn;

TEST(TabLayout, TabsFitTheirCaptionsTheSelectedOneStandsOutAndTooManyNarrowAlike)
{
    // Classic: side by side from x 2, standing on the bottom line; the selected one 2 pixels
    // wider each side, from the top, over the line.
    std::vector<TabBox> t = TabLayout({30, 50, 40}, 400, 24, tabstyle::Classic, 1, 6);
    ASSERT_EQ(3u, t.size());
    EXPECT_EQ(2, t[0].left);
    EXPECT_EQ(44, t[0].right);
    EXPECT_EQ(2, t[0].top);
    EXPECT_EQ(23, t[0].bottom);
    EXPECT_EQ(42, t[1].left); // 44 - 2
    EXPECT_EQ(108, t[1].right);
    EXPECT_EQ(0, t[1].top);
    EXPECT_EQ(24, t[1].bottom);
    EXPECT_EQ(106, t[2].left);
    // Flat buttons: a gap, no tab in front.
    t = TabLayout({30, 50}, 400, 24, tabstyle::FlatButtons, 1, 6);
    EXPECT_EQ(44 + 3, t[1].left);
    EXPECT_EQ(1, t[1].top);
    // Too wide for the strip: all narrow in proportion, never below their padding.
    t = TabLayout({200, 200, 200}, 300, 24, tabstyle::Classic, 0, 6);
    EXPECT_LE(t[2].right, 300);
    EXPECT_EQ(t[1].right - t[1].left, t[2].right - t[2].left);
    t = TabLayout({50, 50}, 0, 24, tabstyle::XP, -1, 6);
    EXPECT_EQ(12, t[0].right - t[0].left);
    EXPECT_TRUE(TabLayout({}, 400, 24, tabstyle::Classic, 0, 6).empty());
}

TEST(TabAt, TheSelectedTabWinsWhereItOverlapsItsNeighbours)
{
    std::vector<TabBox> t = TabLayout({30, 30, 30}, 400, 24, tabstyle::Classic, 1, 6);
    EXPECT_EQ(0, TabAt(t, 1, 10, 10));
    EXPECT_EQ(1, TabAt(t, 1, t[0].right - 1, 10)); // the selected tab's widened edge
    EXPECT_EQ(1, TabAt(t, 1, 60, 1));              // only the selected tab reaches the top
    EXPECT_EQ(-1, TabAt(t, 1, 10, 1));
    EXPECT_EQ(-1, TabAt(t, 1, 399, 10));
    EXPECT_EQ(-1, TabAt({}, 0, 1, 1));
}

TEST(TabKeyTarget, CtrlTabWrapsArrowsStopAtTheEnds)
{
    constexpr int kTab = 9, kPgUp = 33, kPgDn = 34, kEnd = 35, kHome = 36, kLeft = 37, kUp = 38, kRight = 39,
                  kDown = 40, kA = 'A';
    const struct {
        int key;
        bool ctrl, shift;
        int current, expected;
    } cases[] = {
        {kTab, true, false, 0, 1},     {kTab, true, false, 3, 0},  {kTab, true, true, 0, 3},
        {kTab, true, true, 2, 1},      {kPgDn, true, false, 3, 0}, {kPgUp, true, false, 0, 3},
        {kTab, false, false, 0, -1},   {kRight, false, false, 3, -1}, {kRight, false, false, 1, 2},
        {kDown, false, false, 1, 2},   {kLeft, false, false, 0, -1},  {kUp, false, false, 2, 1},
        {kHome, false, false, 2, 0},   {kEnd, false, false, 0, 3},    {kEnd, false, false, 3, -1},
        {kRight, true, false, 1, -1},  {kA, false, false, 1, -1},     {kRight, false, false, -1, 1},
    };
    for (const auto &c : cases)
        EXPECT_EQ(c.expected, TabKeyTarget(c.key, c.ctrl, c.shift, 4, c.current))
            << c.key << (c.ctrl ? " ctrl" : "") << (c.shift ? " shift" : "") << " from " << c.current;
    EXPECT_EQ(-1, TabKeyTarget(kTab, true, false, 0, -1));
    EXPECT_EQ(-1, TabKeyTarget(kTab, true, false, 1, 0)); // one tab: nowhere to go
}

TEST(Mnemonics, ATabIsFoundByItsAccessKeyInEitherCase)
{
    const std::vector<std::wstring> captions{L"&Files", L"Ed&it", L"&Find", L"Fish && chips", L"&\u00e9t\u00e9"};
    EXPECT_EQ(0, TabWithMnemonic(captions, L'f')); // the first of two with the same key
    EXPECT_EQ(0, TabWithMnemonic(captions, L'F'));
    EXPECT_EQ(1, TabWithMnemonic(captions, L'I'));
    EXPECT_EQ(4, TabWithMnemonic(captions, L'\u00e9'));
    EXPECT_EQ(-1, TabWithMnemonic(captions, L'c')); // "&&" marks no key
    EXPECT_EQ(-1, TabWithMnemonic(captions, L'x'));
    EXPECT_EQ(-1, TabWithMnemonic(captions, L' '));
    EXPECT_EQ(-1, TabWithMnemonic(captions, 0));
}
