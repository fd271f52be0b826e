// tlbdoc: writes the reference of the controls (docs/) from the built DLL, run under Wine at
// build time, so that it cannot drift from what hosts see.
//
//   tlbdoc tarnctls.dll outdir
//
// Members, types, helpstrings and events come from the DLL's type library. The keys a control
// keeps in a saved form are not in the type library; they come from the controls themselves:
// each one is created from the DLL, saved into a property bag that records every key written,
// and loaded from one that records every key read (and finds none, so every default is taken).
// Private classes (restricted) and hidden members are left out: hosts do not show them.
#include <windows.h>
#include <ocidl.h>
#include <oleauto.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::string narrow(const wchar_t *w, int len = -1)
{
    if (!w) return {};
    int n = WideCharToMultiByte(CP_UTF8, 0, w, len, nullptr, 0, nullptr, nullptr);
    std::string s(static_cast<size_t>(n), '\0');
    WideCharToMultiByte(CP_UTF8, 0, w, len, s.data(), n, nullptr, nullptr);
    if (len < 0 && !s.empty()) s.pop_back();
    return s;
}

// Takes a BSTR out-parameter and frees it.
struct Text {
    BSTR b = nullptr;
    ~Text() { SysFreeString(b); }
    BSTR *put() { return &b; }
    std::string str() const { return narrow(b); }
};

std::string guid_text(const GUID &g)
{
    wchar_t buf[64];
    StringFromGUID2(g, buf, 64);
    return narrow(buf);
}

// Markdown table cells: no bars, no line breaks.
std::string cell(std::string s)
{
    std::string r;
    for (char c : s) r += c == '|' ? std::string("\\|") : c == '\n' ? std::string(" ") : std::string(1, c);
    return r;
}

