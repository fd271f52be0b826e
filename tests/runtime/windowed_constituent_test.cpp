// Windowed constituents: each kind on its own (parked in the runtime's holder, driven by real
// window messages), and a composite control of all of them in the test container: moving in
// and out of the control's window, drawing through the control's one draw path, colours,
// focus, and what bad input does.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "foundation/color_translate.h"
#include "foundation/font_object.h"
#include "foundation/metrics.h"
#include "runtime/check_box.h"
#include "runtime/combo_box.h"
#include "runtime/control_impl.h"
#include "runtime/picture_box.h"
#include "runtime/text_box.h"
#include "runtime/up_down.h"
#include "support/control_test.h"
#include "support/resource_counts.h"
#include "support/test_factory.h"

using namespace tarn;
using namespace tarn::test;

namespace {

// Twips as the pixel a window lands on.
LONG px(float twips) { return static_cast<LONG>(std::floor(twips / static_cast<float>(TwipsPerPixelX()))); }

void type(HWND w, const std::wstring &text)
{
    for (wchar_t c : text) SendMessageW(w, WM_CHAR, c, 1);
}

// The test's windows and classes are its own module's: the runtime compiled into this program
// registers them under the program's instance.
class Constituents : public ::testing::Test {
protected:
    static void SetUpTestSuite() { module::set_instance(GetModuleHandleW(nullptr)); }
};

} // namespace

// ---------------------------------------------------------------- the kinds on their own

TEST_F(Constituents, LiveInTheHoldersWindowWhichGoesWithTheLastOfThem)
{
    {
        TextBox a(L"a", 0, 0, 1500, 300);
        HWND holder = WindowedConstituent::holder();
        ASSERT_TRUE(holder);
        EXPECT_EQ(holder, GetParent(a.hWnd()));
        EXPECT_FALSE(IsWindowVisible(holder));
        EXPECT_TRUE(a.Visible()); // its own state, although nothing shows it
        EXPECT_FALSE(IsWindowVisible(a.hWnd()));
        {
            CheckBox b(L"b", 0, 0, 300, 300);
            EXPECT_EQ(holder, GetParent(b.hWnd()));
        }
        EXPECT_EQ(holder, WindowedConstituent::holder());
    }
    EXPECT_EQ(nullptr, WindowedConstituent::holder());
}

TEST_F(Constituents, PlacementIsInTwipsAndRefusesWhatNoWindowCanBe)
{
    TextBox t(L"t", 150, 75, 1500, 300);
    RECT r = placement(t.hWnd());
    EXPECT_EQ(px(150), r.left);
    EXPECT_EQ(px(75), r.top);
    EXPECT_EQ(px(1650), r.right);
    t.SetWidth(3000);
    EXPECT_EQ(px(3150), placement(t.hWnd()).right);
    // A negative position is fine (partly outside its control); a negative size is not.
    t.SetLeft(-600);
    EXPECT_LT(placement(t.hWnd()).left, 0);
    EXPECT_THROW(t.SetWidth(-1), std::invalid_argument);
    EXPECT_THROW(t.SetHeight(std::numeric_limits<float>::quiet_NaN()), std::invalid_argument);
    EXPECT_THROW(t.SetTop(std::numeric_limits<float>::infinity()), std::invalid_argument);
    EXPECT_FLOAT_EQ(3000, t.Width());
    // Far beyond any screen: clamped to what a window position holds, never undefined.
    t.Move(3e38f, -3e38f, 3e38f, 1e30f);
    r = placement(t.hWnd());
    EXPECT_GT(r.left, 0);
    EXPECT_LT(r.top, 0);
}

