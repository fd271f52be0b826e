// The size grips through the real DLL: a real drag (SendInput) on each resizes the form by the
// drag's distance and, with a resize lock on the same form, stops at the lock's minimum; the
// grip follows the form's corner when code resizes it, hides while it is maximised, stays put
// at design time; its pointer, its persistence and its pictures at either DPI.
#include <gtest/gtest.h>

#include "frames/frame_test_helpers.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr const wchar_t *kGrips[] = {L"TarnControls.rsz", L"TarnControls.rszxp"};

class SizeGripTest : public ControlTest {
protected:
    SizeGripTest() { allow_self_sizing(form); }
    Hosted &grip(const wchar_t *progid)
    {
        int side = GetSystemMetrics(SM_CXVSCROLL);
        Hosted &g = place(progid, {10, 10, 10 + side, 10 + side});
        g.activate();
        return g;
    }
    // Where the grip should be: the form's client corner.
    void expect_in_corner(Hosted &g)
    {
        RECT client{}, at = placement(g.hwnd());
        GetClientRect(form.hwnd(), &client);
        EXPECT_EQ(client.right, at.right);
        EXPECT_EQ(client.bottom, at.bottom);
        EXPECT_TRUE(IsWindowVisible(g.hwnd()));
    }
    static SIZE window_size(HWND w)
    {
        RECT r{};
        GetWindowRect(w, &r);
        return {r.right - r.left, r.bottom - r.top};
    }
};

// A left-button drag by the real input path, one event per SendInput, sent by a thread of its
// own as a user's hand would while this thread runs its messages: the press starts the
// system's sizing loop here, which takes the mouse and returns only after the release, so the
// moves and the release cannot come from this thread. They are sent once the loop has the
// mouse (GUI_INMOVESIZE), and arrive in order; the drag ends when the loop has let go.
struct Drag {
    POINT from;
    int dx, dy;
    DWORD ui;
    bool by_the_system = false; // the system's sizing loop had the mouse
};

bool sizing(DWORD thread)
{
    GUITHREADINFO g{};
    g.cbSize = sizeof g;
    return GetGUIThreadInfo(thread, &g) && (g.flags & GUI_INMOVESIZE);
}

// Waits up to two seconds for `done`, the time a loaded machine may take to start the loop.
template <class F> bool wait_for(F &&done, DWORD ms = 2000)
{
    for (DWORD start = GetTickCount(); !done(); Sleep(5))
        if (GetTickCount() - start > ms) return false;
    return true;
}

DWORD WINAPI hand(void *param)
{
    Drag &d = *static_cast<Drag *>(param);
    const int sw = GetSystemMetrics(SM_CXSCREEN), sh = GetSystemMetrics(SM_CYSCREEN);
    auto send = [&](int x, int y, DWORD flags) {
        INPUT in{};
        in.type = INPUT_MOUSE;
        in.mi.dx = MulDiv(x, 65535, sw - 1);
        in.mi.dy = MulDiv(y, 65535, sh - 1);
        in.mi.dwFlags = MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE | flags;
        SendInput(1, &in, sizeof in);
    };
    send(d.from.x, d.from.y, 0);
    send(d.from.x, d.from.y, MOUSEEVENTF_LEFTDOWN);
    d.by_the_system = wait_for([&] { return sizing(d.ui); });
    // The window the loop sizes, as it is now: each move is let in before the next, so a loaded
    // machine cannot have the release end the loop ahead of moves it has not yet taken.
    auto sized = [&] {
        GUITHREADINFO g{};
        g.cbSize = sizeof g;
        RECT r{};
        if (GetGUIThreadInfo(d.ui, &g) && g.hwndMoveSize) GetWindowRect(g.hwndMoveSize, &r);
        return r;
    };
    for (int i = 1; i <= 4; ++i) {
        RECT was = sized();
        send(d.from.x + d.dx * i / 4, d.from.y + d.dy * i / 4, 0);
        wait_for([&] { RECT r = sized(); return !EqualRect(&r, &was); }, 500); // a bounded move changes nothing
    }
    send(d.from.x + d.dx, d.from.y + d.dy, MOUSEEVENTF_LEFTUP);
    return 0;
}

