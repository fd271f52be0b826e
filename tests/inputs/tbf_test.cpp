// The tab strip through the real DLL in the test container: persistence of every property, bad
// input, the events and their order with real mouse and keyboard input (the strip focused, and
// Ctrl+Tab and access keys while the focus is on another control of the form), its pictures in
// each look, and what a screen reader sees.
#include <gtest/gtest.h>

#include <windows.h>
#include <oleacc.h>

#include "foundation/color_translate.h"
#include "foundation/font_object.h"
#include "support/control_test.h"
#include "support/real_input.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.tbf";
Variant ole(OleColor c) { return I4(static_cast<int32_t>(c)); }

class TabStripTest : public ControlTest {
protected:
    // The strip's access keys change as its captions do: it tells its container.
    TabStripTest() { form.allow_site_call(L"IOleControlSite::OnControlInfoChanged"); }
    Hosted &strip(RECT pos = {10, 10, 410, 36}) { return place(kProgId, pos); }
    static std::wstring events(Hosted &h)
    {
        std::wstring all;
        for (const std::wstring &e : h.log().event_texts()) all += (all.empty() ? L"" : L" ") + e;
        h.log().clear_events();
        return all;
    }
    // The middle of tab `i` in the strip's window, found as a user would: by its accessible location.
    static POINT tab_center(Hosted &h, long i)
    {
        ComPtr<IAccessible> acc;
        AccessibleObjectFromWindow(h.hwnd(), OBJID_CLIENT, IID_IAccessible, acc.put_void());
        long x = 0, y = 0, w = 0, ht = 0;
        Variant child = I4(i + 1);
        if (acc) acc->accLocation(&x, &y, &w, &ht, *child.get());
        POINT p{x + w / 2, y + ht / 2};
        ScreenToClient(h.hwnd(), &p);
        return p;
    }
};

// What the strip below writes: TABCAPTION2 keeps its default ("Tab 2"), which is not stored.
const std::vector<std::wstring> kKeys = {L"TABS", L"TABCAPTION0", L"TABCAPTION1", L"TABCAPTION3", L"SELECTEDTAB",
                                         L"FONT", L"BACKCOLOR", L"FORECOLOR", L"STYLE", L"ENABLED"};

} // namespace

TEST_F(TabStripTest, EveryPropertyIsSavedAndRestoredUnderItsKeyAndANewStripSavesNothing)
{
    form.ambient().font = make_font(L"Tahoma", 9);
    Hosted &h = strip();
    EXPECT_EQ(3, as_integer(h.get(L"Tabs")));
    EXPECT_EQ(L"Tab 2", as_string(h.get(L"TabCaption", {I2(2)})));
    EXPECT_EQ(0, as_integer(h.get(L"SelectedTab")));
    EXPECT_TRUE(h.save_bag()->keys().empty());
    h.put(L"Tabs", I2(4));
    h.put(L"TabCaption", Str(L"&Files"), {I2(0)});
    h.put(L"TabCaption", Str(L"Ed&it"), {I2(1)});
    h.put(L"TabCaption", Str(L"\u00dcbersicht \u0416"), {I2(3)});
    h.put(L"SelectedTab", I2(2));
    h.putref(L"Font", make_font(L"Tahoma", 12, true).get());
    h.put(L"BACKCOLOR", ole(0x00E0F0FF));
    h.put(L"ForeColor", ole(0x00800000));
    h.put(L"Style", I4(2));
    h.put(L"Enabled", Bool(false));
    EXPECT_EQ((std::vector<std::wstring>{L"TABS", L"TABCAPTION", L"TABCAPTION", L"TABCAPTION", L"SELECTEDTAB", L"FONT",
                                         L"BACKCOLOR", L"FORECOLOR", L"STYLE", L"ENABLED"}),
              h.log().changes);
    ComPtr<Bag> bag = h.save_bag();
    EXPECT_EQ(kKeys, bag->writes);
    ComPtr<IStream> stream = h.save_stream();
    for (Hosted *loaded : {&place(kProgId, {10, 50, 410, 76}, Init::FromBag, bag.get()),
                           &place(kProgId, {10, 90, 410, 116}, Init::FromStream, stream.get())}) {
        EXPECT_EQ(4, as_integer(loaded->get(L"Tabs")));
        EXPECT_EQ(L"&Files", as_string(loaded->get(L"TabCaption", {I2(0)})));
        EXPECT_EQ(L"Tab 2", as_string(loaded->get(L"TabCaption", {I2(2)})));
        EXPECT_EQ(L"\u00dcbersicht \u0416", as_string(loaded->get(L"TabCaption", {I2(3)})));
        EXPECT_EQ(2, as_integer(loaded->get(L"SelectedTab")));
        EXPECT_EQ(0x00E0F0FF, as_integer(loaded->get(L"BACKCOLOR")));
        EXPECT_EQ(0x00800000, as_integer(loaded->get(L"ForeColor")));
        EXPECT_EQ(2, as_integer(loaded->get(L"Style")));
        EXPECT_FALSE(as_integer(loaded->get(L"Enabled")));
        FontSpec f = FontSpecOf(V_DISPATCH(loaded->get(L"Font").get()));
        EXPECT_EQ(12, f.size);
        EXPECT_TRUE(f.bold);
    }
}

