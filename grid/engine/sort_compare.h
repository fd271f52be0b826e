// The grid's generic sort order of cell texts: numbers as numbers, other text as text.
#pragma once
#include "grid/engine/cell_text.h"

#include <string_view>

namespace tarn {

// A text counts as a number when all of it is one decimal number (optional sign, digits,
// optional point and fraction, optional exponent), blanks allowed around it, optionally
// followed by "%" so that percentage cells ("12.5 %") sort by value. Nothing else does: an
// empty text, "1,000", "12 kg", dates. Non-finite values are not numbers.
bool ParseSortNumber(CellText text, double &value);
inline bool ParseSortNumber(std::wstring_view text, double &value) { return ParseSortNumber(AsCellText(text), value); }

// A cell's sort key, computed once per row so a sort parses each text only once.
struct SortKey {
    bool number = false;
    double value = 0;
    CellText text;
};

SortKey MakeSortKey(CellText text);
inline SortKey MakeSortKey(std::wstring_view text) { return MakeSortKey(AsCellText(text)); }

// Texts compared code unit by code unit with the ASCII letters folded to lower case; <0, 0, >0.
int CompareTextNoCase(CellText a, CellText b);
inline int CompareTextNoCase(std::wstring_view a, std::wstring_view b) { return CompareTextNoCase(AsCellText(a), AsCellText(b)); }

// The ascending order, a strict weak ordering: every number comes before every other text;
// numbers by value (0 and -0 are equal); other texts by CompareTextNoCase, so "abc" and "ABC"
// are equal keys and keep their order in a stable sort. Descending is the same order with
// the operands swapped (equal keys still keep their order), never a reversed ascending sort.
inline bool SortKeyLess(const SortKey &a, const SortKey &b)
{
    if (a.number != b.number) return a.number;
    if (a.number) return a.value < b.value;
    return CompareTextNoCase(a.text, b.text) < 0;
}

} // namespace tarn
