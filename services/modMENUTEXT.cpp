#include "services/modMENUTEXT.h"

namespace tarn::modMENUTEXT {

namespace {

struct HookState {
    std::shared_ptr<clsMENUTEXT> hooked; // the object whose window is hooked, or none
    LONG_PTR previous = 0;               // the procedure the hook replaced, 0 when none
};
// Made by the first Subclass and freed when the hook ends, so no thread-exit destructor of
// this DLL ever runs (the DLL may be gone by the time a thread ends).
thread_local HookState *t_state = nullptr;

HookState &state()
{
    if (!t_state) t_state = new HookState();
    return *t_state;
}

void free_if_idle()
{
    if (t_state && !t_state->hooked && !t_state->previous) {
        delete t_state;
        t_state = nullptr;
    }
}

bool own_window(HWND h) { return IsWindow(h) && GetWindowThreadProcessId(h, nullptr) == GetCurrentThreadId(); }

} // namespace

void Hook(std::shared_ptr<clsMENUTEXT> object)
{
    // Hooking again without unhooking would save this hook's own procedure as the previous one
    // (a window that calls itself for ever) or hand one window's messages to another's
    // procedure: put the earlier hook back first.
    if (t_state && t_state->previous) Unhook();
    HookState &s = state();
    s.hooked = std::move(object);
    s.previous = 0;
    if (s.hooked && own_window(s.hooked->hwnd)) {
        LONG_PTR previous = SetWindowLongPtrW(s.hooked->hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&WindowProc));
        if (previous != reinterpret_cast<LONG_PTR>(&WindowProc)) s.previous = previous;
    }
    free_if_idle();
}

void Unhook()
{
    if (!t_state) return;
    if (t_state->previous && t_state->hooked)
        SetWindowLongPtrW(t_state->hooked->hwnd, GWLP_WNDPROC, t_state->previous);
    t_state->previous = 0;
    t_state->hooked.reset();
    free_if_idle();
}

LRESULT CALLBACK WindowProc(HWND window, UINT msg, WPARAM wp, LPARAM lp)
{
    // Held for the call: a MENUTEXT handler may unhook, and the object must outlive it. The
    // state is looked up afresh after every call out, which may have ended the hook.
    std::shared_ptr<clsMENUTEXT> hooked = t_state ? t_state->hooked : nullptr;
    bool mine = hooked && window == hooked->hwnd;
    if (mine && (msg == WM_MENUSELECT || msg == WM_MENUCHAR)) {
        try {
            hooked->Caption(MenuCaptionOf(reinterpret_cast<HMENU>(lp), LOWORD(wp), HIWORD(wp)));
        } catch (...) {
        }
        return 0;
    }
    LRESULT result = 0;
    try {
        if (hooked) hooked->Caption(kNoMenuText);
        LONG_PTR previous = t_state ? t_state->previous : 0;
        result = previous ? CallWindowProcW(reinterpret_cast<WNDPROC>(previous), window, msg, wp, lp)
                          : DefWindowProcW(window, msg, wp, lp);
    } catch (...) {
        result = 0;
    }
    // A window destroyed while hooked takes the hook with it: nothing is left to put back, and
    // its handle, once reused, must never receive the saved procedure.
    if (msg == WM_NCDESTROY && mine && t_state && t_state->hooked == hooked) {
        t_state->previous = 0;
        t_state->hooked.reset();
        free_if_idle();
    }
    return result;
}

std::wstring MenuCaptionOf(HMENU menu, UINT item, UINT flags)
{
    return MenuCaption(static_cast<std::uint16_t>(item), static_cast<std::uint16_t>(flags),
                       [menu](std::uint32_t it, wchar_t *buffer, int size, bool by_position) {
                           return GetMenuStringW(menu, it, buffer, size, by_position ? MF_BYPOSITION : MF_BYCOMMAND);
                       });
}

} // namespace tarn::modMENUTEXT
