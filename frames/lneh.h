// lneh (TarnControls.lneh): the horizontal sibling of the vertical divider, with a caption. A
// one-line caption at the left (or right, or in the middle, as Alignment says) and a 3-D line,
// a dark one-pixel line above a light one, filling the rest of the width, level with the
// middle of the caption's line. The lines take their colours from the system version as the
// vertical divider's do. The host sizes it; the layout follows the caption's font and width.
//
// A new line takes its container's name for a caption (InitProperties), as a label does.
// Every property is saved under its upper-case key with equal save and restore defaults.
#pragma once
#include "runtime/accessible.h"
#include "runtime/control_impl.h"
#include "tarnctls_h.h"

namespace tarn {

class lneh final : public ControlImpl<lneh, Ilneh> {
public:
    static const ControlClass Class;
    lneh();

    // Ilneh
    STDMETHODIMP get_Alignment(enum CaptionAlignments *value) override;
    STDMETHODIMP put_Alignment(enum CaptionAlignments value) override;
    STDMETHODIMP get_BACKCOLOR(OLE_COLOR *value) override;
    STDMETHODIMP put_BACKCOLOR(OLE_COLOR value) override;
    STDMETHODIMP get_CAPTION(BSTR *value) override;
    STDMETHODIMP put_CAPTION(BSTR value) override;
    STDMETHODIMP get_Font(IFontDisp **value) override;
    STDMETHODIMP put_Font(IFontDisp *value) override;
    STDMETHODIMP putref_Font(IFontDisp *value) override;
    STDMETHODIMP get_ForeColor(OLE_COLOR *value) override;
    STDMETHODIMP put_ForeColor(OLE_COLOR value) override;

protected:
    void Initialize() override;
    void InitProperties() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Resize() override;
    void Click() override;
    void DblClick() override;
    void MouseDown(int16_t button, int16_t shift, float x, float y) override;
    void MouseMove(int16_t button, int16_t shift, float x, float y) override;
    void MouseUp(int16_t button, int16_t shift, float x, float y) override;
    LRESULT OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled) override;
    bool CanGetFocus() const override { return false; }

private:
    HRESULT set_font(IFontDisp *value);
    // A property that changes the picture: lay out again and repaint.
    void relayout();

    Label lblCAPTION;
    // The line left of the caption and the one right of it, each a dark and a light line.
    Line lneLEFTSHADOW, lneLEFTHIGHLIGHT, lneRIGHTSHADOW, lneRIGHTHIGHLIGHT;
    AccessibleDescription described_;
};

} // namespace tarn
