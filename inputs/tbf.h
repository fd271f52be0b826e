// tbf (TarnControls.tbf): a tab strip a user puts above a set of controls. It draws its tabs
// itself in one of three looks (Style): classic raised tabs, flat buttons, or the library's XP
// tabs. The user picks a tab with the mouse, with Ctrl+Tab and Ctrl+Shift+Tab (also while the
// focus is elsewhere on the form), with the arrow keys while the strip has the focus, and with
// the access key a caption marks with "&" (Alt+letter). BeforeClick lets the host refuse a
// change; Click follows each change, by the user or by code. Screen readers see a page tab
// list with a page tab for each tab.
#pragma once
#include <vector>

#include "inputs/tbf_layout.h"
#include "runtime/control_impl.h"
#include "tarnctls_h.h"

namespace tarn {

class tbf final : public ControlImpl<tbf, Itbf> {
public:
    static const ControlClass Class;
    tbf() = default;

    // Itbf
    STDMETHODIMP get_BACKCOLOR(OLE_COLOR *value) override;
    STDMETHODIMP put_BACKCOLOR(OLE_COLOR value) override;
    STDMETHODIMP get_Enabled(VARIANT_BOOL *value) override;
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) override;
    STDMETHODIMP get_Font(IFontDisp **value) override;
    STDMETHODIMP put_Font(IFontDisp *value) override;
    STDMETHODIMP putref_Font(IFontDisp *value) override;
    STDMETHODIMP get_ForeColor(OLE_COLOR *value) override;
    STDMETHODIMP put_ForeColor(OLE_COLOR value) override;
    STDMETHODIMP get_hwnd(OLE_HANDLE *value) override;
    STDMETHODIMP get_SelectedTab(short *value) override;
    STDMETHODIMP put_SelectedTab(short value) override;
    STDMETHODIMP get_Style(TabStyles *value) override;
    STDMETHODIMP put_Style(TabStyles value) override;
    STDMETHODIMP get_TabCaption(short index, BSTR *value) override;
    STDMETHODIMP put_TabCaption(short index, BSTR value) override;
    STDMETHODIMP get_Tabs(short *value) override;
    STDMETHODIMP put_Tabs(short value) override;
    STDMETHODIMP get__Default(short *value) override { return get_SelectedTab(value); }
    STDMETHODIMP put__Default(short value) override { return put_SelectedTab(value); }

protected:
    void Initialize() override;
    void InitProperties() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Resize() override { Invalidate(); }
    void Paint() override {}
    void DrawSurface(HDC dc, const Scale &scale) override;
    void Click() override {} // the strip's Click is a change of tab, raised by select()
    void DblClick() override;
    void MouseDown(int16_t button, int16_t shift, float x, float y) override;
    void MouseMove(int16_t button, int16_t shift, float x, float y) override;
    void MouseUp(int16_t button, int16_t shift, float x, float y) override;
    void MouseLeave() override { set_hot(-1); }
    void KeyDown(int16_t &key_code, int16_t shift) override;
    void GotFocus() override;
    void LostFocus() override;
    UINT DialogCode() const override;
    bool CanGetFocus() const override { return enabled_; }
    std::vector<ACCEL> ControlKeys() override;
    void ControlKey(const MSG &msg) override;
    // A page tab list with a page tab for each tab.
    long AccessibleRole() override { return ROLE_SYSTEM_PAGETABLIST; }
    long AccessibleState() override;
    long AccessibleChildCount() override { return static_cast<long>(captions_.size()); }
    bool AccessibleChild(long id, AccessibleElement &out) override;
    void DoChildDefaultAction(long id) override;
    bool AccessibleFocus(VARIANT *out) override;
    long AccessibleSelectedChild() override;

private:
    // Makes `index` the selected tab: BeforeClick may refuse it, then Click.
    void select(int index);
    void set_hot(int index);
    void captions_changed();
    // The tabs where they are drawn now (pixels).
    std::vector<TabBox> tabs() const;
    int pad() const;
    HRESULT set_font(IFontDisp *font);
    std::wstring default_caption(size_t index) const;
    bool focused() const;

    std::vector<std::wstring> captions_;
    int selected_ = 0;
    int16_t style_ = tabstyle::Classic;
    bool enabled_ = true;
    OleColor back_ = syscolor::ButtonFace, fore_ = syscolor::ButtonText;
    ComPtr<IFontDisp> font_;
    int hot_ = -1;
};

} // namespace tarn
