// The DLL's exported entry points: the four of a self-registering COM server, and DllInstall
// for per-user registration ("regsvr32 /n /i:user tarnctls.dll").
#include <windows.h>
#include <olectl.h>

#include "buttons/frmctrlTOOLTIP.h"
#include "runtime/module.h"
#include "runtime/property_page.h"
#include "runtime/user_control.h"
#include "server/class_factory.h"
#include "server/classes.h"
#include "server/registration.h"

#include <cwchar>

using namespace tarn;

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void *)
{
    if (reason == DLL_PROCESS_ATTACH) module::set_instance(instance);
    else if (reason == DLL_PROCESS_DETACH) {
        UnregisterControlWindowClass();
        UnregisterTooltipWindowClass();
        UnregisterPropertyPageWindowClass();
    }
    return TRUE;
}

extern "C" HRESULT WINAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void **out)
{
    if (!out) return E_POINTER;
    *out = nullptr;
    auto create = CreatorOf(clsid);
    if (!create) return CLASS_E_CLASSNOTAVAILABLE;
    IClassFactory *factory = NewClassFactory(create);
    if (!factory) return E_OUTOFMEMORY;
    HRESULT hr = factory->QueryInterface(iid, out);
    factory->Release();
    return hr;
}

extern "C" HRESULT WINAPI DllCanUnloadNow()
{
    return module::object_count() == 0 && module::lock_count() == 0 ? S_OK : S_FALSE;
}

extern "C" HRESULT WINAPI DllRegisterServer() { return RegisterServer(false); }

extern "C" HRESULT WINAPI DllUnregisterServer() { return UnregisterServer(false); }

extern "C" HRESULT WINAPI DllInstall(BOOL install, LPCWSTR command)
{
    bool per_user = command && _wcsicmp(command, L"user") == 0;
    return install ? RegisterServer(per_user) : UnregisterServer(per_user);
}
