// UserControl as an OLE object: the client site, verbs and in-place activation with a window
// of its own, extents, advise sinks, the control interfaces and quick activation.
#include <algorithm>

#include "foundation/trap.h"
#include "runtime/guarded.h"
#include "runtime/mnemonic.h"
#include "runtime/user_control.h"

namespace tarn {

namespace {

int screen_dpi(int index)
{
    HDC dc = GetDC(nullptr);
    int dpi = dc ? GetDeviceCaps(dc, index) : 96;
    if (dc) ReleaseDC(nullptr, dc);
    return dpi > 0 ? dpi : 96;
}

bool same_keys(const std::vector<ACCEL> &a, const std::vector<ACCEL> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const ACCEL &x, const ACCEL &y) {
        return x.fVirt == y.fVirt && x.key == y.key && x.cmd == y.cmd;
    });
}

} // namespace

DWORD MiscStatusOf(const ControlClass &cls)
{
    DWORD misc = cls.misc_status;
    if (misc & OLEMISC_INVISIBLEATRUNTIME) misc |= OLEMISC_ALWAYSRUN;
    return misc;
}

// ---------------------------------------------------------------- IOleObject

STDMETHODIMP UserControl::SetClientSite(IOleClientSite *site)
{
    return guarded([&] {
        site_ = site;
        ambient_.set_site(site);
        if (!site) inplace_site_.reset();
        // A simple frame hands its messages to the site's filters (ISimpleFrameSite).
        simple_frame_site_.reset();
        if (site && (class_.misc_status & OLEMISC_SIMPLEFRAME))
            simple_frame_site_ = site_.as<ISimpleFrameSite>(IID_ISimpleFrameSite);
        return S_OK;
    });
}

STDMETHODIMP UserControl::GetClientSite(IOleClientSite **site) { return copy_out(site_.get(), site); }

STDMETHODIMP UserControl::SetHostNames(LPCOLESTR, LPCOLESTR) { return S_OK; }

STDMETHODIMP UserControl::Close(DWORD save)
{
    return guarded([&] {
        InPlaceDeactivate();
        if (save == OLECLOSE_SAVEIFDIRTY && dirty_ && site_) step([&] { site_->SaveObject(); });
        if (advise_holder_) step([&] { advise_holder_->SendOnClose(); });
        return S_OK;
    });
}

