#include "runtime/accessible.h"

#include "foundation/trap.h"
#include "runtime/accessible_base.h"
#include "runtime/guarded.h"

#include <new>

namespace tarn {

class AccessibleObject final : public AccessibleBase {
public:
    AccessibleObject(HWND hwnd, AccessibleOwner *owner) : owner_(owner), hwnd_(hwnd)
    {
        CreateStdAccessibleObject(hwnd, OBJID_CLIENT, IID_IAccessible, standard_.put_void());
    }
    HWND window() const { return hwnd_; }
    void disconnect()
    {
        owner_ = nullptr;
        standard_.reset();
    }

    // IAccessible: what the control says of itself and of its simple children; questions about
    // a child with an object of its own go to that object.
    STDMETHODIMP get_accName(VARIANT child, BSTR *out) override
    {
        HRESULT hr;
        if (to_object(child, hr, [&](IAccessible *o, VARIANT self) { return o->get_accName(self, out); })) return hr;
        return own_or_standard(child, out, [&] { return owner_->accessible_name(); },
                               [](const AccessibleElement &e) { return e.name; },
                               [&](IAccessible *s) { return s->get_accName(child, out); });
    }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR *out) override
    {
        HRESULT hr;
        if (to_object(child, hr, [&](IAccessible *o, VARIANT self) { return o->get_accKeyboardShortcut(self, out); })) return hr;
        return own_or_standard(child, out, [&] { return owner_->accessible_shortcut(); },
                               [](const AccessibleElement &e) { return e.shortcut; },
                               [&](IAccessible *s) { return s->get_accKeyboardShortcut(child, out); });
    }
    STDMETHODIMP get_accDescription(VARIANT child, BSTR *out) override
    {
        HRESULT hr;
        if (to_object(child, hr, [&](IAccessible *o, VARIANT self) { return o->get_accDescription(self, out); })) return hr;
        return own_or_standard(child, out, [&] { return owner_->accessible_description(); },
                               [](const AccessibleElement &) { return std::wstring(); },
                               [&](IAccessible *s) { return s->get_accDescription(child, out); });
    }
    STDMETHODIMP get_accRole(VARIANT child, VARIANT *out) override
    {
        HRESULT hr;
        if (to_object(child, hr, [&](IAccessible *o, VARIANT self) { return o->get_accRole(self, out); })) return hr;
        return own_long(child, out, [&] { return owner_->accessible_role(); },
                        [](const AccessibleElement &e) { return e.role; });
    }
    STDMETHODIMP get_accState(VARIANT child, VARIANT *out) override
    {
        HRESULT hr;
        if (to_object(child, hr, [&](IAccessible *o, VARIANT self) { return o->get_accState(self, out); })) return hr;
        return own_long(child, out, [&] { return owner_->accessible_state(); },
                        [](const AccessibleElement &e) { return e.state; });
    }
    STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR *out) override
    {
        HRESULT hr;
        if (to_object(child, hr, [&](IAccessible *o, VARIANT self) { return o->get_accDefaultAction(self, out); })) return hr;
        return own_string(child, out, [&] { return owner_->accessible_default_action(); },
                          [](const AccessibleElement &e) { return e.default_action; });
    }
    STDMETHODIMP accDoDefaultAction(VARIANT child) override
    {
        HRESULT hr;
        if (to_object(child, hr, [&](IAccessible *o, VARIANT self) { return o->accDoDefaultAction(self); })) return hr;
        long id = child_of(child);
        if (id < 0) return E_INVALIDARG;
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        return guarded([&] {
            if (id == CHILDID_SELF) owner_->accessible_do_default();
            else owner_->accessible_child_do_default(id);
            return S_OK;
        });
    }
    STDMETHODIMP get_accValue(VARIANT child, BSTR *out) override
    {
        HRESULT hr;
        if (to_object(child, hr, [&](IAccessible *o, VARIANT self) { return o->get_accValue(self, out); })) return hr;
        return own_string(child, out, [&] { return owner_->accessible_value(); },
                          [](const AccessibleElement &) { return std::wstring(); });
    }
    STDMETHODIMP get_accChildCount(long *out) override
    {
        if (!out) return E_POINTER;
        *out = 0;
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        return guarded([&] {
            *out = count();
            return S_OK;
        });
    }
    STDMETHODIMP get_accChild(VARIANT child, IDispatch **out) override
    {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        long id = child_of(child);
        if (id <= 0) return E_INVALIDARG;
        return guarded([&] {
            *out = owner_->accessible_child_object(id).detach();
            return *out ? S_OK : S_FALSE; // S_FALSE: a simple child
        });
    }
    STDMETHODIMP accLocation(long *x, long *y, long *w, long *h, VARIANT c) override
    {
        HRESULT hr;
        if (to_object(c, hr, [&](IAccessible *o, VARIANT self) { return o->accLocation(x, y, w, h, self); })) return hr;
        long id = child_of(c);
        if (id <= 0) return std_plain([&](IAccessible *s) { return s->accLocation(x, y, w, h, c); });
        if (!x || !y || !w || !h) return E_POINTER;
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        return guarded([&] {
            AccessibleElement e;
            if (!owner_->accessible_child(id, e)) return E_INVALIDARG;
            POINT corner{e.rect.left, e.rect.top};
            ClientToScreen(hwnd_, &corner);
            *x = corner.x;
            *y = corner.y;
            *w = e.rect.right - e.rect.left;
            *h = e.rect.bottom - e.rect.top;
            return S_OK;
        });
    }
    STDMETHODIMP accHitTest(long x, long y, VARIANT *out) override
    {
        HRESULT hr = std_variant(out, [&](IAccessible *s) { return s->accHitTest(x, y, out); });
        if (hr != S_OK || V_VT(out) != VT_I4 || V_I4(out) != CHILDID_SELF) return hr;
        // Within the window: one of the children when the point is on it.
        return guarded([&] {
            POINT p{x, y};
            ScreenToClient(hwnd_, &p);
            for (long id = 1, n = count(); id <= n; ++id) {
                AccessibleElement e;
                if (owner_->accessible_child(id, e) && PtInRect(&e.rect, p)) {
                    V_I4(out) = id;
                    break;
                }
            }
            return S_OK;
        });
    }
    STDMETHODIMP accNavigate(long dir, VARIANT start, VARIANT *out) override
    {
        long id = child_of(start), n = owner_ ? read_step<long>([&] { return count(); }) : 0;
        if (n == 0 || id < 0) return std_variant(out, [&](IAccessible *s) { return s->accNavigate(dir, start, out); });
        if (!out) return E_POINTER;
        VariantInit(out);
        long to = 0;
        if (id == CHILDID_SELF) {
            if (dir == NAVDIR_FIRSTCHILD) to = 1;
            else if (dir == NAVDIR_LASTCHILD) to = n;
            else return std_variant(out, [&](IAccessible *s) { return s->accNavigate(dir, start, out); });
        } else if (dir == NAVDIR_NEXT || dir == NAVDIR_RIGHT || dir == NAVDIR_DOWN) {
            to = id + 1;
        } else if (dir == NAVDIR_PREVIOUS || dir == NAVDIR_LEFT || dir == NAVDIR_UP) {
            to = id - 1;
        }
        if (to < 1 || to > n) return S_FALSE;
        return guarded([&] { return child_variant(to, out); });
    }
    STDMETHODIMP get_accFocus(VARIANT *out) override
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        HRESULT own = guarded([&] { return owner_->accessible_focus(out) ? S_OK : S_FALSE; });
        if (own == S_OK) return S_OK;
        VariantClear(out);
        return std_variant(out, [&](IAccessible *s) { return s->get_accFocus(out); });
    }
    STDMETHODIMP get_accSelection(VARIANT *out) override
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        long id = read_step<long>([&] { return owner_->accessible_selected_child(); }, CHILDID_SELF);
        if (id == CHILDID_SELF) return std_variant(out, [&](IAccessible *s) { return s->get_accSelection(out); });
        return guarded([&] { return child_variant(id, out); });
    }

    // The rest: the standard object of the window.
    STDMETHODIMP get_accParent(IDispatch **out) override { return std_call(out, [&](IAccessible *s) { return s->get_accParent(out); }); }
    STDMETHODIMP get_accHelp(VARIANT c, BSTR *out) override { return std_call(out, [&](IAccessible *s) { return s->get_accHelp(c, out); }); }
    STDMETHODIMP get_accHelpTopic(BSTR *file, VARIANT c, long *topic) override
    {
        return std_call(file, [&](IAccessible *s) { return s->get_accHelpTopic(file, c, topic); });
    }
    STDMETHODIMP accSelect(long flags, VARIANT c) override { return std_plain([&](IAccessible *s) { return s->accSelect(flags, c); }); }
