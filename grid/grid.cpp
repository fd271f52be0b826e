#include "grid/grid.h"

#include "foundation/font_object.h"
#include "runtime/optional_args.h"

#include <windowsx.h>

#include <algorithm>
#include <cmath>

namespace tarn {

const ControlClass grid::Class = {
    L"grid",
    L"Tarn Controls data grid",
    &CLSID_grid,
    &IID_Igrid,
    &DIID_IgridEvents,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST,
    &grid::Create,
};

namespace {

// The grid's events, numbered in their declaration order.
namespace ev {
constexpr DISPID Change = 5, ChangePost = 7, Click = 8, DblClick = 9, SelChange = 10, KeyDown = 11, KeyPress = 12,
                 KeyUp = 13, MouseDown = 14, MouseUp = 15, SortClick = 16;
}

constexpr int kBorderPixels = 2;

int screen_dpi()
{
    HDC dc = GetDC(nullptr);
    int dpi = dc ? GetDeviceCaps(dc, LOGPIXELSY) : 96;
    if (dc) ReleaseDC(nullptr, dc);
    return dpi > 0 ? dpi : 96;
}

} // namespace

grid::grid() : host_(*this), model_(&host_)
{
    // The editors' windows start hidden; BoxShow lays one over the current cell.
    for (WindowedConstituent *w : editors_.Windows()) add_constituent(*w);
}

void grid::Initialize()
{
    SetDesignSize(4800, 2400);
    SetBackColor(syscolor::Window);
}

// ---------------------------------------------------------------- persistence

void grid::InitProperties()
{
    step([&] { font_ = Ambient().Font(); });
    step([&] { apply_font(); });
}

void grid::ReadProperties(PropertyBag &bag)
{
    step([&] { model_.SetBarHeader(bag.read_bool(L"BarHeaderVal", true)); });
    step([&] { model_.SetBarSummary(bag.read_bool(L"BarSummaryVal", false)); });
    step([&] { border_style_ = bag.read_long(L"BorderStyle", 1); });
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { font_ = bag.read_font(L"Font", ambient.get()); });
    // Reading the properties applies the font at once.
    step([&] { apply_font(); });
}

void grid::WriteProperties(PropertyBag &bag)
{
    step([&] { bag.write_bool(L"BarHeaderVal", model_.BarHeader(), true); });
    step([&] { bag.write_bool(L"BarSummaryVal", model_.BarSummary(), false); });
    step([&] { bag.write_long(L"BorderStyle", border_style_, 1); });
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { bag.write_font(L"Font", font_.get(), ambient.get()); });
}

// ---------------------------------------------------------------- view

GridView grid::compute_view() const
{
    Scale s = scale();
    GridViewInput in;
    in.width = PixelWidth();
    in.height = PixelHeight();
    in.border = border_style_ == 1 ? kBorderPixels : 0;
    in.header = model_.BarHeader();
    in.summary = model_.BarSummary();
    in.bar_height = static_cast<int>(std::floor(CellEngine::kDefaultRowHeight / s.tppy)) + 4;
    in.tppx = s.tppx;
    in.tppy = s.tppy;
    return ComputeGridView(model_.Cells(), in);
}

// The host sized the window: the bars follow at once (only where they changed).
void grid::Resize() { sync_scroll_bars(); }

void grid::sync_scroll_bars()
{
    HWND w = hWnd();
    if (!w) return;
    const CellEngine &cells = model_.Cells();
    const GridView v = compute_view();
    sync_.SetScrollBars(w, {std::max(0, cells.Rows() - 1), v.page_rows, cells.TopRow()},
                        {std::max(0, cells.Cols() - 1), v.page_cols, cells.LeftCol()});
}

void grid::changed()
{
    if (!model_.Cells().Redraw()) return;
    relayout();
}

void grid::relayout()
{
    if (HWND w = hWnd()) sync_.Mark(w);
    else Invalidate(); // no window: the container draws us again
}

template <class F> HRESULT grid::run(F &&f)
{
    step(std::forward<F>(f));
    changed();
    return S_OK;
}

void grid::scroll_to(int32_t top_row, int32_t left_col, bool user)
{
    // As far as the scroll bars go: the last page ends at the last row (column).
    CellEngine &cells = model_.Cells();
    GridView v = compute_view();
    step([&] { cells.SetTopRow(std::clamp(top_row, 0, std::max(0, cells.Rows() - v.page_rows))); });
    step([&] { cells.SetLeftCol(std::clamp(left_col, 0, std::max(0, cells.Cols() - v.page_cols))); });
    changed();
    // The user scrolled: the bars answer at once (a host's call leaves them to the next paint).
    if (user) step([&] { sync_scroll_bars(); });
}

