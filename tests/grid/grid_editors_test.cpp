// The in-cell editors in a small test control that plays the grid's part (the cell, its
// events and the steps it carries out), placed in the test container: each editor over its
// cell and what it commits, the editor-open flag, the character filter with the real message
// box, the key tables through real key messages, the date and time menus, and 1,000
// open-and-commit cycles of each editor leaving no handles behind.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "foundation/metrics.h"
#include "grid/editors/grid_editors.h"
#include "grid/editors/grid_events.h"
#include "grid/editors/locale_text.h"
#include "runtime/control_impl.h"
#include "support/control_test.h"
#include "support/resource_counts.h"
#include "support/test_factory.h"

using namespace tarn;
using namespace tarn::test;
namespace ge = tarn::grid_events;

namespace {

// {4C3C8F0E-2D39-4E0B-9A53-7A8B5A6E9C11}
const CLSID CLSID_EditorHostControl = {0x4c3c8f0e, 0x2d39, 0x4e0b, {0x9a, 0x53, 0x7a, 0x8b, 0x5a, 0x6e, 0x9c, 0x11}};
constexpr wchar_t kEditorHostControl[] = L"{4C3C8F0E-2D39-4E0B-9A53-7A8B5A6E9C11}";

const std::map<DISPID, std::wstring> kEventNames = {
    {ge::BtnBoxClick, L"BtnBoxClick"}, {ge::BtnBoxImgSelect, L"BtnBoxImgSelect"}, {ge::CboBoxClick, L"CboBoxClick"},
    {ge::CboClick, L"CboClick"},       {ge::ChangeEdited, L"ChangeEdited"},       {ge::KeyDown, L"KeyDown"},
    {ge::KeyPress, L"KeyPress"},       {ge::KeyUp, L"KeyUp"},                     {ge::DateNow, L"DateNow"},
    {ge::DateRemove, L"DateRemove"},   {ge::TimeNow, L"TimeNow"},                 {ge::TimeRemove, L"TimeRemove"},
    {ge::Time30, L"Time30"},           {ge::Time5, L"Time5"}};

// A control that plays the grid: one current cell, and a log of what the editors asked.
class EditorHostControl final : public ControlImpl<EditorHostControl, IDispatch>, public GridEditorHost {
public:
    static const ControlClass Class;
    static inline EditorHostControl *last = nullptr;
    EditorHostControl() : editors(*this)
    {
        last = this;
        for (WindowedConstituent *w : editors.Windows()) add_constituent(*w);
    }
    ~EditorHostControl() override { if (last == this) last = nullptr; }

    GridEditors editors;
    std::wstring cell, font;
    KeyContext context{5, 10, 1, 4, true};
    std::vector<std::wstring> log;
    int refusals = 0;
    bool real_message_box = false;
    int16_t last_key_ascii = -1;

