// The vertical divider through the real DLL in the test container: its forced width, its two
// line colours on either side of the version rule, a BACKCOLOR that is announced but never
// saved, and what bad input and repeated work do.
#include <gtest/gtest.h>

#include <cmath>

#include "foundation/colors.h"
#include "foundation/metrics.h"
#include "support/control_test.h"
#include "support/fake_machine_key.h"
#include "support/resource_counts.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.lnev";

Variant ole(OleColor c) { return I4(static_cast<int32_t>(c)); }
OleColor colour(Hosted &h) { return static_cast<OleColor>(as_integer(h.get(L"BACKCOLOR"))); }

int divider_px() { return static_cast<int>(std::lround(30 / TwipsPerPixelX())); }

class DividerTest : public ControlTest {
protected:
    // The divider keeps its own width and tells its container so.
    DividerTest() { allow_self_sizing(form); }
    Hosted &divider(RECT pos = {10, 10, 30, 110}, Init init = Init::New, IUnknown *source = nullptr)
    {
        return place(kProgId, pos, init, source);
    }
    // The colours of the two lines, read from the picture at every row.
    static void expect_lines(Bitmap &b, Rgb dark, Rgb light)
    {
        EXPECT_EQ(b.height(), b.count_column(0, dark));
        EXPECT_EQ(b.height(), b.count_column(1, light));
    }
};

} // namespace

TEST_F(DividerTest, StaysThirtyTwipsWideWhateverTheHostAsks)
{
    // 20 pixels are 300 twips at 96 DPI.
    Hosted &d = divider({10, 10, 30, 110});
    EXPECT_EQ(divider_px(), extent_px(d).cx);
    EXPECT_EQ(100, extent_px(d).cy);
    d.activate();
    RECT r{};
    GetWindowRect(d.hwnd(), &r);
    EXPECT_EQ(divider_px(), r.right - r.left);
    d.move({0, 0, 400, 60});
    GetWindowRect(d.hwnd(), &r);
    EXPECT_EQ(divider_px(), r.right - r.left);
    EXPECT_EQ(60, r.bottom - r.top);
    d.move({0, 0, 0, 0});
    d.move({5, 5, -100, 3});
    UpdateWindow(d.hwnd());
    GetWindowRect(d.hwnd(), &r);
    EXPECT_EQ(divider_px(), r.right - r.left);
}

TEST_F(DividerTest, OnNewerSystemsBothLinesComeFromTheButtonFace)
{
    Hosted &d = divider();
    FakeMachineKey machine;
    machine.set(kWindowsNtKey, L"CurrentVersion", L"5.1");
    d.move({10, 10, 60, 110}); // any layout reads the version again
    Bitmap b = d.render(divider_px(), 100);
    const Rgb face = GetSysColor(COLOR_BTNFACE);
    expect_lines(b, AdjustColor(face, -25, true), AdjustColor(face, 25, true));
    b.save_png(output_path(L"lnev-5.1.png"));
    // The first key wins over the NT one, and any text above 4.99 counts.
    machine.set(kWindowsKey, L"VersionNumber", L"4.995 beta");
    d.move({10, 10, 60, 110});
    Bitmap c = d.render(divider_px(), 100);
    expect_lines(c, AdjustColor(face, -25, true), AdjustColor(face, 25, true));
}

TEST_F(DividerTest, OnOlderSystemsTheLinesAreTheSystemShadowAndHighlight)
{
    Hosted &d = divider();
    FakeMachineKey machine;
    for (const wchar_t *version : {L"4.0", L"4.99", L"not a number", L""}) {
        machine.set(kWindowsKey, L"VersionNumber", version);
        machine.set(kWindowsNtKey, L"CurrentVersion", version);
        d.move({10, 10, 60, 110});
        Bitmap b = d.render(divider_px(), 100);
        expect_lines(b, GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_3DHILIGHT));
    }
    // And back: the colours follow the version at every layout.
    machine.set(kWindowsKey, L"VersionNumber", L"6.0");
    d.move({10, 10, 60, 110});
    const Rgb face = GetSysColor(COLOR_BTNFACE);
    Bitmap b = d.render(divider_px(), 100);
    expect_lines(b, AdjustColor(face, -25, true), AdjustColor(face, 25, true));
}

TEST_F(DividerTest, BackColorIsAnnouncedButNeverSaved)
{
    Hosted &d = divider();
    d.put(L"BACKCOLOR", ole(0x000000FF));
    EXPECT_EQ(std::vector<std::wstring>{L"BACKCOLOR"}, d.log().changes);
    EXPECT_EQ(0x000000FFu, colour(d));
    ComPtr<Bag> bag = d.save_bag();
    EXPECT_TRUE(bag->writes.empty());
    Hosted &again = divider({40, 10, 60, 110}, Init::FromBag, bag.get());
    EXPECT_TRUE(bag->reads.empty()); // restoring reads nothing either
    EXPECT_EQ(0x8000000Fu, colour(again));
    ComPtr<IStream> stream = d.save_stream();
    Hosted &from_stream = divider({70, 10, 90, 110}, Init::FromStream, stream.get());
    EXPECT_EQ(0x8000000Fu, colour(from_stream));
    // ColBACK changes nothing that shows and announces nothing.
    d.log().changes.clear();
    EXPECT_EQ(S_OK, (d.call(L"ColBACK", {ole(0x0000FF00)}), d.last_result()));
    EXPECT_TRUE(d.log().changes.empty());
    EXPECT_EQ(0x000000FFu, colour(d));
}

TEST_F(DividerTest, BadColoursAreSkipped)
{
    Hosted &d = divider();
    EXPECT_EQ(S_OK, d.put(L"BACKCOLOR", ole(0x7F000000)));
    EXPECT_EQ(0x8000000Fu, colour(d));
    EXPECT_EQ(std::vector<std::wstring>{L"BACKCOLOR"}, d.log().changes); // still announced
    d.call(L"ColBACK", {ole(0x800000FF)});
    EXPECT_EQ(S_OK, d.last_result());
    d.call(L"ColBACK", {Str(L"red")});
    EXPECT_EQ(S_OK, d.last_result());
    d.call(L"ColBACK", {});
    EXPECT_TRUE(FAILED(d.last_result())); // a missing argument is the caller's error
    d.render(divider_px(), 100);
}

TEST_F(DividerTest, RepeatedResizeAndPaintLeaveNoObjectsBehind)
{
    ASSERT_TRUE(DllResourceCounter().installed()); // counting from before the divider exists
    Hosted &d = divider();
    d.activate();
    UpdateWindow(d.hwnd());
    pump();
    ResourceSnapshot before;
    for (int i = 0; i < 2000; ++i) {
        d.move({0, 0, 2 + i % 40, 20 + i % 300});
        InvalidateRect(d.hwnd(), nullptr, FALSE);
        UpdateWindow(d.hwnd());
    }
    pump();
    EXPECT_EQ(std::vector<std::string>{}, before.changes());
}
