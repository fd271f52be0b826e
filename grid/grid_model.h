// The data grid's behaviour without its window: the row, column and cell operations, the
// column types, sorting, the header and summary bars' captions, loading and saving. The
// grid control forwards its methods here one to one and paints what Cells() and the bars
// hold; events and the in-cell editors go back to it through GridModelHost.
//
// Every operation runs trapped, as the control's methods always have: nothing throws to the
// caller, a failed read gives 0 or the empty text. An operation addressed to a row or column
// outside the grid changes nothing (the current cell included); the host calls it makes
// (BoxHide, Change) still happen where the operation always makes them.
#pragma once
#include "grid/engine/cell_engine.h"
#include "grid/column_types.h"
#include "grid/summary_bar.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace tarn {

// What the model asks of the control around it. Every member has a do-nothing default.
struct GridModelHost {
    virtual ~GridModelHost() = default;
    virtual void RaiseChange() {}
    virtual void RaiseChangePost() {}
    // Opens the in-cell editor of the current column's type over the current cell
    // (grid/editors/editor_kinds.h tells which); a second BoxShow without a BoxHide is ignored.
    virtual void BoxShow() {}
    // Closes the open editor, writing its value back into the cell (through the model).
    virtual void BoxHide() {}
    // The control's mouse pointer: 11 the hourglass while a file loads, 0 the default.
    virtual void SetMousePointer(int16_t pointer) {}
    // Re-applies the control's font to the grid and its editors (after a load).
    virtual void FontUpdate() {}
    // Re-runs the control's resize layout (GridRefresh).
    virtual void Relayout() {}
};

// Where the sort marker stands after a sort (the control draws it in its marker frame).
struct SortMarker {
    bool shown = false;
    bool descending = false;
    int32_t left = 0; // twips: the current cell's CellLeft + CellWidth - 230 at the sort
};

class GridModel {
public:
    // A grid of one row and one column, none of them fixed (the header and summary bars stand
    // outside the cell matrix), current cell (0, 0). `host` may be nullptr.
    explicit GridModel(GridModelHost *host = nullptr);
    GridModel(const GridModel &) = delete;
    GridModel &operator=(const GridModel &) = delete;

    void SetHost(GridModelHost *host) { host_ = host; }

    // The cell matrix, for painting (and for the control's own reads).
    CellEngine &Cells() { return cells_; }
    const CellEngine &Cells() const { return cells_; }
    const ColumnTypes &Types() const { return types_; }

    // Sort state, public as the control has always had it: the direction flag and the column
    // that was current at the end of the last sort.
    bool blnGRIDORDER = false;
    int32_t lngPREVIOUSCOLNO = 0;

    // ---- rows
    // BoxHide; inserts a row at RowNo whose columns take the tab-separated pieces of Text;
    // makes RowNo the current row; Change (also when the row could not be added).
    void RowAdd(const std::wstring &Text, int32_t RowNo);
    // BoxHide; removes row RowNo, or clears the texts when the grid has exactly one row
    // (whatever RowNo is); Change.
    void RowDel(int32_t RowNo);
    // Sets the row count (0 to CellEngine::kMaxRows); Change.
    void RowsSet(int32_t RowNo);
    int32_t RowsCurrent() const { return cells_.Rows(); }
    int32_t RowCurrent() const { return cells_.Row(); }
    void RowSetFocus(int32_t RowNo);

    // ---- columns
    // BoxHide; one column more, the new last one ColWidth twips wide (rounded half to even;
    // a width that is negative or does not fit 32 bits leaves the default width).
    void ColAdd(double ColWidth);
    // BoxHide; removes the last column, or clears the texts when there is exactly one.
    void ColDel();
    // Sets the column count (0 to CellEngine::kMaxCols); no Change.
    void ColsSet(int32_t ColNo);
    int32_t ColsCurrent() const { return cells_.Cols(); }
    int32_t ColCurrent() const { return cells_.Col(); }
    void ColSetFocus(int32_t ColNo);
    // BoxHide; sets the column's width in twips. The lower bound is 0 (a hidden column): a
    // negative width, or one that does not fit 32 bits, is not written.
    void ColWidth(int32_t ColNo, double ColWidthVal);
    // Column type codes for indexes 0..10000; others are ignored and read as "".
    void ColTypeSet(int32_t ColNo, int32_t ColTypeVal) { types_.Set(ColNo, ColTypeVal); }
    std::wstring ColTypeRead(int32_t ColNo) const { return types_.Read(ColNo); }

