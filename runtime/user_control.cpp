// UserControl's core: construction and shutdown, the services the controls call (change
// notices, events, sizing, drawing), and the control's window with its message handling.
#include "runtime/user_control.h"

#include "foundation/color_translate.h"
#include "foundation/handles.h"
#include "foundation/metrics.h"
#include "foundation/trap.h"
#include "runtime/change_key_sink.h"

#include <windowsx.h>

namespace tarn {

UserControl::UserControl(const ControlClass &cls)
    : class_(cls), events_cp_(this, cls.events ? *cls.events : IID_NULL, true),
      notify_cp_(this, IID_IPropertyNotifySink, false)
{
}

UserControl::~UserControl()
{
    accessible_.disconnect();
    if (accel_) DestroyAcceleratorTable(accel_);
    if (hwnd_) {
        SetWindowLongPtrW(hwnd_, GWLP_USERDATA, 0);
        DestroyWindow(hwnd_);
    }
}

void UserControl::initialize()
{
    step([&] { Initialize(); });
}

void UserControl::final_release()
{
    step([&] { InPlaceDeactivate(); });
    step([&] { Terminate(); });
    step([&] {
        accessible_.disconnect(); // a screen reader may hold the object longer than the control lives
        events_cp_.clear();
        notify_cp_.clear();
        view_sink_.reset();
        advise_holder_.reset();
        inplace_site_.reset();
        simple_frame_site_.reset();
        site_.reset();
        ambient_.set_site(nullptr);
    });
}

void *UserControl::find_interface(REFIID iid)
{
    if (iid == IID_IOleObject) return static_cast<IOleObject *>(this);
    if (iid == IID_IOleWindow || iid == IID_IOleInPlaceObject) return static_cast<IOleInPlaceObject *>(this);
    if (iid == IID_IOleInPlaceActiveObject) return static_cast<IOleInPlaceActiveObject *>(this);
    if (iid == IID_IOleControl) return static_cast<IOleControl *>(this);
    if (iid == IID_IViewObject || iid == IID_IViewObject2) return static_cast<IViewObject2 *>(this);
    if (iid == IID_IPersist || iid == IID_IPersistStreamInit) return static_cast<IPersistStreamInit *>(this);
    if (iid == IID_IPersistPropertyBag) return static_cast<IPersistPropertyBag *>(this);
    if (iid == IID_IPersistStorage) return static_cast<IPersistStorage *>(this);
    if (iid == IID_IProvideClassInfo || iid == IID_IProvideClassInfo2) return static_cast<IProvideClassInfo2 *>(this);
    if (iid == IID_IConnectionPointContainer) return static_cast<IConnectionPointContainer *>(this);
    if (iid == IID_IQuickActivate) return static_cast<IQuickActivate *>(this);
    if (iid == IID_IPerPropertyBrowsing) return static_cast<IPerPropertyBrowsing *>(this);
    if (iid == IID_ISpecifyPropertyPages && IsVisibleClass(class_)) return static_cast<ISpecifyPropertyPages *>(this);
    if (iid == IID_IObjectSafety && class_.safe) return static_cast<IObjectSafety *>(this);
    return nullptr;
}

// ---------------------------------------------------------------- services

DISPID UserControl::dispid_of_key(const std::wstring &key)
{
    // Every put asks and then tells the container: the name is looked up once per key.
    auto known = key_ids_.find(key);
    DISPID id = known != key_ids_.end() ? known->second : DISPID_UNKNOWN;
    if (known == key_ids_.end()) {
        step([&] {
            ComPtr<ITypeInfo> info;
            if (SUCCEEDED(module::type_info(*class_.iid, info.put()))) {
                LPOLESTR name = const_cast<LPOLESTR>(key.c_str());
                if (FAILED(info->GetIDsOfNames(&name, 1, &id))) id = DISPID_UNKNOWN;
            }
            key_ids_.emplace(key, id);
        });
    }
    return id != DISPID_UNKNOWN ? id : invoked_put_;
}

bool UserControl::RequestEdit(const std::wstring &key)
{
    if (notify_cp_.empty()) return true;
    DISPID id = dispid_of_key(key);
    for (const ComPtr<IUnknown> &sink : notify_cp_.sinks()) {
        bool refused = false;
        step([&] {
            if (ComPtr<IPropertyNotifySink> notify = sink.as<IPropertyNotifySink>(IID_IPropertyNotifySink))
                refused = notify->OnRequestEdit(id) == S_FALSE;
        });
        if (refused) return false;
    }
    return true;
}

void UserControl::PropertyChanged(const std::wstring &key)
{
    dirty_ = true;
    DISPID id = dispid_of_key(key);
    for (const ComPtr<IUnknown> &sink : notify_cp_.sinks()) {
        step([&] {
            if (ComPtr<IPropertyNotifySink> notify = sink.as<IPropertyNotifySink>(IID_IPropertyNotifySink))
                notify->OnChanged(id);
            if (ComPtr<ITarnChangeKeySink> keyed = sink.as<ITarnChangeKeySink>(__uuidof(ITarnChangeKeySink)))
                keyed->OnChangedKey(key.c_str());
        });
    }
}

void UserControl::RaiseMouseEventsOf(Constituent &part)
{
    part.on_click = [this] { raise(events::Click); };
    part.on_mouse_down = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseDown, b, s, x, y); };
    part.on_mouse_move = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseMove, b, s, x, y); };
    part.on_mouse_up = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseUp, b, s, x, y); };
}

