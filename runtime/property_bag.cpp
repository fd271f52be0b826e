#include "runtime/property_bag.h"

#include "foundation/font_object.h"

#include <cmath>
#include <cwctype>

namespace tarn {

namespace {

bool read_as(PropertyBag &bag, const std::wstring &key, VARTYPE vt, Variant &out)
{
    Variant raw;
    if (!bag.read_value(key, raw)) return false;
    return raw.convert(vt, out);
}

Variant object_variant(IUnknown *p)
{
    if (!p) return Variant();
    ComPtr<IDispatch> disp = ComPtr<IUnknown>(p).as<IDispatch>(IID_IDispatch);
    return disp ? Variant::of_dispatch(disp.get()) : Variant::of_unknown(p);
}

ComPtr<IUnknown> object_of(const Variant &v)
{
    const VARIANT *p = v.get();
    VARTYPE vt = V_VT(p);
    if (vt == VT_UNKNOWN || vt == VT_DISPATCH) return ComPtr<IUnknown>(V_UNKNOWN(p));
    if (vt == (VT_UNKNOWN | VT_BYREF) || vt == (VT_DISPATCH | VT_BYREF))
        return V_BYREF(p) ? ComPtr<IUnknown>(*V_UNKNOWNREF(p)) : ComPtr<IUnknown>();
    return {};
}

bool same_name(const std::wstring &a, const std::wstring &b)
{
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::towupper(a[i]) != std::towupper(b[i])) return false;
    return true;
}

} // namespace

int16_t PropertyBag::read_int(const std::wstring &key, int16_t def)
{
    Variant v;
    return read_as(*this, key, VT_I2, v) ? V_I2(v.get()) : def;
}

int32_t PropertyBag::read_long(const std::wstring &key, int32_t def)
{
    Variant v;
    return read_as(*this, key, VT_I4, v) ? V_I4(v.get()) : def;
}

bool PropertyBag::read_bool(const std::wstring &key, bool def)
{
    Variant v;
    return read_as(*this, key, VT_BOOL, v) ? V_BOOL(v.get()) != VARIANT_FALSE : def;
}

float PropertyBag::read_single(const std::wstring &key, float def)
{
    Variant v;
    return read_as(*this, key, VT_R4, v) ? V_R4(v.get()) : def;
}

double PropertyBag::read_double(const std::wstring &key, double def)
{
    Variant v;
    return read_as(*this, key, VT_R8, v) && std::isfinite(V_R8(v.get())) ? V_R8(v.get()) : def;
}

std::wstring PropertyBag::read_string(const std::wstring &key, const std::wstring &def)
{
    Variant v;
    return read_as(*this, key, VT_BSTR, v) ? from_bstr(V_BSTR(v.get())) : def;
}

OleColor PropertyBag::read_color(const std::wstring &key, OleColor def)
{
    // Colours are stored as Long; a bag that kept the unsigned form is read too.
    Variant raw, v;
    if (!read_value(key, raw)) return def;
    if (raw.convert(VT_I4, v)) return static_cast<OleColor>(V_I4(v.get()));
    if (raw.convert(VT_UI4, v)) return static_cast<OleColor>(V_UI4(v.get()));
    return def;
}

ComPtr<IFontDisp> PropertyBag::read_font(const std::wstring &key, IFontDisp *def)
{
    Variant raw;
    if (read_value(key, raw)) {
        if (ComPtr<IUnknown> obj = object_of(raw)) {
            if (ComPtr<IFontDisp> copy = ComPtr<IFontDisp>::attach(CloneFontObject(obj.get()))) return copy;
        }
    }
    return ComPtr<IFontDisp>::attach(def ? CloneFontObject(def) : nullptr);
}

ComPtr<IPictureDisp> PropertyBag::read_picture(const std::wstring &key, IPictureDisp *def)
{
    Variant raw;
    if (read_value(key, raw)) {
        if (ComPtr<IUnknown> obj = object_of(raw)) {
            ComPtr<IPictureDisp> pic = obj.as<IPictureDisp>(IID_IPictureDisp);
            if (pic) return pic;
        }
        if (raw.empty()) return {};
    }
    return ComPtr<IPictureDisp>(def);
}

void PropertyBag::write_int(const std::wstring &key, int16_t v, std::optional<int16_t> def)
{
    if (!def || *def != v) write_value(key, Variant::of_i2(v));
}

void PropertyBag::write_long(const std::wstring &key, int32_t v, std::optional<int32_t> def)
{
    if (!def || *def != v) write_value(key, Variant::of_i4(v));
}

