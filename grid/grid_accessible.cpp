#include "grid/grid_accessible.h"

#include "runtime/accessible_base.h"
#include "runtime/guarded.h"

#include <new>

namespace tarn {

namespace {

class GridPart final : public AccessibleBase {
public:
    GridPart(GridAccessSource *source, ComPtr<IUnknown> keep, int32_t row, int32_t col)
        : source_(source), keep_(std::move(keep)), row_(row), col_(col)
    {
    }

    STDMETHODIMP get_accParent(IDispatch **out) override
    {
        if (!out) return E_POINTER;
        *out = nullptr;
        return guarded([&] {
            *out = (is_row() ? source_->AccessTable() : MakeGridAccessible(source_, keep_, row_, -1)).detach();
            return *out ? S_OK : S_FALSE;
        });
    }
    STDMETHODIMP get_accChildCount(long *out) override
    {
        if (!out) return E_POINTER;
        return guarded([&] {
            *out = is_row() ? source_->AccessCols() : 0;
            return S_OK;
        });
    }
    STDMETHODIMP get_accChild(VARIANT child, IDispatch **out) override
    {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (V_VT(&child) != VT_I4) return E_INVALIDARG;
        if (!is_row()) return E_INVALIDARG;
        return guarded([&] {
            const long id = V_I4(&child);
            if (id < 1 || id > source_->AccessCols()) return E_INVALIDARG;
            *out = MakeGridAccessible(source_, keep_, row_, id - 1).detach();
            return S_OK;
        });
    }
    STDMETHODIMP get_accName(VARIANT child, BSTR *out) override
    {
        return text(child, out, [&] { return source_->AccessText(row_, is_row() ? 0 : col_); });
    }
    STDMETHODIMP get_accValue(VARIANT child, BSTR *out) override
    {
        return text(child, out, [] { return std::wstring(); });
    }
    STDMETHODIMP get_accDescription(VARIANT child, BSTR *out) override
    {
        return text(child, out, [] { return std::wstring(); });
    }
    STDMETHODIMP get_accHelp(VARIANT child, BSTR *out) override
    {
        return text(child, out, [] { return std::wstring(); });
    }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR *out) override
    {
        return text(child, out, [] { return std::wstring(); });
    }
    STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR *out) override
    {
        return text(child, out, [] { return std::wstring(); });
    }
    STDMETHODIMP get_accHelpTopic(BSTR *file, VARIANT, long *topic) override
    {
        if (file) *file = nullptr;
        if (topic) *topic = 0;
        return S_FALSE;
    }
    STDMETHODIMP get_accRole(VARIANT child, VARIANT *out) override
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        if (!is_self(child)) return E_INVALIDARG;
        V_VT(out) = VT_I4;
        V_I4(out) = is_row() ? ROLE_SYSTEM_ROW : ROLE_SYSTEM_CELL;
        return S_OK;
    }
    STDMETHODIMP get_accState(VARIANT child, VARIANT *out) override
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        if (!is_self(child)) return E_INVALIDARG;
        return guarded([&] {
            long state = STATE_SYSTEM_SELECTABLE | (is_row() ? 0 : STATE_SYSTEM_FOCUSABLE);
            int32_t r = -1, c = -1;
            const bool current = source_->AccessCurrent(r, c) && r == row_ && (is_row() || c == col_);
            if (current) state |= STATE_SYSTEM_SELECTED;
            if (current && !is_row() && source_->AccessHasFocus()) state |= STATE_SYSTEM_FOCUSED;
            RECT rc{};
            if (!source_->AccessScreenRect(row_, col_, rc)) state |= STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN;
            V_VT(out) = VT_I4;
            V_I4(out) = state;
            return S_OK;
        });
    }
    STDMETHODIMP get_accFocus(VARIANT *out) override
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        return S_FALSE;
    }
    STDMETHODIMP get_accSelection(VARIANT *out) override
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        return S_FALSE;
    }
    STDMETHODIMP accSelect(long, VARIANT) override { return DISP_E_MEMBERNOTFOUND; }
    STDMETHODIMP accLocation(long *x, long *y, long *w, long *h, VARIANT child) override
    {
        if (!x || !y || !w || !h) return E_POINTER;
        *x = *y = *w = *h = 0;
        if (!is_self(child)) return E_INVALIDARG;
        return guarded([&] {
            RECT r{};
            if (!source_->AccessScreenRect(row_, col_, r)) return S_FALSE;
            *x = r.left;
            *y = r.top;
            *w = r.right - r.left;
            *h = r.bottom - r.top;
            return S_OK;
        });
    }
    STDMETHODIMP accNavigate(long, VARIANT, VARIANT *out) override
    {
        if (out) VariantInit(out);
        return S_FALSE;
    }
    STDMETHODIMP accHitTest(long, long, VARIANT *out) override
    {
        if (!out) return E_POINTER;
        VariantInit(out);
        V_VT(out) = VT_I4;
        V_I4(out) = CHILDID_SELF;
        return S_OK;
    }
    STDMETHODIMP accDoDefaultAction(VARIANT) override { return DISP_E_MEMBERNOTFOUND; }

private:
    bool is_row() const { return col_ < 0; }

    template <class F> HRESULT text(const VARIANT &child, BSTR *out, F &&read)
    {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (!is_self(child)) return E_INVALIDARG;
        return guarded([&] {
            std::wstring s = read();
            if (s.empty()) return S_FALSE;
            *out = SysAllocStringLen(s.data(), static_cast<UINT>(s.size()));
            return *out ? S_OK : E_OUTOFMEMORY;
        });
    }

    GridAccessSource *source_;
    ComPtr<IUnknown> keep_;
    int32_t row_, col_;
};

} // namespace

ComPtr<IDispatch> MakeGridAccessible(GridAccessSource *source, ComPtr<IUnknown> keep, int32_t row, int32_t col)
{
    if (!source || row < 0 || row >= source->AccessRows() || col >= source->AccessCols()) return {};
    auto *part = new (std::nothrow) GridPart(source, std::move(keep), row, col);
    if (!part) return {};
    return ComPtr<IDispatch>::attach(static_cast<IDispatch *>(part));
}

} // namespace tarn