    KeyContext EditorContext() override { return context; }
    std::wstring CurrentCellText() override { return cell; }
    void WriteCurrentCell(const std::wstring &text) override
    {
        cell = text;
        log.push_back(L"write " + text);
    }
    void SetCurrentCellFont(const std::wstring &name) override { font = name; }
    void RunChange() override { log.push_back(L"Change"); }
    void RaiseEvent(DISPID id, EventArgs &args) override
    {
        auto n = kEventNames.find(id);
        std::wstring name = n == kEventNames.end() ? L"event " + std::to_wstring(id) : n->second;
        if (id == ge::KeyPress) last_key_ascii = static_cast<int16_t>(*V_I2REF(&args.at(0)));
        // Keys are many; the log keeps the ones a test looks for.
        if (id == ge::KeyDown) name += L" " + std::to_wstring(*V_I2REF(&args.at(0)));
        if (id != ge::KeyUp && id != ge::KeyPress) log.push_back(name);
    }
    void CarryOut(EditorStep step) override { log.push_back(L"step " + std::to_wstring(static_cast<int>(step))); }
    void EditorClosed(bool) override {}
    void ShowRefusal(HWND editor) override
    {
        ++refusals;
        if (real_message_box) GridEditorHost::ShowRefusal(editor);
    }

protected:
    void Initialize() override { SetDesignSize(6000, 3000); }
};

const ControlClass EditorHostControl::Class = {
    L"editorhost", L"Editor host test control", &CLSID_EditorHostControl, &IID_IDispatch, nullptr,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_SETCLIENTSITEFIRST,
    &EditorHostControl::Create};

TestFactory<EditorHostControl> g_factory;

SYSTEMTIME at(WORD y, WORD mo, WORD d, WORD h = 0, WORD mi = 0, WORD s = 0)
{
    SYSTEMTIME st{};
    st.wYear = y;
    st.wMonth = mo;
    st.wDay = d;
    st.wHour = h;
    st.wMinute = mi;
    st.wSecond = s;
    return st;
}

void type(HWND w, const std::wstring &text)
{
    for (wchar_t c : text) SendMessageW(w, WM_CHAR, c, 1);
}
void key(HWND w, UINT vk) { SendMessageW(w, WM_KEYDOWN, vk, 1); }

// The window that takes an editor's typing: the editor's own, or its inner text box.
HWND typing_window(CellEditor &e)
{
    HWND w = e.Window().hWnd();
    // The editor took the focus when it opened: typing goes where it is.
    HWND focus = GetFocus();
    if (focus && (focus == w || IsChild(w, focus))) return focus;
    HWND edit = FindWindowExW(w, nullptr, L"Edit", nullptr); // a combo box's field
    for (HWND c = GetWindow(w, GW_CHILD); c && !edit; c = GetWindow(c, GW_HWNDNEXT)) {
        edit = FindWindowExW(c, nullptr, L"Edit", nullptr);
        if (!edit) {
            // One level further in: a nested control's constituents.
            for (HWND cc = GetWindow(c, GW_CHILD); cc && !edit; cc = GetWindow(cc, GW_HWNDNEXT)) {
                wchar_t cls[32] = {};
                GetClassNameW(cc, cls, 32);
                if (_wcsicmp(cls, L"Edit") == 0 && IsWindowVisible(cc) && GetWindowLongPtrW(cc, GWL_EXSTYLE) == 0 &&
                    (GetWindowLongPtrW(cc, GWL_STYLE) & WS_TABSTOP))
                    edit = cc;
            }
        }
    }
    return edit ? edit : w;
}

class Editors : public ControlTest {
protected:
    static void SetUpTestSuite()
    {
        module::set_instance(GetModuleHandleW(nullptr));
        g_factory.register_class(CLSID_EditorHostControl);
    }
    static void TearDownTestSuite() { g_factory.revoke(); }

    EditorHostControl &placed()
    {
        hosted = &place(kEditorHostControl, {0, 0, 400, 200});
        EXPECT_TRUE(EditorHostControl::last);
        hosted->activate();
        allow_focus(*hosted); // an editor takes the focus when it opens
        EditorHostControl &c = *EditorHostControl::last;
        c.editors.SetClock([] { return at(2024, 3, 5, 9, 41, 7); });
        return c;
    }
    // Opens the editor of `kind` over the cell at (1200, 600) twips, 1500 x 300, holding `text`.
    CellEditor &open(EditorHostControl &c, EditorKind kind, const std::wstring &text)
    {
        c.cell = text;
        c.editors.Show(kind, CellRect{1200, 600, 1500, 300});
        return c.editors.Editor(kind);
    }
    Hosted *hosted = nullptr;
};

// What the message box showed, read by a timer inside its loop, which then presses OK.
std::wstring seen_text, seen_title;
int buttons = 0;
bool icon = false;

void CALLBACK press_ok_in_message_box(HWND, UINT, UINT_PTR id, DWORD)
{
    HWND box = FindWindowW(L"#32770", L"Text Error");
    if (!box) return;
    KillTimer(nullptr, id);
    wchar_t title[64] = {};
    GetWindowTextW(box, title, 64);
    seen_title = title;
    for (HWND ch = GetWindow(box, GW_CHILD); ch; ch = GetWindow(ch, GW_HWNDNEXT)) {
        wchar_t cls[32] = {}, text[256] = {};
        GetClassNameW(ch, cls, 32);
        GetWindowTextW(ch, text, 256);
        if (_wcsicmp(cls, L"Button") == 0 && IsWindowVisible(ch)) ++buttons;
        if (_wcsicmp(cls, L"Static") == 0) {
            if ((GetWindowLongPtrW(ch, GWL_STYLE) & SS_TYPEMASK) == SS_ICON) {
                if (IsWindowVisible(ch) && SendMessageW(ch, STM_GETICON, 0, 0)) icon = true;
            } else if (text[0]) {
                seen_text = text;
            }
        }
    }
    PostMessageW(box, WM_COMMAND, IDOK, 0);
}

BOOL CALLBACK find_button(HWND w, LPARAM found)
{
    wchar_t cls[16] = {};
    GetClassNameW(w, cls, 16);
    if (_wcsicmp(cls, L"Button") != 0) return TRUE;
    *reinterpret_cast<HWND *>(found) = w;
    return FALSE;
}

LONG px(float twips) { return static_cast<LONG>(std::floor(twips / static_cast<float>(TwipsPerPixelX()))); }

} // namespace

