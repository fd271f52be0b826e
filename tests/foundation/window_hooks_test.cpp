// The shared window hook on real windows: what is installed and put back, windows destroyed in
// any order, and one table per thread. (The table's rules run natively in hook_table_test; the
// hook through the DLL, with handles it cannot hook, in Subclass_test.)
#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <thread>

#include "foundation/window_hooks.h"
#include "support/test_windows.h"

using namespace tarn;
using namespace tarn::test;

namespace {

// Another subclasser's procedure, installed over the class's own.
LRESULT CALLBACK outer_proc(HWND h, UINT msg, WPARAM wp, LPARAM lp)
{
    LRESULT r = own_proc(h, msg, wp, lp);
    return msg == kAsk ? r + 1 : r;
}

// An owner the way the Subclass control is one: WM_NCDESTROY makes it let go of its window.
class Owner final : public HookOwner {
public:
    void HookAddRef() override { ++refs; }
    void HookRelease() override { --refs; }
    bool HookWatches(std::uint32_t msg) override { return msg == kWatched; }
    HookResult HookMessage(std::uint32_t, std::uintptr_t, std::intptr_t) override
    {
        if (on_message) on_message();
        return answer;
    }
    void HookWindowGone() override
    {
        ++gone;
        if (hwnd) UnhookWindow(std::exchange(hwnd, nullptr));
    }
    void hook(HWND h)
    {
        hwnd = h;
        HookWindow(h, this);
    }

    int refs = 0;
    int gone = 0;
    HWND hwnd = nullptr;
    HookResult answer = 0;
    std::function<void()> on_message;
};

} // namespace

TEST(WindowHooks, AHookIsTheSharedProcedureAndUnhookingPutsBackExactlyWhatWasThere)
{
    HWND w = make_window();
    // Something else subclassed the window before us: that is the procedure to come back.
    SetWindowLongPtrW(w, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&outer_proc));
    Owner o;
    o.answer = -7;
    o.hook(w);
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(&SubclassWndProc), proc_of(w));
    EXPECT_EQ(1, o.refs);
    EXPECT_EQ(4243 + 3, SendMessageW(w, kAsk, 3, 0)); // not watched: the saved procedure's answer
    EXPECT_EQ(-7, SendMessageW(w, kWatched, 0, 0));
    EXPECT_EQ(4243, CallPreviousWndProc(w, kAsk, 0, 0));
    UnhookWindow(w);
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(&outer_proc), proc_of(w));
    EXPECT_EQ(0, o.refs);
    EXPECT_EQ(0u, ThreadHookTable().count());
    // A window not in the table: 0 from both.
    EXPECT_EQ(0, CallPreviousWndProc(w, kAsk, 0, 0));
    EXPECT_EQ(0, SubclassWndProc(w, kAsk, 0, 0));
    DestroyWindow(w);
}

TEST(WindowHooks, DestroyingWindowsInAnyOrderEndsEveryHook)
{
    // A hooked parent with hooked children: destroying the parent destroys them all.
    Owner owners[4];
    HWND parent = make_window();
    owners[0].hook(parent);
    for (int i = 1; i < 4; ++i) owners[i].hook(make_window(parent));
    EXPECT_EQ(4u, ThreadHookTable().count());
    DestroyWindow(parent);
    EXPECT_EQ(0u, ThreadHookTable().count());
    for (Owner &o : owners) {
        EXPECT_EQ(0, o.refs);
        EXPECT_EQ(1, o.gone);
    }
    // Children first, then the parent; and one owner on several windows.
    Owner shared;
    HWND p = make_window();
    HWND kids[4];
    for (HWND &k : kids) HookWindow(k = make_window(p), &shared);
    HookWindow(p, &shared);
    EXPECT_EQ(5, shared.refs);
    DestroyWindow(kids[2]);
    DestroyWindow(kids[0]);
    EXPECT_EQ(3, shared.refs);
    DestroyWindow(p);
    EXPECT_EQ(0, shared.refs);
    EXPECT_EQ(0u, ThreadHookTable().count());
    // From a handler: another hooked window, then its own while its message is being answered.
    Owner a, b;
    HWND wa = make_window(), wb = make_window();
    a.hook(wa);
    b.hook(wb);
    a.on_message = [&] {
        DestroyWindow(wb);
        DestroyWindow(wa);
    };
    a.answer = 5;
    EXPECT_EQ(5, SendMessageW(wa, kWatched, 0, 0));
    EXPECT_FALSE(IsWindow(wa));
    EXPECT_EQ(0, a.refs);
    EXPECT_EQ(0, b.refs);
    EXPECT_EQ(0u, ThreadHookTable().count());
}

TEST(WindowHooks, EachThreadHasATableOfItsOwn)
{
    Owner here;
    HWND mine = make_window();
    here.hook(mine);
    std::thread([] {
        Owner there;
        there.answer = 31;
        HWND theirs = make_window();
        there.hook(theirs);
        EXPECT_EQ(1u, ThreadHookTable().count());
        EXPECT_EQ(31, SendMessageW(theirs, kWatched, 0, 0));
        DestroyWindow(theirs);
    }).join();
    EXPECT_EQ(1u, ThreadHookTable().count());
    DestroyWindow(mine);
}
