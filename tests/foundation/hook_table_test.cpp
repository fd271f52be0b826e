// The hook table on fake windows: what a hook saves and puts back, who answers a message, how
// WM_NCDESTROY ends a hook, and the owners' references through handlers that change the table
// while it dispatches (run under AddressSanitizer natively: a released owner touched later fails).
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <vector>

#include "foundation/hook_table.h"

using namespace tarn;

namespace {

constexpr ProcAddress kShared = 0x5A5A;

struct ProcCall {
    ProcAddress proc;
    WindowId window;
    std::uint32_t msg;
    std::uintptr_t wp;
    std::intptr_t lp;
    bool operator==(const ProcCall &) const = default;
};

// Windows as the table sees them: a procedure slot each; the saved procedures answer with
// their own address plus the message, so a test can tell who answered.
class FakeProcs final : public WindowProcs {
public:
    std::map<WindowId, ProcAddress> slots;
    std::set<WindowId> foreign; // windows of another thread
    std::set<WindowId> refuse_set;
    std::vector<ProcCall> calls;
    std::function<void()> during_call;

    bool Hookable(WindowId w) override { return slots.count(w) && !foreign.count(w); }
    ProcAddress Get(WindowId w) override { return slots.count(w) ? slots[w] : 0; }
    bool Set(WindowId w, ProcAddress p) override
    {
        if (!slots.count(w) || refuse_set.count(w)) return false;
        slots[w] = p;
        return true;
    }
    HookResult Call(ProcAddress p, WindowId w, std::uint32_t msg, std::uintptr_t wp, std::intptr_t lp) override
    {
        calls.push_back({p, w, msg, wp, lp});
        if (during_call) during_call();
        return static_cast<HookResult>(p + msg);
    }
};

// An owner on the heap that deletes itself on its last release, as a COM object does.
class FakeOwner final : public HookOwner {
public:
    static FakeOwner *make(int *alive_counter = nullptr)
    {
        auto *o = new FakeOwner();
        o->alive = alive_counter;
        if (alive_counter) ++*alive_counter;
        return o;
    }
    void HookAddRef() override { ++refs; }
    void HookRelease() override
    {
        if (--refs == 0) {
            if (alive) --*alive;
            delete this;
        }
    }
    bool HookWatches(std::uint32_t msg) override { return watched.count(msg) != 0; }
    HookResult HookMessage(std::uint32_t msg, std::uintptr_t wp, std::intptr_t lp) override
    {
        seen.push_back(msg);
        if (on_message) on_message();
        return answer;
    }
    void HookWindowGone() override
    {
        ++gone;
        if (on_gone) on_gone();
    }

    int refs = 1; // the test's own reference
    int *alive = nullptr;
    std::set<std::uint32_t> watched;
    HookResult answer = 0;
    std::vector<std::uint32_t> seen;
    int gone = 0;
    std::function<void()> on_message, on_gone;
};

class HookTableTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (WindowId w : {1, 2, 3, 4}) procs.slots[w] = 0x1000 * w; // each window's own procedure
    }
    FakeProcs procs;
    HookTable table;
};

} // namespace

TEST_F(HookTableTest, AHookSavesTheWindowsOwnProcedureAndUnhookingPutsItBack)
{
    FakeOwner *a = FakeOwner::make();
    EXPECT_TRUE(table.Hook(procs, 2, a, kShared));
    EXPECT_EQ(kShared, procs.slots[2]);
    ASSERT_EQ(1u, table.count());
    EXPECT_EQ(2u, table.entry(1).window);
    EXPECT_EQ(0x2000u, table.entry(1).previous);
    EXPECT_EQ(2, a->refs); // the table counts its reference
    table.Unhook(procs, 2);
    EXPECT_EQ(0x2000u, procs.slots[2]);
    EXPECT_EQ(0u, table.count());
    EXPECT_EQ(1, a->refs);
    table.Unhook(procs, 2); // not in the table: nothing
    table.Unhook(procs, 99);
    EXPECT_EQ(0x2000u, procs.slots[2]);
    a->HookRelease();
}

