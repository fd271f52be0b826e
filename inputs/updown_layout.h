// Where the numeric up-down box puts its parts for a control W x H (twips), and the height it
// takes from its measuring combo box.
#pragma once
#include <cstdint>

namespace tarn {

struct PartBox {
    float left, top, width, height;
};

struct UpdownGeometry {
    PartBox background; // picframBOX, filling the control
    PartBox border;     // txtBORDER
    PartBox inner;      // lblBACK, inside the border
    PartBox text;       // txtUPDOWN: 360 narrower than the control, 285 high, centred vertically
    PartBox arrows;     // udnCTRL: the strip right of the text, 90 in from its start
    bool border_shown;  // txtBORDER draws the border (un-themed)
    int16_t background_border; // picframBOX's own border (themed: a flat line when BorderStyle is 1)
};

// `themed`: the operating system's version is above 5.0. Themed systems draw the border as a
// flat line around the background box; older ones with txtBORDER in the chosen style.
UpdownGeometry UpdownLayout(float width, float height, bool themed, int16_t border_style);

// The measuring combo box's height as the control takes it: a whole number of twips.
float UpdownHeight(float combo_height);

} // namespace tarn
