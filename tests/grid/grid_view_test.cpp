#include "grid/grid_view.h"

#include <gtest/gtest.h>

using namespace tarn;

TEST(GridView, BarsBorderAndCellsShareTheClientArea)
{
    CellEngine cells(100, 10);
    GridViewInput in{320, 200, 2, true, true, 20, 15, 15};
    GridView v = ComputeGridView(cells, in);
    EXPECT_EQ(2, v.header.top);
    EXPECT_EQ(22, v.header.bottom);
    EXPECT_EQ(22, v.cells.top);
    EXPECT_EQ(178, v.cells.bottom);
    EXPECT_EQ(178, v.summary.top);
    EXPECT_EQ(198, v.summary.bottom);
    EXPECT_EQ(318, v.cells.right);
    // 156 pixels of 16-pixel rows: 9 whole and a tenth in part; 316 of 64-pixel columns: 4 and a part.
    EXPECT_EQ(0, v.first_row);
    EXPECT_EQ(9, v.last_row);
    EXPECT_EQ(9, v.page_rows);
    EXPECT_EQ(4, v.last_col);
    EXPECT_EQ(4, v.page_cols);
    EXPECT_EQ(22 + 16, v.row_y(cells, 1));
    EXPECT_EQ(2 + 64, v.col_x(cells, 1));
}

TEST(GridView, OnlyTheScrolledToPartIsVisibleWhateverTheGridsSize)
{
    CellEngine cells(1000000, 10);
    cells.SetTopRow(500000);
    GridView v = ComputeGridView(cells, GridViewInput{320, 200, 0, false, false, 0, 15, 15});
    EXPECT_EQ(500000, v.first_row);
    EXPECT_EQ(500000 + 12, v.last_row); // 200 / 16 = 12.5 rows
    EXPECT_EQ(v.cells.top, v.row_y(cells, 500000));
}

TEST(GridView, TinyAndEmptyGridsShowNothingWithoutFailing)
{
    CellEngine none(0, 0);
    GridView v = ComputeGridView(none, GridViewInput{320, 200, 2, true, true, 20, 15, 15});
    EXPECT_LT(v.last_row, v.first_row);
    CellEngine cells(5, 5);
    GridView squeezed = ComputeGridView(cells, GridViewInput{3, 3, 2, true, true, 20, 15, 15});
    EXPECT_TRUE(squeezed.cells.empty());
    GridView negative = ComputeGridView(cells, GridViewInput{-50, -20, 2, true, false, 20, 15, 15});
    EXPECT_TRUE(negative.cells.empty());
    EXPECT_EQ(1, negative.page_rows);
}
