// Registration as regsvr32 does it, per machine and per user, and unregistration leaving no
// key behind. The machine test unregisters the DLL the other tests use, so it registers it
// again at the end and runs alone.
#include <gtest/gtest.h>

#include <windows.h>

#include <set>
#include <string>
#include <vector>

#include "foundation/handles.h"
#include "runtime/com.h"
#include "support/control_test.h"
#include "tarnctls_h.h"

using namespace tarn;

namespace {

std::wstring dll_path()
{
    wchar_t exe[MAX_PATH];
    GetModuleFileNameW(nullptr, exe, MAX_PATH);
    std::wstring p(exe);
    return p.substr(0, p.find_last_of(L'\\')) + L"\\tarnctls.dll";
}

std::wstring guid_text(const GUID &g)
{
    wchar_t buf[64];
    StringFromGUID2(g, buf, 64);
    return buf;
}

// Runs regsvr32 silently with these switches on the DLL; its exit code.
DWORD regsvr32(const std::wstring &switches)
{
    std::wstring cmd = L"regsvr32.exe /s " + switches + L" \"" + dll_path() + L"\"";
    STARTUPINFOW si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    if (!CreateProcessW(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) return ~0u;
    WaitForSingleObject(pi.hProcess, 60000);
    DWORD rc = ~0u;
    GetExitCodeProcess(pi.hProcess, &rc);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
    return rc;
}

struct Library {
    std::vector<std::pair<std::wstring, GUID>> classes; // name, clsid
    std::vector<GUID> dispatch_interfaces;
};

Library library()
{
    Library lib;
    ComPtr<ITypeLib> tl;
    EXPECT_EQ(S_OK, LoadTypeLibEx(dll_path().c_str(), REGKIND_NONE, tl.put()));
    if (!tl) return lib;
    for (UINT i = 0; i < tl->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        tl->GetTypeInfo(i, info.put());
        TYPEATTR *ta = nullptr;
        info->GetTypeAttr(&ta);
        Bstr name;
        tl->GetDocumentation(static_cast<INT>(i), name.put(), nullptr, nullptr, nullptr);
        if (ta->typekind == TKIND_COCLASS) lib.classes.push_back({name.str(), ta->guid});
        if (ta->typekind == TKIND_DISPATCH) lib.dispatch_interfaces.push_back(ta->guid);
        info->ReleaseTypeAttr(ta);
    }
    return lib;
}

bool exists(HKEY root, const std::wstring &key)
{
    HKEY k = nullptr;
    if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ, &k) != ERROR_SUCCESS) return false;
    RegCloseKey(k);
    return true;
}

std::wstring value(HKEY root, const std::wstring &key, const wchar_t *name = nullptr)
{
    wchar_t buf[1024] = {};
    DWORD size = sizeof buf;
    if (RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, buf, &size) != ERROR_SUCCESS) return L"<none>";
    return buf;
}

// Every key below `root\key`, as paths: the whole tree a registration could have touched.
void collect(HKEY root, const std::wstring &key, std::set<std::wstring> &out)
{
    HKEY k = nullptr;
    if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ, &k) != ERROR_SUCCESS) return;
    unique_hkey held(k);
    out.insert(key);
    wchar_t name[512];
    for (DWORD i = 0;; ++i) {
        DWORD len = 512;
        if (RegEnumKeyExW(k, i, name, &len, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        collect(root, key.empty() ? name : key + L"\\" + name, out);
    }
}

#ifdef _WIN64
const wchar_t kPlatform[] = L"win64";
#else
const wchar_t kPlatform[] = L"win32";
#endif

void expect_registered(HKEY root, const Library &lib)
{
    const std::wstring path = dll_path();
    for (const auto &[name, clsid] : lib.classes) {
        const std::wstring key = L"CLSID\\" + guid_text(clsid), progid = L"TarnControls." + name;
        EXPECT_EQ(path, value(root, key + L"\\InprocServer32")) << test::narrow(name);
        EXPECT_EQ(L"Apartment", value(root, key + L"\\InprocServer32", L"ThreadingModel"));
        EXPECT_EQ(progid + L".1", value(root, key + L"\\ProgID"));
        EXPECT_EQ(progid, value(root, key + L"\\VersionIndependentProgID"));
        EXPECT_EQ(guid_text(LIBID_TarnControls), value(root, key + L"\\TypeLib"));
        EXPECT_EQ(L"1.0", value(root, key + L"\\Version"));
        EXPECT_NE(L"<none>", value(root, key + L"\\MiscStatus\\1"));
        EXPECT_EQ(guid_text(clsid), value(root, progid + L"\\CLSID"));
        EXPECT_EQ(progid + L".1", value(root, progid + L"\\CurVer"));
        EXPECT_EQ(guid_text(clsid), value(root, progid + L".1\\CLSID"));
    }
    EXPECT_EQ(path, value(root, L"TypeLib\\" + guid_text(LIBID_TarnControls) + L"\\1.0\\0\\" + kPlatform));
    for (const GUID &iid : lib.dispatch_interfaces) EXPECT_TRUE(exists(root, L"Interface\\" + guid_text(iid)));
}

} // namespace

