#include "grid/engine/sort_compare.h"

#include <cmath>
#include <cstdlib>

namespace tarn {

namespace {

bool is_blank(uint32_t c) { return c == L' ' || c == L'\t'; }
bool is_digit(uint32_t c) { return c >= L'0' && c <= L'9'; }

uint32_t fold(uint32_t c) { return (c >= 'A' && c <= 'Z') ? c + ('a' - 'A') : c; }

template <class Char> bool parse_number(const Char *text, size_t n, double &value)
{
    size_t pos = 0;
    auto at = [&](size_t i) { return static_cast<uint32_t>(text[i]); };
    while (pos < n && is_blank(at(pos))) ++pos;
    // A number is short: anything longer than this buffer is not one worth parsing.
    char buf[64];
    size_t len = 0;
    auto put = [&](uint32_t c) {
        if (len + 1 >= sizeof buf) return false;
        buf[len++] = static_cast<char>(c);
        return true;
    };
    if (pos < n && (at(pos) == '-' || at(pos) == '+'))
        if (!put(at(pos++))) return false;
    bool digits = false;
    while (pos < n && is_digit(at(pos))) {
        if (!put(at(pos++))) return false;
        digits = true;
    }
    if (pos < n && at(pos) == '.') {
        if (!put(at(pos++))) return false;
        while (pos < n && is_digit(at(pos))) {
            if (!put(at(pos++))) return false;
            digits = true;
        }
    }
    if (!digits) return false;
    if (pos < n && (at(pos) == 'e' || at(pos) == 'E')) {
        if (!put(at(pos++))) return false;
        if (pos < n && (at(pos) == '-' || at(pos) == '+'))
            if (!put(at(pos++))) return false;
        bool exp_digits = false;
        while (pos < n && is_digit(at(pos))) {
            if (!put(at(pos++))) return false;
            exp_digits = true;
        }
        if (!exp_digits) return false;
    }
    while (pos < n && is_blank(at(pos))) ++pos;
    if (pos < n && at(pos) == '%') {
        ++pos;
        while (pos < n && is_blank(at(pos))) ++pos;
    }
    if (pos != n) return false;
    buf[len] = '\0';
    double v = std::strtod(buf, nullptr);
    if (!std::isfinite(v)) return false;
    value = v;
    return true;
}

template <class A, class B> int compare_no_case(const A *a, size_t na, const B *b, size_t nb)
{
    const size_t n = na < nb ? na : nb;
    for (size_t i = 0; i < n; ++i) {
        // Code units compare as the wide characters they are (wchar_t is signed on some systems).
        const auto x = fold(static_cast<uint32_t>(static_cast<wchar_t>(a[i])));
        const auto y = fold(static_cast<uint32_t>(static_cast<wchar_t>(b[i])));
        if (x != y) return static_cast<wchar_t>(x) < static_cast<wchar_t>(y) ? -1 : 1;
    }
    if (na == nb) return 0;
    return na < nb ? -1 : 1;
}

} // namespace

bool ParseSortNumber(CellText text, double &value)
{
    return text.Visit([&](const auto *p, size_t n) { return parse_number(p, n, value); });
}

SortKey MakeSortKey(CellText text)
{
    SortKey k;
    k.text = text;
    k.number = ParseSortNumber(text, k.value);
    return k;
}

int CompareTextNoCase(CellText a, CellText b)
{
    return a.Visit([&](const auto *pa, size_t na) {
        return b.Visit([&](const auto *pb, size_t nb) { return compare_no_case(pa, na, pb, nb); });
    });
}

} // namespace tarn
