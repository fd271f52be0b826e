// The resize lock's rules, apart from any window: how its limits settle when loaded, first
// shown and written, and where they go in the window's size-limit record (MINMAXINFO).
// Limits are pixels; the screen's size comes in as the host's screen object reports it, in
// twips, so a maximum left at the screen's size lies far beyond it and does not limit.
#pragma once
#include <cstddef>
#include <cstdint>

namespace tarn {

struct ResizeLimits {
    int32_t MaxWidth = 0, MinWidth = 0, MaxHeight = 0, MinHeight = 0;
    bool HasMaxSize = false;
};

struct ScreenTwips {
    int32_t width = 0, height = 0;
};

constexpr int32_t kDefaultMinSize = 200;

// After reading the store: without HasMaxSize the maxima are the screen's size again, and no
// maximum stays below its minimum.
void SettleLoadedLimits(ResizeLimits &limits, ScreenTwips screen);

// At first display: a maximum still 0 becomes the screen's size, a minimum still 0 becomes 200.
void FillUnsetLimits(ResizeLimits &limits, ScreenTwips screen);

// A write of MaxWidth or MaxHeight: with HasMaxSize the value is raised to its minimum (the
// caller's variable takes the raised value) and stored; without, the screen's size is stored
// and the value given is left as it was.
void WriteMaximum(const ResizeLimits &limits, int32_t &field, int32_t minimum, int32_t &value, int32_t screen);

// The record WM_GETMINMAXINFO points to: five points of two 32-bit values each.
constexpr std::size_t kMinMaxInfoSize = 40;
// Writes the minimum tracking size (bytes 24..31) and the maximum tracking size (32..39);
// the maximised size and position (bytes 0..23) stay as the window manager filled them.
void PatchMinMaxInfo(unsigned char (&record)[kMinMaxInfoSize], const ResizeLimits &limits);

} // namespace tarn
