// The system's clock for clsCBTNDDP: one thread timer (SetTimer without a window, its
// callback run by the thread's message loop) per running clsCBTNDDP.
#pragma once
#include "buttons/clsCBTNDDP.h"

namespace tarn {

// The clock of the calling thread.
TimerClock &SystemTimerClock();

} // namespace tarn
