#include "foundation/clsSTRING.h"

#include <limits>
#include <stdexcept>

namespace tarn {

namespace {
constexpr int32_t kFirstCapacity = 16;
}

void clsSTRING::Clear()
{
    capacity_ = 0;
    length_ = 0;
    buffer_.clear();
    buffer_.shrink_to_fit();
}

std::wstring clsSTRING::Value() const { return buffer_.substr(0, static_cast<size_t>(length_)); }

void clsSTRING::Append(const std::wstring &text)
{
    constexpr int64_t kMost = std::numeric_limits<int32_t>::max();
    const int64_t needed = static_cast<int64_t>(length_) + static_cast<int64_t>(text.size());
    if (needed > kMost) throw std::length_error("text too long");
    if (needed > capacity_) {
        int64_t grown = capacity_ > 0 ? capacity_ : kFirstCapacity;
        while (grown < needed) grown *= 2;
        if (grown > kMost) grown = kMost;
        buffer_.resize(static_cast<size_t>(grown)); // may throw bad_alloc: nothing changed yet
        capacity_ = static_cast<int32_t>(grown);
    }
    text.copy(buffer_.data() + length_, text.size());
    length_ = static_cast<int32_t>(needed);
}

} // namespace tarn
