// The cell engine's per-cell formatting: shared formats, interned font names, the current
// cell's format properties.
#include "grid/engine/cell_engine.h"

#include "grid/engine/row_data.h"

#include <algorithm>
#include <stdexcept>

namespace tarn {

uint16_t CellEngine::FontIndex(const std::wstring &name)
{
    if (name.empty()) return 0;
    for (size_t i = 0; i < fonts_.size(); ++i)
        if (fonts_[i] == name) return static_cast<uint16_t>(i + 1);
    if (fonts_.size() >= 0xFFFF) throw std::length_error("font names");
    fonts_.push_back(name);
    return static_cast<uint16_t>(fonts_.size());
}

const std::wstring &CellEngine::FontName(uint16_t index) const noexcept
{
    if (index == 0 || index > fonts_.size()) return defaults_.font_name;
    return fonts_[index - 1u];
}

uint32_t CellEngine::format_id(const RowData *r, int32_t col) const
{
    if (!r) return 0;
    const auto c = static_cast<uint32_t>(col);
    const int32_t limit = cuts_.Limit(r->stamp());
    if (limit != INT32_MAX && c >= static_cast<uint32_t>(limit)) return 0;
    if (const RowFormats *own = r->formats()) {
        auto it = std::lower_bound(own->cells.begin(), own->cells.end(), std::pair<uint32_t, uint32_t>(c, 0));
        if (it != own->cells.end() && it->first == c) return it->second;
    }
    if (c < r->style_cells()) return formats_.Style(r->style())[c];
    return 0;
}

const CellFormat *CellEngine::FormatAt(int32_t row, int32_t col) const noexcept
{
    if (row < 0 || row >= Rows() || col < 0 || col >= Cols()) return nullptr;
    const uint32_t id = format_id(rows_.Get(static_cast<size_t>(row)), col);
    return id ? &formats_.Get(id) : nullptr;
}

void CellEngine::check_format(const CellFormat &changes) const
{
    if (changes.has(CellFormat::kAlign) && (changes.alignment < 0 || changes.alignment > kAlignGeneral))
        throw std::invalid_argument("alignment");
    if (changes.has(CellFormat::kSize) && !(changes.size > 0 && changes.size <= 2048))
        throw std::invalid_argument("font size");
    if (changes.has(CellFormat::kFont) && changes.font > fonts_.size()) throw std::invalid_argument("font");
}

void CellEngine::UpdateFormat(int32_t row, int32_t col, const CellFormat &changes)
{
    check_row(row);
    check_col(col);
    check_format(changes);
    if (changes.set == 0) return;

    const uint32_t old = format_id(rows_.Get(static_cast<size_t>(row)), col);
    CellFormat f = formats_.Get(old);
    f.Apply(changes);
    const uint32_t id = formats_.Intern(f);
    if (id == old) return;

    RowData *r = record(row);
    RowFormats *own = r->formats();
    if (!own) {
        own = new RowFormats;
        r->set_formats(own);
    }
    const auto c = static_cast<uint32_t>(col);
    auto it = std::lower_bound(own->cells.begin(), own->cells.end(), std::pair<uint32_t, uint32_t>(c, 0));
    if (it != own->cells.end() && it->first == c) it->second = id;
    else own->cells.insert(it, {c, id});
}

CellEngine::CellStyle CellEngine::StyleAt(int32_t row, int32_t col) const noexcept
{
    CellStyle s{kAlignGeneral, &defaults_.font_name, defaults_.font_size, defaults_.bold, false,
                defaults_.fore, defaults_.back};
    const CellFormat *f = FormatAt(row, col);
    if (!f) return s;
    if (f->has(CellFormat::kAlign)) s.alignment = f->alignment;
    if (f->has(CellFormat::kFont)) s.font_name = &FontName(f->font);
    if (f->has(CellFormat::kSize)) s.font_size = f->size;
    if (f->has(CellFormat::kBold)) s.bold = f->bold;
    if (f->has(CellFormat::kStrike)) s.strike = f->strike;
    if (f->has(CellFormat::kFore)) s.fore = f->fore;
    if (f->has(CellFormat::kBack)) s.back = f->back;
    return s;
}

const CellFormat *CellEngine::current_format() const
{
    check_row(row_);
    check_col(col_);
    return FormatAt(row_, col_);
}

int16_t CellEngine::CellAlignment() const
{
    const CellFormat *f = current_format();
    return (f && f->has(CellFormat::kAlign)) ? f->alignment : int16_t{kAlignGeneral};
}

void CellEngine::SetCellAlignment(int16_t alignment)
{
    CellFormat c;
    c.set = CellFormat::kAlign;
    c.alignment = alignment;
    format_current(c);
}

const std::wstring &CellEngine::CellFontName() const
{
    const CellFormat *f = current_format();
    return FontName((f && f->has(CellFormat::kFont)) ? f->font : 0);
}

void CellEngine::SetCellFontName(const std::wstring &name)
{
    check_row(row_);
    check_col(col_);
    CellFormat c;
    c.set = CellFormat::kFont;
    c.font = FontIndex(name);
    format_current(c);
}

float CellEngine::CellFontSize() const
{
    const CellFormat *f = current_format();
    return (f && f->has(CellFormat::kSize)) ? f->size : defaults_.font_size;
}

void CellEngine::SetCellFontSize(float points)
{
    CellFormat c;
    c.set = CellFormat::kSize;
    c.size = points;
    format_current(c);
}

bool CellEngine::CellFontBold() const
{
    const CellFormat *f = current_format();
    return (f && f->has(CellFormat::kBold)) ? f->bold : defaults_.bold;
}

void CellEngine::SetCellFontBold(bool bold)
{
    CellFormat c;
    c.set = CellFormat::kBold;
    c.bold = bold;
    format_current(c);
}

bool CellEngine::CellFontStrikeThrough() const
{
    const CellFormat *f = current_format();
    return f && f->has(CellFormat::kStrike) && f->strike;
}

void CellEngine::SetCellFontStrikeThrough(bool strike)
{
    CellFormat c;
    c.set = CellFormat::kStrike;
    c.strike = strike;
    format_current(c);
}

uint32_t CellEngine::CellForeColor() const
{
    const CellFormat *f = current_format();
    return (f && f->has(CellFormat::kFore)) ? f->fore : defaults_.fore;
}

void CellEngine::SetCellForeColor(uint32_t ole_color)
{
    CellFormat c;
    c.set = CellFormat::kFore;
    c.fore = ole_color;
    format_current(c);
}

uint32_t CellEngine::CellBackColor() const
{
    const CellFormat *f = current_format();
    return (f && f->has(CellFormat::kBack)) ? f->back : defaults_.back;
}

void CellEngine::SetCellBackColor(uint32_t ole_color)
{
    CellFormat c;
    c.set = CellFormat::kBack;
    c.back = ole_color;
    format_current(c);
}

} // namespace tarn
