// The grid's rows in order: pointers to row records kept in blocks of at most kBlock, with a
// Fenwick tree over the block sizes. Finding row i is O(log blocks); inserting or removing a
// row anywhere moves at most one block's pointers, plus, once every few hundred calls, the
// rebuild of the block list when a block splits, merges or goes (O(rows / kBlock)). So a
// RowAdd or RowDel in the middle of a million rows costs what it costs at the end.
//
// The sequence owns its records: they are destroyed with DestroyRow (row_data.h) when the
// sequence goes, is truncated or cleared; Erase hands the record back to the caller.
#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarn {

class RowData;

class RowSequence {
public:
    static constexpr size_t kBlock = 1024;

    RowSequence() = default;
    ~RowSequence();
    RowSequence(const RowSequence &) = delete;
    RowSequence &operator=(const RowSequence &) = delete;

    size_t size() const { return size_; }
    // Row i (i < size()); null for a row that holds nothing.
    RowData *Get(size_t i) const { return *slot(i); }
    // The slot of row i, to replace its record (the caller destroys the old one).
    RowData *&At(size_t i) { return *slot(i); }

    // Inserts `row` before row i (i == size() appends).
    void Insert(size_t i, RowData *row);
    // Appends `count` empty rows.
    void Append(size_t count);
    // Removes row i and returns its record (the caller owns it now).
    RowData *Erase(size_t i);
    // Keeps the first n rows, destroying the others' records.
    void Truncate(size_t n);

    // f(RowData *&) for rows first..first+count-1 in order (all inside the sequence).
    template <class F> void Visit(size_t first, size_t count, F &&f)
    {
        for_blocks(first, count, [&](RowData **p, size_t n) {
            for (size_t k = 0; k < n; ++k) f(p[k]);
        });
    }
    template <class F> void Visit(size_t first, size_t count, F &&f) const
    {
        const_cast<RowSequence *>(this)->for_blocks(first, count, [&](RowData **p, size_t n) {
            for (size_t k = 0; k < n; ++k) f(static_cast<const RowData *>(p[k]));
        });
    }
    // f(RowData **rows, size_t n) over consecutive runs of rows first..first+count-1.
    template <class F> void VisitRuns(size_t first, size_t count, F &&f) const
    {
        const_cast<RowSequence *>(this)->for_blocks(first, count, [&](RowData **p, size_t n) { f(const_cast<const RowData *const *>(p), n); });
    }

private:
    struct Block {
        std::vector<RowData *> rows;
    };

    RowData **slot(size_t i) const;
    // The block holding row i and the index of row i within it (i < size()).
    size_t find(size_t i, size_t &offset) const;
    void rebuild();                     // the Fenwick tree and the look-up cache, from the blocks
    void add_to_tree(size_t block, ptrdiff_t delta);
    void erase_block(size_t b);
    bool merge_with_neighbour(size_t b);
    template <class F> void for_blocks(size_t first, size_t count, F &&f)
    {
        if (count == 0) return;
        size_t offset = 0;
        size_t b = find(first, offset);
        while (count > 0) {
            std::vector<RowData *> &rows = blocks_[b].rows;
            const size_t n = rows.size() - offset < count ? rows.size() - offset : count;
            f(rows.data() + offset, n);
            count -= n;
            offset = 0;
            ++b;
        }
    }

    std::vector<Block> blocks_;
    std::vector<size_t> tree_; // Fenwick tree over block sizes, 1-based
    size_t size_ = 0;
    // The last block found and the index of its first row: walks down the rows hit it.
    mutable size_t cache_block_ = 0, cache_first_ = 0;
    mutable bool cache_valid_ = false;
};

} // namespace tarn
