#include "runtime/optional_args.h"

#include "runtime/com.h"

namespace tarn {

namespace {
std::optional<Variant> converted(const VARIANT &v, VARTYPE vt)
{
    if (IsMissing(v)) return std::nullopt;
    Variant in(v), out;
    if (!in.convert(vt, out)) return std::nullopt;
    return out;
}
} // namespace

bool IsMissing(const VARIANT &v)
{
    const VARIANT *p = &v;
    if (V_VT(p) == (VT_VARIANT | VT_BYREF) && V_VARIANTREF(p)) p = V_VARIANTREF(p);
    return V_VT(p) == VT_EMPTY || (V_VT(p) == VT_ERROR && V_ERROR(p) == DISP_E_PARAMNOTFOUND);
}

std::optional<std::wstring> OptionalString(const VARIANT &v)
{
    auto c = converted(v, VT_BSTR);
    return c ? std::optional<std::wstring>(from_bstr(V_BSTR(c->get()))) : std::nullopt;
}

std::optional<bool> OptionalBool(const VARIANT &v)
{
    auto c = converted(v, VT_BOOL);
    return c ? std::optional<bool>(V_BOOL(c->get()) != VARIANT_FALSE) : std::nullopt;
}

std::optional<int16_t> OptionalInt16(const VARIANT &v)
{
    auto c = converted(v, VT_I2);
    return c ? std::optional<int16_t>(V_I2(c->get())) : std::nullopt;
}

std::optional<int32_t> OptionalInt32(const VARIANT &v)
{
    auto c = converted(v, VT_I4);
    return c ? std::optional<int32_t>(V_I4(c->get())) : std::nullopt;
}

std::optional<double> OptionalDouble(const VARIANT &v)
{
    auto c = converted(v, VT_R8);
    return c ? std::optional<double>(V_R8(c->get())) : std::nullopt;
}

std::optional<uint32_t> OptionalColor(const VARIANT &v)
{
    if (auto c = converted(v, VT_I4)) return static_cast<uint32_t>(V_I4(c->get()));
    if (auto c = converted(v, VT_UI4)) return static_cast<uint32_t>(V_UI4(c->get()));
    return std::nullopt;
}

} // namespace tarn
