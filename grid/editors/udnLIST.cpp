#include "grid/editors/udnLIST.h"

#include "grid/editors/cell_values.h"
#include "inputs/updown.h"

namespace tarn {

namespace {
// A percentage runs from 0 to 100 unless the host sets other bounds on the box.
constexpr long kMax = 100;
} // namespace

udnLIST::udnLIST() : CellEditor(EditorKind::Percent), box_(L"udnLIST", &updown::Create, 0, 0, 1200, 315)
{
    box_.SetVisible(false);
    if (ComPtr<Iupdown> b = Box()) {
        b->put_Max(kMax);
        b->put_BorderStyle(BorderStyles(0));
    }
}

void udnLIST::Place(const CellRect &cell)
{
    // The box takes the height of its font; it sits at the cell's top.
    box_.Move(cell.left, cell.top, cell.width, cell.height);
}

void udnLIST::Load(const std::wstring &cell_text)
{
    opened_ = PercentEditorText(cell_text);
    if (ComPtr<Iupdown> b = Box()) {
        Bstr text(opened_);
        b->put_Text(text.get());
    }
}

std::optional<std::wstring> udnLIST::Value()
{
    ComPtr<Iupdown> b = Box();
    if (!b) return std::nullopt;
    Bstr text;
    if (FAILED(b->get_Text(text.put()))) return std::nullopt;
    return PercentCellText(text.str());
}

void udnLIST::Reset() { Load(PercentCellText(opened_)); }

} // namespace tarn
