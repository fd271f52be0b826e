#include "grid/editors/editor_kinds.h"

#include "grid/column_types.h"

namespace tarn {

const wchar_t *EditorName(EditorKind kind)
{
    switch (kind) {
    case EditorKind::Text: return L"txtCONTROL";
    case EditorKind::Date: return L"dtpCONTROL";
    case EditorKind::ImageList: return L"imgCOMBO";
    case EditorKind::Check: return L"framGrdchkBOX";
    case EditorKind::List: return L"cboCONTROL";
    case EditorKind::Percent: return L"udnLIST";
    case EditorKind::Time: return L"timCONTROL";
    }
    return L"";
}

std::optional<EditorKind> EditorForTypeCode(int32_t code)
{
    // The order the codes are tried in; the first match opens its editor.
    static constexpr struct {
        int32_t code;
        EditorKind kind;
    } kOrder[] = {
        {kColDate, EditorKind::Date},    {kColTime, EditorKind::Time},       {kColCombo, EditorKind::List},
        {kColImageCombo, EditorKind::ImageList}, {kColPercent, EditorKind::Percent}, {kColCheck, EditorKind::Check},
    };
    for (const auto &entry : kOrder)
        if (entry.code == code) return entry.kind;
    if (code == kColText) return EditorKind::Text;
    return std::nullopt;
}

std::optional<EditorKind> EditorForColumn(const ColumnTypes &types, int32_t col)
{
    // Only columns the table holds are looked up; the others read as 0.
    return EditorForTypeCode(types.Get(col));
}

} // namespace tarn
