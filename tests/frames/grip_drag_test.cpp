// The form's size during a grip drag: the drag's travel added, bounded by the form's tracking
// limits, including limits that contradict each other and travels that would overflow.
#include <gtest/gtest.h>

#include <climits>

#include "frames/grip_drag.h"

using namespace tarn;

TEST(GripDrag, TheFormTakesTheDragsTravelWithinItsTrackingLimits)
{
    const GripSize min{200, 150}, max{1000, 800};
    const struct {
        int dx, dy;
        GripSize want;
    } cases[] = {
        {60, 40, {560, 440}},       {-60, -40, {440, 360}},    {-1000, -1000, {200, 150}},
        {5000, 5000, {1000, 800}},  {0, 0, {500, 400}},        {INT_MAX, INT_MIN, {1000, 150}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(c.want, DraggedFormSize({500, 400}, c.dx, c.dy, min, max)) << c.dx << "," << c.dy;
    // A maximum below the minimum: the minimum wins.
    EXPECT_EQ((GripSize{300, 300}), DraggedFormSize({500, 400}, 0, 0, {300, 300}, {100, 100}));
}
