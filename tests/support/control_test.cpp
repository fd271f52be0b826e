#include "support/control_test.h"

#include <windowsx.h>

namespace tarn::test {

void mouse(HWND hwnd, UINT msg, int x, int y, WPARAM keys)
{
    SendMessageW(hwnd, msg, keys, MAKELPARAM(x, y));
}

void click(HWND hwnd, int x, int y)
{
    mouse(hwnd, WM_LBUTTONDOWN, x, y, MK_LBUTTON);
    mouse(hwnd, WM_LBUTTONUP, x, y, 0);
}

HRESULT dll_can_unload_now()
{
    HMODULE dll = GetModuleHandleW(L"tarnctls.dll");
    if (!dll) return S_OK; // never loaded, or already unloaded
    auto fn = reinterpret_cast<HRESULT(WINAPI *)()>(GetProcAddress(dll, "DllCanUnloadNow"));
    return fn ? fn() : E_FAIL;
}

std::wstring output_path(const std::wstring &name)
{
    wchar_t exe[MAX_PATH];
    GetModuleFileNameW(nullptr, exe, MAX_PATH);
    std::wstring dir(exe);
    dir = dir.substr(0, dir.find_last_of(L'\\')) + L"\\test-output";
    CreateDirectoryW(dir.c_str(), nullptr);
    return dir + L"\\" + name;
}

} // namespace tarn::test
