// How the editors move between a cell's text and their own value, and what a commit does to
// the cell. Pure: no window here; the date and time texts need the user's locale and are made
// on the Win32 side (locale_text.h).
//
//   percentage   the editor gets the cell text with every " %" removed; the commit is the
//                number box's text followed by " %"
//   check box    checked when the cell holds " a"; the commit writes " a" or "" in "webdings"
//   lists        the commit is the chosen item's text (the combo box's text as it stands)
#pragma once
#include <optional>
#include <string>

#include "grid/editors/editor_kinds.h"

namespace tarn {

inline constexpr wchar_t kCheckedText[] = L" a";
inline constexpr wchar_t kCheckFont[] = L"webdings";

// The number a percentage editor opens with: the cell text without any " %".
std::wstring PercentEditorText(const std::wstring &cell_text);
// The cell text a number box's text commits as.
std::wstring PercentCellText(const std::wstring &editor_text);

bool CellIsChecked(const std::wstring &cell_text);
const wchar_t *CheckCellText(bool checked);

// What closing an editor does to the cell. `value` is the text the editor commits, or none
// when it has nothing to write (a list with no item chosen, an editor that was not open).
struct CommitOutcome {
    bool write = false;        // write `text` into the cell
    std::wstring text;
    bool set_check_font = false; // give the cell the check font, written or not
    bool run_change = false;   // the grid's Change (event and summary): a changed percentage
    bool changed = false;      // the text differs from what the cell held: ChangeEdited
};
CommitOutcome DecideCommit(EditorKind kind, const std::optional<std::wstring> &value, const std::wstring &cell_text);

} // namespace tarn
