// GridEditors: the grid's seven in-cell editors and the pop-up menus of the date and time
// editors, with what BoxShow, BoxHide and BoxSelect do to them, the character filter and the
// key tables carried out. The grid holds one, adds each editor's window as a constituent of its
// own (they start hidden), and answers GridEditorHost.
//
//   BoxShow    Show(EditorForColumn(types, col), cell): ignored while the editor-open flag is
//              set; sets it, lays the editor over the cell, loads the cell text, shows it and
//              gives it the focus
//   BoxHide    Hide(): clears the flag; the open editor's value is written into the current
//              cell by the commit rules (cell_values.h), ChangeEdited raised when the text changed
//   BoxSelect  Select()
#pragma once
#include <functional>
#include <vector>

#include "grid/editors/cboCONTROL.h"
#include "grid/editors/dtpCONTROL.h"
#include "grid/editors/editor_keys.h"
#include "grid/editors/editor_menus.h"
#include "grid/editors/framGrdchkBOX.h"
#include "grid/editors/imgCOMBO.h"
#include "grid/editors/timCONTROL.h"
#include "grid/editors/txtCONTROL.h"
#include "grid/editors/udnLIST.h"
#include "runtime/events.h"
#include "runtime/popup_menu.h"

namespace tarn {

// What the editors need of the grid.
class GridEditorHost {
public:
    // The current cell's position, the counts and AllowGridEdit, for the key tables.
    virtual KeyContext EditorContext() = 0;
    virtual std::wstring CurrentCellText() = 0;
    // Writes the current cell's text (no Change of its own).
    virtual void WriteCurrentCell(const std::wstring &text) = 0;
    virtual void SetCurrentCellFont(const std::wstring &font_name) = 0;
    // The grid's Change: its event, then the current column's summary.
    virtual void RunChange() = 0;
    // Raises one of the grid's events (grid_events.h) to the host.
    virtual void RaiseEvent(DISPID id, EventArgs &args) = 0;
    // A key's step that the grid carries out itself: MoveRowDown, MoveRowUp, DeleteRow,
    // AddRowBelow, SummaryCalc, NextColumn.
    virtual void CarryOut(EditorStep step) = 0;
    // Whether an editor that opens takes the focus (the grid's answer: when it has it itself).
    virtual bool EditorTakesFocus() { return true; }
    // The editor has closed; `had_focus` when it held the focus (the grid then takes it).
    virtual void EditorClosed(bool had_focus) = 0;
    // Tells the user a character was refused: the message box, OK only, no icon.
    virtual void ShowRefusal(HWND editor);

protected:
    ~GridEditorHost() = default;
};

class GridEditors {
public:
    explicit GridEditors(GridEditorHost &host);
    GridEditors(const GridEditors &) = delete;
    GridEditors &operator=(const GridEditors &) = delete;

    // Every editor's window, for the grid to add as its constituents.
    std::vector<WindowedConstituent *> Windows();
    CellEditor &Editor(EditorKind kind);
    void SetFont(IFontDisp *font);

    void Show(EditorKind kind, const CellRect &cell);
    void Hide();
    void Select();
    bool IsOpen() const { return open_flag_; }
    // The editor on show, null when none.
    CellEditor *OpenEditor() const { return open_; }

    // The lists the grid's ComboAdd... and imgComboAdd... fill.
    ComboBox &List() { return cbo_.Combo(); }
    ImageCombo &Images() { return img_.Combo(); }
    // cboCONTROL_KeyDown and cboCONTROL_KeyUp: the combo editor's key handling.
    void ListKeyDown(int16_t &key_code, int16_t shift) { key_down(cbo_, key_code, shift); }
    void ListKeyUp(int16_t &key_code, int16_t shift) { key_up(key_code, shift); }

    // The time the pickers open on for an empty cell and the time menu's "now" writes.
    void SetClock(std::function<SYSTEMTIME()> clock);

    PopupMenu mnuDATETOP{L"mnuDATETOP"}, mnuTIMETOP{L"mnuTIMETOP"};

private:
    void wire(CellEditor &e);
    void build_menu(PopupMenu &menu, const EditorMenu &table);
    void menu_choice(const EditorMenuItem &item);
    void key_down(CellEditor &e, int16_t &key_code, int16_t shift);
    void key_press(CellEditor &e, int16_t &key_ascii);
    void key_up(int16_t &key_code, int16_t shift);
    void raise(DISPID id);

    GridEditorHost &host_;
    txtCONTROL txt_;
    dtpCONTROL dtp_;
    imgCOMBO img_;
    framGrdchkBOX chk_;
    cboCONTROL cbo_;
    udnLIST udn_;
    timCONTROL tim_;
    std::function<SYSTEMTIME()> clock_;
    bool open_flag_ = false;
    CellEditor *open_ = nullptr;
};

} // namespace tarn
