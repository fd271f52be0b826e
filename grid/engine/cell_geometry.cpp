// The cell engine's sizes and positions: column widths, row heights, cell places in twips.
#include "grid/engine/cell_engine.h"

#include "foundation/checked.h"
#include "grid/engine/row_data.h"

#include <algorithm>
#include <stdexcept>

namespace tarn {

int32_t CellEngine::ColWidth(int32_t col) const
{
    check_col(col);
    return widths_[static_cast<size_t>(col)];
}

void CellEngine::SetColWidth(int32_t col, int32_t twips)
{
    check_col(col);
    if (twips < 0) twips = kDefaultColWidth;
    int32_t &w = widths_[static_cast<size_t>(col)];
    if (w == twips) return;
    custom_widths_ += (twips != kDefaultColWidth) - (w != kDefaultColWidth);
    w = twips;
    col_pos_valid_ = false;
}

int32_t CellEngine::RowHeight(int32_t row) const
{
    check_row(row);
    const RowData *r = rows_.Get(static_cast<size_t>(row));
    return (r && r->height() >= 0) ? r->height() : kDefaultRowHeight;
}

void CellEngine::SetRowHeight(int32_t row, int32_t twips)
{
    check_row(row);
    if (twips < 0 || twips == kDefaultRowHeight) {
        RowData *&slot = rows_.At(static_cast<size_t>(row));
        if (!slot || slot->height() < 0) return;
        slot->set_height(-1);
        --custom_heights_;
        if (slot->empty()) {
            DestroyRow(slot);
            slot = nullptr;
        }
    } else {
        RowData *r = record(row);
        if (r->height() < 0) ++custom_heights_;
        r->set_height(twips);
    }
    row_pos_valid_ = false;
}

void CellEngine::ensure_col_positions() const
{
    if (col_pos_valid_) return;
    col_pos_.resize(widths_.size() + 1);
    int64_t x = 0;
    for (size_t c = 0; c < widths_.size(); ++c) {
        col_pos_[c] = x;
        x += widths_[c];
    }
    col_pos_[widths_.size()] = x;
    col_pos_valid_ = true;
}

void CellEngine::ensure_row_positions() const
{
    if (row_pos_valid_) return;
    row_pos_.resize(rows_.size() + 1);
    int64_t y = 0;
    size_t i = 0;
    rows_.Visit(0, rows_.size(), [&](const RowData *r) {
        row_pos_[i++] = y;
        y += (r && r->height() >= 0) ? r->height() : kDefaultRowHeight;
    });
    row_pos_[rows_.size()] = y;
    row_pos_valid_ = true;
}

int64_t CellEngine::ColPos(int32_t col) const
{
    if (col < 0 || col > Cols()) throw std::out_of_range("column");
    if (custom_widths_ == 0) return static_cast<int64_t>(col) * kDefaultColWidth;
    ensure_col_positions();
    return col_pos_[static_cast<size_t>(col)];
}

int64_t CellEngine::RowPos(int32_t row) const
{
    if (row < 0 || row > Rows()) throw std::out_of_range("row");
    if (custom_heights_ == 0) return static_cast<int64_t>(row) * kDefaultRowHeight;
    ensure_row_positions();
    return row_pos_[static_cast<size_t>(row)];
}

int32_t CellEngine::ColAt(int64_t x) const
{
    if (x < 0 || Cols() == 0) return -1;
    if (custom_widths_ == 0) {
        int64_t c = x / kDefaultColWidth;
        return c < Cols() ? static_cast<int32_t>(c) : -1;
    }
    ensure_col_positions();
    // The last edge at or left of x starts the column holding it (zero widths share edges).
    auto it = std::upper_bound(col_pos_.begin(), col_pos_.end(), x);
    int64_t c = (it - col_pos_.begin()) - 1;
    return c < Cols() ? static_cast<int32_t>(c) : -1;
}

int32_t CellEngine::RowAt(int64_t y) const
{
    if (y < 0 || Rows() == 0) return -1;
    if (custom_heights_ == 0) {
        int64_t r = y / kDefaultRowHeight;
        return r < Rows() ? static_cast<int32_t>(r) : -1;
    }
    ensure_row_positions();
    auto it = std::upper_bound(row_pos_.begin(), row_pos_.end(), y);
    int64_t r = (it - row_pos_.begin()) - 1;
    return r < Rows() ? static_cast<int32_t>(r) : -1;
}

namespace {

// Shown position p of index i: fixed ones at their own place, the others shifted so that
// `first` (the top row or left column) starts right after the fixed ones. The first index
// whose shown span holds p wins, so a fixed one beats a scrolled-out one beneath it.
template <class PosFn, class AtFn>
int32_t visible_at(int64_t p, int32_t fixed, int32_t first, PosFn pos, AtFn at)
{
    const int64_t fixed_end = pos(fixed);
    if (p >= 0 && p < fixed_end) return at(p);
    int32_t i = at(p - fixed_end + pos(first));
    return i >= fixed ? i : -1;
}

} // namespace

int32_t CellEngine::VisibleColAt(int64_t x) const
{
    return visible_at(x, fixed_cols_, left_col_, [this](int32_t c) { return ColPos(c); },
                      [this](int64_t v) { return ColAt(v); });
}

int32_t CellEngine::VisibleRowAt(int64_t y) const
{
    return visible_at(y, fixed_rows_, top_row_, [this](int32_t r) { return RowPos(r); },
                      [this](int64_t v) { return RowAt(v); });
}

int32_t CellEngine::CellLeft() const
{
    check_row(row_);
    check_col(col_);
    if (col_ < fixed_cols_) return checked<int32_t>(ColPos(col_));
    return checked<int32_t>(ColPos(fixed_cols_) + ColPos(col_) - ColPos(left_col_));
}

int32_t CellEngine::CellTop() const
{
    check_row(row_);
    check_col(col_);
    if (row_ < fixed_rows_) return checked<int32_t>(RowPos(row_));
    return checked<int32_t>(RowPos(fixed_rows_) + RowPos(row_) - RowPos(top_row_));
}

} // namespace tarn
