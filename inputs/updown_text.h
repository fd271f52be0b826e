// The numeric up-down box's rules for its text, each a step of its own as the control runs
// them (a step that fails leaves the text as it was): the key filter, stepping by the
// interval, clamping to the whole-number range, and the colour shift.
#pragma once
#include <cstdint>
#include <optional>
#include <string>

namespace tarn {

// 1 as soon as `number` holds a ".", else 0.
int16_t DecimalPointCheck(const std::wstring &number);

// The key filter: the character to let through, 0 to swallow it. With `extra_check`, one "."
// passes when `extra_text` holds none yet; code 190 never passes. Backspace and the digits
// always pass; nothing else does (no sign, no separator, no exponent).
uint8_t KeyLock(int16_t key_ascii, bool extra_check, const std::wstring &extra_text);

// What typing `key_ascii` into `text` lets through: a "." only with `allow_dec_point`, then
// the key filter. 0 swallows the character.
int16_t TypedKey(int16_t key_ascii, bool allow_dec_point, const std::wstring &text);

// The text's value plus `delta`, formatted with `decimals` digits ("0" or "0.0"). Throws when
// the text is not a number or the sum overflows.
std::wstring SteppedText(const std::wstring &text, double delta, int decimals);

// The bound formatted with `decimals` when the text's value lies beyond it (above `max`,
// below `min`), nothing when it does not. Throws when the text is not a number.
std::optional<std::wstring> AboveMax(const std::wstring &text, int32_t max, int decimals);
std::optional<std::wstring> BelowMin(const std::wstring &text, int32_t min, int decimals);

// Shifts a colour (a long 0x00BBGGRR) by `value`: red and green plainly, blue plainly or, with
// `is_xp`, by blue x value / 192; channels clamped to 0..255, then red and green lowered by 4.
// 0 stays 0. A step that overflows is skipped and the rest goes on (0 when the result fails).
int32_t ShiftColor(int32_t color, int32_t value, bool is_xp);

} // namespace tarn
