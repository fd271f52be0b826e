// The data grid through the real DLL: its operations from a client without a window, its
// events, files, persistence, what it paints, scrolling, the mouse and keyboard.
#include <gtest/gtest.h>

#include "foundation/font_object.h"
#include "support/control_test.h"
#include "support/resource_counts.h"

#include <fstream>

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.grid";

std::wstring text(Hosted &g, long row, long col) { return as_string(g.call(L"CellTextRead", {I4(row), I4(col)})); }
long number(Hosted &g, const wchar_t *method) { return static_cast<long>(as_integer(g.call(method))); }

std::wstring temp_file(const std::wstring &name)
{
    wchar_t dir[MAX_PATH];
    GetTempPathW(MAX_PATH, dir);
    return std::wstring(dir) + name;
}

class GridTest : public ControlTest {
protected:
    // A grid of three columns and the rows given (tab-separated texts).
    Hosted &filled(const std::vector<std::wstring> &rows, RECT pos = {0, 0, 320, 200})
    {
        Hosted &g = place(kProgId, pos);
        g.call(L"ColsSet", {I4(3)});
        g.call(L"RowsSet", {I4(0)});
        for (size_t i = 0; i < rows.size(); ++i) g.call(L"RowAdd", {Str(rows[i]), I4(static_cast<int32_t>(i))});
        g.log().clear_events();
        return g;
    }
};

} // namespace

TEST_F(GridTest, RowOperationsRaiseChangeOnceAndColumnCountsNone)
{
    Hosted &g = place(kProgId);
    g.call(L"ColsSet", {I4(3)});
    EXPECT_TRUE(g.log().events.empty());
    g.call(L"RowAdd", {Str(L"a\tb\tc"), I4(0)});
    g.call(L"RowAdd", {Str(L"d\te\tf"), I4(1)});
    g.call(L"RowDel", {I4(0)});
    g.call(L"RowsSet", {I4(5)});
    EXPECT_EQ((std::vector<std::wstring>{L"Change", L"Change", L"Change", L"Change"}), g.log().event_names());
    EXPECT_EQ(5, number(g, L"RowsCurrent"));
    EXPECT_EQ(3, number(g, L"ColsCurrent"));
    EXPECT_EQ(L"d", text(g, 0, 0));
    EXPECT_EQ(L"f", text(g, 0, 2));
}

TEST_F(GridTest, CellOperationsMoveTheCurrentCellAsDocumented)
{
    Hosted &g = filled({L"1\t2\t3", L"4\t5\t6", L"7\t8\t9"});
    g.call(L"CellTextSet", {I4(2), I4(1), Str(L"x")});
    EXPECT_EQ(2, number(g, L"RowCurrent"));
    EXPECT_EQ(1, number(g, L"ColCurrent"));
    EXPECT_EQ(L"5", text(g, 1, 1)); // a read leaves the current cell where it was
    EXPECT_EQ(2, number(g, L"RowCurrent"));
    g.call(L"CellColorSet", {I4(0x0000FF), I4(0), I4(2)});
    EXPECT_EQ(0, number(g, L"RowCurrent"));
    EXPECT_EQ(0x0000FF, as_integer(g.call(L"CellColorRead", {I4(0), I4(2)})));
    g.call(L"CellChkSet", {I4(1), I4(0), Str(L"true")});
    EXPECT_EQ(L" a", text(g, 1, 0));
    g.call(L"CellChkSet", {I4(1), I4(0), Str(L"yes")});
    EXPECT_EQ(L"", text(g, 1, 0));
    g.call(L"ColTypeSet", {I4(10000), I4(3)});
    EXPECT_EQ(L"3", as_string(g.call(L"ColTypeRead", {I4(10000)})));
    g.call(L"ColTypeSet", {I4(10001), I4(3)});
    EXPECT_EQ(L"", as_string(g.call(L"ColTypeRead", {I4(10001)})));
}

TEST_F(GridTest, OptionalArgumentsMayBeLeftOutOrBeOfAnyType)
{
    Hosted &g = filled({L"1\t2\t3"});
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
    EXPECT_EQ(L"1", text(g, 0, 0));
}

