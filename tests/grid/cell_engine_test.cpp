#include "grid/engine/cell_engine.h"
#include "grid/engine/sort_compare.h"
#include "grid/grid_file.h"
#include "grid/grid_view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
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
    const uint32_t style = g.MakeRowStyle({{}, {.set = align, .alignment = kAlignLeftCenter}});
    g.InsertRow(0, L"abcdef", {2, 5, 6}, style); // 3 texts, 2 columns
    EXPECT_EQ(L"ab", g.TextAt(0, 0));
    EXPECT_EQ(L"cde", g.TextAt(0, 1));
    EXPECT_EQ(kAlignLeftCenter, g.StyleAt(0, 1).alignment);
    EXPECT_EQ(nullptr, g.FormatAt(0, 0));
    EXPECT_THROW(g.InsertRow(0, L"ab", {3}), std::invalid_argument);    // past the text
    EXPECT_THROW(g.InsertRow(0, L"ab", {2, 1}), std::invalid_argument); // falling
    EXPECT_THROW(g.InsertRow(0, L"ab", {2}, style + 1), std::invalid_argument); // no such style
    EXPECT_THROW(g.MakeRowStyle({{.set = align, .alignment = 12}}), std::invalid_argument);
    EXPECT_EQ(3, g.Rows());
}

// Rows inserted and removed anywhere (far more than a block of rows), counts going up and down
// (cut columns must not come back), texts of every width and length, formats, loaded rows and
// sorts, against a plain table of the same operations.
TEST(CellEngine, RowsTextsAndFormatsMatchAPlainTableUnderRandomChanges)
{
    struct Cell {
        std::wstring text;
        uint32_t back = 0x80000005u; // the default
        int16_t align = kAlignGeneral;
    };
    using Table = std::vector<std::vector<Cell>>;
    const std::wstring samples[] = {L"", L"x", L"12.5", L"-3", L"Caf\u00e9", L"\u65e5\u672c", L"a\U0001F600b",
                                    std::wstring(300, L'w'), L"B", L"b", L"10"};
    std::mt19937 rng(7);
    auto pick = [&](size_t n) { return static_cast<int32_t>(rng() % n); };
    auto sample = [&] { return samples[static_cast<size_t>(pick(std::size(samples)))]; };

    CellEngine g(0, 4);
    Table t;
    int32_t cols = 4;
    const uint32_t loaded = g.MakeRowStyle(std::vector<CellFormat>(6, CellFormat{.set = CellFormat::kAlign, .alignment = kAlignLeftCenter}));
    auto check = [&](int op) {
        ASSERT_EQ(static_cast<int32_t>(t.size()), g.Rows()) << "op " << op;
        ASSERT_EQ(cols, g.Cols());
        for (int32_t r = 0; r < g.Rows(); ++r)
            for (int32_t c = 0; c < cols; ++c) {
                const Cell &want = t[static_cast<size_t>(r)][static_cast<size_t>(c)];
                const CellEngine::CellStyle s = g.StyleAt(r, c);
                ASSERT_EQ(want.text, g.TextAt(r, c)) << "op " << op << " at " << r << "," << c;
                ASSERT_EQ(std::pair(want.back, want.align), std::pair(s.back, s.alignment)) << "op " << op << " at " << r << "," << c;
            }
    };
    // Rows told apart by their first cell, so a row in the wrong place shows.
    for (int32_t r = 0; r < 2500; ++r) {
        g.AddItem(L"#" + std::to_wstring(r));
        t.push_back(std::vector<Cell>(4));
        t.back()[0].text = L"#" + std::to_wstring(r);
    }
    for (int op = 0; op < 4000 && !testing::Test::HasFatalFailure(); ++op) {
        const int32_t rows = g.Rows();
        switch (pick(20)) {
        case 0: case 1: case 2: case 3: { // a row in, anywhere
            const int32_t at = pick(static_cast<size_t>(rows) + 1);
            std::wstring item;
            std::vector<Cell> row(static_cast<size_t>(cols));
            const int32_t pieces = pick(7);
            for (int32_t i = 0; i < pieces; ++i) {
                const std::wstring s = i ? sample() : L"+" + std::to_wstring(op);
                item += (i ? L"\t" : L"") + s;
                if (i < cols) row[static_cast<size_t>(i)].text = s;
            }
            g.AddItem(item, at);
            t.insert(t.begin() + at, row);
            break;
        }
        case 4: case 5: case 6: case 7: // a row out, anywhere
            if (rows > 1) {
                const int32_t at = pick(static_cast<size_t>(rows));
                g.RemoveItem(at);
                t.erase(t.begin() + at);
            }
            break;
        case 8: case 9: case 10: case 11: { // a text
            if (rows == 0) break;
            const int32_t r = pick(static_cast<size_t>(rows)), c = pick(static_cast<size_t>(cols));
            const std::wstring s = pick(40) ? sample() : std::wstring(70000, L'\u00e4'); // ends past 16 bits
            g.SetTextMatrix(r, c, s);
            t[static_cast<size_t>(r)][static_cast<size_t>(c)].text = s;
            break;
        }
        case 12: case 13: { // a back colour
            if (rows == 0) break;
            const int32_t r = pick(static_cast<size_t>(rows)), c = pick(static_cast<size_t>(cols));
            const uint32_t colour = static_cast<uint32_t>(pick(3)) * 0x10;
            g.UpdateFormat(r, c, CellFormat{.set = CellFormat::kBack, .back = colour});
            t[static_cast<size_t>(r)][static_cast<size_t>(c)].back = colour;
            break;
        }
        case 14: { // a loaded row: texts, and alignment 1 on the cells read
            const int32_t at = pick(static_cast<size_t>(rows) + 1), read = pick(6);
            std::wstring chars;
            std::vector<uint32_t> ends;
            std::vector<Cell> row(static_cast<size_t>(cols));
            for (int32_t i = 0; i < read; ++i) {
                const std::wstring s = sample();
                chars += s;
                ends.push_back(static_cast<uint32_t>(chars.size()));
                if (i < cols) row[static_cast<size_t>(i)] = {s, 0x80000005u, kAlignLeftCenter};
            }
            g.InsertRow(at, chars, ends, loaded);
            t.insert(t.begin() + at, row);
            break;
        }
        case 15: { // the column count down (the cut cells go for good) or up
            const int32_t n = 1 + pick(6);
            g.SetCols(n);
            for (auto &row : t) {
                row.resize(static_cast<size_t>(std::min(n, cols)));
                row.resize(static_cast<size_t>(n));
            }
            cols = n;
            break;
        }
        case 16: { // the row count down or up
            const int32_t n = std::max(0, rows + pick(401) - 200);
            g.SetRows(n);
            t.resize(static_cast<size_t>(n), std::vector<Cell>(static_cast<size_t>(cols)));
            break;
        }
        case 17: // every text emptied, formats kept
            if (pick(4) == 0) {
                g.Clear();
                for (auto &row : t)
                    for (Cell &cell : row) cell.text.clear();
            }
            break;
        default: { // a stable sort on a column, the formats moving with their rows
            if (rows == 0 || pick(3)) break;
            const int32_t c = pick(static_cast<size_t>(cols)), order = 1 + pick(2);
            g.SetCol(c);
            g.Sort(order);
            std::stable_sort(t.begin(), t.end(), [&](const std::vector<Cell> &a, const std::vector<Cell> &b) {
                const SortKey ka = MakeSortKey(a[static_cast<size_t>(c)].text), kb = MakeSortKey(b[static_cast<size_t>(c)].text);
                return order == 1 ? SortKeyLess(ka, kb) : SortKeyLess(kb, ka);
            });
            break;
        }
        }
        if (op % 250 == 0) check(op);
    }
    check(-1);
    // Emptied again from anywhere: blocks wear thin, join and go.
    while (g.Rows() > 3) {
        const int32_t at = pick(static_cast<size_t>(g.Rows()));
        g.RemoveItem(at);
        t.erase(t.begin() + at);
        if (g.Rows() % 500 == 0) check(-g.Rows());
    }
    check(-2);
}

