// grid (TarnControls.grid): the data grid. Its rows, columns and cells live in the grid model
// (grid/grid_model.h) over our own cell engine; this class is the COM face of that model, the
// painting of what is visible, scrolling, and the mouse and keyboard. Every non-visual member
// works without a window, so a script can fill, sort, total, save and load a grid.
#pragma once
#include "grid/editors/grid_editors.h"
#include "grid/grid_accessible.h"
#include "grid/grid_model.h"
#include "grid/grid_painter.h"
#include "grid/grid_view.h"
#include "grid/window_sync.h"
#include "runtime/control_impl.h"
#include "tarnctls_h.h"

namespace tarn {

class grid final : public ControlImpl<grid, Igrid> {
public:
    static const ControlClass Class;
    grid();

    // Igrid: properties
    STDMETHODIMP put_AllowGridEdit(VARIANT_BOOL value) override;
    STDMETHODIMP get_BarHeader(VARIANT_BOOL *value) override;
    STDMETHODIMP put_BarHeader(VARIANT_BOOL value) override;
    STDMETHODIMP get_BarSummary(VARIANT_BOOL *value) override;
    STDMETHODIMP put_BarSummary(VARIANT_BOOL value) override;
    STDMETHODIMP get_BorderStyle(BorderStyles *value) override;
    STDMETHODIMP put_BorderStyle(BorderStyles value) override;
    STDMETHODIMP get_Font(IFontDisp **value) override;
    STDMETHODIMP put_Font(IFontDisp *value) override;
    STDMETHODIMP putref_Font(IFontDisp *value) override;
    STDMETHODIMP get_hwnd(OLE_HANDLE *value) override;
    STDMETHODIMP get_blnGRIDORDER(VARIANT_BOOL *value) override;
    STDMETHODIMP put_blnGRIDORDER(VARIANT_BOOL value) override;
    STDMETHODIMP get_lngPREVIOUSCOLNO(long *value) override;
    STDMETHODIMP put_lngPREVIOUSCOLNO(long value) override;
    // colours
    STDMETHODIMP barColTEXT(OLE_COLOR *newcol) override;
    STDMETHODIMP barCol(OLE_COLOR *newcol) override;
    STDMETHODIMP GRIDCOLR(OLE_COLOR *newcol) override;
    STDMETHODIMP barColHL(OLE_COLOR *newcol) override;
    STDMETHODIMP barColSH(OLE_COLOR *newcol) override;
    STDMETHODIMP barColHLLIGHT(OLE_COLOR *newcol) override;
    STDMETHODIMP barColSHDARK(OLE_COLOR *newcol) override;
    // rows
    STDMETHODIMP RowAdd(BSTR Text, long RowNo) override;
    STDMETHODIMP RowDel(long RowNo) override;
    STDMETHODIMP RowsSet(long RowNo) override;
    STDMETHODIMP RowsCurrent(long *result) override;
    STDMETHODIMP RowCurrent(long *result) override;
    STDMETHODIMP RowSetFocus(long RowNo) override;
    // columns
    STDMETHODIMP ColAdd(double ColWidth) override;
    STDMETHODIMP ColDel() override;
    STDMETHODIMP ColsSet(long ColNo) override;
    STDMETHODIMP ColsCurrent(long *result) override;
    STDMETHODIMP ColCurrent(long *result) override;
    STDMETHODIMP ColSetFocus(long ColNo) override;
    STDMETHODIMP ColWidth(long ColNo, double ColWidthVal) override;
    STDMETHODIMP ColTypeSet(long ColNo, long ColTypeVal) override;
    STDMETHODIMP ColTypeRead(long ColNo, BSTR *result) override;
    // cells
    STDMETHODIMP CellTextSet(long RowNo, long ColNo, BSTR Text) override;
    STDMETHODIMP CellTextRead(long RowNo, long ColNo, BSTR *result) override;
    STDMETHODIMP CellChkSet(long Row, long Col, BSTR Value) override;
    STDMETHODIMP CellEnabledSet(long RowNo, long ColNo, VARIANT_BOOL StrikeThru, OLE_COLOR oleForeColor,
                                OLE_COLOR oleBackColor) override;
    STDMETHODIMP CellFontSet(long RowNo, long ColNo, VARIANT strFont, VARIANT Size, VARIANT Bold, VARIANT StrikeThru,
                             VARIANT oleForeColor, VARIANT oleBackColor) override;
    STDMETHODIMP CellFormatSet(long RowNo, long ColNo, VARIANT strFont, VARIANT Size, VARIANT Bold, VARIANT StrikeThru,
                               VARIANT oleForeColor, VARIANT oleBackColor) override;
    STDMETHODIMP CellColorSet(OLE_COLOR Color, long RowNo, long ColNo) override;
    STDMETHODIMP CellColorRead(long RowNo, long ColNo, OLE_COLOR *result) override;
    STDMETHODIMP CellCurrentLeft(long *result) override;
    STDMETHODIMP CellCurrentTop(long *result) override;
    STDMETHODIMP CellCurrentWidth(long *result) override;
    STDMETHODIMP CellCurrentHeight(long *result) override;
    STDMETHODIMP CellLeft(long *result) override;
    STDMETHODIMP CelWidth(long *result) override;
    STDMETHODIMP MouseRow(long *result) override;
    STDMETHODIMP MouseCol(long *result) override;
    STDMETHODIMP GridSetFocus(long ColNo, long RowNo) override;
    STDMETHODIMP Change() override;
    STDMETHODIMP ChangePost() override;
    STDMETHODIMP BoxShow() override;
    STDMETHODIMP BoxHide() override;
    STDMETHODIMP BoxSelect() override;
    // the whole grid
    STDMETHODIMP GridClear() override;
    STDMETHODIMP GridReset() override;
    STDMETHODIMP GridLoad(BSTR Path, BSTR *header) override;
    STDMETHODIMP GridSave(BSTR Path, BSTR Header) override;
    STDMETHODIMP GridRedraw(VARIANT_BOOL Status) override;
    STDMETHODIMP GridRefresh() override;
    STDMETHODIMP GridShow() override;
    STDMETHODIMP GridHide() override;
    STDMETHODIMP SortFlex(long ColNo) override;
    STDMETHODIMP BarHeaderSort() override;
    STDMETHODIMP BarHeaderCaptionSet(long ColNo, BSTR strCaption) override;
    STDMETHODIMP BarHeaderCaptionRead(long ColNo, BSTR *result) override;
    STDMETHODIMP BarHeaderRefresh() override;
    STDMETHODIMP BarSummaryColCalc(long ColNo) override;
    STDMETHODIMP BarSummaryColSet(long ColNo, BSTR strCaption, VARIANT Alignment, VARIANT oleForeColor) override;
    STDMETHODIMP BarSummaryColRead(long ColNo, BSTR *result) override;
    STDMETHODIMP BarSummaryColVisible(long ColNo, VARIANT_BOOL blnVISIBLE) override;
    STDMETHODIMP FontUpdate() override;
    // the editors' lists and keys
    STDMETHODIMP ComboAdd(BSTR Item, VARIANT Index) override;
    STDMETHODIMP ComboDel(long Index) override;
    STDMETHODIMP ComboClear() override;
    STDMETHODIMP imgComboAdd(BSTR Item, VARIANT Index) override;
    STDMETHODIMP imgComboDel(long Index) override;
    STDMETHODIMP imgComboClear() override;
    STDMETHODIMP cboCONTROL_KeyDown(short *KeyCode, short *Shift) override;
    STDMETHODIMP cboCONTROL_KeyUp(short *KeyCode, short *Shift) override;

