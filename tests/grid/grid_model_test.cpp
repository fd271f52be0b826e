#include "grid/grid_model.h"

#include "foundation/numbers.h"
#include "grid/grid_file.h"
#include "grid/text_codec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <sstream>
#include <tuple>

using namespace tarn;
namespace fs = std::filesystem;

namespace {

struct RecordingHost : GridModelHost {
    int changes = 0, box_shows = 0, box_hides = 0, font_updates = 0;
    std::vector<int16_t> pointers;
    std::function<void()> on_change;

    void RaiseChange() override
    {
        ++changes;
        if (on_change) on_change();
    }
    void BoxShow() override { ++box_shows; }
    void BoxHide() override { ++box_hides; }
    void SetMousePointer(int16_t p) override { pointers.push_back(p); }
    void FontUpdate() override { ++font_updates; }
};

using Cell = std::pair<int32_t, int32_t>;
using Texts = std::vector<std::wstring>;

Texts fields(std::string_view bytes)
{
    GridFieldReader reader(bytes);
    Texts out;
    while (!reader.AtEnd()) reader.Next(out.emplace_back());
    return out;
}

std::string saved(const CellEngine &cells, const std::wstring &header)
{
    std::ostringstream out;
    WriteGridFile(out, cells, header);
    return out.str();
}

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

// A folder of its own for each test, removed afterwards.
class GridFileOnDisk : public GridModelTest {
protected:
    void SetUp() override { fs::create_directories(dir); }
    void TearDown() override { fs::remove_all(dir); }
    size_t entries() { return static_cast<size_t>(std::distance(fs::directory_iterator(dir), fs::directory_iterator())); }

    const fs::path dir = fs::temp_directory_path() /
                         ("tarn_grid_file_" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
};

} // namespace

TEST_F(GridModelTest, RowChangesRaiseChangeOnceEachTheLastRowIsClearedAndClearAndResetKeepWhatTheyShould)
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

    // GridClear empties the texts only; GridReset also leaves one row and the current cell (0, 0).
    fill(3, 2);
    grid.ColWidth(1, 2000);
    grid.GridClear();
    EXPECT_EQ(3, grid.RowsCurrent());
    EXPECT_EQ(L"", grid.CellTextRead(2, 1));
    EXPECT_EQ(2000, grid.Cells().ColWidth(1));
    fill(3, 2);
    grid.CellTextSet(2, 1, L"x");
    grid.GridReset();
    EXPECT_EQ(1, grid.RowsCurrent());
    EXPECT_EQ(2, grid.ColsCurrent());
    EXPECT_EQ(Cell(0, 0), current());
    EXPECT_EQ(L"", grid.CellTextRead(0, 0));
}

TEST_F(GridModelTest, ColumnChangesRaiseNoChangeTheLastColumnIsClearedAndTypesCover0To10000)
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

    // Column types are kept for the indexes 0 to 10000.
    grid.ColTypeSet(10000, kColCheck);
    grid.ColTypeSet(10001, kColDate);
    grid.ColTypeSet(-1, kColDate);
    EXPECT_EQ(L"3", grid.ColTypeRead(10000));
    EXPECT_EQ(L"", grid.ColTypeRead(10001));
    EXPECT_EQ(L"", grid.ColTypeRead(-1));
}

