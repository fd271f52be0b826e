// The colour button through the real DLL in the test container: its keys with their defaults
// and deliberate asymmetries, choosing a colour with the mouse and the keys, the events'
// order, what keeps the pop-up shut and what closes it, and no handles left behind by 1,000
// openings.
#include <gtest/gtest.h>

#include <oleacc.h>

#include <algorithm>

#include "buttons/button_test.h"
#include "buttons/cbtnddp_palettes.h"
#include "support/resource_counts.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kColourButton[] = L"TarnControls.cbtnddp";

void key(HWND w, UINT msg, WPARAM vk) { SendMessageW(w, msg, vk, msg == WM_KEYUP ? 0xC0000001 : 1); }
void press(HWND w, WPARAM vk)
{
    key(w, WM_KEYDOWN, vk);
    key(w, WM_KEYUP, vk);
}

std::wstring events(Hosted &b)
{
    std::wstring all;
    for (const EventRecord &e : b.log().events) all += (all.empty() ? L"" : L" ") + e.text();
    b.log().clear_events();
    return all;
}

// The colour pop-up on the screen (a visible top-level window of this thread).
BOOL CALLBACK find_popup(HWND w, LPARAM out)
{
    wchar_t name[64] = {};
    GetClassNameW(w, name, 64);
    if (!IsWindowVisible(w) || std::wstring(name) != L"TarnControlsColourPopup") return TRUE;
    *reinterpret_cast<HWND *>(out) = w;
    return FALSE;
}

// The pop-up on the screen now (a top-level window of this thread), or null.
HWND shown_popup()
{
    HWND found = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), &find_popup, reinterpret_cast<LPARAM>(&found));
    return found;
}

// The pop-up as it paints itself.
Bitmap popup_picture(HWND p)
{
    RECT r{};
    GetClientRect(p, &r);
    Bitmap b(r.right, r.bottom);
    SendMessageW(p, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(b.dc()), PRF_CLIENT);
    return b;
}

// A point in the first column of the cells, half-way down, and one on lblCUSTOM at the bottom.
POINT a_cell(HWND p)
{
    RECT r{};
    GetClientRect(p, &r);
    return {13, r.bottom / 2};
}
POINT more_colors(HWND p)
{
    RECT r{};
    GetClientRect(p, &r);
    return {r.right / 2, r.bottom - 14};
}

class ColourButtonTest : public ButtonTest {
protected:
    Hosted &active(RECT pos = {10, 10, 110, 35}) { return ButtonTest::active(pos, kColourButton); }
};

} // namespace

