// The library's tooltip through the buttons that use it: shown after 600 ms of hover with a
// text, hidden after the show time, never for an empty text, closed by a press; its framed
// window, the close that is cancelled while in use, and one tip for all buttons.
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

class TooltipTest : public ButtonTest {};

} // namespace

TEST_F(TooltipTest, ShownAfter600MsOfHoverWithATextHiddenAfterTheShowTimeOrByAPressOrLeaving)
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
    pump(350);
    hover(b, 45, 11); // moving on does not put the tip off
    EXPECT_FALSE(tip_shown());
    pump(450);
    ASSERT_TRUE(tip_shown());
    DWORD shown_at = GetTickCount();
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
    // Up for ShowTime (4000 ms), then hidden, and not again during the same hover.
    pump(3300 - (GetTickCount() - shown_at)); // the checks above take a while
    hover(b, 46, 11);
    EXPECT_TRUE(tip_shown());
    pump(1500);
    EXPECT_FALSE(tip_shown());
    hover(b, 47, 11);
    pump(800);
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
