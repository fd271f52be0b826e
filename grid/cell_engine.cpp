// The cell engine's counts, current cell, texts, rows and sort.
#include "grid/cell_engine.h"

#include "grid/row_record.h"
#include "grid/sort_compare.h"

#include <algorithm>
#include <climits>
#include <cstdint>
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

CellEngine::RowRecord &CellEngine::row_record(int32_t row)
{
    RowPtr &p = rows_[static_cast<size_t>(row)];
    if (!p) p = std::make_unique<RowRecord>();
    return *p;
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

// ---------------------------------------------------------------- counts

void CellEngine::SetRows(int32_t rows)
{
    if (rows < fixed_rows_ || rows < 0) throw std::out_of_range("rows");
    if (rows > kMaxRows) throw std::length_error("rows");
    const int32_t old = Rows();
    if (rows == old) return;
    if (rows > old) {
        if (observer_) observer_->BeforeRowsInserted(old, rows - old);
        rows_.resize(static_cast<size_t>(rows));
    } else {
        if (observer_) observer_->BeforeRowsRemoved(rows, old - rows);
        if (custom_heights_ > 0)
            for (int32_t r = rows; r < old; ++r)
                if (rows_[static_cast<size_t>(r)] && rows_[static_cast<size_t>(r)]->height >= 0) --custom_heights_;
        rows_.resize(static_cast<size_t>(rows));
    }
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
        for (RowPtr &p : rows_) {
            if (!p) continue;
            p->drop_texts_from(static_cast<size_t>(cols));
            auto cut = std::lower_bound(p->formats.begin(), p->formats.end(), cols,
                                        [](const CellFormat &f, int32_t c) { return f.col < c; });
            p->formats.erase(cut, p->formats.end());
            if (p->empty()) p.reset();
        }
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
    return std::wstring(TextAt(row, col));
}

std::wstring_view CellEngine::TextAt(int32_t row, int32_t col) const noexcept
{
    if (row < 0 || row >= Rows() || col < 0) return {};
    const RowPtr &p = rows_[static_cast<size_t>(row)];
    return p ? p->text(static_cast<size_t>(col)) : std::wstring_view();
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

void CellEngine::ColumnTexts(int32_t col, int32_t first, int32_t count, std::wstring_view *out) const noexcept
{
    // Three hops per row (record, offsets, characters), each fetched some rows ahead of its
    // use so that the row's text is in cache when it is read.
    constexpr int32_t kRecordAhead = 24, kEndsAhead = 16, kCharsAhead = 8;
    const size_t c = static_cast<size_t>(col);
    auto record = [&](int32_t i) { return rows_[static_cast<size_t>(first + i)].get(); };
    for (int32_t i = 0; i < count; ++i) {
        if (i + kRecordAhead < count) prefetch(record(i + kRecordAhead));
        if (i + kEndsAhead < count)
            if (const RowRecord *p = record(i + kEndsAhead); p && c < p->ends.size()) prefetch(p->ends.data() + (c ? c - 1 : 0));
        if (i + kCharsAhead < count)
            if (const RowRecord *p = record(i + kCharsAhead); p && c < p->ends.size())
                prefetch(p->chars.data() + (c ? p->ends[c - 1] : 0));
        const RowRecord *p = record(i);
        out[i] = p ? p->text(c) : std::wstring_view();
    }
}

void CellEngine::SetTextMatrix(int32_t row, int32_t col, std::wstring_view text)
{
    check_row(row);
    check_col(col);
    const size_t c = static_cast<size_t>(col);
    RowPtr &p = rows_[static_cast<size_t>(row)];
    const bool stored = p && c < p->ends.size();
    if (!stored && text.empty()) return; // an unwritten cell already reads as empty
    if (observer_) observer_->BeforeTextChange(row, col);
    row_record(row).set_text(c, text);
}

// ---------------------------------------------------------------- rows

void CellEngine::insert_record(int32_t index, RowPtr record)
{
    if (index < 0 || index > Rows()) throw std::out_of_range("row");
    if (Rows() >= kMaxRows) throw std::length_error("rows");
    if (record && record->empty()) record.reset();
    if (observer_) observer_->BeforeRowsInserted(index, 1);
    rows_.insert(rows_.begin() + index, std::move(record));
    rows_changed();
}

void CellEngine::AddItem(const std::wstring &item, int32_t index)
{
    if (index < 0 || index > Rows()) throw std::out_of_range("row");
    RowPtr record;
    const size_t cols = widths_.size();
    if (cols > 0 && !item.empty()) {
        if (item.size() > UINT32_MAX) throw std::length_error("row text");
        record = std::make_unique<RowRecord>();
        size_t start = 0;
        for (size_t col = 0; col < cols; ++col) {
            size_t tab = item.find(L'\t', start);
            size_t end = tab == std::wstring::npos ? item.size() : tab;
            record->chars.append(item, start, end - start);
            record->ends.push_back(static_cast<uint32_t>(record->chars.size()));
            if (tab == std::wstring::npos) break;
            start = tab + 1;
        }
    }
    insert_record(index, std::move(record));
}

void CellEngine::InsertRow(int32_t index, std::wstring chars, std::vector<uint32_t> ends, std::vector<CellFormat> formats)
{
    uint32_t last = 0;
    for (uint32_t e : ends) {
        if (e < last || e > chars.size()) throw std::invalid_argument("text ends");
        last = e;
    }
    int32_t prev = -1;
    for (const CellFormat &f : formats) {
        if (f.col <= prev || f.col >= Cols()) throw std::invalid_argument("format column");
        check_format(f);
        prev = f.col;
    }
    auto record = std::make_unique<RowRecord>();
    record->chars = std::move(chars);
    record->ends = std::move(ends);
    record->drop_texts_from(widths_.size());
    record->formats = std::move(formats);
    insert_record(index, std::move(record));
}

void CellEngine::RemoveItem(int32_t index)
{
    check_row(index);
    if (index < fixed_rows_) throw std::out_of_range("fixed row");
    if (Rows() - fixed_rows_ <= 1) throw std::logic_error("the last non-fixed row stays");
    if (observer_) observer_->BeforeRowsRemoved(index, 1);
    const RowPtr &p = rows_[static_cast<size_t>(index)];
    if (p && p->height >= 0) --custom_heights_;
    rows_.erase(rows_.begin() + index);
    rows_changed();
}

void CellEngine::Clear()
{
    if (observer_) observer_->BeforeReorder();
    for (RowPtr &p : rows_) {
        if (!p) continue;
        std::wstring().swap(p->chars);
        std::vector<uint32_t>().swap(p->ends);
        if (p->empty()) p.reset();
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
        int32_t row;
    };
    std::vector<Item> items(static_cast<size_t>(n));
    constexpr int32_t kBlock = 1024; // keys are made while a block's texts are still in cache
    std::wstring_view texts[kBlock];
    for (int32_t done = 0; done < n; done += kBlock) {
        const int32_t m = std::min(kBlock, n - done);
        ColumnTexts(col_, first + done, m, texts);
        for (int32_t i = 0; i < m; ++i) items[static_cast<size_t>(done + i)] = {MakeSortKey(texts[i]), first + done + i};
    }
    if (code == 1)
        std::stable_sort(items.begin(), items.end(), [](const Item &a, const Item &b) { return SortKeyLess(a.key, b.key); });
    else
        std::stable_sort(items.begin(), items.end(), [](const Item &a, const Item &b) { return SortKeyLess(b.key, a.key); });

    std::vector<RowPtr> sorted(static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i) sorted[static_cast<size_t>(i)] = std::move(rows_[static_cast<size_t>(items[static_cast<size_t>(i)].row)]);
    std::move(sorted.begin(), sorted.end(), rows_.begin() + first);
    row_pos_valid_ = false;
}

} // namespace tarn
