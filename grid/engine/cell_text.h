// A cell's text as the grid stores it: one, two or four bytes a character, the narrowest that
// holds every character of its row (most grids hold Latin-1 text, one byte a character); or
// a wide string's characters seen as one (AsCellText).
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace tarn {

class CellText {
public:
    // The unit of a view of wchar_t characters (read as wchar_t, whatever its size).
    static constexpr uint8_t kWchar = 0;

    CellText() = default;
    CellText(const void *data, uint32_t size, uint8_t unit) : data_(data), size_(size), unit_(unit) {}

    size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    const void *data() const { return data_; }

    wchar_t operator[](size_t i) const
    {
        switch (unit_) {
        case kWchar: return static_cast<const wchar_t *>(data_)[i];
        case 1: return static_cast<wchar_t>(static_cast<const uint8_t *>(data_)[i]);
        case 2: return static_cast<wchar_t>(static_cast<const char16_t *>(data_)[i]);
        default: return static_cast<wchar_t>(static_cast<const char32_t *>(data_)[i]);
        }
    }

    void AppendTo(std::wstring &out) const;
    void AssignTo(std::wstring &out) const
    {
        out.clear();
        AppendTo(out);
    }
    std::wstring str() const
    {
        std::wstring s;
        AppendTo(s);
        return s;
    }
    bool operator==(std::wstring_view other) const;

    // Calls f with the characters as a pointer to wchar_t, uint8_t, char16_t or char32_t and
    // the count.
    template <class F> decltype(auto) Visit(F &&f) const
    {
        switch (unit_) {
        case kWchar: return f(static_cast<const wchar_t *>(data_), size_);
        case 1: return f(static_cast<const uint8_t *>(data_), size_);
        case 2: return f(static_cast<const char16_t *>(data_), size_);
        default: return f(static_cast<const char32_t *>(data_), size_);
        }
    }

private:
    const void *data_ = nullptr;
    uint32_t size_ = 0;
    uint8_t unit_ = 1;
};

// A wide text seen as a stored one (it must outlive the view).
inline CellText AsCellText(std::wstring_view text)
{
    return CellText(text.data(), static_cast<uint32_t>(text.size()), CellText::kWchar);
}

// The bytes a character of `text` needs: 1 (up to U+00FF), 2 (up to U+FFFF) or 4.
uint8_t UnitFor(std::wstring_view text);

} // namespace tarn
