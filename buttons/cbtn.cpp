#include "buttons/cbtn.h"

#include "buttons/frmctrlTOOLTIP.h"
#include "foundation/checked.h"
#include "foundation/color_translate.h"
#include "foundation/font_object.h"
#include "foundation/handles.h"
#include "runtime/picture_draw.h"

#include <stdexcept>

namespace tarn {

const ControlClass cbtn::Class = {
    L"cbtn",
    L"Tarn Controls button",
    &CLSID_cbtn,
    &IID_Icbtn,
    &DIID_IcbtnEvents,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_ACTSLIKEBUTTON,
    &cbtn::Create,
    true, // draws itself, touches no file and no other window
};

namespace {

// The button's own events beyond the common five.
constexpr DISPID kFocusLost = 6, kKeyDown = 7, kKeyPress = 8, kKeyUp = 9, kMouseOut = 10;
constexpr wchar_t kDefaultCaption[] = L"Button";
constexpr OleColor kInfoBack = 0x80000018u, kInfoText = 0x80000017u;

bool is_bool(VARIANT_BOOL v) { return v != VARIANT_FALSE; }
VARIANT_BOOL vbool(bool b) { return b ? VARIANT_TRUE : VARIANT_FALSE; }

} // namespace

cbtn::cbtn() { frmctrlTOOLTIP::AddUser(); }

cbtn::~cbtn() { frmctrlTOOLTIP::RemoveUser(); }

void cbtn::Initialize()
{
    // What a new button shows until its first restore or property write.
    SetDesignSize(1215, 375);
    back_ = GetSysColor(COLOR_BTNFACE);
    fore_ = GetSysColor(COLOR_BTNTEXT);
    SetBackColor(back_);
    caption_ = kDefaultCaption;
    font_ = Ambient().Font();
}

void cbtn::Terminate()
{
    step([&] { tip_close(); });
}

// ---------------------------------------------------------------- persistence

void cbtn::InitProperties()
{
    type_ = btype::Button;
    caption_ = kDefaultCaption;
    // Stored resolved: a new button keeps these colours when the system's change later.
    back_ = GetSysColor(COLOR_BTNFACE);
    fore_ = GetSysColor(COLOR_BTNTEXT);
    SetBackColor(back_);
    enabled_ = focus_rect_ = true;
    picBOX.Enabled = picBOXdis.Enabled = true;
    picture_visible_ = false;
    step([&] { font_ = Ambient().Font(); });
}

void cbtn::ReadProperties(PropertyBag &bag)
{
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { font_ = bag.read_font(L"FONT", ambient.get()); });
    // Written as "MASKHLIGHT": what was saved never comes back, a restored button starts
    // with button face.
    step([&] { mask_ = bag.read_color(L"MASKHLIGHTCOLOR", syscolor::ButtonFace); });
    step([&] { type_ = bag.read_int(L"BTYPE", btype::Button); });
    step([&] { caption_ = bag.read_string(L"TEXT", kDefaultCaption); });
    step([&] { tooltip_ = bag.read_string(L"TOOLTIP", L""); });
    step([&] { enabled_ = bag.read_bool(L"ENABLED", true); });
    step([&] { picBOX.Enabled = picBOXdis.Enabled = enabled_; });
    step([&] { back_custom_ = bag.read_bool(L"BACKCOLORCUST", false); });
    step([&] { picBOX.Picture = bag.read_picture(L"PICTURE", nullptr); });
    step([&] { focus_rect_ = bag.read_bool(L"FOCUSRECT", true); });
    step([&] { picture_visible_ = bag.read_bool(L"SHOWPICTURE", false); });
    step([&] { back_ = bag.read_color(L"BACKCOLOR", GetSysColor(COLOR_BTNFACE)); });
    step([&] { SetBackColor(back_); });
    step([&] { fore_ = bag.read_color(L"FORECOLOR", GetSysColor(COLOR_BTNTEXT)); });
    step([&] { picBOXdis.Picture = bag.read_picture(L"PICTUREDIS", nullptr); });
    // Once for the button, once for its picture box.
    step([&] { mouse_icon_ = bag.read_picture(L"MouseIcon", nullptr); });
    step([&] { picBOX.MouseIcon = bag.read_picture(L"MouseIcon", nullptr); });
    step([&] { mouse_pointer_ = bag.read_int(L"MousePointer", 0); });
    step([&] { picBOX.MousePointer = bag.read_int(L"MousePointer", 0); });
}

