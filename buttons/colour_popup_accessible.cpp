#include "buttons/colour_popup_accessible.h"

#include <oleacc.h>

#include <new>
#include <string>

#include "buttons/colour_popup.h"
#include "runtime/com.h"
#include "runtime/accessible_base.h"
#include "runtime/guarded.h"

namespace tarn {

namespace {

// Child ids: 1 lblCbtn1, 2 .. cells + 1 the cells, cells + 2 lblCUSTOM.
int32_t item_of(long child, int32_t cells)
{
    if (child == 1) return popup_item::Doc;
    if (child >= 2 && child <= cells + 1) return child - 2;
    if (child == cells + 2) return popup_item::Custom;
    return popup_item::None;
}

long child_of(int32_t item, int32_t cells)
{
    if (item == popup_item::Doc) return 1;
    if (item == popup_item::Custom) return cells + 2;
    return item >= 0 && item < cells ? item + 2 : CHILDID_SELF;
}

void set_i4(VARIANT *out, long v)
{
    V_VT(out) = VT_I4;
    V_I4(out) = v;
}

} // namespace

class PopupAccessibleObject final : public AccessibleBase {
public:
    PopupAccessibleObject(HWND hwnd, ColourPopup *popup) : hwnd_(hwnd), popup_(popup)
    {
        CreateStdAccessibleObject(hwnd, OBJID_CLIENT, IID_IAccessible, standard_.put_void());
    }
    void disconnect()
    {
        popup_ = nullptr;
        standard_.reset();
    }
    STDMETHODIMP get_accParent(IDispatch **out) override
    {
        if (!out) return E_POINTER;
        *out = nullptr;
        return standard([&](IAccessible *s) { return s->get_accParent(out); });
    }
    STDMETHODIMP get_accChildCount(long *out) override
    {
        if (!out) return E_POINTER;
        *out = 0;
        return with_popup([&] {
            *out = cells() + 2;
            return S_OK;
        });
    }
    STDMETHODIMP get_accChild(VARIANT, IDispatch **out) override
    {
        if (!out) return E_POINTER;
        *out = nullptr;
        return S_FALSE; // the items are simple elements
    }
    STDMETHODIMP get_accName(VARIANT child, BSTR *out) override
    {
        return text(child, out, [&](int32_t item) {
            return item == popup_item::None ? std::wstring(L"Colours") : popup_->ItemName(item);
        });
    }
    STDMETHODIMP get_accValue(VARIANT child, BSTR *out) override { return nothing(child, out); }
    STDMETHODIMP get_accDescription(VARIANT child, BSTR *out) override { return nothing(child, out); }
    STDMETHODIMP get_accHelp(VARIANT child, BSTR *out) override { return nothing(child, out); }
    STDMETHODIMP get_accHelpTopic(BSTR *file, VARIANT, long *topic) override
    {
        if (file) *file = nullptr;
        if (topic) *topic = 0;
        return S_FALSE;
    }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR *out) override { return nothing(child, out); }
    STDMETHODIMP get_accRole(VARIANT child, VARIANT *out) override
    {
        return number(child, out, [&](int32_t item) { return item == popup_item::None ? ROLE_SYSTEM_LIST : ROLE_SYSTEM_LISTITEM; });
    }
    STDMETHODIMP get_accState(VARIANT child, VARIANT *out) override
    {
        return number(child, out, [&](int32_t item) -> long {
            if (item == popup_item::None) return IsWindowVisible(hwnd_) ? 0 : STATE_SYSTEM_INVISIBLE;
            long state = STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_FOCUSABLE;
            if (popup_->Active() == item) state |= STATE_SYSTEM_FOCUSED;
            if (popup_->IsSelected(item)) state |= STATE_SYSTEM_SELECTED;
            return state;
        });
    }
    STDMETHODIMP get_accFocus(VARIANT *out) override { return one_child(out, [&] { return popup_->Active(); }); }
    STDMETHODIMP get_accSelection(VARIANT *out) override { return one_child(out, [&] { return popup_->SelectedItem(); }); }
    STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR *out) override
    {
        return text(child, out, [&](int32_t item) { return item == popup_item::None ? std::wstring() : std::wstring(L"Choose"); });
    }
    STDMETHODIMP accSelect(long, VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP accLocation(long *x, long *y, long *w, long *h, VARIANT child) override
    {
        if (!x || !y || !w || !h) return E_POINTER;
        *x = *y = *w = *h = 0;
        int32_t item = popup_item::None;
        if (HRESULT hr = resolve(child, item); hr != S_OK) return hr;
        if (item == popup_item::None) return standard([&](IAccessible *s) { return s->accLocation(x, y, w, h, child); });
        return guarded([&] {
            PxRect r = popup_->Layout().item(item);
            POINT at{r.left, r.top};
            ClientToScreen(hwnd_, &at);
            *x = at.x;
            *y = at.y;
            *w = r.right - r.left;
            *h = r.bottom - r.top;
            return S_OK;
        });
    }
    STDMETHODIMP accNavigate(long dir, VARIANT start, VARIANT *out) override
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        int32_t item = popup_item::None;
        if (HRESULT hr = resolve(start, item); hr != S_OK) return hr;
        const long last = cells() + 2, from = child_of(item, cells());
        long to = 0;
        if (item == popup_item::None) {
            if (dir == NAVDIR_FIRSTCHILD) to = 1;
            else if (dir == NAVDIR_LASTCHILD) to = last;
            else return standard([&](IAccessible *s) { return s->accNavigate(dir, start, out); });
        } else if (dir == NAVDIR_NEXT || dir == NAVDIR_DOWN || dir == NAVDIR_RIGHT) {
            to = from + 1;
        } else if (dir == NAVDIR_PREVIOUS || dir == NAVDIR_UP || dir == NAVDIR_LEFT) {
            to = from - 1;
        }
        if (to < 1 || to > last) return S_FALSE;
        set_i4(out, to);
        return S_OK;
    }
    STDMETHODIMP accHitTest(long x, long y, VARIANT *out) override
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        return with_popup([&] {
            POINT p{x, y};
            ScreenToClient(hwnd_, &p);
            RECT client{};
            GetClientRect(hwnd_, &client);
            if (!PtInRect(&client, p)) return S_FALSE;
            set_i4(out, child_of(popup_->ItemAt(p.x, p.y), cells()));
            return S_OK;
        });
    }
    STDMETHODIMP accDoDefaultAction(VARIANT child) override
    {
        int32_t item = popup_item::None;
        if (HRESULT hr = resolve(child, item); hr != S_OK) return hr;
        if (item == popup_item::None) return DISP_E_MEMBERNOTFOUND;
        return guarded([&] {
            popup_->Choose(item);
            return S_OK;
        });
    }

