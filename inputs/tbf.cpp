#include "inputs/tbf.h"

#include <stdexcept>

#include "foundation/checked.h"
#include "foundation/color_translate.h"
#include "foundation/font_object.h"
#include "foundation/handles.h"
#include "foundation/metrics.h"
#include "inputs/tbf_paint.h"
#include "runtime/mnemonic.h"

namespace tarn {

const ControlClass tbf::Class = {
    L"tbf",
    L"Tarn Controls tab strip",
    &CLSID_tbf,
    &IID_Itbf,
    &DIID_ItbfEvents,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST,
    &tbf::Create,
    true, // draws itself, touches no file and no other window
};

namespace {

// The strip's own event beyond the common five.
constexpr DISPID kBeforeClick = 6;
constexpr int16_t kDefaultTabs = 3;
// More tabs than any strip can show: a count beyond it is refused.
constexpr int16_t kMostTabs = 1000;

VARIANT_BOOL vb(bool b) { return b ? VARIANT_TRUE : VARIANT_FALSE; }

HFONT font_handle(const ComPtr<IFontDisp> &font)
{
    HFONT h = nullptr;
    if (ComPtr<IFont> f = font.as<IFont>(IID_IFont)) f->get_hFont(&h);
    return h;
}


Rgb drawn(OleColor c, int fallback)
{
    Rgb rgb = TranslateColor(c);
    return rgb == kInvalidColor ? GetSysColor(fallback) : rgb;
}

} // namespace

void tbf::Initialize()
{
    SetDesignSize(3600, 375);
    for (int16_t i = 0; i < kDefaultTabs; ++i) captions_.push_back(default_caption(static_cast<size_t>(i)));
    SetBackColor(back_);
    font_ = Ambient().Font();
}

std::wstring tbf::default_caption(size_t index) const { return L"Tab " + std::to_wstring(index); }

// ---------------------------------------------------------------- persistence

void tbf::InitProperties()
{
    captions_.clear();
    for (int16_t i = 0; i < kDefaultTabs; ++i) captions_.push_back(default_caption(static_cast<size_t>(i)));
    selected_ = 0;
    style_ = tabstyle::Classic;
    enabled_ = true;
    back_ = syscolor::ButtonFace;
    fore_ = syscolor::ButtonText;
    SetBackColor(back_);
    step([&] { font_ = Ambient().Font(); });
}

void tbf::ReadProperties(PropertyBag &bag)
{
    step([&] {
        int16_t n = bag.read_int(L"TABS", kDefaultTabs);
        if (n < 0 || n > kMostTabs) n = kDefaultTabs;
        captions_.assign(static_cast<size_t>(n), std::wstring());
    });
    for (size_t i = 0; i < captions_.size(); ++i)
        step([&] { captions_[i] = bag.read_string(L"TABCAPTION" + std::to_wstring(i), default_caption(i)); });
    step([&] {
        int16_t s = bag.read_int(L"SELECTEDTAB", 0);
        selected_ = captions_.empty() ? -1 : (s >= 0 && s < static_cast<int>(captions_.size()) ? s : 0);
    });
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { font_ = bag.read_font(L"FONT", ambient.get()); });
    step([&] { back_ = bag.read_color(L"BACKCOLOR", syscolor::ButtonFace); });
    step([&] { fore_ = bag.read_color(L"FORECOLOR", syscolor::ButtonText); });
    step([&] {
        int16_t s = bag.read_int(L"STYLE", tabstyle::Classic);
        style_ = s >= tabstyle::Classic && s <= tabstyle::XP ? s : tabstyle::Classic;
    });
    step([&] { enabled_ = bag.read_bool(L"ENABLED", true); });
    SetBackColor(back_);
    ControlInfoChanged();
}

