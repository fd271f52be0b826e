#include "support/fake_machine_key.h"

#include <cwchar>
#include <string>

namespace tarn::test {

namespace {
// One key per process: test programs run side by side in one Wine session.
std::wstring private_key() { return L"Software\\TarnTests\\HKLM-" + std::to_wstring(GetCurrentProcessId()); }
} // namespace

FakeMachineKey::FakeMachineKey()
{
    RegDeleteTreeW(HKEY_CURRENT_USER, private_key().c_str());
    RegCreateKeyExW(HKEY_CURRENT_USER, private_key().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_, nullptr);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, key_);
}

FakeMachineKey::~FakeMachineKey()
{
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegCloseKey(key_);
    RegDeleteTreeW(HKEY_CURRENT_USER, private_key().c_str());
    RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\TarnTests"); // only when no other process still uses it
}

void FakeMachineKey::set(const wchar_t *path, const wchar_t *name, const wchar_t *text)
{
    RegSetKeyValueW(key_, path, name, REG_SZ, text, static_cast<DWORD>((wcslen(text) + 1) * sizeof(wchar_t)));
}

void FakeMachineKey::set_dword(const wchar_t *path, const wchar_t *name, DWORD v)
{
    RegSetKeyValueW(key_, path, name, REG_DWORD, &v, sizeof v);
}

} // namespace tarn::test
