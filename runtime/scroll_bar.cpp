#include "runtime/scroll_bar.h"

#include <algorithm>
#include <stdexcept>

#include "foundation/trap.h"

namespace tarn {

ScrollBar::ScrollBar(std::wstring name, float left, float top, float width, float height, bool vertical)
    : WindowedConstituent(std::move(name), L"SCROLLBAR", WS_VISIBLE | (vertical ? SBS_VERT : SBS_HORZ), 0, left, top,
                          width, height)
{
    SetRange(0, 0);
}

SCROLLINFO ScrollBar::info(UINT mask) const
{
    SCROLLINFO si{};
    si.cbSize = sizeof si;
    si.fMask = mask;
    if (hwnd_) GetScrollInfo(hwnd_, SB_CTL, &si);
    return si;
}

int32_t ScrollBar::Min() const { return info(SIF_RANGE).nMin; }

int32_t ScrollBar::Max() const
{
    // The window's range includes the page; the scroll bar's own Max is the last top position.
    SCROLLINFO si = info(SIF_RANGE | SIF_PAGE);
    return std::max(si.nMin, si.nMax - std::max<int>(static_cast<int>(si.nPage) - 1, 0));
}

void ScrollBar::SetRange(int32_t min, int32_t max)
{
    if (max < min) max = min;
    if (!hwnd_) return;
    SCROLLINFO si{};
    si.cbSize = sizeof si;
    si.fMask = SIF_RANGE | SIF_PAGE | SIF_DISABLENOSCROLL;
    si.nMin = min;
    si.nMax = max + std::max(large_ - 1, 0);
    si.nPage = static_cast<UINT>(std::max(large_, 1));
    SetScrollInfo(hwnd_, SB_CTL, &si, TRUE);
}

int32_t ScrollBar::Value() const { return info(SIF_POS).nPos; }

void ScrollBar::SetValue(int32_t value)
{
    if (!hwnd_) return;
    int32_t v = std::clamp(value, Min(), Max());
    if (v == Value()) return;
    SCROLLINFO si{};
    si.cbSize = sizeof si;
    si.fMask = SIF_POS;
    si.nPos = v;
    SetScrollInfo(hwnd_, SB_CTL, &si, TRUE);
    fire(on_change);
}

void ScrollBar::SetLargeChange(int32_t change)
{
    if (change < 1) throw std::invalid_argument("change");
    int32_t min = Min(), max = Max();
    large_ = change;
    SetRange(min, max);
}

void ScrollBar::SetSmallChange(int32_t change)
{
    if (change < 1) throw std::invalid_argument("change");
    small_ = change;
}

bool ScrollBar::on_scroll(int code, LRESULT &result)
{
    result = 0;
    int32_t v = Value();
    switch (code) {
    case SB_LINEUP: v -= small_; break;
    case SB_LINEDOWN: v += small_; break;
    case SB_PAGEUP: v -= large_; break;
    case SB_PAGEDOWN: v += large_; break;
    case SB_TOP: v = Min(); break;
    case SB_BOTTOM: v = Max(); break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: v = info(SIF_TRACKPOS).nTrackPos; break;
    default: return true;
    }
    SetValue(v);
    return true;
}

} // namespace tarn
