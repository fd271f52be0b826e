// The grid's rows and cells as accessible objects: the grid's own object is a table whose
// children are its rows (numbered from 1), and each row's children are its cells, named by
// their text. A row is named by its first cell's text, as a list view names its items.
#pragma once
#include <windows.h>
#include <oleacc.h>

#include <string>

#include "runtime/com.h"

namespace tarn {

// What the row and cell objects read of the grid.
class GridAccessSource {
public:
    virtual int32_t AccessRows() = 0;
    virtual int32_t AccessCols() = 0;
    virtual std::wstring AccessText(int32_t row, int32_t col) = 0;
    // The current cell, when the grid has one.
    virtual bool AccessCurrent(int32_t &row, int32_t &col) = 0;
    virtual bool AccessHasFocus() = 0;
    // The cell's rectangle on the screen (col -1: the whole row); false when not shown.
    virtual bool AccessScreenRect(int32_t row, int32_t col, RECT &r) = 0;
    // The grid's own accessible object, the rows' parent.
    virtual ComPtr<IDispatch> AccessTable() = 0;

protected:
    ~GridAccessSource() = default;
};

// Row `row` (col -1) or cell (row, col). `keep` holds the grid alive while the object lives.
ComPtr<IDispatch> MakeGridAccessible(GridAccessSource *source, ComPtr<IUnknown> keep, int32_t row, int32_t col);

} // namespace tarn
