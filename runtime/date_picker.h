// DatePicker: the date-and-time picker constituent (the common control SysDateTimePick32) in
// one of two formats, chosen when it is made: the user's short date, or the time of day. Its
// value lives in the window, as an automation date (days since 30 December 1899, the time of
// day as the fraction).
//
//   on_change      the value changed, by the user or by code
//   on_drop_down   the calendar opened (date format); on_close_up it closed again
// Its context menu opens through on_context_menu, as for every windowed constituent.
#pragma once
#include "runtime/windowed_constituent.h"

namespace tarn {

class DatePicker final : public WindowedConstituent {
public:
    enum Format : int16_t { ShortDate = 0, Time = 1 };
    DatePicker(std::wstring name, Format format, float left, float top, float width, float height);

    Format GetFormat() const { return format_; }
    // The value as an automation date. A write outside what the control holds (before 1601,
    // after 9999, not a number) is refused.
    double Value() const;
    void SetValue(double date);
    // The value's parts, as the window holds them.
    SYSTEMTIME Parts() const;
    void SetParts(const SYSTEMTIME &parts);

    std::function<void()> on_drop_down, on_close_up;

protected:
    bool on_notify(NMHDR *header, LRESULT &result) override;

private:
    Format format_;
};

} // namespace tarn
