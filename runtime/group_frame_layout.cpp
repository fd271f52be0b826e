#include "runtime/group_frame_layout.h"

#include <algorithm>

namespace tarn {

GroupFrameParts LayOutGroupFrame(PixelRect frame, int text_height, int caption_width, int indent, int pad)
{
    GroupFrameParts p;
    const int half = std::max(text_height, 0) / 2;
    p.border = {frame.left, frame.top + half, std::max(frame.right, frame.left + 2),
                std::max(frame.bottom, frame.top + half + 2)};
    p.across = frame.bottom < frame.top + half + 2;
    p.down = frame.right < frame.left + 2;
    p.fill = {frame.left, frame.top, p.border.right, p.border.bottom};
    if (caption_width > 0) {
        int left = frame.left + indent;
        // The gap keeps the border's last column (the frame's own right edge) in view.
        int right = std::min(left + caption_width + 2 * pad, p.border.right - 1);
        if (right > left) p.caption = {left, frame.top, right, frame.top + std::max(text_height, 0)};
    }
    return p;
}

} // namespace tarn
