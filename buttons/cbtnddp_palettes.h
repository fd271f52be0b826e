// The colour button's palettes: twelve, numbered 0 to 11, each a grid of named colour cells
// generated (not listed) from a row of hues on the 0..240 hue scale, each hue with its base
// name, and a column of tones (a luminance and saturation named by a prefix), plus an
// optional grey column with its own names. A cell's name is its tone's prefix and its hue's
// base name ("DARK RED"); names come only from the vocabulary below. No platform calls.
#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "foundation/colors.h"

namespace tarn {

constexpr int32_t kPaletteCount = 12;
constexpr int32_t kDefaultPalette = 3;

struct PaletteCell {
    Rgb colour = 0;
    std::wstring name;
};

// Cells row by row: one row per tone, the hues left to right, the grey column last.
struct Palette {
    int32_t number = 0;
    int32_t columns = 0, rows = 0;
    std::vector<PaletteCell> cells;
    // The first cell of exactly this colour, or -1.
    int32_t find(Rgb colour) const;
};

// Palette `number` (0 to 11); another number throws std::out_of_range.
Palette MakePalette(int32_t number);
// The name a property browser offers for palette `number`; empty outside 0 to 11.
std::wstring PaletteName(int32_t number);

// The whole vocabulary the cells' names are made of: base names and prefixes (each prefix
// with its trailing blank).
std::span<const wchar_t *const> ColourBaseNames();
std::span<const wchar_t *const> ColourPrefixes();

} // namespace tarn
