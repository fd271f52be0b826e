// lnev (TarnControls.lnev): a thin vertical 3-D divider, two one-pixel lines side by side (a
// dark one left, a light one right) the full height of the control, which is always 30 twips
// wide. On systems of version 5 and above both lines derive from the button face so the
// divider blends with themed surfaces; older ones use the system shadow and highlight.
//
// It saves nothing: BACKCOLOR is announced as changed but never stored, so a divider always
// comes back with its design colours.
#pragma once
#include "runtime/control_impl.h"
#include "runtime/picture_box.h"
#include "tarnctls_h.h"

namespace tarn {

class lnev final : public ControlImpl<lnev, Ilnev> {
public:
    static const ControlClass Class;
    lnev();

    // Ilnev
    STDMETHODIMP get_BACKCOLOR(OLE_COLOR *value) override;
    STDMETHODIMP put_BACKCOLOR(OLE_COLOR value) override;
    STDMETHODIMP ColBACK(OLE_COLOR color) override;

protected:
    void Initialize() override;
    void InitProperties() override;
    void ReadProperties(PropertyBag &bag) override;
    void Resize() override;
    // A divider decorates a form: it never takes the focus.
    bool CanGetFocus() const override { return false; }
    long AccessibleRole() override { return ROLE_SYSTEM_SEPARATOR; }

private:
    // Not shown: it keeps the colours ColBACK and BACKCOLOR give it.
    PictureBox Picture1;
    Line lneHIGHLIGHT, lneSHADOW;
};

} // namespace tarn
