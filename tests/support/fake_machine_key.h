// FakeMachineKey points HKEY_LOCAL_MACHINE of this process at a private key for its lifetime,
// so tests can control what the library reads there (the operating-system version text)
// without touching the machine.
#pragma once
#include <windows.h>

namespace tarn::test {

class FakeMachineKey {
public:
    FakeMachineKey();
    ~FakeMachineKey();
    FakeMachineKey(const FakeMachineKey &) = delete;
    FakeMachineKey &operator=(const FakeMachineKey &) = delete;

    void set(const wchar_t *path, const wchar_t *name, const wchar_t *text);
    void set_dword(const wchar_t *path, const wchar_t *name, DWORD v);

private:
    HKEY key_ = nullptr;
};

// Where the version text is read.
constexpr wchar_t kWindowsKey[] = L"SOFTWARE\\MICROSOFT\\WINDOWS\\CURRENTVERSION";
constexpr wchar_t kWindowsNtKey[] = L"SOFTWARE\\MICROSOFT\\WINDOWS NT\\CURRENTVERSION";

} // namespace tarn::test
