// Self-registration: per machine (HKEY_CLASSES_ROOT) or per user (HKCU\Software\Classes, no
// administrator needed). Each control class gets its CLSID with InprocServer32, both ProgIDs,
// MiscStatus (what its objects answer), TypeLib, Version and Verb; a public one Control,
// ToolboxBitmap32 and DefaultIcon; a safe one the categories safe for scripting and for
// initialising. The property page class gets its CLSID and InprocServer32; the type library is
// registered too. Unregistration removes every key registration wrote.
#include "server/registration.h"

#include "foundation/handles.h"
#include "runtime/com.h"
#include "runtime/module.h"
#include "server/classes.h"
#include "tarnctls_h.h"

#include <string>

namespace tarn {

namespace {

constexpr wchar_t kCatidControl[] = L"{40FC6ED4-2438-11CF-A3DB-080036F12502}";
constexpr wchar_t kCatidSafeForScripting[] = L"{7DD95801-9882-11CF-9FA9-00AA006C42C4}";
constexpr wchar_t kCatidSafeForInitializing[] = L"{7DD95802-9882-11CF-9FA9-00AA006C42C4}";
// Verbs as OleRegEnumVerbs reads them: name, menu flags, OLEVERBATTRIB_ONCONTAINERMENU.
constexpr wchar_t kVerbEdit[] = L"&Edit,0,2";
constexpr wchar_t kVerbProperties[] = L"&Properties...,0,2";
constexpr wchar_t kOleAutomationProxy[] = L"{00020424-0000-0000-C000-000000000046}";
#ifdef _WIN64
constexpr wchar_t kPlatform[] = L"win64";
constexpr wchar_t kOtherPlatform[] = L"win32";
constexpr SYSKIND kSysKind = SYS_WIN64;
constexpr REGSAM kOtherView = KEY_WOW64_32KEY;
#else
constexpr wchar_t kPlatform[] = L"win32";
constexpr wchar_t kOtherPlatform[] = L"win64";
constexpr SYSKIND kSysKind = SYS_WIN32;
constexpr REGSAM kOtherView = KEY_WOW64_64KEY;
#endif

std::wstring guid_text(const GUID &g)
{
    wchar_t buf[64];
    StringFromGUID2(g, buf, 64);
    return buf;
}

std::wstring module_path()
{
    wchar_t path[MAX_PATH];
    DWORD n = GetModuleFileNameW(module::instance(), path, MAX_PATH);
    return n && n < MAX_PATH ? std::wstring(path, n) : std::wstring();
}

class Writer {
public:
    explicit Writer(HKEY root) : root_(root) {}
    // Creates `key` and sets one value (the default value when `name` is null).
    void set(const std::wstring &key, const wchar_t *name, const std::wstring *value)
    {
        HKEY raw = nullptr;
        LONG rc = RegCreateKeyExW(root_, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &raw, nullptr);
        if (rc != ERROR_SUCCESS) {
            failed_ = true;
            return;
        }
        unique_hkey k(raw);
        if (value &&
            RegSetValueExW(k.get(), name, 0, REG_SZ, reinterpret_cast<const BYTE *>(value->c_str()),
                           static_cast<DWORD>((value->size() + 1) * sizeof(wchar_t))) != ERROR_SUCCESS)
            failed_ = true;
    }
    void value(const std::wstring &key, const std::wstring &v) { set(key, nullptr, &v); }
    void named(const std::wstring &key, const wchar_t *name, const std::wstring &v) { set(key, name, &v); }
    void key(const std::wstring &key) { set(key, nullptr, nullptr); }
    bool failed() const { return failed_; }

private:
    HKEY root_;
    bool failed_ = false;
};

bool key_exists(HKEY root, const std::wstring &key, REGSAM view = 0)
{
    HKEY raw = nullptr;
    if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ | view, &raw) != ERROR_SUCCESS) return false;
    RegCloseKey(raw);
    return true;
}

