// The numeric up-down box through the real DLL in the test container: typing and stepping
// through real key and mouse messages sent to its text box and arrows, the two clamping rules
// on focus loss, its properties and keys, persistence, bad input, its picture in both layout
// branches, and what repeated work leaves behind.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <thread>

#include "foundation/font_object.h"
#include "foundation/metrics.h"
#include "support/control_test.h"
#include "support/fake_machine_key.h"
#include "support/resource_counts.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.updown";

const std::vector<std::wstring> kKeys = {
    L"Font", L"ForeColor", L"Enabled", L"BackColor", L"BorderStyle", L"Alignment", L"AllowArrowKeys",
    L"BuddyAlignment", L"Max", L"Interval", L"AllowDecPoint", L"MaxLength", L"Min", L"SyncBuddy",
    L"ThousandsSeparator", L"Text"};

Variant ole(OleColor c) { return I4(static_cast<int32_t>(c)); }
OleColor colour(Hosted &h, const wchar_t *name) { return static_cast<OleColor>(as_integer(h.get(name))); }

// The box's own windows, found as a host would see them.
HWND text_box(Hosted &h)
{
    for (HWND w = FindWindowExW(h.hwnd(), nullptr, L"Edit", nullptr); w; w = FindWindowExW(h.hwnd(), w, L"Edit", nullptr))
        if (!(GetWindowLongPtrW(w, GWL_STYLE) & ES_READONLY)) return w;
    return nullptr;
}
HWND arrows(Hosted &h) { return FindWindowExW(h.hwnd(), nullptr, L"msctls_updown32", nullptr); }

void type(HWND w, const std::wstring &keys)
{
    for (wchar_t c : keys) SendMessageW(w, WM_CHAR, c, 1);
}
void key(HWND w, UINT vk)
{
    SendMessageW(w, WM_KEYDOWN, vk, 1);
    SendMessageW(w, WM_KEYUP, vk, 0xC0000001);
}
void press_arrow(HWND w, bool up)
{
    RECT r{};
    GetClientRect(w, &r);
    int y = up ? 2 : r.bottom - 3;
    test::mouse(w, WM_LBUTTONDOWN, r.right / 2, y, MK_LBUTTON);
    test::mouse(w, WM_LBUTTONUP, r.right / 2, y);
}

// The height of a one-line combo box in `f`, in pixels: what the box takes.
int combo_height(IFontDisp *f)
{
    HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
    HWND combo = CreateWindowExW(0, L"COMBOBOX", L"", WS_CHILD | CBS_DROPDOWN | CBS_AUTOHSCROLL | WS_VSCROLL, 0, 0, 80,
                                 200, parent, nullptr, nullptr, nullptr);
    HFONT handle = nullptr;
    ComPtr<IFont>(ComPtr<IFontDisp>(f).as<IFont>(IID_IFont))->get_hFont(&handle);
    SendMessageW(combo, WM_SETFONT, reinterpret_cast<WPARAM>(handle), TRUE);
    RECT r{};
    GetWindowRect(combo, &r);
    DestroyWindow(parent);
    return r.bottom - r.top;
}

class UpdownTest : public ControlTest {
protected:
    // The box takes the height its font gives it and asks its container for it.
    UpdownTest() { allow_self_sizing(form); }
    Hosted &box(RECT pos = {10, 10, 130, 31}, Init init = Init::New, IUnknown *source = nullptr)
    {
        return place(kProgId, pos, init, source);
    }
    // Activated, with the calls taking the focus makes on its site.
    Hosted &active_box(RECT pos = {10, 10, 130, 31})
    {
        Hosted &h = box(pos);
        EXPECT_EQ(S_OK, h.activate());
        allow_focus(h);
        EXPECT_TRUE(text_box(h));
        return h;
    }

