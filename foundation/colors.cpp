#include "foundation/colors.h"

#include "foundation/checked.h"

namespace tarn {

namespace {
int32_t clamp255(int32_t v) { return v < 0 ? 0 : (v > 255 ? 255 : v); }
} // namespace

Rgb RgbOf(int32_t r, int32_t g, int32_t b)
{
    if (r < 0 || g < 0 || b < 0) throw Overflow();
    return make_rgb(r > 255 ? 255 : r, g > 255 ? 255 : g, b > 255 ? 255 : b);
}

Rgb BlendRgb(Rgb c1, Rgb c2, int32_t alpha)
{
    const int32_t inverse = sub32(255, alpha);
    auto mix = [&](int32_t a, int32_t b) {
        double v = static_cast<double>(mul32(a, alpha)) / 255.0 + static_cast<double>(mul32(b, inverse)) / 255.0;
        return to_int32(v);
    };
    return RgbOf(mix(red_of(c1), red_of(c2)), mix(green_of(c1), green_of(c2)), mix(blue_of(c1), blue_of(c2)));
}

Rgb AdjustColor(Rgb color, int32_t amount, bool proportional)
{
    int32_t r = add32(red_of(color), amount);
    int32_t g = add32(green_of(color), amount);
    int32_t b = blue_of(color);
    b = proportional ? add32(b, idiv32(mul32(b, amount), 192)) : add32(b, amount);
    return make_rgb(clamp255(r), clamp255(g), clamp255(b));
}

} // namespace tarn
