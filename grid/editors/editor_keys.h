// What the grid's in-cell editors do with keys, as decision tables the grid carries out:
//
//   FilterEditorChar   the key-press filter of the text, number, date and time editors: the
//                      two characters the grid file uses as structure (comma, double quote) are
//                      refused with a message; Tab, Enter and Escape never reach the text
//   EditorKeyDown      the steps a key-down asks of the grid (close, move row, delete or add a
//                      row, commit and move column...), one table for every editor kind
//
// The grid raises its own KeyPress with the filtered character, and its KeyDown after the
// steps, whatever they were. Pure: no window here.
#pragma once
#include <cstdint>

#include "grid/editors/editor_kinds.h"

namespace tarn {

// The message shown for a refused character: OK only, no icon.
inline constexpr wchar_t kRefusedCharText[] =
    L"You cannot use this character within the grid, as this is part of the grid structure.";
inline constexpr wchar_t kRefusedCharTitle[] = L"Text Error";

struct CharFilter {
    int16_t key_ascii; // the character as it now stands: 0 when discarded
    bool refused;      // a structure character: show the message, then give the focus back
};
CharFilter FilterEditorChar(int16_t key_ascii);
// Whether the editor runs the filter (the text, number, date and time editors do).
bool EditorFiltersChars(EditorKind kind);

// One thing the grid does for a key, in the order listed in KeySteps.
enum class EditorStep : uint8_t {
    Commit,         // BoxHide: close the editor, writing its value into the cell
    MoveRowDown,    // make the next row current
    MoveRowUp,      // make the previous row current
    DeleteRow,      // RowDel of the current row (which closes the editor itself)
    AddRowBelow,    // RowAdd of an empty row below the current one
    SummaryCalc,    // BarSummaryColCalc of the current column
    NextColumn,     // make the next column current
    ResetSelection, // the editor drops its selection (text) or goes back to the value it opened with
};

struct KeyContext {
    int32_t row = 0, rows = 0; // current row, row count
    int32_t col = 0, cols = 0; // current column, column count
    bool allow_edit = false;   // AllowGridEdit: rows may be added and deleted
};

struct KeySteps {
    EditorStep step[4];
    uint8_t count = 0;
    bool has(EditorStep s) const
    {
        for (uint8_t i = 0; i < count; ++i)
            if (step[i] == s) return true;
        return false;
    }
    KeySteps &then(EditorStep s)
    {
        if (count < 4) step[count++] = s;
        return *this;
    }
};

namespace keys {
constexpr int16_t Tab = 9, Enter = 13, Escape = 27, Insert = 45, Delete = 46, Up = 38, Down = 40, Right = 39,
                  Comma = 188, ShiftCtrl = 2;
}

// The steps for a key-down in an editor of `kind`. Every editor answers Enter, Tab, Escape,
// Ctrl+Delete and Insert alike; Up and Down move the row only in the editors that have no use
// for them (text and check box): the pickers, lists and the number box step with them.
KeySteps EditorKeyDown(EditorKind kind, int16_t key_code, int16_t shift, const KeyContext &ctx);

} // namespace tarn