    void set_everything(Hosted &u)
    {
        u.putref(L"Font", make_font(L"Tahoma", 12, true).get());
        u.put(L"ForeColor", ole(0x000000FF));
        u.put(L"Enabled", Bool(false));
        u.put(L"BACKCOLOR", ole(0x00C0FFEE));
        u.put(L"BorderStyle", I2(0));
        u.put(L"Alignment", I2(1));
        u.put(L"AllowArrowKeys", Bool(false));
        u.put(L"BuddyAlignment", I2(2));
        u.put(L"Max", I4(250));
        u.put(L"Interval", R8(2.5));
        u.put(L"AllowDecPoint", Bool(true));
        u.put(L"MaxLength", I2(6));
        u.put(L"Min", I4(-40));
        u.put(L"SyncBuddy", Bool(true));
        u.put(L"ThousandsSeparator", Bool(false));
        u.put(L"Text", Str(L"17.5"));
    }
    void expect_everything(Hosted &u)
    {
        FontSpec f = FontSpecOf(V_DISPATCH(u.get(L"Font").get()));
        EXPECT_EQ(L"Tahoma", f.name);
        EXPECT_DOUBLE_EQ(12, f.size);
        EXPECT_TRUE(f.bold);
        EXPECT_EQ(0x000000FFu, colour(u, L"ForeColor"));
        EXPECT_FALSE(as_integer(u.get(L"Enabled")));
        EXPECT_EQ(0x00C0FFEEu, colour(u, L"BACKCOLOR"));
        EXPECT_EQ(0, as_integer(u.get(L"BorderStyle")));
        EXPECT_EQ(1, as_integer(u.get(L"Alignment")));
        EXPECT_FALSE(as_integer(u.get(L"AllowArrowKeys")));
        EXPECT_EQ(2, as_integer(u.get(L"BuddyAlignment")));
        EXPECT_EQ(250, as_integer(u.get(L"Max")));
        EXPECT_DOUBLE_EQ(2.5, as_double(u.get(L"Interval")));
        EXPECT_TRUE(as_integer(u.get(L"AllowDecPoint")));
        EXPECT_EQ(6, as_integer(u.get(L"MaxLength")));
        EXPECT_EQ(-40, as_integer(u.get(L"Min")));
        EXPECT_TRUE(as_integer(u.get(L"SyncBuddy")));
        EXPECT_FALSE(as_integer(u.get(L"ThousandsSeparator")));
        EXPECT_EQ(L"17.5", as_string(u.get(L"Text")));
    }
};

} // namespace

// ---------------------------------------------------------------- properties

TEST_F(UpdownTest, ANewBoxHasItsDefaultsAndTheContainersFont)
{
    form.ambient().font = make_font(L"Tahoma", 9);
    Hosted &u = box();
    EXPECT_EQ(L"1", as_string(u.get(L"Text")));
    EXPECT_EQ(10, as_integer(u.get(L"Max")));
    EXPECT_EQ(0, as_integer(u.get(L"Min")));
    EXPECT_DOUBLE_EQ(1, as_double(u.get(L"Interval")));
    EXPECT_FALSE(as_integer(u.get(L"AllowDecPoint")));
    EXPECT_EQ(0, as_integer(u.get(L"Alignment")));
    EXPECT_TRUE(as_integer(u.get(L"AllowArrowKeys")));
    EXPECT_EQ(0, as_integer(u.get(L"BuddyAlignment")));
    EXPECT_FALSE(as_integer(u.get(L"SyncBuddy")));
    EXPECT_TRUE(as_integer(u.get(L"ThousandsSeparator")));
    EXPECT_EQ(1, as_integer(u.get(L"BorderStyle")));
    EXPECT_TRUE(as_integer(u.get(L"Enabled")));
    EXPECT_EQ(0x80000005u, colour(u, L"BACKCOLOR"));
    EXPECT_EQ(0x80000008u, colour(u, L"ForeColor"));
    EXPECT_EQ(0, as_integer(u.get(L"MaxLength")));
    FontSpec f = FontSpecOf(V_DISPATCH(u.get(L"Font").get()));
    EXPECT_EQ(L"Tahoma", f.name);
    EXPECT_DOUBLE_EQ(9, f.size);
    // Nothing differs from the save defaults: nothing is stored.
    EXPECT_TRUE(u.save_bag()->keys().empty());
}