    // For tests and the benchmark: the editor set (its clock, the open editor).
    GridEditors &Editors() { return editors_; }

protected:
    void Initialize() override;
    void InitProperties() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Resize() override;
    // The view is worked out as it is drawn; painting needs no layout pass (which would also
    // set the scroll bars again on every paint).
    void Paint() override {}
    void DrawSurface(HDC dc, const Scale &scale) override;
    void Click() override;
    void DblClick() override;
    void MouseDown(int16_t button, int16_t shift, float x, float y) override;
    void MouseMove(int16_t button, int16_t shift, float x, float y) override;
    void MouseUp(int16_t button, int16_t shift, float x, float y) override;
    void KeyDown(int16_t &key_code, int16_t shift) override;
    void KeyPress(int16_t &key_ascii) override;
    void KeyUp(int16_t &key_code, int16_t shift) override;
    void GotFocus() override { Invalidate(); }
    void LostFocus() override;
    LRESULT OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled) override;
    DWORD WindowStyle() const override { return WS_HSCROLL | WS_VSCROLL; }
    long AccessibleRole() override { return ROLE_SYSTEM_TABLE; }
    long AccessibleChildCount() override;
    ComPtr<IDispatch> AccessibleChildObject(long id) override;
    bool AccessibleFocus(VARIANT *out) override;
    UINT DialogCode() const override { return DLGC_WANTARROWS | DLGC_WANTCHARS; }

private:
    // The model's way back to the control: events, the editor, the pointer, the font.
    struct ModelHost final : GridModelHost {
        explicit ModelHost(grid &g) : owner(g) {}
        void RaiseChange() override;
        void RaiseChangePost() override;
        void BoxShow() override { owner.box_show(); }
        void BoxHide() override { owner.box_hide(); }
        void SetMousePointer(int16_t pointer) override;
        void FontUpdate() override { owner.apply_font(); }
        void Relayout() override { owner.relayout(); }
        grid &owner;
    };
    // The editors' way back: the current cell, the key steps, the events.
    struct EditorHost final : GridEditorHost {
        explicit EditorHost(grid &g) : owner(g) {}
        KeyContext EditorContext() override;
        std::wstring CurrentCellText() override;
        void WriteCurrentCell(const std::wstring &text) override;
        void SetCurrentCellFont(const std::wstring &font_name) override;
        void RunChange() override;
        void RaiseEvent(DISPID id, EventArgs &args) override { owner.raise(id, args); }
        void CarryOut(EditorStep step) override;
        void EditorClosed(bool had_focus) override;
        bool EditorTakesFocus() override;
        grid &owner;
    };

