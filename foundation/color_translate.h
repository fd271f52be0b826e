// Colour routines that need the platform: system colours resolved through OleTranslateColor, and
// the plain fills drawing them.
#pragma once
#include <windows.h>

#include "foundation/colors.h"

namespace tarn {

// The RGB value of an OLE colour, or kInvalidColor (-1) when the platform refuses it.
Rgb TranslateColor(OleColor color, HPALETTE palette = nullptr);

// The RGB value of an OLE colour, or `fallback` when the platform refuses it: what drawing uses.
Rgb TranslateColorOr(OleColor color, Rgb fallback);

// Plain fills through the DC's own brush (nothing is created, nothing can leak): the rectangle,
// and a one-pixel ring round it.
void FillSolid(HDC dc, const RECT &r, Rgb colour);
void FrameSolid(HDC dc, const RECT &r, Rgb colour);

// Mixes two OLE colours (alpha 255 all of the first, 0 all of the second); 0 when the checked
// arithmetic overflows.
Rgb BlendColors(OleColor color1, OleColor color2, int32_t alpha);

} // namespace tarn
