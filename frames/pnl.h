// pnl (TarnControls.pnl): a panel that holds other controls. In a host's designer it is a
// container (a simple frame: OLEMISC_SIMPLEFRAME, its messages passed through the site's
// ISimpleFrameSite filters), so controls dropped on it live in its window and move with it.
// It draws a border (none, raised, sunken, etched or a single line), a background (the back
// colour, a two-colour gradient, or dots of DotColor over the back colour) and an optional
// one-line caption in the middle of its height, placed as Alignment says.
//
// Every property is saved under its upper-case key with equal save and restore defaults; the
// gradient's defaults are those of a new gradient setting (clsPICGRDNT).
#pragma once
#include "foundation/clsMEMDC.h"
#include "runtime/accessible.h"
#include "runtime/control_impl.h"
#include "tarnctls_h.h"

namespace tarn {

class pnl final : public ControlImpl<pnl, Ipnl> {
public:
    static const ControlClass Class;
    pnl();

    // Ipnl
    STDMETHODIMP get_Alignment(enum CaptionAlignments *value) override;
    STDMETHODIMP put_Alignment(enum CaptionAlignments value) override;
    STDMETHODIMP get_BACKCOLOR(OLE_COLOR *value) override;
    STDMETHODIMP put_BACKCOLOR(OLE_COLOR value) override;
    STDMETHODIMP get_BorderStyle(enum PanelBorderStyles *value) override;
    STDMETHODIMP put_BorderStyle(enum PanelBorderStyles value) override;
    STDMETHODIMP get_CAPTION(BSTR *value) override;
    STDMETHODIMP put_CAPTION(BSTR value) override;
    STDMETHODIMP get_DotColor(OLE_COLOR *value) override;
    STDMETHODIMP put_DotColor(OLE_COLOR value) override;
    STDMETHODIMP get_FillStyle(enum PanelFillStyles *value) override;
    STDMETHODIMP put_FillStyle(enum PanelFillStyles value) override;
    STDMETHODIMP get_Font(IFontDisp **value) override;
    STDMETHODIMP put_Font(IFontDisp *value) override;
    STDMETHODIMP putref_Font(IFontDisp *value) override;
    STDMETHODIMP get_ForeColor(OLE_COLOR *value) override;
    STDMETHODIMP put_ForeColor(OLE_COLOR value) override;
    STDMETHODIMP get_GradientAngle(float *value) override;
    STDMETHODIMP put_GradientAngle(float value) override;
    STDMETHODIMP get_GradientColor1(OLE_COLOR *value) override;
    STDMETHODIMP put_GradientColor1(OLE_COLOR value) override;
    STDMETHODIMP get_GradientColor2(OLE_COLOR *value) override;
    STDMETHODIMP put_GradientColor2(OLE_COLOR value) override;

protected:
    void Initialize() override;
    void InitProperties() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Resize() override;
    void DrawSurface(HDC dc, const Scale &scale) override;
    void Click() override;
    void DblClick() override;
    void MouseDown(int16_t button, int16_t shift, float x, float y) override;
    void MouseMove(int16_t button, int16_t shift, float x, float y) override;
    void MouseUp(int16_t button, int16_t shift, float x, float y) override;
    LRESULT OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled) override;
    // The controls on the panel take the focus, not the panel.
    bool CanGetFocus() const override { return false; }

private:
    HRESULT set_font(IFontDisp *value);
    HRESULT put_colour(OleColor &field, OLE_COLOR value, const wchar_t *key);
    void fill_gradient(HDC dc) const;

    int16_t border_ = panelBorderRaised;
    int16_t fill_ = panelFillSolid;
    OleColor dot_colour_ = syscolor::Highlight3D;
    OleColor gradient1_, gradient2_;
    float angle_;
    Label lblCAPTION;
    clsDOTBRUSH dots_;
    AccessibleDescription described_;
};

} // namespace tarn
