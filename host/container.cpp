#include "host/container.h"

#include "runtime/com_object.h"
#include "runtime/guarded.h"

#include <algorithm>

namespace tarn::host {

// The container's frame window as OLE sees it: the control tells it which object is active.
class Frame final : public ComObject<IOleInPlaceFrame> {
public:
    Frame(HWND hwnd, CallLog &log) : hwnd_(hwnd), log_(log) {}

    void *query_more(REFIID riid) override // the interfaces IOleInPlaceFrame extends
    {
        if (riid == IID_IOleWindow || riid == IID_IOleInPlaceUIWindow) return static_cast<IOleInPlaceFrame *>(this);
        return nullptr;
    }
    STDMETHODIMP GetWindow(HWND *hwnd) override
    {
        if (!hwnd) return E_POINTER;
        *hwnd = hwnd_;
        return S_OK;
    }
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP GetBorder(LPRECT) override
    {
        log_.hit(L"IOleInPlaceFrame::GetBorder");
        return INPLACE_E_NOTOOLSPACE;
    }
    STDMETHODIMP RequestBorderSpace(LPCBORDERWIDTHS) override
    {
        log_.hit(L"IOleInPlaceFrame::RequestBorderSpace");
        return INPLACE_E_NOTOOLSPACE;
    }
    STDMETHODIMP SetBorderSpace(LPCBORDERWIDTHS) override
    {
        log_.hit(L"IOleInPlaceFrame::SetBorderSpace");
        return S_OK;
    }
    STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject *object, LPCOLESTR) override
    {
        log_.hit(object ? L"IOleInPlaceFrame::SetActiveObject" : L"IOleInPlaceFrame::SetActiveObject(NULL)");
        active_ = object;
        return S_OK;
    }
    STDMETHODIMP InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override
    {
        log_.hit(L"IOleInPlaceFrame::InsertMenus");
        return E_NOTIMPL;
    }
    STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) override
    {
        log_.hit(L"IOleInPlaceFrame::SetMenu");
        return S_OK;
    }
    STDMETHODIMP RemoveMenus(HMENU) override
    {
        log_.hit(L"IOleInPlaceFrame::RemoveMenus");
        return S_OK;
    }
    STDMETHODIMP SetStatusText(LPCOLESTR) override
    {
        log_.hit(L"IOleInPlaceFrame::SetStatusText");
        return S_OK;
    }
    STDMETHODIMP EnableModeless(BOOL) override
    {
        log_.hit(L"IOleInPlaceFrame::EnableModeless");
        return S_OK;
    }
    STDMETHODIMP TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

    ComPtr<IOleInPlaceActiveObject> active_;

private:
    HWND hwnd_;
    CallLog &log_;
};

namespace {

const wchar_t *container_class()
{
    static ATOM atom = 0;
    if (!atom) {
        WNDCLASSEXW wc{};
        wc.cbSize = sizeof wc;
        wc.lpfnWndProc = DefWindowProcW;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
        wc.lpszClassName = L"TarnTestContainer";
        atom = RegisterClassExW(&wc);
    }
    return L"TarnTestContainer";
}

int dpi(int index)
{
    HDC dc = GetDC(nullptr);
    int d = dc ? GetDeviceCaps(dc, index) : 96;
    if (dc) ReleaseDC(nullptr, dc);
    return d > 0 ? d : 96;
}

SIZEL himetric_of(const RECT &r)
{
    return {MulDiv(r.right - r.left, 2540, dpi(LOGPIXELSX)), MulDiv(r.bottom - r.top, 2540, dpi(LOGPIXELSY))};
}

} // namespace

// ---------------------------------------------------------------- Container

namespace {
// The thread's containers, for the form's keyboard handling in pump().
thread_local std::vector<Container *> t_containers;
} // namespace

