// Dates and times as the user's environment writes them: the short date format and the time
// format of the user's locale, and reading either back (as a host's date conversion does).
#pragma once
#include <windows.h>

#include <optional>
#include <string>

namespace tarn {

std::wstring ShortDateText(const SYSTEMTIME &when);
std::wstring TimeText(const SYSTEMTIME &when);
// A date, a time or both in the user's format; none for a text that is neither.
std::optional<SYSTEMTIME> ReadDateTimeText(const std::wstring &text);

} // namespace tarn
