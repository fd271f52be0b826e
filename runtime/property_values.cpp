#include "runtime/property_values.h"

#include <stdexcept>

#include "foundation/color_translate.h"
#include "foundation/font_object.h"

namespace tarn {

ComPtr<IFontDisp> DesignFont()
{
    FontSpec design;
    design.name = L"Tahoma";
    design.size = 8.25;
    return ComPtr<IFontDisp>::attach(CreateFontObject(design));
}

ComPtr<IFontDisp> CopyOfFont(IFontDisp *font)
{
    ComPtr<IFontDisp> copy = ComPtr<IFontDisp>::attach(CloneFontObject(font));
    if (!copy) throw std::invalid_argument("not a font");
    return copy;
}

void RequireColour(OleColor colour)
{
    if (TranslateColor(colour) == kInvalidColor) throw std::invalid_argument("not a colour");
}

} // namespace tarn
