// updown (TarnControls.updown): a box for entering a number. The user types digits (and, when
// allowed, one decimal point) into a one-line text box and steps the value with the arrows
// beside it, the Up and Down keys or Page Up and Page Down; the value is kept within a
// whole-number range when the focus leaves.
//
// It is a composite: the text box txtUPDOWN holds the value, the arrows udnCTRL hold the range
// and the buddy options, txtBORDER draws the border, picframBOX is the background box and
// lblBACK the background behind the text; the combo box cboHEIGHT is never shown but carries
// the font, and its height (which follows the font) is the height the control takes.
//
// Its arrows name their events crosswise on purpose: the step that increases the value raises
// DownClick, the one that decreases it UpClick.
#pragma once
#include "runtime/combo_box.h"
#include "runtime/control_impl.h"
#include "runtime/picture_box.h"
#include "runtime/text_box.h"
#include "runtime/up_down.h"
#include "tarnctls_h.h"

namespace tarn {

class updown final : public ControlImpl<updown, Iupdown> {
public:
    static const ControlClass Class;
    updown();

    // Iupdown
    STDMETHODIMP get_Alignment(Alignments *value) override;
    STDMETHODIMP put_Alignment(Alignments value) override;
    STDMETHODIMP get_AllowArrowKeys(VARIANT_BOOL *value) override;
    STDMETHODIMP put_AllowArrowKeys(VARIANT_BOOL value) override;
    STDMETHODIMP get_AllowDecPoint(VARIANT_BOOL *value) override;
    STDMETHODIMP put_AllowDecPoint(VARIANT_BOOL value) override;
    STDMETHODIMP get_BACKCOLOR(OLE_COLOR *value) override;
    STDMETHODIMP put_BACKCOLOR(OLE_COLOR value) override;
    STDMETHODIMP get_BorderStyle(BorderStyles *value) override;
    STDMETHODIMP put_BorderStyle(BorderStyles value) override;
    STDMETHODIMP get_BuddyAlignment(BuddyAlignments *value) override;
    STDMETHODIMP put_BuddyAlignment(BuddyAlignments value) override;
    STDMETHODIMP get_Enabled(VARIANT_BOOL *value) override;
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) override;
    STDMETHODIMP get_Font(IFontDisp **value) override;
    STDMETHODIMP put_Font(IFontDisp *value) override;
    STDMETHODIMP putref_Font(IFontDisp *value) override;
    STDMETHODIMP get_ForeColor(OLE_COLOR *value) override;
    STDMETHODIMP put_ForeColor(OLE_COLOR value) override;
    STDMETHODIMP get_Interval(double *value) override;
    STDMETHODIMP put_Interval(double value) override;
    STDMETHODIMP get_Max(long *value) override;
    STDMETHODIMP put_Max(long value) override;
    STDMETHODIMP get_MaxLength(short *value) override;
    STDMETHODIMP put_MaxLength(short value) override;
    STDMETHODIMP get_Min(long *value) override;
    STDMETHODIMP put_Min(long value) override;
    STDMETHODIMP get_SyncBuddy(VARIANT_BOOL *value) override;
    STDMETHODIMP put_SyncBuddy(VARIANT_BOOL value) override;
    STDMETHODIMP get_Text(BSTR *value) override;
    STDMETHODIMP put_Text(BSTR value) override;
    STDMETHODIMP get__Default(BSTR *value) override { return get_Text(value); }
    STDMETHODIMP put__Default(BSTR value) override { return put_Text(value); }
    STDMETHODIMP get_ThousandsSeparator(VARIANT_BOOL *value) override;
    STDMETHODIMP put_ThousandsSeparator(VARIANT_BOOL value) override;
    STDMETHODIMP Refresh() override;
    STDMETHODIMP RefreshFont() override;
    STDMETHODIMP DecimalPointCheck(BSTR number, short *result) override;
    STDMETHODIMP KeyLock(short key_ascii, VARIANT_BOOL extra_check, BSTR extra_text, unsigned char *result) override;
    STDMETHODIMP ShiftColor(OLE_COLOR color, long value, VARIANT_BOOL is_xp, OLE_COLOR *result) override;

protected:
    void Initialize() override;
    void InitProperties() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Resize() override;
    void Show() override;
    void AmbientChanged(DISPID id) override;
    long AccessibleRole() override { return ROLE_SYSTEM_SPINBUTTON; }
    std::wstring AccessibleValue() override { return txtUPDOWN.Text(); }
    // The focus leaving the whole control: the range is enforced with one decimal, whatever
    // AllowDecPoint says.
    void LostFocus() override;

private:
    void layout();
    // Raises the step's event, adds or subtracts the interval and keeps the bound it moves to.
    void step_value(bool increase);
    void clamp(int decimals);
    void apply_enabled(bool enabled, bool announce);
    void apply_back_color(OleColor color);
    void apply_font(IFontDisp *font);
    HRESULT set_font(IFontDisp *font);
    int decimals() const { return allow_dec_point_ ? 1 : 0; }

    PictureBox picframBOX;
    Label lblBACK;
    TextBox txtBORDER;
    TextBox txtUPDOWN;
    UpDown udnCTRL;
    ComboBox cboHEIGHT;
    double interval_ = 1.0;
    bool allow_dec_point_ = false;
};

} // namespace tarn
