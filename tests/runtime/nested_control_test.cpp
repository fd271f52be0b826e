// A control of the library nested in another as a constituent: made, initialised and in place
// in the constituent's own window, sized with it, its keys seen (and refused) first, its events
// heard without a connection, and everything gone with the constituent.
#include <gtest/gtest.h>

#include "runtime/control_impl.h"
#include "runtime/nested_control.h"
#include "runtime/text_box.h"
#include "support/control_test.h"

using namespace tarn;
using namespace tarn::test;

namespace {

// An inner control with one text box that says when its text changes (event 7).
class Inner final : public ControlImpl<Inner, IDispatch> {
public:
    static const ControlClass Class;
    static inline int alive = 0;
    static inline int inits = 0;
    Inner() : txt(L"txt", 0, 0, 900, 300)
    {
        ++alive;
        add_constituent(txt);
        SetFocusConstituent(&txt);
        txt.on_change = [this] { raise(7, EventArgs().val(txt.Text())); };
    }
    ~Inner() override { --alive; }
    TextBox txt;

protected:
    void InitProperties() override { ++inits; }
    void Resize() override { step([&] { txt.Move(0, 0, ScaleWidth(), ScaleHeight()); }); }
};
const ControlClass Inner::Class = {L"inner", L"Inner test control", &IID_IUnknown, &IID_IDispatch, nullptr,
                                   OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE, &Inner::Create};

HRESULT fail_create(REFIID, void **out)
{
    *out = nullptr;
    return E_OUTOFMEMORY;
}

class Nested : public ::testing::Test {
protected:
    static void SetUpTestSuite() { module::set_instance(GetModuleHandleW(nullptr)); }
};

} // namespace

TEST_F(Nested, TheInnerControlIsInPlaceInTheConstituentsWindowAndFollowsItsSize)
{
    {
        NestedControl n(L"udn", &Inner::Create, 0, 0, 1500, 450);
        EXPECT_EQ(1, Inner::inits);
        HWND inner = n.ControlWindow();
        ASSERT_TRUE(inner);
        EXPECT_EQ(n.hWnd(), GetParent(inner));
        RECT outer_r{}, inner_r{};
        GetClientRect(n.hWnd(), &outer_r);
        GetClientRect(inner, &inner_r);
        EXPECT_EQ(outer_r.right, inner_r.right);
        EXPECT_EQ(outer_r.bottom, inner_r.bottom);
        n.SetWidth(3000);
        GetClientRect(n.hWnd(), &outer_r);
        GetClientRect(inner, &inner_r);
        EXPECT_EQ(outer_r.right, inner_r.right);
        // The inner control's own constituent sits in its window and followed too.
        ASSERT_TRUE(n.As<IOleObject>(IID_IOleObject));
    }
    EXPECT_EQ(0, Inner::alive);
    Inner::inits = 0;
}

TEST_F(Nested, ItsKeysAreSeenFirstAndItsEventsHeardWithoutAConnection)
{
    NestedControl n(L"udn", &Inner::Create, 0, 0, 1500, 450);
    ComPtr<IOleObject> object = n.As<IOleObject>(IID_IOleObject);
    HWND edit = FindWindowExW(n.ControlWindow(), nullptr, L"Edit", nullptr);
    ASSERT_TRUE(edit);
    std::vector<std::wstring> heard;
    n.on_event = [&](DISPID id, EventArgs &args) { heard.push_back(std::to_wstring(id) + L":" + V_BSTR(&args.at(0))); };
    n.on_key_press = [](int16_t &ascii) {
        if (ascii == ',') ascii = 0;
    };
    int downs = 0;
    n.on_key_down = [&](int16_t &, int16_t) { ++downs; };
    for (wchar_t c : std::wstring(L"a,b")) SendMessageW(edit, WM_CHAR, c, 1);
    SendMessageW(edit, WM_KEYDOWN, VK_LEFT, 1);
    wchar_t text[16] = {};
    GetWindowTextW(edit, text, 16);
    EXPECT_STREQ(L"ab", text);
    EXPECT_EQ(1, downs);
    EXPECT_EQ((std::vector<std::wstring>{L"7:a", L"7:ab"}), heard);
}

TEST_F(Nested, AControlThatCannotBeMadeLeavesAnEmptyConstituent)
{
    NestedControl n(L"none", &fail_create, 0, 0, 1500, 450);
    EXPECT_EQ(nullptr, n.ControlWindow());
    EXPECT_FALSE(n.As<IOleObject>(IID_IOleObject));
    n.SetWidth(100); // still moves, shows and hides
    n.SetVisible(false);
    NestedControl none(L"null", nullptr, 0, 0, 10, 10);
    EXPECT_EQ(nullptr, none.ControlWindow());
}
