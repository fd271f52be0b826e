// Windows for the window-service tests: a class whose own procedure answers kAsk with
// 4242 + wParam (so a test sees who answered a message), handles as hosts pass them, and a
// window that lives on a thread of its own.
#pragma once
#include <windows.h>

#include <thread>

#include "host/dispatch.h"

namespace tarn::test {

constexpr UINT kAsk = WM_APP + 1;
constexpr UINT kWatched = WM_APP + 2;

inline LRESULT CALLBACK own_proc(HWND h, UINT msg, WPARAM wp, LPARAM lp)
{
    if (msg == kAsk) return 4242 + static_cast<LRESULT>(wp);
    return DefWindowProcW(h, msg, wp, lp);
}

// A top-level window (or a child of `parent`) of the test class.
inline HWND make_window(HWND parent = nullptr)
{
    static ATOM atom = [] {
        WNDCLASSW wc{};
        wc.lpfnWndProc = own_proc;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.lpszClassName = L"TarnServiceTestWindow";
        return RegisterClassW(&wc);
    }();
    (void)atom;
    return CreateWindowExW(0, L"TarnServiceTestWindow", L"", parent ? WS_CHILD : WS_OVERLAPPEDWINDOW, 0, 0, 300, 300,
                           parent, nullptr, GetModuleHandleW(nullptr), nullptr);
}

inline LONG_PTR proc_of(HWND h) { return GetWindowLongPtrW(h, GWLP_WNDPROC); }

// A window handle as a host passes it to a LONG_PTR property: a Long in 32-bit hosts, a
// LongLong in 64-bit ones.
inline Variant handle(HWND h)
{
    Variant v;
    if (sizeof(void *) == 8) {
        V_VT(v.put()) = VT_I8;
        V_I8(v.get()) = reinterpret_cast<LONG_PTR>(h);
    } else {
        V_VT(v.put()) = VT_I4;
        V_I4(v.get()) = static_cast<LONG>(reinterpret_cast<LONG_PTR>(h));
    }
    return v;
}

// Sets a by-reference LONG_PTR event argument (the WndProc result) from a host's handler.
inline void set_long_ptr(VARIANT &arg, LONG_PTR value)
{
    if (V_VT(&arg) == (VT_I8 | VT_BYREF)) *V_I8REF(&arg) = value;
    else if (V_VT(&arg) == (VT_I4 | VT_BYREF)) *V_I4REF(&arg) = static_cast<LONG>(value);
}

// A window created and served by a thread of its own, destroyed with the object.
class ForeignWindow {
public:
    ForeignWindow()
        : ready_(CreateEventW(nullptr, TRUE, FALSE, nullptr)), done_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
          thread_([this] {
              hwnd_ = make_window();
              SetEvent(ready_);
              while (MsgWaitForMultipleObjects(1, &done_, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
                  MSG m;
                  while (PeekMessageW(&m, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&m);
              }
              DestroyWindow(hwnd_);
          })
    {
        WaitForSingleObject(ready_, INFINITE);
    }
    ~ForeignWindow()
    {
        SetEvent(done_);
        thread_.join();
        CloseHandle(ready_);
        CloseHandle(done_);
    }
    HWND hwnd() const { return hwnd_; }

private:
    HANDLE ready_, done_;
    HWND hwnd_ = nullptr;
    std::thread thread_;
};

} // namespace tarn::test