TEST_F(GridTest, SummaryTotalsAndSortsAlternate)
{
    Hosted &g = filled({L"b\t1.5", L"a\tabc", L"c\t", L"d\t2"});
    g.call(L"BarSummaryColCalc", {I4(1)});
    EXPECT_EQ(L"3.50", as_string(g.call(L"BarSummaryColRead", {I4(1)})));
    // Sort column 0 (the current column after the rows went in) three times.
    g.call(L"ColSetFocus", {I4(0)});
    std::vector<std::wstring> firsts;
    for (int i = 0; i < 3; ++i) {
        g.call(L"SortFlex", {I4(0)});
        firsts.push_back(text(g, 0, 0));
    }
    EXPECT_EQ((std::vector<std::wstring>{L"d", L"a", L"d"}), firsts); // descending, ascending, descending
    EXPECT_EQ(VARIANT_TRUE, V_BOOL(g.get(L"blnGRIDORDER").get()));
    EXPECT_EQ(0, as_integer(g.get(L"lngPREVIOUSCOLNO")));
}

TEST_F(GridTest, FilesRoundTripWithUnicodePathsAndTheHeaderQuirk)
{
    Hosted &g = filled({L"\u00c4pfel\t1\tx", L"\u65e5\u672c\t2\ty"});
    std::wstring path = temp_file(L"tarn grid \u00fc\u65e5.txt");
    DeleteFileW(path.c_str());
    g.call(L"GridSave", {Str(path), Str(L"Stock")});
    EXPECT_EQ(S_OK, g.last_result());
    Hosted &h = place(kProgId, {0, 220, 320, 420});
    h.log().clear_events();
    // Three columns: the header loses its first character, as the loader always did.
    EXPECT_EQ(L"tock", as_string(h.call(L"GridLoad", {Str(path)})));
    EXPECT_EQ(2, number(h, L"RowsCurrent"));
    EXPECT_EQ(L"\u00c4pfel", text(h, 0, 0));
    EXPECT_EQ(L"\u65e5\u672c", text(h, 1, 0));
    // Missing, unreadable and absurd files load without harm.
    for (const std::wstring &bad : {temp_file(L"no such file.txt"), std::wstring(L"Z:\\"), std::wstring(L""),
                                    std::wstring(L"\\\\?\\invalid<>|path")}) {
        h.call(L"GridLoad", {Str(bad)});
        EXPECT_EQ(S_OK, h.last_result());
    }
    std::wstring wide = temp_file(L"tarn wide claim.txt");
    {
        std::ofstream f(wide.c_str(), std::ios::binary);
        f << "100000|Huge\r\nonly one value\r\n";
    }
    EXPECT_EQ(L"000|Huge", as_string(h.call(L"GridLoad", {Str(wide)})));
    EXPECT_EQ(100000, number(h, L"ColsCurrent"));
    h.render(320, 200);
    // A save that cannot be written keeps the previous file.
    g.call(L"GridSave", {Str(temp_file(L"no such folder\\x.txt")), Str(L"x")});
    EXPECT_EQ(S_OK, g.last_result());
    DeleteFileW(path.c_str());
    DeleteFileW(wide.c_str());
}

TEST_F(GridTest, SavesOnlyItsBarsBorderAndFont)
{
    Hosted &g = place(kProgId);
    EXPECT_TRUE(g.save_bag()->keys().empty());
    g.put(L"BarHeader", Bool(false));
    g.put(L"BarSummary", Bool(true));
    g.put(L"BorderStyle", I4(0));
    g.put(L"AllowGridEdit", Bool(true)); // announced, never stored
    EXPECT_EQ((std::vector<std::wstring>{L"BarHeaderVal", L"BarSummaryVal", L"BorderStyle", L"AllowGridEdit"}),
              g.log().changes);
    ComPtr<Bag> bag = g.save_bag();
    EXPECT_EQ((std::vector<std::wstring>{L"BarHeaderVal", L"BarSummaryVal", L"BorderStyle"}), bag->keys());
    Hosted &h = place(kProgId, {0, 0, 320, 200}, Init::FromBag, bag.get());
    EXPECT_FALSE(V_BOOL(h.get(L"BarHeader").get()));
    EXPECT_TRUE(V_BOOL(h.get(L"BarSummary").get()));
    EXPECT_EQ(0, as_integer(h.get(L"BorderStyle")));
    ComPtr<IStream> stream = g.save_stream();
    Hosted &k = place(kProgId, {0, 0, 320, 200}, Init::FromStream, stream.get());
    EXPECT_TRUE(V_BOOL(k.get(L"BarSummary").get()));
}

