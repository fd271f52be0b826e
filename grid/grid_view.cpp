#include "grid/grid_view.h"

#include <algorithm>
#include <cmath>

namespace tarn {

namespace {
int px(int64_t twips, double tpp) { return static_cast<int>(std::floor(static_cast<double>(twips) / tpp + 1e-6)); }
} // namespace

int GridView::col_x(const CellEngine &engine, int32_t col) const
{
    return cells.left + px(engine.ColPos(col) - engine.ColPos(first_col), tppx);
}

int GridView::row_y(const CellEngine &engine, int32_t row) const
{
    return cells.top + px(engine.RowPos(row) - engine.RowPos(first_row), tppy);
}

GridView ComputeGridView(const CellEngine &cells, const GridViewInput &in)
{
    GridView v;
    v.tppx = in.tppx;
    v.tppy = in.tppy;
    PixelRect inner{in.border, in.border, std::max(in.border, in.width - in.border),
                    std::max(in.border, in.height - in.border)};
    int bar = std::max(0, in.bar_height);
    int top = inner.top, bottom = inner.bottom;
    if (in.header) {
        v.header = {inner.left, top, inner.right, std::min(bottom, top + bar)};
        top = v.header.bottom;
    }
    if (in.summary) {
        v.summary = {inner.left, std::max(top, bottom - bar), inner.right, bottom};
        bottom = v.summary.top;
    }
    v.cells = {inner.left, top, inner.right, bottom};

    v.first_row = std::min(cells.TopRow(), std::max(0, cells.Rows() - 1));
    v.first_col = std::min(cells.LeftCol(), std::max(0, cells.Cols() - 1));
    if (cells.Rows() == 0 || cells.Cols() == 0 || v.cells.empty()) return v;

    // The last row or column reaching into the area: the one holding its last pixel.
    const int64_t height_twips = static_cast<int64_t>(std::ceil(v.cells.height() * in.tppy));
    const int64_t width_twips = static_cast<int64_t>(std::ceil(v.cells.width() * in.tppx));
    const int64_t y0 = cells.RowPos(v.first_row), x0 = cells.ColPos(v.first_col);
    int32_t last_row = cells.RowAt(y0 + height_twips - 1);
    int32_t last_col = cells.ColAt(x0 + width_twips - 1);
    v.last_row = last_row < 0 ? cells.Rows() - 1 : last_row;
    v.last_col = last_col < 0 ? cells.Cols() - 1 : last_col;
    // Whole ones: those ending within the area.
    int32_t whole_rows = 0;
    for (int32_t r = v.first_row; r <= v.last_row && cells.RowPos(r + 1) - y0 <= height_twips; ++r) ++whole_rows;
    int32_t whole_cols = 0;
    for (int32_t c = v.first_col; c <= v.last_col && cells.ColPos(c + 1) - x0 <= width_twips; ++c) ++whole_cols;
    v.page_rows = std::max(1, whole_rows);
    v.page_cols = std::max(1, whole_cols);
    return v;
}

} // namespace tarn
