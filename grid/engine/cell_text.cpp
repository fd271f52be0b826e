#include "grid/engine/cell_text.h"

namespace tarn {

void CellText::AppendTo(std::wstring &out) const
{
    const size_t at = out.size();
    out.resize(at + size_);
    wchar_t *dst = out.data() + at;
    Visit([&](const auto *p, size_t n) {
        for (size_t i = 0; i < n; ++i) dst[i] = static_cast<wchar_t>(p[i]);
    });
}

bool CellText::operator==(std::wstring_view other) const
{
    if (other.size() != size_) return false;
    return Visit([&](const auto *p, size_t n) {
        for (size_t i = 0; i < n; ++i)
            if (static_cast<wchar_t>(p[i]) != other[i]) return false;
        return true;
    });
}

uint8_t UnitFor(std::wstring_view text)
{
    uint8_t unit = 1;
    for (wchar_t c : text) {
        const auto v = static_cast<uint32_t>(c);
        if (v > 0xFFFF) return 4;
        if (v > 0xFF) unit = 2;
    }
    return unit;
}

} // namespace tarn