void tbf::WriteProperties(PropertyBag &bag)
{
    step([&] { bag.write_int(L"TABS", checked<int16_t>(static_cast<int64_t>(captions_.size())), kDefaultTabs); });
    for (size_t i = 0; i < captions_.size(); ++i)
        step([&] { bag.write_string(L"TABCAPTION" + std::to_wstring(i), captions_[i], default_caption(i)); });
    step([&] { bag.write_int(L"SELECTEDTAB", static_cast<int16_t>(selected_), 0); });
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { bag.write_font(L"FONT", font_.get(), ambient.get()); });
    step([&] { bag.write_color(L"BACKCOLOR", back_, syscolor::ButtonFace); });
    step([&] { bag.write_color(L"FORECOLOR", fore_, syscolor::ButtonText); });
    step([&] { bag.write_int(L"STYLE", style_, tabstyle::Classic); });
    step([&] { bag.write_bool(L"ENABLED", enabled_, true); });
}

// ---------------------------------------------------------------- layout and drawing

int tbf::pad() const { return MulDiv(6, ScreenDpiX(), 96); }

std::vector<TabBox> tbf::tabs() const
{
    std::vector<int> widths;
    window_dc screen(nullptr);
    {
        saved_dc keep(screen.get());
        if (HFONT f = font_handle(font_)) SelectObject(screen.get(), f);
        for (const std::wstring &c : captions_) {
            RECT r{0, 0, 0, 0};
            DrawTextW(screen.get(), c.c_str(), static_cast<int>(c.size()), &r, DT_SINGLELINE | DT_CALCRECT);
            widths.push_back(r.right - r.left);
        }
    }
    return TabLayout(widths, PixelWidth(), PixelHeight(), style_, selected_, pad());
}

void tbf::DrawSurface(HDC dc, const Scale &)
{
    TabStripLook look;
    look.style = style_;
    look.back = drawn(back_, COLOR_BTNFACE);
    look.fore = drawn(fore_, COLOR_BTNTEXT);
    look.enabled = enabled_;
    look.focused = focused();
    look.selected = selected_;
    look.hot = hot_;
    look.font = font_handle(font_);
    look.dpi = ScreenDpiX();
    look.pad = pad();
    PaintTabStrip(dc, PixelWidth(), PixelHeight(), tabs(), captions_, look);
}

bool tbf::focused() const
{
    HWND w = hWnd();
    return w && GetFocus() == w;
}

// ---------------------------------------------------------------- picking a tab

void tbf::select(int index)
{
    if (index < 0 || index >= static_cast<int>(captions_.size())) throw std::out_of_range("no such tab");
    if (index == selected_) return;
    bool cancel = false;
    raise(kBeforeClick, EventArgs().val(static_cast<int16_t>(index)).ref(cancel));
    if (cancel || index >= static_cast<int>(captions_.size())) return; // refused, or the host removed it
    selected_ = index;
    Invalidate();
    AccessibleChanged(EVENT_OBJECT_SELECTION, index + 1);
    if (focused()) AccessibleChanged(EVENT_OBJECT_FOCUS, index + 1);
    raise(events::Click);
}

void tbf::set_hot(int index)
{
    if (index == hot_) return;
    hot_ = index;
    Invalidate();
}

void tbf::MouseDown(int16_t button, int16_t shift, float x, float y)
{
    raise_mouse(events::MouseDown, button, shift, x, y);
    if (button != mouse::Left || !enabled_) return;
    const Scale s = scale();
    std::vector<TabBox> boxes = tabs();
    int tab = TabAt(boxes, selected_, static_cast<int>(x / s.tppx), static_cast<int>(y / s.tppy));
    if (tab >= 0) step([&] { select(tab); });
}

void tbf::MouseMove(int16_t button, int16_t shift, float x, float y)
{
    raise_mouse(events::MouseMove, button, shift, x, y);
    const Scale s = scale();
    step([&] {
        set_hot(enabled_ ? TabAt(tabs(), selected_, static_cast<int>(x / s.tppx), static_cast<int>(y / s.tppy)) : -1);
    });
    TrackMouseLeave();
}

void tbf::MouseUp(int16_t button, int16_t shift, float x, float y)
{
    raise_mouse(events::MouseUp, button, shift, x, y);
}

void tbf::DblClick() { raise(events::DblClick); }