TEST_F(HookTableTest, HookingAgainThroughAnotherOwnerReplacesTheFirst)
{
    int alive = 0;
    FakeOwner *a = FakeOwner::make(&alive), *b = FakeOwner::make(&alive);
    table.Hook(procs, 1, a, kShared);
    table.Hook(procs, 1, b, kShared);
    ASSERT_EQ(1u, table.count());
    EXPECT_EQ(b, table.entry(1).owner.get());
    EXPECT_EQ(0x1000u, table.entry(1).previous); // the window's own, not the shared procedure
    EXPECT_EQ(1, a->refs);
    a->HookRelease();
    EXPECT_EQ(1, alive);
    // The owner that replaced it answers; unhooking restores the window's own procedure.
    b->watched = {7};
    b->answer = 77;
    EXPECT_EQ(77, table.Dispatch(procs, 1, 7, 0, 0));
    table.Unhook(procs, 1);
    EXPECT_EQ(0x1000u, procs.slots[1]);
    b->HookRelease();
    EXPECT_EQ(0, alive);
}

TEST_F(HookTableTest, LaterEntriesMoveDownAndAreStillFoundAfterAnUnhook)
{
    FakeOwner *o = FakeOwner::make();
    for (WindowId w : {1, 2, 3, 4}) table.Hook(procs, w, o, kShared);
    table.Unhook(procs, 2);
    ASSERT_EQ(3u, table.count());
    EXPECT_EQ(1u, table.entry(1).window);
    EXPECT_EQ(3u, table.entry(2).window);
    EXPECT_EQ(4u, table.entry(3).window);
    for (WindowId w : {1, 3, 4}) {
        ASSERT_NE(nullptr, table.find(w));
        EXPECT_EQ(w, table.find(w)->window);
        EXPECT_EQ(0x1000u * w, table.find(w)->previous);
    }
    EXPECT_EQ(nullptr, table.find(2));
    // The unhooked window went back to the end when hooked again.
    table.Hook(procs, 2, o, kShared);
    EXPECT_EQ(2u, table.entry(4).window);
    for (WindowId w : {1, 2, 3, 4}) table.Unhook(procs, w);
    EXPECT_EQ(1, o->refs);
    o->HookRelease();
}

TEST_F(HookTableTest, WatchedMessagesGoToTheOwnerAndTheRestToTheSavedProcedure)
{
    FakeOwner *o = FakeOwner::make();
    o->watched = {36};
    o->answer = -5;
    table.Hook(procs, 3, o, kShared);
    EXPECT_EQ(-5, table.Dispatch(procs, 3, 36, 11, 22));
    EXPECT_TRUE(procs.calls.empty()); // a watched message does not reach the window's procedure
    const std::uintptr_t wide_wp = static_cast<std::uintptr_t>(-1);
    const std::intptr_t wide_lp = static_cast<std::intptr_t>(~static_cast<std::uintptr_t>(0) >> 1);
    EXPECT_EQ(static_cast<HookResult>(0x3000 + 15), table.Dispatch(procs, 3, 15, wide_wp, wide_lp));
    EXPECT_EQ((std::vector<ProcCall>{{0x3000, 3, 15, wide_wp, wide_lp}}), procs.calls);
    EXPECT_EQ(static_cast<HookResult>(0x3000 + 15), table.CallPrevious(procs, 3, 15, 0, 0));
    // A window that is not in the table: 0, and nobody is asked.
    procs.calls.clear();
    EXPECT_EQ(0, table.Dispatch(procs, 4, 15, 0, 0));
    EXPECT_EQ(0, table.CallPrevious(procs, 4, 15, 0, 0));
    EXPECT_TRUE(procs.calls.empty());
    EXPECT_EQ(std::vector<std::uint32_t>{36}, o->seen);
    table.Unhook(procs, 3);
    o->HookRelease();
}

TEST_F(HookTableTest, NcDestroyPassesOnThenEndsTheHookEvenWhenTheOwnerIgnoresIt)
{
    int alive = 0;
    FakeOwner *o = FakeOwner::make(&alive);
    table.Hook(procs, 1, o, kShared);
    o->HookRelease(); // only the table holds it now
    EXPECT_EQ(static_cast<HookResult>(0x1000 + kMsgNcDestroy), table.Dispatch(procs, 1, kMsgNcDestroy, 0, 0));
    EXPECT_EQ(1u, procs.calls.size());
    EXPECT_EQ(0u, table.count());
    EXPECT_EQ(0x1000u, procs.slots[1]);
    EXPECT_EQ(0, alive); // the table's reference was the last
}

