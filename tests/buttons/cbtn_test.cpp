// The button through the real DLL in the test container: its properties and their keys (with
// the deliberate asymmetries), the three persistence forms, bad input, the type library's
// enumeration, the faces it paints, its window shapes and its resources.
#include <gtest/gtest.h>
#include <oleacc.h>

#include <limits>

#include "buttons/button_test.h"
#include "foundation/colors.h"
#include "foundation/font_object.h"
#include "support/resource_counts.h"

using namespace tarn;
using namespace tarn::test;

namespace {

using Values = std::vector<std::pair<const wchar_t *, Variant>>;

bool has_picture(Hosted &h, const wchar_t *name)
{
    Variant v = h.get(name);
    return v.vt() == VT_DISPATCH && V_DISPATCH(v.get());
}
void put_all(Hosted &b, const Values &values)
{
    for (auto &[name, value] : values) b.put(name, value);
}
// Each property reads back as the same text as its value.
void expect_values(Hosted &b, const Values &values)
{
    for (auto &[name, value] : values) EXPECT_EQ(as_string(value), as_string(b.get(name))) << narrow(name);
}

const std::vector<std::wstring> kSaveOrder = {
    L"MASKHLIGHT", L"PICTURE", L"PICTUREDIS", L"BTYPE", L"TOOLTIP", L"TEXT", L"ENABLED", L"BACKCOLORCUST",
    L"FONT", L"FOCUSRECT", L"SHOWPICTURE", L"BACKCOLOR", L"FORECOLOR", L"MouseIcon", L"MousePointer"};
const std::vector<std::wstring> kRestoreOrder = {
    L"FONT", L"MASKHLIGHTCOLOR", L"BTYPE", L"TEXT", L"TOOLTIP", L"ENABLED", L"BACKCOLORCUST", L"PICTURE",
    L"FOCUSRECT", L"SHOWPICTURE", L"BACKCOLOR", L"FORECOLOR", L"PICTUREDIS", L"MouseIcon", L"MouseIcon",
    L"MousePointer", L"MousePointer"};

// Every default but the caption's. The colours are resolved RGB, not the system-colour
// references: they stay when the system changes.
void expect_defaults(Hosted &b)
{
    expect_values(b, {{L"ButtonType", I4(1)}, {L"BACKCOLOR", ole_colour(sys(COLOR_BTNFACE))},
                      {L"ForeColor", ole_colour(sys(COLOR_BTNTEXT))}, {L"MaskHLightColor", ole_colour(0x8000000F)},
                      {L"Enabled", Bool(true)}, {L"FocusRect", Bool(true)}, {L"PictureVisible", Bool(false)},
                      {L"BackColorCUSTOM", Bool(false)}, {L"ToolTip", Str(L"")}, {L"MousePointer", I2(0)}});
    EXPECT_FALSE(has_picture(b, L"Picture"));
    EXPECT_EQ(VT_DISPATCH, b.get(L"Font").vt());
}

// What set_everything gives besides a font and the two pictures.
const Values kEverything = {
    {L"BACKCOLOR", ole_colour(0x00C0FFEE)}, {L"BackColorCUSTOM", Bool(true)}, {L"ButtonType", I4(11)},
    {L"CAPTION", Str(L"\u00c4pfel & \u65e5\u672c")}, {L"Enabled", Bool(false)}, {L"FocusRect", Bool(false)},
    {L"ForeColor", ole_colour(0x000000FF)}, {L"PictureVisible", Bool(true)}, {L"ToolTip", Str(L"Saves \u20ac")},
    {L"MousePointer", I2(2)}};

void set_everything(Hosted &b)
{
    put_all(b, kEverything);
    b.putref(L"Font", make_font(L"Tahoma", 11, true).get());
    b.putref(L"Picture", solid_picture(16, 16, RGB(0, 200, 0)).get());
    b.putref(L"PictureDisabled", solid_picture(16, 16, RGB(100, 100, 100)).get());
}

void expect_everything(Hosted &b)
{
    expect_values(b, kEverything);
    FontSpec font = FontSpecOf(V_DISPATCH(b.get(L"Font").get()));
    EXPECT_EQ(L"Tahoma", font.name);
    EXPECT_TRUE(font.bold);
    EXPECT_TRUE(has_picture(b, L"Picture"));
    EXPECT_TRUE(has_picture(b, L"PictureDisabled"));
    // Written as MASKHLIGHT, read as MASKHLIGHTCOLOR: never comes back.
    expect_values(b, {{L"MaskHLightColor", ole_colour(0x8000000F)}});
}

} // namespace