// The class keys under the classes root, or under HKCU\Software\Classes for one user.
unique_hkey classes_root(bool per_user, bool create)
{
    HKEY raw = nullptr;
    LONG rc;
    if (per_user)
        rc = create ? RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                      &raw, nullptr)
                    : RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, KEY_ALL_ACCESS, &raw);
    else
        rc = RegOpenKeyExW(HKEY_CLASSES_ROOT, nullptr, 0, KEY_ALL_ACCESS, &raw);
    return unique_hkey(rc == ERROR_SUCCESS ? raw : nullptr);
}

void register_class(Writer &w, const ServerClass &entry, const std::wstring &path)
{
    const ControlClass &c = *entry.control;
    const std::wstring clsid = guid_text(*c.clsid), key = L"CLSID\\" + clsid;
    const std::wstring progid = std::wstring(L"TarnControls.") + c.name, progid1 = progid + L".1";
    w.value(key, c.description);
    w.value(key + L"\\InprocServer32", path);
    w.named(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    w.value(key + L"\\ProgID", progid1);
    w.value(key + L"\\VersionIndependentProgID", progid);
    w.value(key + L"\\TypeLib", guid_text(LIBID_TarnControls));
    w.value(key + L"\\Version", L"1.0");
    w.value(key + L"\\MiscStatus", L"0");
    w.value(key + L"\\MiscStatus\\1", std::to_wstring(MiscStatusOf(c)));
    w.value(key + L"\\Verb\\0", kVerbEdit);
    if (IsVisibleClass(c)) w.value(key + L"\\Verb\\1", kVerbProperties);
    if (entry.toolbox_bitmap) {
        w.key(key + L"\\Control");
        w.value(key + L"\\ToolboxBitmap32", path + L", " + std::to_wstring(entry.toolbox_bitmap));
        const int icon = entry.toolbox_bitmap + kIconIdOffset;
        if (FindResourceW(module::instance(), MAKEINTRESOURCEW(icon), reinterpret_cast<LPCWSTR>(RT_GROUP_ICON)))
            w.value(key + L"\\DefaultIcon", path + L",-" + std::to_wstring(icon));
        w.key(key + L"\\Implemented Categories\\" + kCatidControl);
    }
    if (c.safe) {
        w.key(key + L"\\Implemented Categories\\" + kCatidSafeForScripting);
        w.key(key + L"\\Implemented Categories\\" + kCatidSafeForInitializing);
    }
    w.value(progid, c.description);
    w.value(progid + L"\\CLSID", clsid);
    w.value(progid + L"\\CurVer", progid1);
    w.value(progid1, c.description);
    w.value(progid1 + L"\\CLSID", clsid);
}

void register_support_class(Writer &w, const SupportClass &c, const std::wstring &path)
{
    const std::wstring key = L"CLSID\\" + guid_text(*c.clsid);
    w.value(key, c.description);
    w.value(key + L"\\InprocServer32", path);
    w.named(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
}

// Per user, the type library's keys are written here rather than by the platform, so that
// they land under HKCU\Software\Classes on every system and come off again exactly.
void register_typelib_keys(Writer &w, ITypeLib *lib, const std::wstring &path)
{
    const std::wstring libid = guid_text(LIBID_TarnControls), base = L"TypeLib\\" + libid + L"\\1.0";
    std::wstring dir = path.substr(0, path.find_last_of(L'\\'));
    w.value(base, L"Tarn Controls");
    w.value(base + L"\\0\\" + kPlatform, path);
    w.value(base + L"\\FLAGS", L"0");
    w.value(base + L"\\HELPDIR", dir);
    for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        if (FAILED(lib->GetTypeInfo(i, info.put()))) continue;
        TYPEATTR *ta = nullptr;
        if (FAILED(info->GetTypeAttr(&ta))) continue;
        if (ta->typekind == TKIND_DISPATCH) {
            Bstr name;
            lib->GetDocumentation(static_cast<INT>(i), name.put(), nullptr, nullptr, nullptr);
            const std::wstring key = L"Interface\\" + guid_text(ta->guid);
            w.value(key, name.str());
            w.value(key + L"\\ProxyStubClsid32", kOleAutomationProxy);
            w.value(key + L"\\ProxyStubClsid", kOleAutomationProxy);
            w.value(key + L"\\TypeLib", libid);
            w.named(key + L"\\TypeLib", L"Version", L"1.0");
        }
        info->ReleaseTypeAttr(ta);
    }
}

// Removes `key` when nothing is left in it (a parent per-user registration created).
void delete_if_empty(HKEY root, const wchar_t *key)
{
    HKEY raw = nullptr;
    if (RegOpenKeyExW(root, key, 0, KEY_READ, &raw) != ERROR_SUCCESS) return;
    DWORD subkeys = 1, values = 1;
    RegQueryInfoKeyW(raw, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr, nullptr, nullptr,
                     nullptr);
    RegCloseKey(raw);
    if (subkeys == 0 && values == 0) RegDeleteKeyW(root, key);
}

void unregister_typelib_keys(HKEY root, ITypeLib *lib)
{
    const std::wstring libid = guid_text(LIBID_TarnControls), base = L"TypeLib\\" + libid;
    RegDeleteTreeW(root, (base + L"\\1.0\\0\\" + kPlatform).c_str());
    if (key_exists(root, base + L"\\1.0\\0\\" + kOtherPlatform)) return; // the other build still uses them
    RegDeleteTreeW(root, base.c_str());
    if (!lib) return;
    for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        if (FAILED(lib->GetTypeInfo(i, info.put()))) continue;
        TYPEATTR *ta = nullptr;
        if (FAILED(info->GetTypeAttr(&ta))) continue;
        if (ta->typekind == TKIND_DISPATCH) RegDeleteTreeW(root, (L"Interface\\" + guid_text(ta->guid)).c_str());
        info->ReleaseTypeAttr(ta);
    }
}

} // namespace

