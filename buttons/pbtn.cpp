#include "buttons/pbtn.h"

#include <stdexcept>

#include "foundation/color_translate.h"
#include "foundation/font_object.h"
#include "foundation/handles.h"
#include "runtime/picture_draw.h"

namespace tarn {

const ControlClass pbtn::Class = {
    L"pbtn",
    L"Tarn Controls picture button",
    &CLSID_pbtn,
    &IID_Ipbtn,
    &DIID_IpbtnEvents,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_ACTSLIKEBUTTON,
    &pbtn::Create,
    true, // draws the host's pictures, touches no file and no other window
};

namespace {

constexpr wchar_t kCaptionFace[] = L"Comic sans MS";

bool is_true(VARIANT_BOOL v) { return v != VARIANT_FALSE; }
VARIANT_BOOL vbool(bool b) { return b ? VARIANT_TRUE : VARIANT_FALSE; }

int CALLBACK found_face(const LOGFONTW *, const TEXTMETRICW *, DWORD, LPARAM found)
{
    *reinterpret_cast<bool *>(found) = true;
    return 0;
}

bool system_has_face(const wchar_t *name)
{
    window_dc screen(nullptr);
    LOGFONTW lf{};
    lf.lfCharSet = DEFAULT_CHARSET;
    wcsncpy(lf.lfFaceName, name, LF_FACESIZE - 1);
    bool found = false;
    EnumFontFamiliesExW(screen.get(), &lf, &found_face, reinterpret_cast<LPARAM>(&found), 0);
    return found;
}

HFONT font_handle(const ComPtr<IFontDisp> &font)
{
    HFONT h = nullptr;
    if (ComPtr<IFont> f = font.as<IFont>(IID_IFont)) f->get_hFont(&h);
    return h;
}

IPicture *as_picture(const ComPtr<IPictureDisp> &p)
{
    return p ? p.as<IPicture>(IID_IPicture).get() : nullptr;
}

} // namespace

pbtn::pbtn() : tracker_(*this), keys_(*this, tracker_) {}

void pbtn::Initialize()
{
    SetDesignSize(960, 960);
    SetBackColor(syscolor::ButtonFace);
}

void pbtn::Terminate()
{
    step([&] { tracker_.TipClose(); });
}

void pbtn::caption_font()
{
    // The label's set-up: the caption face by name, in the container's size and weight.
    ComPtr<IFontDisp> ambient = Ambient().Font();
    ComPtr<IFontDisp> font = ComPtr<IFontDisp>::attach(CloneFontObject(ambient.get()));
    // Asked once per process: the font list is slow to walk and a face seldom comes or goes.
    static const bool has_face = system_has_face(kCaptionFace);
    if (font && has_face) {
        if (ComPtr<IFont> f = font.as<IFont>(IID_IFont)) {
            BSTR name = SysAllocString(kCaptionFace);
            f->put_Name(name);
            SysFreeString(name);
        }
    }
    if (font) lblLabel1_font_ = font;
    Invalidate();
}

void pbtn::AmbientChanged(DISPID id)
{
    if (id == DISPID_AMBIENT_FONT || id == DISPID_UNKNOWN) step([&] { caption_font(); });
}

// ---------------------------------------------------------------- persistence

void pbtn::InitProperties()
{
    enabled_ = true;
    caption_.clear();
    step([&] { caption_font(); });
}

void pbtn::ReadProperties(PropertyBag &bag)
{
    // Once for the face, once for its holder.
    step([&] { picImage1a = bag.read_picture(L"PICTURENORMAL", nullptr); });
    step([&] { imgImage2 = bag.read_picture(L"PICTURENORMAL", nullptr); });
    step([&] { imgImage3 = bag.read_picture(L"PICTUREHLIGHT", nullptr); });
    step([&] { imgImage5 = bag.read_picture(L"PICTUREDISABLED", nullptr); });
    step([&] { imgImage4 = bag.read_picture(L"PICTUREPRESSED", nullptr); });
    step([&] { enabled_ = bag.read_bool(L"ENABLED", true); });
    step([&] { caption_ = bag.read_string(L"CAPTION", L""); });
    step([&] { caption_font(); });
}

void pbtn::WriteProperties(PropertyBag &bag)
{
    step([&] { bag.write_picture(L"PICTURENORMAL", imgImage2.get(), true); });
    step([&] { bag.write_picture(L"PICTUREHLIGHT", imgImage3.get(), true); });
    step([&] { bag.write_picture(L"PICTUREPRESSED", imgImage4.get(), true); });
    step([&] { bag.write_picture(L"PICTUREDISABLED", imgImage5.get(), true); });
    step([&] { bag.write_bool(L"ENABLED", enabled_, true); });
    step([&] { bag.write_string(L"CAPTION", caption_, std::wstring()); });
    // Written for the form's designer and never read back.
    step([&] { bag.write_int(L"BorderStyle", 0); });
}

// ---------------------------------------------------------------- drawing

void pbtn::Resize() { Invalidate(); }

void pbtn::PaintFace(int state)
{
    if (state != face::None) face_ = state;
    // Disabled, the face keeps its disabled look whatever the mouse does.
    if (!enabled_) return;
    if (HWND w = hWnd()) {
        RedrawWindow(w, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        AccessibleChanged(EVENT_OBJECT_STATECHANGE);
    } else {
        Invalidate();
    }
}

void pbtn::DrawSurface(HDC dc, const Scale &)
{
    const int W = PixelWidth(), H = PixelHeight();
    PictureSet set{static_cast<bool>(imgImage2), static_cast<bool>(imgImage3), static_cast<bool>(imgImage4),
                   static_cast<bool>(imgImage5)};
    PictureLook look = LookFor(enabled_, face_, set);
    const ComPtr<IPictureDisp> *shown = look == PictureLook::HLight    ? &imgImage3
                                      : look == PictureLook::Pressed   ? &imgImage4
                                      : look == PictureLook::Disabled  ? &imgImage5
                                      : look == PictureLook::None      ? nullptr
                                                                       : &imgImage2;
    picImage1a = shown ? *shown : ComPtr<IPictureDisp>();

    HFONT font = font_handle(lblLabel1_font_);
    int text_h = 0;
    if (!caption_.empty() && font) {
        select_guard use(dc, font);
        TEXTMETRICW tm{};
        GetTextMetricsW(dc, &tm);
        text_h = tm.tmHeight;
    }
    IPicture *pic = as_picture(picImage1a);
    SIZE size = pic ? PictureSizePx(pic) : SIZE{0, 0};
    PictureButtonLayout L = LayoutPictureButton(W, H, size.cx, size.cy, text_h);
    if (pic) {
        RECT at{L.picture.left, L.picture.top, L.picture.right, L.picture.bottom};
        DrawPicture(dc, pic, at, kInvalidColor, look == PictureLook::GreyedNormal);
    }
    if (text_h > 0) {
        RECT r{L.label.left, L.label.top, L.label.right, L.label.bottom};
        select_guard use(dc, font);
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, GetSysColor(enabled_ ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
        DrawTextW(dc, caption_.c_str(), static_cast<int>(std::min<size_t>(caption_.size(), 0x7FFFFFF)), &r,
                  DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    }
    HWND w = hWnd();
    if (w && GetFocus() == w && enabled_) {
        RECT r{1, 1, W - 1, H - 1};
        SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
        SetBkColor(dc, GetSysColor(COLOR_BTNFACE));
        if (r.right > r.left && r.bottom > r.top) DrawFocusRect(dc, &r);
    }
}

// ---------------------------------------------------------------- mouse

float pbtn::px(float twips, bool vertical) const
{
    return static_cast<float>(twips / (vertical ? scale().tppy : scale().tppx));
}

void pbtn::MouseDown(int16_t b, int16_t s, float x, float y) { tracker_.MouseDown(b, s, px(x, false), px(y, true)); }
void pbtn::MouseMove(int16_t b, int16_t s, float x, float y) { tracker_.MouseMove(b, s, px(x, false), px(y, true)); }
void pbtn::MouseUp(int16_t b, int16_t s, float x, float y)
{
    // Any button's release shows the normal picture again, the right one's too.
    tracker_.MouseUp(b, s, px(x, false), px(y, true), true);
}

LRESULT pbtn::OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled)
{
    handled = tracker_.OnMessage(msg, wp, lp);
    return 0;
}

// ---------------------------------------------------------------- hosts and screen readers

void pbtn::Mnemonic()
{
    if (!enabled_) return;
    tracker_.MouseDown(mouse::Left, 0, 1, 1);
    tracker_.MouseUp(mouse::Left, 0, 1, 1);
    tracker_.Click();
}

long pbtn::AccessibleState()
{
    return PushButtonState(UserControl::AccessibleState(), enabled_, face_ == face::Pressed && tracker_.mouse_down(),
                           tracker_.hover(), false);
}

void pbtn::DoDefaultAction()
{
    if (!enabled_) return;
    tracker_.set_last_button(mouse::Left);
    tracker_.Click();
}

// ---------------------------------------------------------------- properties

HRESULT pbtn::set_picture(ComPtr<IPictureDisp> &holder, IPictureDisp *v, const wchar_t *key)
{
    return put_value(key, [&] {
        if (v && !ComPtr<IPictureDisp>(v).as<IPicture>(IID_IPicture)) throw std::invalid_argument("not a picture");
        holder = ComPtr<IPictureDisp>(v);
        Invalidate();
    });
}

STDMETHODIMP pbtn::get_PictureNormal(IPictureDisp **v) { return get_object(v, [&] { return imgImage2; }); }
STDMETHODIMP pbtn::put_PictureNormal(IPictureDisp *v) { return set_picture(imgImage2, v, L"PICTURENORMAL"); }
STDMETHODIMP pbtn::putref_PictureNormal(IPictureDisp *v) { return set_picture(imgImage2, v, L"PICTURENORMAL"); }
STDMETHODIMP pbtn::get_PictureHLight(IPictureDisp **v) { return get_object(v, [&] { return imgImage3; }); }
STDMETHODIMP pbtn::put_PictureHLight(IPictureDisp *v) { return set_picture(imgImage3, v, L"PICTUREHLIGHT"); }
STDMETHODIMP pbtn::putref_PictureHLight(IPictureDisp *v) { return set_picture(imgImage3, v, L"PICTUREHLIGHT"); }
STDMETHODIMP pbtn::get_PicturePressed(IPictureDisp **v) { return get_object(v, [&] { return imgImage4; }); }
STDMETHODIMP pbtn::put_PicturePressed(IPictureDisp *v) { return set_picture(imgImage4, v, L"PICTUREPRESSED"); }
STDMETHODIMP pbtn::putref_PicturePressed(IPictureDisp *v) { return set_picture(imgImage4, v, L"PICTUREPRESSED"); }
STDMETHODIMP pbtn::get_PictureDisabled(IPictureDisp **v) { return get_object(v, [&] { return imgImage5; }); }
STDMETHODIMP pbtn::put_PictureDisabled(IPictureDisp *v) { return set_picture(imgImage5, v, L"PICTUREDISABLED"); }
STDMETHODIMP pbtn::putref_PictureDisabled(IPictureDisp *v) { return set_picture(imgImage5, v, L"PICTUREDISABLED"); }
STDMETHODIMP pbtn::get_PICDISABLED(IPictureDisp **v) { return get_object(v, [&] { return imgImage5; }); }
STDMETHODIMP pbtn::get_PICPNORMAL(IPictureDisp **v) { return get_object(v, [&] { return imgImage2; }); }

STDMETHODIMP pbtn::get_Enabled(VARIANT_BOOL *v) { return get_value(v, [&] { return vbool(enabled_); }); }
STDMETHODIMP pbtn::put_Enabled(VARIANT_BOOL v)
{
    return put_value(L"ENABLED", [&] {
        enabled_ = is_true(v);
        if (HWND w = hWnd()) {
            LONG_PTR style = GetWindowLongPtrW(w, GWL_STYLE);
            SetWindowLongPtrW(w, GWL_STYLE, enabled_ ? (style | WS_TABSTOP) : (style & ~static_cast<LONG_PTR>(WS_TABSTOP)));
        }
        face_ = face::Normal;
        AccessibleChanged(EVENT_OBJECT_STATECHANGE);
        Invalidate();
    });
}

STDMETHODIMP pbtn::get_CAPTION(BSTR *v) { return get_string(v, [&] { return caption_; }); }
STDMETHODIMP pbtn::put_CAPTION(BSTR v)
{
    return put_value(L"CAPTION", [&] {
        caption_ = from_bstr(v);
        AccessibleChanged(EVENT_OBJECT_NAMECHANGE);
        ControlInfoChanged();
        Invalidate();
    });
}

STDMETHODIMP pbtn::get_hwnd(OLE_HANDLE *v) { return get_value(v, [&] { return to_ole_handle(hWnd()); }); }

STDMETHODIMP pbtn::MousePosnONOUT()
{
    step([&] { tracker_.EndHover(); });
    return S_OK;
}
STDMETHODIMP pbtn::UserControlMouseOut() { return MousePosnONOUT(); }

} // namespace tarn
