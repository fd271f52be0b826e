#include "grid/cell_engine.h"
#include "grid/grid_view.h"

#include <gtest/gtest.h>

#include <vector>

using namespace tarn;

namespace {

using Texts = std::vector<std::wstring>;

Texts column(const CellEngine &g, int32_t col)
{
    Texts out;
    for (int32_t r = 0; r < g.Rows(); ++r) out.emplace_back(g.TextAt(r, col));
    return out;
}

} // namespace

TEST(CellEngine, BadCountsAndIndexesThrowAndChangeNothingAndHugeCountsAllocateNoCells)
{
    CellEngine g(3, 3);
    EXPECT_THROW(g.SetRows(-1), std::out_of_range);
    EXPECT_THROW(g.SetCols(CellEngine::kMaxCols + 1), std::length_error);
    EXPECT_THROW(g.SetRows(CellEngine::kMaxRows + 1), std::length_error);
    EXPECT_EQ(std::pair(3, 3), std::pair(g.Rows(), g.Cols()));
    EXPECT_THROW(g.SetRow(3), std::out_of_range);
    EXPECT_THROW(g.TextMatrix(0, 3), std::out_of_range);
    EXPECT_THROW(g.SetColWidth(-1, 100), std::out_of_range);
    EXPECT_EQ(L"", g.TextAt(-1, 99)); // the never-throwing read

    g.SetTextMatrix(2, 2, L"corner");
    g.SetCols(100000);
    g.SetRows(1000000);
    EXPECT_EQ(L"corner", g.TextAt(2, 2));
    EXPECT_EQ(L"", g.TextMatrix(999999, 99999));
    g.SetRow(999999);
    g.SetCol(99999);
    g.SetCols(2);
    g.SetRows(2);
    EXPECT_EQ(std::pair(1, 1), std::pair(g.Row(), g.Col())); // the current cell moves back inside
    g.SetCols(3);
    g.SetRows(3);
    EXPECT_EQ(L"", g.TextAt(2, 2)); // dropped texts do not come back
}

TEST(CellEngine, RowsAreRecordsAddItemSplitsAtTabsAndFormattingMovesWithItsRow)
{
    CellEngine g(1, 3);
    g.SetTextMatrix(0, 0, L"first");
    g.SetCellFontName(L"webdings"); // the current cell, (0, 0)
    g.SetCellBackColor(0x0000FF);
    EXPECT_THROW(g.SetCellAlignment(10), std::invalid_argument);
    EXPECT_THROW(g.SetCellFontSize(0), std::invalid_argument);
    g.AddItem(L"a\tb\tc\textra", 0);
    g.AddItem(L"\tmiddle", 2);
    EXPECT_EQ((Texts{L"a", L"first", L""}), column(g, 0));
    EXPECT_EQ((Texts{L"b", L"", L"middle"}), column(g, 1));
    EXPECT_EQ(L"c", g.TextAt(0, 2));
    EXPECT_THROW(g.AddItem(L"x", 4), std::out_of_range);

    // Formatting is per cell, with the defaults where none was set, and survives Clear.
    g.Clear();
    EXPECT_EQ(L"", g.TextAt(1, 0));
    const CellEngine::CellStyle s = g.StyleAt(1, 0);
    EXPECT_EQ(L"webdings", *s.font_name);
    EXPECT_EQ(0x0000FFu, s.back);
    EXPECT_EQ(0x80000008u, s.fore);
    EXPECT_EQ(kAlignGeneral, s.alignment);
    EXPECT_EQ(nullptr, g.FormatAt(0, 0)); // moved, not copied

    g.SetRow(2);
    g.RemoveItem(0);
    g.RemoveItem(0);
    EXPECT_EQ(0, g.Row());
    EXPECT_THROW(g.RemoveItem(0), std::logic_error);
    EXPECT_EQ(1, g.Rows());
}

TEST(CellEngine, PositionsSkipHiddenColumnsAndFollowScrolling)
{
    CellEngine g(4, 4);
    g.SetRow(2);
    g.SetCol(3);
    g.SetColWidth(1, 0); // hidden
    g.SetColWidth(2, 100);
    g.SetRowHeight(0, 500);
    EXPECT_EQ(960 + 0 + 100, g.CellLeft());
    EXPECT_EQ(500 + 240, g.CellTop());
    EXPECT_EQ(2, g.ColAt(960)); // the hidden column holds no position
    EXPECT_EQ(-1, g.ColAt(1060 + 960));
    g.SetLeftCol(2);
    EXPECT_EQ(100, g.CellLeft());
    EXPECT_EQ(0, g.VisibleColAt(-960)); // scrolled out to the left
    g.SetColWidth(2, -5);               // back to the default
    EXPECT_EQ(960, g.ColWidth(2));
}

