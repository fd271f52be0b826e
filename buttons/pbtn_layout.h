// The picture button's pure logic: where its picture and caption stand, and which of its
// pictures a look shows. No platform calls.
#pragma once
#include <cstdint>

#include "buttons/cbtn_layout.h"

namespace tarn {

struct PictureButtonLayout {
    PxRect picture; // the face picture at its own size, centred in the space above the caption
    PxRect label;   // the caption label across the bottom (empty without a caption)
};

// A W x H button with a pic_w x pic_h picture and a caption text_h pixels high (0: none).
PictureButtonLayout LayoutPictureButton(int32_t W, int32_t H, int32_t pic_w, int32_t pic_h, int32_t text_h);

// The picture a look shows.
enum class PictureLook { None, Normal, HLight, Pressed, Disabled, GreyedNormal };
struct PictureSet {
    bool normal = false, hlight = false, pressed = false, disabled = false;
};
// Enabled: the pressed or hover picture for face::Pressed or face::Hover when it is set, else
// the normal one. Disabled: the disabled picture, else the normal picture greyed.
PictureLook LookFor(bool enabled, int face_state, const PictureSet &set);

} // namespace tarn
