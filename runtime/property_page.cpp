#include "runtime/property_page.h"

#include "foundation/handles.h"
#include "foundation/trap.h"
#include "runtime/com.h"
#include "runtime/com_object.h"
#include "runtime/guarded.h"
#include "runtime/module.h"
#include "runtime/page_text.h"
#include "runtime/property_info.h"

#include <commctrl.h>

#include <algorithm>
#include <stdexcept>
#include <new>
#include <vector>

namespace tarn {

namespace {

constexpr wchar_t kPageClass[] = L"TarnPropertyPage";
constexpr wchar_t kTitle[] = L"General";
constexpr int kEditorId = 1000, kLabelId = 3000; // row i: editor kEditorId + i, label kLabelId + i
ATOM g_page_class = 0;

// What one row shows and edits.
struct Row {
    PropertyInfo info;
    HWND label = nullptr, editor = nullptr;
    bool is_list = false;        // a drop-down list (Boolean, enumeration, named values)
    bool named = false;          // its items are IPerPropertyBrowsing names; item data: cookies
    bool read_only = false;      // fonts and pictures: shown, edited on their stock pages
    bool dirty = false;
};

bool same_value(const VARIANT &a, const VARIANT &b)
{
    if (V_VT(&a) != V_VT(&b)) return false;
    if (V_VT(&a) == VT_DISPATCH || V_VT(&a) == VT_UNKNOWN) return V_UNKNOWN(&a) == V_UNKNOWN(&b);
    return VarCmp(const_cast<VARIANT *>(&a), const_cast<VARIANT *>(&b), LOCALE_USER_DEFAULT, 0) ==
           static_cast<HRESULT>(VARCMP_EQ);
}

HRESULT get_prop(IDispatch *d, DISPID id, Variant &out)
{
    DISPPARAMS none{};
    return d->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, out.put(), nullptr, nullptr);
}

HRESULT put_prop(IDispatch *d, DISPID id, const Variant &value, bool by_ref)
{
    VARIANT arg = *value.get(); // borrowed: Invoke does not take ownership
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS params{&arg, &named, 1, 1};
    return d->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, by_ref ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT,
                     &params, nullptr, nullptr, nullptr);
}

std::wstring window_text(HWND w)
{
    int n = GetWindowTextLengthW(w);
    std::wstring s(static_cast<size_t>(n > 0 ? n : 0) + 1, L'\0');
    GetWindowTextW(w, s.data(), n + 1);
    s.resize(wcslen(s.c_str()));
    return s;
}

// What a font or picture row shows.
std::wstring describe_object(const Row &row, const VARIANT &v)
{
    IUnknown *obj = (V_VT(&v) == VT_DISPATCH || V_VT(&v) == VT_UNKNOWN) ? V_UNKNOWN(&v) : nullptr;
    if (!obj) return L"(None)";
    if (row.info.kind == PropertyKind::Font) {
        if (ComPtr<IFont> f = ComPtr<IUnknown>(obj).as<IFont>(IID_IFont)) {
            Bstr name;
            CY size{};
            f->get_Name(name.put());
            f->get_Size(&size);
            return name.str() + L", " + std::to_wstring(static_cast<int>((size.int64 + 5000) / 10000)) + L" pt";
        }
        return L"(Font)";
    }
    return L"(Picture)";
}

class GeneralPage final : public ComObject<IPropertyPage2> {
public:
    GeneralPage() = default;
    ~GeneralPage() override
    {
        destroy_window();
    }

    void *query_more(REFIID riid) override
    {
        return riid == IID_IPropertyPage ? static_cast<IPropertyPage *>(this) : nullptr;
    }

    // ---- IPropertyPage
    STDMETHODIMP SetPageSite(IPropertyPageSite *site) override
    {
        site_ = site;
        return S_OK;
    }