// A loaded cell costs about its text in UTF-16 or less: Latin-1 text a byte a character, its
// alignment shared by every loaded cell.
TEST(CellEngine, LoadedCellsCostNoMoreThanTheirTextAndShareTheirFormat)
{
    std::string file = "10|Stock\r\n";
    size_t utf16 = 0;
    const int32_t rows = 5000;
    for (int32_t r = 0; r < rows; ++r)
        for (int32_t c = 0; c < 10; ++c) {
            std::string cell = c % 2 ? std::to_string(r * 7 % 10000) + "." + std::to_string(10 + r % 90)
                                     : (c ? "Name " : "Item ") + std::to_string(r * 31 % 100000);
            utf16 += cell.size() * 2;
            file += cell + "\r\n";
        }
    CellEngine g(0, 0);
    ColumnTypes types;
    types.Set(3, kColCheck);
    LoadGridFileBytes(file, g, types);
    ASSERT_EQ(rows, g.Rows());
    // The engine's own bytes, and the allocator's at about 16 bytes a row.
    const double per_cell = static_cast<double>(g.StorageBytes() + 16 * static_cast<size_t>(rows)) / (rows * 10.0);
    const double text_per_cell = static_cast<double>(utf16 + 2 * rows) / (rows * 10.0); // check cells gain a blank
    EXPECT_LT(per_cell, 1.5 * text_per_cell) << per_cell << " bytes a cell for " << text_per_cell << " of text";
    EXPECT_EQ(kAlignLeftCenter, g.StyleAt(rows - 1, 9).alignment);
    EXPECT_EQ(L"webdings", *g.StyleAt(17, 3).font_name);
    EXPECT_EQ(g.FormatAt(0, 1), g.FormatAt(rows - 1, 7)); // one format for all of them
    // A cell formatted afterwards keeps the loaded alignment and adds its own colour.
    g.UpdateFormat(2, 1, CellFormat{.set = CellFormat::kBack, .back = 0xFF});
    EXPECT_EQ(std::pair(int16_t{kAlignLeftCenter}, 0xFFu), std::pair(g.StyleAt(2, 1).alignment, g.StyleAt(2, 1).back));
    EXPECT_EQ(0x80000005u, g.StyleAt(3, 1).back);
}
