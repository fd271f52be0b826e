// The type library as hosts read it, walked whole: both builds' libraries (the 32- and 64-bit
// ones, when the other build is there), every class, interface, member, parameter and
// enumeration, with rules rather than lists, so that a control added later is checked the day
// it lands. VB6, VBA and .NET's import bind early through these types: a colour must be
// stdole's OLE_COLOR, a handle stdole's OLE_HANDLE the same in both builds, a property with a
// fixed value set an enumeration, and everything a host shows must carry a helpstring.
#include <gtest/gtest.h>

#include <windows.h>
#include <ocidl.h>
#include <olectl.h>

#include <algorithm>
#include <cwctype>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "runtime/com.h"
#include "support/control_test.h"
#include "tarnctls_h.h"

using namespace tarn;

namespace {

std::wstring lower(std::wstring s)
{
    std::transform(s.begin(), s.end(), s.begin(), [](wchar_t c) { return static_cast<wchar_t>(std::towlower(c)); });
    return s;
}

std::wstring exe_dir()
{
    wchar_t exe[MAX_PATH];
    GetModuleFileNameW(nullptr, exe, MAX_PATH);
    std::wstring p = exe;
    return p.substr(0, p.find_last_of(L'\\'));
}

// The library built for `arch`, beside this build's folder (build\x64\bin -> build\x86\...).
std::wstring library_of(const wchar_t *arch) { return exe_dir() + L"\\..\\..\\" + arch + L"\\generated\\tarnctls.tlb"; }
const wchar_t *const kThisArch = sizeof(void *) == 8 ? L"x64" : L"x86";
const wchar_t *const kOtherArch = sizeof(void *) == 8 ? L"x86" : L"x64";

// A type as text, following pointers and naming user-defined types with their library:
// "stdole.OLE_COLOR*", "TarnControls.Alignments", "vt3".
std::wstring type_text(ITypeInfo *info, const TYPEDESC &t)
{
    if (t.vt == VT_PTR && t.lptdesc) return type_text(info, *t.lptdesc) + L"*";
    if (t.vt != VT_USERDEFINED) return L"vt" + std::to_wstring(t.vt);
    ComPtr<ITypeInfo> ref;
    ComPtr<ITypeLib> lib;
    UINT index = 0;
    Bstr name, lib_name;
    if (FAILED(info->GetRefTypeInfo(t.hreftype, ref.put())) || FAILED(ref->GetContainingTypeLib(lib.put(), &index)))
        return L"<unresolved>";
    ref->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
    lib->GetDocumentation(-1, lib_name.put(), nullptr, nullptr, nullptr);
    return lib_name.str() + L"." + name.str();
}

// Whether a type, anywhere down its pointers, is a bare unsigned 32-bit integer.
bool bare_ui4(const TYPEDESC &t) { return t.vt == VT_UI4 || (t.vt == VT_PTR && t.lptdesc && bare_ui4(*t.lptdesc)); }

// One member of an interface as the walk sees it.
struct Member {
    std::wstring type_name; // the interface
    std::wstring name;
    MEMBERID id = 0;
    INVOKEKIND kind = INVOKE_FUNC;
    WORD flags = 0;
    std::wstring help;
    std::wstring result;                                     // "" for none
    std::vector<std::pair<std::wstring, std::wstring>> params; // name, type
    std::vector<bool> ui4;                                   // result, then each parameter
    bool restricted_owner = false;                           // implemented only by a private class
};

struct Library {
    ComPtr<ITypeLib> lib;
    std::vector<Member> members;
    std::map<std::wstring, std::wstring> type_help;          // every type's helpstring
    std::map<std::wstring, std::vector<std::wstring>> enums; // enumeration -> members without help
    std::set<std::wstring> private_classes, public_classes, creatable;
    std::map<std::wstring, std::wstring> default_interface;  // class -> its default interface