void drag(POINT from, int dx, int dy)
{
    Drag d{from, dx, dy, GetCurrentThreadId()};
    HANDLE t = CreateThread(nullptr, 0, hand, &d, 0, nullptr);
    ASSERT_TRUE(t);
    while (MsgWaitForMultipleObjects(1, &t, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) pump();
    CloseHandle(t);
    pump(); // the release, when no sizing loop took the mouse
    EXPECT_TRUE(d.by_the_system);
    EXPECT_FALSE(sizing(GetCurrentThreadId()));
}

POINT centre_of(HWND w)
{
    RECT r{};
    GetWindowRect(w, &r);
    return {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
}

} // namespace

TEST_F(SizeGripTest, ADragOnTheGripResizesTheFormAndAResizeLockStillBoundsIt)
{
    for (const wchar_t *progid : kGrips) {
        SCOPED_TRACE(narrow(progid));
        SetWindowPos(form.hwnd(), HWND_TOP, 0, 0, 500, 400, SWP_NOACTIVATE);
        SetForegroundWindow(form.hwnd());
        Hosted &g = grip(progid);
        expect_in_corner(g);
        SIZE before = window_size(form.hwnd());
        drag(centre_of(g.hwnd()), 60, 40);
        SIZE after = window_size(form.hwnd());
        EXPECT_EQ(before.cx + 60, after.cx);
        EXPECT_EQ(before.cy + 40, after.cy);
        expect_in_corner(g);
        close(g);
        controls_.pop_back();
    }
    // A resize lock on the same form (its minimum 200 x 200 pixels): the drag stops there.
    form.allow_site_call(L"IOleInPlaceSite::GetWindow"); // the lock finds its form
    Hosted &lock = place(L"TarnControls.resizelck", {0, 0, 32, 32});
    Hosted &g = grip(kGrips[0]);
    drag(centre_of(g.hwnd()), -1000, -1000);
    SIZE bounded = window_size(form.hwnd());
    EXPECT_EQ(200, bounded.cx);
    EXPECT_EQ(200, bounded.cy);
    expect_in_corner(g);
    close(g);
    close(lock);
}

TEST_F(SizeGripTest, TheGripFollowsTheCornerHidesWhileMaximisedAndStaysPutAtDesignTime)
{
    Hosted &g = grip(kGrips[1]);
    expect_in_corner(g);
    for (SIZE s : {SIZE{420, 300}, SIZE{700, 520}, SIZE{150, 120}}) {
        SetWindowPos(form.hwnd(), nullptr, 0, 0, s.cx, s.cy, SWP_NOZORDER | SWP_NOACTIVATE);
        expect_in_corner(g);
    }
    ShowWindow(form.hwnd(), SW_MAXIMIZE);
    EXPECT_FALSE(IsWindowVisible(g.hwnd()));
    EXPECT_TRUE(described(g.hwnd()).state & STATE_SYSTEM_INVISIBLE);
    ShowWindow(form.hwnd(), SW_RESTORE);
    expect_in_corner(g);
    // The pointer over it is the diagonal sizing arrow; a disabled grip keeps the class's.
    SendMessageW(g.hwnd(), WM_SETCURSOR, reinterpret_cast<WPARAM>(g.hwnd()), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    EXPECT_EQ(LoadCursorW(nullptr, IDC_SIZENWSE), GetCursor());
    g.put(L"Enabled", Bool(false));
    SetCursor(nullptr);
    SendMessageW(g.hwnd(), WM_SETCURSOR, reinterpret_cast<WPARAM>(g.hwnd()), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    EXPECT_NE(LoadCursorW(nullptr, IDC_SIZENWSE), GetCursor());
    SIZE before = window_size(form.hwnd());
    click(g.hwnd(), 2, 2); // starts no sizing
    EXPECT_EQ(before.cx, window_size(form.hwnd()).cx);
    EXPECT_TRUE(described(g.hwnd()).state & STATE_SYSTEM_UNAVAILABLE);
    // At design time it lets go of the form and only draws itself.
    form.set_user_mode(false);
    RECT was = placement(g.hwnd());
    SetWindowPos(form.hwnd(), nullptr, 0, 0, 600, 450, SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(was.right, placement(g.hwnd()).right);
    // Nothing else watched the form: its own procedure is back.
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(&DefWindowProcW), GetWindowLongPtrW(form.hwnd(), GWLP_WNDPROC));
}

TEST_F(SizeGripTest, BackColorAndEnabledSurviveBothFormsAndTheLooksDrawAtEitherDpi)
{
    const int k = screen_dpi() == 144 ? 2 : 1, side = 16 * k;
    for (const wchar_t *progid : kGrips) {
        SCOPED_TRACE(narrow(progid));
        Hosted &g = place(progid, {0, 0, side, side});
        EXPECT_TRUE(g.save_bag()->keys().empty());
        g.put(L"BACKCOLOR", ole(0x00E0E0FF));
        g.put(L"Enabled", Bool(false));
        EXPECT_EQ(L"BACKCOLOR ENABLED", joined(g.log().changes));
        for (Init how : {Init::FromBag, Init::FromStream}) {
            ComPtr<IUnknown> source = how == Init::FromBag ? ComPtr<IUnknown>(g.save_bag().get()) : g.save_stream().get();
            Hosted &again = place(progid, {0, 0, side, side}, how, source.get());
            EXPECT_EQ(0x00E0E0FFu, colour(again));
            EXPECT_FALSE(as_integer(again.get(L"Enabled")));
        }
        Bitmap p = g.render(side, side);
        p.save_png(output_path(std::wstring(progid).substr(13) + L"-" + std::to_wstring(screen_dpi()) + L"dpi.png"));
        EXPECT_EQ(0x00E0E0FFu, p.pixel(1, 1)); // the back colour away from the corner
        if (progid == kGrips[0]) {
            // The outermost groove's light line, its dark ones just inside the corner.
            EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), p.pixel(side - 12 * k, side - 1));
            EXPECT_EQ(sys(COLOR_BTNSHADOW), p.pixel(side - 2 * k, side - 1));
        } else {
            // The corner's dot: dark above and left, light showing below and right.
            EXPECT_EQ(sys(COLOR_BTNSHADOW), p.pixel(side - 4 * k, side - 4 * k));
            EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), p.pixel(side - 2 * k, side - 2 * k));
            EXPECT_EQ(6 * 4 * k * k, p.count(sys(COLOR_BTNSHADOW)));
        }
    }
}
