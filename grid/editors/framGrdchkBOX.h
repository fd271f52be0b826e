// framGrdchkBOX: the editor of check box cells (type 3), the library's grid check box (grdchk),
// used only through its public interface. It opens checked when the cell holds " a" and
// commits " a" or the empty text; the cell then shows it in "webdings".
#pragma once
#include "grid/editors/cell_editor.h"
#include "runtime/nested_control.h"
#include "tarnctls_h.h"

namespace tarn {

class framGrdchkBOX final : public CellEditor {
public:
    framGrdchkBOX();
    WindowedConstituent &Window() override { return box_; }
    ComPtr<Igrdchk> Box() const { return box_.As<Igrdchk>(IID_Igrdchk); }
    NestedControl &Nested() { return box_; }

    void Load(const std::wstring &cell_text) override;
    std::optional<std::wstring> Value() override;
    void Reset() override;

private:
    void set(bool checked);
    NestedControl box_;
    bool opened_ = false;
};

} // namespace tarn
