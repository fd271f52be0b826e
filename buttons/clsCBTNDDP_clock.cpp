#include "buttons/clsCBTNDDP_clock.h"

#include <windows.h>

#include <map>

#include "foundation/trap.h"

namespace tarn {

namespace {

class ThreadTimerClock final : public TimerClock {
public:
    void Arm(clsCBTNDDP &timer, uint32_t interval) override
    {
        Disarm(timer);
        if (UINT_PTR id = SetTimer(nullptr, 0, interval, &ThreadTimerClock::tick)) timers_[id] = &timer;
    }

    void Disarm(clsCBTNDDP &timer) override
    {
        for (auto it = timers_.begin(); it != timers_.end(); ++it)
            if (it->second == &timer) {
                KillTimer(nullptr, it->first);
                timers_.erase(it);
                return;
            }
    }

private:
    static void CALLBACK tick(HWND, UINT, UINT_PTR id, DWORD);
    std::map<UINT_PTR, clsCBTNDDP *> timers_;
};

thread_local ThreadTimerClock t_clock;

void CALLBACK ThreadTimerClock::tick(HWND, UINT, UINT_PTR id, DWORD)
{
    // A callback runs inside the host's message loop: nothing may escape it.
    auto it = t_clock.timers_.find(id);
    if (it == t_clock.timers_.end()) return;
    clsCBTNDDP *timer = it->second;
    step([&] { timer->Elapse(); });
}

} // namespace

TimerClock &SystemTimerClock() { return t_clock; }

} // namespace tarn