STDMETHODIMP UserControl::SetMoniker(DWORD, IMoniker *) { return E_NOTIMPL; }
STDMETHODIMP UserControl::GetMoniker(DWORD, DWORD, IMoniker **mk)
{
    if (mk) *mk = nullptr;
    return E_NOTIMPL;
}
STDMETHODIMP UserControl::InitFromData(IDataObject *, BOOL, DWORD) { return E_NOTIMPL; }
STDMETHODIMP UserControl::GetClipboardData(DWORD, IDataObject **data)
{
    if (data) *data = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP UserControl::DoVerb(LONG verb, LPMSG, IOleClientSite *site, LONG, HWND parent, LPCRECT pos)
{
    return guarded([&]() -> HRESULT {
        if (!site_ && site) SetClientSite(site);
        switch (verb) {
        case OLEIVERB_PRIMARY:
        case OLEIVERB_SHOW:
        case OLEIVERB_INPLACEACTIVATE:
        case OLEIVERB_UIACTIVATE:
            return activate(verb, parent, pos);
        case OLEIVERB_HIDE:
            UIDeactivate();
            if (hwnd_) ShowWindow(hwnd_, SW_HIDE);
            step([&] { Hide(); });
            return S_OK;
        case OLEIVERB_DISCARDUNDOSTATE:
            return S_OK;
        case OLEIVERB_PROPERTIES:
        case kPropertiesVerb:
            if (IsVisibleClass(class_)) return show_property_frame(parent);
            return verb < 0 ? E_NOTIMPL : OLEOBJ_S_INVALIDVERB;
        default:
            return verb < 0 ? E_NOTIMPL : OLEOBJ_S_INVALIDVERB;
        }
    });
}

HRESULT UserControl::activate(LONG verb, HWND parent_hint, LPCRECT pos_hint)
{
    if (!in_place_) {
        if (!inplace_site_) {
            if (!site_) return E_UNEXPECTED;
            HRESULT hr = site_->QueryInterface(IID_IOleInPlaceSite, inplace_site_.put_void());
            if (FAILED(hr) || !inplace_site_) return hr == S_OK ? E_NOINTERFACE : hr;
        }
        if (inplace_site_->CanInPlaceActivate() != S_OK) return E_FAIL;
        inplace_site_->OnInPlaceActivate();
        in_place_ = true;
        HWND parent = nullptr;
        if (FAILED(inplace_site_->GetWindow(&parent)) || !parent) parent = parent_hint;
        RECT pos = pos_hint ? *pos_hint : RECT{0, 0, size_.cx, size_.cy};
        RECT clip = pos;
        ComPtr<IOleInPlaceFrame> frame;
        ComPtr<IOleInPlaceUIWindow> doc;
        OLEINPLACEFRAMEINFO info{};
        info.cb = sizeof info;
        inplace_site_->GetWindowContext(frame.put(), doc.put(), &pos, &clip, &info);
        if (info.haccel) DestroyAcceleratorTable(info.haccel);
        int w = pos.right - pos.left, h = pos.bottom - pos.top;
        DWORD style = WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | (CanGetFocus() ? WS_TABSTOP : 0) | WindowStyle();
        hwnd_ = CreateWindowExW(0, window_class(), L"", style,
                                pos.left, pos.top, w > 0 ? w : 0, h > 0 ? h : 0, parent, nullptr, module::instance(),
                                this);
        if (!hwnd_) {
            in_place_ = false;
            inplace_site_->OnInPlaceDeactivate();
            return E_FAIL;
        }
        for (WindowedConstituent *c : windowed_) step([&] { c->attach(hwnd_); });
        RECT client{};
        GetClientRect(hwnd_, &client);
        set_size_px(client.right, client.bottom, true);
        ShowWindow(hwnd_, SW_SHOWNA);
        step([&] { Show(); });
    } else if (hwnd_ && !IsWindowVisible(hwnd_)) {
        ShowWindow(hwnd_, SW_SHOWNA);
        step([&] { Show(); });
    }
    if ((verb == OLEIVERB_UIACTIVATE || verb == OLEIVERB_PRIMARY) && CanGetFocus()) {
        HRESULT hr = ui_activate();
        if (hwnd_ && !WindowWithin(hwnd_, GetFocus())) SetFocus(hwnd_);
        return hr;
    }
    return S_OK;
}

HRESULT UserControl::ui_activate()
{
    if (ui_active_ || !inplace_site_) return S_OK;
    ui_active_ = true;
    inplace_site_->OnUIActivate();
    announce_active(true);
    return S_OK;
}

void UserControl::announce_active(bool active)
{
    ComPtr<IOleInPlaceFrame> frame;
    ComPtr<IOleInPlaceUIWindow> doc;
    RECT pos{}, clip{};
    OLEINPLACEFRAMEINFO info{};
    info.cb = sizeof info;
    if (FAILED(inplace_site_->GetWindowContext(frame.put(), doc.put(), &pos, &clip, &info))) return;
    if (info.haccel) DestroyAcceleratorTable(info.haccel);
    // Taken back in the reverse order of giving.
    if (active) {
        if (frame) frame->SetActiveObject(this, nullptr);
        if (doc) doc->SetActiveObject(this, nullptr);
    } else {
        if (doc) doc->SetActiveObject(nullptr, nullptr);
        if (frame) frame->SetActiveObject(nullptr, nullptr);
    }
}

STDMETHODIMP UserControl::EnumVerbs(IEnumOLEVERB **verbs)
{
    if (!verbs) return E_POINTER;
    return OleRegEnumVerbs(*class_.clsid, verbs);
}

STDMETHODIMP UserControl::Update() { return S_OK; }
STDMETHODIMP UserControl::IsUpToDate() { return S_OK; }

STDMETHODIMP UserControl::GetUserClassID(CLSID *clsid)
{
    if (!clsid) return E_POINTER;
    *clsid = *class_.clsid;
    return S_OK;
}

STDMETHODIMP UserControl::GetUserType(DWORD form, LPOLESTR *name)
{
    if (!name) return E_POINTER;
    return OleRegGetUserType(*class_.clsid, form, name);
}

STDMETHODIMP UserControl::SetExtent(DWORD aspect, SIZEL *size)
{
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    if (!size) return E_POINTER;
    return guarded([&] {
        // Negative extents are taken as empty; the control lays itself out for what it gets.
        int cx = himetric_to_px(size->cx > 0 ? size->cx : 0, screen_dpi(LOGPIXELSX));
        int cy = himetric_to_px(size->cy > 0 ? size->cy : 0, screen_dpi(LOGPIXELSY));
        set_size_px(cx, cy, true);
        return S_OK;
    });
}

STDMETHODIMP UserControl::GetExtent(DWORD aspect, SIZEL *size)
{
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    if (!size) return E_POINTER;
    size->cx = px_to_himetric(size_.cx, screen_dpi(LOGPIXELSX));
    size->cy = px_to_himetric(size_.cy, screen_dpi(LOGPIXELSY));
    return S_OK;
}

STDMETHODIMP UserControl::Advise(IAdviseSink *sink, DWORD *cookie)
{
    if (!cookie) return E_POINTER;
    *cookie = 0;
    return guarded([&]() -> HRESULT {
        if (!advise_holder_) {
            HRESULT hr = CreateOleAdviseHolder(advise_holder_.put());
            if (FAILED(hr)) return hr;
        }
        return advise_holder_->Advise(sink, cookie);
    });
}

STDMETHODIMP UserControl::Unadvise(DWORD cookie)
{
    return advise_holder_ ? advise_holder_->Unadvise(cookie) : OLE_E_NOCONNECTION;
}

STDMETHODIMP UserControl::EnumAdvise(IEnumSTATDATA **advise)
{
    if (!advise) return E_POINTER;
    *advise = nullptr;
    return advise_holder_ ? advise_holder_->EnumAdvise(advise) : E_FAIL;
}

STDMETHODIMP UserControl::GetMiscStatus(DWORD aspect, DWORD *status)
{
    if (!status) return E_POINTER;
    *status = aspect == DVASPECT_CONTENT ? MiscStatusOf(class_) : 0;
    return S_OK;
}

STDMETHODIMP UserControl::SetColorScheme(LOGPALETTE *) { return E_NOTIMPL; }

// ---------------------------------------------------------------- IOleInPlaceObject

STDMETHODIMP UserControl::GetWindow(HWND *hwnd)
{
    if (!hwnd) return E_POINTER;
    *hwnd = hwnd_;
    return hwnd_ ? S_OK : E_FAIL;
}

STDMETHODIMP UserControl::ContextSensitiveHelp(BOOL) { return E_NOTIMPL; }

STDMETHODIMP UserControl::InPlaceDeactivate()
{
    return guarded([&] {
        if (!in_place_) return S_OK;
        UIDeactivate();
        in_place_ = false;
        if (hwnd_) {
            HWND h = hwnd_;
            step([&] { Hide(); });
            park_constituents();
            DestroyWindow(h); // WM_NCDESTROY clears hwnd_
            hwnd_ = nullptr;
        }
        if (inplace_site_) {
            ComPtr<IOleInPlaceSite> s = inplace_site_;
            inplace_site_.reset();
            step([&] { s->OnInPlaceDeactivate(); });
        }
        return S_OK;
    });
}

STDMETHODIMP UserControl::UIDeactivate()
{
    return guarded([&] {
        if (!ui_active_) return S_OK;
        ui_active_ = false;
        if (!inplace_site_) return S_OK;
        announce_active(false);
        inplace_site_->OnUIDeactivate(FALSE);
        return S_OK;
    });
}

STDMETHODIMP UserControl::SetObjectRects(LPCRECT pos, LPCRECT)
{
    if (!pos) return E_POINTER;
    return guarded([&] {
        int w = pos->right - pos->left, h = pos->bottom - pos->top;
        if (w < 0) w = 0;
        if (h < 0) h = 0;
        if (hwnd_) {
            // The window's WM_SIZE gives the control its client area.
            SetWindowPos(hwnd_, nullptr, pos->left, pos->top, w, h, SWP_NOZORDER | SWP_NOACTIVATE);
            RECT client{};
            GetClientRect(hwnd_, &client);
            set_size_px(client.right, client.bottom, true);
        } else {
            set_size_px(w, h, true);
        }
        return S_OK;
    });
}

STDMETHODIMP UserControl::ReactivateAndUndo() { return E_NOTIMPL; }

// ---------------------------------------------------------------- IOleInPlaceActiveObject

STDMETHODIMP UserControl::TranslateAccelerator(LPMSG) { return S_FALSE; }
STDMETHODIMP UserControl::OnFrameWindowActivate(BOOL) { return S_OK; }
STDMETHODIMP UserControl::OnDocWindowActivate(BOOL) { return S_OK; }
STDMETHODIMP UserControl::ResizeBorder(LPCRECT, IOleInPlaceUIWindow *, BOOL) { return S_OK; }
STDMETHODIMP UserControl::EnableModeless(BOOL) { return S_OK; }

// ---------------------------------------------------------------- IOleControl

STDMETHODIMP UserControl::GetControlInfo(CONTROLINFO *info)
{
    if (!info) return E_POINTER;
    info->cb = sizeof *info;
    info->hAccel = nullptr;
    info->cAccel = 0;
    info->dwFlags = 0;
    return guarded([&] {
        // The table stays the control's: rebuilt only when its keys change, destroyed with
        // the control.
        std::vector<ACCEL> keys = keys_claimed();
        if (!same_keys(keys, accel_keys_)) {
            if (accel_) DestroyAcceleratorTable(accel_);
            accel_ = keys.empty() ? nullptr : CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size()));
            accel_keys_ = keys;
        }
        if (accel_) {
            info->hAccel = accel_;
            info->cAccel = static_cast<USHORT>(accel_keys_.size());
        }
        return S_OK;
    });
}