TEST_F(UpdownTest, ItTakesTheHeightOfAOneLineComboBoxInItsFont)
{
    ComPtr<IFontDisp> small = make_font(L"Tahoma", 8), large = make_font(L"Tahoma", 20);
    form.ambient().font = small;
    Hosted &u = box({10, 10, 130, 90});
    EXPECT_EQ(combo_height(small.get()), extent_px(u).cy);
    EXPECT_EQ(120, extent_px(u).cx); // the width is the container's
    u.putref(L"Font", large.get());
    EXPECT_EQ(combo_height(large.get()), extent_px(u).cy);
    // In place, the container is asked and the window follows; any height the container gives
    // comes back to the combo box's.
    u.activate();
    RECT r{};
    GetWindowRect(u.hwnd(), &r);
    EXPECT_EQ(combo_height(large.get()), r.bottom - r.top);
    u.move({10, 10, 200, 300});
    GetWindowRect(u.hwnd(), &r);
    EXPECT_EQ(combo_height(large.get()), r.bottom - r.top);
    EXPECT_EQ(190, r.right - r.left);
    // A change made through the font object reaches the text box at once and the height with
    // RefreshFont.
    ComPtr<IFont>(ComPtr<IUnknown>(V_DISPATCH(u.get(L"Font").get())).as<IFont>(IID_IFont))->put_Name(Bstr(L"Tahoma").get());
    CY size{};
    size.int64 = 8 * 10000;
    ComPtr<IFont>(ComPtr<IUnknown>(V_DISPATCH(u.get(L"Font").get())).as<IFont>(IID_IFont))->put_Size(size);
    EXPECT_EQ(combo_height(large.get()), extent_px(u).cy);
    u.call(L"RefreshFont");
    EXPECT_EQ(combo_height(small.get()), extent_px(u).cy);
}

TEST_F(UpdownTest, EveryWriteStoresAndAnnouncesItsKey)
{
    Hosted &u = box();
    set_everything(u);
    EXPECT_EQ((std::vector<std::wstring>{L"Font", L"ForeColor", L"BackColor", L"Enabled", L"BackColor", L"BorderStyle",
                                         L"Alignment", L"AllowArrowKeys", L"BuddyAlignment", L"Max", L"Interval",
                                         L"AllowDecPoint", L"MaxLength", L"Min", L"SyncBuddy", L"ThousandsSeparator",
                                         L"Text"}),
              u.log().changes);
    expect_everything(u);
    // The key names a member, so the plain notice carries its DISPID too: Text is the standard one.
    EXPECT_EQ(-517, u.log().changed_ids.back());
}

TEST_F(UpdownTest, EnablingSetsTheBackColourAndAnnouncesItFirst)
{
    Hosted &u = active_box();
    u.put(L"BACKCOLOR", ole(0x00FF0000));
    u.log().changes.clear();
    u.put(L"Enabled", Bool(false));
    EXPECT_EQ((std::vector<std::wstring>{L"BackColor", L"Enabled"}), u.log().changes);
    EXPECT_FALSE(as_integer(u.get(L"Enabled")));
    EXPECT_EQ(0x8000000Fu, colour(u, L"BACKCOLOR"));
    HWND text = text_box(u);
    EXPECT_FALSE(IsWindowEnabled(text));
    EXPECT_FALSE(IsWindowEnabled(arrows(u)));
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), u.render(120, 21).pixel(60, 10));
    u.put(L"Enabled", Bool(true));
    EXPECT_EQ(0x80000005u, colour(u, L"BACKCOLOR"));
    EXPECT_TRUE(IsWindowEnabled(text));
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), u.render(120, 21).pixel(60, 10));
}

// ---------------------------------------------------------------- typing and stepping

