// The summary bar's cells (caption, alignment, colour, shown) and the column totals that
// fill them.
//
// A total is the "0.00" text of the leading numbers of a column's texts added in row order,
// in double precision. The grid recalculates the current column's total after every row
// change, so filling a grid row by row would add the whole column again each time. Instead
// Calc only marks the column's caption as pending, remembering that it stands for the column
// as it is now; the caption is computed when somebody reads it. Until then every change to
// that column's texts (rows inserted or removed, one cell's text replaced) is noted with what
// it replaced, so the total of the moment of Calc can still be rebuilt exactly, in the same
// row order and with the same rounding as an immediate sum. A change that cannot be noted
// cheaply (a sort, a clear, the column itself going, too many notes) settles the caption
// first, and so does a Calc of another column (one caption waits at a time). The next Calc of
// the column, or a caption set for it, drops the pending one. So a host sees exactly what an
// immediate calculation would show, and a thousand row changes with nobody looking cost one
// sum instead of a thousand.
#pragma once
#include "grid/cell_engine.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarn {

struct SummaryCell {
    std::wstring caption;
    int16_t alignment = 0;       // the caption's alignment: 0 left, 1 right, 2 centre
    uint32_t fore = 0x80000008u; // OLE colour of the caption (window text)
    bool visible = true;
};

class SummaryBar final : public CellEngineObserver {
public:
    // The bar reads the totals from `cells`; the owner registers it as the engine's observer.
    explicit SummaryBar(const CellEngine &cells) : cells_(cells) {}

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

    // The column's total as its caption, right-aligned (1) in black (0).
    void Calc(int32_t col);

    // The total of a column as it is now (the sum Calc stands for).
    static double ColumnTotal(const CellEngine &cells, int32_t col);

    // CellEngineObserver
    void BeforeTextChange(int32_t row, int32_t col) override;
    void BeforeRowsInserted(int32_t at, int32_t count) override;
    void BeforeRowsRemoved(int32_t at, int32_t count) override;
    void BeforeColsRemoved(int32_t from) override;
    void BeforeReorder() override;

private:
    // What one change replaced, enough to undo it on a copy of the column's values.
    struct Note {
        enum Kind { kInserted, kRemoved, kText } kind;
        int32_t at;
        int32_t count;               // kInserted
        std::vector<double> values;  // kRemoved: the rows' values; kText: the old value
    };
    static constexpr size_t kMaxNotes = 16;
    static constexpr int32_t kMaxNotedRows = 4096;

    void settle();
    bool can_note();
    double pending_total() const;

    const CellEngine &cells_;
    std::map<int32_t, SummaryCell> bar_;
    int32_t pending_ = -1; // the column whose caption waits for its total, -1: none
    std::vector<Note> notes_;
};

} // namespace tarn
