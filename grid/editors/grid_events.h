// The grid's events by DISPID, in their declaration order (grid.idl), for the code that
// raises them on the grid's behalf (the editors and their menus).
#pragma once
#include <cstdint>

namespace tarn::grid_events {
constexpr int32_t BtnBoxClick = 1, BtnBoxImgSelect = 2, CboBoxClick = 3, CboClick = 4, Change = 5, ChangeEdited = 6,
                  ChangePost = 7, Click = 8, DblClick = 9, SelChange = 10, KeyDown = 11, KeyPress = 12, KeyUp = 13,
                  MouseDown = 14, MouseUp = 15, SortClick = 16, DateRemove = 17, DateNow = 18, TimeRemove = 19,
                  TimeNow = 20, Time5 = 21, Time10 = 22, Time15 = 23, Time30 = 24, Time45 = 25, Time60 = 26,
                  Time120 = 27;
} // namespace tarn::grid_events
