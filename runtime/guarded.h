// guarded(): runs the body of a COM method so that no exception crosses the COM boundary.
#pragma once
#include <objbase.h>

#include <new>

namespace tarn {

template <class F> inline HRESULT guarded(F &&f) noexcept
{
    try {
        return f();
    } catch (const std::bad_alloc &) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

} // namespace tarn
