// The text utilities: the string buffer's append against its length and capacity, and the
// font list's filters in their order with the removal walk of vertical names.
#include "foundation/clsSTRING.h"
#include "foundation/font_names.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace tarn;

TEST(clsSTRING, AppendKeepsLengthAndCapacityConsistentWithValueAndClear)
{
    clsSTRING s;
    EXPECT_EQ(L"", s.Value());
    EXPECT_EQ(0, s.Capacity());
    std::wstring expected;
    // Pieces of every size, empty ones and ones past the current reserve included.
    for (const std::wstring &piece : {std::wstring(L"abc"), std::wstring(), std::wstring(40, L'x'), std::wstring(L"\u00e9\u4e2d"),
                                      std::wstring(1000, L'y'), std::wstring(L"z")}) {
        s.Append(piece);
        expected += piece;
        EXPECT_EQ(expected, s.Value());
        EXPECT_EQ(static_cast<int32_t>(expected.size()), s.Length());
        EXPECT_GE(s.Capacity(), s.Length());
        EXPECT_LE(s.Capacity(), 2 * s.Length() + 16); // grown by doubling, not by far more
    }
    // Text with embedded zeros survives whole.
    s.Append(std::wstring(L"a\0b", 3));
    EXPECT_EQ(3u, s.Value().size() - expected.size());
    s.Clear();
    EXPECT_EQ(L"", s.Value());
    EXPECT_EQ(0, s.Length());
    EXPECT_EQ(0, s.Capacity());
    s.Append(L"again");
    EXPECT_EQ(L"again", s.Value());
}

namespace {

class VectorList final : public FontList {
public:
    std::vector<std::wstring> items;
    std::vector<int32_t> read; // indexes read, in order
    void Clear() override { items.clear(); }
    void Add(const std::wstring &item) override { items.push_back(item); }
    int32_t Count() const override { return static_cast<int32_t>(items.size()); }
    std::wstring Item(int32_t index) const override
    {
        const_cast<VectorList *>(this)->read.push_back(index);
        return index >= 0 && index < Count() ? items[static_cast<size_t>(index)] : std::wstring();
    }
    void Remove(int32_t index) override { items.erase(items.begin() + index); }
};

} // namespace

TEST(FillFontList, LeavesOutVerticalWstScriptVariantAndEmptyNamesCaseSensitively)
{
    const struct {
        const wchar_t *name;
        bool listed;
    } cases[] = {
        {L"Arial", true},           {L"Arial CYR", false},        {L"Arial cyr", true},
        {L"Times Baltic", false},   {L"Times baltic", true},      {L"Courier TUR", false},
        {L"Courier Greek", false},  {L"Tahoma CE", false},        {L"Tahoma CEX", true},
        {L"ArialCYR", true},        {L"@MS Gothic", false},       {L"Font @2", true},
        {L"WST_Engl", false},       {L"wst_Engl", true},          {L"WS Trade", true},
        {L"", false},               {L"   ", false},              {L"  Verdana  ", true},
        {L"Arial CYR ", false},     // trimmed before the tests
        {L"CE", true},              // no blank before it
    };
    std::vector<std::wstring> screen, expected;
    for (const auto &c : cases) {
        screen.push_back(c.name);
        std::wstring trimmed(c.name);
        trimmed.erase(0, trimmed.find_first_not_of(L' '));
        trimmed.erase(trimmed.find_last_not_of(L' ') + 1);
        if (c.listed) expected.push_back(trimmed);
        EXPECT_EQ(!c.listed, FontNameLeftOut(trimmed)) << std::string(trimmed.begin(), trimmed.end());
    }
    VectorList list;
    list.items = {L"left over"};
    FillFontList(list, screen);
    EXPECT_EQ(expected, list.items); // cleared first, the screen's order kept
}

TEST(RemoveAtFonts, WalksDownFromOnePastTheLastItemAndRemovesVerticalNames)
{
    VectorList list;
    list.items = {L"@A", L"B", L"@C", L"@D", L"E", L"@F"};
    RemoveAtFonts(list);
    EXPECT_EQ((std::vector<std::wstring>{L"B", L"E"}), list.items);
    // The first index read is the count itself (one past the last item), then down to 0.
    EXPECT_EQ((std::vector<int32_t>{6, 5, 4, 3, 2, 1, 0}), list.read);
    list.items.clear();
    list.read.clear();
    RemoveAtFonts(list);
    EXPECT_EQ((std::vector<int32_t>{0}), list.read);
}