void UserControl::raise(DISPID id, EventArgs &args)
{
    bool to_sinks = freeze_count_ == 0 && !events_cp_.empty();
    if (!listener_ && !to_sinks) return;
    ComPtr<IUnknown> alive(identity());
    if (EventListener *listener = listener_) step([&] { listener->OnEvent(id, args); });
    DISPPARAMS params = args.params();
    std::vector<ComPtr<IUnknown>> sinks;
    if (to_sinks) sinks = events_cp_.sinks();
    for (const ComPtr<IUnknown> &sink : sinks) {
        step([&] {
            ComPtr<IDispatch> disp = sink.as<IDispatch>(IID_IDispatch);
            if (!disp) return;
            Variant result;
            EXCEPINFO excep{};
            UINT arg_err = 0;
            disp->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, result.put(), &excep, &arg_err);
            SysFreeString(excep.bstrSource);
            SysFreeString(excep.bstrDescription);
            SysFreeString(excep.bstrHelpFile);
        });
    }
    args.copy_back();
}

HWND UserControl::ParentForm() const
{
    HWND w = nullptr;
    ComPtr<IOleWindow> window = site_.as<IOleWindow>(IID_IOleWindow);
    if (!window || FAILED(window->GetWindow(&w)) || !w) return nullptr;
    return GetAncestor(w, GA_ROOT);
}

Scale UserControl::scale() const { return Scale{TwipsPerPixelX(), TwipsPerPixelY()}; }

void UserControl::SetBackColor(OleColor c)
{
    back_color_ = c;
    Invalidate();
}

void UserControl::Invalidate()
{
    if (hwnd_) InvalidateRect(hwnd_, nullptr, FALSE);
    else view_changed();
}

void UserControl::Refresh()
{
    if (hwnd_) {
        InvalidateRect(hwnd_, nullptr, FALSE);
        UpdateWindow(hwnd_);
    } else {
        view_changed();
    }
}

void UserControl::view_changed()
{
    if (view_sink_) step([&] { view_sink_->OnViewChange(DVASPECT_CONTENT, -1); });
}

void UserControl::SetSizeTwips(float width, float height)
{
    Scale s = scale();
    int cx = static_cast<int>(std::lround(width / s.tppx));
    int cy = static_cast<int>(std::lround(height / s.tppy));
    set_size_px(cx < 0 ? 0 : cx, cy < 0 ? 0 : cy, false);
}