TEST_F(Constituents, ATextBoxKeepsItsStateInItsWindow)
{
    TextBox t(L"t", 0, 0, 1500, 300);
    // The longest is long enough to pass any fixed buffer (Wine's edit window slows down with
    // the square of the length, so not longer).
    for (const std::wstring &text : {std::wstring(L"\u00c5ngstr\u00f6m \u65e5\u672c \u0416"), std::wstring(20000, L'9'), std::wstring()}) {
        t.SetText(text);
        EXPECT_EQ(text, t.Text());
    }
    EXPECT_THROW(t.SetAlignment(3), std::invalid_argument);
    EXPECT_THROW(t.SetAlignment(-1), std::invalid_argument);
    EXPECT_EQ(0, t.Alignment());

    EXPECT_EQ(0, t.MaxLength()); // no limit
    t.SetMaxLength(3);
    type(t.hWnd(), L"12345");
    EXPECT_EQ(L"123", t.Text());
    t.SetMaxLength(0);
    EXPECT_EQ(0, t.MaxLength());
    EXPECT_THROW(t.SetMaxLength(-1), std::invalid_argument);

    t.SetText(L"abcdef");
    t.SetSelStart(2);
    t.SetSelLength(3);
    EXPECT_EQ(2, t.SelStart());
    EXPECT_EQ(3, t.SelLength());
    t.SetSelStart(1); // a new start drops the length
    EXPECT_EQ(0, t.SelLength());
    t.SetSelLength(1000); // beyond the text: up to its end
    EXPECT_EQ(5, t.SelLength());
    EXPECT_THROW(t.SetSelStart(-1), std::invalid_argument);
    EXPECT_THROW(t.SetSelLength(-5), std::invalid_argument);

    t.SetLocked(true);
    t.SetSelStart(6);
    type(t.hWnd(), L"x");
    EXPECT_EQ(L"abcdef", t.Text());

    EXPECT_EQ(1, t.BorderStyle());
    t.SetBorderStyle(0);
    RECT client{}, window{};
    GetClientRect(t.hWnd(), &client);
    GetWindowRect(t.hWnd(), &window);
    EXPECT_EQ(window.right - window.left, client.right); // no frame left
    EXPECT_THROW(t.SetBorderStyle(2), std::invalid_argument);
    EXPECT_THROW(t.SetBackColor(0x7F000000), std::invalid_argument); // not an OLE colour
    EXPECT_EQ(syscolor::Window, t.BackColor());
}

TEST_F(Constituents, PrintingDrawsTheFrameTheColoursAndTheTextWhereTheAlignmentPutsIt)
{
    TextBox t(L"t", 150, 150, 3000, 375);
    t.SetBackColor(0x0000FFFF);
    t.SetForeColor(0x00FF0000);
    t.SetText(L"WW");
    t.SetMaxLength(4);
    int presses = 0;
    t.on_key_press = [&](int16_t &) { ++presses; };
    const RECT r = placement(t.hWnd());
    const LONG middle = (r.left + r.right) / 2;
    Bitmap b(r.right + 10, r.bottom + 10, 0xFF00FF);
    // Pixels of the colour in the left or the right half of the box, inside its edge.
    auto ink = [&](COLORREF colour, bool left_half) {
        b.fill(0xFF00FF);
        t.print(b.dc());
        int n = 0;
        for (int y = r.top + 2; y < r.bottom - 2; ++y)
            for (int x = left_half ? r.left + 2 : middle; x < (left_half ? middle : r.right - 2); ++x) n += b.pixel(x, y) == colour;
        return n;
    };
    EXPECT_GT(ink(0x00FF0000, true), 10);
    EXPECT_EQ(0, ink(0x00FF0000, false));
    // The sunken edge's outer line, the background inside, nothing outside.
    EXPECT_EQ(GetSysColor(COLOR_BTNSHADOW), b.pixel(r.left, r.top));
    EXPECT_EQ(0x0000FFFFu, b.pixel(r.right - 4, r.bottom - 4));
    EXPECT_EQ(0xFF00FFu, b.pixel(r.right + 1, r.top));

    // A new alignment makes the window again: the text moves, everything else comes along.
    t.SetBorderStyle(0);
    t.SetEnabled(false);
    t.SetAlignment(1);
    EXPECT_EQ(0, ink(GetSysColor(COLOR_GRAYTEXT), true));
    EXPECT_GT(ink(GetSysColor(COLOR_GRAYTEXT), false), 0);
    EXPECT_EQ(L"WW", t.Text());
    EXPECT_EQ(4, t.MaxLength());
    EXPECT_FALSE(t.Enabled());
    EXPECT_EQ(0, t.BorderStyle());
    EXPECT_EQ(WindowedConstituent::holder(), GetParent(t.hWnd()));
    t.SetEnabled(true);
    t.SetSelStart(2);
    type(t.hWnd(), L"123");
    EXPECT_EQ(L"WW12", t.Text());
    EXPECT_EQ(3, presses);
    // Hidden: nothing drawn.
    t.SetVisible(false);
    b.fill(0xFF00FF);
    t.print(b.dc());
    EXPECT_EQ(b.width() * b.height(), b.count(0xFF00FF));
}

