#include "runtime/prop_stream.h"

#include <gtest/gtest.h>

#include <cstring>
#include <tuple>

using namespace tarn;

namespace {

// One value of each kind the encoding carries.
PropImage sample()
{
    PropImage image;
    image.extent_cx = 5292;
    image.extent_cy = 767;
    // Each value: vt, scalar bits, text, class id, an object's bytes.
    image.entries = {{u"CAPTION", {8, 0, u"Gr\u00fc\u00dfe \u65e5\u672c", {}, {}}}, // VT_BSTR beyond Latin-1
                     {u"BACKCOLOR", {3, 0x8000000F, {}, {}, {}}},                  // VT_I4
                     {u"ENABLED", {11, 0xFFFF, {}, {}, {}}},                       // VT_BOOL
                     {u"FONT", {13, 0, {}, {0x42}, {1, 2, 3, 4, 5}}},               // VT_UNKNOWN
                     {u"PICTURE", {}}};                                            // VT_EMPTY
    return image;
}

// Everything an entry carries, comparable and printable in one.
auto fields(const PropEntry &e)
{
    return std::tie(e.key, e.value.vt, e.value.bits, e.value.text, e.value.clsid, e.value.data);
}

bool decode(const std::vector<uint8_t> &bytes, PropImage &out)
{
    uint32_t body = 0;
    if (bytes.size() < kPropStreamHeaderSize || !DecodePropHeader(bytes.data(), bytes.size(), body, out)) return false;
    size_t available = bytes.size() - kPropStreamHeaderSize;
    return DecodePropBody(bytes.data() + kPropStreamHeaderSize, body < available ? body : available, out);
}

} // namespace

TEST(PropStream, RoundTripsEveryKindOfValue)
{
    PropImage in = sample(), out;
    ASSERT_TRUE(decode(EncodePropImage(in), out));
    EXPECT_EQ(in.extent_cx, out.extent_cx);
    EXPECT_EQ(in.extent_cy, out.extent_cy);
    ASSERT_EQ(in.entries.size(), out.entries.size());
    for (size_t i = 0; i < in.entries.size(); ++i) EXPECT_EQ(fields(in.entries[i]), fields(out.entries[i]));
}

TEST(PropStream, TruncatedBodyKeepsTheEntriesBeforeTheCut)
{
    const PropImage in = sample();
    std::vector<uint8_t> bytes = EncodePropImage(in);
    // Cut anywhere: what survives is a prefix of what was written, nothing is invented.
    for (size_t cut = kPropStreamHeaderSize; cut < bytes.size(); ++cut) {
        SCOPED_TRACE(cut);
        PropImage out;
        decode(std::vector<uint8_t>(bytes.begin(), bytes.begin() + static_cast<long>(cut)), out);
        ASSERT_LT(out.entries.size(), in.entries.size());
        for (size_t i = 0; i < out.entries.size(); ++i) EXPECT_EQ(fields(in.entries[i]), fields(out.entries[i]));
    }
}

TEST(PropStream, RefusesHeadersThatAreNotOursAndStopsAtBodiesThatLie)
{
    const std::vector<uint8_t> good = EncodePropImage(sample());
    std::vector<uint8_t> wrong_magic = good, newer = good, huge = good;
    wrong_magic[0] = 'X';
    newer[4] = kPropStreamVersion + 1;
    const uint32_t claim = kPropStreamMaxBody + 1;
    std::memcpy(&huge[8], &claim, 4);
    PropImage out;
    uint32_t body = 0;
    EXPECT_FALSE(DecodePropHeader(wrong_magic.data(), wrong_magic.size(), body, out));
    EXPECT_FALSE(DecodePropHeader(newer.data(), newer.size(), body, out));
    EXPECT_FALSE(DecodePropHeader(good.data(), 10, body, out));
    EXPECT_FALSE(DecodePropHeader(huge.data(), huge.size(), body, out));

    // Lengths that claim more than the body holds stop the decoder; it keeps what it read.
    const std::vector<std::vector<uint8_t>> bodies = {
        {2, 0, 0, 0, 1, 0, 'A', 0, 8, 0, 0xFF, 0xFF, 0xFF, 0x7F}, // two entries; "A": a VT_BSTR of 2^31 characters
        {1, 0, 0, 0, 1, 0, 'B', 0, 0x44, 0x44},                  // one entry; "B": a type never defined
    };
    for (const auto &bytes : bodies) {
        PropImage kept;
        EXPECT_TRUE(DecodePropBody(bytes.data(), bytes.size(), kept));
        EXPECT_TRUE(kept.entries.empty());
    }
}
