#include "frames/size_grip.h"

#include <cmath>

#include "foundation/handles.h"
#include "foundation/metrics.h"
#include "frames/grip_drag.h"

namespace tarn {

namespace {
// Design pixels (at 96 DPI) to pixels of this screen: 1 at 96 DPI, 2 at 144.
int unit(const Scale &s) { return std::max(1, static_cast<int>(std::lround(15 / s.tppx))); }

void square(HDC dc, int x, int y, int size, Rgb colour)
{
    unique_brush brush(CreateSolidBrush(colour));
    RECT r{x, y, x + size, y + size};
    if (brush) FillRect(dc, &r, brush.get());
}
} // namespace

void DrawGrip(HDC dc, int w, int h, const Scale &scale, GripLook look)
{
    const int k = unit(scale);
    const Rgb dark = GetSysColor(COLOR_BTNSHADOW), light = GetSysColor(COLOR_BTNHIGHLIGHT);
    if (look == GripLook::Xp) {
        // Six raised dots on the diagonal: cells of four design pixels counted from the corner,
        // each a dark square with a light one showing below and right of it.
        for (int c = 0; c < 3; ++c)
            for (int r = 0; c + r < 3; ++r) {
                int x = w - 4 * k * (c + 1), y = h - 4 * k * (r + 1);
                square(dc, x + k, y + k, 2 * k, light);
                square(dc, x, y, 2 * k, dark);
            }
        return;
    }
    // Three grooves across the corner, each a light line above two dark ones, every line a
    // diagonal from the bottom edge to the right edge; a plain line between the grooves.
    unique_pen dark_pen(CreatePen(PS_SOLID, 1, dark)), light_pen(CreatePen(PS_SOLID, 1, light));
    if (!dark_pen || !light_pen) return;
    for (int d = 1; d <= 12 * k; ++d) {
        int o = (d + k - 1) / k; // the design line this pixel line belongs to, 1..12
        if (o % 4 == 1) continue;
        select_guard use(dc, o % 4 == 0 ? light_pen.get() : dark_pen.get());
        MoveToEx(dc, w - d, h - 1, nullptr);
        LineTo(dc, w, h - 1 - d);
    }
}

SIZE GripDesignTwips()
{
    return {static_cast<LONG>(std::lround(GetSystemMetrics(SM_CXVSCROLL) * TwipsPerPixelX())),
            static_cast<LONG>(std::lround(GetSystemMetrics(SM_CYHSCROLL) * TwipsPerPixelY()))};
}

RECT GripCornerPlace(HWND form, HWND grip, int width, int height)
{
    RECT client{};
    GetClientRect(form, &client);
    POINT corner{client.right, client.bottom};
    MapWindowPoints(form, GetParent(grip), &corner, 1);
    return {corner.x - width, corner.y - height, corner.x, corner.y};
}

bool FormCornerDrag::Begin(HWND form, HWND grip, POINT pointer)
{
    End();
    if (!IsWindow(form) || IsZoomed(form) || !(GetWindowLongPtrW(form, GWL_STYLE) & WS_THICKFRAME)) return false;
    RECT r{};
    GetWindowRect(form, &r);
    form_ = form;
    start_ = pointer;
    start_size_ = {r.right - r.left, r.bottom - r.top};
    SendMessageW(form, WM_ENTERSIZEMOVE, 0, 0);
    SetCapture(grip);
    return true;
}

void FormCornerDrag::Move(POINT pointer)
{
    if (!form_ || !IsWindow(form_)) return;
    // The limits the system's sizing starts from, then the form's own (a resize lock's).
    MINMAXINFO limits{};
    limits.ptMinTrackSize = {GetSystemMetrics(SM_CXMINTRACK), GetSystemMetrics(SM_CYMINTRACK)};
    limits.ptMaxTrackSize = {GetSystemMetrics(SM_CXMAXTRACK), GetSystemMetrics(SM_CYMAXTRACK)};
    SendMessageW(form_, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    GripSize size = DraggedFormSize({start_size_.cx, start_size_.cy}, pointer.x - start_.x, pointer.y - start_.y,
                                    {limits.ptMinTrackSize.x, limits.ptMinTrackSize.y},
                                    {limits.ptMaxTrackSize.x, limits.ptMaxTrackSize.y});
    RECT r{};
    GetWindowRect(form_, &r);
    r.right = r.left + size.width;
    r.bottom = r.top + size.height;
    SendMessageW(form_, WM_SIZING, WMSZ_BOTTOMRIGHT, reinterpret_cast<LPARAM>(&r));
    if (form_ && IsWindow(form_))
        SetWindowPos(form_, nullptr, 0, 0, r.right - r.left, r.bottom - r.top, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void FormCornerDrag::End()
{
    HWND form = form_;
    if (!form) return;
    form_ = nullptr; // first: releasing the capture comes back here as WM_CAPTURECHANGED
    ReleaseCapture();
    if (IsWindow(form)) SendMessageW(form, WM_EXITSIZEMOVE, 0, 0);
}

} // namespace tarn
