#include "grid/grid_view.h"

#include <gtest/gtest.h>

#include <array>

using namespace tarn;

TEST(GridView, BarsBorderAndCellsShareTheClientArea)
{
    CellEngine cells(100, 10);
    GridView v = ComputeGridView(cells, GridViewInput{320, 200, 2, true, true, 20, 15, 15});
    auto edges = [](const PixelRect &r) { return std::array{r.left, r.top, r.right, r.bottom}; };
    EXPECT_EQ((std::array{2, 2, 318, 22}), edges(v.header));
    EXPECT_EQ((std::array{2, 22, 318, 178}), edges(v.cells));
    EXPECT_EQ((std::array{2, 178, 318, 198}), edges(v.summary));
    // 156 pixels of 16-pixel rows: 9 whole and a tenth in part; 316 of 64-pixel columns: 4 and a part.
    EXPECT_EQ(0, v.first_row);
    EXPECT_EQ(9, v.last_row);
    EXPECT_EQ(9, v.page_rows);
    EXPECT_EQ(4, v.last_col);
    EXPECT_EQ(4, v.page_cols);
    EXPECT_EQ(22 + 16, v.row_y(cells, 1));
    EXPECT_EQ(2 + 64, v.col_x(cells, 1));
}

TEST(GridView, OnlyTheScrolledToPartShowsAndNoRoomShowsNothing)
{
    CellEngine huge(1000000, 10);
    huge.SetTopRow(500000);
    GridView v = ComputeGridView(huge, GridViewInput{320, 200, 0, false, false, 0, 15, 15});
    EXPECT_EQ(500000, v.first_row);
    EXPECT_EQ(500000 + 12, v.last_row); // 200 / 16 = 12.5 rows
    EXPECT_EQ(v.cells.top, v.row_y(huge, 500000));

    CellEngine none(0, 0);
    GridView empty = ComputeGridView(none, GridViewInput{320, 200, 2, true, true, 20, 15, 15});
    EXPECT_LT(empty.last_row, empty.first_row);
    CellEngine cells(5, 5);
    EXPECT_TRUE(ComputeGridView(cells, GridViewInput{3, 3, 2, true, true, 20, 15, 15}).cells.empty());
    GridView negative = ComputeGridView(cells, GridViewInput{-50, -20, 2, true, false, 20, 15, 15});
    EXPECT_TRUE(negative.cells.empty());
    EXPECT_EQ(1, negative.page_rows);
}