std::string lower(std::string s)
{
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

// ------------------------------------------------------------------ types, as VB spells them

std::string type_name(ITypeInfo *info, const TYPEDESC &t, bool link = true)
{
    switch (t.vt) {
    case VT_PTR: return type_name(info, *t.lptdesc, link);
    case VT_I2: return "Integer";
    case VT_I4: case VT_INT: return "Long";
    case VT_I8: return "LongLong";
    case VT_R4: return "Single";
    case VT_R8: return "Double";
    case VT_BSTR: return "String";
    case VT_BOOL: return "Boolean";
    case VT_VARIANT: return "Variant";
    case VT_UI1: return "Byte";
    case VT_DISPATCH: return "Object";
    case VT_UNKNOWN: return "IUnknown";
    case VT_USERDEFINED: {
        ITypeInfo *ref = nullptr;
        if (FAILED(info->GetRefTypeInfo(t.hreftype, &ref))) return "?";
        Text name;
        ref->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
        TYPEATTR *ta = nullptr;
        ref->GetTypeAttr(&ta);
        const bool is_enum = ta->typekind == TKIND_ENUM;
        ref->ReleaseTypeAttr(ta);
        ref->Release();
        std::string n = name.str();
        return is_enum && link ? "[" + n + "](enumerations.md#" + lower(n) + ")" : n;
    }
    default: return "vt" + std::to_string(t.vt);
    }
}

// ------------------------------------------------------------------ the keys a control keeps

// A property bag that finds nothing and remembers every key asked for or written.
class RecordingBag final : public IPropertyBag {
public:
    std::vector<std::pair<std::string, VARTYPE>> written;
    std::vector<std::string> read;

    STDMETHODIMP QueryInterface(REFIID iid, void **out) override
    {
        if (iid == IID_IUnknown || iid == IID_IPropertyBag) {
            *out = this;
            return S_OK;
        }
        *out = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP Read(LPCOLESTR name, VARIANT *, IErrorLog *) override
    {
        read.push_back(narrow(name));
        return E_INVALIDARG;
    }
    STDMETHODIMP Write(LPCOLESTR name, VARIANT *value) override
    {
        written.emplace_back(narrow(name), value ? V_VT(value) : VARTYPE(VT_EMPTY));
        return S_OK;
    }
};

std::string vt_word(VARTYPE vt)
{
    switch (vt) {
    case VT_I2: return "Integer";
    case VT_I4: return "Long";
    case VT_R4: return "Single";
    case VT_R8: return "Double";
    case VT_BSTR: return "String";
    case VT_BOOL: return "Boolean";
    case VT_UNKNOWN: case VT_DISPATCH: return "object";
    case VT_EMPTY: return "empty (no picture)";
    default: return "vt" + std::to_string(vt);
    }
}

// A control writes a key only when its value differs from the default: every property a
// host can write is given another value first (a string longer, a number's lowest bit
// flipped, a Boolean negated), through IDispatch as a host would.
void change_every_property(IUnknown *control)
{
    IDispatch *disp = nullptr;
    ITypeInfo *info = nullptr;
    if (FAILED(control->QueryInterface(IID_IDispatch, reinterpret_cast<void **>(&disp)))) return;
    if (SUCCEEDED(disp->GetTypeInfo(0, 0, &info))) {
        TYPEATTR *ta = nullptr;
        info->GetTypeAttr(&ta);
        for (WORD f = 0; f < ta->cFuncs; ++f) {
            FUNCDESC *fd = nullptr;
            info->GetFuncDesc(f, &fd);
            const MEMBERID id = fd->memid;
            const bool settable = fd->invkind == INVOKE_PROPERTYPUT && fd->cParams == 1 &&
                                  !(fd->wFuncFlags & (FUNCFLAG_FHIDDEN | FUNCFLAG_FRESTRICTED));
            info->ReleaseFuncDesc(fd);
            if (!settable) continue;
            VARIANT v;
            VariantInit(&v);
            DISPPARAMS none{};
            if (FAILED(disp->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, &v, nullptr, nullptr))) continue;
            switch (V_VT(&v)) {
            case VT_BSTR: {
                std::wstring longer = std::wstring(V_BSTR(&v), SysStringLen(V_BSTR(&v))) + L"x";
                SysFreeString(V_BSTR(&v));
                V_BSTR(&v) = SysAllocString(longer.c_str());
                break;
            }
            case VT_I2: V_I2(&v) ^= 1; break;
            case VT_I4: case VT_UI4: case VT_INT: V_I4(&v) ^= 1; break;
            case VT_BOOL: V_BOOL(&v) = V_BOOL(&v) ? VARIANT_FALSE : VARIANT_TRUE; break;
            case VT_R4: V_R4(&v) += 1; break;
            case VT_R8: V_R8(&v) += 1; break;
            case VT_DISPATCH: { // a font: a copy in bold (or not)
                IFont *font = nullptr, *copy = nullptr;
                BOOL bold = FALSE;
                if (V_DISPATCH(&v) && SUCCEEDED(V_DISPATCH(&v)->QueryInterface(IID_IFont, reinterpret_cast<void **>(&font)))) {
                    font->get_Bold(&bold);
                    if (SUCCEEDED(font->Clone(&copy))) {
                        copy->put_Bold(!bold);
                        VariantClear(&v);
                        copy->QueryInterface(IID_IDispatch, reinterpret_cast<void **>(&V_DISPATCH(&v)));
                        V_VT(&v) = VT_DISPATCH;
                        copy->Release();
                    }
                    font->Release();
                }
                break;
            }
            default: VariantClear(&v); continue;
            }
            DISPID named = DISPID_PROPERTYPUT;
            DISPPARAMS put{&v, &named, 1, 1};
            disp->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYPUT, &put, nullptr, nullptr, nullptr);
            VariantClear(&v);
        }
        info->ReleaseTypeAttr(ta);
        info->Release();
    }
    disp->Release();
}

struct Keys {
    bool ok = false;
    std::vector<std::pair<std::string, VARTYPE>> written;
    std::vector<std::string> read;
};

