#include "grid/cell_engine.h"
#include "grid/sort_compare.h"

#include <gtest/gtest.h>

#include <vector>

using namespace tarn;

namespace {

std::vector<std::wstring> column(const CellEngine &g, int32_t col)
{
    std::vector<std::wstring> out;
    for (int32_t r = 0; r < g.Rows(); ++r) out.emplace_back(g.TextAt(r, col));
    return out;
}

} // namespace

TEST(CellEngine, CountsOutsideTheLimitsThrowAndChangeNothing)
{
    CellEngine g(2, 2);
    EXPECT_THROW(g.SetRows(-1), std::out_of_range);
    EXPECT_THROW(g.SetCols(CellEngine::kMaxCols + 1), std::length_error);
    EXPECT_THROW(g.SetRows(CellEngine::kMaxRows + 1), std::length_error);
    EXPECT_EQ(2, g.Rows());
    EXPECT_EQ(2, g.Cols());
    EXPECT_THROW(g.SetRow(2), std::out_of_range);
    EXPECT_THROW(g.TextMatrix(0, 2), std::out_of_range);
    EXPECT_THROW(g.SetColWidth(-1, 100), std::out_of_range);
    EXPECT_EQ(L"", g.TextAt(-1, 99)); // the never-throwing read
}

TEST(CellEngine, HugeCountsAllocateNoCellsAndShrinkingDropsTexts)
{
    CellEngine g(3, 3);
    g.SetTextMatrix(2, 2, L"corner");
    g.SetCols(100000);
    g.SetRows(1000000);
    EXPECT_EQ(L"corner", g.TextAt(2, 2));
    EXPECT_EQ(L"", g.TextMatrix(999999, 99999));
    EXPECT_EQ(99999LL * CellEngine::kDefaultColWidth, g.ColPos(99999));
    g.SetRow(999999);
    g.SetCol(99999);
    g.SetCols(2);
    g.SetRows(2);
    EXPECT_EQ(1, g.Row()); // the current cell moves back inside
    EXPECT_EQ(1, g.Col());
    g.SetCols(3);
    g.SetRows(3);
    EXPECT_EQ(L"", g.TextAt(2, 2)); // dropped texts do not come back
}

TEST(CellEngine, AddItemSplitsAtTabsAndRemoveItemKeepsTheLastRow)
{
    CellEngine g(1, 3);
    g.SetTextMatrix(0, 0, L"first");
    g.AddItem(L"a\tb\tc\textra", 0);
    g.AddItem(L"\tmiddle", 2);
    EXPECT_EQ((std::vector<std::wstring>{L"a", L"first", L""}), column(g, 0));
    EXPECT_EQ((std::vector<std::wstring>{L"b", L"", L"middle"}), column(g, 1));
    EXPECT_EQ(L"c", g.TextAt(0, 2));
    EXPECT_THROW(g.AddItem(L"x", 4), std::out_of_range);

    g.SetRow(2);
    g.RemoveItem(0);
    g.RemoveItem(0);
    EXPECT_EQ(0, g.Row());
    EXPECT_THROW(g.RemoveItem(0), std::logic_error);
    EXPECT_EQ(1, g.Rows());
}

TEST(CellEngine, PositionsFollowWidthsHeightsAndScrolling)
{
    CellEngine g(4, 4);
    g.SetRow(2);
    g.SetCol(3);
    EXPECT_EQ(3 * 960, g.CellLeft());
    EXPECT_EQ(2 * 240, g.CellTop());
    g.SetColWidth(1, 0);   // hidden
    g.SetColWidth(2, 100);
    g.SetRowHeight(0, 500);
    EXPECT_EQ(960 + 0 + 100, g.CellLeft());
    EXPECT_EQ(500 + 240, g.CellTop());
    EXPECT_EQ(0, g.ColAt(959));
    EXPECT_EQ(2, g.ColAt(960)); // the hidden column holds no position
    EXPECT_EQ(3, g.ColAt(1060));
    EXPECT_EQ(-1, g.ColAt(1060 + 960));
    EXPECT_EQ(1, g.RowAt(500));
    g.SetLeftCol(2);
    EXPECT_EQ(100, g.CellLeft());
    EXPECT_EQ(3, g.VisibleColAt(100));
    EXPECT_EQ(0, g.VisibleColAt(-960)); // scrolled out to the left
    g.SetColWidth(2, -5);               // back to the default
    EXPECT_EQ(960, g.ColWidth(2));
    g.SetRowHeight(0, -1);
    g.SetTopRow(1);
    EXPECT_EQ(240, g.CellTop());
}

