// RAII owners of GDI, USER and registry handles. Every handle the library creates is held by
// one of these, so nothing is freed twice and nothing leaks on an early return.
//   unique_handle<H, Close>  owns one handle, closes it once
//   select_guard             selects an object into a DC and puts the old one back
//   paint_dc / window_dc     BeginPaint/EndPaint and GetDC/ReleaseDC pairs
#pragma once
#include <windows.h>

#include <utility>

namespace tarn {

template <class H, class Close> class unique_handle {
public:
    unique_handle() = default;
    explicit unique_handle(H h) : h_(h) {}
    unique_handle(const unique_handle &) = delete;
    unique_handle &operator=(const unique_handle &) = delete;
    unique_handle(unique_handle &&o) noexcept : h_(std::exchange(o.h_, H())) {}
    unique_handle &operator=(unique_handle &&o) noexcept
    {
        if (this != &o) reset(std::exchange(o.h_, H()));
        return *this;
    }
    ~unique_handle() { reset(); }

    H get() const { return h_; }
    explicit operator bool() const { return h_ != H(); }
    H release() { return std::exchange(h_, H()); }
    void reset(H h = H())
    {
        H old = std::exchange(h_, h);
        if (old != H()) Close()(old);
    }

private:
    H h_ = H();
};

struct DeleteGdiObject {
    void operator()(HGDIOBJ h) const { DeleteObject(h); }
};
struct DeleteDcHandle {
    void operator()(HDC h) const { DeleteDC(h); }
};
struct CloseRegKey {
    void operator()(HKEY h) const { RegCloseKey(h); }
};
struct DestroyWindowHandle {
    void operator()(HWND h) const { DestroyWindow(h); }
};
struct DestroyMenuHandle {
    void operator()(HMENU h) const { DestroyMenu(h); }
};

using unique_brush = unique_handle<HBRUSH, DeleteGdiObject>;
using unique_pen = unique_handle<HPEN, DeleteGdiObject>;
using unique_font = unique_handle<HFONT, DeleteGdiObject>;
using unique_bitmap = unique_handle<HBITMAP, DeleteGdiObject>;
using unique_region = unique_handle<HRGN, DeleteGdiObject>;
using unique_dc = unique_handle<HDC, DeleteDcHandle>;
using unique_hkey = unique_handle<HKEY, CloseRegKey>;
using unique_window = unique_handle<HWND, DestroyWindowHandle>;
using unique_menu = unique_handle<HMENU, DestroyMenuHandle>;

class select_guard {
public:
    select_guard(HDC dc, HGDIOBJ obj) : dc_(dc), old_(obj ? SelectObject(dc, obj) : nullptr) {}
    select_guard(const select_guard &) = delete;
    select_guard &operator=(const select_guard &) = delete;
    ~select_guard()
    {
        if (old_) SelectObject(dc_, old_);
    }

private:
    HDC dc_;
    HGDIOBJ old_;
};

class paint_dc {
public:
    explicit paint_dc(HWND w) : w_(w), dc_(BeginPaint(w, &ps_)) {}
    paint_dc(const paint_dc &) = delete;
    paint_dc &operator=(const paint_dc &) = delete;
    ~paint_dc() { EndPaint(w_, &ps_); }
    HDC get() const { return dc_; }
    const RECT &dirty() const { return ps_.rcPaint; }

private:
    HWND w_;
    PAINTSTRUCT ps_{};
    HDC dc_;
};

class window_dc {
public:
    explicit window_dc(HWND w) : w_(w), dc_(GetDC(w)) {}
    window_dc(const window_dc &) = delete;
    window_dc &operator=(const window_dc &) = delete;
    ~window_dc()
    {
        if (dc_) ReleaseDC(w_, dc_);
    }
    HDC get() const { return dc_; }

private:
    HWND w_;
    HDC dc_;
};

// Saves and restores a DC's whole state (objects, colours, modes, origin, clip).
class saved_dc {
public:
    explicit saved_dc(HDC dc) : dc_(dc), id_(SaveDC(dc)) {}
    saved_dc(const saved_dc &) = delete;
    saved_dc &operator=(const saved_dc &) = delete;
    ~saved_dc()
    {
        if (id_) RestoreDC(dc_, id_);
    }

private:
    HDC dc_;
    int id_;
};

} // namespace tarn