TEST_F(TabStripTest, ValuesNoStripCanHaveAreRefusedAndTheSelectionFollowsTheCount)
{
    Hosted &h = strip();
    for (int16_t bad : {-1, 1001, INT16_MIN}) h.put(L"Tabs", I2(bad));
    EXPECT_EQ(3, as_integer(h.get(L"Tabs")));
    h.put(L"Style", I4(3));
    h.put(L"Style", I4(-1));
    EXPECT_EQ(0, as_integer(h.get(L"Style")));
    h.put(L"SelectedTab", I2(3));
    h.put(L"SelectedTab", I2(-1));
    EXPECT_EQ(0, as_integer(h.get(L"SelectedTab")));
    h.put(L"TabCaption", Str(L"x"), {I2(3)});
    h.put(L"TabCaption", Str(L"x"), {I2(-1)});
    EXPECT_EQ(L"", as_string(h.get(L"TabCaption", {I2(7)})));
    h.put(L"BACKCOLOR", ole(0x12345678)); // no colour at all
    EXPECT_EQ(static_cast<int32_t>(0x8000000F), as_integer(h.get(L"BACKCOLOR")));
    EXPECT_EQ(S_OK, h.put(L"TabCaption", Str(std::wstring(100000, L'w')), {I2(0)}));
    h.put(L"SelectedTab", I2(2));
    h.put(L"Tabs", I2(2)); // the selected tab went: the last one left is selected
    EXPECT_EQ(1, as_integer(h.get(L"SelectedTab")));
    h.put(L"Tabs", I2(0));
    EXPECT_EQ(-1, as_integer(h.get(L"SelectedTab")));
    h.put(L"Tabs", I2(5));
    EXPECT_EQ(0, as_integer(h.get(L"SelectedTab")));
    EXPECT_EQ(L"Tab 4", as_string(h.get(L"TabCaption", {I2(4)})));
    h.render(400, 26); // draws whatever it holds
}

