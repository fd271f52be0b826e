// One grid row as the cell engine keeps it (the engine's own; not for other callers): a single
// allocation holding a small header, the row's texts one after the other in the narrowest
// character width that holds them all, and the end of each cell's text in the narrowest
// integer that holds the row's length. A row of ten short Latin-1 texts costs its characters,
// ten bytes of ends and the header. Texts are stored up to the last cell written, never with
// slack: a write builds the row anew (rows are short).
//
// Formatting is shared: a row may name a row style (a list of format ids from column 0, shared
// by every row a file loaded) covering its first `style_cells` cells, and keeps the cells it
// formats itself in a small sorted list of (column, format id) beside it.
#pragma once
#include "grid/engine/cell_text.h"

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace tarn {

// The cells of one row with a format of their own: (column, format id), sorted by column.
struct RowFormats {
    std::vector<std::pair<uint32_t, uint32_t>> cells;
};

class RowData {
public:
    // Everything of a row but its texts.
    struct Meta {
        uint32_t stamp = 0;       // the column-cut clock when its cells were last trimmed
        int32_t height = -1;      // twips; -1 the default height
        uint32_t style = 0;       // row style id, 0 none
        uint32_t style_cells = 0; // how many leading cells the style covers
        RowFormats *formats = nullptr;
    };

    // A row whose cell c's text is chars[ends[c - 1], ends[c]) (from 0 for cell 0) for the
    // `cells` given; ends rising and within chars. It takes over meta.formats.
    static RowData *Make(const Meta &meta, std::wstring_view chars, const uint32_t *ends, uint32_t cells);
    // `old` (which may be null) with its cells past `keep` dropped and, when `col` is set, the
    // text of cell `col` replaced by `text` (the row grows to reach it). It takes over the
    // meta of `old`, which the caller then destroys with ReleaseTexts (it keeps no format list).
    static RowData *Rewrite(const RowData *old, const Meta &meta, uint32_t keep, int64_t col, std::wstring_view text);

    uint32_t cells() const { return cells_; }
    uint32_t units() const { return units_; }
    uint8_t unit() const { return unit_; }
    CellText Text(uint32_t col) const; // col < cells()
    // The address of cell col's first character (col < cells()), for fetching ahead.
    const void *TextAddress(uint32_t col) const;

    Meta meta() const { return {stamp_, height_, style_, style_cells_, formats_}; }
    uint32_t stamp() const { return stamp_; }
    void set_stamp(uint32_t s) { stamp_ = s; }
    int32_t height() const { return height_; }
    void set_height(int32_t h) { height_ = h; }
    uint32_t style() const { return style_; }
    uint32_t style_cells() const { return style_cells_; }
    void set_style(uint32_t style, uint32_t cells)
    {
        style_ = style;
        style_cells_ = cells;
    }
    RowFormats *formats() const { return formats_; }
    void set_formats(RowFormats *f) { formats_ = f; }
    // Holds nothing at all: no text, no formatting, the default height.
    bool empty() const { return cells_ == 0 && style_ == 0 && !formats_ && height_ < 0; }

    // Bytes this row takes (header, texts and ends; not the allocator's own overhead).
    size_t bytes() const { return size_of(cells_, units_, unit_, offset_width_); }

private:
    friend void DestroyRow(RowData *row);
    friend void ReleaseTexts(RowData *row);
    RowData() = default;
    static size_t text_offset() { return (sizeof(RowData) + 7) & ~size_t{7}; }
    static size_t size_of(uint32_t cells, uint32_t units, uint8_t unit, uint8_t offset_width);
    static RowData *allocate(const Meta &meta, uint32_t cells, uint32_t units, uint8_t unit);
    uint8_t *chars() { return reinterpret_cast<uint8_t *>(this) + text_offset(); }
    const uint8_t *chars() const { return reinterpret_cast<const uint8_t *>(this) + text_offset(); }
    size_t ends_offset() const;
    uint32_t end(uint32_t c) const;
    void set_end(uint32_t c, uint32_t value);

    RowFormats *formats_ = nullptr;
    uint32_t cells_ = 0;
    uint32_t units_ = 0;
    uint32_t stamp_ = 0;
    int32_t height_ = -1;
    uint32_t style_ = 0;
    uint32_t style_cells_ = 0;
    uint8_t unit_ = 1;
    uint8_t offset_width_ = 1;
};

// Frees a row with its format list (null does nothing).
void DestroyRow(RowData *row);
// Frees a row's memory but not its format list, which a row made from it took over.
void ReleaseTexts(RowData *row);

} // namespace tarn
