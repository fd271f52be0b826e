// The captioned line's layout, in pixels: where the caption goes for its alignment and which
// pieces of the 3-D line fill the rest of the width, a gap away from the caption.
#pragma once

namespace tarn {

struct Span {
    int from = 0, to = 0; // [from, to)
    bool empty() const { return to <= from; }
    bool operator==(const Span &) const = default;
};

struct CaptionLineLayout {
    Span caption;     // empty without a caption
    Span left, right; // the line's pieces left and right of the caption (either may be empty)
    int dark_row = 0; // the dark line's row; the light one runs below it
};

// `width` of the control, `caption_width` of the text (0: none), `text_height` of the font's
// line, `alignment` 0 left, 1 right, 2 centre (anything else: left), `gap` between the caption
// and the line. Without a caption the line runs the whole width; a caption wider than the
// control is cut and leaves no line.
CaptionLineLayout LayOutCaptionLine(int width, int caption_width, int text_height, int alignment, int gap);

} // namespace tarn
