#include "foundation/hls.h"

#include <algorithm>

namespace tarn {

namespace {

constexpr int32_t kSixth = kHlsMax / 6, kHalf = kHlsMax / 2, kTwoThirds = kHlsMax * 2 / 3;

// One channel on the 0..240 scale: the hue's place on the circle between the two magic
// values (m1 the darkest, m2 the brightest the luminance and saturation allow). Rising
// over the first sixth, flat up to the half, falling over the sixth before two thirds.
int32_t hue_channel(int32_t m1, int32_t m2, int32_t hue)
{
    hue = ((hue % kHlsMax) + kHlsMax) % kHlsMax;
    if (hue < kSixth) return m1 + ((m2 - m1) * hue + kSixth / 2) / kSixth;
    if (hue < kHalf) return m2;
    if (hue < kTwoThirds) return m1 + ((m2 - m1) * (kTwoThirds - hue) + kSixth / 2) / kSixth;
    return m1;
}

// 0..240 to 0..255, rounded.
int to_byte(int32_t v) { return static_cast<int>((v * 255 + kHalf) / kHlsMax); }

} // namespace

Rgb HlsToRgb(int32_t hue, int32_t luminance, int32_t saturation)
{
    const int32_t l = std::clamp(luminance, 0, kHlsMax), s = std::clamp(saturation, 0, kHlsMax);
    if (s == 0) {
        int grey = to_byte(l);
        return make_rgb(grey, grey, grey);
    }
    const int32_t h = ((hue % kHlsMax) + kHlsMax) % kHlsMax; // before the +-80 below: no overflow
    const int32_t m2 = l <= kHalf ? (l * (kHlsMax + s) + kHalf) / kHlsMax : l + s - (l * s + kHalf) / kHlsMax;
    const int32_t m1 = 2 * l - m2;
    return make_rgb(to_byte(hue_channel(m1, m2, h + kHlsMax / 3)), to_byte(hue_channel(m1, m2, h)),
                    to_byte(hue_channel(m1, m2, h - kHlsMax / 3)));
}

} // namespace tarn
