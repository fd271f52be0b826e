// txtCONTROL: the text editor of plain text cells (type 0), a text box without a border that
// takes the cell text as it stands and commits what it holds.
#pragma once
#include "grid/editors/cell_editor.h"
#include "runtime/text_box.h"

namespace tarn {

class txtCONTROL final : public CellEditor {
public:
    txtCONTROL();
    WindowedConstituent &Window() override { return box_; }
    TextBox &Box() { return box_; }

    void Load(const std::wstring &cell_text) override;
    std::optional<std::wstring> Value() override { return box_.Text(); }
    void Select() override;
    void Reset() override;

private:
    TextBox box_;
};

} // namespace tarn