    STDMETHODIMP Activate(HWND parent, LPCRECT rect, BOOL) override
    {
        if (!rect) return E_POINTER;
        return guarded([&]() -> HRESULT {
            destroy_window();
            make_font();
            hwnd_ = CreateWindowExW(WS_EX_CONTROLPARENT, window_class(), kTitle,
                                    WS_CHILD | WS_VSCROLL | WS_CLIPCHILDREN | WS_TABSTOP, rect->left, rect->top,
                                    rect->right - rect->left, rect->bottom - rect->top, parent, nullptr,
                                    module::instance(), this);
            if (!hwnd_) return E_FAIL;
            build_rows();
            return S_OK;
        });
    }

    STDMETHODIMP Deactivate() override
    {
        destroy_window();
        return S_OK;
    }

    STDMETHODIMP GetPageInfo(PROPPAGEINFO *info) override
    {
        if (!info) return E_POINTER;
        return guarded([&]() -> HRESULT {
            info->cb = sizeof *info;
            info->pszTitle = static_cast<LPOLESTR>(CoTaskMemAlloc(sizeof kTitle));
            if (!info->pszTitle) return E_OUTOFMEMORY;
            memcpy(info->pszTitle, kTitle, sizeof kTitle);
            make_font();
            // About 60 characters wide and 14 rows high in the message font: right at any DPI.
            info->size = {char_w_ * 60, row_h_ * 14};
            info->pszDocString = nullptr;
            info->pszHelpFile = nullptr;
            info->dwHelpContext = 0;
            return S_OK;
        });
    }

    STDMETHODIMP SetObjects(ULONG count, IUnknown **objects) override
    {
        if (count && !objects) return E_POINTER;
        return guarded([&] {
            objects_.clear();
            props_.clear();
            for (ULONG i = 0; i < count; ++i)
                if (ComPtr<IDispatch> d = ComPtr<IUnknown>(objects[i]).as<IDispatch>(IID_IDispatch)) objects_.push_back(d);
            if (!objects_.empty()) {
                // The properties every object has, under the same DISPID and name.
                props_ = EditableProperties(objects_[0].get());
                for (size_t i = 1; i < objects_.size(); ++i) {
                    std::vector<PropertyInfo> other = EditableProperties(objects_[i].get());
                    std::erase_if(props_, [&](const PropertyInfo &p) {
                        return std::none_of(other.begin(), other.end(), [&](const PropertyInfo &o) {
                            return o.id == p.id && _wcsicmp(o.name.c_str(), p.name.c_str()) == 0;
                        });
                    });
                }
            }
            if (hwnd_) build_rows();
            return S_OK;
        });
    }

    STDMETHODIMP Show(UINT cmd) override
    {
        if (!hwnd_) return E_UNEXPECTED;
        ShowWindow(hwnd_, static_cast<int>(cmd));
        return S_OK;
    }

    STDMETHODIMP Move(LPCRECT rect) override
    {
        if (!rect) return E_POINTER;
        if (!hwnd_) return E_UNEXPECTED;
        MoveWindow(hwnd_, rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, TRUE);
        return S_OK;
    }

    STDMETHODIMP IsPageDirty() override
    {
        return std::any_of(rows_.begin(), rows_.end(), [](const Row &r) { return r.dirty; }) ? S_OK : S_FALSE;
    }

    STDMETHODIMP Apply() override
    {
        return guarded([&] {
            for (Row &row : rows_) {
                if (!row.dirty) continue;
                row.dirty = false;
                // Resume next: a value that does not convert, or a put a control refuses,
                // leaves that property as it was and the rest still apply.
                step([&] { apply_row(row); });
            }
            load_values();
            return S_OK;
        });
    }

    STDMETHODIMP Help(LPCOLESTR) override { return E_NOTIMPL; }

    STDMETHODIMP TranslateAccelerator(MSG *msg) override
    {
        if (!msg) return E_POINTER;
        return hwnd_ && IsDialogMessageW(hwnd_, msg) ? S_OK : S_FALSE;
    }

