#include "host/call_log.h"

#include <cstdio>

namespace tarn::host {

namespace {

std::wstring number_text(double v)
{
    wchar_t buf[64];
    std::swprintf(buf, 64, L"%g", v);
    return buf;
}

std::wstring variant_text(const Variant &v)
{
    const VARIANT *p = v.get();
    switch (V_VT(p)) {
    case VT_EMPTY: return L"Empty";
    case VT_I2: return std::to_wstring(V_I2(p));
    case VT_I4: return std::to_wstring(V_I4(p));
    case VT_I8: return std::to_wstring(V_I8(p));
    case VT_UI1: return std::to_wstring(V_UI1(p));
    case VT_R4: return number_text(V_R4(p));
    case VT_R8: return number_text(V_R8(p));
    case VT_BOOL: return V_BOOL(p) ? L"True" : L"False";
    case VT_BSTR: return L"\"" + from_bstr(V_BSTR(p)) + L"\"";
    default: return L"?";
    }
}

} // namespace

std::wstring EventRecord::text() const
{
    std::wstring t = name;
    if (args.empty()) return t;
    t += L"(";
    for (size_t i = 0; i < args.size(); ++i) t += (i ? L"," : L"") + variant_text(args[i]);
    return t + L")";
}

void CallLog::hit(const std::wstring &call)
{
    calls_.push_back(call);
    seen_.insert(call);
    if (!allowed_.count(call)) unexpected_.push_back(call);
}

std::vector<std::wstring> CallLog::check()
{
    std::vector<std::wstring> missing;
    for (const std::wstring &e : expected_)
        if (!seen_.count(e)) missing.push_back(e);
    for (const std::wstring &e : expected_) allowed_.erase(e);
    expected_.clear();
    seen_.clear();
    return missing;
}

std::vector<std::wstring> CallLog::event_names() const
{
    std::vector<std::wstring> out;
    for (const EventRecord &e : events) out.push_back(e.name);
    return out;
}

std::vector<std::wstring> CallLog::event_texts() const
{
    std::vector<std::wstring> out;
    for (const EventRecord &e : events) out.push_back(e.text());
    return out;
}

void CallLog::clear_all()
{
    changes.clear();
    changed_ids.clear();
    events.clear();
    calls_.clear();
    unexpected_.clear();
}

} // namespace tarn::host
