// The data grid through the real DLL: its operations from a client without a window, its
// events, files, persistence, what it paints, scrolling, the mouse and keyboard. Then the grid
// check box: its two value keys, the inner check box's events passed on through real
// messages, its place a little left of the centre, what keeps it out of hosts' toolboxes, and
// bad input.
#include <gtest/gtest.h>

#include "foundation/metrics.h"
#include "grid_calls.h"
#include "support/control_test.h"
#include "support/resource_counts.h"
#include "tarnctls_h.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <tuple>

using namespace tarn;
using namespace tarn::test;

namespace {

SCROLLINFO scroll_info(HWND w, int bar)
{
    SCROLLINFO si{sizeof si, SIF_ALL, 0, 0, 0, 0, 0};
    GetScrollInfo(w, bar, &si);
    return si;
}
std::pair<long, long> current(Hosted &g) { return {number(g, L"RowCurrent"), number(g, L"ColCurrent")}; }

class GridTest : public ControlTest {
protected:
    // A grid of three columns and the rows given (tab-separated texts).
    Hosted &filled(const std::vector<std::wstring> &rows, RECT pos = {0, 0, 320, 200})
    {
        Hosted &g = place(kGridProgId, pos);
        g.call(L"ColsSet", {I4(3)});
        g.call(L"RowsSet", {I4(0)});
        for (size_t i = 0; i < rows.size(); ++i) g.call(L"RowAdd", {Str(rows[i]), I4(static_cast<int32_t>(i))});
        g.log().clear_events();
        return g;
    }
};

constexpr wchar_t kCheckProgId[] = L"TarnControls.grdchk";

Variant ole(OleColor c) { return I4(static_cast<int32_t>(c)); }
long value(Hosted &h) { return static_cast<long>(as_integer(h.get(L"Value"))); }
HWND check_box(Hosted &h) { return FindWindowExW(h.hwnd(), nullptr, L"Button", nullptr); }

// Value, Enabled and BackColor: what the control keeps.
using State = std::tuple<long, bool, OleColor>;
State state(Hosted &h)
{
    return {value(h), as_integer(h.get(L"Enabled")) != 0, static_cast<OleColor>(as_integer(h.get(L"BACKCOLOR")))};
}
const State kNew{0, true, 0x8000000F}; // unchecked, enabled, on the button face

// The four stored values, in the order the box writes them: ENABLED, VALUE, Value, BackColor.
std::vector<long long> stored(Bag &bag)
{
    std::vector<long long> out;
    for (const wchar_t *key : {L"ENABLED", L"VALUE", L"Value", L"BackColor"}) out.push_back(as_integer(bag.get(key)));
    return out;
}

class GridCheckTest : public ControlTest {
protected:
    Hosted &active(RECT pos = {10, 10, 110, 27})
    {
        Hosted &h = place(kCheckProgId, pos);
        EXPECT_EQ(S_OK, h.activate());
        allow_focus(h);
        EXPECT_TRUE(check_box(h));
        return h;
    }
};

} // namespace

TEST_F(GridTest, WithoutAWindowRowsRaiseChangeOnceColumnsNoneAndArgumentsMayBeLeftOutOrOfAnyType)
{
    Hosted &g = place(kGridProgId);
    g.call(L"ColsSet", {I4(3)});
    g.call(L"RowAdd", {Str(L"a\tb\tc"), I4(0)});
    g.call(L"RowAdd", {Str(L"d\te\tf"), I4(1)});
    g.call(L"RowDel", {I4(0)});
    g.call(L"RowsSet", {I4(5)});
    EXPECT_EQ(std::vector<std::wstring>(4, L"Change"), g.log().event_names());
    EXPECT_EQ(L"f", text(g, 0, 2));
    EXPECT_FALSE(g.hwnd());

    // Only the font name: the rest stays.
    EXPECT_EQ(S_OK, (g.call(L"CellFontSet", {I4(0), I4(0), Str(L"Tahoma")}), g.last_result()));
    // Every argument, some of them unusable: those are skipped, the others applied.
    g.call(L"CellFontSet", {I4(0), I4(1), Str(L"Tahoma"), Str(L"twelve"), Str(L"maybe"), Bool(true), I4(0x00FF00),
                            I4(0x0000FF)});
    EXPECT_EQ(S_OK, g.last_result());
    EXPECT_EQ(0x0000FF, as_integer(g.call(L"CellColorRead", {I4(0), I4(1)})));
    g.call(L"BarSummaryColSet", {I4(0), Str(L"total")});
    g.call(L"BarSummaryColSet", {I4(1), Str(L"sum"), I2(1), I4(0xFF)});
    EXPECT_EQ(L"total", as_string(g.call(L"BarSummaryColRead", {I4(0)})));
    // Out-of-range addresses change nothing and fail nothing.
    for (long bad : {-1L, 3L, 100000L, -2147483647L - 1}) {
        g.call(L"CellTextSet", {I4(bad), I4(bad), Str(L"nope")});
        EXPECT_EQ(S_OK, g.last_result());
        EXPECT_EQ(L"", text(g, bad, 0));
    }
    EXPECT_EQ(L"d", text(g, 0, 0));
}