    // ---- cells. The setters make (RowNo, ColNo) the current cell and leave it there.
    void CellTextSet(int32_t RowNo, int32_t ColNo, const std::wstring &Text);
    // The text; the current cell does not move.
    std::wstring CellTextRead(int32_t RowNo, int32_t ColNo) const;
    // Checks the cell (" a") for " a", "TRUE" in any case, or a text whose whole value is the
    // number 1 ("1", "1.0", " 1 "); unchecks it ("") for anything else. Text only.
    void CellChkSet(int32_t Row, int32_t Col, const std::wstring &Value);
    void CellEnabledSet(int32_t RowNo, int32_t ColNo, bool StrikeThru, uint32_t oleForeColor, uint32_t oleBackColor);
    // Font name, size (a number as text, above 0 and at most 2048; anything else is not
    // applied), bold, strike-through, fore and back colour, in that order; an argument not
    // given is not applied. An empty font name returns the cell to the grid's font.
    void CellFontSet(int32_t RowNo, int32_t ColNo, const std::optional<std::wstring> &strFont = std::nullopt,
                     const std::optional<std::wstring> &Size = std::nullopt, std::optional<bool> Bold = std::nullopt,
                     std::optional<bool> StrikeThru = std::nullopt, std::optional<uint32_t> oleForeColor = std::nullopt,
                     std::optional<uint32_t> oleBackColor = std::nullopt);
    // As CellFontSet, but sets bold, font name, strike-through, fore and back colour: Size is
    // accepted and not applied.
    void CellFormatSet(int32_t RowNo, int32_t ColNo, const std::optional<std::wstring> &strFont = std::nullopt,
                       const std::optional<std::wstring> &Size = std::nullopt, std::optional<bool> Bold = std::nullopt,
                       std::optional<bool> StrikeThru = std::nullopt, std::optional<uint32_t> oleForeColor = std::nullopt,
                       std::optional<uint32_t> oleBackColor = std::nullopt);
    // The back colour (note the colour comes first).
    void CellColorSet(uint32_t Color, int32_t RowNo, int32_t ColNo);
    // Makes the cell current (it stays so) and returns its back colour, the grid's back colour
    // where the cell has none of its own; 0 for a cell outside the grid.
    uint32_t CellColorRead(int32_t RowNo, int32_t ColNo);
    // The current cell's place and size in twips (0 without a current cell).
    int32_t CellCurrentLeft() const;
    int32_t CellCurrentTop() const;
    int32_t CellCurrentWidth() const;
    int32_t CellCurrentHeight() const;
    // BoxHide; makes (RowNo, ColNo) current and opens its editor (BoxShow). An address
    // outside the grid moves nothing and opens no editor.
    void GridSetFocus(int32_t ColNo, int32_t RowNo);

    // ---- events
    // Raises Change, then totals the current column into its summary caption.
    void Change();
    void ChangePost();

    // ---- file
    // Writes the grid file (grid/grid_file.h) through a temporary file, keeping the previous
    // file when anything fails. Around it: hidden, BoxHide, Redraw off; afterwards the current
    // cell is restored and the grid shown with Redraw on. Returns whether the file was written
    // (the control's method returns nothing).
    bool GridSave(const std::filesystem::path &Path, const std::wstring &Header);
    // Replaces the grid's contents by the file's and returns its header text (see
    // LoadGridFileBytes for the quirks kept). The texts are cleared and the rows dropped
    // first; a missing, unreadable or empty file reads as no data at all, which leaves no
    // rows, no columns and the empty header. The hourglass shows meanwhile; afterwards the
    // current cell is (0, 0), the grid shown with Redraw on and the control's font re-applied.
    // The summary captions are not recalculated.
    std::wstring GridLoad(const std::filesystem::path &Path);

