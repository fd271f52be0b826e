// Optional VARIANT arguments of methods ([optional] in the type library): a missing one
// arrives as VT_ERROR / DISP_E_PARAMNOTFOUND. Each reader gives the value converted to the
// parameter's type, or nothing when the argument is missing or cannot be converted (the step
// that would use it is then skipped, as the resume-next rule has it).
#pragma once
#include <oaidl.h>

#include <cstdint>
#include <optional>
#include <string>

namespace tarn {

bool IsMissing(const VARIANT &v);
std::optional<std::wstring> OptionalString(const VARIANT &v);
std::optional<bool> OptionalBool(const VARIANT &v);
std::optional<int16_t> OptionalInt16(const VARIANT &v);
std::optional<int32_t> OptionalInt32(const VARIANT &v);
std::optional<double> OptionalDouble(const VARIANT &v);
// A colour: a Long, or the unsigned 32 bits a host may pass for 0x80000000 and up.
std::optional<uint32_t> OptionalColor(const VARIANT &v);

} // namespace tarn
