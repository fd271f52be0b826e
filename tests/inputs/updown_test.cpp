// The numeric up-down box through the real DLL in the test container: typing and stepping
// through real key and mouse messages sent to its text box and arrows, the two clamping rules
// on focus loss, its properties and keys, persistence, bad input, its picture in both layout
// branches, and what repeated work leaves behind.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <thread>

#include "foundation/font_object.h"
#include "support/control_test.h"
#include "support/fake_machine_key.h"
#include "support/resource_counts.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.updown";

Variant ole(OleColor c) { return I4(static_cast<int32_t>(c)); }
OleColor back_colour(Hosted &h) { return static_cast<OleColor>(as_integer(h.get(L"BackColor"))); }

// Every persisted property but the font, in the order the box saves and restores them: its
// default and a value away from it.
struct Setting {
    const wchar_t *name;
    Variant initial, changed;
};
const Setting kSettings[] = {
    {L"ForeColor", ole(0x80000008), ole(0x000000FF)}, {L"Enabled", Bool(true), Bool(false)},
    {L"BackColor", ole(0x80000005), ole(0x00C0FFEE)}, {L"BorderStyle", I2(1), I2(0)},
    {L"Alignment", I2(0), I2(1)},                     {L"AllowArrowKeys", Bool(true), Bool(false)},
    {L"BuddyAlignment", I2(0), I2(2)},                {L"Max", I4(10), I4(250)},
    {L"Interval", R8(1), R8(2.5)},                    {L"AllowDecPoint", Bool(false), Bool(true)},
    {L"MaxLength", I2(0), I2(6)},                     {L"Min", I4(0), I4(-40)},
    {L"SyncBuddy", Bool(false), Bool(true)},          {L"ThousandsSeparator", Bool(true), Bool(false)},
    {L"Text", Str(L"1"), Str(L"17.5")},
};
// Every key, the font's first.
const std::vector<std::wstring> kKeys = [] {
    std::vector<std::wstring> keys{L"Font"};
    for (const Setting &s : kSettings) keys.push_back(s.name);
    return keys;
}();

// Events, their names or notices as one line, to compare with the expected order.
std::wstring joined(const std::vector<std::wstring> &items)
{
    std::wstring all;
    for (const std::wstring &item : items) all += (all.empty() ? L"" : L" ") + item;
    return all;
}

// The box's own windows, found as a host would see them.
HWND text_box(Hosted &h)
{
    for (HWND w = FindWindowExW(h.hwnd(), nullptr, L"Edit", nullptr); w; w = FindWindowExW(h.hwnd(), w, L"Edit", nullptr))
        if (!(GetWindowLongPtrW(w, GWL_STYLE) & ES_READONLY)) return w;
    return nullptr;
}
HWND arrows(Hosted &h) { return FindWindowExW(h.hwnd(), nullptr, L"msctls_updown32", nullptr); }

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
    // Each property but the font, and but `except`, against the table's default (`initial`) or
    // set (`changed`) values.
    static void expect_settings(Hosted &u, Variant Setting::*which, const std::vector<std::wstring> &except = {})
    {
        for (const Setting &s : kSettings) {
            if (std::find(except.begin(), except.end(), s.name) != except.end()) continue;
            EXPECT_EQ(as_string(s.*which), as_string(u.get(s.name))) << narrow(s.name);
        }
    }
};

} // namespace

// ---------------------------------------------------------------- properties and persistence

