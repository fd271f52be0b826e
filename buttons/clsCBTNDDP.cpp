#include "buttons/clsCBTNDDP.h"

#include <algorithm>
#include <stdexcept>

namespace tarn {

clsCBTNDDP::clsCBTNDDP(TimerClock &clock) : clock_(clock) {}

clsCBTNDDP::~clsCBTNDDP()
{
    if (armed_) clock_.Disarm(*this);
}

void clsCBTNDDP::Enabled(bool on)
{
    if (on == enabled_) return;
    enabled_ = on;
    rearm();
}

void clsCBTNDDP::Interval(int32_t ms)
{
    if (ms < 0) throw std::invalid_argument("negative interval");
    interval_ = ms;
    rearm();
}

void clsCBTNDDP::rearm()
{
    if (enabled_ && interval_ > 0) {
        clock_.Arm(*this, static_cast<uint32_t>(interval_));
        armed_ = true;
    } else if (armed_) {
        clock_.Disarm(*this);
        armed_ = false;
    }
}

void clsCBTNDDP::Elapse()
{
    if (!enabled_ || interval_ <= 0 || !OnTimer) return;
    // A copy: the handler may stop, restart or destroy this timer.
    std::function<void()> handler = OnTimer;
    handler();
}

void ManualTimerClock::Arm(clsCBTNDDP &timer, uint32_t interval)
{
    Disarm(timer);
    entries_.push_back({&timer, interval, now_ + interval});
}

void ManualTimerClock::Disarm(clsCBTNDDP &timer)
{
    std::erase_if(entries_, [&](const Entry &e) { return e.timer == &timer; });
}

bool ManualTimerClock::Armed(const clsCBTNDDP &timer) const
{
    return std::any_of(entries_.begin(), entries_.end(), [&](const Entry &e) { return e.timer == &timer; });
}

void ManualTimerClock::Advance(uint32_t ms)
{
    const uint64_t end = now_ + ms;
    for (;;) {
        // The earliest tick due by the end; the earlier armed first on a tie.
        auto next = std::min_element(entries_.begin(), entries_.end(),
                                     [](const Entry &a, const Entry &b) { return a.due < b.due; });
        if (next == entries_.end() || next->due > end) break;
        now_ = next->due;
        next->due += next->interval;
        clsCBTNDDP *timer = next->timer; // the handler may change the list
        timer->Elapse();
    }
    now_ = end;
}

} // namespace tarn