HRESULT RegisterServer(bool per_user)
{
    const std::wstring path = module_path();
    if (path.empty()) return SELFREG_E_CLASS;
    unique_hkey root = classes_root(per_user, true);
    if (!root) return SELFREG_E_CLASS;
    Writer w(root.get());
    for (const ServerClass &c : ServerClasses()) register_class(w, c, path);
    for (const SupportClass &c : SupportClasses()) register_support_class(w, c, path);
    ComPtr<ITypeLib> lib;
    HRESULT hr = LoadTypeLibEx(path.c_str(), REGKIND_NONE, lib.put());
    if (FAILED(hr)) return SELFREG_E_TYPELIB;
    if (per_user) register_typelib_keys(w, lib.get(), path);
    else {
        std::wstring dir = path.substr(0, path.find_last_of(L'\\'));
        hr = RegisterTypeLib(lib.get(), const_cast<LPOLESTR>(path.c_str()), const_cast<LPOLESTR>(dir.c_str()));
        if (FAILED(hr)) return SELFREG_E_TYPELIB;
    }
    return w.failed() ? SELFREG_E_CLASS : S_OK;
}

HRESULT UnregisterServer(bool per_user)
{
    unique_hkey root = classes_root(per_user, false);
    if (!root) return S_OK; // nothing was ever written there
    for (const ServerClass &entry : ServerClasses()) {
        const ControlClass *c = entry.control;
        const std::wstring clsid = guid_text(*c->clsid), progid = std::wstring(L"TarnControls.") + c->name;
        RegDeleteTreeW(root.get(), (L"CLSID\\" + clsid).c_str());
        // The ProgIDs are shared by the 32- and 64-bit builds: they stay while the other one is
        // still registered.
        if (key_exists(root.get(), L"CLSID\\" + clsid + L"\\InprocServer32", kOtherView)) continue;
        RegDeleteTreeW(root.get(), progid.c_str());
        RegDeleteTreeW(root.get(), (progid + L".1").c_str());
    }
    for (const SupportClass &c : SupportClasses()) RegDeleteTreeW(root.get(), (L"CLSID\\" + guid_text(*c.clsid)).c_str());
    ComPtr<ITypeLib> lib;
    LoadTypeLibEx(module_path().c_str(), REGKIND_NONE, lib.put());
    if (per_user) {
        unregister_typelib_keys(root.get(), lib.get());
        for (const wchar_t *parent : {L"CLSID", L"TypeLib", L"Interface"}) delete_if_empty(root.get(), parent);
    } else {
        UnRegisterTypeLib(LIBID_TarnControls, 1, 0, LOCALE_NEUTRAL, kSysKind);
    }
    return S_OK;
}

} // namespace tarn
