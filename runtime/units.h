// Twips and pixels. Hosts exchange sizes and positions in twips; GDI draws in pixels. A twip
// position falls in the pixel that contains it (truncation toward minus infinity), so the
// layout arithmetic of the controls lands on the pixel rows and columns it names.
#pragma once
#include <cmath>

namespace tarn {

struct Scale {
    double tppx = 15; // twips per pixel
    double tppy = 15;
};

// 1e-6 absorbs the representation error of twips-per-pixel values such as 1440 / 110.
inline int to_px_x(double twips, const Scale &s) { return static_cast<int>(std::floor(twips / s.tppx + 1e-6)); }
inline int to_px_y(double twips, const Scale &s) { return static_cast<int>(std::floor(twips / s.tppy + 1e-6)); }
inline float to_twips_x(double px, const Scale &s) { return static_cast<float>(px * s.tppx); }
inline float to_twips_y(double px, const Scale &s) { return static_cast<float>(px * s.tppy); }

// HIMETRIC (hundredths of a millimetre) and pixels at a given DPI.
inline int himetric_to_px(long himetric, int dpi) { return static_cast<int>(std::lround(himetric * dpi / 2540.0)); }
inline long px_to_himetric(int px, int dpi) { return std::lround(px * 2540.0 / dpi); }

} // namespace tarn
