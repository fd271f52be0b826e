// The shape of a caller's arguments checked against the member's description before the
// platform's dispatcher sees them. The dispatcher trusts the shape: given more arguments than a
// property get has parameters it reads the property and calls the default member of what it
// got with the rest, through a null pointer when the property holds no object; given a
// by-reference argument whose pointer is null it reads through it. Every member of every
// control is checked here, so no caller's shape reaches the dispatcher unless it copes with it.
#pragma once
#include <oaidl.h>

#include <vector>

namespace tarn {

// The member's description for this call (the property put or get, or the method), or null.
// Release it with ITypeInfo::ReleaseFuncDesc.
FUNCDESC *FindFuncDesc(ITypeInfo *info, DISPID id, WORD flags);

// A value the dispatcher can read without following a null pointer: no null by-reference
// pointer, no array argument without its array, no variant by reference to another reference.
bool ReadableArgument(const VARIANT &v);

// S_OK when the arguments fit the member (or when there is no such member: the dispatcher
// reports that itself). Otherwise E_INVALIDARG for inconsistent counts or null arrays,
// DISP_E_BADPARAMCOUNT for too many or too few arguments, DISP_E_PARAMNOTFOUND for a named
// argument the member does not have, and DISP_E_TYPEMISMATCH for a by-reference argument that
// points nowhere (or an array argument without its array); `arg_err` then names the argument.
HRESULT CheckDispParams(ITypeInfo *info, DISPID id, WORD flags, const DISPPARAMS &params, UINT *arg_err);

// The parameter of the member's description that argument `a` of `params` stands for (the
// positional ones come last to first; a property put's value is its last parameter), or -1.
int ParamOfArgument(const FUNCDESC &fd, const DISPPARAMS &params, UINT a);

// The caller's arguments with every object passed as IUnknown where the member takes a dispatch
// interface handed over as IDispatch instead. The platform's dispatcher would convert them
// itself and keep the reference its conversion took: the object (the control itself, given to
// one of its own properties) would never be released.
class DispatchObjectArgs {
public:
    DispatchObjectArgs(ITypeInfo *info, DISPID id, WORD flags, const DISPPARAMS &params);
    ~DispatchObjectArgs();
    DispatchObjectArgs(const DispatchObjectArgs &) = delete;
    DispatchObjectArgs &operator=(const DispatchObjectArgs &) = delete;
    DISPPARAMS *params() { return &params_; }

private:
    DISPPARAMS params_{};
    std::vector<VARIANT> args_;
    std::vector<IDispatch *> held_;
};

} // namespace tarn
