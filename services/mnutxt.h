// mnutxt (TarnControls.mnutxt): dropped on a form, it reports the caption of the menu item the
// user points at, for a status line. Given the form's window in `hwnd`, `Subclass` hooks it
// (through modMENUTEXT, one window at a time) and each highlighted item raises MENUTEXT with its
// caption; `UnSubClass` puts the window's procedure back. Both act only at run time, and the
// host pairs them: the control does not unhook by itself. At design time it shows its icon.
#pragma once
#include <memory>

#include "runtime/control_impl.h"
#include "services/clsMENUTEXT.h"
#include "services/service_icon.h"
#include "tarnctls_h.h"

namespace tarn {

namespace mnutxt_events {
constexpr DISPID MENUTEXT = 1;
}

class mnutxt final : public ControlImpl<mnutxt, Imnutxt> {
public:
    static const ControlClass Class;
    mnutxt();

    // Imnutxt
    STDMETHODIMP get_hwnd(OLE_HANDLE *value) override;
    STDMETHODIMP put_hwnd(OLE_HANDLE value) override;
    STDMETHODIMP Subclass() override;
    STDMETHODIMP UnSubClass() override;

protected:
    void Initialize() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Resize() override;
    void AmbientChanged(DISPID id) override;
    void Terminate() override;
    bool CanGetFocus() const override { return false; }

private:
    // Stops hearing the instance made by the last Subclass and lets go of it.
    void release_instance();

    LONG_PTR hwnd_ = 0;
    std::shared_ptr<clsMENUTEXT> menu_text_; // the instance made by the last Subclass
    ServiceIcon imgIcon;
};

} // namespace tarn