void grid::ensure_visible(int32_t row, int32_t col, bool user)
{
    const CellEngine &cells = model_.Cells();
    GridView v = compute_view();
    int32_t top = cells.TopRow(), left = cells.LeftCol();
    if (row < top) top = row;
    else if (row >= top + v.page_rows) top = row - v.page_rows + 1;
    if (col < left) left = col;
    else if (col >= left + v.page_cols) left = col - v.page_cols + 1;
    if (top != cells.TopRow() || left != cells.LeftCol()) scroll_to(top, left, user);
}

void grid::DrawSurface(HDC dc, const Scale &)
{
    GridView v = compute_view();
    HFONT font = nullptr;
    if (ComPtr<IFont> f = font_.as<IFont>(IID_IFont)) f->get_hFont(&font);
    if (!model_.Visible()) {
        // A hidden grid leaves its bars and its background: the cells go.
        v.last_row = -1;
    }
    painter_.Paint(dc, model_, v, colours_, font, screen_dpi());
    if (border_style_ == 1) {
        RECT all{0, 0, PixelWidth(), PixelHeight()};
        DrawEdge(dc, &all, EDGE_SUNKEN, BF_RECT);
    }
    // The current cell, while the grid has the focus.
    const CellEngine &cells = model_.Cells();
    if (hWnd() && GetFocus() == hWnd() && cells.HasCurrentCell() && cells.Row() >= v.first_row &&
        cells.Row() <= v.last_row && cells.Col() >= v.first_col && cells.Col() <= v.last_col) {
        RECT r{v.col_x(cells, cells.Col()), v.row_y(cells, cells.Row()), v.col_x(cells, cells.Col() + 1) - 1,
               v.row_y(cells, cells.Row() + 1) - 1};
        IntersectClipRect(dc, v.cells.left, v.cells.top, v.cells.right, v.cells.bottom);
        DrawFocusRect(dc, &r);
    }
}

void grid::apply_font()
{
    FontSpec look = FontSpecOf(font_.get());
    GridDefaults d = model_.Cells().Defaults();
    d.font_name = look.name;
    d.font_size = static_cast<float>(look.size);
    d.bold = look.bold;
    model_.Cells().SetDefaults(d);
    painter_.ForgetFonts();
    step([&] { editors_.SetFont(font_.get()); });
    changed();
}

// ---------------------------------------------------------------- model host

void grid::ModelHost::RaiseChange() { owner.raise(ev::Change); }
void grid::ModelHost::RaiseChangePost() { owner.raise(ev::ChangePost); }

void grid::ModelHost::SetMousePointer(int16_t pointer)
{
    owner.mouse_pointer_ = pointer;
    // Show it at once: a load runs without returning to the message loop.
    if (HWND w = owner.hWnd()) {
        POINT p{};
        GetCursorPos(&p);
        if (WindowFromPoint(p) == w) SetCursor(LoadCursorW(nullptr, pointer == 11 ? IDC_WAIT : IDC_ARROW));
    }
}

void grid::box_show()
{
    // A second BoxShow without a BoxHide does nothing (the editor set keeps the flag).
    const CellEngine &cells = model_.Cells();
    if (editors_.IsOpen() || !cells.HasCurrentCell()) return;
    std::optional<EditorKind> kind = EditorForColumn(model_.Types(), cells.Col());
    if (!kind) return;
    // The editor lies over the cell as drawn, so the cell is brought into view first.
    ensure_visible(cells.Row(), cells.Col(), false);
    const GridView v = compute_view();
    const Scale s = scale();
    const int left = v.col_x(cells, cells.Col()), top = v.row_y(cells, cells.Row());
    // The cell's own grid lines (right and bottom) stay visible around the editor.
    const int width = std::max(0, v.col_x(cells, cells.Col() + 1) - left - 1);
    const int height = std::max(0, v.row_y(cells, cells.Row() + 1) - top - 1);
    editors_.Show(*kind, CellRect{to_twips_x(left, s), to_twips_y(top, s), to_twips_x(width, s), to_twips_y(height, s)});
}

void grid::box_hide()
{
    if (!editors_.IsOpen()) return;
    editors_.Hide();
    changed();
}

// ---------------------------------------------------------------- editor host

KeyContext grid::EditorHost::EditorContext()
{
    const CellEngine &cells = owner.model_.Cells();
    return {cells.Row(), cells.Rows(), cells.Col(), cells.Cols(), owner.allow_edit_};
}

std::wstring grid::EditorHost::CurrentCellText()
{
    const CellEngine &cells = owner.model_.Cells();
    return owner.model_.CellTextRead(cells.Row(), cells.Col());
}

void grid::EditorHost::WriteCurrentCell(const std::wstring &text)
{
    const CellEngine &cells = owner.model_.Cells();
    owner.model_.CellTextSet(cells.Row(), cells.Col(), text);
    owner.changed();
}

void grid::EditorHost::SetCurrentCellFont(const std::wstring &font_name)
{
    const CellEngine &cells = owner.model_.Cells();
    owner.model_.CellFontSet(cells.Row(), cells.Col(), font_name);
    owner.changed();
}

