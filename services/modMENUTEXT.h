// modMENUTEXT: the menu text reporter's own window hook, one window at a time, and its menu
// caption routine. While a window is hooked, each WM_MENUSELECT or WM_MENUCHAR it receives is
// answered here (0) and its caption handed to the hooked clsMENUTEXT; every other message goes
// on to the window's previous procedure.
//
// The hook state is kept per thread: the window procedure runs on the window's own thread,
// which is the thread that hooked it, so it finds there the state it needs without locks.
#pragma once
#include <windows.h>

#include <memory>
#include <string>

#include "services/clsMENUTEXT.h"

namespace tarn::modMENUTEXT {

// Hooks `object`'s window. A hook still in place is undone first, so the procedure saved is
// always the window's own. Nothing is saved for a zero, destroyed or foreign window.
void Hook(std::shared_ptr<clsMENUTEXT> object);
// Puts the saved procedure back (when one is saved) and lets go of the hooked object.
void Unhook();
// The hook's window procedure.
LRESULT CALLBACK WindowProc(HWND window, UINT msg, WPARAM wp, LPARAM lp);
// The caption MENUTEXT reports for `item` of `menu` with `flags`.
std::wstring MenuCaptionOf(HMENU menu, UINT item, UINT flags);

} // namespace tarn::modMENUTEXT
