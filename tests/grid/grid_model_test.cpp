#include "grid/grid_model.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <functional>

using namespace tarn;
namespace fs = std::filesystem;

namespace {

struct RecordingHost : GridModelHost {
    int changes = 0, change_posts = 0, box_shows = 0, box_hides = 0, font_updates = 0;
    std::vector<int16_t> pointers;
    std::function<void()> on_change;

    void RaiseChange() override
    {
        ++changes;
        if (on_change) on_change();
    }
    void RaiseChangePost() override { ++change_posts; }
    void BoxShow() override { ++box_shows; }
    void BoxHide() override { ++box_hides; }
    void SetMousePointer(int16_t p) override { pointers.push_back(p); }
    void FontUpdate() override { ++font_updates; }
};

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
    std::vector<std::wstring> column(int32_t col)
    {
        std::vector<std::wstring> out;
        for (int32_t r = 0; r < grid.RowsCurrent(); ++r) out.push_back(grid.CellTextRead(r, col));
        return out;
    }
    void current_is(int32_t row, int32_t col)
    {
        EXPECT_EQ(row, grid.RowCurrent());
        EXPECT_EQ(col, grid.ColCurrent());
    }

    RecordingHost host;
    GridModel grid{&host};
};

} // namespace

TEST_F(GridModelTest, RowAndColumnChangesRaiseChangeExactlyWhereTheyShould)
{
    grid.ColsSet(3);
    EXPECT_EQ(0, host.changes);
    grid.RowsSet(4);
    EXPECT_EQ(1, host.changes);
    grid.RowAdd(L"a\tb", 2);
    EXPECT_EQ(2, host.changes);
    current_is(2, 0); // the new row is current
    EXPECT_EQ(L"b", grid.CellTextRead(2, 1));
    grid.RowDel(0);
    EXPECT_EQ(3, host.changes);
    grid.RowAdd(L"nowhere", 99); // not added, still a change
    EXPECT_EQ(4, host.changes);
    EXPECT_EQ(4, grid.RowsCurrent());
    grid.ColAdd(1500.5);
    grid.ColDel();
    grid.ColWidth(0, 100);
    EXPECT_EQ(4, host.changes);
    EXPECT_EQ(6, host.box_hides); // RowAdd x2, RowDel, ColAdd, ColDel, ColWidth
    grid.ChangePost();
    EXPECT_EQ(1, host.change_posts);
}

TEST_F(GridModelTest, ColumnsAddWithTheirWidthAndNeverGoBelowOne)
{
    grid.ColAdd(1500.5); // half to even
    EXPECT_EQ(1500, grid.Cells().ColWidth(1));
    grid.ColAdd(-20); // negative: the default stays
    EXPECT_EQ(CellEngine::kDefaultColWidth, grid.Cells().ColWidth(2));
    grid.ColAdd(1e12); // does not fit: column added, width skipped
    EXPECT_EQ(4, grid.ColsCurrent());
    EXPECT_EQ(CellEngine::kDefaultColWidth, grid.Cells().ColWidth(3));
    grid.ColWidth(3, 0);
    grid.ColWidth(3, -1);
    EXPECT_EQ(0, grid.Cells().ColWidth(3));
}

TEST_F(GridModelTest, TheLastRowAndTheLastColumnAreClearedInsteadOfRemoved)
{
    fill(1, 2);
    grid.RowDel(5); // one row: cleared whatever the index
    EXPECT_EQ(1, grid.RowsCurrent());
    EXPECT_EQ((std::vector<std::wstring>{L""}), column(1));
    EXPECT_EQ(1, host.changes);

    fill(2, 1);
    grid.ColDel();
    EXPECT_EQ(1, grid.ColsCurrent());
    EXPECT_EQ((std::vector<std::wstring>{L"", L""}), column(0));
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
    EXPECT_EQ(L"0", grid.ColTypeRead(0));
    EXPECT_EQ(CellEditor::kCheck, grid.EditorFor(10000));
    EXPECT_EQ(CellEditor::kText, grid.EditorFor(10001));
    const CellEditor editors[] = {CellEditor::kText,  CellEditor::kDate,    CellEditor::kImageCombo, CellEditor::kCheck,
                                  CellEditor::kCombo, CellEditor::kPercent, CellEditor::kTime,       CellEditor::kNone};
    for (int32_t code = 0; code <= 7; ++code) {
        grid.ColTypeSet(1, code);
        EXPECT_EQ(editors[code], grid.EditorFor(1)) << code;
    }
}

