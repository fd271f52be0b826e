// A font described by value (name, size in points, style), and the conversion of a LOGFONT's
// fields into one, as the library turns the system's metric fonts into font objects.
#pragma once
#include <cstdint>
#include <string>

namespace tarn {

struct FontSpec {
    std::wstring name = L"MS Sans Serif";
    double size = 8.25; // points
    int16_t charset = 0;
    int16_t weight = 400;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikethrough = false;
};

// lfHeight 0 is 8 points; a positive lfHeight is taken as points as it stands; a negative
// one is |72 / dpi_y x lfHeight|. Bold from a weight of 401 up; the other styles when their
// byte is above 0.
FontSpec FontSpecFromLogFont(const std::wstring &face, int32_t height, int32_t weight, uint8_t italic,
                             uint8_t underline, uint8_t strikeout, uint8_t charset, int32_t dpi_y);

} // namespace tarn
