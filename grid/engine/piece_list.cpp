#include "grid/engine/piece_list.h"

#include <algorithm>

namespace tarn {

PieceList::PieceList(uint32_t first, uint32_t count)
{
    if (count > 0) root_ = make({false, first, count});
}

int32_t PieceList::make(const Piece &piece)
{
    // xorshift: priorities only need to look random to keep the tree shallow.
    seed_ ^= seed_ << 13;
    seed_ ^= seed_ >> 17;
    seed_ ^= seed_ << 5;
    Node n;
    n.piece = piece;
    n.priority = seed_;
    n.total = piece.size;
    nodes_.push_back(n);
    return static_cast<int32_t>(nodes_.size() - 1);
}

void PieceList::update(int32_t t)
{
    Node &n = nodes_[static_cast<size_t>(t)];
    n.total = total(n.left) + n.piece.size + total(n.right);
}

void PieceList::split(int32_t t, uint32_t k, int32_t &a, int32_t &b)
{
    if (t < 0) {
        a = b = -1;
        return;
    }
    const uint32_t left = total(nodes_[static_cast<size_t>(t)].left);
    const uint32_t own = nodes_[static_cast<size_t>(t)].piece.size;
    if (k <= left) {
        int32_t l2 = -1;
        split(nodes_[static_cast<size_t>(t)].left, k, a, l2);
        nodes_[static_cast<size_t>(t)].left = l2;
        update(t);
        b = t;
    } else if (k >= left + own) {
        int32_t r1 = -1;
        split(nodes_[static_cast<size_t>(t)].right, k - left - own, r1, b);
        nodes_[static_cast<size_t>(t)].right = r1;
        update(t);
        a = t;
    } else {
        // The cut falls inside this node's piece: its tail becomes a node of its own.
        const uint32_t offset = k - left;
        Piece tail = nodes_[static_cast<size_t>(t)].piece;
        tail.begin += offset;
        tail.size -= offset;
        const int32_t right = nodes_[static_cast<size_t>(t)].right;
        const int32_t n = make(tail); // may move nodes_: index again below
        nodes_[static_cast<size_t>(t)].piece.size = offset;
        nodes_[static_cast<size_t>(t)].right = -1;
        update(t);
        a = t;
        b = merge(n, right);
    }
}

int32_t PieceList::merge(int32_t a, int32_t b)
{
    if (a < 0) return b;
    if (b < 0) return a;
    if (nodes_[static_cast<size_t>(a)].priority >= nodes_[static_cast<size_t>(b)].priority) {
        const int32_t r = merge(nodes_[static_cast<size_t>(a)].right, b);
        nodes_[static_cast<size_t>(a)].right = r;
        update(a);
        return a;
    }
    const int32_t l = merge(a, nodes_[static_cast<size_t>(b)].left);
    nodes_[static_cast<size_t>(b)].left = l;
    update(b);
    return b;
}

void PieceList::Erase(uint32_t at, uint32_t count)
{
    int32_t a = -1, rest = -1, gone = -1, c = -1;
    split(root_, std::min(at, size()), a, rest);
    split(rest, count, gone, c);
    root_ = merge(a, c);
}

void PieceList::Insert(uint32_t at, const Piece &piece)
{
    if (piece.size == 0) return;
    int32_t a = -1, b = -1;
    split(root_, std::min(at, size()), a, b);
    const int32_t n = make(piece);
    root_ = merge(merge(a, n), b);
}

} // namespace tarn