TEST_F(Editors, EachEditorOpensOverTheCellAndCommitsItsValueAsCellText)
{
    EditorHostControl &c = placed();
    for (const wchar_t *item : {L"red", L"green"}) c.editors.Images().AddItem(item);
    for (const wchar_t *item : {L"one", L"two"}) c.editors.List().AddItem(item);

    // Each editor lies over the cell, in the control's window (the number box takes the height
    // of its font, the lists the height of their field), and shows in the control's picture.
    const uint32_t closed = hosted->render(400, 200).hash();
    for (int k = 0; k < kEditorKinds; ++k) {
        CellEditor &e = open(c, static_cast<EditorKind>(k), k == 5 ? L"40 %" : L"");
        Bitmap picture = hosted->render(400, 200);
        EXPECT_NE(closed, picture.hash()) << narrow(EditorName(e.Kind()));
        picture.save_png(output_path(std::wstring(L"editor_") + EditorName(e.Kind()) + L".png"));
        HWND w = e.Window().hWnd();
        EXPECT_TRUE(IsWindowVisible(w)) << narrow(EditorName(e.Kind()));
        EXPECT_EQ(hosted->hwnd(), GetParent(w));
        RECT r = placement(w);
        EXPECT_EQ(px(1200), r.left) << narrow(EditorName(e.Kind()));
        EXPECT_EQ(px(600), r.top);
        EXPECT_EQ(px(2700), r.right);
        c.editors.Hide();
        EXPECT_FALSE(IsWindowVisible(w));
    }

    // Text: what the box holds, typed after the cell text.
    CellEditor &t = open(c, EditorKind::Text, L"abc");
    type(t.Window().hWnd(), L"de");
    c.editors.Hide();
    EXPECT_EQ(L"abcde", c.cell);

    // Date and time: the user's short date and time texts.
    open(c, EditorKind::Date, ShortDateText(at(2024, 3, 5)));
    EXPECT_EQ(5, static_cast<DatePicker &>(c.editors.Editor(EditorKind::Date).Window()).Parts().wDay);
    static_cast<DatePicker &>(c.editors.Editor(EditorKind::Date).Window()).SetParts(at(2024, 3, 7));
    c.editors.Hide();
    EXPECT_EQ(ShortDateText(at(2024, 3, 7)), c.cell);
    open(c, EditorKind::Time, TimeText(at(2024, 1, 1, 10, 30, 15)));
    c.editors.Hide();
    EXPECT_EQ(TimeText(at(2024, 1, 1, 10, 30, 15)), c.cell);
    // An empty date cell stays empty unless the user picks a date.
    open(c, EditorKind::Date, L"");
    c.editors.Hide();
    EXPECT_EQ(L"", c.cell);

    // The image combo: the item whose text the cell holds; none, nothing written.
    open(c, EditorKind::ImageList, L"green");
    EXPECT_EQ(1, c.editors.Images().ListIndex());
    c.editors.Images().SetListIndex(0);
    c.editors.Hide();
    EXPECT_EQ(L"red", c.cell);
    c.log.clear();
    open(c, EditorKind::ImageList, L"blue");
    c.editors.Hide();
    EXPECT_EQ(L"blue", c.cell);
    EXPECT_EQ(std::vector<std::wstring>{}, c.log);

    // The combo box: its text, typed or chosen.
    open(c, EditorKind::List, L"free text");
    EXPECT_EQ(L"free text", c.editors.List().Text());
    c.editors.List().SetListIndex(1);
    c.editors.Hide();
    EXPECT_EQ(L"two", c.cell);

    // The check box: " a" or "", and the cell in "webdings".
    open(c, EditorKind::Check, L"");
    ComPtr<Igrdchk> box = static_cast<framGrdchkBOX &>(c.editors.Editor(EditorKind::Check)).Box();
    ASSERT_TRUE(box);
    box->put_Value(CheckValues(1));
    c.editors.Hide();
    EXPECT_EQ(L" a", c.cell);
    EXPECT_EQ(L"webdings", c.font);
    open(c, EditorKind::Check, L" a");
    CheckValues v = CheckValues(-1);
    box->get_Value(&v);
    EXPECT_EQ(1, int(v));
    box->put_Value(CheckValues(0));
    c.editors.Hide();
    EXPECT_EQ(L"", c.cell);
}

