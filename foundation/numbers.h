// Numbers read from text and written as text, the way the controls' contract reads them.
#pragma once
#include <string>

namespace tarn {

// The leading numeric part of a text as a double: blanks are skipped, then an optional sign,
// digits, an optional decimal point with digits and an optional exponent. Text that starts
// with no number yields 0 ("6.1 build" -> 6.1, "abc" -> 0, "" -> 0, "1,5" -> 1).
double LeadingNumber(const std::wstring &text);

// A strict conversion of the whole text (blanks around allowed) to a double; throws when
// the text is not a number (how a text read "as a double" fails inside a trapped step).
double ToDouble(const std::wstring &text);

// The value with `decimals` digits after the point, rounded half away from zero, no
// thousands separator: the patterns "0", "0.0" and "0.00". Never "-0".
std::wstring FormatFixed(double value, int decimals);

} // namespace tarn
