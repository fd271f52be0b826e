#include "buttons/frmctrlTOOLTIP.h"

#include <memory>

#include "buttons/cbtn_layout.h"
#include "foundation/color_translate.h"
#include "foundation/object_window.h"
#include "foundation/trap.h"
#include "runtime/module.h"

namespace tarn {

namespace {

constexpr wchar_t kClass[] = L"TarnControlsTooltip";
constexpr UINT_PTR tmrSTART = 1, tmrSHOW = 2, tmrPARENT = 3;
ATOM g_class = 0;

thread_local std::unique_ptr<frmctrlTOOLTIP> t_tip;
thread_local int t_users = 0;

} // namespace

const wchar_t *frmctrlTOOLTIP::window_class()
{
    return RegisterObjectWindowClass(g_class, kClass, &ObjectWindowProc<frmctrlTOOLTIP>, module::instance(), CS_SAVEBITS);
}

frmctrlTOOLTIP &frmctrlTOOLTIP::Instance()
{
    if (!t_tip) t_tip = std::make_unique<frmctrlTOOLTIP>();
    if (!t_tip->hwnd_) t_tip->load();
    return *t_tip;
}

frmctrlTOOLTIP *frmctrlTOOLTIP::Existing() { return t_tip.get(); }

void frmctrlTOOLTIP::AddUser() { ++t_users; }

void frmctrlTOOLTIP::RemoveUser()
{
    if (t_users > 0 && --t_users == 0 && t_tip) {
        step([] { t_tip->DestroyTip(); });
        t_tip.reset();
    }
}

UINT frmctrlTOOLTIP::TipStartMessage()
{
    static const UINT msg = RegisterWindowMessageW(L"TarnControls.TipStart");
    return msg;
}

frmctrlTOOLTIP::frmctrlTOOLTIP()
{
    NONCLIENTMETRICSW m{};
    m.cbSize = sizeof m;
    if (SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof m, &m, 0)) font_.reset(CreateFontIndirectW(&m.lfStatusFont));
}

frmctrlTOOLTIP::~frmctrlTOOLTIP()
{
    if (hwnd_) {
        may_unload_ = true;
        DestroyWindow(hwnd_);
    }
}

void frmctrlTOOLTIP::load()
{
    may_unload_ = false;
    hwnd_ = CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_TOPMOST | WS_EX_NOACTIVATE, window_class(), L"", WS_POPUP, 0, 0, 10,
                            10, nullptr, nullptr, module::instance(), this);
    if (!hwnd_) return;
    Margin(3); // the form's load handler

}

// ---------------------------------------------------------------- members

void frmctrlTOOLTIP::CreateTip(HWND owner, const std::wstring &text, OleColor back, OleColor fore)
{
    owner_ = owner;
    back_ = back;
    fore_ = fore;
    Text(text);
}

void frmctrlTOOLTIP::DestroyTip()
{
    Text(L"");
    may_unload_ = true;
    if (hwnd_) SendMessageW(hwnd_, WM_CLOSE, 0, 0);
    owner_ = nullptr;
}

void frmctrlTOOLTIP::Margin(int32_t pixels)
{
    margin_ = pixels;
    // lblTIP keeps its size and moves to (margin, margin).
    OffsetRect(&label_, margin_ - label_.left, margin_ - label_.top);
    if (hwnd_) InvalidateRect(hwnd_, nullptr, TRUE);
}

void frmctrlTOOLTIP::ShowTime(int32_t ms)
{
    show_time_ = ms;
    if (hwnd_ && shown() && ms > 0) SetTimer(hwnd_, tmrSHOW, static_cast<UINT>(ms), nullptr);
}

void frmctrlTOOLTIP::Text(const std::wstring &text)
{
    text_ = text;
    if (hwnd_) SetWindowTextW(hwnd_, text_.c_str());
    fit();
}

void frmctrlTOOLTIP::ToolBackColor(OleColor c)
{
    back_ = c;
    if (hwnd_) InvalidateRect(hwnd_, nullptr, TRUE);
}

void frmctrlTOOLTIP::ToolForeColor(OleColor c)
{
    fore_ = c;
    if (hwnd_) InvalidateRect(hwnd_, nullptr, TRUE);
}

