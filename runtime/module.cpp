#include "runtime/module.h"

#include "runtime/com.h"

#include <map>
#include <mutex>

namespace tarn::module {

namespace {

HINSTANCE g_instance = nullptr;
LONG g_objects = 0;
LONG g_locks = 0;
std::mutex g_typelib_lock;
ITypeLib *g_typelib = nullptr; // held for the process: the DLL stays loaded while objects live

struct GuidLess {
    bool operator()(const GUID &a, const GUID &b) const { return memcmp(&a, &b, sizeof(GUID)) < 0; }
};
std::map<GUID, ITypeInfo *, GuidLess> g_infos;

} // namespace

void set_instance(HINSTANCE instance) { g_instance = instance; }
HINSTANCE instance()
{
    if (!g_instance) {
        // Linked into a program rather than the DLL (unit tests): the module holding this code.
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<LPCWSTR>(&instance), &g_instance);
    }
    return g_instance;
}

void object_created() { InterlockedIncrement(&g_objects); }
void object_destroyed() { InterlockedDecrement(&g_objects); }
LONG object_count() { return g_objects; }
void lock_server(bool lock)
{
    if (lock) InterlockedIncrement(&g_locks);
    else InterlockedDecrement(&g_locks);
}
LONG lock_count() { return g_locks; }

HRESULT type_library(ITypeLib **out)
{
    if (!out) return E_POINTER;
    *out = nullptr;
    std::lock_guard<std::mutex> guard(g_typelib_lock);
    if (!g_typelib) {
        wchar_t path[MAX_PATH];
        DWORD n = GetModuleFileNameW(instance(), path, MAX_PATH);
        if (n == 0 || n >= MAX_PATH) return E_FAIL;
        HRESULT hr = LoadTypeLibEx(path, REGKIND_NONE, &g_typelib);
        if (FAILED(hr)) return hr;
    }
    *out = g_typelib;
    g_typelib->AddRef();
    return S_OK;
}

HRESULT type_info(REFGUID guid, ITypeInfo **out)
{
    if (!out) return E_POINTER;
    *out = nullptr;
    ComPtr<ITypeLib> lib;
    HRESULT hr = type_library(lib.put());
    if (FAILED(hr)) return hr;
    std::lock_guard<std::mutex> guard(g_typelib_lock);
    auto found = g_infos.find(guid);
    if (found == g_infos.end()) {
        ComPtr<ITypeInfo> info;
        hr = lib->GetTypeInfoOfGuid(guid, info.put());
        if (FAILED(hr)) return hr;
        TYPEATTR *attr = nullptr;
        if (SUCCEEDED(info->GetTypeAttr(&attr))) {
            bool dual_dispatch = attr->typekind == TKIND_DISPATCH && (attr->wTypeFlags & TYPEFLAG_FDUAL);
            info->ReleaseTypeAttr(attr);
            HREFTYPE ref = 0;
            ComPtr<ITypeInfo> vtable_half;
            if (dual_dispatch && SUCCEEDED(info->GetRefTypeOfImplType(-1, &ref)) &&
                SUCCEEDED(info->GetRefTypeInfo(ref, vtable_half.put())))
                info = vtable_half;
        }
        found = g_infos.emplace(guid, info.detach()).first;
    }
    *out = found->second;
    (*out)->AddRef();
    return S_OK;
}

} // namespace tarn::module
