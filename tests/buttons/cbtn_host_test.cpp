// The button as hosts expect one: the caption's mnemonic in GetControlInfo and OnMnemonic
// clicking as a click does, the container's "display as default" ambient in the picture, and
// what a screen reader hears of it.
#include <gtest/gtest.h>

#include <oleacc.h>

#include "button_test.h"

using namespace tarn;
using namespace tarn::test;

namespace {

std::wstring event_names(Hosted &b)
{
    std::wstring all;
    for (const EventRecord &e : b.log().events) all += (all.empty() ? L"" : L" ") + e.text();
    b.log().clear_events();
    return all;
}

// The accelerators the button reports, as "Alt+S" texts.
std::vector<std::wstring> accelerators(Hosted &b)
{
    ComPtr<IOleControl> control = b.as<IOleControl>(IID_IOleControl);
    CONTROLINFO info{};
    info.cb = sizeof info;
    EXPECT_EQ(S_OK, control->GetControlInfo(&info));
    std::vector<std::wstring> out;
    if (!info.hAccel) {
        EXPECT_EQ(0, info.cAccel);
        return out;
    }
    ACCEL a[4] = {};
    int n = CopyAcceleratorTableW(info.hAccel, a, 4);
    EXPECT_EQ(n, info.cAccel);
    for (int i = 0; i < n; ++i)
        out.push_back(std::wstring(a[i].fVirt == (FVIRTKEY | FALT) ? L"Alt+" : L"?+") + static_cast<wchar_t>(a[i].key));
    return out;
}

ComPtr<IAccessible> accessible(Hosted &b)
{
    ComPtr<IAccessible> acc;
    EXPECT_EQ(S_OK, AccessibleObjectFromWindow(b.hwnd(), OBJID_CLIENT, IID_IAccessible, acc.put_void()));
    return acc;
}

std::wstring text_of(IAccessible *acc, HRESULT (STDMETHODCALLTYPE IAccessible::*get)(VARIANT, BSTR *))
{
    Variant self = Variant::of_i4(CHILDID_SELF);
    Bstr s;
    (acc->*get)(*self.get(), s.put());
    return s.str();
}

long state_of(IAccessible *acc)
{
    Variant self = Variant::of_i4(CHILDID_SELF), state;
    acc->get_accState(*self.get(), state.put());
    return V_I4(state.get());
}

} // namespace

TEST_F(ButtonTest, TheCaptionsMnemonicIsReportedToTheContainerAndClicksAsAClickDoes)
{
    Hosted &b = active();
    EXPECT_TRUE(accelerators(b).empty()); // "Button" has none
    b.log().expect(L"IOleControlSite::OnControlInfoChanged");
    b.put(L"CAPTION", Str(L"&Save"));
    EXPECT_TRUE(b.log().check().empty()) << "the container was not told the mnemonic changed";
    EXPECT_EQ(std::vector<std::wstring>{L"Alt+S"}, accelerators(b));
    b.log().disallow(L"IOleControlSite::OnControlInfoChanged");
    b.put(L"CAPTION", Str(L"&Sa&&ve")); // the same key: no notice
    EXPECT_EQ(std::vector<std::wstring>{L"Alt+S"}, accelerators(b));

    // A real click and the mnemonic raise the same events in the same order.
    b.log().clear_events();
    click(b.hwnd(), 1, 1);
    std::wstring by_mouse = event_names(b);
    ComPtr<IOleControl> control = b.as<IOleControl>(IID_IOleControl);
    MSG msg{};
    msg.hwnd = b.hwnd();
    msg.message = WM_SYSKEYDOWN;
    msg.wParam = 'S';
    EXPECT_EQ(S_OK, control->OnMnemonic(&msg));
    EXPECT_EQ(L"MouseDown(1,0,1,1) MouseUp(1,0,1,1) Click", by_mouse);
    EXPECT_EQ(by_mouse, event_names(b));
    EXPECT_EQ(S_OK, control->OnMnemonic(nullptr)); // whatever the message
    EXPECT_EQ(by_mouse, event_names(b));
    // A disabled button ignores its mnemonic.
    b.put(L"Enabled", Bool(false));
    b.log().clear_events();
    control->OnMnemonic(&msg);
    EXPECT_EQ(L"", event_names(b));
    EXPECT_EQ(E_POINTER, control->GetControlInfo(nullptr));
}

