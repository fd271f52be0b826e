// Where a group frame's parts go, in pixels: the border runs through the middle of the caption's
// line, the caption sits a little in from the left on a gap of the back colour, and a frame too
// small for a border still draws one two pixels deep or wide: a frame shorter than its caption
// shows as a captioned line, one narrower than two pixels as an upright line.
#pragma once

namespace tarn {

struct PixelRect {
    int left = 0, top = 0, right = 0, bottom = 0;
    bool empty() const { return right <= left || bottom <= top; }
    bool operator==(const PixelRect &) const = default;
};

struct GroupFrameParts {
    PixelRect fill;    // what the back colour covers: the frame and its border
    PixelRect border;  // the border's outer edge
    PixelRect caption; // the caption's gap (empty without a caption); its text starts `pad` in
    bool across = false; // collapsed to a line across: only its top and bottom edges show
    bool down = false;   // collapsed to an upright line: only its left and right edges show
};

// `frame` is the frame's rectangle; `text_height` the caption font's line height (the border
// drops half of it even without a caption, so frames of one font line up); `caption_width` the
// caption's width (0: none); `indent` where the gap starts from the left edge, `pad` the gap's
// margin on each side of the text. A caption wider than the border is cut at its right end.
GroupFrameParts LayOutGroupFrame(PixelRect frame, int text_height, int caption_width, int indent, int pad);

} // namespace tarn
