// A window whose procedure belongs to a C++ object: the object rides in GWLP_USERDATA from
// WM_NCCREATE (the creation parameter of CreateWindowExW) to WM_NCDESTROY. T provides
// attach_window(HWND), detach_window(HWND) and on_message(msg, wp, lp) (ObjectWindowProc<T> a
// friend where they are private); an exception from on_message ends at the window's edge.
#pragma once
#include <windows.h>

namespace tarn {

template <class T> LRESULT CALLBACK ObjectWindowProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp)
{
    if (msg == WM_NCCREATE) {
        auto *self = static_cast<T *>(reinterpret_cast<CREATESTRUCTW *>(lp)->lpCreateParams);
        SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
        if (self) self->attach_window(hwnd);
        return DefWindowProcW(hwnd, msg, wp, lp);
    }
    auto *self = reinterpret_cast<T *>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
    if (!self) return DefWindowProcW(hwnd, msg, wp, lp);
    if (msg == WM_NCDESTROY) {
        SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
        self->detach_window(hwnd);
        return DefWindowProcW(hwnd, msg, wp, lp);
    }
    try {
        return self->on_message(msg, wp, lp);
    } catch (...) {
        return 0;
    }
}

// Registers the window class `name` once per module load (`atom` keeps it) with `proc`.
inline const wchar_t *RegisterObjectWindowClass(ATOM &atom, const wchar_t *name, WNDPROC proc, HINSTANCE module, UINT style)
{
    if (!atom) {
        WNDCLASSEXW wc{};
        wc.cbSize = sizeof wc;
        wc.lpfnWndProc = proc;
        wc.hInstance = module;
        wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        wc.lpszClassName = name;
        wc.style = style;
        atom = RegisterClassExW(&wc);
    }
    return name;
}

} // namespace tarn
