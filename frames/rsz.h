// rsz (TarnControls.rsz): the size grip in the classic look: three etched grooves across the corner. What it does is
// SizeGrip's (frames/size_grip.h): at run time it keeps to its form's bottom-right corner and
// a drag on it resizes the form as the form's own corner would.
#pragma once
#include "frames/size_grip.h"

namespace tarn {

class rsz final : public SizeGrip<rsz, Irsz> {
public:
    static const ControlClass Class;
    rsz() : SizeGrip(GripLook::Classic) {}
};

} // namespace tarn
