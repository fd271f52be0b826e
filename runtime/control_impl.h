// ControlImpl<Self, Interface>: what turns a UserControl into a COM object. It adds the one
// reference count, QueryInterface over every interface of the control, IDispatch over the
// control's dual interface from the embedded type library, and the class factory's creation
// function. A control is written as
//
//   class cframe final : public ControlImpl<cframe, Icframe> { ... };
//   const ControlClass cframe::Class = {L"cframe", ..., &cframe::Create};
#pragma once
#include <new>

#include "runtime/byref_args.h"
#include "runtime/invoke_args.h"
#include "runtime/module.h"
#include "runtime/user_control.h"

namespace tarn {

// Invoke's answer to a caller whose arguments cannot be converted to the member's types: the
// call is skipped (resume next) rather than failing the caller. Unknown members and wrong
// argument counts are still reported, as by every automation object.
HRESULT MapInvokeResult(HRESULT hr, VARIANT *result);

template <class Self, class Interface> class ControlImpl : public UserControl, public Interface {
public:
    static HRESULT Create(REFIID iid, void **out)
    {
        if (!out) return E_POINTER;
        *out = nullptr;
        Self *self = new (std::nothrow) Self();
        if (!self) return E_OUTOFMEMORY;
        self->initialize();
        HRESULT hr = self->QueryInterface(iid, out);
        self->Release();
        return hr;
    }

    // IUnknown
    STDMETHODIMP QueryInterface(REFIID riid, void **ppv) override
    {
        if (!ppv) return E_POINTER;
        *ppv = nullptr;
        if (riid == IID_IUnknown) *ppv = identity();
        else if (riid == IID_IDispatch || riid == *Self::Class.iid) *ppv = static_cast<Interface *>(this);
        else *ppv = find_interface(riid);
        if (!*ppv) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
    STDMETHODIMP_(ULONG) Release() override
    {
        LONG r = InterlockedDecrement(&refs_);
        if (r == 0) {
            refs_ = 1; // calls made while shutting down must not delete the object again
            final_release();
            delete static_cast<Self *>(this);
        }
        return static_cast<ULONG>(r);
    }

    // IDispatch
    STDMETHODIMP GetTypeInfoCount(UINT *count) override
    {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo **info) override
    {
        if (!info) return E_POINTER;
        *info = nullptr;
        if (index != 0) return DISP_E_BADINDEX;
        return module::type_info(*Self::Class.iid, info);
    }
    STDMETHODIMP GetIDsOfNames(REFIID riid, LPOLESTR *names, UINT count, LCID, DISPID *ids) override
    {
        if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
        ComPtr<ITypeInfo> info;
        HRESULT hr = module::type_info(*Self::Class.iid, info.put());
        return FAILED(hr) ? hr : info->GetIDsOfNames(names, count, ids);
    }
    STDMETHODIMP Invoke(DISPID id, REFIID riid, LCID, WORD flags, DISPPARAMS *params, VARIANT *result,
                        EXCEPINFO *excep, UINT *arg_err) override
    {
        if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
        ComPtr<ITypeInfo> info;
        HRESULT hr = module::type_info(*Self::Class.iid, info.put());
        if (FAILED(hr)) return hr;
        DISPPARAMS none{};
        if (!params) params = &none;
        hr = CheckDispParams(info.get(), id, flags, *params, arg_err);
        if (FAILED(hr)) return MapInvokeResult(hr, result);
        ComPtr<IUnknown> alive(identity()); // a handler may release the host's last reference
        // A put's change notice and edit request name this DISPID when the key does not.
        DISPID outer = invoked_put_;
        invoked_put_ = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) ? id : DISPID_UNKNOWN;
        DispatchObjectArgs objects(info.get(), id, flags, *params);
        hr = InvokeBindingByRefVariants(info.get(), static_cast<Interface *>(this), id, flags, objects.params(), result,
                                        excep, arg_err);
        invoked_put_ = outer;
        return MapInvokeResult(hr, result);
    }

protected:
    ControlImpl() : UserControl(Self::Class) {}

private:
    LONG refs_ = 1;
};

} // namespace tarn
