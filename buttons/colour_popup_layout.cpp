#include "buttons/colour_popup_layout.h"

#include <algorithm>

namespace tarn {

namespace {

int32_t scaled(int32_t px, int32_t dpi) { return static_cast<int32_t>((static_cast<int64_t>(px) * dpi + 48) / 96); }

bool inside(const PxRect &r, int32_t x, int32_t y) { return x >= r.left && x < r.right && y >= r.top && y < r.bottom; }

} // namespace

PopupMetrics PopupMetricsFor(int32_t dpi, int32_t text_height, int32_t text_width)
{
    dpi = std::clamp(dpi, 48, 960);
    PopupMetrics m;
    m.cell = scaled(18, dpi);
    m.margin = scaled(4, dpi);
    // The label holds a line of text, or the swatch of a cell, whichever is taller.
    m.label = std::max(std::clamp(text_height, 0, 1000) + scaled(8, dpi), m.cell + scaled(3, dpi));
    m.separator = scaled(9, dpi);
    // lblCbtn1 shows its swatch beside the text.
    m.min_width = std::clamp(text_width, 0, 4000) + m.label + scaled(8, dpi);
    return m;
}

PopupLayout LayoutPopup(int32_t columns, int32_t rows, const PopupMetrics &m)
{
    PopupLayout L;
    L.columns = std::clamp(columns, 0, 256);
    L.rows = std::clamp(rows, 0, 256);
    L.cell = std::max(m.cell, 1);
    const int32_t grid_w = L.columns * L.cell, grid_h = L.rows * L.cell;
    const int32_t inner = std::max(grid_w, m.min_width);
    L.width = inner + 2 * m.margin;
    int32_t y = m.margin;
    L.doc = {m.margin, y, m.margin + inner, y + m.label};
    const int32_t pad = (m.label - (L.cell - 4)) / 2;
    L.doc_swatch = {L.doc.left + pad, L.doc.top + pad, L.doc.left + pad + L.cell - 4, L.doc.top + pad + L.cell - 4};
    L.doc_text = {L.doc_swatch.right + pad + 2, L.doc.top, L.doc.right - pad, L.doc.bottom};
    y = L.doc.bottom + m.margin;
    // The grid is centred when a label is wider.
    const int32_t gx = m.margin + (inner - grid_w) / 2;
    L.grid = {gx, y, gx + grid_w, y + grid_h};
    y = L.grid.bottom;
    L.separator = {m.margin, y, m.margin + inner, y + m.separator};
    y = L.separator.bottom;
    L.custom = {m.margin, y, m.margin + inner, y + m.label};
    L.height = L.custom.bottom + m.margin;
    return L;
}

PxRect PopupLayout::item(int32_t index) const
{
    if (index == popup_item::Doc) return doc;
    if (index == popup_item::Custom) return custom;
    if (index < 0 || columns <= 0 || index >= columns * rows) return {};
    const int32_t x = grid.left + (index % columns) * cell, y = grid.top + (index / columns) * cell;
    return {x, y, x + cell, y + cell};
}

PxRect PopupLayout::swatch(const PxRect &c) { return {c.left + 2, c.top + 2, c.right - 2, c.bottom - 2}; }

int32_t HitTest(const PopupLayout &L, int32_t cells, int32_t x, int32_t y)
{
    if (inside(L.doc, x, y)) return popup_item::Doc;
    if (inside(L.custom, x, y)) return popup_item::Custom;
    if (!inside(L.grid, x, y) || L.cell <= 0) return popup_item::None;
    const int32_t index = (y - L.grid.top) / L.cell * L.columns + (x - L.grid.left) / L.cell;
    return index < cells ? index : popup_item::None;
}

PopupPlace PlacePopup(const PxRect &anchor, int32_t w, int32_t h, const PxRect &work)
{
    int64_t x = anchor.left, y = anchor.bottom;
    if (y + h > work.bottom && static_cast<int64_t>(anchor.top) - h >= work.top) y = static_cast<int64_t>(anchor.top) - h;
    if (y + h > work.bottom) y = static_cast<int64_t>(work.bottom) - h;
    if (y < work.top) y = work.top;
    if (x + w > work.right) x = static_cast<int64_t>(work.right) - w;
    if (x < work.left) x = work.left;
    return {static_cast<int32_t>(x), static_cast<int32_t>(y)};
}

int32_t MoveActive(int32_t active, PopupMove move, int32_t columns, int32_t cells, int32_t start)
{
    using namespace popup_item;
    if (cells <= 0 || columns <= 0) {
        // Only the two labels: every move goes to the other one.
        if (move == PopupMove::Home) return Doc;
        if (move == PopupMove::End) return Custom;
        return active == Doc ? Custom : Doc;
    }
    if (move == PopupMove::Home) return 0;
    if (move == PopupMove::End) return cells - 1;
    if (active != Doc && active != Custom && (active < 0 || active >= cells)) return start;
    const int32_t last_row = (cells - 1) / columns * columns;
    switch (move) {
    case PopupMove::Right:
        if (active == Doc) return 0;
        if (active == Custom) return Doc;
        return active + 1 < cells ? active + 1 : Custom;
    case PopupMove::Left:
        if (active == Doc) return Custom;
        if (active == Custom) return cells - 1;
        return active > 0 ? active - 1 : Doc;
    case PopupMove::Down:
        if (active == Doc) return 0;
        if (active == Custom) return Doc;
        return active + columns < cells ? active + columns : Custom;
    case PopupMove::Up:
        if (active == Doc) return Custom;
        if (active == Custom) return last_row;
        return active - columns >= 0 ? active - columns : Doc;
    default:
        return active;
    }
}

} // namespace tarn
