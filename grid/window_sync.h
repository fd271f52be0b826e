// Brings the grid's window up to date once per batch of calls, not once per call. A property
// or method call on an active grid only marks the window out of date: the first mark of a
// batch invalidates it and posts a message to itself; the window paints when it next gets
// WM_PAINT, and the scroll bars follow when that message (or WM_PAINT) arrives, once the host
// returns to its message loop. Scroll bars are set only when their range, page or position
// really changed, without drawing, and their frame is redrawn with the next paint. So a host
// loop of a hundred thousand calls pays two system calls, however Redraw stands.
#pragma once
#include <windows.h>

namespace tarn {

class WindowSync {
public:
    // The message posted to the window to bring its scroll bars up to date.
    static constexpr UINT kSyncMessage = WM_APP + 1;

    struct Bar {
        int max = 0, page = 0, pos = 0;
        bool operator==(const Bar &o) const { return max == o.max && page == o.page && pos == o.pos; }
        bool operator!=(const Bar &o) const { return !(*this == o); }
    };

    // The window's picture and scroll bars are out of date.
    void Mark(HWND w);
    // Called for each message before the window handles it; true for the sync message, after
    // which the owner sets its scroll bars (SetScrollBars). WM_PAINT also asks for that.
    bool Arrived(UINT msg);
    // Sets the scroll bars that differ from what they show; returns whether any did.
    bool SetScrollBars(HWND w, const Bar &vertical, const Bar &horizontal);

private:
    bool paint_due_ = false; // invalidated, WM_PAINT not yet come
    bool posted_ = false;    // kSyncMessage is in the queue
    HWND bars_of_ = nullptr; // the window `vertical_` and `horizontal_` were set on
    Bar vertical_, horizontal_;
};

} // namespace tarn
