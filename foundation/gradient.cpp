#include "foundation/gradient.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tarn {

std::array<Rgb, 4> GradientCorners(int width, int height, double angle_degrees, Rgb first, Rgb second)
{
    std::array<Rgb, 4> out{first, first, first, first};
    if (width <= 0 || height <= 0 || !std::isfinite(angle_degrees)) return out;
    double a = std::fmod(angle_degrees, 360.0) * std::numbers::pi / 180.0;
    // Screen y grows downwards: a counter-clockwise angle goes up for positive sines.
    double dx = std::cos(a), dy = -std::sin(a);
    const double x[4] = {0, double(width), double(width), 0}, y[4] = {0, 0, double(height), double(height)};
    double along[4];
    for (int i = 0; i < 4; ++i) along[i] = x[i] * dx + y[i] * dy;
    double lo = *std::min_element(along, along + 4), hi = *std::max_element(along, along + 4);
    for (int i = 0; i < 4; ++i) {
        double t = hi > lo ? (along[i] - lo) / (hi - lo) : 0;
        auto mix = [&](int c1, int c2) { return static_cast<int>(std::lround(c1 + (c2 - c1) * t)); };
        out[i] = make_rgb(mix(red_of(first), red_of(second)), mix(green_of(first), green_of(second)),
                          mix(blue_of(first), blue_of(second)));
    }
    return out;
}

} // namespace tarn
