// CheckBox: the check box constituent (a system BUTTON with BS_AUTOCHECKBOX). Its value and
// caption live in the window.
//
//   on_click   the value changed: clicked, toggled with the space bar, or written by code (a
//              write of the value it already has raises nothing)
#pragma once
#include "runtime/windowed_constituent.h"

namespace tarn {

class CheckBox final : public ColoredConstituent {
public:
    CheckBox(std::wstring name, float left, float top, float width, float height);

    // 0 unchecked, 1 checked.
    int16_t Value() const;
    void SetValue(int16_t value);
    std::wstring Caption() const;
    void SetCaption(const std::wstring &caption);

protected:
    bool on_command(WORD code, LRESULT &result) override;
    void print_client(HDC dc) override;
};

} // namespace tarn
