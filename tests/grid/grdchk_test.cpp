// The grid check box through the real DLL in the test container: its two value keys, the
// inner check box's events passed on through real messages, its place a little left of the
// centre, what keeps it out of hosts' toolboxes, and bad input.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "foundation/metrics.h"
#include "support/control_test.h"
#include "support/resource_counts.h"
#include "tarnctls_h.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.grdchk";
const std::vector<std::wstring> kKeys = {L"ENABLED", L"VALUE", L"Value", L"BackColor"};

Variant ole(OleColor c) { return I4(static_cast<int32_t>(c)); }
long value(Hosted &h) { return static_cast<long>(as_integer(h.get(L"Value"))); }
HWND check_box(Hosted &h) { return FindWindowExW(h.hwnd(), nullptr, L"Button", nullptr); }

// Value, Enabled and BackColor: what the control keeps.
using State = std::tuple<long, bool, OleColor>;
State state(Hosted &h)
{
    return {value(h), as_integer(h.get(L"Enabled")) != 0, static_cast<OleColor>(as_integer(h.get(L"BACKCOLOR")))};
}
const State kNew{0, true, 0x8000000F}; // unchecked, enabled, on the button face

class GridCheckTest : public ControlTest {
protected:
    Hosted &active(RECT pos = {10, 10, 110, 27})
    {
        Hosted &h = place(kProgId, pos);
        EXPECT_EQ(S_OK, h.activate());
        allow_focus(h);
        EXPECT_TRUE(check_box(h));
        return h;
    }
};

} // namespace

TEST_F(GridCheckTest, BothValueKeysAreWrittenAndTheLaterOneReadDecides)
{
    Hosted &c = place(kProgId);
    EXPECT_EQ(kNew, state(c));
    EXPECT_TRUE(c.save_bag()->keys().empty()); // every key equals its default
    c.put(L"Value", I2(1));
    c.put(L"Enabled", Bool(false));
    c.put(L"BACKCOLOR", ole(0x00112233));
    EXPECT_EQ((std::vector<std::wstring>{L"Value", L"ENABLED", L"BackColor"}), c.log().changes);
    ComPtr<Bag> bag = c.save_bag();
    EXPECT_EQ(kKeys, bag->writes);
    EXPECT_EQ(1, as_integer(bag->get(L"VALUE")));
    EXPECT_EQ(1, as_integer(bag->get(L"Value")));
    const State saved{1, false, 0x00112233};
    EXPECT_EQ(saved, state(place(kProgId, {10, 40, 110, 57}, Init::FromBag, bag.get())));
    EXPECT_EQ(kKeys, bag->reads);
    ComPtr<IStream> stream = c.save_stream();
    EXPECT_EQ(saved, state(place(kProgId, {10, 70, 110, 87}, Init::FromStream, stream.get())));

    // Different values under the two keys: "Value", read last, decides; missing, it unchecks.
    LONG top = 100;
    for (auto [upper, lower, want] : {std::tuple{1, 0, 0L}, std::tuple{0, 1, 1L}, std::tuple{1, -1, 0L}}) {
        ComPtr<Bag> mixed = Bag::Create();
        mixed->set(L"VALUE", I2(static_cast<int16_t>(upper)));
        if (lower >= 0) mixed->set(L"Value", I2(static_cast<int16_t>(lower)));
        EXPECT_EQ(want, value(place(kProgId, {10, top, 110, top + 17}, Init::FromBag, mixed.get())));
        top += 30;
    }
}

TEST_F(GridCheckTest, BadValuesOfAnyTypeAreRefusedQuietly)
{
    Hosted &c = place(kProgId);
    c.put(L"Value", I2(1));
    for (int16_t bad : {2, -1, 32767}) EXPECT_EQ(S_OK, c.put(L"Value", I2(bad)));
    EXPECT_EQ(S_OK, c.put(L"Value", Str(L"checked")));
    EXPECT_EQ(S_OK, c.put(L"BACKCOLOR", ole(0x7F000000)));
    EXPECT_EQ(State(1, true, 0x8000000F), state(c));
    EXPECT_EQ(std::vector<std::wstring>{L"Click"}, c.log().event_names()); // the one real change
    ComPtr<Bag> bag = Bag::Create();
    bag->set(L"VALUE", I2(7));
    bag->set(L"Value", Str(L"yes"));
    bag->set(L"ENABLED", R8(1e300));
    bag->set(L"BackColor", Str(L"red"));
    Hosted &odd = place(kProgId, {10, 40, 110, 57}, Init::FromBag, bag.get());
    EXPECT_EQ(S_OK, odd.init_result());
    EXPECT_EQ(kNew, state(odd));
}