Container::Container(int width, int height)
{
    t_containers.push_back(this);
    RECT r{0, 0, width, height};
    AdjustWindowRect(&r, WS_OVERLAPPEDWINDOW, FALSE);
    hwnd_ = CreateWindowExW(0, container_class(), L"Tarn Controls test container",
                            WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN | WS_VISIBLE, 0, 0, r.right - r.left,
                            r.bottom - r.top, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    frame_ = ComPtr<Frame>::attach(new Frame(hwnd_, frame_log_));
    // The frame's calls are part of UI activation, which the tests declare through the sites.
    for (const wchar_t *call : {L"IOleInPlaceFrame::SetActiveObject", L"IOleInPlaceFrame::SetActiveObject(NULL)"})
        frame_log_.allow(call);
    if (hwnd_) SetForegroundWindow(hwnd_);
}

Container::~Container()
{
    t_containers.erase(std::remove(t_containers.begin(), t_containers.end(), this), t_containers.end());
    if (hwnd_) DestroyWindow(hwnd_);
    pump();
}

IOleInPlaceFrame *Container::frame() const { return frame_.get(); }

void Container::set_user_mode(bool user_mode)
{
    ambient_.user_mode = user_mode;
    ambient_changed(DISPID_AMBIENT_USERMODE);
}

void Container::ambient_changed(DISPID id)
{
    for (Hosted *h : hosted_)
        if (ComPtr<IOleControl> c = h->as<IOleControl>(IID_IOleControl)) c->OnAmbientPropertyChange(id);
}

// ---------------------------------------------------------------- Hosted

Hosted::Hosted(Container &container, const std::wstring &progid, RECT pos, Init init, IUnknown *source)
    : container_(container)
{
    create(progid, pos, init, source, container.hwnd());
}

Hosted::Hosted(Hosted &frame, const std::wstring &progid, RECT pos, Init init) : container_(frame.container_)
{
    create(progid, pos, init, nullptr, frame.hwnd());
}

void Hosted::create(const std::wstring &progid, RECT pos, Init init, IUnknown *source, HWND window)
{
    Container &container = container_;
    container_.hosted_.push_back(this);
    for (const std::wstring &call : container_.site_calls_) log_.allow(call);
    site_ = ComPtr<Site>::attach(new Site(window, container.frame(), container.ambient(), log_));
    site_->set_position(pos);

    CLSID clsid{};
    create_hr_ = progid.size() && progid[0] == L'{' ? CLSIDFromString(progid.c_str(), &clsid)
                                                    : CLSIDFromProgID(progid.c_str(), &clsid);
    if (FAILED(create_hr_)) return;
    create_hr_ = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object_.put_void());
    if (FAILED(create_hr_)) return;
    site_->set_control(object_.get());
    dispatch_ = object_.as<IDispatch>(IID_IDispatch);

    ComPtr<IOleObject> ole = object_.as<IOleObject>(IID_IOleObject);
    DWORD misc = 0;
    if (ole) ole->GetMiscStatus(DVASPECT_CONTENT, &misc);
    if (ole && (misc & OLEMISC_SETCLIENTSITEFIRST)) ole->SetClientSite(site_.get());

    // Events and change notices, connected before the control initialises.
    if (ComPtr<IProvideClassInfo2> info = object_.as<IProvideClassInfo2>(IID_IProvideClassInfo2)) {
        ComPtr<ITypeInfo> cls, events;
        if (SUCCEEDED(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &event_iid_)) &&
            SUCCEEDED(info->GetClassInfo(cls.put()))) {
            ComPtr<ITypeLib> lib;
            UINT index = 0;
            if (SUCCEEDED(cls->GetContainingTypeLib(lib.put(), &index))) lib->GetTypeInfoOfGuid(event_iid_, events.put());
        }
        sink_ = ComPtr<EventSink>::attach(new EventSink(events.get(), log_));
        sink_->iid = event_iid_;
    }
    if (ComPtr<IConnectionPointContainer> cpc = object_.as<IConnectionPointContainer>(IID_IConnectionPointContainer)) {
        ComPtr<IConnectionPoint> cp;
        if (sink_ && SUCCEEDED(cpc->FindConnectionPoint(event_iid_, cp.put())))
            cp->Advise(static_cast<IDispatch *>(sink_.get()), &event_cookie_);
        if (SUCCEEDED(cpc->FindConnectionPoint(IID_IPropertyNotifySink, cp.put())))
            cp->Advise(static_cast<IPropertyNotifySink *>(site_.get()), &notify_cookie_);
    }

    switch (init) {
    case Init::New:
        if (ComPtr<IPersistStreamInit> p = object_.as<IPersistStreamInit>(IID_IPersistStreamInit)) init_hr_ = p->InitNew();
        break;
    case Init::NewBag:
        if (ComPtr<IPersistPropertyBag> p = object_.as<IPersistPropertyBag>(IID_IPersistPropertyBag))
            init_hr_ = p->InitNew();
        break;
    case Init::FromBag:
        if (ComPtr<IPersistPropertyBag> p = object_.as<IPersistPropertyBag>(IID_IPersistPropertyBag)) {
            ComPtr<IPropertyBag> bag = ComPtr<IUnknown>(source).as<IPropertyBag>(IID_IPropertyBag);
            init_hr_ = p->Load(bag.get(), nullptr);
        }
        break;
    case Init::FromStream:
        if (ComPtr<IPersistStreamInit> p = object_.as<IPersistStreamInit>(IID_IPersistStreamInit)) {
            ComPtr<IStream> stream = ComPtr<IUnknown>(source).as<IStream>(IID_IStream);
            init_hr_ = p->Load(stream.get());
        }
        break;
    case Init::Nothing:
        init_hr_ = S_OK;
        break;
    }
    if (ole && !(misc & OLEMISC_SETCLIENTSITEFIRST)) ole->SetClientSite(site_.get());
    if (ole && pos.right > pos.left && pos.bottom > pos.top) {
        SIZEL extent = himetric_of(pos);
        ole->SetExtent(DVASPECT_CONTENT, &extent);
    }
    if (ComPtr<IViewObject> view = object_.as<IViewObject>(IID_IViewObject))
        view->SetAdvise(DVASPECT_CONTENT, 0, static_cast<IAdviseSink *>(site_.get()));
}

