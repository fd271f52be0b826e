#include "grid/grid_model.h"

#include "foundation/numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <random>

using namespace tarn;

namespace {

struct ChangeHook : GridModelHost {
    std::function<void()> on_change;
    void RaiseChange() override
    {
        if (on_change) on_change();
    }
};

// The caption an immediate calculation gives: the leading numbers added in row order.
std::wstring fresh_total(const GridModel &grid, int32_t col)
{
    double total = 0;
    for (int32_t r = 0; r < grid.RowsCurrent(); ++r) total += LeadingNumber(grid.CellTextRead(r, col));
    return FormatFixed(total, 2);
}

} // namespace

TEST(SummaryBar, APendingTotalStandsForTheColumnAsItWasAtCalc)
{
    ChangeHook host;
    GridModel grid(&host);
    grid.RowsSet(3);
    grid.CellTextSet(0, 0, L"1e16");
    grid.CellTextSet(1, 0, L"1");
    grid.CellTextSet(2, 0, L"-1e16");
    grid.BarSummaryColCalc(0); // (1e16 + 1) - 1e16 rounds to 0 in row order
    // Changes after the calculation do not show until the next one...
    grid.RowAdd(L"5", 3);       // (its Change totals the column again: 5.00)
    EXPECT_EQ(L"5.00", grid.BarSummaryColRead(0));
    grid.CellTextSet(3, 0, L"7");
    grid.RowDel(0);             // 1 - 1e16 + 7, rounded at each step
    std::wstring seen;
    host.on_change = [&] { seen = grid.BarSummaryColRead(0); };
    grid.RowAdd(L"1e16", 0);    // 1e16 + 1 - 1e16 + 7 = 7 in row order
    EXPECT_EQ(FormatFixed((0.0 + 1.0 + -1e16) + 7.0, 2), seen); // the handler sees RowDel's total
    EXPECT_NE(L"7.00", seen);
    EXPECT_EQ(L"7.00", grid.BarSummaryColRead(0));
    EXPECT_EQ(fresh_total(grid, 0), grid.BarSummaryColRead(0));

    // An explicit caption replaces a pending total; later changes leave it alone.
    host.on_change = nullptr;
    grid.RowAdd(L"100", 0);
    grid.BarSummaryColSet(0, L"manual");
    grid.CellTextSet(0, 0, L"9");
    EXPECT_EQ(L"manual", grid.BarSummaryColRead(0));
    grid.RowsSet(1); // its Change totals the column again
    EXPECT_EQ(L"9.00", grid.BarSummaryColRead(0));
}

// Random row, column and cell operations with occasional reads, inside and outside the
// Change handler, against the captions an immediate calculation would have left.
TEST(SummaryBar, LazyTotalsMatchImmediateOnesUnderRandomOperations)
{
    const std::wstring values[] = {L"1.5", L"abc", L"", L"2", L"-0.1", L"1e16", L"-1e16", L"0.3", L"7 kg", L"0.1", L"1"};
    for (unsigned seed = 1; seed <= 12; ++seed) {
        std::mt19937 rng(seed);
        auto pick = [&](int n) { return static_cast<int32_t>(rng() % static_cast<unsigned>(n)); };
        auto value = [&] { return values[pick(11)]; };
        ChangeHook host;
        GridModel grid(&host);
        std::map<int32_t, std::wstring> expected;
        auto check = [&] {
            for (int32_t c = 0; c < 4; ++c) ASSERT_EQ(expected[c], grid.BarSummaryColRead(c)) << "seed " << seed << " col " << c;
        };
        host.on_change = [&] {
            if (pick(4) == 0) check();
        };
        grid.ColsSet(3);
        for (int op = 0; op < 1500; ++op) {
            const int32_t rows = grid.RowsCurrent();
            bool changed = true;
            switch (pick(12)) {
            case 0:
            case 1: grid.RowAdd(value() + L"\t" + value() + L"\t" + value(), pick(rows + 1)); break;
            case 2: grid.RowDel(pick(rows + 1)); break;
            case 3: grid.RowsSet(std::max(0, rows + pick(7) - 3)); break;
            case 4:
            case 5: grid.CellTextSet(pick(rows + 1), pick(3), value()), changed = false; break;
            case 6: grid.ColSetFocus(pick(4)), changed = false; break;
            case 7: grid.SortFlex(grid.ColCurrent()), changed = false; break;
            case 8: {
                int32_t c = pick(4);
                grid.BarSummaryColSet(c, L"set");
                expected[c] = L"set";
                changed = false;
                break;
            }
            case 9: {
                int32_t c = pick(4);
                grid.BarSummaryColCalc(c);
                expected[c] = fresh_total(grid, c);
                changed = false;
                break;
            }
            case 10: grid.ColsSet(2 + pick(3)), changed = false; break;
            default: grid.Change(); break;
            }
            if (changed) expected[grid.ColCurrent()] = fresh_total(grid, grid.ColCurrent());
            if (pick(10) == 0) check();
            if (HasFatalFailure()) return;
        }
        check();
    }
}

// Filling or emptying a grid row by row must not add the column again on every row.
TEST(SummaryBar, RowByRowChangesStayLinear)
{
    GridModel grid;
    grid.ColsSet(2);
    const auto start = std::chrono::steady_clock::now();
    const int32_t n = 40000;
    for (int32_t i = 0; i < n; ++i) grid.RowAdd(L"1.25\tx", 0);
    for (int32_t i = 0; i < n; ++i) grid.RowAdd(L"0.5", grid.RowsCurrent());
    for (int32_t i = 0; i < n; ++i) grid.RowDel(0);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(seconds, 10.0); // an addition per row per change takes minutes here
    EXPECT_EQ(L"20000.00", grid.BarSummaryColRead(0)); // the first row, empty, and the halves
    EXPECT_EQ(fresh_total(grid, 0), grid.BarSummaryColRead(0));
}
