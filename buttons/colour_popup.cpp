#include "buttons/colour_popup.h"

#include <windowsx.h>

#include <algorithm>

#include "buttons/frmctrlTOOLTIP.h"
#include "foundation/color_translate.h"
#include "foundation/object_window.h"
#include "foundation/trap.h"
#include "runtime/module.h"

namespace tarn {

namespace {

constexpr wchar_t kClass[] = L"TarnControlsColourPopup";
constexpr DWORD kStyle = WS_POPUP | WS_BORDER | WS_CLIPCHILDREN;
constexpr DWORD kExStyle = WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE;
constexpr OleColor kInfoBack = 0x80000018u, kInfoText = 0x80000017u;
ATOM g_class = 0;

RECT win_rect(const PxRect &r) { return {r.left, r.top, r.right, r.bottom}; }

void fill(HDC dc, const PxRect &r, Rgb c) { FillSolid(dc, win_rect(r), c); }
void frame(HDC dc, const PxRect &r, Rgb c) { FrameSolid(dc, win_rect(r), c); }

PxRect inset(const PxRect &r, int32_t by) { return {r.left + by, r.top + by, r.right - by, r.bottom - by}; }

bool meets(const PxRect &r, const RECT &dirty)
{
    return r.left < dirty.right && dirty.left < r.right && r.top < dirty.bottom && dirty.top < r.bottom;
}

// A colour square: framed in the shadow colour, the colour inside.
void swatch(HDC dc, const PxRect &r, Rgb colour)
{
    frame(dc, r, GetSysColor(COLOR_BTNSHADOW));
    fill(dc, inset(r, 1), colour);
}

void text(HDC dc, const PxRect &r, const std::wstring &s, UINT align)
{
    RECT w = win_rect(r);
    DrawTextW(dc, s.c_str(), static_cast<int>(std::min<size_t>(s.size(), 0x7FFFFFF)), &w,
              align | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
}

} // namespace

ColourPopup::ColourPopup(ColourPopupSink &sink, TimerClock &clock) : tmrHOVER(clock), sink_(sink)
{
    frmctrlTOOLTIP::AddUser();
    palette_ = MakePalette(kDefaultPalette);
    back_ = fill_ = syscolor::Window;
    sepbar1.BackStyle = 0; // the panel shows through
    tmrHOVER.Interval(kHoverMs);
    tmrHOVER.OnTimer = [this] { on_hover(); };
}

ColourPopup::~ColourPopup()
{
    *alive_ = false;
    tmrHOVER.Enabled(false);
    open_ = false;
    if (hwnd_) {
        step([&] { close_tip(); });
        hiding_ = true;
        if (GetCapture() == hwnd_) ReleaseCapture();
        DestroyWindow(hwnd_);
    }
    frmctrlTOOLTIP::RemoveUser();
}

// ---------------------------------------------------------------- settings

void ColourPopup::SetPalette(int32_t number)
{
    if (number == palette_.number && !palette_.cells.empty()) return;
    Palette p = MakePalette(number);
    palette_ = std::move(p);
    if (active_ >= static_cast<int32_t>(palette_.cells.size())) active_ = popup_item::None;
    if (hot_ >= static_cast<int32_t>(palette_.cells.size())) hot_ = popup_item::None;
    layout_stale_ = true;
    if (open_) {
        // The same top-left corner, the new size.
        relayout();
        RECT r{0, 0, layout_.width, layout_.height};
        AdjustWindowRectEx(&r, kStyle, FALSE, kExStyle);
        SetWindowPos(hwnd_, nullptr, 0, 0, r.right - r.left, r.bottom - r.top,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        InvalidateRect(hwnd_, nullptr, FALSE);
    }
}

void ColourPopup::SetColours(OleColor back, OleColor fill, OleColor fore)
{
    back_ = back;
    fill_ = fill;
    fore_ = fore;
    if (hwnd_) InvalidateRect(hwnd_, nullptr, FALSE);
}

void ColourPopup::SetSelectedColour(OleColor colour)
{
    selected_ = colour;
    if (hwnd_) InvalidateRect(hwnd_, nullptr, FALSE);
}

void ColourPopup::SetDocColour(OleColor colour)
{
    doc_ = colour;
    invalidate(popup_item::Doc);
}

void ColourPopup::SetCaptions(const std::wstring &doc, const std::wstring &custom)
{
    doc_caption_ = doc;
    custom_caption_ = custom;
    layout_stale_ = true;
    if (hwnd_) InvalidateRect(hwnd_, nullptr, FALSE);
}

void ColourPopup::SetFont(const LOGFONTW &font)
{
    unique_font f(CreateFontIndirectW(&font));
    if (!f) return;
    font_ = std::move(f);
    layout_stale_ = true;
    if (hwnd_) InvalidateRect(hwnd_, nullptr, FALSE);
}

// The font set, else the system's message font, made when first needed: most colour
// buttons never open their pop-up.
HFONT ColourPopup::font()
{
    if (!font_) {
        NONCLIENTMETRICSW m{};
        m.cbSize = sizeof m;
        if (SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof m, &m, 0)) font_.reset(CreateFontIndirectW(&m.lfMessageFont));
    }
    return font_.get();
}

// ---------------------------------------------------------------- geometry

void ColourPopup::relayout()
{
    window_dc screen(nullptr);
    HDC dc = screen.get();
    int32_t dpi = 96, text_h = 13, text_w = 0;
    if (dc) {
        select_guard use(dc, font());
        TEXTMETRICW tm{};
        if (GetTextMetricsW(dc, &tm)) text_h = tm.tmHeight;
        dpi = GetDeviceCaps(dc, LOGPIXELSY);
        for (const std::wstring *s : {&doc_caption_, &custom_caption_}) {
            SIZE sz{};
            if (GetTextExtentPoint32W(dc, s->c_str(), static_cast<int>(std::min<size_t>(s->size(), 4096)), &sz))
                text_w = std::max<int32_t>(text_w, sz.cx);
        }
    }
    layout_ = LayoutPopup(palette_.columns, palette_.rows, PopupMetricsFor(dpi, text_h, text_w));
    layout_stale_ = false;
}

const PopupLayout &ColourPopup::Layout()
{
    if (layout_stale_) relayout();
    return layout_;
}

bool ColourPopup::inside(int32_t x, int32_t y) const
{
    return x >= 0 && y >= 0 && x < layout_.width && y < layout_.height;
}

// ---------------------------------------------------------------- opening and closing

void ColourPopup::create(HWND owner_root)
{
    if (hwnd_) {
        hiding_ = true;
        DestroyWindow(hwnd_);
        hiding_ = false;
    }
    owner_root_ = owner_root;
    CreateWindowExW(kExStyle, RegisterObjectWindowClass(g_class, kClass, &ObjectWindowProc<ColourPopup>, module::instance(), CS_DROPSHADOW | CS_SAVEBITS), L"", kStyle, 0, 0, 10, 10, owner_root, nullptr,
                    module::instance(), this);
}

bool ColourPopup::Show(HWND owner, const RECT &anchor)
{
    if (open_) return true;
    HWND root = owner ? GetAncestor(owner, GA_ROOT) : nullptr;
    if (!hwnd_ || root != owner_root_) create(root);
    if (!hwnd_) return false;
    relayout();
    RECT r{0, 0, layout_.width, layout_.height};
    AdjustWindowRectEx(&r, kStyle, FALSE, kExStyle);
    const int32_t w = r.right - r.left, h = r.bottom - r.top;
    PxRect work{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    MONITORINFO mi{};
    mi.cbSize = sizeof mi;
    if (GetMonitorInfoW(MonitorFromRect(&anchor, MONITOR_DEFAULTTONEAREST), &mi))
        work = {mi.rcWork.left, mi.rcWork.top, mi.rcWork.right, mi.rcWork.bottom};
    PopupPlace at = PlacePopup({anchor.left, anchor.top, anchor.right, anchor.bottom}, w, h, work);
    active_ = hot_ = popup_item::None;
    pressed_ = false;
    SetWindowPos(hwnd_, HWND_TOP, at.x, at.y, w, h, SWP_NOACTIVATE | SWP_SHOWWINDOW);
    InvalidateRect(hwnd_, nullptr, FALSE);
    open_ = true;
    SetCapture(hwnd_);
    return true;
}

void ColourPopup::Hide(PopupClose why)
{
    if (!open_) return;
    open_ = false;
    pressed_ = false;
    hot_ = popup_item::None;
    tmrHOVER.Enabled(false);
    step([&] { close_tip(); });
    // Our own release and hide: not a loss of the capture to report.
    hiding_ = true;
    if (GetCapture() == hwnd_) ReleaseCapture();
    ShowWindow(hwnd_, SW_HIDE);
    hiding_ = false;
    sink_.Closed(why);
}

// ---------------------------------------------------------------- items

bool ColourPopup::has_colour(int32_t item) const
{
    return item == popup_item::Doc || (item >= 0 && item < static_cast<int32_t>(palette_.cells.size()));
}

OleColor ColourPopup::colour_of(int32_t item) const
{
    if (item == popup_item::Doc) return doc_;
    if (item >= 0 && item < static_cast<int32_t>(palette_.cells.size())) return palette_.cells[static_cast<size_t>(item)].colour;
    return 0;
}

std::wstring ColourPopup::name_of(int32_t item) const
{
    if (item == popup_item::Doc) {
        // The palette's name for the document colour when it has one.
        int32_t i = palette_.find(TranslateColorOr(doc_, kInvalidColor));
        return i >= 0 ? palette_.cells[static_cast<size_t>(i)].name : doc_caption_;
    }
    if (item == popup_item::Custom) return custom_caption_;
    if (item >= 0 && item < static_cast<int32_t>(palette_.cells.size())) return palette_.cells[static_cast<size_t>(item)].name;
    return L"";
}

OleColor ColourPopup::ActiveColour() const { return colour_of(active_); }

int32_t ColourPopup::SelectedItem() const { return palette_.find(TranslateColorOr(selected_, kInvalidColor)); }

int32_t ColourPopup::ItemAt(int32_t x, int32_t y)
{
    return HitTest(Layout(), static_cast<int32_t>(palette_.cells.size()), x, y);
}

void ColourPopup::Choose(int32_t item)
{
    if (open_ && (has_colour(item) || item == popup_item::Custom)) choose(item);
}
std::wstring ColourPopup::ActiveText() const { return has_colour(active_) ? name_of(active_) : L""; }

void ColourPopup::invalidate(int32_t item)
{
    if (!hwnd_ || layout_stale_) return;
    RECT r = win_rect(layout_.item(item));
    if (r.right > r.left) InvalidateRect(hwnd_, &r, FALSE);
}

void ColourPopup::set_active(int32_t item, bool by_mouse)
{
    if (by_mouse && item != hot_) {
        hot_ = item;
        // A new resting place: the tip of the old one goes, the wait for the new one starts.
        step([&] { close_tip(); });
        tmrHOVER.Enabled(false);
        if (has_colour(item)) tmrHOVER.Enabled(true);
    }
    if (item == active_) return;
    invalidate(active_);
    active_ = item;
    invalidate(active_);
    if (!by_mouse) {
        step([&] { close_tip(); });
        tmrHOVER.Enabled(false);
    }
    step([&] { accessible_.focus_moved(hwnd_, item, static_cast<int32_t>(palette_.cells.size())); });
    if (has_colour(item)) sink_.ActiveChanged(colour_of(item), name_of(item));
}

void ColourPopup::choose(int32_t item)
{
    const bool more = item == popup_item::Custom;
    const OleColor colour = colour_of(item);
    if (!more) {
        selected_ = colour;
        if (hwnd_) InvalidateRect(hwnd_, nullptr, FALSE);
    }
    std::shared_ptr<bool> alive = alive_;
    Hide(more ? PopupClose::More : PopupClose::Chosen);
    if (!*alive) return;
    if (more) sink_.MoreChosen();
    else sink_.ColourChosen(colour);
}

bool ColourPopup::Key(UINT vk)
{
    if (!open_) return false;
    PopupMove move;
    switch (vk) {
    case VK_ESCAPE:
        Hide(PopupClose::Escape);
        return true;
    case VK_RETURN:
    case VK_SPACE:
        if (active_ != popup_item::None) choose(active_);
        return true;
    case VK_LEFT: move = PopupMove::Left; break;
    case VK_RIGHT: move = PopupMove::Right; break;
    case VK_UP: move = PopupMove::Up; break;
    case VK_DOWN: move = PopupMove::Down; break;
    case VK_HOME: move = PopupMove::Home; break;
    case VK_END: move = PopupMove::End; break;
    default: return false;
    }
    // From nothing active, the keys start at the selected colour's cell.
    const int32_t start = std::max(palette_.find(TranslateColorOr(selected_, kInvalidColor)), 0);
    set_active(MoveActive(active_, move, palette_.columns, static_cast<int32_t>(palette_.cells.size()), start), false);
    return true;
}

// ---------------------------------------------------------------- the pointer

void ColourPopup::on_move(int32_t x, int32_t y)
{
    if (!open_) return;
    if (!inside(x, y)) {
        // Gone from the pop-up (the capture still reports it): no tip, no wait; the active
        // item stays for the keys.
        hot_ = popup_item::None;
        tmrHOVER.Enabled(false);
        step([&] { close_tip(); });
        return;
    }
    set_active(HitTest(layout_, static_cast<int32_t>(palette_.cells.size()), x, y), true);
}

void ColourPopup::on_press(bool left, int32_t x, int32_t y)
{
    if (!open_) return;
    if (!inside(x, y)) {
        Hide(PopupClose::ClickOutside);
        return;
    }
    step([&] { close_tip(); });
    if (!left) return;
    pressed_ = true;
    set_active(HitTest(layout_, static_cast<int32_t>(palette_.cells.size()), x, y), true);
}

void ColourPopup::on_release(int32_t x, int32_t y)
{
    if (!open_ || !pressed_) return;
    pressed_ = false;
    if (!inside(x, y)) return;
    int32_t item = HitTest(layout_, static_cast<int32_t>(palette_.cells.size()), x, y);
    if (item != popup_item::None) choose(item);
}

// ---------------------------------------------------------------- the tooltip

void ColourPopup::on_hover()
{
    tmrHOVER.Enabled(false);
    if (!open_ || !has_colour(hot_) || pressed_) return;
    frmctrlTOOLTIP &tip = frmctrlTOOLTIP::Instance();
    tip.CreateTip(hwnd_, name_of(hot_), kInfoBack, kInfoText);
    tip.ShowTip();
}

void ColourPopup::close_tip()
{
    frmctrlTOOLTIP *tip = frmctrlTOOLTIP::Existing();
    if (tip && hwnd_ && tip->owner() == hwnd_) tip->Close();
}

// ---------------------------------------------------------------- painting

void ColourPopup::Draw(HDC dc)
{
    if (layout_stale_) relayout();
    paint(dc, RECT{0, 0, layout_.width, layout_.height});
}

void ColourPopup::paint(HDC dc, const RECT &dirty)
{
    if (layout_stale_) relayout();
    const PopupLayout &L = layout_;
    const Rgb back = TranslateColorOr(back_, GetSysColor(COLOR_WINDOW)), fill_colour = TranslateColorOr(fill_, back),
              fore = TranslateColorOr(fore_, GetSysColor(COLOR_BTNTEXT)), highlight = GetSysColor(COLOR_HIGHLIGHT);
    const Rgb selected = TranslateColorOr(selected_, kInvalidColor);
    saved_dc keep(dc);
    select_guard use(dc, font());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, fore);
    fill(dc, {dirty.left, dirty.top, dirty.right, dirty.bottom}, back);

    // The active item: the fill colour framed in the highlight colour.
    auto item_back = [&](int32_t item, const PxRect &r) {
        if (item != active_) return;
        fill(dc, r, fill_colour);
        frame(dc, r, highlight);
    };
    if (meets(L.doc, dirty)) {
        item_back(popup_item::Doc, L.doc);
        swatch(dc, L.doc_swatch, TranslateColorOr(doc_, back));
        text(dc, L.doc_text, doc_caption_, DT_LEFT);
    }
    for (int32_t i = 0; i < static_cast<int32_t>(palette_.cells.size()); ++i) {
        PxRect r = L.item(i);
        if (!meets(r, dirty)) continue;
        item_back(i, r);
        const Rgb colour = palette_.cells[static_cast<size_t>(i)].colour;
        // The selected colour carries a frame in the text colour round its square.
        if (colour == selected) frame(dc, inset(r, 1), fore);
        swatch(dc, PopupLayout::swatch(r), colour);
    }
    if (meets(L.separator, dirty)) {
        // sepbar1: the separator bar's own group frame, without a caption and collapsed to an
        // etched line across the middle of its place. The frame puts its line half a text
        // line below its top.
        TEXTMETRICW tm{};
        GetTextMetricsW(dc, &tm);
        const Scale pixels{1, 1};
        const int32_t line = (L.separator.top + L.separator.bottom) / 2 - 1;
        sepbar1.Left = static_cast<float>(L.separator.left);
        sepbar1.Top = static_cast<float>(line - tm.tmHeight / 2);
        sepbar1.Width = static_cast<float>(L.separator.right - L.separator.left);
        sepbar1.Height = 0;
        sepbar1.draw(dc, pixels);
    }
    if (meets(L.custom, dirty)) {
        item_back(popup_item::Custom, L.custom);
        text(dc, L.custom, custom_caption_, DT_CENTER);
    }
}

// ---------------------------------------------------------------- the window

void ColourPopup::attach_window(HWND hwnd) { hwnd_ = hwnd; }

void ColourPopup::detach_window(HWND hwnd)
{
    if (hwnd_ != hwnd) return;
    // Also when its owner, the form, is destroyed first: the next Show makes a new one.
    hwnd_ = nullptr;
    accessible_.disconnect();
    open_ = pressed_ = false;
    tmrHOVER.Enabled(false);
}

LRESULT ColourPopup::on_message(UINT msg, WPARAM wp, LPARAM lp)
{
    const int32_t x = GET_X_LPARAM(lp), y = GET_Y_LPARAM(lp);
    switch (msg) {
    case WM_PAINT: {
        paint_dc p(hwnd_);
        step([&] { paint(p.get(), p.dirty()); });
        return 0;
    }
    case WM_PRINTCLIENT:
        step([&] { Draw(reinterpret_cast<HDC>(wp)); });
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_GETOBJECT: {
        bool handled = false;
        LRESULT r = accessible_.answer(hwnd_, wp, lp, *this, handled);
        return handled ? r : DefWindowProcW(hwnd_, msg, wp, lp);
    }
    case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
    case WM_MOUSEMOVE:
        step([&] { on_move(x, y); });
        return 0;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
        step([&] { on_press(msg == WM_LBUTTONDOWN, x, y); });
        return 0;
    case WM_LBUTTONUP:
        step([&] { on_release(x, y); });
        return 0;
    case WM_KEYDOWN:
        step([&] { Key(static_cast<UINT>(wp)); });
        return 0;
    case WM_CAPTURECHANGED:
        // Someone else took the mouse (another application, a menu, a dialog).
        if (open_ && !hiding_ && reinterpret_cast<HWND>(lp) != hwnd_) step([&] { Hide(PopupClose::FocusLost); });
        return 0;
    case WM_CANCELMODE:
        if (open_) step([&] { Hide(PopupClose::FocusLost); });
        return 0;
    case WM_ACTIVATEAPP:
        if (!wp && open_) step([&] { Hide(PopupClose::FocusLost); });
        return 0;
    default:
        return DefWindowProcW(hwnd_, msg, wp, lp);
    }
}

void UnregisterColourPopupClass()
{
    if (g_class) UnregisterClassW(kClass, module::instance());
    g_class = 0;
}

} // namespace tarn