void grid::EditorHost::RunChange()
{
    owner.model_.Change();
    owner.changed();
}

void grid::EditorHost::CarryOut(EditorStep step)
{
    GridModel &m = owner.model_;
    const int32_t row = m.Cells().Row(), col = m.Cells().Col();
    switch (step) {
    case EditorStep::MoveRowDown:
        if (row + 1 < m.Cells().Rows()) owner.move_to(row + 1, col);
        break;
    case EditorStep::MoveRowUp:
        if (row > 0) owner.move_to(row - 1, col);
        break;
    case EditorStep::DeleteRow: m.RowDel(row); break;
    case EditorStep::AddRowBelow: m.RowAdd(L"", row + 1); break;
    case EditorStep::SummaryCalc: m.BarSummaryColCalc(col); break;
    case EditorStep::NextColumn:
        // The next cell's editor opens, so a row is typed in cell after cell.
        if (col + 1 < m.Cells().Cols()) {
            owner.move_to(row, col + 1);
            m.GridSetFocus(col + 1, row);
        }
        break;
    default: break;
    }
    owner.changed();
}

bool grid::EditorHost::EditorTakesFocus()
{
    // An editor a host opens while the user works elsewhere on the form does not take the
    // focus from there (nor UI-activate the grid); the user's own ways in all start in the grid.
    HWND w = owner.hWnd(), focus = GetFocus();
    return w && focus && (focus == w || IsChild(w, focus));
}

void grid::EditorHost::EditorClosed(bool had_focus)
{
    if (had_focus)
        if (HWND w = owner.hWnd()) ::SetFocus(w);
}

void grid::move_to(int32_t row, int32_t col)
{
    box_hide();
    CellEngine &cells = model_.Cells();
    if (row == cells.Row() && col == cells.Col()) return;
    step([&] { model_.RowSetFocus(row); });
    step([&] { model_.ColSetFocus(col); });
    ensure_visible(row, col);
    changed();
    raise(ev::SelChange);
}

bool grid::user_open()
{
    const CellEngine &cells = model_.Cells();
    if (!allow_edit_ || !cells.HasCurrentCell()) return false;
    step([&] { model_.GridSetFocus(cells.Col(), cells.Row()); });
    return editors_.IsOpen();
}

void grid::LostFocus()
{
    // The focus left the control (not for one of its editors): an open editor commits.
    box_hide();
    Invalidate();
}

// ---------------------------------------------------------------- mouse and keyboard

grid::Part grid::hit(int x, int y, int32_t &row, int32_t &col) const
{
    row = col = -1;
    GridView v = compute_view();
    const CellEngine &cells = model_.Cells();
    auto column_at = [&] {
        for (int32_t c = v.first_col; c <= v.last_col; ++c)
            if (x >= v.col_x(cells, c) && x < v.col_x(cells, c + 1)) return c;
        return -1;
    };
    if (v.header.contains(x, y)) {
        col = column_at();
        return Part::Header;
    }
    if (v.summary.contains(x, y)) {
        col = column_at();
        return Part::Summary;
    }
    if (!v.cells.contains(x, y)) return Part::None;
    col = column_at();
    for (int32_t r = v.first_row; r <= v.last_row; ++r)
        if (y >= v.row_y(cells, r) && y < v.row_y(cells, r + 1)) {
            row = r;
            break;
        }
    return Part::Cells;
}

void grid::MouseDown(int16_t button, int16_t shift, float x, float y)
{
    Scale s = scale();
    int px = to_px_x(x, s), py = to_px_y(y, s);
    int32_t row = -1, col = -1;
    Part part = hit(px, py, row, col);
    pressed_in_header_ = part == Part::Header;
    sizing_col_ = -1;
    if (part == Part::Header && button == mouse::Left) {
        sizing_col_ = header_edge(px);
        if (sizing_col_ >= 0) {
            box_hide();
            SetCapture(hWnd());
        }
    }
    if (part == Part::Header) {
        // The header bar remembers where it was pressed, on the scale of CellLeft.
        GridView v = compute_view();
        model_.SetHeaderMouseX(static_cast<float>((px - v.cells.left) * s.tppx));
    }
    if (row >= 0) mouse_row_ = row;
    if (col >= 0) mouse_col_ = col;
    raise(ev::MouseDown, EventArgs().ref(button).ref(shift).ref(x).ref(y));
    // A click on another cell commits an open editor first.
    if (part == Part::Cells && row >= 0 && col >= 0 && button == mouse::Left) move_to(row, col);
}

int32_t grid::header_edge(int x) const
{
    // A few pixels either side of a column's right edge grab it.
    const GridView v = compute_view();
    const CellEngine &cells = model_.Cells();
    const int slop = std::max(2, static_cast<int>(std::lround(3 * 15 / v.tppx)));
    for (int32_t c = v.first_col; c <= v.last_col; ++c)
        if (std::abs(x - v.col_x(cells, c + 1)) <= slop) return c;
    return -1;
}

