// Bag: an in-memory property bag the way a form designer keeps a control's saved properties,
// in the order they were written, with every read and write logged. Objects (fonts, pictures)
// are kept as copies made through their own persistence, so a saved value never changes.
// Tests can also plant values of any type to see how a control copes with them.
#pragma once
#include <ocidl.h>

#include <string>
#include <vector>

#include "runtime/com.h"
#include "runtime/com_object.h"

namespace tarn::host {

class Bag final : public ComObject<IPropertyBag> {
public:
    struct Entry {
        std::wstring key;
        Variant value;
    };
    static ComPtr<Bag> Create();

    STDMETHODIMP Read(LPCOLESTR key, VARIANT *value, IErrorLog *log) override;
    STDMETHODIMP Write(LPCOLESTR key, VARIANT *value) override;

    // The stored keys in write order.
    std::vector<std::wstring> keys() const;
    bool has(const std::wstring &key) const;
    // The stored value (a copy); empty when the key is missing.
    Variant get(const std::wstring &key) const;
    void set(const std::wstring &key, const Variant &value);
    void remove(const std::wstring &key);

    std::vector<std::wstring> reads, writes; // keys in the order the control asked for them
    bool fail_writes = false;                // a bag whose medium refuses every write

private:
    Bag() = default;
    std::vector<Entry> entries_;
};

} // namespace tarn::host