TEST_F(GridTest, FilesRoundTripWithUnicodePathsAndTheHeaderQuirk)
{
    Hosted &g = filled({L"\u00c4pfel\t1\tx", L"\u65e5\u672c\t2\ty"});
    const std::wstring temp = std::filesystem::temp_directory_path().wstring(), path = temp + L"tarn grid \u00fc\u65e5.txt";
    g.call(L"GridSave", {Str(path), Str(L"Stock")});
    g.call(L"GridReset");
    // Three columns: the header loses its first character, as the loader always did.
    EXPECT_EQ(L"tock", as_string(g.call(L"GridLoad", {Str(path)})));
    EXPECT_EQ(L"\u65e5\u672c", text(g, 1, 0));
    // Missing, unreadable and absurd files load without harm.
    for (const std::wstring &bad : {temp + L"no such file.txt", std::wstring(L"Z:\\"), std::wstring(L""),
                                    std::wstring(L"\\\\?\\invalid<>|path")}) {
        g.call(L"GridLoad", {Str(bad)});
        EXPECT_EQ(S_OK, g.last_result());
    }
    // A save that cannot be written fails quietly, as a script expects.
    g.call(L"GridSave", {Str(temp + L"no such folder\\x.txt"), Str(L"x")});
    EXPECT_EQ(S_OK, g.last_result());
    DeleteFileW(path.c_str());
}

TEST_F(GridTest, SavesOnlyItsBarsBorderAndFont)
{
    Hosted &g = place(kGridProgId);
    EXPECT_TRUE(g.save_bag()->keys().empty());
    g.put(L"BarHeader", Bool(false));
    g.put(L"BarSummary", Bool(true));
    g.put(L"BorderStyle", I4(0));
    g.put(L"AllowGridEdit", Bool(true)); // announced, never stored
    EXPECT_EQ((std::vector<std::wstring>{L"BarHeaderVal", L"BarSummaryVal", L"BorderStyle", L"AllowGridEdit"}),
              g.log().changes);
    ComPtr<Bag> bag = g.save_bag();
    EXPECT_EQ((std::vector<std::wstring>{L"BarHeaderVal", L"BarSummaryVal", L"BorderStyle"}), bag->keys());
    Hosted &h = place(kGridProgId, {0, 0, 320, 200}, Init::FromBag, bag.get());
    EXPECT_FALSE(V_BOOL(h.get(L"BarHeader").get()));
    EXPECT_TRUE(V_BOOL(h.get(L"BarSummary").get()));
    EXPECT_EQ(0, as_integer(h.get(L"BorderStyle")));
}

