// Small owners for COM values: ComPtr (one reference), Bstr (one BSTR), Variant (one VARIANT).
#pragma once
#include <ole2.h>
#include <ocidl.h>
#include <oleauto.h>

#include <string>
#include <utility>

namespace tarn {

template <class T> class ComPtr {
public:
    ComPtr() = default;
    ComPtr(T *p) : p_(p)
    {
        if (p_) p_->AddRef();
    }
    ComPtr(const ComPtr &o) : ComPtr(o.p_) {}
    ComPtr(ComPtr &&o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
    ComPtr &operator=(ComPtr o) noexcept
    {
        std::swap(p_, o.p_);
        return *this;
    }
    ~ComPtr() { reset(); }

    static ComPtr attach(T *p)
    {
        ComPtr r;
        r.p_ = p;
        return r;
    }
    T *detach() { return std::exchange(p_, nullptr); }
    void reset()
    {
        if (T *p = std::exchange(p_, nullptr)) p->Release();
    }
    // For out-parameters: releases what is held and hands out the slot.
    T **put()
    {
        reset();
        return &p_;
    }
    void **put_void() { return reinterpret_cast<void **>(put()); }

    T *get() const { return p_; }
    T *operator->() const { return p_; }
    explicit operator bool() const { return p_ != nullptr; }

    template <class U> ComPtr<U> as(REFIID iid) const
    {
        ComPtr<U> r;
        if (p_) p_->QueryInterface(iid, r.put_void());
        return r;
    }

private:
    T *p_ = nullptr;
};

// Copies an interface pointer into an out-parameter with its own reference.
template <class T> inline HRESULT copy_out(T *p, T **out)
{
    if (!out) return E_POINTER;
    *out = p;
    if (p) p->AddRef();
    return S_OK;
}

class Bstr {
public:
    Bstr() = default;
    explicit Bstr(const std::wstring &s) : b_(SysAllocStringLen(s.data(), static_cast<UINT>(s.size()))) {}
    explicit Bstr(const wchar_t *s) : b_(SysAllocString(s)) {}
    Bstr(const Bstr &) = delete;
    Bstr &operator=(const Bstr &) = delete;
    Bstr(Bstr &&o) noexcept : b_(std::exchange(o.b_, nullptr)) {}
    ~Bstr() { SysFreeString(b_); }

    static Bstr attach(BSTR b)
    {
        Bstr r;
        r.b_ = b;
        return r;
    }
    BSTR detach() { return std::exchange(b_, nullptr); }
    BSTR get() const { return b_; }
    BSTR *put()
    {
        SysFreeString(std::exchange(b_, nullptr));
        return &b_;
    }
    std::wstring str() const { return b_ ? std::wstring(b_, SysStringLen(b_)) : std::wstring(); }

private:
    BSTR b_ = nullptr;
};

// A BSTR holding `s` (with embedded zeros kept); null when out of memory.
inline BSTR to_bstr(const std::wstring &s) { return SysAllocStringLen(s.data(), static_cast<UINT>(s.size())); }
inline std::wstring from_bstr(BSTR b) { return b ? std::wstring(b, SysStringLen(b)) : std::wstring(); }

// Window handles cross the type library as OLE_HANDLE, 32 bits in both builds: a window
// handle is 32-bit significant on 64-bit Windows too. Going out it keeps its low 32 bits;
// coming back it is sign-extended, as Windows extends handles (LongToHandle).
inline OLE_HANDLE to_ole_handle(HWND h) { return static_cast<OLE_HANDLE>(reinterpret_cast<uintptr_t>(h)); }
inline HWND from_ole_handle(OLE_HANDLE h)
{
    return reinterpret_cast<HWND>(static_cast<intptr_t>(static_cast<int32_t>(h)));
}

class Variant {
public:
    Variant() { VariantInit(&v_); }
    Variant(const Variant &o) : Variant() { VariantCopy(&v_, const_cast<VARIANT *>(&o.v_)); }
    Variant(Variant &&o) noexcept : Variant() { std::swap(v_, o.v_); }
    Variant &operator=(Variant o) noexcept
    {
        std::swap(v_, o.v_);
        return *this;
    }
    explicit Variant(const VARIANT &src) : Variant() { VariantCopy(&v_, const_cast<VARIANT *>(&src)); }
    ~Variant() { VariantClear(&v_); }

    static Variant of_bool(bool b);
    static Variant of_i2(int16_t v);
    static Variant of_i4(int32_t v);
    static Variant of_r4(float v);
    static Variant of_r8(double v);
    static Variant of_string(const std::wstring &s);
    static Variant of_unknown(IUnknown *p);
    static Variant of_dispatch(IDispatch *p);

    VARIANT *get() { return &v_; }
    const VARIANT *get() const { return &v_; }
    VARIANT *put()
    {
        VariantClear(&v_);
        return &v_;
    }
    VARTYPE vt() const { return V_VT(&v_); }
    bool empty() const { return V_VT(&v_) == VT_EMPTY; }
    VARIANT detach()
    {
        VARIANT r = v_;
        VariantInit(&v_);
        return r;
    }

    // The value converted to `vt` (by value, no references); false when it cannot be.
    bool convert(VARTYPE vt, Variant &out) const;

private:
    VARIANT v_;
};

inline Variant Variant::of_bool(bool b)
{
    Variant r;
    V_VT(&r.v_) = VT_BOOL;
    V_BOOL(&r.v_) = b ? VARIANT_TRUE : VARIANT_FALSE;
    return r;
}
inline Variant Variant::of_i2(int16_t v)
{
    Variant r;
    V_VT(&r.v_) = VT_I2;
    V_I2(&r.v_) = v;
    return r;
}
inline Variant Variant::of_i4(int32_t v)
{
    Variant r;
    V_VT(&r.v_) = VT_I4;
    V_I4(&r.v_) = v;
    return r;
}
inline Variant Variant::of_r4(float v)
{
    Variant r;
    V_VT(&r.v_) = VT_R4;
    V_R4(&r.v_) = v;
    return r;
}
inline Variant Variant::of_r8(double v)
{
    Variant r;
    V_VT(&r.v_) = VT_R8;
    V_R8(&r.v_) = v;
    return r;
}
inline Variant Variant::of_string(const std::wstring &s)
{
    Variant r;
    V_BSTR(&r.v_) = to_bstr(s);
    V_VT(&r.v_) = V_BSTR(&r.v_) ? VT_BSTR : VT_EMPTY;
    return r;
}
inline Variant Variant::of_unknown(IUnknown *p)
{
    Variant r;
    V_VT(&r.v_) = VT_UNKNOWN;
    V_UNKNOWN(&r.v_) = p;
    if (p) p->AddRef();
    return r;
}
inline Variant Variant::of_dispatch(IDispatch *p)
{
    Variant r;
    V_VT(&r.v_) = VT_DISPATCH;
    V_DISPATCH(&r.v_) = p;
    if (p) p->AddRef();
    return r;
}
inline bool Variant::convert(VARTYPE vt, Variant &out) const
{
    // VariantChangeType follows references itself; a null reference is refused first.
    if ((V_VT(&v_) & VT_BYREF) && !V_BYREF(&v_)) return false;
    return SUCCEEDED(VariantChangeType(out.put(), const_cast<VARIANT *>(&v_), 0, vt));
}

} // namespace tarn
