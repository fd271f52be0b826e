// rszxp (TarnControls.rszxp): the size grip in the XP look: six raised dots along the diagonal. What it does is
// SizeGrip's (frames/size_grip.h): at run time it keeps to its form's bottom-right corner and
// a drag on it resizes the form as the form's own corner would.
#pragma once
#include "frames/size_grip.h"

namespace tarn {

class rszxp final : public SizeGrip<rszxp, Irszxp> {
public:
    static const ControlClass Class;
    rszxp() : SizeGrip(GripLook::Xp) {}
};

} // namespace tarn
