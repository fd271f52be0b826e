// The grid's cell engine: the matrix of cell texts with its rows, columns, current cell,
// sizes, per-cell formatting and sort, with the members the grid control has always driven
// its hosted cell matrix through. It draws nothing; the control paints what it holds.
//
// Indexes are counted from 0. A member given an index or value it cannot take throws and
// changes nothing: std::out_of_range for a row or column outside the grid,
// std::length_error for a count beyond the limits below, std::invalid_argument for a bad
// value, tarn::Overflow when a twip position does not fit 32 bits. The grid's resume-next
// trap (foundation/trap.h) turns each of those into a skipped step. Reads that cannot fail
// (TextAt, StyleAt) answer the empty text and the defaults outside the grid.
//
// Storage: rows are separately allocated records in a deque, so inserting, removing and
// sorting rows move pointers, never texts, and adding or removing at either end is O(1). A
// row that holds nothing costs one null pointer. A row keeps its texts one after the other in
// a single buffer with the end offset of each cell, up to its last written column only: a
// cell costs its characters and four bytes, a wide grid nothing for columns nobody wrote, and
// a row two allocations however many cells it has. Writing a cell in the middle of a row
// moves the rest of that row's text (rows are short; filling left to right only appends).
// Formatting is sparse: a cell whose formatting is the default costs nothing beyond its text.
#pragma once
#include "grid/cell_format.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarn {

// Told about every change of the texts before it happens, while the old texts can still be
// read, so that a value derived from a column (the summary total) can be kept or settled.
class CellEngineObserver {
public:
    virtual ~CellEngineObserver() = default;
    // One cell's text is about to be replaced (rows being inserted bring their texts with
    // them and report only BeforeRowsInserted).
    virtual void BeforeTextChange(int32_t row, int32_t col) = 0;
    // `count` rows are about to appear at `at`; rows from `at` on move down.
    virtual void BeforeRowsInserted(int32_t at, int32_t count) = 0;
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
    // The text of any cell, the empty text outside the grid; never throws. The view stays
    // valid until that row's texts change.
    std::wstring_view TextAt(int32_t row, int32_t col) const noexcept;
    // TextAt of rows first..first+count-1 (all inside the grid) in one column, into out[0..count).
    // Rows live apart in memory, so this fetches ahead: walking a long column this way is
    // several times faster than row by row (sorts, totals).
    void ColumnTexts(int32_t col, int32_t first, int32_t count, std::wstring_view *out) const noexcept;

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
    void AddItem(const std::wstring &item) { AddItem(item, Rows()); }
    void AddItem(const std::wstring &item, int32_t index);
    void RemoveItem(int32_t index);
    // Inserts a finished row at `index` (bulk loads): cell c's text is chars[ends[c - 1],
    // ends[c]) (from 0 for cell 0), ends rising and within chars; texts past the last column
    // are dropped. `formats` must be sorted by column, each within the grid and valid as for
    // UpdateFormat. Throws (changing nothing) when any of that does not hold.
    void InsertRow(int32_t index, std::wstring chars, std::vector<uint32_t> ends, std::vector<CellFormat> formats);
    // Empties every text; counts, sizes and formatting stay.
    void Clear();
    // Sorts the non-fixed rows by the current column: 0 does nothing, 1 generic ascending,
    // 2 generic descending (grid/sort_compare.h), both stable; other codes throw.
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

private:
    struct RowRecord;
    using RowPtr = std::unique_ptr<RowRecord>;

    void check_row(int32_t row) const;
    void check_col(int32_t col) const;
    RowRecord &row_record(int32_t row);
    void clamp_positions();
    void rows_changed();
    void widths_changed();
    void ensure_row_positions() const;
    void ensure_col_positions() const;
    void format_current(const CellFormat &changes) { UpdateFormat(row_, col_, changes); }
    void check_format(const CellFormat &changes) const;
    void insert_record(int32_t index, RowPtr record);
    const CellFormat *current_format() const;

    std::deque<RowPtr> rows_;
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
