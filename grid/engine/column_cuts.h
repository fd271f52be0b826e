// Columns removed without touching the rows: every shrink of the column count is noted with
// the time it happened, and a row stamped earlier keeps only the cells that every later
// shrink left. A row is trimmed for real when it is next written. So removing the last column
// of a million rows costs O(1), and a column added again afterwards starts empty.
#pragma once
#include <algorithm>
#include <climits>
#include <cstdint>
#include <vector>

namespace tarn {

class ColumnCuts {
public:
    // The stamp a row trimmed now carries.
    uint32_t Now() const { return clock_; }

    // The column count went down to `cols`.
    void Cut(int32_t cols)
    {
        ++clock_;
        // A cut to fewer columns hides every earlier cut to as many or more.
        while (!cuts_.empty() && cuts_.back().cols >= cols) cuts_.pop_back();
        cuts_.push_back({clock_, cols});
    }

    // How many leading cells a row stamped `stamp` still has (INT32_MAX: all it holds). The
    // cuts kept rise in time and in count, so the first one after the stamp is the smallest.
    int32_t Limit(uint32_t stamp) const
    {
        if (cuts_.empty() || cuts_.back().time <= stamp) return INT32_MAX;
        auto it = std::upper_bound(cuts_.begin(), cuts_.end(), stamp, [](uint32_t s, const Mark &c) { return s < c.time; });
        return it->cols;
    }

private:
    struct Mark {
        uint32_t time;
        int32_t cols;
    };
    uint32_t clock_ = 0;
    std::vector<Mark> cuts_;
};

} // namespace tarn
