#include "host/dispatch.h"

namespace tarn::host {

namespace {

HRESULT invoke(IDispatch *object, const std::wstring &name, WORD flags, std::vector<Variant> args, bool named_put,
               Variant *result)
{
    if (!object) return E_POINTER;
    DISPID id = dispid_of(object, name);
    if (id == DISPID_UNKNOWN) return DISP_E_UNKNOWNNAME;
    std::vector<VARIANT> reversed;
    for (auto it = args.rbegin(); it != args.rend(); ++it) reversed.push_back(*it->get());
    DISPID put_id = DISPID_PROPERTYPUT;
    DISPPARAMS params{};
    params.cArgs = static_cast<UINT>(reversed.size());
    params.rgvarg = reversed.empty() ? nullptr : reversed.data();
    if (named_put) {
        params.cNamedArgs = 1;
        params.rgdispidNamedArgs = &put_id;
    }
    Variant ignored;
    EXCEPINFO excep{};
    UINT arg_err = 0;
    HRESULT hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result ? result->put() : ignored.put(),
                                &excep, &arg_err);
    SysFreeString(excep.bstrSource);
    SysFreeString(excep.bstrDescription);
    SysFreeString(excep.bstrHelpFile);
    return hr;
}

} // namespace

DISPID dispid_of(IDispatch *object, const std::wstring &name)
{
    DISPID id = DISPID_UNKNOWN;
    LPOLESTR n = const_cast<LPOLESTR>(name.c_str());
    if (!object || FAILED(object->GetIDsOfNames(IID_NULL, &n, 1, LOCALE_USER_DEFAULT, &id))) return DISPID_UNKNOWN;
    return id;
}

HRESULT get_property(IDispatch *object, const std::wstring &name, Variant &out, const std::vector<Variant> &args)
{
    return invoke(object, name, DISPATCH_PROPERTYGET, args, false, &out);
}

HRESULT put_property(IDispatch *object, const std::wstring &name, const Variant &value, const std::vector<Variant> &args)
{
    std::vector<Variant> all = args;
    all.push_back(value);
    return invoke(object, name, DISPATCH_PROPERTYPUT, all, true, nullptr);
}

HRESULT putref_property(IDispatch *object, const std::wstring &name, IUnknown *value)
{
    ComPtr<IDispatch> disp = ComPtr<IUnknown>(value).as<IDispatch>(IID_IDispatch);
    return invoke(object, name, DISPATCH_PROPERTYPUTREF, {Variant::of_dispatch(disp.get())}, true, nullptr);
}

HRESULT call_method(IDispatch *object, const std::wstring &name, const std::vector<Variant> &args, Variant *result)
{
    return invoke(object, name, DISPATCH_METHOD, args, false, result);
}

long long as_integer(const Variant &v)
{
    Variant out;
    return v.convert(VT_I8, out) ? V_I8(out.get()) : 0;
}

double as_double(const Variant &v)
{
    Variant out;
    return v.convert(VT_R8, out) ? V_R8(out.get()) : 0.0;
}

std::wstring as_string(const Variant &v)
{
    Variant out;
    return v.convert(VT_BSTR, out) ? from_bstr(V_BSTR(out.get())) : std::wstring();
}

} // namespace tarn::host