TEST_F(GridModelTest, CellChkSetChecksOnlyForItsAcceptedValues)
{
    fill(1, 1);
    for (const wchar_t *yes : {L"true", L"TRUE", L"True", L"1", L"1.0", L" a", L" 1 "}) {
        grid.CellTextSet(0, 0, L"x");
        grid.CellChkSet(0, 0, yes);
        EXPECT_EQ(L" a", grid.CellTextRead(0, 0)) << yes;
    }
    for (const wchar_t *no : {L"2", L"yes", L"", L"a", L"1x", L"truth", L"0"}) {
        grid.CellTextSet(0, 0, L"x");
        grid.CellChkSet(0, 0, no);
        EXPECT_EQ(L"", grid.CellTextRead(0, 0)) << no;
    }
}

TEST_F(GridModelTest, CellOperationsLeaveTheAddressedCellCurrentButReadsDoNot)
{
    fill(4, 4);
    grid.CellTextSet(1, 2, L"t");
    current_is(1, 2);
    EXPECT_EQ(L"3:3", grid.CellTextRead(3, 3));
    current_is(1, 2);
    grid.CellColorSet(0xFF, 2, 3);
    current_is(2, 3);
    EXPECT_EQ(0xFFu, grid.CellColorRead(2, 3));
    EXPECT_EQ(0x80000005u, grid.CellColorRead(3, 1)); // the grid's back colour
    current_is(3, 1);
    grid.CellFontSet(0, 1, L"Arial");
    current_is(0, 1);
    grid.CellFormatSet(1, 0, L"Arial");
    current_is(1, 0);
    grid.CellEnabledSet(3, 0, true, 0x808080, 0xC0C0C0);
    current_is(3, 0);

    // Outside the grid nothing changes, not even the current cell.
    grid.CellTextSet(1, 9, L"lost");
    grid.CellTextSet(9, 1, L"lost");
    grid.CellColorSet(0xFF, -1, 0);
    grid.CellFontSet(0, 4, L"Arial");
    EXPECT_EQ(0u, grid.CellColorRead(4, 0));
    EXPECT_EQ(L"", grid.CellTextRead(9, 9));
    current_is(3, 0);
    EXPECT_EQ(L"1:1", grid.CellTextRead(1, 1));
    EXPECT_EQ(L"0:1", grid.CellTextRead(0, 1));
}

TEST_F(GridModelTest, FontAndFormatSettersApplyWhatTheyAreGiven)
{
    fill(2, 2);
    grid.CellFontSet(0, 0, L"Arial", L"12", true, true, 0x11, 0x22);
    const CellEngine::CellStyle s = grid.Cells().StyleAt(0, 0);
    EXPECT_EQ(L"Arial", *s.font_name);
    EXPECT_FLOAT_EQ(12, s.font_size);
    EXPECT_TRUE(s.bold && s.strike);
    EXPECT_EQ(0x11u, s.fore);
    EXPECT_EQ(0x22u, s.back);

    // A size that is no number is skipped; the steps after it still run.
    grid.CellFontSet(1, 0, std::nullopt, L"big", true);
    EXPECT_FLOAT_EQ(8.25f, grid.Cells().StyleAt(1, 0).font_size);
    EXPECT_TRUE(grid.Cells().StyleAt(1, 0).bold);

    grid.CellFormatSet(1, 1, L"Courier", L"20", true, false, 0x33);
    const CellEngine::CellStyle f = grid.Cells().StyleAt(1, 1);
    EXPECT_EQ(L"Courier", *f.font_name);
    EXPECT_FLOAT_EQ(8.25f, f.font_size); // Size is accepted, not applied
    EXPECT_TRUE(f.bold);
    EXPECT_EQ(0x33u, f.fore);
}

