// The distinct cell formats of a grid, each kept once and named by a small id, and the row
// styles built of them (a format id per column from column 0, shared by every row that has
// it). A million loaded cells with alignment 1 share one format and one style.
#pragma once
#include "grid/engine/cell_format.h"

#include <cstdint>
#include <deque>
#include <map>
#include <unordered_map>
#include <vector>

namespace tarn {

class FormatTable {
public:
    // Id 0 is the format that sets nothing: a cell without a format of its own.
    FormatTable();

    // The id of `format` (fields it does not set are ignored), added when new.
    uint32_t Intern(const CellFormat &format);
    // The format of an id this table gave (the same reference for as long as the table lives).
    const CellFormat &Get(uint32_t id) const { return formats_[id]; }

    // Row styles: id 0 is none.
    uint32_t InternStyle(const std::vector<uint32_t> &format_ids);
    const std::vector<uint32_t> &Style(uint32_t id) const { return styles_[id]; }
    bool HasStyle(uint32_t id) const { return id < styles_.size(); }
    bool HasFormat(uint32_t id) const { return id < formats_.size(); }

private:
    struct Hash {
        size_t operator()(const CellFormat &f) const;
    };
    struct Equal {
        bool operator()(const CellFormat &a, const CellFormat &b) const;
    };
    std::deque<CellFormat> formats_;
    std::unordered_map<CellFormat, uint32_t, Hash, Equal> format_ids_;
    std::deque<std::vector<uint32_t>> styles_;
    std::map<std::vector<uint32_t>, uint32_t> style_ids_;
};

} // namespace tarn
