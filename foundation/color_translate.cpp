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

Rgb BlendColors(OleColor color1, OleColor color2, int32_t alpha)
{
    return read_step<Rgb>([&] { return BlendRgb(TranslateColor(color1), TranslateColor(color2), alpha); }, 0);
}

} // namespace tarn