TEST_F(GridCheckTest, TheCheckBoxsEventsArriveUnchanged)
{
    Hosted &c = active();
    HWND box = check_box(c);
    c.log().clear_events();
    test::mouse(box, WM_MOUSEMOVE, 5, 6);
    click(box, 5, 6);
    const std::wstring at = L"," + twips_text(5, 6) + L")";
    EXPECT_EQ((std::vector<std::wstring>{L"MouseMove(0,0" + at, L"MouseDown(1,0" + at, L"MouseUp(1,0" + at, L"Click"}),
              c.log().event_texts());
    EXPECT_EQ(1, value(c));
    // The space bar: KeyDown, KeyPress, KeyUp with the check box's arguments, and the toggle.
    c.log().clear_events();
    SendMessageW(box, WM_KEYDOWN, VK_SPACE, 1);
    SendMessageW(box, WM_CHAR, L' ', 1);
    SendMessageW(box, WM_KEYUP, VK_SPACE, 0xC0000001);
    EXPECT_EQ((std::vector<std::wstring>{L"KeyDown(32,0)", L"KeyPress(32)", L"KeyUp(32,0)", L"Click"}),
              c.log().event_texts());
    EXPECT_EQ(0, value(c));
    // A host that clears the key code swallows the key: no toggle.
    c.log().on_event = [](const std::wstring &name, DISPPARAMS *params) {
        if (name == L"KeyDown" || name == L"KeyUp") *V_I2REF(&params->rgvarg[1]) = 0;
    };
    c.log().clear_events();
    SendMessageW(box, WM_KEYDOWN, VK_SPACE, 1);
    SendMessageW(box, WM_KEYUP, VK_SPACE, 0xC0000001);
    EXPECT_EQ((std::vector<std::wstring>{L"KeyDown", L"KeyUp"}), c.log().event_names());
    EXPECT_EQ(0, value(c));
    // Disabled: no input reaches it.
    c.put(L"Enabled", Bool(false));
    EXPECT_FALSE(IsWindowEnabled(box));
}

TEST_F(GridCheckTest, SitsALittleLeftOfTheCentreEvenOutsideANarrowCell)
{
    Hosted &c = active({10, 10, 110, 27});
    HWND box = check_box(c);
    const double tpp = TwipsPerPixelX();
    auto expected_left = [&](int width_px) {
        return static_cast<LONG>(std::floor(((width_px * tpp - 225) - 60) * 0.5 / tpp + 1e-6));
    };
    EXPECT_EQ(expected_left(100), placement(box).left);
    c.move({10, 10, 40, 27});
    EXPECT_EQ(expected_left(30), placement(box).left);
    c.move({10, 10, 12, 27}); // narrower than the box and 60 twips
    EXPECT_EQ(expected_left(2), placement(box).left);
    c.move({10, 10, 10, 10});
    c.move({10, 10, 9, 5});
    UpdateWindow(c.hwnd());
}

TEST_F(GridCheckTest, ItStaysOutOfHostsToolboxes)
{
    wchar_t clsid[64];
    StringFromGUID2(CLSID_grdchk, clsid, 64);
    const std::wstring key = std::wstring(L"CLSID\\") + clsid;
    HKEY k = nullptr;
    EXPECT_NE(ERROR_SUCCESS, RegOpenKeyExW(HKEY_CLASSES_ROOT, (key + L"\\Control").c_str(), 0, KEY_READ, &k));
    EXPECT_NE(ERROR_SUCCESS, RegOpenKeyExW(HKEY_CLASSES_ROOT, (key + L"\\ToolboxBitmap32").c_str(), 0, KEY_READ, &k));
    // In the type library: hidden, and not flagged as a control.
    Hosted &c = place(kProgId);
    ComPtr<ITypeInfo> cls;
    ASSERT_EQ(S_OK, c.as<IProvideClassInfo>(IID_IProvideClassInfo)->GetClassInfo(cls.put()));
    TYPEATTR *attr = nullptr;
    ASSERT_EQ(S_OK, cls->GetTypeAttr(&attr));
    EXPECT_TRUE(attr->wTypeFlags & TYPEFLAG_FHIDDEN);
    EXPECT_FALSE(attr->wTypeFlags & TYPEFLAG_FCONTROL);
    EXPECT_TRUE(attr->wTypeFlags & TYPEFLAG_FCANCREATE);
    cls->ReleaseTypeAttr(attr);
}

TEST_F(GridCheckTest, DrawsTheBoxOnTheCellsColourAndLeavesNothingBehind)
{
    ASSERT_TRUE(DllResourceCounter().installed()); // counting from before the control exists
    Hosted &c = active({0, 0, 100, 17});
    c.put(L"BACKCOLOR", ole(0x0000FFFF));
    c.put(L"Value", I2(1));
    Bitmap b = c.render(100, 17);
    b.save_png(output_path(L"grdchk.png"));
    EXPECT_EQ(0x0000FFFFu, b.pixel(1, 1));
    EXPECT_EQ(0x0000FFFFu, b.pixel(98, 15));
    EXPECT_GT(b.count(0), 5); // the check mark
    UpdateWindow(c.hwnd());
    pump();
    ResourceSnapshot before;
    for (int i = 0; i < 1000; ++i) {
        c.move({0, 0, 20 + i % 200, 17});
        c.put(L"BACKCOLOR", ole(i % 2 ? 0x0000FFFF : 0x80000005));
        if (i % 10 == 0) c.render(100, 17);
        UpdateWindow(c.hwnd());
    }
    pump();
    EXPECT_EQ(std::vector<std::string>{}, before.changes());
}
