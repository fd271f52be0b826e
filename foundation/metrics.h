// System metrics per thread (the module's non-client metrics record), pixel <-> twip
// conversion, and the combo drop-down sizing routine.
#pragma once
#include <windows.h>

#include <cstdint>
#include <vector>

namespace tarn {

// The platform's non-client metrics record in its 8-bit form, as the module keeps it: the
// first word is the record's size, 340 once refreshed and 0 before the thread's first refresh.
struct MetricsRecord {
    NONCLIENTMETRICSA nonclient;
    LOGFONTA icon_title;
};
constexpr UINT kNonClientMetricsSize = 340; // the record size the contract names (no padded border)

// The calling thread's record, zeroed until its first RefreshMetrics.
const MetricsRecord &ThreadMetrics();

// Fills the record (SPI_GETNONCLIENTMETRICS, then SPI_GETICONTITLELOGFONT); true when both work.
bool RefreshMetrics();
// Fills any record the same way (clsMETRICS keeps its own copy).
bool FillMetrics(MetricsRecord &record);

// The screen's twips per pixel: 15 at 96 DPI, 10 at 144 DPI.
double TwipsPerPixelX();
double TwipsPerPixelY();
// The screen's dots per inch (96 when it cannot be read).
int ScreenDpiX();
int ScreenDpiY();

// Refreshes the record, then returns pixels x twips-per-pixel rounded half to even (0 when
// the product does not fit 32 bits).
int32_t ScaledMetric(int32_t pixels);

// Converts the module's two kept pixel values (the record's border width and its size word,
// as they stand) to twips with ScaledMetric, keeps both, and returns the second in pixels
// less 315: 25 once the record is filled, -315 before the thread's first refresh.
int32_t MetricOffset();
// The two twip values the last MetricOffset stored.
const int32_t *MetricOffsetTwips();

// The dropped width SizeComboDropDown computes for items of these lengths: a running maximum
// that an item replaces only when longer than the kept value, which already includes +11.
int32_t DropDownWidthFor(const std::vector<int32_t> &item_lengths);

// Fits a combo box's drop-down list: width from its item texts, height for `visible_items`.
void SizeComboDropDown(HWND combo, int32_t visible_items);

} // namespace tarn
