// ButtonControl<Self, Interface>: the owner-drawn button as a control, shared by cbtn and the
// colour button cbtnddp, whose interfaces both carry the button's members (with the same
// DISPIDs). It holds the face (button_face.h), the mouse (hover_tracker.h) and the keys
// (button_keys.h), answers hosts and screen readers as a push button, and implements the
// button's properties and methods. A control deriving from it adds its class record, its
// saved keys (Self::kButtonTypeKey and Self::kPictureDisabledKey name two that differ between
// the buttons), ReadProperties and WriteProperties, and whatever else it is.
#pragma once
#include <stdexcept>

#include "buttons/button_face.h"
#include "buttons/button_keys.h"
#include "buttons/hover_tracker.h"
#include "foundation/checked.h"
#include "foundation/font_object.h"
#include "runtime/control_impl.h"
#include "tarnctls_h.h"

namespace tarn {

inline bool is_true(VARIANT_BOOL v) { return v != VARIANT_FALSE; }
inline VARIANT_BOOL vbool(bool b) { return b ? VARIANT_TRUE : VARIANT_FALSE; }

template <class Self, class Interface> class ButtonControl : public ControlImpl<Self, Interface>, protected ButtonHost {
    using Base = ControlImpl<Self, Interface>;

public:
    static constexpr wchar_t kDefaultCaption[] = L"Button";

    STDMETHODIMP get_BACKCOLOR(OLE_COLOR *v) override { return this->get_value(v, [&] { return OLE_COLOR(face_.back); }); }
    STDMETHODIMP put_BACKCOLOR(OLE_COLOR v) override
    {
        return this->put_value(L"BACKCOLOR", [&] {
            face_.back = v;
            this->SetBackColor(v);
        });
    }
    STDMETHODIMP get_BackColorCUSTOM(VARIANT_BOOL *v) override { return this->get_value(v, [&] { return vbool(face_.back_custom); }); }
    STDMETHODIMP put_BackColorCUSTOM(VARIANT_BOOL v) override
    {
        return this->put_value(L"BACKCOLORCUST", [&] {
            face_.back_custom = is_true(v);
            this->Invalidate();
        });
    }
    STDMETHODIMP get_ButtonType(ButtonTypes *v) override
    {
        return this->get_value(v, [&] { return static_cast<ButtonTypes>(face_.type); });
    }
    STDMETHODIMP put_ButtonType(ButtonTypes v) override
    {
        // Any value is taken; only 1 to 14 select a look. A value beyond 16 bits is a failed step.
        return this->put_value(Self::kButtonTypeKey, [&] {
            face_.type = checked<int16_t>(static_cast<int32_t>(v)); // the enumeration is unsigned underneath
            step([&] { apply_region(); });
            this->Invalidate();
        });
    }
    STDMETHODIMP get_CAPTION(BSTR *v) override { return this->get_string(v, [&] { return face_.caption; }); }
    STDMETHODIMP put_CAPTION(BSTR v) override
    {
        return this->put_value(L"TEXT", [&] {
            face_.caption = from_bstr(v);
            this->AccessibleChanged(EVENT_OBJECT_NAMECHANGE);
            this->ControlInfoChanged();
            this->Invalidate();
        });
    }
    STDMETHODIMP get__Default(BSTR *v) override { return get_CAPTION(v); }
    STDMETHODIMP put__Default(BSTR v) override { return put_CAPTION(v); }
    STDMETHODIMP get_Enabled(VARIANT_BOOL *v) override { return this->get_value(v, [&] { return vbool(face_.enabled); }); }
    STDMETHODIMP put_Enabled(VARIANT_BOOL v) override
    {
        return this->put_value(L"ENABLED", [&] {
            face_.enabled = is_true(v);
            face_.picBOX.Enabled = face_.picBOXdis.Enabled = face_.enabled;
            if (HWND w = this->hWnd()) {
                // A disabled button is no tab stop.
                LONG_PTR style = GetWindowLongPtrW(w, GWL_STYLE);
                SetWindowLongPtrW(w, GWL_STYLE,
                                  face_.enabled ? (style | WS_TABSTOP) : (style & ~static_cast<LONG_PTR>(WS_TABSTOP)));
            }
            step([&] { layout(); });
            step([&] { paint(face::Normal); });
        });
    }
    STDMETHODIMP get_FocusRect(VARIANT_BOOL *v) override { return this->get_value(v, [&] { return vbool(face_.focus_rect); }); }
    STDMETHODIMP put_FocusRect(VARIANT_BOOL v) override
    {
        return this->put_value(L"FOCUSRECT", [&] {
            face_.focus_rect = is_true(v);
            this->Invalidate();
        });
    }
    STDMETHODIMP get_Font(IFontDisp **v) override { return this->get_object(v, [&] { return face_.font; }); }
    STDMETHODIMP put_Font(IFontDisp *v) override { return set_font(v); }
    STDMETHODIMP putref_Font(IFontDisp *v) override { return set_font(v); }
    STDMETHODIMP get_ForeColor(OLE_COLOR *v) override { return this->get_value(v, [&] { return OLE_COLOR(face_.fore); }); }
    STDMETHODIMP put_ForeColor(OLE_COLOR v) override
    {
        return this->put_value(L"FORECOLOR", [&] {
            face_.fore = v;
            this->Invalidate();
        });
    }
    STDMETHODIMP get_hwnd(OLE_HANDLE *v) override { return this->get_value(v, [&] { return to_ole_handle(this->hWnd()); }); }
    STDMETHODIMP get_MaskHLightColor(OLE_COLOR *v) override { return this->get_value(v, [&] { return OLE_COLOR(face_.mask); }); }
    STDMETHODIMP put_MaskHLightColor(OLE_COLOR v) override
    {
        return this->put_value(L"MASKHLIGHTCOLOR", [&] {
            face_.mask = v;
            this->Invalidate();
        });
    }
    STDMETHODIMP get_MouseIcon(IPictureDisp **v) override { return this->get_object(v, [&] { return face_.mouse_icon; }); }
    STDMETHODIMP put_MouseIcon(IPictureDisp *v) override { return set_mouse_icon(v); }
    STDMETHODIMP putref_MouseIcon(IPictureDisp *v) override { return set_mouse_icon(v); }
    STDMETHODIMP get_MousePointer(MousePointers *v) override
    {
        return this->get_value(v, [&] { return static_cast<MousePointers>(face_.mouse_pointer); });
    }
    STDMETHODIMP put_MousePointer(MousePointers v) override
    {
        if (!fits16(v)) return S_OK; // kept in 16 bits: a wider value is skipped
        face_.mouse_pointer = static_cast<int16_t>(static_cast<int32_t>(v));
        face_.picBOX.MousePointer = face_.mouse_pointer;
        return S_OK;
    }
    STDMETHODIMP get_Picture(IPictureDisp **v) override { return this->get_object(v, [&] { return face_.picBOX.Picture; }); }
    STDMETHODIMP put_Picture(IPictureDisp *v) override { return set_picture(face_.picBOX, v, L"PICTURE"); }
    STDMETHODIMP putref_Picture(IPictureDisp *v) override { return set_picture(face_.picBOX, v, L"PICTURE"); }
    STDMETHODIMP get_PictureDisabled(IPictureDisp **v) override
    {
        return this->get_object(v, [&] { return face_.picBOXdis.Picture; });
    }
    STDMETHODIMP put_PictureDisabled(IPictureDisp *v) override
    {
        return set_picture(face_.picBOXdis, v, Self::kPictureDisabledKey);
    }
    STDMETHODIMP putref_PictureDisabled(IPictureDisp *v) override
    {
        return set_picture(face_.picBOXdis, v, Self::kPictureDisabledKey);
    }
    STDMETHODIMP get_PictureVisible(VARIANT_BOOL *v) override
    {
        return this->get_value(v, [&] { return vbool(face_.picture_visible); });
    }
    STDMETHODIMP put_PictureVisible(VARIANT_BOOL v) override
    {
        // Persisted as "SHOWPICTURE", announced under this name.
        return this->put_value(L"PICTUREVisible", [&] {
            face_.picture_visible = is_true(v);
            step([&] { layout(); });
            this->Invalidate();
        });
    }
    STDMETHODIMP get_ToolTip(BSTR *v) override { return this->get_string(v, [&] { return tooltip_; }); }
    STDMETHODIMP put_ToolTip(BSTR v) override
    {
        return this->put_value(L"TOOLTIP", [&] {
            tooltip_ = from_bstr(v);
            this->AccessibleChanged(EVENT_OBJECT_DESCRIPTIONCHANGE);
        });
    }
    STDMETHODIMP SetColors() override
    {
        step([&] { face_.RecolorGlyphs(); });
        step([&] { paint(face_.state); });
        return S_OK;
    }
    STDMETHODIMP RefreshItem() override { return SetColors(); }
    STDMETHODIMP MousePosn(short Button, short Shift, float X, float Y) override
    {
        step([&] { tracker_.Posn(Button, Shift, X, Y); });
        return S_OK;
    }
    STDMETHODIMP MousePosnONOUT() override
    {
        step([&] { tracker_.EndHover(); });
        return S_OK;
    }
    STDMETHODIMP CFm_MousePosnONOUT() override { return MousePosnONOUT(); }
    STDMETHODIMP UserControlMouseOut() override { return MousePosnONOUT(); }

protected:
    ButtonControl() : tracker_(*this), keys_(*this, tracker_) {}

    void Initialize() override
    {
        // What a new button shows until its first restore or property write.
        this->SetDesignSize(1215, 375);
        face_.back = GetSysColor(COLOR_BTNFACE);
        face_.fore = GetSysColor(COLOR_BTNTEXT);
        this->SetBackColor(face_.back);
        face_.caption = kDefaultCaption;
        face_.font = this->Ambient().Font();
    }
    void InitProperties() override
    {
        face_.type = btype::Button;
        face_.caption = kDefaultCaption;
        // Stored resolved: a new button keeps these colours when the system's change later.
        face_.back = GetSysColor(COLOR_BTNFACE);
        face_.fore = GetSysColor(COLOR_BTNTEXT);
        this->SetBackColor(face_.back);
        face_.enabled = face_.focus_rect = true;
        face_.picBOX.Enabled = face_.picBOXdis.Enabled = true;
        face_.picture_visible = false;
        step([&] { face_.font = this->Ambient().Font(); });
    }
    void Terminate() override
    {
        step([&] { tracker_.TipClose(); });
    }
    void Resize() override
    {
        step([&] { layout(); });
        step([&] { apply_region(); });
        step([&] { paint(face::Normal); });
    }
    // The face is drawn from the fields on every paint; exposing the window does not lay out.
    void Paint() override {}
    void Show() override
    {
        // The window exists only now: give it the shape of its type.
        step([&] { apply_region(); });
        step([&] { read_display_default(); });
    }
    void AmbientChanged(DISPID id) override
    {
        if (id == DISPID_AMBIENT_DISPLAYASDEFAULT || id == DISPID_UNKNOWN) read_display_default();
    }
    void DrawSurface(HDC dc, const Scale &) override { face_.Draw(dc, this->PixelWidth(), this->PixelHeight(), focused()); }

    void Click() override { tracker_.Click(); }
    void DblClick() override { tracker_.DblClick(); }
    void MouseDown(int16_t b, int16_t s, float x, float y) override { tracker_.MouseDown(b, s, px_x(x), px_y(y)); }
    void MouseMove(int16_t b, int16_t s, float x, float y) override { tracker_.MouseMove(b, s, px_x(x), px_y(y)); }
    void MouseUp(int16_t b, int16_t s, float x, float y) override { tracker_.MouseUp(b, s, px_x(x), px_y(y)); }
    void KeyDown(int16_t &code, int16_t shift) override { keys_.KeyDown(code, shift); }
    void KeyPress(int16_t &ascii) override { keys_.KeyPress(ascii); }
    void KeyUp(int16_t &code, int16_t shift) override { keys_.KeyUp(code, shift); }
    void GotFocus() override { step([&] { paint(face_.state); }); }
    void LostFocus() override { keys_.LostFocus(); }
    LRESULT OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled) override
    {
        handled = tracker_.OnMessage(msg, wp, lp);
        if (!handled && msg == WM_SETCURSOR && reinterpret_cast<HWND>(wp) == this->hWnd() && LOWORD(lp) == HTCLIENT) {
            POINT pt{};
            GetCursorPos(&pt);
            ScreenToClient(this->hWnd(), &pt);
            if (face_.SetCursorAt(pt)) {
                handled = true;
                return TRUE;
            }
        }
        return 0;
    }
    bool CanGetFocus() const override { return face_.enabled; }

