#include "foundation/numbers.h"

#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace tarn {

namespace {

bool is_blank(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }
bool is_digit(wchar_t c) { return c >= L'0' && c <= L'9'; }

// Scans a number from `pos`; returns the characters it consumed (as ASCII for strtod).
std::string scan_number(const std::wstring &text, size_t &pos)
{
    std::string out;
    auto skip = [&] {
        while (pos < text.size() && is_blank(text[pos])) ++pos;
    };
    skip();
    if (pos < text.size() && (text[pos] == L'-' || text[pos] == L'+')) out += static_cast<char>(text[pos++]);
    bool digits = false;
    while (pos < text.size() && is_digit(text[pos])) out += static_cast<char>(text[pos++]), digits = true;
    if (pos < text.size() && text[pos] == L'.') {
        out += '.';
        ++pos;
        while (pos < text.size() && is_digit(text[pos])) out += static_cast<char>(text[pos++]), digits = true;
    }
    if (!digits) return {};
    if (pos < text.size() && (text[pos] == L'e' || text[pos] == L'E')) {
        size_t save = pos;
        std::string exp = "e";
        ++pos;
        if (pos < text.size() && (text[pos] == L'-' || text[pos] == L'+')) exp += static_cast<char>(text[pos++]);
        bool exp_digits = false;
        while (pos < text.size() && is_digit(text[pos])) exp += static_cast<char>(text[pos++]), exp_digits = true;
        if (exp_digits) out += exp;
        else pos = save;
    }
    return out;
}

double parse(const std::string &s)
{
    double v = std::strtod(s.c_str(), nullptr);
    return std::isfinite(v) ? v : 0.0;
}

} // namespace

double LeadingNumber(const std::wstring &text)
{
    size_t pos = 0;
    std::string s = scan_number(text, pos);
    return s.empty() ? 0.0 : parse(s);
}

double ToDouble(const std::wstring &text)
{
    size_t pos = 0;
    std::string s = scan_number(text, pos);
    while (pos < text.size() && is_blank(text[pos])) ++pos;
    if (s.empty() || pos != text.size()) throw std::invalid_argument("not a number");
    double v = std::strtod(s.c_str(), nullptr);
    if (!std::isfinite(v)) throw std::invalid_argument("out of range");
    return v;
}

std::wstring FormatFixed(double value, int decimals)
{
    if (!std::isfinite(value)) return L"0";
    if (decimals < 0) decimals = 0;
    double scale = std::pow(10.0, decimals);
    double rounded = std::round(value * scale) / scale; // halves away from zero
    if (!std::isfinite(rounded)) rounded = value;
    if (rounded == 0) rounded = 0; // no "-0"
    char buf[400];
    std::snprintf(buf, sizeof buf, "%.*f", decimals, rounded);
    return std::wstring(buf, buf + std::char_traits<char>::length(buf));
}

} // namespace tarn
