#include "runtime/page_text.h"

#include <cwchar>
#include <cwctype>

namespace tarn {

std::wstring FormatOleColor(uint32_t color)
{
    wchar_t buf[16];
    std::swprintf(buf, 16, L"&H%08X&", static_cast<unsigned>(color));
    return buf;
}

namespace {

bool digits(std::wstring_view s, int base, uint64_t &out)
{
    if (s.empty() || s.size() > 20) return false;
    uint64_t v = 0;
    for (wchar_t c : s) {
        int d;
        if (c >= L'0' && c <= L'9') d = c - L'0';
        else if (base == 16 && c >= L'a' && c <= L'f') d = c - L'a' + 10;
        else if (base == 16 && c >= L'A' && c <= L'F') d = c - L'A' + 10;
        else return false;
        v = v * static_cast<unsigned>(base) + static_cast<unsigned>(d);
        if (v > 0xFFFFFFFFull) return false;
    }
    out = v;
    return true;
}

} // namespace

bool ParseOleColor(std::wstring_view text, uint32_t &color)
{
    while (!text.empty() && std::iswspace(static_cast<wint_t>(text.front()))) text.remove_prefix(1);
    while (!text.empty() && std::iswspace(static_cast<wint_t>(text.back()))) text.remove_suffix(1);
    uint64_t v = 0;
    bool ok;
    if (text.size() > 2 && text[0] == L'&' && (text[1] == L'H' || text[1] == L'h')) {
        text.remove_prefix(2);
        if (!text.empty() && text.back() == L'&') text.remove_suffix(1);
        ok = digits(text, 16, v);
    } else if (text.size() > 2 && text[0] == L'0' && (text[1] == L'x' || text[1] == L'X')) {
        ok = digits(text.substr(2), 16, v);
    } else if (!text.empty() && text[0] == L'-') {
        // A Long: -1 is &HFFFFFFFF.
        ok = digits(text.substr(1), 10, v) && v <= 0x80000000ull;
        if (ok) v = (0x100000000ull - v) & 0xFFFFFFFFull;
    } else {
        ok = digits(text, 10, v);
    }
    if (ok) color = static_cast<uint32_t>(v);
    return ok;
}

std::wstring EnumItemText(long value, std::wstring_view name)
{
    return std::to_wstring(value) + L" - " + std::wstring(name);
}

} // namespace tarn
