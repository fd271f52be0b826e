#include "frames/grip_drag.h"

#include <algorithm>
#include <climits>

namespace tarn {

namespace {
int clamped(long long value, int low, int high)
{
    // A maximum below the minimum gives way to it, as the system's sizing does.
    if (high < low) high = low;
    return static_cast<int>(std::clamp<long long>(value, low, high));
}
} // namespace

GripSize DraggedFormSize(GripSize start, int dx, int dy, GripSize min_track, GripSize max_track)
{
    return {clamped(static_cast<long long>(start.width) + dx, min_track.width, max_track.width),
            clamped(static_cast<long long>(start.height) + dy, min_track.height, max_track.height)};
}

} // namespace tarn