private:
    long count() { return owner_ ? owner_->accessible_child_count() : 0; }
    // Child `id` as clients take it back: its object when it has one, else its number.
    HRESULT child_variant(long id, VARIANT *out)
    {
        if (ComPtr<IDispatch> object = owner_->accessible_child_object(id)) {
            V_VT(out) = VT_DISPATCH;
            V_DISPATCH(out) = object.detach();
        } else {
            V_VT(out) = VT_I4;
            V_I4(out) = id;
        }
        return S_OK;
    }
    // Hands a question about a child with an object of its own to that object (as a question
    // about itself); false for the control itself and its simple children.
    template <class F> bool to_object(const VARIANT &child, HRESULT &hr, F &&call)
    {
        const long id = owner_ ? child_of(child) : -1;
        if (id <= 0) return false; // the control itself, or no child of it
        ComPtr<IAccessible> object;
        step([&] {
            if (ComPtr<IDispatch> d = owner_->accessible_child_object(id))
                d->QueryInterface(IID_IAccessible, object.put_void());
        });
        if (!object) return false;
        VARIANT self;
        V_VT(&self) = VT_I4;
        V_I4(&self) = CHILDID_SELF;
        hr = guarded([&] { return call(object.get(), self); });
        return true;
    }
    // The child a VARIANT names: CHILDID_SELF, a child's number, or -1 for anything else.
    long child_of(const VARIANT &child)
    {
        if (V_VT(&child) != VT_I4) return -1;
        long id = V_I4(&child);
        if (id == CHILDID_SELF) return id;
        long n = read_step<long>([&] { return count(); });
        return id >= 1 && id <= n ? id : -1;
    }

    template <class Self, class Child> HRESULT own_string(const VARIANT &child, BSTR *out, Self &&self, Child &&of_child)
    {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        long id = child_of(child);
        if (id < 0) return E_INVALIDARG;
        return guarded([&] {
            std::wstring s;
            if (id == CHILDID_SELF) {
                s = self();
            } else {
                AccessibleElement e;
                if (!owner_->accessible_child(id, e)) return E_INVALIDARG;
                s = of_child(e);
            }
            if (s.empty()) return S_FALSE;
            *out = to_bstr(s);
            return *out ? S_OK : E_OUTOFMEMORY;
        });
    }
    template <class Self, class Child> HRESULT own_long(const VARIANT &child, VARIANT *out, Self &&self, Child &&of_child)
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        if (!owner_) return CO_E_OBJNOTCONNECTED;
        long id = child_of(child);
        if (id < 0) return E_INVALIDARG;
        return guarded([&] {
            long v = 0;
            if (id == CHILDID_SELF) {
                v = self();
            } else {
                AccessibleElement e;
                if (!owner_->accessible_child(id, e)) return E_INVALIDARG;
                v = of_child(e);
            }
            V_VT(out) = VT_I4;
            V_I4(out) = v;
            return S_OK;
        });
    }
    // The owner's text for itself, or the standard object's when the owner has none; a
    // child's from its element.
    template <class Self, class Child, class G>
    HRESULT own_or_standard(const VARIANT &child, BSTR *out, Self &&self, Child &&of_child, G &&standard)
    {
        HRESULT hr = own_string(child, out, self, of_child);
        if (hr != S_FALSE || child_of(child) != CHILDID_SELF) return hr;
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
    HWND hwnd_;
    ComPtr<IAccessible> standard_;
};

LRESULT AccessibleLink::answer(HWND hwnd, WPARAM wp, LPARAM lp, AccessibleOwner &owner, bool &handled)
{
    handled = false;
    if (static_cast<LONG>(lp) != static_cast<LONG>(OBJID_CLIENT)) return 0;
    // A control's window is made again after it was deactivated: the object follows it.
    if (object_ && object_->window() != hwnd) disconnect();
    if (!object_) object_ = new (std::nothrow) AccessibleObject(hwnd, &owner);
    if (!object_) return 0;
    handled = true;
    return LresultFromObject(IID_IAccessible, wp, static_cast<IAccessible *>(object_));
}

void AccessibleLink::notify(HWND hwnd, DWORD event, long child)
{
    if (object_ && hwnd) NotifyWinEvent(event, hwnd, OBJID_CLIENT, child);
}

void AccessibleLink::disconnect()
{
    if (!object_) return;
    object_->disconnect();
    object_->Release();
    object_ = nullptr;
}

} // namespace tarn
