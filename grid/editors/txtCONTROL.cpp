#include "grid/editors/txtCONTROL.h"

namespace tarn {

txtCONTROL::txtCONTROL() : CellEditor(EditorKind::Text), box_(L"txtCONTROL", 0, 0, 0, 0)
{
    box_.SetVisible(false);
    // The cell's own lines frame it.
    step([&] { box_.SetBorderStyle(0); });
}

void txtCONTROL::Load(const std::wstring &cell_text)
{
    box_.SetText(cell_text);
    box_.SetSelStart(static_cast<int32_t>(cell_text.size()));
}

void txtCONTROL::Select()
{
    box_.SetSelStart(0);
    box_.SetSelLength(static_cast<int32_t>(box_.Text().size()));
}

void txtCONTROL::Reset() { box_.SetSelStart(box_.SelStart()); }

} // namespace tarn