void cbtn::WriteProperties(PropertyBag &bag)
{
    // Every value is written whatever it is (no defaults).
    step([&] { bag.write_color(L"MASKHLIGHT", mask_); });
    step([&] { bag.write_picture(L"PICTURE", picBOX.Picture.get()); });
    step([&] { bag.write_picture(L"PICTUREDIS", picBOXdis.Picture.get()); });
    step([&] { bag.write_int(L"BTYPE", type_); });
    step([&] { bag.write_string(L"TOOLTIP", tooltip_); });
    step([&] { bag.write_string(L"TEXT", caption_); });
    step([&] { bag.write_bool(L"ENABLED", enabled_); });
    step([&] { bag.write_bool(L"BACKCOLORCUST", back_custom_); });
    step([&] { bag.write_font(L"FONT", font_.get()); });
    step([&] { bag.write_bool(L"FOCUSRECT", focus_rect_); });
    step([&] { bag.write_bool(L"SHOWPICTURE", picture_visible_); });
    step([&] { bag.write_color(L"BACKCOLOR", back_); });
    step([&] { bag.write_color(L"FORECOLOR", fore_); });
    step([&] { bag.write_picture(L"MouseIcon", mouse_icon_.get()); });
    step([&] { bag.write_int(L"MousePointer", mouse_pointer_); });
}

// ---------------------------------------------------------------- layout

void cbtn::Resize()
{
    step([&] { layout(); });
    step([&] { apply_region(); });
    step([&] { paint(face::Normal, true); });
}

void cbtn::Show()
{
    // The window exists only now: give it the shape of its type.
    step([&] { apply_region(); });
    step([&] { read_display_default(); });
}

void cbtn::AmbientChanged(DISPID id)
{
    if (id == DISPID_AMBIENT_DISPLAYASDEFAULT || id == DISPID_UNKNOWN) read_display_default();
}

void cbtn::read_display_default()
{
    Variant v, b;
    bool on = Ambient().get(DISPID_AMBIENT_DISPLAYASDEFAULT, v) && v.convert(VT_BOOL, b) && V_BOOL(b.get());
    if (on == display_default_) return;
    display_default_ = on;
    AccessibleChanged(EVENT_OBJECT_STATECHANGE);
    Invalidate();
}

void cbtn::layout()
{
    SIZE pic{0, 0};
    if (ComPtr<IPicture> p = picBOX.Picture.as<IPicture>(IID_IPicture)) pic = PictureSizePx(p.get());
    layout_ = LayoutButton(PixelWidth(), PixelHeight(), picture_visible_, pic.cx, pic.cy);
}

void cbtn::apply_region()
{
    HWND w = hWnd();
    if (!w) return;
    int W = PixelWidth(), H = PixelHeight();
    unique_region rgn;
    switch (ShapeOf(type_)) {
    case ButtonShape::RoundedXP:
        // The Luna button: each corner loses its outermost pixel.
        rgn.reset(CreateRoundRectRgn(0, 0, W + 1, H + 1, 4, 4));
        break;
    case ButtonShape::Tab: {
        // A tab: the two top corners cut by two pixels, the bottom open to the page.
        POINT pts[] = {{0, 2}, {2, 0}, {W - 2, 0}, {W, 2}, {W, H}, {0, H}};
        rgn.reset(CreatePolygonRgn(pts, 6, WINDING));
        break;
    }
    default:
        rgn.reset(CreateRectRgn(0, 0, W, H));
        break;
    }
    if (!rgn) return;
    // The window owns the region from here on (and deletes the one it had).
    if (SetWindowRgn(w, rgn.get(), TRUE)) rgn.release();
}

