#include "grid/editors/cboCONTROL.h"

namespace tarn {

cboCONTROL::cboCONTROL() : CellEditor(EditorKind::List), combo_(L"cboCONTROL", 0, 0, 0, 0, 0) { combo_.SetVisible(false); }

void cboCONTROL::Load(const std::wstring &cell_text)
{
    opened_ = cell_text;
    // Loading is no change of the user's: nothing is raised.
    auto keep = std::move(combo_.on_change);
    step([&] { combo_.SetText(cell_text); });
    combo_.on_change = std::move(keep);
}

void cboCONTROL::Reset() { step([&] { combo_.SetText(opened_); }); }

} // namespace tarn
