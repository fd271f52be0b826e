// lneh (TarnControls.lneh): the horizontal sibling of the vertical divider, with a caption. A
// one-line caption at the left (or right, or in the middle, as Alignment says) and a 3-D line,
// a dark one-pixel line above a light one, filling the rest of the width, level with the
// middle of the caption's line. The lines take their colours from the system version as the
// vertical divider's do. The host sizes it; the layout follows the caption's font and width.
//
// A new line takes its container's name for a caption (InitProperties), as a label does. Its
// properties, keys and events are CaptionedControl's (frames/captioned_control.h).
#pragma once
#include "frames/captioned_control.h"

namespace tarn {

class lneh final : public CaptionedControl<lneh, Ilneh> {
public:
    static const ControlClass Class;
    lneh();

protected:
    void Initialize() override;
    void InitProperties() override;
    void ReadProperties(PropertyBag &bag) override { ReadCaption(bag); }
    void WriteProperties(PropertyBag &bag) override { WriteCaption(bag); }
    void Resize() override;
    void CaptionChanged() override;
    long AccessibleRole() override { return ROLE_SYSTEM_SEPARATOR; }

private:
    // The line left of the caption and the one right of it, each a dark and a light line.
    Line lneLEFTSHADOW, lneLEFTHIGHLIGHT, lneRIGHTSHADOW, lneRIGHTHIGHLIGHT;
};

} // namespace tarn