    HRESULT load(const std::wstring &path)
    {
        HRESULT hr = LoadTypeLibEx(path.c_str(), REGKIND_NONE, lib.put());
        if (FAILED(hr)) return hr;
        std::set<std::wstring> private_interfaces;
        for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
            ComPtr<ITypeInfo> info;
            lib->GetTypeInfo(i, info.put());
            TYPEATTR *ta = nullptr;
            info->GetTypeAttr(&ta);
            Bstr name, help;
            lib->GetDocumentation(static_cast<INT>(i), name.put(), help.put(), nullptr, nullptr);
            type_help[name.str()] = help.str();
            if (ta->typekind == TKIND_COCLASS) {
                const bool hidden = (ta->wTypeFlags & (TYPEFLAG_FRESTRICTED | TYPEFLAG_FHIDDEN)) != 0;
                (hidden ? private_classes : public_classes).insert(name.str());
                if (ta->wTypeFlags & TYPEFLAG_FCANCREATE) creatable.insert(name.str());
                for (UINT k = 0; k < ta->cImplTypes; ++k) {
                    HREFTYPE ref = 0;
                    ComPtr<ITypeInfo> impl;
                    Bstr impl_name;
                    INT flags = 0;
                    info->GetRefTypeOfImplType(k, &ref);
                    info->GetImplTypeFlags(k, &flags);
                    info->GetRefTypeInfo(ref, impl.put());
                    impl->GetDocumentation(MEMBERID_NIL, impl_name.put(), nullptr, nullptr, nullptr);
                    if (hidden) private_interfaces.insert(impl_name.str());
                    if ((flags & IMPLTYPEFLAG_FDEFAULT) && !(flags & IMPLTYPEFLAG_FSOURCE))
                        default_interface[name.str()] = impl_name.str();
                }
            }
            if (ta->typekind == TKIND_ENUM) {
                auto &missing = enums[name.str()];
                for (WORD k = 0; k < ta->cVars; ++k) {
                    VARDESC *vd = nullptr;
                    info->GetVarDesc(k, &vd);
                    Bstr var, var_help;
                    info->GetDocumentation(vd->memid, var.put(), var_help.put(), nullptr, nullptr);
                    if (var_help.str().empty()) missing.push_back(var.str());
                    info->ReleaseVarDesc(vd);
                }
            }
            if (ta->typekind == TKIND_DISPATCH) add_members(info.get(), ta, name.str());
            info->ReleaseTypeAttr(ta);
        }
        for (Member &m : members) m.restricted_owner = private_interfaces.count(m.type_name) != 0;
        return S_OK;
    }

    void add_members(ITypeInfo *info, TYPEATTR *ta, const std::wstring &type_name)
    {
        for (WORD f = 0; f < ta->cFuncs; ++f) {
            FUNCDESC *fd = nullptr;
            info->GetFuncDesc(f, &fd);
            if (fd->wFuncFlags & FUNCFLAG_FRESTRICTED) { // IUnknown's and IDispatch's own
                info->ReleaseFuncDesc(fd);
                continue;
            }
            Member m;
            m.type_name = type_name;
            m.id = fd->memid;
            m.kind = fd->invkind;
            m.flags = fd->wFuncFlags;
            std::vector<BSTR> names(fd->cParams + 1u, nullptr);
            UINT got = 0;
            info->GetNames(fd->memid, names.data(), static_cast<UINT>(names.size()), &got);
            Bstr help;
            info->GetDocumentation(fd->memid, nullptr, help.put(), nullptr, nullptr);
            m.help = help.str();
            m.name = got ? from_bstr(names[0]) : L"";
            if (fd->elemdescFunc.tdesc.vt != VT_VOID && fd->elemdescFunc.tdesc.vt != VT_HRESULT)
                m.result = type_text(info, fd->elemdescFunc.tdesc);
            m.ui4.push_back(bare_ui4(fd->elemdescFunc.tdesc));
            for (SHORT p = 0; p < fd->cParams; ++p) {
                // A property put's value has no name of its own.
                std::wstring pname = static_cast<UINT>(p + 1) < got ? from_bstr(names[p + 1]) : m.name;
                m.params.emplace_back(pname, type_text(info, fd->lprgelemdescParam[p].tdesc));
                m.ui4.push_back(bare_ui4(fd->lprgelemdescParam[p].tdesc));
            }
            for (BSTR b : names) SysFreeString(b);
            members.push_back(std::move(m));
            info->ReleaseFuncDesc(fd);
        }
    }