Keys keys_of(HMODULE dll, const CLSID &clsid)
{
    Keys k;
    using GetClassObject = HRESULT(WINAPI *)(REFCLSID, REFIID, void **);
    auto get = reinterpret_cast<GetClassObject>(GetProcAddress(dll, "DllGetClassObject"));
    IClassFactory *factory = nullptr;
    if (!get || FAILED(get(clsid, IID_IClassFactory, reinterpret_cast<void **>(&factory)))) return k;
    // One new control saved, another loaded: a control is loaded once, before anything else.
    IPersistPropertyBag *saving = nullptr, *loading = nullptr;
    factory->CreateInstance(nullptr, IID_IPersistPropertyBag, reinterpret_cast<void **>(&saving));
    factory->CreateInstance(nullptr, IID_IPersistPropertyBag, reinterpret_cast<void **>(&loading));
    factory->Release();
    RecordingBag saved, loaded;
    if (saving && SUCCEEDED(saving->InitNew())) change_every_property(saving);
    if (saving && loading && SUCCEEDED(saving->Save(&saved, TRUE, TRUE)) &&
        SUCCEEDED(loading->Load(&loaded, nullptr))) {
        k.ok = true;
        k.written = saved.written;
        k.read = loaded.read;
    }
    if (saving) saving->Release();
    if (loading) loading->Release();
    return k;
}

// ------------------------------------------------------------------ one control's page

struct Property {
    std::string name, type, help;
    bool get = false, put = false;
};

struct Function {
    std::string name, params, result, help;
};

std::string params_of(ITypeInfo *info, FUNCDESC *fd, bool skip_last)
{
    std::vector<BSTR> names(fd->cParams + 1u, nullptr);
    UINT got = 0;
    info->GetNames(fd->memid, names.data(), static_cast<UINT>(names.size()), &got);
    std::string out;
    const int count = fd->cParams - (skip_last ? 1 : 0);
    for (int p = 0; p < count; ++p) {
        const ELEMDESC &e = fd->lprgelemdescParam[p];
        const USHORT flags = e.paramdesc.wParamFlags;
        const bool byref = e.tdesc.vt == VT_PTR && e.tdesc.lptdesc->vt != VT_USERDEFINED;
        const bool byref_alias = e.tdesc.vt == VT_PTR && e.tdesc.lptdesc->vt == VT_USERDEFINED &&
                                 (flags & PARAMFLAG_FOUT);
        if (!out.empty()) out += ", ";
        if (flags & PARAMFLAG_FOPT) out += "[Optional] ";
        out += (byref || byref_alias) && (flags & PARAMFLAG_FOUT) ? "ByRef " : "";
        out += (static_cast<UINT>(p + 1) < got ? narrow(names[p + 1]) : std::string("value")) + " As " +
               type_name(info, e.tdesc);
    }
    for (BSTR b : names) SysFreeString(b);
    return out;
}

