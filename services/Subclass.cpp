#include "services/Subclass.h"

#include <algorithm>

#include "foundation/window_hooks.h"

namespace tarn {

const ControlClass Subclass::Class = {
    L"Subclass",
    L"Tarn Controls window hook service",
    &CLSID_Subclass,
    &IID_ISubclass,
    &DIID_ISubclassEvents,
    OLEMISC_INVISIBLEATRUNTIME | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_NOUIACTIVATE,
    &Subclass::Create,
};

void Subclass::set_hwnd(LONG_PTR value)
{
    if (value == hwnd_) return;
    if (hwnd_) UnhookWindow(reinterpret_cast<HWND>(hwnd_));
    hwnd_ = value;
    if (hwnd_) HookWindow(reinterpret_cast<HWND>(hwnd_), this);
}

bool Subclass::watches(int32_t msg) const { return std::find(messages_.begin(), messages_.end(), msg) != messages_.end(); }

void Subclass::set_watched(int32_t msg, bool watched)
{
    auto at = std::find(messages_.begin(), messages_.end(), msg);
    if (watched && at == messages_.end()) messages_.push_back(msg);
    else if (!watched && at != messages_.end()) messages_.erase(at);
}

HookResult Subclass::HookMessage(uint32_t msg, uintptr_t wp, intptr_t lp)
{
    // The handler's arguments are its own to change; only what it leaves in the result counts.
    int32_t m = static_cast<int32_t>(msg);
    LongPtr w = static_cast<LongPtr>(wp), l = static_cast<LongPtr>(lp), result = 0;
    step([&] { raise(subclass_events::WndProc, EventArgs().ref(m).ref(w).ref(l).ref(result)); });
    return result;
}

void Subclass::Terminate()
{
    if (hwnd_) UnhookWindow(reinterpret_cast<HWND>(hwnd_));
    hwnd_ = 0;
}

// ---------------------------------------------------------------- ISubclass

STDMETHODIMP Subclass::get_hwnd(OLE_HANDLE *v)
{
    return get_value(v, [&] { return to_ole_handle(reinterpret_cast<HWND>(hwnd_)); });
}
STDMETHODIMP Subclass::put_hwnd(OLE_HANDLE v)
{
    step([&] { set_hwnd(reinterpret_cast<LONG_PTR>(from_ole_handle(v))); });
    return S_OK;
}

STDMETHODIMP Subclass::get_Messages(LONG msg, VARIANT_BOOL *v)
{
    return get_value(v, [&]() -> VARIANT_BOOL { return watches(msg) ? VARIANT_TRUE : VARIANT_FALSE; });
}
STDMETHODIMP Subclass::put_Messages(LONG msg, VARIANT_BOOL v)
{
    step([&] { set_watched(msg, v != VARIANT_FALSE); });
    return S_OK;
}

STDMETHODIMP Subclass::CallWndProc(LONG msg, LONG_PTR wp, LONG_PTR lp, LONG_PTR *result)
{
    return get_value(result, [&]() -> LONG_PTR {
        if (!hwnd_) return 0;
        return CallPreviousWndProc(reinterpret_cast<HWND>(hwnd_), static_cast<UINT>(msg), static_cast<WPARAM>(wp),
                                   static_cast<LPARAM>(lp));
    });
}

} // namespace tarn