// Only the rows and columns the view names are painted.
TEST(GridView, OnlyTheScrolledToPartShowsAndNoRoomShowsNothing)
{
    CellEngine huge(1000000, 10);
    huge.SetTopRow(500000);
    GridView v = ComputeGridView(huge, GridViewInput{320, 200, 0, false, false, 0, 15, 15});
    EXPECT_EQ(500000, v.first_row);
    EXPECT_EQ(500000 + 12, v.last_row); // 200 / 16 = 12.5 rows
    EXPECT_EQ(v.cells.top, v.row_y(huge, 500000));

    CellEngine none(0, 0);
    GridView empty = ComputeGridView(none, GridViewInput{320, 200, 2, true, true, 20, 15, 15});
    EXPECT_LT(empty.last_row, empty.first_row);
    CellEngine cells(5, 5);
    EXPECT_TRUE(ComputeGridView(cells, GridViewInput{3, 3, 2, true, true, 20, 15, 15}).cells.empty());
    GridView negative = ComputeGridView(cells, GridViewInput{-50, -20, 2, true, false, 20, 15, 15});
    EXPECT_TRUE(negative.cells.empty());
    EXPECT_EQ(1, negative.page_rows);
}

TEST(CellEngine, SortsNumbersAsNumbersBeforeTextsWithoutCaseAndStablyBothWays)
{
    // A leading number is the key ("-0" is 0, "50 %" is 50), numbers come before any text and
    // letters compare without case; equal keys keep the order they had, descending too: b(0)
    // B(2) b(7), 10(1) 10.0(6), 50 %(8) 50(11), -0(10) 0(12). The fixed row stays.
    CellEngine g(1, 2, 1, 0);
    g.SetTextMatrix(0, 0, L"caption");
    const wchar_t *keys[] = {L"b", L"10", L"B", L"9", L"", L"a", L"10.0", L"b", L"50 %", L".5", L"-0", L"50", L"0"};
    for (int i = 0; i < 13; ++i) g.AddItem(std::wstring(keys[i]) + L"\t" + std::to_wstring(i));
    g.SetCol(0);
    g.Sort(1);
    EXPECT_EQ((Texts{L"caption", L"-0", L"0", L".5", L"9", L"10", L"10.0", L"50 %", L"50", L"", L"a", L"b", L"B", L"b"}),
              column(g, 0));
    EXPECT_EQ((Texts{L"", L"10", L"12", L"9", L"3", L"1", L"6", L"8", L"11", L"4", L"5", L"0", L"2", L"7"}), column(g, 1));
    g.Sort(2);
    EXPECT_EQ((Texts{L"", L"0", L"2", L"7", L"5", L"4", L"8", L"11", L"1", L"6", L"3", L"9", L"10", L"12"}), column(g, 1));
    EXPECT_THROW(g.Sort(9), std::invalid_argument);

    // Stable at a size where an unstable sort would show it: three keys over 300 rows, each
    // key's rows still in their first order after either direction.
    CellEngine many(0, 2);
    for (int i = 0; i < 300; ++i) many.AddItem(std::to_wstring(i % 3) + L"\t" + std::to_wstring(i));
    auto number = [&](int32_t r) { return std::stoi(std::wstring(many.TextAt(r, 1))); };
    for (int order : {1, 2}) {
        many.SetCol(0);
        many.Sort(order);
        for (int32_t r = 1; r < many.Rows(); ++r) {
            if (many.TextAt(r, 0) == many.TextAt(r - 1, 0)) {
                ASSERT_LT(number(r - 1), number(r)) << "order " << order << ", row " << r;
            }
        }
    }
}

TEST(CellEngine, RowTextsSurviveRewritesInsideTheRowAndInsertRowTakesAFinishedRowOrNothing)
{
    CellEngine g(2, 5);
    g.SetTextMatrix(0, 1, L"bb");
    g.SetTextMatrix(0, 3, L"dddd");
    g.SetTextMatrix(0, 0, L"a");
    g.SetTextMatrix(0, 1, L"");           // shorter
    g.SetTextMatrix(0, 2, L"a longer c"); // longer, in the middle
    g.SetTextMatrix(0, 3, L"d");
    const Texts want = {L"a", L"", L"a longer c", L"d", L""};
    for (int32_t c = 0; c < 5; ++c) EXPECT_EQ(want[static_cast<size_t>(c)], g.TextAt(0, c)) << c;
    g.SetCols(3); // cuts the row's texts at the new last column
    g.SetCols(5);
    EXPECT_EQ(L"a longer c", g.TextAt(0, 2));
    EXPECT_EQ(L"", g.TextAt(0, 3));

    const uint8_t align = CellFormat::kAlign;
    g.SetCols(2);
    g.InsertRow(0, L"abcdef", {2, 5, 6}, {{.col = 1, .set = align, .alignment = kAlignLeftCenter}}); // 3 texts, 2 columns
    EXPECT_EQ(L"ab", g.TextAt(0, 0));
    EXPECT_EQ(L"cde", g.TextAt(0, 1));
    EXPECT_EQ(kAlignLeftCenter, g.StyleAt(0, 1).alignment);
    EXPECT_THROW(g.InsertRow(0, L"ab", {3}, {}), std::invalid_argument);    // past the text
    EXPECT_THROW(g.InsertRow(0, L"ab", {2, 1}, {}), std::invalid_argument); // falling
    EXPECT_THROW(g.InsertRow(0, L"ab", {2}, {{.col = 2, .set = align}}), std::invalid_argument); // no such column
    EXPECT_THROW(g.InsertRow(0, L"ab", {2}, {{.set = align, .alignment = 12}}), std::invalid_argument);
    EXPECT_EQ(3, g.Rows());
}