TEST_F(Constituents, HandlersSeeRealKeyAndMouseMessagesAndMaySwallowOrReplaceKeys)
{
    TextBox t(L"t", 300, 300, 1500, 300);
    int changes = 0, ups = 0;
    t.on_change = [&] { ++changes; };
    t.on_key_press = [](int16_t &ascii) {
        if (ascii == L'x') ascii = 0;        // swallowed
        else if (ascii == L'a') ascii = L'b'; // replaced
    };
    type(t.hWnd(), L"axa1x");
    EXPECT_EQ(L"bb1", t.Text());
    EXPECT_EQ(3, changes);
    // A character beyond 8 bits arrives whole and passes unchanged.
    type(t.hWnd(), L"\u20ac");
    EXPECT_EQ(L"bb1\u20ac", t.Text());

    t.on_key_down = [](int16_t &code, int16_t) {
        if (code == VK_DELETE) code = 0;
    };
    t.on_key_up = [&](int16_t &, int16_t) { ++ups; };
    t.SetSelStart(0);
    SendMessageW(t.hWnd(), WM_KEYDOWN, VK_DELETE, 1);
    EXPECT_EQ(L"bb1\u20ac", t.Text());
    SendMessageW(t.hWnd(), WM_KEYUP, VK_DELETE, 0xC0000001);
    EXPECT_EQ(1, ups);
    // Code writes the text: a change too.
    changes = 0;
    t.SetText(L"code");
    EXPECT_EQ(1, changes);
    // A handler that throws is skipped; the key still arrives.
    t.on_key_press = [](int16_t &) { throw std::runtime_error("host error"); };
    t.SetSelStart(4);
    type(t.hWnd(), L"!");
    EXPECT_EQ(L"code!", t.Text());

    // Mouse events carry twips relative to the constituent (placed away from the holder's
    // corner), and a click comes on the release.
    std::vector<std::wstring> seen;
    auto rec = [&](const wchar_t *name) {
        return [&seen, name](int16_t b, int16_t s, float x, float y) {
            seen.push_back(std::wstring(name) + L"(" + std::to_wstring(b) + L"," + std::to_wstring(s) + L"," +
                           std::to_wstring(std::lround(x)) + L"," + std::to_wstring(std::lround(y)) + L")");
        };
    };
    t.on_mouse_down = rec(L"down");
    t.on_mouse_up = rec(L"up");
    t.on_mouse_move = rec(L"move");
    t.on_click = [&] { seen.push_back(L"click"); };
    t.on_dbl_click = [&] { seen.push_back(L"dbl"); };
    // Client coordinates of the edit (inside its edge): 3 and 4 pixels.
    test::mouse(t.hWnd(), WM_MOUSEMOVE, 3, 4, MK_SHIFT);
    click(t.hWnd(), 3, 4);
    test::mouse(t.hWnd(), WM_LBUTTONDBLCLK, 3, 4, MK_LBUTTON);
    test::mouse(t.hWnd(), WM_LBUTTONUP, 3, 4);
    // (The middle button: a right-button release opens the edit window's menu, a modal loop.)
    test::mouse(t.hWnd(), WM_MBUTTONDOWN, 3, 4, MK_MBUTTON);
    test::mouse(t.hWnd(), WM_MBUTTONUP, 3, 4);
    const std::wstring at = L"," + twips_text(3, 4) + L")";
    EXPECT_EQ((std::vector<std::wstring>{L"move(0,1" + at, L"down(1,0" + at, L"up(1,0" + at, L"click", L"dbl",
                                         L"up(1,0" + at, L"down(4,0" + at, L"up(4,0" + at}),
              seen);
    // A release outside is no click.
    seen.clear();
    test::mouse(t.hWnd(), WM_LBUTTONDOWN, 3, 4, MK_LBUTTON);
    test::mouse(t.hWnd(), WM_LBUTTONUP, 3000, 4);
    EXPECT_EQ(2u, seen.size());
}

