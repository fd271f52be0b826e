// UserControl for property sheets: the pages a visible control offers (the library's General
// page for every one, the stock colour, font and picture pages where it has such properties),
// and per-property browsing, whose value names come from the control's PropertyValueNames.
#include "runtime/guarded.h"
#include "runtime/property_info.h"
#include "runtime/property_page.h"
#include "runtime/user_control.h"

namespace tarn {

namespace {

const PropertyInfo *find(const std::vector<PropertyInfo> &props, DISPID id)
{
    for (const PropertyInfo &p : props)
        if (p.id == id) return &p;
    return nullptr;
}

} // namespace

STDMETHODIMP UserControl::GetPages(CAUUID *pages)
{
    if (!pages) return E_POINTER;
    pages->cElems = 0;
    pages->pElems = nullptr;
    return guarded([&] {
        ComPtr<ITypeInfo> info;
        module::type_info(*class_.iid, info.put());
        bool color = false, font = false, picture = false;
        for (const PropertyInfo &p : EditableProperties(info.get())) {
            color |= p.kind == PropertyKind::Color;
            font |= p.kind == PropertyKind::Font;
            picture |= p.kind == PropertyKind::Picture;
        }
        std::vector<CLSID> list{CLSID_TarnGeneralPage};
        if (color) list.push_back(CLSID_CColorPropPage);
        if (font) list.push_back(CLSID_CFontPropPage);
        if (picture) list.push_back(CLSID_CPicturePropPage);
        auto *out = static_cast<CLSID *>(CoTaskMemAlloc(sizeof(CLSID) * list.size()));
        if (!out) return E_OUTOFMEMORY;
        std::copy(list.begin(), list.end(), out);
        pages->pElems = out;
        pages->cElems = static_cast<ULONG>(list.size());
        return S_OK;
    });
}

HRESULT UserControl::show_property_frame(HWND parent)
{
    if (ComPtr<IOleControlSite> cs = site_.as<IOleControlSite>(IID_IOleControlSite))
        if (cs->ShowPropertyFrame() == S_OK) return S_OK;
    CAUUID pages{};
    HRESULT hr = GetPages(&pages);
    if (FAILED(hr)) return hr;
    IUnknown *self = identity();
    std::wstring name = read_step<std::wstring>([&] { return Ambient().DisplayName(); });
    if (name.empty()) name = class_.name;
    hr = OleCreatePropertyFrame(parent ? parent : ParentForm(), 0, 0, name.c_str(), 1, &self, pages.cElems,
                                pages.pElems, LOCALE_USER_DEFAULT, 0, nullptr);
    CoTaskMemFree(pages.pElems);
    return hr;
}

STDMETHODIMP UserControl::GetDisplayString(DISPID id, BSTR *text)
{
    if (!text) return E_POINTER;
    *text = nullptr;
    return guarded([&]() -> HRESULT {
        std::vector<NamedValue> names = PropertyValueNames(id);
        if (names.empty()) return E_NOTIMPL;
        ComPtr<IDispatch> self = ComPtr<IUnknown>(identity()).as<IDispatch>(IID_IDispatch);
        Variant now;
        DISPPARAMS none{};
        if (!self || FAILED(self->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, now.put(), nullptr, nullptr)))
            return E_FAIL;
        for (NamedValue &n : names) {
            if (VarCmp(now.get(), n.value.get(), LOCALE_USER_DEFAULT, 0) == static_cast<HRESULT>(VARCMP_EQ)) {
                *text = to_bstr(n.name);
                return *text ? S_OK : E_OUTOFMEMORY;
            }
        }
        return S_FALSE; // a value the names do not cover: the browser shows it as it is
    });
}

STDMETHODIMP UserControl::MapPropertyToPage(DISPID id, CLSID *page)
{
    if (!page) return E_POINTER;
    *page = CLSID_NULL;
    if (!IsVisibleClass(class_)) return PERPROP_E_NOPAGEAVAILABLE;
    return guarded([&] {
        ComPtr<ITypeInfo> info;
        module::type_info(*class_.iid, info.put());
        std::vector<PropertyInfo> props = EditableProperties(info.get());
        const PropertyInfo *p = find(props, id);
        if (!p) return PERPROP_E_NOPAGEAVAILABLE;
        if (p->kind == PropertyKind::Font) *page = CLSID_CFontPropPage;
        else if (p->kind == PropertyKind::Picture) *page = CLSID_CPicturePropPage;
        else *page = CLSID_TarnGeneralPage;
        return S_OK;
    });
}

STDMETHODIMP UserControl::GetPredefinedStrings(DISPID id, CALPOLESTR *strings, CADWORD *cookies)
{
    if (!strings || !cookies) return E_POINTER;
    strings->cElems = cookies->cElems = 0;
    strings->pElems = nullptr;
    cookies->pElems = nullptr;
    return guarded([&]() -> HRESULT {
        std::vector<NamedValue> names = PropertyValueNames(id);
        if (names.empty()) return E_NOTIMPL;
        auto *texts = static_cast<LPOLESTR *>(CoTaskMemAlloc(sizeof(LPOLESTR) * names.size()));
        auto *keys = static_cast<DWORD *>(CoTaskMemAlloc(sizeof(DWORD) * names.size()));
        if (!texts || !keys) {
            CoTaskMemFree(texts);
            CoTaskMemFree(keys);
            return E_OUTOFMEMORY;
        }
        for (size_t i = 0; i < names.size(); ++i) {
            size_t bytes = (names[i].name.size() + 1) * sizeof(wchar_t);
            texts[i] = static_cast<LPOLESTR>(CoTaskMemAlloc(bytes));
            if (texts[i]) memcpy(texts[i], names[i].name.c_str(), bytes);
            keys[i] = static_cast<DWORD>(i); // the cookie is the name's place in the list
        }
        strings->pElems = texts;
        cookies->pElems = keys;
        strings->cElems = cookies->cElems = static_cast<ULONG>(names.size());
        return S_OK;
    });
}

STDMETHODIMP UserControl::GetPredefinedValue(DISPID id, DWORD cookie, VARIANT *value)
{
    if (!value) return E_POINTER;
    VariantInit(value);
    return guarded([&]() -> HRESULT {
        std::vector<NamedValue> names = PropertyValueNames(id);
        if (names.empty()) return E_NOTIMPL;
        if (cookie >= names.size()) return E_INVALIDARG;
        *value = names[cookie].value.detach();
        return S_OK;
    });
}

} // namespace tarn
