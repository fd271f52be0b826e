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

} // namespace tarn