TEST_F(GridModelTest, CellSettersMoveTheCurrentCellReadsAndOutsideAddressesDoNotAndOnlyAcceptedValuesApply)
{
    fill(4, 4);
    const std::pair<std::function<void()>, Cell> steps[] = {
        {[&] { grid.CellTextSet(1, 2, L"t"); }, {1, 2}},
        {[&] { grid.CellColorSet(0xFF, 2, 3); }, {2, 3}}, // the colour comes first
        {[&] { EXPECT_EQ(0x80000005u, grid.CellColorRead(3, 1)); }, {3, 1}}, // none of its own: the grid's
        {[&] { grid.CellFontSet(0, 1, L"Arial"); }, {0, 1}},
        {[&] { grid.CellEnabledSet(3, 0, true, 0x808080, 0xC0C0C0); }, {3, 0}},
        {[&] { grid.CellTextSet(1, 9, L"lost"); }, {3, 0}}, // outside the grid: nothing moves
        {[&] { grid.CellTextSet(9, 1, L"lost"); }, {3, 0}},
        {[&] { grid.CellColorSet(0xFF, -1, 0); }, {3, 0}},
        {[&] { grid.CellFontSet(0, 4, L"Arial"); }, {3, 0}},
        {[&] { EXPECT_EQ(0u, grid.CellColorRead(4, 0)); }, {3, 0}},
        {[&] { grid.GridSetFocus(2, 1); }, {1, 2}}, // the column first, and the editor opens
        {[&] { grid.GridSetFocus(5, 1); }, {1, 2}}, // outside: no editor
    };
    for (size_t i = 0; i < std::size(steps); ++i) {
        steps[i].first();
        EXPECT_EQ(L"3:3", grid.CellTextRead(3, 3));
        EXPECT_EQ(steps[i].second, current()) << "step " << i;
    }
    EXPECT_EQ(L"1:3", grid.CellTextRead(1, 3));
    EXPECT_EQ(L"3:1", grid.CellTextRead(3, 1));
    EXPECT_EQ(2, host.box_hides); // GridSetFocus closes the editor first, wherever it goes
    EXPECT_EQ(1, host.box_shows);

    // The check, font and format setters apply only what they accept.
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
    // The flag starts False with column 0 as the previous one, and a new column flips it: the
    // very first sort is ascending, the next of that column descending, and a newly chosen
    // column repeats the previous direction before alternating again.
    std::string directions;
    Texts first;
    for (int32_t col : {1, 1, 2, 2, 2}) {
        grid.ColSetFocus(col);
        grid.SortFlex(col);
        directions += grid.Marker().descending ? 'D' : 'A';
        if (first.empty()) first = column(1);
    }
    EXPECT_EQ("ADDAD", directions);
    EXPECT_EQ((Texts{L"1", L"2", L"10"}), first); // numbers as numbers
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

TEST_F(GridModelTest, SummaryTotalsTheLeadingNumbersOfTheCurrentColumnOnChange)
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
}

// Random row, column, cell and whole-grid operations with occasional reads, inside and
// outside the Change handler, against the captions an immediate calculation would have left
// (several columns waiting at once, totals left waiting and read much later): a total
// stands for the column as it was at its calculation (inside the handler, the one before),
// added in row order (1e16 + 1 - 1e16 is 0), until a caption or the next calculation.
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
            const int32_t rows = grid.RowsCurrent(), col = pick(4), kind = pick(13);
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
            case 12: // the rarer whole-grid and column changes
                switch (pick(4)) {
                case 0: grid.GridClear(); break;
                case 1: grid.ColDel(); break;
                case 2: grid.ColAdd(500); break;
                default: grid.CellChkSet(pick(rows + 1), pick(3), value()); break;
                }
                break;
            default: grid.Change(); break;
            }
            if (kind <= 3 || kind == 11) expected[grid.ColCurrent()] = fresh_total(grid.ColCurrent()); // raised Change
            if (pick(10) == 0) check();
        }
        check();
    }
}

