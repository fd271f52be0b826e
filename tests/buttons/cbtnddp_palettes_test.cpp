// The colour button's palettes: every palette a full grid of unique names made only of the
// vocabulary, with distinct colours; palette 0's first row; the names a property browser
// offers; numbers outside 0 to 11 refused.
#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <optional>
#include <set>

#include "buttons/cbtnddp_palettes.h"
#include "foundation/hls.h"

using namespace tarn;

namespace {

bool in(std::span<const wchar_t *const> words, const std::wstring &w)
{
    return std::any_of(words.begin(), words.end(), [&](const wchar_t *v) { return w == v; });
}

// The prefix a name carries ("" when none), or nullopt when it is not prefix + base name.
std::optional<std::wstring> prefix_of(const std::wstring &name)
{
    if (in(ColourBaseNames(), name)) return std::wstring();
    for (const wchar_t *p : ColourPrefixes()) {
        std::wstring prefix = p;
        if (name.starts_with(prefix) && in(ColourBaseNames(), name.substr(prefix.size()))) return prefix;
    }
    return std::nullopt;
}

} // namespace

TEST(Palettes, EachIsAFullGridOfUniqueNamesFromTheVocabularyAndDistinctColours)
{
    std::set<std::wstring> used_words;
    for (int32_t n = 0; n < kPaletteCount; ++n) {
        SCOPED_TRACE(n);
        Palette p = MakePalette(n);
        EXPECT_EQ(n, p.number);
        ASSERT_GT(p.columns, 1);
        ASSERT_GT(p.rows, 1);
        ASSERT_EQ(static_cast<size_t>(p.columns * p.rows), p.cells.size());
        std::set<std::wstring> names;
        std::set<Rgb> colours;
        for (size_t i = 0; i < p.cells.size(); ++i) {
            const PaletteCell &c = p.cells[i];
            EXPECT_TRUE(names.insert(c.name).second) << "twice: " << std::string(c.name.begin(), c.name.end());
            EXPECT_TRUE(colours.insert(c.colour).second) << "colour twice at cell " << i;
            EXPECT_LE(c.colour, 0xFFFFFFu);
            std::optional<std::wstring> prefix = prefix_of(c.name);
            ASSERT_TRUE(prefix) << "outside the vocabulary: " << std::string(c.name.begin(), c.name.end());
            used_words.insert(*prefix);
            used_words.insert(c.name.substr(prefix->size()));
            EXPECT_EQ(static_cast<int32_t>(i), p.find(c.colour));
        }
        EXPECT_EQ(-1, p.find(0x123457u));
    }
    // Together the palettes show the whole vocabulary.
    for (const wchar_t *w : ColourBaseNames()) EXPECT_TRUE(used_words.count(w)) << std::string(w, w + wcslen(w));
    for (const wchar_t *w : ColourPrefixes()) EXPECT_TRUE(used_words.count(w)) << std::string(w, w + wcslen(w));
}

TEST(Palettes, PaletteZeroStartsFromTheSixPrimaryHuesAndAGreyColumn)
{
    Palette p = MakePalette(0);
    ASSERT_EQ(7, p.columns);
    const wchar_t *names[] = {L"RED", L"YELLOW", L"GREEN", L"CYAN", L"BLUE", L"MAGENTA"};
    const int32_t hues[] = {0, 40, 80, 120, 160, 200};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(names[i], p.cells[static_cast<size_t>(i)].name);
        EXPECT_EQ(HlsToRgb(hues[i], 120, 240), p.cells[static_cast<size_t>(i)].colour);
    }
    // The last column is grey in every row, light to dark as the rows are.
    for (int32_t row = 0; row < p.rows; ++row) {
        Rgb g = p.cells[static_cast<size_t>(row * 7 + 6)].colour;
        EXPECT_TRUE(red_of(g) == green_of(g) && green_of(g) == blue_of(g)) << row;
    }
    EXPECT_EQ(L"GRAY", p.cells[6].name);
}

TEST(Palettes, NamesForTheBrowserAndNumbersOutsideTheRange)
{
    std::set<std::wstring> names;
    for (int32_t n = 0; n < kPaletteCount; ++n) {
        EXPECT_FALSE(PaletteName(n).empty()) << n;
        names.insert(PaletteName(n));
    }
    EXPECT_EQ(static_cast<size_t>(kPaletteCount), names.size());
    for (int32_t n : {-1, 12, INT32_MIN, INT32_MAX}) {
        EXPECT_THROW(MakePalette(n), std::out_of_range) << n;
        EXPECT_EQ(L"", PaletteName(n)) << n;
    }
}
