#include "grid/grid_model.h"

#include "foundation/numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <random>
#include <tuple>

using namespace tarn;

namespace {

struct RecordingHost : GridModelHost {
    int changes = 0, box_shows = 0, box_hides = 0;
    std::function<void()> on_change;

    void RaiseChange() override
    {
        ++changes;
        if (on_change) on_change();
    }
    void BoxShow() override { ++box_shows; }
    void BoxHide() override { ++box_hides; }
};

using Cell = std::pair<int32_t, int32_t>;
using Texts = std::vector<std::wstring>;

class GridModelTest : public ::testing::Test {
protected:
    // A rows x cols grid whose cell (r, c) holds "r:c".
    void fill(int32_t rows, int32_t cols)
    {
        grid.ColsSet(cols);
        grid.RowsSet(rows);
        for (int32_t r = 0; r < rows; ++r)
            for (int32_t c = 0; c < cols; ++c) grid.CellTextSet(r, c, std::to_wstring(r) + L":" + std::to_wstring(c));
        grid.RowSetFocus(0);
        grid.ColSetFocus(0);
        host.changes = host.box_hides = 0;
    }
    Texts column(int32_t col)
    {
        Texts out;
        for (int32_t r = 0; r < grid.RowsCurrent(); ++r) out.push_back(grid.CellTextRead(r, col));
        return out;
    }
    Cell current() const { return {grid.RowCurrent(), grid.ColCurrent()}; }
    // A cell's font name, size, bold, strike-through, fore and back colour.
    using Style = std::tuple<std::wstring, float, bool, bool, uint32_t, uint32_t>;
    Style style(int32_t row, int32_t col) const
    {
        const CellEngine::CellStyle s = grid.Cells().StyleAt(row, col);
        return {*s.font_name, s.font_size, s.bold, s.strike, s.fore, s.back};
    }

    RecordingHost host;
    GridModel grid{&host};
};

} // namespace

TEST_F(GridModelTest, RowChangesRaiseChangeOnceEachAndTheLastRowIsClearedInsteadOfRemoved)
{
    grid.ColsSet(3);
    EXPECT_EQ(0, host.changes);
    grid.RowsSet(4);
    EXPECT_EQ(1, host.changes);
    grid.RowAdd(L"a\tb", 2);
    EXPECT_EQ(2, host.changes);
    EXPECT_EQ(Cell(2, 0), current()); // the new row is current
    grid.RowDel(0);
    EXPECT_EQ(3, host.changes);
    grid.RowAdd(L"nowhere", 99); // not added, still a change
    EXPECT_EQ(4, host.changes);
    EXPECT_EQ(4, grid.RowsCurrent());
    EXPECT_EQ(3, host.box_hides);

    fill(1, 2);
    grid.RowDel(5); // one row: cleared whatever the index
    EXPECT_EQ(1, grid.RowsCurrent());
    EXPECT_EQ(Texts{L""}, column(1));
    EXPECT_EQ(1, host.changes);
}

TEST_F(GridModelTest, ColumnChangesRaiseNoChangeAndTheLastColumnIsClearedInsteadOfRemoved)
{
    const int32_t dflt = CellEngine::kDefaultColWidth;
    const std::pair<double, int32_t> added[] = {{1500.5, 1500}, {2501.5, 2502}, {-20, dflt}, {1e12, dflt}};
    for (const auto &[width, want] : added) {
        grid.ColAdd(width); // half to even; a width that cannot be taken still adds the column
        EXPECT_EQ(want, grid.Cells().ColWidth(grid.ColsCurrent() - 1)) << width;
    }
    EXPECT_EQ(5, grid.ColsCurrent());
    grid.ColWidth(3, 0);
    grid.ColWidth(3, -1);
    EXPECT_EQ(0, grid.Cells().ColWidth(3));
    grid.ColDel();
    EXPECT_EQ(0, host.changes);
    EXPECT_EQ(7, host.box_hides); // ColAdd x4, ColWidth x2, ColDel

    fill(2, 1);
    grid.ColDel();
    EXPECT_EQ(1, grid.ColsCurrent());
    EXPECT_EQ((Texts{L"", L""}), column(0));
    fill(2, 2);
    grid.ColDel();
    EXPECT_EQ(1, grid.ColsCurrent());
    EXPECT_EQ(L"1:0", grid.CellTextRead(1, 0));
}

