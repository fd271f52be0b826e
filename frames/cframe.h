// cframe (TarnControls.cframe): a rectangular 3-D frame with a one-line caption. It draws
// nothing itself: eight line constituents, two per edge, make its border and the label lblDESC
// its caption; each line's colour is a property, so the border can be raised, sunken, etched
// or flat.
#pragma once
#include "runtime/control_impl.h"
#include "tarnctls_h.h"

namespace tarn {

class cframe final : public ControlImpl<cframe, Icframe> {
public:
    static const ControlClass Class;
    cframe();

    // Icframe
    STDMETHODIMP get_Alignment(Alignments *value) override;
    STDMETHODIMP put_Alignment(Alignments value) override;
    STDMETHODIMP get_BACKCOLOR(OLE_COLOR *value) override;
    STDMETHODIMP put_BACKCOLOR(OLE_COLOR value) override;
    STDMETHODIMP get_BottomDarkShadowColor(OLE_COLOR *value) override;
    STDMETHODIMP put_BottomDarkShadowColor(OLE_COLOR value) override;
    STDMETHODIMP get_BottomShadowColor(OLE_COLOR *value) override;
    STDMETHODIMP put_BottomShadowColor(OLE_COLOR value) override;
    STDMETHODIMP get_CAPTION(BSTR *value) override;
    STDMETHODIMP put_CAPTION(BSTR value) override;
    STDMETHODIMP get__Default(BSTR *value) override { return get_CAPTION(value); }
    STDMETHODIMP put__Default(BSTR value) override { return put_CAPTION(value); }
    STDMETHODIMP get_Font(IFontDisp **value) override;
    STDMETHODIMP put_Font(IFontDisp *value) override;
    STDMETHODIMP putref_Font(IFontDisp *value) override;
    STDMETHODIMP get_ForeColor(OLE_COLOR *value) override;
    STDMETHODIMP put_ForeColor(OLE_COLOR value) override;
    STDMETHODIMP get_LeftHighlightColor(OLE_COLOR *value) override;
    STDMETHODIMP put_LeftHighlightColor(OLE_COLOR value) override;
    STDMETHODIMP get_LeftLightShadowColor(OLE_COLOR *value) override;
    STDMETHODIMP put_LeftLightShadowColor(OLE_COLOR value) override;
    STDMETHODIMP get_RightDarkShadowColor(OLE_COLOR *value) override;
    STDMETHODIMP put_RightDarkShadowColor(OLE_COLOR value) override;
    STDMETHODIMP get_RightShadowColor(OLE_COLOR *value) override;
    STDMETHODIMP put_RightShadowColor(OLE_COLOR value) override;
    STDMETHODIMP get_TopHighlightColor(OLE_COLOR *value) override;
    STDMETHODIMP put_TopHighlightColor(OLE_COLOR value) override;
    STDMETHODIMP get_TopLightShadowColor(OLE_COLOR *value) override;
    STDMETHODIMP put_TopLightShadowColor(OLE_COLOR value) override;

protected:
    void Initialize() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Resize() override;
    void Click() override;
    void DblClick() override;
    void MouseDown(int16_t button, int16_t shift, float x, float y) override;
    void MouseMove(int16_t button, int16_t shift, float x, float y) override;
    void MouseUp(int16_t button, int16_t shift, float x, float y) override;
    // A frame decorates a form: it never takes the focus.
    bool CanGetFocus() const override { return false; }
    std::wstring Caption() override;
    long AccessibleRole() override { return ROLE_SYSTEM_GROUPING; }

private:
    HRESULT put_color(Line &line, OLE_COLOR value, const wchar_t *key, bool visibility_rule);
    // A line shows exactly when its colour differs from BACKCOLOR (stored values compared).
    void apply_visibility(Line &line);
    HRESULT set_font(IFontDisp *value);

    Line lneLEFTHIGHLIGHT, lneLEFTLIGHTSHADOW, lneTOPHIGHLIGHT, lneTOPLIGHTSHADOW;
    Line lneRIGHTDARKSHADOW, lneRIGHTSHADOW, lneBOTTOMDARKSHADOW, lneBOTTOMSHADOW;
    Label lblDESC;
};

} // namespace tarn