TEST_F(UpdownTest, TypingGoesThroughTheKeyFilter)
{
    Hosted &u = active_box();
    HWND text = text_box(u);
    u.put(L"Text", Str(L""));
    u.log().clear_events();
    type(text, L"1.5.");
    EXPECT_EQ(L"15", as_string(u.get(L"Text"))); // every "." swallowed without AllowDecPoint
    EXPECT_EQ((std::vector<std::wstring>{L"KeyPress(49)", L"Change", L"KeyPress(0)", L"KeyPress(53)", L"Change",
                                         L"KeyPress(0)"}),
              u.log().event_texts());
    u.put(L"AllowDecPoint", Bool(true));
    u.put(L"Text", Str(L""));
    type(text, L"1.5.2");
    EXPECT_EQ(L"1.52", as_string(u.get(L"Text"))); // the second "." swallowed
    // No sign, separator or letter; backspace passes.
    type(text, L"-,e+ \u20ac");
    EXPECT_EQ(L"1.52", as_string(u.get(L"Text")));
    type(text, L"\b\b");
    EXPECT_EQ(L"1.", as_string(u.get(L"Text")));
    // The host may change the character further.
    u.log().on_event = [](const std::wstring &name, DISPPARAMS *params) {
        if (name == L"KeyPress" && *V_I2REF(&params->rgvarg[0]) == '3') *V_I2REF(&params->rgvarg[0]) = '9';
    };
    type(text, L"3");
    EXPECT_EQ(L"1.9", as_string(u.get(L"Text")));
    // KeyDown and KeyUp are declared but never raised.
    u.log().clear_events();
    key(text, 'A');
    EXPECT_TRUE(u.log().events.empty());
}

TEST_F(UpdownTest, TheUpKeysIncreaseWithDownClickAndKeepToMax)
{
    Hosted &u = active_box();
    HWND text = text_box(u);
    u.put(L"Text", Str(L"10"));
    u.log().clear_events();
    key(text, VK_UP);
    EXPECT_EQ(L"10", as_string(u.get(L"Text")));
    EXPECT_EQ((std::vector<std::wstring>{L"DownClick", L"Change", L"Change"}), u.log().event_names());
    u.log().clear_events();
    key(text, VK_DOWN);
    EXPECT_EQ(L"9", as_string(u.get(L"Text")));
    EXPECT_EQ((std::vector<std::wstring>{L"UpClick", L"Change"}), u.log().event_names());
    key(text, VK_NEXT);
    key(text, VK_NEXT);
    EXPECT_EQ(L"7", as_string(u.get(L"Text")));
    key(text, VK_PRIOR);
    EXPECT_EQ(L"8", as_string(u.get(L"Text")));
    // With decimals: 9.5 steps to 10.5, which is kept to "10.0".
    u.put(L"AllowDecPoint", Bool(true));
    u.put(L"Text", Str(L"9.5"));
    key(text, VK_UP);
    EXPECT_EQ(L"10.0", as_string(u.get(L"Text")));
    // Down to the bound and below it: Min in the text's format.
    u.put(L"Min", I4(-2));
    u.put(L"Interval", R8(1.75));
    u.put(L"Text", Str(L"-1"));
    key(text, VK_DOWN);
    EXPECT_EQ(L"-2.0", as_string(u.get(L"Text")));
}

