// The text encodings of the grid file: UTF-8 (what the grid writes) and Windows-1252 (what
// files written before it held). Works for 16-bit (UTF-16) and 32-bit wchar_t alike.
#pragma once
#include <string>
#include <string_view>

namespace tarn {

// True when the bytes are well-formed UTF-8 (no overlong forms, no surrogates, at most
// U+10FFFF). Plain ASCII is valid UTF-8.
bool IsValidUtf8(std::string_view bytes);

// Appends the decoded text of bytes that IsValidUtf8 accepted (anything malformed becomes
// U+FFFD).
void DecodeUtf8(std::string_view bytes, std::wstring &out);
// Appends the decoded text of Windows-1252 bytes; the five bytes it leaves undefined map to
// the same code point.
void DecodeWindows1252(std::string_view bytes, std::wstring &out);

// Appends the UTF-8 form of `text`; an unpaired surrogate or a value past U+10FFFF is
// written as U+FFFD.
void AppendUtf8(std::string &out, std::wstring_view text);

} // namespace tarn
