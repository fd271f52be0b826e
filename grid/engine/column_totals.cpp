#include "grid/engine/column_totals.h"

#include "foundation/numbers.h"
#include "grid/engine/piece_list.h"

#include <algorithm>
#include <cmath>

namespace tarn {

namespace {

// Adds in row order. On x87 each partial sum is forced through a 64-bit double, so every path
// that sums a column (a partial sum kept and continued later included) rounds exactly like a
// plain double loop.
class Sum {
public:
    explicit Sum(double start = 0) : total_(start) {}
    void add(double v) { total_ = total_ + v; }
    double value() const { return total_; }

private:
#if defined(__i386__) && !defined(__SSE2_MATH__)
    volatile double total_;
#else
    double total_;
#endif
};

// The leading numbers of rows first..first+count-1 of a column, handed to `use` in row order,
// fetched a block at a time.
template <class Use> void each_value(const CellEngine &cells, int32_t col, int32_t first, int32_t count, Use use)
{
    constexpr int32_t kBlock = 1024;
    CellText texts[kBlock];
    std::wstring scratch;
    for (int32_t done = 0; done < count; done += kBlock) {
        const int32_t n = std::min(kBlock, count - done);
        cells.ColumnTexts(col, first + done, n, texts);
        for (int32_t i = 0; i < n; ++i) {
            texts[i].AssignTo(scratch);
            use(LeadingNumber(scratch));
        }
    }
}

// Replacing a by b leaves every partial sum as it was.
bool same(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

// How many values a column's notes may hold beyond its rows before its total is worked out.
constexpr size_t kSpareNotes = 4096;

} // namespace

double ColumnTotals::ColumnTotal(const CellEngine &cells, int32_t col)
{
    Sum sum;
    if (col >= 0 && col < cells.Cols()) each_value(cells, col, 0, cells.Rows(), [&](double v) { sum.add(v); });
    return sum.value();
}

double ColumnTotals::value(int32_t row, int32_t col) const
{
    cells_.TextRef(row, col).AssignTo(scratch_);
    return LeadingNumber(scratch_);
}

bool ColumnTotals::all_zero(int32_t first, int32_t count, int32_t col) const
{
    for (int32_t r = first; r < first + count; ++r)
        if (value(r, col) != 0) return false;
    return true;
}

// ---------------------------------------------------------------- requests

void ColumnTotals::Request(int32_t col)
{
    Column &c = columns_[col];
    c.pending = true;
    c.notes.clear();
    c.noted.clear();
}

bool ColumnTotals::Pending(int32_t col) const
{
    auto it = columns_.find(col);
    return it != columns_.end() && it->second.pending;
}

double ColumnTotals::Settle(int32_t col)
{
    auto it = columns_.find(col);
    if (it == columns_.end() || !it->second.pending) return 0;
    Column &c = it->second;
    const double total = c.notes.empty() ? current_total(col, c) : rebuilt_total(col, c);
    c.pending = false;
    c.notes.clear();
    c.noted.clear();
    forget_if_idle(it);
    return total;
}

void ColumnTotals::Drop(int32_t col)
{
    auto it = columns_.find(col);
    if (it == columns_.end()) return;
    it->second.pending = false;
    it->second.notes.clear();
    it->second.noted.clear();
    forget_if_idle(it);
}

void ColumnTotals::forget_if_idle(std::unordered_map<int32_t, Column>::iterator it)
{
    if (!it->second.pending && it->second.prefix_rows == 0) columns_.erase(it);
}

// ---------------------------------------------------------------- adding up

double ColumnTotals::current_total(int32_t col, Column &c)
{
    const int32_t rows = cells_.Rows();
    const int32_t from = std::min(c.prefix_rows, rows);
    Sum sum(from > 0 ? c.prefix_total : 0);
    if (from >= rows) return sum.value();
    // Everything but the last row, whose sum is kept: rows written at the end of the grid (a
    // fill) leave it valid.
    each_value(cells_, col, from, rows - 1 - from, [&](double v) { sum.add(v); });
    c.prefix_rows = rows - 1;
    c.prefix_total = sum.value();
    sum.add(value(rows - 1, col));
    added_ += static_cast<uint64_t>(rows - from);
    return sum.value();
}

double ColumnTotals::rebuilt_total(int32_t col, const Column &c) const
{
    const auto rows = static_cast<uint32_t>(cells_.Rows());
    // No note reaches into the known first rows unless a note moved them (then start at 0).
    int32_t base = std::min(c.prefix_rows, static_cast<int32_t>(rows));
    for (const Note &n : c.notes)
        if (n.at < base) base = 0;
    const auto first = static_cast<uint32_t>(base);
    PieceList list(first, rows - first);
    for (auto n = c.notes.rbegin(); n != c.notes.rend(); ++n) {
        const auto at = static_cast<uint32_t>(n->at) - first;
        const auto count = static_cast<uint32_t>(n->count);
        switch (n->kind) {
        case Note::kText:
            list.Erase(at, 1);
            list.Insert(at, {true, n->first, 1});
            break;
        case Note::kInserted: list.Erase(at, count); break;
        case Note::kRemoved: list.Insert(at, {true, n->first, count}); break;
        }
    }
    Sum sum(base > 0 ? c.prefix_total : 0);
    added_ += list.size();
    list.ForEach([&](const PieceList::Piece &p) {
        if (p.noted) {
            for (uint32_t i = 0; i < p.size; ++i) sum.add(c.noted[p.begin + i]);
        } else {
            each_value(cells_, col, static_cast<int32_t>(p.begin), static_cast<int32_t>(p.size), [&](double v) { sum.add(v); });
        }
    });
    return sum.value();
}

bool ColumnTotals::room(int32_t col, Column &c, size_t more)
{
    if (c.notes.size() + c.noted.size() + more <= kSpareNotes + static_cast<size_t>(cells_.Rows())) return true;
    settle_now(col, c);
    return false;
}

void ColumnTotals::settle_now(int32_t col, Column &c)
{
    const double total = c.notes.empty() ? current_total(col, c) : rebuilt_total(col, c);
    c.pending = false;
    c.notes.clear();
    c.noted.clear();
    sink_.TotalSettled(col, total);
}

// ---------------------------------------------------------------- changes

void ColumnTotals::BeforeTextChange(int32_t row, int32_t col, std::wstring_view text)
{
    auto it = columns_.find(col);
    if (it == columns_.end()) return;
    Column &c = it->second;
    const double old = value(row, col);
    scratch_.assign(text);
    if (same(old, LeadingNumber(scratch_))) return;
    if (row < c.prefix_rows) c.prefix_rows = 0;
    if (c.pending && room(col, c, 1)) {
        c.notes.push_back({Note::kText, row, 1, static_cast<uint32_t>(c.noted.size())});
        c.noted.push_back(old);
    }
    forget_if_idle(it);
}

void ColumnTotals::AfterRowsInserted(int32_t at, int32_t count, bool empty)
{
    for (auto it = columns_.begin(); it != columns_.end();) {
        const int32_t col = it->first;
        Column &c = it->second;
        if (at < c.prefix_rows) {
            // Zeros added anywhere leave every partial sum as it was.
            if (empty || all_zero(at, count, col)) c.prefix_rows += count;
            else c.prefix_rows = 0;
        }
        if (c.pending) {
            // The rows are in already: noted first, so a settling total takes them out again.
            c.notes.push_back({Note::kInserted, at, count, 0});
            if (c.notes.size() + c.noted.size() > kSpareNotes + static_cast<size_t>(cells_.Rows())) settle_now(col, c);
        }
        if (!c.pending && c.prefix_rows == 0) it = columns_.erase(it);
        else ++it;
    }
}

void ColumnTotals::BeforeRowsRemoved(int32_t at, int32_t count)
{
    for (auto it = columns_.begin(); it != columns_.end();) {
        const int32_t col = it->first;
        Column &c = it->second;
        if (at < c.prefix_rows) {
            const int32_t inside = std::min(at + count, c.prefix_rows) - at;
            if (all_zero(at, inside, col)) c.prefix_rows -= inside;
            else c.prefix_rows = 0;
        }
        if (c.pending && room(col, c, static_cast<size_t>(count))) {
            c.notes.push_back({Note::kRemoved, at, count, static_cast<uint32_t>(c.noted.size())});
            for (int32_t r = at; r < at + count; ++r) c.noted.push_back(value(r, col));
        }
        if (!c.pending && c.prefix_rows == 0) it = columns_.erase(it);
        else ++it;
    }
}

void ColumnTotals::BeforeColsRemoved(int32_t from)
{
    for (auto it = columns_.begin(); it != columns_.end();) {
        if (it->first < from) {
            ++it;
            continue;
        }
        if (it->second.pending) settle_now(it->first, it->second);
        it = columns_.erase(it);
    }
}

void ColumnTotals::BeforeReorder()
{
    for (auto &[col, c] : columns_)
        if (c.pending) settle_now(col, c);
    columns_.clear();
}

} // namespace tarn