void UserControl::SetDesignSize(float width, float height)
{
    Scale s = scale();
    size_ = {static_cast<int>(std::lround(width / s.tppx)), static_cast<int>(std::lround(height / s.tppy))};
}

void UserControl::set_size_px(int cx, int cy, bool from_host)
{
    if (cx == size_.cx && cy == size_.cy) return;
    size_ = {cx, cy};
    if (!from_host) {
        // The control asks: tell the container, which places the window again.
        if (hwnd_ && inplace_site_) {
            RECT r{};
            GetWindowRect(hwnd_, &r);
            MapWindowPoints(nullptr, GetParent(hwnd_), reinterpret_cast<POINT *>(&r), 2);
            r.right = r.left + cx;
            r.bottom = r.top + cy;
            RequestPosition(r);
        } else if (site_) {
            step([&] { site_->RequestNewObjectLayout(); });
        }
    }
    run_resize();
    Invalidate();
}

void UserControl::RequestPosition(const RECT &pos)
{
    if (!hwnd_ || !inplace_site_) return;
    step([&] { inplace_site_->OnPosRectChange(&pos); });
    // A container that ignored the request: the window still goes where it asked.
    if (!hwnd_) return;
    RECT now{};
    GetWindowRect(hwnd_, &now);
    MapWindowPoints(nullptr, GetParent(hwnd_), reinterpret_cast<POINT *>(&now), 2);
    if (now.left != pos.left || now.top != pos.top || now.right != pos.right || now.bottom != pos.bottom)
        SetWindowPos(hwnd_, nullptr, pos.left, pos.top, pos.right - pos.left, pos.bottom - pos.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
}

void UserControl::add_constituent(WindowedConstituent &c)
{
    windowed_.push_back(&c);
    c.focus_hook = [this](bool gained, HWND other) { on_focus(gained, other); };
    c.keep_alive = [this] { return ComPtr<IUnknown>(identity()); };
    if (hwnd_) c.attach(hwnd_);
}

void UserControl::park_constituents()
{
    if (windowed_.empty()) return;
    // A focused constituent must not stay focused in the hidden holder.
    if (hwnd_ && WindowWithin(hwnd_, GetFocus())) SetFocus(GetParent(hwnd_));
    for (WindowedConstituent *c : windowed_) step([&] { c->park(); });
}

void UserControl::run_resize()
{
    // A layout that sizes the control runs Resize once more; deeper nesting is cut off.
    if (resize_depth_ >= 2) return;
    ++resize_depth_;
    step([&] { Resize(); });
    --resize_depth_;
}

// ---------------------------------------------------------------- drawing

void UserControl::render(HDC dc)
{
    Scale s = scale();
    step([&] {
        RECT all{0, 0, size_.cx, size_.cy};
        Rgb back = TranslateColor(back_color_);
        unique_brush brush(CreateSolidBrush(back == kInvalidColor ? 0 : back));
        if (brush) FillRect(dc, &all, brush.get());
    });
    step([&] {
        saved_dc keep(dc);
        DrawSurface(dc, s);
    });
    for (Constituent *c : constituents_) {
        step([&] {
            saved_dc keep(dc);
            c->draw(dc, s);
        });
    }
    // Windowed constituents paint themselves into the DC, where their windows are.
    for (WindowedConstituent *c : windowed_) step([&] { c->print(dc); });
}

void UserControl::on_paint()
{
    paint_dc paint(hwnd_);
    const RECT &dirty = paint.dirty();
    int w = dirty.right - dirty.left, h = dirty.bottom - dirty.top;
    if (w <= 0 || h <= 0) return;
    step([&] { Paint(); });
    // Draw into a memory bitmap the size of the dirty rectangle, then copy it in one go.
    unique_dc mem(CreateCompatibleDC(paint.get()));
    unique_bitmap bmp(mem ? CreateCompatibleBitmap(paint.get(), w, h) : nullptr);
    if (!bmp) {
        render(paint.get());
        return;
    }
    {
        select_guard use(mem.get(), bmp.get());
        SetViewportOrgEx(mem.get(), -dirty.left, -dirty.top, nullptr);
        IntersectClipRect(mem.get(), dirty.left, dirty.top, dirty.right, dirty.bottom);
        render(mem.get());
        SetViewportOrgEx(mem.get(), 0, 0, nullptr);
        BitBlt(paint.get(), dirty.left, dirty.top, w, h, mem.get(), 0, 0, SRCCOPY);
    }
}

// ---------------------------------------------------------------- the window

LRESULT CALLBACK UserControl::window_proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp)
{
    if (msg == WM_NCCREATE) {
        // The object owns its window from the first message on: the sizing messages sent
        // during creation already reach a control that knows its window.
        auto *cs = reinterpret_cast<CREATESTRUCTW *>(lp);
        SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(cs->lpCreateParams));
        if (auto *self = static_cast<UserControl *>(cs->lpCreateParams)) self->hwnd_ = hwnd;
        return DefWindowProcW(hwnd, msg, wp, lp);
    }
    auto *self = reinterpret_cast<UserControl *>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
    if (!self) return DefWindowProcW(hwnd, msg, wp, lp);
    if (msg == WM_NCDESTROY) {
        SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
        self->hwnd_ = nullptr;
        self->focus_within_ = false;
        return DefWindowProcW(hwnd, msg, wp, lp);
    }
    try {
        // A handler may release the container's last reference; stay alive until it returns.
        ComPtr<IUnknown> alive(self->identity());
        return self->filtered_message(msg, wp, lp);
    } catch (...) {
        return 0;
    }
}