TEST_F(GridModelTest, ColumnTypesCoverIndexes0To10000AndPickTheEditor)
{
    grid.ColTypeSet(10000, kColCheck);
    grid.ColTypeSet(10001, kColDate);
    grid.ColTypeSet(-1, kColDate);
    EXPECT_EQ(L"3", grid.ColTypeRead(10000));
    EXPECT_EQ(L"", grid.ColTypeRead(10001));
    EXPECT_EQ(L"", grid.ColTypeRead(-1));
    EXPECT_EQ(CellEditor::kCheck, grid.EditorFor(10000));
    EXPECT_EQ(CellEditor::kText, grid.EditorFor(10001));
    const CellEditor editors[] = {CellEditor::kText,  CellEditor::kDate,    CellEditor::kImageCombo, CellEditor::kCheck,
                                  CellEditor::kCombo, CellEditor::kPercent, CellEditor::kTime,       CellEditor::kNone};
    for (int32_t code = 0; code <= 7; ++code) {
        grid.ColTypeSet(1, code);
        EXPECT_EQ(editors[code], grid.EditorFor(1)) << code;
    }
}

TEST_F(GridModelTest, CellSettersAndGridSetFocusMoveTheCurrentCellReadsAndOutsideAddressesDoNot)
{
    fill(4, 4);
    grid.CellTextSet(1, 2, L"t");
    EXPECT_EQ(L"3:3", grid.CellTextRead(3, 3));
    EXPECT_EQ(Cell(1, 2), current());
    grid.CellColorSet(0xFF, 2, 3); // the colour comes first
    EXPECT_EQ(Cell(2, 3), current());
    EXPECT_EQ(0x80000005u, grid.CellColorRead(3, 1)); // no colour of its own: the grid's
    EXPECT_EQ(Cell(3, 1), current());
    grid.CellFontSet(0, 1, L"Arial");
    EXPECT_EQ(Cell(0, 1), current());
    grid.CellFormatSet(1, 0, L"Arial");
    EXPECT_EQ(Cell(1, 0), current());
    grid.CellEnabledSet(3, 0, true, 0x808080, 0xC0C0C0);
    EXPECT_EQ(Cell(3, 0), current());

    grid.CellTextSet(1, 9, L"lost");
    grid.CellTextSet(9, 1, L"lost");
    grid.CellColorSet(0xFF, -1, 0);
    grid.CellFontSet(0, 4, L"Arial");
    EXPECT_EQ(0u, grid.CellColorRead(4, 0));
    EXPECT_EQ(L"", grid.CellTextRead(9, 9));
    EXPECT_EQ(Cell(3, 0), current());
    EXPECT_EQ(L"1:1", grid.CellTextRead(1, 1));

    // GridSetFocus takes the column first and opens the editor only inside the grid.
    host.box_hides = 0;
    grid.GridSetFocus(2, 1);
    EXPECT_EQ(Cell(1, 2), current());
    EXPECT_EQ(1, host.box_hides);
    EXPECT_EQ(1, host.box_shows);
    grid.GridSetFocus(5, 1);
    EXPECT_EQ(Cell(1, 2), current());
    EXPECT_EQ(1, host.box_shows);
}

TEST_F(GridModelTest, CheckFontAndFormatSettersApplyOnlyWhatTheyAccept)
{
    fill(2, 2);
    const std::pair<const wchar_t *, const wchar_t *> checks[] = {
        {L"true", L" a"}, {L"TRUE", L" a"}, {L"True", L" a"}, {L"1", L" a"}, {L"1.0", L" a"}, {L" a", L" a"}, {L" 1 ", L" a"},
        {L"2", L""},      {L"yes", L""},    {L"", L""},       {L"a", L""},   {L"1x", L""},    {L"truth", L""}, {L"0", L""}};
    for (const auto &[value, want] : checks) {
        grid.CellTextSet(0, 0, L"x");
        grid.CellChkSet(0, 0, value);
        EXPECT_EQ(want, grid.CellTextRead(0, 0)) << value;
    }

    // Name, size, bold, strike-through, fore and back colour, in that order; a size that is no
    // number is skipped and the steps after it still run; CellFormatSet takes a size and does
    // not apply it.
    grid.CellFontSet(0, 0, L"Arial", L"12", true, true, 0x11, 0x22);
    grid.CellFontSet(1, 0, L"Arial", L"big", true);
    grid.CellFormatSet(1, 1, L"Courier", L"20", true, false, 0x33);
    EXPECT_EQ(Style(L"Arial", 12.0f, true, true, 0x11u, 0x22u), style(0, 0));
    EXPECT_EQ(Style(L"Arial", 8.25f, true, false, 0x80000008u, 0x80000005u), style(1, 0));
    EXPECT_EQ(Style(L"Courier", 8.25f, true, false, 0x33u, 0x80000005u), style(1, 1));
}

