// The resume-next trap: every step a host can trigger runs through step(), so a failing
// step (an exception of any kind, including tarn::Overflow and failed HRESULTs turned
// into exceptions) is skipped and the next step runs. Nothing escapes to the host.
#pragma once
#include <utility>

namespace tarn {

template <class F> inline bool step(F &&f) noexcept
{
    try {
        std::forward<F>(f)();
        return true;
    } catch (...) {
        return false;
    }
}

// A read: the value the step produced, or the fallback (0, "") when it failed.
template <class T, class F> inline T read_step(F &&f, T fallback = T()) noexcept
{
    try {
        return std::forward<F>(f)();
    } catch (...) {
        return fallback;
    }
}

} // namespace tarn