void write_page(const std::string &dir, ITypeLib *lib, ITypeInfo *cls, TYPEATTR *ca, HMODULE dll)
{
    Text name, help;
    cls->GetDocumentation(MEMBERID_NIL, name.put(), help.put(), nullptr, nullptr);
    std::map<MEMBERID, Property> props;
    std::vector<MEMBERID> prop_order;
    std::vector<Function> methods, events;
    std::string iface_help, events_help;

    for (UINT k = 0; k < ca->cImplTypes; ++k) {
        HREFTYPE ref = 0;
        INT flags = 0;
        ITypeInfo *impl = nullptr;
        cls->GetRefTypeOfImplType(k, &ref);
        cls->GetImplTypeFlags(k, &flags);
        if (!(flags & IMPLTYPEFLAG_FDEFAULT) || FAILED(cls->GetRefTypeInfo(ref, &impl))) continue;
        const bool source = (flags & IMPLTYPEFLAG_FSOURCE) != 0;
        Text ih;
        impl->GetDocumentation(MEMBERID_NIL, nullptr, ih.put(), nullptr, nullptr);
        (source ? events_help : iface_help) = ih.str();
        TYPEATTR *ta = nullptr;
        impl->GetTypeAttr(&ta);
        for (WORD f = 0; f < ta->cFuncs; ++f) {
            FUNCDESC *fd = nullptr;
            impl->GetFuncDesc(f, &fd);
            if (fd->wFuncFlags & (FUNCFLAG_FRESTRICTED | FUNCFLAG_FHIDDEN)) {
                impl->ReleaseFuncDesc(fd);
                continue;
            }
            Text mn, mh;
            impl->GetDocumentation(fd->memid, mn.put(), mh.put(), nullptr, nullptr);
            if (source) {
                events.push_back({mn.str(), params_of(impl, fd, false), "", mh.str()});
            } else if (fd->invkind == INVOKE_FUNC) {
                std::string result = fd->elemdescFunc.tdesc.vt == VT_VOID || fd->elemdescFunc.tdesc.vt == VT_HRESULT
                                         ? std::string()
                                         : type_name(impl, fd->elemdescFunc.tdesc);
                methods.push_back({mn.str(), params_of(impl, fd, false), result, mh.str()});
            } else {
                if (!props.count(fd->memid)) prop_order.push_back(fd->memid);
                Property &p = props[fd->memid];
                p.name = mn.str();
                if (!mh.str().empty()) p.help = mh.str();
                if (fd->invkind == INVOKE_PROPERTYGET) {
                    p.get = true;
                    p.type = type_name(impl, fd->elemdescFunc.tdesc);
                } else {
                    p.put = true;
                    if (p.type.empty() && fd->cParams)
                        p.type = type_name(impl, fd->lprgelemdescParam[fd->cParams - 1].tdesc);
                }
            }
            impl->ReleaseFuncDesc(fd);
        }
        impl->ReleaseTypeAttr(ta);
        impl->Release();
    }

    std::ostringstream md;
    const std::string n = name.str();
    md << "# " << n << "\n\n"
       << help.str() << ". " << iface_help << ". ProgID `TarnControls." << n << "`, CLSID `" << guid_text(ca->guid)
       << "`.\n\n"
       << "Generated from the type library and the control itself by `tools/tlbdoc`; do not edit.\n";

    std::sort(prop_order.begin(), prop_order.end(),
              [&](MEMBERID a, MEMBERID b) { return lower(props[a].name) < lower(props[b].name); });
    if (!prop_order.empty()) {
        md << "\n## Properties\n\n| property | type | access | description |\n|---|---|---|---|\n";
        for (MEMBERID id : prop_order) {
            const Property &p = props[id];
            md << "| `" << p.name << "` | " << p.type << " | "
               << (p.get && p.put ? "read/write" : p.get ? "read-only" : "write-only") << " | " << cell(p.help)
               << " |\n";
        }
    }
    auto by_name = [](const Function &a, const Function &b) { return lower(a.name) < lower(b.name); };
    std::sort(methods.begin(), methods.end(), by_name);
    if (!methods.empty()) {
        md << "\n## Methods\n\n| method | parameters | returns | description |\n|---|---|---|---|\n";
        for (const Function &m : methods)
            md << "| `" << m.name << "` | " << cell(m.params) << " | " << m.result << " | " << cell(m.help) << " |\n";
    }
    if (!events.empty()) {
        md << "\n## Events\n\n" << events_help << ", in the order of their DISPIDs.\n\n"
           << "| event | parameters | description |\n|---|---|---|\n";
        for (const Function &e : events) md << "| `" << e.name << "` | " << cell(e.params) << " | " << cell(e.help) << " |\n";
    }

    md << "\n## Saved with the form\n\n";
    const Keys keys = keys_of(dll, ca->guid);
    if (!keys.ok || (keys.written.empty() && keys.read.empty())) {
        md << "The control keeps nothing in a saved form.\n";
    } else {
        md << "The keys of the form's property store, exactly as the control writes them when the form is saved "
              "(a value equal to its default is not written) and asks for them when it is loaded; a key the "
              "control asks for under another name than it writes is so on purpose. Found by saving a new "
              "control whose every property was given another value, and loading another.\n\n"
              "| key | written as | read when loaded |\n|---|---|---|\n";
        std::set<std::string> shown;
        for (const auto &[key, vt] : keys.written) {
            if (!shown.insert(key).second) continue;
            bool is_read = std::find(keys.read.begin(), keys.read.end(), key) != keys.read.end();
            md << "| `" << key << "` | " << vt_word(vt) << " | " << (is_read ? "yes" : "no") << " |\n";
        }
        for (const std::string &key : keys.read)
            if (shown.insert(key).second) md << "| `" << key << "` | (not written then) | yes |\n";
    }

    std::ofstream(dir + "\\" + n + ".md", std::ios::binary) << md.str();
    (void)lib;
}

