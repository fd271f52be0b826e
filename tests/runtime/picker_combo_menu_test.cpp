// The date picker, image combo and pop-up menu constituents on their own (parked in the
// runtime's holder, driven by real window messages), and the context-menu request every
// windowed constituent answers.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "foundation/metrics.h"
#include "runtime/date_picker.h"
#include "runtime/image_combo.h"
#include "runtime/module.h"
#include "runtime/popup_menu.h"
#include "runtime/text_box.h"

using namespace tarn;

namespace {

class Kinds : public ::testing::Test {
protected:
    static void SetUpTestSuite() { module::set_instance(GetModuleHandleW(nullptr)); }
    void TearDown() override { PopupMenu::SetTracker(nullptr); }
};

SYSTEMTIME day(WORD y, WORD m, WORD d, WORD h = 0, WORD mi = 0)
{
    SYSTEMTIME st{};
    st.wYear = y;
    st.wMonth = m;
    st.wDay = d;
    st.wHour = h;
    st.wMinute = mi;
    return st;
}

HWND g_menu_owner = nullptr;

void CALLBACK choose_second_item(HWND, UINT, UINT_PTR id, DWORD)
{
    KillTimer(nullptr, id);
    for (WPARAM vk : {WPARAM(VK_DOWN), WPARAM(VK_DOWN), WPARAM(VK_RETURN)}) {
        PostMessageW(g_menu_owner, WM_KEYDOWN, vk, 1);
        PostMessageW(g_menu_owner, WM_KEYUP, vk, 0xC0000001);
    }
}

} // namespace

TEST_F(Kinds, ADatePickerKeepsItsValueAsAnAutomationDateInEitherFormat)
{
    DatePicker date(L"dtp", DatePicker::ShortDate, 0, 0, 1800, 315);
    DatePicker time(L"tim", DatePicker::Time, 0, 0, 1800, 315);
    EXPECT_EQ(DatePicker::ShortDate, date.GetFormat());
    EXPECT_TRUE(GetWindowLongPtrW(time.hWnd(), GWL_STYLE) & DTS_TIMEFORMAT);
    EXPECT_FALSE(GetWindowLongPtrW(date.hWnd(), GWL_STYLE) & DTS_TIMEFORMAT);
    int changes = 0;
    date.on_change = [&] { ++changes; };
    // 45356 is 5 March 2024; .75 is 18:00.
    date.SetValue(45356.75);
    EXPECT_DOUBLE_EQ(45356.75, date.Value());
    EXPECT_EQ(3, date.Parts().wMonth);
    EXPECT_EQ(18, date.Parts().wHour);
    EXPECT_EQ(1, changes);
    date.SetParts(day(1999, 12, 31));
    EXPECT_EQ(1999, date.Parts().wYear);
    EXPECT_EQ(2, changes);
    // What the window cannot hold is refused and leaves the value.
    for (double bad : {std::numeric_limits<double>::quiet_NaN(), -1e9, 1e9, std::numeric_limits<double>::infinity()})
        EXPECT_THROW(date.SetValue(bad), std::invalid_argument) << bad;
    SYSTEMTIME nonsense = day(2024, 13, 40);
    EXPECT_THROW(date.SetParts(nonsense), std::invalid_argument);
    EXPECT_EQ(1999, date.Parts().wYear);
    EXPECT_EQ(2, changes);
    // The user's change, as the window reports it.
    NMDATETIMECHANGE n{};
    n.nmhdr.hwndFrom = date.hWnd();
    n.nmhdr.code = DTN_DATETIMECHANGE;
    SendMessageW(GetParent(date.hWnd()), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&n));
    EXPECT_EQ(3, changes);
}