TEST_F(UpdownTest, TheArrowsStepWithTheirCrossedNames)
{
    Hosted &u = active_box();
    HWND up_down = arrows(u);
    ASSERT_TRUE(up_down);
    u.log().clear_events();
    press_arrow(up_down, true);
    EXPECT_EQ(L"2", as_string(u.get(L"Text")));
    press_arrow(up_down, false);
    press_arrow(up_down, false);
    press_arrow(up_down, false);
    EXPECT_EQ(L"0", as_string(u.get(L"Text"))); // kept to Min
    std::vector<std::wstring> names;
    for (const std::wstring &n : u.log().event_names())
        if (n != L"Change") names.push_back(n);
    EXPECT_EQ((std::vector<std::wstring>{L"DownClick", L"UpClick", L"UpClick", L"UpClick"}), names);
    // A step gives the text box the focus.
    EXPECT_EQ(text_box(u), GetFocus());
    // The bounds are whole numbers, the step is not.
    u.put(L"Interval", R8(2.5));
    u.put(L"AllowDecPoint", Bool(true));
    press_arrow(up_down, true);
    EXPECT_EQ(L"2.5", as_string(u.get(L"Text")));
    // With Min above Max the arrows keep their meaning.
    u.put(L"Min", I4(20));
    u.put(L"Max", I4(5));
    u.log().clear_events();
    press_arrow(up_down, true);
    EXPECT_EQ(L"DownClick", u.log().event_names().front());
    EXPECT_EQ(L"5.0", as_string(u.get(L"Text")));
}

TEST_F(UpdownTest, TextThatIsNoNumberIsLeftAsItIs)
{
    Hosted &u = active_box();
    HWND text = text_box(u);
    for (const wchar_t *t : {L"", L"abc", L"1,5", L"--", L"1e999"}) {
        u.put(L"Text", Str(t));
        u.log().clear_events();
        key(text, VK_UP);
        EXPECT_EQ(t, as_string(u.get(L"Text"))) << narrow(t);
        EXPECT_EQ(std::vector<std::wstring>{L"DownClick"}, u.log().event_names());
    }
    // Huge intervals and bounds: overflow is a skipped step, never a failure.
    u.put(L"Text", Str(L"1e308"));
    u.put(L"Interval", R8(1e308));
    key(text, VK_UP);
    EXPECT_EQ(L"10", as_string(u.get(L"Text"))); // the sum overflowed; the bound still applied
    u.put(L"Max", I4(INT_MAX));
    u.put(L"Interval", R8(1));
    u.put(L"Text", Str(L"2147483647"));
    key(text, VK_UP);
    EXPECT_EQ(L"2147483647", as_string(u.get(L"Text")));
}

TEST_F(UpdownTest, LeavingTheTextBoxAndLeavingTheControlClampDifferently)
{
    Hosted &u = active_box({10, 10, 130, 31});
    Hosted &other = active_box({10, 50, 130, 71});
    HWND text = text_box(u);
    u.put(L"Text", Str(L"12"));
    SetFocus(text);
    // Focus to the arrows (within the control): the text box's rule, format "0"; the arrows
    // hand the focus straight back.
    SetFocus(arrows(u));
    EXPECT_EQ(L"10", as_string(u.get(L"Text")));
    EXPECT_EQ(text, GetFocus());
    // Out of the control: "0.0" whatever AllowDecPoint says.
    u.put(L"Text", Str(L"12"));
    SetFocus(text_box(other));
    EXPECT_EQ(L"10.0", as_string(u.get(L"Text")));
    u.put(L"Text", Str(L"-3"));
    SetFocus(text);
    SetFocus(text_box(other));
    EXPECT_EQ(L"0.0", as_string(u.get(L"Text")));
    // Focus on the control's own window goes to the text box.
    SetFocus(u.hwnd());
    EXPECT_EQ(text, GetFocus());
}

TEST_F(UpdownTest, MouseEventsPassThroughFromTheTextBox)
{
    Hosted &u = active_box();
    HWND text = text_box(u);
    u.log().clear_events();
    test::mouse(text, WM_MOUSEMOVE, 4, 3);
    click(text, 4, 3);
    test::mouse(text, WM_LBUTTONDBLCLK, 4, 3, MK_LBUTTON);
    test::mouse(text, WM_LBUTTONUP, 4, 3);
    const std::wstring at = L"," + twips_text(4, 3) + L")";
    EXPECT_EQ((std::vector<std::wstring>{L"MouseMove(0,0" + at, L"MouseDown(1,0" + at, L"MouseUp(1,0" + at, L"Click",
                                         L"DblClick", L"MouseUp(1,0" + at}),
              u.log().event_texts());
}