// ---------------------------------------------------------------- properties, keys, persistence

TEST_F(ButtonTest, PropertiesHaveTheirDefaultsAndKeysThroughEveryPersistenceForm)
{
    Hosted &b = place(kButton);
    ComPtr<Bag> empty = Bag::Create(), wrong = Bag::Create();
    Variant null_value;
    V_VT(null_value.put()) = VT_NULL;
    for (auto &[key, value] : Values{{L"BTYPE", Str(L"abc")}, {L"TEXT", I4(12)}, {L"ENABLED", Str(L"maybe")},
                                     {L"PICTURE", Str(L"C:\\missing.bmp")}, {L"FONT", R8(3.5)},
                                     {L"MousePointer", R8(1e10)}, {L"BACKCOLOR", Str(L"red")},
                                     {L"FORECOLOR", null_value}, {L"MouseIcon", I4(5)}})
        wrong->set(key, value);
    Hosted &from_empty = place(kButton, {10, 50, 110, 75}, Init::FromBag, empty.get());
    Hosted &from_wrong = place(kButton, {10, 90, 110, 115}, Init::FromBag, wrong.get());
    EXPECT_EQ(kRestoreOrder, empty->reads);
    EXPECT_EQ(S_OK, from_wrong.init_result());
    for (Hosted *h : {&b, &from_empty, &from_wrong}) {
        SCOPED_TRACE(h == &b ? "new" : h == &from_empty ? "from an empty bag" : "from wrong types");
        EXPECT_EQ(h == &from_wrong ? L"12" : L"Button", as_string(h->get(L"CAPTION")));
        expect_defaults(*h);
    }
    // Every key in its order, each once, even at the defaults.
    EXPECT_EQ(kSaveOrder, b.save_bag()->writes);
    from_wrong.put(L"PictureVisible", Bool(true)); // a picture box with nothing in it
    from_wrong.render(100, 25);
    // No window before activation; then the handle, a Long in both builds (OLE_HANDLE).
    EXPECT_EQ(0, as_integer(b.get(L"hwnd")));
    b.activate();
    Variant h = b.get(L"hwnd");
    EXPECT_EQ(VT_I4, h.vt());
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(b.hwnd()), static_cast<LONG_PTR>(as_integer(h)));

    // Every write announced, saved and restored, with the keys' asymmetries.
    set_everything(b);
    b.putref(L"MouseIcon", solid_picture(8, 8, 0).get());
    b.put(L"MaskHLightColor", ole_colour(0x00123456));
    // MousePointer and MouseIcon write without a notice; PictureVisible announces
    // "PICTUREVisible", MaskHLightColor "MASKHLIGHTCOLOR".
    const std::vector<std::wstring> expected = {L"BACKCOLOR", L"BACKCOLORCUST", L"BTYPE", L"TEXT", L"ENABLED",
                                                L"FOCUSRECT", L"FORECOLOR", L"PICTUREVisible", L"TOOLTIP",
                                                L"FONT", L"PICTURE", L"PICTUREDIS", L"MASKHLIGHTCOLOR"};
    EXPECT_EQ(expected, b.log().changes);
    // The key names the member under its other spelling: the DISPID is still found.
    EXPECT_EQ(7, b.log().changed_ids[7]);
    ComPtr<Bag> bag = b.save_bag();
    EXPECT_EQ(0x00123456, as_integer(bag->get(L"MASKHLIGHT")));
    expect_everything(place(kButton, {10, 130, 110, 155}, Init::FromBag, bag.get()));
    std::vector<BYTE> bytes = stream_bytes(b.save_stream().get());
    expect_everything(place(kButton, {10, 170, 110, 195}, Init::FromStream, stream_of(bytes).get()));
    // Cut short or garbage: loaded as far as it goes, never failing.
    auto load = [&](const std::vector<BYTE> &data) {
        Hosted g(form, kButton, {0, 0, 100, 25}, Init::FromStream, stream_of(data).get());
        EXPECT_EQ(S_OK, g.init_result());
        std::wstring caption = as_string(g.get(L"CAPTION"));
        g.render(60, 20);
        EXPECT_EQ(0u, g.close());
        return caption;
    };
    for (size_t cut = 0; cut < bytes.size(); cut += 11)
        load(std::vector<BYTE>(bytes.begin(), bytes.begin() + static_cast<long>(cut)));
    EXPECT_EQ(L"Button", load({}));
    std::vector<BYTE> garbage(300);
    for (size_t i = 0; i < garbage.size(); ++i) garbage[i] = static_cast<BYTE>(i * 131 >> 2);
    EXPECT_EQ(L"Button", load(garbage));
}

