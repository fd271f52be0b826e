// The hook table on fake windows: what a hook saves and puts back, who answers a message, how
// WM_NCDESTROY ends a hook, and the owners' references through handlers that change the table
// while it dispatches (run under AddressSanitizer natively: a released owner touched later fails).
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

#include "foundation/hook_table.h"

using namespace tarn;

namespace {

constexpr ProcAddress kShared = 0x5A5A;

// A call of a saved procedure: procedure, window, message, wParam, lParam.
using ProcCall = std::tuple<ProcAddress, WindowId, std::uint32_t, std::uintptr_t, std::intptr_t>;

// Windows as the table sees them: a procedure slot each; the saved procedures answer with
// their own address plus the message, so a test can tell who answered.
class FakeProcs final : public WindowProcs {
public:
    std::map<WindowId, ProcAddress> slots{{1, 0x1000}, {2, 0x2000}, {3, 0x3000}, {4, 0x4000}}; // their own procedures
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

// An owner on the heap that deletes itself on its last release, as a COM object does; `alive`
// counts the owners not yet deleted.
class FakeOwner final : public HookOwner {
public:
    FakeOwner(std::set<std::uint32_t> w, HookResult a) : watched(std::move(w)), answer(a) { ++alive; }
    void HookAddRef() override { ++refs; }
    void HookRelease() override
    {
        if (--refs == 0) {
            --alive;
            delete this;
        }
    }
    bool HookWatches(std::uint32_t msg) override { return watched.count(msg) != 0; }
    HookResult HookMessage(std::uint32_t msg, std::uintptr_t, std::intptr_t) override
    {
        seen.push_back(msg);
        if (on_message) on_message();
        return answer;
    }
    void HookWindowGone() override { ++gone; }