TEST_F(Kinds, AnImageComboKeepsItemsWithPicturesAndReportsTheSelection)
{
    ImageCombo c(L"img", 0, 0, 1800, 1500);
    HICON icon = LoadIconW(nullptr, IDI_APPLICATION);
    EXPECT_EQ(0, c.AddImage(icon));
    EXPECT_EQ(1, c.AddImage(icon));
    EXPECT_EQ(-1, c.AddImage(nullptr));
    EXPECT_EQ(2, c.ImageCount());
    int clicks = 0;
    c.on_click = [&] { ++clicks; };
    c.AddItem(L"b", -1, 1);
    c.AddItem(L"a", 0, 0);
    c.AddItem(L"\u65e5\u672c");
    EXPECT_EQ(3, c.ListCount());
    EXPECT_EQ(L"a", c.List(0));
    EXPECT_EQ(L"b", c.List(1));
    EXPECT_EQ(1, c.ItemImage(1));
    EXPECT_EQ(-1, c.ItemImage(2));
    EXPECT_EQ(L"", c.List(3));
    EXPECT_EQ(-1, c.ListIndex());
    EXPECT_EQ(L"", c.Text());
    c.SetListIndex(2);
    EXPECT_EQ(L"\u65e5\u672c", c.Text());
    c.SetListIndex(2); // no change, no click
    EXPECT_EQ(1, clicks);
    EXPECT_THROW(c.AddItem(L"x", 9), std::out_of_range);
    EXPECT_THROW(c.AddItem(L"x", -1, 2), std::out_of_range);
    EXPECT_THROW(c.RemoveItem(3), std::out_of_range);
    EXPECT_THROW(c.SetListIndex(-2), std::out_of_range);
    c.RemoveItem(0);
    EXPECT_EQ(L"b", c.List(0));
    // The user's choice arrives as the window's notice.
    SendMessageW(GetParent(c.hWnd()), WM_COMMAND, MAKEWPARAM(0, CBN_SELCHANGE), reinterpret_cast<LPARAM>(c.hWnd()));
    EXPECT_EQ(2, clicks);
    c.Clear();
    EXPECT_EQ(0, c.ListCount());
    // Its height is its field's and follows its font, not the placement's.
    EXPECT_GT(c.Height(), 0.0f);
    EXPECT_LT(c.Height(), 1500.0f);
}

TEST_F(Kinds, APopupMenuRunsTheChosenItemsHandlerAfterItClosed)
{
    PopupMenu m(L"mnuTOP");
    std::vector<std::wstring> ran;
    bool menu_alive_in_handler = true;
    HMENU shown = nullptr;
    m.AddItem(L"mnuA", L"&A", [&] {
        ran.push_back(L"A");
        menu_alive_in_handler = shown && IsMenu(shown);
    });
    m.AddItem(L"mnuSEP", L"-");
    m.AddItem(L"mnuB", L"B", [&] { ran.push_back(L"B"); });
    m.AddItem(L"mnuC", L"C");
    EXPECT_TRUE(m.IsSeparator(1));
    UINT answer = 1;
    std::vector<std::wstring> captions;
    PopupMenu::SetTracker([&](HMENU menu, HWND, POINT) {
        shown = menu;
        captions.clear();
        for (int i = 0; i < GetMenuItemCount(menu); ++i) {
            wchar_t text[32] = {};
            GetMenuStringW(menu, i, text, 32, MF_BYPOSITION);
            UINT state = GetMenuState(menu, i, MF_BYPOSITION);
            // A separator is greyed by nature: only the items say whether they are.
            if (state & MF_SEPARATOR) captions.push_back(L"|sep");
            else captions.push_back(std::wstring(text) + ((state & MF_GRAYED) ? L"|grey" : L""));
        }
        return answer;
    });
    EXPECT_EQ(L"mnuA", m.Popup(nullptr, POINT{0, 0}));
    EXPECT_FALSE(menu_alive_in_handler);
    EXPECT_EQ((std::vector<std::wstring>{L"&A", L"|sep", L"B", L"C"}), captions);
    m.SetItemEnabled(L"mnuB", false);
    answer = 3;
    EXPECT_EQ(L"", m.Popup(nullptr, POINT{0, 0}));
    EXPECT_EQ(L"B|grey", captions[2]);
    answer = 0; // dismissed
    EXPECT_EQ(L"", m.Popup(nullptr, POINT{0, 0}));
    answer = 99; // nothing the menu holds
    EXPECT_EQ(L"", m.Popup(nullptr, POINT{0, 0}));
    answer = 4;
    EXPECT_EQ(L"mnuC", m.Popup(nullptr, POINT{0, 0})); // an item without a handler
    EXPECT_EQ(std::vector<std::wstring>{L"A"}, ran);
    EXPECT_FALSE(m.Choose(L"mnuSEP"));
    EXPECT_FALSE(m.Choose(L"mnuB"));
    EXPECT_FALSE(m.Choose(L"nothing"));
    EXPECT_THROW(m.SetItemEnabled(L"nothing", true), std::invalid_argument);
    // A handler that fails is the trap's: the choice still counts.
    m.AddItem(L"mnuBAD", L"Bad", [] { throw std::runtime_error("host error"); });
    EXPECT_TRUE(m.Choose(L"mnuBAD"));
}

