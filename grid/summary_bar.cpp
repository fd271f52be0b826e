#include "grid/summary_bar.h"

#include "foundation/numbers.h"

#include <algorithm>

namespace tarn {

namespace {

// Adds in row order. On x87 each partial sum is forced through a 64-bit double, so every
// path that sums a column rounds exactly like a plain double loop.
class Sum {
public:
    void add(double v) { total_ = total_ + v; }
    double value() const { return total_; }

private:
#if defined(__i386__) && !defined(__SSE2_MATH__)
    volatile double total_ = 0;
#else
    double total_ = 0;
#endif
};

// A cell's leading number; `scratch` carries the text to LeadingNumber without an allocation
// per cell.
double value_at(const CellEngine &cells, int32_t row, int32_t col, std::wstring &scratch)
{
    scratch.assign(cells.TextAt(row, col));
    return LeadingNumber(scratch);
}

} // namespace

namespace {

// The leading numbers of rows first..first+count-1 of a column, handed to `use` in row order,
// fetched a block at a time.
template <class Use> void each_value(const CellEngine &cells, int32_t col, int32_t first, int32_t count, Use use)
{
    constexpr int32_t kBlock = 1024;
    std::wstring_view texts[kBlock];
    std::wstring scratch;
    for (int32_t done = 0; done < count; done += kBlock) {
        const int32_t n = std::min(kBlock, count - done);
        cells.ColumnTexts(col, first + done, n, texts);
        for (int32_t i = 0; i < n; ++i) {
            scratch.assign(texts[i]);
            use(LeadingNumber(scratch));
        }
    }
}

} // namespace

double SummaryBar::ColumnTotal(const CellEngine &cells, int32_t col)
{
    Sum sum;
    if (col >= 0 && col < cells.Cols()) each_value(cells, col, 0, cells.Rows(), [&](double v) { sum.add(v); });
    return sum.value();
}

void SummaryBar::Set(int32_t col, const std::wstring &caption, std::optional<int16_t> alignment,
                     std::optional<uint32_t> fore)
{
    if (!valid(col)) return;
    if (pending_ == col) {
        pending_ = -1;
        notes_.clear();
    }
    SummaryCell &cell = bar_[col];
    cell.caption = caption;
    if (alignment) cell.alignment = *alignment;
    if (fore) cell.fore = *fore;
}

void SummaryBar::SetVisible(int32_t col, bool visible)
{
    if (valid(col)) bar_[col].visible = visible;
}

std::wstring SummaryBar::Read(int32_t col)
{
    if (!valid(col)) return {};
    if (pending_ == col) settle();
    auto it = bar_.find(col);
    return it == bar_.end() ? std::wstring() : it->second.caption;
}

SummaryCell SummaryBar::Cell(int32_t col)
{
    if (!valid(col)) return {};
    if (pending_ == col) settle();
    auto it = bar_.find(col);
    return it == bar_.end() ? SummaryCell() : it->second;
}

void SummaryBar::Calc(int32_t col)
{
    if (!valid(col)) return;
    if (pending_ >= 0 && pending_ != col) settle();
    SummaryCell &cell = bar_[col];
    cell.alignment = 1;
    cell.fore = 0;
    pending_ = col;
    notes_.clear();
}

void SummaryBar::settle()
{
    if (pending_ < 0) return;
    const int32_t col = pending_;
    const double total = pending_total();
    pending_ = -1;
    notes_.clear();
    bar_[col].caption = FormatFixed(total, 2);
}

double SummaryBar::pending_total() const
{
    if (notes_.empty()) return ColumnTotal(cells_, pending_);
    // The column's values now, with the noted changes undone, newest first.
    std::vector<double> values;
    values.reserve(static_cast<size_t>(cells_.Rows()));
    if (pending_ < cells_.Cols()) each_value(cells_, pending_, 0, cells_.Rows(), [&](double v) { values.push_back(v); });
    values.resize(static_cast<size_t>(cells_.Rows()));
    for (auto note = notes_.rbegin(); note != notes_.rend(); ++note) {
        auto at = values.begin() + note->at;
        switch (note->kind) {
        case Note::kInserted: values.erase(at, at + note->count); break;
        case Note::kRemoved: values.insert(at, note->values.begin(), note->values.end()); break;
        case Note::kText: *at = note->values[0]; break;
        }
    }
    Sum sum;
    for (double v : values) sum.add(v);
    return sum.value();
}

bool SummaryBar::can_note()
{
    if (pending_ < 0) return false;
    if (notes_.size() < kMaxNotes) return true;
    settle();
    return false;
}

void SummaryBar::BeforeTextChange(int32_t row, int32_t col)
{
    if (col != pending_ || !can_note()) return;
    std::wstring scratch;
    notes_.push_back({Note::kText, row, 0, {value_at(cells_, row, col, scratch)}});
}

void SummaryBar::BeforeRowsInserted(int32_t at, int32_t count)
{
    if (!can_note()) return;
    notes_.push_back({Note::kInserted, at, count, {}});
}

void SummaryBar::BeforeRowsRemoved(int32_t at, int32_t count)
{
    if (pending_ < 0) return;
    if (count > kMaxNotedRows) return settle();
    if (!can_note()) return;
    Note note{Note::kRemoved, at, count, std::vector<double>(static_cast<size_t>(count))};
    std::wstring scratch;
    for (int32_t i = 0; i < count; ++i) note.values[static_cast<size_t>(i)] = value_at(cells_, at + i, pending_, scratch);
    notes_.push_back(std::move(note));
}

void SummaryBar::BeforeColsRemoved(int32_t from)
{
    if (pending_ >= from) settle();
}

void SummaryBar::BeforeReorder() { settle(); }

} // namespace tarn
