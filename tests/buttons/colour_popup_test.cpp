// The colour pop-up as a component, with a hand-driven clock for its hover timer: what the
// mouse and the keys report and in which order, every way it closes, where it opens, the
// cells' tooltips, pictures of every palette, and no handles left behind by 1,000 openings.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>

#include "buttons/colour_popup.h"
#include "buttons/frmctrlTOOLTIP.h"
#include "host/bitmap.h"
#include "support/control_test.h"
#include "support/resource_counts.h"

using namespace tarn;
using namespace tarn::test;
using namespace tarn::popup_item;

namespace {

const wchar_t *const kWhy[] = {L"Chosen", L"More", L"Escape", L"ClickOutside", L"FocusLost", L"Hidden"};

std::wstring hex(uint32_t v)
{
    wchar_t buf[16];
    swprintf(buf, 16, L"%06X", v);
    return buf;
}

struct Recorder : ColourPopupSink {
    std::vector<std::wstring> log;
    void ActiveChanged(OleColor c, const std::wstring &name) override { log.push_back(L"active " + name + L" " + hex(c)); }
    void Closed(PopupClose why) override { log.push_back(std::wstring(L"closed ") + kWhy[static_cast<int>(why)]); }
    void ColourChosen(OleColor c) override { log.push_back(L"chosen " + hex(c)); }
    void MoreChosen() override { log.push_back(L"more"); }
};
using Log = std::vector<std::wstring>;

frmctrlTOOLTIP *shown_tip()
{
    frmctrlTOOLTIP *tip = frmctrlTOOLTIP::Existing();
    return tip && tip->shown() ? tip : nullptr;
}

class ColourPopupTest : public testing::Test {
protected:
    void SetUp() override
    {
        make_form();
        popup = std::make_unique<ColourPopup>(sink, clock);
    }
    void make_form()
    {
        form = CreateWindowExW(0, L"STATIC", L"form", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100, 400, 300, nullptr,
                               nullptr, nullptr, nullptr);
        button = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 20, 20, 80, 24, form, nullptr, nullptr, nullptr);
    }
    void TearDown() override
    {
        popup.reset();
        DestroyWindow(form);
    }

    ColourPopup &open()
    {
        RECT r{};
        GetWindowRect(button, &r);
        EXPECT_TRUE(popup->Show(button, r));
        sink.log.clear();
        return *popup;
    }
    POINT at(int32_t item)
    {
        PxRect r = popup->Layout().item(item);
        return {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
    }
    void move_to(int32_t item) { mouse(popup->hwnd(), WM_MOUSEMOVE, at(item).x, at(item).y); }
    void click_on(int32_t item) { click(popup->hwnd(), at(item).x, at(item).y); }
    std::wstring active(int32_t i)
    {
        const PaletteCell &c = popup->palette().cells[static_cast<size_t>(i)];
        return L"active " + c.name + L" " + hex(c.colour);
    }
    std::wstring chosen(int32_t i) { return L"chosen " + hex(popup->palette().cells[static_cast<size_t>(i)].colour); }
    bool closed() { return !popup->IsOpen() && !IsWindowVisible(popup->hwnd()) && GetCapture() != popup->hwnd(); }

    HWND form = nullptr, button = nullptr;
    ManualTimerClock clock;
    Recorder sink;
    std::unique_ptr<ColourPopup> popup;
};

} // namespace

TEST_F(ColourPopupTest, TheMouseActivatesAndChoosesInTheDocumentedOrder)
{
    open();
    move_to(9);
    move_to(9); // the same cell again: nothing new
    move_to(10);
    click_on(10);
    EXPECT_EQ((Log{active(9), active(10), L"closed Chosen", chosen(10)}), sink.log);
    EXPECT_TRUE(closed());

    // lblCUSTOM: no colour to report while over it; a click leads to "more".
    open();
    move_to(Custom);
    EXPECT_EQ(Custom, popup->Active());
    click_on(Custom);
    EXPECT_EQ((Log{L"closed More", L"more"}), sink.log);

    // A release whose press was not in the pop-up (the click that opened it) chooses nothing;
    // a press on one cell and a release on another chooses the second.
    open();
    POINT p = at(3), q = at(4);
    mouse(popup->hwnd(), WM_LBUTTONUP, p.x, p.y);
    EXPECT_TRUE(popup->IsOpen());
    mouse(popup->hwnd(), WM_LBUTTONDOWN, p.x, p.y, MK_LBUTTON);
    mouse(popup->hwnd(), WM_LBUTTONUP, q.x, q.y);
    EXPECT_EQ((Log{active(3), L"closed Chosen", chosen(4)}), sink.log);
}