    // Every value a member carries: its result and its parameters, with a name each.
    template <class F> void each_value(F &&f) const
    {
        for (const Member &m : members) {
            if (!m.result.empty()) f(m, m.name, m.result);
            for (const auto &[pname, ptype] : m.params) f(m, pname, ptype);
        }
    }
};

std::wstring where(const Member &m, const std::wstring &value = L"")
{
    return m.type_name + L"." + m.name + (value.empty() || value == m.name ? L"" : L" (" + value + L")");
}

// Both builds' libraries: this build's always, the other's when it has been built.
class TypeLibrary : public ::testing::TestWithParam<const wchar_t *> {
protected:
    void SetUp() override
    {
        const std::wstring path = library_of(GetParam());
        if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
            ASSERT_NE(std::wstring(kThisArch), GetParam()) << "this build's library is missing";
            GTEST_SKIP() << "the " << test::narrow(GetParam()) << " build is not there to compare with";
        }
        ASSERT_EQ(S_OK, lib.load(path));
        ASSERT_FALSE(lib.members.empty());
    }
    Library lib;
};

TEST_P(TypeLibrary, ColoursAndHandlesAreStdolesTypesAndNothingIsABareUnsignedInteger)
{
    int colours = 0, handles = 0;
    for (const Member &m : lib.members)
        for (size_t k = 0; k < m.ui4.size(); ++k) EXPECT_FALSE(m.ui4[k]) << test::narrow(where(m)) << " value " << k;
    lib.each_value([&](const Member &m, const std::wstring &name, const std::wstring &type) {
        // A value named as a colour is one (optional arguments stay VARIANTs); an OLE_COLOR
        // is always stdole's; so is a window handle's OLE_HANDLE.
        const std::wstring n = lower(name);
        auto ends = [&](const std::wstring &tail) {
            return n.size() >= tail.size() && n.compare(n.size() - tail.size(), tail.size(), tail) == 0;
        };
        const bool colour_name = ends(L"color") || ends(L"colour") || ends(L"colr") || n == L"newcol";
        if (colour_name && type != L"vt12") {
            EXPECT_EQ(0u, type.find(L"stdole.OLE_COLOR")) << test::narrow(where(m, name)) << ": " << test::narrow(type);
        }
        if (type.find(L"OLE_COLOR") != std::wstring::npos) {
            ++colours;
            EXPECT_EQ(0u, type.find(L"stdole.")) << test::narrow(where(m, name));
        }
        if (n == L"hwnd") {
            ++handles;
            EXPECT_EQ(L"stdole.OLE_HANDLE", type.substr(0, type.find(L'*'))) << test::narrow(where(m, name));
        }
    });
    EXPECT_LT(40, colours);
    EXPECT_LE(4, handles);
}

TEST_P(TypeLibrary, EverythingAHostShowsHasAHelpstring)
{
    for (const auto &[name, help] : lib.type_help) EXPECT_FALSE(help.empty()) << test::narrow(name);
    for (const auto &[name, missing] : lib.enums)
        for (const std::wstring &value : missing) ADD_FAILURE() << test::narrow(name + L"." + value) << " has no helpstring";
    for (const Member &m : lib.members) EXPECT_FALSE(m.help.empty()) << test::narrow(where(m));
}

