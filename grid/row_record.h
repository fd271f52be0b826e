// The record one grid row is kept in (the cell engine's own; not for other callers).
#pragma once
#include "grid/cell_engine.h"

#include <climits>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

struct CellEngine::RowRecord {
    std::wstring chars;              // the cells' texts one after the other
    std::vector<uint32_t> ends;      // where each cell's text ends in chars, up to the last written
    std::vector<CellFormat> formats; // sorted by column
    int32_t height = -1;             // -1: the default height

    bool empty() const { return ends.empty() && formats.empty() && height < 0; }

    std::wstring_view text(size_t col) const
    {
        if (col >= ends.size()) return {};
        const size_t begin = col ? ends[col - 1] : 0;
        return std::wstring_view(chars).substr(begin, ends[col] - begin);
    }

    void set_text(size_t col, std::wstring_view text)
    {
        const size_t size = chars.size();
        if (col >= ends.size()) {
            if (size + text.size() > UINT32_MAX) throw std::length_error("row text");
            ends.resize(col, static_cast<uint32_t>(size));
            chars.append(text);
            ends.push_back(static_cast<uint32_t>(chars.size()));
            return;
        }
        const size_t begin = col ? ends[col - 1] : 0, old = ends[col] - begin;
        if (size - old + text.size() > UINT32_MAX) throw std::length_error("row text");
        chars.replace(begin, old, text);
        // Unsigned arithmetic wraps, so adding the difference also moves the ends back.
        const uint32_t grown = static_cast<uint32_t>(text.size() - old);
        for (size_t c = col; c < ends.size(); ++c) ends[c] += grown;
    }

    void drop_texts_from(size_t col)
    {
        if (col >= ends.size()) return;
        chars.resize(col ? ends[col - 1] : 0);
        ends.resize(col);
    }
};

} // namespace tarn