TEST_F(GridModelTest, SortsAlternateOnTheCurrentColumnAndTheHeaderPicksTheColumnUnderTheMouse)
{
    fill(3, 3);
    const wchar_t *texts[3][2] = {{L"2", L"b"}, {L"10", L"c"}, {L"1", L"a"}};
    for (int32_t r = 0; r < 3; ++r)
        for (int32_t c = 1; c < 3; ++c) grid.CellTextSet(r, c, texts[r][c - 1]);
    auto sort = [&](int32_t col) {
        grid.ColSetFocus(col);
        grid.SortFlex(col);
        return grid.Marker().descending ? 'D' : 'A';
    };
    // The flag starts False with column 0 as the previous one: a new column flips the flag,
    // so the very first sort is ascending.
    EXPECT_EQ('A', sort(1));
    EXPECT_EQ((Texts{L"1", L"2", L"10"}), column(1)); // numbers compare as numbers
    EXPECT_EQ('D', sort(1));
    EXPECT_EQ((Texts{L"10", L"2", L"1"}), column(1));
    // A new column after a descending sort: descending, ascending, descending.
    std::string directions;
    for (int i = 0; i < 3; ++i) directions += sort(2);
    EXPECT_EQ("DAD", directions);
    EXPECT_EQ((Texts{L"c", L"b", L"a"}), column(2));
    EXPECT_EQ(3 * 960 - 230, grid.Marker().left);

    // The rows are sorted on the current column; ColNo only has to be a column.
    grid.ColSetFocus(1);
    grid.SortFlex(0);
    EXPECT_EQ((Texts{L"10", L"2", L"1"}), column(1)); // flag flipped: descending
    grid.SortFlex(7);                                 // no such column: no sort
    EXPECT_EQ((Texts{L"10", L"2", L"1"}), column(1));

    // Past all columns the header picks the last one; left of them all, none.
    grid.ColWidth(0, 500);
    const std::pair<float, int32_t> clicks[] = {{499.9f, 0}, {500.0f, 1}, {1e9f, 2}, {-5.0f, 2}};
    for (const auto &[x, col] : clicks) {
        grid.SetHeaderMouseX(x);
        grid.BarHeaderSort();
        EXPECT_EQ(col, grid.lngPREVIOUSCOLNO) << x;
    }
    EXPECT_TRUE(grid.Cells().Redraw());
}

TEST_F(GridModelTest, ClearEmptiesTheTextsAndResetAlsoTheRowsAndTheCurrentCell)
{
    fill(3, 2);
    grid.ColWidth(1, 2000);
    grid.GridClear();
    EXPECT_EQ(3, grid.RowsCurrent());
    EXPECT_EQ(L"", grid.CellTextRead(2, 1));
    EXPECT_EQ(2000, grid.Cells().ColWidth(1));
    fill(3, 2);
    grid.CellTextSet(2, 1, L"x");
    grid.GridRedraw(false);
    grid.GridReset();
    EXPECT_EQ(1, grid.RowsCurrent());
    EXPECT_EQ(2, grid.ColsCurrent());
    EXPECT_EQ(Cell(0, 0), current());
    EXPECT_EQ(L"", grid.CellTextRead(0, 0));
    EXPECT_TRUE(grid.Cells().Redraw());
}

TEST_F(GridModelTest, SummaryTotalsTheLeadingNumbersOnChangeAndAPendingTotalKeepsItsRowOrder)
{
    grid.ColsSet(2);
    grid.RowsSet(4); // its Change totals column 0, the current one
    grid.CellTextSet(0, 1, L"1.5");
    grid.CellTextSet(1, 1, L"abc");
    grid.CellTextSet(3, 1, L"2");
    grid.BarSummaryColSet(1, L"old", 2, 0xFF);
    grid.BarSummaryColCalc(1);
    EXPECT_EQ(L"3.50", grid.BarSummaryColRead(1));
    EXPECT_EQ(1, grid.BarSummaryCell(1).alignment);
    EXPECT_EQ(0u, grid.BarSummaryCell(1).fore);
    grid.BarSummaryColSet(1, L"total");
    EXPECT_EQ(1, grid.BarSummaryCell(1).alignment); // kept when not given
    grid.CellTextSet(2, 1, L"10 kg");
    grid.Change(); // totals the current column
    EXPECT_EQ(L"13.50", grid.BarSummaryColRead(1));
    EXPECT_EQ(L"0.00", grid.BarSummaryColRead(0));

    // A pending total stands for the column as it was at the calculation, added in row order.
    grid.GridReset();
    grid.RowsSet(3);
    grid.CellTextSet(0, 0, L"1e16");
    grid.CellTextSet(1, 0, L"1");
    grid.CellTextSet(2, 0, L"-1e16");
    grid.BarSummaryColCalc(0); // (1e16 + 1) - 1e16 rounds to 0 in row order
    grid.RowAdd(L"5", 3);      // its Change totals the column again
    EXPECT_EQ(L"5.00", grid.BarSummaryColRead(0));
    grid.CellTextSet(3, 0, L"7");
    grid.RowDel(0); // 1 - 1e16 + 7, rounded at each step
    std::wstring seen;
    host.on_change = [&] { seen = grid.BarSummaryColRead(0); };
    grid.RowAdd(L"1e16", 0); // 1e16 + 1 - 1e16 + 7 = 7 in row order
    EXPECT_EQ(FormatFixed((0.0 + 1.0 + -1e16) + 7.0, 2), seen); // the handler sees RowDel's total
    EXPECT_EQ(L"7.00", grid.BarSummaryColRead(0));
    // An explicit caption replaces a pending total; later changes leave it alone.
    host.on_change = nullptr;
    grid.RowAdd(L"100", 0);
    grid.BarSummaryColSet(0, L"manual");
    grid.CellTextSet(0, 0, L"9");
    EXPECT_EQ(L"manual", grid.BarSummaryColRead(0));
    grid.RowsSet(1);
    EXPECT_EQ(L"9.00", grid.BarSummaryColRead(0));
}