void tbf::KeyDown(int16_t &code, int16_t shift_state)
{
    if (!enabled_) return;
    if (shift_state & shift::Alt) {
        wchar_t ch = static_cast<wchar_t>(MapVirtualKeyW(static_cast<UINT>(code), MAPVK_VK_TO_CHAR));
        int tab = TabWithMnemonic(captions_, ch);
        if (tab >= 0) step([&] { select(tab); });
        return;
    }
    int tab = TabKeyTarget(code, (shift_state & shift::Ctrl) != 0, (shift_state & shift::Shift) != 0,
                           static_cast<int>(captions_.size()), selected_);
    if (tab >= 0) step([&] { select(tab); });
}

UINT tbf::DialogCode() const
{
    // Ctrl+Tab is the strip's; Tab alone moves on to the next control.
    return DLGC_WANTARROWS | (GetKeyState(VK_CONTROL) < 0 ? DLGC_WANTTAB : 0);
}

std::vector<ACCEL> tbf::ControlKeys()
{
    std::vector<ACCEL> keys;
    if (!enabled_ || captions_.empty()) return keys;
    keys.push_back({FVIRTKEY | FCONTROL, VK_TAB, 0});
    keys.push_back({FVIRTKEY | FCONTROL | FSHIFT, VK_TAB, 0});
    for (const std::wstring &c : captions_) {
        wchar_t m = MnemonicOf(c);
        if (!m) continue;
        SHORT vk = VkKeyScanW(m);
        if (vk != -1) keys.push_back({FVIRTKEY | FALT, static_cast<WORD>(vk & 0xFF), 0});
    }
    return keys;
}

void tbf::ControlKey(const MSG &msg)
{
    if (msg.message != WM_KEYDOWN && msg.message != WM_SYSKEYDOWN) return;
    int16_t code = static_cast<int16_t>(msg.wParam);
    int16_t sh = shift::Now();
    if (msg.message == WM_SYSKEYDOWN) sh |= shift::Alt;
    KeyDown(code, sh);
}

void tbf::GotFocus()
{
    Invalidate();
    if (selected_ >= 0) AccessibleChanged(EVENT_OBJECT_FOCUS, selected_ + 1);
}

void tbf::LostFocus() { Invalidate(); }

void tbf::captions_changed()
{
    Invalidate();
    ControlInfoChanged(); // the access keys may have changed
    AccessibleChanged(EVENT_OBJECT_REORDER);
}

// ---------------------------------------------------------------- accessibility

long tbf::AccessibleState()
{
    // The strip keeps its window enabled while Enabled is off (it still shows its tabs).
    long s = UserControl::AccessibleState();
    return enabled_ ? s : (s & ~STATE_SYSTEM_FOCUSABLE) | STATE_SYSTEM_UNAVAILABLE;
}

bool tbf::AccessibleChild(long id, AccessibleElement &out)
{
    if (id < 1 || id > static_cast<long>(captions_.size())) return false;
    const size_t i = static_cast<size_t>(id - 1);
    out.name = StripMnemonic(captions_[i]);
    out.role = ROLE_SYSTEM_PAGETAB;
    out.default_action = L"Switch";
    out.shortcut = MnemonicShortcut(captions_[i]);
    out.state = enabled_ ? STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_FOCUSABLE : STATE_SYSTEM_UNAVAILABLE;
    if (static_cast<int>(i) == selected_) {
        out.state |= STATE_SYSTEM_SELECTED;
        if (focused()) out.state |= STATE_SYSTEM_FOCUSED;
    }
    std::vector<TabBox> boxes = tabs();
    const TabBox &b = boxes[i];
    out.rect = RECT{b.left, b.top, b.right, b.bottom};
    return true;
}

void tbf::DoChildDefaultAction(long id)
{
    if (enabled_) select(static_cast<int>(id - 1));
}

bool tbf::AccessibleFocus(VARIANT *out)
{
    if (!focused() || selected_ < 0) return false;
    V_VT(out) = VT_I4;
    V_I4(out) = selected_ + 1;
    return true;
}
long tbf::AccessibleSelectedChild() { return selected_ >= 0 ? selected_ + 1 : CHILDID_SELF; }

// ---------------------------------------------------------------- properties

