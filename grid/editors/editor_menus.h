// The pop-up menus of the date and time editors (mnuDATETOP, mnuTIMETOP): their items in
// order, the grid event each raises and what the grid does to the cell first. The time menu
// fills and empties the cell itself; the date menu leaves both to the host. Pure.
#pragma once
#include <cstddef>
#include <cstdint>

namespace tarn {

enum class MenuCellAction : uint8_t {
    None,         // the cell is left alone
    WriteTimeNow, // close the editor, then write the time of day as the environment's time text
    WriteEmpty,   // close the editor, then write the empty text
};

struct EditorMenuItem {
    const wchar_t *name;    // mnuTIME30
    const wchar_t *caption; // what the user sees
    int32_t event;          // the grid event raised (grid_events), 0 for a separator
    MenuCellAction action;
    bool separator() const { return event == 0; }
};

struct EditorMenu {
    const wchar_t *name; // mnuDATETOP
    const EditorMenuItem *items;
    size_t count;
    // The item named `name`, or null.
    const EditorMenuItem *find(const wchar_t *item_name) const;
};

const EditorMenu &DateMenu();
const EditorMenu &TimeMenu();

} // namespace tarn
