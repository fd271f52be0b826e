// The menu caption rules, with a menu reader that behaves as GetMenuStringW does: it copies at
// most size - 1 characters, ends them with a zero and returns how many it copied.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>

#include "services/menu_caption.h"

using namespace tarn;

namespace {

struct FakeMenu {
    std::map<std::uint32_t, std::wstring> by_command, by_position;
    std::vector<std::pair<std::uint32_t, bool>> asked;

    MenuStringReader reader()
    {
        return [this](std::uint32_t item, wchar_t *buffer, int size, bool by_position) {
            asked.emplace_back(item, by_position);
            auto &items = by_position ? by_position_items() : by_command;
            auto it = items.find(item);
            if (it == items.end() || size <= 0) return 0;
            int n = std::min<int>(static_cast<int>(it->second.size()), size - 1);
            std::memcpy(buffer, it->second.data(), n * sizeof(wchar_t));
            buffer[n] = L'\0';
            return n;
        };
    }
    std::map<std::uint32_t, std::wstring> &by_position_items() { return by_position; }
};

constexpr std::uint16_t kHilite = menuflag::Highlight, kPopup = menuflag::Popup, kSep = menuflag::Separator;

} // namespace

TEST(MenuCaption, AHighlightedItemIsReadByCommandAndAPopupByPosition)
{
    FakeMenu menu;
    menu.by_command[101] = L"Open";
    menu.by_position[1] = L"Edit";
    menu.by_command[1] = L"wrong: command 1";
    EXPECT_EQ(L"Open", MenuCaption(101, kHilite, menu.reader()));
    EXPECT_EQ(L"Edit", MenuCaption(1, kHilite | kPopup, menu.reader()));
    EXPECT_EQ((std::vector<std::pair<std::uint32_t, bool>>{{101, false}, {1, true}}), menu.asked);
    // Other flags beside the highlight (checked, disabled, owner-drawn...) change nothing.
    EXPECT_EQ(L"Open", MenuCaption(101, kHilite | 0x8 | 0x2 | 0x100, menu.reader()));
}

TEST(MenuCaption, WithoutTheHighlightASeparatorSaysCAndAnythingElseNothing)
{
    FakeMenu menu;
    menu.by_command[0] = L"never read";
    EXPECT_EQ(L"C", MenuCaption(0, kSep, menu.reader()));
    EXPECT_EQ(L"C", MenuCaption(7, kSep | kPopup, menu.reader()));
    EXPECT_EQ(L"", MenuCaption(0, 0, menu.reader()));
    EXPECT_EQ(L"", MenuCaption(101, kPopup, menu.reader()));
    EXPECT_TRUE(menu.asked.empty());
    // A highlighted separator is read like any highlighted item (a real one has no text).
    EXPECT_EQ(L"never read", MenuCaption(0, kHilite | kSep, menu.reader()));
    EXPECT_EQ(1u, menu.asked.size());
}

TEST(MenuCaption, TheMenuClosingReadsNothingUsable)
{
    // WM_MENUSELECT with flags 0xFFFF and no menu: every flag is set, the read finds nothing.
    FakeMenu menu;
    EXPECT_EQ(L"", MenuCaption(0xFFFF, 0xFFFF, menu.reader()));
    EXPECT_EQ(L"", MenuCaption(0xFFFF, 0xFFFF, MenuStringReader()));
}

TEST(MenuCaption, CaptionsAreTrimmedOfSpacesAndCutToTheBuffer)
{
    FakeMenu menu;
    menu.by_command[1] = L"   Save as...  ";
    menu.by_command[2] = L"\tTabbed\t";
    menu.by_command[3] = std::wstring(150, L'x');
    menu.by_command[4] = L"     ";
    menu.by_command[5] = L"Nada";
    menu.by_command[6] = L"\u00dcber \u65e5\u672c";
    EXPECT_EQ(L"Save as...", MenuCaption(1, kHilite, menu.reader()));
    EXPECT_EQ(L"\tTabbed\t", MenuCaption(2, kHilite, menu.reader())); // only spaces go
    EXPECT_EQ(std::wstring(kMenuCaptionBuffer - 1, L'x'), MenuCaption(3, kHilite, menu.reader()));
    EXPECT_EQ(L"", MenuCaption(4, kHilite, menu.reader()));
    EXPECT_EQ(L"Nada", MenuCaption(5, kHilite, menu.reader())); // the sentinel is the event's to drop
    EXPECT_EQ(L"\u00dcber \u65e5\u672c", MenuCaption(6, kHilite, menu.reader()));
}

TEST(MenuCaption, AReaderThatClaimsTooMuchOrFailsYieldsWhatTheBufferHolds)
{
    auto liar = [](std::uint32_t, wchar_t *buffer, int size, bool) {
        buffer[0] = L'A';
        return size * 10;
    };
    std::wstring text = MenuCaption(1, kHilite, liar);
    EXPECT_EQ(L"A", text); // the rest of the buffer is its spaces, trimmed
    auto failing = [](std::uint32_t, wchar_t *, int, bool) { return -1; };
    EXPECT_EQ(L"", MenuCaption(1, kHilite, failing));
}