TEST_F(Editors, APercentageIsWrittenAndChangedOnlyWhenItsValueChanged)
{
    EditorHostControl &c = placed();
    udnLIST &udn = static_cast<udnLIST &>(open(c, EditorKind::Percent, L"12 %"));
    Bstr text;
    udn.Box()->get_Text(text.put());
    EXPECT_EQ(L"12", text.str());
    c.log.clear();
    c.editors.Hide();
    EXPECT_EQ(std::vector<std::wstring>{}, c.log); // no write, no Change, no ChangeEdited
    EXPECT_EQ(L"12 %", c.cell);

    open(c, EditorKind::Percent, L"12 %");
    // Stepped up with the Up key in its text box.
    key(typing_window(udn), VK_UP);
    c.editors.Hide();
    EXPECT_EQ(L"13 %", c.cell);
    EXPECT_EQ((std::vector<std::wstring>{L"KeyDown 38", L"write 13 %", L"Change", L"ChangeEdited"}), c.log);
}

TEST_F(Editors, ASecondShowWithoutAHideIsIgnored)
{
    EditorHostControl &c = placed();
    open(c, EditorKind::Text, L"first");
    EXPECT_TRUE(c.editors.IsOpen());
    c.cell = L"second";
    c.editors.Show(EditorKind::Date, CellRect{0, 0, 1500, 300});
    EXPECT_EQ(EditorKind::Text, c.editors.OpenEditor()->Kind());
    EXPECT_FALSE(c.editors.Editor(EditorKind::Date).Window().Visible());
    EXPECT_EQ(L"first", static_cast<txtCONTROL &>(c.editors.Editor(EditorKind::Text)).Box().Text());
    c.editors.Hide();
    EXPECT_FALSE(c.editors.IsOpen());
    c.editors.Hide(); // nothing open: nothing written
    EXPECT_EQ(L"first", c.cell);
}

TEST_F(Editors, StructureCharactersAreRefusedOncePerKeyInTheTextNumberDateAndTimeEditors)
{
    EditorHostControl &c = placed();
    for (EditorKind kind : {EditorKind::Text, EditorKind::Percent, EditorKind::Date, EditorKind::Time}) {
        CellEditor &e = open(c, kind, kind == EditorKind::Percent ? L"4 %" : L"");
        HWND w = typing_window(e);
        c.refusals = 0;
        type(w, L",\"");
        EXPECT_EQ(2, c.refusals) << narrow(EditorName(kind));
        EXPECT_EQ(0, c.last_key_ascii);
        // Tab, Enter and Escape never arrive as characters either (with no message).
        type(w, L"\t\r\x1b");
        EXPECT_EQ(2, c.refusals);
        c.editors.Hide();
        EXPECT_EQ(std::wstring::npos, c.cell.find_first_of(L",\"\t\r\x1b")) << narrow(EditorName(kind));
    }
    CellEditor &t = open(c, EditorKind::Text, L"ab");
    type(t.Window().hWnd(), L"c,d\"e\r");
    c.editors.Hide();
    EXPECT_EQ(L"abcde", c.cell);
    // The check box and the lists take every character.
    c.refusals = 0;
    CellEditor &l = open(c, EditorKind::List, L"");
    type(typing_window(l), L"x,y");
    c.editors.Hide();
    EXPECT_EQ(0, c.refusals);
    EXPECT_EQ(L"x,y", c.cell);
}

