// Font objects (the OLE standard font behind every Font property) made from a FontSpec and
// read back into one.
#pragma once
#include <ole2.h>
#include <olectl.h>

#include "foundation/font_spec.h"

namespace tarn {

// A new font object; the caller owns the reference. Null when the platform refuses.
IFontDisp *CreateFontObject(const FontSpec &look);
// The look of a font object (name, size, style); the default look when it cannot be read.
FontSpec FontSpecOf(IUnknown *font);
// A copy of a font object, so that a control never shares a font with its host.
IFontDisp *CloneFontObject(IUnknown *font);

} // namespace tarn
