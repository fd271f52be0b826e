#include "runtime/group_frame.h"

#include "foundation/color_translate.h"
#include "foundation/handles.h"
#include "foundation/themes.h"
#include "runtime/group_frame_layout.h"

namespace tarn {

namespace {
constexpr float kCaptionPad = 30; // twips of back colour on each side of the caption's text

void fill(HDC dc, const PixelRect &r, Rgb colour)
{
    if (r.empty() || colour == kInvalidColor) return;
    unique_brush brush(CreateSolidBrush(colour));
    RECT rect{r.left, r.top, r.right, r.bottom};
    if (brush) FillRect(dc, &rect, brush.get());
}
} // namespace

void GroupFrame::draw(HDC dc, const Scale &scale) const
{
    if (!Visible) return;
    HFONT hfont = nullptr;
    if (ComPtr<IFont> font = Font.as<IFont>(IID_IFont)) font->get_hFont(&hfont);
    select_guard use(dc, hfont);
    TEXTMETRICW tm{};
    GetTextMetricsW(dc, &tm);
    UINT format = DT_SINGLELINE | DT_LEFT | DT_TOP | DT_NOCLIP;
    int caption_width = 0;
    if (!Caption.empty()) {
        RECT measure{0, 0, 0, 0};
        DrawTextW(dc, Caption.c_str(), static_cast<int>(Caption.size()), &measure, format | DT_CALCRECT);
        caption_width = measure.right - measure.left;
    }
    PixelRect frame{to_px_x(Left, scale), to_px_y(Top, scale), to_px_x(Left + Width, scale), to_px_y(Top + Height, scale)};
    int pad = to_px_x(kCaptionPad, scale);
    GroupFrameParts p = LayOutGroupFrame(frame, tm.tmHeight, caption_width, to_px_x(CaptionIndent, scale), pad);

    Rgb back = TranslateColor(BackColor);
    if (BackStyle == 1) fill(dc, p.fill, back);
    const PixelRect &b = p.border;
    if (Themed) {
        Rgb line = FaceShade(-25);
        fill(dc, {b.left, b.top, b.right, b.top + 1}, line);
        fill(dc, {b.left, b.bottom - 1, b.right, b.bottom}, line);
        fill(dc, {b.left, b.top, b.left + 1, b.bottom}, line);
        fill(dc, {b.right - 1, b.top, b.right, b.bottom}, line);
    } else if (p.across || p.down) {
        // A collapsed frame is a plain etched line, dark then light, without end caps, so two
        // of them meet seamlessly.
        Rgb dark = GetSysColor(COLOR_BTNSHADOW), bright = GetSysColor(COLOR_BTNHIGHLIGHT);
        if (p.across) {
            fill(dc, {b.left, b.top, b.right, b.top + 1}, dark);
            fill(dc, {b.left, b.top + 1, b.right, b.top + 2}, bright);
        } else {
            fill(dc, {b.left, b.top, b.left + 1, b.bottom}, dark);
            fill(dc, {b.left + 1, b.top, b.left + 2, b.bottom}, bright);
        }
    } else {
        // Etched: a dark rectangle with a light one a pixel down and right of it.
        unique_brush dark(CreateSolidBrush(GetSysColor(COLOR_BTNSHADOW)));
        unique_brush bright(CreateSolidBrush(GetSysColor(COLOR_BTNHIGHLIGHT)));
        RECT inner{b.left + 1, b.top + 1, b.right, b.bottom}, outer{b.left, b.top, b.right - 1, b.bottom - 1};
        if (bright) FrameRect(dc, &inner, bright.get());
        if (dark) FrameRect(dc, &outer, dark.get());
    }
    if (p.caption.empty()) return;
    fill(dc, p.caption, back);
    SetBkMode(dc, TRANSPARENT);
    Rgb fore = TranslateColor(Enabled ? ForeColor : syscolor::ButtonShadow);
    SetTextColor(dc, fore == kInvalidColor ? 0 : fore);
    RECT text{p.caption.left + pad, p.caption.top, p.caption.right - pad, p.caption.bottom};
    if (text.right > text.left)
        DrawTextW(dc, Caption.c_str(), static_cast<int>(Caption.size()), &text, DT_SINGLELINE | DT_LEFT | DT_TOP);
}

bool GroupFrame::takes_mouse_at(float x, float y) const
{
    bool listened = on_click || on_dbl_click || on_mouse_down || on_mouse_move || on_mouse_up;
    return listened && Visible && Enabled && x >= Left && x < Left + Width && y >= Top && y < Top + Height;
}

} // namespace tarn