TEST_F(ButtonTest, BadValuesHugeTextsAndOddSizesAreHarmless)
{
    Hosted &b = active();
    for (int32_t t : {0, 15, -3, 32767, -32768, 7}) {
        EXPECT_EQ(S_OK, b.put(L"ButtonType", I4(t)));
        EXPECT_EQ(t, as_integer(b.get(L"ButtonType")));
    }
    // Beyond 16 bits the store fails and is skipped; the notice still goes out.
    b.log().changes.clear();
    EXPECT_EQ(S_OK, b.put(L"ButtonType", I4(70000)));
    EXPECT_EQ(std::vector<std::wstring>{L"BTYPE"}, b.log().changes);
    // Text that is no number cannot be converted: the call is skipped (resume next).
    EXPECT_EQ(S_OK, b.put(L"ButtonType", Str(L"Windows XP")));
    EXPECT_EQ(7, as_integer(b.get(L"ButtonType")));
    // Only pictures are taken as pictures; Nothing clears one.
    EXPECT_EQ(S_OK, b.putref(L"Picture", make_font(L"Arial", 8).get()));
    EXPECT_FALSE(has_picture(b, L"Picture"));
    EXPECT_EQ(S_OK, b.put(L"Picture", Str(L"C:\\nowhere\\missing.bmp")));
    EXPECT_EQ(S_OK, b.put(L"Font", I4(3)));
    EXPECT_EQ(S_OK, b.put(L"MouseIcon", Str(L"x")));
    b.putref(L"Picture", solid_picture(4, 4, 0).get());
    EXPECT_TRUE(has_picture(b, L"Picture"));
    EXPECT_EQ(S_OK, b.putref(L"Picture", nullptr));
    EXPECT_FALSE(has_picture(b, L"Picture"));
    std::wstring huge(100000, L'W');
    huge[7] = L'\t';
    EXPECT_EQ(S_OK, b.put(L"CAPTION", Str(huge)));
    EXPECT_EQ(S_OK, b.put(L"ToolTip", Str(huge)));
    EXPECT_EQ(huge, as_string(b.get(L"CAPTION")));
    for (int t = 0; t <= 15; ++t) {
        b.put(L"ButtonType", I4(t));
        b.render(100, 25);
        UpdateWindow(b.hwnd());
    }
    b.put(L"PictureVisible", Bool(true));
    b.putref(L"Picture", solid_picture(300, 300, RGB(0, 0, 255)).get());
    for (RECT r : {RECT{0, 0, 0, 0}, RECT{0, 0, 1, 1}, RECT{5, 5, -100, 3}, RECT{0, 0, 3000, 2}, RECT{0, 0, 2, 900}}) {
        b.move(r);
        UpdateWindow(b.hwnd());
        b.render(10, 10);
    }
    SIZEL negative{-5000, -100};
    EXPECT_EQ(S_OK, b.as<IOleObject>(IID_IOleObject)->SetExtent(DVASPECT_CONTENT, &negative));
    b.call(L"MousePosn", {I2(1), I2(0), R4(-1e30f), R4(1e30f)});
    b.call(L"MousePosn", {I2(0), I2(0), R4(std::numeric_limits<float>::quiet_NaN()), R4(5)});
    b.call(L"MousePosn", {Str(L"left"), I2(0), R4(1), R4(1)});
    b.call(L"MousePosn", {});
    b.move({0, 0, 100, 25});
    EXPECT_EQ(S_OK, b.put(L"CAPTION", Str(L"ok")));
}

