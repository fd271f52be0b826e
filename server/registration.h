// Registration of the server's classes and type library, per machine or per user.
#pragma once
#include <objbase.h>

namespace tarn {

HRESULT RegisterServer(bool per_user);
HRESULT UnregisterServer(bool per_user);

} // namespace tarn