TEST_F(UpdownTest, ANewBoxSavesNothingAndEveryWriteIsAnnouncedSavedAndRestored)
{
    form.ambient().font = make_font(L"Tahoma", 9);
    Hosted &u = box();
    expect_settings(u, &Setting::initial);
    FontSpec ambient = FontSpecOf(V_DISPATCH(u.get(L"Font").get()));
    EXPECT_EQ(L"Tahoma", ambient.name);
    EXPECT_DOUBLE_EQ(9, ambient.size);
    EXPECT_TRUE(u.save_bag()->keys().empty()); // nothing differs from the save defaults
    u.putref(L"Font", make_font(L"Tahoma", 12, true).get());
    for (const Setting &s : kSettings) u.put(s.name, s.changed);
    EXPECT_EQ(L"Font ForeColor BackColor Enabled BackColor BorderStyle Alignment AllowArrowKeys BuddyAlignment Max "
              L"Interval AllowDecPoint MaxLength Min SyncBuddy ThousandsSeparator Text",
              joined(u.log().changes));
    // The key names a member, so the plain notice carries its DISPID too: Text is the standard one.
    EXPECT_EQ(-517, u.log().changed_ids.back());
    ComPtr<Bag> bag = u.save_bag();
    EXPECT_EQ(kKeys, bag->writes);
    ComPtr<IStream> stream = u.save_stream();
    for (Hosted *loaded : {&box({10, 50, 130, 71}, Init::FromBag, bag.get()),
                           &box({10, 90, 130, 111}, Init::FromStream, stream.get())}) {
        FontSpec f = FontSpecOf(V_DISPATCH(loaded->get(L"Font").get()));
        EXPECT_EQ(L"Tahoma", f.name);
        EXPECT_DOUBLE_EQ(12, f.size);
        EXPECT_TRUE(f.bold);
        expect_settings(*loaded, &Setting::changed);
    }
}

TEST_F(UpdownTest, ItTakesTheHeightOfAOneLineComboBoxInItsFont)
{
    ComPtr<IFontDisp> small = make_font(L"Tahoma", 8), large = make_font(L"Tahoma", 20);
    form.ambient().font = small;
    Hosted &u = box({10, 10, 130, 90});
    EXPECT_EQ(combo_height(small.get()), extent_px(u).cy);
    u.putref(L"Font", large.get());
    EXPECT_EQ(combo_height(large.get()), extent_px(u).cy);
    // In place, any height the container gives comes back to the combo box's.
    u.activate();
    u.move({10, 10, 200, 300});
    RECT r{};
    GetWindowRect(u.hwnd(), &r);
    EXPECT_EQ(combo_height(large.get()), r.bottom - r.top);
    EXPECT_EQ(190, r.right - r.left); // the width is the container's
    // A change made through the font object reaches the height only with RefreshFont.
    CY size{};
    size.int64 = 8 * 10000;
    ComPtr<IFont>(ComPtr<IUnknown>(V_DISPATCH(u.get(L"Font").get())).as<IFont>(IID_IFont))->put_Size(size);
    EXPECT_EQ(combo_height(large.get()), extent_px(u).cy);
    u.call(L"RefreshFont");
    EXPECT_EQ(combo_height(small.get()), extent_px(u).cy);
}

// ---------------------------------------------------------------- typing, stepping and focus

TEST_F(UpdownTest, TypingAndMouseEventsGoThroughTheTextBox)
{
    Hosted &u = active_box();
    HWND text = text_box(u);
    const auto type = [text](const std::wstring &keys) { for (wchar_t c : keys) SendMessageW(text, WM_CHAR, c, 1); };
    u.put(L"Text", Str(L""));
    u.log().clear_events();
    type(L"1.5.");
    EXPECT_EQ(L"15", as_string(u.get(L"Text"))); // every "." swallowed without AllowDecPoint
    EXPECT_EQ(L"KeyPress(49) Change KeyPress(0) KeyPress(53) Change KeyPress(0)", joined(u.log().event_texts()));
    u.put(L"AllowDecPoint", Bool(true));
    u.put(L"Text", Str(L""));
    // The second "." swallowed, and any sign, separator or letter; backspace passes.
    type(L"1.5.2-,e+ \u20ac");
    EXPECT_EQ(L"1.52", as_string(u.get(L"Text")));
    type(L"\b\b");
    EXPECT_EQ(L"1.", as_string(u.get(L"Text")));
    // The host may change the character further.
    u.log().on_event = [](const std::wstring &name, DISPPARAMS *params) {
        if (name == L"KeyPress" && *V_I2REF(&params->rgvarg[0]) == '3') *V_I2REF(&params->rgvarg[0]) = '9';
    };
    type(L"3");
    EXPECT_EQ(L"1.9", as_string(u.get(L"Text")));
    // KeyDown and KeyUp are declared but never raised; the mouse's events pass through.
    u.log().clear_events();
    SendMessageW(text, WM_KEYDOWN, 'A', 1);
    SendMessageW(text, WM_KEYUP, 'A', 0xC0000001);
    test::mouse(text, WM_MOUSEMOVE, 4, 3);
    click(text, 4, 3);
    test::mouse(text, WM_LBUTTONDBLCLK, 4, 3, MK_LBUTTON);
    test::mouse(text, WM_LBUTTONUP, 4, 3);
    const std::wstring at = L"," + twips_text(4, 3) + L")", up = L" MouseUp(1,0" + at;
    EXPECT_EQ(L"MouseMove(0,0" + at + L" MouseDown(1,0" + at + up + L" Click DblClick" + up,
              joined(u.log().event_texts()));
}

