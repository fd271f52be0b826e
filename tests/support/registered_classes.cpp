#include "support/registered_classes.h"

#include <gtest/gtest.h>

#include "host/dispatch.h"
#include "tarnctls_h.h"

namespace tarn::test {

namespace {

VARTYPE resolved(ITypeInfo *info, const TYPEDESC &td)
{
    if (td.vt == VT_PTR && td.lptdesc) return static_cast<VARTYPE>(resolved(info, *td.lptdesc) | VT_BYREF);
    if (td.vt != VT_USERDEFINED) return td.vt;
    ComPtr<ITypeInfo> ref;
    TYPEATTR *ta = nullptr;
    VARTYPE vt = VT_USERDEFINED;
    if (SUCCEEDED(info->GetRefTypeInfo(td.hreftype, ref.put())) && SUCCEEDED(ref->GetTypeAttr(&ta))) {
        if (ta->typekind == TKIND_ALIAS) vt = resolved(ref.get(), ta->tdescAlias);
        else if (ta->typekind == TKIND_ENUM) vt = VT_I4;
        else if (ta->typekind == TKIND_DISPATCH || ta->typekind == TKIND_INTERFACE) vt = VT_DISPATCH;
        ref->ReleaseTypeAttr(ta);
    }
    return vt;
}

std::vector<RegisteredMember> members_of(ITypeInfo *info)
{
    std::vector<RegisteredMember> out;
    TYPEATTR *ta = nullptr;
    if (FAILED(info->GetTypeAttr(&ta))) return out;
    WORD count = ta->cFuncs;
    info->ReleaseTypeAttr(ta);
    for (WORD i = 0; i < count; ++i) {
        FUNCDESC *fd = nullptr;
        if (FAILED(info->GetFuncDesc(i, &fd))) continue;
        RegisteredMember m;
        BSTR name = nullptr;
        UINT got = 0;
        info->GetNames(fd->memid, &name, 1, &got);
        m.name = name ? name : L"";
        SysFreeString(name);
        m.id = fd->memid;
        m.kind = fd->invkind;
        for (SHORT p = 0; p < fd->cParams; ++p) {
            const ELEMDESC &e = fd->lprgelemdescParam[p];
            USHORT pf = e.paramdesc.wParamFlags;
            VARTYPE vt = resolved(info, e.tdesc);
            if (pf & PARAMFLAG_FRETVAL) m.result = static_cast<VARTYPE>(vt & ~VT_BYREF);
            else if (!(pf & PARAMFLAG_FLCID)) {
                m.inputs.push_back(vt);
                if (!(pf & (PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT))) ++m.required;
            }
        }
        VARTYPE ret = resolved(info, fd->elemdescFunc.tdesc);
        if (ret != VT_HRESULT && ret != VT_VOID) m.result = ret;
        bool own = !(fd->wFuncFlags & FUNCFLAG_FRESTRICTED) && m.id < 0x60000000;
        info->ReleaseFuncDesc(fd);
        if (own) out.push_back(std::move(m));
    }
    return out;
}

} // namespace

std::vector<RegisteredClass> RegisteredClasses()
{
    std::vector<RegisteredClass> out;
    ComPtr<ITypeLib> lib;
    HRESULT hr = LoadRegTypeLib(LIBID_TarnControls, 1, 0, 0, lib.put());
    EXPECT_EQ(S_OK, hr) << "the type library is not registered";
    if (FAILED(hr)) return out;
    for (UINT t = 0, n = lib->GetTypeInfoCount(); t < n; ++t) {
        ComPtr<ITypeInfo> coclass;
        TYPEATTR *ta = nullptr;
        if (FAILED(lib->GetTypeInfo(t, coclass.put())) || FAILED(coclass->GetTypeAttr(&ta))) continue;
        bool creatable = ta->typekind == TKIND_COCLASS && (ta->wTypeFlags & TYPEFLAG_FCANCREATE);
        RegisteredClass c;
        c.clsid = ta->guid;
        WORD impls = ta->cImplTypes;
        coclass->ReleaseTypeAttr(ta);
        if (!creatable) continue;
        LPOLESTR progid = nullptr;
        if (SUCCEEDED(ProgIDFromCLSID(c.clsid, &progid))) {
            c.progid = progid;
            CoTaskMemFree(progid);
        }
        for (WORD k = 0; k < impls; ++k) {
            INT flags = 0;
            HREFTYPE ref = 0;
            ComPtr<ITypeInfo> iface;
            if (FAILED(coclass->GetImplTypeFlags(k, &flags)) || (flags & IMPLTYPEFLAG_FSOURCE) ||
                !(flags & IMPLTYPEFLAG_FDEFAULT) || FAILED(coclass->GetRefTypeOfImplType(k, &ref)) ||
                FAILED(coclass->GetRefTypeInfo(ref, iface.put())))
                continue;
            c.members = members_of(iface.get());
        }
        out.push_back(std::move(c));
    }
    return out;
}

std::vector<const RegisteredMember *> ReadWriteProperties(const RegisteredClass &cls)
{
    std::vector<const RegisteredMember *> out;
    for (const RegisteredMember &get : cls.members) {
        if (get.kind != INVOKE_PROPERTYGET || get.inputs.size() > 1) continue;
        if (get.inputs.size() == 1 && get.inputs[0] != VT_I4 && get.inputs[0] != VT_I2) continue;
        for (const RegisteredMember &put : cls.members)
            if (put.id == get.id && put.kind == INVOKE_PROPERTYPUT && put.inputs.size() == get.inputs.size() + 1) {
                out.push_back(&get);
                break;
            }
    }
    return out;
}

namespace {

bool put_get(IDispatch *d, DISPID id, bool indexed, const Variant &value)
{
    // The value first, then the index (arguments come last to first); a window message number
    // no one sends as the index.
    VARIANT args[2];
    VariantInit(&args[0]);
    VariantCopy(&args[0], const_cast<VARIANT *>(value.get()));
    V_VT(&args[1]) = VT_I4, V_I4(&args[1]) = 0x8123;
    Variant got;
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS put{args, &named, indexed ? 2u : 1u, 1};
    HRESULT hr = d->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYPUT, &put, nullptr, nullptr, nullptr);
    VariantClear(&args[0]);
    if (FAILED(hr)) return false;
    DISPPARAMS get{&args[1], nullptr, indexed ? 1u : 0u, 0};
    if (FAILED(d->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYGET, &get, got.put(), nullptr, nullptr))) return false;
    return host::as_string(got) == host::as_string(value);
}

} // namespace