TEST_F(ColourPopupTest, KeysMoveTheActiveItemFromTheSelectedColourAndChoose)
{
    const int32_t cols = popup->palette().columns;
    popup->SetSelectedColour(popup->palette().cells[12].colour);
    open();
    EXPECT_TRUE(popup->Key(VK_RIGHT)); // from nothing: the selected colour's cell
    EXPECT_TRUE(popup->Key(VK_DOWN));
    EXPECT_EQ(popup->palette().cells[static_cast<size_t>(12 + cols)].name, popup->ActiveText());
    EXPECT_TRUE(popup->Key(VK_RETURN));
    EXPECT_EQ((Log{active(12), active(12 + cols), L"closed Chosen", chosen(12 + cols)}), sink.log);
    EXPECT_TRUE(closed());
    EXPECT_FALSE(popup->Key(VK_DOWN)); // a closed pop-up takes no keys

    // The keys reach it as messages too; Space chooses like Enter; lblCbtn1 is on the way.
    popup->SetDocColour(0x123456);
    open();
    SendMessageW(popup->hwnd(), WM_KEYDOWN, VK_HOME, 0);
    SendMessageW(popup->hwnd(), WM_KEYDOWN, VK_LEFT, 0);
    EXPECT_EQ(0x123456u, popup->ActiveColour());
    EXPECT_FALSE(popup->Key('A'));
    EXPECT_TRUE(popup->Key(VK_SPACE));
    EXPECT_EQ((Log{active(0), L"active Document Color 123456", L"closed Chosen", L"chosen 123456"}), sink.log);

    // Enter with nothing active does nothing; Escape closes.
    open();
    EXPECT_TRUE(popup->Key(VK_RETURN));
    EXPECT_TRUE(popup->IsOpen());
    EXPECT_TRUE(popup->Key(VK_ESCAPE));
    EXPECT_EQ((Log{L"closed Escape"}), sink.log);
    EXPECT_TRUE(closed());
}

TEST_F(ColourPopupTest, ClosesOnAPressOutsideAndOnLossOfCaptureActivationOrFocus)
{
    HWND other = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 200, 20, 80, 24, form, nullptr, nullptr, nullptr);
    struct Case {
        const wchar_t *why;
        std::function<void()> act;
    };
    const Case cases[] = {
        {L"ClickOutside", [&] { mouse(popup->hwnd(), WM_LBUTTONDOWN, -3, -3, MK_LBUTTON); }},
        {L"ClickOutside", [&] { mouse(popup->hwnd(), WM_RBUTTONDOWN, popup->Layout().width + 5, 2, MK_RBUTTON); }},
        {L"FocusLost", [&] { SetCapture(other); }},
        {L"FocusLost", [&] { SendMessageW(popup->hwnd(), WM_CANCELMODE, 0, 0); }},
        {L"FocusLost", [&] { SendMessageW(popup->hwnd(), WM_ACTIVATEAPP, FALSE, 0); }},
        {L"FocusLost", [&] { popup->FocusLost(); }},
        {L"Hidden", [&] { popup->Hide(); }},
    };
    for (const Case &c : cases) {
        open();
        // Presses inside that hit no item, and the capture being taken again, keep it open.
        PxRect sep = popup->Layout().separator;
        mouse(popup->hwnd(), WM_LBUTTONDOWN, sep.left + 2, sep.top + 2, MK_LBUTTON);
        mouse(popup->hwnd(), WM_LBUTTONUP, sep.left + 2, sep.top + 2);
        SetCapture(popup->hwnd());
        ASSERT_TRUE(popup->IsOpen()) << narrow(c.why);
        c.act();
        EXPECT_EQ((Log{std::wstring(L"closed ") + c.why}), sink.log);
        EXPECT_TRUE(closed()) << narrow(c.why);
        ReleaseCapture();
    }
    popup->Hide(); // closing a closed pop-up reports nothing
    EXPECT_EQ(1u, sink.log.size());
}

