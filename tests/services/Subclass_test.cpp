// The window hook service through the real DLL: watched messages as WndProc events with the
// handler's result, CallWndProc, a second owner replacing the first, the hook ending with its
// window, the table's reference keeping an owner alive, and handles it cannot hook.
#include <gtest/gtest.h>

#include "support/control_test.h"
#include "support/test_windows.h"
#include "tarnctls_h.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.Subclass";

class SubclassTest : public ControlTest {
protected:
    void TearDown() override
    {
        for (HWND w : windows_) DestroyWindow(w);
        ControlTest::TearDown();
    }
    HWND window()
    {
        windows_.push_back(make_window());
        return windows_.back();
    }
    Hosted &hook(HWND w, UINT watched = kWatched)
    {
        Hosted &s = place(kProgId, {0, 0, 0, 0});
        s.put(L"hwnd", handle(w));
        s.put(L"Messages", Bool(true), {I4(static_cast<int32_t>(watched))});
        return s;
    }
    // Every WndProc event from now on answers `result`.
    static void answer(Hosted &s, LONG_PTR result)
    {
        s.log().on_event = [result](const std::wstring &name, DISPPARAMS *p) {
            if (name == L"WndProc" && p && p->cArgs == 4) set_long_ptr(p->rgvarg[0], result);
        };
    }
    std::vector<HWND> windows_;
};

} // namespace

TEST_F(SubclassTest, AWatchedMessageRaisesWndProcAndTheHandlersResultIsTheAnswer)
{
    HWND w = window();
    Hosted &s = hook(w);
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(w), as_integer(s.get(L"hwnd")));
    answer(s, 99);
    EXPECT_EQ(99, SendMessageW(w, kWatched, 5, 6));
    const std::wstring args = L"(" + std::to_wstring(kWatched) + L",5,6,99)";
    EXPECT_EQ(std::vector<std::wstring>{L"WndProc" + args}, s.log().event_texts());
    // Not watched: the window's own procedure answers and nothing is raised.
    s.log().clear_events();
    EXPECT_EQ(4242 + 1, SendMessageW(w, kAsk, 1, 0));
    EXPECT_TRUE(s.log().events.empty());
    // No handler leaves a result: 0.
    s.log().on_event = nullptr;
    EXPECT_EQ(0, SendMessageW(w, kWatched, 0, 0));
    s.put(L"hwnd", handle(nullptr));
}

TEST_F(SubclassTest, MessagesKeepsAListWithoutDuplicates)
{
    Hosted &s = place(kProgId, {0, 0, 0, 0});
    EXPECT_FALSE(as_integer(s.get(L"Messages", {I4(36)})));
    for (int32_t m : {36, 5, 36, -1, 0x7FFFFFFF}) s.put(L"Messages", Bool(true), {I4(m)});
    for (int32_t m : {36, 5, -1, 0x7FFFFFFF}) EXPECT_TRUE(as_integer(s.get(L"Messages", {I4(m)}))) << m;
    s.put(L"Messages", Bool(false), {I4(36)});
    s.put(L"Messages", Bool(false), {I4(36)}); // removing an absent one does nothing
    s.put(L"Messages", Bool(false), {I4(12345)});
    EXPECT_FALSE(as_integer(s.get(L"Messages", {I4(36)})));
    EXPECT_TRUE(as_integer(s.get(L"Messages", {I4(5)})));
    // A removed message passes through to the window again.
    HWND w = window();
    Hosted &t = hook(w);
    t.put(L"Messages", Bool(false), {I4(static_cast<int32_t>(kWatched))});
    EXPECT_EQ(0, SendMessageW(w, kWatched, 0, 0)); // DefWindowProc's answer
    EXPECT_TRUE(t.log().events.empty());
    t.put(L"hwnd", handle(nullptr));
}

TEST_F(SubclassTest, CallWndProcHandsAMessageToThePreviousProcedure)
{
    HWND w = window();
    Hosted &s = hook(w, kAsk);
    // The handler passes the message on itself and adds one to the answer.
    s.log().on_event = [&](const std::wstring &, DISPPARAMS *p) {
        LONG_PTR own = static_cast<LONG_PTR>(as_integer(s.call(L"CallWndProc", {I4(kAsk), I4(10), I4(0)})));
        set_long_ptr(p->rgvarg[0], own + 1);
    };
    EXPECT_EQ(4242 + 10 + 1, SendMessageW(w, kAsk, 0, 0));
    EXPECT_EQ(4242 + 7, as_integer(s.call(L"CallWndProc", {I4(kAsk), I4(7), I4(0)})));
    s.put(L"hwnd", handle(nullptr));
    EXPECT_EQ(0, as_integer(s.call(L"CallWndProc", {I4(kAsk), I4(7), I4(0)}))); // nothing hooked
}