void frmctrlTOOLTIP::fit()
{
    if (!hwnd_) return;
    // The label's size is the text's; the window is the label plus the margin on every side.
    RECT r{0, 0, 0, 0};
    if (!text_.empty()) {
        window_dc dc(hwnd_);
        select_guard use(dc.get(), font_.get());
        DrawTextW(dc.get(), text_.c_str(), static_cast<int>(std::min<size_t>(text_.size(), 0x7FFFFFF)), &r,
                  DT_SINGLELINE | DT_NOPREFIX | DT_CALCRECT);
    }
    r.right = std::min<LONG>(r.right, GetSystemMetrics(SM_CXVIRTUALSCREEN));
    label_ = {margin_, margin_, margin_ + r.right, margin_ + r.bottom};
    int w = r.right + 2 * margin_, h = r.bottom + 2 * margin_;
    SetWindowPos(hwnd_, nullptr, 0, 0, std::max(w, 0), std::max(h, 0),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    InvalidateRect(hwnd_, nullptr, TRUE);
}

void frmctrlTOOLTIP::ShowTip()
{
    if (!hwnd_) load();
    if (!hwnd_) return;
    POINT pt{0, 0};
    GetCursorPos(&pt);
    RECT wr{};
    GetWindowRect(hwnd_, &wr);
    MONITORINFO mi{};
    mi.cbSize = sizeof mi;
    PxRect work{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    if (GetMonitorInfoW(MonitorFromPoint(pt, MONITOR_DEFAULTTONEAREST), &mi))
        work = {mi.rcWork.left, mi.rcWork.top, mi.rcWork.right, mi.rcWork.bottom};
    // Below the arrow's tip: about two thirds of the cursor's height.
    TipPlace at = PlaceTip(pt.x, pt.y, GetSystemMetrics(SM_CYCURSOR) * 2 / 3, wr.right - wr.left, wr.bottom - wr.top, work);
    SetWindowPos(hwnd_, HWND_TOPMOST, at.x, at.y, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    InvalidateRect(hwnd_, nullptr, TRUE);
    KillTimer(hwnd_, tmrSTART);
    start_pending_ = false;
    if (show_time_ > 0) SetTimer(hwnd_, tmrSHOW, static_cast<UINT>(show_time_), nullptr);
    SetTimer(hwnd_, tmrPARENT, kParentMs, nullptr);
}

void frmctrlTOOLTIP::StartTiming(HWND owner)
{
    if (!hwnd_) load();
    if (!hwnd_) return;
    if (owner == owner_ && (shown() || start_pending_)) return;
    if (owner != owner_) hide();
    owner_ = owner;
    // Started once per hover: later moves over the same owner do not delay the tip further.
    start_pending_ = SetTimer(hwnd_, tmrSTART, kStartMs, nullptr) != 0;
}

void frmctrlTOOLTIP::Close()
{
    if (hwnd_) SendMessageW(hwnd_, WM_CLOSE, 0, 0);
}

void frmctrlTOOLTIP::hide()
{
    start_pending_ = false;
    if (!hwnd_) return;
    KillTimer(hwnd_, tmrSTART);
    KillTimer(hwnd_, tmrSHOW);
    KillTimer(hwnd_, tmrPARENT);
    if (IsWindowVisible(hwnd_)) ShowWindow(hwnd_, SW_HIDE);
}

// ---------------------------------------------------------------- the window

void frmctrlTOOLTIP::attach_window(HWND hwnd) { hwnd_ = hwnd; }

void frmctrlTOOLTIP::detach_window(HWND) { hwnd_ = nullptr; }

LRESULT frmctrlTOOLTIP::on_message(UINT msg, WPARAM wp, LPARAM lp)
{
    switch (msg) {
    case WM_PAINT: {
        paint_dc p(hwnd_);
        step([&] { paint(p.get()); });
        return 0;
    }
    case WM_PRINTCLIENT:
        step([&] { paint(reinterpret_cast<HDC>(wp)); });
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_TIMER:
        step([&] { on_timer(static_cast<UINT_PTR>(wp)); });
        return 0;
    case WM_CLOSE:
        // Cancelled while the tip is in use: it only hides.
        hide();
        if (may_unload_) DestroyWindow(hwnd_);
        return 0;
    case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
    case WM_NCHITTEST:
        return HTTRANSPARENT; // the pointer passes through to the button below
    default:
        return DefWindowProcW(hwnd_, msg, wp, lp);
    }
}

void frmctrlTOOLTIP::on_timer(UINT_PTR id)
{
    if (id == tmrSTART) {
        KillTimer(hwnd_, tmrSTART);
        start_pending_ = false;
        // The owner decides: it shows the tip only if it still hovers and has a text.
        if (owner_ && IsWindow(owner_)) SendMessageW(owner_, TipStartMessage(), 0, 0);
    } else if (id == tmrSHOW) {
        hide();
    } else if (id == tmrPARENT) {
        POINT pt{};
        RECT owner_rect{};
        bool keep = owner_ && IsWindow(owner_) && IsWindowVisible(owner_) && GetCursorPos(&pt) &&
                    GetWindowRect(owner_, &owner_rect) && PtInRect(&owner_rect, pt);
        if (!keep) hide();
    }
}

void frmctrlTOOLTIP::paint(HDC dc)
{
    RECT c{};
    GetClientRect(hwnd_, &c);
    int w = c.right, h = c.bottom;
    FillSolid(dc, c, TranslateColorOr(back_, GetSysColor(COLOR_INFOBK)));
    {
        select_guard use(dc, font_.get());
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, TranslateColorOr(fore_, GetSysColor(COLOR_INFOTEXT)));
        RECT r = label_;
        DrawTextW(dc, text_.c_str(), static_cast<int>(std::min<size_t>(text_.size(), 0x7FFFFFF)), &r,
                  DT_SINGLELINE | DT_NOPREFIX);
    }
    // The one-pixel frame in the window-frame colour.
    Rgb frame = TranslateColorOr(0x80000006u, GetSysColor(COLOR_WINDOWFRAME));
    FrameSolid(dc, RECT{0, 0, w, h}, frame);
}

void UnregisterTooltipWindowClass()
{
    if (g_class) UnregisterClassW(kClass, module::instance());
    g_class = 0;
}

} // namespace tarn