TEST_F(UpdownTest, KeysAndArrowsStepAndLeavingTheTextBoxOrTheControlClampDifferently)
{
    Hosted &u = active_box();
    HWND text = text_box(u), up_down = arrows(u);
    ASSERT_TRUE(up_down);
    RECT arrows_rect{};
    GetClientRect(up_down, &arrows_rect);
    // Up raises DownClick and down UpClick, by key or arrow. A step past a bound leaves the
    // bound in the text's format; text that is no number, or a sum that overflows, is left.
    constexpr UINT kArrowUp = 1, kArrowDown = 2;
    const struct {
        const wchar_t *text;
        bool decimals;
        int32_t min, max;
        double interval;
        UINT press;
        const wchar_t *after, *events;
    } steps[] = {
        {L"10", false, 0, 10, 1, VK_UP, L"10", L"DownClick Change Change"},
        {L"10", false, 0, 10, 1, VK_DOWN, L"9", L"UpClick Change"},
        {L"9", false, 0, 10, 1, VK_NEXT, L"8", L"UpClick Change"},
        {L"8", false, 0, 10, 1, VK_PRIOR, L"9", L"DownClick Change"},
        {L"9.5", true, 0, 10, 1, VK_UP, L"10.0", L"DownClick Change Change"}, // 10.5, kept to Max
        {L"1", false, 0, 10, 1, kArrowUp, L"2", L"DownClick Change"},
        {L"0", false, 0, 10, 1, kArrowDown, L"0", L"UpClick Change Change"},
        {L"0", true, 0, 10, 2.5, kArrowUp, L"2.5", L"DownClick Change"}, // whole bounds, any step
        {L"2.5", true, 20, 5, 2.5, kArrowUp, L"5.0", L"DownClick Change"}, // Min above Max
        {L"abc", false, 0, 10, 1, VK_UP, L"abc", L"DownClick"},
        {L"1,5", false, 0, 10, 1, VK_UP, L"1,5", L"DownClick"},
        {L"1e999", false, 0, 10, 1, VK_UP, L"1e999", L"DownClick"},
        {L"1e308", false, 0, 10, 1e308, VK_UP, L"10", L"DownClick Change"}, // the bound still applies
    };
    for (const auto &s : steps) {
        SCOPED_TRACE(narrow(s.text) + " pressing " + std::to_string(s.press));
        SetFocus(form.hwnd());
        u.put(L"AllowDecPoint", Bool(s.decimals));
        u.put(L"Min", I4(s.min));
        u.put(L"Max", I4(s.max));
        u.put(L"Interval", R8(s.interval));
        u.put(L"Text", Str(s.text));
        u.log().clear_events();
        if (s.press > kArrowDown) {
            SendMessageW(text, WM_KEYDOWN, s.press, 1);
            SendMessageW(text, WM_KEYUP, s.press, 0xC0000001);
        } else {
            // A press near the top or the bottom end of the arrows.
            const int y = s.press == kArrowUp ? 2 : arrows_rect.bottom - 3;
            test::mouse(up_down, WM_LBUTTONDOWN, arrows_rect.right / 2, y, MK_LBUTTON);
            test::mouse(up_down, WM_LBUTTONUP, arrows_rect.right / 2, y);
            EXPECT_EQ(text, GetFocus()); // a step gives the text box the focus
        }
        EXPECT_EQ(s.after, as_string(u.get(L"Text")));
        EXPECT_EQ(s.events, joined(u.log().event_names()));
    }
    // Leaving the text box for the arrows (within the control) keeps to the text box's rule,
    // format "0"; the arrows hand the focus straight back.
    Hosted &other = active_box({10, 50, 130, 71});
    u.put(L"AllowDecPoint", Bool(false));
    u.put(L"Text", Str(L"12"));
    SetFocus(text);
    SetFocus(up_down);
    EXPECT_EQ(L"10", as_string(u.get(L"Text")));
    EXPECT_EQ(text, GetFocus());
    // Leaving the control: "0.0" whatever AllowDecPoint says.
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

// ---------------------------------------------------------------- methods and bad input

TEST_F(UpdownTest, MethodsAnswerHostsAndBadValuesAreSkippedLeavingTheBoxUsable)
{
    Hosted &u = active_box();
    EXPECT_EQ(1, as_integer(u.call(L"DecimalPointCheck", {Str(L"3.14")})));
    Variant passed = u.call(L"KeyLock", {I2(55), Bool(false), Str(L"")});
    EXPECT_EQ(VT_UI1, passed.vt());
    EXPECT_EQ(55, as_integer(passed));
    EXPECT_EQ(0x00FFFBFB, as_integer(u.call(L"ShiftColor", {I4(0x00FFFFFF), I4(0), Bool(false)})));
    // An overflow inside a method, and arguments of the wrong type, are skipped steps.
    EXPECT_EQ(0, as_integer(u.call(L"ShiftColor", {I4(0x00FFFFFF), I4(INT_MAX), Bool(true)})));
    EXPECT_EQ(S_OK, u.last_result());
    u.call(L"ShiftColor", {R8(1e300), I4(1), Bool(true)});
    EXPECT_EQ(S_OK, u.last_result());
    u.call(L"KeyLock", {Str(L"not a number"), Bool(true), Str(L"")});
    EXPECT_EQ(S_OK, u.last_result());
    // The box refuses the first six values but still announces them; the dispatcher cannot
    // convert the last three, so they never reach the box and are not announced.
    u.log().changes.clear();
    const std::pair<const wchar_t *, Variant> bad[] = {
        {L"MaxLength", I2(-1)},      {L"Alignment", I2(7)},           {L"BorderStyle", I2(-3)},
        {L"BuddyAlignment", I2(99)}, {L"BackColor", ole(0x7F000000)}, {L"ForeColor", ole(0x800000FF)},
        {L"Font", Variant()},        {L"Max", Str(L"lots")},          {L"Interval", Str(L"")},
    };
    for (const auto &[name, value] : bad) EXPECT_EQ(S_OK, u.put(name, value)) << narrow(name);
    EXPECT_EQ(L"MaxLength Alignment BorderStyle BuddyAlignment BackColor ForeColor", joined(u.log().changes));
    expect_settings(u, &Setting::initial);
    const std::wstring huge(20000, L'7');
    u.put(L"Text", Str(huge));
    EXPECT_EQ(huge, as_string(u.get(L"Text")));
    u.render(120, 21);
    for (RECT r : {RECT{0, 0, 0, 0}, RECT{0, 0, 5, 5}, RECT{0, 0, 3000, 40}}) u.move(r);
    UpdateWindow(u.hwnd());
    u.call(L"Refresh");
    EXPECT_EQ(S_OK, u.last_result());
}

TEST_F(UpdownTest, WrongTypesInTheBagAndBrokenStreamsFallBackToDefaults)
{
    // Text that reads as a number is taken, and a number is a fine text; the rest cannot
    // convert (a MaxLength beyond 16 bits, a colour beyond 32) or breaks a rule.
    const std::pair<const wchar_t *, Variant> stored[] = {
        {L"Text", I4(42)},         {L"Max", Str(L"lots")},       {L"Interval", Str(L"2.5")}, {L"Font", Str(L"Arial")},
        {L"Enabled", Str(L"maybe")}, {L"MaxLength", I4(100000)}, {L"Alignment", I2(9)},      {L"BackColor", R8(-1e20)},
    };
    ComPtr<Bag> bag = Bag::Create();
    for (const auto &[key, value] : stored) bag->set(key, value);
    Hosted &u = box({10, 10, 130, 31}, Init::FromBag, bag.get());
    EXPECT_EQ(S_OK, u.init_result());
    EXPECT_EQ(kKeys, bag->reads); // and the keys missing from it keep their defaults
    EXPECT_EQ(L"42", as_string(u.get(L"Text")));
    EXPECT_DOUBLE_EQ(2.5, as_double(u.get(L"Interval")));
    EXPECT_EQ(VT_DISPATCH, u.get(L"Font").vt());
    expect_settings(u, &Setting::initial, {L"Text", L"Interval"});

    Hosted &full = box({10, 50, 130, 71});
    for (const Setting &s : kSettings) full.put(s.name, s.changed);
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

// ---------------------------------------------------------------- the picture, resources, threads

TEST_F(UpdownTest, DisablingSetsTheBackColourAndBothLayoutBranchesDrawTheirBorders)
{
    Hosted &u = active_box({0, 0, 120, 21});
    // Enabled announces the back colour it sets first.
    u.put(L"BackColor", ole(0x00FF0000));
    u.log().changes.clear();
    u.put(L"Enabled", Bool(false));
    EXPECT_EQ(L"BackColor Enabled", joined(u.log().changes));
    EXPECT_EQ(0x8000000Fu, back_colour(u));
    EXPECT_FALSE(IsWindowEnabled(text_box(u)));
    EXPECT_FALSE(IsWindowEnabled(arrows(u)));
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), u.render(120, 21).pixel(60, 10));
    u.put(L"Enabled", Bool(true));
    EXPECT_EQ(0x80000005u, back_colour(u));
    EXPECT_TRUE(IsWindowEnabled(text_box(u)));
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
    // The back colour shows inside.
    u.put(L"BackColor", ole(0x0000FFFF));
    EXPECT_EQ(0x0000FFFFu, u.render(120, h).pixel(4, h / 2));
}