TEST_P(TypeLibrary, PropertiesWithAFixedValueSetAreEnumerations)
{
    int seen = 0;
    for (const Member &m : lib.members) {
        if (m.kind != INVOKE_PROPERTYGET) continue;
        const std::wstring n = lower(m.name);
        const bool value_set = n.size() >= 9 && n.compare(n.size() - 9, 9, L"alignment") == 0;
        if (!value_set && n != L"borderstyle" && n != L"mousepointer" && n != L"buttontype") continue;
        ++seen;
        EXPECT_TRUE(m.result.rfind(L"TarnControls.", 0) == 0 && lib.enums.count(m.result.substr(13)))
            << test::narrow(where(m)) << ": " << test::narrow(m.result);
    }
    EXPECT_LE(6, seen);
}

TEST_P(TypeLibrary, InternalEntryPointsAreHiddenAndPrivateClassesRestricted)
{
    // Entry points named after a constituent's or a form's event (cboCONTROL_KeyDown,
    // CFm_MousePosnONOUT) or the hover tracking's own (MousePosn..., UserControl...) are the
    // library's plumbing: callable, never shown.
    int internal = 0;
    for (const Member &m : lib.members) {
        if (m.kind != INVOKE_FUNC || m.name.empty() || m.name[0] == L'_') continue;
        const bool plumbing = m.name.find(L'_') != std::wstring::npos || m.name.rfind(L"MousePosn", 0) == 0 ||
                              m.name.rfind(L"UserControl", 0) == 0;
        if (!plumbing || lib.private_classes.count(m.type_name)) continue;
        ++internal;
        EXPECT_TRUE(m.flags & FUNCFLAG_FHIDDEN) << test::narrow(where(m)) << " is shown";
    }
    EXPECT_LE(4, internal);
    for (const std::wstring &c : lib.private_classes) {
        ComPtr<ITypeInfo> info;
        MEMBERID id = 0;
        USHORT found = 1;
        std::wstring name = c;
        ASSERT_EQ(S_OK, lib.lib->FindName(name.data(), 0, info.put(), &id, &found));
        TYPEATTR *ta = nullptr;
        info->GetTypeAttr(&ta);
        EXPECT_EQ(TYPEFLAG_FRESTRICTED | TYPEFLAG_FHIDDEN, ta->wTypeFlags & (TYPEFLAG_FRESTRICTED | TYPEFLAG_FHIDDEN))
            << test::narrow(c);
        EXPECT_TRUE(ta->wTypeFlags & TYPEFLAG_FCANCREATE) << test::narrow(c) << " must stay creatable";
        info->ReleaseTypeAttr(ta);
    }
}

