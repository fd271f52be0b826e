#include "services/resize_limits.h"

#include <cstring>

namespace tarn {

void SettleLoadedLimits(ResizeLimits &l, ScreenTwips screen)
{
    if (!l.HasMaxSize) {
        l.MaxWidth = screen.width;
        l.MaxHeight = screen.height;
    }
    if (l.MaxHeight < l.MinHeight) l.MaxHeight = l.MinHeight;
    if (l.MaxWidth < l.MinWidth) l.MaxWidth = l.MinWidth;
}

void FillUnsetLimits(ResizeLimits &l, ScreenTwips screen)
{
    if (l.MaxHeight == 0) l.MaxHeight = screen.height;
    if (l.MaxWidth == 0) l.MaxWidth = screen.width;
    if (l.MinWidth == 0) l.MinWidth = kDefaultMinSize;
    if (l.MinHeight == 0) l.MinHeight = kDefaultMinSize;
}

void WriteMaximum(const ResizeLimits &l, int32_t &field, int32_t minimum, int32_t &value, int32_t screen)
{
    if (!l.HasMaxSize) {
        field = screen;
        return;
    }
    if (value < minimum) value = minimum;
    field = value;
}

void PatchMinMaxInfo(unsigned char (&record)[kMinMaxInfoSize], const ResizeLimits &l)
{
    const int32_t fields[4] = {l.MinWidth, l.MinHeight, l.MaxWidth, l.MaxHeight};
    std::memcpy(record + 24, fields, sizeof fields); // little-endian, as the platform's LONGs
}

} // namespace tarn
