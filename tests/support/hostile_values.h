// The values a hostile host passes where a well-behaved one passes a property's value: wrong
// types, empty and null values, null objects, the control itself, arrays, by-reference values,
// null and 1 MB strings, NaN, infinities and extreme numbers. Made afresh for each use (a
// member may write through a reference); the storage of references lives in the object.
#pragma once
#include <windows.h>
#include <oaidl.h>

namespace tarn::test {

class HostileValue {
public:
    HostileValue() = default;
    HostileValue(const HostileValue &) = delete;
    HostileValue &operator=(const HostileValue &) = delete;
    ~HostileValue() { clear(); }

    static constexpr int kCount = 40;
    static const wchar_t *name(int i);

    // Fills `v` with value `i` of the table (`self`: the control, for the one that passes it
    // to itself). The caller clears `v` unless it is by reference.
    void make(int i, VARIANT &v, IUnknown *self);
    // Frees what a reference argument left behind.
    void clear();

private:
    LONG long_ = 0;
    BSTR bstr_ = nullptr;
    VARIANT inner_{};
};

} // namespace tarn::test
