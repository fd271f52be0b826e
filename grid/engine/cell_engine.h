// The grid's cell engine: the matrix of cell texts with its rows, columns, current cell,
// sizes, per-cell formatting and sort, with the members the grid control has always driven
// its hosted cell matrix through. It draws nothing; the control paints what it holds.
//
// Indexes are counted from 0. A member given an index or value it cannot take throws and
// changes nothing: std::out_of_range for a row or column outside the grid,
// std::length_error for a count beyond the limits below, std::invalid_argument for a bad
// value, tarn::Overflow when a twip position does not fit 32 bits. The grid's resume-next
// trap (foundation/trap.h) turns each of those into a skipped step. Reads that cannot fail
// (TextAt, TextRef, StyleAt) answer the empty text and the defaults outside the grid.
//
// Storage (what a host filling a million rows meets):
//  - rows are records of their own (grid/engine/row_data.h) kept in order in a blocked
//    sequence (grid/engine/row_sequence.h): inserting, removing and sorting rows move
//    pointers, never texts, in O(log n) wherever the row goes; a row that holds nothing costs
//    one null pointer;
//  - a row is one allocation: its texts in the narrowest character width that holds them
//    (Latin-1 text costs a byte a character) with the end of each cell, up to its last
//    written cell and without slack;
//  - formats are shared (grid/engine/format_table.h): a cell costs a format id only when it
//    has a format of its own, and rows a file loaded share one row style;
//  - removing columns trims no row at once (grid/engine/column_cuts.h): ColDel is O(1), and
//    a row drops the cut cells when it is next written.
#pragma once
#include "grid/engine/cell_format.h"
#include "grid/engine/cell_text.h"
#include "grid/engine/column_cuts.h"
#include "grid/engine/format_table.h"
#include "grid/engine/row_sequence.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// Told about every change of the texts, while the texts a change replaces can still be read,
// so that a value derived from a column (the summary totals) can be kept or settled.
class CellEngineObserver {
public:
    virtual ~CellEngineObserver() = default;
    // One cell's text is about to become `text`.
    virtual void BeforeTextChange(int32_t row, int32_t col, std::wstring_view text) = 0;
    // `count` rows have appeared at `at` with their texts (`empty`: none of them holds a text);
    // the rows from `at` on moved down.
    virtual void AfterRowsInserted(int32_t at, int32_t count, bool empty) = 0;
    // Rows at..at+count-1 are about to go.
    virtual void BeforeRowsRemoved(int32_t at, int32_t count) = 0;
    // Columns from `from` on are about to go, with their texts.
    virtual void BeforeColsRemoved(int32_t from) = 0;
    // Any text may move or go (a sort, a clear).
    virtual void BeforeReorder() = 0;
};

class CellEngine {
public:
    // Upper limits of the counts. Rows cost a pointer each (128 MiB at the limit) and columns
    // a width each, so neither limit allocates per-cell memory.
    static constexpr int32_t kMaxRows = 1 << 24;
    static constexpr int32_t kMaxCols = 1 << 20;
    // Sizes of a column and a row that were never given one (64 x 16 pixels at 15 twips per
    // pixel: room for a short number in the default 8-point font).
    static constexpr int32_t kDefaultColWidth = 960;
    static constexpr int32_t kDefaultRowHeight = 240;

    // A cell's look with the defaults filled in (what the painter draws).
    struct CellStyle {
        int16_t alignment;
        const std::wstring *font_name; // valid until the engine goes
        float font_size;
        bool bold;
        bool strike;
        uint32_t fore;
        uint32_t back;
    };

    // A new grid of rows x cols with the given fixed rows and columns; the current cell is
    // the first one below and right of the fixed ones (0 where there are none).
    CellEngine(int32_t rows, int32_t cols, int32_t fixed_rows = 0, int32_t fixed_cols = 0);
    ~CellEngine();
    CellEngine(const CellEngine &) = delete;
    CellEngine &operator=(const CellEngine &) = delete;

