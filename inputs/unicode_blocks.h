// The Unicode blocks of the Basic Multilingual Plane, by name, for paging through a font's
// characters block by block.
#pragma once
#include <cstdint>
#include <vector>

namespace tarn {

struct UnicodeBlock {
    uint32_t first, last;
    const wchar_t *name;
};

// The blocks in code point order.
const std::vector<UnicodeBlock> &UnicodeBlocks();
// The block a code point lies in; null for one in no listed block.
const UnicodeBlock *BlockOf(uint32_t code_point);

} // namespace tarn