LRESULT UserControl::filtered_message(UINT msg, WPARAM wp, LPARAM lp)
{
    ComPtr<ISimpleFrameSite> frame_site = simple_frame_site_;
    if (!frame_site) return on_message(msg, wp, lp);
    HWND h = hwnd_;
    LRESULT result = 0;
    DWORD cookie = 0;
    // The container may answer a message itself (S_FALSE): the control then never sees it.
    if (frame_site->PreMessageFilter(h, msg, wp, lp, &result, &cookie) == S_FALSE) return result;
    result = on_message(msg, wp, lp);
    frame_site->PostMessageFilter(h, msg, wp, lp, &result, cookie);
    return result;
}

LRESULT UserControl::on_message(UINT msg, WPARAM wp, LPARAM lp)
{
    bool handled = false;
    LRESULT own = 0;
    step([&] { own = OnMessage(msg, wp, lp, handled); });
    if (handled) return own;
    LRESULT reflected = 0;
    if (WindowedConstituent::reflect(msg, wp, lp, reflected)) return reflected;
    switch (msg) {
    case WM_GETOBJECT: {
        LRESULT r = accessible_.answer(hwnd_, wp, lp, *this, handled);
        return handled ? r : DefWindowProcW(hwnd_, msg, wp, lp);
    }
    case WM_DESTROY:
        // The container destroys its window with ours in it: the constituents keep theirs.
        park_constituents();
        return 0;
    case WM_PAINT:
        on_paint();
        return 0;
    case WM_PRINTCLIENT:
        step([&] { Paint(); });
        render(reinterpret_cast<HDC>(wp));
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SIZE:
        set_size_px(LOWORD(lp), HIWORD(lp), true);
        return 0;
    case WM_LBUTTONDOWN: case WM_RBUTTONDOWN: case WM_MBUTTONDOWN:
    case WM_LBUTTONUP: case WM_RBUTTONUP: case WM_MBUTTONUP:
    case WM_LBUTTONDBLCLK: case WM_RBUTTONDBLCLK: case WM_MBUTTONDBLCLK:
    case WM_MOUSEMOVE:
        on_mouse(msg, wp, lp);
        return 0;
    case WM_CAPTURECHANGED:
        if (reinterpret_cast<HWND>(lp) != hwnd_) buttons_down_ = 0;
        return 0;
    case WM_MOUSELEAVE:
        tracking_leave_ = false;
        step([&] { MouseLeave(); });
        return 0;
    case WM_GETDLGCODE:
        return DialogCode();
    case WM_KEYDOWN: case WM_SYSKEYDOWN: {
        int16_t code = static_cast<int16_t>(wp), sh = shift::Now();
        step([&] { KeyDown(code, sh); });
        if (msg == WM_SYSKEYDOWN) return DefWindowProcW(hwnd_, msg, wp, lp);
        return 0;
    }
    case WM_KEYUP: case WM_SYSKEYUP: {
        int16_t code = static_cast<int16_t>(wp), sh = shift::Now();
        step([&] { KeyUp(code, sh); });
        if (msg == WM_SYSKEYUP) return DefWindowProcW(hwnd_, msg, wp, lp);
        return 0;
    }
    case WM_CHAR: {
        int16_t ascii = static_cast<int16_t>(wp);
        step([&] { KeyPress(ascii); });
        return 0;
    }
    case WM_SETFOCUS:
        on_focus(true, reinterpret_cast<HWND>(wp));
        if (focus_constituent_) step([&] { focus_constituent_->SetFocus(); });
        return 0;
    case WM_KILLFOCUS:
        on_focus(false, reinterpret_cast<HWND>(wp));
        return 0;
    case WM_MOUSEACTIVATE:
        // A click on an inactive control activates it without swallowing the click.
        if (!CanGetFocus()) return MA_NOACTIVATE;
        if (!ui_active_) step([&] { ui_activate(); });
        return MA_ACTIVATE;
    default:
        return DefWindowProcW(hwnd_, msg, wp, lp);
    }
}