TEST_F(Kinds, TheRealMenuLoopShowsTheMenuAndTakesAKeyboardChoice)
{
    // A top-level owner: the menu's loop needs one; keys posted before it starts choose.
    HWND owner = CreateWindowExW(0, L"STATIC", L"owner", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr,
                                 GetModuleHandleW(nullptr), nullptr);
    PopupMenu m(L"mnuTOP");
    int b = 0;
    m.AddItem(L"mnuA", L"A");
    m.AddItem(L"mnuB", L"B", [&] { ++b; });
    SetForegroundWindow(owner);
    // The loop takes the keyboard; a timer inside it presses Down, Down, Enter.
    g_menu_owner = owner;
    UINT_PTR timer = SetTimer(nullptr, 0, 1, &choose_second_item);
    std::wstring chosen = m.Popup(owner, POINT{10, 10});
    KillTimer(nullptr, timer);
    DestroyWindow(owner);
    if (chosen.empty()) GTEST_SKIP() << "this platform's menu loop took no posted keys";
    EXPECT_EQ(L"mnuB", chosen);
    EXPECT_EQ(1, b);
}

TEST_F(Kinds, AConstituentAsksForItsContextMenuWhereTheUserAsked)
{
    TextBox t(L"t", 0, 0, 1500, 300);
    std::vector<std::pair<float, float>> asks;
    t.on_context_menu = [&](float x, float y) { asks.emplace_back(x, y); };
    std::vector<int> downs;
    t.on_mouse_up = [&](int16_t button, int16_t, float, float) { downs.push_back(button); };
    SendMessageW(t.hWnd(), WM_RBUTTONUP, 0, MAKELPARAM(4, 6));
    SendMessageW(t.hWnd(), WM_KEYDOWN, VK_APPS, 1);
    SendMessageW(t.hWnd(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(t.hWnd()), -1);
    SendMessageW(t.hWnd(), WM_KEYDOWN, VK_F10, 1); // without Shift
    ASSERT_EQ(3u, asks.size());
    const double tppx = TwipsPerPixelX();
    EXPECT_NEAR(4 * tppx, asks[0].first, 0.01);
    EXPECT_NEAR(6 * tppx, asks[0].second, 0.01);
    EXPECT_EQ(0.0f, asks[1].first); // from the keyboard: the corner
    EXPECT_EQ(0.0f, asks[2].second);
    // The right-button release still reaches the mouse handler.
    EXPECT_EQ(std::vector<int>{2}, downs);
    // Without a handler the window keeps its own behaviour.
    t.on_context_menu = nullptr;
    SendMessageW(t.hWnd(), WM_KEYDOWN, VK_APPS, 1);
    EXPECT_EQ(3u, asks.size());
}
