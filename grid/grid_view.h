// Where the grid's parts go in its window and which rows and columns show: the header bar at
// the top, the summary bar at the bottom, the cells between, inside the border. Only the rows
// and columns this view names are ever painted, so a grid of a million cells paints as fast
// as one of a hundred.
#pragma once
#include <cstdint>

#include "grid/engine/cell_engine.h"

namespace tarn {

struct PixelRect {
    int left = 0, top = 0, right = 0, bottom = 0;
    int width() const { return right - left; }
    int height() const { return bottom - top; }
    bool empty() const { return right <= left || bottom <= top; }
    bool contains(int x, int y) const { return x >= left && x < right && y >= top && y < bottom; }
};

struct GridViewInput {
    int width = 0, height = 0; // the client area, pixels
    int border = 0;            // border thickness, pixels
    bool header = true, summary = false;
    int bar_height = 0; // pixels
    double tppx = 15, tppy = 15;
};

struct GridView {
    PixelRect header, cells, summary; // empty when not shown
    // The rows and columns with at least one pixel in the cell area (last < first: none).
    int32_t first_row = 0, last_row = -1, first_col = 0, last_col = -1;
    // How many rows and columns fit whole (at least 1): the scroll bars' page.
    int32_t page_rows = 1, page_cols = 1;
    double tppx = 15, tppy = 15;

    // Pixel edges of a shown column or row in the window (the left/top of `col`/`row`).
    int col_x(const CellEngine &engine, int32_t col) const;
    int row_y(const CellEngine &engine, int32_t row) const;
};

GridView ComputeGridView(const CellEngine &cells, const GridViewInput &in);

} // namespace tarn