TEST_F(ColourButtonTest, KeysDefaultsTheDoubleReadsAndTheMaskAsymmetry)
{
    ComPtr<Bag> empty = Bag::Create();
    Hosted &from_empty = place(kColourButton, {10, 10, 110, 35}, Init::FromBag, empty.get());
    const std::vector<std::wstring> reads = {
        L"FONT", L"MASKHLIGHTCOLOR", L"BUTTONTYPE", L"TEXT", L"TOOLTIP", L"ENABLED", L"BACKCOLORCUST", L"PICTURE",
        L"FOCUSRECT", L"SHOWPICTURE", L"BACKCOLOR", L"BACKCOLOR", L"FORECOLOR", L"FORECOLOR", L"PICTUREDISABLED",
        L"MouseIcon", L"MouseIcon", L"MousePointer", L"MousePointer", L"Palette", L"POPUPENABLED", L"SELECTEDCOLOR",
        L"ShowButtonCLR", L"FILLCOLOR"};
    EXPECT_EQ(reads, empty->reads);
    Hosted &fresh = place(kColourButton, {10, 50, 110, 75});
    struct Default {
        const wchar_t *name;
        Variant restored, fresh;
    };
    const Default defaults[] = {
        {L"Palette", I4(3), I4(3)},
        {L"PopupEnabled", Bool(true), Bool(true)},
        {L"SelectedColor", ole_colour(0), ole_colour(0)},
        {L"ShowButtonColor", Bool(true), Bool(true)},
        {L"ButtonType", I4(1), I4(1)},
        {L"FillColor", ole_colour(sys(COLOR_WINDOW)), ole_colour(sys(COLOR_WINDOW))},
        {L"BACKCOLOR", ole_colour(sys(COLOR_BTNFACE)), ole_colour(sys(COLOR_BTNFACE))},
        // The face's fore colour: the second read's default from a saved form, resolved when new.
        {L"ForeColor", ole_colour(0x80000012), ole_colour(sys(COLOR_BTNTEXT))},
        {L"MaskHLightColor", ole_colour(0x8000000F), ole_colour(0x8000000F)},
        {L"CAPTION", Str(L"Button"), Str(L"Button")},
    };
    for (const Default &d : defaults) {
        EXPECT_EQ(as_string(d.restored), as_string(from_empty.get(d.name))) << narrow(d.name);
        EXPECT_EQ(as_string(d.fresh), as_string(fresh.get(d.name))) << narrow(d.name);
    }

    // Every key saved and restored, through both persistence forms.
    const std::vector<std::pair<const wchar_t *, Variant>> values = {
        {L"Palette", I4(7)}, {L"PopupEnabled", Bool(false)}, {L"SelectedColor", ole_colour(0x00336699)},
        {L"ShowButtonColor", Bool(false)}, {L"ButtonType", I4(5)}, {L"FillColor", ole_colour(0x00ABCDEF)},
        {L"BACKCOLOR", ole_colour(0x00112233)}, {L"ForeColor", ole_colour(0x00445566)},
        {L"CAPTION", Str(L"Ink")}, {L"ToolTip", Str(L"Colour")}, {L"FocusRect", Bool(false)},
        {L"BackColorCUSTOM", Bool(true)}, {L"PictureVisible", Bool(true)}, {L"MaskHLightColor", ole_colour(0x00FF00FF)}};
    for (auto &[name, value] : values) fresh.put(name, value);
    fresh.putref(L"PictureDisabled", solid_picture(8, 8, RGB(9, 9, 9)).get());
    ComPtr<Bag> bag = fresh.save_bag();
    EXPECT_EQ(0x00FF00FF, as_integer(bag->get(L"MASKHLIGHT")));
    EXPECT_EQ(0, std::count(bag->writes.begin(), bag->writes.end(), L"MASKHLIGHTCOLOR"));
    std::vector<BYTE> bytes = stream_bytes(fresh.save_stream().get());
    Hosted &by_bag = place(kColourButton, {10, 90, 110, 115}, Init::FromBag, bag.get());
    Hosted &by_stream = place(kColourButton, {10, 130, 110, 155}, Init::FromStream, stream_of(bytes).get());
    for (Hosted *h : {&by_bag, &by_stream}) {
        for (auto &[name, value] : values) {
            // Written as MASKHLIGHT, read as MASKHLIGHTCOLOR: it never comes back.
            Variant expected = std::wstring(name) == L"MaskHLightColor" ? ole_colour(0x8000000F) : value;
            EXPECT_EQ(as_string(expected), as_string(h->get(name))) << narrow(name);
        }
        Variant pic = h->get(L"PictureDisabled");
        EXPECT_TRUE(pic.vt() == VT_DISPATCH && V_DISPATCH(pic.get()));
    }

    // The first reads of BACKCOLOR and FORECOLOR colour the pop-up's panel: without a saved
    // value the panel is the window colour while the face is button face; a saved value gives both.
    ComPtr<Bag> saved_back = Bag::Create();
    saved_back->set(L"BACKCOLOR", ole_colour(0x00203040));
    for (auto [source, panel] : {std::pair{empty.get(), sys(COLOR_WINDOW)}, std::pair{saved_back.get(), Rgb(0x00203040)}}) {
        Hosted &b = place(kColourButton, {120, 10, 220, 35}, Init::FromBag, source);
        b.activate();
        b.call(L"ShowPopUp");
        HWND p = shown_popup();
        ASSERT_TRUE(p);
        EXPECT_EQ(panel, popup_picture(p).pixel(0, 0));
        b.call(L"HidePopUp");
        close(b);
    }
    // Palette numbers: 0 to 11, named for the property browser; another number changes nothing.
    Hosted &b = from_empty;
    for (int32_t n : {0, 11, 12, -1, 1000000}) EXPECT_EQ(S_OK, b.put(L"Palette", I4(n)));
    EXPECT_EQ(11, as_integer(b.get(L"Palette")));
    ComPtr<IPerPropertyBrowsing> browse = b.as<IPerPropertyBrowsing>(IID_IPerPropertyBrowsing);
    ASSERT_TRUE(browse);
    CALPOLESTR names{};
    CADWORD cookies{};
    ASSERT_EQ(S_OK, browse->GetPredefinedStrings(15, &names, &cookies));
    ASSERT_EQ(static_cast<ULONG>(kPaletteCount), names.cElems);
    EXPECT_EQ(L"3 - " + PaletteName(3), std::wstring(names.pElems[3]));
    for (ULONG i = 0; i < names.cElems; ++i) CoTaskMemFree(names.pElems[i]);
    CoTaskMemFree(names.pElems);
    CoTaskMemFree(cookies.pElems);
}

