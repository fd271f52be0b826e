// The class object DllGetClassObject hands out for one control class.
#pragma once
#include <unknwn.h>

#include "runtime/user_control.h"

namespace tarn {

// A new class factory that makes its objects with `create` (it counts as a live object while
// held), or null.
IClassFactory *NewClassFactory(HRESULT (*create)(REFIID iid, void **out));

} // namespace tarn