// Random row, column and cell operations with occasional reads, inside and outside the
// Change handler, against the captions an immediate calculation would have left.
TEST(GridModelSummary, LazyTotalsMatchImmediateOnesUnderRandomOperations)
{
    const std::wstring values[] = {L"1.5", L"abc", L"", L"2", L"-0.1", L"1e16", L"-1e16", L"0.3", L"7 kg", L"0.1", L"1"};
    for (unsigned seed = 1; seed <= 12 && !HasFatalFailure(); ++seed) {
        std::mt19937 rng(seed);
        auto pick = [&](int n) { return static_cast<int32_t>(rng() % static_cast<unsigned>(n)); };
        auto value = [&] { return values[pick(11)]; };
        RecordingHost host;
        GridModel grid(&host);
        std::map<int32_t, std::wstring> expected;
        // The caption an immediate calculation gives: the leading numbers added in row order.
        auto fresh_total = [&](int32_t col) {
            double total = 0;
            for (int32_t r = 0; r < grid.RowsCurrent(); ++r) total += LeadingNumber(grid.CellTextRead(r, col));
            return FormatFixed(total, 2);
        };
        auto check = [&] {
            for (int32_t c = 0; c < 4; ++c) ASSERT_EQ(expected[c], grid.BarSummaryColRead(c)) << "seed " << seed << " col " << c;
        };
        host.on_change = [&] {
            if (pick(4) == 0) check();
        };
        grid.ColsSet(3);
        for (int op = 0; op < 1500 && !HasFatalFailure(); ++op) {
            const int32_t rows = grid.RowsCurrent(), col = pick(4), kind = pick(12);
            switch (kind) {
            case 0:
            case 1: grid.RowAdd(value() + L"\t" + value() + L"\t" + value(), pick(rows + 1)); break;
            case 2: grid.RowDel(pick(rows + 1)); break;
            case 3: grid.RowsSet(std::max(0, rows + pick(7) - 3)); break;
            case 4:
            case 5: grid.CellTextSet(pick(rows + 1), pick(3), value()); break;
            case 6: grid.ColSetFocus(col); break;
            case 7: grid.SortFlex(grid.ColCurrent()); break;
            case 8: grid.BarSummaryColSet(col, L"set"), expected[col] = L"set"; break;
            case 9: grid.BarSummaryColCalc(col), expected[col] = fresh_total(col); break;
            case 10: grid.ColsSet(2 + pick(3)); break;
            default: grid.Change(); break;
            }
            if (kind <= 3 || kind == 11) expected[grid.ColCurrent()] = fresh_total(grid.ColCurrent()); // raised Change
            if (pick(10) == 0) check();
        }
        check();
    }
}

// Filling or emptying a grid row by row must not add the column again on every row.
TEST(GridModelSummary, RowByRowChangesStayLinear)
{
    GridModel grid;
    grid.ColsSet(2);
    const auto start = std::chrono::steady_clock::now();
    const int32_t n = 40000;
    for (int32_t i = 0; i < n; ++i) grid.RowAdd(L"1.25\tx", 0);
    for (int32_t i = 0; i < n; ++i) grid.RowAdd(L"0.5", grid.RowsCurrent());
    for (int32_t i = 0; i < n; ++i) grid.RowDel(0);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(seconds, 10.0); // an addition per row per change takes minutes here
    EXPECT_EQ(L"20000.00", grid.BarSummaryColRead(0)); // the first row, empty, and the halves
}
