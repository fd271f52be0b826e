// cbtn (TarnControls.cbtn): the owner-drawn push button. It paints its whole face itself in one
// of fourteen looks (ButtonType), in the normal, hover, pressed or disabled face, through a
// memory DC; follows the pointer with the capture to show the hover face and the library's
// tooltip; clicks from the mouse and the space bar; moves the focus with the arrow keys.
#pragma once
#include <vector>

#include "buttons/cbtn_layout.h"
#include "foundation/clsMEMDC.h"
#include "runtime/control_impl.h"
#include "tarnctls_h.h"

namespace tarn {

class cbtn final : public ControlImpl<cbtn, Icbtn> {
public:
    static const ControlClass Class;
    // A recoloured glyph, kept as its pixels; `tint` is its background.
    struct Glyph {
        int w = 0, h = 0;
        Rgb tint = kInvalidColor;
        std::vector<Rgb> pixels;
    };

    cbtn();
    ~cbtn() override;

    // Icbtn
    STDMETHODIMP get_BACKCOLOR(OLE_COLOR *value) override;
    STDMETHODIMP put_BACKCOLOR(OLE_COLOR value) override;
    STDMETHODIMP get_BackColorCUSTOM(VARIANT_BOOL *value) override;
    STDMETHODIMP put_BackColorCUSTOM(VARIANT_BOOL value) override;
    STDMETHODIMP get_ButtonType(ButtonTypes *value) override;
    STDMETHODIMP put_ButtonType(ButtonTypes value) override;
    STDMETHODIMP get_CAPTION(BSTR *value) override;
    STDMETHODIMP put_CAPTION(BSTR value) override;
    STDMETHODIMP get__Default(BSTR *value) override { return get_CAPTION(value); }
    STDMETHODIMP put__Default(BSTR value) override { return put_CAPTION(value); }
    STDMETHODIMP get_Enabled(VARIANT_BOOL *value) override;
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) override;
    STDMETHODIMP get_FocusRect(VARIANT_BOOL *value) override;
    STDMETHODIMP put_FocusRect(VARIANT_BOOL value) override;
    STDMETHODIMP get_Font(IFontDisp **value) override;
    STDMETHODIMP put_Font(IFontDisp *value) override;
    STDMETHODIMP putref_Font(IFontDisp *value) override;
    STDMETHODIMP get_ForeColor(OLE_COLOR *value) override;
    STDMETHODIMP put_ForeColor(OLE_COLOR value) override;
    STDMETHODIMP get_hwnd(OLE_HANDLE *value) override;
    STDMETHODIMP get_MaskHLightColor(OLE_COLOR *value) override;
    STDMETHODIMP put_MaskHLightColor(OLE_COLOR value) override;
    STDMETHODIMP get_MouseIcon(IPictureDisp **value) override;
    STDMETHODIMP put_MouseIcon(IPictureDisp *value) override;
    STDMETHODIMP putref_MouseIcon(IPictureDisp *value) override;
    STDMETHODIMP get_MousePointer(MousePointers *value) override;
    STDMETHODIMP put_MousePointer(MousePointers value) override;
    STDMETHODIMP get_Picture(IPictureDisp **value) override;
    STDMETHODIMP put_Picture(IPictureDisp *value) override;
    STDMETHODIMP putref_Picture(IPictureDisp *value) override;
    STDMETHODIMP get_PictureDisabled(IPictureDisp **value) override;
    STDMETHODIMP put_PictureDisabled(IPictureDisp *value) override;
    STDMETHODIMP putref_PictureDisabled(IPictureDisp *value) override;
    STDMETHODIMP get_PictureVisible(VARIANT_BOOL *value) override;
    STDMETHODIMP put_PictureVisible(VARIANT_BOOL value) override;
    STDMETHODIMP get_ToolTip(BSTR *value) override;
    STDMETHODIMP put_ToolTip(BSTR value) override;
    STDMETHODIMP SetColors() override;
    STDMETHODIMP RefreshItem() override;
    STDMETHODIMP MousePosn(short Button, short Shift, float X, float Y) override;
    STDMETHODIMP MousePosnONOUT() override;
    STDMETHODIMP CFm_MousePosnONOUT() override;
    STDMETHODIMP UserControlMouseOut() override;

protected:
    void Initialize() override;
    void InitProperties() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Resize() override;
    // The face is drawn from the fields on every paint; exposing the window does not lay out.
    void Paint() override {}
    void Show() override;
    void Terminate() override;
    void DrawSurface(HDC dc, const Scale &scale) override;
    void Click() override;
    void DblClick() override;
    void MouseDown(int16_t button, int16_t shift, float x, float y) override;
    void MouseMove(int16_t button, int16_t shift, float x, float y) override;
    void MouseUp(int16_t button, int16_t shift, float x, float y) override;
    void KeyDown(int16_t &key_code, int16_t shift) override;
    void KeyPress(int16_t &key_ascii) override;
    void KeyUp(int16_t &key_code, int16_t shift) override;
    void GotFocus() override;
    void LostFocus() override;
    LRESULT OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled) override;
    bool CanGetFocus() const override { return enabled_; }
    void AmbientChanged(DISPID id) override;
    // As hosts expect of a button: the caption's mnemonic clicks it, screen readers hear it.
    std::wstring Caption() override { return caption_; }
    void Mnemonic() override;
    std::wstring ToolTipText() override { return tooltip_; }
    long AccessibleRole() override { return ROLE_SYSTEM_PUSHBUTTON; }
    long AccessibleState() override;
    std::wstring DefaultAction() override { return L"Press"; }
    void DoDefaultAction() override;

