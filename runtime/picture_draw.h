// Drawing picture objects (IPicture: bitmaps, icons, metafiles) on a control's surface, at a
// pixel rectangle, optionally with a key colour that is left transparent and optionally
// greyed, the way a disabled control shows its picture.
#pragma once
#include <windows.h>
#include <olectl.h>

#include "foundation/colors.h"

namespace tarn {

// The picture's own size in screen pixels; {0, 0} for none or an empty picture.
SIZE PictureSizePx(IPicture *picture);

// Draws `picture` stretched into `dest`. Pixels of `key` (a plain colour, or kInvalidColor for
// none) are not drawn; `greyed` turns every drawn pixel into a light shade of grey.
void DrawPicture(HDC dc, IPicture *picture, const RECT &dest, Rgb key, bool greyed);

} // namespace tarn