RoundTrip FindRoundTrip(IDispatch *d, const RegisteredClass &cls)
{
    for (const RegisteredMember *p : ReadWriteProperties(cls)) {
        RoundTrip t{p->id, p->name, !p->inputs.empty(), {}, {}};
        switch (p->result) {
        case VT_BSTR: t.a = host::Str(L"Round one"), t.b = host::Str(L"Round two"); break;
        case VT_BOOL: t.a = host::Bool(true), t.b = host::Bool(false); break;
        case VT_I2: t.a = host::I2(1), t.b = host::I2(2); break;
        case VT_I4: case VT_UI4: case VT_INT: case VT_UINT: t.a = host::I4(1), t.b = host::I4(2); break;
        case VT_I8: { // a handle-sized number (1 and 2 are no window's handle)
            VARIANT *a = t.a.put(), *b = t.b.put();
            V_VT(a) = V_VT(b) = VT_I8;
            V_I8(a) = 1, V_I8(b) = 2;
            break;
        }
        default: continue;
        }
        if (RoundTrips(d, t)) return t;
    }
    return {};
}

bool RoundTrips(IDispatch *d, const RoundTrip &trip)
{
    return trip.id != DISPID_UNKNOWN && put_get(d, trip.id, trip.indexed, trip.a) &&
           put_get(d, trip.id, trip.indexed, trip.b);
}

bool StillUsable(IDispatch *d, const RegisteredClass &cls, const RoundTrip &trip)
{
    if (!ReadWriteProperties(cls).empty()) return RoundTrips(d, trip);
    UINT infos = 0;
    if (FAILED(d->GetTypeInfoCount(&infos)) || infos != 1) return false;
    for (const RegisteredMember &m : cls.members) {
        if (m.kind != INVOKE_PROPERTYGET || !m.inputs.empty()) continue;
        Variant got;
        DISPPARAMS none{};
        if (FAILED(d->Invoke(m.id, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, got.put(), nullptr, nullptr))) return false;
    }
    return true;
}

} // namespace tarn::test