private:
    // A picture box constituent: its picture, enabled state and pointer.
    struct PictureBox {
        ComPtr<IPictureDisp> Picture;
        bool Enabled = true;
        ComPtr<IPictureDisp> MouseIcon;
        int16_t MousePointer = 0;
    };

    // The relayout and the paint routine: `state` 0 normal, 1 hover, 2 pressed.
    void layout();
    void apply_region();
    void paint(int state, bool repaint = false);
    void compose(HDC dc);
    void draw_face(HDC dc, int state);
    void draw_disabled(HDC dc);
    void draw_picture(HDC dc, int dx, int dy);
    void draw_focus(HDC dc);
    void recolor_glyphs();

    // Interaction.
    void mouse_down(int16_t button, int16_t shift, float x, float y);
    void mouse_up(int16_t button, int16_t shift, float x, float y);
    void click();
    void posn(int16_t button, int16_t shift, float x, float y);
    void end_hover();
    void tip_check();
    void tip_timing();
    void tip_close();
    void on_tip_start();
    void send_tab(bool backwards);
    bool set_cursor();
    float px_x(float twips) const;
    float px_y(float twips) const;
    HRESULT set_font(IFontDisp *value);
    HRESULT set_picture(PictureBox &box, IPictureDisp *value, const wchar_t *key);
    HRESULT set_mouse_icon(IPictureDisp *value);
    bool focused() const;

    // The container's "display as default" ambient, read when it may have changed.
    void read_display_default();

    // Properties.
    OleColor back_ = 0;
    bool back_custom_ = false;
    int16_t type_ = btype::Button;
    std::wstring caption_;
    std::wstring tooltip_;
    bool enabled_ = true;
    bool focus_rect_ = true;
    bool picture_visible_ = false;
    OleColor fore_ = 0;
    OleColor mask_ = syscolor::ButtonFace;
    ComPtr<IFontDisp> font_;
    ComPtr<IPictureDisp> mouse_icon_;
    int16_t mouse_pointer_ = 0;
    PictureBox picBOX, picBOXdis;

    // Layout and drawing.
    ButtonLayout layout_;
    int face_ = face::Normal;
    clsMEMDC memdc_;
    clsDOTBRUSH dots_;
    Glyph glyphs_[2]; // the drop arrow, normal and disabled, recoloured
    Rgb glyph_face_ = kInvalidColor;

    // Interaction state.
    bool tip_armed_ = false, hover_ = false, captured_ = false, mouse_down_ = false, down_in_progress_ = false;
    bool tip_shown_ = false; // the tip came up during this hover: not again until the pointer leaves
    bool in_posn_ = false;
    int32_t last_key_ = 0, last_button_ = 0;
    bool display_default_ = false; // the form's default button: drawn with the default frame
};

} // namespace tarn
