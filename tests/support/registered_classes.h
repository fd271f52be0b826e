// Every creatable class of the registered type library and the members of its default
// interface, read from the type library itself: a test that walks these covers a control the
// day it is registered, without a list of its own.
#pragma once
#include <windows.h>
#include <oaidl.h>

#include <string>
#include <vector>

#include "runtime/com.h"

namespace tarn::test {

struct RegisteredMember {
    std::wstring name;
    DISPID id = 0;
    INVOKEKIND kind = INVOKE_FUNC;
    std::vector<VARTYPE> inputs; // the parameters a caller passes, aliases resolved (VT_BYREF when by reference)
    UINT required = 0;           // inputs that are neither optional nor defaulted
    VARTYPE result = VT_EMPTY;   // what a get or function returns (aliases resolved)
};

struct RegisteredClass {
    std::wstring progid; // TarnControls.<name>
    CLSID clsid{};
    std::vector<RegisteredMember> members; // IUnknown's and IDispatch's own left out
};

std::vector<RegisteredClass> RegisteredClasses();

// The members of `cls` that can be read and written, with no index or one integer index: a
// get and a put of the same id.
std::vector<const RegisteredMember *> ReadWriteProperties(const RegisteredClass &cls);

// A property that takes a value and gives it back, to check that a control is still usable:
// two values, so that a second round trip is a real change.
struct RoundTrip {
    DISPID id = DISPID_UNKNOWN;
    std::wstring name;
    bool indexed = false; // with one integer index (a message number, a column)
    Variant a, b;
};
// The first read-write property of a plain type that round-trips on this control now (id
// DISPID_UNKNOWN when there is none).
RoundTrip FindRoundTrip(IDispatch *d, const RegisteredClass &cls);
// Both values put and read back unchanged.
bool RoundTrips(IDispatch *d, const RoundTrip &trip);
// Whether the control still does what a host asks of it: `trip` round-trips or, for a class
// with no read-write property to try (a plain separator, a glyph), it still describes itself
// and every property it has still reads.
bool StillUsable(IDispatch *d, const RegisteredClass &cls, const RoundTrip &trip);

} // namespace tarn::test