TEST_F(Editors, TheRefusalIsAMessageBoxWithTheExactTextAndTitleAndOnlyAnOkButton)
{
    EditorHostControl &c = placed();
    c.real_message_box = true;
    CellEditor &t = open(c, EditorKind::Text, L"x");
    // The message box runs its own loop; a timer of this thread finds it there and presses OK.
    seen_text.clear();
    seen_title.clear();
    buttons = 0;
    icon = false;
    UINT_PTR timer = SetTimer(nullptr, 0, 1, &press_ok_in_message_box);
    type(t.Window().hWnd(), L",");
    KillTimer(nullptr, timer);
    EXPECT_EQ(L"You cannot use this character within the grid, as this is part of the grid structure.", seen_text);
    EXPECT_EQ(L"Text Error", seen_title);
    EXPECT_EQ(1, buttons);
    EXPECT_FALSE(icon);
    EXPECT_EQ(L"x", static_cast<txtCONTROL &>(t).Box().Text());
    c.editors.Hide();
}

TEST_F(Editors, KeyDownsRunTheirStepsThenRaiseTheGridsKeyDown)
{
    EditorHostControl &c = placed();
    const struct {
        EditorKind kind;
        UINT vk;
        std::vector<std::wstring> log;
        bool stays_open;
    } cases[] = {
        {EditorKind::Text, VK_DOWN, {L"write t", L"step 1", L"KeyDown 40"}, false},
        {EditorKind::Text, VK_RETURN, {L"write t", L"KeyDown 13"}, false},
        {EditorKind::Text, VK_TAB, {L"write t", L"step 5", L"step 6", L"KeyDown 9"}, false},
        {EditorKind::Text, VK_INSERT, {L"step 4", L"KeyDown 45"}, true},
        {EditorKind::Text, VK_RIGHT, {L"KeyDown 39"}, true},
        {EditorKind::Time, VK_DOWN, {L"KeyDown 40"}, true}, // steps the time instead
        {EditorKind::List, VK_RETURN, {L"write t", L"KeyDown 13"}, false},
        {EditorKind::Check, VK_UP, {L"write ", L"ChangeEdited", L"step 2", L"KeyDown 38"}, false},
    };
    for (const auto &k : cases) {
        CellEditor &e = open(c, k.kind, L"t");
        c.log.clear();
        key(typing_window(e), k.vk);
        EXPECT_EQ(k.log, c.log) << narrow(EditorName(k.kind)) << " key " << k.vk;
        EXPECT_EQ(k.stays_open, c.editors.IsOpen());
        c.editors.Hide();
    }
    // cboCONTROL_KeyDown runs the combo editor's table as its own keys do.
    open(c, EditorKind::List, L"u");
    c.log.clear();
    int16_t code = VK_RETURN;
    c.editors.ListKeyDown(code, 0);
    EXPECT_EQ((std::vector<std::wstring>{L"write u", L"KeyDown 13"}), c.log);
}

TEST_F(Editors, TheTimeMenuFillsOrEmptiesTheCellAndTheDateMenuOnlyRaisesItsEvents)
{
    EditorHostControl &c = placed();
    const struct {
        EditorKind kind;
        const wchar_t *item;
        std::vector<std::wstring> log;
        std::wstring cell;
    } cases[] = {
        {EditorKind::Time, L"mnuTIME30", {L"Time30"}, L"keep"},
        {EditorKind::Time, L"mnuTIME", {L"write " + TimeText(at(2024, 3, 5, 9, 41, 7)), L"TimeNow"},
         TimeText(at(2024, 3, 5, 9, 41, 7))},
        {EditorKind::Time, L"mnuTIMEREMOVE", {L"write ", L"TimeRemove"}, L""},
        {EditorKind::Date, L"mnuDATENOW", {L"DateNow"}, L"keep"},
        {EditorKind::Date, L"mnuDATEREMOVE", {L"DateRemove"}, L"keep"},
    };
    for (const auto &m : cases) {
        open(c, m.kind, L"keep");
        c.log.clear();
        PopupMenu &menu = m.kind == EditorKind::Time ? c.editors.mnuTIMETOP : c.editors.mnuDATETOP;
        EXPECT_TRUE(menu.Choose(m.item)) << narrow(m.item);
        // The cell text the editor commits later is not the menu's doing: compare before.
        EXPECT_EQ(m.log, c.log) << narrow(m.item);
        EXPECT_EQ(m.cell, c.cell) << narrow(m.item);
        c.editors.Hide();
    }
    EXPECT_FALSE(c.editors.mnuTIMETOP.Choose(L"mnuTIMESEP01"));
}

