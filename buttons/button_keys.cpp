#include "buttons/button_keys.h"

#include "buttons/cbtn_layout.h"
#include "foundation/trap.h"
#include "runtime/user_control.h"

namespace tarn {

void ButtonKeys::KeyDown(int16_t &code, int16_t shift, const std::function<bool(int16_t)> &taken)
{
    // Raised first: the arrows move the focus even when the container handles the key.
    host_.RaiseButtonEvent(button_events::KeyDown, EventArgs().ref(code).val(shift));
    if (taken && taken(code)) {
        last_key_ = 0;
        return;
    }
    last_key_ = code;
    if (code == VK_SPACE) tracker_.MouseDown(mouse::Left, 0, 1, 1);
    else if (code == VK_RIGHT || code == VK_DOWN) step([&] { SendTab(false); });
    else if (code == VK_UP || code == VK_LEFT) step([&] { SendTab(true); });
}

void ButtonKeys::KeyPress(int16_t &ascii) { host_.RaiseButtonEvent(button_events::KeyPress, EventArgs().ref(ascii)); }

void ButtonKeys::KeyUp(int16_t &code, int16_t shift)
{
    tracker_.KeyUpTip();
    host_.RaiseButtonEvent(button_events::KeyUp, EventArgs().ref(code).val(shift));
    // Only a space whose press also reached the button clicks it.
    if (code == VK_SPACE && last_key_ == VK_SPACE) {
        tracker_.MouseUp(mouse::Left, 0, 1, 1);
        tracker_.Click();
    }
}

void ButtonKeys::LostFocus()
{
    EventArgs none;
    host_.RaiseButtonEvent(button_events::FocusLost, none);
    tracker_.PressEnded();
    // A container sees every press end.
    host_.RaiseButtonEvent(events::MouseUp, EventArgs().val(mouse::Left).val(int16_t{0}).val(0.0f).val(0.0f));
    step([&] { host_.PaintFace(face::Normal); });
}

void ButtonKeys::SendTab(bool backwards)
{
    INPUT in[4]{};
    int n = 0;
    auto key = [&](WORD vk, bool up) {
        in[n].type = INPUT_KEYBOARD;
        in[n].ki.wVk = vk;
        in[n].ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
        ++n;
    };
    bool shift_held = GetKeyState(VK_SHIFT) < 0;
    if (backwards && !shift_held) key(VK_SHIFT, false);
    if (!backwards && shift_held) key(VK_SHIFT, true);
    key(VK_TAB, false);
    key(VK_TAB, true);
    if (backwards && !shift_held) key(VK_SHIFT, true);
    SendInput(static_cast<UINT>(n), in, sizeof(INPUT));
}

} // namespace tarn