// ------------------------------------------------------------------ enumerations and the index

void write_enumerations(const std::string &dir, ITypeLib *lib)
{
    std::ostringstream md;
    md << "# Enumerations\n\n"
       << "The value sets of the controls' properties, as property sheets offer them (\"0 - Left Justify\"). "
          "A property with an enumeration still takes the values it always took.\n\n"
       << "Generated from the type library by `tools/tlbdoc`; do not edit.\n";
    for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
        ITypeInfo *info = nullptr;
        lib->GetTypeInfo(i, &info);
        TYPEATTR *ta = nullptr;
        info->GetTypeAttr(&ta);
        if (ta->typekind == TKIND_ENUM) {
            Text name, help;
            lib->GetDocumentation(static_cast<INT>(i), name.put(), help.put(), nullptr, nullptr);
            md << "\n## " << name.str() << "\n\n" << help.str() << ".\n\n| value | name | description |\n|---|---|---|\n";
            for (WORD k = 0; k < ta->cVars; ++k) {
                VARDESC *vd = nullptr;
                info->GetVarDesc(k, &vd);
                Text vn, vh;
                info->GetDocumentation(vd->memid, vn.put(), vh.put(), nullptr, nullptr);
                VARIANT v;
                VariantInit(&v);
                VariantChangeType(&v, vd->lpvarValue, 0, VT_I4);
                md << "| " << V_I4(&v) << " | " << vn.str() << " | " << cell(vh.str()) << " |\n";
                info->ReleaseVarDesc(vd);
            }
        }
        info->ReleaseTypeAttr(ta);
        info->Release();
    }
    std::ofstream(dir + "\\enumerations.md", std::ios::binary) << md.str();
}

int run(const wchar_t *dll_path, const std::string &dir)
{
    ITypeLib *lib = nullptr;
    if (FAILED(LoadTypeLibEx(dll_path, REGKIND_NONE, &lib))) {
        std::fprintf(stderr, "tlbdoc: cannot load the type library\n");
        return 1;
    }
    HMODULE dll = LoadLibraryW(dll_path);
    if (!dll) {
        std::fprintf(stderr, "tlbdoc: cannot load the DLL\n");
        return 1;
    }
    CreateDirectoryW(std::wstring(dir.begin(), dir.end()).c_str(), nullptr);
    std::ostringstream index;
    index << "# Tarn Controls reference\n\n"
          << "One page per control: its properties, methods and events with their types and descriptions, and "
             "the keys it keeps in a saved form. Generated from the type library and the controls by "
             "`tools/tlbdoc` when the library is built; do not edit.\n\n| control | ProgID | what it is |\n|---|---|---|\n";
    for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
        ITypeInfo *info = nullptr;
        lib->GetTypeInfo(i, &info);
        TYPEATTR *ta = nullptr;
        info->GetTypeAttr(&ta);
        if (ta->typekind == TKIND_COCLASS && !(ta->wTypeFlags & (TYPEFLAG_FRESTRICTED | TYPEFLAG_FHIDDEN))) {
            Text name, help;
            lib->GetDocumentation(static_cast<INT>(i), name.put(), help.put(), nullptr, nullptr);
            index << "| [" << name.str() << "](" << name.str() << ".md) | `TarnControls." << name.str() << "` | "
                  << cell(help.str()) << " |\n";
            write_page(dir, lib, info, ta, dll);
        }
        info->ReleaseTypeAttr(ta);
        info->Release();
    }
    index << "\nThe value sets of enumerated properties: [Enumerations](enumerations.md).\n";
    std::ofstream(dir + "\\README.md", std::ios::binary) << index.str();
    write_enumerations(dir, lib);
    lib->Release();
    return 0;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: tlbdoc tarnctls.dll outdir\n");
        return 2;
    }
    OleInitialize(nullptr);
    int rc = run(argv[1], narrow(argv[2]));
    OleUninitialize();
    return rc;
}