STDMETHODIMP tbf::get_BACKCOLOR(OLE_COLOR *v) { return get_value(v, [&] { return static_cast<OLE_COLOR>(back_); }); }
STDMETHODIMP tbf::put_BACKCOLOR(OLE_COLOR v)
{
    return put_value(L"BACKCOLOR", [&] {
        if (TranslateColor(v) == kInvalidColor) throw std::invalid_argument("not a colour");
        back_ = v;
        SetBackColor(v);
    });
}

STDMETHODIMP tbf::get_ForeColor(OLE_COLOR *v) { return get_value(v, [&] { return static_cast<OLE_COLOR>(fore_); }); }
STDMETHODIMP tbf::put_ForeColor(OLE_COLOR v)
{
    return put_value(L"FORECOLOR", [&] {
        if (TranslateColor(v) == kInvalidColor) throw std::invalid_argument("not a colour");
        fore_ = v;
        Invalidate();
    });
}

STDMETHODIMP tbf::get_Enabled(VARIANT_BOOL *v) { return get_value(v, [&] { return vb(enabled_); }); }
STDMETHODIMP tbf::put_Enabled(VARIANT_BOOL v)
{
    return put_value(L"ENABLED", [&] {
        enabled_ = v != VARIANT_FALSE;
        hot_ = -1;
        Invalidate();
        ControlInfoChanged();
        AccessibleChanged(EVENT_OBJECT_STATECHANGE);
    });
}

STDMETHODIMP tbf::get_Font(IFontDisp **v) { return get_object(v, [&] { return font_; }); }
STDMETHODIMP tbf::put_Font(IFontDisp *v) { return set_font(v); }
STDMETHODIMP tbf::putref_Font(IFontDisp *v) { return set_font(v); }
HRESULT tbf::set_font(IFontDisp *v)
{
    return put_value(L"FONT", [&] {
        ComPtr<IFontDisp> copy = ComPtr<IFontDisp>::attach(CloneFontObject(v));
        if (!copy) throw std::invalid_argument("not a font");
        font_ = copy;
        Invalidate();
    });
}

STDMETHODIMP tbf::get_hwnd(OLE_HANDLE *v) { return get_value(v, [&] { return to_ole_handle(hWnd()); }); }

STDMETHODIMP tbf::get_SelectedTab(short *v) { return get_value(v, [&] { return static_cast<short>(selected_); }); }
STDMETHODIMP tbf::put_SelectedTab(short v)
{
    return put_value(L"SELECTEDTAB", [&] { select(v); });
}

STDMETHODIMP tbf::get_Style(TabStyles *v) { return get_value(v, [&] { return static_cast<TabStyles>(style_); }); }
STDMETHODIMP tbf::put_Style(TabStyles v)
{
    return put_value(L"STYLE", [&] {
        const int32_t s = static_cast<int32_t>(v);
        if (s < tabstyle::Classic || s > tabstyle::XP) throw std::out_of_range("style");
        style_ = static_cast<int16_t>(s);
        Invalidate();
    });
}

STDMETHODIMP tbf::get_TabCaption(short index, BSTR *v)
{
    return get_string(v, [&] { return captions_.at(static_cast<size_t>(index)); });
}
STDMETHODIMP tbf::put_TabCaption(short index, BSTR v)
{
    return put_value(L"TABCAPTION", [&] {
        if (index < 0) throw std::out_of_range("index");
        captions_.at(static_cast<size_t>(index)) = from_bstr(v);
        captions_changed();
    });
}

STDMETHODIMP tbf::get_Tabs(short *v) { return get_value(v, [&] { return static_cast<short>(captions_.size()); }); }
STDMETHODIMP tbf::put_Tabs(short v)
{
    return put_value(L"TABS", [&] {
        if (v < 0 || v > kMostTabs) throw std::out_of_range("tabs");
        const size_t n = static_cast<size_t>(v);
        while (captions_.size() > n) captions_.pop_back();
        while (captions_.size() < n) captions_.push_back(default_caption(captions_.size()));
        // The selection stays where it can; a strip with tabs always has one selected.
        if (selected_ >= v) selected_ = v - 1;
        if (selected_ < 0 && v > 0) selected_ = 0;
        hot_ = -1;
        captions_changed();
    });
}

} // namespace tarn
