#include "runtime/byref_args.h"

#include "runtime/com.h"
#include "runtime/invoke_args.h"

#include <vector>

namespace tarn {

namespace {

bool has_byref_variant(const DISPPARAMS *params)
{
    for (UINT i = 0; params && i < params->cArgs; ++i)
        if (V_VT(&params->rgvarg[i]) == (VT_VARIANT | VT_BYREF) && V_VARIANTREF(&params->rgvarg[i])) return true;
    return false;
}

} // namespace

HRESULT InvokeBindingByRefVariants(ITypeInfo *info, void *object, DISPID id, WORD flags, DISPPARAMS *params,
                                   VARIANT *result, EXCEPINFO *excep, UINT *arg_err)
{
    HRESULT hr = info->Invoke(object, id, flags, params, result, excep, arg_err);
    if (hr != DISP_E_TYPEMISMATCH || !has_byref_variant(params) || params->cNamedArgs > 1) return hr;
    FUNCDESC *fd = FindFuncDesc(info, id, flags);
    if (!fd) return hr;

    struct Bound {
        VARIANT *caller; // the script's variable
        Variant temp;    // a value of the declared type the member works on
    };
    std::vector<Bound> bound(params->cArgs);
    std::vector<VARIANT> args(params->rgvarg, params->rgvarg + params->cArgs);
    bool ok = true;
    for (UINT a = 0; a < params->cArgs && ok; ++a) {
        VARIANT &arg = args[a];
        if (V_VT(&arg) != (VT_VARIANT | VT_BYREF) || !V_VARIANTREF(&arg)) continue;
        int param = ParamOfArgument(*fd, *params, a);
        if (param < 0) continue;
        const TYPEDESC &td = fd->lprgelemdescParam[param].tdesc;
        if (td.vt != VT_PTR || !td.lptdesc) continue; // a by-value parameter: the dispatcher copes
        VARTYPE target = td.lptdesc->vt;
        if (target == VT_USERDEFINED) {
            // An alias such as OLE_COLOR: the type it stands for.
            ComPtr<ITypeInfo> alias;
            TYPEATTR *ta = nullptr;
            if (SUCCEEDED(info->GetRefTypeInfo(td.lptdesc->hreftype, alias.put())) &&
                SUCCEEDED(alias->GetTypeAttr(&ta))) {
                target = ta->typekind == TKIND_ALIAS ? ta->tdescAlias.vt : (ta->typekind == TKIND_ENUM ? VT_I4 : VT_EMPTY);
                alias->ReleaseTypeAttr(ta);
            }
        }
        if (target == VT_VARIANT || target == VT_EMPTY || target == VT_USERDEFINED) continue;
        Bound &b = bound[a];
        b.caller = V_VARIANTREF(&arg);
        ok = Variant(*b.caller).convert(target, b.temp);
        if (!ok) break;
        V_VT(&arg) = static_cast<VARTYPE>(target | VT_BYREF);
        V_BYREF(&arg) = &b.temp.get()->lVal; // the value's storage inside the temporary
    }
    info->ReleaseFuncDesc(fd);
    if (!ok) return hr;

    DISPPARAMS again = *params;
    again.rgvarg = args.data();
    hr = info->Invoke(object, id, flags, &again, result, excep, arg_err);
    if (SUCCEEDED(hr)) {
        // The member may have changed its by-reference values: the caller's variables get them,
        // in the type each variable had where that is possible.
        for (Bound &b : bound) {
            if (!b.caller) continue;
            Variant back;
            VARTYPE keep = V_VT(b.caller);
            if (keep != VT_EMPTY && b.temp.convert(keep, back)) VariantCopy(b.caller, back.get());
            else VariantCopy(b.caller, b.temp.get());
        }
    }
    return hr;
}

} // namespace tarn