TEST_F(ButtonTest, TheTypeLibraryNamesTheLooksWithSpaces)
{
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(S_OK, place(kButton).dispatch()->GetTypeInfo(0, 0, info.put()));
    ComPtr<ITypeLib> lib;
    UINT index = 0;
    ASSERT_EQ(S_OK, info->GetContainingTypeLib(lib.put(), &index));
    for (std::wstring name : {L"Button", L"Button Flat", L"Combo Box", L"Combo Box Flat", L"Toolbar", L"Toolbar Checked",
                              L"Hyperlink", L"Hyperlink White", L"Spin Button", L"Spin Button Pressed", L"Windows XP",
                              L"Toolbar Tab Select", L"Windows XP Pressed", L"Windows XP Toolbar"}) {
        BOOL found = FALSE;
        EXPECT_EQ(S_OK, lib->IsName(name.data(), 0, &found));
        EXPECT_TRUE(found) << narrow(name);
    }
}

// ---------------------------------------------------------------- painting

TEST_F(ButtonTest, FacesPlaceTheCaptionEngraveItWhenDisabledAndKeepACustomBackColor)
{
    // The combo-box look draws its caption left-aligned in the caption rectangle.
    Hosted &b = place(kButton, {0, 0, 160, 25});
    put_all(b, {{L"ButtonType", I4(3)}, {L"CAPTION", Str(L"IIII")}, {L"ForeColor", ole_colour(0x000000FF)},
                {L"BackColorCUSTOM", Bool(true)}, {L"BACKCOLOR", ole_colour(0x00FFFFFF)}});
    int plain = first_red_column(b.render(160, 25), 3, 22);
    ASSERT_GE(plain, 2);
    EXPECT_LE(plain, 4); // 2 plus the glyph's own bearing
    b.putref(L"Picture", solid_picture(16, 16, RGB(0, 160, 0)).get());
    b.put(L"PictureVisible", Bool(true));
    Bitmap fits = b.render(160, 25);
    EXPECT_EQ(plain + 21, first_red_column(fits, 3, 22));
    EXPECT_EQ(RGB(0, 160, 0), fits.pixel(10, 12)); // the picture at the left
    b.putref(L"Picture", solid_picture(40, 40, RGB(0, 160, 0)).get()); // 40 - 8 is not below 25
    EXPECT_EQ(plain + 24, first_red_column(b.render(160, 25), 3, 22));

    // Disabled, the plain look engraves its caption in highlight and shadow; the raised border stays.
    put_all(b, {{L"ButtonType", I4(1)}, {L"CAPTION", Str(L"MMMM")}, {L"PictureVisible", Bool(false)},
                {L"BackColorCUSTOM", Bool(false)}});
    Bitmap on = b.render(160, 25);
    EXPECT_GT(on.count(0x000000FF), 10);
    b.put(L"Enabled", Bool(false));
    Bitmap off = b.render(160, 25);
    EXPECT_EQ(0, off.count(0x000000FF));
    EXPECT_GT(off.count(sys(COLOR_BTNHIGHLIGHT)), on.count(sys(COLOR_BTNHIGHLIGHT)) + 10);
    EXPECT_GT(off.count(sys(COLOR_BTNSHADOW)), on.count(sys(COLOR_BTNSHADOW)) + 10);
    EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), off.pixel(0, 0));
    EXPECT_EQ(sys(COLOR_3DDKSHADOW), off.pixel(159, 24));
    // A picture: greyed when no disabled picture is given, the disabled picture when it is.
    b.put(L"PictureVisible", Bool(true));
    b.putref(L"Picture", solid_picture(16, 16, RGB(0, 0, 255)).get());
    Rgb greyed = b.render(160, 25).pixel(10, 12);
    EXPECT_EQ(red_of(greyed), green_of(greyed));
    EXPECT_EQ(green_of(greyed), blue_of(greyed));
    b.putref(L"PictureDisabled", solid_picture(16, 16, RGB(200, 0, 200)).get());
    EXPECT_EQ(RGB(200, 0, 200), b.render(160, 25).pixel(10, 12));
    b.put(L"Enabled", Bool(true));
    EXPECT_EQ(RGB(0, 0, 255), b.render(160, 25).pixel(10, 12));

    // BackColorCUSTOM decides whether the look keeps BACKCOLOR; the border keeps the system colours.
    put_all(b, {{L"CAPTION", Str(L"")}, {L"PictureVisible", Bool(false)}, {L"BACKCOLOR", ole_colour(0x00C0FFEE)}});
    EXPECT_EQ(sys(COLOR_BTNFACE), b.render(160, 25).pixel(50, 12));
    b.put(L"BackColorCUSTOM", Bool(true));
    Bitmap custom = b.render(160, 25);
    EXPECT_EQ(0x00C0FFEEu, custom.pixel(50, 12));
    EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), custom.pixel(0, 0));
    // A system colour reference as the back colour works too.
    b.put(L"BACKCOLOR", ole_colour(0x80000005));
    EXPECT_EQ(sys(COLOR_WINDOW), b.render(160, 25).pixel(50, 12));
    // Outside 1 to 14 only the background is drawn, whatever the flag.
    put_all(b, {{L"BACKCOLOR", ole_colour(0x00C0FFEE)}, {L"BackColorCUSTOM", Bool(false)}, {L"ButtonType", I4(15)},
                {L"CAPTION", Str(L"WWW")}});
    EXPECT_EQ(160 * 25, b.render(160, 25).count(0x00C0FFEE));
    // An invalid OLE colour draws as button face.
    b.put(L"BACKCOLOR", ole_colour(0x7F000001));
    EXPECT_EQ(160 * 25, b.render(160, 25).count(sys(COLOR_BTNFACE)));
}

