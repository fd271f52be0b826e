// The owner-drawn button's face, shared by cbtn and cbtnddp: the settings it is drawn from
// (colours, look, caption, pictures, pointer), its layout and window shape, and the painter of
// the fourteen looks in their normal, hover, pressed and disabled faces, with the picture, the
// focus rectangle, the default frame and the recoloured glyphs. Drawn through a memory DC and
// copied to the screen in one go.
#pragma once
#include <windows.h>
#include <ocidl.h>
#include <olectl.h>

#include <string>
#include <vector>

#include "buttons/cbtn_layout.h"
#include "foundation/clsMEMDC.h"
#include "runtime/com.h"

namespace tarn {

// A picture box constituent: its picture, enabled state and pointer.
struct ButtonPictureBox {
    ComPtr<IPictureDisp> Picture;
    bool Enabled = true;
    ComPtr<IPictureDisp> MouseIcon;
    int16_t MousePointer = 0;
};

class ButtonFace {
public:
    // A recoloured glyph, kept as its pixels; `tint` is its background.
    struct Glyph {
        int w = 0, h = 0;
        Rgb tint = kInvalidColor;
        std::vector<Rgb> pixels;
    };

    // What the face is drawn from (the button's properties).
    OleColor back = 0;
    bool back_custom = false;
    int16_t type = btype::Button;
    std::wstring caption;
    bool enabled = true;
    bool focus_rect = true;
    bool picture_visible = false;
    OleColor fore = 0;
    OleColor mask = syscolor::ButtonFace;
    ComPtr<IFontDisp> font;
    ComPtr<IPictureDisp> mouse_icon;
    int16_t mouse_pointer = 0;
    ButtonPictureBox picBOX, picBOXdis;
    // A colour bar under the caption (the colour button's chosen colour); off when `bar_on` is false.
    bool bar_on = false;
    OleColor bar_colour = 0;

    // The face state drawn (face::Normal, Hover, Pressed), and the container's "display as
    // default" look.
    int state = face::Normal;
    bool display_default = false;

    // The layout for a W x H button (pixels), from the picture's size.
    void Layout(int W, int H);
    const ButtonLayout &layout() const { return layout_; }
    // Gives `w` the window shape of the button type (the window owns the region).
    void ApplyRegion(HWND w, int W, int H) const;
    // The whole face into `dc` (through the memory DC when it can be had).
    void Draw(HDC dc, int W, int H, bool focused);
    // The glyphs in the current system colours.
    void RecolorGlyphs();
    // The pointer over the point `pt` (client pixels); false when the system's default applies.
    bool SetCursorAt(POINT pt) const;

private:
    void compose(HDC dc, int W, int H, bool focused);
    void draw_face(HDC dc, bool focused);
    void draw_disabled(HDC dc);
    void draw_picture(HDC dc, int dx, int dy);
    void draw_bar(HDC dc, int dx);
    void draw_focus(HDC dc);
    int bar_height() const;

    ButtonLayout layout_;
    clsMEMDC memdc_;
    clsDOTBRUSH dots_;
    Glyph glyphs_[2]; // the drop arrow, normal and disabled, recoloured
    Rgb glyph_face_ = kInvalidColor;
};

} // namespace tarn
