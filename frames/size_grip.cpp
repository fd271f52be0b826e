#include "frames/size_grip.h"

#include <cmath>

#include "foundation/handles.h"
#include "foundation/metrics.h"

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

bool SizeFormFromCorner(HWND form, POINT pointer)
{
    if (!IsWindow(form) || IsZoomed(form) || !(GetWindowLongPtrW(form, GWL_STYLE) & WS_THICKFRAME)) return false;
    // The system's sizing loop takes the mouse itself and runs until the button is released.
    ReleaseCapture();
    SendMessageW(form, WM_SYSCOMMAND, SC_SIZE | WMSZ_BOTTOMRIGHT, MAKELPARAM(pointer.x, pointer.y));
    return true;
}

} // namespace tarn