TEST_F(GridTest, PaintsTheVisibleCellsAndBarsInTheirColoursGivenByValueOrByReference)
{
    Hosted &g = filled({L"Apples\t12\tx", L"Pears\t3.5\ty"});
    g.put(L"BarSummary", Bool(true));
    g.call(L"BarHeaderCaptionSet", {I4(0), Str(L"Fruit")});
    g.call(L"BarSummaryColCalc", {I4(1)});
    g.call(L"CellColorSet", {I4(0x00C0FFC0), I4(1), I4(0)});
    Bitmap picture = g.render(320, 200);
    picture.save_png(output_path(L"grid.png"));
    // Sunken border, bars in the bar colour, cells on the window colour, the coloured cell.
    EXPECT_EQ(GetSysColor(COLOR_BTNSHADOW), picture.pixel(0, 0));
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), picture.pixel(200, 10));
    EXPECT_EQ(0x00C0FFC0u, picture.pixel(60, 40));
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), picture.pixel(300, 150));
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), picture.pixel(300, 190)); // the summary bar
    // Text landed in the first cell and in the header.
    int dark = 0;
    for (int y = 22; y < 36; ++y)
        for (int x = 4; x < 50; ++x) dark += picture.pixel(x, y) == GetSysColor(COLOR_WINDOWTEXT);
    EXPECT_GT(dark, 10);
    g.call(L"GridHide");
    Bitmap hidden = g.render(320, 200);
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), hidden.pixel(10, 25)); // the cells go, the bars stay
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), hidden.pixel(200, 10));

    // The bar colour by value, as a script passes a literal, and by reference to a Variant, as
    // it passes a variable.
    g.call(L"barCol", {I4(0x000000FF)});
    EXPECT_EQ(0x000000FFu, g.render(320, 200).pixel(250, 10));
    Variant colour = I4(0x0000FF00);
    VARIANT ref{};
    V_VT(&ref) = VT_VARIANT | VT_BYREF;
    V_VARIANTREF(&ref) = colour.get();
    g.call(L"barCol", {Variant(ref)}); // a copy of a reference still refers to `colour`
    EXPECT_EQ(0x0000FF00u, g.render(320, 200).pixel(250, 10));
}

TEST_F(GridTest, AMillionCellsScrollAndResizeLeavingNoObjectsAndAKeyTheHostClearsMovesNothing)
{
    DllResourceCounter dll;
    Hosted &g = place(kGridProgId, {0, 0, 320, 200});
    g.call(L"ColsSet", {I4(10)});
    g.call(L"RowsSet", {I4(100000)});
    g.call(L"CellFontSet", {I4(5), I4(1), Str(L"Tahoma"), Str(L"12"), Bool(true)});
    g.activate();
    HWND w = g.hwnd();
    ASSERT_TRUE(w);
    SCROLLINFO si{};
    auto scroll = [&](WORD code) {
        SendMessageW(w, WM_VSCROLL, MAKEWPARAM(code, 0), 0);
        si = scroll_info(w, SB_VERT);
    };
    scroll(SB_PAGEDOWN);
    EXPECT_EQ(99999, si.nMax);
    EXPECT_EQ(static_cast<int>(si.nPage), si.nPos);
    scroll(SB_BOTTOM);
    EXPECT_EQ(si.nMax - static_cast<int>(si.nPage) + 1, si.nPos);
    scroll(SB_TOP);
    g.call(L"RowSetFocus", {I4(0)});
    g.log().on_event = [](const std::wstring &name, DISPPARAMS *p) {
        if (name == L"KeyDown" && p && p->cArgs == 2) *V_I2REF(&p->rgvarg[1]) = 0; // KeyCode = 0
    };
    SendMessageW(w, WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_EQ(0, number(g, L"RowCurrent"));
    g.log().on_event = nullptr;
    g.log().clear_events();
    // Down moves the current cell and the view follows.
    for (int i = 0; i < 30; ++i) SendMessageW(w, WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_EQ(30, number(g, L"RowCurrent"));
    si = scroll_info(w, SB_VERT);
    EXPECT_TRUE(si.nPos > 0 && si.nPos <= 30 && si.nPos + static_cast<int>(si.nPage) > 30) << si.nPos; // row 30 in view
    const std::vector<std::wstring> names = g.log().event_names();
    EXPECT_EQ(30, std::count(names.begin(), names.end(), L"SelChange"));

    UpdateWindow(w);
    long gdi = dll.gdi_objects(), dcs = dll.dcs();
    for (int i = 0; i < 300; ++i) {
        g.move({0, 0, 200 + i % 120, 100 + i % 90});
        scroll(i % 2 ? SB_PAGEDOWN : SB_PAGEUP);
        UpdateWindow(w);
    }
    // The cell fonts stay cached: no more than the few the grid's looks need.
    EXPECT_LE(dll.gdi_objects() - gdi, 4);
    EXPECT_EQ(dcs, dll.dcs());
}

TEST_F(GridTest, ClickingAHeaderRaisesSortClickAndSortsThatColumn)
{
    Hosted &g = filled({L"b\t2\tz", L"a\t10\ty", L"c\t1\tx"});
    g.activate();
    allow_focus(g); // a click gives the grid the focus
    HWND w = g.hwnd();
    // The header bar is at the top; column 1 starts at 64 pixels past the 2-pixel border.
    click(w, 2 + 64 + 10, 8);
    EXPECT_EQ((std::vector<std::wstring>{L"MouseDown", L"MouseUp", L"Click", L"SortClick"}), g.log().event_names());
    // The host's SortClick did not sort, so the grid did (BarHeaderSort of the column clicked).
    EXPECT_EQ(1, number(g, L"ColCurrent"));
    // A newly chosen column's first sort repeats the last direction (ascending so far), and
    // numbers compare as numbers; sorting the column again reverses it.
    EXPECT_EQ((std::vector<std::wstring>{L"1", L"2", L"10"}), (std::vector{text(g, 0, 1), text(g, 1, 1), text(g, 2, 1)}));
    g.call(L"SortFlex", {I4(1)});
    EXPECT_EQ(L"10", text(g, 0, 1));
    EXPECT_EQ(VARIANT_TRUE, V_BOOL(g.get(L"blnGRIDORDER").get()));
    EXPECT_EQ(1, as_integer(g.get(L"lngPREVIOUSCOLNO")));
    // A click in the cells selects that cell.
    click(w, 2 + 10, 2 + 20 + 16 + 5); // row 1, column 0
    EXPECT_EQ(std::pair(1L, 0L), current(g));
    EXPECT_EQ(1, number(g, L"MouseRow"));
}

// Counts the paints a window gets (its procedure wrapped for the test).
class PaintCount {
public:
    explicit PaintCount(HWND w) : w_(w)
    {
        self_ = this;
        old_ = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(w, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&proc)));
    }
    ~PaintCount() { SetWindowLongPtrW(w_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(old_)); }
    int paints = 0;

private:
    static LRESULT CALLBACK proc(HWND w, UINT msg, WPARAM wp, LPARAM lp)
    {
        if (msg == WM_PAINT) ++self_->paints;
        return CallWindowProcW(self_->old_, w, msg, wp, lp);
    }
    static inline PaintCount *self_ = nullptr;
    HWND w_;
    WNDPROC old_ = nullptr;
};

