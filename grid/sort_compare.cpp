#include "grid/sort_compare.h"

#include <cmath>
#include <cstdlib>

namespace tarn {

namespace {

bool is_blank(wchar_t c) { return c == L' ' || c == L'\t'; }
bool is_digit(wchar_t c) { return c >= L'0' && c <= L'9'; }

wchar_t fold(wchar_t c) { return (c >= L'A' && c <= L'Z') ? static_cast<wchar_t>(c + (L'a' - L'A')) : c; }

} // namespace

bool ParseSortNumber(std::wstring_view text, double &value)
{
    const size_t n = text.size();
    size_t pos = 0;
    while (pos < n && is_blank(text[pos])) ++pos;
    // A number is short: anything longer than this buffer is not one worth parsing.
    char buf[64];
    size_t len = 0;
    auto put = [&](wchar_t c) {
        if (len + 1 >= sizeof buf) return false;
        buf[len++] = static_cast<char>(c);
        return true;
    };
    if (pos < n && (text[pos] == L'-' || text[pos] == L'+'))
        if (!put(text[pos++])) return false;
    bool digits = false;
    while (pos < n && is_digit(text[pos])) {
        if (!put(text[pos++])) return false;
        digits = true;
    }
    if (pos < n && text[pos] == L'.') {
        if (!put(text[pos++])) return false;
        while (pos < n && is_digit(text[pos])) {
            if (!put(text[pos++])) return false;
            digits = true;
        }
    }
    if (!digits) return false;
    if (pos < n && (text[pos] == L'e' || text[pos] == L'E')) {
        if (!put(text[pos++])) return false;
        if (pos < n && (text[pos] == L'-' || text[pos] == L'+'))
            if (!put(text[pos++])) return false;
        bool exp_digits = false;
        while (pos < n && is_digit(text[pos])) {
            if (!put(text[pos++])) return false;
            exp_digits = true;
        }
        if (!exp_digits) return false;
    }
    while (pos < n && is_blank(text[pos])) ++pos;
    if (pos < n && text[pos] == L'%') {
        ++pos;
        while (pos < n && is_blank(text[pos])) ++pos;
    }
    if (pos != n) return false;
    buf[len] = '\0';
    double v = std::strtod(buf, nullptr);
    if (!std::isfinite(v)) return false;
    value = v;
    return true;
}

SortKey MakeSortKey(std::wstring_view text)
{
    SortKey k;
    k.text = text;
    k.number = ParseSortNumber(text, k.value);
    return k;
}

int CompareTextNoCase(std::wstring_view a, std::wstring_view b)
{
    const size_t n = a.size() < b.size() ? a.size() : b.size();
    for (size_t i = 0; i < n; ++i) {
        wchar_t x = fold(a[i]), y = fold(b[i]);
        if (x != y) return x < y ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

} // namespace tarn
