#include "grid/text_codec.h"

#include <cstdint>

namespace tarn {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Reads one UTF-8 sequence at bytes[pos]; returns the code point, or kReplacement and a
// one-byte step for anything malformed.
char32_t next_code_point(std::string_view bytes, size_t &pos, bool &ok)
{
    const auto b = [&](size_t i) { return static_cast<uint8_t>(bytes[i]); };
    const uint8_t lead = b(pos);
    ok = true;
    if (lead < 0x80) {
        ++pos;
        return lead;
    }
    int extra;
    char32_t cp, min;
    if (lead >= 0xC2 && lead <= 0xDF) extra = 1, cp = lead & 0x1F, min = 0x80;
    else if (lead >= 0xE0 && lead <= 0xEF) extra = 2, cp = lead & 0x0F, min = 0x800;
    else if (lead >= 0xF0 && lead <= 0xF4) extra = 3, cp = lead & 0x07, min = 0x10000;
    else {
        ok = false;
        ++pos;
        return kReplacement;
    }
    if (pos + static_cast<size_t>(extra) >= bytes.size()) { // truncated at the end
        ok = false;
        ++pos;
        return kReplacement;
    }
    for (int i = 1; i <= extra; ++i) {
        uint8_t c = b(pos + static_cast<size_t>(i));
        if ((c & 0xC0) != 0x80) {
            ok = false;
            ++pos;
            return kReplacement;
        }
        cp = (cp << 6) | (c & 0x3F);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
        ok = false;
        ++pos;
        return kReplacement;
    }
    pos += static_cast<size_t>(extra) + 1;
    return cp;
}

void put(std::wstring &out, char32_t cp)
{
    if constexpr (sizeof(wchar_t) == 2) {
        if (cp >= 0x10000) {
            cp -= 0x10000;
            out.push_back(static_cast<wchar_t>(0xD800 + (cp >> 10)));
            out.push_back(static_cast<wchar_t>(0xDC00 + (cp & 0x3FF)));
            return;
        }
    }
    out.push_back(static_cast<wchar_t>(cp));
}

// Windows-1252's 0x80..0x9F; 0 where the code page defines nothing (the byte maps to itself).
constexpr char16_t kHigh1252[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

} // namespace

bool IsValidUtf8(std::string_view bytes)
{
    size_t pos = 0;
    const size_t n = bytes.size();
    while (pos < n) {
        // Skip ASCII eight bytes at a time when we can.
        while (pos + 8 <= n) {
            uint64_t chunk = 0;
            for (int i = 0; i < 8; ++i) chunk |= static_cast<uint64_t>(static_cast<uint8_t>(bytes[pos + i])) << (8 * i);
            if (chunk & 0x8080808080808080ull) break;
            pos += 8;
        }
        if (pos >= n) break;
        bool ok;
        next_code_point(bytes, pos, ok);
        if (!ok) return false;
    }
    return true;
}

void DecodeUtf8(std::string_view bytes, std::wstring &out)
{
    size_t pos = 0;
    while (pos < bytes.size()) {
        const uint8_t c = static_cast<uint8_t>(bytes[pos]);
        if (c < 0x80) {
            out.push_back(static_cast<wchar_t>(c));
            ++pos;
            continue;
        }
        bool ok;
        put(out, next_code_point(bytes, pos, ok));
    }
}

void DecodeWindows1252(std::string_view bytes, std::wstring &out)
{
    for (char ch : bytes) {
        const uint8_t c = static_cast<uint8_t>(ch);
        char16_t u = (c >= 0x80 && c <= 0x9F) ? kHigh1252[c - 0x80] : 0;
        out.push_back(static_cast<wchar_t>(u ? u : c));
    }
}

void AppendUtf8(std::string &out, std::wstring_view text)
{
    const size_t n = text.size();
    for (size_t i = 0; i < n; ++i) {
        char32_t cp = static_cast<char32_t>(text[i]);
        if (cp < 0x80) {
            out.push_back(static_cast<char>(cp));
            continue;
        }
        if constexpr (sizeof(wchar_t) == 2) {
            cp &= 0xFFFF;
            if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < n) {
                char32_t lo = static_cast<char32_t>(text[i + 1]) & 0xFFFF;
                if (lo >= 0xDC00 && lo <= 0xDFFF) {
                    cp = 0x10000 + ((cp - 0xD800) << 10) + (lo - 0xDC00);
                    ++i;
                }
            }
        }
        if ((cp >= 0xD800 && cp <= 0xDFFF) || cp > 0x10FFFF) cp = kReplacement;
        if (cp < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        } else if (cp < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        }
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

} // namespace tarn