// What the totals cost, in values added up, for the patterns hosts use: a caption costs one
// addition of its column when it is read, never one per change or per recalculation, however
// the columns alternate; a grid filled at its end with its totals read after every row adds
// only its new rows.
TEST(GridModelSummary, TotalsAddEachColumnOncePerReadWhateverTheColumnsAndRowsDo)
{
    const int32_t n = 20000;
    struct Pattern {
        const char *name;
        std::function<void(GridModel &, int32_t)> row; // run for rows 0..n-1
        uint64_t most;                                  // values added at most, in all
    };
    const Pattern patterns[] = {
        {"RowAdd at the top, then column 3", [](GridModel &g, int32_t) {
             g.RowAdd(L"1.5\t2\tx\t0.25", 0);
             g.BarSummaryColCalc(3);
         }, 2 * (n + 1)},
        {"a write whose column changes row to row", [](GridModel &g, int32_t r) {
             g.RowAdd(L"", r);
             g.CellTextSet(r, r % 4, L"0.1");
             g.Change();
         }, 4 * (n + 1)},
        {"rows removed from the middle, columns 1 and 2 in turn", [](GridModel &g, int32_t r) {
             g.RowDel(g.RowsCurrent() / 2);
             g.BarSummaryColCalc(1 + r % 2);
         }, 2 * (2 * n + 1)},
        {"a fill at the end, read after every row", [](GridModel &g, int32_t r) {
             g.RowAdd(L"", r);
             for (int32_t c = 0; c < 4; ++c) g.CellTextSet(r, c, std::to_wstring(r % 7) + L".5");
             g.Change();
             g.BarSummaryColCalc(1);
             (void)g.BarSummaryColRead(3);
             (void)g.BarSummaryColRead(1);
         }, 6 * (n + 1)},
    };
    for (const Pattern &p : patterns) {
        GridModel grid;
        grid.ColsSet(4);
        if (std::string(p.name).find("removed") != std::string::npos)
            for (int32_t r = 0; r < 2 * n; ++r) grid.RowAdd(L"3\t0.5\t0.25", r);
        const uint64_t before = grid.TotalsWork();
        for (int32_t r = 0; r < n && grid.TotalsWork() - before <= p.most; ++r) p.row(grid, r); // stops early when quadratic
        for (int32_t c = 0; c < 4; ++c) (void)grid.BarSummaryColRead(c);
        EXPECT_LE(grid.TotalsWork() - before, p.most) << p.name;
    }
}

// A total stands for its column as it was when it was asked for, even when thousands of row
// and text changes follow before anybody reads it (more than it keeps notes for), and while
// other columns wait too.
TEST(GridModelSummary, ATotalLeftWaitingThroughThousandsOfChangesIsTheTotalOfItsMoment)
{
    GridModel grid;
    grid.ColsSet(3);
    const std::wstring values[] = {L"1e16", L"1", L"-1e16", L"0.1", L"", L"7 kg", L"0.3"};
    for (int32_t r = 0; r < 60; ++r) grid.RowAdd(values[r % 7] + L"\t" + values[(r + 3) % 7] + L"\t" + values[(r + 5) % 7], r);
    auto fresh = [&](int32_t col) {
        double total = 0;
        for (int32_t r = 0; r < grid.RowsCurrent(); ++r) total += LeadingNumber(grid.CellTextRead(r, col));
        return FormatFixed(total, 2);
    };
    grid.BarSummaryColCalc(1);
    const std::wstring first = fresh(1);
    grid.BarSummaryColCalc(2);
    const std::wstring second = fresh(2);
    std::mt19937 rng(3);
    for (int i = 0; i < 12000; ++i) {
        const int32_t rows = grid.RowsCurrent(), r = static_cast<int32_t>(rng() % static_cast<unsigned>(rows));
        switch (rng() % 4) {
        case 0: grid.CellTextSet(r, 1 + static_cast<int32_t>(rng() % 2), values[rng() % 7]); break;
        case 1: grid.Cells().AddItem(L"\t" + values[rng() % 7] + L"\t5", r); break; // no Change: nothing recalculated
        case 2: if (rows > 30) grid.Cells().RemoveItem(r); break;
        default: grid.Cells().SetTextMatrix(r, 2, values[rng() % 7]); break;
        }
    }
    EXPECT_EQ(first, grid.BarSummaryColRead(1));
    EXPECT_EQ(second, grid.BarSummaryColRead(2));
    grid.BarSummaryColCalc(1);
    EXPECT_EQ(fresh(1), grid.BarSummaryColRead(1));
}