void cbtn::paint(int state, bool repaint)
{
    face_ = state;
    HWND w = hWnd();
    if (w) {
        // Always at once: the face must follow the pointer move that asked for it.
        (void)repaint;
        RedrawWindow(w, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        AccessibleChanged(EVENT_OBJECT_STATECHANGE);
    } else {
        Invalidate();
    }
}

void cbtn::DrawSurface(HDC dc, const Scale &)
{
    int W = PixelWidth(), H = PixelHeight();
    if (W <= 0 || H <= 0) return;
    // The face is put together off-screen and copied in one go.
    memdc_.Width(W);
    memdc_.Height(H);
    if (memdc_.Width() < W || memdc_.Height() < H) {
        compose(dc);
        return;
    }
    {
        saved_dc keep(memdc_.hDC());
        compose(memdc_.hDC());
    }
    BitBlt(dc, 0, 0, W, H, memdc_.hDC(), 0, 0, SRCCOPY);
}

// ---------------------------------------------------------------- mouse

float cbtn::px_x(float twips) const { return static_cast<float>(twips / scale().tppx); }
float cbtn::px_y(float twips) const { return static_cast<float>(twips / scale().tppy); }

void cbtn::MouseDown(int16_t button, int16_t shift, float x, float y) { mouse_down(button, shift, px_x(x), px_y(y)); }

void cbtn::mouse_down(int16_t button, int16_t shift, float x, float y)
{
    down_in_progress_ = true;
    last_button_ = button;
    step([&] { tip_close(); });
    tip_armed_ = false;
    mouse_down_ = true;
    if (button == mouse::Right) {
        // A right press never shows the pressed face.
        step([&] { paint(face::Normal); });
        mouse_down_ = false;
    } else {
        step([&] { paint(face::Pressed); });
    }
    raise_mouse(events::MouseDown, button, shift, x, y);
}

void cbtn::MouseMove(int16_t button, int16_t shift, float tx, float ty)
{
    float x = px_x(tx), y = px_y(ty);
    step([&] { tip_check(); });
    raise_mouse(events::MouseMove, button, shift, x, y);
    if (button < 2) {
        bool inside = x >= 0 && y >= 0 && x < PixelWidth() && y < PixelHeight();
        // Pressed and captured: dragging out raises the face, dragging back presses it again.
        if (!inside) step([&] { paint(face::Hover); });
        else if (button == mouse::Left) step([&] { paint(face::Pressed); });
    }
    if (!mouse_down_) {
        captured_ = false;
        posn(button, shift, x, y);
    }
}

void cbtn::posn(int16_t button, int16_t shift, float x, float y)
{
    captured_ = false; // every call starts uncaptured, so the captured branch below never runs
    float W = static_cast<float>(PixelWidth()), H = static_cast<float>(PixelHeight());
    HWND w = hWnd();
    in_posn_ = true;
    if (x < 0 || x >= W || y < 0 || y >= H) {
        captured_ = false;
        if (w && GetCapture() == w) step([&] { ReleaseCapture(); });
        step([&] { paint(face::Normal); });
        tip_armed_ = hover_ = false;
        tip_shown_ = false;
        step([&] { tip_close(); });
    } else if (captured_) {
        captured_ = false;
        if (w && GetCapture() == w) step([&] { ReleaseCapture(); });
        tip_armed_ = false;
        step([&] { paint(face::Normal); });
        hover_ = false;
    } else {
        step([&] { tip_timing(); });
        tip_armed_ = false;
        captured_ = true;
        if (w) step([&] { SetCapture(w); });
        step([&] { paint(face::Hover, true); });
        hover_ = true;
    }
    in_posn_ = false;
    raise_mouse(kMouseOut, button, shift, x, y);
}

void cbtn::MouseUp(int16_t button, int16_t shift, float x, float y) { mouse_up(button, shift, px_x(x), px_y(y)); }

void cbtn::mouse_up(int16_t button, int16_t shift, float x, float y)
{
    if (button != mouse::Right) step([&] { paint(face::Normal); });
    mouse_down_ = false;
    raise_mouse(events::MouseUp, button, shift, x, y);
}

void cbtn::Click() { click(); }

void cbtn::click()
{
    if (last_button_ != mouse::Left || !enabled_) return;
    step([&] { paint(face_); });
    raise(events::Click);
}

void cbtn::DblClick()
{
    // A fast second click still shows the pressed face.
    if (last_button_ != mouse::Left) return;
    mouse_down(mouse::Left, 0, 1, 1);
    raise(events::DblClick);
}

void cbtn::end_hover()
{
    captured_ = false;
    HWND w = hWnd();
    in_posn_ = true;
    if (w && GetCapture() == w && !mouse_down_) step([&] { ReleaseCapture(); });
    in_posn_ = false;
    step([&] { paint(face::Normal); });
    step([&] { tip_close(); });
    tip_armed_ = hover_ = tip_shown_ = false;
}

// ---------------------------------------------------------------- the tooltip

void cbtn::tip_timing()
{
    HWND w = hWnd();
    if (w && !tip_shown_) frmctrlTOOLTIP::Instance().StartTiming(w);
}

void cbtn::tip_check()
{
    if (!tip_armed_ || tooltip_.empty()) return;
    frmctrlTOOLTIP &tip = frmctrlTOOLTIP::Instance();
    tip.CreateTip(hWnd(), tooltip_, kInfoBack, kInfoText);
    tip.ShowTip();
    tip_shown_ = true;
}

void cbtn::tip_close()
{
    frmctrlTOOLTIP *tip = frmctrlTOOLTIP::Existing();
    if (tip && (tip->owner() == hWnd() || !tip->owner())) tip->Close();
}

void cbtn::on_tip_start()
{
    // tmrSTART fired: arm the tip if the pointer still rests here, then show it.
    if (!hover_ || mouse_down_) return;
    tip_armed_ = true;
    tip_check();
    tip_armed_ = false; // shown once: the moves that follow do not restart its show time
}

// ---------------------------------------------------------------- keyboard and focus

void cbtn::KeyDown(int16_t &code, int16_t shift)
{
    raise(kKeyDown, EventArgs().ref(code).val(shift));
    last_key_ = code;
    if (code == VK_SPACE) mouse_down(mouse::Left, 0, 1, 1);
    else if (code == VK_RIGHT || code == VK_DOWN) step([&] { send_tab(false); });
    else if (code == VK_UP || code == VK_LEFT) step([&] { send_tab(true); });
}

void cbtn::KeyPress(int16_t &ascii) { raise(kKeyPress, EventArgs().ref(ascii)); }

void cbtn::KeyUp(int16_t &code, int16_t shift)
{
    step([&] {
        if (hover_) tip_timing();
    });
    step([&] { tip_check(); });
    raise(kKeyUp, EventArgs().ref(code).val(shift));
    // Only a space whose press also reached the button clicks it.
    if (code == VK_SPACE && last_key_ == VK_SPACE) {
        mouse_up(mouse::Left, 0, 1, 1);
        click();
    }
}

void cbtn::send_tab(bool backwards)
{
    // A real keystroke, as "{TAB}" and "+{TAB}" are: the container moves the focus.
    INPUT in[4]{};
    int n = 0;
    auto key = [&](WORD vk, bool up) {
        in[n].type = INPUT_KEYBOARD;
        in[n].ki.wVk = vk;
        in[n].ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
        ++n;
    };
    bool shift_held = GetKeyState(VK_SHIFT) < 0;
    if (backwards && !shift_held) key(VK_SHIFT, false);
    if (!backwards && shift_held) key(VK_SHIFT, true);
    key(VK_TAB, false);
    key(VK_TAB, true);
    if (backwards && !shift_held) key(VK_SHIFT, true);
    SendInput(static_cast<UINT>(n), in, sizeof(INPUT));
}

void cbtn::GotFocus() { step([&] { paint(face_); }); }

void cbtn::LostFocus()
{
    raise(kFocusLost);
    down_in_progress_ = false;
    mouse_down_ = false;
    // A container sees every press end.
    raise_mouse(events::MouseUp, mouse::Left, 0, 0, 0);
    step([&] { paint(face::Normal); });
}

bool cbtn::focused() const
{
    HWND w = hWnd();
    return w && GetFocus() == w;
}

// ---------------------------------------------------------------- messages

LRESULT cbtn::OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled)
{
    handled = false;
    if (msg == frmctrlTOOLTIP::TipStartMessage()) {
        handled = true;
        step([&] { on_tip_start(); });
        return 0;
    }
    switch (msg) {
    case WM_SETCURSOR:
        if (reinterpret_cast<HWND>(wp) == hWnd() && LOWORD(lp) == HTCLIENT && set_cursor()) {
            handled = true;
            return TRUE;
        }
        return 0;
    case WM_CAPTURECHANGED:
        // Someone else took the mouse (a menu, a message box): the hover ends here.
        if (reinterpret_cast<HWND>(lp) != hWnd() && hover_ && !in_posn_ && !mouse_down_) step([&] { end_hover(); });
        return 0; // the runtime sees it too
    default:
        return 0;
    }
}

