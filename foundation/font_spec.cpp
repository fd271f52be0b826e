#include "foundation/font_spec.h"

#include <cmath>

namespace tarn {

FontSpec FontSpecFromLogFont(const std::wstring &face, int32_t height, int32_t weight, uint8_t italic,
                             uint8_t underline, uint8_t strikeout, uint8_t charset, int32_t dpi_y)
{
    FontSpec f;
    f.name = face;
    if (height == 0) f.size = 8;
    else if (height > 0) f.size = height;
    else f.size = std::fabs(72.0 / (dpi_y > 0 ? dpi_y : 96) * height);
    f.charset = charset;
    f.weight = static_cast<int16_t>(weight < 0 ? 0 : (weight > 1000 ? 1000 : weight));
    f.bold = weight >= 401;
    f.italic = italic > 0;
    f.underline = underline > 0;
    f.strikethrough = strikeout > 0;
    return f;
}

} // namespace tarn
