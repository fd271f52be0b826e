// UserControl's class information and connection points: the coclass and its event
// interface for containers that wire events, and the two points they advise on.
#include "runtime/guarded.h"
#include "runtime/user_control.h"

namespace tarn {

STDMETHODIMP UserControl::GetClassInfo(ITypeInfo **info)
{
    if (!info) return E_POINTER;
    *info = nullptr;
    ComPtr<ITypeLib> lib;
    HRESULT hr = module::type_library(lib.put());
    return FAILED(hr) ? hr : lib->GetTypeInfoOfGuid(*class_.clsid, info);
}

STDMETHODIMP UserControl::GetGUID(DWORD kind, GUID *guid)
{
    if (!guid) return E_POINTER;
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID || !class_.events) {
        *guid = GUID_NULL;
        return E_INVALIDARG;
    }
    *guid = *class_.events;
    return S_OK;
}

STDMETHODIMP UserControl::EnumConnectionPoints(IEnumConnectionPoints **points)
{
    if (!points) return E_POINTER;
    *points = nullptr;
    return guarded([&] {
        std::vector<IConnectionPoint *> list;
        if (class_.events) list.push_back(&events_cp_);
        list.push_back(&notify_cp_);
        *points = NewConnectionPointEnumerator(identity(), list);
        return *points ? S_OK : E_OUTOFMEMORY;
    });
}

STDMETHODIMP UserControl::FindConnectionPoint(REFIID iid, IConnectionPoint **point)
{
    if (!point) return E_POINTER;
    *point = nullptr;
    if (class_.events && iid == *class_.events) *point = &events_cp_;
    else if (iid == IID_IPropertyNotifySink) *point = &notify_cp_;
    else return CONNECT_E_NOCONNECTION;
    (*point)->AddRef();
    return S_OK;
}

// ---------------------------------------------------------------- IObjectSafety

namespace {
// Scripts may call the control's dispatch interfaces; a page or a script may initialise it
// from any of its persistence forms.
DWORD safety_supported(REFIID iid, const ControlClass &cls)
{
    if (iid == IID_IDispatch || iid == *cls.iid) return INTERFACESAFE_FOR_UNTRUSTED_CALLER;
    if (iid == IID_IPersistPropertyBag || iid == IID_IPersistStreamInit || iid == IID_IPersistStorage ||
        iid == IID_IPersistStream)
        return INTERFACESAFE_FOR_UNTRUSTED_DATA;
    return 0;
}
} // namespace

STDMETHODIMP UserControl::GetInterfaceSafetyOptions(REFIID iid, DWORD *supported, DWORD *enabled)
{
    if (!supported || !enabled) return E_POINTER;
    *supported = safety_supported(iid, class_);
    *enabled = safety_enabled_ & *supported;
    return *supported ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP UserControl::SetInterfaceSafetyOptions(REFIID iid, DWORD mask, DWORD enabled)
{
    DWORD supported = safety_supported(iid, class_);
    if (!supported) return E_NOINTERFACE;
    if (mask & ~supported) return E_FAIL; // asked to be safe for something it is not
    safety_enabled_ = (safety_enabled_ & ~mask) | (enabled & mask);
    return S_OK;
}

HRESULT MapInvokeResult(HRESULT hr, VARIANT *result)
{
    // OLE_COLOR is unsigned and OLE_HANDLE a machine int in the type library, but automation
    // clients (VB, VBA, scripts) know both as Long and some cannot handle an unsigned value or
    // an int at all: hand them over as the same 32 bits in a Long.
    if (SUCCEEDED(hr) && result && (V_VT(result) == VT_UI4 || V_VT(result) == VT_INT || V_VT(result) == VT_UINT))
        V_VT(result) = VT_I4;
    switch (hr) {
    case DISP_E_TYPEMISMATCH:
    case DISP_E_OVERFLOW:
    case DISP_E_BADVARTYPE:
    case E_NOINTERFACE: // an object of the wrong kind (a font given where a picture goes)
        // An argument that cannot become the member's type: the call is skipped.
        if (result) VariantInit(result);
        return S_OK;
    default:
        return hr;
    }
}

} // namespace tarn
