#include "buttons/pbtn_layout.h"

#include <algorithm>

namespace tarn {

PictureButtonLayout LayoutPictureButton(int32_t W, int32_t H, int32_t pic_w, int32_t pic_h, int32_t text_h)
{
    W = std::max(W, 0);
    H = std::max(H, 0);
    PictureButtonLayout L;
    int32_t label_h = text_h > 0 ? std::min(text_h + 2, H) : 0;
    if (label_h > 0) L.label = {0, H - label_h, W, H};
    int32_t room = H - label_h;
    pic_w = std::max(pic_w, 0);
    pic_h = std::max(pic_h, 0);
    int32_t left = (W - pic_w) / 2, top = (room - pic_h) / 2;
    L.picture = {left, top, left + pic_w, top + pic_h};
    return L;
}

PictureLook LookFor(bool enabled, int face_state, const PictureSet &set)
{
    if (!enabled) return set.disabled ? PictureLook::Disabled : set.normal ? PictureLook::GreyedNormal : PictureLook::None;
    if (face_state == face::Pressed && set.pressed) return PictureLook::Pressed;
    if (face_state == face::Hover && set.hlight) return PictureLook::HLight;
    return set.normal ? PictureLook::Normal : PictureLook::None;
}

} // namespace tarn
