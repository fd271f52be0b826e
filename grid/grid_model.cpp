#include "grid/grid_model.h"

#include "foundation/checked.h"
#include "foundation/numbers.h"
#include "foundation/trap.h"
#include "grid/grid_file.h"

#include <cmath>
#include <limits>

namespace tarn {

namespace {

bool equals_no_case(const std::wstring &text, const wchar_t *word)
{
    size_t i = 0;
    for (; word[i]; ++i) {
        if (i >= text.size()) return false;
        wchar_t c = text[i];
        if (c >= L'a' && c <= L'z') c = static_cast<wchar_t>(c - (L'a' - L'A'));
        if (c != word[i]) return false;
    }
    return i == text.size();
}

} // namespace

GridModel::GridModel(GridModelHost *host) : host_(host), cells_(1, 1), summary_(cells_)
{
    cells_.SetObserver(&summary_.Totals());
}

bool GridModel::valid_cell(int32_t row, int32_t col) const
{
    return row >= 0 && row < cells_.Rows() && col >= 0 && col < cells_.Cols();
}

bool GridModel::focus(int32_t row, int32_t col)
{
    if (!valid_cell(row, col)) return false;
    cells_.SetCol(col);
    cells_.SetRow(row);
    return true;
}

void GridModel::box_hide()
{
    if (host_) step([&] { host_->BoxHide(); });
}

// ---------------------------------------------------------------- rows

void GridModel::RowAdd(const std::wstring &Text, int32_t RowNo)
{
    box_hide();
    step([&] { cells_.AddItem(Text, RowNo); });
    step([&] { cells_.SetRow(RowNo); });
    Change();
}

void GridModel::RowDel(int32_t RowNo)
{
    box_hide();
    if (cells_.Rows() > 1) step([&] { cells_.RemoveItem(RowNo); });
    else if (cells_.Rows() == 1) step([&] { cells_.Clear(); });
    Change();
}

void GridModel::RowsSet(int32_t RowNo)
{
    step([&] { cells_.SetRows(RowNo); });
    Change();
}

void GridModel::RowSetFocus(int32_t RowNo)
{
    step([&] { cells_.SetRow(RowNo); });
}

// ---------------------------------------------------------------- columns

void GridModel::ColAdd(double ColWidth)
{
    box_hide();
    if (!step([&] { cells_.SetCols(add32(cells_.Cols(), 1)); })) return;
    if (ColWidth >= 0) step([&] { cells_.SetColWidth(cells_.Cols() - 1, to_int32(ColWidth)); });
}

void GridModel::ColDel()
{
    box_hide();
    if (cells_.Cols() > 1) step([&] { cells_.SetCols(cells_.Cols() - 1); });
    else if (cells_.Cols() == 1) step([&] { cells_.Clear(); });
}

void GridModel::ColsSet(int32_t ColNo)
{
    step([&] { cells_.SetCols(ColNo); });
}

void GridModel::ColSetFocus(int32_t ColNo)
{
    step([&] { cells_.SetCol(ColNo); });
}

void GridModel::ColWidth(int32_t ColNo, double ColWidthVal)
{
    box_hide();
    if (ColWidthVal >= 0) step([&] { cells_.SetColWidth(ColNo, to_int32(ColWidthVal)); });
}

// ---------------------------------------------------------------- cells

void GridModel::CellTextSet(int32_t RowNo, int32_t ColNo, const std::wstring &Text)
{
    step([&] {
        if (focus(RowNo, ColNo)) cells_.SetText(Text);
    });
}

std::wstring GridModel::CellTextRead(int32_t RowNo, int32_t ColNo) const
{
    return read_step<std::wstring>([&] { return cells_.TextMatrix(RowNo, ColNo); });
}

void GridModel::CellChkSet(int32_t Row, int32_t Col, const std::wstring &Value)
{
    const bool checked = Value == L" a" || equals_no_case(Value, L"TRUE") ||
                         read_step<bool>([&] { return ToDouble(Value) == 1.0; });
    CellTextSet(Row, Col, checked ? L" a" : L"");
}

void GridModel::CellEnabledSet(int32_t RowNo, int32_t ColNo, bool StrikeThru, uint32_t oleForeColor,
                               uint32_t oleBackColor)
{
    if (!read_step<bool>([&] { return focus(RowNo, ColNo); })) return;
    step([&] { cells_.SetCellFontStrikeThrough(StrikeThru); });
    step([&] { cells_.SetCellForeColor(oleForeColor); });
    step([&] { cells_.SetCellBackColor(oleBackColor); });
}

void GridModel::apply_font(int32_t row, int32_t col, bool with_size, const std::optional<std::wstring> &font,
                           const std::optional<std::wstring> &size, std::optional<bool> bold,
                           std::optional<bool> strike, std::optional<uint32_t> fore, std::optional<uint32_t> back)
{
    if (!read_step<bool>([&] { return focus(row, col); })) return;
    auto set_font = [&] {
        if (font) step([&] { cells_.SetCellFontName(*font); });
    };
    auto set_bold = [&] {
        if (bold) step([&] { cells_.SetCellFontBold(*bold); });
    };
    if (with_size) { // CellFontSet: name, size, bold
        set_font();
        if (size) step([&] { cells_.SetCellFontSize(static_cast<float>(ToDouble(*size))); });
        set_bold();
    } else { // CellFormatSet: bold, name
        set_bold();
        set_font();
    }
    if (strike) step([&] { cells_.SetCellFontStrikeThrough(*strike); });
    if (fore) step([&] { cells_.SetCellForeColor(*fore); });
    if (back) step([&] { cells_.SetCellBackColor(*back); });
}

void GridModel::CellFontSet(int32_t RowNo, int32_t ColNo, const std::optional<std::wstring> &strFont,
                            const std::optional<std::wstring> &Size, std::optional<bool> Bold,
                            std::optional<bool> StrikeThru, std::optional<uint32_t> oleForeColor,
                            std::optional<uint32_t> oleBackColor)
{
    apply_font(RowNo, ColNo, true, strFont, Size, Bold, StrikeThru, oleForeColor, oleBackColor);
}

void GridModel::CellFormatSet(int32_t RowNo, int32_t ColNo, const std::optional<std::wstring> &strFont,
                              const std::optional<std::wstring> &Size, std::optional<bool> Bold,
                              std::optional<bool> StrikeThru, std::optional<uint32_t> oleForeColor,
                              std::optional<uint32_t> oleBackColor)
{
    apply_font(RowNo, ColNo, false, strFont, Size, Bold, StrikeThru, oleForeColor, oleBackColor);
}

void GridModel::CellColorSet(uint32_t Color, int32_t RowNo, int32_t ColNo)
{
    step([&] {
        if (focus(RowNo, ColNo)) cells_.SetCellBackColor(Color);
    });
}

uint32_t GridModel::CellColorRead(int32_t RowNo, int32_t ColNo)
{
    return read_step<uint32_t>([&] { return focus(RowNo, ColNo) ? cells_.CellBackColor() : 0u; });
}

int32_t GridModel::CellCurrentLeft() const { return read_step<int32_t>([&] { return cells_.CellLeft(); }); }
int32_t GridModel::CellCurrentTop() const { return read_step<int32_t>([&] { return cells_.CellTop(); }); }
int32_t GridModel::CellCurrentWidth() const
{
    return read_step<int32_t>([&] { return cells_.HasCurrentCell() ? cells_.CellWidth() : 0; });
}
int32_t GridModel::CellCurrentHeight() const
{
    return read_step<int32_t>([&] { return cells_.HasCurrentCell() ? cells_.CellHeight() : 0; });
}

void GridModel::GridSetFocus(int32_t ColNo, int32_t RowNo)
{
    box_hide();
    if (!read_step<bool>([&] { return focus(RowNo, ColNo); })) return;
    if (host_) step([&] { host_->BoxShow(); });
}

// ---------------------------------------------------------------- events

void GridModel::Change()
{
    if (host_) step([&] { host_->RaiseChange(); });
    BarSummaryColCalc(cells_.Col());
}

void GridModel::ChangePost()
{
    if (host_) step([&] { host_->RaiseChangePost(); });
}

// ---------------------------------------------------------------- file

bool GridModel::GridSave(const std::filesystem::path &Path, const std::wstring &Header)
{
    visible_ = false;
    const int32_t col = cells_.Col(), row = cells_.Row();
    box_hide();
    cells_.SetRedraw(false);
    const bool saved = step([&] { SaveGridFile(Path, cells_, Header); });
    step([&] { cells_.SetCol(col); });
    step([&] { cells_.SetRow(row); });
    visible_ = true;
    cells_.SetRedraw(true);
    return saved;
}

std::wstring GridModel::GridLoad(const std::filesystem::path &Path)
{
    visible_ = false;
    std::wstring header;
    box_hide();
    cells_.SetRedraw(false);
    // Cleared and emptied of rows: with the rows gone, clearing their texts first would only
    // cost time (it is done when the rows cannot go).
    if (!step([&] { cells_.SetRows(0); })) step([&] { cells_.Clear(); });
    if (host_) step([&] { host_->SetMousePointer(11); });

    const std::string bytes = read_step<std::string>([&] { return ReadFileBytes(Path); });
    step([&] { header = LoadGridFileBytes(bytes, cells_, types_); });

    step([&] { cells_.SetRow(0); });
    step([&] { cells_.SetCol(0); });
    cells_.SetRedraw(true);
    visible_ = true;
    if (host_) step([&] { host_->FontUpdate(); });
    if (host_) step([&] { host_->SetMousePointer(0); });
    return header;
}

// ---------------------------------------------------------------- sorting

void GridModel::SortFlex(int32_t ColNo)
{
    if (cells_.Col() != lngPREVIOUSCOLNO) blnGRIDORDER = !blnGRIDORDER;
    step([&] { marker_.left = sub32(add32(cells_.CellLeft(), cells_.CellWidth()), 230); });
    if (ColNo >= 0 && ColNo < cells_.Cols()) {
        const bool descending = !blnGRIDORDER;
        step([&] { cells_.Sort(descending ? 2 : 1); });
        marker_.shown = true;
        marker_.descending = descending;
        blnGRIDORDER = descending;
    }
    lngPREVIOUSCOLNO = cells_.Col();
}

void GridModel::BarHeaderSort()
{
    cells_.SetRedraw(false);
    if (cells_.Cols() > 0) {
        // The column whose shown span holds X; none (left of them all or past them) takes the
        // last column, as walking the columns left to right always ended on it.
        const double x = std::floor(static_cast<double>(header_mouse_x_));
        int32_t col = -1;
        if (std::isfinite(x) && std::fabs(x) < 9.0e18) col = cells_.VisibleColAt(static_cast<int64_t>(x));
        if (col < 0) col = cells_.Cols() - 1;
        step([&] { cells_.SetCol(col); });
    }
    SortFlex(cells_.Col());
    cells_.SetRedraw(true);
}

// ---------------------------------------------------------------- bars

void GridModel::BarHeaderCaptionSet(int32_t ColNo, const std::wstring &strCaption)
{
    if (SummaryBar::valid(ColNo)) header_captions_[ColNo] = strCaption;
}

std::wstring GridModel::BarHeaderCaptionRead(int32_t ColNo) const
{
    auto it = header_captions_.find(ColNo);
    return it == header_captions_.end() ? std::wstring() : it->second;
}

void GridModel::BarSummaryColSet(int32_t ColNo, const std::wstring &strCaption, std::optional<int16_t> Alignment,
                                 std::optional<uint32_t> oleForeColor)
{
    summary_.Set(ColNo, strCaption, Alignment, oleForeColor);
}

void GridModel::BarSummaryColCalc(int32_t ColNo)
{
    cells_.SetRedraw(false);
    summary_.Calc(ColNo);
    cells_.SetRedraw(true);
}

// ---------------------------------------------------------------- the whole grid

void GridModel::GridClear()
{
    visible_ = false;
    step([&] { cells_.Clear(); });
    visible_ = true;
}

void GridModel::GridReset()
{
    visible_ = false;
    cells_.SetRedraw(false);
    step([&] { cells_.Clear(); });
    step([&] { cells_.SetRows(1); });
    step([&] { cells_.SetRow(0); });
    step([&] { cells_.SetCol(0); });
    cells_.SetRedraw(true);
    visible_ = true;
}

void GridModel::GridRefresh()
{
    visible_ = false;
    cells_.SetRedraw(false);
    if (host_) step([&] { host_->Relayout(); });
    cells_.SetRedraw(true);
    visible_ = true;
}

} // namespace tarn
