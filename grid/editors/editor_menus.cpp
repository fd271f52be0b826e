#include "grid/editors/editor_menus.h"

#include <cwchar>

#include "grid/editors/grid_events.h"

namespace tarn {

namespace {

namespace ge = grid_events;

constexpr EditorMenuItem kDateItems[] = {
    {L"mnuDATENOW", L"&Today", ge::DateNow, MenuCellAction::None},
    {L"mnuDATEREMOVE", L"&Remove date", ge::DateRemove, MenuCellAction::None},
};

constexpr EditorMenuItem kTimeItems[] = {
    {L"mnuTIME", L"&Now", ge::TimeNow, MenuCellAction::WriteTimeNow},
    {L"mnuTIMEREMOVE", L"&Remove time", ge::TimeRemove, MenuCellAction::WriteEmpty},
    {L"mnuTIMESEP01", L"-", 0, MenuCellAction::None},
    {L"mnuTIME5", L"5 minutes", ge::Time5, MenuCellAction::None},
    {L"mnuTIME10", L"10 minutes", ge::Time10, MenuCellAction::None},
    {L"mnuTIME15", L"15 minutes", ge::Time15, MenuCellAction::None},
    {L"mnuTIME30", L"30 minutes", ge::Time30, MenuCellAction::None},
    {L"mnuTIME45", L"45 minutes", ge::Time45, MenuCellAction::None},
    {L"mnuTIME60", L"1 hour", ge::Time60, MenuCellAction::None},
    {L"mnuTIME120", L"2 hours", ge::Time120, MenuCellAction::None},
};

constexpr EditorMenu kDateMenu{L"mnuDATETOP", kDateItems, sizeof kDateItems / sizeof kDateItems[0]};
constexpr EditorMenu kTimeMenu{L"mnuTIMETOP", kTimeItems, sizeof kTimeItems / sizeof kTimeItems[0]};

} // namespace

const EditorMenuItem *EditorMenu::find(const wchar_t *item_name) const
{
    if (!item_name) return nullptr;
    for (size_t i = 0; i < count; ++i)
        if (std::wcscmp(items[i].name, item_name) == 0) return &items[i];
    return nullptr;
}

const EditorMenu &DateMenu() { return kDateMenu; }
const EditorMenu &TimeMenu() { return kTimeMenu; }

} // namespace tarn