TEST_F(Constituents, ACheckBoxClicksWhenItsValueChangesByHandOrByCode)
{
    CheckBox c(L"c", 0, 0, 1500, 300);
    int clicks = 0;
    c.on_click = [&] { ++clicks; };
    c.SetValue(1);
    EXPECT_EQ(1, clicks);
    c.SetValue(1); // no change, no click
    EXPECT_EQ(1, clicks);
    EXPECT_THROW(c.SetValue(2), std::invalid_argument);
    EXPECT_THROW(c.SetValue(-1), std::invalid_argument);
    EXPECT_EQ(1, c.Value());
    // The user clicks it (its notice reaches the holder, which hands it to the constituent).
    SendMessageW(c.hWnd(), BM_CLICK, 0, 0);
    EXPECT_EQ(0, c.Value());
    EXPECT_EQ(2, clicks);
}

TEST_F(Constituents, AComboBoxKeepsItsItemsAndItsHeightFollowsItsFont)
{
    ComboBox c(L"c", 0, 0, 1500, 2000);
    int clicks = 0, changes = 0, presses = 0;
    c.on_click = [&] { ++clicks; };
    c.on_change = [&] { ++changes; };
    c.on_key_press = [&](int16_t &) { ++presses; };
    c.AddItem(L"one");
    c.AddItem(L"three");
    c.AddItem(L"two", 1);
    EXPECT_EQ(3, c.ListCount());
    EXPECT_EQ(L"two", c.List(1));
    EXPECT_EQ(L"", c.List(3));
    EXPECT_EQ(L"", c.List(-2));
    EXPECT_THROW(c.AddItem(L"x", 9), std::out_of_range);
    EXPECT_THROW(c.RemoveItem(3), std::out_of_range);
    EXPECT_EQ(-1, c.ListIndex());
    c.SetListIndex(2);
    EXPECT_EQ(L"three", c.Text());
    EXPECT_EQ(1, clicks);
    c.SetListIndex(2); // no change, no click
    EXPECT_EQ(1, clicks);
    EXPECT_THROW(c.SetListIndex(3), std::out_of_range);
    c.SetText(L"typed");
    EXPECT_EQ(1, changes);
    // Typing goes to the edit field, whose keys are the combo box's.
    HWND field = FindWindowExW(c.hWnd(), nullptr, L"EDIT", nullptr);
    ASSERT_TRUE(field);
    SendMessageW(field, EM_SETSEL, 5, 5);
    type(field, L"!");
    EXPECT_EQ(1, presses);
    EXPECT_EQ(L"typed!", c.Text());
    c.RemoveItem(0);
    EXPECT_EQ(2, c.ListCount());
    c.Clear();
    EXPECT_EQ(0, c.ListCount());

    const float small = c.Height();
    c.SetFont(make_font(L"Tahoma", 24).get());
    EXPECT_GT(c.Height(), small + 10 * TwipsPerPixelX());
    c.SetHeight(15); // the placement's height is the list's: the field keeps its own
    EXPECT_GT(c.Height(), small);

    ComboBox list(L"list", 0, 0, 1500, 2000, 2);
    list.AddItem(L"alpha");
    list.SetText(L"alpha");
    EXPECT_EQ(0, list.ListIndex());
    EXPECT_THROW(list.SetText(L"beta"), std::invalid_argument);
    EXPECT_EQ(L"alpha", list.Text());
}

