// A sequence of values told as pieces: runs of a column's rows as they stand now, and runs of
// values noted aside. It rebuilds what a column held before a series of row and text changes,
// by undoing the changes newest first: each undo is a cut and a splice in O(log pieces) (an
// implicit treap), so undoing k changes to a column of n rows costs O(k log k), and adding
// the result up O(n + k).
#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarn {

class PieceList {
public:
    struct Piece {
        bool noted = false; // values[begin..] noted aside, else the column's rows from begin
        uint32_t begin = 0;
        uint32_t size = 0;
    };

    // The rows first..first+count-1 of the column as it is now, as one piece.
    PieceList(uint32_t first, uint32_t count);

    uint32_t size() const { return total(root_); }
    // Removes elements at..at+count-1 (clipped to the sequence).
    void Erase(uint32_t at, uint32_t count);
    // Inserts a piece before element `at` (clipped to the end).
    void Insert(uint32_t at, const Piece &piece);
    // f(const Piece &) for every piece, in order.
    template <class F> void ForEach(F &&f) const
    {
        std::vector<int32_t> stack;
        int32_t t = root_;
        while (t >= 0 || !stack.empty()) {
            while (t >= 0) {
                stack.push_back(t);
                t = nodes_[static_cast<size_t>(t)].left;
            }
            t = stack.back();
            stack.pop_back();
            f(nodes_[static_cast<size_t>(t)].piece);
            t = nodes_[static_cast<size_t>(t)].right;
        }
    }

private:
    struct Node {
        Piece piece;
        uint32_t priority = 0;
        uint32_t total = 0; // elements in this subtree
        int32_t left = -1, right = -1;
    };

    int32_t make(const Piece &piece);
    uint32_t total(int32_t t) const { return t < 0 ? 0 : nodes_[static_cast<size_t>(t)].total; }
    void update(int32_t t);
    // Splits t into its first k elements (a) and the rest (b).
    void split(int32_t t, uint32_t k, int32_t &a, int32_t &b);
    int32_t merge(int32_t a, int32_t b);

    std::vector<Node> nodes_;
    int32_t root_ = -1;
    uint32_t seed_ = 0x2545F491u;
};

} // namespace tarn
