// The data grid through the real DLL: its operations from a client without a window, its
// events, files, persistence, what it paints, scrolling, the mouse and keyboard.
#include <gtest/gtest.h>

#include "support/control_test.h"
#include "support/resource_counts.h"

#include <algorithm>
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

TEST_F(GridTest, WithoutAWindowRowsRaiseChangeOnceColumnsNoneAndArgumentsMayBeLeftOutOrOfAnyType)
{
    Hosted &g = place(kProgId);
    g.call(L"ColsSet", {I4(3)});
    EXPECT_TRUE(g.log().events.empty());
    g.call(L"RowAdd", {Str(L"a\tb\tc"), I4(0)});
    g.call(L"RowAdd", {Str(L"d\te\tf"), I4(1)});
    g.call(L"RowDel", {I4(0)});
    g.call(L"RowsSet", {I4(5)});
    EXPECT_EQ(std::vector<std::wstring>(4, L"Change"), g.log().event_names());
    EXPECT_EQ(5, number(g, L"RowsCurrent"));
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
    std::wstring path = temp_file(L"tarn grid \u00fc\u65e5.txt");
    g.call(L"GridSave", {Str(path), Str(L"Stock")});
    EXPECT_EQ(S_OK, g.last_result());
    Hosted &h = place(kProgId, {0, 220, 320, 420});
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
    std::ofstream(wide.c_str(), std::ios::binary) << "100000|Huge\r\nonly one value\r\n";
    EXPECT_EQ(L"000|Huge", as_string(h.call(L"GridLoad", {Str(wide)})));
    EXPECT_EQ(100000, number(h, L"ColsCurrent"));
    h.render(320, 200);
    // A save that cannot be written fails quietly, as a script expects.
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

TEST_F(GridTest, PaintsTheVisibleCellsAndBarsInTheirColoursGivenByValueOrByReference)
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

    // The bar colour by value, as a script passes a literal, and by reference to a Variant, as
    // it passes a variable.
    g.call(L"barCol", {I4(0x000000FF)});
    EXPECT_EQ(S_OK, g.last_result());
    EXPECT_EQ(0x000000FFu, g.render(320, 200).pixel(250, 10));
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

TEST_F(GridTest, AMillionCellsScrollAndResizeLeavingNoObjectsAndAKeyTheHostClearsMovesNothing)
{
    DllResourceCounter dll;
    Hosted &g = place(kProgId, {0, 0, 320, 200});
    g.call(L"ColsSet", {I4(10)});
    g.call(L"RowsSet", {I4(100000)});
    g.call(L"CellFontSet", {I4(5), I4(1), Str(L"Tahoma"), Str(L"12"), Bool(true)});
    g.activate();
    HWND w = g.hwnd();
    ASSERT_TRUE(w);
    SCROLLINFO si{sizeof si, SIF_ALL};
    auto scroll = [&](WORD code) {
        SendMessageW(w, WM_VSCROLL, MAKEWPARAM(code, 0), 0);
        GetScrollInfo(w, SB_VERT, &si);
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
    GetScrollInfo(w, SB_VERT, &si);
    EXPECT_GT(si.nPos, 0);
    EXPECT_LE(si.nPos, 30);
    EXPECT_GE(si.nPos + static_cast<int>(si.nPage), 31);
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

TEST_F(GridTest, ClickingAHeaderRaisesSortClickAndBarHeaderSortSortsThatColumn)
{
    Hosted &g = filled({L"b\t2\tz", L"a\t10\ty", L"c\t1\tx"});
    g.activate();
    allow_focus(g); // a click gives the grid the focus
    HWND w = g.hwnd();
    // The header bar is at the top; column 1 starts at 64 pixels past the 2-pixel border.
    click(w, 2 + 64 + 10, 8);
    EXPECT_EQ((std::vector<std::wstring>{L"MouseDown", L"MouseUp", L"Click", L"SortClick"}), g.log().event_names());
    g.call(L"BarHeaderSort");
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
    EXPECT_EQ(1, number(g, L"RowCurrent"));
    EXPECT_EQ(0, number(g, L"ColCurrent"));
    EXPECT_EQ(1, number(g, L"MouseRow"));
}
