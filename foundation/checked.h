// Checked 16- and 32-bit integer arithmetic: the integer types the controls' contract is
// written in overflow as an error (a failing step), never silently wrap.
#pragma once
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>

namespace tarn {

// An arithmetic overflow inside a control step; the trap swallows it like any other failure.
struct Overflow : std::runtime_error {
    Overflow() : std::runtime_error("overflow") {}
};

template <class T> constexpr bool fits(long long v)
{
    return v >= std::numeric_limits<T>::min() && v <= std::numeric_limits<T>::max();
}
// Whether an enumeration's 32 bits fit 16: what a property published as an enumeration but
// kept in 16 bits takes. Read as signed whatever the compiler's underlying type (an enum with
// no negative member is unsigned to GCC).
template <class E> constexpr bool fits16(E v) { return fits<int16_t>(static_cast<int32_t>(v)); }

template <class T> constexpr T checked(long long v)
{
    if (v < std::numeric_limits<T>::min() || v > std::numeric_limits<T>::max()) throw Overflow();
    return static_cast<T>(v);
}

inline int32_t add32(int32_t a, int32_t b) { return checked<int32_t>(static_cast<long long>(a) + b); }
inline int32_t sub32(int32_t a, int32_t b) { return checked<int32_t>(static_cast<long long>(a) - b); }
inline int32_t mul32(int32_t a, int32_t b) { return checked<int32_t>(static_cast<long long>(a) * b); }
inline int16_t add16(int16_t a, int16_t b) { return checked<int16_t>(static_cast<long long>(a) + b); }
inline int16_t sub16(int16_t a, int16_t b) { return checked<int16_t>(static_cast<long long>(a) - b); }
inline int16_t mul16(int16_t a, int16_t b) { return checked<int16_t>(static_cast<long long>(a) * b); }

// Integer division as the contract's "\" operator: truncates toward zero; dividing by 0 fails.
inline int32_t idiv32(int32_t a, int32_t b)
{
    if (b == 0 || (a == std::numeric_limits<int32_t>::min() && b == -1)) throw Overflow();
    return a / b;
}

// Rounds to the nearest whole number, halves to even (how Long and Integer conversions round).
inline double round_half_even(double v) { return std::nearbyint(v); }

// A double converted to a 32-bit (or 16-bit) integer: rounded half to even, range checked.
inline int32_t to_int32(double v)
{
    if (!std::isfinite(v)) throw Overflow();
    double r = round_half_even(v);
    if (r < -2147483648.0 || r > 2147483647.0) throw Overflow();
    return static_cast<int32_t>(r);
}
inline int16_t to_int16(double v)
{
    if (!std::isfinite(v)) throw Overflow();
    double r = round_half_even(v);
    if (r < -32768.0 || r > 32767.0) throw Overflow();
    return static_cast<int16_t>(r);
}

// Truncation toward minus infinity (the contract's Int).
inline double int_floor(double v) { return std::floor(v); }

} // namespace tarn
