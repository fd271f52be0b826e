// UpDown: the pair of up and down arrows (the common control msctls_updown32). The window
// holds the range and the options a buddy text box would use; the arrows are attached to no
// buddy, so the control that places them decides what a click does.
//
//   on_up_click, on_down_click   the up or the down arrow was clicked (or held down: once per
//                                repeat), also at the ends of the range and with Min above Max
#pragma once
#include "runtime/windowed_constituent.h"

namespace tarn {

class UpDown final : public WindowedConstituent {
public:
    UpDown(std::wstring name, float left, float top, float width, float height);

    int32_t Min() const;
    void SetMin(int32_t min);
    int32_t Max() const;
    void SetMax(int32_t max);
    // The arrows' own position within the range.
    int32_t Value() const;
    void SetValue(int32_t value);
    // Whether the Up and Down keys of a buddy step it.
    bool ArrowKeys() const;
    void SetArrowKeys(bool on);
    // Where it would sit beside a buddy: 0 nowhere (placed by its control), 1 left, 2 right.
    int16_t BuddyAlignment() const;
    void SetBuddyAlignment(int16_t alignment);
    // Whether it would write its position into a buddy.
    bool SyncBuddy() const;
    void SetSyncBuddy(bool on);
    // Whether a position written into a buddy would carry thousands separators.
    bool ThousandsSeparator() const;
    void SetThousandsSeparator(bool on);

    std::function<void()> on_up_click, on_down_click;

protected:
    bool on_notify(NMHDR *header, LRESULT &result) override;

private:
    void range(int32_t &min, int32_t &max) const;
};

} // namespace tarn
