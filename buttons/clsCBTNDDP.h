// clsCBTNDDP: the colour button's small timer object: Enabled, Interval (milliseconds) and the
// event OnTimer, raised every Interval while enabled (never with an Interval of 0), as a
// form's timer does. It keeps no time itself: a TimerClock calls Elapse() when an interval is
// up. A running control uses the system's clock (clsCBTNDDP_clock.h); a test hands it a
// ManualTimerClock and moves time on by hand, so nothing waits for real time.
#pragma once
#include <cstdint>
#include <functional>
#include <vector>

namespace tarn {

class clsCBTNDDP;

class TimerClock {
public:
    virtual ~TimerClock() = default;
    // Calls timer.Elapse() every `interval` ms from now on, replacing an earlier Arm.
    virtual void Arm(clsCBTNDDP &timer, uint32_t interval) = 0;
    virtual void Disarm(clsCBTNDDP &timer) = 0;
};

class clsCBTNDDP {
public:
    explicit clsCBTNDDP(TimerClock &clock);
    ~clsCBTNDDP();
    clsCBTNDDP(const clsCBTNDDP &) = delete;
    clsCBTNDDP &operator=(const clsCBTNDDP &) = delete;

    bool Enabled() const { return enabled_; }
    // Enabling starts a full interval from now; enabling a running timer changes nothing.
    void Enabled(bool on);
    int32_t Interval() const { return interval_; }
    // A new interval restarts a running timer's count; a negative one throws
    // std::invalid_argument and leaves the timer as it was.
    void Interval(int32_t ms);

    // What the owner does when an interval is up.
    std::function<void()> OnTimer;

    // The clock's call: raises OnTimer unless the timer was stopped meanwhile (a tick already
    // on its way when Enabled went False raises nothing).
    void Elapse();

private:
    void rearm();

    TimerClock &clock_;
    bool enabled_ = false;
    int32_t interval_ = 0;
    bool armed_ = false;
};

// Time moved on by hand. Advance(ms) runs, in time order, every tick that falls due within
// `ms`, including those of timers that the handlers start, stop or restart on the way.
class ManualTimerClock final : public TimerClock {
public:
    void Arm(clsCBTNDDP &timer, uint32_t interval) override;
    void Disarm(clsCBTNDDP &timer) override;
    void Advance(uint32_t ms);
    uint64_t Now() const { return now_; }
    bool Armed(const clsCBTNDDP &timer) const;

private:
    struct Entry {
        clsCBTNDDP *timer;
        uint32_t interval;
        uint64_t due;
    };
    std::vector<Entry> entries_;
    uint64_t now_ = 0;
};

} // namespace tarn