void grid::MouseMove(int16_t button, int16_t, float x, float y)
{
    Scale s = scale();
    const int px = to_px_x(x, s);
    if (sizing_col_ >= 0 && (button & mouse::Left)) {
        const GridView v = compute_view();
        const int width = std::max(0, px - v.col_x(model_.Cells(), sizing_col_));
        step([&] { model_.ColWidth(sizing_col_, to_twips_x(width, s)); });
        changed();
        return;
    }
    int32_t row = -1, col = -1;
    hit(px, to_px_y(y, s), row, col);
    if (row >= 0) mouse_row_ = row;
    if (col >= 0) mouse_col_ = col;
}

void grid::MouseUp(int16_t button, int16_t shift, float x, float y)
{
    if (sizing_col_ >= 0) {
        if (GetCapture() == hWnd()) ReleaseCapture();
        step([&] { sync_scroll_bars(); });
    }
    raise(ev::MouseUp, EventArgs().ref(button).ref(shift).ref(x).ref(y));
}

void grid::Click()
{
    raise(ev::Click);
    // A click on the header bar (not on a column's edge) sorts by the column under it.
    // A host that sorts in its SortClick handler (BarHeaderSort) sorts once: the grid sorts only
    // when the handler did not.
    if (pressed_in_header_ && sizing_col_ < 0) {
        box_hide();
        header_sorted_ = false;
        raise(ev::SortClick);
        if (!header_sorted_) {
            step([&] { model_.BarHeaderSort(); });
            changed();
        }
    }
    sizing_col_ = -1;
}

void grid::DblClick()
{
    raise(ev::DblClick);
    if (!pressed_in_header_) user_open();
}

void grid::KeyDown(int16_t &key_code, int16_t shift)
{
    raise(ev::KeyDown, EventArgs().ref(key_code).ref(shift));
    CellEngine &cells = model_.Cells();
    if (!cells.HasCurrentCell()) return;
    GridView v = compute_view();
    int32_t row = cells.Row(), col = cells.Col();
    switch (key_code) {
    case VK_UP: --row; break;
    case VK_DOWN: ++row; break;
    case VK_LEFT: --col; break;
    case VK_RIGHT: ++col; break;
    case VK_PRIOR: row -= v.page_rows; break;
    case VK_NEXT: row += v.page_rows; break;
    case VK_HOME: col = 0; break;
    case VK_END: col = cells.Cols() - 1; break;
    case VK_F2: user_open(); return;
    default: return; // a key the host cleared (0) or one the grid leaves alone
    }
    // Ctrl+Home and Ctrl+End go to the first and the last cell.
    if ((shift & 2) && key_code == VK_HOME) row = 0;
    if ((shift & 2) && key_code == VK_END) row = cells.Rows() - 1;
    row = std::clamp(row, 0, cells.Rows() - 1);
    col = std::clamp(col, 0, cells.Cols() - 1);
    move_to(row, col);
}

void grid::KeyPress(int16_t &key_ascii)
{
    raise(ev::KeyPress, EventArgs().ref(key_ascii));
    // Typing a character opens the current cell's editor; the text box starts with it, unless
    // the character is one the text box refuses.
    if (key_ascii < 32 || key_ascii == 127 || editors_.IsOpen() || !user_open()) return;
    CellEditor *e = editors_.OpenEditor();
    if (e && e->Kind() == EditorKind::Text && !FilterEditorChar(key_ascii).refused)
        step([&] { e->Load(std::wstring(1, static_cast<wchar_t>(key_ascii))); });
}

void grid::KeyUp(int16_t &key_code, int16_t shift) { raise(ev::KeyUp, EventArgs().ref(key_code).ref(shift)); }

LRESULT grid::OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled)
{
    handled = false;
    if (sync_.Arrived(msg)) {
        // WM_PAINT (then painted as usual) or the message the first change of a batch posted.
        step([&] { sync_scroll_bars(); });
        if (msg == WindowSync::kSyncMessage) handled = true;
        return 0;
    }
    const CellEngine &cells = model_.Cells();
    switch (msg) {
    case WM_VSCROLL:
    case WM_HSCROLL: {
        box_hide(); // scrolling commits an open editor
        bool vertical = msg == WM_VSCROLL;
        SCROLLINFO si{};
        si.cbSize = sizeof si;
        si.fMask = SIF_ALL;
        GetScrollInfo(hWnd(), vertical ? SB_VERT : SB_HORZ, &si);
        int pos = vertical ? cells.TopRow() : cells.LeftCol();
        int page = static_cast<int>(si.nPage ? si.nPage : 1);
        switch (LOWORD(wp)) {
        case SB_LINEUP: --pos; break;
        case SB_LINEDOWN: ++pos; break;
        case SB_PAGEUP: pos -= page; break;
        case SB_PAGEDOWN: pos += page; break;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION: pos = si.nTrackPos; break;
        case SB_TOP: pos = 0; break;
        case SB_BOTTOM: pos = si.nMax; break;
        default: break;
        }
        if (vertical) scroll_to(pos, cells.LeftCol());
        else scroll_to(cells.TopRow(), pos);
        handled = true;
        return 0;
    }
    case WM_MOUSEWHEEL: {
        box_hide();
        int notches = GET_WHEEL_DELTA_WPARAM(wp) / WHEEL_DELTA;
        scroll_to(cells.TopRow() - notches * 3, cells.LeftCol());
        handled = true;
        return 0;
    }
    case WM_SETCURSOR:
        if (mouse_pointer_ == 11 && LOWORD(lp) == HTCLIENT) {
            SetCursor(LoadCursorW(nullptr, IDC_WAIT));
            handled = true;
            return TRUE;
        }
        return 0;
    default:
        return 0;
    }
}