TEST_F(GridTest, PaintsTheVisibleCellsBarsAndTotals)
{
    Hosted &g = filled({L"Apples\t12\tx", L"Pears\t3.5\ty"});
    g.put(L"BarSummary", Bool(true));
    g.call(L"BarHeaderCaptionSet", {I4(0), Str(L"Fruit")});
    g.call(L"BarSummaryColCalc", {I4(1)});
    g.call(L"CellColorSet", {I4(0x00C0FFC0), I4(1), I4(0)});
    Bitmap picture = g.render(320, 200);
    picture.save_png(output_path(L"grid.png"));
    // Sunken border, header bar in the bar colour, cells on the window colour, the coloured cell.
    EXPECT_EQ(GetSysColor(COLOR_BTNSHADOW), picture.pixel(0, 0));
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), picture.pixel(200, 10));
    EXPECT_EQ(0x00C0FFC0u, picture.pixel(60, 40));
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), picture.pixel(300, 150));
    // Text landed in the first cell and in the header.
    int dark = 0;
    for (int y = 22; y < 36; ++y)
        for (int x = 4; x < 50; ++x) dark += picture.pixel(x, y) == GetSysColor(COLOR_WINDOWTEXT);
    EXPECT_GT(dark, 10);
    g.call(L"GridHide");
    Bitmap hidden = g.render(320, 200);
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), hidden.pixel(10, 25)); // the cells go, the bars stay
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), hidden.pixel(200, 10));
}

