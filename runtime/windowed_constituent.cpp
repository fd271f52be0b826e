#include "runtime/windowed_constituent.h"

#include <commctrl.h>
#include <windowsx.h>

#include <cmath>
#include <stdexcept>

#include "foundation/color_translate.h"
#include "foundation/font_object.h"
#include "foundation/metrics.h"
#include "foundation/trap.h"
#include "runtime/ambient.h"
#include "runtime/com_object.h"
#include "runtime/module.h"
#include "runtime/user_control.h"

namespace tarn {

namespace {

constexpr wchar_t kHolderClass[] = L"TarnConstituentHolder";
constexpr UINT_PTR kSubclassId = 0x54434E53; // "TCNS"
constexpr UINT_PTR kWatchId = 0x54434E57;    // "TCNW": a part watched, not owned
// The window property that names a window's constituent (its own window and its parts).
constexpr wchar_t kConstituentProp[] = L"TarnConstituent";
ATOM g_holder_class = 0;

// The holder lives while any constituent of the thread does.
thread_local HWND t_holder = nullptr;
thread_local int t_holder_users = 0;

LRESULT CALLBACK holder_proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp)
{
    LRESULT result = 0;
    if (WindowedConstituent::reflect(msg, wp, lp, result)) return result;
    return DefWindowProcW(hwnd, msg, wp, lp);
}

HWND acquire_holder()
{
    ++t_holder_users;
    if (t_holder) return t_holder;
    if (!g_holder_class) {
        WNDCLASSEXW wc{};
        wc.cbSize = sizeof wc;
        wc.lpfnWndProc = holder_proc;
        wc.hInstance = module::instance();
        wc.lpszClassName = kHolderClass;
        g_holder_class = RegisterClassExW(&wc);
    }
    t_holder = CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kHolderClass, L"", WS_POPUP | WS_CLIPCHILDREN, 0, 0,
                               0, 0, nullptr, nullptr, module::instance(), nullptr);
    return t_holder;
}

void release_holder()
{
    if (--t_holder_users > 0 || !t_holder) return;
    DestroyWindow(t_holder);
    t_holder = nullptr;
}

Scale screen_scale() { return Scale{TwipsPerPixelX(), TwipsPerPixelY()}; }

// Twips to a pixel coordinate, kept within what window positions can hold.
int pixel(double twips, double tppx)
{
    constexpr double kLimit = 30000;
    double v = std::floor(twips / tppx + 1e-6);
    if (!(v > -kLimit)) return static_cast<int>(-kLimit);
    if (v > kLimit) return static_cast<int>(kLimit);
    return static_cast<int>(v);
}

RECT rect_in_parent(HWND w)
{
    RECT r{};
    GetWindowRect(w, &r);
    MapWindowPoints(HWND_DESKTOP, GetParent(w), reinterpret_cast<POINT *>(&r), 2);
    return r;
}

// The window's border, as the system draws it outside the client area.
void draw_frame(HWND w, HDC dc, RECT r)
{
    LONG_PTR style = GetWindowLongPtrW(w, GWL_STYLE), ex = GetWindowLongPtrW(w, GWL_EXSTYLE);
    if (style & WS_BORDER) {
        FrameRect(dc, &r, GetSysColorBrush(COLOR_WINDOWFRAME));
        InflateRect(&r, -1, -1);
    }
    if (ex & WS_EX_CLIENTEDGE) DrawEdge(dc, &r, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
    else if (ex & WS_EX_STATICEDGE) DrawEdge(dc, &r, BDR_SUNKENOUTER, BF_RECT | BF_ADJUST);
}

void print_client_of(HWND w, HDC dc)
{
    SendMessageW(w, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT | PRF_ERASEBKGND);
}

// Draws `w` with its top-left corner at (x, y) of the DC's logical space: frame, client area
// (painted by `paint_client`) and child windows, bottom-most first.
void print_window(HWND w, HDC dc, int x, int y, const std::function<void(HDC)> &paint_client)
{
    RECT wr{};
    GetWindowRect(w, &wr);
    int ww = wr.right - wr.left, wh = wr.bottom - wr.top;
    if (ww <= 0 || wh <= 0) return;
    saved_dc keep(dc);
    OffsetWindowOrgEx(dc, -x, -y, nullptr);
    IntersectClipRect(dc, 0, 0, ww, wh);
    draw_frame(w, dc, RECT{0, 0, ww, wh});
    POINT origin{0, 0};
    ClientToScreen(w, &origin);
    int cx = origin.x - wr.left, cy = origin.y - wr.top;
    RECT client{};
    GetClientRect(w, &client);
    IntersectClipRect(dc, cx, cy, cx + client.right, cy + client.bottom);
    {
        saved_dc inner(dc);
        OffsetWindowOrgEx(dc, -cx, -cy, nullptr);
        paint_client(dc);
    }
    HWND top = GetWindow(w, GW_CHILD);
    for (HWND c = top ? GetWindow(top, GW_HWNDLAST) : nullptr; c; c = GetWindow(c, GW_HWNDPREV)) {
        if (!(GetWindowLongPtrW(c, GWL_STYLE) & WS_VISIBLE)) continue;
        RECT r = rect_in_parent(c);
        print_window(c, dc, cx + r.left, cy + r.top, [c](HDC d) { print_client_of(c, d); });
    }
}

} // namespace

