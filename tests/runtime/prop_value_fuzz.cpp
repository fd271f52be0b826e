// libFuzzer target for the values a property bag hands to the stream form: the input is read
// as a list of (key, type, payload) values the way a bag holds them, of every type number a
// VARIANT can carry, and encoded. What the encoder keeps must come back exactly, in order, and
// what it drops must be exactly the types the stream form does not carry; a stream cut short
// anywhere must decode to a prefix of the same entries.
#include "runtime/prop_stream.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <tuple>

using namespace tarn;

namespace {

class Input {
public:
    Input(const uint8_t *d, size_t n) : d_(d), n_(n) {}
    bool empty() const { return pos_ >= n_; }
    uint8_t byte() { return pos_ < n_ ? d_[pos_++] : 0; }
    uint16_t u16() { return static_cast<uint16_t>(byte() | byte() << 8); }
    uint64_t u64()
    {
        uint64_t v = 0;
        for (int i = 0; i < 8; ++i) v |= static_cast<uint64_t>(byte()) << (8 * i);
        return v;
    }
    std::u16string text(size_t max)
    {
        std::u16string s(std::min<size_t>(byte() % (max + 1), (n_ - std::min(pos_, n_)) / 2), u'\0');
        for (char16_t &c : s) c = u16();
        return s;
    }

private:
    const uint8_t *d_;
    size_t n_, pos_ = 0;
};

// The payload a value of this type keeps: scalars keep only their own width of bits.
PropValue kept(const PropValue &v)
{
    PropValue k = v;
    int width = PropScalarWidth(v.vt);
    if (width >= 0) {
        k.text.clear();
        k.clsid = {};
        k.data.clear();
        k.bits = width == 8 ? v.bits : width == 0 ? 0 : v.bits & ((uint64_t{1} << (8 * width)) - 1);
    } else if (v.vt == 8) { // a string keeps its text only
        k.bits = 0;
        k.clsid = {};
        k.data.clear();
    } else { // an object its class and bytes
        k.bits = 0;
        k.text.clear();
    }
    return k;
}

auto fields(const PropValue &v) { return std::tie(v.vt, v.bits, v.text, v.clsid, v.data); }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input in(data, size);
    PropImage image;
    image.extent_cx = static_cast<int32_t>(in.u64());
    image.extent_cy = static_cast<int32_t>(in.u64());
    while (!in.empty() && image.entries.size() < 64) {
        PropEntry e;
        e.key = in.text(40);
        uint8_t kind = in.byte();
        // Mostly the types a bag holds, sometimes any type number at all (by-reference and
        // array bits included).
        e.value.vt = kind & 0x80 ? in.u16() : static_cast<uint16_t>(kind & 0x1F);
        e.value.bits = in.u64();
        e.value.text = in.text(200);
        for (uint8_t &b : e.value.clsid) b = in.byte();
        size_t n = in.byte();
        for (size_t i = 0; i < n && !in.empty(); ++i) e.value.data.push_back(in.byte());
        image.entries.push_back(std::move(e));
    }

    std::vector<uint8_t> bytes = EncodePropImage(image);
    std::vector<PropEntry> expected;
    for (const PropEntry &e : image.entries)
        if (PropScalarWidth(e.value.vt) != -2) expected.push_back({e.key, kept(e.value)});

    PropImage back;
    uint32_t body_size = 0;
    if (!DecodePropHeader(bytes.data(), bytes.size(), body_size, back)) std::abort();
    if (back.extent_cx != image.extent_cx || back.extent_cy != image.extent_cy) std::abort();
    if (!DecodePropBody(bytes.data() + kPropStreamHeaderSize, body_size, back)) std::abort();
    if (back.entries.size() != expected.size()) std::abort();
    for (size_t i = 0; i < expected.size(); ++i)
        if (back.entries[i].key != expected[i].key || fields(back.entries[i].value) != fields(expected[i].value))
            std::abort();

    // Cut short at a point the input chooses: the entries before the cut survive unchanged.
    size_t cut = body_size ? static_cast<size_t>(image.extent_cx & 0x7FFFFFFF) % body_size : 0;
    PropImage part;
    if (DecodePropBody(bytes.data() + kPropStreamHeaderSize, cut, part)) {
        if (part.entries.size() > expected.size()) std::abort();
        for (size_t i = 0; i < part.entries.size(); ++i)
            if (fields(part.entries[i].value) != fields(expected[i].value)) std::abort();
    } else if (cut >= 4) {
        std::abort(); // a body with its count read decodes, even to nothing
    }
    return 0;
}
