// Values the controls' properties share: the font a captioned control starts with, a copy of a
// font a host hands in, and the check of a colour before it is written. The checks throw
// std::invalid_argument, so put_value skips the write and still announces it, as for every
// failed write.
#pragma once
#include <olectl.h>

#include "foundation/colors.h"
#include "runtime/com.h"

namespace tarn {

// Tahoma 8.25 pt: a captioned control's font from its creation until a restore or the
// container's ambient font replaces it.
ComPtr<IFontDisp> DesignFont();
// A copy of the host's font object, so later changes to the host's object do not reach the
// control; throws when `font` is no font.
ComPtr<IFontDisp> CopyOfFont(IFontDisp *font);
// Throws when `colour` names no colour (neither an RGB value nor a system colour).
void RequireColour(OleColor colour);

} // namespace tarn
