#include "host/bag.h"

#include "runtime/property_bag.h"

#include <new>

namespace tarn::host {

namespace {
bool is_object(const VARIANT *v) { return V_VT(v) == VT_UNKNOWN || V_VT(v) == VT_DISPATCH; }
} // namespace

ComPtr<Bag> Bag::Create() { return ComPtr<Bag>::attach(new Bag()); }

STDMETHODIMP Bag::Read(LPCOLESTR key, VARIANT *value, IErrorLog *)
{
    if (!key || !value) return E_POINTER;
    reads.push_back(key);
    for (const Entry &e : entries_) {
        if (e.key != key) continue;
        Variant out = e.value;
        if (is_object(out.get()) && V_UNKNOWN(out.get())) {
            ComPtr<IUnknown> copy = SnapshotObject(V_UNKNOWN(out.get()));
            if (copy) out = Variant::of_unknown(copy.get());
        }
        VARTYPE wanted = V_VT(value);
        if (wanted != VT_EMPTY && wanted != out.vt()) {
            Variant converted;
            if (!out.convert(wanted, converted)) return DISP_E_TYPEMISMATCH;
            out = converted;
        }
        VariantClear(value);
        *value = out.detach();
        return S_OK;
    }
    return E_INVALIDARG;
}

STDMETHODIMP Bag::Write(LPCOLESTR key, VARIANT *value)
{
    if (!key || !value) return E_POINTER;
    writes.push_back(key);
    if (fail_writes) return STG_E_MEDIUMFULL;
    Variant stored(*value);
    if (is_object(value) && V_UNKNOWN(value)) {
        ComPtr<IUnknown> copy = SnapshotObject(V_UNKNOWN(value));
        if (!copy) return E_FAIL;
        stored = Variant::of_unknown(copy.get());
    }
    set(key, stored);
    return S_OK;
}

std::vector<std::wstring> Bag::keys() const
{
    std::vector<std::wstring> out;
    for (const Entry &e : entries_) out.push_back(e.key);
    return out;
}

bool Bag::has(const std::wstring &key) const
{
    for (const Entry &e : entries_)
        if (e.key == key) return true;
    return false;
}

Variant Bag::get(const std::wstring &key) const
{
    for (const Entry &e : entries_)
        if (e.key == key) return e.value;
    return Variant();
}

void Bag::set(const std::wstring &key, const Variant &value)
{
    for (Entry &e : entries_)
        if (e.key == key) {
            e.value = value;
            return;
        }
    entries_.push_back({key, value});
}

void Bag::remove(const std::wstring &key)
{
    for (auto it = entries_.begin(); it != entries_.end(); ++it)
        if (it->key == key) {
            entries_.erase(it);
            return;
        }
}

} // namespace tarn::host
