#include "grid/editors/cell_values.h"

namespace tarn {

namespace {
constexpr wchar_t kPercentSuffix[] = L" %";
}

std::wstring PercentEditorText(const std::wstring &cell_text)
{
    std::wstring out;
    out.reserve(cell_text.size());
    for (size_t i = 0; i < cell_text.size();) {
        if (cell_text.compare(i, 2, kPercentSuffix) == 0) {
            i += 2;
            continue;
        }
        out += cell_text[i++];
    }
    return out;
}

std::wstring PercentCellText(const std::wstring &editor_text) { return editor_text + kPercentSuffix; }

bool CellIsChecked(const std::wstring &cell_text) { return cell_text == kCheckedText; }

const wchar_t *CheckCellText(bool checked) { return checked ? kCheckedText : L""; }

CommitOutcome DecideCommit(EditorKind kind, const std::optional<std::wstring> &value, const std::wstring &cell_text)
{
    CommitOutcome r;
    r.set_check_font = kind == EditorKind::Check;
    if (!value) return r;
    r.text = *value;
    r.changed = r.text != cell_text;
    // A percentage cell is written, and its Change run, only when its text changed; every
    // other editor writes what it holds.
    r.write = kind == EditorKind::Percent ? r.changed : true;
    r.run_change = kind == EditorKind::Percent && r.changed;
    return r;
}

} // namespace tarn
