// A two-colour linear gradient over a rectangle: the colours its four corners take, so a
// drawing routine can fill the rectangle with two shaded triangles. The angle is in degrees,
// counter-clockwise from left-to-right on the screen (0: the first colour at the left, 90: at
// the bottom, 315: at the top left); the first colour starts at the corner the direction
// leaves from, the second ends at the one it reaches.
#pragma once
#include <array>

#include "foundation/colors.h"

namespace tarn {

// Corners in the order top-left, top-right, bottom-right, bottom-left. A rectangle without
// area, or an angle that is not a number, takes the first colour everywhere.
std::array<Rgb, 4> GradientCorners(int width, int height, double angle_degrees, Rgb first, Rgb second);

} // namespace tarn