TEST_F(ButtonTest, TheDisplayAsDefaultAmbientFramesTheFaceAndFollowsItsChanges)
{
    Hosted &b = active();
    Bitmap plain = b.capture();
    form.ambient().display_as_default = true;
    form.ambient_changed(DISPID_AMBIENT_DISPLAYASDEFAULT);
    pump();
    Bitmap framed = b.capture();
    EXPECT_NE(plain.hash(), framed.hash());
    const Rgb frame = sys(COLOR_WINDOWFRAME);
    EXPECT_EQ(framed.width(), framed.count_row(0, frame));
    EXPECT_EQ(framed.height(), framed.count_column(0, frame));
    EXPECT_TRUE(state_of(accessible(b).get()) & STATE_SYSTEM_DEFAULT);
    // Read again on the container's word only, and also when it names no property.
    form.ambient().display_as_default = false;
    form.ambient_changed(DISPID_UNKNOWN);
    pump();
    EXPECT_EQ(plain.hash(), b.capture().hash());
    // A button placed on a form where it is the default shows it from the start.
    form.ambient().display_as_default = true;
    Hosted &second = active({10, 50, 110, 75});
    EXPECT_EQ(second.capture().width(), second.capture().count_row(0, frame));
}

TEST_F(ButtonTest, AScreenReaderHearsTheNameWithoutTheAmpersandTheShortcutAndTheTooltip)
{
    Hosted &b = active();
    b.log().allow(L"IOleControlSite::OnControlInfoChanged");
    b.put(L"CAPTION", Str(L"&Save"));
    b.put(L"ToolTip", Str(L"Saves the file"));
    ComPtr<IAccessible> acc = accessible(b);
    ASSERT_TRUE(acc);
    EXPECT_EQ(L"Save", text_of(acc.get(), &IAccessible::get_accName));
    EXPECT_EQ(L"Alt+S", text_of(acc.get(), &IAccessible::get_accKeyboardShortcut));
    EXPECT_EQ(L"Saves the file", text_of(acc.get(), &IAccessible::get_accDescription));
    EXPECT_EQ(L"Press", text_of(acc.get(), &IAccessible::get_accDefaultAction));
    Variant self = Variant::of_i4(CHILDID_SELF), role;
    ASSERT_EQ(S_OK, acc->get_accRole(*self.get(), role.put()));
    EXPECT_EQ(ROLE_SYSTEM_PUSHBUTTON, V_I4(role.get()));
    EXPECT_TRUE(state_of(acc.get()) & STATE_SYSTEM_FOCUSABLE);
    // The default action clicks; a disabled button is unavailable and does nothing.
    b.log().clear_events();
    EXPECT_EQ(S_OK, acc->accDoDefaultAction(*self.get()));
    EXPECT_EQ(L"Click", event_names(b));
    b.put(L"Enabled", Bool(false));
    EXPECT_TRUE(state_of(acc.get()) & STATE_SYSTEM_UNAVAILABLE);
    EXPECT_FALSE(state_of(acc.get()) & STATE_SYSTEM_FOCUSABLE);
    acc->accDoDefaultAction(*self.get());
    EXPECT_EQ(L"", event_names(b));
    // A caption without a mnemonic has no shortcut of its own; another child is refused.
    b.put(L"CAPTION", Str(L"Fish && Chips"));
    EXPECT_EQ(L"Fish & Chips", text_of(acc.get(), &IAccessible::get_accName));
    EXPECT_EQ(L"", text_of(acc.get(), &IAccessible::get_accKeyboardShortcut));
    Variant other = Variant::of_i4(3);
    Bstr name;
    EXPECT_EQ(E_INVALIDARG, acc->get_accName(*other.get(), name.put()));
    // The object outlives the button without harm.
    close(b);
    EXPECT_EQ(CO_E_OBJNOTCONNECTED, acc->get_accRole(*self.get(), role.put()));
}