    static inline int alive = 0;
    std::set<std::uint32_t> watched;
    HookResult answer;
    int refs = 1; // the test's own reference
    std::vector<std::uint32_t> seen;
    int gone = 0;
    std::function<void()> on_message;
};

class HookTableTest : public ::testing::Test {
protected:
    void SetUp() override { FakeOwner::alive = 0; }
    // Every test ends with its windows unhooked and its own references dropped: an owner still
    // alive then is a reference the table kept.
    void TearDown() override
    {
        while (table.count()) table.Unhook(procs, table.entry(1).window);
        for (FakeOwner *o : held_) o->HookRelease();
        EXPECT_EQ(0, FakeOwner::alive) << "an owner outlived its hooks";
    }
    FakeOwner *owner(std::set<std::uint32_t> watched = {}, HookResult answer = 0)
    {
        held_.push_back(new FakeOwner(std::move(watched), answer));
        return held_.back();
    }
    FakeProcs procs;
    HookTable table;
    std::vector<FakeOwner *> held_;
};

} // namespace

TEST_F(HookTableTest, AHookSavesTheWindowsOwnProcedureEvenWhenAnotherOwnerHooksAgain)
{
    FakeOwner *a = owner({36}), *b = owner({36}, -5);
    EXPECT_TRUE(table.Hook(procs, 2, a, kShared));
    EXPECT_EQ(kShared, procs.slots[2]);
    EXPECT_EQ(2, a->refs); // the table counts its reference
    // Hooked again through another owner: the second replaces the first, which is let go, and
    // the procedure saved is still the window's own, not the shared one.
    EXPECT_TRUE(table.Hook(procs, 2, b, kShared));
    ASSERT_EQ(1u, table.count());
    EXPECT_EQ(b, table.entry(1).owner.get());
    EXPECT_EQ(0x2000u, table.entry(1).previous);
    EXPECT_EQ(1, a->refs);
    // The owner alone answers what it watches; the rest goes whole to the saved procedure.
    EXPECT_EQ(-5, table.Dispatch(procs, 2, 36, 11, 22));
    const std::uintptr_t wide_wp = ~std::uintptr_t(0);
    const std::intptr_t wide_lp = INTPTR_MIN;
    EXPECT_EQ(static_cast<HookResult>(0x2000 + 15), table.Dispatch(procs, 2, 15, wide_wp, wide_lp));
    EXPECT_EQ((std::vector<ProcCall>{{0x2000, 2, 15, wide_wp, wide_lp}}), procs.calls);
    EXPECT_EQ(std::vector<std::uint32_t>{36}, b->seen);
    EXPECT_TRUE(a->seen.empty());
    // Unhooking puts exactly the saved procedure back, once.
    table.Unhook(procs, 2);
    EXPECT_EQ(0x2000u, procs.slots[2]);
    EXPECT_EQ(0u, table.count());
    EXPECT_EQ(1, b->refs);
    table.Unhook(procs, 2);
    EXPECT_EQ(0x2000u, procs.slots[2]);
}

TEST_F(HookTableTest, NcDestroyEndsTheHookWhetherTheOwnerWatchesItOrNot)
{
    // Not watched: passed on to the saved procedure, and the table's reference was the last.
    FakeOwner *o = owner();
    table.Hook(procs, 1, o, kShared);
    held_.pop_back(); // the test lets go: the table's reference is the only one
    o->HookRelease();
    EXPECT_EQ(static_cast<HookResult>(0x1000 + kMsgNcDestroy), table.Dispatch(procs, 1, kMsgNcDestroy, 0, 0));
    EXPECT_EQ(1u, procs.calls.size());
    EXPECT_EQ(0u, table.count());
    EXPECT_EQ(0x1000u, procs.slots[1]);
    // Watched: the owner answers, and is told the window is gone.
    FakeOwner *p = owner({kMsgNcDestroy}, 9);
    table.Hook(procs, 2, p, kShared);
    EXPECT_EQ(9, table.Dispatch(procs, 2, kMsgNcDestroy, 0, 0));
    EXPECT_EQ(1, p->gone);
    EXPECT_EQ(0u, table.count());
    EXPECT_EQ(1u, procs.calls.size()); // only the first window's
}

TEST_F(HookTableTest, AnOwnerThatUnhooksItselfInItsHandlerLivesUntilTheMessageIsDone)
{
    FakeOwner *o = owner({5}, 55);
    table.Hook(procs, 1, o, kShared);
    held_.pop_back();
    o->HookRelease();
    // The table's reference is the last one: unhooking inside the handler must not end the
    // owner while it is still answering (ASan reports the use otherwise).
    o->on_message = [&] {
        table.Unhook(procs, 1);
        EXPECT_EQ(1, FakeOwner::alive);
    };
    EXPECT_EQ(55, table.Dispatch(procs, 1, 5, 0, 0));
    EXPECT_EQ(0, FakeOwner::alive);
    EXPECT_EQ(0x1000u, procs.slots[1]);
}

TEST_F(HookTableTest, HandlersMayHookAndUnhookOtherWindowsWhileAMessageIsDispatched)
{
    FakeOwner *o = owner({5});
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
    // Entries after the ones removed moved down and are still found as what they were.
    ASSERT_EQ(199u, table.count());
    EXPECT_EQ(nullptr, table.find(150));
    for (WindowId w : {100, 149, 151, 299}) {
        ASSERT_NE(nullptr, table.find(w)) << w;
        EXPECT_EQ(w, table.find(w)->previous);
    }
    EXPECT_EQ(151u, table.entry(51).window);
}

TEST_F(HookTableTest, WindowsThatCannotBeHookedLeaveNoEntryAndNoReference)
{
    FakeOwner *o = owner();
    procs.foreign = {3};      // another thread's
    procs.refuse_set = {4};   // the platform refuses the procedure
    procs.slots[2] = kShared; // carries the shared procedure already
    // No window, no such window, and those three.
    for (WindowId w : {0, 77, 3, 4, 2}) EXPECT_FALSE(table.Hook(procs, w, o, kShared)) << w;
    EXPECT_FALSE(table.Hook(procs, 1, nullptr, kShared));
    EXPECT_EQ(0u, table.count());
    // A refused hook of a window already hooked still unhooks it first.
    table.Hook(procs, 1, o, kShared);
    procs.foreign = {1};
    EXPECT_FALSE(table.Hook(procs, 1, o, kShared));
    EXPECT_EQ(0x1000u, procs.slots[1]);
    EXPECT_EQ(0u, table.count());
}

namespace {
// An observer that records what it heard, and may act while it hears.
class FakeObserver final : public HookObserver {
public:
    void HookObserved(std::uint32_t msg, std::uintptr_t, std::intptr_t, HookResult result) override
    {
        heard.push_back({msg, result});
        if (on_message) on_message();
    }
    void HookObserverGone() override { ++gone; }
    std::vector<std::pair<std::uint32_t, HookResult>> heard;
    int gone = 0;
    std::function<void()> on_message;
};
} // namespace

TEST_F(HookTableTest, ObserversHearAnsweredMessagesBesideTheOwnerAndKeepTheHookForEachOther)
{
    FakeObserver grip, other;
    // Observed first, then an owner hooks the same window: neither displaces the other, and
    // the procedure saved is still the window's own.
    EXPECT_TRUE(table.Observe(procs, 2, &grip, kShared));
    EXPECT_EQ(kShared, procs.slots[2]);
    FakeOwner *lock = owner({36}, -7);
    EXPECT_TRUE(table.Hook(procs, 2, lock, kShared));
    EXPECT_TRUE(table.Observe(procs, 2, &other, kShared));
    EXPECT_TRUE(table.Observe(procs, 2, &other, kShared)); // once only
    ASSERT_EQ(1u, table.count());
    EXPECT_EQ(0x2000u, table.entry(1).previous);
    EXPECT_EQ(2u, table.entry(1).observers.size());
    // Both hear each message with the answer the window gave, the owner's or its own.
    EXPECT_EQ(-7, table.Dispatch(procs, 2, 36, 0, 0));
    EXPECT_EQ(static_cast<HookResult>(0x2000 + 5), table.Dispatch(procs, 2, 5, 0, 0));
    using Heard = std::vector<std::pair<std::uint32_t, HookResult>>;
    EXPECT_EQ((Heard{{36, -7}, {5, 0x2005}}), grip.heard);
    EXPECT_EQ(grip.heard, other.heard);
    // The owner unhooks: the observers keep the hook. One observer stops the other while it
    // hears a message: the one stopped hears nothing more.
    table.Unhook(procs, 2);
    EXPECT_EQ(1, lock->refs);
    EXPECT_EQ(kShared, procs.slots[2]);
    grip.on_message = [&] { table.Unobserve(procs, 2, &other); };
    table.Dispatch(procs, 2, 6, 0, 0);
    EXPECT_EQ(3u, grip.heard.size());
    EXPECT_EQ(2u, other.heard.size());
    // The last observer going puts the window's own procedure back.
    grip.on_message = nullptr;
    table.Unobserve(procs, 2, &grip);
    EXPECT_EQ(0u, table.count());
    EXPECT_EQ(0x2000u, procs.slots[2]);
    // Windows that cannot be hooked are not observed.
    procs.foreign = {3};
    for (WindowId w : {0, 77, 3}) EXPECT_FALSE(table.Observe(procs, w, &grip, kShared)) << w;
    EXPECT_FALSE(table.Observe(procs, 1, nullptr, kShared));
    EXPECT_EQ(0u, table.count());
}

TEST_F(HookTableTest, NcDestroyTellsOwnerAndObserversAndEndsTheHook)
{
    FakeObserver grip;
    FakeOwner *lock = owner({36});
    table.Hook(procs, 1, lock, kShared);
    table.Observe(procs, 1, &grip, kShared);
    table.Dispatch(procs, 1, kMsgNcDestroy, 0, 0);
    EXPECT_EQ(1, lock->gone);
    EXPECT_EQ(1, grip.gone);
    EXPECT_EQ(1u, grip.heard.size());
    EXPECT_EQ(0u, table.count());
    EXPECT_EQ(0x1000u, procs.slots[1]);
}
