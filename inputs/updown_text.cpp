#include "inputs/updown_text.h"

#include <cmath>

#include "foundation/checked.h"
#include "foundation/colors.h"
#include "foundation/numbers.h"
#include "foundation/trap.h"

namespace tarn {

namespace {
constexpr int16_t kBackspace = 8, kPoint = 46, kPeriodKey = 190;
bool is_digit(int16_t c) { return c >= '0' && c <= '9'; }
int32_t clamp255(int32_t v) { return v < 0 ? 0 : (v > 255 ? 255 : v); }
} // namespace

int16_t DecimalPointCheck(const std::wstring &number)
{
    for (wchar_t c : number)
        if (c == L'.') return 1;
    return 0;
}

uint8_t KeyLock(int16_t key_ascii, bool extra_check, const std::wstring &extra_text)
{
    if (key_ascii == kBackspace || is_digit(key_ascii)) return static_cast<uint8_t>(key_ascii);
    if (!extra_check) return 0;
    if (key_ascii == kPoint) return DecimalPointCheck(extra_text) == 1 ? 0 : kPoint;
    // The other code of the full-stop key: refused whether or not the text holds a point.
    if (key_ascii == kPeriodKey) return 0;
    return 0;
}

int16_t TypedKey(int16_t key_ascii, bool allow_dec_point, const std::wstring &text)
{
    if (key_ascii == kPoint && !allow_dec_point) key_ascii = 0;
    return KeyLock(key_ascii, true, text);
}

std::wstring SteppedText(const std::wstring &text, double delta, int decimals)
{
    double sum = ToDouble(text) + delta;
    if (!std::isfinite(sum)) throw Overflow();
    return FormatFixed(sum, decimals);
}

std::optional<std::wstring> AboveMax(const std::wstring &text, int32_t max, int decimals)
{
    if (ToDouble(text) > max) return FormatFixed(max, decimals);
    return std::nullopt;
}

std::optional<std::wstring> BelowMin(const std::wstring &text, int32_t min, int decimals)
{
    if (ToDouble(text) < min) return FormatFixed(min, decimals);
    return std::nullopt;
}

int32_t ShiftColor(int32_t color, int32_t value, bool is_xp)
{
    if (color == 0) return 0;
    // Integer division truncates and the remainder keeps the dividend's sign, as the colour's
    // Long arithmetic does; each statement is a step of its own.
    int32_t red = 0, green = 0, blue = 0, result = 0;
    step([&] { blue = (color / 65536) % 256; });
    step([&] { blue = is_xp ? add32(blue, idiv32(mul32(blue, value), 192)) : add32(blue, value); });
    step([&] { green = add32((color / 256) % 256, value); });
    step([&] { red = add32(color % 256, value); });
    red = clamp255(red);
    green = clamp255(green);
    blue = clamp255(blue);
    step([&] { result = static_cast<int32_t>(RgbOf(red - 4, green - 4, blue)); });
    return result;
}

} // namespace tarn