// What the window shows on the screen, read back from its DC.
Bitmap on_screen(HWND w)
{
    RECT r{};
    GetClientRect(w, &r);
    Bitmap picture(r.right, r.bottom, 0xFF00FF);
    HDC dc = GetDC(w);
    BitBlt(picture.dc(), 0, 0, r.right, r.bottom, dc, 0, 0, SRCCOPY);
    ReleaseDC(w, dc);
    GdiFlush();
    return picture;
}

// A host's loop on an active grid: no call paints or touches the scroll bars; once the host
// returns to its message loop the window paints once and shows exactly what a grid without a
// window given the same calls draws, with the same events, totals and current cell.
TEST_F(GridTest, ABatchOfCallsInPlacePaintsOnceAfterwardsAndShowsWhatAFreshGridDraws)
{
    Hosted &g = place(kGridProgId, {0, 0, 320, 200});
    ASSERT_EQ(S_OK, g.activate());
    HWND w = g.hwnd();
    pump();
    RECT client{};
    GetClientRect(w, &client);
    Hosted &twin = place(kGridProgId, {0, 220, client.right, 220 + client.bottom}); // no window
    const SCROLLINFO before = scroll_info(w, SB_VERT);
    PaintCount count(w);

    auto batch = [](Hosted &h) {
        h.put(L"BarSummary", Bool(true));
        h.call(L"ColsSet", {I4(4)});
        h.call(L"RowsSet", {I4(0)});
        for (int r = 0; r < 40; ++r) {
            h.call(L"RowAdd", {Str(L"Item " + std::to_wstring(r) + L"\t" + std::to_wstring(r % 7) + L".5"), I4(r / 2)});
            h.call(L"CellTextSet", {I4(r / 2), I4(2), Str(std::to_wstring(40 - r))});
        }
        h.call(L"BarSummaryColCalc", {I4(2)});
        h.call(L"RowDel", {I4(3)});
        h.call(L"ColWidth", {I4(0), R8(1500)});
        h.call(L"CellColorSet", {I4(0x00C0FFC0), I4(1), I4(1)});
        h.call(L"ColSetFocus", {I4(1)});
        h.call(L"SortFlex", {I4(1)});
        h.call(L"BarHeaderCaptionSet", {I4(0), Str(L"Item")});
        h.call(L"RowSetFocus", {I4(30)});
    };
    batch(g);
    batch(twin);
    EXPECT_EQ(0, count.paints);
    EXPECT_TRUE(GetUpdateRect(w, nullptr, FALSE));           // marked out of date
    EXPECT_EQ(before.nMax, scroll_info(w, SB_VERT).nMax); // the bars wait for the queue

    pump();
    EXPECT_EQ(1, count.paints);
    const SCROLLINFO after = scroll_info(w, SB_VERT);
    EXPECT_EQ(38, after.nMax); // 39 rows
    EXPECT_EQ(3, scroll_info(w, SB_HORZ).nMax);
    EXPECT_GT(after.nPage, 0u);

    const Bitmap shown = on_screen(w);
    shown.save_png(output_path(L"grid_batch.png"));
    EXPECT_EQ(shown.hash(), twin.render(client.right, client.bottom).hash());
    EXPECT_EQ(shown.hash(), g.capture().hash());
    EXPECT_EQ(g.log().event_names(), twin.log().event_names());
    const std::vector<std::wstring> events = g.log().event_names();
    EXPECT_EQ(42, std::count(events.begin(), events.end(), L"Change")); // RowsSet, 40 RowAdd, RowDel
    for (long col = 0; col < 4; ++col)
        EXPECT_EQ(as_string(twin.call(L"BarSummaryColRead", {I4(col)})), as_string(g.call(L"BarSummaryColRead", {I4(col)})));
    long total = 0; // the column after RowDel, whose Change recalculated it
    for (long r = 0; r < 39; ++r) total += std::stol(text(g, r, 2));
    EXPECT_EQ(std::to_wstring(total) + L".00", as_string(g.call(L"BarSummaryColRead", {I4(2)})));
    EXPECT_EQ(std::pair(30L, 1L), current(g));
    EXPECT_EQ(current(g), current(twin));
}

