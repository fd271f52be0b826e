// udnLIST: the editor of percentage cells (type 5), the library's own number box (updown),
// used only through its public interface. It opens on the cell text without any " %" and
// commits its text followed by " %"; the grid writes that, and runs Change, only when it
// differs from the cell.
#pragma once
#include "grid/editors/cell_editor.h"
#include "runtime/nested_control.h"
#include "tarnctls_h.h"

namespace tarn {

class udnLIST final : public CellEditor {
public:
    udnLIST();
    WindowedConstituent &Window() override { return box_; }
    // The number box itself, as a host would hold it.
    ComPtr<Iupdown> Box() const { return box_.As<Iupdown>(IID_Iupdown); }

    void Place(const CellRect &cell) override;
    void Load(const std::wstring &cell_text) override;
    std::optional<std::wstring> Value() override;
    void Reset() override;

private:
    NestedControl box_;
    std::wstring opened_;
};

} // namespace tarn
