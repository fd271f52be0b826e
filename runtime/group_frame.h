// GroupFrame: the windowless group frame constituent, a captioned border of the kind a dialog
// groups its settings in. The border runs through the middle of the caption's line, the
// caption sits in a gap of the back colour near the left, and the frame fills its rectangle
// with its back colour (BackStyle 1) or leaves it to what lies below (0). The classic look is
// the etched 3-D border; the themed one a single line in a shade of the button face.
//
// A frame shorter than its caption draws as a captioned line and one narrower than two pixels
// as an upright line: the separator bars are made that way.
#pragma once
#include "runtime/constituents.h"

namespace tarn {

class GroupFrame final : public Constituent {
public:
    GroupFrame(std::wstring name, float left, float top, float width, float height)
        : Constituent(std::move(name)), Left(left), Top(top), Width(width), Height(height)
    {
    }
    void draw(HDC dc, const Scale &scale) const override;
    // It takes the mouse only where a control listens to it.
    bool takes_mouse_at(float x, float y) const override;
    float origin_x() const override { return Left; }
    float origin_y() const override { return Top; }

    std::wstring Caption;
    ComPtr<IFontDisp> Font; // null: the system font
    float Left, Top, Width, Height;
    OleColor ForeColor = syscolor::ButtonText;
    OleColor BackColor = syscolor::ButtonFace;
    int16_t BackStyle = 1; // 0 transparent, 1 opaque
    bool Enabled = true;
    bool Themed = false;
    // Where the caption's gap starts from the left edge, twips.
    float CaptionIndent = 120;
};

} // namespace tarn
