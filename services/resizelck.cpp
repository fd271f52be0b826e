#include "services/resizelck.h"

#include <cmath>
#include <cstring>

#include "foundation/metrics.h"
#include "runtime/invoke_args.h"
#include "server/resource.h"

namespace tarn {

const ControlClass resizelck::Class = {
    L"resizelck",
    L"Tarn Controls form resize lock",
    &CLSID_resizelck,
    &IID_Iresizelck,
    nullptr,
    OLEMISC_INVISIBLEATRUNTIME | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_NOUIACTIVATE,
    &resizelck::Create,
};

namespace {
constexpr int32_t kMsgGetMinMaxInfo = 36; // WM_GETMINMAXINFO
constexpr DISPID kMaxHeight = 1, kMaxWidth = 2;

// Writes `value` into the variable a by-reference argument points at, in the variable's own
// type where it can hold it; false when the argument is not a reference to a number.
bool write_back(VARIANT &arg, LONG value)
{
    if (!V_ISBYREF(&arg) || !V_BYREF(&arg)) return false;
    Variant given = Variant::of_i4(value), typed;
    if (V_VT(&arg) == (VT_VARIANT | VT_BYREF)) {
        VARIANT *variable = V_VARIANTREF(&arg);
        if (V_ISBYREF(variable)) return write_back(*variable, value);
        VARTYPE kind = V_VT(variable);
        if (kind == VT_EMPTY || !given.convert(kind, typed)) typed = given;
        return SUCCEEDED(VariantCopy(variable, typed.get()));
    }
    VARTYPE kind = V_VT(&arg) & ~VT_BYREF;
    if (!given.convert(kind, typed)) return false;
    switch (kind) {
    case VT_I2: *V_I2REF(&arg) = V_I2(typed.get()); return true;
    case VT_I4: *V_I4REF(&arg) = V_I4(typed.get()); return true;
    case VT_I8: *V_I8REF(&arg) = V_I8(typed.get()); return true;
    case VT_R4: *V_R4REF(&arg) = V_R4(typed.get()); return true;
    case VT_R8: *V_R8REF(&arg) = V_R8(typed.get()); return true;
    case VT_CY: *V_CYREF(&arg) = V_CY(typed.get()); return true;
    case VT_DECIMAL: *V_DECIMALREF(&arg) = V_DECIMAL(typed.get()); return true;
    default: return false;
    }
}
} // namespace

ScreenTwips ScreenSizeTwips()
{
    return {static_cast<int32_t>(std::lround(GetSystemMetrics(SM_CXSCREEN) * TwipsPerPixelX())),
            static_cast<int32_t>(std::lround(GetSystemMetrics(SM_CYSCREEN) * TwipsPerPixelY()))};
}

resizelck::resizelck() : imgIcon(L"imgIcon", IDB_TOOLBOX_RESIZELCK) { add_constituent(imgIcon); }

void resizelck::Initialize()
{
    // The defaults, for a caller that never loads the lock (a script's CreateObject).
    ScreenTwips screen = ScreenSizeTwips();
    limits_ = {screen.width, kDefaultMinSize, screen.height, kDefaultMinSize, false};
    SetDesignSize(imgIcon.Width, imgIcon.Height);
    void *child = nullptr;
    if (SUCCEEDED(Subclass::Create(IID_ISubclass, &child)) && child) {
        sbcFORM = ComPtr<Subclass>::attach(static_cast<Subclass *>(static_cast<ISubclass *>(child)));
        sbcFORM->listen(this);
    }
}

void resizelck::Terminate()
{
    // The form keeps its own procedure when the lock goes before it.
    if (!sbcFORM) return;
    sbcFORM->listen(nullptr);
    sbcFORM->set_hwnd(0);
    sbcFORM.reset();
}

// ---------------------------------------------------------------- loading and saving

void resizelck::InitProperties()
{
    // A lock created at run time without a saved form (a script, a form built in code) loads
    // from an empty store: the defaults, and the hook.
    MemoryPropertyBag none;
    load(none);
}

void resizelck::ReadProperties(PropertyBag &bag) { load(bag); }

void resizelck::load(PropertyBag &bag)
{
    ScreenTwips screen = ScreenSizeTwips();
    step([&] { limits_.MaxHeight = bag.read_long(L"MaxHeight", screen.height); });
    step([&] { limits_.MaxWidth = bag.read_long(L"MaxWidth", screen.width); });
    step([&] { limits_.MinHeight = bag.read_long(L"MinHeight", kDefaultMinSize); });
    step([&] { limits_.MinWidth = bag.read_long(L"MinWidth", kDefaultMinSize); });
    step([&] { limits_.HasMaxSize = bag.read_bool(L"HasMaxSize", false); });
    SettleLoadedLimits(limits_, screen);
    // Only at run time, and only here: the form is hooked once, for as long as it lives.
    step([&] {
        if (!UserMode() || !sbcFORM) return;
        HWND form = ParentForm();
        if (!form) return;
        sbcFORM->set_hwnd(reinterpret_cast<LONG_PTR>(form));
        sbcFORM->set_watched(kMsgGetMinMaxInfo, true);
    });
}

void resizelck::WriteProperties(PropertyBag &bag)
{
    ScreenTwips screen = ScreenSizeTwips();
    step([&] { bag.write_long(L"MaxHeight", limits_.MaxHeight, screen.height); });
    step([&] { bag.write_long(L"MaxWidth", limits_.MaxWidth, screen.width); });
    step([&] { bag.write_long(L"MinHeight", limits_.MinHeight, kDefaultMinSize); });
    step([&] { bag.write_long(L"MinWidth", limits_.MinWidth, kDefaultMinSize); });
    step([&] { bag.write_bool(L"HasMaxSize", limits_.HasMaxSize, false); });
}

// ---------------------------------------------------------------- look and the size query

void resizelck::Resize()
{
    bool design = !UserMode();
    imgIcon.Visible = design;
    if (design) SetSizeTwips(imgIcon.Width, imgIcon.Height);
}

void resizelck::Show()
{
    if (shown_) return;
    shown_ = true;
    FillUnsetLimits(limits_, ScreenSizeTwips());
}

void resizelck::AmbientChanged(DISPID id)
{
    if (id != DISPID_AMBIENT_USERMODE) return;
    Resize();
    Invalidate();
}

void resizelck::OnEvent(DISPID id, EventArgs &args)
{
    if (id != subclass_events::WndProc || args.count() != 4) return;
    VARIANT &msg = args.at(0);
    if (V_VT(&msg) != (VT_I4 | VT_BYREF) || *V_I4REF(&msg) != kMsgGetMinMaxInfo) return;
    LongPtr *lparam = LongPtrArg(args.at(2)), *result = LongPtrArg(args.at(3));
    if (!lparam || !result) return;
    if (*lparam) {
        unsigned char record[kMinMaxInfoSize];
        void *info = reinterpret_cast<void *>(*lparam);
        std::memcpy(record, info, sizeof record);
        PatchMinMaxInfo(record, limits_);
        std::memcpy(info, record, sizeof record);
    }
    *result = 0;
}

// ---------------------------------------------------------------- properties

HRESULT resizelck::put_maximum(LONG *v, int32_t &field, int32_t minimum, int32_t screen, const wchar_t *key)
{
    if (!v) return E_POINTER;
    return put_value(key, [&] {
        int32_t value = *v;
        WriteMaximum(limits_, field, minimum, value, screen);
        *v = value; // the caller's variable takes a raised value
    });
}

STDMETHODIMP resizelck::Invoke(DISPID id, REFIID riid, LCID lcid, WORD flags, DISPPARAMS *params, VARIANT *result,
                               EXCEPINFO *excep, UINT *arg_err)
{
    bool put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    if ((id == kMaxHeight || id == kMaxWidth) && put && riid == IID_NULL && params && params->cArgs == 1 &&
        params->rgvarg && ReadableArgument(params->rgvarg[0])) {
        ComPtr<IUnknown> alive(identity());
        return put_maximum_by_dispatch(id, params->rgvarg[0]);
    }
    return ControlImpl::Invoke(id, riid, lcid, flags, params, result, excep, arg_err);
}

HRESULT resizelck::put_maximum_by_dispatch(DISPID id, VARIANT &arg)
{
    Variant given(arg), as_long;
    // A value that cannot be a Long skips the write, as for every other property.
    if (!given.convert(VT_I4, as_long)) return S_OK;
    LONG value = V_I4(as_long.get()), given_value = value;
    HRESULT hr = id == kMaxHeight ? put_MaxHeight(&value) : put_MaxWidth(&value);
    if (value != given_value) step([&] { write_back(arg, value); });
    return hr;
}

STDMETHODIMP resizelck::get_MaxHeight(LONG *v) { return get_value(v, [&] { return limits_.MaxHeight; }); }
STDMETHODIMP resizelck::put_MaxHeight(LONG *v)
{
    return put_maximum(v, limits_.MaxHeight, limits_.MinHeight, ScreenSizeTwips().height, L"MaxHeight");
}
STDMETHODIMP resizelck::get_MaxWidth(LONG *v) { return get_value(v, [&] { return limits_.MaxWidth; }); }
STDMETHODIMP resizelck::put_MaxWidth(LONG *v)
{
    return put_maximum(v, limits_.MaxWidth, limits_.MinWidth, ScreenSizeTwips().width, L"MaxWidth");
}
STDMETHODIMP resizelck::get_MinHeight(LONG *v) { return get_value(v, [&] { return limits_.MinHeight; }); }
STDMETHODIMP resizelck::put_MinHeight(LONG v)
{
    return put_value(L"MinHeight", [&] { limits_.MinHeight = v; });
}
STDMETHODIMP resizelck::get_MinWidth(LONG *v) { return get_value(v, [&] { return limits_.MinWidth; }); }
STDMETHODIMP resizelck::put_MinWidth(LONG v)
{
    return put_value(L"MinWidth", [&] { limits_.MinWidth = v; });
}
STDMETHODIMP resizelck::get_HasMaxSize(VARIANT_BOOL *v)
{
    return get_value(v, [&]() -> VARIANT_BOOL { return limits_.HasMaxSize ? VARIANT_TRUE : VARIANT_FALSE; });
}
STDMETHODIMP resizelck::put_HasMaxSize(VARIANT_BOOL v)
{
    return put_value(L"HasMaxSize", [&] {
        limits_.HasMaxSize = v != VARIANT_FALSE;
        if (!limits_.HasMaxSize) {
            ScreenTwips screen = ScreenSizeTwips();
            limits_.MaxHeight = screen.height;
            limits_.MaxWidth = screen.width;
        }
    });
}

} // namespace tarn
