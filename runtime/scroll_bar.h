// ScrollBar: the scroll bar constituent (a system SCROLLBAR window), vertical or horizontal.
// Its range, position and page live in the window.
//
//   on_change   the user moved the thumb, clicked an arrow or the track (once per step), or
//               code wrote Value; read Value for where it is now
#pragma once
#include "runtime/windowed_constituent.h"

namespace tarn {

class ScrollBar final : public WindowedConstituent {
public:
    ScrollBar(std::wstring name, float left, float top, float width, float height, bool vertical = true);

    int32_t Min() const;
    int32_t Max() const;
    // The range; a Max below Min is taken as Min.
    void SetRange(int32_t min, int32_t max);
    int32_t Value() const;
    // Kept within the range.
    void SetValue(int32_t value);
    // The step of a click on the track (the thumb's size), and of an arrow.
    int32_t LargeChange() const { return large_; }
    void SetLargeChange(int32_t change);
    int32_t SmallChange() const { return small_; }
    void SetSmallChange(int32_t change);

protected:
    bool on_scroll(int code, LRESULT &result) override;

private:
    SCROLLINFO info(UINT mask) const;
    int32_t large_ = 1, small_ = 1;
};

} // namespace tarn
