#include "grid/engine/row_data.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>
#include <stdexcept>
#include <type_traits>

namespace tarn {

namespace {

uint8_t width_for(uint32_t units) { return units <= 0xFF ? 1 : units <= 0xFFFF ? 2 : 4; }

// Copies n characters between widths (each source character fits the destination's width).
void copy_units(uint8_t *dst, uint8_t dst_unit, const void *src, uint8_t src_unit, size_t n)
{
    if (n == 0) return;
    if (dst_unit == src_unit) {
        std::memcpy(dst, src, n * dst_unit);
        return;
    }
    auto store = [&](auto *out) {
        using Out = std::remove_pointer_t<decltype(out)>;
        CellText(src, static_cast<uint32_t>(n), src_unit).Visit([&](const auto *in, size_t count) {
            for (size_t i = 0; i < count; ++i) out[i] = static_cast<Out>(in[i]);
        });
    };
    if (dst_unit == 1) store(dst);
    else if (dst_unit == 2) store(reinterpret_cast<char16_t *>(dst));
    else store(reinterpret_cast<char32_t *>(dst));
}

void copy_wide(uint8_t *dst, uint8_t dst_unit, std::wstring_view text)
{
    auto store = [&](auto *out) {
        using Out = std::remove_pointer_t<decltype(out)>;
        for (size_t i = 0; i < text.size(); ++i) out[i] = static_cast<Out>(text[i]);
    };
    if (dst_unit == 1) store(dst);
    else if (dst_unit == 2) store(reinterpret_cast<char16_t *>(dst));
    else store(reinterpret_cast<char32_t *>(dst));
}

// The widest character among n stored ones.
uint8_t unit_of(const void *src, uint8_t src_unit, size_t n)
{
    if (src_unit == 1 || n == 0) return 1;
    return CellText(src, static_cast<uint32_t>(n), src_unit).Visit([](const auto *p, size_t count) {
        uint8_t u = 1;
        for (size_t i = 0; i < count; ++i) {
            const auto v = static_cast<uint32_t>(p[i]);
            if (v > 0xFFFF) return uint8_t{4};
            if (v > 0xFF) u = 2;
        }
        return u;
    });
}

} // namespace

size_t RowData::size_of(uint32_t cells, uint32_t units, uint8_t unit, uint8_t offset_width)
{
    size_t at = text_offset() + size_t{units} * unit;
    at = (at + offset_width - 1) / offset_width * offset_width;
    return at + size_t{cells} * offset_width;
}

size_t RowData::ends_offset() const
{
    const size_t at = text_offset() + size_t{units_} * unit_;
    return (at + offset_width_ - 1) / offset_width_ * offset_width_;
}

uint32_t RowData::end(uint32_t c) const
{
    const uint8_t *p = reinterpret_cast<const uint8_t *>(this) + ends_offset();
    switch (offset_width_) {
    case 1: return p[c];
    case 2: return reinterpret_cast<const uint16_t *>(p)[c];
    default: return reinterpret_cast<const uint32_t *>(p)[c];
    }
}

void RowData::set_end(uint32_t c, uint32_t value)
{
    uint8_t *p = reinterpret_cast<uint8_t *>(this) + ends_offset();
    switch (offset_width_) {
    case 1: p[c] = static_cast<uint8_t>(value); break;
    case 2: reinterpret_cast<uint16_t *>(p)[c] = static_cast<uint16_t>(value); break;
    default: reinterpret_cast<uint32_t *>(p)[c] = value; break;
    }
}

RowData *RowData::allocate(const Meta &meta, uint32_t cells, uint32_t units, uint8_t unit)
{
    const uint8_t ow = width_for(units);
    void *memory = ::operator new(size_of(cells, units, unit, ow));
    RowData *row = new (memory) RowData;
    row->formats_ = meta.formats;
    row->cells_ = cells;
    row->units_ = units;
    row->stamp_ = meta.stamp;
    row->height_ = meta.height;
    row->style_ = meta.style;
    row->style_cells_ = meta.style_cells;
    row->unit_ = unit;
    row->offset_width_ = ow;
    return row;
}

CellText RowData::Text(uint32_t col) const
{
    const uint32_t begin = col ? end(col - 1) : 0;
    return CellText(chars() + size_t{begin} * unit_, end(col) - begin, unit_);
}

const void *RowData::TextAddress(uint32_t col) const { return chars() + size_t{col ? end(col - 1) : 0} * unit_; }

RowData *RowData::Make(const Meta &meta, std::wstring_view chars, const uint32_t *ends, uint32_t cells)
{
    const uint32_t units = cells ? ends[cells - 1] : 0;
    const std::wstring_view used = chars.substr(0, units);
    const uint8_t unit = UnitFor(used);
    RowData *row = allocate(meta, cells, units, unit);
    copy_wide(row->chars(), unit, used);
    for (uint32_t c = 0; c < cells; ++c) row->set_end(c, ends[c]);
    return row;
}

RowData *RowData::Rewrite(const RowData *old, const Meta &meta, uint32_t keep, int64_t col, std::wstring_view text)
{
    const uint32_t kept = old ? std::min(old->cells_, keep) : 0;
    const uint32_t kept_units = kept ? old->end(kept - 1) : 0;
    if (col < 0) {
        // Trimming only: the first `kept` cells as they are.
        const uint8_t unit = old ? unit_of(old->chars(), old->unit_, kept_units) : 1;
        RowData *row = allocate(meta, kept, kept_units, unit);
        if (kept) copy_units(row->chars(), unit, old->chars(), old->unit_, kept_units);
        for (uint32_t c = 0; c < kept; ++c) row->set_end(c, old->end(c));
        return row;
    }
    const uint32_t at = static_cast<uint32_t>(col);
    const uint32_t cells = std::max(kept, at + 1);
    // Characters before the cell, of the cell before, and after it.
    const uint32_t before = at < kept ? (at ? old->end(at - 1) : 0) : kept_units;
    const uint32_t after_begin = at < kept ? old->end(at) : kept_units;
    const uint32_t after = kept_units - after_begin;
    if (uint64_t{before} + text.size() + after > UINT32_MAX) throw std::length_error("row text");
    const uint32_t units = static_cast<uint32_t>(before + text.size() + after);

    uint8_t unit = UnitFor(text);
    if (old && old->unit_ > unit) {
        unit = std::max(unit, unit_of(old->chars(), old->unit_, before));
        unit = std::max(unit, unit_of(old->chars() + size_t{after_begin} * old->unit_, old->unit_, after));
    }
    RowData *row = allocate(meta, cells, units, unit);
    uint8_t *dst = row->chars();
    if (before) copy_units(dst, unit, old->chars(), old->unit_, before);
    copy_wide(dst + size_t{before} * unit, unit, text);
    if (after)
        copy_units(dst + (size_t{before} + text.size()) * unit, unit, old->chars() + size_t{after_begin} * old->unit_,
                   old->unit_, after);
    const uint32_t grown = static_cast<uint32_t>(text.size()) - (after_begin - before); // wraps when shrinking
    for (uint32_t c = 0; c < cells; ++c) {
        uint32_t e;
        if (c < at) e = c < kept ? old->end(c) : kept_units;
        else if (c == at) e = before + static_cast<uint32_t>(text.size());
        else e = old->end(c) + grown;
        row->set_end(c, e);
    }
    return row;
}

void ReleaseTexts(RowData *row)
{
    if (!row) return;
    row->~RowData();
    ::operator delete(row);
}

void DestroyRow(RowData *row)
{
    if (!row) return;
    delete row->formats_;
    ReleaseTexts(row);
}

} // namespace tarn
