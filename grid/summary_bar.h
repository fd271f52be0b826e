// The summary bar's cells: caption, alignment, colour and whether each shows. The totals that
// BarSummaryColCalc puts into them come from the column totals (grid/engine/column_totals.h),
// which work a total out only when its caption is read (or painted): a host that recalculates
// a column after every row change, or several columns in turn, pays one addition per read, and
// sees exactly the caption an immediate calculation would have left.
#pragma once
#include "grid/engine/cell_engine.h"
#include "grid/engine/column_totals.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace tarn {

struct SummaryCell {
    std::wstring caption;
    int16_t alignment = 0;       // the caption's alignment: 0 left, 1 right, 2 centre
    uint32_t fore = 0x80000008u; // OLE colour of the caption (window text)
    bool visible = true;
};

class SummaryBar final : private ColumnTotals::Sink {
public:
    // The bar reads the totals from `cells`; the owner registers Totals() as the engine's
    // observer.
    explicit SummaryBar(const CellEngine &cells) : totals_(cells, *this) {}
    SummaryBar(const SummaryBar &) = delete;
    SummaryBar &operator=(const SummaryBar &) = delete;

    ColumnTotals &Totals() { return totals_; }
    const ColumnTotals &Totals() const { return totals_; }

    // Columns 0 to CellEngine::kMaxCols - 1 have a summary cell; other indexes are ignored
    // (reads give the empty caption).
    static bool valid(int32_t col) { return col >= 0 && col < CellEngine::kMaxCols; }

    // Sets a caption, and the alignment and colour where given (the others keep theirs).
    void Set(int32_t col, const std::wstring &caption, std::optional<int16_t> alignment = std::nullopt,
             std::optional<uint32_t> fore = std::nullopt);
    void SetVisible(int32_t col, bool visible);
    // The caption, its pending total computed first.
    std::wstring Read(int32_t col);
    // The whole cell, for painting (a default cell where none was set).
    SummaryCell Cell(int32_t col);

    // The column's total ("0.00") as its caption, right-aligned (1) in black (0).
    void Calc(int32_t col);

private:
    void TotalSettled(int32_t col, double total) override;
    void settle(int32_t col);

    ColumnTotals totals_;
    std::map<int32_t, SummaryCell> bar_;
};

} // namespace tarn