TEST_F(GridModelTest, GridSetFocusClosesMovesAndOpensTheEditor)
{
    fill(3, 3);
    grid.GridSetFocus(2, 1);
    current_is(1, 2);
    EXPECT_EQ(1, host.box_hides);
    EXPECT_EQ(1, host.box_shows);
    grid.GridSetFocus(5, 1);
    current_is(1, 2);
    EXPECT_EQ(1, host.box_shows);
}

TEST_F(GridModelTest, SortFlexAlternatesAndANewColumnRepeatsThePreviousDirection)
{
    fill(3, 3);
    grid.CellTextSet(0, 1, L"2");
    grid.CellTextSet(1, 1, L"10");
    grid.CellTextSet(2, 1, L"1");
    grid.CellTextSet(0, 2, L"b");
    grid.CellTextSet(1, 2, L"c");
    grid.CellTextSet(2, 2, L"a");
    auto sort = [&](int32_t col) {
        grid.ColSetFocus(col);
        grid.SortFlex(col);
        return grid.Marker().descending ? 'D' : 'A';
    };
    // Column 1 first (the flag starts False, the previous column 0): a new column flips the
    // flag, so the very first sort is ascending.
    EXPECT_EQ('A', sort(1));
    EXPECT_EQ((std::vector<std::wstring>{L"1", L"2", L"10"}), column(1));
    EXPECT_EQ('D', sort(1));
    EXPECT_EQ((std::vector<std::wstring>{L"10", L"2", L"1"}), column(1));
    // Column 2 after a descending sort: descending, ascending, descending.
    EXPECT_EQ('D', sort(2));
    EXPECT_EQ((std::vector<std::wstring>{L"c", L"b", L"a"}), column(2));
    EXPECT_EQ('A', sort(2));
    EXPECT_EQ('D', sort(2));
    EXPECT_TRUE(grid.blnGRIDORDER);
    EXPECT_EQ(2, grid.lngPREVIOUSCOLNO);
    EXPECT_EQ(3 * 960 - 230, grid.Marker().left);

    // The rows are sorted on the current column; ColNo only has to be a column.
    grid.ColSetFocus(1);
    grid.SortFlex(0);
    EXPECT_EQ((std::vector<std::wstring>{L"10", L"2", L"1"}), column(1)); // flag flipped: descending
    grid.SortFlex(7);                                                   // no such column: no sort
    EXPECT_EQ((std::vector<std::wstring>{L"10", L"2", L"1"}), column(1));
}

TEST_F(GridModelTest, BarHeaderSortPicksTheColumnUnderTheMouse)
{
    fill(2, 3);
    grid.ColWidth(0, 500);
    grid.SetHeaderMouseX(499.9f);
    grid.BarHeaderSort();
    EXPECT_EQ(0, grid.lngPREVIOUSCOLNO);
    grid.SetHeaderMouseX(500);
    grid.BarHeaderSort();
    EXPECT_EQ(1, grid.lngPREVIOUSCOLNO);
    grid.SetHeaderMouseX(1e9f); // past them all: the last column
    grid.BarHeaderSort();
    EXPECT_EQ(2, grid.lngPREVIOUSCOLNO);
    grid.SetHeaderMouseX(-5);
    grid.BarHeaderSort();
    EXPECT_EQ(2, grid.lngPREVIOUSCOLNO);
    EXPECT_TRUE(grid.Cells().Redraw());
}

TEST_F(GridModelTest, SummaryTotalsTheLeadingNumbers)
{
    grid.ColsSet(2);
    grid.RowsSet(4);
    grid.CellTextSet(0, 1, L"1.5");
    grid.CellTextSet(1, 1, L"abc");
    grid.CellTextSet(3, 1, L"2");
    grid.BarSummaryColSet(1, L"old", 2, 0xFF);
    grid.BarSummaryColCalc(1);
    EXPECT_EQ(L"3.50", grid.BarSummaryColRead(1));
    SummaryCell cell = grid.BarSummaryCell(1);
    EXPECT_EQ(1, cell.alignment);
    EXPECT_EQ(0u, cell.fore);
    grid.BarSummaryColSet(1, L"total");
    EXPECT_EQ(L"total", grid.BarSummaryColRead(1));
    EXPECT_EQ(1, grid.BarSummaryCell(1).alignment); // kept when not given

    // Change totals the current column.
    grid.CellTextSet(2, 1, L"10 kg");
    grid.Change();
    EXPECT_EQ(L"13.50", grid.BarSummaryColRead(1));
    EXPECT_EQ(L"0.00", grid.BarSummaryColRead(0)); // RowsSet's Change totalled column 0
    grid.BarSummaryColVisible(1, false);
    EXPECT_FALSE(grid.BarSummaryCell(1).visible);
    grid.BarHeaderCaptionSet(1, L"Weight");
    EXPECT_EQ(L"Weight", grid.BarHeaderCaptionRead(1));
    EXPECT_EQ(L"", grid.BarHeaderCaptionRead(-1));
}