TEST_F(ColourPopupTest, ATopLevelWindowOwnedByTheFormBelowTheButton)
{
    HWND before_focus = GetFocus(), before_active = GetActiveWindow();
    open();
    HWND w = popup->hwnd();
    EXPECT_EQ(form, GetWindow(w, GW_OWNER));
    EXPECT_EQ(0, GetWindowLongPtrW(w, GWL_STYLE) & WS_CHILD);
    EXPECT_EQ(GetDesktopWindow(), GetAncestor(w, GA_PARENT));
    EXPECT_EQ(before_focus, GetFocus()); // the button keeps the focus, the form the activation
    EXPECT_EQ(before_active, GetActiveWindow());
    RECT b{}, p{};
    GetWindowRect(button, &b);
    GetWindowRect(w, &p);
    EXPECT_EQ(b.left, p.left);
    EXPECT_EQ(b.bottom, p.top);

    // A new palette while open: the same corner, the new size.
    popup->SetPalette(11);
    RECT q{};
    GetWindowRect(w, &q);
    EXPECT_EQ(p.left, q.left);
    EXPECT_EQ(p.top, q.top);
    EXPECT_GT(q.right - q.left, p.right - p.left);
    EXPECT_THROW(popup->SetPalette(12), std::out_of_range);
    EXPECT_EQ(11, popup->palette().number);

    // The form goes first, taking the open pop-up's window with it; another form gets a new one.
    DestroyWindow(form);
    EXPECT_FALSE(popup->IsOpen());
    EXPECT_EQ(nullptr, popup->hwnd());
    make_form();
    open();
    EXPECT_TRUE(IsWindowVisible(popup->hwnd()));
    EXPECT_EQ(form, GetWindow(popup->hwnd(), GW_OWNER));
}

TEST_F(ColourPopupTest, ACellsTooltipIsItsNameAfterTheHoverTime)
{
    open();
    move_to(4);
    clock.Advance(ColourPopup::kHoverMs - 1);
    EXPECT_EQ(nullptr, shown_tip());
    clock.Advance(1);
    ASSERT_NE(nullptr, shown_tip());
    EXPECT_EQ(popup->palette().cells[4].name, shown_tip()->Text());
    EXPECT_EQ(popup->hwnd(), shown_tip()->owner());
    // A new cell: the old tip goes at once, the new one comes after the hover time.
    move_to(5);
    EXPECT_EQ(nullptr, shown_tip());
    clock.Advance(ColourPopup::kHoverMs);
    ASSERT_NE(nullptr, shown_tip());
    EXPECT_EQ(popup->palette().cells[5].name, shown_tip()->Text());
    // Leaving the pop-up, a key and closing: no tip.
    mouse(popup->hwnd(), WM_MOUSEMOVE, -20, -20);
    EXPECT_EQ(nullptr, shown_tip());
    clock.Advance(5 * ColourPopup::kHoverMs);
    EXPECT_EQ(nullptr, shown_tip());
    move_to(6);
    popup->Key(VK_RIGHT);
    clock.Advance(ColourPopup::kHoverMs);
    EXPECT_EQ(nullptr, shown_tip());
    move_to(7);
    clock.Advance(ColourPopup::kHoverMs);
    EXPECT_NE(nullptr, shown_tip());
    popup->Hide();
    EXPECT_EQ(nullptr, shown_tip());
    EXPECT_FALSE(clock.Armed(popup->tmrHOVER));
}

