#include "runtime/date_picker.h"

#include <commctrl.h>
#include <oleauto.h>

#include <cmath>
#include <stdexcept>

namespace tarn {

namespace {

DWORD format_style(DatePicker::Format format)
{
    // The time format steps its fields with arrows; the date format drops a calendar.
    return format == DatePicker::Time ? (DTS_TIMEFORMAT | DTS_UPDOWN) : DTS_SHORTDATEFORMAT;
}
} // namespace

DatePicker::DatePicker(std::wstring name, Format format, float left, float top, float width, float height)
    : WindowedConstituent(std::move(name), CommonControlClass(ICC_DATE_CLASSES, DATETIMEPICK_CLASSW),
                          WS_VISIBLE | WS_TABSTOP | format_style(format), 0, left, top, width, height),
      format_(format == Time ? Time : ShortDate)
{
}

SYSTEMTIME DatePicker::Parts() const
{
    SYSTEMTIME st{};
    if (hwnd_) SendMessageW(hwnd_, DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&st));
    return st;
}

void DatePicker::SetParts(const SYSTEMTIME &parts)
{
    if (!hwnd_) return;
    SYSTEMTIME st = parts;
    if (!SendMessageW(hwnd_, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&st)))
        throw std::invalid_argument("not a date the picker holds");
    // The window tells its parent only of the user's changes.
    fire(on_change);
}

double DatePicker::Value() const
{
    SYSTEMTIME st = Parts();
    double date = 0;
    if (!SystemTimeToVariantTime(&st, &date)) return 0;
    return date;
}

void DatePicker::SetValue(double date)
{
    // 1 January 1601 to 31 December 9999, the range of the window's own calendar.
    constexpr double kFirst = -109205, kLast = 2958466;
    if (!std::isfinite(date) || date < kFirst || date >= kLast) throw std::invalid_argument("date out of range");
    SYSTEMTIME st{};
    if (!VariantTimeToSystemTime(date, &st)) throw std::invalid_argument("not a date");
    SetParts(st);
}

bool DatePicker::on_notify(NMHDR *header, LRESULT &result)
{
    switch (header->code) {
    case DTN_DATETIMECHANGE: fire(on_change); break;
    case DTN_DROPDOWN: fire(on_drop_down); break;
    case DTN_CLOSEUP: fire(on_close_up); break;
    default: return false;
    }
    result = 0;
    return true;
}

} // namespace tarn
