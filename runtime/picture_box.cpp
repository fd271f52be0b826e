#include "runtime/picture_box.h"

#include <stdexcept>

namespace tarn {

PictureBox::PictureBox(std::wstring name, float left, float top, float width, float height)
    : ColoredConstituent(std::move(name), L"STATIC", WS_VISIBLE | SS_NOTIFY, WS_EX_CLIENTEDGE, left, top, width,
                         height, syscolor::ButtonFace, syscolor::ButtonText)
{
}

int16_t PictureBox::BorderStyle() const
{
    if (!hwnd_) return 0;
    return (style() & WS_BORDER) || (GetWindowLongPtrW(hwnd_, GWL_EXSTYLE) & WS_EX_CLIENTEDGE) ? 1 : 0;
}

void PictureBox::SetBorderStyle(int16_t style)
{
    if (style < 0 || style > 1) throw std::invalid_argument("border style");
    apply_border(style == 1);
}

void PictureBox::SetAppearance(int16_t appearance)
{
    if (appearance < 0 || appearance > 1) throw std::invalid_argument("appearance");
    appearance_ = appearance;
    apply_border(BorderStyle() == 1);
}

// The box paints itself: the system's STATIC window paints nothing without text in some
// systems' printing.
bool PictureBox::on_window_message(UINT msg, WPARAM, LPARAM, LRESULT &result)
{
    switch (msg) {
    case WM_ERASEBKGND:
        result = 1;
        return true;
    case WM_PAINT: {
        paint_dc paint(hwnd_);
        fill(paint.get());
        result = 0;
        return true;
    }
    default:
        return false;
    }
}

void PictureBox::print_client(HDC dc) { fill(dc); }

void PictureBox::fill(HDC dc)
{
    RECT r{};
    GetClientRect(hwnd_, &r);
    if (HBRUSH brush = paint_colors(dc)) FillRect(dc, &r, brush);
}

void PictureBox::apply_border(bool border)
{
    if (!hwnd_) return;
    set_style_bits(WS_BORDER, border && appearance_ == 0);
    set_ex_style_bits(WS_EX_CLIENTEDGE, border && appearance_ == 1);
}

} // namespace tarn
