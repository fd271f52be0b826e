// What the tests of the service controls share: windows that go before the controls, and the
// design-time face of the invisible ones: their icon, 480 x 450 twips.
#pragma once
#include <gtest/gtest.h>

#include "support/control_test.h"
#include "support/test_windows.h"

namespace tarn::test {

// Windows made by window() are destroyed when the test ends, before its controls close: that
// ends their hooks, so the container's release of each control is the last.
class ServiceTest : public ControlTest {
protected:
    void TearDown() override
    {
        for (HWND w : windows_) DestroyWindow(w);
        ControlTest::TearDown();
    }
    HWND window()
    {
        windows_.push_back(make_window());
        return windows_.back();
    }
    std::vector<HWND> windows_;
};

// At design time `h` asked its container for the icon's size and draws the icon (more than its
// background); the picture is saved as `png` in the test output.
inline void expect_icon_face(Hosted &h, const wchar_t *png)
{
    HDC dc = GetDC(nullptr);
    int dpi_x = GetDeviceCaps(dc, LOGPIXELSX), dpi_y = GetDeviceCaps(dc, LOGPIXELSY);
    ReleaseDC(nullptr, dc);
    const int width = MulDiv(480, dpi_x, 1440), height = MulDiv(450, dpi_y, 1440);
    SIZEL extent{};
    h.as<IOleObject>(IID_IOleObject)->GetExtent(DVASPECT_CONTENT, &extent);
    EXPECT_EQ(MulDiv(width, 2540, dpi_x), extent.cx);
    EXPECT_EQ(MulDiv(height, 2540, dpi_y), extent.cy);
    Bitmap icon = h.render(width, height);
    icon.save_png(output_path(png));
    EXPECT_LT(icon.count(GetSysColor(COLOR_BTNFACE)) + 50, icon.width() * icon.height());
}

} // namespace tarn::test
