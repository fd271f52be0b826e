#include "foundation/color_translate.h"

#include "foundation/trap.h"

#include <olectl.h>

namespace tarn {

Rgb TranslateColor(OleColor color, HPALETTE palette)
{
    COLORREF rgb = 0;
    if (FAILED(OleTranslateColor(color, palette, &rgb))) return kInvalidColor;
    return rgb;
}

Rgb TranslateColorOr(OleColor color, Rgb fallback)
{
    Rgb r = TranslateColor(color);
    return r == kInvalidColor ? fallback : r;
}

void FillSolid(HDC dc, const RECT &r, Rgb colour)
{
    if (r.right <= r.left || r.bottom <= r.top) return;
    SetDCBrushColor(dc, colour);
    FillRect(dc, &r, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void FrameSolid(HDC dc, const RECT &r, Rgb colour)
{
    if (r.right <= r.left || r.bottom <= r.top) return;
    SetDCBrushColor(dc, colour);
    FrameRect(dc, &r, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

Rgb BlendColors(OleColor color1, OleColor color2, int32_t alpha)
{
    return read_step<Rgb>([&] { return BlendRgb(TranslateColor(color1), TranslateColor(color2), alpha); }, 0);
}

} // namespace tarn
