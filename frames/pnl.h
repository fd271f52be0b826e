// pnl (TarnControls.pnl): a panel that holds other controls. In a host's designer it is a
// container (a simple frame: OLEMISC_SIMPLEFRAME, its messages passed through the site's
// ISimpleFrameSite filters), so controls dropped on it live in its window and move with it.
// It draws a border (none, raised, sunken, etched or a single line), a background (the back
// colour, a two-colour gradient, or dots of DotColor over the back colour) and an optional
// one-line caption in the middle of its height, placed as Alignment says (CaptionedControl,
// frames/captioned_control.h).
//
// Every property is saved under its upper-case key with equal save and restore defaults; the
// gradient's defaults are those of a new gradient setting (clsPICGRDNT).
#pragma once
#include "foundation/clsMEMDC.h"
#include "frames/captioned_control.h"

namespace tarn {

class pnl final : public CaptionedControl<pnl, Ipnl> {
public:
    static const ControlClass Class;
    pnl();

    // Ipnl, beside the caption's properties
    STDMETHODIMP get_BorderStyle(PanelBorderStyles *value) override;
    STDMETHODIMP put_BorderStyle(PanelBorderStyles value) override;
    STDMETHODIMP get_DotColor(OLE_COLOR *value) override;
    STDMETHODIMP put_DotColor(OLE_COLOR value) override;
    STDMETHODIMP get_FillStyle(PanelFillStyles *value) override;
    STDMETHODIMP put_FillStyle(PanelFillStyles value) override;
    STDMETHODIMP get_GradientAngle(float *value) override;
    STDMETHODIMP put_GradientAngle(float value) override;
    STDMETHODIMP get_GradientColor1(OLE_COLOR *value) override;
    STDMETHODIMP put_GradientColor1(OLE_COLOR value) override;
    STDMETHODIMP get_GradientColor2(OLE_COLOR *value) override;
    STDMETHODIMP put_GradientColor2(OLE_COLOR value) override;

protected:
    void Initialize() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Resize() override;
    void DrawSurface(HDC dc, const Scale &scale) override;
    long AccessibleRole() override { return ROLE_SYSTEM_GROUPING; }

private:
    HRESULT put_colour(OleColor &field, OLE_COLOR value, const wchar_t *key);
    void fill_gradient(HDC dc) const;

    int16_t border_ = Raised;
    int16_t fill_ = Solid;
    OleColor dot_colour_ = syscolor::Highlight3D;
    OleColor gradient1_, gradient2_;
    float angle_;
    clsDOTBRUSH dots_;
};

} // namespace tarn
