// Colour values and the colour arithmetic shared by the controls (no platform calls here;
// TranslateColor, which asks the platform for system colours, is in color_translate.h).
#pragma once
#include <cstdint>

namespace tarn {

// An OLE colour: 0x800000nn names system colour nn, anything else is 0x00BBGGRR.
using OleColor = uint32_t;
// A plain colour 0x00BBGGRR, as GDI draws it.
using Rgb = uint32_t;

constexpr Rgb kInvalidColor = 0xFFFFFFFFu; // what a failed translation yields (-1)

namespace syscolor { // the system colours the controls use as defaults, in OLE form
constexpr OleColor ScrollBar = 0x80000000u;
constexpr OleColor Window = 0x80000005u;
constexpr OleColor WindowFrame = 0x80000006u;
constexpr OleColor WindowText = 0x80000008u;
constexpr OleColor ButtonFace = 0x8000000Fu;
constexpr OleColor ButtonShadow = 0x80000010u;
constexpr OleColor ButtonText = 0x80000012u;
constexpr OleColor Highlight3D = 0x80000014u;
constexpr OleColor DarkShadow3D = 0x80000015u;
constexpr OleColor Light3D = 0x80000016u;
} // namespace syscolor

constexpr bool is_system_color(OleColor c) { return (c & 0xFF000000u) == 0x80000000u; }

constexpr Rgb make_rgb(int r, int g, int b)
{
    return static_cast<Rgb>(r & 0xFF) | (static_cast<Rgb>(g & 0xFF) << 8) | (static_cast<Rgb>(b & 0xFF) << 16);
}
constexpr int red_of(Rgb c) { return static_cast<int>(c & 0xFF); }
constexpr int green_of(Rgb c) { return static_cast<int>((c >> 8) & 0xFF); }
constexpr int blue_of(Rgb c) { return static_cast<int>((c >> 16) & 0xFF); }

// The contract's RGB(): a channel above 255 counts as 255; a negative channel is an error.
Rgb RgbOf(int32_t r, int32_t g, int32_t b);

// Mixes two plain colours; alpha 255 is all of the first, 0 all of the second. Products are
// 32-bit checked (an overflow throws tarn::Overflow), each channel rounds half to even.
Rgb BlendRgb(Rgb c1, Rgb c2, int32_t alpha);

// The colour adjustment the buttons and the divider use to derive light and dark shades:
// `amount` added to red and green; to blue either as a plain amount or, when `proportional`,
// as blue * amount / 192 (integer division). Channels clamp to 0..255. Checked arithmetic.
Rgb AdjustColor(Rgb color, int32_t amount, bool proportional);

} // namespace tarn
