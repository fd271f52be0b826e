#include "runtime/up_down.h"

#include <commctrl.h>

#include <stdexcept>

namespace tarn {

UpDown::UpDown(std::wstring name, float left, float top, float width, float height)
    : WindowedConstituent(std::move(name), CommonControlClass(ICC_UPDOWN_CLASS, UPDOWN_CLASSW),
                          WS_VISIBLE | UDS_ARROWKEYS, 0, left, top, width, height)
{
    if (hwnd_) SendMessageW(hwnd_, UDM_SETRANGE32, 0, 10);
}

void UpDown::range(int32_t &min, int32_t &max) const
{
    int lo = 0, hi = 0;
    if (hwnd_) SendMessageW(hwnd_, UDM_GETRANGE32, reinterpret_cast<WPARAM>(&lo), reinterpret_cast<LPARAM>(&hi));
    min = lo;
    max = hi;
}

int32_t UpDown::Min() const
{
    int32_t min = 0, max = 0;
    range(min, max);
    return min;
}

void UpDown::SetMin(int32_t min)
{
    if (hwnd_) SendMessageW(hwnd_, UDM_SETRANGE32, static_cast<WPARAM>(min), static_cast<LPARAM>(Max()));
}

int32_t UpDown::Max() const
{
    int32_t min = 0, max = 0;
    range(min, max);
    return max;
}

void UpDown::SetMax(int32_t max)
{
    if (hwnd_) SendMessageW(hwnd_, UDM_SETRANGE32, static_cast<WPARAM>(Min()), static_cast<LPARAM>(max));
}

int32_t UpDown::Value() const
{
    return hwnd_ ? static_cast<int32_t>(SendMessageW(hwnd_, UDM_GETPOS32, 0, 0)) : 0;
}

void UpDown::SetValue(int32_t value)
{
    if (hwnd_) SendMessageW(hwnd_, UDM_SETPOS32, 0, static_cast<LPARAM>(value));
}

bool UpDown::ArrowKeys() const { return (style() & UDS_ARROWKEYS) != 0; }
void UpDown::SetArrowKeys(bool on) { set_style_bits(UDS_ARROWKEYS, on); }

int16_t UpDown::BuddyAlignment() const
{
    LONG_PTR s = style();
    return (s & UDS_ALIGNLEFT) ? 1 : (s & UDS_ALIGNRIGHT) ? 2 : 0;
}

void UpDown::SetBuddyAlignment(int16_t alignment)
{
    if (alignment < 0 || alignment > 2) throw std::invalid_argument("alignment");
    set_style_bits(UDS_ALIGNLEFT | UDS_ALIGNRIGHT, false);
    if (alignment) set_style_bits(alignment == 1 ? UDS_ALIGNLEFT : UDS_ALIGNRIGHT, true);
}

bool UpDown::SyncBuddy() const { return (style() & UDS_SETBUDDYINT) != 0; }
void UpDown::SetSyncBuddy(bool on) { set_style_bits(UDS_SETBUDDYINT, on); }

bool UpDown::ThousandsSeparator() const { return (style() & UDS_NOTHOUSANDS) == 0; }
void UpDown::SetThousandsSeparator(bool on) { set_style_bits(UDS_NOTHOUSANDS, !on); }

bool UpDown::on_notify(NMHDR *header, LRESULT &result)
{
    if (header->code != static_cast<UINT>(UDN_DELTAPOS)) return false;
    const auto *change = reinterpret_cast<const NMUPDOWN *>(header);
    // The up arrow proposes a step toward Max: a positive one unless the range runs downward.
    int32_t min = 0, max = 0;
    range(min, max);
    if (change->iDelta != 0) {
        bool up = min <= max ? change->iDelta > 0 : change->iDelta < 0;
        fire(up ? on_up_click : on_down_click);
    }
    result = 0;
    return true;
}

} // namespace tarn
