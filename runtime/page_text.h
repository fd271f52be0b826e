// How the General property page writes and reads values as text: OLE colours in the "&H...&"
// form property sheets use, enumeration members as "value - name".
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace tarn {

// "&H8000000F&": eight hex digits, as VB property sheets show a colour.
std::wstring FormatOleColor(uint32_t color);
// Reads "&H8000000F&", "&HFF" (closing '&' optional), "0x8000000F" or a decimal number
// (negative ones as the 32 bits of a Long); spaces around are ignored. False for anything
// else or a value beyond 32 bits.
bool ParseOleColor(std::wstring_view text, uint32_t &color);
// "1 - Button".
std::wstring EnumItemText(long value, std::wstring_view name);

} // namespace tarn
