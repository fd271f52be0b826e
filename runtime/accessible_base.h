// What every accessible object of the library answers alike: IAccessible is a dual interface,
// but clients use its vtable, so late binding is not offered, and no object takes a new name
// or value from a client.
#pragma once
#include <windows.h>
#include <oleacc.h>

#include "runtime/com_object.h"
#include "runtime/module.h"

namespace tarn {

class AccessibleBase : public ComObject<IAccessible> {
public:
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

protected:
    void *query_more(REFIID riid) override { return riid == IID_IDispatch ? static_cast<IAccessible *>(this) : nullptr; }
    static bool is_self(const VARIANT &child) { return V_VT(&child) == VT_I4 && V_I4(&child) == CHILDID_SELF; }

private:
    module::ObjectCount count_;
};

} // namespace tarn
