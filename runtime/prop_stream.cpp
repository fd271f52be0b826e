#include "runtime/prop_stream.h"

#include <cstring>

namespace tarn {

namespace {

enum : uint16_t {
    kVtEmpty = 0, kVtNull = 1, kVtI2 = 2, kVtI4 = 3, kVtR4 = 4, kVtR8 = 5, kVtCy = 6, kVtDate = 7,
    kVtBstr = 8, kVtDispatch = 9, kVtError = 10, kVtBool = 11, kVtUnknown = 13, kVtI1 = 16, kVtUi1 = 17,
    kVtUi2 = 18, kVtUi4 = 19, kVtI8 = 20, kVtUi8 = 21, kVtInt = 22, kVtUint = 23,
};

class Writer {
public:
    void u16(uint16_t v) { put(&v, 2); }
    void u32(uint32_t v) { put(&v, 4); }
    void put(const void *p, size_t n)
    {
        const uint8_t *b = static_cast<const uint8_t *>(p);
        out.insert(out.end(), b, b + n);
    }
    void text16(const std::u16string &s) { put(s.data(), s.size() * 2); }
    std::vector<uint8_t> out;
};

class Reader {
public:
    Reader(const uint8_t *d, size_t n) : d_(d), n_(n) {}
    bool get(void *p, size_t n)
    {
        if (n > n_ - pos_) return false;
        std::memcpy(p, d_ + pos_, n);
        pos_ += n;
        return true;
    }
    bool u16(uint16_t &v) { return get(&v, 2); }
    bool u32(uint32_t &v) { return get(&v, 4); }
    bool text16(size_t chars, std::u16string &s)
    {
        if (chars > (n_ - pos_) / 2) return false;
        s.resize(chars);
        return get(s.data(), chars * 2);
    }
    bool bytes(size_t n, std::vector<uint8_t> &v)
    {
        if (n > n_ - pos_) return false;
        v.assign(d_ + pos_, d_ + pos_ + n);
        pos_ += n;
        return true;
    }

private:
    const uint8_t *d_;
    size_t n_;
    size_t pos_ = 0;
};

} // namespace

int PropScalarWidth(uint16_t vt)
{
    switch (vt) {
    case kVtEmpty: case kVtNull: return 0;
    case kVtI1: case kVtUi1: return 1;
    case kVtI2: case kVtUi2: case kVtBool: return 2;
    case kVtI4: case kVtUi4: case kVtR4: case kVtError: case kVtInt: case kVtUint: return 4;
    case kVtR8: case kVtCy: case kVtDate: case kVtI8: case kVtUi8: return 8;
    case kVtBstr: case kVtDispatch: case kVtUnknown: return -1;
    default: return -2;
    }
}

bool PropIsObject(uint16_t vt) { return vt == kVtDispatch || vt == kVtUnknown; }

std::vector<uint8_t> EncodePropImage(const PropImage &image)
{
    Writer body;
    uint32_t count = 0;
    for (const PropEntry &e : image.entries)
        if (PropScalarWidth(e.value.vt) != -2 && e.key.size() <= 0xFFFF) ++count;
    body.u32(count);
    for (const PropEntry &e : image.entries) {
        const PropValue &v = e.value;
        int width = PropScalarWidth(v.vt);
        if (width == -2 || e.key.size() > 0xFFFF) continue;
        body.u16(static_cast<uint16_t>(e.key.size()));
        body.text16(e.key);
        body.u16(v.vt);
        if (width > 0) body.put(&v.bits, static_cast<size_t>(width));
        else if (v.vt == kVtBstr) {
            body.u32(static_cast<uint32_t>(v.text.size()));
            body.text16(v.text);
        } else if (PropIsObject(v.vt)) {
            body.put(v.clsid.data(), 16);
            body.u32(static_cast<uint32_t>(v.data.size()));
            body.put(v.data.data(), v.data.size());
        }
    }
    Writer all;
    all.put("TARN", 4);
    all.u16(kPropStreamVersion);
    all.u16(static_cast<uint16_t>(kPropStreamHeaderSize));
    all.u32(static_cast<uint32_t>(body.out.size()));
    all.u32(static_cast<uint32_t>(image.extent_cx));
    all.u32(static_cast<uint32_t>(image.extent_cy));
    all.put(body.out.data(), body.out.size());
    return std::move(all.out);
}

bool DecodePropHeader(const uint8_t *data, size_t size, uint32_t &body_size, PropImage &image)
{
    Reader r(data, size);
    char magic[4];
    uint16_t version = 0, header_size = 0;
    uint32_t cx = 0, cy = 0;
    if (!r.get(magic, 4) || std::memcmp(magic, "TARN", 4) != 0) return false;
    if (!r.u16(version) || !r.u16(header_size) || !r.u32(body_size) || !r.u32(cx) || !r.u32(cy)) return false;
    if (version == 0 || version > kPropStreamVersion || header_size != kPropStreamHeaderSize) return false;
    if (body_size > kPropStreamMaxBody) return false;
    image.extent_cx = static_cast<int32_t>(cx);
    image.extent_cy = static_cast<int32_t>(cy);
    return true;
}

bool DecodePropBody(const uint8_t *data, size_t size, PropImage &image)
{
    Reader r(data, size);
    uint32_t count = 0;
    if (!r.u32(count)) return false;
    for (uint32_t i = 0; i < count; ++i) {
        PropEntry e;
        uint16_t key_len = 0;
        if (!r.u16(key_len) || !r.text16(key_len, e.key) || !r.u16(e.value.vt)) break;
        int width = PropScalarWidth(e.value.vt);
        if (width == -2) break; // unknown type: the rest cannot be framed
        if (width > 0) {
            if (!r.get(&e.value.bits, static_cast<size_t>(width))) break;
        } else if (e.value.vt == kVtBstr) {
            uint32_t len = 0;
            if (!r.u32(len) || !r.text16(len, e.value.text)) break;
        } else if (PropIsObject(e.value.vt)) {
            uint32_t len = 0;
            if (!r.get(e.value.clsid.data(), 16) || !r.u32(len) || !r.bytes(len, e.value.data)) break;
        }
        image.entries.push_back(std::move(e));
    }
    return true;
}

} // namespace tarn
