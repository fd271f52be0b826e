// Bitmap: a 32-bit top-down DIB section with its own DC, for rendering controls off-screen and
// reading their pixels; it writes PNG files through the Windows Imaging Component.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

#include "foundation/colors.h"
#include "foundation/handles.h"

namespace tarn::host {

class Bitmap {
public:
    Bitmap(int width, int height, Rgb fill = 0xFFFFFF);
    Bitmap(Bitmap &&) = default;
    Bitmap &operator=(Bitmap &&) = default;

    HDC dc() const { return dc_.get(); }
    int width() const { return width_; }
    int height() const { return height_; }
    // The pixel as 0x00BBGGRR (GDI's COLORREF order); 0xFFFFFFFF outside the bitmap.
    Rgb pixel(int x, int y) const;
    void fill(Rgb color);
    // How many pixels of a row or column (or the whole picture) have this colour.
    int count_row(int y, Rgb color) const;
    int count_column(int x, Rgb color) const;
    int count(Rgb color) const;
    uint32_t hash() const;
    // Writes a PNG (a Windows path); false when WIC refuses.
    bool save_png(const std::wstring &path) const;

private:
    int width_, height_;
    unique_bitmap bitmap_; // declared before the DC so the DC is deleted first, freeing it
    unique_dc dc_;
    uint32_t *bits_ = nullptr;
};

} // namespace tarn::host
