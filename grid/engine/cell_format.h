// The formatting a grid cell may carry beyond its text. Most cells carry none; the others
// share one record per distinct format (grid/engine/format_table.h).
#pragma once
#include <cstdint>
#include <string>

namespace tarn {

// CellAlignment values, as the grid's hosts pass them.
enum CellAlign : int16_t {
    kAlignLeftTop = 0,
    kAlignLeftCenter = 1,
    kAlignLeftBottom = 2,
    kAlignCenterTop = 3,
    kAlignCenterCenter = 4,
    kAlignCenterBottom = 5,
    kAlignRightTop = 6,
    kAlignRightCenter = 7,
    kAlignRightBottom = 8,
    kAlignGeneral = 9, // text left, numbers right; what a cell without its own alignment has
};

// One cell's own attributes. `set` says which fields hold a value; a field that is not set
// falls back to the grid's defaults (CellEngine::Defaults).
struct CellFormat {
    enum : uint8_t { kAlign = 1, kFont = 2, kSize = 4, kBold = 8, kStrike = 16, kFore = 32, kBack = 64 };

    uint8_t set = 0;
    bool bold = false;
    bool strike = false;
    int16_t alignment = kAlignGeneral;
    uint16_t font = 0;    // index into the engine's table of font names
    float size = 0;       // points
    uint32_t fore = 0;    // OLE colours
    uint32_t back = 0;

    bool has(uint8_t field) const { return (set & field) != 0; }

    // Takes the fields `changes` sets, keeping the others.
    void Apply(const CellFormat &changes)
    {
        if (changes.has(kAlign)) alignment = changes.alignment;
        if (changes.has(kFont)) font = changes.font;
        if (changes.has(kSize)) size = changes.size;
        if (changes.has(kBold)) bold = changes.bold;
        if (changes.has(kStrike)) strike = changes.strike;
        if (changes.has(kFore)) fore = changes.fore;
        if (changes.has(kBack)) back = changes.back;
        set |= changes.set;
    }
};

// The grid-wide look a cell has where it sets nothing of its own.
struct GridDefaults {
    std::wstring font_name = L"MS Sans Serif";
    uint32_t fore = 0x80000008u; // window text
    uint32_t back = 0x80000005u; // window
    float font_size = 8.25f;
    bool bold = false;
};

} // namespace tarn