Hosted::~Hosted()
{
    close();
    auto &list = container_.hosted_;
    list.erase(std::remove(list.begin(), list.end(), this), list.end());
}

HRESULT Hosted::activate()
{
    ComPtr<IOleObject> ole = object_.as<IOleObject>(IID_IOleObject);
    if (!ole) return E_NOINTERFACE;
    for (const wchar_t *call : {L"IOleInPlaceSite::CanInPlaceActivate", L"IOleInPlaceSite::OnInPlaceActivate",
                                L"IOleInPlaceSite::GetWindow", L"IOleInPlaceSite::GetWindowContext"})
        log_.expect(call);
    RECT pos = site_->position();
    HRESULT hr = ole->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site_.get(), 0, container_.hwnd(), &pos);
    for (const std::wstring &missing : log_.check()) log_.hit(L"missing: " + missing);
    pump();
    return hr;
}

HRESULT Hosted::deactivate()
{
    ComPtr<IOleInPlaceObject> ipo = object_.as<IOleInPlaceObject>(IID_IOleInPlaceObject);
    if (!ipo) return E_NOINTERFACE;
    log_.expect(L"IOleInPlaceSite::OnInPlaceDeactivate");
    log_.allow(L"IOleInPlaceSite::OnUIDeactivate");
    log_.allow(L"IOleInPlaceSite::GetWindowContext");
    HRESULT hr = ipo->InPlaceDeactivate();
    for (const std::wstring &missing : log_.check()) log_.hit(L"missing: " + missing);
    log_.disallow(L"IOleInPlaceSite::OnUIDeactivate");
    return hr;
}

void Hosted::move(const RECT &pos)
{
    site_->set_position(pos);
    if (ComPtr<IOleInPlaceObject> ipo = object_.as<IOleInPlaceObject>(IID_IOleInPlaceObject); ipo && hwnd()) {
        ipo->SetObjectRects(&pos, &pos);
    } else if (ComPtr<IOleObject> ole = object_.as<IOleObject>(IID_IOleObject)) {
        SIZEL extent = himetric_of(pos);
        ole->SetExtent(DVASPECT_CONTENT, &extent);
    }
    pump();
}

HWND Hosted::hwnd() const
{
    HWND h = nullptr;
    if (ComPtr<IOleWindow> w = object_.as<IOleWindow>(IID_IOleWindow)) w->GetWindow(&h);
    return h;
}

Variant Hosted::get(const std::wstring &name, const std::vector<Variant> &args)
{
    Variant out;
    last_hr_ = get_property(dispatch_.get(), name, out, args);
    return out;
}

HRESULT Hosted::put(const std::wstring &name, const Variant &value, const std::vector<Variant> &args)
{
    return last_hr_ = put_property(dispatch_.get(), name, value, args);
}

HRESULT Hosted::putref(const std::wstring &name, IUnknown *value)
{
    return last_hr_ = putref_property(dispatch_.get(), name, value);
}

Variant Hosted::call(const std::wstring &name, const std::vector<Variant> &args)
{
    Variant out;
    last_hr_ = call_method(dispatch_.get(), name, args, &out);
    return out;
}

ComPtr<Bag> Hosted::save_bag()
{
    ComPtr<Bag> bag = Bag::Create();
    if (ComPtr<IPersistPropertyBag> p = object_.as<IPersistPropertyBag>(IID_IPersistPropertyBag))
        last_hr_ = p->Save(bag.get(), TRUE, FALSE);
    return bag;
}

ComPtr<IStream> Hosted::save_stream()
{
    ComPtr<IStream> stream;
    CreateStreamOnHGlobal(nullptr, TRUE, stream.put());
    if (ComPtr<IPersistStreamInit> p = object_.as<IPersistStreamInit>(IID_IPersistStreamInit))
        last_hr_ = p->Save(stream.get(), TRUE);
    LARGE_INTEGER zero{};
    stream->Seek(zero, STREAM_SEEK_SET, nullptr);
    return stream;
}

