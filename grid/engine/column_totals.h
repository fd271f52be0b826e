// The column totals behind the summary bar, per column and without adding a column up more
// often than somebody reads its total.
//
// A total is the sum of the leading numbers of a column's texts (0 for text without one) added
// from row 0 down, in double precision: floating-point addition is not associative, so that
// order is part of the result and a total is never patched by adding or subtracting a change.
//
// Request(col) says "the total of the column as it is now" and computes nothing. Until the
// total is taken (Settle), every change to the column is noted with what it replaced (a text's
// old value, the rows removed, where rows came in), so the column of the moment of the request
// can be rebuilt (piece_list.h) and added up in the same order. Each column waits on its own:
// requests of many columns in turn cost nothing. When the texts a waiting total stands for are
// about to go for good (a sort, a clear, the column itself removed) or the notes outgrow the
// column, the total is worked out at once and handed to the sink.
//
// Beside that, each column may know the exact partial sum of its first rows (kept from its
// last addition, valid while none of those rows changes): adding the column up then starts
// there. Filling a grid at its end, with its totals read after every row, so costs the new
// rows only.
#pragma once
#include "grid/engine/cell_engine.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace tarn {

class ColumnTotals final : public CellEngineObserver {
public:
    // Where totals worked out before they were taken go.
    class Sink {
    public:
        virtual void TotalSettled(int32_t col, double total) = 0;

    protected:
        ~Sink() = default;
    };

    // The owner registers the totals as the engine's observer.
    ColumnTotals(const CellEngine &cells, Sink &sink) : cells_(cells), sink_(sink) {}

    void Request(int32_t col);
    bool Pending(int32_t col) const;
    // The total the last Request of the column stands for; the column waits no longer.
    double Settle(int32_t col);
    // Forgets a waiting total (a caption set by hand replaced it).
    void Drop(int32_t col);

    // The total of a column as it is now, added up from row 0.
    static double ColumnTotal(const CellEngine &cells, int32_t col);
    // How many values all totals so far have added up: the work they cost.
    uint64_t ValuesAdded() const { return added_; }

    // CellEngineObserver
    void BeforeTextChange(int32_t row, int32_t col, std::wstring_view text) override;
    void AfterRowsInserted(int32_t at, int32_t count, bool empty) override;
    void BeforeRowsRemoved(int32_t at, int32_t count) override;
    void BeforeColsRemoved(int32_t from) override;
    void BeforeReorder() override;

private:
    struct Note {
        enum Kind : uint8_t { kText, kInserted, kRemoved } kind;
        int32_t at;
        int32_t count;
        uint32_t first; // kText, kRemoved: where the old values start in `noted`
    };
    struct Column {
        bool pending = false;
        std::vector<Note> notes;
        std::vector<double> noted;
        // Rows 0..prefix_rows-1 add up to prefix_total and have not changed since.
        int32_t prefix_rows = 0;
        double prefix_total = 0;
    };

    double value(int32_t row, int32_t col) const;
    bool all_zero(int32_t first, int32_t count, int32_t col) const;
    // Adds rows first.. of the column to `start`; stops before the last row when `keep`
    // is given, to store the sum up to there in it.
    double current_total(int32_t col, Column &c);
    double rebuilt_total(int32_t col, const Column &c) const;
    // Whether the column can take `more` noted values; settles it when not.
    bool room(int32_t col, Column &c, size_t more);
    void settle_now(int32_t col, Column &c);
    void forget_if_idle(std::unordered_map<int32_t, Column>::iterator it);

    const CellEngine &cells_;
    Sink &sink_;
    std::unordered_map<int32_t, Column> columns_; // columns waiting or knowing a partial sum
    mutable std::wstring scratch_;
    mutable uint64_t added_ = 0;
};

} // namespace tarn