bool cbtn::set_cursor()
{
    // The picture box carries the same pointer as the button.
    const PictureBox &box = picBOX;
    int16_t pointer = mouse_pointer_;
    IPictureDisp *icon = mouse_icon_.get();
    POINT pt{};
    GetCursorPos(&pt);
    ScreenToClient(hWnd(), &pt);
    if (picture_visible_ && pt.x >= layout_.picture.left && pt.x < layout_.picture.right && pt.y >= layout_.picture.top &&
        pt.y < layout_.picture.bottom) {
        pointer = box.MousePointer;
        icon = box.MouseIcon.get();
    }
    if (pointer == kCustomPointer && icon) {
        ComPtr<IPicture> pic = ComPtr<IPictureDisp>(icon).as<IPicture>(IID_IPicture);
        OLE_HANDLE h = 0;
        SHORT type = 0;
        if (pic && SUCCEEDED(pic->get_Type(&type)) && (type == PICTYPE_ICON) && SUCCEEDED(pic->get_Handle(&h)) && h) {
            SetCursor(reinterpret_cast<HCURSOR>(static_cast<UINT_PTR>(h)));
            return true;
        }
        return false;
    }
    int32_t id = CursorForPointer(pointer);
    if (!id && pointer == 0 && (type_ == btype::Hyperlink || type_ == btype::HyperlinkWhite)) id = 32649; // a link's hand
    if (!id) return false;
    HCURSOR c = LoadCursorW(nullptr, MAKEINTRESOURCEW(id));
    if (!c) return false;
    SetCursor(c);
    return true;
}