TEST_F(ColourButtonTest, ChoosingWithTheMouseAndTheKeysRaisesTheEventsInOrderAndSetsSelectedColor)
{
    Hosted &b = active();
    HWND w = b.hwnd();
    click(w, 50, 12);
    EXPECT_EQ(L"MouseDown(1,0,50,12) MouseUp(1,0,50,12) Click PopUp", events(b));
    HWND p = shown_popup();
    ASSERT_TRUE(p);
    EXPECT_EQ(p, GetCapture()); // the pop-up keeps the capture the click released
    POINT c = a_cell(p);
    mouse(p, WM_MOUSEMOVE, c.x, c.y);
    EXPECT_EQ(L"ChangeActiveCol", events(b));
    const Variant picked = b.get(L"ActiveColor");
    EXPECT_FALSE(as_string(b.get(L"ActiveText")).empty());
    b.log().changes.clear();
    click(p, c.x, c.y);
    EXPECT_EQ(L"ChangeSelectedCol Change", events(b));
    EXPECT_EQ(as_integer(picked), as_integer(b.get(L"SelectedColor")));
    EXPECT_EQ(std::vector<std::wstring>{L"SELECTEDCOLOR"}, b.log().changes);
    EXPECT_FALSE(shown_popup());

    // The keys: Space opens it; the arrows start from the selected colour's cell and stay in
    // the pop-up (the focus does not move); Enter chooses.
    SetFocus(w);
    events(b);
    press(w, VK_SPACE);
    EXPECT_EQ(L"KeyDown(32,0) MouseDown(1,0,1,1) KeyUp(32,0) MouseUp(1,0,1,1) Click PopUp", events(b));
    key(w, WM_KEYDOWN, VK_RIGHT);
    EXPECT_EQ(as_integer(picked), as_integer(b.get(L"ActiveColor")));
    key(w, WM_KEYDOWN, VK_DOWN);
    const Variant below = b.get(L"ActiveColor");
    key(w, WM_KEYDOWN, VK_RETURN);
    EXPECT_EQ(L"KeyDown(39,0) ChangeActiveCol KeyDown(40,0) ChangeActiveCol KeyDown(13,0) ChangeSelectedCol Change",
              events(b));
    EXPECT_EQ(as_integer(below), as_integer(b.get(L"SelectedColor")));
    pump();
    EXPECT_EQ(w, GetFocus());
    // A Space the pop-up takes chooses, and its release does not click the button open again.
    press(w, VK_SPACE);
    events(b);
    key(w, WM_KEYDOWN, VK_LEFT);
    press(w, VK_SPACE);
    EXPECT_EQ(L"KeyDown(37,0) ChangeActiveCol KeyDown(32,0) ChangeSelectedCol Change KeyUp(32,0)", events(b));
    EXPECT_FALSE(shown_popup());
    // Escape and a click outside close it and raise nothing of their own.
    b.call(L"ShowPopUp");
    key(w, WM_KEYDOWN, VK_ESCAPE);
    EXPECT_FALSE(shown_popup());
    b.call(L"ShowPopUp");
    mouse(p, WM_LBUTTONDOWN, -30, -30, MK_LBUTTON);
    EXPECT_FALSE(shown_popup());
    EXPECT_EQ(L"PopUp KeyDown(27,0) PopUp", events(b));
    // More Colors... hands over to the host's dialog.
    b.call(L"ShowPopUp");
    POINT m = more_colors(p);
    mouse(p, WM_MOUSEMOVE, m.x, m.y);
    click(p, m.x, m.y);
    EXPECT_EQ(L"PopUp MoreClick", events(b));
}

TEST_F(ColourButtonTest, PopupEnabledKeepsItShutAndFocusLossClosesItWithFocusHidden)
{
    Hosted &b = active();
    HWND w = b.hwnd();
    b.put(L"PopupEnabled", Bool(false));
    click(w, 50, 12);
    b.call(L"ShowPopUp");
    EXPECT_EQ(L"MouseDown(1,0,50,12) MouseUp(1,0,50,12) Click", events(b));
    EXPECT_FALSE(shown_popup());

    b.put(L"PopupEnabled", Bool(true));
    b.call(L"ShowPopUp");
    ASSERT_TRUE(shown_popup());
    b.call(L"HidePopUp"); // closed by the host: no event
    EXPECT_FALSE(shown_popup());
    b.call(L"ShowPopUp");
    b.put(L"PopupEnabled", Bool(false)); // switched off while open: shut at once
    EXPECT_FALSE(shown_popup());
    EXPECT_EQ(L"PopUp PopUp", events(b));

    b.put(L"PopupEnabled", Bool(true));
    Hosted &other = active({10, 50, 110, 75});
    SetFocus(w);
    b.call(L"ShowPopUp");
    events(b);
    SetFocus(other.hwnd());
    EXPECT_FALSE(shown_popup());
    EXPECT_EQ(L"FocusHidden FocusLost MouseUp(1,0,0,0)", events(b));
    // Without a window there is nothing to open under.
    Hosted &windowless = place(kColourButton, {10, 90, 110, 115});
    windowless.call(L"ShowPopUp");
    EXPECT_FALSE(shown_popup());
    EXPECT_EQ(L"", events(windowless));
}

