#include "host/site.h"

#include "foundation/font_object.h"

namespace tarn::host {

Site::Site(HWND window, IOleInPlaceFrame *frame, AmbientSettings &ambient, CallLog &log)
    : window_(window), frame_(frame), ambient_(ambient), log_(log)
{
}

void Site::set_control(IUnknown *control) { control_ = control; }

STDMETHODIMP Site::QueryInterface(REFIID riid, void **ppv)
{
    if (!ppv) return E_POINTER;
    *ppv = nullptr;
    if (riid == IID_IUnknown || riid == IID_IOleClientSite) *ppv = static_cast<IOleClientSite *>(this);
    else if (riid == IID_IOleWindow || riid == IID_IOleInPlaceSite) *ppv = static_cast<IOleInPlaceSite *>(this);
    else if (riid == IID_IOleControlSite) *ppv = static_cast<IOleControlSite *>(this);
    else if (riid == IID_IDispatch && ambient_.supplied) *ppv = static_cast<IDispatch *>(this);
    else if (riid == IID_IPropertyNotifySink) *ppv = static_cast<IPropertyNotifySink *>(this);
    else if (riid == __uuidof(ITarnChangeKeySink)) *ppv = static_cast<ITarnChangeKeySink *>(this);
    else if (riid == IID_IAdviseSink) *ppv = static_cast<IAdviseSink *>(this);
    else if (riid == IID_ISimpleFrameSite) *ppv = static_cast<ISimpleFrameSite *>(this);
    else return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

// ---------------------------------------------------------------- IOleClientSite

STDMETHODIMP Site::SaveObject()
{
    log_.hit(L"IOleClientSite::SaveObject");
    return S_OK;
}
STDMETHODIMP Site::GetMoniker(DWORD, DWORD, IMoniker **mk)
{
    log_.hit(L"IOleClientSite::GetMoniker");
    if (mk) *mk = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP Site::GetContainer(IOleContainer **c)
{
    log_.hit(L"IOleClientSite::GetContainer");
    if (c) *c = nullptr;
    return E_NOINTERFACE;
}
STDMETHODIMP Site::ShowObject()
{
    log_.hit(L"IOleClientSite::ShowObject");
    return S_OK;
}
STDMETHODIMP Site::OnShowWindow(BOOL)
{
    log_.hit(L"IOleClientSite::OnShowWindow");
    return S_OK;
}
STDMETHODIMP Site::RequestNewObjectLayout()
{
    log_.hit(L"IOleClientSite::RequestNewObjectLayout");
    return S_OK;
}

// ---------------------------------------------------------------- IOleInPlaceSite

STDMETHODIMP Site::GetWindow(HWND *hwnd)
{
    log_.hit(L"IOleInPlaceSite::GetWindow");
    if (!hwnd) return E_POINTER;
    *hwnd = window_;
    return S_OK;
}
STDMETHODIMP Site::ContextSensitiveHelp(BOOL)
{
    log_.hit(L"IOleInPlaceSite::ContextSensitiveHelp");
    return E_NOTIMPL;
}
STDMETHODIMP Site::CanInPlaceActivate()
{
    log_.hit(L"IOleInPlaceSite::CanInPlaceActivate");
    return S_OK;
}
STDMETHODIMP Site::OnInPlaceActivate()
{
    log_.hit(L"IOleInPlaceSite::OnInPlaceActivate");
    return S_OK;
}
STDMETHODIMP Site::OnUIActivate()
{
    log_.hit(L"IOleInPlaceSite::OnUIActivate");
    return S_OK;
}
STDMETHODIMP Site::GetWindowContext(IOleInPlaceFrame **frame, IOleInPlaceUIWindow **doc, LPRECT pos, LPRECT clip,
                                    LPOLEINPLACEFRAMEINFO info)
{
    log_.hit(L"IOleInPlaceSite::GetWindowContext");
    if (!frame || !doc || !pos || !clip || !info) return E_POINTER;
    copy_out(frame_.get(), frame);
    *doc = nullptr;
    *pos = pos_;
    GetClientRect(window_, clip);
    info->fMDIApp = FALSE;
    info->hwndFrame = window_;
    info->haccel = nullptr;
    info->cAccelEntries = 0;
    return S_OK;
}
STDMETHODIMP Site::Scroll(SIZE)
{
    log_.hit(L"IOleInPlaceSite::Scroll");
    return E_NOTIMPL;
}
STDMETHODIMP Site::OnUIDeactivate(BOOL)
{
    log_.hit(L"IOleInPlaceSite::OnUIDeactivate");
    return S_OK;
}
STDMETHODIMP Site::OnInPlaceDeactivate()
{
    log_.hit(L"IOleInPlaceSite::OnInPlaceDeactivate");
    return S_OK;
}
STDMETHODIMP Site::DiscardUndoState()
{
    log_.hit(L"IOleInPlaceSite::DiscardUndoState");
    return S_OK;
}
STDMETHODIMP Site::DeactivateAndUndo()
{
    log_.hit(L"IOleInPlaceSite::DeactivateAndUndo");
    return S_OK;
}
STDMETHODIMP Site::OnPosRectChange(LPCRECT pos)
{
    log_.hit(L"IOleInPlaceSite::OnPosRectChange");
    if (!pos) return E_POINTER;
    if (!honour_position_requests) return S_OK;
    pos_ = *pos;
    if (ComPtr<IOleInPlaceObject> ipo = control_.as<IOleInPlaceObject>(IID_IOleInPlaceObject))
        ipo->SetObjectRects(&pos_, &pos_);
    return S_OK;
}

// ---------------------------------------------------------------- IOleControlSite

STDMETHODIMP Site::OnControlInfoChanged()
{
    log_.hit(L"IOleControlSite::OnControlInfoChanged");
    return S_OK;
}
STDMETHODIMP Site::LockInPlaceActive(BOOL)
{
    log_.hit(L"IOleControlSite::LockInPlaceActive");
    return S_OK;
}
STDMETHODIMP Site::GetExtendedControl(IDispatch **disp)
{
    log_.hit(L"IOleControlSite::GetExtendedControl");
    if (disp) *disp = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP Site::TransformCoords(POINTL *, POINTF *, DWORD)
{
    log_.hit(L"IOleControlSite::TransformCoords");
    return E_NOTIMPL;
}
STDMETHODIMP Site::TranslateAccelerator(MSG *, DWORD)
{
    log_.hit(L"IOleControlSite::TranslateAccelerator");
    return S_FALSE;
}
STDMETHODIMP Site::OnFocus(BOOL got)
{
    log_.hit(got ? L"IOleControlSite::OnFocus(TRUE)" : L"IOleControlSite::OnFocus(FALSE)");
    return S_OK;
}
STDMETHODIMP Site::ShowPropertyFrame()
{
    log_.hit(L"IOleControlSite::ShowPropertyFrame");
    return property_frame_answer;
}

// ---------------------------------------------------------------- ambient properties

STDMETHODIMP Site::GetTypeInfoCount(UINT *count)
{
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
}
STDMETHODIMP Site::GetTypeInfo(UINT, LCID, ITypeInfo **info)
{
    if (info) *info = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP Site::GetIDsOfNames(REFIID, LPOLESTR *, UINT, LCID, DISPID *) { return E_NOTIMPL; }

STDMETHODIMP Site::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS *, VARIANT *result, EXCEPINFO *, UINT *)
{
    ++ambient_reads;
    if (!(flags & DISPATCH_PROPERTYGET) || !result) return DISP_E_MEMBERNOTFOUND;
    VariantInit(result);
    switch (id) {
    case DISPID_AMBIENT_USERMODE:
        V_VT(result) = VT_BOOL;
        V_BOOL(result) = ambient_.user_mode ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    case DISPID_AMBIENT_FONT:
        if (!ambient_.font) return DISP_E_MEMBERNOTFOUND;
        V_VT(result) = VT_DISPATCH;
        V_DISPATCH(result) = ambient_.font.get();
        ambient_.font->AddRef();
        return S_OK;
    case DISPID_AMBIENT_BACKCOLOR:
        V_VT(result) = VT_I4;
        V_I4(result) = static_cast<LONG>(ambient_.back_color);
        return S_OK;
    case DISPID_AMBIENT_FORECOLOR:
        V_VT(result) = VT_I4;
        V_I4(result) = static_cast<LONG>(ambient_.fore_color);
        return S_OK;
    case DISPID_AMBIENT_DISPLAYNAME:
        V_VT(result) = VT_BSTR;
        V_BSTR(result) = to_bstr(ambient_.display_name);
        return S_OK;
    case DISPID_AMBIENT_DISPLAYASDEFAULT:
        V_VT(result) = VT_BOOL;
        V_BOOL(result) = ambient_.display_as_default ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    case DISPID_AMBIENT_MESSAGEREFLECT:
    case DISPID_AMBIENT_UIDEAD:
        V_VT(result) = VT_BOOL;
        V_BOOL(result) = VARIANT_FALSE;
        return S_OK;
    default:
        return DISP_E_MEMBERNOTFOUND;
    }
}

// ---------------------------------------------------------------- change notices

STDMETHODIMP Site::OnChanged(DISPID id)
{
    log_.changed_ids.push_back(id);
    return S_OK;
}
STDMETHODIMP Site::OnRequestEdit(DISPID id)
{
    edit_requests.push_back(id);
    return request_edit_answer;
}
STDMETHODIMP Site::OnChangedKey(LPCOLESTR key)
{
    log_.changes.push_back(key ? key : L"");
    return S_OK;
}

// ---------------------------------------------------------------- ISimpleFrameSite

STDMETHODIMP Site::PreMessageFilter(HWND, UINT msg, WPARAM, LPARAM, LRESULT *result, DWORD *cookie)
{
    if (!result || !cookie) return E_POINTER;
    filtered_messages.push_back(msg);
    if (msg == answered_in_filter) {
        *result = 0;
        return S_FALSE;
    }
    *cookie = ++next_cookie_;
    pending_filters_.push_back({*cookie, msg});
    return S_OK;
}

STDMETHODIMP Site::PostMessageFilter(HWND, UINT msg, WPARAM, LPARAM, LRESULT *result, DWORD cookie)
{
    if (!result) return E_POINTER;
    for (auto it = pending_filters_.begin(); it != pending_filters_.end(); ++it)
        if (it->first == cookie) {
            if (it->second != msg) ++unpaired_filters;
            pending_filters_.erase(it);
            return S_OK;
        }
    ++unpaired_filters;
    return S_OK;
}

// ---------------------------------------------------------------- events

STDMETHODIMP EventSink::GetTypeInfoCount(UINT *count)
{
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
}
STDMETHODIMP EventSink::GetTypeInfo(UINT, LCID, ITypeInfo **info)
{
    if (info) *info = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP EventSink::GetIDsOfNames(REFIID, LPOLESTR *, UINT, LCID, DISPID *) { return E_NOTIMPL; }

STDMETHODIMP EventSink::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS *params, VARIANT *result, EXCEPINFO *, UINT *)
{
    EventRecord rec;
    Bstr name;
    UINT got = 0;
    if (events_ && SUCCEEDED(events_->GetNames(id, name.put(), 1, &got)) && got == 1) rec.name = name.str();
    else rec.name = L"#" + std::to_wstring(id);
    if (log_.on_event) log_.on_event(rec.name, params);
    if (params)
        for (UINT i = params->cArgs; i-- > 0;) {
            Variant v;
            VariantCopyInd(v.put(), &params->rgvarg[i]);
            rec.args.push_back(std::move(v));
        }
    log_.events.push_back(std::move(rec));
    if (result) VariantInit(result);
    return S_OK;
}

} // namespace tarn::host