TEST_F(Constituents, UpDownArrowsKeepTheRangeAndReportEachClick)
{
    UpDown u(L"u", 0, 0, 255, 330);
    EXPECT_EQ(0, u.Min());
    EXPECT_EQ(10, u.Max());
    u.SetMin(std::numeric_limits<int32_t>::min());
    u.SetMax(std::numeric_limits<int32_t>::max());
    EXPECT_EQ(std::numeric_limits<int32_t>::min(), u.Min());
    EXPECT_EQ(std::numeric_limits<int32_t>::max(), u.Max());
    u.SetMin(0);
    u.SetMax(10);
    // The options a buddy would use start as a buddy wants them.
    EXPECT_TRUE(u.ArrowKeys());
    EXPECT_TRUE(u.ThousandsSeparator());
    EXPECT_FALSE(u.SyncBuddy());
    EXPECT_EQ(0, u.BuddyAlignment());
    u.SetBuddyAlignment(2);
    EXPECT_THROW(u.SetBuddyAlignment(3), std::invalid_argument);
    EXPECT_EQ(2, u.BuddyAlignment());

    std::vector<std::wstring> seen;
    u.on_up_click = [&] { seen.push_back(L"up"); };
    u.on_down_click = [&] { seen.push_back(L"down"); };
    RECT r{};
    GetClientRect(u.hWnd(), &r);
    auto press = [&](bool upper) {
        int y = upper ? 2 : r.bottom - 3;
        test::mouse(u.hWnd(), WM_LBUTTONDOWN, 3, y, MK_LBUTTON);
        test::mouse(u.hWnd(), WM_LBUTTONUP, 3, y);
    };
    press(true);
    press(false);
    u.SetValue(10); // at the top of the range: the up arrow still reports
    press(true);
    u.SetMin(10); // a range running downward: the arrows keep their meaning
    u.SetMax(0);
    press(true);
    press(false);
    EXPECT_EQ((std::vector<std::wstring>{L"up", L"down", L"up", L"up", L"down"}), seen);
}

