#include "foundation/themes.h"

#include <windows.h>

#include "foundation/numbers.h"
#include "foundation/registry.h"

#include <optional>

namespace tarn {

namespace {
const clsREGISTRY &thread_registry()
{
    thread_local std::optional<clsREGISTRY> registry;
    if (!registry) registry.emplace();
    return *registry;
}
} // namespace

std::wstring WindowsVersion()
{
    std::wstring result;
    const clsREGISTRY &reg = thread_registry();
    reg.StringLoad(kHiveLocalMachine, L"SOFTWARE\\MICROSOFT\\WINDOWS\\CURRENTVERSION", L"VersionNumber", L"", result);
    if (result.empty())
        reg.StringLoad(kHiveLocalMachine, L"SOFTWARE\\MICROSOFT\\WINDOWS NT\\CURRENTVERSION", L"CurrentVersion", L"",
                       result);
    return result;
}

double WindowsVersionNumber() { return LeadingNumber(WindowsVersion()); }

bool ThemedLook()
{
    try {
        return WindowsVersionNumber() > kThemedAboveVersion;
    } catch (...) {
        return false;
    }
}

Rgb FaceShade(int32_t amount) { return AdjustColor(GetSysColor(COLOR_BTNFACE), amount, true); }

} // namespace tarn