// ---------------------------------------------------------------- hosts and screen readers

void cbtn::Mnemonic()
{
    // Exactly a left click: the pressed face, MouseDown, MouseUp, then Click.
    if (!enabled_) return;
    mouse_down(mouse::Left, 0, 1, 1);
    mouse_up(mouse::Left, 0, 1, 1);
    click();
}

long cbtn::AccessibleState()
{
    long s = UserControl::AccessibleState();
    if (!enabled_) s = (s & ~STATE_SYSTEM_FOCUSABLE) | STATE_SYSTEM_UNAVAILABLE;
    if (face_ == face::Pressed && mouse_down_) s |= STATE_SYSTEM_PRESSED;
    if (hover_) s |= STATE_SYSTEM_HOTTRACKED;
    if (display_default_) s |= STATE_SYSTEM_DEFAULT;
    return s;
}

void cbtn::DoDefaultAction()
{
    if (!enabled_) return;
    last_button_ = mouse::Left;
    click();
}

// ---------------------------------------------------------------- properties

STDMETHODIMP cbtn::get_BACKCOLOR(OLE_COLOR *v) { return get_value(v, [&] { return static_cast<OLE_COLOR>(back_); }); }
STDMETHODIMP cbtn::put_BACKCOLOR(OLE_COLOR v)
{
    return put_value(L"BACKCOLOR", [&] {
        back_ = v;
        SetBackColor(v);
    });
}

STDMETHODIMP cbtn::get_BackColorCUSTOM(VARIANT_BOOL *v) { return get_value(v, [&] { return vbool(back_custom_); }); }
STDMETHODIMP cbtn::put_BackColorCUSTOM(VARIANT_BOOL v)
{
    return put_value(L"BACKCOLORCUST", [&] {
        back_custom_ = is_bool(v);
        Invalidate();
    });
}

