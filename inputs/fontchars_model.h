// The font and character picker's pure side: a font's characters grouped by Unicode block, the
// moves of the keys through the grid (crossing into the next or the previous block at the
// ends), the top row that keeps a character in view, and the typing of a font name's first
// letters.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace tarn {

// A character's place: its block (among those the font has characters in) and its place in it.
struct GridSpot {
    int block = -1; // -1: not in the grid
    int index = 0;
    bool operator==(const GridSpot &o) const { return block == o.block && index == o.index; }
};

class CharGrid {
public:
    CharGrid() = default;
    // The font's code points, in any order (repeats are dropped).
    explicit CharGrid(std::vector<uint32_t> code_points);

    bool empty() const { return blocks_.empty(); }
    int BlockCount() const { return static_cast<int>(blocks_.size()); }
    const std::wstring &BlockName(int block) const { return blocks_.at(static_cast<size_t>(block)).name; }
    const std::vector<uint32_t> &Chars(int block) const { return blocks_.at(static_cast<size_t>(block)).chars; }
    // Where a code point is; block -1 when the font does not have it.
    GridSpot Find(uint32_t code_point) const;
    uint32_t At(GridSpot spot) const;
    // Where a key moves from `spot` in a grid `columns` wide showing `page_rows` rows (key codes
    // as the platform's virtual keys): the arrows by a cell or a row, Page Up and Page Down by a
    // page, Home and End to the block's ends; past a block's first or last character into the
    // previous or the next block. With Ctrl, Page Up and Page Down go to the previous or next
    // block, Home and End to the first and the last character of all. Other keys: `spot`.
    GridSpot Move(GridSpot spot, int key, bool ctrl, int columns, int page_rows) const;

private:
    struct Block {
        std::wstring name;
        std::vector<uint32_t> chars;
    };
    std::vector<Block> blocks_;
};

// The top row that shows the row of `index` in a grid `columns` wide of which `visible_rows`
// rows are on screen, moving `top_row` as little as it can.
int RowInView(int index, int columns, int top_row, int visible_rows);

// Typing the first letters of a name: the letters typed so far, started again after a pause
// of more than a second.
class TypeAhead {
public:
    std::wstring Key(wchar_t ch, uint32_t now_ms);

private:
    std::wstring typed_;
    uint32_t last_ms_ = 0;
};

// The first item that starts with `prefix`, ignoring case; -1 for none.
int FindByPrefix(const std::vector<std::wstring> &items, const std::wstring &prefix);

// A code point as text (a surrogate pair above the Basic Multilingual Plane), and the first
// code point of a text (-1 for an empty text or a lone surrogate).
std::wstring CodePointText(uint32_t code_point);
int32_t FirstCodePoint(const std::wstring &text);

} // namespace tarn
