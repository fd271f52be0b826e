// The Windows benchmarks' clock: milliseconds from the performance counter.
#pragma once
#include <windows.h>

namespace tarn::bench {

inline double now_ms()
{
    static LARGE_INTEGER freq{};
    if (!freq.QuadPart) QueryPerformanceFrequency(&freq);
    LARGE_INTEGER t;
    QueryPerformanceCounter(&t);
    return static_cast<double>(t.QuadPart) * 1000.0 / static_cast<double>(freq.QuadPart);
}

} // namespace tarn::bench