TEST(CellEngine, FormattingIsSparseAndFallsBackToTheDefaults)
{
    CellEngine g(2, 2);
    g.SetRow(1);
    g.SetCol(1);
    EXPECT_EQ(kAlignGeneral, g.CellAlignment());
    EXPECT_EQ(L"MS Sans Serif", g.CellFontName());
    EXPECT_EQ(0x80000005u, g.CellBackColor());
    EXPECT_EQ(nullptr, g.FormatAt(1, 1));

    g.SetCellFontName(L"webdings");
    g.SetCellFontSize(12);
    g.SetCellBackColor(0x0000FF);
    EXPECT_THROW(g.SetCellAlignment(10), std::invalid_argument);
    EXPECT_THROW(g.SetCellFontSize(0), std::invalid_argument);
    EXPECT_EQ(L"webdings", g.CellFontName());
    EXPECT_FLOAT_EQ(12, g.CellFontSize());
    EXPECT_EQ(kAlignGeneral, g.CellAlignment());
    EXPECT_EQ(nullptr, g.FormatAt(1, 0));
    CellEngine::CellStyle s = g.StyleAt(1, 1);
    EXPECT_EQ(L"webdings", *s.font_name);
    EXPECT_EQ(0x0000FFu, s.back);
    EXPECT_EQ(0x80000008u, s.fore);

    g.SetTextMatrix(1, 1, L"x");
    g.Clear(); // texts only
    EXPECT_EQ(L"", g.TextAt(1, 1));
    EXPECT_EQ(L"webdings", g.CellFontName());
    g.AddItem(L"new", 0); // the format moves with its row
    EXPECT_EQ(L"webdings", *g.StyleAt(2, 1).font_name);
}

TEST(SortOrder, IsAStrictWeakOrdering)
{
    const std::vector<std::wstring> texts = {L"", L" ", L"0", L"-0", L"00", L"1", L"1.0", L"10", L"9", L"-3",
                                             L"1e2", L"50 %", L"abc", L"ABC", L"abd", L"1a", L"a1", L"1,5",
                                             L".5", L"+.5", L"Zz", L"~", L"1e", L" 7 "};
    std::vector<SortKey> keys;
    for (const auto &t : texts) keys.push_back(MakeSortKey(t));
    auto less = [](const SortKey &a, const SortKey &b) { return SortKeyLess(a, b); };
    auto equiv = [&](const SortKey &a, const SortKey &b) { return !less(a, b) && !less(b, a); };
    for (const auto &a : keys) {
        EXPECT_FALSE(less(a, a)) << std::wstring(a.text);
        for (const auto &b : keys)
            for (const auto &c : keys) {
                if (less(a, b) && less(b, c)) {
                    EXPECT_TRUE(less(a, c)) << std::wstring(a.text) << " " << std::wstring(b.text) << " " << std::wstring(c.text);
                }
                if (equiv(a, b) && equiv(b, c)) {
                    EXPECT_TRUE(equiv(a, c)) << std::wstring(a.text) << " " << std::wstring(b.text) << " " << std::wstring(c.text);
                }
            }
    }
    const std::wstring nine = L"9", ten = L"10", half = L".5", empty, abc = L"abc", ABC = L"ABC", zero = L"0",
                       minus_zero = L"-0", percent = L"50 %", fifty = L"50";
    EXPECT_TRUE(less(MakeSortKey(nine), MakeSortKey(ten)));
    EXPECT_TRUE(less(MakeSortKey(half), MakeSortKey(empty))); // numbers before any text
    EXPECT_TRUE(equiv(MakeSortKey(abc), MakeSortKey(ABC)));
    EXPECT_TRUE(equiv(MakeSortKey(zero), MakeSortKey(minus_zero)));
    EXPECT_TRUE(equiv(MakeSortKey(percent), MakeSortKey(fifty)));
}

