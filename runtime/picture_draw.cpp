#include "runtime/picture_draw.h"

#include "foundation/handles.h"

namespace tarn {

namespace {

constexpr Rgb kSentinel = 0x0003FE01; // the background nothing is drawn from; unlikely in a picture

int dpi(int index)
{
    window_dc screen(nullptr);
    int d = screen.get() ? GetDeviceCaps(screen.get(), index) : 96;
    return d > 0 ? d : 96;
}

// DIB pixels are 0x00RRGGBB; GDI colours 0x00BBGGRR.
uint32_t to_dib(Rgb c) { return ((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF); }

// The grey a disabled picture shows for a pixel: its luminance folded into the upper half of
// the range, so dark strokes stay visible on a button face and light areas fade out.
uint32_t greyed_dib(uint32_t px)
{
    int r = (px >> 16) & 0xFF, g = (px >> 8) & 0xFF, b = px & 0xFF;
    int l = (r * 30 + g * 59 + b * 11) / 100;
    int v = 96 + l * 159 / 255;
    return (static_cast<uint32_t>(v) << 16) | (static_cast<uint32_t>(v) << 8) | static_cast<uint32_t>(v);
}

} // namespace

SIZE PictureSizePx(IPicture *picture)
{
    SIZE out{0, 0};
    if (!picture) return out;
    OLE_XSIZE_HIMETRIC w = 0;
    OLE_YSIZE_HIMETRIC h = 0;
    if (FAILED(picture->get_Width(&w)) || FAILED(picture->get_Height(&h))) return out;
    if (w <= 0 || h <= 0) return out;
    out.cx = MulDiv(w, dpi(LOGPIXELSX), 2540);
    out.cy = MulDiv(h, dpi(LOGPIXELSY), 2540);
    return out;
}

void DrawPicture(HDC dc, IPicture *picture, const RECT &dest, Rgb key, bool greyed)
{
    int w = dest.right - dest.left, h = dest.bottom - dest.top;
    if (!picture || w <= 0 || h <= 0 || w > 4096 || h > 4096) return;
    OLE_XSIZE_HIMETRIC hw = 0;
    OLE_YSIZE_HIMETRIC hh = 0;
    if (FAILED(picture->get_Width(&hw)) || FAILED(picture->get_Height(&hh)) || hw <= 0 || hh <= 0) return;

    // Rendered into a DIB over a sentinel background, then copied without the sentinel: one
    // way for every picture type to honour the key colour and the greyed look.
    BITMAPINFO bi{};
    bi.bmiHeader.biSize = sizeof bi.bmiHeader;
    bi.bmiHeader.biWidth = w;
    bi.bmiHeader.biHeight = -h;
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    bi.bmiHeader.biCompression = BI_RGB;
    void *raw = nullptr;
    unique_dc mem(CreateCompatibleDC(dc));
    if (!mem) return;
    unique_bitmap dib(CreateDIBSection(mem.get(), &bi, DIB_RGB_COLORS, &raw, nullptr, 0));
    if (!dib || !raw) return;
    select_guard use(mem.get(), dib.get());
    auto *bits = static_cast<uint32_t *>(raw);
    const uint32_t sentinel = to_dib(kSentinel);
    for (int i = 0; i < w * h; ++i) bits[i] = sentinel;
    GdiFlush();
    picture->Render(mem.get(), 0, 0, w, h, 0, hh, hw, -hh, nullptr);
    GdiFlush();
    const uint32_t dib_key = key == kInvalidColor ? 0xFFFFFFFFu : to_dib(key);
    for (int i = 0; i < w * h; ++i) {
        uint32_t px = bits[i] & 0x00FFFFFFu;
        if (px == sentinel || px == dib_key) bits[i] = sentinel;
        else bits[i] = greyed ? greyed_dib(px) : px;
    }
    TransparentBlt(dc, dest.left, dest.top, w, h, mem.get(), 0, 0, w, h, kSentinel);
}

} // namespace tarn