    // ---- counts. Growing adds empty rows (columns of the default width); shrinking drops the
    // rows (columns) at the end with their texts; the current cell and the scroll position
    // move back inside. Negative counts, counts below the fixed ones and counts above the
    // limits throw.
    int32_t Rows() const { return static_cast<int32_t>(rows_.size()); }
    void SetRows(int32_t rows);
    int32_t Cols() const { return static_cast<int32_t>(widths_.size()); }
    void SetCols(int32_t cols);
    // Fixed rows and columns do not scroll and are not sorted; 0 to the count.
    int32_t FixedRows() const { return fixed_rows_; }
    void SetFixedRows(int32_t n);
    int32_t FixedCols() const { return fixed_cols_; }
    void SetFixedCols(int32_t n);

    // ---- the current cell. Row and Col stay within the grid (0 while it has no rows or
    // columns); setting one outside throws.
    int32_t Row() const { return row_; }
    void SetRow(int32_t row);
    int32_t Col() const { return col_; }
    void SetCol(int32_t col);
    bool HasCurrentCell() const { return Rows() > 0 && Cols() > 0; }

    // ---- scrolling: the first non-fixed row and column shown; positions are relative to it.
    int32_t TopRow() const { return top_row_; }
    void SetTopRow(int32_t row);
    int32_t LeftCol() const { return left_col_; }
    void SetLeftCol(int32_t col);

    // ---- texts. Text is the current cell's; it throws when there is no current cell. A row's
    // texts may hold at most 2^32 - 1 characters in all (std::length_error past that).
    std::wstring Text() const { return TextMatrix(row_, col_); }
    void SetText(std::wstring_view text) { SetTextMatrix(row_, col_, text); }
    std::wstring TextMatrix(int32_t row, int32_t col) const;
    void SetTextMatrix(int32_t row, int32_t col, std::wstring_view text);
    // The text of any cell, the empty text outside the grid; never throws (but for memory).
    std::wstring TextAt(int32_t row, int32_t col) const { return TextRef(row, col).str(); }
    // The same without a copy: valid until that row's texts change.
    CellText TextRef(int32_t row, int32_t col) const noexcept;
    // TextRef of rows first..first+count-1 (all inside the grid) in one column, into
    // out[0..count). Rows live apart in memory, so this fetches ahead: walking a long column
    // this way is several times faster than row by row (sorts, totals).
    void ColumnTexts(int32_t col, int32_t first, int32_t count, CellText *out) const noexcept;

    // ---- sizes and positions, in twips. A negative width or height restores the default.
    int32_t ColWidth(int32_t col) const;
    void SetColWidth(int32_t col, int32_t twips);
    int32_t RowHeight(int32_t row) const;
    void SetRowHeight(int32_t row, int32_t twips);
    // The current cell's place as it shows: relative to the grid's top left corner with the
    // scrolled-out rows and columns left out (fixed ones never scroll). Throw without a
    // current cell, and tarn::Overflow past 32 bits.
    int32_t CellLeft() const;
    int32_t CellTop() const;
    int32_t CellWidth() const { return ColWidth(col_); }
    int32_t CellHeight() const { return RowHeight(row_); }
    // Unscrolled edges: the left edge of column `col` (Cols(): the total width) and the top
    // of row `row` (Rows(): the total height). O(1) while every size is the default.
    int64_t ColPos(int32_t col) const;
    int64_t RowPos(int32_t row) const;
    // The column (row) whose unscrolled span holds x (y); -1 when none does.
    int32_t ColAt(int64_t x) const;
    int32_t RowAt(int64_t y) const;
    // The column (row) at a shown position, on the scale of CellLeft (CellTop): the first one,
    // counting from 0, whose shown span holds it, scrolled-out ones included; -1 when none.
    int32_t VisibleColAt(int64_t x) const;
    int32_t VisibleRowAt(int64_t y) const;

    // ---- painting switch: the control paints only while it is on.
    bool Redraw() const { return redraw_; }
    void SetRedraw(bool on) { redraw_ = on; }