TEST_F(ColourButtonTest, AThousandOpeningsAndClosingsLeaveNoObjectsBehind)
{
    DllResourceCounter dll;
    ASSERT_TRUE(dll.installed());
    Hosted &b = active();
    HWND w = b.hwnd();
    b.call(L"ShowPopUp");
    b.call(L"HidePopUp");
    pump();
    ResourceSnapshot before;
    for (int i = 0; i < 1000; ++i) {
        if (i % 100 == 0) b.put(L"Palette", I4(i / 100));
        click(w, 50, 12);
        if (HWND p = shown_popup()) {
            UpdateWindow(p);
            if (i % 2) key(w, WM_KEYDOWN, VK_ESCAPE);
            else b.call(L"HidePopUp");
        }
    }
    pump();
    EXPECT_FALSE(shown_popup());
    EXPECT_EQ(std::vector<std::string>{}, before.changes());
}

TEST_F(ColourButtonTest, ScreenReadersReadThePopupAsAListOfNamedColours)
{
    Hosted &b = active();
    ComPtr<IAccessible> button;
    ASSERT_EQ(S_OK, AccessibleObjectFromWindow(b.hwnd(), OBJID_CLIENT, IID_IAccessible, button.put_void()));
    Variant role;
    ASSERT_EQ(S_OK, button->get_accRole(*I4(CHILDID_SELF).get(), role.put()));
    EXPECT_EQ(ROLE_SYSTEM_PUSHBUTTON, V_I4(role.get()));

    b.put(L"Palette", I4(0));
    b.call(L"ShowPopUp");
    HWND p = shown_popup();
    ASSERT_TRUE(p);
    ComPtr<IAccessible> list;
    ASSERT_EQ(S_OK, AccessibleObjectFromWindow(p, OBJID_CLIENT, IID_IAccessible, list.put_void()));
    const Palette palette = MakePalette(0);
    const long cells = static_cast<long>(palette.cells.size());
    long count = 0;
    ASSERT_EQ(S_OK, list->get_accChildCount(&count));
    EXPECT_EQ(cells + 2, count); // lblCbtn1, the cells, lblCUSTOM
    ASSERT_EQ(S_OK, list->get_accRole(*I4(CHILDID_SELF).get(), role.put()));
    EXPECT_EQ(ROLE_SYSTEM_LIST, V_I4(role.get()));
    auto name = [&](long child) {
        Bstr n;
        list->get_accName(*I4(child).get(), n.put());
        return n.str();
    };
    EXPECT_EQ(palette.cells[0].name, name(2));
    EXPECT_EQ(palette.cells[static_cast<size_t>(cells - 1)].name, name(cells + 1));
    EXPECT_EQ(L"More Colors...", name(cells + 2));
    EXPECT_EQ(E_INVALIDARG, list->get_accName(*I4(cells + 3).get(), Bstr().put()));

    // Keys move the focus through the items; the hit test and the location agree.
    key(b.hwnd(), WM_KEYDOWN, VK_HOME);
    Variant focus;
    ASSERT_EQ(S_OK, list->get_accFocus(focus.put()));
    EXPECT_EQ(2, V_I4(focus.get()));
    long x = 0, y = 0, w = 0, h = 0;
    ASSERT_EQ(S_OK, list->accLocation(&x, &y, &w, &h, *I4(5).get()));
    Variant hit;
    ASSERT_EQ(S_OK, list->accHitTest(x + w / 2, y + h / 2, hit.put()));
    EXPECT_EQ(5, V_I4(hit.get()));
    // The default action chooses, as a click does.
    b.log().clear_events();
    ASSERT_EQ(S_OK, list->accDoDefaultAction(*I4(5).get()));
    EXPECT_EQ(L"ChangeSelectedCol Change", events(b));
    EXPECT_EQ(static_cast<int64_t>(palette.cells[3].colour), as_integer(b.get(L"SelectedColor")));
    Variant state;
    ASSERT_EQ(S_OK, list->get_accState(*I4(5).get(), state.put()));
    EXPECT_TRUE(V_I4(state.get()) & STATE_SYSTEM_SELECTED);
    // The list outlives the button without harm.
    close(b);
    EXPECT_EQ(CO_E_OBJNOTCONNECTED, list->get_accChildCount(&count));
}
