#include "grid/engine/row_sequence.h"

#include "grid/engine/row_data.h"

#include <stdexcept>

namespace tarn {

RowSequence::~RowSequence() { Truncate(0); }

// ---------------------------------------------------------------- finding a row

void RowSequence::rebuild()
{
    const size_t n = blocks_.size();
    tree_.assign(n + 1, 0);
    for (size_t b = 0; b < n; ++b) {
        const size_t i = b + 1;
        tree_[i] += blocks_[b].rows.size();
        const size_t parent = i + (i & (~i + 1));
        if (parent <= n) tree_[parent] += tree_[i];
    }
    cache_valid_ = false;
}

void RowSequence::add_to_tree(size_t block, ptrdiff_t delta)
{
    for (size_t i = block + 1; i < tree_.size(); i += i & (~i + 1)) tree_[i] = static_cast<size_t>(static_cast<ptrdiff_t>(tree_[i]) + delta);
    cache_valid_ = false;
}

size_t RowSequence::find(size_t i, size_t &offset) const
{
    if (cache_valid_ && i >= cache_first_ && i - cache_first_ < blocks_[cache_block_].rows.size()) {
        offset = i - cache_first_;
        return cache_block_;
    }
    // The last block whose rows all lie before row i, by descending the tree.
    size_t pos = 0, before = 0, step = 1;
    while (step * 2 < tree_.size()) step *= 2;
    for (; step > 0; step /= 2) {
        const size_t next = pos + step;
        if (next < tree_.size() && before + tree_[next] <= i) {
            pos = next;
            before += tree_[next];
        }
    }
    cache_block_ = pos;
    cache_first_ = before;
    cache_valid_ = true;
    offset = i - before;
    return pos;
}

RowData **RowSequence::slot(size_t i) const
{
    size_t offset = 0;
    const size_t b = find(i, offset);
    return const_cast<RowData **>(blocks_[b].rows.data() + offset);
}

// ---------------------------------------------------------------- changes

void RowSequence::Insert(size_t i, RowData *row)
{
    if (i > size_) throw std::out_of_range("row");
    if (blocks_.empty()) {
        blocks_.emplace_back();
        rebuild();
    }
    size_t offset = 0, b = 0;
    if (i == size_) {
        b = blocks_.size() - 1;
        offset = blocks_[b].rows.size();
    } else {
        b = find(i, offset);
    }
    if (blocks_[b].rows.size() >= kBlock) {
        // A full block: appending at its end starts a new one (so filling from the top leaves
        // full blocks behind); anywhere else it splits in two halves.
        Block fresh;
        if (offset < kBlock) {
            std::vector<RowData *> &rows = blocks_[b].rows;
            fresh.rows.assign(rows.begin() + kBlock / 2, rows.end());
            rows.erase(rows.begin() + kBlock / 2, rows.end());
            blocks_.insert(blocks_.begin() + static_cast<ptrdiff_t>(b) + 1, std::move(fresh));
            if (offset > kBlock / 2) {
                offset -= kBlock / 2;
                ++b;
            }
        } else {
            blocks_.insert(blocks_.begin() + static_cast<ptrdiff_t>(b) + 1, std::move(fresh));
            ++b;
            offset = 0;
        }
        std::vector<RowData *> &rows = blocks_[b].rows;
        rows.insert(rows.begin() + static_cast<ptrdiff_t>(offset), row);
        ++size_;
        rebuild();
        return;
    }
    std::vector<RowData *> &rows = blocks_[b].rows;
    rows.insert(rows.begin() + static_cast<ptrdiff_t>(offset), row);
    ++size_;
    add_to_tree(b, 1);
}

void RowSequence::Append(size_t count)
{
    if (count == 0) return;
    while (count > 0) {
        if (blocks_.empty() || blocks_.back().rows.size() >= kBlock) blocks_.emplace_back();
        std::vector<RowData *> &rows = blocks_.back().rows;
        const size_t n = kBlock - rows.size() < count ? kBlock - rows.size() : count;
        rows.resize(rows.size() + n, nullptr);
        size_ += n;
        count -= n;
    }
    rebuild();
}

void RowSequence::erase_block(size_t b)
{
    blocks_.erase(blocks_.begin() + static_cast<ptrdiff_t>(b));
}

RowData *RowSequence::Erase(size_t i)
{
    if (i >= size_) throw std::out_of_range("row");
    size_t offset = 0;
    const size_t b = find(i, offset);
    std::vector<RowData *> &rows = blocks_[b].rows;
    RowData *row = rows[offset];
    rows.erase(rows.begin() + static_cast<ptrdiff_t>(offset));
    --size_;
    if (rows.empty()) {
        erase_block(b);
        rebuild();
    } else if (rows.size() >= kBlock / 8 || !merge_with_neighbour(b)) {
        add_to_tree(b, -1);
    }
    return row;
}

bool RowSequence::merge_with_neighbour(size_t b)
{
    // A block worn thin joins a neighbour when the two fit in one, so the number of blocks
    // stays proportional to the rows.
    for (size_t first : {b, b - 1}) {
        if (first >= blocks_.size() || first + 1 >= blocks_.size()) continue;
        std::vector<RowData *> &into = blocks_[first].rows;
        std::vector<RowData *> &from = blocks_[first + 1].rows;
        if (into.size() + from.size() > kBlock) continue;
        into.insert(into.end(), from.begin(), from.end());
        erase_block(first + 1);
        rebuild();
        return true;
    }
    return false;
}

void RowSequence::Truncate(size_t n)
{
    if (n >= size_) return;
    size_t b = 0, keep = 0; // block b keeps its first `keep` rows; later blocks go
    if (n > 0) {
        b = find(n - 1, keep);
        ++keep;
    }
    for (size_t k = b; k < blocks_.size(); ++k) {
        std::vector<RowData *> &rows = blocks_[k].rows;
        for (size_t j = k == b ? keep : 0; j < rows.size(); ++j) DestroyRow(rows[j]);
    }
    if (n == 0) {
        blocks_.clear();
    } else {
        blocks_[b].rows.resize(keep);
        blocks_.resize(b + 1);
    }
    size_ = n;
    rebuild();
}

} // namespace tarn
