#include "inputs/fontchars_model.h"

#include <algorithm>
#include <cwctype>

#include "inputs/unicode_blocks.h"

namespace tarn {

namespace {
constexpr int kPageUp = 33, kPageDown = 34, kEnd = 35, kHome = 36, kLeft = 37, kUp = 38, kRight = 39, kDown = 40;
constexpr uint32_t kPauseMs = 1000;
} // namespace

CharGrid::CharGrid(std::vector<uint32_t> code_points)
{
    std::sort(code_points.begin(), code_points.end());
    code_points.erase(std::unique(code_points.begin(), code_points.end()), code_points.end());
    const UnicodeBlock *current = nullptr;
    bool other_open = false;
    for (uint32_t cp : code_points) {
        const UnicodeBlock *b = BlockOf(cp);
        if (blocks_.empty() || b != current || (!b && !other_open)) {
            blocks_.push_back(Block{b ? b->name : L"Other", {}});
            current = b;
            other_open = !b;
        }
        blocks_.back().chars.push_back(cp);
    }
}

GridSpot CharGrid::Find(uint32_t code_point) const
{
    for (size_t b = 0; b < blocks_.size(); ++b) {
        const std::vector<uint32_t> &c = blocks_[b].chars;
        if (c.empty() || code_point < c.front() || code_point > c.back()) continue;
        auto it = std::lower_bound(c.begin(), c.end(), code_point);
        if (it != c.end() && *it == code_point) return GridSpot{static_cast<int>(b), static_cast<int>(it - c.begin())};
    }
    return GridSpot{};
}

uint32_t CharGrid::At(GridSpot spot) const
{
    if (spot.block < 0 || spot.block >= BlockCount()) return 0;
    const std::vector<uint32_t> &c = Chars(spot.block);
    return spot.index >= 0 && spot.index < static_cast<int>(c.size()) ? c[static_cast<size_t>(spot.index)] : 0;
}

GridSpot CharGrid::Move(GridSpot spot, int key, bool ctrl, int columns, int page_rows) const
{
    if (empty()) return spot;
    if (spot.block < 0 || spot.block >= BlockCount()) return GridSpot{0, 0};
    columns = std::max(columns, 1);
    const int count = static_cast<int>(Chars(spot.block).size());
    const int last_block = BlockCount() - 1;
    auto first_of = [&](int b) { return GridSpot{b, 0}; };
    auto last_of = [&](int b) { return GridSpot{b, static_cast<int>(Chars(b).size()) - 1}; };
    auto next_block = [&] { return spot.block < last_block ? first_of(spot.block + 1) : spot; };
    auto prev_block_last = [&] { return spot.block > 0 ? last_of(spot.block - 1) : spot; };
    const int i = std::clamp(spot.index, 0, count - 1);
    // A step forward by `n`: within the block, to its last character, then on to the next block.
    auto forward = [&](int n) {
        if (i + n < count) return GridSpot{spot.block, i + n};
        if (i < count - 1) return GridSpot{spot.block, count - 1};
        return next_block();
    };
    auto backward = [&](int n, bool to_last) {
        if (i - n >= 0) return GridSpot{spot.block, i - n};
        if (i > 0) return GridSpot{spot.block, 0};
        if (spot.block == 0) return spot;
        return to_last ? last_of(spot.block - 1) : first_of(spot.block - 1);
    };
    const int page = columns * std::max(page_rows, 1);
    if (ctrl) {
        switch (key) {
        case kPageDown: return next_block();
        case kPageUp: return spot.block > 0 ? first_of(spot.block - 1) : first_of(0);
        case kHome: return first_of(0);
        case kEnd: return last_of(last_block);
        default: break;
        }
    }
    switch (key) {
    case kRight: return forward(1);
    case kLeft: return i > 0 ? GridSpot{spot.block, i - 1} : prev_block_last();
    case kDown: return forward(columns);
    case kUp: return backward(columns, true);
    case kPageDown: return forward(page);
    case kPageUp: return backward(page, false);
    case kHome: return GridSpot{spot.block, 0};
    case kEnd: return GridSpot{spot.block, count - 1};
    default: return spot;
    }
}

int RowInView(int index, int columns, int top_row, int visible_rows)
{
    const int row = std::max(index, 0) / std::max(columns, 1);
    visible_rows = std::max(visible_rows, 1);
    if (row < top_row) return row;
    if (row >= top_row + visible_rows) return row - visible_rows + 1;
    return std::max(top_row, 0);
}

std::wstring TypeAhead::Key(wchar_t ch, uint32_t now_ms)
{
    if (typed_.empty() || now_ms - last_ms_ > kPauseMs) typed_.clear();
    typed_ += ch;
    last_ms_ = now_ms;
    return typed_;
}

int FindByPrefix(const std::vector<std::wstring> &items, const std::wstring &prefix)
{
    if (prefix.empty()) return -1;
    for (size_t i = 0; i < items.size(); ++i) {
        const std::wstring &item = items[i];
        if (item.size() < prefix.size()) continue;
        bool same = true;
        for (size_t k = 0; k < prefix.size() && same; ++k) same = std::towlower(item[k]) == std::towlower(prefix[k]);
        if (same) return static_cast<int>(i);
    }
    return -1;
}

std::wstring CodePointText(uint32_t code_point)
{
    if (code_point > 0x10FFFF) return {};
    if (code_point < 0x10000) return std::wstring(1, static_cast<wchar_t>(code_point));
    const uint32_t v = code_point - 0x10000;
    return {static_cast<wchar_t>(0xD800 + (v >> 10)), static_cast<wchar_t>(0xDC00 + (v & 0x3FF))};
}

int32_t FirstCodePoint(const std::wstring &text)
{
    if (text.empty()) return -1;
    const uint32_t a = static_cast<uint16_t>(text[0]);
    if (a < 0xD800 || a > 0xDFFF) return static_cast<int32_t>(a);
    if (a > 0xDBFF || text.size() < 2) return -1;
    const uint32_t b = static_cast<uint16_t>(text[1]);
    if (b < 0xDC00 || b > 0xDFFF) return -1;
    return static_cast<int32_t>(0x10000 + ((a - 0xD800) << 10) + (b - 0xDC00));
}

} // namespace tarn
