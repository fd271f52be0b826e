// The editors' decisions: which editor a column opens, the character filter, the key tables,
// the commit rules and the menus.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "grid/column_types.h"
#include "grid/editors/cell_values.h"
#include "grid/editors/editor_keys.h"
#include "grid/editors/editor_kinds.h"
#include "grid/editors/editor_menus.h"
#include "grid/editors/grid_events.h"

using namespace tarn;

namespace {

std::vector<EditorStep> steps_of(const KeySteps &s) { return {s.step, s.step + s.count}; }

} // namespace

TEST(EditorDispatch, EachTypeCodeOpensItsEditorZeroTheTextBoxAndAnUnknownCodeNone)
{
    ColumnTypes types;
    const struct {
        int32_t code;
        std::optional<EditorKind> kind;
    } cases[] = {{0, EditorKind::Text},     {1, EditorKind::Date},   {2, EditorKind::ImageList},
                 {3, EditorKind::Check},    {4, EditorKind::List},   {5, EditorKind::Percent},
                 {6, EditorKind::Time},     {7, std::nullopt},       {-1, std::nullopt},
                 {INT32_MAX, std::nullopt}};
    for (const auto &c : cases) {
        types.Set(10000, c.code);
        EXPECT_EQ(c.kind, EditorForColumn(types, 10000)) << c.code;
    }
    // Past the table (or before it) nothing is looked up: code 0, the text box.
    types.Set(3, 1);
    EXPECT_EQ(EditorKind::Date, EditorForColumn(types, 3));
    EXPECT_EQ(EditorKind::Text, EditorForColumn(types, 10001));
    EXPECT_EQ(EditorKind::Text, EditorForColumn(types, -1));
    EXPECT_STREQ(L"udnLIST", EditorName(EditorKind::Percent));
    EXPECT_STREQ(L"framGrdchkBOX", EditorName(EditorKind::Check));
    EXPECT_STREQ(L"timCONTROL", EditorName(EditorKind::Time));
}

TEST(EditorCharFilter, RefusesTheStructureCharactersAndDiscardsTabEnterEscape)
{
    const struct {
        int16_t in, out;
        bool refused;
    } cases[] = {{',', 0, true}, {'"', 0, true}, {9, 0, false},  {13, 0, false}, {27, 0, false},
                 {'a', 'a', false}, {'\'', '\'', false}, {';', ';', false}, {8, 8, false}, {0x263A, 0x263A, false},
                 {0, 0, false}};
    for (const auto &c : cases) {
        CharFilter f = FilterEditorChar(c.in);
        EXPECT_EQ(c.out, f.key_ascii) << c.in;
        EXPECT_EQ(c.refused, f.refused) << c.in;
    }
    // The text, number, date and time editors filter; the check box and the lists do not.
    EXPECT_TRUE(EditorFiltersChars(EditorKind::Text));
    EXPECT_TRUE(EditorFiltersChars(EditorKind::Percent));
    EXPECT_TRUE(EditorFiltersChars(EditorKind::Date));
    EXPECT_TRUE(EditorFiltersChars(EditorKind::Time));
    EXPECT_FALSE(EditorFiltersChars(EditorKind::Check));
    EXPECT_FALSE(EditorFiltersChars(EditorKind::List));
    EXPECT_FALSE(EditorFiltersChars(EditorKind::ImageList));
}