Constituent *UserControl::mouse_target_at(float x, float y) const
{
    for (auto it = constituents_.rbegin(); it != constituents_.rend(); ++it)
        if ((*it)->takes_mouse_at(x, y)) return *it;
    return nullptr;
}

void UserControl::on_mouse(UINT msg, WPARAM wp, LPARAM lp)
{
    Scale s = scale();
    float x = to_twips_x(GET_X_LPARAM(lp), s), y = to_twips_y(GET_Y_LPARAM(lp), s);
    int16_t sh = 0;
    if (wp & MK_SHIFT) sh |= shift::Shift;
    if (wp & MK_CONTROL) sh |= shift::Ctrl;
    if (GetKeyState(VK_MENU) < 0) sh |= shift::Alt;
    int16_t button = 0;
    bool down = false, up = false, dbl = false;
    switch (msg) {
    case WM_LBUTTONDOWN: button = mouse::Left; down = true; break;
    case WM_RBUTTONDOWN: button = mouse::Right; down = true; break;
    case WM_MBUTTONDOWN: button = mouse::Middle; down = true; break;
    case WM_LBUTTONUP: button = mouse::Left; up = true; break;
    case WM_RBUTTONUP: button = mouse::Right; up = true; break;
    case WM_MBUTTONUP: button = mouse::Middle; up = true; break;
    case WM_LBUTTONDBLCLK: button = mouse::Left; dbl = true; break;
    case WM_RBUTTONDBLCLK: button = mouse::Right; dbl = true; break;
    case WM_MBUTTONDBLCLK: button = mouse::Middle; dbl = true; break;
    default: break;
    }

    if (down || dbl) {
        if (buttons_down_ == 0) {
            // A new press: it belongs to what lies under the pointer until every button is up.
            press_target_ = mouse_target_at(x, y);
            press_on_surface_ = press_target_ == nullptr;
            SetCapture(hwnd_);
        }
        buttons_down_ |= button;
        if (CanGetFocus() && !WindowWithin(hwnd_, GetFocus()) && UserMode()) SetFocus(hwnd_);
    }
    Constituent *target = buttons_down_ ? press_target_ : mouse_target_at(x, y);
    bool on_surface = buttons_down_ ? press_on_surface_ : target == nullptr;
    float tx = target ? x - target->origin_x() : x, ty = target ? y - target->origin_y() : y;

    if (down) {
        double_click_ = false;
        if (on_surface) step([&] { MouseDown(button, sh, x, y); });
        else if (target && target->on_mouse_down) step([&] { target->on_mouse_down(button, sh, tx, ty); });
    } else if (dbl) {
        // The second press of a double click raises DblClick instead of MouseDown; its release
        // raises MouseUp without Click.
        double_click_ = true;
        if (on_surface) step([&] { DblClick(); });
        else if (target && target->on_dbl_click) step([&] { target->on_dbl_click(); });
    } else if (up) {
        buttons_down_ &= static_cast<int16_t>(~button);
        bool inside = x >= 0 && y >= 0 && x < ScaleWidth() && y < ScaleHeight();
        bool click = !double_click_;
        if (buttons_down_ == 0) {
            double_click_ = false;
            if (GetCapture() == hwnd_) ReleaseCapture();
        }
        if (on_surface) {
            step([&] { MouseUp(button, sh, x, y); });
            if (click && inside) step([&] { Click(); });
        } else if (target) {
            if (target->on_mouse_up) step([&] { target->on_mouse_up(button, sh, tx, ty); });
            if (click && target->takes_mouse_at(x, y) && target->on_click) step([&] { target->on_click(); });
        }
        if (buttons_down_ == 0) press_target_ = nullptr;
    } else {
        int16_t held = 0;
        if (wp & MK_LBUTTON) held |= mouse::Left;
        if (wp & MK_RBUTTON) held |= mouse::Right;
        if (wp & MK_MBUTTON) held |= mouse::Middle;
        if (on_surface) step([&] { MouseMove(held, sh, x, y); });
        else if (target && target->on_mouse_move) step([&] { target->on_mouse_move(held, sh, tx, ty); });
    }
}

