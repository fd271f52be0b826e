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

EditorKind EditorForTypeCode(int32_t code)
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
    return EditorKind::Text;
}

EditorKind EditorForColumn(const ColumnTypes &types, int32_t col)
{
    // Only columns the table holds are looked up.
    if (!ColumnTypes::valid(col)) return EditorKind::Text;
    return EditorForTypeCode(types.Get(col));
}

} // namespace tarn
