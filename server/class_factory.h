// The class object DllGetClassObject hands out for one control class.
#pragma once
#include <unknwn.h>

#include "runtime/user_control.h"

namespace tarn {

// A new class factory for `cls` (it counts as a live object while held), or null.
IClassFactory *NewClassFactory(const ControlClass &cls);

} // namespace tarn
