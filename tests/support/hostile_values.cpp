#include "support/hostile_values.h"

#include <olectl.h>

#include <climits>
#include <limits>

namespace tarn::test {

namespace {

constexpr const wchar_t *kNames[HostileValue::kCount] = {
        L"empty", L"null", L"missing", L"null dispatch", L"null unknown", L"the control", L"a font", L"null string",
        L"empty string", L"1 MB string", L"text", L"\"-1\"", L"\"1e300\"", L"embedded null", L"NaN", L"+Inf",
        L"-Inf", L"1e300", L"-1e300", L"single NaN", L"INT_MIN", L"INT_MAX", L"-1", L"10001", L"SHRT_MIN",
        L"0xFFFFFFFF", L"LLONG_MIN", L"True", L"date 1e300", L"currency max", L"error", L"bad type",
        L"Long array", L"empty variant array", L"null array", L"Long by reference", L"null reference",
        L"null string by reference", L"NaN by reference", L"1 MB string by reference"};

BSTR huge()
{
    BSTR s = SysAllocStringLen(nullptr, 1 << 19); // 512 Ki characters: 1 MB
    for (UINT i = 0; i < (1u << 19); ++i) s[i] = static_cast<wchar_t>(L'A' + i % 26);
    return s;
}
IDispatch *font()
{
    FONTDESC fd{sizeof fd, const_cast<LPOLESTR>(L"Arial"), {90000, 0}, FW_NORMAL, ANSI_CHARSET, FALSE, FALSE, FALSE};
    IDispatch *f = nullptr;
    OleCreateFontIndirect(&fd, IID_IDispatch, reinterpret_cast<void **>(&f));
    return f;
}
SAFEARRAY *array(VARTYPE vt, ULONG n) { return SafeArrayCreateVector(vt, 0, n); }

} // namespace

const wchar_t *HostileValue::name(int i) { return i >= 0 && i < kCount ? kNames[i] : L"?"; }

void HostileValue::make(int i, VARIANT &v, IUnknown *self)
{
    VariantInit(&v);
    switch (i) {
    case 0: break; // VT_EMPTY
    case 1: V_VT(&v) = VT_NULL; break;
    case 2: V_VT(&v) = VT_ERROR, V_ERROR(&v) = DISP_E_PARAMNOTFOUND; break; // missing
    case 3: V_VT(&v) = VT_DISPATCH, V_DISPATCH(&v) = nullptr; break;
    case 4: V_VT(&v) = VT_UNKNOWN, V_UNKNOWN(&v) = nullptr; break;
    case 5: V_VT(&v) = VT_UNKNOWN, V_UNKNOWN(&v) = self, self->AddRef(); break; // the control itself
    case 6: V_VT(&v) = VT_DISPATCH, V_DISPATCH(&v) = font(); break;             // an object of the wrong kind
    case 7: V_VT(&v) = VT_BSTR, V_BSTR(&v) = nullptr; break;
    case 8: V_VT(&v) = VT_BSTR, V_BSTR(&v) = SysAllocString(L""); break;
    case 9: V_VT(&v) = VT_BSTR, V_BSTR(&v) = huge(); break;
    case 10: V_VT(&v) = VT_BSTR, V_BSTR(&v) = SysAllocString(L"sweep"); break;
    case 11: V_VT(&v) = VT_BSTR, V_BSTR(&v) = SysAllocString(L"-1"); break;
    case 12: V_VT(&v) = VT_BSTR, V_BSTR(&v) = SysAllocString(L"1e300"); break;
    case 13: V_VT(&v) = VT_BSTR, V_BSTR(&v) = SysAllocStringLen(L"a\0b", 3); break; // an embedded null
    case 14: V_VT(&v) = VT_R8, V_R8(&v) = std::numeric_limits<double>::quiet_NaN(); break;
    case 15: V_VT(&v) = VT_R8, V_R8(&v) = std::numeric_limits<double>::infinity(); break;
    case 16: V_VT(&v) = VT_R8, V_R8(&v) = -std::numeric_limits<double>::infinity(); break;
    case 17: V_VT(&v) = VT_R8, V_R8(&v) = 1e300; break;
    case 18: V_VT(&v) = VT_R8, V_R8(&v) = -1e300; break;
    case 19: V_VT(&v) = VT_R4, V_R4(&v) = std::numeric_limits<float>::quiet_NaN(); break;
    case 20: V_VT(&v) = VT_I4, V_I4(&v) = INT_MIN; break;
    case 21: V_VT(&v) = VT_I4, V_I4(&v) = INT_MAX; break;
    case 22: V_VT(&v) = VT_I4, V_I4(&v) = -1; break;
    case 23: V_VT(&v) = VT_I4, V_I4(&v) = 10001; break;
    case 24: V_VT(&v) = VT_I2, V_I2(&v) = SHRT_MIN; break;
    case 25: V_VT(&v) = VT_UI4, V_UI4(&v) = 0xFFFFFFFFu; break;
    case 26: V_VT(&v) = VT_I8, V_I8(&v) = LLONG_MIN; break;
    case 27: V_VT(&v) = VT_BOOL, V_BOOL(&v) = VARIANT_TRUE; break;
    case 28: V_VT(&v) = VT_DATE, V_DATE(&v) = 1e300; break;
    case 29: V_VT(&v) = VT_CY, V_CY(&v).int64 = LLONG_MAX; break;
    case 30: V_VT(&v) = VT_ERROR, V_ERROR(&v) = E_FAIL; break;
    case 31: V_VT(&v) = static_cast<VARTYPE>(0x7FFF); break; // no such type
    case 32: V_VT(&v) = VT_ARRAY | VT_I4, V_ARRAY(&v) = array(VT_I4, 3); break;
    case 33: V_VT(&v) = VT_ARRAY | VT_VARIANT, V_ARRAY(&v) = array(VT_VARIANT, 0); break;
    case 34: V_VT(&v) = VT_ARRAY | VT_I4, V_ARRAY(&v) = nullptr; break; // an array that is not there
    case 35: long_ = INT_MAX, V_VT(&v) = VT_I4 | VT_BYREF, V_I4REF(&v) = &long_; break;
    case 36: V_VT(&v) = VT_I4 | VT_BYREF, V_I4REF(&v) = nullptr; break; // a reference to nothing
    case 37: bstr_ = nullptr, V_VT(&v) = VT_BSTR | VT_BYREF, V_BSTRREF(&v) = &bstr_; break;
    case 38: // a variant by reference holding NaN, as a script passes its variable
        V_VT(&inner_) = VT_R8, V_R8(&inner_) = std::numeric_limits<double>::quiet_NaN();
        V_VT(&v) = VT_VARIANT | VT_BYREF, V_VARIANTREF(&v) = &inner_;
        break;
    case 39: // ... and holding a 1 MB string
        VariantClear(&inner_);
        V_VT(&inner_) = VT_BSTR, V_BSTR(&inner_) = huge();
        V_VT(&v) = VT_VARIANT | VT_BYREF, V_VARIANTREF(&v) = &inner_;
        break;
    }
}

void HostileValue::clear()
{
    VariantClear(&inner_);
    SysFreeString(bstr_);
    bstr_ = nullptr;
}

} // namespace tarn::test
