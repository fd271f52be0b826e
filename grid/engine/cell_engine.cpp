// The cell engine's counts, current cell, texts, rows and sort.
#include "grid/engine/cell_engine.h"

#include "grid/engine/row_data.h"
#include "grid/engine/sort_compare.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <memory>
#include <stdexcept>

namespace tarn {

namespace {

int32_t clamp_index(int32_t value, int32_t count) { return count <= 0 ? 0 : std::clamp(value, 0, count - 1); }

} // namespace

CellEngine::CellEngine(int32_t rows, int32_t cols, int32_t fixed_rows, int32_t fixed_cols)
{
    SetCols(cols);
    SetRows(rows);
    SetFixedRows(fixed_rows);
    SetFixedCols(fixed_cols);
    row_ = clamp_index(fixed_rows_, Rows());
    col_ = clamp_index(fixed_cols_, Cols());
}

CellEngine::~CellEngine() = default;

// ---------------------------------------------------------------- checks and bookkeeping

void CellEngine::check_row(int32_t row) const
{
    if (row < 0 || row >= Rows()) throw std::out_of_range("row");
}

void CellEngine::check_col(int32_t col) const
{
    if (col < 0 || col >= Cols()) throw std::out_of_range("column");
}

uint32_t CellEngine::live_cells(const RowData *r) const
{
    const int32_t limit = cuts_.Limit(r->stamp());
    return limit == INT32_MAX ? r->cells() : std::min(r->cells(), static_cast<uint32_t>(limit));
}

RowData *&CellEngine::writable(int32_t row)
{
    RowData *&slot = rows_.At(static_cast<size_t>(row));
    RowData *r = slot;
    if (!r) return slot;
    const int32_t limit = cuts_.Limit(r->stamp());
    if (limit == INT32_MAX) return slot;
    const auto keep = static_cast<uint32_t>(limit);
    // Formats and style first, in place: should the texts' rewrite fail, the row is still
    // whole and the cut still hides its texts.
    if (RowFormats *own = r->formats()) {
        auto &cells = own->cells;
        cells.erase(std::lower_bound(cells.begin(), cells.end(), std::pair<uint32_t, uint32_t>(keep, 0)), cells.end());
        if (cells.empty()) {
            r->set_formats(nullptr);
            delete own;
        }
    }
    r->set_style(r->style(), std::min(r->style_cells(), keep));
    if (r->cells() > keep) {
        RowData::Meta meta = r->meta();
        meta.stamp = cuts_.Now();
        RowData *trimmed = RowData::Rewrite(r, meta, keep, -1, {});
        ReleaseTexts(r);
        slot = r = trimmed;
    } else {
        r->set_stamp(cuts_.Now());
    }
    if (r->empty()) {
        DestroyRow(r);
        slot = nullptr;
    }
    return slot;
}

RowData *&CellEngine::record(int32_t row)
{
    RowData *&slot = writable(row);
    if (!slot) {
        RowData::Meta meta;
        meta.stamp = cuts_.Now();
        slot = RowData::Make(meta, {}, nullptr, 0);
    }
    return slot;
}

void CellEngine::clamp_positions()
{
    row_ = clamp_index(row_, Rows());
    col_ = clamp_index(col_, Cols());
    top_row_ = std::max(fixed_rows_, std::min(top_row_, Rows() - 1));
    left_col_ = std::max(fixed_cols_, std::min(left_col_, Cols() - 1));
}

void CellEngine::rows_changed()
{
    row_pos_valid_ = false;
    clamp_positions();
}

void CellEngine::widths_changed()
{
    col_pos_valid_ = false;
    clamp_positions();
}

size_t CellEngine::StorageBytes() const
{
    size_t bytes = rows_.size() * sizeof(RowData *);
    rows_.Visit(0, rows_.size(), [&](const RowData *r) {
        if (!r) return;
        bytes += r->bytes();
        if (r->formats()) bytes += sizeof(RowFormats) + r->formats()->cells.capacity() * sizeof(r->formats()->cells[0]);
    });
    return bytes;
}

// ---------------------------------------------------------------- counts

void CellEngine::SetRows(int32_t rows)
{
    if (rows < fixed_rows_ || rows < 0) throw std::out_of_range("rows");
    if (rows > kMaxRows) throw std::length_error("rows");
    const int32_t old = Rows();
    if (rows == old) return;
    if (rows > old) {
        rows_.Append(static_cast<size_t>(rows - old));
        rows_changed();
        if (observer_) observer_->AfterRowsInserted(old, rows - old, true);
        return;
    }
    if (observer_) observer_->BeforeRowsRemoved(rows, old - rows);
    if (custom_heights_ > 0)
        rows_.Visit(static_cast<size_t>(rows), static_cast<size_t>(old - rows), [&](const RowData *r) {
            if (r && r->height() >= 0) --custom_heights_;
        });
    rows_.Truncate(static_cast<size_t>(rows));
    rows_changed();
}

void CellEngine::SetCols(int32_t cols)
{
    if (cols < fixed_cols_ || cols < 0) throw std::out_of_range("columns");
    if (cols > kMaxCols) throw std::length_error("columns");
    const int32_t old = Cols();
    if (cols == old) return;
    if (cols < old) {
        if (observer_) observer_->BeforeColsRemoved(cols);
        cuts_.Cut(cols); // the rows drop the cells when next written; reads stop at the cut now
        for (int32_t c = cols; c < old; ++c)
            if (widths_[static_cast<size_t>(c)] != kDefaultColWidth) --custom_widths_;
    }
    widths_.resize(static_cast<size_t>(cols), kDefaultColWidth);
    widths_changed();
}

void CellEngine::SetFixedRows(int32_t n)
{
    if (n < 0 || n > Rows()) throw std::out_of_range("fixed rows");
    fixed_rows_ = n;
    clamp_positions();
}

void CellEngine::SetFixedCols(int32_t n)
{
    if (n < 0 || n > Cols()) throw std::out_of_range("fixed columns");
    fixed_cols_ = n;
    clamp_positions();
}

// ---------------------------------------------------------------- current cell and scrolling

void CellEngine::SetRow(int32_t row)
{
    check_row(row);
    row_ = row;
}

void CellEngine::SetCol(int32_t col)
{
    check_col(col);
    col_ = col;
}

void CellEngine::SetTopRow(int32_t row)
{
    if (row < fixed_rows_ || row >= Rows()) throw std::out_of_range("top row");
    top_row_ = row;
}

void CellEngine::SetLeftCol(int32_t col)
{
    if (col < fixed_cols_ || col >= Cols()) throw std::out_of_range("left column");
    left_col_ = col;
}

// ---------------------------------------------------------------- texts

std::wstring CellEngine::TextMatrix(int32_t row, int32_t col) const
{
    check_row(row);
    check_col(col);
    return TextAt(row, col);
}

CellText CellEngine::TextRef(int32_t row, int32_t col) const noexcept
{
    if (row < 0 || row >= Rows() || col < 0) return {};
    const RowData *r = rows_.Get(static_cast<size_t>(row));
    if (!r || static_cast<uint32_t>(col) >= live_cells(r)) return {};
    return r->Text(static_cast<uint32_t>(col));
}

namespace {

inline void prefetch(const void *p)
{
#if defined(__GNUC__)
    __builtin_prefetch(p);
#else
    (void)p;
#endif
}

} // namespace

void CellEngine::ColumnTexts(int32_t col, int32_t first, int32_t count, CellText *out) const noexcept
{
    // A row is one allocation, so fetching its record some rows ahead of its use brings its
    // texts along.
    constexpr size_t kAhead = 12;
    const auto c = static_cast<uint32_t>(col);
    size_t done = 0;
    rows_.VisitRuns(static_cast<size_t>(first), static_cast<size_t>(count), [&](const RowData *const *rows, size_t n) {
        for (size_t i = 0; i < n; ++i) {
            if (i + kAhead < n && rows[i + kAhead]) {
                prefetch(rows[i + kAhead]);
                prefetch(reinterpret_cast<const char *>(rows[i + kAhead]) + 64);
            }
            const RowData *r = rows[i];
            out[done++] = (r && c < live_cells(r)) ? r->Text(c) : CellText();
        }
    });
}

void CellEngine::SetTextMatrix(int32_t row, int32_t col, std::wstring_view text)
{
    check_row(row);
    check_col(col);
    RowData *&slot = writable(row);
    RowData *r = slot;
    const auto c = static_cast<uint32_t>(col);
    const bool stored = r && c < r->cells();
    if (!stored && text.empty()) return; // an unwritten cell already reads as empty
    if (text.size() > UINT32_MAX) throw std::length_error("row text");
    if (observer_) observer_->BeforeTextChange(row, col, text);
    RowData::Meta meta;
    meta.stamp = cuts_.Now();
    if (r) meta = r->meta();
    RowData *rewritten = RowData::Rewrite(r, meta, r ? r->cells() : 0, col, text);
    ReleaseTexts(r);
    slot = rewritten;
}

// ---------------------------------------------------------------- rows

void CellEngine::insert_record(int32_t index, RowData *record, bool empty)
{
    std::unique_ptr<RowData, void (*)(RowData *)> owned(record, DestroyRow);
    if (index < 0 || index > Rows()) throw std::out_of_range("row");
    if (Rows() >= kMaxRows) throw std::length_error("rows");
    if (record && record->empty()) {
        owned.reset();
        record = nullptr;
    }
    rows_.Insert(static_cast<size_t>(index), record);
    owned.release();
    rows_changed();
    if (observer_) observer_->AfterRowsInserted(index, 1, empty);
}

void CellEngine::AddItem(std::wstring_view item, int32_t index)
{
    if (index < 0 || index > Rows()) throw std::out_of_range("row");
    const size_t cols = widths_.size();
    if (cols == 0 || item.empty()) return insert_record(index, nullptr, true);
    if (item.size() > UINT32_MAX) throw std::length_error("row text");
    // The pieces' ends, up to the last column; the tabs between them are left out.
    std::wstring chars;
    std::vector<uint32_t> ends;
    chars.reserve(item.size());
    size_t start = 0;
    for (size_t col = 0; col < cols; ++col) {
        const size_t tab = item.find(L'\t', start);
        const size_t end = tab == std::wstring_view::npos ? item.size() : tab;
        chars.append(item, start, end - start);
        ends.push_back(static_cast<uint32_t>(chars.size()));
        if (tab == std::wstring_view::npos) break;
        start = tab + 1;
    }
    RowData::Meta meta;
    meta.stamp = cuts_.Now();
    RowData *r = chars.empty() ? nullptr : RowData::Make(meta, chars, ends.data(), static_cast<uint32_t>(ends.size()));
    insert_record(index, r, chars.empty());
}

uint32_t CellEngine::MakeRowStyle(const std::vector<CellFormat> &formats)
{
    std::vector<uint32_t> ids;
    ids.reserve(formats.size());
    for (const CellFormat &f : formats) {
        check_format(f);
        ids.push_back(formats_.Intern(f));
    }
    return formats_.InternStyle(ids);
}

void CellEngine::InsertRow(int32_t index, std::wstring_view chars, const std::vector<uint32_t> &ends, uint32_t style)
{
    uint32_t last = 0;
    for (uint32_t e : ends) {
        if (e < last || e > chars.size()) throw std::invalid_argument("text ends");
        last = e;
    }
    if (!formats_.HasStyle(style)) throw std::invalid_argument("row style");
    const auto cells = static_cast<uint32_t>(std::min(ends.size(), widths_.size()));
    RowData::Meta meta;
    meta.stamp = cuts_.Now();
    if (style != 0) {
        meta.style = style;
        meta.style_cells = static_cast<uint32_t>(std::min<size_t>(ends.size(), formats_.Style(style).size()));
        meta.style_cells = std::min(meta.style_cells, static_cast<uint32_t>(widths_.size()));
        if (meta.style_cells == 0) meta.style = 0;
    }
    const bool empty = cells == 0 || ends[cells - 1] == 0;
    insert_record(index, RowData::Make(meta, chars, ends.data(), cells), empty);
}

void CellEngine::RemoveItem(int32_t index)
{
    check_row(index);
    if (index < fixed_rows_) throw std::out_of_range("fixed row");
    if (Rows() - fixed_rows_ <= 1) throw std::logic_error("the last non-fixed row stays");
    if (observer_) observer_->BeforeRowsRemoved(index, 1);
    RowData *r = rows_.Erase(static_cast<size_t>(index));
    if (r && r->height() >= 0) --custom_heights_;
    DestroyRow(r);
    rows_changed();
}

void CellEngine::Clear()
{
    if (observer_) observer_->BeforeReorder();
    for (int32_t row = 0; row < Rows(); ++row) {
        RowData *&slot = writable(row); // the cut cells' formats go too
        if (!slot || slot->cells() == 0) continue;
        RowData *emptied = RowData::Rewrite(slot, slot->meta(), 0, -1, {});
        ReleaseTexts(slot);
        slot = emptied;
        if (emptied->empty()) {
            DestroyRow(emptied);
            slot = nullptr;
        }
    }
}

void CellEngine::Sort(int32_t code)
{
    if (code == 0) return;
    if (code != 1 && code != 2) throw std::invalid_argument("sort code");
    check_col(col_);
    const int32_t first = fixed_rows_, n = Rows() - fixed_rows_;
    if (n < 2) return;
    if (observer_) observer_->BeforeReorder();

    struct Item {
        SortKey key;
        RowData *row;
    };
    std::vector<Item> items(static_cast<size_t>(n));
    {
        constexpr int32_t kBlock = 1024; // keys are made while a block's texts are still in cache
        CellText texts[kBlock];
        size_t at = 0;
        for (int32_t done = 0; done < n; done += kBlock) {
            const int32_t m = std::min(kBlock, n - done);
            ColumnTexts(col_, first + done, m, texts);
            for (int32_t i = 0; i < m; ++i) items[at + static_cast<size_t>(i)].key = MakeSortKey(texts[i]);
            at += static_cast<size_t>(m);
        }
        at = 0;
        rows_.Visit(static_cast<size_t>(first), static_cast<size_t>(n), [&](RowData *&r) { items[at++].row = r; });
    }
    if (code == 1)
        std::stable_sort(items.begin(), items.end(), [](const Item &a, const Item &b) { return SortKeyLess(a.key, b.key); });
    else
        std::stable_sort(items.begin(), items.end(), [](const Item &a, const Item &b) { return SortKeyLess(b.key, a.key); });
    size_t at = 0;
    rows_.Visit(static_cast<size_t>(first), static_cast<size_t>(n), [&](RowData *&r) { r = items[at++].row; });
    row_pos_valid_ = false;
}

} // namespace tarn