// ---------------------------------------------------------------- methods

TEST_F(UpdownTest, TheFilterAndColourMethodsAnswerHostsDirectly)
{
    Hosted &u = box();
    EXPECT_EQ(1, as_integer(u.call(L"DecimalPointCheck", {Str(L"3.14")})));
    EXPECT_EQ(0, as_integer(u.call(L"DecimalPointCheck", {Str(L"314")})));
    EXPECT_EQ(46, as_integer(u.call(L"KeyLock", {I2(46), Bool(true), Str(L"12")})));
    EXPECT_EQ(0, as_integer(u.call(L"KeyLock", {I2(46), Bool(true), Str(L"1.2")})));
    EXPECT_EQ(0, as_integer(u.call(L"KeyLock", {I2(190), Bool(true), Str(L"")})));
    EXPECT_EQ(0, as_integer(u.call(L"KeyLock", {I2(46), Bool(false), Str(L"")})));
    EXPECT_EQ(VT_UI1, u.call(L"KeyLock", {I2(55), Bool(false), Str(L"")}).vt());
    EXPECT_EQ(0, as_integer(u.call(L"ShiftColor", {I4(0), I4(25), Bool(true)})));
    EXPECT_EQ(0x00FFFBFB, as_integer(u.call(L"ShiftColor", {I4(0x00FFFFFF), I4(0), Bool(false)})));
    // An overflow inside stays inside.
    Variant r = u.call(L"ShiftColor", {I4(0x00FFFFFF), I4(INT_MAX), Bool(true)});
    EXPECT_EQ(S_OK, u.last_result());
    EXPECT_EQ(0, as_integer(r));
    // Arguments of the wrong type: skipped, not failed.
    u.call(L"KeyLock", {Str(L"not a number"), Bool(true), Str(L"")});
    EXPECT_EQ(S_OK, u.last_result());
    u.call(L"ShiftColor", {R8(1e300), I4(1), Bool(true)});
    EXPECT_EQ(S_OK, u.last_result());
    EXPECT_EQ(S_OK, (u.call(L"Refresh"), u.last_result()));
}

// ---------------------------------------------------------------- persistence and bad input

TEST_F(UpdownTest, RestoresInItsOrderAndRoundTripsThroughBagAndStream)
{
    ComPtr<Bag> empty = Bag::Create();
    Hosted &fresh = box({10, 10, 130, 31}, Init::FromBag, empty.get());
    EXPECT_EQ(kKeys, empty->reads);
    EXPECT_EQ(L"1", as_string(fresh.get(L"Text")));
    EXPECT_EQ(10, as_integer(fresh.get(L"Max")));

    Hosted &u = box();
    set_everything(u);
    ComPtr<Bag> bag = u.save_bag();
    EXPECT_EQ(kKeys, bag->writes);
    EXPECT_EQ(kKeys, bag->keys());
    expect_everything(box({10, 50, 130, 71}, Init::FromBag, bag.get()));
    ComPtr<IStream> stream = u.save_stream();
    expect_everything(box({10, 90, 130, 111}, Init::FromStream, stream.get()));
}

