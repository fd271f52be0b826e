#include "runtime/nested_control.h"

#include "runtime/com_object.h"

namespace tarn {

namespace {
BOOL CALLBACK collect_window(HWND child, LPARAM list)
{
    reinterpret_cast<std::vector<HWND> *>(list)->push_back(child);
    return TRUE;
}
} // namespace

// The inner control's container: an in-place site whose window is the constituent's. It asks
// nothing of the outer control's own container.
class NestedControl::Site final : public ComObject<IOleClientSite, IOleInPlaceSite, IOleControlSite> {
public:
    explicit Site(NestedControl *owner) : owner_(owner) {}
    void detach() { owner_ = nullptr; }

    // IOleClientSite
    STDMETHODIMP SaveObject() override { return S_OK; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker **mk) override
    {
        if (mk) *mk = nullptr;
        return E_NOTIMPL;
    }
    STDMETHODIMP GetContainer(IOleContainer **c) override
    {
        if (c) *c = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP ShowObject() override { return S_OK; }
    STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

    // IOleWindow, IOleInPlaceSite
    STDMETHODIMP GetWindow(HWND *hwnd) override
    {
        if (!hwnd) return E_POINTER;
        *hwnd = owner_ ? owner_->hWnd() : nullptr;
        return *hwnd ? S_OK : E_FAIL;
    }
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP CanInPlaceActivate() override { return owner_ ? S_OK : S_FALSE; }
    STDMETHODIMP OnInPlaceActivate() override { return S_OK; }
    STDMETHODIMP OnUIActivate() override { return S_OK; }
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame **frame, IOleInPlaceUIWindow **doc, LPRECT pos, LPRECT clip,
                                  LPOLEINPLACEFRAMEINFO info) override
    {
        if (frame) *frame = nullptr;
        if (doc) *doc = nullptr;
        RECT r{};
        if (owner_ && owner_->hWnd()) GetClientRect(owner_->hWnd(), &r);
        if (pos) *pos = r;
        if (clip) *clip = r;
        if (info) {
            info->fMDIApp = FALSE;
            info->hwndFrame = owner_ ? owner_->hWnd() : nullptr;
            info->haccel = nullptr;
            info->cAccelEntries = 0;
        }
        return S_OK;
    }
    STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
    STDMETHODIMP OnUIDeactivate(BOOL) override { return S_OK; }
    STDMETHODIMP OnInPlaceDeactivate() override { return S_OK; }
    STDMETHODIMP DiscardUndoState() override { return S_OK; }
    STDMETHODIMP DeactivateAndUndo() override { return S_OK; }
    STDMETHODIMP OnPosRectChange(LPCRECT pos) override
    {
        // The inner control sizes itself (the number box to its font): it gets what it asks.
        if (!pos || !owner_) return E_POINTER;
        if (ComPtr<IOleInPlaceObject> ip = owner_->control_.as<IOleInPlaceObject>(IID_IOleInPlaceObject))
            ip->SetObjectRects(pos, pos);
        return S_OK;
    }

    // IOleControlSite
    STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
    STDMETHODIMP LockInPlaceActive(BOOL) override { return S_OK; }
    STDMETHODIMP GetExtendedControl(IDispatch **d) override
    {
        if (d) *d = nullptr;
        return E_NOTIMPL;
    }
    STDMETHODIMP TransformCoords(POINTL *, POINTF *, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP TranslateAccelerator(MSG *, DWORD) override { return S_FALSE; }
    STDMETHODIMP OnFocus(BOOL) override { return S_OK; }
    STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }

protected:
    void *query_more(REFIID iid) override
    {
        return iid == IID_IOleWindow ? static_cast<IOleWindow *>(static_cast<IOleInPlaceSite *>(this)) : nullptr;
    }

private:
    NestedControl *owner_;
};

NestedControl::NestedControl(std::wstring name, CreateFn create, float left, float top, float width, float height)
    : WindowedConstituent(std::move(name), L"STATIC", WS_VISIBLE | WS_CLIPCHILDREN | SS_NOTIFY, WS_EX_CONTROLPARENT,
                          left, top, width, height)
{
    if (!hwnd_ || !create) return;
    void *made = nullptr;
    if (FAILED(create(IID_IOleObject, &made)) || !made) return;
    auto *object = static_cast<IOleObject *>(made);
    control_ = ComPtr<IUnknown>::attach(object);
    // The library's controls are UserControls: their events reach us without a connection.
    inner_ = static_cast<UserControl *>(object);
    inner_->listen(this);
    site_ = new Site(this);
    step([&] { object->SetClientSite(site_); });
    step([&] {
        if (ComPtr<IPersistStreamInit> init = control_.as<IPersistStreamInit>(IID_IPersistStreamInit)) init->InitNew();
    });
    RECT r{};
    GetClientRect(hwnd_, &r);
    step([&] { object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site_, 0, hwnd_, &r); });
    watch_parts();
}

NestedControl::~NestedControl()
{
    unwatch_parts();
    if (inner_) inner_->listen(nullptr);
    if (ComPtr<IOleObject> object = control_.as<IOleObject>(IID_IOleObject)) {
        step([&] { object->Close(OLECLOSE_NOSAVE); });
        step([&] { object->SetClientSite(nullptr); });
    }
    control_.reset();
    inner_ = nullptr;
    if (site_) {
        site_->detach();
        site_->Release();
        site_ = nullptr;
    }
}

HWND NestedControl::ControlWindow() const
{
    HWND w = nullptr;
    if (ComPtr<IOleInPlaceObject> ip = control_.as<IOleInPlaceObject>(IID_IOleInPlaceObject)) ip->GetWindow(&w);
    return w;
}

void NestedControl::OnEvent(DISPID id, EventArgs &args)
{
    if (on_event) on_event(id, args);
}

void NestedControl::fit()
{
    RECT r{};
    GetClientRect(hwnd_, &r);
    if (ComPtr<IOleInPlaceObject> ip = control_.as<IOleInPlaceObject>(IID_IOleInPlaceObject)) ip->SetObjectRects(&r, &r);
}

void NestedControl::watch_parts()
{
    HWND root = ControlWindow();
    if (!root) return;
    watched_.push_back(root);
    EnumChildWindows(root, &collect_window, reinterpret_cast<LPARAM>(&watched_));
    for (HWND w : watched_) watch_part(w);
}

void NestedControl::unwatch_parts()
{
    for (HWND w : watched_) unwatch_part(w);
    watched_.clear();
}

bool NestedControl::on_window_message(UINT msg, WPARAM wp, LPARAM lp, LRESULT &result)
{
    switch (msg) {
    case WM_SIZE:
        step([&] { fit(); });
        return false;
    case WM_SETFOCUS:
        // The focus belongs inside, with the inner control (which hands it to its own part);
        // the constituent still reports it as its own.
        if (HWND inner = ControlWindow()) ::SetFocus(inner);
        return false;
    default:
        return false;
    }
}

} // namespace tarn
