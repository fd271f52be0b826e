// Real input through the system's input queue (SendInput), as a user's mouse and keyboard give
// it: the pointer moves, buttons and keys go down and up, and the window under the pointer or
// with the focus gets the messages when the thread next reads its queue. The helpers then pump
// the queue until the input is handled.
#pragma once
#include <windows.h>

#include <functional>
#include <initializer_list>
#include <vector>

#include "host/container.h"
#include "support/control_test.h" // pump_until

namespace tarn::test {

// A click (or a double click) with the left or the right button at a point of `w`'s client area.
inline void real_click(HWND w, POINT client, bool right = false, int clicks = 1)
{
    POINT p = client;
    ClientToScreen(w, &p);
    const int cx = GetSystemMetrics(SM_CXSCREEN) - 1, cy = GetSystemMetrics(SM_CYSCREEN) - 1;
    std::vector<INPUT> in;
    INPUT move{};
    move.type = INPUT_MOUSE;
    move.mi.dx = MulDiv(p.x, 65535, cx > 0 ? cx : 1);
    move.mi.dy = MulDiv(p.y, 65535, cy > 0 ? cy : 1);
    move.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    in.push_back(move);
    for (int i = 0; i < clicks; ++i) {
        for (DWORD flag : {right ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN, right ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP}) {
            INPUT b{};
            b.type = INPUT_MOUSE;
            b.mi.dwFlags = flag;
            in.push_back(b);
        }
    }
    SendInput(static_cast<UINT>(in.size()), in.data(), sizeof(INPUT));
    host::pump(20);
}

// Keys pressed together and released in reverse order: {VK_CONTROL, VK_TAB} is Ctrl+Tab.
inline void real_keys(std::initializer_list<WORD> keys)
{
    std::vector<INPUT> in;
    for (WORD k : keys) {
        INPUT i{};
        i.type = INPUT_KEYBOARD;
        i.ki.wVk = k;
        in.push_back(i);
    }
    for (auto it = keys.end(); it != keys.begin();) {
        INPUT i{};
        i.type = INPUT_KEYBOARD;
        i.ki.wVk = *--it;
        i.ki.dwFlags = KEYEVENTF_KEYUP;
        in.push_back(i);
    }
    SendInput(static_cast<UINT>(in.size()), in.data(), sizeof(INPUT));
    host::pump(20);
}

// Text typed as characters (each a key press of its own).
inline void real_text(const std::wstring &text)
{
    std::vector<INPUT> in;
    for (wchar_t c : text) {
        for (DWORD up : {0ul, static_cast<unsigned long>(KEYEVENTF_KEYUP)}) {
            INPUT i{};
            i.type = INPUT_KEYBOARD;
            i.ki.wScan = c;
            i.ki.dwFlags = KEYEVENTF_UNICODE | up;
            in.push_back(i);
        }
    }
    SendInput(static_cast<UINT>(in.size()), in.data(), sizeof(INPUT));
    host::pump(20);
}

} // namespace tarn::test
