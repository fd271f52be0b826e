#include "runtime/events.h"

#include <algorithm>

namespace tarn {

EventArgs::~EventArgs()
{
    for (VARIANT &v : args_)
        if (!(V_VT(&v) & VT_BYREF)) VariantClear(&v);
    for (BSTR s : strings_) SysFreeString(s);
}

VARIANT &EventArgs::add()
{
    args_.emplace_back();
    VariantInit(&args_.back());
    return args_.back();
}

EventArgs &EventArgs::val(int16_t v)
{
    VARIANT &a = add();
    V_VT(&a) = VT_I2;
    V_I2(&a) = v;
    return *this;
}
EventArgs &EventArgs::val(int32_t v)
{
    VARIANT &a = add();
    V_VT(&a) = VT_I4;
    V_I4(&a) = v;
    return *this;
}
EventArgs &EventArgs::val(int64_t v)
{
    VARIANT &a = add();
    V_VT(&a) = VT_I8;
    V_I8(&a) = v;
    return *this;
}
EventArgs &EventArgs::val(float v)
{
    VARIANT &a = add();
    V_VT(&a) = VT_R4;
    V_R4(&a) = v;
    return *this;
}
EventArgs &EventArgs::val(double v)
{
    VARIANT &a = add();
    V_VT(&a) = VT_R8;
    V_R8(&a) = v;
    return *this;
}
EventArgs &EventArgs::val(bool v)
{
    VARIANT &a = add();
    V_VT(&a) = VT_BOOL;
    V_BOOL(&a) = v ? VARIANT_TRUE : VARIANT_FALSE;
    return *this;
}
EventArgs &EventArgs::val(const std::wstring &v)
{
    VARIANT &a = add();
    V_BSTR(&a) = to_bstr(v);
    V_VT(&a) = VT_BSTR;
    return *this;
}
EventArgs &EventArgs::ref(int16_t &v)
{
    VARIANT &a = add();
    V_VT(&a) = VT_I2 | VT_BYREF;
    V_I2REF(&a) = reinterpret_cast<SHORT *>(&v);
    return *this;
}
EventArgs &EventArgs::ref(int32_t &v)
{
    VARIANT &a = add();
    V_VT(&a) = VT_I4 | VT_BYREF;
    V_I4REF(&a) = reinterpret_cast<LONG *>(&v);
    return *this;
}
EventArgs &EventArgs::ref(int64_t &v)
{
    VARIANT &a = add();
    V_VT(&a) = VT_I8 | VT_BYREF;
    V_I8REF(&a) = reinterpret_cast<LONGLONG *>(&v);
    return *this;
}
EventArgs &EventArgs::ref(float &v)
{
    VARIANT &a = add();
    V_VT(&a) = VT_R4 | VT_BYREF;
    V_R4REF(&a) = &v;
    return *this;
}
EventArgs &EventArgs::ref(bool &v)
{
    bools_.push_back(v ? VARIANT_TRUE : VARIANT_FALSE);
    bool_refs_.emplace_back(&bools_.back(), &v);
    VARIANT &a = add();
    V_VT(&a) = VT_BOOL | VT_BYREF;
    V_BOOLREF(&a) = &bools_.back();
    return *this;
}
EventArgs &EventArgs::ref(std::wstring &v)
{
    strings_.push_back(to_bstr(v));
    string_refs_.emplace_back(&strings_.back(), &v);
    VARIANT &a = add();
    V_VT(&a) = VT_BSTR | VT_BYREF;
    V_BSTRREF(&a) = &strings_.back();
    return *this;
}

DISPPARAMS EventArgs::params()
{
    reversed_.assign(args_.rbegin(), args_.rend());
    DISPPARAMS dp{};
    dp.cArgs = static_cast<UINT>(reversed_.size());
    dp.rgvarg = reversed_.empty() ? nullptr : reversed_.data();
    return dp;
}

void EventArgs::copy_back()
{
    for (auto &[stored, target] : bool_refs_) *target = *stored != VARIANT_FALSE;
    for (auto &[stored, target] : string_refs_) *target = from_bstr(*stored);
}

} // namespace tarn
