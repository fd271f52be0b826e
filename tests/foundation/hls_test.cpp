// The hue-luminance-saturation model on the 0..240 scale: known points, the wrap of the hue
// and the clamping of the other two; under Windows, agreement with the platform's own
// conversion over the whole range.
#include <gtest/gtest.h>

#include "foundation/hls.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
#endif

using namespace tarn;

TEST(Hls, KnownPoints)
{
    struct Case {
        int32_t h, l, s;
        Rgb rgb;
    };
    const Case cases[] = {
        {0, 120, 240, make_rgb(255, 0, 0)},     {40, 120, 240, make_rgb(255, 255, 0)},
        {80, 120, 240, make_rgb(0, 255, 0)},    {120, 120, 240, make_rgb(0, 255, 255)},
        {160, 120, 240, make_rgb(0, 0, 255)},   {200, 120, 240, make_rgb(255, 0, 255)},
        {20, 120, 240, make_rgb(255, 128, 0)},  {0, 60, 240, make_rgb(128, 0, 0)},
        {160, 180, 240, make_rgb(128, 128, 255)}, {160, 120, 120, make_rgb(64, 64, 191)},
        {77, 240, 240, make_rgb(255, 255, 255)}, {77, 0, 240, make_rgb(0, 0, 0)},
        {120, 120, 0, make_rgb(128, 128, 128)}, {33, 60, 0, make_rgb(64, 64, 64)},
        // The hue wraps; luminance and saturation clamp to their ends.
        {240, 120, 240, make_rgb(255, 0, 0)},   {-40, 120, 240, make_rgb(255, 0, 255)},
        {480 + 80, 120, 240, make_rgb(0, 255, 0)}, {0, 999, 240, make_rgb(255, 255, 255)},
        {0, -5, 240, make_rgb(0, 0, 0)},        {0, 120, -1, make_rgb(128, 128, 128)},
        {0, 120, 9999, make_rgb(255, 0, 0)},
    };
    for (const Case &c : cases)
        EXPECT_EQ(c.rgb, HlsToRgb(c.h, c.l, c.s)) << std::hex << c.h << "," << c.l << "," << c.s;
    // Extreme arguments are harmless.
    for (int32_t v : {INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(HlsToRgb(v % 240, 120, 240), HlsToRgb(v, 120, 240));
        EXPECT_LE(HlsToRgb(0, v, v), 0xFFFFFFu);
    }
}

#ifdef _WIN32
TEST(Hls, AgreesWithThePlatformWithinOneStep)
{
    using Fn = COLORREF(WINAPI *)(WORD, WORD, WORD);
    HMODULE shlwapi = LoadLibraryW(L"shlwapi.dll");
    auto platform = reinterpret_cast<Fn>(GetProcAddress(shlwapi, "ColorHLSToRGB"));
    ASSERT_NE(nullptr, platform);
    int worst = 0;
    for (int h = 0; h < 240; h += 3)
        for (int l = 0; l <= 240; l += 5)
            for (int s = 0; s <= 240; s += 8) {
                Rgb ours = HlsToRgb(h, l, s), theirs = platform(h, l, s);
                for (int shift : {0, 8, 16})
                    worst = std::max(worst, std::abs(static_cast<int>((ours >> shift) & 0xFF) -
                                                     static_cast<int>((theirs >> shift) & 0xFF)));
            }
    EXPECT_LE(worst, 1);
    FreeLibrary(shlwapi);
}
#endif
