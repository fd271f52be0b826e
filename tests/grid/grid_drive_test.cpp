// The grid edited and driven as a user does, through the real DLL: each column type opens its
// editor over the current cell (at any DPI), real mouse and keyboard input (SendInput) moves
// the current cell, opens, fills and commits editors, sorts and resizes; and the accessible
// table of rows and cells with the open editor as the focused object.
#include <gtest/gtest.h>

#include <oleacc.h>

#include "foundation/metrics.h"
#include "grid_calls.h"
#include "support/control_test.h"

#include <cmath>
#include <tuple>

using namespace tarn;
using namespace tarn::test;

namespace {

std::pair<long, long> current(Hosted &g) { return {number(g, L"RowCurrent"), number(g, L"ColCurrent")}; }

// The grid's one visible child window: the open editor (null when none is open).
HWND open_editor(HWND grid)
{
    for (HWND ch = GetWindow(grid, GW_CHILD); ch; ch = GetWindow(ch, GW_HWNDNEXT))
        if (IsWindowVisible(ch)) return ch;
    return nullptr;
}

void send(std::initializer_list<INPUT> inputs)
{
    std::vector<INPUT> v(inputs);
    SendInput(static_cast<UINT>(v.size()), v.data(), sizeof(INPUT));
}
INPUT key(WORD vk, bool up = false)
{
    INPUT in{};
    in.type = INPUT_KEYBOARD;
    in.ki.wVk = vk;
    in.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
    return in;
}
INPUT button(DWORD flags, DWORD data = 0)
{
    INPUT in{};
    in.type = INPUT_MOUSE;
    in.mi.dwFlags = flags;
    in.mi.mouseData = data;
    return in;
}
void press(WORD vk) { send({key(vk), key(vk, true)}); }
void press_ctrl(WORD vk) { send({key(VK_CONTROL), key(vk), key(vk, true), key(VK_CONTROL, true)}); }
// A left click at pixel (x, y) of `w`'s client area, by the system's own input queue.
void user_click(HWND w, int x, int y, bool twice = false)
{
    POINT p{x, y};
    ClientToScreen(w, &p);
    SetCursorPos(p.x, p.y);
    send({button(MOUSEEVENTF_LEFTDOWN), button(MOUSEEVENTF_LEFTUP)});
    if (twice) send({button(MOUSEEVENTF_LEFTDOWN), button(MOUSEEVENTF_LEFTUP)});
}
// Lets the queued input arrive and be handled.
void settle() { pump_until([] { return false; }, 150); }

class GridDrive : public ControlTest {
protected:
    // An editable grid of 3 columns and 40 rows, row r holding "r:c", in place with the focus.
    Hosted &grid(RECT pos = {0, 0, 400, 240})
    {
        SetForegroundWindow(form.hwnd());
        Hosted &g = place(kGridProgId, pos);
        g.call(L"ColsSet", {I4(3)});
        g.call(L"RowsSet", {I4(40)});
        for (int r = 0; r < 40; ++r)
            for (int c = 0; c < 3; ++c)
                g.call(L"CellTextSet", {I4(r), I4(c), Str(std::to_wstring(r) + L":" + std::to_wstring(c))});
        g.put(L"AllowGridEdit", Bool(true));
        g.call(L"GridSetFocus", {I4(0), I4(0)});
        g.call(L"BoxHide");
        EXPECT_EQ(S_OK, g.activate());
        allow_focus(g);
        g.log().clear_events();
        return g;
    }
    // Pixel centre of a cell shown in the grid's first page (2-pixel border, header bar).
    POINT centre(Hosted &g, long row, long col)
    {
        const double tpp = TwipsPerPixelX();
        g.call(L"RowSetFocus", {I4(row)});
        g.call(L"ColSetFocus", {I4(col)});
        const long left = number(g, L"CellLeft"), width = number(g, L"CelWidth");
        const long top = number(g, L"CellCurrentTop"), height = number(g, L"CellCurrentHeight");
        return {static_cast<LONG>((left + width / 2) / tpp),
                static_cast<LONG>(2 + header_px(g) + (top + height / 2) / TwipsPerPixelY())};
    }
    static long header_px(Hosted &) { return static_cast<long>(std::floor(240 / TwipsPerPixelY())) + 4; }
};

} // namespace