STDMETHODIMP cbtn::get_ButtonType(ButtonTypes *v)
{
    return get_value(v, [&] { return static_cast<ButtonTypes>(type_); });
}
STDMETHODIMP cbtn::put_ButtonType(ButtonTypes v)
{
    // Any value is taken; only 1 to 14 select a look. A value beyond 16 bits is a failed step.
    return put_value(L"BTYPE", [&] {
        type_ = checked<int16_t>(static_cast<int32_t>(v)); // the enumeration is unsigned underneath
        step([&] { apply_region(); });
        Invalidate();
    });
}

STDMETHODIMP cbtn::get_CAPTION(BSTR *v) { return get_string(v, [&] { return caption_; }); }
STDMETHODIMP cbtn::put_CAPTION(BSTR v)
{
    return put_value(L"TEXT", [&] {
        caption_ = from_bstr(v);
        AccessibleChanged(EVENT_OBJECT_NAMECHANGE);
        ControlInfoChanged();
        Invalidate();
    });
}

STDMETHODIMP cbtn::get_Enabled(VARIANT_BOOL *v) { return get_value(v, [&] { return vbool(enabled_); }); }
STDMETHODIMP cbtn::put_Enabled(VARIANT_BOOL v)
{
    return put_value(L"ENABLED", [&] {
        enabled_ = is_bool(v);
        picBOX.Enabled = picBOXdis.Enabled = enabled_;
        if (HWND w = hWnd()) {
            // A disabled button is no tab stop.
            LONG_PTR style = GetWindowLongPtrW(w, GWL_STYLE);
            SetWindowLongPtrW(w, GWL_STYLE, enabled_ ? (style | WS_TABSTOP) : (style & ~static_cast<LONG_PTR>(WS_TABSTOP)));
        }
        step([&] { layout(); });
        step([&] { paint(face::Normal, true); });
    });
}

STDMETHODIMP cbtn::get_FocusRect(VARIANT_BOOL *v) { return get_value(v, [&] { return vbool(focus_rect_); }); }
STDMETHODIMP cbtn::put_FocusRect(VARIANT_BOOL v)
{
    return put_value(L"FOCUSRECT", [&] {
        focus_rect_ = is_bool(v);
        Invalidate();
    });
}

STDMETHODIMP cbtn::get_Font(IFontDisp **v) { return get_object(v, [&] { return font_; }); }
STDMETHODIMP cbtn::put_Font(IFontDisp *v) { return set_font(v); }
STDMETHODIMP cbtn::putref_Font(IFontDisp *v) { return set_font(v); }
HRESULT cbtn::set_font(IFontDisp *v)
{
    return put_value(L"FONT", [&] {
        ComPtr<IFontDisp> copy = ComPtr<IFontDisp>::attach(CloneFontObject(v));
        if (!copy) throw std::invalid_argument("not a font");
        font_ = copy;
        Invalidate();
    });
}

STDMETHODIMP cbtn::get_ForeColor(OLE_COLOR *v) { return get_value(v, [&] { return static_cast<OLE_COLOR>(fore_); }); }
STDMETHODIMP cbtn::put_ForeColor(OLE_COLOR v)
{
    return put_value(L"FORECOLOR", [&] {
        fore_ = v;
        Invalidate();
    });
}

STDMETHODIMP cbtn::get_hwnd(OLE_HANDLE *v) { return get_value(v, [&] { return to_ole_handle(hWnd()); }); }

STDMETHODIMP cbtn::get_MaskHLightColor(OLE_COLOR *v) { return get_value(v, [&] { return static_cast<OLE_COLOR>(mask_); }); }
STDMETHODIMP cbtn::put_MaskHLightColor(OLE_COLOR v)
{
    return put_value(L"MASKHLIGHTCOLOR", [&] {
        mask_ = v;
        Invalidate();
    });
}

