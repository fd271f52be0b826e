// The table of every control class the server creates and registers.
#pragma once
#include <span>

#include "runtime/user_control.h"

namespace tarn {

// A class the server offers: the control, and its toolbox bitmap resource. A class without
// one is private to the library (created by the library's own controls and by tests): it is
// registered without the Control key, so hosts do not list it in their toolboxes.
struct ServerClass {
    const ControlClass *control;
    int toolbox_bitmap;
};

std::span<const ServerClass> ServerClasses();
const ControlClass *FindControlClass(REFCLSID clsid);

// A class the server creates that is no control: the property page.
struct SupportClass {
    const CLSID *clsid;
    const wchar_t *description;
    HRESULT (*create)(REFIID iid, void **out);
};
std::span<const SupportClass> SupportClasses();
// The creation function of any class the server serves, or null.
HRESULT (*CreatorOf(REFCLSID clsid))(REFIID, void **);

// The resource id of a class's icon (DefaultIcon): its toolbox bitmap's id plus this.
constexpr int kIconIdOffset = 1000;

} // namespace tarn
