// The library's tooltip through the buttons that use it: shown when the hover's start timer
// fires and there is a text, hidden when the show time ends, never for an empty text, closed
// by a press; its framed window, the close that is cancelled while in use, and one tip for all
// buttons.
#include <gtest/gtest.h>

#include "buttons/button_test.h"

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

// The tip's timers (start 600 ms, show time 4000 ms, the 100 ms watch) are driven from here:
// fire() runs one as if its time had come, and only when the tip has set it, so a loaded
// machine cannot change what the test sees. The test never pumps messages while a timer is
// set, so the real ones do not fire on their own.
constexpr UINT_PTR kStart = 1, kShow = 2, kWatch = 3;
bool fire(UINT_PTR timer)
{
    HWND t = tip_window();
    if (!t || !KillTimer(t, timer)) return false;
    SendMessageW(t, WM_TIMER, timer, 0);
    if (timer == kWatch && IsWindowVisible(t)) SetTimer(t, kWatch, 100, nullptr); // it repeats while the tip is up
    return true;
}

// Puts the real pointer on the button (the tip watches it) and hovers there.
void hover(Hosted &b, int x = 40, int y = 10)
{
    POINT p{x, y};
    ClientToScreen(b.hwnd(), &p);
    SetCursorPos(p.x, p.y);
    mouse(b.hwnd(), WM_MOUSEMOVE, x, y);
}

// Hovers until the start timer fires: whether a tip comes.
bool shown_after_hover(Hosted &b)
{
    hover(b);
    fire(kStart);
    return tip_shown();
}

class TooltipTest : public ButtonTest {};

} // namespace

TEST_F(TooltipTest, ShownWhenTheHoverTimerFiresWithATextHiddenAfterTheShowTimeOrByAPressOrLeaving)
{
    Hosted &b = active();
    EXPECT_FALSE(shown_after_hover(b));
    b.call(L"MousePosnONOUT");
    b.put(L"ToolTip", Str(L"Tip"));
    b.put(L"ToolTip", Str(L""));
    EXPECT_FALSE(shown_after_hover(b));
    b.call(L"MousePosnONOUT");
    b.put(L"ToolTip", Str(L"Saves the file"));
    hover(b);
    hover(b, 45, 11); // moving on starts no second timer
    EXPECT_FALSE(tip_shown());
    ASSERT_TRUE(fire(kStart));
    ASSERT_TRUE(tip_shown());
    EXPECT_FALSE(fire(kStart));
    EXPECT_EQ(L"Saves the file", tip_text());
    // The framed picture: window-frame colour all round, the info colours inside.
    RECT cr{};
    GetClientRect(tip_window(), &cr);
    Bitmap pic(cr.right, cr.bottom, 0xFF00FF);
    SendMessageW(tip_window(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(pic.dc()), PRF_CLIENT);
    GdiFlush();
    for (POINT p : {POINT{0, 0}, POINT{cr.right - 1, cr.bottom - 1}, POINT{cr.right / 2, 0}, POINT{0, cr.bottom / 2}})
        EXPECT_EQ(sys(COLOR_WINDOWFRAME), pic.pixel(p.x, p.y)) << p.x << "," << p.y;
    EXPECT_EQ(sys(COLOR_INFOBK), pic.pixel(1, 1));
    // Up while the pointer stays, until the show time ends; then hidden, and not again during
    // the same hover.
    hover(b, 46, 11);
    EXPECT_TRUE(fire(kWatch));
    EXPECT_TRUE(tip_shown());
    ASSERT_TRUE(fire(kShow));
    EXPECT_FALSE(tip_shown());
    hover(b, 47, 11);
    EXPECT_FALSE(fire(kStart));
    EXPECT_FALSE(tip_shown());
    // Closed by a press.
    b.call(L"MousePosnONOUT");
    ASSERT_TRUE(shown_after_hover(b));
    mouse(b.hwnd(), WM_LBUTTONDOWN, 40, 10, MK_LBUTTON);
    EXPECT_FALSE(tip_shown());
    mouse(b.hwnd(), WM_LBUTTONUP, 40, 10);
    // A press while the tip is still waiting stops it as well.
    b.call(L"MousePosnONOUT");
    hover(b);
    mouse(b.hwnd(), WM_RBUTTONDOWN, 40, 10, MK_RBUTTON);
    mouse(b.hwnd(), WM_RBUTTONUP, 40, 10);
    EXPECT_FALSE(fire(kStart));
    EXPECT_FALSE(tip_shown());
    // Leaving: a move outside closes it at once.
    b.call(L"MousePosnONOUT");
    ASSERT_TRUE(shown_after_hover(b));
    SetCursorPos(0, 0);
    mouse(b.hwnd(), WM_MOUSEMOVE, 300, 300);
    EXPECT_FALSE(tip_shown());
    // The pointer leaving without a move reaching the button: the watch hides the tip.
    ASSERT_TRUE(shown_after_hover(b));
    SetCursorPos(0, 0);
    EXPECT_TRUE(fire(kWatch));
    EXPECT_FALSE(tip_shown());
    // One tip for all buttons, which a close request while in use cannot destroy.
    b.call(L"MousePosnONOUT");
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
    // When the last button goes, so does the tip.
    close(b);
    EXPECT_TRUE(IsWindow(t));
    close(c);
    EXPECT_FALSE(IsWindow(t));
}
