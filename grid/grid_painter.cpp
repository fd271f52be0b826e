#include "grid/grid_painter.h"

#include "foundation/color_translate.h"

#include <cmath>
#include <cwctype>

namespace tarn {

namespace {

Rgb rgb(OleColor c, Rgb fallback = 0)
{
    Rgb r = TranslateColor(c);
    return r == kInvalidColor ? fallback : r;
}

void fill(HDC dc, const RECT &r, Rgb colour)
{
    SetDCBrushColor(dc, colour);
    FillRect(dc, &r, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void hline(HDC dc, int x0, int x1, int y, Rgb colour)
{
    RECT r{x0, y, x1, y + 1};
    fill(dc, r, colour);
}

void vline(HDC dc, int x, int y0, int y1, Rgb colour)
{
    RECT r{x, y0, x + 1, y1};
    fill(dc, r, colour);
}

// A caption box of the bars: raised (header) or sunken (summary), two lines per edge in the
// bar colours, as the library's 3-D frames draw them.
void box(HDC dc, const RECT &r, const GridColours &c, bool raised)
{
    Rgb outer_light = rgb(raised ? c.highlight : c.shadow), inner_light = rgb(raised ? c.light : c.dark);
    Rgb outer_dark = rgb(raised ? c.dark : c.highlight), inner_dark = rgb(raised ? c.shadow : c.light);
    if (r.right - r.left < 2 || r.bottom - r.top < 2) return;
    hline(dc, r.left, r.right - 1, r.top, outer_light);
    vline(dc, r.left, r.top, r.bottom - 1, outer_light);
    hline(dc, r.left, r.right, r.bottom - 1, outer_dark);
    vline(dc, r.right - 1, r.top, r.bottom, outer_dark);
    if (r.right - r.left < 4 || r.bottom - r.top < 4) return;
    hline(dc, r.left + 1, r.right - 2, r.top + 1, inner_light);
    vline(dc, r.left + 1, r.top + 1, r.bottom - 2, inner_light);
    hline(dc, r.left + 1, r.right - 1, r.bottom - 2, inner_dark);
    vline(dc, r.right - 2, r.top + 1, r.bottom - 1, inner_dark);
}

UINT text_format(int16_t alignment, std::wstring_view text)
{
    UINT h = DT_LEFT, v = DT_VCENTER;
    switch (alignment) {
    case kAlignLeftTop: v = DT_TOP; break;
    case kAlignLeftCenter: break;
    case kAlignLeftBottom: v = DT_BOTTOM; break;
    case kAlignCenterTop: h = DT_CENTER; v = DT_TOP; break;
    case kAlignCenterCenter: h = DT_CENTER; break;
    case kAlignCenterBottom: h = DT_CENTER; v = DT_BOTTOM; break;
    case kAlignRightTop: h = DT_RIGHT; v = DT_TOP; break;
    case kAlignRightCenter: h = DT_RIGHT; break;
    case kAlignRightBottom: h = DT_RIGHT; v = DT_BOTTOM; break;
    default: {
        // General: numbers to the right, text to the left.
        size_t i = 0;
        while (i < text.size() && text[i] == L' ') ++i;
        if (i < text.size() && (std::iswdigit(text[i]) || text[i] == L'-' || text[i] == L'.')) h = DT_RIGHT;
        break;
    }
    }
    return h | v | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS;
}

// Whether a symbol font has the tick glyph at "a" (U+F061 in a symbol font).
bool has_tick(HFONT font)
{
    unique_dc dc(CreateCompatibleDC(nullptr));
    if (!dc || !font) return false;
    select_guard use(dc.get(), font);
    wchar_t tick = 0xF061;
    WORD glyph = 0xFFFF;
    return GetGlyphIndicesW(dc.get(), &tick, 1, &glyph, GGI_MARK_NONEXISTING_GLYPHS) == 1 && glyph != 0xFFFF;
}

// A bar's background, with drawing clipped to it and its caption font selected (the caller
// keeps the DC's state around this).
void begin_bar(HDC dc, const PixelRect &bar, const GridColours &colours, HFONT font)
{
    RECT all{bar.left, bar.top, bar.right, bar.bottom};
    fill(dc, all, rgb(colours.bar, GetSysColor(COLOR_BTNFACE)));
    IntersectClipRect(dc, bar.left, bar.top, bar.right, bar.bottom);
    if (font) SelectObject(dc, font);
    SetBkMode(dc, TRANSPARENT);
}

int bar_text_align(int16_t alignment) { return alignment == 1 ? DT_RIGHT : alignment == 2 ? DT_CENTER : DT_LEFT; }

} // namespace

HFONT GridPainter::cell_font(const CellEngine::CellStyle &style, int dpi)
{
    int height = -static_cast<int>(std::lround(style.font_size * dpi / 72.0));
    FontKey key{style.font_name ? *style.font_name : std::wstring(), height, style.bold, style.strike};
    auto found = fonts_.find(key);
    if (found != fonts_.end()) return found->second.get();
    if (fonts_.size() >= 64) fonts_.clear(); // a grid of many looks: start the cache again
    LOGFONTW lf{};
    lf.lfHeight = height;
    lf.lfWeight = style.bold ? FW_BOLD : FW_NORMAL;
    lf.lfStrikeOut = style.strike;
    lf.lfCharSet = DEFAULT_CHARSET;
    lstrcpynW(lf.lfFaceName, std::get<0>(key).c_str(), LF_FACESIZE);
    HFONT font = nullptr;
    if (_wcsicmp(lf.lfFaceName, L"webdings") == 0) {
        // Check cells show Webdings' "a", a tick. Where that font lacks it (some systems ship
        // a reduced one), Marlett's "a" is the same tick.
        lf.lfCharSet = SYMBOL_CHARSET;
        font = CreateFontIndirectW(&lf);
        if (!has_tick(font)) {
            DeleteObject(font);
            lstrcpynW(lf.lfFaceName, L"Marlett", LF_FACESIZE);
            font = CreateFontIndirectW(&lf);
        }
    } else {
        font = CreateFontIndirectW(&lf);
    }
    fonts_.emplace(key, unique_font(font));
    return font;
}

void GridPainter::paint_cells(HDC dc, const CellEngine &cells, const GridView &view, const GridColours &colours,
                              int dpi)
{
    const PixelRect &area = view.cells;
    RECT all{area.left, area.top, area.right, area.bottom};
    fill(dc, all, rgb(cells.Defaults().back, 0xFFFFFF));
    if (view.last_row < view.first_row || view.last_col < view.first_col) return;
    saved_dc keep(dc);
    IntersectClipRect(dc, area.left, area.top, area.right, area.bottom);
    SetBkMode(dc, TRANSPARENT);
    const Rgb line = rgb(colours.lines, 0xC0C0C0);
    int y = view.row_y(cells, view.first_row);
    std::wstring stored;
    for (int32_t r = view.first_row; r <= view.last_row; ++r) {
        const int y1 = view.row_y(cells, r + 1);
        int x = view.col_x(cells, view.first_col);
        for (int32_t c = view.first_col; c <= view.last_col; ++c) {
            const int x1 = view.col_x(cells, c + 1);
            if (x1 > x && y1 > y) {
                const CellEngine::CellStyle style = cells.StyleAt(r, c);
                RECT cell{x, y, x1 - 1, y1 - 1}; // the last column and row of pixels are grid lines
                fill(dc, cell, rgb(style.back, 0xFFFFFF));
                cells.TextRef(r, c).AssignTo(stored);
                std::wstring_view text = stored;
                if (!text.empty()) {
                    select_guard font(dc, cell_font(style, dpi));
                    SetTextColor(dc, rgb(style.fore));
                    RECT inset{cell.left + 2, cell.top, cell.right - 2, cell.bottom};
                    std::wstring symbols;
                    if (GetTextCharset(dc) == SYMBOL_CHARSET) {
                        // A symbol font (the check cells' Webdings) keeps its glyphs at U+F021..U+F0FF,
                        // and not every GDI maps the plain characters there for us; its blanks are
                        // only padding (" a" is a tick) and may have no glyph at all.
                        for (wchar_t ch : text)
                            if (ch > 0x20 && ch <= 0xFF) symbols += static_cast<wchar_t>(0xF000 + ch);
                            else if (ch != L' ') symbols += ch;
                        text = symbols;
                    }
                    DrawTextW(dc, text.data(), static_cast<int>(text.size()), &inset, text_format(style.alignment, text));
                }
                hline(dc, x, x1, y1 - 1, line);
                vline(dc, x1 - 1, y, y1, line);
            }
            x = x1;
            if (x >= area.right) break;
        }
        y = y1;
        if (y >= area.bottom) break;
    }
}

void GridPainter::paint_header(HDC dc, GridModel &model, const GridView &view, const GridColours &colours, HFONT font)
{
    const PixelRect &bar = view.header;
    const CellEngine &cells = model.Cells();
    saved_dc keep(dc);
    begin_bar(dc, bar, colours, font);
    SetTextColor(dc, rgb(colours.text));
    for (int32_t c = view.first_col; c <= view.last_col; ++c) {
        RECT r{view.col_x(cells, c), bar.top, view.col_x(cells, c + 1), bar.bottom};
        if (r.right <= r.left) continue;
        box(dc, r, colours, true);
        std::wstring caption = model.BarHeaderCaptionRead(c);
        RECT text{r.left + 4, r.top + 1, r.right - 4, r.bottom - 1};
        DrawTextW(dc, caption.c_str(), static_cast<int>(caption.size()), &text,
                  DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
        if (r.left >= bar.right) break;
    }
    // The sort marker: a small arrow at the right end of the sorted column's header.
    const SortMarker &m = model.Marker();
    if (m.shown) {
        int x = bar.left + static_cast<int>(std::floor(m.left / view.tppx)) + 4;
        int mid = (bar.top + bar.bottom) / 2;
        Rgb colour = rgb(colours.text);
        for (int i = 0; i < 4; ++i) {
            int y = m.descending ? mid - 2 + i : mid + 1 - i;
            hline(dc, x + i, x + 8 - i, y, colour);
        }
    }
}

void GridPainter::paint_summary(HDC dc, GridModel &model, const GridView &view, const GridColours &colours, HFONT font)
{
    const PixelRect &bar = view.summary;
    const CellEngine &cells = model.Cells();
    saved_dc keep(dc);
    begin_bar(dc, bar, colours, font);
    for (int32_t c = view.first_col; c <= view.last_col; ++c) {
        RECT r{view.col_x(cells, c), bar.top, view.col_x(cells, c + 1), bar.bottom};
        if (r.right <= r.left) continue;
        SummaryCell cell = model.BarSummaryCell(c);
        if (!cell.visible) continue;
        box(dc, r, colours, false);
        SetTextColor(dc, rgb(cell.fore));
        RECT text{r.left + 4, r.top + 1, r.right - 4, r.bottom - 1};
        DrawTextW(dc, cell.caption.c_str(), static_cast<int>(cell.caption.size()), &text,
                  bar_text_align(cell.alignment) | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
        if (r.left >= bar.right) break;
    }
}

void GridPainter::Paint(HDC dc, GridModel &model, const GridView &view, const GridColours &colours, HFONT bar_font,
                        int dpi)
{
    if (!view.header.empty()) paint_header(dc, model, view, colours, bar_font);
    if (!view.cells.empty()) paint_cells(dc, model.Cells(), view, colours, dpi);
    if (!view.summary.empty()) paint_summary(dc, model, view, colours, bar_font);
}

} // namespace tarn
