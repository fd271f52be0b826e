#include "services/service_icon.h"

#include "foundation/handles.h"
#include "runtime/module.h"

namespace tarn {

namespace {
// The toolbox pictures' background, which hosts treat as transparent.
constexpr COLORREF kToolboxKey = RGB(192, 192, 192);
} // namespace

void ServiceIcon::draw(HDC dc, const Scale &scale) const
{
    if (!Visible) return;
    RECT r{to_px_x(Left, scale), to_px_y(Top, scale), to_px_x(Left + Width, scale), to_px_y(Top + Height, scale)};
    if (r.right <= r.left || r.bottom <= r.top) return;
    unique_bitmap picture(static_cast<HBITMAP>(
        LoadImageW(module::instance(), MAKEINTRESOURCEW(bitmap_), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
    if (picture) {
        BITMAP info{};
        GetObjectW(picture.get(), sizeof info, &info);
        unique_dc source(CreateCompatibleDC(dc));
        if (source && info.bmWidth > 0 && info.bmHeight > 0) {
            select_guard use(source.get(), picture.get());
            TransparentBlt(dc, r.left, r.top, r.right - r.left, r.bottom - r.top, source.get(), 0, 0, info.bmWidth,
                           info.bmHeight, kToolboxKey);
        }
    }
    DrawEdge(dc, &r, BDR_RAISEDINNER, BF_RECT);
}

} // namespace tarn
