// CellEditor: one of the grid's in-cell editors, a windowed constituent laid over the current
// cell. The editor set (grid_editors.h) opens, closes and routes keys through this interface;
// each kind says how the cell text becomes its value and back.
#pragma once
#include <optional>
#include <string>

#include "foundation/trap.h"
#include "grid/editors/editor_kinds.h"
#include "runtime/windowed_constituent.h"

namespace tarn {

// The cell an editor covers: twips in the grid's surface.
struct CellRect {
    float left = 0, top = 0, width = 0, height = 0;
};

class CellEditor {
public:
    virtual ~CellEditor() = default;
    CellEditor(const CellEditor &) = delete;
    CellEditor &operator=(const CellEditor &) = delete;

    EditorKind Kind() const { return kind_; }
    virtual WindowedConstituent &Window() = 0;

    // Lays the editor over the cell (the default covers it exactly).
    virtual void Place(const CellRect &cell) { Window().Move(cell.left, cell.top, cell.width, cell.height); }
    // Loads the cell's text as the editor's value.
    virtual void Load(const std::wstring &cell_text) = 0;
    // The text the editor commits; none when it has nothing to write.
    virtual std::optional<std::wstring> Value() = 0;
    // BoxSelect: selects the editor's text, where it has one.
    virtual void Select() {}
    // Escape: drops the selection (text), or goes back to the value it was opened with.
    virtual void Reset() {}

protected:
    explicit CellEditor(EditorKind kind) : kind_(kind) {}

private:
    EditorKind kind_;
};

} // namespace tarn
