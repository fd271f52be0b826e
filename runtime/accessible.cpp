#include "runtime/accessible.h"

#include "runtime/accessible_base.h"
#include "runtime/guarded.h"

#include <new>

namespace tarn {

class AccessibleObject final : public AccessibleBase {
public:
    AccessibleObject(HWND hwnd, AccessibleOwner *owner) : owner_(owner)
    {
        CreateStdAccessibleObject(hwnd, OBJID_CLIENT, IID_IAccessible, standard_.put_void());
    }
    void disconnect()
    {
        owner_ = nullptr;
        standard_.reset();
    }

    // IAccessible: what the control says of itself.
    STDMETHODIMP get_accName(VARIANT child, BSTR *out) override
    {
        return own_or_standard(child, out, [&] { return owner_->accessible_name(); },
                               [&](IAccessible *s) { return s->get_accName(child, out); });
    }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR *out) override
    {
        return own_or_standard(child, out, [&] { return owner_->accessible_shortcut(); },
                               [&](IAccessible *s) { return s->get_accKeyboardShortcut(child, out); });
    }
    STDMETHODIMP get_accDescription(VARIANT child, BSTR *out) override
    {
        return own_or_standard(child, out, [&] { return owner_->accessible_description(); },
                               [&](IAccessible *s) { return s->get_accDescription(child, out); });
    }
    STDMETHODIMP get_accRole(VARIANT child, VARIANT *out) override
    {
        return own_long(child, out, [&] { return owner_->accessible_role(); });
    }
    STDMETHODIMP get_accState(VARIANT child, VARIANT *out) override
    {
        return own_long(child, out, [&] { return owner_->accessible_state(); });
    }
    STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR *out) override
    {
        return own_string(child, out, [&] { return owner_->accessible_default_action(); });
    }
    STDMETHODIMP accDoDefaultAction(VARIANT child) override
    {
        if (!is_self(child)) return E_INVALIDARG;
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        return guarded([&] {
            owner_->accessible_do_default();
            return S_OK;
        });
    }
    STDMETHODIMP get_accValue(VARIANT child, BSTR *out) override
    {
        return own_string(child, out, [&] { return owner_->accessible_value(); });
    }
    STDMETHODIMP get_accChildCount(long *out) override
    {
        if (!out) return E_POINTER;
        *out = 0;
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        return guarded([&] {
            *out = owner_->accessible_child_count();
            return S_OK;
        });
    }
    STDMETHODIMP get_accChild(VARIANT child, IDispatch **out) override
    {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        if (V_VT(&child) != VT_I4) return E_INVALIDARG;
        return guarded([&] {
            *out = owner_->accessible_child(V_I4(&child)).detach();
            return *out ? S_OK : S_FALSE;
        });
    }
    STDMETHODIMP get_accFocus(VARIANT *out) override
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        HRESULT own = guarded([&] { return owner_->accessible_focus(out) ? S_OK : S_FALSE; });
        if (own == S_OK) return S_OK;
        return std_variant(out, [&](IAccessible *s) { return s->get_accFocus(out); });
    }

    // The rest: the standard object of the window.
    STDMETHODIMP get_accParent(IDispatch **out) override { return std_call(out, [&](IAccessible *s) { return s->get_accParent(out); }); }
    STDMETHODIMP get_accHelp(VARIANT c, BSTR *out) override { return std_call(out, [&](IAccessible *s) { return s->get_accHelp(c, out); }); }
    STDMETHODIMP get_accHelpTopic(BSTR *file, VARIANT c, long *topic) override
    {
        return std_call(file, [&](IAccessible *s) { return s->get_accHelpTopic(file, c, topic); });
    }
    STDMETHODIMP get_accSelection(VARIANT *out) override { return std_variant(out, [&](IAccessible *s) { return s->get_accSelection(out); }); }
    STDMETHODIMP accSelect(long flags, VARIANT c) override { return std_plain([&](IAccessible *s) { return s->accSelect(flags, c); }); }
    STDMETHODIMP accLocation(long *x, long *y, long *w, long *h, VARIANT c) override
    {
        return std_plain([&](IAccessible *s) { return s->accLocation(x, y, w, h, c); });
    }
    STDMETHODIMP accNavigate(long dir, VARIANT start, VARIANT *out) override
    {
        return std_variant(out, [&](IAccessible *s) { return s->accNavigate(dir, start, out); });
    }
    STDMETHODIMP accHitTest(long x, long y, VARIANT *out) override
    {
        return std_variant(out, [&](IAccessible *s) { return s->accHitTest(x, y, out); });
    }
private:

    template <class F> HRESULT own_string(const VARIANT &child, BSTR *out, F &&read)
    {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (!is_self(child)) return E_INVALIDARG;
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        return guarded([&] {
            std::wstring s = read();
            if (s.empty()) return S_FALSE;
            *out = to_bstr(s);
            return *out ? S_OK : E_OUTOFMEMORY;
        });
    }
    template <class F> HRESULT own_long(const VARIANT &child, VARIANT *out, F &&read)
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        if (!is_self(child)) return E_INVALIDARG;
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        return guarded([&] {
            V_VT(out) = VT_I4;
            V_I4(out) = read();
            return S_OK;
        });
    }
    // The owner's text, or the standard object's when the owner has none.
    template <class F, class G> HRESULT own_or_standard(const VARIANT &child, BSTR *out, F &&read, G &&standard)
    {
        HRESULT hr = own_string(child, out, read);
        if (hr != S_FALSE) return hr;
        return standard_ ? guarded([&] { return standard(standard_.get()); }) : S_FALSE;
    }
    template <class T, class F> HRESULT std_call(T **out, F &&call)
    {
        if (out) *out = nullptr;
        return std_plain(call);
    }
    template <class F> HRESULT std_variant(VARIANT *out, F &&call)
    {
        if (out) VariantInit(out);
        return std_plain(call);
    }
    template <class F> HRESULT std_plain(F &&call)
    {
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        if (!standard_) return E_NOTIMPL;
        return guarded([&] { return call(standard_.get()); });
    }

    AccessibleOwner *owner_;
    ComPtr<IAccessible> standard_;
};

LRESULT AccessibleLink::answer(HWND hwnd, WPARAM wp, LPARAM lp, AccessibleOwner &owner, bool &handled)
{
    handled = false;
    if (static_cast<LONG>(lp) != static_cast<LONG>(OBJID_CLIENT)) return 0;
    if (!object_) object_ = new (std::nothrow) AccessibleObject(hwnd, &owner);
    if (!object_) return 0;
    handled = true;
    return LresultFromObject(IID_IAccessible, wp, static_cast<IAccessible *>(object_));
}

void AccessibleLink::notify(HWND hwnd, DWORD event)
{
    if (object_ && hwnd) NotifyWinEvent(event, hwnd, OBJID_CLIENT, CHILDID_SELF);
}

void AccessibleLink::disconnect()
{
    if (!object_) return;
    object_->disconnect();
    object_->Release();
    object_ = nullptr;
}

} // namespace tarn