TEST(Registration, PublicControlsCarryWhatToolboxesLookFor)
{
    const std::wstring key = L"CLSID\\" + guid_text(CLSID_cframe);
    EXPECT_TRUE(exists(HKEY_CLASSES_ROOT, key + L"\\Control"));
    std::wstring bitmap = value(HKEY_CLASSES_ROOT, key + L"\\ToolboxBitmap32");
    EXPECT_EQ(0u, bitmap.find(dll_path() + L", ")) << test::narrow(bitmap);
    // The bitmap the key names is in the DLL.
    HMODULE dll = LoadLibraryExW(dll_path().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_TRUE(dll);
    int id = _wtoi(bitmap.substr(bitmap.find(L", ") + 2).c_str());
    EXPECT_TRUE(FindResourceW(dll, MAKEINTRESOURCEW(id), reinterpret_cast<LPCWSTR>(RT_BITMAP)));
    FreeLibrary(dll);
}

TEST(Registration, PerMachineRegistersAndUnregistersEveryKey)
{
    Library lib = library();
    ASSERT_FALSE(lib.classes.empty());
    expect_registered(HKEY_CLASSES_ROOT, lib); // the test fixture registered it
    ASSERT_EQ(0u, regsvr32(L"/u"));
    for (const auto &[name, clsid] : lib.classes) {
        EXPECT_FALSE(exists(HKEY_CLASSES_ROOT, L"CLSID\\" + guid_text(clsid))) << test::narrow(name);
        // The ProgIDs are shared with the other architecture's build and stay while it is registered.
        HKEY other = nullptr;
        const REGSAM other_view = sizeof(void *) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
        bool other_registered = RegOpenKeyExW(HKEY_CLASSES_ROOT, (L"CLSID\\" + guid_text(clsid)).c_str(), 0,
                                              KEY_READ | other_view, &other) == ERROR_SUCCESS;
        if (other) RegCloseKey(other);
        if (!other_registered) {
            EXPECT_FALSE(exists(HKEY_CLASSES_ROOT, L"TarnControls." + name));
        }
    }
    EXPECT_FALSE(exists(HKEY_CLASSES_ROOT, L"TypeLib\\" + guid_text(LIBID_TarnControls) + L"\\1.0\\0\\" + kPlatform));
    ASSERT_EQ(0u, regsvr32(L""));
    expect_registered(HKEY_CLASSES_ROOT, lib);
}

TEST(Registration, PerUserWritesUnderTheUsersClassesAndRemovesThemAll)
{
    Library lib = library();
    HKEY classes = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS,
                                             nullptr, &classes, nullptr));
    unique_hkey root(classes);
    std::set<std::wstring> before;
    collect(root.get(), L"", before);

    ASSERT_EQ(0u, regsvr32(L"/n /i:user"));
    expect_registered(root.get(), lib);
    for (const auto &[name, clsid] : lib.classes)
        EXPECT_EQ(dll_path(), value(root.get(), L"CLSID\\" + guid_text(clsid) + L"\\InprocServer32"));

    ASSERT_EQ(0u, regsvr32(L"/u /n /i:user"));
    std::set<std::wstring> after;
    collect(root.get(), L"", after);
    for (const std::wstring &k : after)
        EXPECT_TRUE(before.count(k)) << "left behind: HKCU\\Software\\Classes\\" << test::narrow(k);
}
