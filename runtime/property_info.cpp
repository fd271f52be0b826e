#include "runtime/property_info.h"

#include "foundation/trap.h"
#include "runtime/com.h"

#include <ocidl.h>
#include <olectl.h>

#include <map>

namespace tarn {

namespace {

struct Kind {
    PropertyKind kind;
    VARTYPE vt;
    std::vector<EnumMember> members;
    bool known = true;
};

std::wstring type_name(ITypeInfo *t)
{
    Bstr name;
    t->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
    return name.str();
}

std::vector<EnumMember> enum_members(ITypeInfo *t, const TYPEATTR &ta)
{
    std::vector<EnumMember> out;
    for (UINT i = 0; i < ta.cVars; ++i) {
        VARDESC *vd = nullptr;
        if (FAILED(t->GetVarDesc(i, &vd))) continue;
        Variant v;
        if (vd->varkind == VAR_CONST && vd->lpvarValue &&
            SUCCEEDED(VariantChangeType(v.put(), vd->lpvarValue, 0, VT_I4))) {
            Bstr name;
            UINT got = 0;
            t->GetNames(vd->memid, name.put(), 1, &got);
            out.push_back({name.str(), V_I4(v.get())});
        }
        t->ReleaseVarDesc(vd);
    }
    return out;
}

Kind classify(ITypeInfo *owner, const TYPEDESC &td, int depth = 0)
{
    if (depth > 8) return {PropertyKind::Text, VT_EMPTY, {}, false};
    switch (td.vt) {
    case VT_BSTR:
    case VT_VARIANT:
        return {PropertyKind::Text, td.vt, {}};
    case VT_BOOL:
        return {PropertyKind::Boolean, VT_BOOL, {}};
    case VT_UI4:
        // Colours are 32-bit unsigned where the library does not name stdole's alias.
        return {PropertyKind::Color, VT_UI4, {}};
    case VT_I1: case VT_I2: case VT_I4: case VT_I8: case VT_INT:
    case VT_UI1: case VT_UI2: case VT_UI8: case VT_UINT:
    case VT_R4: case VT_R8: case VT_CY: case VT_DATE:
        return {PropertyKind::Number, td.vt, {}};
    case VT_PTR:
        return td.lptdesc ? classify(owner, *td.lptdesc, depth + 1) : Kind{PropertyKind::Text, VT_EMPTY, {}, false};
    case VT_USERDEFINED: {
        ComPtr<ITypeInfo> ref;
        if (FAILED(owner->GetRefTypeInfo(td.hreftype, ref.put()))) break;
        TYPEATTR *ta = nullptr;
        if (FAILED(ref->GetTypeAttr(&ta))) break;
        Kind k{PropertyKind::Text, VT_EMPTY, {}, false};
        const std::wstring name = type_name(ref.get());
        if (name == L"OLE_COLOR") k = {PropertyKind::Color, VT_UI4, {}};
        else if (ta->typekind == TKIND_ENUM) k = {PropertyKind::Enumeration, VT_I4, enum_members(ref.get(), *ta)};
        else if (ta->typekind == TKIND_ALIAS) k = classify(ref.get(), ta->tdescAlias, depth + 1);
        else if (ta->guid == IID_IFontDisp || ta->guid == IID_IFont) k = {PropertyKind::Font, VT_DISPATCH, {}};
        else if (ta->guid == IID_IPictureDisp || ta->guid == IID_IPicture) k = {PropertyKind::Picture, VT_DISPATCH, {}};
        ref->ReleaseTypeAttr(ta);
        return k;
    }
    default:
        break;
    }
    return {PropertyKind::Text, VT_EMPTY, {}, false};
}

// The dispatch half of a dual interface: its functions are the properties as callers see them.
ComPtr<ITypeInfo> dispatch_half(ITypeInfo *info)
{
    ComPtr<ITypeInfo> t(info);
    TYPEATTR *ta = nullptr;
    if (FAILED(info->GetTypeAttr(&ta))) return t;
    bool vtable_half = ta->typekind == TKIND_INTERFACE && (ta->wTypeFlags & TYPEFLAG_FDUAL);
    info->ReleaseTypeAttr(ta);
    HREFTYPE ref = 0;
    ComPtr<ITypeInfo> other;
    if (vtable_half && SUCCEEDED(info->GetRefTypeOfImplType(-1, &ref)) && SUCCEEDED(info->GetRefTypeInfo(ref, other.put())))
        t = other;
    return t;
}

} // namespace

std::vector<PropertyInfo> EditableProperties(ITypeInfo *raw)
{
    std::vector<PropertyInfo> out;
    if (!raw) return out;
    ComPtr<ITypeInfo> info = dispatch_half(raw);
    TYPEATTR *ta = nullptr;
    if (FAILED(info->GetTypeAttr(&ta))) return out;
    const WORD funcs = ta->cFuncs;
    info->ReleaseTypeAttr(ta);

    std::map<DISPID, INVOKEKIND> writable; // put and putref found per DISPID
    std::vector<PropertyInfo> readable;
    constexpr WORD kHidden = FUNCFLAG_FHIDDEN | FUNCFLAG_FRESTRICTED | FUNCFLAG_FNONBROWSABLE;
    for (UINT i = 0; i < funcs; ++i) {
        FUNCDESC *fd = nullptr;
        if (FAILED(info->GetFuncDesc(i, &fd))) continue;
        step([&] {
            if (fd->wFuncFlags & kHidden) return;
            if (fd->invkind == INVOKE_PROPERTYPUT || fd->invkind == INVOKE_PROPERTYPUTREF) {
                if (fd->cParams == 1)
                    writable[fd->memid] = static_cast<INVOKEKIND>(writable[fd->memid] | fd->invkind);
                return;
            }
            if (fd->invkind != INVOKE_PROPERTYGET || fd->cParams != 0) return;
            Kind k = classify(info.get(), fd->elemdescFunc.tdesc);
            if (!k.known) return;
            PropertyInfo p;
            p.id = fd->memid;
            Bstr name;
            UINT got = 0;
            info->GetNames(fd->memid, name.put(), 1, &got);
            p.name = name.str();
            p.kind = k.kind;
            p.vt = k.vt;
            p.members = std::move(k.members);
            readable.push_back(std::move(p));
        });
        info->ReleaseFuncDesc(fd);
    }
    for (PropertyInfo &p : readable) {
        auto w = writable.find(p.id);
        if (w == writable.end()) continue;
        p.by_ref = !(w->second & INVOKE_PROPERTYPUT);
        out.push_back(std::move(p));
    }
    return out;
}

std::vector<PropertyInfo> EditableProperties(IUnknown *object)
{
    ComPtr<IDispatch> disp = ComPtr<IUnknown>(object).as<IDispatch>(IID_IDispatch);
    ComPtr<ITypeInfo> info;
    if (!disp || FAILED(disp->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()))) return {};
    return EditableProperties(info.get());
}

} // namespace tarn
