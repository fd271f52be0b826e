// The colour button's timer object on a clock moved by hand: ticks every interval while
// enabled, none at interval 0, a fresh interval on enabling, handlers that stop or restart
// the timer, ticks that arrive after a stop, timers destroyed while armed.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "buttons/clsCBTNDDP.h"

using namespace tarn;

namespace {

struct Fixture {
    ManualTimerClock clock;
    std::vector<std::string> log;
    void count(clsCBTNDDP &t, const char *name)
    {
        t.OnTimer = [this, name] { log.push_back(std::string(name) + std::to_string(clock.Now())); };
    }
};

using Log = std::vector<std::string>;

} // namespace

TEST(clsCBTNDDP, TicksEveryIntervalWhileEnabledAndNeverAtIntervalZero)
{
    Fixture f;
    clsCBTNDDP t(f.clock);
    f.count(t, "t");
    EXPECT_FALSE(t.Enabled());
    EXPECT_EQ(0, t.Interval());
    t.Enabled(true); // interval 0: enabled but silent
    f.clock.Advance(1000);
    EXPECT_TRUE(f.log.empty());
    t.Interval(100); // counts from now
    f.clock.Advance(350);
    EXPECT_EQ((Log{"t1100", "t1200", "t1300"}), f.log);
    // Enabling a running timer changes nothing; stopping and starting again gives a full interval.
    t.Enabled(true);
    f.clock.Advance(50);
    t.Enabled(false);
    f.clock.Advance(500);
    t.Enabled(true);
    f.clock.Advance(150);
    EXPECT_EQ((Log{"t1100", "t1200", "t1300", "t1400", "t2000"}), f.log);
    // A new interval restarts the count; a negative one is refused and changes nothing.
    f.clock.Advance(30);
    t.Interval(30);
    EXPECT_THROW(t.Interval(-1), std::invalid_argument);
    EXPECT_EQ(30, t.Interval());
    f.clock.Advance(60);
    EXPECT_EQ((Log{"t1100", "t1200", "t1300", "t1400", "t2000", "t2110", "t2140"}), f.log);
    t.Interval(0);
    EXPECT_FALSE(f.clock.Armed(t));
}

TEST(clsCBTNDDP, HandlersMayStopOrRestartTimersAndLateTicksAreIgnored)
{
    Fixture f;
    clsCBTNDDP once(f.clock), other(f.clock);
    once.Interval(40);
    other.Interval(25);
    f.count(other, "o");
    once.OnTimer = [&] {
        f.log.push_back("once" + std::to_string(f.clock.Now()));
        once.Enabled(false);
        other.Interval(10); // restarted from the moment of this tick
    };
    once.Enabled(true);
    other.Enabled(true);
    f.clock.Advance(65);
    EXPECT_EQ((Log{"o25", "once40", "o50", "o60"}), f.log);
    // A tick already on its way when the timer stopped raises nothing.
    other.Enabled(false);
    f.log.clear();
    other.Elapse();
    once.Elapse();
    EXPECT_TRUE(f.log.empty());
    // A handler that destroys its own timer: the clock forgets it.
    auto gone = std::make_unique<clsCBTNDDP>(f.clock);
    gone->Interval(10);
    gone->Enabled(true);
    gone->OnTimer = [&] { gone.reset(); };
    other.Enabled(true);
    f.clock.Advance(45);
    EXPECT_EQ(nullptr, gone);
    EXPECT_EQ((Log{"o75", "o85", "o95", "o105"}), f.log);
}