std::vector<ACCEL> UserControl::keys_claimed()
{
    std::vector<ACCEL> keys;
    wchar_t key = MnemonicOf(Caption());
    SHORT vk = key ? VkKeyScanW(key) : -1;
    if (vk != -1) keys.push_back({static_cast<BYTE>(FVIRTKEY | FALT), static_cast<WORD>(vk & 0xFF), 0});
    for (ACCEL a : ControlKeys()) {
        a.cmd = 1;
        keys.push_back(a);
    }
    return keys;
}

bool UserControl::is_control_key(const MSG &msg)
{
    if (msg.message != WM_KEYDOWN && msg.message != WM_SYSKEYDOWN) return false;
    const bool alt = msg.message == WM_SYSKEYDOWN;
    bool caption = false, own = false;
    for (const ACCEL &a : keys_claimed()) {
        if (a.key != msg.wParam || ((a.fVirt & FALT) != 0) != alt) continue;
        (a.cmd ? own : caption) = true;
    }
    return own && !caption;
}

STDMETHODIMP UserControl::OnMnemonic(MSG *msg)
{
    // The caption's mnemonic whatever the message (containers differ in what they pass),
    // unless it names one of the control's own keys.
    step([&] {
        if (msg && is_control_key(*msg)) ControlKey(*msg);
        else Mnemonic();
    });
    return S_OK;
}