TEST_F(GridDrive, EachTypeCodeOpensItsEditorOverTheCurrentCellAndBoxHideClosesIt)
{
    Hosted &g = grid();
    HWND w = g.hwnd();
    const double tppx = TwipsPerPixelX();
    for (int code = 0; code <= 6; ++code) {
        SCOPED_TRACE(code);
        g.call(L"ColTypeSet", {I4(1), I4(code)});
        g.call(L"GridSetFocus", {I4(1), I4(2)});
        HWND e = open_editor(w);
        ASSERT_TRUE(e);
        // Over the cell: from its left edge, inside the cell's width, on row 2's line.
        RECT r = placement(e);
        EXPECT_NEAR(number(g, L"CellLeft") / tppx, r.left, 1.0);
        EXPECT_LE(r.right - r.left, number(g, L"CelWidth") / tppx + 1);
        EXPECT_NEAR(2 + header_px(g) + number(g, L"CellCurrentTop") / TwipsPerPixelY(), r.top, 1.0);
        // The host opened it while the grid had not the focus: the editor leaves the focus alone.
        EXPECT_NE(e, GetFocus());
        // BoxHide closes it, and again is nothing.
        g.call(L"BoxHide");
        EXPECT_FALSE(open_editor(w));
        g.call(L"BoxHide");
    }
    // The text editor commits what it holds, with ChangeEdited.
    g.call(L"ColTypeSet", {I4(1), I4(0)});
    g.call(L"GridSetFocus", {I4(1), I4(2)});
    SetWindowTextW(open_editor(w), L"typed");
    g.log().clear_events();
    g.call(L"BoxHide");
    EXPECT_EQ(L"typed", text(g, 2, 1));
    EXPECT_EQ(std::vector<std::wstring>{L"ChangeEdited"}, g.log().event_names());
    // The percentage editor writes and raises Change only when its value changed.
    g.call(L"ColTypeSet", {I4(1), I4(5)});
    g.call(L"CellTextSet", {I4(3), I4(1), Str(L"40 %")});
    SetFocus(w); // the user works in the grid: its editors take the focus
    for (const auto &[step_up, cell, events] :
         {std::tuple{false, L"40 %", std::vector<std::wstring>{}},
          std::tuple{true, L"41 %", std::vector<std::wstring>{L"KeyDown", L"Change", L"ChangeEdited"}}}) {
        g.call(L"GridSetFocus", {I4(1), I4(3)});
        g.log().clear_events();
        if (step_up) SendMessageW(GetFocus(), WM_KEYDOWN, VK_UP, 1); // the editor took the focus
        g.call(L"BoxHide");
        EXPECT_EQ(cell, text(g, 3, 1));
        EXPECT_EQ(events, g.log().event_names()) << step_up;
    }
    // The lists are filled through the grid.
    g.call(L"ComboAdd", {Str(L"first")});
    g.call(L"ComboAdd", {Str(L"zero"), I4(0)});
    g.call(L"ComboDel", {I4(7)}); // no such item: nothing
    g.call(L"ColTypeSet", {I4(1), I4(4)});
    g.call(L"GridSetFocus", {I4(1), I4(3)});
    HWND list = FindWindowExW(open_editor(w), nullptr, nullptr, nullptr);
    HWND combo = list ? open_editor(w) : nullptr;
    ASSERT_TRUE(combo);
    EXPECT_EQ(2, SendMessageW(combo, CB_GETCOUNT, 0, 0));
    g.call(L"BoxHide");
    g.call(L"ComboClear");
}