TEST(CellEngine, SortIsStableBothWaysAndLeavesFixedRows)
{
    CellEngine g(1, 2, 1, 0);
    g.SetTextMatrix(0, 0, L"caption");
    const wchar_t *keys[] = {L"b", L"10", L"B", L"9", L"", L"a", L"10.0", L"b"};
    for (int i = 0; i < 8; ++i) g.AddItem(std::wstring(keys[i]) + L"\t" + std::to_wstring(i));
    g.SetCol(0);
    g.Sort(1);
    EXPECT_EQ((std::vector<std::wstring>{L"caption", L"9", L"10", L"10.0", L"", L"a", L"b", L"B", L"b"}), column(g, 0));
    EXPECT_EQ((std::vector<std::wstring>{L"", L"3", L"1", L"6", L"4", L"5", L"0", L"2", L"7"}), column(g, 1));
    g.Sort(2);
    // Equal keys keep the order they had, descending too: b(0) B(2) b(7), 10(1) 10.0(6).
    EXPECT_EQ((std::vector<std::wstring>{L"", L"0", L"2", L"7", L"5", L"4", L"1", L"6", L"3"}), column(g, 1));
    EXPECT_THROW(g.Sort(9), std::invalid_argument);
}

TEST(CellEngine, RewritingCellsInsideARowKeepsItsOtherTexts)
{
    CellEngine g(2, 5);
    g.SetTextMatrix(0, 1, L"bb");
    g.SetTextMatrix(0, 3, L"dddd");
    g.SetTextMatrix(0, 0, L"a");
    g.SetTextMatrix(0, 1, L"");          // shorter
    g.SetTextMatrix(0, 2, L"a longer c"); // longer, in the middle
    g.SetTextMatrix(0, 3, L"d");
    const std::vector<std::wstring> want = {L"a", L"", L"a longer c", L"d", L""};
    for (int32_t c = 0; c < 5; ++c) EXPECT_EQ(want[static_cast<size_t>(c)], g.TextAt(0, c)) << c;
    g.SetCols(3); // cuts the row's texts at the new last column
    g.SetCols(5);
    EXPECT_EQ(L"a longer c", g.TextAt(0, 2));
    EXPECT_EQ(L"", g.TextAt(0, 3));

    std::wstring_view texts[2];
    g.ColumnTexts(2, 0, 2, texts);
    EXPECT_EQ(L"a longer c", texts[0]);
    EXPECT_EQ(L"", texts[1]);
}

TEST(CellEngine, InsertRowTakesAFinishedRowOrNothing)
{
    CellEngine g(0, 2);
    CellFormat f;
    f.set = CellFormat::kAlign;
    f.alignment = kAlignLeftCenter;
    f.col = 1;
    g.InsertRow(0, L"abcdef", {2, 5, 6}, {f}); // the third text is past the last column
    EXPECT_EQ(L"ab", g.TextAt(0, 0));
    EXPECT_EQ(L"cde", g.TextAt(0, 1));
    EXPECT_EQ(L"", g.TextAt(0, 2));
    EXPECT_EQ(kAlignLeftCenter, g.StyleAt(0, 1).alignment);
    EXPECT_THROW(g.InsertRow(0, L"ab", {3}, {}), std::invalid_argument);    // past the text
    EXPECT_THROW(g.InsertRow(0, L"ab", {2, 1}, {}), std::invalid_argument); // falling
    f.col = 2;
    EXPECT_THROW(g.InsertRow(0, L"ab", {2}, {f}), std::invalid_argument); // no such column
    f.col = 0;
    f.alignment = 12;
    EXPECT_THROW(g.InsertRow(0, L"ab", {2}, {f}), std::invalid_argument);
    EXPECT_EQ(1, g.Rows());
}
