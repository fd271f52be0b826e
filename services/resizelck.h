// resizelck (TarnControls.resizelck): dropped on a form, it keeps the form's window between a
// minimum and, with HasMaxSize, a maximum size. At run time it hooks the form's window through
// a Subclass of its own (sbcFORM) that watches WM_GETMINMAXINFO, and answers each size query
// with its limits. At design time it shows only its icon (imgIcon) and keeps the icon's size.
#pragma once
#include "runtime/control_impl.h"
#include "services/Subclass.h"
#include "services/resize_limits.h"
#include "services/service_icon.h"
#include "tarnctls_h.h"

namespace tarn {

class resizelck final : public ControlImpl<resizelck, Iresizelck>, private EventListener {
public:
    static const ControlClass Class;
    resizelck();

    // IDispatch: a variable a late-bound caller passes to MaxWidth or MaxHeight by reference
    // receives the raised value, whatever its type (scripts pass Variants, VB Longs).
    STDMETHODIMP Invoke(DISPID id, REFIID riid, LCID lcid, WORD flags, DISPPARAMS *params, VARIANT *result,
                        EXCEPINFO *excep, UINT *arg_err) override;

    // Iresizelck
    STDMETHODIMP get_MaxHeight(LONG *value) override;
    STDMETHODIMP put_MaxHeight(LONG *value) override;
    STDMETHODIMP get_MaxWidth(LONG *value) override;
    STDMETHODIMP put_MaxWidth(LONG *value) override;
    STDMETHODIMP get_MinHeight(LONG *value) override;
    STDMETHODIMP put_MinHeight(LONG value) override;
    STDMETHODIMP get_MinWidth(LONG *value) override;
    STDMETHODIMP put_MinWidth(LONG value) override;
    STDMETHODIMP get_HasMaxSize(VARIANT_BOOL *value) override;
    STDMETHODIMP put_HasMaxSize(VARIANT_BOOL value) override;

protected:
    void Initialize() override;
    void InitProperties() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Resize() override;
    void Show() override;
    void AmbientChanged(DISPID id) override;
    void Terminate() override;
    bool CanGetFocus() const override { return false; }

private:
    // sbcFORM's WndProc: the form asks for its size limits.
    void OnEvent(DISPID id, EventArgs &args) override;
    void load(PropertyBag &bag);
    HRESULT put_maximum(LONG *value, int32_t &field, int32_t minimum, int32_t screen, const wchar_t *key);
    HRESULT put_maximum_by_dispatch(DISPID id, VARIANT &arg);

    ResizeLimits limits_;
    bool shown_ = false;
    ComPtr<Subclass> sbcFORM;
    ServiceIcon imgIcon;
};

// The screen's size as the host's screen object reports it: pixels times twips per pixel.
ScreenTwips ScreenSizeTwips();

} // namespace tarn