// Where the current cell is after the operations that move it or the rows under it.
TEST_F(GridModelTest, TheCurrentCellFollowsRowAndColumnOperationsAsItAlwaysHas)
{
    fill(5, 4);
    grid.ColSetFocus(3);
    grid.RowSetFocus(4);
    const std::pair<std::function<void()>, Cell> steps[] = {
        {[&] { grid.RowAdd(L"x", 2); }, {2, 3}},        // the new row
        {[&] { grid.RowDel(0); }, {2, 3}},              // the number stays
        {[&] { grid.RowSetFocus(4); }, {4, 3}},
        {[&] { grid.RowDel(4); }, {3, 3}},              // back inside
        {[&] { grid.RowsSet(2); }, {1, 3}},
        {[&] { grid.ColDel(); }, {1, 2}},
        {[&] { grid.ColsSet(1); }, {1, 0}},
        {[&] { grid.ColAdd(500); }, {1, 0}},
        {[&] { grid.SortFlex(0); }, {1, 0}},            // rows move, the cell does not
        {[&] { grid.RowAdd(L"y", 9); }, {1, 0}},        // refused: nothing moves
        {[&] { grid.CellTextSet(0, 1, L"z"); }, {0, 1}},
        {[&] { grid.GridClear(); }, {0, 1}},
        {[&] { grid.GridReset(); }, {0, 0}},
        {[&] { grid.RowsSet(0); }, {0, 0}},
        {[&] { grid.RowAdd(L"", 0); }, {0, 0}},
    };
    for (size_t i = 0; i < std::size(steps); ++i) {
        steps[i].first();
        EXPECT_EQ(steps[i].second, current()) << "step " << i;
    }
}