TEST_F(ButtonTest, EveryLooksWindowPaintsAsItsViewAtAnyDpiWithItsOwnFacesShapeAndCursor)
{
    Hosted &b = active({0, 0, 100, 25});
    HWND w = b.hwnd();
    put_all(b, {{L"CAPTION", Str(L"Face")}, {L"FocusRect", Bool(false)}}); // the click focuses the button
    // Looks whose model shows a hover face, and all but the latched ones a pressed face.
    for (int t = 1; t <= 14; ++t) {
        b.put(L"ButtonType", I4(t));
        b.call(L"MousePosnONOUT");
        uint32_t normal = b.capture().hash();
        EXPECT_EQ(b.render(100, 25).hash(), normal) << "type " << t << ": the window as the view object";
        mouse(w, WM_MOUSEMOVE, 50, 12);
        uint32_t hover = b.capture().hash();
        mouse(w, WM_LBUTTONDOWN, 50, 12, MK_LBUTTON);
        uint32_t pressed = b.capture().hash();
        mouse(w, WM_LBUTTONUP, 50, 12);
        EXPECT_EQ(normal, b.capture().hash()) << "type " << t << ": back to normal after the release";
        bool hovers = t != 1 && t != 3 && t != 9 && t != 10;
        EXPECT_EQ(hovers, normal != hover) << "type " << t;
        EXPECT_NE(hover, pressed) << "type " << t;
    }
    // The window's shape and cursor follow the type.
    auto inside = [&](int type, int width, int height, int x, int y) {
        b.put(L"ButtonType", I4(type));
        b.move({0, 0, width, height});
        unique_region r(CreateRectRgn(0, 0, 0, 0));
        return GetWindowRgn(w, r.get()) == ERROR || PtInRegion(r.get(), x, y);
    };
    EXPECT_TRUE(inside(1, 100, 25, 0, 0));
    // The rounded looks cut their corners.
    EXPECT_FALSE(inside(13, 100, 25, 0, 0));
    EXPECT_FALSE(inside(11, 100, 25, 0, 0));
    EXPECT_TRUE(inside(11, 100, 25, 50, 0));
    // The tab is open at the bottom, also after a resize.
    EXPECT_FALSE(inside(12, 100, 25, 0, 0));
    EXPECT_TRUE(inside(12, 100, 25, 0, 24));
    EXPECT_FALSE(inside(12, 60, 40, 59, 0));
    EXPECT_TRUE(inside(12, 60, 40, 59, 39));
    EXPECT_TRUE(inside(2, 60, 40, 59, 0));
    auto cursor = [&](int16_t pointer) {
        b.put(L"MousePointer", I2(pointer));
        SendMessageW(w, WM_SETCURSOR, reinterpret_cast<WPARAM>(w), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        return GetCursor();
    };
    EXPECT_EQ(LoadCursorW(nullptr, IDC_CROSS), cursor(2));
    EXPECT_EQ(LoadCursorW(nullptr, IDC_WAIT), cursor(11));
    // A link shows the hand by default; custom without an icon, the class cursor.
    b.put(L"ButtonType", I4(7));
    EXPECT_EQ(LoadCursorW(nullptr, IDC_HAND), cursor(0));
    cursor(99);
}

// ---------------------------------------------------------------- accessibility

TEST_F(ButtonTest, ScreenReadersReadCaptionRoleStateAndDefaultAction)
{
    Hosted &b = active();
    // The shared tip window must not hold the DLL either.
    put_all(b, {{L"CAPTION", Str(L"Save")}, {L"ToolTip", Str(L"tip")}});
    ComPtr<IAccessible> acc;
    ASSERT_EQ(S_OK, AccessibleObjectFromWindow(b.hwnd(), OBJID_CLIENT, IID_IAccessible, acc.put_void()));
    const VARIANT self = *I4(CHILDID_SELF).get(), child = *I4(3).get();
    Bstr name, action;
    ASSERT_EQ(S_OK, acc->get_accName(self, name.put()));
    EXPECT_EQ(L"Save", name.str());
    ASSERT_EQ(S_OK, acc->get_accDefaultAction(self, action.put()));
    EXPECT_EQ(L"Press", action.str());
    Variant role;
    ASSERT_EQ(S_OK, acc->get_accRole(self, role.put()));
    EXPECT_EQ(ROLE_SYSTEM_PUSHBUTTON, V_I4(role.get()));
    auto state = [&] {
        Variant s;
        acc->get_accState(self, s.put());
        return V_I4(s.get());
    };
    SetFocus(b.hwnd());
    EXPECT_EQ(STATE_SYSTEM_FOCUSED, state() & (STATE_SYSTEM_FOCUSED | STATE_SYSTEM_UNAVAILABLE));
    mouse(b.hwnd(), WM_LBUTTONDOWN, 5, 5, MK_LBUTTON);
    EXPECT_TRUE(state() & STATE_SYSTEM_PRESSED);
    mouse(b.hwnd(), WM_LBUTTONUP, 5, 5);
    b.log().clear_events();
    EXPECT_EQ(S_OK, acc->accDoDefaultAction(self));
    EXPECT_EQ(std::vector<std::wstring>{L"Click"}, b.log().event_names());
    b.put(L"Enabled", Bool(false));
    EXPECT_TRUE(state() & STATE_SYSTEM_UNAVAILABLE);
    EXPECT_EQ(E_INVALIDARG, acc->get_accName(child, name.put()));
    // The object outlives the button without harm; once it goes too, the DLL can unload.
    close(b);
    EXPECT_EQ(CO_E_OBJNOTCONNECTED, acc->get_accName(self, name.put()));
    EXPECT_EQ(CO_E_OBJNOTCONNECTED, acc->accDoDefaultAction(self));
    acc.reset();
    CoFreeUnusedLibraries();
    EXPECT_EQ(S_OK, dll_can_unload_now());
}

// ---------------------------------------------------------------- resources

TEST_F(ButtonTest, TenThousandResizeAndPaintCyclesLeaveNoObjectsBehind)
{
    DllResourceCounter dll;
    ASSERT_TRUE(dll.installed());
    Hosted &b = active({0, 0, 100, 25});
    put_all(b, {{L"CAPTION", Str(L"Resize")}, {L"PictureVisible", Bool(true)}});
    b.putref(L"Picture", solid_picture(16, 16, RGB(0, 128, 0)).get());
    // Every look once first: what a look makes on first use (the dotted brush) it keeps.
    for (int t = 1; t <= 14; ++t) {
        b.put(L"ButtonType", I4(t));
        UpdateWindow(b.hwnd());
    }
    pump();
    ResourceSnapshot before;
    for (int i = 0; i < 10000; ++i) {
        if (i % 500 == 0) b.put(L"ButtonType", I4(1 + i / 500 % 14));
        b.move({0, 0, 60 + i % 150, 18 + i % 40});
        InvalidateRect(b.hwnd(), nullptr, FALSE);
        UpdateWindow(b.hwnd());
    }
    pump();
    EXPECT_EQ(std::vector<std::string>{}, before.changes());
}