    // As hosts expect of a button: the caption's mnemonic clicks it, screen readers hear it.
    std::wstring Caption() override { return face_.caption; }
    void Mnemonic() override
    {
        // Exactly a left click: the pressed face, MouseDown, MouseUp, then Click.
        if (!face_.enabled) return;
        tracker_.MouseDown(mouse::Left, 0, 1, 1);
        tracker_.MouseUp(mouse::Left, 0, 1, 1);
        tracker_.Click();
    }
    std::wstring ToolTipText() override { return tooltip_; }
    long AccessibleRole() override { return ROLE_SYSTEM_PUSHBUTTON; }
    long AccessibleState() override
    {
        return PushButtonState(Base::AccessibleState(), face_.enabled, face_.state == face::Pressed && tracker_.mouse_down(),
                               tracker_.hover(), face_.display_default);
    }
    std::wstring DefaultAction() override { return L"Press"; }
    void DoDefaultAction() override
    {
        if (!face_.enabled) return;
        tracker_.set_last_button(mouse::Left);
        tracker_.Click();
    }

    // ButtonHost
    HWND ButtonWindow() const override { return this->hWnd(); }
    int ButtonWidth() const override { return this->PixelWidth(); }
    int ButtonHeight() const override { return this->PixelHeight(); }
    void PaintFace(int state) override { paint(state); }
    void RaiseButtonEvent(DISPID id, EventArgs &args) override { this->raise(id, args); }
    std::wstring TipText() const override { return tooltip_; }
    bool ButtonEnabled() const override { return face_.enabled; }

