// Which characters a font really has: the code points its character map covers (by the
// platform's GetFontUnicodeRanges) that also have a glyph of their own (GetGlyphIndicesW),
// control characters and surrogates left out, with those glyphs.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace tarn {

struct FontCoverage {
    bool installed = false; // the screen has a font of this name (not a substitute)
    std::vector<uint32_t> code_points;
    std::vector<uint16_t> glyphs; // the glyph of each code point, in the same order
    // The glyph of a code point; 0xFFFF for one the font does not have.
    uint16_t GlyphOf(uint32_t code_point) const;
};

FontCoverage CoverageOf(const std::wstring &face);

} // namespace tarn
