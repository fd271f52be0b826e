#include "grid/editors/locale_text.h"

#include <oleauto.h>

namespace tarn {

namespace {
template <class F> std::wstring format_with(F &&format)
{
    wchar_t buffer[128] = {};
    int n = format(buffer, static_cast<int>(sizeof buffer / sizeof buffer[0]));
    return n > 1 ? std::wstring(buffer, static_cast<size_t>(n - 1)) : std::wstring();
}
} // namespace

std::wstring ShortDateText(const SYSTEMTIME &when)
{
    return format_with([&](wchar_t *b, int n) {
        return GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &when, nullptr, b, n);
    });
}

std::wstring TimeText(const SYSTEMTIME &when)
{
    return format_with([&](wchar_t *b, int n) { return GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &when, nullptr, b, n); });
}

std::optional<SYSTEMTIME> ReadDateTimeText(const std::wstring &text)
{
    if (text.empty()) return std::nullopt;
    DATE date = 0;
    if (FAILED(VarDateFromStr(const_cast<OLECHAR *>(text.c_str()), LOCALE_USER_DEFAULT, 0, &date))) return std::nullopt;
    SYSTEMTIME st{};
    if (!VariantTimeToSystemTime(date, &st)) return std::nullopt;
    return st;
}

} // namespace tarn
