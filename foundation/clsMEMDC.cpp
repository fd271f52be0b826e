#include "foundation/clsMEMDC.h"

namespace tarn {

void clsMEMDC::Width(int32_t value)
{
    if (value > width_) create(value, height_);
}

void clsMEMDC::Height(int32_t value)
{
    if (value > height_) create(width_, value);
}

void clsMEMDC::create(int32_t w, int32_t h)
{
    release();
    unique_dc display(CreateDCW(L"DISPLAY", nullptr, nullptr, nullptr));
    if (!display) return;
    dc_.reset(CreateCompatibleDC(display.get()));
    // A zero dimension gives the platform's 1 x 1 monochrome bitmap; the stored size stays w x h.
    bitmap_.reset(CreateCompatibleBitmap(display.get(), w, h));
    previous_ = dc_ && bitmap_ ? SelectObject(dc_.get(), bitmap_.get()) : nullptr;
    if (previous_ && previous_ != HGDI_ERROR) {
        width_ = w;
        height_ = h;
    } else {
        previous_ = nullptr;
        release(); // a failed selection leaves the object empty
    }
}

void clsMEMDC::release()
{
    // Put the DC's own bitmap back first: a bitmap still selected cannot be deleted.
    if (previous_) {
        SelectObject(dc_.get(), previous_);
        previous_ = nullptr;
    }
    bitmap_.reset();
    width_ = height_ = 0;
    dc_.reset();
}

clsDOTBRUSH::clsDOTBRUSH()
{
    for (uint32_t &word : pattern_) word = 0xAAAA5555u;
}

HBRUSH clsDOTBRUSH::Brush()
{
    if (!brush_) {
        // Monochrome rows are 16-bit aligned: each 32-bit word holds two 8-pixel scan lines.
        unique_bitmap bits(CreateBitmap(8, 8, 1, 1, pattern_));
        if (bits) brush_.reset(CreatePatternBrush(bits.get()));
    }
    return brush_.get();
}

} // namespace tarn
