#include "foundation/metrics.h"

#include <cmath>

#include "foundation/checked.h"
#include "foundation/trap.h"

namespace tarn {

namespace {

thread_local MetricsRecord t_record{};
thread_local int32_t t_offset_pixels[2]{};
thread_local int32_t t_offset_twips[2]{};

double screen_tpp(int index)
{
    // Read once per thread: the screen's DPI does not change under a running host.
    thread_local double tpp[2] = {0, 0};
    double &slot = tpp[index == LOGPIXELSX ? 0 : 1];
    if (slot == 0) {
        HDC dc = GetDC(nullptr);
        int dpi = dc ? GetDeviceCaps(dc, index) : 96;
        if (dc) ReleaseDC(nullptr, dc);
        slot = 1440.0 / (dpi > 0 ? dpi : 96);
    }
    return slot;
}

} // namespace

int ScreenDpiX() { return static_cast<int>(std::lround(1440.0 / TwipsPerPixelX())); }
int ScreenDpiY() { return static_cast<int>(std::lround(1440.0 / TwipsPerPixelY())); }

const MetricsRecord &ThreadMetrics() { return t_record; }

bool FillMetrics(MetricsRecord &record)
{
    // Work on a copy so that a failed call leaves the record as it was.
    MetricsRecord fresh = record;
    fresh.nonclient.cbSize = kNonClientMetricsSize;
    if (!SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, 0, &fresh.nonclient, 0)) return false;
    record.nonclient = fresh.nonclient;
    if (!SystemParametersInfoA(SPI_GETICONTITLELOGFONT, 0, &fresh.icon_title, 0)) return false;
    record.icon_title = fresh.icon_title;
    return true;
}

bool RefreshMetrics() { return FillMetrics(t_record); }

double TwipsPerPixelX() { return screen_tpp(LOGPIXELSX); }
double TwipsPerPixelY() { return screen_tpp(LOGPIXELSY); }

int32_t ScaledMetric(int32_t pixels)
{
    RefreshMetrics();
    return read_step<int32_t>([&] { return to_int32(pixels * TwipsPerPixelX()); });
}

int32_t MetricOffset()
{
    t_offset_pixels[0] = t_record.nonclient.iBorderWidth;
    t_offset_pixels[1] = static_cast<int32_t>(t_record.nonclient.cbSize);
    t_offset_twips[0] = ScaledMetric(t_offset_pixels[0]);
    t_offset_twips[1] = ScaledMetric(t_offset_pixels[1]);
    return read_step<int32_t>([] { return to_int32(t_offset_twips[1] / TwipsPerPixelX() - 315); });
}

const int32_t *MetricOffsetTwips() { return t_offset_twips; }

int32_t DropDownWidthFor(const std::vector<int32_t> &item_lengths)
{
    int32_t m = 0;
    for (int32_t len : item_lengths)
        if (len > m) m = add32(len, 11);
    return m;
}

void SizeComboDropDown(HWND combo, int32_t visible_items)
{
    int32_t count = 0;
    step([&] {
        InvalidateRect(combo, nullptr, TRUE);
        UpdateWindow(combo);
        LRESULT n = SendMessageW(combo, CB_GETCOUNT, 0, 0);
        count = n > 0 ? static_cast<int32_t>(n) : 0;
    });
    std::vector<int32_t> lengths;
    step([&] {
        // One past the last item is read too; it reads as empty.
        for (int32_t i = 0; i <= count; ++i) {
            LRESULT len = SendMessageW(combo, CB_GETLBTEXTLEN, static_cast<WPARAM>(i), 0);
            lengths.push_back(len > 0 ? static_cast<int32_t>(len) : 0);
        }
    });
    int32_t width = 0, list_height = 0;
    step([&] {
        // The combo box reads the width from wParam; it ignores lParam.
        LRESULT w = SendMessageW(combo, CB_SETDROPPEDWIDTH, static_cast<WPARAM>(DropDownWidthFor(lengths)), 0);
        width = static_cast<int32_t>(w);
    });
    step([&] {
        LRESULT h = SendMessageW(combo, CB_GETITEMHEIGHT, 0, 0);
        list_height = mul32(static_cast<int32_t>(h), add32(visible_items, 2));
    });
    step([&] {
        RECT cr{};
        if (!GetWindowRect(combo, &cr)) return;
        HWND child = GetWindow(GetParent(combo), GW_CHILD);
        while (child) {
            RECT r{};
            if (GetWindowRect(child, &r) && r.left == cr.left && r.top == cr.top) break;
            child = GetWindow(child, GW_HWNDNEXT);
        }
        if (!child) return;
        SetWindowPos(child, combo, 0, 0, width, list_height,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOREDRAW | SWP_NOACTIVATE);
    });
}

} // namespace tarn
