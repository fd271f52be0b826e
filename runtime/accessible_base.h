// AccessibleBase: what every accessible object of the library answers alike. IAccessible is a
// dual interface, but clients use its vtable: IDispatch is found and late binding not offered.
// The object counts towards the module's lifetime.
#pragma once
#include <windows.h>
#include <oleacc.h>

#include "runtime/com_object.h"
#include "runtime/module.h"

namespace tarn {

class AccessibleBase : public ComObject<IAccessible> {
public:
    void *query_more(REFIID riid) override { return riid == IID_IDispatch ? static_cast<IAccessible *>(this) : nullptr; }

    STDMETHODIMP GetTypeInfoCount(UINT *n) override
    {
        if (!n) return E_POINTER;
        *n = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo **info) override
    {
        if (info) *info = nullptr;
        return E_NOTIMPL;
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR *, UINT, LCID, DISPID *) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS *, VARIANT *, EXCEPINFO *, UINT *) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP put_accValue(VARIANT, BSTR) override { return E_NOTIMPL; }

private:
    module::ObjectCount count_;
};

} // namespace tarn
