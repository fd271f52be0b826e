// The window hook service through the real DLL: watched messages as WndProc events with the
// handler's result, CallWndProc, the hook ending with its window, the table's reference keeping
// an owner alive, and handles it cannot hook. (Owners replacing each other and handlers that
// destroy windows run on the hook table itself, in the foundation tests.)
#include <gtest/gtest.h>

#include "service_test.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.Subclass";

class SubclassTest : public ServiceTest {
protected:
    Hosted &hook(HWND w, UINT watched = kWatched)
    {
        Hosted &s = place(kProgId, {0, 0, 0, 0});
        s.put(L"hwnd", handle(w));
        s.put(L"Messages", Bool(true), {I4(static_cast<int32_t>(watched))});
        return s;
    }
    bool watches(Hosted &s, int32_t msg) { return as_integer(s.get(L"Messages", {I4(msg)})) != 0; }
};

} // namespace

TEST_F(SubclassTest, AWatchedMessageRaisesWndProcAndTheHandlersResultIsTheAnswer)
{
    HWND w = window();
    Hosted &s = hook(w);
    // Pointer-sized arguments and results survive the event whole.
    const LONG_PTR big = static_cast<LONG_PTR>(sizeof(void *) == 8 ? 0x1122334455667788ll : 0x11223344);
    s.log().on_event = [big](const std::wstring &, DISPPARAMS *p) { set_long_ptr(p->rgvarg[0], -big); };
    EXPECT_EQ(-big, SendMessageW(w, kWatched, static_cast<WPARAM>(big), -big));
    const std::wstring args = std::to_wstring(kWatched) + L"," + std::to_wstring(big) + L"," + std::to_wstring(-big);
    EXPECT_EQ(std::vector<std::wstring>{L"WndProc(" + args + L"," + std::to_wstring(-big) + L")"}, s.log().event_texts());
    EXPECT_EQ(sizeof(void *) == 8 ? VT_I8 : VT_I4, s.log().events.at(0).args.at(1).vt());
    // Not watched: the window's own procedure answers and nothing is raised.
    s.log().clear_events();
    EXPECT_EQ(4242 + 1, SendMessageW(w, kAsk, 1, 0));
    EXPECT_TRUE(s.log().events.empty());
    // No handler leaves a result: 0.
    s.log().on_event = nullptr;
    EXPECT_EQ(0, SendMessageW(w, kWatched, 0, 0));
}

TEST_F(SubclassTest, MessagesKeepsAListWithoutDuplicatesAndARemovedMessagePassesThrough)
{
    HWND w = window();
    Hosted &s = hook(w);
    for (int32_t m : {36, 5, 36, -1, 0x7FFFFFFF}) s.put(L"Messages", Bool(true), {I4(m)});
    s.put(L"Messages", Bool(false), {I4(36)}); // listed once, so one removal is enough
    s.put(L"Messages", Bool(false), {I4(12345)}); // removing an absent one does nothing
    s.put(L"Messages", Bool(false), {I4(static_cast<int32_t>(kWatched))});
    EXPECT_FALSE(watches(s, 36));
    for (int32_t m : {5, -1, 0x7FFFFFFF}) EXPECT_TRUE(watches(s, m)) << m;
    EXPECT_EQ(0, SendMessageW(w, kWatched, 0, 0)); // DefWindowProc's answer
    EXPECT_TRUE(s.log().events.empty());
}

TEST_F(SubclassTest, CallWndProcReachesThePreviousProcedureOfTheWindowHookedNow)
{
    HWND w = window(), v = window();
    LONG_PTR own = proc_of(w);
    Hosted &s = hook(w, kAsk);
    // The handler passes the message on itself and adds one to the answer.
    s.log().on_event = [&](const std::wstring &, DISPPARAMS *p) {
        LONG_PTR passed = static_cast<LONG_PTR>(as_integer(s.call(L"CallWndProc", {I4(kAsk), I4(10), I4(0)})));
        set_long_ptr(p->rgvarg[0], passed + 1);
    };
    EXPECT_EQ(4242 + 10 + 1, SendMessageW(w, kAsk, 0, 0));
    EXPECT_EQ(4242 + 7, as_integer(s.call(L"CallWndProc", {I4(kAsk), I4(7), I4(0)})));
    s.put(L"hwnd", handle(v)); // straight from one window to another: the first is let go
    EXPECT_EQ(own, proc_of(w));
    EXPECT_NE(own, proc_of(v));
    s.put(L"hwnd", handle(nullptr));
    EXPECT_EQ(own, proc_of(v));
    EXPECT_EQ(0, as_integer(s.call(L"CallWndProc", {I4(kAsk), I4(7), I4(0)}))); // nothing hooked
}

TEST_F(SubclassTest, TheTableKeepsAnOwnerAliveUntilItsWindowIsDestroyed)
{
    HWND w = make_window();
    Hosted s(form, kProgId, {0, 0, 0, 0});
    s.put(L"hwnd", handle(w));
    ComPtr<IDispatch> mine(s.dispatch());
    EXPECT_GT(s.close(), 1u); // the container's release is not the last: the table holds one too
    DestroyWindow(w);         // WM_NCDESTROY: the hook ends without anyone writing hwnd = 0
    Variant hwnd;
    EXPECT_EQ(S_OK, get_property(mine.get(), L"hwnd", hwnd));
    EXPECT_EQ(0, as_integer(hwnd));
    EXPECT_EQ(0u, mine.detach()->Release()); // and the table let go of it
}

TEST_F(SubclassTest, WindowsItCannotHookAndValuesOfTheWrongTypeAreHarmless)
{
    Hosted &s = place(kProgId, {0, 0, 0, 0});
    HWND dead = make_window();
    DestroyWindow(dead);
    ForeignWindow foreign;
    LONG_PTR foreign_proc = proc_of(foreign.hwnd());
    for (HWND h : {dead, foreign.hwnd(), reinterpret_cast<HWND>(static_cast<LONG_PTR>(-1)),
                   reinterpret_cast<HWND>(static_cast<LONG_PTR>(0x12345678))}) {
        EXPECT_EQ(S_OK, s.put(L"hwnd", handle(h)));
        EXPECT_EQ(reinterpret_cast<LONG_PTR>(h), as_integer(s.get(L"hwnd"))); // stored as given
    }
    EXPECT_EQ(foreign_proc, proc_of(foreign.hwnd()));
    EXPECT_EQ(0, as_integer(s.call(L"CallWndProc", {I4(kAsk), I4(0), I4(0)})));
    // Arguments that cannot be converted are skipped, as every property of the library does.
    EXPECT_EQ(S_OK, s.put(L"hwnd", Str(L"not a window")));
    EXPECT_EQ(S_OK, s.put(L"Messages", Str(L"maybe"), {I4(36)}));
    EXPECT_EQ(S_OK, s.put(L"Messages", Bool(true), {Str(L"thirty-six")}));
    s.call(L"CallWndProc", {Str(L"x"), R8(1e300), Variant()});
    EXPECT_EQ(S_OK, s.put(L"hwnd", handle(nullptr)));
}
