#include "runtime/invoke_args.h"

#include <vector>

#include "runtime/com.h"

namespace tarn {

FUNCDESC *FindFuncDesc(ITypeInfo *info, DISPID id, WORD flags)
{
    TYPEATTR *ta = nullptr;
    if (!info || FAILED(info->GetTypeAttr(&ta))) return nullptr;
    WORD count = ta->cFuncs;
    info->ReleaseTypeAttr(ta);
    for (WORD i = 0; i < count; ++i) {
        FUNCDESC *fd = nullptr;
        if (FAILED(info->GetFuncDesc(i, &fd))) continue;
        if (fd->memid == id && (fd->invkind & flags)) return fd;
        info->ReleaseFuncDesc(fd);
    }
    return nullptr;
}

bool ReadableArgument(const VARIANT &v)
{
    VARTYPE vt = V_VT(&v);
    if ((vt & VT_BYREF) && !V_BYREF(&v)) return false;
    if (vt == (VT_VARIANT | VT_BYREF)) {
        // One level only: a variant by reference holds a value, not another reference to one.
        const VARIANT &inner = *V_VARIANTREF(&v);
        return V_VT(&inner) != (VT_VARIANT | VT_BYREF) && ReadableArgument(inner);
    }
    if ((vt & VT_ARRAY) && !(vt & VT_BYREF) && !V_ARRAY(&v)) return false;
    if ((vt & VT_ARRAY) && (vt & VT_BYREF) && !*V_ARRAYREF(&v)) return false;
    return true;
}

int ParamOfArgument(const FUNCDESC &fd, const DISPPARAMS &params, UINT a)
{
    if (a >= params.cArgs) return -1;
    int param = static_cast<int>(params.cArgs - 1 - a);
    if (a < params.cNamedArgs) {
        DISPID named = params.rgdispidNamedArgs[a];
        param = named == DISPID_PROPERTYPUT ? fd.cParams - 1 : named;
    }
    return param >= 0 && param < fd.cParams ? param : -1;
}

namespace {

// A type that is a dispatch interface: a dispinterface or a dual interface, through any aliases
// (IFontDisp is an alias of the dispinterface Font).
bool is_dispatch_type(ITypeInfo *info, HREFTYPE href, int depth = 0)
{
    ComPtr<ITypeInfo> ref;
    TYPEATTR *ta = nullptr;
    if (depth > 4 || FAILED(info->GetRefTypeInfo(href, ref.put())) || FAILED(ref->GetTypeAttr(&ta))) return false;
    bool dispatch = ta->typekind == TKIND_DISPATCH || (ta->typekind == TKIND_INTERFACE && (ta->wTypeFlags & TYPEFLAG_FDUAL));
    if (ta->typekind == TKIND_ALIAS) {
        const TYPEDESC &alias = ta->tdescAlias;
        dispatch = alias.vt == VT_DISPATCH || (alias.vt == VT_USERDEFINED && is_dispatch_type(ref.get(), alias.hreftype, depth + 1));
    }
    ref->ReleaseTypeAttr(ta);
    return dispatch;
}

// A parameter that takes a dispatch interface: IDispatch itself, or a pointer to one.
bool takes_dispatch(ITypeInfo *info, const TYPEDESC &td)
{
    if (td.vt == VT_DISPATCH) return true;
    if (td.vt == VT_USERDEFINED) return is_dispatch_type(info, td.hreftype);
    return td.vt == VT_PTR && td.lptdesc && takes_dispatch(info, *td.lptdesc);
}

// The object an argument passes as IUnknown (directly or in a variant by reference), or null.
IUnknown *unknown_of(const VARIANT &v)
{
    const VARIANT *p = &v;
    if (V_VT(p) == (VT_VARIANT | VT_BYREF) && V_VARIANTREF(p)) p = V_VARIANTREF(p);
    return V_VT(p) == VT_UNKNOWN ? V_UNKNOWN(p) : nullptr;
}

HRESULT fail(HRESULT hr, UINT *arg_err, UINT index)
{
    if (arg_err) *arg_err = index;
    return hr;
}

} // namespace

HRESULT CheckDispParams(ITypeInfo *info, DISPID id, WORD flags, const DISPPARAMS &params, UINT *arg_err)
{
    if ((params.cArgs && !params.rgvarg) || (params.cNamedArgs && !params.rgdispidNamedArgs) ||
        params.cNamedArgs > params.cArgs)
        return E_INVALIDARG;
    for (UINT a = 0; a < params.cArgs; ++a)
        if (!ReadableArgument(params.rgvarg[a])) return fail(DISP_E_TYPEMISMATCH, arg_err, a);

    FUNCDESC *fd = FindFuncDesc(info, id, flags);
    if (!fd) return S_OK;
    HRESULT hr = S_OK;
    // The parameters a caller supplies: all but the return value and the locale.
    std::vector<bool> supplied(static_cast<size_t>(fd->cParams), false);
    UINT inputs = 0, required = 0;
    for (SHORT p = 0; p < fd->cParams; ++p) {
        USHORT pf = fd->lprgelemdescParam[p].paramdesc.wParamFlags;
        if (pf & (PARAMFLAG_FRETVAL | PARAMFLAG_FLCID)) continue;
        supplied[static_cast<size_t>(p)] = true;
        ++inputs;
        if (!(pf & (PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT))) ++required;
    }
    bool vararg = fd->cParamsOpt == -1;
    bool put = (fd->invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) != 0;
    if (!vararg && (params.cArgs > inputs || params.cArgs < required)) hr = DISP_E_BADPARAMCOUNT;

    // Named arguments: a parameter's index once each, or the value of a property put.
    std::vector<bool> named(supplied.size(), false);
    bool value_named = false;
    for (UINT n = 0; n < params.cNamedArgs && SUCCEEDED(hr); ++n) {
        DISPID at = params.rgdispidNamedArgs[n];
        if (at == DISPID_PROPERTYPUT && put && !value_named) {
            value_named = true;
            continue;
        }
        if (at < 0 || at >= fd->cParams || !supplied[static_cast<size_t>(at)] || named[static_cast<size_t>(at)]) {
            hr = fail(DISP_E_PARAMNOTFOUND, arg_err, n);
            break;
        }
        named[static_cast<size_t>(at)] = true;
    }
    info->ReleaseFuncDesc(fd);
    return hr;
}

DispatchObjectArgs::DispatchObjectArgs(ITypeInfo *info, DISPID id, WORD flags, const DISPPARAMS &params)
    : params_(params)
{
    bool any = false;
    for (UINT a = 0; a < params.cArgs && !any; ++a) any = unknown_of(params.rgvarg[a]) != nullptr;
    if (!any) return;
    FUNCDESC *fd = FindFuncDesc(info, id, flags);
    if (!fd) return;
    args_.assign(params.rgvarg, params.rgvarg + params.cArgs);
    for (UINT a = 0; a < params.cArgs; ++a) {
        IUnknown *object = unknown_of(args_[a]);
        int param = ParamOfArgument(*fd, params, a);
        if (!object || param < 0 || !takes_dispatch(info, fd->lprgelemdescParam[param].tdesc)) continue;
        IDispatch *d = nullptr;
        if (FAILED(object->QueryInterface(IID_IDispatch, reinterpret_cast<void **>(&d))) || !d) continue;
        held_.push_back(d);
        VariantInit(&args_[a]);
        V_VT(&args_[a]) = VT_DISPATCH;
        V_DISPATCH(&args_[a]) = d;
    }
    info->ReleaseFuncDesc(fd);
    params_.rgvarg = args_.data();
}

DispatchObjectArgs::~DispatchObjectArgs()
{
    for (IDispatch *d : held_) d->Release();
}

} // namespace tarn