private:
    int32_t cells() const { return static_cast<int32_t>(popup_->palette().cells.size()); }

    template <class F> HRESULT with_popup(F &&f)
    {
        if (!popup_) return CO_E_OBJNOTCONNECTED;
        return guarded(f);
    }
    // The item a child id names (None for the list itself); E_INVALIDARG for no such child.
    HRESULT resolve(const VARIANT &child, int32_t &item)
    {
        if (!popup_) return CO_E_OBJNOTCONNECTED;
        if (V_VT(&child) != VT_I4) return E_INVALIDARG;
        if (V_I4(&child) == CHILDID_SELF) {
            item = popup_item::None;
            return S_OK;
        }
        item = item_of(V_I4(&child), cells());
        return item == popup_item::None ? E_INVALIDARG : S_OK;
    }
    template <class F> HRESULT text(const VARIANT &child, BSTR *out, F &&read)
    {
        if (!out) return E_POINTER;
        *out = nullptr;
        int32_t item = popup_item::None;
        if (HRESULT hr = resolve(child, item); hr != S_OK) return hr;
        return guarded([&] {
            std::wstring s = read(item);
            if (s.empty()) return S_FALSE;
            *out = SysAllocStringLen(s.data(), static_cast<UINT>(s.size()));
            return *out ? S_OK : E_OUTOFMEMORY;
        });
    }
    HRESULT nothing(const VARIANT &child, BSTR *out)
    {
        return text(child, out, [](int32_t) { return std::wstring(); });
    }
    template <class F> HRESULT number(const VARIANT &child, VARIANT *out, F &&read)
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        int32_t item = popup_item::None;
        if (HRESULT hr = resolve(child, item); hr != S_OK) return hr;
        return guarded([&] {
            set_i4(out, read(item));
            return S_OK;
        });
    }
    template <class F> HRESULT one_child(VARIANT *out, F &&item)
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        return with_popup([&] {
            long child = child_of(item(), cells());
            if (child == CHILDID_SELF) return S_FALSE;
            set_i4(out, child);
            return S_OK;
        });
    }
    // The system's object for the window answers for the list itself.
    template <class F> HRESULT standard(F &&call)
    {
        if (!popup_) return CO_E_OBJNOTCONNECTED;
        if (!standard_) return E_NOTIMPL;
        return guarded([&] { return call(standard_.get()); });
    }

    HWND hwnd_;
    ColourPopup *popup_;
    ComPtr<IAccessible> standard_;
};

LRESULT PopupAccessible::answer(HWND hwnd, WPARAM wp, LPARAM lp, ColourPopup &popup, bool &handled)
{
    handled = false;
    if (static_cast<LONG>(lp) != static_cast<LONG>(OBJID_CLIENT)) return 0;
    if (!object_) object_ = new (std::nothrow) PopupAccessibleObject(hwnd, &popup);
    if (!object_) return 0;
    handled = true;
    return LresultFromObject(IID_IAccessible, wp, static_cast<IAccessible *>(object_));
}

void PopupAccessible::focus_moved(HWND hwnd, int32_t item, int32_t cells)
{
    long child = child_of(item, cells);
    if (object_ && hwnd && child != CHILDID_SELF) NotifyWinEvent(EVENT_OBJECT_FOCUS, hwnd, OBJID_CLIENT, child);
}

void PopupAccessible::disconnect()
{
    if (!object_) return;
    object_->disconnect();
    object_->Release();
    object_ = nullptr;
}

} // namespace tarn