Bitmap Hosted::render(int width, int height, Rgb background)
{
    Bitmap picture(width, height, background);
    if (ComPtr<IViewObject> view = object_.as<IViewObject>(IID_IViewObject)) {
        RECTL bounds{0, 0, width, height};
        last_hr_ = view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, picture.dc(), &bounds, nullptr, nullptr, 0);
    }
    GdiFlush();
    return picture;
}

Bitmap Hosted::capture()
{
    HWND h = hwnd();
    RECT r{};
    if (h) GetClientRect(h, &r);
    Bitmap picture(r.right, r.bottom, 0xFF00FF);
    if (h) SendMessageW(h, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.dc()), PRF_CLIENT);
    GdiFlush();
    return picture;
}

ULONG Hosted::close()
{
    if (!object_) return 0;
    if (ComPtr<IConnectionPointContainer> cpc = object_.as<IConnectionPointContainer>(IID_IConnectionPointContainer)) {
        ComPtr<IConnectionPoint> cp;
        if (event_cookie_ && SUCCEEDED(cpc->FindConnectionPoint(event_iid_, cp.put()))) cp->Unadvise(event_cookie_);
        if (notify_cookie_ && SUCCEEDED(cpc->FindConnectionPoint(IID_IPropertyNotifySink, cp.put())))
            cp->Unadvise(notify_cookie_);
    }
    event_cookie_ = notify_cookie_ = 0;
    log_.allow(L"IOleInPlaceSite::OnInPlaceDeactivate");
    log_.allow(L"IOleInPlaceSite::OnUIDeactivate");
    log_.allow(L"IOleInPlaceSite::GetWindowContext");
    if (ComPtr<IViewObject> view = object_.as<IViewObject>(IID_IViewObject)) view->SetAdvise(DVASPECT_CONTENT, 0, nullptr);
    if (ComPtr<IOleObject> ole = object_.as<IOleObject>(IID_IOleObject)) {
        ole->Close(OLECLOSE_NOSAVE);
        ole->SetClientSite(nullptr);
    }
    site_->set_control(nullptr);
    dispatch_.reset();
    IUnknown *last = object_.detach();
    ULONG left = last->Release();
    pump();
    return left;
}

namespace {

// The form's Tab navigation, as a host form has it: Tab and Shift+Tab move the focus to the
// next or previous tab stop unless the focused control wants the key itself.
bool tab_navigates(MSG &m)
{
    if (m.message != WM_KEYDOWN || m.wParam != VK_TAB || !m.hwnd) return false;
    LRESULT code = SendMessageW(m.hwnd, WM_GETDLGCODE, m.wParam, reinterpret_cast<LPARAM>(&m));
    if (code & (DLGC_WANTTAB | DLGC_WANTALLKEYS)) return false;
    HWND root = GetAncestor(m.hwnd, GA_ROOT);
    if (!root || root == m.hwnd) return false;
    HWND next = GetNextDlgTabItem(root, m.hwnd, GetKeyState(VK_SHIFT) < 0);
    if (next && next != m.hwnd) SetFocus(next);
    return true;
}

} // namespace

bool Container::route_mnemonic(MSG &m)
{
    // As a host form does: a keystroke that one of its controls named among its keys
    // (IOleControl::GetControlInfo) goes to that control's OnMnemonic, unless the focus is in
    // that control already (it then has the key itself).
    if (m.message != WM_KEYDOWN && m.message != WM_SYSKEYDOWN) return false;
    if (!hwnd_ || !m.hwnd || (m.hwnd != hwnd_ && !IsChild(hwnd_, m.hwnd))) return false;
    for (Hosted *h : hosted_) {
        HWND own = h->hwnd();
        if (own && (own == m.hwnd || IsChild(own, m.hwnd))) continue;
        ComPtr<IOleControl> control = h->as<IOleControl>(IID_IOleControl);
        CONTROLINFO info{};
        info.cb = sizeof info;
        if (!control || FAILED(control->GetControlInfo(&info)) || !info.hAccel || !info.cAccel) continue;
        WORD command = 0;
        if (IsAccelerator(info.hAccel, info.cAccel, &m, &command)) {
            control->OnMnemonic(&m);
            return true;
        }
    }
    return false;
}

void pump(DWORD ms)
{
    DWORD end = GetTickCount() + ms;
    do {
        MSG m;
        while (PeekMessageW(&m, nullptr, 0, 0, PM_REMOVE)) {
            bool routed = false;
            for (Container *c : std::vector<Container *>(t_containers)) {
                if ((routed = c->route_mnemonic(m))) break;
            }
            if (routed || tab_navigates(m)) continue;
            TranslateMessage(&m);
            DispatchMessageW(&m);
        }
        if (ms) Sleep(1);
    } while (static_cast<LONG>(end - GetTickCount()) > 0);
}

} // namespace tarn::host