TEST(GridFieldReader, SplitsAtCommasAndLineEndsHonoursQuotesAndFallsBackToWindows1252)
{
    EXPECT_EQ((Texts{L"a", L"b", L"", L"c"}), fields("a,b\r\n\r\nc\r\n"));
    EXPECT_EQ((Texts{L"x", L"y", L"z"}), fields("x\ry\nz"));
    EXPECT_EQ((Texts{L"lead", L"trail  "}), fields("  \tlead\r\ntrail  \r\n"));
    EXPECT_EQ((Texts{L"a, b", L"next"}), fields("\"a, b\"\r\nnext\r\n"));
    EXPECT_EQ((Texts{L"q", L"after"}), fields("\"q\"dropped\r\nafter"));
    EXPECT_EQ((Texts{L"two\r\nlines"}), fields("\"two\r\nlines\"\r\n"));
    EXPECT_EQ((Texts{L"open to the end\r\n"}), fields("\"open to the end\r\n"));
    EXPECT_EQ((Texts{L"a", L""}), fields("a,\r\n"));
    EXPECT_EQ((Texts{L""}), fields("   "));
    std::wstring f;
    EXPECT_THROW(GridFieldReader("").Next(f), std::out_of_range);

    EXPECT_EQ((Texts{L"\u00e9t\u00e9", L"\u20ac"}), fields("\xC3\xA9t\xC3\xA9\r\n\xE2\x82\xAC\r\n"));
    EXPECT_EQ((Texts{L"BOM"}), fields("\xEF\xBB\xBF" "BOM"));
    // One byte that is not UTF-8 makes the whole file Windows-1252.
    EXPECT_EQ((Texts{L"\u00e9t\u00e9", L"\u20ac\u201c\u0081"}), fields("\xE9t\xE9\r\n\x80\x93\x81"));
    // Overlong, a surrogate, past U+10FFFF, cut short.
    for (const char *bad : {"\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "abc\xE2\x82"}) EXPECT_FALSE(IsValidUtf8(bad));
    EXPECT_TRUE(IsValidUtf8("\xF0\x9F\x98\x80"));
}

TEST(GridFile, HeaderLosesItsFirstThreeCharactersWhateverTheCountsWidth)
{
    for (auto [cols, header] : {std::pair{3, L"tock"}, std::pair{12, L"Stock"}, std::pair{100, L"|Stock"},
                                std::pair{1000, L"0|Stock"}}) {
        CellEngine cells(1, cols);
        std::string image = saved(cells, L"Stock");
        EXPECT_EQ(std::to_string(cols) + "|Stock\r\n", image.substr(0, image.find('\n') + 1));
        CellEngine back(0, 0);
        EXPECT_EQ(header, LoadGridFileBytes(image, back, ColumnTypes()));
        EXPECT_EQ(cols, back.Cols());
        EXPECT_EQ(1, back.Rows());
    }
}

TEST(GridFile, RoundTripsTextsAndUnicodeButACommaSplitsItsCell)
{
    CellEngine cells(2, 3);
    cells.SetTextMatrix(0, 0, L"Gr\u00fc\u00dfe");
    cells.SetTextMatrix(0, 2, L"\u65e5\u672c \U0001F600");
    cells.SetTextMatrix(1, 1, L"42.5");
    cells.SetTextMatrix(1, 2, L"Acme, Inc");
    std::string image = saved(cells, L"xxT");
    EXPECT_EQ("3|xxT\r\nGr\xC3\xBC\xC3\x9F" "e\r\n\r\n", image.substr(0, 18));

    CellEngine back(0, 0);
    EXPECT_EQ(L"xT", LoadGridFileBytes(image, back, ColumnTypes()));
    ASSERT_EQ(3, back.Rows());
    for (int r = 0; r < 2; ++r)
        for (int c = 0; c < 3; ++c) {
            EXPECT_EQ(r == 1 && c == 2 ? std::wstring_view(L"Acme") : cells.TextAt(r, c), back.TextAt(r, c));
            EXPECT_EQ(kAlignLeftCenter, back.StyleAt(r, c).alignment);
        }
    // The rest of the split cell, less its leading blank, starts a row that stays empty and
    // unformatted past the data.
    EXPECT_EQ(L"Inc", back.TextAt(2, 0));
    EXPECT_EQ(nullptr, back.FormatAt(2, 1));
}

TEST(GridFile, BadDataLoadsWithoutHarm)
{
    // No header field, or no "|": a count of 0, and nothing can fill a row, so none is added
    // (and no endless loop).
    for (const char *image : {"", "12\r\nx\r\ny\r\n"}) {
        CellEngine none(0, 4);
        EXPECT_EQ(L"", LoadGridFileBytes(image, none, ColumnTypes()));
        EXPECT_EQ(0, none.Cols());
        EXPECT_EQ(0, none.Rows());
    }
    // Counts the grid cannot take keep the columns it had.
    for (const char *image : {"99999999999|huge\r\nx\r\n", "-3|neg\r\nx\r\n", "2000000|wide\r\nx\r\n"}) {
        CellEngine kept(0, 2);
        LoadGridFileBytes(image, kept, ColumnTypes());
        EXPECT_EQ(2, kept.Cols()) << image;
        EXPECT_EQ(L"x", kept.TextAt(0, 0));
    }
    // 100,000 columns: one row, filled only as far as the data goes.
    CellEngine wide(0, 0);
    EXPECT_EQ(L"000|wide", LoadGridFileBytes("100000|wide\r\na,b,c\r\n", wide, ColumnTypes()));
    EXPECT_EQ(100000, wide.Cols());
    EXPECT_EQ(1, wide.Rows());
    EXPECT_EQ(L"c", wide.TextAt(0, 2));
    EXPECT_EQ(nullptr, wide.FormatAt(0, 3));
}

TEST_F(GridFileOnDisk, SavesThroughATemporaryFileAndKeepsTheOldOneOnFailure)
{
    CellEngine cells(1, 1);
    cells.SetTextMatrix(0, 0, L"new");
    const fs::path target = dir / fs::path(u8"grille \u00e9t\u00e9.txt"); // UTF-8 on POSIX, UTF-16 on Windows
    std::ofstream(target, std::ios::binary) << "old contents";

    auto fails_half_way = [](std::ostream &out) {
        out << "half written";
        throw std::runtime_error("disk full");
    };
    EXPECT_THROW(ReplaceFileContents(target, fails_half_way), std::runtime_error);
    EXPECT_EQ("old contents", ReadFileBytes(target));
    EXPECT_EQ(1u, entries()); // no temporary file left behind

    SaveGridFile(target, cells, L"..x");
    EXPECT_EQ("1|..x\r\nnew\r\n", ReadFileBytes(target));
    EXPECT_EQ(1u, entries());

    // A folder that is a file: nothing is written, nothing is lost.
    EXPECT_ANY_THROW(SaveGridFile(target / "child.txt", cells, L"x"));
    EXPECT_EQ("1|..x\r\nnew\r\n", ReadFileBytes(target));
}

TEST_F(GridFileOnDisk, TheGridSavesAndLoadsWithTheHourglassAndCheckCellsComeBackInWebdings)
{
    fill(3, 12);
    grid.ColTypeSet(11, kColCheck);
    grid.CellChkSet(1, 11, L"TRUE");
    grid.CellChkSet(0, 11, L"no");
    grid.CellTextSet(2, 11, L"  x ");
    grid.RowSetFocus(2);
    grid.ColSetFocus(5);
    grid.GridRedraw(false);
    EXPECT_TRUE(grid.GridSave(dir / "g.txt", L"Stock"));
    EXPECT_EQ(Cell(2, 5), current());
    EXPECT_TRUE(grid.Cells().Redraw());

    GridModel other(&host);
    other.ColTypeSet(11, kColCheck);
    EXPECT_EQ(L"Stock", other.GridLoad(dir / "g.txt"));
    EXPECT_EQ((std::vector<int16_t>{11, 0}), host.pointers);
    EXPECT_EQ(1, host.font_updates);
    EXPECT_EQ(L"2:10", other.CellTextRead(2, 10));
    // A check cell comes back as a blank and its trimmed text.
    EXPECT_EQ((Texts{L" ", L" a", L" x"}), (Texts{other.CellTextRead(0, 11), other.CellTextRead(1, 11),
                                                   other.CellTextRead(2, 11)}));
    const CellEngine::CellStyle s = other.Cells().StyleAt(0, 11);
    EXPECT_EQ(L"webdings", *s.font_name);
    EXPECT_FLOAT_EQ(12, s.font_size);
    EXPECT_EQ(L"MS Sans Serif", *other.Cells().StyleAt(0, 10).font_name);
    EXPECT_EQ(Cell(0, 0), Cell(other.RowCurrent(), other.ColCurrent()));
    EXPECT_TRUE(other.Visible());
}

TEST_F(GridFileOnDisk, MissingEmptyBinaryAndFolderFilesLoadAsAnEmptyUsableGrid)
{
    EXPECT_FALSE(grid.GridSave(dir, L"x")); // a folder
    EXPECT_TRUE(grid.Visible());
    EXPECT_TRUE(grid.Cells().Redraw());
    EXPECT_TRUE(fs::is_directory(dir));

    std::ofstream(dir / "empty.txt").close();
    std::ofstream(dir / "bin.dat", std::ios::binary) << std::string("\0\xff\x01,\"\r", 6);
    for (const fs::path &file : {dir / "missing.txt", dir / "empty.txt", dir / "bin.dat", dir}) {
        grid.ColsSet(2);
        EXPECT_EQ(L"", grid.GridLoad(file)) << file;
        EXPECT_EQ(0, grid.ColsCurrent()) << file;
    }
    EXPECT_EQ(0, grid.RowsCurrent());
    EXPECT_EQ(L"", grid.CellTextRead(0, 0));
    EXPECT_EQ(0, grid.CellCurrentLeft());
    grid.SortFlex(0);
    grid.BarHeaderSort();
    grid.RowAdd(L"x", 0); // no columns: an empty row
    EXPECT_EQ(1, grid.RowsCurrent());
    EXPECT_EQ(L"0.00", grid.BarSummaryColRead(0));
}
