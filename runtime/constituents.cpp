#include "runtime/constituents.h"

#include "foundation/color_translate.h"
#include "foundation/handles.h"

namespace tarn {

void Line::draw(HDC dc, const Scale &scale) const
{
    if (!Visible) return;
    Rgb color = TranslateColor(BorderColor);
    if (color == kInvalidColor) return;
    unique_pen pen(CreatePen(PS_SOLID, BorderWidth > 1 ? BorderWidth : 1, color));
    if (!pen) return;
    select_guard use(dc, pen.get());
    int x1 = to_px_x(X1, scale), y1 = to_px_y(Y1, scale), x2 = to_px_x(X2, scale), y2 = to_px_y(Y2, scale);
    MoveToEx(dc, x1, y1, nullptr);
    LineTo(dc, x2, y2);
}

void Label::draw(HDC dc, const Scale &scale) const
{
    if (!Visible) return;
    RECT r{to_px_x(Left, scale), to_px_y(Top, scale), to_px_x(Left + Width, scale), to_px_y(Top + Height, scale)};
    if (r.right <= r.left || r.bottom <= r.top) return;
    if (BackStyle == 1) {
        Rgb back = TranslateColor(BackColor);
        if (back != kInvalidColor) {
            unique_brush brush(CreateSolidBrush(back));
            if (brush) FillRect(dc, &r, brush.get());
        }
    }
    if (Caption.empty()) return;
    HFONT hfont = nullptr;
    if (ComPtr<IFont> font = Font.as<IFont>(IID_IFont)) font->get_hFont(&hfont);
    select_guard use(dc, hfont);
    SetBkMode(dc, TRANSPARENT);
    Rgb fore = TranslateColor(Enabled ? ForeColor : syscolor::ButtonShadow);
    SetTextColor(dc, fore == kInvalidColor ? 0 : fore);
    UINT align = Alignment == 1 ? DT_RIGHT : (Alignment == 2 ? DT_CENTER : DT_LEFT);
    UINT format = align | DT_WORDBREAK | DT_EXPANDTABS | (UseMnemonic ? 0 : DT_NOPREFIX);
    DrawTextW(dc, Caption.c_str(), static_cast<int>(Caption.size()), &r, format);
}

bool Label::takes_mouse_at(float x, float y) const
{
    return Visible && Enabled && x >= Left && x < Left + Width && y >= Top && y < Top + Height;
}

} // namespace tarn