TEST_F(GridDrive, MouseAndKeyboardMoveTheCurrentCellOpenEditorsAndCommitThem)
{
    Hosted &g = grid();
    HWND w = g.hwnd();
    const POINT c21 = centre(g, 2, 1), c40 = centre(g, 4, 0);
    g.call(L"RowSetFocus", {I4(0)});
    g.call(L"ColSetFocus", {I4(0)});
    g.log().clear_events();

    // A click makes a cell current.
    user_click(w, c21.x, c21.y);
    ASSERT_TRUE(pump_until([&] { return current(g) == std::pair(2L, 1L); }, 3000));
    EXPECT_EQ(w, GetFocus());
    // Keys move it; the view follows.
    const struct {
        WORD vk;
        bool ctrl;
        std::pair<long, long> at;
    } moves[] = {{VK_DOWN, false, {3, 1}}, {VK_RIGHT, false, {3, 2}}, {VK_HOME, false, {3, 0}},
                 {VK_END, true, {39, 2}},  {VK_UP, false, {38, 2}},   {VK_HOME, true, {0, 0}},
                 {VK_NEXT, false, {0, 0}}, {VK_LEFT, false, {0, 0}}};
    for (const auto &m : moves) {
        if (m.ctrl) press_ctrl(m.vk);
        else press(m.vk);
        if (m.vk == VK_NEXT) {
            ASSERT_TRUE(pump_until([&] { return number(g, L"RowCurrent") > 0; }, 3000));
            press_ctrl(VK_HOME);
        }
        ASSERT_TRUE(pump_until([&] { return current(g) == m.at; }, 3000)) << m.vk;
    }
    // F2 opens the current cell's editor; typing goes into it; a click on another cell commits.
    press(VK_F2);
    ASSERT_TRUE(pump_until([&] { return open_editor(w) != nullptr; }, 3000));
    send({key('X'), key('X', true), key(VK_RETURN), key(VK_RETURN, true)});
    ASSERT_TRUE(pump_until([&] { return !open_editor(w); }, 3000));
    EXPECT_EQ(L"0:0x", text(g, 0, 0)); // Enter closed it and never reached the text
    // A typed character opens the editor with just that character.
    press('Q');
    ASSERT_TRUE(pump_until([&] { return open_editor(w) != nullptr; }, 3000));
    press('R');
    settle();
    g.log().clear_events();
    user_click(w, c40.x, c40.y);
    ASSERT_TRUE(pump_until([&] { return current(g) == std::pair(4L, 0L); }, 3000));
    EXPECT_EQ(L"qr", text(g, 0, 0));
    EXPECT_FALSE(open_editor(w));
    const std::vector<std::wstring> names = g.log().event_names();
    EXPECT_TRUE(std::find(names.begin(), names.end(), L"ChangeEdited") < std::find(names.begin(), names.end(), L"SelChange"));
    // A double click opens the editor; scrolling (the scroll bar's arrow) commits it.
    user_click(w, c40.x, c40.y, true);
    ASSERT_TRUE(pump_until([&] { return open_editor(w) != nullptr; }, 3000));
    RECT client{};
    GetClientRect(w, &client);
    POINT arrow{client.right + GetSystemMetrics(SM_CXVSCROLL) / 2, client.bottom - GetSystemMetrics(SM_CYVSCROLL) / 2};
    ClientToScreen(w, &arrow);
    SetCursorPos(arrow.x, arrow.y);
    send({button(MOUSEEVENTF_LEFTDOWN), button(MOUSEEVENTF_LEFTUP)});
    ASSERT_TRUE(pump_until([&] { return !open_editor(w); }, 3000));
    SCROLLINFO si{sizeof si, SIF_POS, 0, 0, 0, 0, 0};
    EXPECT_TRUE(pump_until([&] { return GetScrollInfo(w, SB_VERT, &si) && si.nPos == 1; }, 3000)) << si.nPos;
    EXPECT_EQ(L"4:0", text(g, 4, 0));
}

