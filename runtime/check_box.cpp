#include "runtime/check_box.h"

#include <stdexcept>

namespace tarn {

CheckBox::CheckBox(std::wstring name, float left, float top, float width, float height)
    : ColoredConstituent(std::move(name), L"BUTTON", WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX, 0, left, top, width,
                         height, syscolor::ButtonFace, syscolor::ButtonText)
{
}

int16_t CheckBox::Value() const
{
    return hwnd_ && SendMessageW(hwnd_, BM_GETCHECK, 0, 0) == BST_CHECKED ? 1 : 0;
}

void CheckBox::SetValue(int16_t value)
{
    if (value < 0 || value > 1) throw std::invalid_argument("value");
    if (!hwnd_ || value == Value()) return;
    SendMessageW(hwnd_, BM_SETCHECK, value ? BST_CHECKED : BST_UNCHECKED, 0);
    fire(on_click);
}

std::wstring CheckBox::Caption() const { return window_text(); }

void CheckBox::SetCaption(const std::wstring &caption)
{
    if (hwnd_) SetWindowTextW(hwnd_, caption.c_str());
}

// Printed by hand, as the system paints it: the box at the left, centred in the height, the
// caption beside it (some systems' check boxes leave a GDI object behind on every print).
void CheckBox::print_client(HDC dc)
{
    RECT r{};
    GetClientRect(hwnd_, &r);
    if (HBRUSH brush = paint_colors(dc)) FillRect(dc, &r, brush);
    window_dc screen(nullptr);
    int dpi = screen.get() ? GetDeviceCaps(screen.get(), LOGPIXELSX) : 96;
    int box = MulDiv(13, dpi, 96);
    RECT check{r.left, (r.top + r.bottom - box) / 2, r.left + box, (r.top + r.bottom - box) / 2 + box};
    UINT state = DFCS_BUTTONCHECK | (Value() ? DFCS_CHECKED : 0) | (Enabled() ? 0 : DFCS_INACTIVE);
    DrawFrameControl(dc, &check, DFC_BUTTON, state);
    std::wstring caption = Caption();
    if (caption.empty()) return;
    select_guard use(dc, reinterpret_cast<HFONT>(SendMessageW(hwnd_, WM_GETFONT, 0, 0)));
    SetBkMode(dc, TRANSPARENT);
    RECT text{check.right + MulDiv(4, dpi, 96), r.top, r.right, r.bottom};
    DrawTextW(dc, caption.c_str(), static_cast<int>(caption.size()), &text, DT_SINGLELINE | DT_VCENTER | DT_LEFT);
}

bool CheckBox::on_command(WORD code, LRESULT &result)
{
    if (code != BN_CLICKED) return false;
    fire(on_click);
    result = 0;
    return true;
}

} // namespace tarn
