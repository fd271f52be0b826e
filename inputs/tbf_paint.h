// Drawing the tab strip in its three looks: classic raised tabs, flat buttons and the library's
// XP tabs (rounded, with a coloured edge on the selected and the hot tab).
#pragma once
#include <windows.h>

#include <string>
#include <vector>

#include "foundation/colors.h"
#include "inputs/tbf_layout.h"

namespace tarn {

struct TabStripLook {
    int16_t style = tabstyle::Classic;
    Rgb back = 0, fore = 0;
    bool enabled = true;
    bool focused = false;
    int selected = -1, hot = -1;
    HFONT font = nullptr;
    int dpi = 96;
    int pad = 6; // pixels beside each caption
};

// Draws the strip (`width` x `height` pixels at the DC's origin) with its tabs and captions.
void PaintTabStrip(HDC dc, int width, int height, const std::vector<TabBox> &tabs,
                   const std::vector<std::wstring> &captions, const TabStripLook &look);

} // namespace tarn
