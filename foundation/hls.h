// The hue-luminance-saturation colour model on the 0..240 scale of the system's colour dialog
// (hue 0 red, 40 yellow, 80 green, 120 cyan, 160 blue, 200 magenta; luminance 0 black, 120
// pure, 240 white; saturation 0 grey, 240 full), turned into plain RGB. No platform calls.
#pragma once
#include <cstdint>

#include "foundation/colors.h"

namespace tarn {

constexpr int32_t kHlsMax = 240;

// The plain colour of (hue, luminance, saturation). Hue wraps round the circle (240 is red
// again, -40 magenta); luminance and saturation outside 0..240 count as their nearest end.
Rgb HlsToRgb(int32_t hue, int32_t luminance, int32_t saturation);

} // namespace tarn
