// The library's shared window hook: one table of hooked windows and one window procedure
// (`SubclassWndProc`) serve every owner. `HookWindow` installs the procedure on a window and
// remembers the one it replaces; `UnhookWindow` puts that one back; a window's WM_NCDESTROY
// ends its hook. The table's bookkeeping lives in foundation/hook_table.h.
//
// The table is kept per thread. A window procedure always runs on the thread that created
// the window, so the table `SubclassWndProc` consults is the one the hooking thread filled;
// two apartments that host controls never share or lock anything. A window of another thread
// is therefore never hooked: its messages would consult that thread's table, not ours.
#pragma once
#include <windows.h>

#include <cstddef>

#include "foundation/hook_table.h"

namespace tarn {

// Hooks `window` with `owner` (a window already hooked is unhooked first). Nothing happens for
// a zero, destroyed or foreign window.
void HookWindow(HWND window, HookOwner *owner);
// Puts back the procedure `window` had before it was hooked; nothing for a window not hooked.
// (An observed window keeps the hook for its observers.)
void UnhookWindow(HWND window);
// `observer` follows `window`'s messages, after its owner or its own procedure answered them;
// false for a zero, destroyed or foreign window. The observer stops before it goes.
bool ObserveWindow(HWND window, HookObserver *observer);
void UnobserveWindow(HWND window, HookObserver *observer);
// The shared window procedure: 0 for a window that is not in the table.
LRESULT CALLBACK SubclassWndProc(HWND window, UINT msg, WPARAM wp, LPARAM lp);
// The answer of the procedure saved for `window` (0 when the window is not hooked).
LRESULT CallPreviousWndProc(HWND window, UINT msg, WPARAM wp, LPARAM lp);

// The calling thread's table, for inspection.
const HookTable &ThreadHookTable();

} // namespace tarn