TEST_F(GridDrive, TheHeaderBarSortsOnAClickAndResizesAColumnByItsEdge)
{
    Hosted &g = grid();
    HWND w = g.hwnd();
    const long bar = header_px(g) / 2 + 2;
    const int edge = 2 + static_cast<int>(number(g, L"CelWidth") / TwipsPerPixelX()); // column 0's right edge
    // Sorting column 1 (texts "r:1", compared as text) puts "0:1", "10:1", "11:1"... first.
    user_click(w, edge + 20, bar);
    ASSERT_TRUE(pump_until([&] { return text(g, 1, 1) == L"10:1"; }, 3000)) << narrow(text(g, 1, 1));
    EXPECT_EQ(L"10:0", text(g, 1, 0)); // whole rows move
    POINT p{edge, bar};
    ClientToScreen(w, &p);
    SetCursorPos(p.x, p.y);
    send({button(MOUSEEVENTF_LEFTDOWN)});
    settle();
    SetCursorPos(p.x + 30, p.y);
    send({button(MOUSEEVENTF_MOVE), button(MOUSEEVENTF_LEFTUP)});
    g.call(L"ColSetFocus", {I4(0)});
    const long before = 64;
    EXPECT_TRUE(pump_until([&] { return number(g, L"CelWidth") / TwipsPerPixelX() > before + 20; }, 3000));
    EXPECT_EQ(L"10:1", text(g, 1, 1)); // dragging an edge sorts nothing
}

TEST_F(GridDrive, TheAccessibleTableNamesRowsAndCellsAndTheOpenEditorHasTheFocus)
{
    Hosted &g = grid();
    HWND w = g.hwnd();
    ComPtr<IAccessible> table;
    ASSERT_EQ(S_OK, AccessibleObjectFromWindow(w, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible, table.put_void()));
    long rows = 0;
    table->get_accChildCount(&rows);
    EXPECT_EQ(40, rows);
    Variant self = I4(CHILDID_SELF);
    Variant id = I4(3); // row 2
    ComPtr<IDispatch> row_disp;
    ASSERT_EQ(S_OK, table->get_accChild(*id.get(), row_disp.put()));
    ComPtr<IAccessible> row = row_disp.as<IAccessible>(IID_IAccessible);
    ASSERT_TRUE(row);
    // Asked about a row by its number, the table answers as the row does; navigating to a
    // row hands out its object.
    Bstr row_name;
    Variant row_role, first;
    table->get_accName(*id.get(), row_name.put());
    EXPECT_EQ(L"2:0", row_name.str());
    table->get_accRole(*id.get(), row_role.put());
    EXPECT_EQ(ROLE_SYSTEM_ROW, V_I4(row_role.get()));
    ASSERT_EQ(S_OK, table->accNavigate(NAVDIR_FIRSTCHILD, *self.get(), first.put()));
    EXPECT_EQ(VT_DISPATCH, V_VT(first.get()));
    Variant past = I4(41);
    Bstr none;
    EXPECT_EQ(E_INVALIDARG, table->get_accName(*past.get(), none.put()));
    id = I4(2); // column 1
    ComPtr<IDispatch> cell_disp;
    ASSERT_EQ(S_OK, row->get_accChild(*id.get(), cell_disp.put()));
    ComPtr<IAccessible> cell = cell_disp.as<IAccessible>(IID_IAccessible);
    Bstr name;
    cell->get_accName(*self.get(), name.put());
    EXPECT_EQ(L"2:1", name.str());
    Variant role;
    cell->get_accRole(*self.get(), role.put());
    EXPECT_EQ(ROLE_SYSTEM_CELL, V_I4(role.get()));

    // The focused object: the current cell, then the open editor.
    SetFocus(w);
    Variant focus;
    ASSERT_EQ(S_OK, table->get_accFocus(focus.put()));
    ASSERT_EQ(VT_DISPATCH, V_VT(focus.get()));
    ComPtr<IAccessible> focused;
    V_DISPATCH(focus.get())->QueryInterface(IID_IAccessible, focused.put_void());
    ASSERT_TRUE(focused);
    Bstr focused_name;
    focused->get_accName(*self.get(), focused_name.put());
    EXPECT_EQ(L"0:0", focused_name.str());
    g.call(L"GridSetFocus", {I4(1), I4(2)});
    Variant editor;
    ASSERT_EQ(S_OK, table->get_accFocus(editor.put()));
    ASSERT_EQ(VT_DISPATCH, V_VT(editor.get()));
    ComPtr<IAccessible> editor_object;
    V_DISPATCH(editor.get())->QueryInterface(IID_IAccessible, editor_object.put_void());
    HWND of = nullptr;
    ASSERT_TRUE(editor_object);
    WindowFromAccessibleObject(editor_object.get(), &of);
    EXPECT_EQ(open_editor(w), of);
    g.call(L"BoxHide");
}
