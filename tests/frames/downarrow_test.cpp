// The drop-down arrow through the real DLL: its size forced back after every kind of sizing,
// the surface's look chosen by the version text at 4.99, and the arrow its lines draw at
// either DPI.
#include <gtest/gtest.h>

#include <cmath>

#include "frames/frame_test_helpers.h"
#include "support/fake_machine_key.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kArrow[] = L"TarnControls.downarrow";

class DownArrowTest : public ControlTest {
protected:
    DownArrowTest() { allow_self_sizing(form); }
    static SIZE arrow_px()
    {
        return {std::lround(185 / TwipsPerPixelX()), std::lround(210 / TwipsPerPixelY())};
    }
};

} // namespace

TEST_F(DownArrowTest, EverySizingSnapsBackTo185By210Twips)
{
    Hosted &a = place(kArrow, {10, 10, 110, 60});
    const SIZE want = arrow_px();
    EXPECT_EQ(want.cx, extent_px(a).cx);
    EXPECT_EQ(want.cy, extent_px(a).cy);
    ComPtr<IOleObject> ole = a.as<IOleObject>(IID_IOleObject);
    SIZEL big{5000, 3000}, negative{-10, -10};
    for (SIZEL *s : {&big, &negative}) {
        ole->SetExtent(DVASPECT_CONTENT, s);
        EXPECT_EQ(want.cx, extent_px(a).cx);
    }
    a.activate();
    for (RECT asked : {RECT{0, 0, 400, 300}, RECT{5, 5, -100, 3}, RECT{20, 20, 21, 21}}) {
        a.move(asked);
        RECT r{};
        GetClientRect(a.hwnd(), &r);
        EXPECT_EQ(want.cx, r.right);
        EXPECT_EQ(want.cy, r.bottom);
    }
    // Nothing of its own to save; a load of anything leaves it as it is.
    EXPECT_TRUE(a.save_bag()->writes.empty());
    ComPtr<Bag> junk = Bag::Create();
    junk->set(L"Width", I4(9999));
    EXPECT_EQ(want.cy, extent_px(place(kArrow, {0, 0, 300, 300}, Init::FromBag, junk.get())).cy);
}

TEST_F(DownArrowTest, TheSurfaceIsFlatFromVersion499On)
{
    FakeMachineKey machine;
    const struct {
        const wchar_t *version;
        int appearance;
    } cases[] = {{L"4.0", 1}, {L"5.1", 0}, {L"6.1", 0}, {L"", 1}, {L"4.99", 0}, {L"4.98", 1}, {L"10.0", 0}, {L"x", 1}};
    for (const auto &c : cases) {
        machine.set(kWindowsNtKey, L"CurrentVersion", c.version);
        Hosted &a = place(kArrow, {0, 0, 20, 20});
        EXPECT_EQ(c.appearance, as_integer(a.get(L"Appearance"))) << narrow(c.version);
        EXPECT_TRUE(FAILED(a.put(L"Appearance", I2(1)))); // read only
        close(a);
        controls_.pop_back();
    }
}

TEST_F(DownArrowTest, SixLinesMakeTheArrowTheTopTwoHiddenAtEitherDpi)
{
    Hosted &a = place(kArrow, {0, 0, 20, 20});
    const SIZE size = arrow_px();
    Bitmap p = a.render(size.cx, size.cy);
    p.save_png(output_path(L"downarrow-" + std::to_wstring(screen_dpi()) + L"dpi.png"));
    const double t = TwipsPerPixelX();
    auto px = [&](double twips) { return static_cast<int>(std::floor(twips / t + 1e-6)); };
    // Each line covers the pixel rows of its 15 twips and the columns from X1 up to X2.
    const struct {
        int x1, y, x2;
        bool shown;
    } lines[] = {{0, 45, 180, false}, {15, 60, 165, false}, {30, 75, 150, true},
                 {45, 90, 135, true}, {60, 105, 120, true}, {75, 120, 105, true}};
    int drawn = 0;
    for (const auto &l : lines) {
        for (int y = px(l.y); y < std::max(px(l.y) + 1, px(l.y + 15)); ++y) {
            int want = l.shown ? px(l.x2) - px(l.x1) : 0;
            EXPECT_EQ(want, p.count_row(y, sys(COLOR_WINDOWTEXT))) << "row " << y;
            drawn += p.count_row(y, sys(COLOR_WINDOWTEXT));
        }
    }
    EXPECT_EQ(drawn, p.count(sys(COLOR_WINDOWTEXT))); // nothing else drawn
    a.activate();
    EXPECT_EQ(p.hash(), a.capture().hash());
}
