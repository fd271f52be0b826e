// The grid's column type table: one code per column index 0..10000, all 0 at creation,
// kept by the control (not persisted) and read by the editors and the file loader.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace tarn {

// Column type codes and the in-cell editor each one opens.
enum ColumnType : int32_t {
    kColText = 0,       // text box
    kColDate = 1,       // date picker
    kColImageCombo = 2, // picture list
    kColCheck = 3,      // check box: " a" in "webdings" when checked
    kColCombo = 4,      // drop-down list
    kColPercent = 5,    // up-down box; the cell shows the number and " %"
    kColTime = 6,       // time picker
};

class ColumnTypes {
public:
    static constexpr int32_t kLastIndex = 10000;

    ColumnTypes() : codes_(kLastIndex + 1, kColText) {}

    // Any 32-bit code is stored as given; an index outside 0..10000 is ignored.
    void Set(int32_t col, int32_t code)
    {
        if (valid(col)) codes_[static_cast<size_t>(col)] = code;
    }
    // The stored code; 0 outside 0..10000 (the value a failed look-up leaves).
    int32_t Get(int32_t col) const { return valid(col) ? codes_[static_cast<size_t>(col)] : kColText; }
    // The code as decimal text, the empty text outside 0..10000.
    std::wstring Read(int32_t col) const { return valid(col) ? std::to_wstring(codes_[static_cast<size_t>(col)]) : std::wstring(); }

    static bool valid(int32_t col) { return col >= 0 && col <= kLastIndex; }

private:
    std::vector<int32_t> codes_;
};

} // namespace tarn
