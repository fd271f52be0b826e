// The library's tooltip through the buttons that use it: shown after 600 ms of hover with a
// text, hidden after the show time, never for an empty text, closed by a press; its framed
// window, the close that is cancelled while in use, and one tip per thread.
#include <gtest/gtest.h>

#include "buttons/button_test.h"

#include <atomic>
#include <thread>

using namespace tarn;
using namespace tarn::test;

namespace {

HWND tip_window() { return FindWindowW(L"TarnControlsTooltip", nullptr); }
bool tip_shown() { return IsWindowVisible(tip_window()); }
std::wstring tip_text()
{
    wchar_t buf[256] = {};
    GetWindowTextW(tip_window(), buf, 256);
    return buf;
}

// Puts the real pointer on the button (the tip watches it) and hovers there.
void hover(Hosted &b, int x = 40, int y = 10)
{
    POINT p{x, y};
    ClientToScreen(b.hwnd(), &p);
    SetCursorPos(p.x, p.y);
    mouse(b.hwnd(), WM_MOUSEMOVE, x, y);
}

// Hovers long enough for a tip (600 ms) to come.
bool shown_after_hover(Hosted &b)
{
    hover(b);
    pump(800);
    return tip_shown();
}

BOOL CALLBACK find_tip(HWND w, LPARAM p)
{
    wchar_t cls[64] = {};
    GetClassNameW(w, cls, 64);
    if (std::wstring(cls) == L"TarnControlsTooltip") *reinterpret_cast<HWND *>(p) = w;
    return TRUE;
}

class TooltipTest : public ButtonTest {};

} // namespace

TEST_F(TooltipTest, ShowsAfter600MsOfHoverAndHidesAfterTheShowTime)
{
    Hosted &b = active();
    b.put(L"ToolTip", Str(L"Saves the file"));
    hover(b);
    pump(350);
    hover(b, 45, 11); // moving on does not put the tip off
    EXPECT_FALSE(tip_shown());
    pump(450);
    ASSERT_TRUE(tip_shown());
    DWORD shown_at = GetTickCount();
    EXPECT_EQ(L"Saves the file", tip_text());
    // Near the pointer, below it.
    RECT tr{};
    GetWindowRect(tip_window(), &tr);
    POINT cur{};
    GetCursorPos(&cur);
    EXPECT_GE(tr.top, cur.y);
    EXPECT_LE(tr.left, cur.x + 1);
    // The framed picture: window-frame colour all round, the info colours inside.
    RECT cr{};
    GetClientRect(tip_window(), &cr);
    EXPECT_GT(cr.right, 6); // the text plus twice the margin of 3
    Bitmap pic(cr.right, cr.bottom, 0xFF00FF);
    SendMessageW(tip_window(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(pic.dc()), PRF_CLIENT);
    GdiFlush();
    pic.save_png(output_path(L"tooltip.png"));
    for (POINT p : {POINT{0, 0}, POINT{cr.right - 1, cr.bottom - 1}, POINT{cr.right / 2, 0}, POINT{0, cr.bottom / 2}})
        EXPECT_EQ(sys(COLOR_WINDOWFRAME), pic.pixel(p.x, p.y)) << p.x << "," << p.y;
    EXPECT_EQ(sys(COLOR_INFOBK), pic.pixel(1, 1));
    // Up for ShowTime (4000 ms), then hidden, and not again during the same hover.
    pump(3300 - (GetTickCount() - shown_at)); // saving the picture above takes a while
    hover(b, 46, 11);
    EXPECT_TRUE(tip_shown());
    pump(1500);
    EXPECT_FALSE(tip_shown());
    hover(b, 47, 11);
    pump(800);
    EXPECT_FALSE(tip_shown());
}

TEST_F(TooltipTest, NeverForAnEmptyTextAndClosedByAPressOrByLeaving)
{
    Hosted &b = active();
    EXPECT_FALSE(shown_after_hover(b));
    b.call(L"MousePosnONOUT");
    b.put(L"ToolTip", Str(L"Tip"));
    b.put(L"ToolTip", Str(L""));
    EXPECT_FALSE(shown_after_hover(b));
    b.call(L"MousePosnONOUT");
    b.put(L"ToolTip", Str(L"Tip"));
    ASSERT_TRUE(shown_after_hover(b));
    mouse(b.hwnd(), WM_LBUTTONDOWN, 40, 10, MK_LBUTTON);
    EXPECT_FALSE(tip_shown());
    mouse(b.hwnd(), WM_LBUTTONUP, 40, 10);
    // A press while the tip is still waiting stops it as well.
    b.call(L"MousePosnONOUT");
    hover(b);
    pump(300);
    mouse(b.hwnd(), WM_RBUTTONDOWN, 40, 10, MK_RBUTTON);
    mouse(b.hwnd(), WM_RBUTTONUP, 40, 10);
    pump(600);
    EXPECT_FALSE(tip_shown());
    // Leaving: a move outside closes it at once.
    b.call(L"MousePosnONOUT");
    ASSERT_TRUE(shown_after_hover(b));
    SetCursorPos(0, 0);
    mouse(b.hwnd(), WM_MOUSEMOVE, 300, 300);
    EXPECT_FALSE(tip_shown());
    // The pointer leaving without a move reaching the button: the 100 ms watch hides the tip.
    ASSERT_TRUE(shown_after_hover(b));
    SetCursorPos(0, 0);
    pump(300);
    EXPECT_FALSE(tip_shown());
}

TEST_F(TooltipTest, OneTipPerThreadThatACloseRequestWhileInUseCannotDestroy)
{
    Hosted &b = active();
    b.put(L"ToolTip", Str(L"Tip"));
    ASSERT_TRUE(shown_after_hover(b));
    HWND t = tip_window();
    SendMessageW(t, WM_CLOSE, 0, 0); // a host closing every window
    EXPECT_TRUE(IsWindow(t));
    EXPECT_FALSE(IsWindowVisible(t));
    // One window for the whole library on this thread, whichever button uses it.
    Hosted &c = active({10, 50, 110, 75});
    c.put(L"ToolTip", Str(L"Other"));
    b.call(L"MousePosnONOUT");
    ASSERT_TRUE(shown_after_hover(c));
    EXPECT_EQ(t, tip_window());
    EXPECT_EQ(L"Other", tip_text());
    // Another thread, while this one's tip lives, gets a tip of its own.
    HWND theirs = nullptr;
    std::atomic<bool> done = false;
    std::thread other([&] {
        OleInitialize(nullptr);
        {
            Container form2;
            Hosted d(form2, kButton, {10, 10, 110, 35});
            d.activate();
            d.put(L"ToolTip", Str(L"thread"));
            d.call(L"MousePosn", {I2(0), I2(0), R4(5), R4(5)});
            EnumThreadWindows(GetCurrentThreadId(), find_tip, reinterpret_cast<LPARAM>(&theirs));
            EXPECT_EQ(0u, d.close());
        }
        OleUninitialize();
        done = true;
    });
    while (!done) pump(10); // its windows may send to ours
    other.join();
    EXPECT_NE(nullptr, theirs);
    EXPECT_NE(t, theirs);
    EXPECT_TRUE(IsWindow(t));
    // When the last button goes, so does the tip.
    close(b);
    EXPECT_TRUE(IsWindow(t));
    close(c);
    EXPECT_FALSE(IsWindow(t));
}
