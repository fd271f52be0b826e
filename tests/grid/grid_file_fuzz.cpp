// libFuzzer target for the grid file loader: any bytes must load without a crash, a hang or
// unbounded memory, and the grid they leave must survive the operations that follow a load.
#include "grid/engine/cell_engine.h"
#include "grid/column_types.h"
#include "grid/grid_file.h"
#include "grid/summary_bar.h"

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string_view>

using namespace tarn;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    std::string_view bytes(reinterpret_cast<const char *>(data), size);
    // The first byte picks which of the first eight columns are check boxes.
    ColumnTypes types;
    if (size > 0)
        for (int c = 0; c < 8; ++c)
            if (data[0] & (1u << c)) types.Set(c, kColCheck);

    CellEngine cells(0, 0);
    SummaryBar summary(cells);
    cells.SetObserver(&summary.Totals());
    LoadGridFileBytes(bytes, cells, types);

    // Every read consumed at least one byte: the filled cells are bounded by the input.
    int64_t filled = 0;
    for (int32_t r = 0; r < cells.Rows(); ++r)
        for (int32_t c = 0; c < cells.Cols() && c < 64; ++c) filled += !cells.TextAt(r, c).empty();
    if (cells.Rows() > static_cast<int32_t>(size) + 1 || filled > static_cast<int64_t>(size)) std::abort();

    if (cells.Rows() > 0 && cells.Cols() > 0) {
        summary.Calc(0);
        cells.SetCol(cells.Cols() - 1);
        cells.Sort(size % 2 ? 1 : 2);
        summary.Read(0);
        // What loads must save, and load again to the same shape when nothing was quoted.
        if (cells.Cols() <= 64 && cells.Rows() <= 256) {
            std::ostringstream out;
            WriteGridFile(out, cells, L"Fuzz");
            CellEngine again(0, 0);
            LoadGridFileBytes(out.str(), again, ColumnTypes());
            if (again.Cols() != cells.Cols()) std::abort();
        }
    }
    return 0;
}