    // ---- rows. AddItem inserts a row at `index` (0 to Rows(); Rows() appends) whose cells
    // take the tab-separated pieces of `item` from column 0 (pieces past the last column are
    // dropped). RemoveItem removes one row; it throws rather than remove the last non-fixed
    // row. The current row keeps its number, moved back inside when it falls off.
    void AddItem(std::wstring_view item) { AddItem(item, Rows()); }
    void AddItem(std::wstring_view item, int32_t index);
    void RemoveItem(int32_t index);
    // Inserts a finished row at `index` (bulk loads): cell c's text is chars[ends[c - 1],
    // ends[c]) (from 0 for cell 0), ends rising and within chars; texts past the last column
    // are dropped. Its first ends.size() cells take the formats of row style `style`
    // (MakeRowStyle; 0 none). Throws, changing nothing, when any of that does not hold.
    void InsertRow(int32_t index, std::wstring_view chars, const std::vector<uint32_t> &ends, uint32_t style = 0);
    // A row style: formats[c] for column c, each within what UpdateFormat accepts.
    uint32_t MakeRowStyle(const std::vector<CellFormat> &formats);
    // Empties every text; counts, sizes and formatting stay.
    void Clear();
    // Sorts the non-fixed rows by the current column: 0 does nothing, 1 generic ascending,
    // 2 generic descending (grid/engine/sort_compare.h), both stable; other codes throw.
    void Sort(int32_t code);

    // ---- the current cell's formatting (reads give the default where the cell sets none).
    // Alignment takes 0..9 (CellAlign); a font size must be above 0 and at most 2048 points.
    int16_t CellAlignment() const;
    void SetCellAlignment(int16_t alignment);
    const std::wstring &CellFontName() const;
    void SetCellFontName(const std::wstring &name);
    float CellFontSize() const;
    void SetCellFontSize(float points);
    bool CellFontBold() const;
    void SetCellFontBold(bool bold);
    bool CellFontStrikeThrough() const;
    void SetCellFontStrikeThrough(bool strike);
    uint32_t CellForeColor() const;
    void SetCellForeColor(uint32_t ole_color);
    uint32_t CellBackColor() const;
    void SetCellBackColor(uint32_t ole_color);

    // ---- formatting of any cell, for painting and bulk loads.
    CellStyle StyleAt(int32_t row, int32_t col) const noexcept;
    // The cell's own format (nullptr when it has none).
    const CellFormat *FormatAt(int32_t row, int32_t col) const noexcept;
    // Sets the fields that `changes` sets, keeping the cell's others; validates like the
    // setters above.
    void UpdateFormat(int32_t row, int32_t col, const CellFormat &changes);
    // The index of a font name for CellFormat::font (0 is "the default font").
    uint16_t FontIndex(const std::wstring &name);
    const std::wstring &FontName(uint16_t index) const noexcept;

    const GridDefaults &Defaults() const { return defaults_; }
    void SetDefaults(const GridDefaults &defaults) { defaults_ = defaults; }

    // One observer at most (nullptr: none); it must outlive its registration.
    void SetObserver(CellEngineObserver *observer) { observer_ = observer; }

    // Bytes the rows take: their records and the row pointers (not the allocator's own
    // overhead, nor the shared formats).
    size_t StorageBytes() const;

private:
    void check_row(int32_t row) const;
    void check_col(int32_t col) const;
    // How many cells of a row are still there after the columns cut since it was trimmed.
    uint32_t live_cells(const RowData *r) const;
    // The row's slot with the columns cut since it was last trimmed dropped for real.
    RowData *&writable(int32_t row);
    // The row's slot, a record made for it when it has none.
    RowData *&record(int32_t row);
    uint32_t format_id(const RowData *r, int32_t col) const;
    void clamp_positions();
    void rows_changed();
    void widths_changed();
    void ensure_row_positions() const;
    void ensure_col_positions() const;
    void format_current(const CellFormat &changes) { UpdateFormat(row_, col_, changes); }
    void check_format(const CellFormat &changes) const;
    void insert_record(int32_t index, RowData *record, bool empty);
    const CellFormat *current_format() const;

    RowSequence rows_;
    ColumnCuts cuts_;
    FormatTable formats_;
    std::vector<int32_t> widths_;
    int32_t fixed_rows_ = 0, fixed_cols_ = 0;
    int32_t row_ = 0, col_ = 0;
    int32_t top_row_ = 0, left_col_ = 0;
    bool redraw_ = true;
    int64_t custom_widths_ = 0;  // columns whose width is not the default
    int64_t custom_heights_ = 0; // rows whose height is not the default
    mutable std::vector<int64_t> col_pos_, row_pos_; // prefix sums, rebuilt when stale
    mutable bool col_pos_valid_ = false, row_pos_valid_ = false;
    std::deque<std::wstring> fonts_; // interned font names; a deque keeps references stable
    GridDefaults defaults_;
    CellEngineObserver *observer_ = nullptr;
};

} // namespace tarn
