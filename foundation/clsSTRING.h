// clsSTRING: a growable text buffer. The buffer reserves `capacity` characters and uses the
// first `length` of them; appending grows the reserve by doubling, so building a long text
// piece by piece copies each character a bounded number of times.
#pragma once
#include <cstdint>
#include <string>

namespace tarn {

class clsSTRING {
public:
    // Length and capacity 0, the buffer empty.
    void Clear();
    // The first `length` characters of the buffer.
    std::wstring Value() const;
    // Adds `text` at the end. Throws (and changes nothing) when the result would pass what a
    // 32-bit length can count.
    void Append(const std::wstring &text);

    int32_t Length() const { return length_; }
    int32_t Capacity() const { return capacity_; }

private:
    int32_t capacity_ = 0;
    int32_t length_ = 0;
    std::wstring buffer_; // always `capacity_` characters long
};

} // namespace tarn
