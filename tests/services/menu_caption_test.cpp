// The menu caption rules where real menus cannot take them: a reader that fails or claims more
// than the buffer holds, blanks other than spaces, a highlighted separator, and the separator's
// caption when no menu is read at all. (The ordinary cases run on real menus in mnutxt_test.)
#include <gtest/gtest.h>

#include <algorithm>

#include "services/menu_caption.h"

using namespace tarn;

namespace {
constexpr std::uint16_t kHilite = menuflag::Highlight, kSep = menuflag::Separator;

// A reader that copies `text` the way GetMenuStringW does.
MenuStringReader reading(std::wstring text, int *calls = nullptr)
{
    return [text, calls](std::uint32_t, wchar_t *buffer, int size, bool) {
        if (calls) ++*calls;
        int n = std::min<int>(static_cast<int>(text.size()), size - 1);
        std::copy(text.begin(), text.begin() + n, buffer);
        buffer[n] = L'\0';
        return n;
    };
}
} // namespace

TEST(MenuCaption, OnlyAHighlightedItemIsReadAndOnlySpacesAreTrimmed)
{
    int calls = 0;
    EXPECT_EQ(L"C", MenuCaption(0, kSep, reading(L"never read", &calls)));
    EXPECT_EQ(L"", MenuCaption(0, 0, reading(L"never read", &calls)));
    EXPECT_EQ(0, calls);
    EXPECT_EQ(L"read", MenuCaption(0, kHilite | kSep, reading(L"read", &calls)));
    EXPECT_EQ(L"", MenuCaption(0xFFFF, 0xFFFF, MenuStringReader())); // no reader: nothing read
    EXPECT_EQ(L"\tTabbed\t", MenuCaption(1, kHilite, reading(L"  \tTabbed\t  ")));
    EXPECT_EQ(L"", MenuCaption(1, kHilite, reading(L"     ")));
}

TEST(MenuCaption, AReaderThatFailsOrClaimsTooMuchYieldsWhatTheBufferHolds)
{
    auto liar = [](std::uint32_t, wchar_t *buffer, int size, bool) {
        buffer[0] = L'A';
        return size * 10;
    };
    EXPECT_EQ(L"A", MenuCaption(1, kHilite, liar)); // the rest of the buffer is its spaces
    EXPECT_EQ(L"", MenuCaption(1, kHilite, [](std::uint32_t, wchar_t *, int, bool) { return -1; }));
}
