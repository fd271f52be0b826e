// grdchk (TarnControls.grdchk): the grid's check box cell control. One check box, chkBOX, a
// little left of the centre of the cell, in the cell's back colour; its click, key and mouse
// events are the control's, with their arguments unchanged.
//
// Private to the library: registered without the Control key and hidden in the type library,
// so hosts do not list it, while the grid (and tests) create it by its ProgID.
//
// Its value is saved under two keys, "VALUE" and "Value", both written and both read; when a
// stored control holds different values under them, "Value" (read last) wins.
#pragma once
#include "runtime/check_box.h"
#include "runtime/control_impl.h"
#include "tarnctls_h.h"

namespace tarn {

class grdchk final : public ControlImpl<grdchk, Igrdchk> {
public:
    static const ControlClass Class;
    grdchk();

    // Igrdchk
    STDMETHODIMP get_BACKCOLOR(OLE_COLOR *value) override;
    STDMETHODIMP put_BACKCOLOR(OLE_COLOR value) override;
    STDMETHODIMP get_Enabled(VARIANT_BOOL *value) override;
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) override;
    STDMETHODIMP get_Value(CheckValues *value) override;
    STDMETHODIMP put_Value(CheckValues value) override;
    STDMETHODIMP get__Default(CheckValues *value) override { return get_Value(value); }
    STDMETHODIMP put__Default(CheckValues value) override { return put_Value(value); }

protected:
    void Initialize() override;
    void InitProperties() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Resize() override;
    long AccessibleRole() override { return ROLE_SYSTEM_CHECKBUTTON; }
    long AccessibleState() override;

private:
    void apply_back_color(OleColor color);

    CheckBox chkBOX;
};

} // namespace tarn