// Redraw: off, calls leave the window alone (no invalidation, scroll bars as they were after
// the queue empties); BarSummaryColCalc (and so every row change's Change) and the
// whole-grid operations switch it back on; the others leave it as it is.
TEST_F(GridTest, RedrawOffLeavesTheWindowAloneUntilARecalculationOrAWholeGridOperationSwitchesItOn)
{
    Hosted &g = place(kGridProgId, {0, 0, 320, 200});
    ASSERT_EQ(S_OK, g.activate());
    HWND w = g.hwnd();
    g.call(L"ColsSet", {I4(3)});
    const std::wstring path = std::filesystem::temp_directory_path().wstring() + L"tarn redraw.txt";
    auto off = [&] { g.call(L"GridRedraw", {Bool(false)}); };
    const std::tuple<const char *, std::function<void()>, bool> steps[] = {
        {"GridRedraw(False)", off, false},
        {"CellTextSet", [&] { g.call(L"CellTextSet", {I4(0), I4(1), Str(L"7")}); }, false},
        {"ColsSet", [&] { g.call(L"ColsSet", {I4(8)}); }, false},
        {"ColWidth", [&] { g.call(L"ColWidth", {I4(1), R8(2000)}); }, false},
        {"SortFlex", [&] { g.call(L"SortFlex", {I4(0)}); }, false},
        {"GridClear", [&] { g.call(L"GridClear"); }, false},
        {"BarSummaryColCalc", [&] { g.call(L"BarSummaryColCalc", {I4(1)}); }, true},
        {"CellTextSet with Redraw on", [&] { g.call(L"CellTextSet", {I4(0), I4(1), Str(L"8")}); }, true},
        {"RowsSet, whose Change recalculates", [&] { off(); g.call(L"RowsSet", {I4(50)}); }, true},
        {"RowAdd", [&] { off(); g.call(L"RowAdd", {Str(L"x"), I4(0)}); }, true},
        {"GridReset", [&] { off(); g.call(L"GridReset"); }, true},
        {"GridRefresh", [&] { off(); g.call(L"GridRefresh"); }, true},
        {"BarHeaderSort", [&] { off(); g.call(L"BarHeaderSort"); }, true},
        {"GridSave", [&] { off(); g.call(L"GridSave", {Str(path), Str(L"x")}); }, true},
        {"GridLoad", [&] { off(); g.call(L"GridLoad", {Str(path)}); }, true},
        {"GridRedraw(True)", [&] { off(); g.call(L"GridRedraw", {Bool(true)}); }, true},
    };
    for (const auto &[what, call, marks] : steps) {
        pump();
        ValidateRect(w, nullptr);
        call();
        EXPECT_EQ(marks, GetUpdateRect(w, nullptr, FALSE) != 0) << what;
    }
    DeleteFileW(path.c_str());

    // Columns added with Redraw off: the scroll bar learns of them when Redraw comes back.
    pump();
    off();
    g.call(L"ColsSet", {I4(12)});
    pump();
    EXPECT_NE(11, scroll_info(w, SB_HORZ).nMax);
    g.call(L"GridRedraw", {Bool(true)});
    pump();
    EXPECT_EQ(11, scroll_info(w, SB_HORZ).nMax);
}

