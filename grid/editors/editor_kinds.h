// The grid's seven in-cell editors by kind, their constituent names, and which one a column
// type opens. Pure: no window here.
#pragma once
#include <cstdint>
#include <optional>

namespace tarn {

class ColumnTypes;

enum class EditorKind : uint8_t {
    Text,      // txtCONTROL: a text box
    Date,      // dtpCONTROL: a date picker, short date format
    ImageList, // imgCOMBO: an image combo
    Check,     // framGrdchkBOX: the library's grid check box
    List,      // cboCONTROL: a drop-down combo box
    Percent,   // udnLIST: the library's up-down box
    Time,      // timCONTROL: a date picker in time format
};
constexpr int kEditorKinds = 7;

// The constituent name of each editor ("txtCONTROL" ...).
const wchar_t *EditorName(EditorKind kind);

// The editor column `col` opens. The type codes are tried in the order 1, 6, 4, 2, 5, 3 and the
// first that matches wins; 0 (also the code of a column past the table) opens the text box, and
// a code the grid has no editor for opens none.
std::optional<EditorKind> EditorForColumn(const ColumnTypes &types, int32_t col);
std::optional<EditorKind> EditorForTypeCode(int32_t code);

} // namespace tarn