TEST_F(UpdownTest, RepeatedResizeAndPaintLeaveNoObjectsBehind)
{
    ASSERT_TRUE(DllResourceCounter().installed()); // counting from before the box exists
    Hosted &u = active_box();
    u.put(L"Text", Str(L"42"));
    const auto cycle = [&](int i) {
        u.move({0, 0, 60 + i % 150, 20});
        u.put(L"BackColor", ole(i % 2 ? 0x80000005 : 0x00FFEEDD));
        InvalidateRect(u.hwnd(), nullptr, TRUE);
        UpdateWindow(u.hwnd());
        if (i % 10 == 0) u.render(120, 21);
    };
    cycle(0); // the system keeps a few objects of its own for the windows from their first resize on
    pump();
    ResourceSnapshot before;
    for (int i = 0; i < 1000; ++i) cycle(i);
    pump();
    EXPECT_EQ(std::vector<std::string>{}, before.changes());
}

TEST(UpdownThreads, ABoxOnASecondThreadKeepsItsPartsThere)
{
    // The holder of the parts is kept per thread: a box made on another apartment thread works
    // there, shown or not, and leaves nothing behind when the thread ends.
    std::wstring stepped;
    std::thread([&] {
        OleInitialize(nullptr);
        {
            Container form;
            Hosted u(form, kProgId, {0, 0, 120, 21});
            u.put(L"Text", Str(L"4"));
            u.activate();
            SendMessageW(text_box(u), WM_KEYDOWN, VK_UP, 1);
            stepped = as_string(u.get(L"Text"));
            u.render(120, 21);
        }
        OleUninitialize();
    }).join();
    EXPECT_EQ(L"5", stepped);
}