TEST_F(HookTableTest, AWatchedNcDestroyIsAnsweredByTheOwnerAndStillEndsTheHook)
{
    FakeOwner *o = FakeOwner::make();
    o->watched = {kMsgNcDestroy};
    o->answer = 9;
    // The owner lets go of the window the way a Subclass does: by unhooking it.
    o->on_gone = [&] { table.Unhook(procs, 1); };
    table.Hook(procs, 1, o, kShared);
    EXPECT_EQ(9, table.Dispatch(procs, 1, kMsgNcDestroy, 0, 0));
    EXPECT_EQ(1, o->gone);
    EXPECT_EQ(0u, table.count());
    EXPECT_TRUE(procs.calls.empty());
    EXPECT_EQ(1, o->refs);
    o->HookRelease();
}

TEST_F(HookTableTest, AnOwnerThatUnhooksItselfInItsHandlerLivesUntilTheMessageIsDone)
{
    int alive = 0;
    FakeOwner *o = FakeOwner::make(&alive);
    o->watched = {5};
    o->answer = 55;
    table.Hook(procs, 1, o, kShared);
    o->HookRelease();
    // The table's reference is the last one: unhooking inside the handler must not end the
    // owner while it is still answering (ASan reports the use otherwise).
    o->on_message = [&] {
        table.Unhook(procs, 1);
        EXPECT_EQ(1, alive);
    };
    EXPECT_EQ(55, table.Dispatch(procs, 1, 5, 0, 0));
    EXPECT_EQ(0, alive);
    EXPECT_EQ(0x1000u, procs.slots[1]);
}

TEST_F(HookTableTest, HandlersMayHookAndUnhookOtherWindowsWhileAMessageIsDispatched)
{
    FakeOwner *o = FakeOwner::make();
    o->watched = {5};
    table.Hook(procs, 1, o, kShared);
    for (WindowId w = 100; w < 300; ++w) procs.slots[w] = w;
    o->on_message = [&] {
        for (WindowId w = 100; w < 300; ++w) table.Hook(procs, w, o, kShared); // the table grows and moves
        table.Unhook(procs, 1);
    };
    table.Dispatch(procs, 1, 5, 0, 0);
    EXPECT_EQ(200u, table.count());
    // The previous procedure of an unwatched message is the one saved, even when the
    // procedure it calls changes the table.
    procs.during_call = [&] { table.Unhook(procs, 150); };
    EXPECT_EQ(static_cast<HookResult>(150 + 6), table.Dispatch(procs, 150, 6, 0, 0));
    EXPECT_EQ(199u, table.count());
    for (WindowId w = 100; w < 300; ++w) table.Unhook(procs, w);
    EXPECT_EQ(1, o->refs);
    o->HookRelease();
}

TEST_F(HookTableTest, WindowsThatCannotBeHookedLeaveNoEntryAndNoReference)
{
    FakeOwner *o = FakeOwner::make();
    EXPECT_FALSE(table.Hook(procs, 0, o, kShared));    // no window
    EXPECT_FALSE(table.Hook(procs, 77, o, kShared));   // no such window
    procs.foreign = {3};
    EXPECT_FALSE(table.Hook(procs, 3, o, kShared));    // another thread's
    procs.refuse_set = {4};
    EXPECT_FALSE(table.Hook(procs, 4, o, kShared));    // the platform refuses the procedure
    EXPECT_EQ(0x4000u, procs.slots[4]);
    procs.slots[2] = kShared;                          // carries the shared procedure already
    EXPECT_FALSE(table.Hook(procs, 2, o, kShared));
    EXPECT_FALSE(table.Hook(procs, 1, nullptr, kShared));
    EXPECT_EQ(0u, table.count());
    EXPECT_EQ(1, o->refs);
    // A refused hook of a window already hooked still unhooks it first.
    table.Hook(procs, 1, o, kShared);
    procs.refuse_set = {};
    procs.foreign = {1};
    EXPECT_FALSE(table.Hook(procs, 1, o, kShared));
    EXPECT_EQ(0x1000u, procs.slots[1]);
    EXPECT_EQ(0u, table.count());
    o->HookRelease();
}