    // What the accessible rows and cells read.
    struct AccessHost final : GridAccessSource {
        explicit AccessHost(grid &g) : owner(g) {}
        int32_t AccessRows() override { return owner.model_.Cells().Rows(); }
        int32_t AccessCols() override { return owner.model_.Cells().Cols(); }
        std::wstring AccessText(int32_t row, int32_t col) override { return owner.model_.CellTextRead(row, col); }
        bool AccessCurrent(int32_t &row, int32_t &col) override;
        bool AccessHasFocus() override;
        bool AccessScreenRect(int32_t row, int32_t col, RECT &r) override;
        ComPtr<IDispatch> AccessTable() override;
        grid &owner;
    };

    GridView compute_view() const;
    // After every operation: the picture and the scroll bars are marked out of date (while
    // Redraw is on) and follow when the window next paints or its message arrives.
    void changed();
    // The layout changed whatever Redraw says (GridRefresh, AllowGridEdit).
    void relayout();
    // Sets the scroll bars to the model's counts, page and position where they differ.
    void sync_scroll_bars();
    // `user`: the user scrolled, so the scroll bars follow at once; a host's call leaves them to
    // the next paint.
    void scroll_to(int32_t top_row, int32_t left_col, bool user = true);
    void ensure_visible(int32_t row, int32_t col, bool user = true);
    void box_show();
    void box_hide();
    // The user makes (row, col) current: an open editor commits first, then SelChange.
    void move_to(int32_t row, int32_t col);
    // The user opens the current cell's editor (double click, F2, a typed character).
    bool user_open();
    // The column whose right edge is under x (pixels) in the header bar, -1 when none.
    int32_t header_edge(int x) const;
    void apply_font();
    HRESULT colour_method(OleColor &slot, OLE_COLOR *newcol);
    HRESULT font_format(long row, long col, const VARIANT &font, const VARIANT &size, const VARIANT &bold,
                        const VARIANT &strike, const VARIANT &fore, const VARIANT &back, bool with_size);
    // Which part of the grid a point (pixels) falls in, and the cell there (-1 when none).
    enum class Part { None, Header, Cells, Summary };
    Part hit(int x, int y, int32_t &row, int32_t &col) const;
    template <class F> HRESULT run(F &&f); // a model operation: trapped, then the view follows

    ModelHost host_;
    GridModel model_;
    WindowSync sync_;
    GridPainter painter_;
    GridColours colours_;
    ComPtr<IFontDisp> font_;
    int32_t border_style_ = 1;
    bool allow_edit_ = false;
    EditorHost editor_host_{*this};
    AccessHost access_host_{*this};
    GridEditors editors_{editor_host_};
    // A column's edge being dragged in the header bar: its column, else -1.
    int32_t sizing_col_ = -1;
    bool header_sorted_ = false; // BarHeaderSort ran (a host's SortClick handler sorted)
    int16_t mouse_pointer_ = 0;
    int32_t mouse_row_ = 0, mouse_col_ = 0;
    bool pressed_in_header_ = false;
};

} // namespace tarn