TEST(EditorKeyTable, TheTextEditorsTable)
{
    using S = EditorStep;
    KeyContext mid{5, 10, 1, 4, true};
    const struct {
        int16_t key, shift;
        KeyContext ctx;
        std::vector<S> steps;
    } cases[] = {
        {188, 0, mid, {}},
        {39, 0, mid, {}},
        {40, 0, mid, {S::Commit, S::MoveRowDown}},
        {40, 0, {9, 10, 1, 4, true}, {}}, // the last row: nothing
        {38, 0, mid, {S::Commit, S::MoveRowUp}},
        {38, 0, {0, 10, 1, 4, true}, {}}, // row 0: nothing
        {46, 2, mid, {S::DeleteRow}},
        {46, 0, mid, {}},                    // Delete alone edits the text
        {46, 3, mid, {}},                    // Ctrl+Shift+Delete is not Ctrl+Delete
        {46, 2, {5, 10, 1, 4, false}, {}},   // rows may not be edited
        {45, 0, mid, {S::AddRowBelow}},
        {45, 0, {5, 10, 1, 4, false}, {}},
        {13, 0, mid, {S::Commit}},
        {9, 0, mid, {S::Commit, S::SummaryCalc, S::NextColumn}},
        {9, 0, {5, 10, 3, 4, true}, {S::Commit, S::SummaryCalc}}, // the last column stays
        {27, 0, mid, {S::ResetSelection, S::Commit}},
        {65, 0, mid, {}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(c.steps, steps_of(EditorKeyDown(EditorKind::Text, c.key, c.shift, c.ctx)))
            << "key " << c.key << " shift " << c.shift << " row " << c.ctx.row;
}

TEST(EditorKeyTable, OtherEditorsKeepTheArrowsTheyStepWithAndShareTheRest)
{
    using S = EditorStep;
    KeyContext mid{5, 10, 1, 4, true};
    for (EditorKind k : {EditorKind::Date, EditorKind::Time, EditorKind::List, EditorKind::ImageList, EditorKind::Percent}) {
        EXPECT_EQ(std::vector<S>{}, steps_of(EditorKeyDown(k, 40, 0, mid))) << EditorName(k);
        EXPECT_EQ(std::vector<S>{}, steps_of(EditorKeyDown(k, 38, 0, mid))) << EditorName(k);
    }
    for (int k = 0; k < kEditorKinds; ++k) {
        EditorKind kind = static_cast<EditorKind>(k);
        EXPECT_EQ(std::vector<S>{S::Commit}, steps_of(EditorKeyDown(kind, 13, 0, mid))) << EditorName(kind);
        EXPECT_EQ((std::vector<S>{S::ResetSelection, S::Commit}), steps_of(EditorKeyDown(kind, 27, 0, mid)));
        EXPECT_EQ((std::vector<S>{S::Commit, S::SummaryCalc, S::NextColumn}), steps_of(EditorKeyDown(kind, 9, 0, mid)));
        EXPECT_EQ(std::vector<S>{S::DeleteRow}, steps_of(EditorKeyDown(kind, 46, 2, mid)));
        EXPECT_EQ(std::vector<S>{S::AddRowBelow}, steps_of(EditorKeyDown(kind, 45, 0, mid)));
    }
    EXPECT_EQ((std::vector<S>{S::Commit, S::MoveRowDown}), steps_of(EditorKeyDown(EditorKind::Check, 40, 0, mid)));
}

TEST(EditorValues, PercentageTextsAndTheCommitRules)
{
    const struct {
        const wchar_t *cell, *editor;
    } percent[] = {{L"12 %", L"12"}, {L"", L""}, {L"7", L"7"}, {L"1 % 2 %", L"1 2"}, {L"5%", L"5%"}, {L" % %", L""},
                   {L"3  %", L"3 "}};
    for (const auto &p : percent) EXPECT_EQ(p.editor, PercentEditorText(p.cell)) << p.cell;
    EXPECT_EQ(L"12 %", PercentCellText(L"12"));

    // A percentage that did not change writes nothing and runs no Change; one that did, both.
    CommitOutcome same = DecideCommit(EditorKind::Percent, PercentCellText(L"12"), L"12 %");
    EXPECT_FALSE(same.write);
    EXPECT_FALSE(same.run_change);
    EXPECT_FALSE(same.changed);
    CommitOutcome other = DecideCommit(EditorKind::Percent, PercentCellText(L"13"), L"12 %");
    EXPECT_TRUE(other.write);
    EXPECT_TRUE(other.run_change);
    EXPECT_EQ(L"13 %", other.text);
    // A cell written without the suffix counts as changed once the editor adds it.
    EXPECT_TRUE(DecideCommit(EditorKind::Percent, PercentCellText(L"12"), L"12").run_change);

    // The other editors write what they hold, never run Change, and say whether it changed.
    CommitOutcome text = DecideCommit(EditorKind::Text, std::wstring(L"abc"), L"abc");
    EXPECT_TRUE(text.write);
    EXPECT_FALSE(text.changed);
    EXPECT_FALSE(text.run_change);
    EXPECT_TRUE(DecideCommit(EditorKind::Date, std::wstring(L"1/2/2024"), L"").changed);
    // Nothing to write: nothing written; the check box still gets its font.
    EXPECT_FALSE(DecideCommit(EditorKind::ImageList, std::nullopt, L"x").write);
    CommitOutcome check = DecideCommit(EditorKind::Check, std::wstring(CheckCellText(true)), L"");
    EXPECT_TRUE(check.set_check_font);
    EXPECT_EQ(L" a", check.text);
    EXPECT_TRUE(DecideCommit(EditorKind::Check, std::nullopt, L"").set_check_font);

    EXPECT_TRUE(CellIsChecked(L" a"));
    for (const wchar_t *t : {L"a", L" a ", L"", L"1", L"TRUE", L" A"}) EXPECT_FALSE(CellIsChecked(t)) << t;
    EXPECT_STREQ(L"", CheckCellText(false));
}

TEST(EditorMenus, TheDateMenuLeavesTheCellAloneAndTheTimeMenuFillsOrEmptiesIt)
{
    namespace ge = grid_events;
    const EditorMenu &date = DateMenu();
    EXPECT_STREQ(L"mnuDATETOP", date.name);
    ASSERT_TRUE(date.find(L"mnuDATENOW"));
    EXPECT_EQ(ge::DateNow, date.find(L"mnuDATENOW")->event);
    EXPECT_EQ(ge::DateRemove, date.find(L"mnuDATEREMOVE")->event);
    for (size_t i = 0; i < date.count; ++i) EXPECT_EQ(MenuCellAction::None, date.items[i].action);

    const EditorMenu &time = TimeMenu();
    EXPECT_STREQ(L"mnuTIMETOP", time.name);
    const struct {
        const wchar_t *item;
        int32_t event;
        MenuCellAction action;
    } items[] = {{L"mnuTIME", ge::TimeNow, MenuCellAction::WriteTimeNow},
                 {L"mnuTIMEREMOVE", ge::TimeRemove, MenuCellAction::WriteEmpty},
                 {L"mnuTIME5", ge::Time5, MenuCellAction::None},     {L"mnuTIME10", ge::Time10, MenuCellAction::None},
                 {L"mnuTIME15", ge::Time15, MenuCellAction::None},   {L"mnuTIME30", ge::Time30, MenuCellAction::None},
                 {L"mnuTIME45", ge::Time45, MenuCellAction::None},   {L"mnuTIME60", ge::Time60, MenuCellAction::None},
                 {L"mnuTIME120", ge::Time120, MenuCellAction::None}};
    for (const auto &i : items) {
        const EditorMenuItem *found = time.find(i.item);
        ASSERT_TRUE(found) << i.item;
        EXPECT_EQ(i.event, found->event) << i.item;
        EXPECT_EQ(i.action, found->action) << i.item;
    }
    ASSERT_TRUE(time.find(L"mnuTIMESEP01"));
    EXPECT_TRUE(time.find(L"mnuTIMESEP01")->separator());
    EXPECT_EQ(nullptr, time.find(L"mnuTIME31"));
    EXPECT_EQ(nullptr, time.find(nullptr));
    // Every name once.
    for (size_t i = 0; i < time.count; ++i)
        for (size_t j = i + 1; j < time.count; ++j) EXPECT_STRNE(time.items[i].name, time.items[j].name);
}