TEST_P(TypeLibrary, ACaptionTextOrValueIsTheDefaultMemberUnderItsOwnDispidToo)
{
    std::map<std::wstring, std::map<std::wstring, const Member *>> gets; // interface -> name -> get
    for (const Member &m : lib.members)
        if (m.kind == INVOKE_PROPERTYGET) gets[m.type_name][lower(m.name)] = &m;
    for (const auto &[cls, iface] : lib.default_interface) {
        auto &props = gets[iface];
        for (const wchar_t *natural : {L"caption", L"text", L"value"}) {
            if (!props.count(natural) || props[natural]->id == DISPID_VALUE) continue;
            const Member *alias = nullptr;
            for (const auto &[n, m] : props)
                if (m->id == DISPID_VALUE) alias = m;
            ASSERT_TRUE(alias) << test::narrow(cls) << " has a " << test::narrow(natural) << " but no default member";
            EXPECT_EQ(props[natural]->result, alias->result) << test::narrow(cls);
            EXPECT_TRUE(alias->flags & FUNCFLAG_FHIDDEN) << test::narrow(cls);
            EXPECT_TRUE(props[natural]->flags & FUNCFLAG_FDISPLAYBIND) << test::narrow(cls);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Builds, TypeLibrary, ::testing::Values(L"x64", L"x86"),
                         [](const auto &info) { return test::narrow(info.param); });

// The two builds publish one library: every member of every public class has the same
// signature in both (the window hook service, private, keeps pointer-sized message data).
TEST(TypeLibraries, BothBuildsPublishTheSameSignatures)
{
    Library mine, other;
    ASSERT_EQ(S_OK, mine.load(library_of(kThisArch)));
    if (GetFileAttributesW(library_of(kOtherArch).c_str()) == INVALID_FILE_ATTRIBUTES)
        GTEST_SKIP() << "the " << test::narrow(kOtherArch) << " build is not there to compare with";
    ASSERT_EQ(S_OK, other.load(library_of(kOtherArch)));
    auto signatures = [](const Library &l) {
        std::map<std::wstring, std::wstring> out;
        for (const Member &m : l.members) {
            if (m.restricted_owner) continue;
            std::wstring s = m.result;
            for (const auto &[n, t] : m.params) s += L"," + n + L":" + t;
            out[m.type_name + L"." + m.name + L"#" + std::to_wstring(m.kind)] = s;
        }
        return out;
    };
    EXPECT_EQ(signatures(mine), signatures(other));
}

// What VB6 and VBA do when they bind early: find the property's vtable slot through the type
// info and call it with a colour as a Long.
TEST(TypeLibraries, EarlyBindingCallsAColourPropertyThroughTheVtable)
{
    ComPtr<ITypeLib> lib;
    ASSERT_EQ(S_OK, LoadTypeLibEx(library_of(kThisArch).c_str(), REGKIND_NONE, lib.put()));
    ComPtr<ITypeInfo> dispatch, vtable;
    ASSERT_EQ(S_OK, lib->GetTypeInfoOfGuid(IID_Icframe, dispatch.put()));
    HREFTYPE ref = 0;
    ASSERT_EQ(S_OK, dispatch->GetRefTypeOfImplType(-1, &ref)); // the dual interface's vtable side
    ASSERT_EQ(S_OK, dispatch->GetRefTypeInfo(ref, vtable.put()));

    MEMBERID id = 0;
    LPOLESTR name = const_cast<LPOLESTR>(L"BACKCOLOR");
    ASSERT_EQ(S_OK, vtable->GetIDsOfNames(&name, 1, &id));
    TYPEATTR *ta = nullptr;
    vtable->GetTypeAttr(&ta);
    const FUNCDESC *put = nullptr;
    for (WORD f = 0; f < ta->cFuncs && !put; ++f) {
        FUNCDESC *fd = nullptr;
        vtable->GetFuncDesc(f, &fd);
        if (fd->memid == id && fd->invkind == INVOKE_PROPERTYPUT) put = fd;
        else vtable->ReleaseFuncDesc(fd);
    }
    vtable->ReleaseTypeAttr(ta);
    ASSERT_TRUE(put);
    ASSERT_EQ(1, put->cParams);
    ASSERT_EQ(VT_USERDEFINED, put->lprgelemdescParam[0].tdesc.vt);

    // A system colour, negative as a Long: the slot takes the same 32 bits.
    ComPtr<Icframe> frame;
    ASSERT_EQ(S_OK, CoCreateInstance(CLSID_cframe, nullptr, CLSCTX_INPROC_SERVER, IID_Icframe, frame.put_void()));
    VARIANT arg;
    V_VT(&arg) = VT_I4;
    V_I4(&arg) = static_cast<LONG>(0x8000000F);
    VARIANTARG *args[] = {&arg};
    VARTYPE types[] = {VT_I4};
    VARIANT result;
    VariantInit(&result);
    EXPECT_EQ(S_OK, DispCallFunc(frame.get(), put->oVft, CC_STDCALL, VT_ERROR, 1, types, args, &result));
    EXPECT_EQ(S_OK, V_ERROR(&result));
    OLE_COLOR back = 0;
    EXPECT_EQ(S_OK, frame->get_BACKCOLOR(&back));
    EXPECT_EQ(0x8000000Fu, back);
    vtable->ReleaseFuncDesc(const_cast<FUNCDESC *>(put));
}

} // namespace
