#include "grid/editors/imgCOMBO.h"

namespace tarn {

imgCOMBO::imgCOMBO() : CellEditor(EditorKind::ImageList), combo_(L"imgCOMBO", 0, 0, 0, 0) { combo_.SetVisible(false); }

void imgCOMBO::Load(const std::wstring &cell_text)
{
    opened_ = -1;
    for (int32_t i = 0, n = combo_.ListCount(); i < n; ++i)
        if (combo_.List(i) == cell_text) {
            opened_ = i;
            break;
        }
    show_opened();
}

std::optional<std::wstring> imgCOMBO::Value()
{
    int32_t i = combo_.ListIndex();
    if (i < 0) return std::nullopt;
    return combo_.List(i);
}

void imgCOMBO::Reset() { show_opened(); }

void imgCOMBO::show_opened()
{
    // Not a choice of the user's: nothing is raised.
    auto keep = std::move(combo_.on_click);
    step([&] { combo_.SetListIndex(opened_); });
    combo_.on_click = std::move(keep);
}

} // namespace tarn