TEST_F(UpdownTest, BadValuesAreSkippedAndTheBoxStaysUsable)
{
    Hosted &u = active_box();
    u.log().changes.clear();
    EXPECT_EQ(S_OK, u.put(L"MaxLength", I2(-1)));
    EXPECT_EQ(S_OK, u.put(L"Alignment", I2(7)));
    EXPECT_EQ(S_OK, u.put(L"BorderStyle", I2(-3)));
    EXPECT_EQ(S_OK, u.put(L"BuddyAlignment", I2(99)));
    EXPECT_EQ(S_OK, u.put(L"BACKCOLOR", ole(0x7F000000)));
    EXPECT_EQ(S_OK, u.put(L"ForeColor", ole(0x800000FF)));
    EXPECT_EQ(S_OK, u.put(L"Font", Variant()));
    // Values the dispatcher cannot convert never reach the box: skipped and not announced.
    EXPECT_EQ(S_OK, u.put(L"Max", Str(L"lots")));
    EXPECT_EQ(S_OK, u.put(L"Interval", Str(L"")));
    // The others are still announced, and nothing changed.
    EXPECT_EQ((std::vector<std::wstring>{L"MaxLength", L"Alignment", L"BorderStyle", L"BuddyAlignment", L"BackColor",
                                         L"ForeColor"}),
              u.log().changes);
    EXPECT_EQ(0, as_integer(u.get(L"MaxLength")));
    EXPECT_EQ(0, as_integer(u.get(L"Alignment")));
    EXPECT_EQ(1, as_integer(u.get(L"BorderStyle")));
    EXPECT_EQ(0, as_integer(u.get(L"BuddyAlignment")));
    EXPECT_EQ(0x80000005u, colour(u, L"BACKCOLOR"));
    EXPECT_EQ(0x80000008u, colour(u, L"ForeColor"));
    EXPECT_EQ(10, as_integer(u.get(L"Max")));
    // Extremes are taken as they are.
    u.put(L"Max", I4(INT_MAX));
    u.put(L"Min", I4(INT_MIN));
    EXPECT_EQ(INT_MAX, as_integer(u.get(L"Max")));
    EXPECT_EQ(INT_MIN, as_integer(u.get(L"Min")));
    std::wstring huge(20000, L'7');
    u.put(L"Text", Str(huge));
    EXPECT_EQ(huge, as_string(u.get(L"Text")));
    u.put(L"MaxLength", I2(SHRT_MAX));
    EXPECT_EQ(SHRT_MAX, as_integer(u.get(L"MaxLength")));
    u.render(120, 21);
    u.move({0, 0, 0, 0});
    u.move({0, 0, 5, 5});
    u.move({0, 0, 3000, 40});
    UpdateWindow(u.hwnd());
    u.call(L"Refresh");
}

TEST_F(UpdownTest, WrongTypesInTheBagAndBrokenStreamsFallBackToDefaults)
{
    ComPtr<Bag> bag = Bag::Create();
    bag->set(L"Text", I4(42));
    bag->set(L"Max", Str(L"lots"));
    bag->set(L"Interval", Str(L"2.5"));
    bag->set(L"Font", Str(L"Arial"));
    bag->set(L"Enabled", Str(L"maybe"));
    bag->set(L"MaxLength", I4(100000)); // beyond 16 bits
    bag->set(L"Alignment", I2(9));
    bag->set(L"BackColor", R8(-1e20));
    Hosted &u = box({10, 10, 130, 31}, Init::FromBag, bag.get());
    EXPECT_EQ(S_OK, u.init_result());
    EXPECT_EQ(L"42", as_string(u.get(L"Text")));
    EXPECT_EQ(10, as_integer(u.get(L"Max")));
    EXPECT_DOUBLE_EQ(2.5, as_double(u.get(L"Interval")));
    EXPECT_TRUE(as_integer(u.get(L"Enabled")));
    EXPECT_EQ(0, as_integer(u.get(L"MaxLength")));
    EXPECT_EQ(0, as_integer(u.get(L"Alignment")));
    EXPECT_EQ(0x80000005u, colour(u, L"BACKCOLOR"));
    EXPECT_EQ(VT_DISPATCH, u.get(L"Font").vt());

    Hosted &full = box({10, 50, 130, 71});
    set_everything(full);
    std::vector<BYTE> bytes = stream_bytes(full.save_stream().get());
    ASSERT_FALSE(bytes.empty());
    for (size_t cut = 0; cut < bytes.size(); cut += 11) {
        ComPtr<IStream> s = stream_of(std::vector<BYTE>(bytes.begin(), bytes.begin() + static_cast<long>(cut)));
        Hosted g(form, kProgId, {0, 0, 120, 21}, Init::FromStream, s.get());
        EXPECT_EQ(S_OK, g.init_result());
        g.render(120, 21);
        EXPECT_EQ(0u, g.close());
    }
}

