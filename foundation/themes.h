// The operating-system version as the controls choose their look from it.
#pragma once
#include <cstdint>
#include <string>

#include "foundation/colors.h"

namespace tarn {

// "VersionNumber" under HKLM\SOFTWARE\MICROSOFT\WINDOWS\CURRENTVERSION, or when that is empty
// "CurrentVersion" under HKLM\SOFTWARE\MICROSOFT\WINDOWS NT\CURRENTVERSION (for example "6.1").
std::wstring WindowsVersion();

// The leading number of the version text as a double (0 when the text holds none).
double WindowsVersionNumber();

// Systems whose version number is above this draw the themed look: dividers and frame borders
// take shades of the button face so they blend with themed surfaces.
constexpr double kThemedAboveVersion = 4.99;
// Whether the version read now is above it (false when it cannot be read).
bool ThemedLook();

// The button face moved by `amount` (the proportional colour adjustment): the themed shades,
// -25 for a dark line and +25 for a light one.
Rgb FaceShade(int32_t amount);

} // namespace tarn
