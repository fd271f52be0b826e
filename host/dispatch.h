// Calling a control the way script hosts do: members by name through IDispatch.
#pragma once
#include <oaidl.h>

#include <string>
#include <vector>

#include "runtime/com.h"

namespace tarn::host {

DISPID dispid_of(IDispatch *object, const std::wstring &name);
// Property get; the HRESULT of Invoke (DISP_E_UNKNOWNNAME for an unknown name).
HRESULT get_property(IDispatch *object, const std::wstring &name, Variant &out, const std::vector<Variant> &args = {});
HRESULT put_property(IDispatch *object, const std::wstring &name, const Variant &value,
                     const std::vector<Variant> &args = {});
HRESULT putref_property(IDispatch *object, const std::wstring &name, IUnknown *value);
// A method call with arguments in declaration order.
HRESULT call_method(IDispatch *object, const std::wstring &name, const std::vector<Variant> &args, Variant *result);

// A VARIANT holding a 16-bit, 32-bit, float, double, bool or string value, for short argument lists.
inline Variant I2(int16_t v) { return Variant::of_i2(v); }
inline Variant I4(int32_t v) { return Variant::of_i4(v); }
inline Variant R4(float v) { return Variant::of_r4(v); }
inline Variant R8(double v) { return Variant::of_r8(v); }
inline Variant Bool(bool v) { return Variant::of_bool(v); }
inline Variant Str(const std::wstring &v) { return Variant::of_string(v); }

// Reads a variant as a number or text whatever its type (0 or "" when it cannot).
long long as_integer(const Variant &v);
double as_double(const Variant &v);
std::wstring as_string(const Variant &v);

} // namespace tarn::host