STDMETHODIMP cbtn::get_MouseIcon(IPictureDisp **v) { return get_object(v, [&] { return mouse_icon_; }); }
STDMETHODIMP cbtn::put_MouseIcon(IPictureDisp *v) { return set_mouse_icon(v); }
STDMETHODIMP cbtn::putref_MouseIcon(IPictureDisp *v) { return set_mouse_icon(v); }
HRESULT cbtn::set_mouse_icon(IPictureDisp *v)
{
    // Applied to the button and to its picture box; no change notice.
    step([&] { mouse_icon_ = ComPtr<IPictureDisp>(v); });
    step([&] { picBOX.MouseIcon = ComPtr<IPictureDisp>(v); });
    return S_OK;
}

STDMETHODIMP cbtn::get_MousePointer(MousePointers *v)
{
    return get_value(v, [&] { return static_cast<MousePointers>(mouse_pointer_); });
}
STDMETHODIMP cbtn::put_MousePointer(MousePointers v)
{
    if (!fits16(v)) return S_OK; // kept in 16 bits: a wider value is skipped
    mouse_pointer_ = static_cast<int16_t>(static_cast<int32_t>(v));
    picBOX.MousePointer = mouse_pointer_;
    return S_OK;
}

STDMETHODIMP cbtn::get_Picture(IPictureDisp **v) { return get_object(v, [&] { return picBOX.Picture; }); }
STDMETHODIMP cbtn::put_Picture(IPictureDisp *v) { return set_picture(picBOX, v, L"PICTURE"); }
STDMETHODIMP cbtn::putref_Picture(IPictureDisp *v) { return set_picture(picBOX, v, L"PICTURE"); }
STDMETHODIMP cbtn::get_PictureDisabled(IPictureDisp **v) { return get_object(v, [&] { return picBOXdis.Picture; }); }
STDMETHODIMP cbtn::put_PictureDisabled(IPictureDisp *v) { return set_picture(picBOXdis, v, L"PICTUREDIS"); }
STDMETHODIMP cbtn::putref_PictureDisabled(IPictureDisp *v) { return set_picture(picBOXdis, v, L"PICTUREDIS"); }
HRESULT cbtn::set_picture(PictureBox &box, IPictureDisp *v, const wchar_t *key)
{
    return put_value(key, [&] {
        // Nothing, or an object that is a picture; anything else is refused.
        ComPtr<IPictureDisp> pic(v);
        if (v && !ComPtr<IPictureDisp>(v).as<IPicture>(IID_IPicture)) throw std::invalid_argument("not a picture");
        box.Picture = pic;
        step([&] { layout(); });
        Invalidate();
    });
}

STDMETHODIMP cbtn::get_PictureVisible(VARIANT_BOOL *v) { return get_value(v, [&] { return vbool(picture_visible_); }); }
STDMETHODIMP cbtn::put_PictureVisible(VARIANT_BOOL v)
{
    // Persisted as "SHOWPICTURE", announced under this name.
    return put_value(L"PICTUREVisible", [&] {
        picture_visible_ = is_bool(v);
        step([&] { layout(); });
        Invalidate();
    });
}

STDMETHODIMP cbtn::get_ToolTip(BSTR *v) { return get_string(v, [&] { return tooltip_; }); }
STDMETHODIMP cbtn::put_ToolTip(BSTR v)
{
    return put_value(L"TOOLTIP", [&] {
        tooltip_ = from_bstr(v);
        AccessibleChanged(EVENT_OBJECT_DESCRIPTIONCHANGE);
    });
}

STDMETHODIMP cbtn::SetColors()
{
    step([&] { recolor_glyphs(); });
    step([&] { paint(face_, true); });
    return S_OK;
}

STDMETHODIMP cbtn::RefreshItem() { return SetColors(); }

STDMETHODIMP cbtn::MousePosn(short Button, short Shift, float X, float Y)
{
    step([&] { posn(Button, Shift, X, Y); });
    return S_OK;
}

STDMETHODIMP cbtn::MousePosnONOUT()
{
    step([&] { end_hover(); });
    return S_OK;
}
STDMETHODIMP cbtn::CFm_MousePosnONOUT() { return MousePosnONOUT(); }
STDMETHODIMP cbtn::UserControlMouseOut() { return MousePosnONOUT(); }

} // namespace tarn
