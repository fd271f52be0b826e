#include "grid/window_sync.h"

namespace tarn {

void WindowSync::Mark(HWND w)
{
    if (!w) return;
    if (!paint_due_) {
        InvalidateRect(w, nullptr, FALSE);
        paint_due_ = true;
    }
    if (!posted_ && PostMessageW(w, kSyncMessage, 0, 0)) posted_ = true;
}

bool WindowSync::Arrived(UINT msg)
{
    switch (msg) {
    case WM_PAINT:
        paint_due_ = false;
        return true;
    case kSyncMessage:
        // Marked again from here on: should anything have validated the window meanwhile,
        // the next batch still repaints it.
        posted_ = paint_due_ = false;
        return true;
    case WM_DESTROY:
        // A window made later starts with its own bars and nothing posted to it.
        paint_due_ = posted_ = false;
        bars_of_ = nullptr;
        return false;
    default:
        return false;
    }
}

bool WindowSync::SetScrollBars(HWND w, const Bar &vertical, const Bar &horizontal)
{
    if (!w) return false;
    const bool fresh = bars_of_ != w;
    const bool v = fresh || vertical != vertical_, h = fresh || horizontal != horizontal_;
    if (!v && !h) return false;
    SCROLLINFO si{};
    si.cbSize = sizeof si;
    si.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
    auto set = [&](int bar, const Bar &b) {
        si.nMin = 0;
        si.nMax = b.max;
        si.nPage = static_cast<UINT>(b.page);
        si.nPos = b.pos;
        SetScrollInfo(w, bar, &si, FALSE);
    };
    if (v) set(SB_VERT, vertical);
    if (h) set(SB_HORZ, horizontal);
    bars_of_ = w;
    vertical_ = vertical;
    horizontal_ = horizontal;
    // The bars are drawn with the frame when the window next paints.
    RedrawWindow(w, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_NOCHILDREN);
    return true;
}

} // namespace tarn