    // ---- sorting
    // Sorts the rows, alternating the direction: when the current column differs from
    // lngPREVIOUSCOLNO the direction flag flips first; the marker moves to the current cell's
    // right end; if ColNo is a column of the grid the rows are sorted on the CURRENT column
    // (as the grid always has: ColNo only says whether the sort runs), descending when
    // blnGRIDORDER is False (which sets it True), else ascending (setting it False); last,
    // lngPREVIOUSCOLNO takes the current column. Repeated sorts of one column alternate
    // descending, ascending, ...; the first sort of a newly chosen column repeats the
    // direction of the previous sort.
    void SortFlex(int32_t ColNo);
    const SortMarker &Marker() const { return marker_; }
    // The header bar's last mouse position, X in twips on the CellLeft scale.
    void SetHeaderMouseX(float x) { header_mouse_x_ = x; }
    float HeaderMouseX() const { return header_mouse_x_; }
    // Makes the column under the remembered mouse X current (the last column for an X past
    // them all) and sorts on it, with Redraw off meanwhile.
    void BarHeaderSort();

    // ---- header and summary bars
    bool BarHeader() const { return bar_header_; }
    void SetBarHeader(bool shown) { bar_header_ = shown; }
    bool BarSummary() const { return bar_summary_; }
    void SetBarSummary(bool shown) { bar_summary_ = shown; }
    // Header captions for columns 0 to CellEngine::kMaxCols - 1 (others ignored, read "").
    void BarHeaderCaptionSet(int32_t ColNo, const std::wstring &strCaption);
    std::wstring BarHeaderCaptionRead(int32_t ColNo) const;
    void BarSummaryColSet(int32_t ColNo, const std::wstring &strCaption, std::optional<int16_t> Alignment = std::nullopt,
                          std::optional<uint32_t> oleForeColor = std::nullopt);
    std::wstring BarSummaryColRead(int32_t ColNo) { return summary_.Read(ColNo); }
    void BarSummaryColVisible(int32_t ColNo, bool blnVISIBLE) { summary_.SetVisible(ColNo, blnVISIBLE); }
    // The total of the column's leading numbers, "0.00", as its caption with alignment 1 and
    // fore colour 0; Redraw off meanwhile and on afterwards.
    void BarSummaryColCalc(int32_t ColNo);
    // A summary cell for painting (its total computed if pending).
    SummaryCell BarSummaryCell(int32_t ColNo) { return summary_.Cell(ColNo); }
    // How many cell values the totals have added up so far (what they cost).
    uint64_t TotalsWork() const { return summary_.Totals().ValuesAdded(); }

    // ---- the whole grid
    // Clears every text; counts, sizes and formatting stay.
    void GridClear();
    // Clears the texts, one row, current cell (0, 0).
    void GridReset();
    // Re-runs the control's layout with the grid hidden and Redraw off.
    void GridRefresh();
    void GridRedraw(bool Status) { cells_.SetRedraw(Status); }
    void GridShow() { visible_ = true; }
    void GridHide() { visible_ = false; }
    bool Visible() const { return visible_; }

private:
    bool valid_cell(int32_t row, int32_t col) const;
    bool focus(int32_t row, int32_t col); // makes the cell current when it exists
    void box_hide();
    void apply_font(int32_t row, int32_t col, bool with_size, const std::optional<std::wstring> &font,
                    const std::optional<std::wstring> &size, std::optional<bool> bold,
                    std::optional<bool> strike, std::optional<uint32_t> fore, std::optional<uint32_t> back);

    GridModelHost *host_;
    CellEngine cells_;
    ColumnTypes types_;
    SummaryBar summary_;
    std::map<int32_t, std::wstring> header_captions_;
    SortMarker marker_;
    float header_mouse_x_ = 0;
    bool visible_ = true;
    bool bar_header_ = true;
    bool bar_summary_ = false;
};

} // namespace tarn