// ---------------------------------------------------------------- accessibility

long grid::AccessibleChildCount() { return model_.Cells().Rows(); }

ComPtr<IDispatch> grid::AccessibleChildObject(long id)
{
    if (id < 1 || id > model_.Cells().Rows()) return {};
    return MakeGridAccessible(&access_host_, ComPtr<IUnknown>(identity()), id - 1, -1);
}

bool grid::AccessibleFocus(VARIANT *out)
{
    // The open editor holds the focus; else the current cell, while the grid has it.
    ComPtr<IDispatch> focused;
    if (CellEditor *e = editors_.OpenEditor()) {
        if (HWND w = e->Window().hWnd())
            AccessibleObjectFromWindow(w, static_cast<DWORD>(OBJID_CLIENT), IID_IDispatch,
                                       focused.put_void());
    } else if (access_host_.AccessHasFocus()) {
        const CellEngine &cells = model_.Cells();
        if (cells.HasCurrentCell())
            focused = MakeGridAccessible(&access_host_, ComPtr<IUnknown>(identity()), cells.Row(), cells.Col());
    }
    if (!focused) return false;
    V_VT(out) = VT_DISPATCH;
    V_DISPATCH(out) = focused.detach();
    return true;
}

bool grid::AccessHost::AccessCurrent(int32_t &row, int32_t &col)
{
    const CellEngine &cells = owner.model_.Cells();
    if (!cells.HasCurrentCell()) return false;
    row = cells.Row();
    col = cells.Col();
    return true;
}

bool grid::AccessHost::AccessHasFocus()
{
    HWND w = owner.hWnd();
    return w && GetFocus() == w;
}

bool grid::AccessHost::AccessScreenRect(int32_t row, int32_t col, RECT &r)
{
    HWND w = owner.hWnd();
    if (!w || !owner.model_.Visible()) return false;
    const GridView v = owner.compute_view();
    const CellEngine &cells = owner.model_.Cells();
    if (row < v.first_row || row > v.last_row) return false;
    if (col >= 0 && (col < v.first_col || col > v.last_col)) return false;
    r.top = std::max(v.row_y(cells, row), v.cells.top);
    r.bottom = std::min(v.row_y(cells, row + 1), v.cells.bottom);
    r.left = col < 0 ? v.cells.left : std::max(v.col_x(cells, col), v.cells.left);
    r.right = col < 0 ? v.cells.right : std::min(v.col_x(cells, col + 1), v.cells.right);
    MapWindowPoints(w, nullptr, reinterpret_cast<POINT *>(&r), 2);
    return true;
}

ComPtr<IDispatch> grid::AccessHost::AccessTable()
{
    ComPtr<IDispatch> table;
    if (HWND w = owner.hWnd())
        AccessibleObjectFromWindow(w, static_cast<DWORD>(OBJID_CLIENT), IID_IDispatch, table.put_void());
    return table;
}

// ---------------------------------------------------------------- properties

STDMETHODIMP grid::put_AllowGridEdit(VARIANT_BOOL v)
{
    // Never saved or restored: a host decides it at run time.
    return put_value(L"AllowGridEdit", [&] {
        allow_edit_ = v != VARIANT_FALSE;
        relayout();
    });
}

