// Calls through the type library with by-reference arguments the way script clients pass them.
// A script passes a variable as a VARIANT by reference (VT_VARIANT | VT_BYREF); the platform's
// dispatcher binds that only to a parameter of type VARIANT*, and refuses it for a typed
// [in, out] parameter such as OLE_COLOR* or short*. When it refuses, the call is made again
// with each such argument bound to a temporary of the declared type, and what the member left
// there is written back into the caller's variable.
#pragma once
#include <oaidl.h>

namespace tarn {

HRESULT InvokeBindingByRefVariants(ITypeInfo *info, void *object, DISPID id, WORD flags, DISPPARAMS *params,
                                   VARIANT *result, EXCEPINFO *excep, UINT *arg_err);

} // namespace tarn
