#include "grid/engine/format_table.h"

#include <cstring>
#include <stdexcept>

namespace tarn {

namespace {

// The fields a format sets, the others zero, so equal looks compare equal.
CellFormat canonical(const CellFormat &f)
{
    CellFormat c;
    c.Apply(f);
    return c;
}

} // namespace

size_t FormatTable::Hash::operator()(const CellFormat &f) const
{
    uint32_t size_bits = 0;
    std::memcpy(&size_bits, &f.size, sizeof size_bits);
    uint64_t h = f.set | (uint64_t{f.bold} << 8) | (uint64_t{f.strike} << 9) | (uint64_t(uint16_t(f.alignment)) << 16) |
                 (uint64_t{f.font} << 32);
    for (uint64_t v : {uint64_t{size_bits}, uint64_t{f.fore}, uint64_t{f.back}}) h = (h ^ v) * 0x9E3779B97F4A7C15ull;
    return static_cast<size_t>(h ^ (h >> 29));
}

bool FormatTable::Equal::operator()(const CellFormat &a, const CellFormat &b) const
{
    return a.set == b.set && a.bold == b.bold && a.strike == b.strike && a.alignment == b.alignment && a.font == b.font &&
           std::memcmp(&a.size, &b.size, sizeof a.size) == 0 && a.fore == b.fore && a.back == b.back;
}

FormatTable::FormatTable()
{
    formats_.emplace_back();
    format_ids_.emplace(canonical(CellFormat{}), 0);
    styles_.emplace_back();
}

uint32_t FormatTable::Intern(const CellFormat &format)
{
    const CellFormat c = canonical(format);
    auto found = format_ids_.find(c);
    if (found != format_ids_.end()) return found->second;
    if (formats_.size() >= UINT32_MAX) throw std::length_error("formats");
    const auto id = static_cast<uint32_t>(formats_.size());
    formats_.push_back(c);
    format_ids_.emplace(c, id);
    return id;
}

uint32_t FormatTable::InternStyle(const std::vector<uint32_t> &format_ids)
{
    auto found = style_ids_.find(format_ids);
    if (found != style_ids_.end()) return found->second;
    const auto id = static_cast<uint32_t>(styles_.size());
    styles_.push_back(format_ids);
    style_ids_.emplace(format_ids, id);
    return id;
}

} // namespace tarn