TEST_F(GridModelTest, ResetAndClearKeepWhatTheyShould)
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
    current_is(0, 0);
    EXPECT_EQ(L"", grid.CellTextRead(0, 0));
    EXPECT_TRUE(grid.Cells().Redraw());
    EXPECT_TRUE(grid.Visible());
    grid.GridHide();
    EXPECT_FALSE(grid.Visible());
}

class GridModelFiles : public GridModelTest {
protected:
    void SetUp() override
    {
        dir = fs::temp_directory_path() /
              ("tarn_grid_model_" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }
    fs::path dir;
};

TEST_F(GridModelFiles, SaveAndLoadRoundTripThroughTheModel)
{
    fill(3, 12);
    grid.ColTypeSet(11, kColCheck);
    grid.CellChkSet(1, 11, L"TRUE");
    grid.CellChkSet(0, 11, L"no");
    grid.RowSetFocus(2);
    grid.ColSetFocus(5);
    grid.GridRedraw(false);
    EXPECT_TRUE(grid.GridSave(dir / "g.txt", L"Stock"));
    current_is(2, 5);
    EXPECT_TRUE(grid.Cells().Redraw());

    GridModel other(&host);
    other.ColTypeSet(11, kColCheck);
    host.pointers.clear();
    EXPECT_EQ(L"Stock", other.GridLoad(dir / "g.txt"));
    EXPECT_EQ((std::vector<int16_t>{11, 0}), host.pointers);
    EXPECT_EQ(1, host.font_updates);
    EXPECT_EQ(3, other.RowsCurrent());
    EXPECT_EQ(12, other.ColsCurrent());
    EXPECT_EQ(L"2:10", other.CellTextRead(2, 10));
    EXPECT_EQ(L" a", other.CellTextRead(1, 11));
    EXPECT_EQ(L" ", other.CellTextRead(0, 11));
    EXPECT_EQ(0, other.RowCurrent());
    EXPECT_EQ(0, other.ColCurrent());
    EXPECT_TRUE(other.Visible());
}

TEST_F(GridModelFiles, FailedSavesAndLoadsLeaveAUsableGrid)
{
    fill(2, 2);
    EXPECT_FALSE(grid.GridSave(dir, L"x")); // a folder
    EXPECT_TRUE(grid.Visible());
    EXPECT_TRUE(grid.Cells().Redraw());
    EXPECT_TRUE(fs::is_directory(dir));

    EXPECT_EQ(L"", grid.GridLoad(dir / "missing.txt"));
    EXPECT_EQ(0, grid.RowsCurrent());
    EXPECT_EQ(0, grid.ColsCurrent());
    EXPECT_EQ(L"", grid.CellTextRead(0, 0));
    EXPECT_EQ(0, grid.CellCurrentLeft());
    grid.SortFlex(0);
    grid.BarHeaderSort();
    grid.RowAdd(L"x", 0); // no columns: an empty row
    EXPECT_EQ(1, grid.RowsCurrent());
    EXPECT_EQ(L"0.00", grid.BarSummaryColRead(0));

    std::ofstream(dir / "bin.dat", std::ios::binary) << std::string("\0\xff\x01,\"\r", 6);
    grid.GridLoad(dir / "bin.dat");
    EXPECT_EQ(0, grid.ColsCurrent());
    EXPECT_EQ(L"", grid.GridLoad(dir)); // a folder is no file
}
