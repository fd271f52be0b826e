// The binary form of a control's saved properties (what IPersistStreamInit and IPersistStorage
// write): the same (key, value) pairs a property bag holds, in one versioned encoding.
// Pure code: values are described by their VARTYPE number and raw payload.
//
// Layout, little-endian:
//   header  "TARN" | u16 version | u16 header size | u32 body size | i32 extent cx | i32 extent cy
//   body    u32 count, then per entry: u16 key length | key (UTF-16) | u16 vt | payload
//   payload scalars 1, 2, 4 or 8 bytes by vt; strings u32 length + UTF-16; objects the 16-byte
//           class id, u32 length and the object's own persisted bytes; empty and null nothing.
// A reader accepts every version up to its own; the body size lets it step over data it does
// not understand, so a container's stream stays positioned after the control's data.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tarn {

struct PropValue {
    uint16_t vt = 0;     // VT_EMPTY
    uint64_t bits = 0;   // scalar payload
    std::u16string text; // VT_BSTR
    std::array<uint8_t, 16> clsid{};
    std::vector<uint8_t> data; // an object's persisted bytes
};

struct PropEntry {
    std::u16string key;
    PropValue value;
};

struct PropImage {
    int32_t extent_cx = 0; // HIMETRIC
    int32_t extent_cy = 0;
    std::vector<PropEntry> entries;
};

constexpr uint16_t kPropStreamVersion = 1;
constexpr size_t kPropStreamHeaderSize = 20;
constexpr uint32_t kPropStreamMaxBody = 64u << 20; // larger claims are not ours

// Payload width of a scalar VARTYPE (1, 2, 4 or 8), 0 for empty/null, -1 for strings and
// objects, -2 for types the encoding does not carry.
int PropScalarWidth(uint16_t vt);
bool PropIsObject(uint16_t vt);

std::vector<uint8_t> EncodePropImage(const PropImage &image);

// Reads a header; false when the bytes are not a header of a version this build reads.
bool DecodePropHeader(const uint8_t *data, size_t size, uint32_t &body_size, PropImage &image);
// Decodes the entries of a body; stops at the first malformed or truncated entry and keeps
// what came before it. Returns false when nothing could be read.
bool DecodePropBody(const uint8_t *data, size_t size, PropImage &image);

} // namespace tarn