TEST_F(Editors, TheMenusOpenOnARightClickTheContextMenuKeyAndShiftF10)
{
    EditorHostControl &c = placed();
    std::vector<std::wstring> shown;
    PopupMenu::SetTracker([&](HMENU menu, HWND, POINT) -> UINT {
        shown.push_back(std::to_wstring(GetMenuItemCount(menu)));
        return 0;
    });
    CellEditor &t = open(c, EditorKind::Time, L"");
    HWND w = t.Window().hWnd();
    SendMessageW(w, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    SendMessageW(w, WM_RBUTTONUP, 0, MAKELPARAM(5, 5));
    SendMessageW(w, WM_KEYDOWN, VK_APPS, 1);
    BYTE keys[256] = {};
    GetKeyboardState(keys);
    keys[VK_SHIFT] = 0x80;
    SetKeyboardState(keys);
    SendMessageW(w, WM_SYSKEYDOWN, VK_F10, 1);
    keys[VK_SHIFT] = 0;
    SetKeyboardState(keys);
    SendMessageW(w, WM_SYSKEYDOWN, VK_F10, 1); // F10 alone is no menu
    c.editors.Hide();
    CellEditor &d = open(c, EditorKind::Date, L"");
    SendMessageW(d.Window().hWnd(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(d.Window().hWnd()), -1);
    c.editors.Hide();
    PopupMenu::SetTracker(nullptr);
    // The time menu: ten items (one a separator), three times; the date menu: two.
    EXPECT_EQ((std::vector<std::wstring>{L"10", L"10", L"10", L"2"}), shown);
}

TEST_F(Editors, ListsAndTheCheckBoxRaiseTheirGridEvents)
{
    EditorHostControl &c = placed();
    c.editors.List().AddItem(L"a");
    c.editors.Images().AddItem(L"b");
    open(c, EditorKind::List, L"");
    c.log.clear();
    c.editors.List().SetListIndex(0);
    HWND list = c.editors.Editor(EditorKind::List).Window().hWnd();
    SendMessageW(GetParent(list), WM_COMMAND, MAKEWPARAM(0, CBN_DROPDOWN), reinterpret_cast<LPARAM>(list));
    c.editors.Hide();
    open(c, EditorKind::ImageList, L"");
    c.editors.Images().SetListIndex(0);
    c.editors.Hide();
    open(c, EditorKind::Check, L"");
    // A click on the inner check box, as the user makes it.
    HWND button = nullptr;
    EnumChildWindows(c.editors.Editor(EditorKind::Check).Window().hWnd(), &find_button, reinterpret_cast<LPARAM>(&button));
    ASSERT_TRUE(button);
    SendMessageW(button, BM_CLICK, 0, 0);
    // Escape puts the value back unasked: no click of the user's, and nothing changed.
    key(typing_window(c.editors.Editor(EditorKind::Check)), VK_ESCAPE);
    EXPECT_FALSE(c.editors.IsOpen());
    EXPECT_EQ((std::vector<std::wstring>{L"CboClick", L"CboBoxClick", L"write a", L"ChangeEdited", L"BtnBoxImgSelect",
                                         L"write b", L"ChangeEdited", L"BtnBoxClick", L"write ", L"KeyDown 27"}),
              c.log);
}

TEST_F(Editors, AThousandOpenAndCommitCyclesOfEachEditorLeaveNoHandlesBehind)
{
    EditorHostControl &c = placed();
    c.editors.Images().AddItem(L"x");
    c.editors.List().AddItem(L"y");
    // Each cycle gives the focus to the editor and takes it back, which Wine makes slow: a
    // thousand cycles of each editor run alone with --gtest_also_run_disabled_tests.
    const int kCycles = testing::GTEST_FLAG(also_run_disabled_tests) ? 1000 : 100;
    auto cycles = [&](int n) {
        for (int k = 0; k < kEditorKinds; ++k)
            for (int i = 0; i < n; ++i) {
                open(c, static_cast<EditorKind>(k), i % 2 ? L"12 %" : L"");
                c.editors.Hide();
            }
    };
    cycles(20); // first use makes what lasts (fonts, brushes, the holder)
    ResourceSnapshot before;
    cycles(kCycles);
    pump();
    EXPECT_EQ(std::vector<std::string>{}, before.changes());
}
