#include "runtime/constituents.h"

#include <algorithm>

#include "foundation/color_translate.h"
#include "foundation/handles.h"
#include "foundation/themes.h"
#include "foundation/trap.h"

namespace tarn {

void Line::draw(HDC dc, const Scale &scale) const
{
    if (!Visible) return;
    Rgb color = TranslateColor(BorderColor);
    if (color == kInvalidColor) return;
    unique_pen pen(CreatePen(PS_SOLID, BorderWidth > 1 ? BorderWidth : 1, color));
    if (!pen) return;
    int x1 = to_px_x(X1, scale), y1 = to_px_y(Y1, scale), x2 = to_px_x(X2, scale), y2 = to_px_y(Y2, scale);
    if (Thickness > 0 && (y1 == y2 || x1 == x2)) {
        RECT band{};
        if (y1 == y2) band = {std::min(x1, x2), y1, std::max(x1, x2), std::max(y1 + 1, to_px_y(Y1 + Thickness, scale))};
        else band = {x1, std::min(y1, y2), std::max(x1 + 1, to_px_x(X1 + Thickness, scale)), std::max(y1, y2)};
        unique_brush brush(CreateSolidBrush(color));
        if (brush) FillRect(dc, &band, brush.get());
        return;
    }
    select_guard use(dc, pen.get());
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
    if (CentreVertically) {
        RECT measure = r;
        DrawTextW(dc, Caption.c_str(), static_cast<int>(Caption.size()), &measure, format | DT_CALCRECT);
        int spare = (r.bottom - r.top) - (measure.bottom - measure.top);
        if (spare > 0) r.top += spare / 2;
    }
    DrawTextW(dc, Caption.c_str(), static_cast<int>(Caption.size()), &r, format);
}

void ColourDividerLines(Line &dark, Line &light)
{
    constexpr int32_t kShade = 25;
    if (ThemedLook()) {
        step([&] { dark.BorderColor = FaceShade(-kShade); });
        step([&] { light.BorderColor = FaceShade(kShade); });
    } else {
        dark.BorderColor = syscolor::ButtonShadow;
        light.BorderColor = syscolor::Highlight3D;
    }
}

bool Label::takes_mouse_at(float x, float y) const
{
    return Visible && Enabled && x >= Left && x < Left + Width && y >= Top && y < Top + Height;
}

} // namespace tarn