void UserControl::TrackMouseLeave()
{
    if (tracking_leave_ || !hwnd_) return;
    TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, hwnd_, 0};
    tracking_leave_ = TrackMouseEvent(&track) != FALSE;
}

void UserControl::on_focus(bool gained, HWND other)
{
    // The focus moving between the control's own windows is no change for the control.
    if (gained) {
        if (focus_within_) return;
        focus_within_ = true;
        if (!ui_active_) step([&] { ui_activate(); });
        step([&] {
            if (ComPtr<IOleControlSite> cs = site_.as<IOleControlSite>(IID_IOleControlSite)) cs->OnFocus(TRUE);
        });
        step([&] { GotFocus(); });
    } else {
        if (!focus_within_ || WindowWithin(hwnd_, other)) return;
        focus_within_ = false;
        step([&] { LostFocus(); });
        step([&] {
            if (ComPtr<IOleControlSite> cs = site_.as<IOleControlSite>(IID_IOleControlSite)) cs->OnFocus(FALSE);
        });
    }
}

// ---------------------------------------------------------------- window class

int16_t shift::Now()
{
    int16_t sh = 0;
    if (GetKeyState(VK_SHIFT) < 0) sh |= Shift;
    if (GetKeyState(VK_CONTROL) < 0) sh |= Ctrl;
    if (GetKeyState(VK_MENU) < 0) sh |= Alt;
    return sh;
}

namespace {
constexpr wchar_t kControlWindowClass[] = L"TarnControlWindow";
ATOM g_window_class = 0;
} // namespace

const wchar_t *UserControl::window_class()
{
    if (!g_window_class) {
        WNDCLASSEXW wc{};
        wc.cbSize = sizeof wc;
        wc.style = CS_DBLCLKS;
        wc.lpfnWndProc = &UserControl::window_proc;
        wc.hInstance = module::instance();
        wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        wc.lpszClassName = kControlWindowClass;
        g_window_class = RegisterClassExW(&wc);
    }
    return kControlWindowClass;
}

void UnregisterControlWindowClass()
{
    if (g_window_class) UnregisterClassW(kControlWindowClass, module::instance());
    g_window_class = 0;
    UnregisterHolderWindowClass();
}

} // namespace tarn
