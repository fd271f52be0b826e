// clsMEMDC: a memory device context with a display-compatible bitmap selected into it, for
// drawing a picture off-screen and copying it to the screen in one go. The bitmap only ever
// grows, one dimension per write: write Width, then Height, to get a w x h surface. Whatever
// was drawn is lost whenever the bitmap is made again.
#pragma once
#include <windows.h>

#include <cstdint>

#include "foundation/handles.h"

namespace tarn {

class clsMEMDC {
public:
    clsMEMDC() = default;
    ~clsMEMDC() { release(); }
    clsMEMDC(const clsMEMDC &) = delete;
    clsMEMDC &operator=(const clsMEMDC &) = delete;

    HDC hDC() const { return dc_.get(); }
    int32_t Width() const { return width_; }
    int32_t Height() const { return height_; }
    // A larger value makes the bitmap again at (value, current height); anything else does nothing.
    void Width(int32_t value);
    // A larger value makes the bitmap again at (current width, value); anything else does nothing.
    void Height(int32_t value);

private:
    void create(int32_t w, int32_t h);
    void release();

    unique_dc dc_;
    HGDIOBJ previous_ = nullptr; // what the DC held before our bitmap; never ours to delete
    unique_bitmap bitmap_;
    int32_t width_ = 0, height_ = 0;
};

// clsDOTBRUSH: the one-pixel checkerboard (eight scan lines alternating 0x5555 and 0xAAAA)
// and the pattern brush made from it. Destroy deletes the brush; it runs again, harmlessly,
// when the object goes.
class clsDOTBRUSH {
public:
    clsDOTBRUSH();
    ~clsDOTBRUSH() { Destroy(); }
    clsDOTBRUSH(const clsDOTBRUSH &) = delete;
    clsDOTBRUSH &operator=(const clsDOTBRUSH &) = delete;

    // The pattern: four 32-bit words, each 0xAAAA5555.
    const uint32_t *Pattern() const { return pattern_; }
    // The brush, made from the pattern on first use (null when the platform refuses). Its
    // colours are the DC's text colour (bits 0) and back colour (bits 1) when it paints.
    HBRUSH Brush();
    void Destroy() { brush_.reset(); }

private:
    uint32_t pattern_[4];
    unique_brush brush_;
};

} // namespace tarn