TEST_F(GridCheckTest, BothValueKeysAreWrittenAndTheLaterOneReadDecides)
{
    Hosted &c = place(kCheckProgId);
    EXPECT_EQ(kNew, state(c));
    // Saved unchanged, every key is stored with its default.
    ComPtr<Bag> fresh = c.save_bag();
    EXPECT_EQ((std::vector<std::wstring>{L"ENABLED", L"VALUE", L"Value", L"BackColor"}), fresh->keys());
    EXPECT_EQ((std::vector<long long>{-1, 0, 0, static_cast<int32_t>(0x8000000F)}), stored(*fresh.get()));
    EXPECT_EQ(VT_BOOL, V_VT(fresh->get(L"ENABLED").get()));
    c.put(L"Value", I2(1));
    c.put(L"Enabled", Bool(false));
    c.put(L"BACKCOLOR", ole(0x00112233));
    EXPECT_EQ((std::vector<std::wstring>{L"Value", L"ENABLED", L"BackColor"}), c.log().changes);
    ComPtr<Bag> bag = c.save_bag();
    EXPECT_EQ((std::vector<std::wstring>{L"ENABLED", L"VALUE", L"Value", L"BackColor"}), bag->writes);
    EXPECT_EQ((std::vector<long long>{0, 1, 1, 0x00112233}), stored(*bag.get()));
    EXPECT_EQ(State(1, false, 0x00112233), state(place(kCheckProgId, {10, 40, 110, 57}, Init::FromBag, bag.get())));

    // Different values under the two keys: "Value", read last, decides; missing, it unchecks.
    LONG top = 100;
    for (auto [upper, lower, want] : {std::tuple{1, 0, 0L}, std::tuple{0, 1, 1L}, std::tuple{1, -1, 0L}}) {
        ComPtr<Bag> mixed = Bag::Create();
        mixed->set(L"VALUE", I2(static_cast<int16_t>(upper)));
        if (lower >= 0) mixed->set(L"Value", I2(static_cast<int16_t>(lower)));
        EXPECT_EQ(want, value(place(kCheckProgId, {10, top, 110, top + 17}, Init::FromBag, mixed.get())));
        top += 30;
    }
}

TEST_F(GridCheckTest, BadValuesOfAnyTypeAreRefusedQuietly)
{
    Hosted &c = place(kCheckProgId);
    c.put(L"Value", I2(1));
    for (int16_t bad : {2, -1, 32767}) EXPECT_EQ(S_OK, c.put(L"Value", I2(bad)));
    EXPECT_EQ(S_OK, c.put(L"Value", Str(L"checked")));
    EXPECT_EQ(S_OK, c.put(L"BACKCOLOR", ole(0x7F000000)));
    EXPECT_EQ(State(1, true, 0x8000000F), state(c));
    EXPECT_EQ(std::vector<std::wstring>{L"Click"}, c.log().event_names()); // the one real change
    ComPtr<Bag> bag = Bag::Create();
    bag->set(L"VALUE", I2(7));
    bag->set(L"Value", Str(L"yes"));
    bag->set(L"ENABLED", R8(1e300));
    bag->set(L"BackColor", Str(L"red"));
    Hosted &odd = place(kCheckProgId, {10, 40, 110, 57}, Init::FromBag, bag.get());
    EXPECT_EQ(S_OK, odd.init_result());
    EXPECT_EQ(kNew, state(odd));
}

