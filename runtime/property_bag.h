// The property bag a control saves into and restores from. One WriteProperties and one
// ReadProperties routine per control serve all three persistence interfaces: the host's own
// bag (IPersistPropertyBag) or the in-memory bag behind the stream and storage forms.
//
// Reads take a default, used when the key is missing or its value cannot be turned into the
// property's type (a wrong VARIANT type in a host's bag never reaches the control as an error).
// Writes with a default store nothing when the value equals it; writes without one always store.
#pragma once
#include <ocidl.h>
#include <olectl.h>

#include <optional>
#include <string>
#include <vector>

#include "foundation/colors.h"
#include "runtime/com.h"

namespace tarn {

class PropertyBag {
public:
    virtual ~PropertyBag() = default;

    // The stored value of `key`, of whatever type the bag holds; false when there is none.
    virtual bool read_value(const std::wstring &key, Variant &out) = 0;
    virtual void write_value(const std::wstring &key, const Variant &value) = 0;

    int16_t read_int(const std::wstring &key, int16_t def);
    int32_t read_long(const std::wstring &key, int32_t def);
    bool read_bool(const std::wstring &key, bool def);
    float read_single(const std::wstring &key, float def);
    double read_double(const std::wstring &key, double def);
    std::wstring read_string(const std::wstring &key, const std::wstring &def);
    OleColor read_color(const std::wstring &key, OleColor def);
    // A font of its own (a copy of the stored one, or of `def`).
    ComPtr<IFontDisp> read_font(const std::wstring &key, IFontDisp *def);
    ComPtr<IPictureDisp> read_picture(const std::wstring &key, IPictureDisp *def);

    void write_int(const std::wstring &key, int16_t v, std::optional<int16_t> def = std::nullopt);
    void write_long(const std::wstring &key, int32_t v, std::optional<int32_t> def = std::nullopt);
    void write_bool(const std::wstring &key, bool v, std::optional<bool> def = std::nullopt);
    void write_single(const std::wstring &key, float v, std::optional<float> def = std::nullopt);
    void write_double(const std::wstring &key, double v, std::optional<double> def = std::nullopt);
    void write_string(const std::wstring &key, const std::wstring &v, std::optional<std::wstring> def = std::nullopt);
    void write_color(const std::wstring &key, OleColor v, std::optional<OleColor> def = std::nullopt);
    // A font equal to `def` (same name, size and style) is not stored when a default is given.
    void write_font(const std::wstring &key, IFontDisp *v, IFontDisp *def);
    void write_font(const std::wstring &key, IFontDisp *v);
    void write_picture(const std::wstring &key, IPictureDisp *v, bool with_default_nothing = false);
};

// Two fonts with the same name (ignoring case), size and style.
bool SameFont(IUnknown *a, IUnknown *b);

// The container's bag, through IPropertyBag. Failures of the host's bag are skipped.
class HostPropertyBag final : public PropertyBag {
public:
    HostPropertyBag(IPropertyBag *bag, IErrorLog *log) : bag_(bag), log_(log) {}
    bool read_value(const std::wstring &key, Variant &out) override;
    void write_value(const std::wstring &key, const Variant &value) override;

private:
    IPropertyBag *bag_;
    IErrorLog *log_;
};

// An ordered in-memory bag: what the stream and storage forms encode. Objects are kept as
// the object's class and persisted bytes, so a saved value never changes afterwards.
class MemoryPropertyBag final : public PropertyBag {
public:
    struct Entry {
        std::wstring key;
        Variant value; // objects are stored as VT_UNKNOWN of a snapshot copy
    };
    bool read_value(const std::wstring &key, Variant &out) override;
    void write_value(const std::wstring &key, const Variant &value) override;

    std::vector<Entry> &entries() { return entries_; }
    const std::vector<Entry> &entries() const { return entries_; }

private:
    std::vector<Entry> entries_;
};

// Copies an object value through its own persistence, so the copy shares nothing with it.
// Null when the object cannot be saved and loaded again.
ComPtr<IUnknown> SnapshotObject(IUnknown *object);

} // namespace tarn