TEST_F(SubclassTest, PointerSizedArgumentsAndResultsSurviveTheEvent)
{
    HWND w = window();
    Hosted &s = hook(w);
    const LONG_PTR big = static_cast<LONG_PTR>(sizeof(void *) == 8 ? 0x1122334455667788ll : 0x11223344);
    answer(s, -big);
    EXPECT_EQ(-big, SendMessageW(w, kWatched, static_cast<WPARAM>(big), -big));
    ASSERT_EQ(1u, s.log().events.size());
    const EventRecord &e = s.log().events[0];
    ASSERT_EQ(4u, e.args.size());
    EXPECT_EQ(kWatched, as_integer(e.args[0]));
    EXPECT_EQ(big, as_integer(e.args[1]));
    EXPECT_EQ(-big, as_integer(e.args[2]));
    EXPECT_EQ(sizeof(void *) == 8 ? VT_I8 : VT_I4, e.args[1].vt());
    s.put(L"hwnd", handle(nullptr));
}

TEST_F(SubclassTest, UnhookingRestoresExactlyTheProcedureThatWasThere)
{
    HWND w = window();
    LONG_PTR own = proc_of(w);
    Hosted &s = hook(w);
    EXPECT_NE(own, proc_of(w));
    s.put(L"hwnd", handle(nullptr));
    EXPECT_EQ(own, proc_of(w));
    EXPECT_EQ(0, as_integer(s.get(L"hwnd")));
    // Moving straight from one window to another unhooks the first.
    HWND v = window();
    s.put(L"hwnd", handle(w));
    s.put(L"hwnd", handle(v));
    EXPECT_EQ(own, proc_of(w));
    EXPECT_NE(own, proc_of(v));
    s.put(L"hwnd", handle(v)); // the current value: nothing changes
    EXPECT_EQ(4242, SendMessageW(v, kAsk, 0, 0));
    s.put(L"hwnd", handle(nullptr));
    EXPECT_EQ(own, proc_of(v));
}

TEST_F(SubclassTest, HookingAgainThroughAnotherOwnerReplacesTheFirst)
{
    HWND w = window();
    LONG_PTR own = proc_of(w);
    Hosted &first = hook(w), &second = hook(w);
    answer(first, 1);
    answer(second, 2);
    EXPECT_EQ(2, SendMessageW(w, kWatched, 0, 0));
    EXPECT_TRUE(first.log().events.empty());
    EXPECT_EQ(1u, second.log().events.size());
    // The procedure the second saved is the window's own, not the shared one: unhooking it
    // leaves the window as it was.
    second.put(L"hwnd", handle(nullptr));
    EXPECT_EQ(own, proc_of(w));
    EXPECT_EQ(4242, SendMessageW(w, kAsk, 0, 0));
    // The first still names the window but is no longer in the table.
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(w), as_integer(first.get(L"hwnd")));
    first.put(L"hwnd", handle(nullptr));
    EXPECT_EQ(own, proc_of(w));
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

TEST_F(SubclassTest, AHandlerMayDestroyTheWindowItIsAnsweringFor)
{
    HWND w = make_window();
    Hosted &s = hook(w);
    s.log().on_event = [&](const std::wstring &, DISPPARAMS *p) {
        DestroyWindow(w);
        set_long_ptr(p->rgvarg[0], 8);
    };
    EXPECT_EQ(8, SendMessageW(w, kWatched, 0, 0));
    EXPECT_FALSE(IsWindow(w));
    EXPECT_EQ(0, as_integer(s.get(L"hwnd")));
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
    EXPECT_EQ(4242, SendMessageW(foreign.hwnd(), kAsk, 0, 0));
    EXPECT_EQ(0, as_integer(s.call(L"CallWndProc", {I4(kAsk), I4(0), I4(0)})));
    // Arguments that cannot be converted are skipped, as every property of the library does.
    EXPECT_EQ(S_OK, s.put(L"hwnd", Str(L"not a window")));
    EXPECT_EQ(S_OK, s.put(L"Messages", Str(L"maybe"), {I4(36)}));
    EXPECT_EQ(S_OK, s.put(L"Messages", Bool(true), {Str(L"thirty-six")}));
    s.call(L"CallWndProc", {Str(L"x"), R8(1e300), Variant()});
    EXPECT_EQ(S_OK, s.put(L"hwnd", handle(nullptr)));
    // A window the control never hooked gets nothing from its termination (the fixture checks
    // that the container's reference is the last one).
}

TEST(SubclassRegistration, IsPrivateToTheLibrary)
{
    wchar_t clsid[64];
    StringFromGUID2(CLSID_Subclass, clsid, 64);
    std::wstring key = std::wstring(L"CLSID\\") + clsid;
    HKEY k = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, &k));
    RegCloseKey(k);
    EXPECT_NE(ERROR_SUCCESS, RegOpenKeyExW(HKEY_CLASSES_ROOT, (key + L"\\Control").c_str(), 0, KEY_READ, &k));
    StringFromGUID2(CLSID_resizelck, clsid, 64);
    ASSERT_EQ(ERROR_SUCCESS,
              RegOpenKeyExW(HKEY_CLASSES_ROOT, (std::wstring(L"CLSID\\") + clsid + L"\\Control").c_str(), 0, KEY_READ, &k));
    RegCloseKey(k);
}
