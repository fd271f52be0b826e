// The directory tree's path rules: the levels ExpandPath walks, the real path a node reports
// (a root shown under a text of its own, drive nodes), the drive images and texts, and the long
// path form.
#include "inputs/dlst_paths.h"

#include <gtest/gtest.h>

using namespace tarn;
using Levels = std::vector<std::wstring>;

TEST(ExpandPathLevels, AddTheClosingSlashAndBuildEachLevelFromThePreviousOne)
{
    EXPECT_EQ((Levels{L"C:", L"C:\\Data", L"C:\\Data\\Reports"}), ExpandPathLevels(L"C:\\Data\\Reports"));
    EXPECT_EQ((Levels{L"C:", L"C:\\Data"}), ExpandPathLevels(L"C:\\Data\\"));
    EXPECT_EQ((Levels{L"C:"}), ExpandPathLevels(L"C:"));
    EXPECT_EQ(Levels{}, ExpandPathLevels(L""));
    EXPECT_EQ(Levels{}, ExpandPathLevels(L"   "));
    // Doubled and leading separators give empty pieces, as a split does.
    EXPECT_EQ((Levels{L"C:", L"C:\\", L"C:\\\\x"}), ExpandPathLevels(L"C:\\\\x"));
    EXPECT_EQ((Levels{L"", L"\\", L"\\\\srv", L"\\\\srv\\share"}), ExpandPathLevels(L"\\\\srv\\share"));
    EXPECT_EQ((Levels{L"data"}), ExpandPathLevels(L"data"));
    // Past the longest path there is no folder to open (and no quadratic pile of keys).
    EXPECT_EQ(Levels{}, ExpandPathLevels(std::wstring(kLongestPath + 1, L'\\')));
    EXPECT_EQ(kLongestPath / 2, ExpandPathLevels(std::wstring(kLongestPath / 2, L'\\')).size());
}

TEST(NodeRealPath, ReplacesTheRootTextEverywhereAndGivesDrivesTheirRoot)
{
    const struct {
        Levels texts;
        const wchar_t *drive_key, *root_text, *root, *expected;
    } cases[] = {
        {{L"My data", L"Reports"}, L"", L"My data", L"C:\\Data", L"C:\\Data\\Reports"},
        {{L"My data"}, L"", L"My data", L"C:\\Data", L"C:\\Data"},
        // Every occurrence, a folder of the same name included: the path then is not real.
        {{L"My data", L"My data"}, L"", L"My data", L"C:\\Data", L"C:\\Data\\C:\\Data"},
        {{L"c: [System]"}, L"C:", L"", L"", L"C:\\"},
        {{L"c: [System]", L"Windows", L"Fonts"}, L"C:", L"", L"", L"C:\\Windows\\Fonts"},
        {{L"Top", L"x"}, L"", L"", L"", L"Top\\x"}, // no root text: nothing replaced
        {{}, L"C:", L"", L"", L""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(c.expected, NodeRealPath(c.texts, c.drive_key, c.root_text, c.root)) << std::string(c.expected, c.expected + wcslen(c.expected));
    EXPECT_EQ(L"aXbXc", ReplaceAll(L"a--b--c", L"--", L"X"));
    EXPECT_EQ(L"abc", ReplaceAll(L"abc", L"", L"X"));
}

TEST(Drives, ImagesTextsAndRoots)
{
    const struct {
        const wchar_t *entry, *root;
        int image;
    } drives[] = {{L"a:", L"A:\\", 1}, {L"b: [Backup]", L"B:\\", 1}, {L"c: [System]", L"C:\\", 2},
                  {L"d:", L"D:\\", 3}, {L"e: [Data]", L"E:\\", 2}, {L"z:", L"Z:\\", 2}};
    for (const auto &d : drives) {
        EXPECT_EQ(d.root, DriveRootOf(d.entry));
        EXPECT_EQ(d.image, DriveImage(d.root));
    }
    EXPECT_EQ(L"c: [System]", DriveEntry(L'C', L"System"));
    EXPECT_EQ(L"a:", DriveEntry(L'a', L""));
    EXPECT_EQ(L"C:\\Data", ChildKey(L"C:", L"Data"));
    EXPECT_EQ(L"C:\\Data", ChildKey(L"C:\\", L"Data"));
}

TEST(ExtendedPath, GivesDriveAndNetworkPathsTheirLongForm)
{
    EXPECT_EQ(L"\\\\?\\C:\\Data\\x", ExtendedPath(L"C:\\Data\\x"));
    EXPECT_EQ(L"\\\\?\\C:\\Data\\x", ExtendedPath(L"C:/Data/x"));
    EXPECT_EQ(L"\\\\?\\UNC\\srv\\share\\x", ExtendedPath(L"\\\\srv\\share\\x"));
    EXPECT_EQ(L"\\\\?\\C:\\x", ExtendedPath(L"\\\\?\\C:\\x"));
    EXPECT_EQ(L"relative\\x", ExtendedPath(L"relative\\x"));
    EXPECT_EQ(L"C:", ExtendedPath(L"C:")); // the drive's current folder: no long form
}
