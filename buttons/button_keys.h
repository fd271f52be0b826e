// What the library's buttons share of the keyboard and the focus: Space presses on its key-down
// and clicks on its key-up (only when both reached the button), the arrow keys move the focus
// as Tab and Shift+Tab do, and a lost focus ends every press with a MouseUp.
#pragma once
#include <functional>

#include "buttons/hover_tracker.h"

namespace tarn {

class ButtonKeys {
public:
    ButtonKeys(ButtonHost &host, HoverTracker &tracker) : host_(host), tracker_(tracker) {}

    // KeyDown is raised first; a key `taken` claims after it (the colour button's open pop-up)
    // goes no further and is forgotten, so its key-up clicks nothing.
    void KeyDown(int16_t &key_code, int16_t shift, const std::function<bool(int16_t)> &taken = nullptr);
    void KeyPress(int16_t &key_ascii);
    void KeyUp(int16_t &key_code, int16_t shift);
    void LostFocus();
    // A real keystroke, as "{TAB}" and "+{TAB}" are: the container moves the focus.
    static void SendTab(bool backwards);

private:
    ButtonHost &host_;
    HoverTracker &tracker_;
    int32_t last_key_ = 0;
};

} // namespace tarn
