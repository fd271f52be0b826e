#include "grid/summary_bar.h"

#include "foundation/numbers.h"

namespace tarn {

void SummaryBar::Set(int32_t col, const std::wstring &caption, std::optional<int16_t> alignment,
                     std::optional<uint32_t> fore)
{
    if (!valid(col)) return;
    totals_.Drop(col);
    SummaryCell &cell = bar_[col];
    cell.caption = caption;
    if (alignment) cell.alignment = *alignment;
    if (fore) cell.fore = *fore;
}

void SummaryBar::SetVisible(int32_t col, bool visible)
{
    if (valid(col)) bar_[col].visible = visible;
}

void SummaryBar::settle(int32_t col)
{
    if (totals_.Pending(col)) TotalSettled(col, totals_.Settle(col));
}

std::wstring SummaryBar::Read(int32_t col)
{
    if (!valid(col)) return {};
    settle(col);
    auto it = bar_.find(col);
    return it == bar_.end() ? std::wstring() : it->second.caption;
}

SummaryCell SummaryBar::Cell(int32_t col)
{
    if (!valid(col)) return {};
    settle(col);
    auto it = bar_.find(col);
    return it == bar_.end() ? SummaryCell() : it->second;
}

void SummaryBar::Calc(int32_t col)
{
    if (!valid(col)) return;
    SummaryCell &cell = bar_[col];
    cell.alignment = 1;
    cell.fore = 0;
    totals_.Request(col);
}

void SummaryBar::TotalSettled(int32_t col, double total) { bar_[col].caption = FormatFixed(total, 2); }

} // namespace tarn