void PropertyBag::write_bool(const std::wstring &key, bool v, std::optional<bool> def)
{
    if (!def || *def != v) write_value(key, Variant::of_bool(v));
}

void PropertyBag::write_single(const std::wstring &key, float v, std::optional<float> def)
{
    if (!def || *def != v) write_value(key, Variant::of_r4(v));
}

void PropertyBag::write_double(const std::wstring &key, double v, std::optional<double> def)
{
    if (!def || *def != v) write_value(key, Variant::of_r8(v));
}

void PropertyBag::write_string(const std::wstring &key, const std::wstring &v, std::optional<std::wstring> def)
{
    if (!def || *def != v) write_value(key, Variant::of_string(v));
}

void PropertyBag::write_color(const std::wstring &key, OleColor v, std::optional<OleColor> def)
{
    if (!def || *def != v) write_value(key, Variant::of_i4(static_cast<int32_t>(v)));
}

void PropertyBag::write_font(const std::wstring &key, IFontDisp *v, IFontDisp *def)
{
    if (SameFont(v, def)) return;
    write_value(key, object_variant(v));
}

void PropertyBag::write_font(const std::wstring &key, IFontDisp *v) { write_value(key, object_variant(v)); }

void PropertyBag::write_picture(const std::wstring &key, IPictureDisp *v, bool with_default_nothing)
{
    if (!v && with_default_nothing) return;
    write_value(key, object_variant(v));
}

bool SameFont(IUnknown *a, IUnknown *b)
{
    if (!a || !b) return a == b;
    FontSpec x = FontSpecOf(a), y = FontSpecOf(b);
    return same_name(x.name, y.name) && x.size == y.size && x.bold == y.bold && x.italic == y.italic &&
           x.underline == y.underline && x.strikethrough == y.strikethrough && x.charset == y.charset;
}

bool HostPropertyBag::read_value(const std::wstring &key, Variant &out)
{
    if (!bag_) return false;
    Bstr name(key);
    VARIANT *v = out.put();
    HRESULT hr = bag_->Read(name.get(), v, log_);
    if (FAILED(hr)) {
        out.put();
        return false;
    }
    return true;
}

void HostPropertyBag::write_value(const std::wstring &key, const Variant &value)
{
    if (!bag_) return;
    Bstr name(key);
    bag_->Write(name.get(), const_cast<VARIANT *>(value.get()));
}

bool MemoryPropertyBag::read_value(const std::wstring &key, Variant &out)
{
    const Entry *found = nullptr;
    for (const Entry &e : entries_)
        if (e.key == key) {
            found = &e;
            break;
        }
    if (!found)
        for (const Entry &e : entries_)
            if (same_name(e.key, key)) {
                found = &e;
                break;
            }
    if (!found) return false;
    if (ComPtr<IUnknown> obj = object_of(found->value)) {
        // Hand out a fresh copy: what the bag holds stays as it was saved.
        ComPtr<IUnknown> copy = SnapshotObject(obj.get());
        out = copy ? object_variant(copy.get()) : Variant();
        return true;
    }
    out = found->value;
    return true;
}

void MemoryPropertyBag::write_value(const std::wstring &key, const Variant &value)
{
    Variant stored = value;
    if (ComPtr<IUnknown> obj = object_of(value)) {
        ComPtr<IUnknown> copy = SnapshotObject(obj.get());
        if (!copy) return; // an object that cannot be persisted is not saved
        stored = object_variant(copy.get());
    }
    for (Entry &e : entries_)
        if (e.key == key) {
            e.value = stored;
            return;
        }
    entries_.push_back({key, stored});
}

ComPtr<IUnknown> SnapshotObject(IUnknown *object)
{
    if (!object) return {};
    ComPtr<IPersistStream> ps = ComPtr<IUnknown>(object).as<IPersistStream>(IID_IPersistStream);
    if (!ps) return {};
    CLSID clsid{};
    if (FAILED(ps->GetClassID(&clsid))) return {};
    ComPtr<IStream> stream;
    if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()))) return {};
    if (FAILED(ps->Save(stream.get(), FALSE))) return {};
    LARGE_INTEGER zero{};
    stream->Seek(zero, STREAM_SEEK_SET, nullptr);
    ComPtr<IPersistStream> copy;
    if (FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IPersistStream, copy.put_void())))
        return {};
    if (FAILED(copy->Load(stream.get()))) return {};
    return copy.as<IUnknown>(IID_IUnknown);
}

} // namespace tarn
