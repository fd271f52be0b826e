// The gradient's corner colours: which corner each colour starts from for the usual angles,
// the middle of a diagonal, and rectangles or angles that give no direction.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "foundation/gradient.h"

using namespace tarn;

TEST(Gradient, TheAngleSaysWhichCornerEachColourTakes)
{
    const Rgb a = make_rgb(0, 0, 0), b = make_rgb(200, 100, 50), mid = make_rgb(100, 50, 25);
    using C = std::array<Rgb, 4>; // top-left, top-right, bottom-right, bottom-left
    const struct {
        double angle;
        C want;
    } cases[] = {
        {0, {a, b, b, a}},       {90, {b, b, a, a}},        {180, {b, a, a, b}},      {270, {a, a, b, b}},
        {-90, {a, a, b, b}},     {360 + 270, {a, a, b, b}}, {315, {a, mid, b, mid}},  {45, {mid, b, mid, a}},
        {135, {b, mid, a, mid}}, {225, {mid, a, mid, b}},
    };
    for (const auto &c : cases) EXPECT_EQ(c.want, GradientCorners(100, 100, c.angle, a, b)) << c.angle;
    // A wide rectangle at 315 degrees: the far corner is still all of the second colour.
    C wide = GradientCorners(400, 10, 315, a, b);
    EXPECT_EQ(a, wide[0]);
    EXPECT_EQ(b, wide[2]);
    // Nothing to shade: the first colour everywhere.
    for (auto [w, h, angle] : {std::tuple{0, 10, 315.0}, std::tuple{10, -1, 0.0}, std::tuple{10, 10, double(NAN)},
                               std::tuple{10, 10, double(INFINITY)}})
        EXPECT_EQ((C{a, a, a, a}), GradientCorners(w, h, angle, a, b));
}