TEST_F(GridCheckTest, TheCheckBoxsEventsArriveUnchangedAndItSitsALittleLeftOfTheCentre)
{
    Hosted &c = active();
    HWND box = check_box(c);
    c.log().clear_events();
    test::mouse(box, WM_MOUSEMOVE, 5, 6);
    click(box, 5, 6);
    const std::wstring at = L"," + twips_text(5, 6) + L")";
    EXPECT_EQ((std::vector<std::wstring>{L"MouseMove(0,0" + at, L"MouseDown(1,0" + at, L"MouseUp(1,0" + at, L"Click"}),
              c.log().event_texts());
    EXPECT_EQ(1, value(c));
    // The space bar: KeyDown, KeyPress, KeyUp with the check box's arguments, and the toggle.
    c.log().clear_events();
    SendMessageW(box, WM_KEYDOWN, VK_SPACE, 1);
    SendMessageW(box, WM_CHAR, L' ', 1);
    SendMessageW(box, WM_KEYUP, VK_SPACE, 0xC0000001);
    EXPECT_EQ((std::vector<std::wstring>{L"KeyDown(32,0)", L"KeyPress(32)", L"KeyUp(32,0)", L"Click"}),
              c.log().event_texts());
    EXPECT_EQ(0, value(c));
    // A host that clears the key code swallows the key: no toggle.
    c.log().on_event = [](const std::wstring &name, DISPPARAMS *params) {
        if (name == L"KeyDown" || name == L"KeyUp") *V_I2REF(&params->rgvarg[1]) = 0;
    };
    c.log().clear_events();
    SendMessageW(box, WM_KEYDOWN, VK_SPACE, 1);
    SendMessageW(box, WM_KEYUP, VK_SPACE, 0xC0000001);
    EXPECT_EQ((std::vector<std::wstring>{L"KeyDown", L"KeyUp"}), c.log().event_names());
    EXPECT_EQ(0, value(c));

    // It sits a little left of the centre, partly outside a cell narrower than the box.
    const double tpp = TwipsPerPixelX();
    auto expected_left = [&](int width_px) {
        return static_cast<LONG>(std::floor(((width_px * tpp - 225) - 60) * 0.5 / tpp + 1e-6));
    };
    EXPECT_EQ(expected_left(100), placement(box).left);
    c.move({10, 10, 40, 27});
    EXPECT_EQ(expected_left(30), placement(box).left);
    c.move({10, 10, 12, 27}); // narrower than the box and 60 twips
    EXPECT_EQ(expected_left(2), placement(box).left);
    c.move({10, 10, 10, 10});
    c.move({10, 10, 9, 5});
    UpdateWindow(c.hwnd());
}

TEST_F(GridCheckTest, DrawsTheBoxOnTheCellsColourAndLeavesNothingBehind)
{
    ASSERT_TRUE(DllResourceCounter().installed()); // counting from before the control exists
    Hosted &c = active({0, 0, 100, 17});
    c.put(L"BACKCOLOR", ole(0x0000FFFF));
    c.put(L"Value", I2(1));
    Bitmap b = c.render(100, 17);
    b.save_png(output_path(L"grdchk.png"));
    EXPECT_EQ(0x0000FFFFu, b.pixel(1, 1));
    EXPECT_EQ(0x0000FFFFu, b.pixel(98, 15));
    EXPECT_GT(b.count(0), 5); // the check mark
    const auto cycle = [&](int i) {
        c.move({0, 0, 20 + i % 200, 17});
        c.put(L"BACKCOLOR", ole(i % 2 ? 0x0000FFFF : 0x80000005));
        if (i % 10 == 0) c.render(100, 17);
        UpdateWindow(c.hwnd());
    };
    cycle(0); // the system keeps a few objects of its own for the windows from their first resize on
    pump();
    ResourceSnapshot before;
    for (int i = 0; i < 1000; ++i) cycle(i);
    pump();
    EXPECT_EQ(std::vector<std::string>{}, before.changes());
}
