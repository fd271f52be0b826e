#include "foundation/window_hooks.h"

namespace tarn {

namespace {

// The thread's table, created with its first hook and freed when its last one goes, so a
// thread that ends with nothing hooked leaves nothing behind. Never freed while a message is
// being dispatched through it: a handler that unhooks the last window returns into it.
thread_local HookTable *t_table = nullptr;
thread_local int t_dispatching = 0;

struct Dispatching {
    Dispatching() { ++t_dispatching; }
    ~Dispatching() { --t_dispatching; }
};

class Win32Procs final : public WindowProcs {
public:
    bool Hookable(WindowId window) override
    {
        HWND h = reinterpret_cast<HWND>(window);
        return IsWindow(h) && GetWindowThreadProcessId(h, nullptr) == GetCurrentThreadId();
    }
    ProcAddress Get(WindowId window) override
    {
        return static_cast<ProcAddress>(GetWindowLongPtrW(reinterpret_cast<HWND>(window), GWLP_WNDPROC));
    }
    bool Set(WindowId window, ProcAddress proc) override
    {
        SetLastError(0);
        LONG_PTR old = SetWindowLongPtrW(reinterpret_cast<HWND>(window), GWLP_WNDPROC, static_cast<LONG_PTR>(proc));
        return old != 0 || GetLastError() == 0;
    }
    HookResult Call(ProcAddress proc, WindowId window, std::uint32_t msg, std::uintptr_t wp, std::intptr_t lp) override
    {
        return CallWindowProcW(reinterpret_cast<WNDPROC>(proc), reinterpret_cast<HWND>(window), msg,
                               static_cast<WPARAM>(wp), static_cast<LPARAM>(lp));
    }
};

ProcAddress shared_proc() { return reinterpret_cast<ProcAddress>(&SubclassWndProc); }

void release_if_empty()
{
    if (t_table && t_table->count() == 0 && t_dispatching == 0) {
        delete t_table;
        t_table = nullptr;
    }
}

} // namespace

void HookWindow(HWND window, HookOwner *owner)
{
    try {
        if (!t_table) t_table = new HookTable();
        Win32Procs procs;
        t_table->Hook(procs, reinterpret_cast<WindowId>(window), owner, shared_proc());
    } catch (...) {
    }
    release_if_empty();
}

void UnhookWindow(HWND window)
{
    if (!t_table) return;
    try {
        Win32Procs procs;
        t_table->Unhook(procs, reinterpret_cast<WindowId>(window));
    } catch (...) {
    }
    release_if_empty();
}

bool ObserveWindow(HWND window, HookObserver *observer)
{
    bool ok = false;
    try {
        if (!t_table) t_table = new HookTable();
        Win32Procs procs;
        ok = t_table->Observe(procs, reinterpret_cast<WindowId>(window), observer, shared_proc());
    } catch (...) {
    }
    release_if_empty();
    return ok;
}

void UnobserveWindow(HWND window, HookObserver *observer)
{
    if (!t_table) return;
    try {
        Win32Procs procs;
        t_table->Unobserve(procs, reinterpret_cast<WindowId>(window), observer);
    } catch (...) {
    }
    release_if_empty();
}

namespace {
// Runs `step` on the thread's table (0 when there is none), keeping the table alive meanwhile.
template <class F> LRESULT through_table(F &&step)
{
    if (!t_table) return 0;
    LRESULT result = 0;
    try {
        Dispatching busy;
        Win32Procs procs;
        result = step(*t_table, procs);
    } catch (...) {
        result = 0;
    }
    release_if_empty();
    return result;
}
} // namespace

LRESULT CALLBACK SubclassWndProc(HWND window, UINT msg, WPARAM wp, LPARAM lp)
{
    return through_table([&](HookTable &table, Win32Procs &procs) {
        return table.Dispatch(procs, reinterpret_cast<WindowId>(window), msg, wp, lp);
    });
}

LRESULT CallPreviousWndProc(HWND window, UINT msg, WPARAM wp, LPARAM lp)
{
    return through_table([&](HookTable &table, Win32Procs &procs) {
        return table.CallPrevious(procs, reinterpret_cast<WindowId>(window), msg, wp, lp);
    });
}

const HookTable &ThreadHookTable()
{
    static const HookTable empty;
    return t_table ? *t_table : empty;
}

} // namespace tarn