TEST_F(ColourPopupTest, PicturesOfEveryPaletteShowEachCellInItsColourAtAnyDpi)
{
    // One sheet, four pop-ups a row, each with its active cell, its selected colour and a
    // document colour; test-output/colour-popups-<dpi>dpi.png.
    window_dc screen(nullptr);
    const int dpi = GetDeviceCaps(screen.get(), LOGPIXELSY);
    EXPECT_EQ(MulDiv(18, dpi, 96), popup->Layout().cell);
    constexpr int kPerRow = 4, kGap = 12;
    popup->SetPalette(11); // the widest and the tallest
    const int cell_w = popup->Layout().width + 2 + kGap, cell_h = popup->Layout().height + 2 + kGap;
    host::Bitmap sheet(kPerRow * cell_w + kGap, (kPaletteCount + kPerRow - 1) / kPerRow * cell_h + kGap, 0x808080);
    const Rgb highlight = GetSysColor(COLOR_HIGHLIGHT), fore = GetSysColor(COLOR_BTNTEXT);
    for (int32_t n = 0; n < kPaletteCount; ++n) {
        SCOPED_TRACE(n);
        popup->SetPalette(n);
        const Palette &pal = popup->palette();
        popup->SetSelectedColour(pal.cells[1].colour);
        popup->SetDocColour(0x3366CC);
        open();
        popup->Key(VK_END); // the last cell active
        const PopupLayout &L = popup->Layout();
        const int ox = kGap + n % kPerRow * cell_w, oy = kGap + n / kPerRow * cell_h;
        // The window's own border, then the client as it paints itself.
        RECT border{ox, oy, ox + L.width + 2, oy + L.height + 2};
        FrameRect(sheet.dc(), &border, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
        SetViewportOrgEx(sheet.dc(), ox + 1, oy + 1, nullptr);
        popup->Draw(sheet.dc());
        SetViewportOrgEx(sheet.dc(), 0, 0, nullptr);
        GdiFlush();
        auto px = [&](int x, int y) { return sheet.pixel(ox + 1 + x, oy + 1 + y); };
        for (size_t i = 0; i < pal.cells.size(); ++i) {
            PxRect s = PopupLayout::swatch(L.item(static_cast<int32_t>(i)));
            ASSERT_EQ(pal.cells[i].colour, px((s.left + s.right) / 2, (s.top + s.bottom) / 2)) << i;
            ASSERT_EQ(GetSysColor(COLOR_BTNSHADOW), px(s.left, s.top)) << i;
        }
        PxRect last = L.item(static_cast<int32_t>(pal.cells.size()) - 1), sel = L.item(1);
        EXPECT_EQ(highlight, px(last.left, last.top));
        EXPECT_EQ(fore, px(sel.left + 1, sel.top + 1));
        EXPECT_EQ(0x3366CCu, px((L.doc_swatch.left + L.doc_swatch.right) / 2, (L.doc_swatch.top + L.doc_swatch.bottom) / 2));
        popup->Hide();
    }
    EXPECT_TRUE(sheet.save_png(output_path(L"colour-popups-" + std::to_wstring(dpi) + L"dpi.png")));
}

TEST_F(ColourPopupTest, NoHandlesLeftAfter1000OpeningsAndClosings)
{
    const int32_t cells = static_cast<int32_t>(popup->palette().cells.size());
    auto cycle = [&](int i) {
        open();
        move_to(i % cells);
        if (i % 10 == 0) clock.Advance(ColourPopup::kHoverMs); // a cell's tooltip now and then
        UpdateWindow(popup->hwnd());                            // painted
        switch (i % 3) {
        case 0: popup->Key(VK_ESCAPE); break;
        case 1: click_on(i % cells); break;
        default: mouse(popup->hwnd(), WM_LBUTTONDOWN, -5, -5, MK_LBUTTON); break;
        }
        pump();
    };
    cycle(0); // the first opening makes the window, the tooltip and the fonts it keeps
    ResourceSnapshot before;
    auto t0 = std::chrono::steady_clock::now();
    for (int i = 1; i <= 1000; ++i) cycle(i);
    auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - t0).count();
    EXPECT_TRUE(before.changes().empty()) << testing::PrintToString(before.changes());
    // Pop-ups made and destroyed, open or not, take their windows with them.
    for (int i = 0; i < 20; ++i) {
        auto p = std::make_unique<ColourPopup>(sink, clock);
        RECT r{};
        GetWindowRect(button, &r);
        p->Show(button, r);
        if (i % 2) p->Hide();
    }
    pump();
    EXPECT_TRUE(before.changes().empty()) << testing::PrintToString(before.changes());
    std::printf("1000 pop-up cycles: %lld ms\n", static_cast<long long>(ms));
}

TEST_F(ColourPopupTest, RealInputChoosesWithTheMouseAndAPressOutsideCloses)
{
    SetForegroundWindow(form);
    pump();
    auto send_click = [](POINT screen) {
        SetCursorPos(screen.x, screen.y);
        INPUT in[2]{};
        in[0].type = in[1].type = INPUT_MOUSE;
        in[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
        in[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
        SendInput(2, in, sizeof(INPUT));
    };
    auto wait_for = [&](size_t n) { for (int i = 0; i < 100 && sink.log.size() < n; ++i) pump(20); };
    open();
    POINT p = at(6);
    ClientToScreen(popup->hwnd(), &p);
    send_click(p);
    wait_for(3);
    EXPECT_EQ((Log{active(6), L"closed Chosen", chosen(6)}), sink.log);

    open();
    POINT outside{20, 250}; // on the form, below the pop-up
    ClientToScreen(form, &outside);
    send_click(outside);
    wait_for(1);
    EXPECT_EQ((Log{L"closed ClickOutside"}), sink.log);
}