TEST_F(TabStripTest, RealClicksAndKeysPickTabsBeforeClickMayRefuseAndAccessKeysWorkFromElsewhere)
{
    Hosted &h = strip();
    h.put(L"Tabs", I2(4));
    h.put(L"TabCaption", Str(L"&Files"), {I2(0)});
    h.put(L"TabCaption", Str(L"Ed&it"), {I2(1)});
    ASSERT_EQ(S_OK, h.activate());
    allow_focus(h);
    HWND w = h.hwnd();
    h.log().clear_events();
    const POINT second = tab_center(h, 1);
    real_click(w, second);
    ASSERT_TRUE(pump_until([&] { return h.log().events.size() >= 5; }));
    const std::wstring at = L"," + twips_text(second.x, second.y) + L")";
    EXPECT_EQ(L"MouseMove(0,0" + at + L" MouseDown(1,0" + at + L" BeforeClick(1,False) Click MouseUp(1,0" + at,
              events(h));
    EXPECT_EQ(1, as_integer(h.get(L"SelectedTab")));
    EXPECT_EQ(w, GetFocus());
    // The arrows, Home and End while the strip has the focus; Ctrl+Tab goes round.
    const struct {
        std::initializer_list<WORD> keys;
        int expected;
    } moves[] = {{{VK_RIGHT}, 2}, {{VK_END}, 3}, {{VK_RIGHT}, 3}, {{VK_CONTROL, VK_TAB}, 0},
                 {{VK_CONTROL, VK_SHIFT, VK_TAB}, 3}, {{VK_HOME}, 0}, {{VK_LEFT}, 0}, {{VK_MENU, 'I'}, 1}};
    for (const auto &m : moves) {
        real_keys(m.keys);
        pump_until([&] { return as_integer(h.get(L"SelectedTab")) == m.expected; }, 2000);
        EXPECT_EQ(m.expected, as_integer(h.get(L"SelectedTab")));
    }
    // The host refuses a change in BeforeClick: nothing moves and no Click follows.
    h.log().on_event = [](const std::wstring &name, DISPPARAMS *params) {
        if (name == L"BeforeClick") *V_BOOLREF(&params->rgvarg[0]) = VARIANT_TRUE;
    };
    h.log().clear_events();
    real_keys({VK_RIGHT});
    pump_until([&] { return !h.log().events.empty(); }, 2000);
    EXPECT_EQ(L"BeforeClick(2,True)", events(h));
    EXPECT_EQ(1, as_integer(h.get(L"SelectedTab")));
    h.log().on_event = nullptr;
    // With the focus on another control of the form, Ctrl+Tab and Alt+F still reach the strip.
    Hosted &other = place(L"TarnControls.updown", {10, 60, 130, 81});
    ASSERT_EQ(S_OK, other.activate());
    allow_focus(other);
    allow_self_sizing(form);
    HWND text = FindWindowExW(other.hwnd(), nullptr, L"Edit", nullptr);
    for (HWND e = text; e; e = FindWindowExW(other.hwnd(), e, L"Edit", nullptr))
        if (!(GetWindowLongPtrW(e, GWL_STYLE) & ES_READONLY)) text = e;
    SetFocus(text);
    real_keys({VK_CONTROL, VK_TAB});
    pump_until([&] { return as_integer(h.get(L"SelectedTab")) == 2; }, 2000);
    EXPECT_EQ(2, as_integer(h.get(L"SelectedTab")));
    real_keys({VK_MENU, 'F'});
    pump_until([&] { return as_integer(h.get(L"SelectedTab")) == 0; }, 2000);
    EXPECT_EQ(0, as_integer(h.get(L"SelectedTab")));
    EXPECT_TRUE(IsChild(other.hwnd(), GetFocus())); // the focus stayed where it was
    // Disabled, the strip takes nothing.
    h.put(L"Enabled", Bool(false));
    real_keys({VK_CONTROL, VK_TAB});
    real_click(w, second);
    EXPECT_EQ(0, as_integer(h.get(L"SelectedTab")));
}

TEST_F(TabStripTest, AScreenReaderSeesAPageTabListOfPageTabs)
{
    Hosted &h = strip();
    h.put(L"TabCaption", Str(L"&Files"), {I2(0)});
    h.put(L"TabCaption", Str(L"Fish && chips"), {I2(1)});
    ASSERT_EQ(S_OK, h.activate());
    ComPtr<IAccessible> acc;
    ASSERT_EQ(S_OK, AccessibleObjectFromWindow(h.hwnd(), OBJID_CLIENT, IID_IAccessible, acc.put_void()));
    Variant self = I4(CHILDID_SELF), role, state;
    acc->get_accRole(*self.get(), role.put());
    EXPECT_EQ(ROLE_SYSTEM_PAGETABLIST, V_I4(role.get()));
    long count = 0;
    acc->get_accChildCount(&count);
    EXPECT_EQ(3, count);
    const struct {
        long id;
        const wchar_t *name, *shortcut;
        bool selected;
    } tabs[] = {{1, L"Files", L"Alt+F", true}, {2, L"Fish & chips", nullptr, false}, {3, L"Tab 2", nullptr, false}};
    for (const auto &t : tabs) {
        Variant child = I4(t.id);
        Bstr name, shortcut;
        acc->get_accName(*child.get(), name.put());
        EXPECT_EQ(t.name, name.str());
        acc->get_accKeyboardShortcut(*child.get(), shortcut.put());
        EXPECT_EQ(t.shortcut ? t.shortcut : L"", shortcut.str());
        acc->get_accRole(*child.get(), role.put());
        EXPECT_EQ(ROLE_SYSTEM_PAGETAB, V_I4(role.get()));
        acc->get_accState(*child.get(), state.put());
        EXPECT_EQ(t.selected, (V_I4(state.get()) & STATE_SYSTEM_SELECTED) != 0);
        // Found again where it is drawn.
        long x = 0, y = 0, w = 0, ht = 0;
        ASSERT_EQ(S_OK, acc->accLocation(&x, &y, &w, &ht, *child.get()));
        Variant hit;
        ASSERT_EQ(S_OK, acc->accHitTest(x + w / 2, y + ht / 2, hit.put()));
        EXPECT_EQ(t.id, V_I4(hit.get()));
    }
    Variant next, first = I4(1);
    EXPECT_EQ(S_OK, acc->accNavigate(NAVDIR_NEXT, *first.get(), next.put()));
    EXPECT_EQ(2, V_I4(next.get()));
    EXPECT_EQ(S_FALSE, acc->accNavigate(NAVDIR_PREVIOUS, *first.get(), next.put()));
    // Its default action switches to it, with the events a click gives.
    h.log().clear_events();
    Variant third = I4(3);
    EXPECT_EQ(S_OK, acc->accDoDefaultAction(*third.get()));
    EXPECT_EQ(L"BeforeClick(2,False) Click", events(h));
    Variant selection;
    acc->get_accSelection(selection.put());
    EXPECT_EQ(3, V_I4(selection.get()));
}

