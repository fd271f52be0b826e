#include "grid/editors/framGrdchkBOX.h"

#include "grid/editors/cell_values.h"
#include "grid/grdchk.h"

namespace tarn {

framGrdchkBOX::framGrdchkBOX() : CellEditor(EditorKind::Check), box_(L"framGrdchkBOX", &grdchk::Create, 0, 0, 495, 255)
{
    box_.SetVisible(false);
    // The cell's back colour: the grid's window colour.
    if (ComPtr<Igrdchk> b = Box()) b->put_BACKCOLOR(0x80000005);
}

void framGrdchkBOX::set(bool checked)
{
    // Not a click of the user's: the box says nothing.
    auto keep = std::move(box_.on_event);
    if (ComPtr<Igrdchk> b = Box()) b->put_Value(checked ? CheckValues(1) : CheckValues(0));
    box_.on_event = std::move(keep);
}

void framGrdchkBOX::Load(const std::wstring &cell_text)
{
    opened_ = CellIsChecked(cell_text);
    set(opened_);
}

std::optional<std::wstring> framGrdchkBOX::Value()
{
    ComPtr<Igrdchk> b = Box();
    if (!b) return std::nullopt;
    CheckValues value = CheckValues(0);
    if (FAILED(b->get_Value(&value))) return std::nullopt;
    return std::wstring(CheckCellText(int(value) == 1));
}

void framGrdchkBOX::Reset() { set(opened_); }

} // namespace tarn