void UserControl::ControlInfoChanged()
{
    if (read_step<bool>([&] { return same_keys(keys_claimed(), accel_keys_); }, false)) return;
    if (ComPtr<IOleControlSite> cs = site_.as<IOleControlSite>(IID_IOleControlSite)) step([&] { cs->OnControlInfoChanged(); });
}

STDMETHODIMP UserControl::OnAmbientPropertyChange(DISPID id)
{
    step([&] { AmbientChanged(id); });
    return S_OK;
}

STDMETHODIMP UserControl::FreezeEvents(BOOL freeze)
{
    if (freeze) ++freeze_count_;
    else if (freeze_count_ > 0) --freeze_count_;
    return S_OK;
}

// ---------------------------------------------------------------- IQuickActivate

STDMETHODIMP UserControl::QuickActivate(QACONTAINER *container, QACONTROL *control)
{
    if (!container || !control) return E_POINTER;
    if (container->cbSize < sizeof(QACONTAINER) || control->cbSize < sizeof(QACONTROL)) return E_INVALIDARG;
    return guarded([&] {
        SetClientSite(container->pClientSite);
        if (container->pAdviseSink) SetAdvise(DVASPECT_CONTENT, 0, container->pAdviseSink);
        control->dwMiscStatus = MiscStatusOf(class_);
        control->dwViewStatus = VIEWSTATUS_OPAQUE;
        control->dwPointerActivationPolicy = 0;
        control->dwEventCookie = 0;
        control->dwPropNotifyCookie = 0;
        if (container->pUnkEventSink && class_.events) events_cp_.Advise(container->pUnkEventSink, &control->dwEventCookie);
        if (container->pPropertyNotifySink)
            notify_cp_.Advise(container->pPropertyNotifySink, &control->dwPropNotifyCookie);
        return S_OK;
    });
}

STDMETHODIMP UserControl::SetContentExtent(LPSIZEL size) { return SetExtent(DVASPECT_CONTENT, size); }
STDMETHODIMP UserControl::GetContentExtent(LPSIZEL size) { return GetExtent(DVASPECT_CONTENT, size); }

} // namespace tarn