STDMETHODIMP grid::get_BarHeader(VARIANT_BOOL *v)
{
    return get_value(v, [&] { return model_.BarHeader() ? VARIANT_TRUE : VARIANT_FALSE; });
}
STDMETHODIMP grid::put_BarHeader(VARIANT_BOOL v)
{
    return put_value(L"BarHeaderVal", [&] {
        model_.SetBarHeader(v != VARIANT_FALSE);
        changed();
    });
}
STDMETHODIMP grid::get_BarSummary(VARIANT_BOOL *v)
{
    return get_value(v, [&] { return model_.BarSummary() ? VARIANT_TRUE : VARIANT_FALSE; });
}
STDMETHODIMP grid::put_BarSummary(VARIANT_BOOL v)
{
    return put_value(L"BarSummaryVal", [&] {
        model_.SetBarSummary(v != VARIANT_FALSE);
        changed();
    });
}
STDMETHODIMP grid::get_BorderStyle(BorderStyles *v)
{
    return get_value(v, [&] { return static_cast<BorderStyles>(border_style_); });
}
STDMETHODIMP grid::put_BorderStyle(BorderStyles v)
{
    return put_value(L"BorderStyle", [&] {
        border_style_ = v;
        changed();
    });
}
STDMETHODIMP grid::get_Font(IFontDisp **v) { return get_object(v, [&] { return font_; }); }
STDMETHODIMP grid::put_Font(IFontDisp *v) { return putref_Font(v); }
STDMETHODIMP grid::putref_Font(IFontDisp *v)
{
    return put_value(L"Font", [&] {
        ComPtr<IFontDisp> copy = ComPtr<IFontDisp>::attach(CloneFontObject(v));
        if (!copy) throw std::invalid_argument("not a font");
        font_ = copy;
        apply_font();
    });
}
STDMETHODIMP grid::get_hwnd(OLE_HANDLE *v) { return get_value(v, [&] { return to_ole_handle(hWnd()); }); }
STDMETHODIMP grid::get_blnGRIDORDER(VARIANT_BOOL *v)
{
    return get_value(v, [&] { return model_.blnGRIDORDER ? VARIANT_TRUE : VARIANT_FALSE; });
}
STDMETHODIMP grid::put_blnGRIDORDER(VARIANT_BOOL v)
{
    step([&] { model_.blnGRIDORDER = v != VARIANT_FALSE; });
    return S_OK;
}
STDMETHODIMP grid::get_lngPREVIOUSCOLNO(long *v) { return get_value(v, [&] { return static_cast<long>(model_.lngPREVIOUSCOLNO); }); }
STDMETHODIMP grid::put_lngPREVIOUSCOLNO(long v)
{
    step([&] { model_.lngPREVIOUSCOLNO = v; });
    return S_OK;
}

HRESULT grid::colour_method(OleColor &slot, OLE_COLOR *newcol)
{
    if (!newcol) return S_OK; // nothing given: nothing to set
    step([&] { slot = *newcol; });
    changed();
    return S_OK;
}
STDMETHODIMP grid::barColTEXT(OLE_COLOR *c) { return colour_method(colours_.text, c); }
STDMETHODIMP grid::barCol(OLE_COLOR *c) { return colour_method(colours_.bar, c); }
STDMETHODIMP grid::GRIDCOLR(OLE_COLOR *c) { return colour_method(colours_.lines, c); }
STDMETHODIMP grid::barColHL(OLE_COLOR *c) { return colour_method(colours_.highlight, c); }
STDMETHODIMP grid::barColSH(OLE_COLOR *c) { return colour_method(colours_.shadow, c); }
STDMETHODIMP grid::barColHLLIGHT(OLE_COLOR *c) { return colour_method(colours_.light, c); }
STDMETHODIMP grid::barColSHDARK(OLE_COLOR *c) { return colour_method(colours_.dark, c); }

// ---------------------------------------------------------------- rows and columns

STDMETHODIMP grid::RowAdd(BSTR Text, long RowNo) { return run([&] { model_.RowAdd(from_bstr(Text), RowNo); }); }
STDMETHODIMP grid::RowDel(long RowNo) { return run([&] { model_.RowDel(RowNo); }); }
STDMETHODIMP grid::RowsSet(long RowNo) { return run([&] { model_.RowsSet(RowNo); }); }
STDMETHODIMP grid::RowsCurrent(long *r) { return get_value(r, [&] { return static_cast<long>(model_.RowsCurrent()); }); }
STDMETHODIMP grid::RowCurrent(long *r) { return get_value(r, [&] { return static_cast<long>(model_.RowCurrent()); }); }
STDMETHODIMP grid::RowSetFocus(long RowNo) { return run([&] { model_.RowSetFocus(RowNo); }); }
STDMETHODIMP grid::ColAdd(double ColWidth) { return run([&] { model_.ColAdd(ColWidth); }); }
STDMETHODIMP grid::ColDel() { return run([&] { model_.ColDel(); }); }
STDMETHODIMP grid::ColsSet(long ColNo) { return run([&] { model_.ColsSet(ColNo); }); }
STDMETHODIMP grid::ColsCurrent(long *r) { return get_value(r, [&] { return static_cast<long>(model_.ColsCurrent()); }); }
STDMETHODIMP grid::ColCurrent(long *r) { return get_value(r, [&] { return static_cast<long>(model_.ColCurrent()); }); }
STDMETHODIMP grid::ColSetFocus(long ColNo) { return run([&] { model_.ColSetFocus(ColNo); }); }
STDMETHODIMP grid::ColWidth(long ColNo, double w) { return run([&] { model_.ColWidth(ColNo, w); }); }
STDMETHODIMP grid::ColTypeSet(long ColNo, long t) { return run([&] { model_.ColTypeSet(ColNo, t); }); }
STDMETHODIMP grid::ColTypeRead(long ColNo, BSTR *r) { return get_string(r, [&] { return model_.ColTypeRead(ColNo); }); }