    // ---- IPropertyPage2
    STDMETHODIMP EditProperty(DISPID id) override
    {
        for (Row &row : rows_) {
            if (row.info.id != id) continue;
            if (row.editor) {
                SetFocus(row.editor);
                scroll_into_view(row);
            }
            return S_OK;
        }
        return E_INVALIDARG;
    }

private:
    static const wchar_t *window_class()
    {
        if (!g_page_class) {
            WNDCLASSEXW wc{};
            wc.cbSize = sizeof wc;
            wc.lpfnWndProc = &GeneralPage::window_proc;
            wc.hInstance = module::instance();
            wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
            wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
            wc.lpszClassName = kPageClass;
            g_page_class = RegisterClassExW(&wc);
        }
        return kPageClass;
    }

    static LRESULT CALLBACK window_proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp)
    {
        if (msg == WM_NCCREATE) {
            auto *cs = reinterpret_cast<CREATESTRUCTW *>(lp);
            SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(cs->lpCreateParams));
            return DefWindowProcW(hwnd, msg, wp, lp);
        }
        auto *self = reinterpret_cast<GeneralPage *>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
        if (!self || msg == WM_NCDESTROY) {
            if (self) SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
            return DefWindowProcW(hwnd, msg, wp, lp);
        }
        try {
            switch (msg) {
            case WM_COMMAND:
                self->on_command(LOWORD(wp), HIWORD(wp));
                return 0;
            case WM_VSCROLL:
                self->on_scroll(LOWORD(wp));
                return 0;
            case WM_MOUSEWHEEL:
                self->scroll_to(self->scroll_ - GET_WHEEL_DELTA_WPARAM(wp) / WHEEL_DELTA * self->row_h_ * 3);
                return 0;
            case WM_SIZE:
                self->layout();
                return 0;
            default:
                break;
            }
        } catch (...) {
            return 0;
        }
        return DefWindowProcW(hwnd, msg, wp, lp);
    }

    void make_font()
    {
        if (font_) return;
        NONCLIENTMETRICSW m{};
        m.cbSize = sizeof m;
        if (SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof m, &m, 0)) font_.reset(CreateFontIndirectW(&m.lfMessageFont));
        HDC dc = GetDC(nullptr);
        HGDIOBJ old = SelectObject(dc, font_ ? static_cast<HGDIOBJ>(font_.get()) : GetStockObject(DEFAULT_GUI_FONT));
        TEXTMETRICW tm{};
        GetTextMetricsW(dc, &tm);
        SelectObject(dc, old);
        ReleaseDC(nullptr, dc);
        char_w_ = tm.tmAveCharWidth > 0 ? tm.tmAveCharWidth : 7;
        row_h_ = (tm.tmHeight > 0 ? tm.tmHeight : 16) + 10;
    }

    HFONT font() const { return font_ ? font_.get() : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)); }

    void destroy_window()
    {
        if (hwnd_) DestroyWindow(hwnd_); // and the rows' windows with it
        hwnd_ = nullptr;
        rows_.clear();
    }

    void build_rows()
    {
        for (Row &r : rows_) {
            if (r.label) DestroyWindow(r.label);
            if (r.editor) DestroyWindow(r.editor);
        }
        rows_.clear();
        scroll_ = 0;
        ComPtr<IPerPropertyBrowsing> browse =
            objects_.empty() ? ComPtr<IPerPropertyBrowsing>() : objects_[0].as<IPerPropertyBrowsing>(IID_IPerPropertyBrowsing);
        int i = 0;
        for (const PropertyInfo &p : props_) {
            Row row;
            row.info = p;
            row.label = CreateWindowExW(0, L"STATIC", p.name.c_str(), WS_CHILD | WS_VISIBLE | SS_NOPREFIX | SS_ENDELLIPSIS,
                                        0, 0, 0, 0, hwnd_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(kLabelId + i)),
                                        module::instance(), nullptr);
            CALPOLESTR names{};
            CADWORD cookies{};
            if (browse && p.kind != PropertyKind::Enumeration && p.kind != PropertyKind::Boolean &&
                browse->GetPredefinedStrings(p.id, &names, &cookies) == S_OK && names.cElems) {
                row.is_list = row.named = true;
            }
            row.is_list |= p.kind == PropertyKind::Boolean || p.kind == PropertyKind::Enumeration;
            row.read_only = p.kind == PropertyKind::Font || p.kind == PropertyKind::Picture;
            DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
            if (row.is_list)
                row.editor = CreateWindowExW(0, WC_COMBOBOXW, L"", style | CBS_DROPDOWNLIST | WS_VSCROLL, 0, 0, 0, 0, hwnd_,
                                             reinterpret_cast<HMENU>(static_cast<INT_PTR>(kEditorId + i)),
                                             module::instance(), nullptr);
            else
                row.editor = CreateWindowExW(WS_EX_CLIENTEDGE, WC_EDITW, L"",
                                             style | ES_AUTOHSCROLL | (row.read_only ? ES_READONLY : 0), 0, 0, 0, 0,
                                             hwnd_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(kEditorId + i)),
                                             module::instance(), nullptr);
            for (HWND w : {row.label, row.editor})
                if (w) SendMessageW(w, WM_SETFONT, reinterpret_cast<WPARAM>(font()), FALSE);
            if (row.named) {
                for (ULONG k = 0; k < names.cElems; ++k) {
                    LRESULT at = SendMessageW(row.editor, CB_ADDSTRING, 0,
                                              reinterpret_cast<LPARAM>(names.pElems[k] ? names.pElems[k] : L""));
                    SendMessageW(row.editor, CB_SETITEMDATA, static_cast<WPARAM>(at), cookies.pElems[k]);
                }
            } else if (p.kind == PropertyKind::Boolean) {
                SendMessageW(row.editor, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"False"));
                SendMessageW(row.editor, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"True"));
            } else if (p.kind == PropertyKind::Enumeration) {
                for (const EnumMember &m : p.members) {
                    LRESULT at = SendMessageW(row.editor, CB_ADDSTRING, 0,
                                              reinterpret_cast<LPARAM>(EnumItemText(m.value, m.name).c_str()));
                    SendMessageW(row.editor, CB_SETITEMDATA, static_cast<WPARAM>(at), static_cast<LPARAM>(m.value));
                }
            }
            for (ULONG k = 0; k < names.cElems; ++k) CoTaskMemFree(names.pElems[k]);
            CoTaskMemFree(names.pElems);
            CoTaskMemFree(cookies.pElems);
            rows_.push_back(std::move(row));
            ++i;
        }
        layout();
        load_values();
    }

    // The rows where they stand for the scroll position; the scroll bar for the rows' height.
    void layout()
    {
        if (!hwnd_) return;
        RECT client{};
        GetClientRect(hwnd_, &client);
        const int margin = char_w_, gap = char_w_;
        int label_w = 0;
        HDC dc = GetDC(hwnd_);
        HGDIOBJ old = SelectObject(dc, font());
        for (const Row &r : rows_) {
            SIZE s{};
            GetTextExtentPoint32W(dc, r.info.name.c_str(), static_cast<int>(r.info.name.size()), &s);
            label_w = std::max(label_w, static_cast<int>(s.cx));
        }
        SelectObject(dc, old);
        ReleaseDC(hwnd_, dc);
        label_w = std::min(label_w + 4, static_cast<int>(client.right * 2 / 5));
        const int total = margin * 2 + row_h_ * static_cast<int>(rows_.size());
        SCROLLINFO si{sizeof si, SIF_RANGE | SIF_PAGE | SIF_POS, 0, total - 1, static_cast<UINT>(client.bottom), 0, 0};
        scroll_ = std::clamp(scroll_, 0, std::max(0, total - static_cast<int>(client.bottom)));
        si.nPos = scroll_;
        SetScrollInfo(hwnd_, SB_VERT, &si, TRUE);
        const int editor_x = margin + label_w + gap, editor_w = std::max(0, static_cast<int>(client.right) - editor_x - margin);
        const int field_h = row_h_ - 4;
        HDWP defer = BeginDeferWindowPos(static_cast<int>(rows_.size()) * 2);
        int y = margin - scroll_;
        for (const Row &r : rows_) {
            if (defer && r.label)
                defer = DeferWindowPos(defer, r.label, nullptr, margin, y + 5, label_w, field_h - 4, SWP_NOZORDER | SWP_NOACTIVATE);
            if (defer && r.editor)
                defer = DeferWindowPos(defer, r.editor, nullptr, editor_x, y, editor_w, r.is_list ? field_h * 8 : field_h,
                                       SWP_NOZORDER | SWP_NOACTIVATE);
            y += row_h_;
        }
        if (defer) EndDeferWindowPos(defer);
    }

    void scroll_to(int pos)
    {
        scroll_ = pos;
        layout();
        InvalidateRect(hwnd_, nullptr, TRUE);
    }

    void on_scroll(WORD code)
    {
        SCROLLINFO si{};
        si.cbSize = sizeof si;
        si.fMask = SIF_ALL;
        GetScrollInfo(hwnd_, SB_VERT, &si);
        int pos = scroll_;
        switch (code) {
        case SB_LINEUP: pos -= row_h_; break;
        case SB_LINEDOWN: pos += row_h_; break;
        case SB_PAGEUP: pos -= static_cast<int>(si.nPage); break;
        case SB_PAGEDOWN: pos += static_cast<int>(si.nPage); break;
        case SB_THUMBTRACK: case SB_THUMBPOSITION: pos = si.nTrackPos; break;
        case SB_TOP: pos = 0; break;
        case SB_BOTTOM: pos = si.nMax; break;
        default: return;
        }
        scroll_to(pos);
    }

    void scroll_into_view(const Row &row)
    {
        RECT client{}, r{};
        GetClientRect(hwnd_, &client);
        GetWindowRect(row.editor, &r);
        MapWindowPoints(nullptr, hwnd_, reinterpret_cast<POINT *>(&r), 2);
        if (r.top < 0) scroll_to(scroll_ + r.top - char_w_);
        else if (r.bottom > client.bottom) scroll_to(scroll_ + r.bottom - client.bottom + char_w_);
    }

    void on_command(int id, int code)
    {
        size_t index = static_cast<size_t>(id - kEditorId);
        if (id < kEditorId || index >= rows_.size()) return;
        Row &row = rows_[index];
        if (code == EN_SETFOCUS || code == CBN_SETFOCUS) {
            scroll_into_view(row);
            return;
        }
        if (loading_ || row.read_only || (code != EN_CHANGE && code != CBN_SELCHANGE)) return;
        row.dirty = true;
        if (site_) step([&] { site_->OnStatusChange(PROPPAGESTATUS_DIRTY | PROPPAGESTATUS_VALIDATE); });
    }

    // Shows each property's value: the objects' common value, blank where they differ.
    void load_values()
    {
        loading_ = true;
        for (Row &row : rows_) {
            step([&] {
                Variant value;
                bool agree = true, have = false;
                for (const ComPtr<IDispatch> &d : objects_) {
                    Variant v;
                    if (FAILED(get_prop(d.get(), row.info.id, v))) continue;
                    if (!have) value = v;
                    else if (!same_value(*value.get(), *v.get())) agree = false;
                    have = true;
                }
                show_value(row, have && agree ? &value : nullptr);
            });
            row.dirty = false;
        }
        loading_ = false;
    }

    void show_value(Row &row, const Variant *value)
    {
        if (!row.is_list) {
            std::wstring text;
            if (value) text = text_of(row, *value);
            SetWindowTextW(row.editor, text.c_str());
            return;
        }
        LRESULT select = -1;
        if (value && row.named) {
            // The control names the current value itself.
            Bstr name;
            ComPtr<IPerPropertyBrowsing> browse = objects_[0].as<IPerPropertyBrowsing>(IID_IPerPropertyBrowsing);
            if (browse && browse->GetDisplayString(row.info.id, name.put()) == S_OK)
                select = SendMessageW(row.editor, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(name.get()));
        } else if (value) {
            Variant n;
            if (value->convert(VT_I4, n)) {
                LONG v = V_I4(n.get());
                if (row.info.kind == PropertyKind::Boolean) select = v ? 1 : 0;
                else {
                    LRESULT count = SendMessageW(row.editor, CB_GETCOUNT, 0, 0);
                    for (LRESULT k = 0; k < count && select < 0; ++k)
                        if (SendMessageW(row.editor, CB_GETITEMDATA, static_cast<WPARAM>(k), 0) == v) select = k;
                    if (select < 0) {
                        // A value outside the enumeration (taken without a range check): shown as its number.
                        select = SendMessageW(row.editor, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(std::to_wstring(v).c_str()));
                        SendMessageW(row.editor, CB_SETITEMDATA, static_cast<WPARAM>(select), v);
                    }
                }
            }
        }
        SendMessageW(row.editor, CB_SETCURSEL, static_cast<WPARAM>(select), 0);
    }

    std::wstring text_of(const Row &row, const Variant &value)
    {
        switch (row.info.kind) {
        case PropertyKind::Color: {
            Variant n;
            if (value.convert(VT_I4, n) || value.convert(VT_UI4, n))
                return FormatOleColor(static_cast<uint32_t>(V_I4(n.get())));
            return std::wstring();
        }
        case PropertyKind::Font:
        case PropertyKind::Picture:
            return describe_object(row, *value.get());
        default: {
            Variant s;
            return value.convert(VT_BSTR, s) ? from_bstr(V_BSTR(s.get())) : std::wstring();
        }
        }
    }

    // The edited value in the property's own type; throws when the text does not convert.
    Variant edited_value(const Row &row)
    {
        Variant out;
        if (row.is_list) {
            LRESULT sel = SendMessageW(row.editor, CB_GETCURSEL, 0, 0);
            if (sel < 0) throw std::invalid_argument("nothing chosen");
            LRESULT data = SendMessageW(row.editor, CB_GETITEMDATA, static_cast<WPARAM>(sel), 0);
            if (row.named) {
                ComPtr<IPerPropertyBrowsing> browse = objects_[0].as<IPerPropertyBrowsing>(IID_IPerPropertyBrowsing);
                if (!browse || FAILED(browse->GetPredefinedValue(row.info.id, static_cast<DWORD>(data), out.put())))
                    throw std::invalid_argument("no value for the name");
                return out;
            }
            if (row.info.kind == PropertyKind::Boolean) return Variant::of_bool(sel == 1);
            return Variant::of_i4(static_cast<int32_t>(data));
        }
        std::wstring text = window_text(row.editor);
        if (row.info.kind == PropertyKind::Color) {
            uint32_t c = 0;
            if (!ParseOleColor(text, c)) throw std::invalid_argument("not a colour");
            V_VT(out.put()) = VT_UI4;
            V_UI4(out.get()) = c;
            return out;
        }
        Variant s = Variant::of_string(text);
        VARTYPE vt = row.info.vt == VT_VARIANT ? static_cast<VARTYPE>(VT_BSTR) : row.info.vt;
        if (!s.convert(vt, out)) throw std::invalid_argument("does not convert");
        return out;
    }

    void apply_row(Row &row)
    {
        Variant value = edited_value(row);
        for (const ComPtr<IDispatch> &d : objects_) step([&] { put_prop(d.get(), row.info.id, value, row.info.by_ref); });
    }

    module::ObjectCount count_;
    ComPtr<IPropertyPageSite> site_;
    std::vector<ComPtr<IDispatch>> objects_;
    std::vector<PropertyInfo> props_;
    std::vector<Row> rows_;
    HWND hwnd_ = nullptr;
    unique_font font_;
    int char_w_ = 7, row_h_ = 26, scroll_ = 0;
    bool loading_ = false;
};

} // namespace

HRESULT CreateGeneralPage(REFIID iid, void **out)
{
    if (!out) return E_POINTER;
    *out = nullptr;
    auto *page = new (std::nothrow) GeneralPage();
    if (!page) return E_OUTOFMEMORY;
    HRESULT hr = page->QueryInterface(iid, out);
    page->Release();
    return hr;
}

void UnregisterPropertyPageWindowClass()
{
    if (g_page_class) UnregisterClassW(kPageClass, module::instance());
    g_page_class = 0;
}

} // namespace tarn
