#include "runtime/prop_stream.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace tarn;

namespace {

PropImage sample()
{
    PropImage image;
    image.extent_cx = 5292;
    image.extent_cy = 767;
    PropEntry caption{u"CAPTION", {}};
    caption.value.vt = 8; // VT_BSTR
    caption.value.text = u"Gr\u00fc\u00dfe \u65e5\u672c";
    PropEntry colour{u"BACKCOLOR", {}};
    colour.value.vt = 3; // VT_I4
    colour.value.bits = 0x8000000F;
    PropEntry flag{u"ENABLED", {}};
    flag.value.vt = 11; // VT_BOOL
    flag.value.bits = 0xFFFF;
    PropEntry font{u"FONT", {}};
    font.value.vt = 13; // VT_UNKNOWN
    font.value.clsid[0] = 0x42;
    font.value.data = {1, 2, 3, 4, 5};
    PropEntry empty{u"PICTURE", {}};
    image.entries = {caption, colour, flag, font, empty};
    return image;
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
    for (size_t i = 0; i < in.entries.size(); ++i) {
        EXPECT_EQ(in.entries[i].key, out.entries[i].key);
        EXPECT_EQ(in.entries[i].value.vt, out.entries[i].value.vt);
        EXPECT_EQ(in.entries[i].value.bits, out.entries[i].value.bits);
        EXPECT_EQ(in.entries[i].value.text, out.entries[i].value.text);
        EXPECT_EQ(in.entries[i].value.clsid, out.entries[i].value.clsid);
        EXPECT_EQ(in.entries[i].value.data, out.entries[i].value.data);
    }
}

TEST(PropStream, TruncatedBodyKeepsTheEntriesBeforeTheCut)
{
    std::vector<uint8_t> bytes = EncodePropImage(sample());
    // Cut inside the third entry: the first two survive, nothing is invented.
    for (size_t cut = kPropStreamHeaderSize; cut < bytes.size(); ++cut) {
        PropImage out;
        std::vector<uint8_t> part(bytes.begin(), bytes.begin() + static_cast<long>(cut));
        decode(part, out);
        EXPECT_LE(out.entries.size(), 5u);
        for (const PropEntry &e : out.entries) EXPECT_FALSE(e.key.empty());
    }
}

TEST(PropStream, RefusesWhatIsNotOurs)
{
    PropImage out;
    uint32_t body = 0;
    std::vector<uint8_t> bytes = EncodePropImage(sample());
    std::vector<uint8_t> wrong_magic = bytes;
    wrong_magic[0] = 'X';
    EXPECT_FALSE(DecodePropHeader(wrong_magic.data(), wrong_magic.size(), body, out));
    std::vector<uint8_t> newer = bytes;
    newer[4] = static_cast<uint8_t>(kPropStreamVersion + 1);
    EXPECT_FALSE(DecodePropHeader(newer.data(), newer.size(), body, out));
    EXPECT_FALSE(DecodePropHeader(bytes.data(), 10, body, out));
    std::vector<uint8_t> huge = bytes;
    const uint32_t claim = kPropStreamMaxBody + 1;
    std::memcpy(&huge[8], &claim, 4);
    EXPECT_FALSE(DecodePropHeader(huge.data(), huge.size(), body, out));
}

TEST(PropStream, GarbageBodiesNeverReadPastTheirEnd)
{
    // Lengths that claim more than the body holds stop the decoder; it keeps what it read.
    std::vector<uint8_t> body = {2, 0, 0, 0,             // two entries
                                 1, 0, 'A', 0, 8, 0,     // key "A", VT_BSTR
                                 0xFF, 0xFF, 0xFF, 0x7F}; // a string of 2^31 characters
    PropImage out;
    EXPECT_TRUE(DecodePropBody(body.data(), body.size(), out));
    EXPECT_TRUE(out.entries.empty());
    std::vector<uint8_t> unknown_type = {1, 0, 0, 0, 1, 0, 'B', 0, 0x44, 0x44};
    EXPECT_TRUE(DecodePropBody(unknown_type.data(), unknown_type.size(), out));
    EXPECT_TRUE(out.entries.empty());
}