// ---------------------------------------------------------------- cells

STDMETHODIMP grid::CellTextSet(long RowNo, long ColNo, BSTR Text)
{
    return run([&] { model_.CellTextSet(RowNo, ColNo, from_bstr(Text)); });
}
STDMETHODIMP grid::CellTextRead(long RowNo, long ColNo, BSTR *r)
{
    return get_string(r, [&] { return model_.CellTextRead(RowNo, ColNo); });
}
STDMETHODIMP grid::CellChkSet(long Row, long Col, BSTR Value)
{
    return run([&] { model_.CellChkSet(Row, Col, from_bstr(Value)); });
}
STDMETHODIMP grid::CellEnabledSet(long RowNo, long ColNo, VARIANT_BOOL StrikeThru, OLE_COLOR fore, OLE_COLOR back)
{
    return run([&] { model_.CellEnabledSet(RowNo, ColNo, StrikeThru != VARIANT_FALSE, fore, back); });
}

HRESULT grid::font_format(long row, long col, const VARIANT &font, const VARIANT &size, const VARIANT &bold,
                          const VARIANT &strike, const VARIANT &fore, const VARIANT &back, bool with_size)
{
    return run([&] {
        auto f = OptionalString(font);
        auto s = OptionalString(size);
        auto b = OptionalBool(bold);
        auto k = OptionalBool(strike);
        auto fc = OptionalColor(fore);
        auto bc = OptionalColor(back);
        if (with_size) model_.CellFontSet(row, col, f, s, b, k, fc, bc);
        else model_.CellFormatSet(row, col, f, s, b, k, fc, bc);
    });
}
STDMETHODIMP grid::CellFontSet(long RowNo, long ColNo, VARIANT strFont, VARIANT Size, VARIANT Bold, VARIANT StrikeThru,
                               VARIANT oleForeColor, VARIANT oleBackColor)
{
    return font_format(RowNo, ColNo, strFont, Size, Bold, StrikeThru, oleForeColor, oleBackColor, true);
}
STDMETHODIMP grid::CellFormatSet(long RowNo, long ColNo, VARIANT strFont, VARIANT Size, VARIANT Bold,
                                 VARIANT StrikeThru, VARIANT oleForeColor, VARIANT oleBackColor)
{
    return font_format(RowNo, ColNo, strFont, Size, Bold, StrikeThru, oleForeColor, oleBackColor, false);
}
STDMETHODIMP grid::CellColorSet(OLE_COLOR Color, long RowNo, long ColNo)
{
    return run([&] { model_.CellColorSet(Color, RowNo, ColNo); });
}
STDMETHODIMP grid::CellColorRead(long RowNo, long ColNo, OLE_COLOR *r)
{
    return get_value(r, [&] { return static_cast<OLE_COLOR>(model_.CellColorRead(RowNo, ColNo)); });
}
STDMETHODIMP grid::CellCurrentLeft(long *r) { return get_value(r, [&] { return static_cast<long>(model_.CellCurrentLeft()); }); }
STDMETHODIMP grid::CellCurrentTop(long *r) { return get_value(r, [&] { return static_cast<long>(model_.CellCurrentTop()); }); }
STDMETHODIMP grid::CellCurrentWidth(long *r) { return get_value(r, [&] { return static_cast<long>(model_.CellCurrentWidth()); }); }
STDMETHODIMP grid::CellCurrentHeight(long *r) { return get_value(r, [&] { return static_cast<long>(model_.CellCurrentHeight()); }); }
STDMETHODIMP grid::CellLeft(long *r)
{
    // Where an editor goes: the current cell's left edge within the control, past the border.
    return get_value(r, [&] {
        GridView v = compute_view();
        return static_cast<long>(std::lround(v.cells.left * scale().tppx)) + static_cast<long>(model_.CellCurrentLeft());
    });
}
STDMETHODIMP grid::CelWidth(long *r) { return get_value(r, [&] { return static_cast<long>(model_.CellCurrentWidth()); }); }
STDMETHODIMP grid::MouseRow(long *r) { return get_value(r, [&] { return static_cast<long>(mouse_row_); }); }
STDMETHODIMP grid::MouseCol(long *r) { return get_value(r, [&] { return static_cast<long>(mouse_col_); }); }
STDMETHODIMP grid::GridSetFocus(long ColNo, long RowNo) { return run([&] { model_.GridSetFocus(ColNo, RowNo); }); }
STDMETHODIMP grid::Change() { return run([&] { model_.Change(); }); }
STDMETHODIMP grid::ChangePost() { return run([&] { model_.ChangePost(); }); }
STDMETHODIMP grid::BoxShow()
{
    step([&] { box_show(); });
    return S_OK;
}
STDMETHODIMP grid::BoxHide()
{
    step([&] { box_hide(); });
    return S_OK;
}
STDMETHODIMP grid::BoxSelect()
{
    step([&] { editors_.Select(); });
    return S_OK;
}

