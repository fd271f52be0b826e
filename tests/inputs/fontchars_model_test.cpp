// The picker's pure side: a font's characters grouped by block, the keys' moves through the
// grid and across blocks, keeping a character in view, typing a name's first letters, and code
// points as text.
#include "inputs/fontchars_model.h"
#include "inputs/unicode_blocks.h"

#include <gtest/gtest.h>

using namespace tarn;

TEST(CharGrid, GroupsCharactersByBlockInCodePointOrder)
{
    CharGrid g({0x3B1, 0x41, 0x20AC, 0x42, 0x41, 0x1AB0, 0xE000});
    ASSERT_EQ(5, g.BlockCount());
    EXPECT_EQ(L"Basic Latin", g.BlockName(0));
    EXPECT_EQ((std::vector<uint32_t>{0x41, 0x42}), g.Chars(0)); // the repeat dropped
    EXPECT_EQ(L"Greek and Coptic", g.BlockName(1));
    EXPECT_EQ(L"Other", g.BlockName(2)); // in no block the picker names
    EXPECT_EQ(L"Currency Symbols", g.BlockName(3));
    EXPECT_EQ(L"Private Use Area", g.BlockName(4));
    EXPECT_EQ((GridSpot{3, 0}), g.Find(0x20AC));
    EXPECT_EQ(-1, g.Find(0x43).block);
    EXPECT_EQ(0x42u, g.At(GridSpot{0, 1}));
    EXPECT_EQ(0u, g.At(GridSpot{9, 0}));
    EXPECT_TRUE(CharGrid(std::vector<uint32_t>{}).empty());
    EXPECT_EQ(nullptr, BlockOf(0x10000));
    EXPECT_EQ(std::wstring(L"Specials"), BlockOf(0xFFFF)->name);
    EXPECT_EQ(std::wstring(L"Latin-1 Supplement"), BlockOf(0x80)->name);
}

TEST(CharGrid, KeysMoveThroughTheGridAndOnIntoTheNeighbouringBlocks)
{
    // Block 0: ten characters; block 1: three; block 2: one. Four columns, two rows a page.
    std::vector<uint32_t> cps;
    for (uint32_t c = 0x41; c < 0x4B; ++c) cps.push_back(c);
    for (uint32_t c = 0x3B1; c < 0x3B4; ++c) cps.push_back(c);
    cps.push_back(0x20AC);
    const CharGrid g(cps);
    constexpr int kPgUp = 33, kPgDn = 34, kEnd = 35, kHome = 36, kLeft = 37, kUp = 38, kRight = 39, kDown = 40;
    const struct {
        GridSpot from;
        int key;
        bool ctrl;
        GridSpot to;
    } moves[] = {
        {{0, 0}, kRight, false, {0, 1}},  {{0, 9}, kRight, false, {1, 0}}, {{1, 0}, kLeft, false, {0, 9}},
        {{0, 0}, kLeft, false, {0, 0}},   {{2, 0}, kRight, false, {2, 0}}, {{0, 1}, kDown, false, {0, 5}},
        {{0, 7}, kDown, false, {0, 9}},   {{0, 9}, kDown, false, {1, 0}},  {{0, 5}, kUp, false, {0, 1}},
        {{0, 2}, kUp, false, {0, 0}},     {{1, 0}, kUp, false, {0, 9}},    {{0, 0}, kPgDn, false, {0, 8}},
        {{0, 8}, kPgDn, false, {0, 9}},   {{0, 9}, kPgDn, false, {1, 0}},  {{1, 2}, kPgUp, false, {1, 0}},
        {{1, 0}, kPgUp, false, {0, 0}},   {{0, 4}, kHome, false, {0, 0}},  {{0, 4}, kEnd, false, {0, 9}},
        {{0, 4}, kPgDn, true, {1, 0}},    {{2, 0}, kPgUp, true, {1, 0}},   {{1, 1}, kHome, true, {0, 0}},
        {{0, 0}, kEnd, true, {2, 0}},     {{0, 3}, 'A', false, {0, 3}},    {{-1, 0}, kRight, false, {0, 0}},
    };
    for (const auto &m : moves) {
        GridSpot to = g.Move(m.from, m.key, m.ctrl, 4, 2);
        EXPECT_EQ(m.to, to) << "from " << m.from.block << ":" << m.from.index << " key " << m.key
                            << (m.ctrl ? " ctrl" : "") << " gave " << to.block << ":" << to.index;
    }
}

TEST(RowInView, MovesTheTopRowAsLittleAsItCan)
{
    EXPECT_EQ(0, RowInView(5, 4, 0, 3));   // row 1, shown
    EXPECT_EQ(2, RowInView(16, 4, 0, 3));  // row 4: the top moves to 2
    EXPECT_EQ(1, RowInView(4, 4, 3, 3));   // above: it becomes the top
    EXPECT_EQ(7, RowInView(7, 1, 5, 0));   // no room: the row itself
    EXPECT_EQ(0, RowInView(-3, 0, -1, 2)); // nonsense in, a row that exists out
}

TEST(TypeAhead, LettersTypedTogetherFormAPrefixAndAPauseStartsAgain)
{
    TypeAhead t;
    EXPECT_EQ(L"t", t.Key(L't', 1000));
    EXPECT_EQ(L"ta", t.Key(L'a', 1500));
    EXPECT_EQ(L"tah", t.Key(L'h', 2400));
    EXPECT_EQ(L"v", t.Key(L'v', 3401)); // more than a second later
    EXPECT_EQ(L"ve", t.Key(L'e', 0xFFFFFFF0u - 0xFFFFFFF0u + 3402));
    const std::vector<std::wstring> fonts{L"Arial", L"Tahoma", L"Times New Roman", L"tahoma narrow"};
    EXPECT_EQ(1, FindByPrefix(fonts, L"ta"));
    EXPECT_EQ(2, FindByPrefix(fonts, L"TI"));
    EXPECT_EQ(-1, FindByPrefix(fonts, L"Tahomas"));
    EXPECT_EQ(-1, FindByPrefix(fonts, L""));
}

TEST(CodePoints, TextAndBackIncludingSurrogatePairs)
{
    EXPECT_EQ(L"A", CodePointText(0x41));
    EXPECT_EQ(std::wstring({static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)}), CodePointText(0x1F600));
    EXPECT_EQ(L"", CodePointText(0x110000));
    EXPECT_EQ(0x1F600, FirstCodePoint(CodePointText(0x1F600) + L"x"));
    EXPECT_EQ(0x20AC, FirstCodePoint(L"\u20ac5"));
    EXPECT_EQ(-1, FirstCodePoint(L""));
    EXPECT_EQ(-1, FirstCodePoint(std::wstring(1, static_cast<wchar_t>(0xDC00))));
    EXPECT_EQ(-1, FirstCodePoint(std::wstring(1, static_cast<wchar_t>(0xD800)) + L"a"));
}