// ---------------------------------------------------------------- the picture

TEST_F(UpdownTest, ThemedAndUnthemedBranchesDrawTheirBorders)
{
    Hosted &u = box({0, 0, 120, 21});
    u.put(L"Text", Str(L"888"));
    const int h = extent_px(u).cy;
    FakeMachineKey machine;
    machine.set(kWindowsNtKey, L"CurrentVersion", L"6.1");
    u.call(L"Refresh");
    Bitmap themed = u.render(120, h);
    themed.save_png(output_path(L"updown-themed.png"));
    // A flat line around the background box, the window colour inside, digits in the text.
    EXPECT_EQ(GetSysColor(COLOR_WINDOWFRAME), themed.pixel(0, 0));
    EXPECT_EQ(GetSysColor(COLOR_WINDOWFRAME), themed.pixel(60, h - 1));
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), themed.pixel(2, h / 2));
    EXPECT_GT(120 * h - themed.count(GetSysColor(COLOR_WINDOW)) - themed.count(GetSysColor(COLOR_WINDOWFRAME)), 40);
    u.put(L"BorderStyle", I2(0));
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), u.render(120, h).pixel(0, 0));
    u.put(L"BorderStyle", I2(1));

    machine.set(kWindowsKey, L"VersionNumber", L"4.0");
    u.call(L"Refresh");
    Bitmap classic = u.render(120, h);
    classic.save_png(output_path(L"updown-classic.png"));
    // The border box's sunken edge: shadow outside top-left, highlight outside bottom-right.
    EXPECT_EQ(GetSysColor(COLOR_BTNSHADOW), classic.pixel(0, 0));
    EXPECT_EQ(GetSysColor(COLOR_3DHILIGHT), classic.pixel(119, h - 1));
    EXPECT_NE(themed.hash(), classic.hash());
    // The back colour shows inside.
    u.put(L"BACKCOLOR", ole(0x0000FFFF));
    EXPECT_EQ(0x0000FFFFu, u.render(120, h).pixel(4, h / 2));
}

TEST_F(UpdownTest, RepeatedResizeAndPaintLeaveNoObjectsBehind)
{
    ASSERT_TRUE(DllResourceCounter().installed()); // counting from before the box exists
    Hosted &u = active_box();
    u.put(L"Text", Str(L"42"));
    UpdateWindow(u.hwnd());
    u.render(120, 21);
    pump();
    ResourceSnapshot before;
    for (int i = 0; i < 1000; ++i) {
        u.move({0, 0, 60 + i % 150, 20});
        u.put(L"BACKCOLOR", ole(i % 2 ? 0x80000005 : 0x00FFEEDD));
        InvalidateRect(u.hwnd(), nullptr, TRUE);
        UpdateWindow(u.hwnd());
        if (i % 10 == 0) u.render(120, 21);
    }
    pump();
    EXPECT_EQ(std::vector<std::string>{}, before.changes());
}

TEST(UpdownThreads, ABoxOnASecondThreadKeepsItsPartsThere)
{
    // The holder of the parts is kept per thread: a box made on another apartment thread works
    // there, shown or not, and leaves nothing behind when the thread ends.
    std::wstring text, stepped;
    std::thread t([&] {
        OleInitialize(nullptr);
        {
            Container form;
            Hosted u(form, kProgId, {0, 0, 120, 21});
            u.put(L"Text", Str(L"4"));
            text = as_string(u.get(L"Text"));
            u.activate();
            SendMessageW(text_box(u), WM_KEYDOWN, VK_UP, 1);
            stepped = as_string(u.get(L"Text"));
            u.render(120, 21);
        }
        OleUninitialize();
    });
    t.join();
    EXPECT_EQ(L"4", text);
    EXPECT_EQ(L"5", stepped);
}