// ---------------------------------------------------------------- the font watch

// Told by the font object when one of its properties changes, so the window gets the new
// font at once. The constituent detaches it before it goes.
class WindowedConstituent::FontWatch final : public ComObject<IPropertyNotifySink> {
public:
    explicit FontWatch(WindowedConstituent *owner) : owner_(owner) {}
    void detach() { owner_ = nullptr; }

    STDMETHODIMP OnChanged(DISPID) override
    {
        if (owner_) step([&] { owner_->apply_font(); });
        return S_OK;
    }
    STDMETHODIMP OnRequestEdit(DISPID) override { return S_OK; }

private:
    WindowedConstituent *owner_;
};

// ---------------------------------------------------------------- life

WindowedConstituent::WindowedConstituent(std::wstring name, const wchar_t *window_class, DWORD style, DWORD ex_style,
                                         float left, float top, float width, float height)
    : Name(std::move(name)), left_(left), top_(top), width_(width), height_(height)
{
    HWND parent = acquire_holder();
    hwnd_ = CreateWindowExW(ex_style, window_class, L"", style | WS_CHILD | WS_CLIPSIBLINGS, 0, 0, 0, 0, parent,
                            nullptr, module::instance(), nullptr);
    if (!hwnd_) return; // out of resources: every member then works on no window and does nothing
    subclass_part(hwnd_);
    apply_placement();
    // Until the control gives it one: the font a host offers when it offers none.
    step([&] {
        ComPtr<IFontDisp> font = DefaultAmbientFont();
        SetFont(font.get());
    });
}

WindowedConstituent::~WindowedConstituent()
{
    dying_ = true;
    unwatch_font();
    if (hwnd_) DestroyWindow(hwnd_);
    hwnd_ = nullptr;
    font_.reset();
    release_holder();
}

HWND WindowedConstituent::holder() { return t_holder; }

void UnregisterHolderWindowClass()
{
    if (g_holder_class) UnregisterClassW(kHolderClass, module::instance());
    g_holder_class = 0;
}

// ---------------------------------------------------------------- placement and state

void WindowedConstituent::Move(float left, float top, float width, float height)
{
    if (!std::isfinite(left) || !std::isfinite(top) || !std::isfinite(width) || !std::isfinite(height))
        throw std::invalid_argument("not a number");
    if (width < 0 || height < 0) throw std::invalid_argument("negative size");
    left_ = left;
    top_ = top;
    width_ = width;
    height_ = height;
    apply_placement();
}

void WindowedConstituent::apply_placement()
{
    if (!hwnd_) return;
    Scale s = screen_scale();
    int x = pixel(left_, s.tppx), y = pixel(top_, s.tppy);
    int w = pixel(static_cast<double>(left_) + width_, s.tppx) - x;
    int h = pixel(static_cast<double>(top_) + height_, s.tppy) - y;
    SetWindowPos(hwnd_, nullptr, x, y, w > 0 ? w : 0, window_height(h > 0 ? h : 0), SWP_NOZORDER | SWP_NOACTIVATE);
}

bool WindowedConstituent::Visible() const { return hwnd_ && (style() & WS_VISIBLE); }

void WindowedConstituent::SetVisible(bool visible)
{
    if (hwnd_) ShowWindow(hwnd_, visible ? SW_SHOWNA : SW_HIDE);
}