    // The relayout and the paint routine: `state` 0 normal, 1 hover, 2 pressed (face::None:
    // the face shown).
    void layout() { face_.Layout(this->PixelWidth(), this->PixelHeight()); }
    void apply_region() { face_.ApplyRegion(this->hWnd(), this->PixelWidth(), this->PixelHeight()); }
    void paint(int state)
    {
        if (state != face::None) face_.state = state;
        if (HWND w = this->hWnd()) {
            // Always at once: the face must follow the pointer move that asked for it.
            RedrawWindow(w, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
            this->AccessibleChanged(EVENT_OBJECT_STATECHANGE);
        } else {
            this->Invalidate();
        }
    }
    bool focused() const
    {
        HWND w = this->hWnd();
        return w && GetFocus() == w;
    }
    float px_x(float twips) const { return static_cast<float>(twips / this->scale().tppx); }
    float px_y(float twips) const { return static_cast<float>(twips / this->scale().tppy); }

    // The container's "display as default" ambient, read when it may have changed.
    void read_display_default()
    {
        Variant v, b;
        bool on = this->Ambient().get(DISPID_AMBIENT_DISPLAYASDEFAULT, v) && v.convert(VT_BOOL, b) && V_BOOL(b.get());
        if (on == face_.display_default) return;
        face_.display_default = on;
        this->AccessibleChanged(EVENT_OBJECT_STATECHANGE);
        this->Invalidate();
    }

    // The keys the buttons read alike before their colours, in their order.
    void read_face_keys(PropertyBag &bag)
    {
        ComPtr<IFontDisp> ambient = this->Ambient().Font();
        step([&] { face_.font = bag.read_font(L"FONT", ambient.get()); });
        // Written as "MASKHLIGHT": what was saved never comes back, a restored button starts
        // with button face.
        step([&] { face_.mask = bag.read_color(L"MASKHLIGHTCOLOR", syscolor::ButtonFace); });
        step([&] { face_.type = bag.read_int(Self::kButtonTypeKey, btype::Button); });
        step([&] { face_.caption = bag.read_string(L"TEXT", kDefaultCaption); });
        step([&] { tooltip_ = bag.read_string(L"TOOLTIP", L""); });
        step([&] { face_.enabled = bag.read_bool(L"ENABLED", true); });
        step([&] { face_.picBOX.Enabled = face_.picBOXdis.Enabled = face_.enabled; });
        step([&] { face_.back_custom = bag.read_bool(L"BACKCOLORCUST", false); });
        step([&] { face_.picBOX.Picture = bag.read_picture(L"PICTURE", nullptr); });
        step([&] { face_.focus_rect = bag.read_bool(L"FOCUSRECT", true); });
        step([&] { face_.picture_visible = bag.read_bool(L"SHOWPICTURE", false); });
    }
    // The properties the button's saved keys share, read and written by the controls.
    void read_mouse_keys(PropertyBag &bag)
    {
        // Once for the button, once for its picture box.
        step([&] { face_.mouse_icon = bag.read_picture(L"MouseIcon", nullptr); });
        step([&] { face_.picBOX.MouseIcon = bag.read_picture(L"MouseIcon", nullptr); });
        step([&] { face_.mouse_pointer = bag.read_int(L"MousePointer", 0); });
        step([&] { face_.picBOX.MousePointer = bag.read_int(L"MousePointer", 0); });
    }

    ButtonFace face_;
    std::wstring tooltip_;
    HoverTracker tracker_;
    ButtonKeys keys_;

private:
    HRESULT set_font(IFontDisp *v)
    {
        return this->put_value(L"FONT", [&] {
            ComPtr<IFontDisp> copy = ComPtr<IFontDisp>::attach(CloneFontObject(v));
            if (!copy) throw std::invalid_argument("not a font");
            face_.font = copy;
            this->Invalidate();
        });
    }
    HRESULT set_picture(ButtonPictureBox &box, IPictureDisp *v, const wchar_t *key)
    {
        return this->put_value(key, [&] {
            // Nothing, or an object that is a picture; anything else is refused.
            ComPtr<IPictureDisp> pic(v);
            if (v && !ComPtr<IPictureDisp>(v).as<IPicture>(IID_IPicture)) throw std::invalid_argument("not a picture");
            box.Picture = pic;
            step([&] { layout(); });
            this->Invalidate();
        });
    }
    HRESULT set_mouse_icon(IPictureDisp *v)
    {
        // Applied to the button and to its picture box; no change notice.
        step([&] { face_.mouse_icon = ComPtr<IPictureDisp>(v); });
        step([&] { face_.picBOX.MouseIcon = ComPtr<IPictureDisp>(v); });
        return S_OK;
    }
};

} // namespace tarn
