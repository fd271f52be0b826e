// imgCOMBO: the editor of picture list cells (type 2), an image combo. It opens on the item
// whose text is the cell's and commits the chosen item's text; with no item chosen it commits
// nothing. Its items are the grid's imgComboAdd, imgComboDel and imgComboClear.
#pragma once
#include "grid/editors/cell_editor.h"
#include "runtime/image_combo.h"

namespace tarn {

class imgCOMBO final : public CellEditor {
public:
    imgCOMBO();
    WindowedConstituent &Window() override { return combo_; }
    ImageCombo &Combo() { return combo_; }

    void Load(const std::wstring &cell_text) override;
    std::optional<std::wstring> Value() override;
    void Reset() override;

private:
    void show_opened();
    ImageCombo combo_;
    int32_t opened_ = -1;
};

} // namespace tarn
