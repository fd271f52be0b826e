#include "inputs/font_coverage.h"

#include <algorithm>

#include "foundation/handles.h"
#include "foundation/modLIBTXT.h"

namespace tarn {

namespace {
bool shown_character(uint32_t cp)
{
    return cp >= 0x20 && !(cp >= 0x7F && cp <= 0x9F) && !(cp >= 0xD800 && cp <= 0xDFFF);
}
} // namespace

uint16_t FontCoverage::GlyphOf(uint32_t code_point) const
{
    auto it = std::lower_bound(code_points.begin(), code_points.end(), code_point);
    if (it == code_points.end() || *it != code_point) return 0xFFFF;
    return glyphs[static_cast<size_t>(it - code_points.begin())];
}

FontCoverage CoverageOf(const std::wstring &face)
{
    FontCoverage out;
    if (face.empty() || face.size() >= LF_FACESIZE) return out;
    window_dc screen(nullptr);
    if (!screen.get()) return out;
    LOGFONTW lf{};
    lf.lfHeight = -32;
    lf.lfCharSet = DEFAULT_CHARSET;
    face.copy(lf.lfFaceName, face.size());
    unique_font font(CreateFontIndirectW(&lf));
    if (!font) return out;
    select_guard use(screen.get(), font.get());
    wchar_t got[LF_FACESIZE] = {};
    GetTextFaceW(screen.get(), LF_FACESIZE, got);
    // A name the screen lacks gets another font: none of its characters count.
    if (!SameTextAnyCase(got, face)) return out;
    out.installed = true;

    std::vector<std::pair<uint32_t, uint32_t>> ranges; // first, count
    DWORD size = GetFontUnicodeRanges(screen.get(), nullptr);
    if (size >= sizeof(GLYPHSET)) {
        std::vector<BYTE> buf(size);
        auto *set = reinterpret_cast<GLYPHSET *>(buf.data());
        set->cbThis = size;
        if (GetFontUnicodeRanges(screen.get(), set))
            for (DWORD r = 0; r < set->cRanges; ++r) ranges.emplace_back(set->ranges[r].wcLow, set->ranges[r].cGlyphs);
    }
    if (ranges.empty()) ranges.emplace_back(0x20, 0xFFFE - 0x20); // no map to be had: ask for every character
    std::vector<wchar_t> chars;
    std::vector<WORD> glyphs;
    for (const auto &[first, count] : ranges) {
        chars.resize(count);
        glyphs.assign(count, 0xFFFF);
        for (uint32_t k = 0; k < count; ++k) chars[k] = static_cast<wchar_t>(first + k);
        if (GetGlyphIndicesW(screen.get(), chars.data(), static_cast<int>(count), glyphs.data(),
                             GGI_MARK_NONEXISTING_GLYPHS) == GDI_ERROR)
            continue;
        for (uint32_t k = 0; k < count; ++k) {
            const uint32_t cp = first + k;
            if (glyphs[k] == 0xFFFF || !shown_character(cp) || cp > 0xFFFF) continue;
            out.code_points.push_back(cp);
            out.glyphs.push_back(glyphs[k]);
        }
    }
    // Ranges come in order; keep the pairs sorted by code point all the same.
    std::vector<size_t> order(out.code_points.size());
    for (size_t i = 0; i < order.size(); ++i) order[i] = i;
    if (!std::is_sorted(out.code_points.begin(), out.code_points.end())) {
        std::sort(order.begin(), order.end(), [&](size_t a, size_t b) { return out.code_points[a] < out.code_points[b]; });
        FontCoverage sorted = out;
        for (size_t i = 0; i < order.size(); ++i) {
            sorted.code_points[i] = out.code_points[order[i]];
            sorted.glyphs[i] = out.glyphs[order[i]];
        }
        out = std::move(sorted);
    }
    return out;
}

} // namespace tarn