// ---------------------------------------------------------------- the whole grid

STDMETHODIMP grid::GridClear() { return run([&] { model_.GridClear(); }); }
STDMETHODIMP grid::GridReset() { return run([&] { model_.GridReset(); }); }
STDMETHODIMP grid::GridLoad(BSTR Path, BSTR *header)
{
    std::wstring result;
    run([&] { result = model_.GridLoad(std::filesystem::path(from_bstr(Path))); });
    if (header) *header = to_bstr(result);
    return S_OK;
}
STDMETHODIMP grid::GridSave(BSTR Path, BSTR Header)
{
    return run([&] { model_.GridSave(std::filesystem::path(from_bstr(Path)), from_bstr(Header)); });
}
STDMETHODIMP grid::GridRedraw(VARIANT_BOOL Status) { return run([&] { model_.GridRedraw(Status != VARIANT_FALSE); }); }
STDMETHODIMP grid::GridRefresh() { return run([&] { model_.GridRefresh(); }); }
STDMETHODIMP grid::GridShow() { return run([&] { model_.GridShow(); }); }
STDMETHODIMP grid::GridHide() { return run([&] { model_.GridHide(); }); }
STDMETHODIMP grid::SortFlex(long ColNo) { return run([&] { model_.SortFlex(ColNo); }); }
STDMETHODIMP grid::BarHeaderSort()
{
    header_sorted_ = true;
    return run([&] { model_.BarHeaderSort(); });
}
STDMETHODIMP grid::BarHeaderCaptionSet(long ColNo, BSTR c) { return run([&] { model_.BarHeaderCaptionSet(ColNo, from_bstr(c)); }); }
STDMETHODIMP grid::BarHeaderCaptionRead(long ColNo, BSTR *r) { return get_string(r, [&] { return model_.BarHeaderCaptionRead(ColNo); }); }
STDMETHODIMP grid::BarHeaderRefresh() { return run([] {}); } // the header follows the column widths at every paint
STDMETHODIMP grid::BarSummaryColCalc(long ColNo) { return run([&] { model_.BarSummaryColCalc(ColNo); }); }
STDMETHODIMP grid::BarSummaryColSet(long ColNo, BSTR c, VARIANT Alignment, VARIANT oleForeColor)
{
    return run([&] { model_.BarSummaryColSet(ColNo, from_bstr(c), OptionalInt16(Alignment), OptionalColor(oleForeColor)); });
}
STDMETHODIMP grid::BarSummaryColRead(long ColNo, BSTR *r) { return get_string(r, [&] { return model_.BarSummaryColRead(ColNo); }); }
STDMETHODIMP grid::BarSummaryColVisible(long ColNo, VARIANT_BOOL v)
{
    return run([&] { model_.BarSummaryColVisible(ColNo, v != VARIANT_FALSE); });
}
STDMETHODIMP grid::FontUpdate()
{
    step([&] { apply_font(); });
    return S_OK;
}

// ---------------------------------------------------------------- the editors' lists and keys

namespace {
// An optional Index of ComboAdd and imgComboAdd: the end of the list when missing.
int32_t optional_index(const VARIANT &index)
{
    std::optional<int32_t> i = OptionalInt32(index);
    return i ? *i : -1;
}
} // namespace

STDMETHODIMP grid::ComboAdd(BSTR Item, VARIANT Index)
{
    step([&] { editors_.List().AddItem(from_bstr(Item), optional_index(Index)); });
    return S_OK;
}
STDMETHODIMP grid::ComboDel(long Index)
{
    step([&] { editors_.List().RemoveItem(Index); });
    return S_OK;
}
STDMETHODIMP grid::ComboClear()
{
    step([&] { editors_.List().Clear(); });
    return S_OK;
}
STDMETHODIMP grid::imgComboAdd(BSTR Item, VARIANT Index)
{
    step([&] { editors_.Images().AddItem(from_bstr(Item), optional_index(Index)); });
    return S_OK;
}
STDMETHODIMP grid::imgComboDel(long Index)
{
    step([&] { editors_.Images().RemoveItem(Index); });
    return S_OK;
}
STDMETHODIMP grid::imgComboClear()
{
    step([&] { editors_.Images().Clear(); });
    return S_OK;
}
STDMETHODIMP grid::cboCONTROL_KeyDown(short *KeyCode, short *Shift)
{
    if (!KeyCode || !Shift) return S_OK;
    step([&] { editors_.ListKeyDown(*KeyCode, *Shift); });
    changed();
    return S_OK;
}
STDMETHODIMP grid::cboCONTROL_KeyUp(short *KeyCode, short *Shift)
{
    if (!KeyCode || !Shift) return S_OK;
    step([&] { editors_.ListKeyUp(*KeyCode, *Shift); });
    return S_OK;
}

} // namespace tarn
