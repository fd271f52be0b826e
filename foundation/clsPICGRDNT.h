// clsPICGRDNT: the settings of a two-colour gradient (plain RGB colours and an angle in
// degrees), as a new object starts with them.
#pragma once
#include "foundation/colors.h"

namespace tarn {

struct clsPICGRDNT {
    Rgb Color1 = 0x00FFFFD0u;
    Rgb Color2 = 0x00400000u;
    float Angle = 315.0f;
};

} // namespace tarn
