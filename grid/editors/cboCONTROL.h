// cboCONTROL: the editor of drop-down list cells (type 4), a drop-down combo box: the user
// picks an item or types. It opens on the cell text and commits the text it holds. Its items
// are the grid's ComboAdd, ComboDel and ComboClear.
#pragma once
#include "grid/editors/cell_editor.h"
#include "runtime/combo_box.h"

namespace tarn {

class cboCONTROL final : public CellEditor {
public:
    cboCONTROL();
    WindowedConstituent &Window() override { return combo_; }
    ComboBox &Combo() { return combo_; }

    void Load(const std::wstring &cell_text) override;
    std::optional<std::wstring> Value() override { return combo_.Text(); }
    void Reset() override;

private:
    ComboBox combo_;
    std::wstring opened_;
};

} // namespace tarn
