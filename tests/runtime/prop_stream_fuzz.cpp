// libFuzzer target for the saved-properties decoder: any bytes must decode without a crash, a
// hang or memory beyond the input's size, and whatever decodes must encode and decode again to
// the same entries.
#include "runtime/prop_stream.h"

#include <cstdint>
#include <cstdlib>
#include <tuple>

using namespace tarn;

namespace {

auto fields(const PropEntry &e)
{
    return std::tie(e.key, e.value.vt, e.value.bits, e.value.text, e.value.clsid, e.value.data);
}

bool same_entries(const PropImage &a, const PropImage &b)
{
    if (a.entries.size() != b.entries.size()) return false;
    for (size_t i = 0; i < a.entries.size(); ++i)
        if (fields(a.entries[i]) != fields(b.entries[i])) return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    PropImage image;
    uint32_t body_size = 0;
    const uint8_t *body = data;
    size_t body_len = size;
    // A whole stream (header and body) when the header reads, else a bare body.
    if (DecodePropHeader(data, size, body_size, image)) {
        if (body_size > kPropStreamMaxBody) std::abort();
        body += kPropStreamHeaderSize;
        body_len = std::min<size_t>(size - kPropStreamHeaderSize, body_size);
    }
    if (!DecodePropBody(body, body_len, image)) return 0;

    // Every entry took at least its key length and type from the body: the count is bounded
    // by the bytes, whatever count the body claimed.
    if (image.entries.size() > body_len / 4) std::abort();
    size_t payload = 0;
    for (const PropEntry &e : image.entries) {
        payload += e.key.size() * 2 + e.value.text.size() * 2 + e.value.data.size();
        if (PropScalarWidth(e.value.vt) == -2) std::abort();
    }
    if (payload > body_len) std::abort();

    // Saving what was read and reading it back gives the same entries and extent.
    std::vector<uint8_t> again = EncodePropImage(image);
    PropImage round;
    uint32_t round_size = 0;
    if (!DecodePropHeader(again.data(), again.size(), round_size, round)) std::abort();
    if (round_size != again.size() - kPropStreamHeaderSize) std::abort();
    if (!DecodePropBody(again.data() + kPropStreamHeaderSize, round_size, round)) std::abort();
    if (!same_entries(image, round) || round.extent_cx != image.extent_cx || round.extent_cy != image.extent_cy)
        std::abort();
    return 0;
}