TEST_F(TabStripTest, PicturesOfEachLookAtTheScreensResolution)
{
    const int dpi = [] {
        HDC dc = GetDC(nullptr);
        int d = GetDeviceCaps(dc, LOGPIXELSX);
        ReleaseDC(nullptr, dc);
        return d;
    }();
    const int width = MulDiv(300, dpi, 96), height = MulDiv(26, dpi, 96);
    Hosted &h = strip({10, 10, 10 + width, 10 + height});
    h.put(L"TabCaption", Str(L"&General"), {I2(0)});
    h.put(L"TabCaption", Str(L"Layout"), {I2(1)});
    h.put(L"TabCaption", Str(L"Colours"), {I2(2)});
    h.put(L"SelectedTab", I2(1));
    const Rgb face = TranslateColor(0x8000000F), light = GetSysColor(COLOR_BTNHIGHLIGHT);
    for (int style = 0; style < 3; ++style) {
        SCOPED_TRACE(style);
        h.put(L"Style", I4(style));
        Bitmap pic = h.render(width, height);
        pic.save_png(output_path(L"tbf-style" + std::to_wstring(style) + L"-" + std::to_wstring(dpi) + L"dpi.png"));
        // The selected tab is the only thing that reaches the top row (classic and XP): find it there.
        int left = -1, right = -1;
        for (int x = 0; x < width; ++x)
            if (pic.pixel(x, 0) != face) {
                if (left < 0) left = x;
                right = x;
            }
        // Some caption ink in each third of the strip's tabs, in the caption's colour.
        EXPECT_GT(pic.count(GetSysColor(COLOR_BTNTEXT)), 30);
        if (style == 1) {
            EXPECT_EQ(-1, left); // flat buttons stand apart, none above the others
            // The pressed button is filled lighter than the face, inside its sunken edge.
            EXPECT_GT(pic.count(make_rgb((red_of(light) + red_of(face)) / 2, (green_of(light) + green_of(face)) / 2,
                                         (blue_of(light) + blue_of(face)) / 2)),
                      50);
            continue;
        }
        ASSERT_GT(left, 10); // not the first tab
        EXPECT_LT(right, width / 2 + MulDiv(60, dpi, 96));
        // The line the tabs stand on runs outside the selected tab and opens under it.
        const Rgb line = style == 0 ? light : make_rgb(145, 155, 156);
        EXPECT_EQ(line, pic.pixel(1, height - 1));
        EXPECT_EQ(line, pic.pixel(width - 2, height - 1));
        EXPECT_NE(line, pic.pixel((left + right) / 2, height - 1));
        if (style == 2) {
            // The coloured edge on the selected tab: three pixels deep at 96 DPI, more at 144.
            const int mid = (left + right) / 2, bar = std::max(MulDiv(3, dpi, 96), 2);
            EXPECT_EQ(make_rgb(230, 139, 44), pic.pixel(mid, 0));
            for (int y = 1; y < bar; ++y) EXPECT_EQ(make_rgb(255, 200, 60), pic.pixel(mid, y)) << y;
            EXPECT_NE(make_rgb(255, 200, 60), pic.pixel(mid, bar));
        }
    }
}
