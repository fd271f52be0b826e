// The size a form takes while its size grip is dragged: the size it had when the drag began
// plus the pointer's travel, kept within the limits the form gives for its tracking size
// (WM_GETMINMAXINFO), as the system's own sizing from the bottom-right corner keeps them.
#pragma once

namespace tarn {

struct GripSize {
    int width = 0, height = 0;
    bool operator==(const GripSize &) const = default;
};

GripSize DraggedFormSize(GripSize start, int dx, int dy, GripSize min_track, GripSize max_track);

} // namespace tarn
