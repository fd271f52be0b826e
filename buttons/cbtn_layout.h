// The owner-drawn button's pure logic: its layout for a size, the window shape of each button
// type, the glyph colour table, the low-colour rule, the mouse-pointer cursors and where the
// tooltip goes. No platform calls here; the button face (button_face.cpp) draws with the results.
#pragma once
#include <cstdint>

#include "foundation/colors.h"

namespace tarn {

// The button types of ButtonTypes, 1 to 14.
namespace btype {
constexpr int16_t Button = 1, ButtonFlat = 2, ComboBox = 3, ComboBoxFlat = 4, Toolbar = 5, ToolbarChecked = 6,
                  Hyperlink = 7, HyperlinkWhite = 8, SpinButton = 9, SpinButtonPressed = 10, WindowsXP = 11,
                  ToolbarTabSelect = 12, WindowsXPPressed = 13, WindowsXPToolbar = 14;
constexpr int16_t First = Button, Last = WindowsXPToolbar;
} // namespace btype

// Face states.
namespace face {
constexpr int Normal = 0, Hover = 1, Pressed = 2, None = -1;
} // namespace face

struct PxRect {
    int32_t left = 0, top = 0, right = 0, bottom = 0;
    int32_t width() const { return right - left; }
    int32_t height() const { return bottom - top; }
    bool operator==(const PxRect &) const = default;
};

struct ButtonLayout {
    int32_t W = 0, H = 0;
    PxRect caption;   // left 2, 23 or 26
    PxRect caption2;  // the second caption rectangle: left 0, 21 or 26
    PxRect inner;     // (4, 4, W - 4, H - 4)
    PxRect rects[6];  // the drawing rectangles of the picture layouts (all zero without a picture)
    bool picture_fits = false;
    PxRect picture;   // where the picture box stands (empty without a picture)
};

// The layout for a W x H button (pixels). With `picture_visible` the picture of pic_w x pic_h
// pixels is tested against the button's height: it fits when its height less 8 is below H;
// a picture that fits stands at its own size at the left, one that does not is shrunk into
// the left strip.
ButtonLayout LayoutButton(int32_t W, int32_t H, bool picture_visible, int32_t pic_w, int32_t pic_h);

// The window shape of a button type.
enum class ButtonShape { Rectangle, RoundedXP, Tab };
ButtonShape ShapeOf(int32_t button_type);

// The four-entry colour table of the glyph recolouring: the key colours magenta and grey, the
// face tint (button face adjusted +22, +24 and -24 in turn, proportionally) and the button
// shadow (kept in OLE form, &H80000010).
struct GlyphColors {
    uint32_t entry[4];
};
GlyphColors GlyphColorTable(Rgb button_face);
// One pixel of a template: magenta becomes `tint`, then grey becomes `shadow`.
Rgb RecolorPixel(Rgb pixel, Rgb tint, Rgb shadow);

// The low-colour rule: at 4 or 8 bits per pixel the tinted caption colours give way to the
// plain caption colour.
bool LowColorDisplay(int32_t bits_per_pixel);

// The system cursor (an IDC_* number) for a MousePointer value; 0 for the default (0), for
// the custom pointer (99, which uses MouseIcon) and for values without a cursor.
int32_t CursorForPointer(int32_t mouse_pointer);
constexpr int32_t kCustomPointer = 99;

// The tooltip's place: below the pointer's hot spot by the cursor's height, moved back inside
// the work area when it would leave it (above the pointer when there is no room below).
struct TipPlace {
    int32_t x, y;
};
TipPlace PlaceTip(int32_t cursor_x, int32_t cursor_y, int32_t cursor_height, int32_t tip_w, int32_t tip_h,
                  const PxRect &work);

} // namespace tarn
