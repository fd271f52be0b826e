#include "runtime/prop_codec.h"

#include <olectl.h>

#include <algorithm>
#include <cstring>

namespace tarn {

namespace {

// Only these classes are ever created from saved bytes: a saved form must not be able to
// instantiate arbitrary components.
bool loadable_class(const CLSID &clsid) { return clsid == CLSID_StdFont || clsid == CLSID_StdPicture; }

std::u16string to_u16(const std::wstring &s) { return std::u16string(s.begin(), s.end()); }
std::wstring to_w(const std::u16string &s) { return std::wstring(s.begin(), s.end()); }

bool save_object(IUnknown *obj, PropValue &out)
{
    ComPtr<IPersistStream> ps = ComPtr<IUnknown>(obj).as<IPersistStream>(IID_IPersistStream);
    CLSID clsid{};
    if (!ps || FAILED(ps->GetClassID(&clsid))) return false;
    ComPtr<IStream> stream;
    if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.put())) || FAILED(ps->Save(stream.get(), FALSE)))
        return false;
    STATSTG st{};
    if (FAILED(stream->Stat(&st, STATFLAG_NONAME)) || st.cbSize.QuadPart > kPropStreamMaxBody) return false;
    out.data.resize(static_cast<size_t>(st.cbSize.QuadPart));
    LARGE_INTEGER zero{};
    stream->Seek(zero, STREAM_SEEK_SET, nullptr);
    ULONG got = 0;
    if (!out.data.empty() && (FAILED(stream->Read(out.data.data(), static_cast<ULONG>(out.data.size()), &got)) ||
                              got != out.data.size()))
        return false;
    std::memcpy(out.clsid.data(), &clsid, 16);
    out.vt = VT_UNKNOWN;
    return true;
}

ComPtr<IUnknown> load_object(const PropValue &v)
{
    CLSID clsid;
    std::memcpy(&clsid, v.clsid.data(), 16);
    if (!loadable_class(clsid)) return {};
    ComPtr<IStream> stream;
    if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()))) return {};
    ULONG written = 0;
    if (!v.data.empty() && FAILED(stream->Write(v.data.data(), static_cast<ULONG>(v.data.size()), &written)))
        return {};
    LARGE_INTEGER zero{};
    stream->Seek(zero, STREAM_SEEK_SET, nullptr);
    ComPtr<IPersistStream> ps;
    if (FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IPersistStream, ps.put_void()))) return {};
    if (FAILED(ps->Load(stream.get()))) return {};
    return ps.as<IUnknown>(IID_IUnknown);
}

} // namespace

PropImage ImageOfBag(const MemoryPropertyBag &bag)
{
    PropImage image;
    for (const MemoryPropertyBag::Entry &e : bag.entries()) {
        PropEntry out;
        out.key = to_u16(e.key);
        const VARIANT *v = e.value.get();
        VARTYPE vt = V_VT(v);
        if (vt == VT_BSTR) {
            out.value.vt = VT_BSTR;
            out.value.text = to_u16(from_bstr(V_BSTR(v)));
        } else if (vt == VT_UNKNOWN || vt == VT_DISPATCH) {
            if (!V_UNKNOWN(v) || !save_object(V_UNKNOWN(v), out.value)) continue;
        } else {
            int width = PropScalarWidth(vt);
            if (width < 0) continue;
            out.value.vt = vt;
            if (width > 0) std::memcpy(&out.value.bits, &V_I1(v), static_cast<size_t>(width));
        }
        image.entries.push_back(std::move(out));
    }
    return image;
}

void BagOfImage(const PropImage &image, MemoryPropertyBag &bag)
{
    for (const PropEntry &e : image.entries) {
        Variant value;
        const PropValue &p = e.value;
        if (p.vt == VT_BSTR) {
            value = Variant::of_string(to_w(p.text));
        } else if (PropIsObject(p.vt)) {
            ComPtr<IUnknown> obj = load_object(p);
            if (!obj) continue;
            value = Variant::of_unknown(obj.get());
        } else {
            int width = PropScalarWidth(p.vt);
            if (width < 0) continue;
            VARIANT *v = value.put();
            V_VT(v) = p.vt;
            if (width > 0) std::memcpy(&V_I1(v), &p.bits, static_cast<size_t>(width));
        }
        bag.entries().push_back({to_w(e.key), std::move(value)});
    }
}

HRESULT WritePropImage(IStream *stream, const PropImage &image)
{
    if (!stream) return E_POINTER;
    std::vector<uint8_t> bytes = EncodePropImage(image);
    ULONG written = 0;
    HRESULT hr = stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written);
    if (FAILED(hr)) return hr;
    return written == bytes.size() ? S_OK : STG_E_MEDIUMFULL;
}

bool ReadPropImage(IStream *stream, PropImage &image)
{
    if (!stream) return false;
    uint8_t header[kPropStreamHeaderSize];
    ULONG got = 0;
    if (FAILED(stream->Read(header, sizeof header, &got)) || got != sizeof header) return false;
    uint32_t body_size = 0;
    if (!DecodePropHeader(header, sizeof header, body_size, image)) return false;
    // Read in chunks: a header that claims more than the stream holds costs no more memory
    // than the stream has; a truncated body is decoded as far as it arrived.
    std::vector<uint8_t> body;
    while (body.size() < body_size) {
        size_t chunk = std::min<size_t>(body_size - body.size(), 64 * 1024);
        size_t at = body.size();
        body.resize(at + chunk);
        got = 0;
        if (FAILED(stream->Read(body.data() + at, static_cast<ULONG>(chunk), &got))) got = 0;
        body.resize(at + got);
        if (got < chunk) break;
    }
    return DecodePropBody(body.data(), body.size(), image);
}

} // namespace tarn