TEST_F(Constituents, APictureBoxHasABorderOfEitherLook)
{
    PictureBox p(L"p", 0, 0, 600, 600);
    EXPECT_EQ(1, p.BorderStyle());
    EXPECT_EQ(1, p.Appearance());
    EXPECT_TRUE(GetWindowLongPtrW(p.hWnd(), GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
    p.SetAppearance(0);
    EXPECT_TRUE(GetWindowLongPtrW(p.hWnd(), GWL_STYLE) & WS_BORDER);
    EXPECT_FALSE(GetWindowLongPtrW(p.hWnd(), GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
    p.SetBorderStyle(0);
    EXPECT_FALSE(GetWindowLongPtrW(p.hWnd(), GWL_STYLE) & WS_BORDER);
    EXPECT_EQ(0, p.Appearance());
    EXPECT_THROW(p.SetBorderStyle(5), std::invalid_argument);
    EXPECT_THROW(p.SetAppearance(-1), std::invalid_argument);
}

TEST_F(Constituents, AFontIsCopiedAndChangesThroughItsObjectReachTheWindowAtOnce)
{
    TextBox t(L"t", 0, 0, 1500, 300);
    ASSERT_TRUE(t.Font());
    ComPtr<IFontDisp> mine = make_font(L"Tahoma", 10);
    t.SetFont(mine.get());
    EXPECT_NE(mine.get(), t.Font().get());
    ComPtr<IFont>(mine.as<IFont>(IID_IFont))->put_Bold(TRUE); // the caller's own object: no effect
    EXPECT_FALSE(FontSpecOf(t.Font().get()).bold);
    ComPtr<IFont>(t.Font().as<IFont>(IID_IFont))->put_Bold(TRUE); // the constituent's: at once
    LOGFONTW lf{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(t.hWnd(), WM_GETFONT, 0, 0)), sizeof lf, &lf);
    EXPECT_GE(lf.lfWeight, FW_BOLD);
    EXPECT_THROW(t.SetFont(nullptr), std::invalid_argument);
    EXPECT_EQ(L"Tahoma", FontSpecOf(t.Font().get()).name);
}

// ---------------------------------------------------------------- in a control

namespace {

// {712FA761-257D-4CD2-A8FE-0FCD7E971778}
const CLSID CLSID_Composite = {0x712fa761, 0x257d, 0x4cd2, {0xa8, 0xfe, 0x0f, 0xcd, 0x7e, 0x97, 0x17, 0x78}};
constexpr wchar_t kComposite[] = L"{712FA761-257D-4CD2-A8FE-0FCD7E971778}";

// A control made of one constituent of each kind, as the library's composites are.
class Composite final : public ControlImpl<Composite, IDispatch> {
public:
    static const ControlClass Class;
    static inline Composite *last = nullptr;
    Composite()
        : txt(L"txt", 150, 150, 1500, 345), chk(L"chk", 150, 600, 1500, 300), cbo(L"cbo", 150, 1000, 1500, 1500),
          udn(L"udn", 1800, 150, 255, 345), pic(L"pic", 2200, 150, 600, 600)
    {
        last = this;
        for (WindowedConstituent *c : all()) {
            add_constituent(*c);
            c->on_got_focus = [this, name = c->Name] { log.push_back(name + L".GotFocus"); };
            c->on_lost_focus = [this, name = c->Name] { log.push_back(name + L".LostFocus"); };
        }
        SetFocusConstituent(&txt);
        txt.SetBackColor(0x0000FFFF);
        pic.SetBackColor(0x00FF00FF);
    }
    ~Composite() override { if (last == this) last = nullptr; }
    // In the order they are added: each lies above the ones before it.
    std::array<WindowedConstituent *, 5> all() { return {&pic, &txt, &chk, &cbo, &udn}; }

    TextBox txt;
    CheckBox chk;
    ComboBox cbo;
    UpDown udn;
    PictureBox pic;
    std::vector<std::wstring> log;

protected:
    void Initialize() override { SetDesignSize(3000, 2700); }
    void GotFocus() override { log.push_back(L"GotFocus"); }
    void LostFocus() override { log.push_back(L"LostFocus"); }
};

const ControlClass Composite::Class = {
    L"composite", L"Composite test control", &CLSID_Composite, &IID_IDispatch, nullptr,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_SETCLIENTSITEFIRST,
    &Composite::Create};

TestFactory<Composite> g_factory;

class InAControl : public ControlTest {
protected:
    static void SetUpTestSuite()
    {
        module::set_instance(GetModuleHandleW(nullptr));
        g_factory.register_class(CLSID_Composite);
    }
    static void TearDownTestSuite() { g_factory.revoke(); }

    Composite &place_composite()
    {
        hosted = &place(kComposite, {0, 0, 200, 180});
        EXPECT_TRUE(Composite::last);
        return *Composite::last;
    }
    Hosted *hosted = nullptr;
};

} // namespace

TEST_F(InAControl, ActivationTakesTheWindowsInAndDeactivationParksThemWithTheirState)
{
    Composite &c = place_composite();
    c.txt.SetText(L"before");
    c.chk.SetValue(1);
    ASSERT_EQ(S_OK, hosted->activate());
    for (WindowedConstituent *w : c.all()) EXPECT_EQ(hosted->hwnd(), GetParent(w->hWnd())) << narrow(w->Name);
    EXPECT_TRUE(IsWindowVisible(c.txt.hWnd()));
    EXPECT_EQ(c.pic.hWnd(), GetWindow(c.txt.hWnd(), GW_HWNDLAST)); // the first added is the lowest
    EXPECT_EQ(L"before", c.txt.Text());
    c.txt.SetText(L"in place");
    ASSERT_EQ(S_OK, hosted->deactivate());
    EXPECT_EQ(WindowedConstituent::holder(), GetParent(c.txt.hWnd()));
    EXPECT_EQ(L"in place", c.txt.Text());
    EXPECT_EQ(1, c.chk.Value());
    EXPECT_FALSE(IsWindowVisible(c.txt.hWnd()));
    ASSERT_EQ(S_OK, hosted->activate()); // and in again
    EXPECT_EQ(hosted->hwnd(), GetParent(c.txt.hWnd()));
}

TEST_F(InAControl, AContainerThatDestroysItsWindowLeavesTheConstituentsTheirs)
{
    Container other;
    Hosted h(other, kComposite, {0, 0, 200, 180});
    Composite *c = Composite::last;
    ASSERT_TRUE(c);
    ASSERT_EQ(S_OK, h.activate());
    c->txt.SetText(L"survives");
    DestroyWindow(other.hwnd());
    EXPECT_TRUE(IsWindow(c->txt.hWnd()));
    EXPECT_EQ(WindowedConstituent::holder(), GetParent(c->txt.hWnd()));
    EXPECT_EQ(L"survives", c->txt.Text());
    for (const wchar_t *call : {L"OnInPlaceDeactivate", L"OnUIDeactivate", L"GetWindowContext"})
        h.log().allow(std::wstring(L"IOleInPlaceSite::") + call);
    EXPECT_EQ(0u, h.close());
}

TEST_F(InAControl, TheControlsOneDrawPathShowsItsWindowedConstituents)
{
    Composite &c = place_composite();
    c.txt.SetText(L"");
    // Not in place: drawn from the holder.
    Bitmap off = hosted->render(200, 180);
    RECT t = placement(c.txt.hWnd()), p = placement(c.pic.hWnd());
    EXPECT_EQ(0x0000FFFFu, off.pixel(t.left + 5, t.top + 5));
    EXPECT_EQ(GetSysColor(COLOR_BTNSHADOW), off.pixel(t.left, t.top)); // its sunken edge
    EXPECT_EQ(0x00FF00FFu, off.pixel(p.left + 5, p.top + 5));
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), off.pixel(199, 179)); // the surface around them
    // In place: the window's own painting is the same picture.
    hosted->activate();
    EXPECT_EQ(off.hash(), hosted->capture().hash());
}

TEST_F(InAControl, TheFocusGoesToTheFocusConstituentAndLeavingTheControlIsHeardFirst)
{
    Composite &c = place_composite();
    hosted->activate();
    allow_focus(*hosted);
    auto heard = [&](std::vector<std::wstring> expected) {
        EXPECT_EQ(expected, c.log);
        c.log.clear();
    };
    SetFocus(hosted->hwnd());
    EXPECT_EQ(c.txt.hWnd(), GetFocus());
    heard({L"GotFocus", L"txt.GotFocus"});
    // Within the control: only the constituents hear of it.
    c.chk.SetFocus();
    heard({L"txt.LostFocus", L"chk.GotFocus"});
    // Clicking the control's surface keeps the focus where it is.
    click(hosted->hwnd(), 195, 175);
    EXPECT_EQ(c.chk.hWnd(), GetFocus());
    // The combo box's edit field is the combo box.
    c.cbo.SetFocus();
    EXPECT_TRUE(c.cbo.HasFocus());
    heard({L"chk.LostFocus", L"cbo.GotFocus"});
    // Out of the control: the control first, then the constituent that had it.
    SetFocus(form.hwnd());
    heard({L"LostFocus", L"cbo.LostFocus"});
    std::vector<std::wstring> site;
    for (const std::wstring &call : hosted->log().calls())
        if (call.find(L"OnFocus") != std::wstring::npos) site.push_back(call);
    EXPECT_EQ((std::vector<std::wstring>{L"IOleControlSite::OnFocus(TRUE)", L"IOleControlSite::OnFocus(FALSE)"}), site);
    // Deactivating with the focus inside hands it back to the container first.
    c.txt.SetFocus();
    hosted->deactivate();
    EXPECT_FALSE(WindowWithin(WindowedConstituent::holder(), GetFocus()));
}

TEST_F(InAControl, RepeatedColourChangesDrawingAndMovingLeaveNoObjectsBehind)
{
    Composite &c = place_composite();
    hosted->activate();
    hosted->render(200, 180);
    pump();
    long gdi = ProcessGdiObjects(), windows = ProcessWindows();
    for (int i = 0; i < 300; ++i) {
        c.txt.SetBackColor(i % 2 ? 0x00FFFFFF : 0x0000FF00);
        c.pic.SetBackColor(i % 3 ? 0x80000005 : 0x00000080);
        c.txt.Move(150, 150, 1000.0f + i, 345);
        hosted->render(200, 180);
        UpdateWindow(hosted->hwnd());
        if (i % 50 == 0) {
            hosted->deactivate();
            hosted->activate();
        }
    }
    pump();
    if (gdi >= 0) {
        EXPECT_EQ(gdi, ProcessGdiObjects());
    }
    EXPECT_EQ(windows, ProcessWindows());
}
