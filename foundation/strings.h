// String pieces and word counts: the text splitting routines every control shares.
#pragma once
#include <cstdint>
#include <string>

namespace tarn {

// Piece number `index` (from 1) of `text` split at a one-character delimiter. A delimiter of
// any other length never matches. A piece that does not exist yields the text "0".
std::wstring StringPiece(const std::wstring &text, const std::wstring &delimiter, int32_t index);

// The number of pieces of `text` split at `delimiter` (any length); 0 for an empty text.
int32_t StringWordCount(const std::wstring &text, const std::wstring &delimiter);

// Leading and trailing blanks (spaces only) removed, as the contract's Trim.
std::wstring Trim(const std::wstring &text);

} // namespace tarn
