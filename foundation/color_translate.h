// Colour routines that need the platform: system colours resolved through OleTranslateColor.
#pragma once
#include <windows.h>

#include "foundation/colors.h"

namespace tarn {

// The RGB value of an OLE colour, or kInvalidColor (-1) when the platform refuses it.
Rgb TranslateColor(OleColor color, HPALETTE palette = nullptr);

// Mixes two OLE colours (alpha 255 all of the first, 0 all of the second); 0 when the checked
// arithmetic overflows.
Rgb BlendColors(OleColor color1, OleColor color2, int32_t alpha);

} // namespace tarn
