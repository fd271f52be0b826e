#include "frames/lneh_layout.h"

#include <algorithm>

namespace tarn {

CaptionLineLayout LayOutCaptionLine(int width, int caption_width, int text_height, int alignment, int gap)
{
    CaptionLineLayout l;
    width = std::max(width, 0);
    // The two rows sit in the middle of the caption's line.
    l.dark_row = std::max(text_height - 2, 0) / 2;
    if (caption_width <= 0) {
        l.right = {0, width};
        return l;
    }
    int cw = std::min(caption_width, width);
    switch (alignment) {
    case 1: l.caption = {width - cw, width}; break;
    case 2: l.caption = {(width - cw) / 2, (width - cw) / 2 + cw}; break;
    default: l.caption = {0, cw}; break;
    }
    l.left = {0, l.caption.from - gap};
    l.right = {l.caption.to + gap, width};
    if (l.left.empty()) l.left = {};
    if (l.right.empty()) l.right = {};
    return l;
}

} // namespace tarn