bool WindowedConstituent::Enabled() const { return hwnd_ && IsWindowEnabled(hwnd_); }

void WindowedConstituent::SetEnabled(bool enabled)
{
    if (hwnd_) EnableWindow(hwnd_, enabled);
}

void WindowedConstituent::SetFont(IFontDisp *font)
{
    ComPtr<IFontDisp> copy = ComPtr<IFontDisp>::attach(CloneFontObject(font));
    if (!copy) throw std::invalid_argument("not a font");
    unwatch_font();
    ComPtr<IFontDisp> old = font_; // the window keeps using the old font's handle until it has the new one
    font_ = copy;
    watch_font();
    apply_font();
}

void WindowedConstituent::apply_font()
{
    HFONT handle = nullptr;
    if (ComPtr<IFont> font = font_.as<IFont>(IID_IFont)) font->get_hFont(&handle);
    if (hwnd_) SendMessageW(hwnd_, WM_SETFONT, reinterpret_cast<WPARAM>(handle), TRUE);
    font_applied();
}

void WindowedConstituent::watch_font()
{
    ComPtr<IConnectionPointContainer> cpc = font_.as<IConnectionPointContainer>(IID_IConnectionPointContainer);
    ComPtr<IConnectionPoint> cp;
    if (!cpc || FAILED(cpc->FindConnectionPoint(IID_IPropertyNotifySink, cp.put()))) return;
    font_watch_ = new FontWatch(this);
    if (FAILED(cp->Advise(font_watch_, &font_cookie_))) font_cookie_ = 0;
}

void WindowedConstituent::unwatch_font()
{
    if (!font_watch_) return;
    font_watch_->detach();
    if (font_cookie_) {
        ComPtr<IConnectionPointContainer> cpc = font_.as<IConnectionPointContainer>(IID_IConnectionPointContainer);
        ComPtr<IConnectionPoint> cp;
        if (cpc && SUCCEEDED(cpc->FindConnectionPoint(IID_IPropertyNotifySink, cp.put()))) cp->Unadvise(font_cookie_);
    }
    font_watch_->Release();
    font_watch_ = nullptr;
    font_cookie_ = 0;
}

void WindowedConstituent::SetFocus()
{
    if (hwnd_ && IsWindowVisible(hwnd_) && IsWindowEnabled(hwnd_)) ::SetFocus(hwnd_);
}

bool WindowedConstituent::HasFocus() const { return within(GetFocus()); }