TEST_F(GridTest, ScrollsWithItsScrollBarsAndKeepsTheCurrentCellInView)
{
    Hosted &g = place(kProgId, {0, 0, 320, 200});
    g.call(L"ColsSet", {I4(20)});
    g.call(L"RowsSet", {I4(1000)});
    for (int r = 0; r < 1000; r += 100) g.call(L"CellTextSet", {I4(r), I4(0), Str(L"row " + std::to_wstring(r))});
    g.activate();
    HWND w = g.hwnd();
    ASSERT_TRUE(w);
    SendMessageW(w, WM_VSCROLL, MAKEWPARAM(SB_PAGEDOWN, 0), 0);
    SCROLLINFO si{};
    si.cbSize = sizeof si;
    si.fMask = SIF_ALL;
    GetScrollInfo(w, SB_VERT, &si);
    EXPECT_EQ(999, si.nMax);
    EXPECT_EQ(static_cast<int>(si.nPage), si.nPos);
    SendMessageW(w, WM_VSCROLL, MAKEWPARAM(SB_BOTTOM, 0), 0);
    GetScrollInfo(w, SB_VERT, &si);
    EXPECT_EQ(si.nMax - static_cast<int>(si.nPage) + 1, si.nPos);
    SendMessageW(w, WM_VSCROLL, MAKEWPARAM(SB_TOP, 0), 0);
    // Keyboard: Down moves the current cell and the view follows.
    g.call(L"RowSetFocus", {I4(0)});
    g.log().clear_events();
    for (int i = 0; i < 30; ++i) SendMessageW(w, WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_EQ(30, number(g, L"RowCurrent"));
    GetScrollInfo(w, SB_VERT, &si);
    EXPECT_GT(si.nPos, 0);
    EXPECT_LE(si.nPos, 30);
    EXPECT_GE(si.nPos + static_cast<int>(si.nPage), 31);
    size_t selchanges = 0;
    for (const std::wstring &e : g.log().event_names()) selchanges += e == L"SelChange";
    EXPECT_EQ(30u, selchanges);
}

TEST_F(GridTest, AKeyTheHostClearsDoesNotMoveTheCell)
{
    Hosted &g = filled({L"1\t2\t3", L"4\t5\t6"});
    g.activate();
    g.log().on_event = [](const std::wstring &name, DISPPARAMS *p) {
        if (name == L"KeyDown" && p && p->cArgs == 2) *V_I2REF(&p->rgvarg[1]) = 0; // KeyCode = 0
    };
    g.call(L"RowSetFocus", {I4(0)});
    SendMessageW(g.hwnd(), WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_EQ(0, number(g, L"RowCurrent"));
    g.log().on_event = nullptr;
    SendMessageW(g.hwnd(), WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_EQ(1, number(g, L"RowCurrent"));
}

TEST_F(GridTest, ClickingAHeaderRaisesSortClickAndBarHeaderSortSortsThatColumn)
{
    Hosted &g = filled({L"b\t2\tz", L"a\t10\ty", L"c\t1\tx"});
    g.activate();
    allow_focus(g); // a click gives the grid the focus
    HWND w = g.hwnd();
    // The header bar is at the top; column 1 starts at 64 pixels past the 2-pixel border.
    click(w, 2 + 64 + 10, 8);
    std::vector<std::wstring> names = g.log().event_names();
    EXPECT_EQ((std::vector<std::wstring>{L"MouseDown", L"MouseUp", L"Click", L"SortClick"}), names);
    g.call(L"BarHeaderSort");
    EXPECT_EQ(1, number(g, L"ColCurrent"));
    // A newly chosen column's first sort repeats the last direction (ascending so far), and
    // numbers compare as numbers.
    EXPECT_EQ(L"1", text(g, 0, 1));
    EXPECT_EQ(L"2", text(g, 1, 1));
    EXPECT_EQ(L"10", text(g, 2, 1));
    // A click in the cells selects that cell.
    g.log().clear_events();
    click(w, 2 + 10, 2 + 20 + 16 + 5); // row 1, column 0
    EXPECT_EQ(1, number(g, L"RowCurrent"));
    EXPECT_EQ(0, number(g, L"ColCurrent"));
    EXPECT_EQ(1, number(g, L"MouseRow"));
}

TEST_F(GridTest, ScrollingAndResizingAMillionCellGridLeaveNoObjectsBehind)
{
    DllResourceCounter dll;
    Hosted &g = place(kProgId, {0, 0, 320, 200});
    g.call(L"ColsSet", {I4(10)});
    g.call(L"RowsSet", {I4(100000)});
    g.call(L"CellFontSet", {I4(5), I4(1), Str(L"Tahoma"), Str(L"12"), Bool(true)});
    g.activate();
    UpdateWindow(g.hwnd());
    long gdi = dll.gdi_objects(), dcs = dll.dcs();
    for (int i = 0; i < 300; ++i) {
        g.move({0, 0, 200 + i % 120, 100 + i % 90});
        SendMessageW(g.hwnd(), WM_VSCROLL, MAKEWPARAM(i % 2 ? SB_PAGEDOWN : SB_PAGEUP, 0), 0);
        UpdateWindow(g.hwnd());
    }
    // The cell fonts stay cached: no more than the few the grid's looks need.
    EXPECT_LE(dll.gdi_objects() - gdi, 4);
    EXPECT_EQ(dcs, dll.dcs());
}

TEST_F(GridTest, ColourMethodsTakeTheirColourByValueOrByReference)
{
    Hosted &g = filled({L"a\t1\tx"});
    // By value, as a script passes a literal.
    g.call(L"barCol", {I4(0x000000FF)});
    EXPECT_EQ(S_OK, g.last_result());
    EXPECT_EQ(0x000000FFu, g.render(320, 200).pixel(250, 10)); // the header bar's background
    // By reference to a Variant, as a script passes a variable.
    Variant colour = I4(0x0000FF00);
    VARIANT ref;
    V_VT(&ref) = VT_VARIANT | VT_BYREF;
    V_VARIANTREF(&ref) = colour.get();
    DISPPARAMS params{&ref, nullptr, 1, 0};
    Variant result;
    EXPECT_EQ(S_OK, g.dispatch()->Invoke(dispid_of(g.dispatch(), L"barCol"), IID_NULL, 0, DISPATCH_METHOD, &params,
                                         result.put(), nullptr, nullptr));
    EXPECT_EQ(0x0000FF00u, g.render(320, 200).pixel(250, 10));
}
