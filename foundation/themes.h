// The operating-system version as the controls choose their look from it.
#pragma once
#include <string>

namespace tarn {

// "VersionNumber" under HKLM\SOFTWARE\MICROSOFT\WINDOWS\CURRENTVERSION, or when that is empty
// "CurrentVersion" under HKLM\SOFTWARE\MICROSOFT\WINDOWS NT\CURRENTVERSION (for example "6.1").
std::wstring WindowsVersion();

// The leading number of the version text as a double (0 when the text holds none).
double WindowsVersionNumber();

} // namespace tarn