void WindowedConstituent::Refresh()
{
    if (!hwnd_) return;
    RedrawWindow(hwnd_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

std::wstring WindowedConstituent::window_text() const
{
    if (!hwnd_) return {};
    int n = GetWindowTextLengthW(hwnd_);
    if (n <= 0) return {};
    std::wstring text(static_cast<size_t>(n) + 1, L'\0');
    int got = GetWindowTextW(hwnd_, text.data(), n + 1);
    text.resize(got > 0 ? static_cast<size_t>(got) : 0);
    return text;
}

void WindowedConstituent::set_style_bits(LONG_PTR bits, bool on)
{
    if (!hwnd_) return;
    LONG_PTR s = style();
    SetWindowLongPtrW(hwnd_, GWL_STYLE, on ? (s | bits) : (s & ~bits));
}

void WindowedConstituent::set_ex_style_bits(LONG_PTR bits, bool on)
{
    if (!hwnd_) return;
    LONG_PTR ex = GetWindowLongPtrW(hwnd_, GWL_EXSTYLE);
    SetWindowLongPtrW(hwnd_, GWL_EXSTYLE, on ? (ex | bits) : (ex & ~bits));
    SetWindowPos(hwnd_, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

void WindowedConstituent::recreate(LONG_PTR new_style)
{
    if (!hwnd_) return;
    HWND old = hwnd_;
    wchar_t cls[64] = {};
    GetClassNameW(old, cls, 64);
    RECT r = rect_in_parent(old);
    HWND fresh = CreateWindowExW(static_cast<DWORD>(GetWindowLongPtrW(old, GWL_EXSTYLE)), cls, L"",
                                 static_cast<DWORD>(new_style), r.left, r.top, r.right - r.left, r.bottom - r.top,
                                 GetParent(old), nullptr, module::instance(), nullptr);
    if (!fresh) throw std::runtime_error("cannot make the window again");
    // The old window says nothing more as it goes.
    RemovePropW(old, kConstituentProp);
    RemoveWindowSubclass(old, &WindowedConstituent::subclass_proc, kSubclassId);
    const bool focused = GetFocus() == old;
    carry_state(old, fresh);
    SetWindowPos(fresh, old, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    hwnd_ = fresh;
    subclass_part(fresh);
    apply_font();
    DestroyWindow(old);
    if (focused) ::SetFocus(fresh);
}

void WindowedConstituent::fire(const std::function<void()> &handler)
{
    if (handler) step([&] { handler(); });
}

// ---------------------------------------------------------------- the runtime's side

void WindowedConstituent::attach(HWND parent)
{
    if (!hwnd_ || !parent) return;
    SetParent(hwnd_, parent);
    apply_placement();
    SetWindowPos(hwnd_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void WindowedConstituent::park()
{
    if (!hwnd_ || !t_holder || GetParent(hwnd_) == t_holder) return;
    SetParent(hwnd_, t_holder);
    apply_placement();
}

void WindowedConstituent::print(HDC dc)
{
    if (!hwnd_ || !(style() & WS_VISIBLE)) return;
    RECT r = rect_in_parent(hwnd_);
    print_window(hwnd_, dc, r.left, r.top, [this](HDC d) { print_client(d); });
}

void WindowedConstituent::print_client(HDC dc) { print_client_of(hwnd_, dc); }

WindowedConstituent *WindowedConstituent::of_window(HWND child)
{
    // The window itself, or a part of it (a combo box's edit field or list).
    HWND w = child;
    for (int depth = 0; w && depth < 3; ++depth) {
        // Only windows of this thread can be ours.
        if (GetWindowThreadProcessId(w, nullptr) != GetCurrentThreadId()) return nullptr;
        if (auto *c = static_cast<WindowedConstituent *>(GetPropW(w, kConstituentProp))) return c->dying_ ? nullptr : c;
        HWND up = GetParent(w);
        w = up ? up : GetWindow(w, GW_OWNER);
    }
    return nullptr;
}

bool WindowedConstituent::reflect(UINT msg, WPARAM wp, LPARAM lp, LRESULT &result)
{
    try {
        switch (msg) {
        case WM_COMMAND:
            if (WindowedConstituent *c = lp ? of_window(reinterpret_cast<HWND>(lp)) : nullptr)
                return c->on_command(HIWORD(wp), result);
            return false;
        case WM_NOTIFY: {
            auto *header = reinterpret_cast<NMHDR *>(lp);
            if (WindowedConstituent *c = header ? of_window(header->hwndFrom) : nullptr)
                return c->on_notify(header, result);
            return false;
        }
        case WM_VSCROLL:
        case WM_HSCROLL:
            if (WindowedConstituent *c = lp ? of_window(reinterpret_cast<HWND>(lp)) : nullptr)
                return c->on_scroll(LOWORD(wp), result);
            return false;
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORLISTBOX:
            if (WindowedConstituent *c = of_window(reinterpret_cast<HWND>(lp))) {
                if (HBRUSH brush = c->paint_colors(reinterpret_cast<HDC>(wp))) {
                    result = reinterpret_cast<LRESULT>(brush);
                    return true;
                }
            }
            return false;
        default:
            return false;
        }
    } catch (...) {
        return false;
    }
}

// ---------------------------------------------------------------- messages

LRESULT CALLBACK WindowedConstituent::subclass_proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id,
                                                    DWORD_PTR ref)
{
    if (msg == WM_NCDESTROY) {
        if (id == kSubclassId) RemovePropW(hwnd, kConstituentProp);
        RemoveWindowSubclass(hwnd, &WindowedConstituent::subclass_proc, id);
        return DefSubclassProc(hwnd, msg, wp, lp);
    }
    auto *self = reinterpret_cast<WindowedConstituent *>(ref);
    try {
        return self->on_message(hwnd, msg, wp, lp);
    } catch (...) {
        return 0;
    }
}

bool WindowedConstituent::within(HWND other) const { return WindowWithin(hwnd_, other); }

LRESULT WindowedConstituent::on_message(HWND window, UINT msg, WPARAM wp, LPARAM lp)
{
    if (dying_) return DefSubclassProc(window, msg, wp, lp);
    ComPtr<IUnknown> alive;
    if (keep_alive) step([&] { alive = keep_alive(); });
    LRESULT own = 0;
    if (window == hwnd_ && on_window_message(msg, wp, lp, own)) return own;
    if (on_context_menu && context_menu(window, msg, wp, lp)) return 0;
    // A part that has the focus hands some keys on to another part (a combo box's field and
    // the combo box): the key was the constituent's once, where it arrived first.
    if ((msg >= WM_KEYFIRST && msg <= WM_KEYLAST) && window != GetFocus() && within(GetFocus()))
        return DefSubclassProc(window, msg, wp, lp);
    switch (msg) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
    case WM_KEYUP:
    case WM_SYSKEYUP: {
        const KeyHandler &handler = (msg == WM_KEYDOWN || msg == WM_SYSKEYDOWN) ? on_key_down : on_key_up;
        if (!handler) break;
        int16_t code = static_cast<int16_t>(wp & 0xFFFF), sh = shift::Now();
        step([&] { handler(code, sh); });
        if (code == 0) return 0;
        wp = static_cast<uint16_t>(code);
        break;
    }
    case WM_CHAR:
        if (!on_key_press) break;
        {
            int16_t ascii = static_cast<int16_t>(wp & 0xFFFF);
            step([&] { on_key_press(ascii); });
            if (ascii == 0) return 0;
            wp = static_cast<uint16_t>(ascii);
        }
        break;
    case WM_SETFOCUS:
    case WM_KILLFOCUS: {
        LRESULT r = DefSubclassProc(window, msg, wp, lp);
        HWND other = reinterpret_cast<HWND>(wp);
        if (!dying_ && !within(other)) {
            bool gained = msg == WM_SETFOCUS;
            if (focus_hook) step([&] { focus_hook(gained, other); });
            fire(gained ? on_got_focus : on_lost_focus);
        }
        return r;
    }
    case WM_LBUTTONDOWN: case WM_RBUTTONDOWN: case WM_MBUTTONDOWN:
    case WM_LBUTTONUP: case WM_RBUTTONUP: case WM_MBUTTONUP:
    case WM_LBUTTONDBLCLK: case WM_RBUTTONDBLCLK: case WM_MBUTTONDBLCLK:
    case WM_MOUSEMOVE:
        on_mouse(window, msg, wp, lp);
        break;
    case WM_SETCURSOR:
        if (cursor && LOWORD(lp) == HTCLIENT) {
            HCURSOR c = read_step<HCURSOR>([&] { return cursor(); });
            if (c) {
                SetCursor(c);
                return TRUE;
            }
        }
        break;
    default:
        break;
    }
    return DefSubclassProc(window, msg, wp, lp);
}

bool WindowedConstituent::context_menu(HWND window, UINT msg, WPARAM wp, LPARAM lp)
{
    POINT p{0, 0};
    switch (msg) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
        // Taken here, so the window's default handling asks for no second menu.
        if (wp != VK_APPS && !(wp == VK_F10 && GetKeyState(VK_SHIFT) < 0)) return false;
        break;
    case WM_RBUTTONUP:
        p = POINT{GET_X_LPARAM(lp), GET_Y_LPARAM(lp)};
        if (window != hwnd_) MapWindowPoints(window, hwnd_, &p, 1);
        on_mouse(window, msg, wp, lp);
        break;
    case WM_CONTEXTMENU:
        if (lp != -1) {
            p = POINT{GET_X_LPARAM(lp), GET_Y_LPARAM(lp)};
            ScreenToClient(hwnd_, &p);
        }
        break;
    default:
        return false;
    }
    Scale s = screen_scale();
    float x = to_twips_x(p.x, s), y = to_twips_y(p.y, s);
    step([&] { on_context_menu(x, y); });
    return true;
}

void WindowedConstituent::on_mouse(HWND window, UINT msg, WPARAM wp, LPARAM lp)
{
    POINT p{GET_X_LPARAM(lp), GET_Y_LPARAM(lp)};
    if (window != hwnd_) MapWindowPoints(window, hwnd_, &p, 1);
    Scale s = screen_scale();
    float x = to_twips_x(p.x, s), y = to_twips_y(p.y, s);
    int16_t sh = 0;
    if (wp & MK_SHIFT) sh |= 1;
    if (wp & MK_CONTROL) sh |= 2;
    if (GetKeyState(VK_MENU) < 0) sh |= 4;
    auto mouse = [&](const MouseHandler &handler, int16_t button) {
        if (handler) step([&] { handler(button, sh, x, y); });
    };
    switch (msg) {
    case WM_LBUTTONDBLCLK:
        if (clicks_from_mouse()) {
            // The second press of a double click: DblClick instead of MouseDown, and its release
            // raises no Click.
            pressed_ = true;
            double_click_ = true;
            fire(on_dbl_click);
            return;
        }
        [[fallthrough]];
    case WM_LBUTTONDOWN:
        pressed_ = true;
        double_click_ = false;
        mouse(on_mouse_down, 1);
        return;
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
        mouse(on_mouse_down, 2);
        return;
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK:
        mouse(on_mouse_down, 4);
        return;
    case WM_LBUTTONUP: {
        bool click = pressed_ && !double_click_ && clicks_from_mouse();
        pressed_ = double_click_ = false;
        mouse(on_mouse_up, 1);
        RECT client{};
        GetClientRect(hwnd_, &client);
        if (click && PtInRect(&client, p)) fire(on_click);
        return;
    }
    case WM_RBUTTONUP:
        mouse(on_mouse_up, 2);
        return;
    case WM_MBUTTONUP:
        mouse(on_mouse_up, 4);
        return;
    case WM_MOUSEMOVE: {
        int16_t held = 0;
        if (wp & MK_LBUTTON) held |= 1;
        if (wp & MK_RBUTTON) held |= 2;
        if (wp & MK_MBUTTON) held |= 4;
        mouse(on_mouse_move, held);
        return;
    }
    default:
        return;
    }
}

void WindowedConstituent::watch_part(HWND part)
{
    if (part) SetWindowSubclass(part, &WindowedConstituent::subclass_proc, kWatchId, reinterpret_cast<DWORD_PTR>(this));
}

void WindowedConstituent::unwatch_part(HWND part)
{
    if (part && IsWindow(part)) RemoveWindowSubclass(part, &WindowedConstituent::subclass_proc, kWatchId);
}

void WindowedConstituent::subclass_part(HWND part)
{
    if (!part) return;
    SetPropW(part, kConstituentProp, this);
    SetWindowSubclass(part, &WindowedConstituent::subclass_proc, kSubclassId, reinterpret_cast<DWORD_PTR>(this));
}

// ---------------------------------------------------------------- colours

void ColoredConstituent::SetBackColor(OleColor color)
{
    if (TranslateColor(color) == kInvalidColor) throw std::invalid_argument("not a colour");
    back_color_ = color;
    if (hwnd_) RedrawWindow(hwnd_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void ColoredConstituent::SetForeColor(OleColor color)
{
    if (TranslateColor(color) == kInvalidColor) throw std::invalid_argument("not a colour");
    fore_color_ = color;
    if (hwnd_) RedrawWindow(hwnd_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

HBRUSH ColoredConstituent::paint_colors(HDC dc)
{
    Rgb back = TranslateColor(back_color_), fore = TranslateColor(fore_color_);
    if (back == kInvalidColor) back = GetSysColor(COLOR_WINDOW);
    if (fore == kInvalidColor) fore = GetSysColor(COLOR_WINDOWTEXT);
    if (!brush_ || brush_rgb_ != back) {
        brush_.reset(CreateSolidBrush(back));
        brush_rgb_ = back;
    }
    SetBkColor(dc, back);
    SetTextColor(dc, IsWindowEnabled(hwnd_) ? fore : GetSysColor(COLOR_GRAYTEXT));
    return brush_.get();
}

const wchar_t *CommonControlClass(DWORD icc, const wchar_t *class_name)
{
    INITCOMMONCONTROLSEX init{sizeof init, icc};
    InitCommonControlsEx(&init); // cheap once done; a failure shows as no window
    return class_name;
}

bool WindowWithin(HWND root, HWND window)
{
    if (!root || !window) return false;
    for (HWND w = window; w; w = GetWindow(w, GW_OWNER))
        if (w == root || IsChild(root, w)) return true;
    return false;
}

} // namespace tarn
