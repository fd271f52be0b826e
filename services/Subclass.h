// Subclass (TarnControls.Subclass, private to the library): hooks the window procedure of the
// window given in `hwnd` through the library's shared hook table, raises WndProc for each
// message listed in `Messages`, and lets every other message through to the window's previous
// procedure unchanged. `CallWndProc` hands a message to that previous procedure by hand.
//
// While a window is hooked the table holds a reference to the instance, so it lives until the
// hook ends: `hwnd` = 0, the window's WM_NCDESTROY, or its termination.
#pragma once
#include <cstdint>
#include <type_traits>
#include <vector>

#include "foundation/hook_table.h"
#include "runtime/control_impl.h"
#include "tarnctls_h.h"

namespace tarn {

// LONG_PTR as the events carry it: 32 bits in the 32-bit build, 64 in the 64-bit one.
using LongPtr = std::conditional_t<sizeof(void *) == 8, int64_t, int32_t>;

namespace subclass_events {
constexpr DISPID WndProc = 1; // (Msg, wParam, lParam, Result), all by reference
}

// A LONG_PTR by-reference argument of WndProc as a C++ listener finds it; null for anything else.
inline LongPtr *LongPtrArg(VARIANT &arg)
{
    constexpr VARTYPE kind = (sizeof(LongPtr) == 8 ? VT_I8 : VT_I4) | VT_BYREF;
    return V_VT(&arg) == kind ? static_cast<LongPtr *>(V_BYREF(&arg)) : nullptr;
}

class Subclass final : public ControlImpl<Subclass, ISubclass>, public HookOwner {
public:
    static const ControlClass Class;

    // ISubclass
    STDMETHODIMP get_hwnd(OLE_HANDLE *value) override;
    STDMETHODIMP put_hwnd(OLE_HANDLE value) override;
    STDMETHODIMP get_Messages(LONG Msg, VARIANT_BOOL *value) override;
    STDMETHODIMP put_Messages(LONG Msg, VARIANT_BOOL value) override;
    STDMETHODIMP CallWndProc(LONG Msg, LONG_PTR wParam, LONG_PTR lParam, LONG_PTR *result) override;

    // The same members for a control that holds one in C++.
    LONG_PTR hwnd() const { return hwnd_; }
    void set_hwnd(LONG_PTR value);
    bool watches(int32_t msg) const;
    void set_watched(int32_t msg, bool watched);

    // HookOwner: how the shared hook table sees the instance.
    void HookAddRef() override { AddRef(); }
    void HookRelease() override { Release(); }
    bool HookWatches(uint32_t msg) override { return watches(static_cast<int32_t>(msg)); }
    HookResult HookMessage(uint32_t msg, uintptr_t wp, intptr_t lp) override;
    void HookWindowGone() override { set_hwnd(0); }

protected:
    void Terminate() override;
    bool CanGetFocus() const override { return false; }

private:
    LONG_PTR hwnd_ = 0;
    std::vector<int32_t> messages_; // watched message numbers, in the order they were added
};

} // namespace tarn
