#include "grid/grid_file.h"

#include "grid/text_codec.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <sstream>

using namespace tarn;
namespace fs = std::filesystem;

namespace {

std::vector<std::wstring> fields(std::string_view bytes)
{
    GridFieldReader reader(bytes);
    std::vector<std::wstring> out;
    std::wstring f;
    while (!reader.AtEnd()) {
        reader.Next(f);
        out.push_back(f);
    }
    return out;
}

std::string saved(const CellEngine &cells, const std::wstring &header)
{
    std::ostringstream out;
    WriteGridFile(out, cells, header);
    return out.str();
}

// A folder of its own for each test, removed afterwards.
class GridFileOnDisk : public ::testing::Test {
protected:
    void SetUp() override
    {
        dir = fs::temp_directory_path() /
              ("tarn_grid_file_" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }
    void write(const fs::path &p, const std::string &bytes) { std::ofstream(p, std::ios::binary) << bytes; }
    std::string read(const fs::path &p) { return ReadFileBytes(p); }
    size_t entries() { return static_cast<size_t>(std::distance(fs::directory_iterator(dir), fs::directory_iterator())); }

    fs::path dir;
};

} // namespace

TEST(GridFieldReader, SplitsAtCommasAndLineEndsAndHonoursQuotes)
{
    EXPECT_EQ((std::vector<std::wstring>{L"a", L"b", L"", L"c"}), fields("a,b\r\n\r\nc\r\n"));
    EXPECT_EQ((std::vector<std::wstring>{L"x", L"y", L"z"}), fields("x\ry\nz"));
    EXPECT_EQ((std::vector<std::wstring>{L"lead", L"trail  "}), fields("  \tlead\r\ntrail  \r\n"));
    EXPECT_EQ((std::vector<std::wstring>{L"a, b", L"next"}), fields("\"a, b\"\r\nnext\r\n"));
    EXPECT_EQ((std::vector<std::wstring>{L"q", L"after"}), fields("\"q\"dropped\r\nafter"));
    EXPECT_EQ((std::vector<std::wstring>{L"two\r\nlines"}), fields("\"two\r\nlines\"\r\n"));
    EXPECT_EQ((std::vector<std::wstring>{L"open to the end\r\n"}), fields("\"open to the end\r\n"));
    EXPECT_EQ((std::vector<std::wstring>{L"a", L""}), fields("a,\r\n"));
    EXPECT_EQ((std::vector<std::wstring>{L""}), fields("   "));
    GridFieldReader empty("");
    std::wstring f;
    EXPECT_THROW(empty.Next(f), std::out_of_range);
}

TEST(GridFieldReader, ReadsUtf8AndFallsBackToWindows1252)
{
    EXPECT_EQ((std::vector<std::wstring>{L"\u00e9t\u00e9", L"\u20ac"}), fields("\xC3\xA9t\xC3\xA9\r\n\xE2\x82\xAC\r\n"));
    EXPECT_EQ((std::vector<std::wstring>{L"BOM"}), fields("\xEF\xBB\xBF" "BOM"));
    // One byte that is not UTF-8 makes the whole file Windows-1252.
    EXPECT_EQ((std::vector<std::wstring>{L"\u00e9t\u00e9", L"\u20ac\u201c\u0081"}), fields("\xE9t\xE9\r\n\x80\x93\x81"));
    EXPECT_FALSE(IsValidUtf8("\xC0\xAF"));         // overlong
    EXPECT_FALSE(IsValidUtf8("\xED\xA0\x80"));     // surrogate
    EXPECT_FALSE(IsValidUtf8("\xF4\x90\x80\x80")); // past U+10FFFF
    EXPECT_FALSE(IsValidUtf8("abc\xE2\x82"));      // cut short
    EXPECT_TRUE(IsValidUtf8("\xF0\x9F\x98\x80"));
}

TEST(GridFile, HeaderLosesItsFirstThreeCharactersWhateverTheCountsWidth)
{
    for (auto [cols, header] : {std::pair{3, L"tock"}, std::pair{12, L"Stock"}, std::pair{100, L"|Stock"},
                                std::pair{1000, L"0|Stock"}}) {
        CellEngine cells(1, cols);
        std::string image = saved(cells, L"Stock");
        EXPECT_EQ(std::to_string(cols) + "|Stock\r\n", image.substr(0, image.find('\n') + 1));
        CellEngine back(0, 0);
        EXPECT_EQ(header, LoadGridFileBytes(image, back, ColumnTypes()));
        EXPECT_EQ(cols, back.Cols());
        EXPECT_EQ(1, back.Rows());
    }
}

TEST(GridFile, RoundTripsTextsAlignsCellsAndKeepsUnicode)
{
    CellEngine cells(2, 3);
    cells.SetTextMatrix(0, 0, L"Gr\u00fc\u00dfe");
    cells.SetTextMatrix(0, 2, L"\u65e5\u672c \U0001F600");
    cells.SetTextMatrix(1, 1, L"42.5");
    std::string image = saved(cells, L"xxT");
    EXPECT_EQ("3|xxT\r\nGr\xC3\xBC\xC3\x9F" "e\r\n\r\n", image.substr(0, 18));

    CellEngine back(0, 0);
    EXPECT_EQ(L"xT", LoadGridFileBytes(image, back, ColumnTypes()));
    ASSERT_EQ(2, back.Rows());
    for (int r = 0; r < 2; ++r)
        for (int c = 0; c < 3; ++c) {
            EXPECT_EQ(cells.TextAt(r, c), back.TextAt(r, c));
            EXPECT_EQ(kAlignLeftCenter, back.StyleAt(r, c).alignment);
        }
}

TEST(GridFile, ACommaSplitsItsCellAndShiftsTheRest)
{
    CellEngine cells(2, 2);
    cells.SetTextMatrix(0, 0, L"Acme, Inc");
    cells.SetTextMatrix(0, 1, L"b");
    cells.SetTextMatrix(1, 0, L"c");
    cells.SetTextMatrix(1, 1, L"d");
    CellEngine back(0, 0);
    LoadGridFileBytes(saved(cells, L"..."), back, ColumnTypes());
    ASSERT_EQ(3, back.Rows());
    EXPECT_EQ(L"Acme", back.TextAt(0, 0));
    EXPECT_EQ(L"Inc", back.TextAt(0, 1)); // the leading blank went with the split
    EXPECT_EQ(L"b", back.TextAt(1, 0));
    EXPECT_EQ(L"c", back.TextAt(1, 1));
    EXPECT_EQ(L"d", back.TextAt(2, 0)); // the last row is partial: the rest stays empty
    EXPECT_EQ(L"", back.TextAt(2, 1));
    EXPECT_EQ(nullptr, back.FormatAt(2, 1));
}

TEST(GridFile, CheckColumnsComeBackAsBlankPlusTrimmedTextInWebdings)
{
    ColumnTypes types;
    types.Set(1, kColCheck);
    CellEngine cells(2, 2);
    cells.SetTextMatrix(0, 1, L" a");
    CellEngine back(0, 0);
    LoadGridFileBytes(saved(cells, L"..."), back, types);
    EXPECT_EQ(L" a", back.TextAt(0, 1));
    EXPECT_EQ(L" ", back.TextAt(1, 1)); // an unchecked cell comes back as one blank
    CellEngine::CellStyle s = back.StyleAt(0, 1);
    EXPECT_EQ(L"webdings", *s.font_name);
    EXPECT_FLOAT_EQ(12, s.font_size);
    EXPECT_EQ(kAlignLeftCenter, s.alignment);
    EXPECT_EQ(L"MS Sans Serif", *back.StyleAt(0, 0).font_name);
}

TEST(GridFile, BadDataLoadsWithoutHarm)
{
    CellEngine cells(0, 4);
    EXPECT_EQ(L"", LoadGridFileBytes("", cells, ColumnTypes()));
    EXPECT_EQ(0, cells.Cols()); // no header field: a count of 0
    EXPECT_EQ(0, cells.Rows());

    // No "|": a count of 0, and nothing can fill a row, so none is added (and no endless loop).
    CellEngine zero(0, 5);
    EXPECT_EQ(L"", LoadGridFileBytes("12\r\nx\r\ny\r\n", zero, ColumnTypes()));
    EXPECT_EQ(0, zero.Cols());
    EXPECT_EQ(0, zero.Rows());

    // Counts the grid cannot take keep the columns it had.
    for (const char *image : {"99999999999|huge\r\nx\r\n", "-3|neg\r\nx\r\n", "2000000|wide\r\nx\r\n"}) {
        CellEngine kept(0, 2);
        LoadGridFileBytes(image, kept, ColumnTypes());
        EXPECT_EQ(2, kept.Cols()) << image;
        EXPECT_EQ(L"x", kept.TextAt(0, 0));
    }

    // 100,000 columns: one row, filled only as far as the data goes.
    CellEngine wide(0, 0);
    EXPECT_EQ(L"000|wide", LoadGridFileBytes("100000|wide\r\na,b,c\r\n", wide, ColumnTypes()));
    EXPECT_EQ(100000, wide.Cols());
    EXPECT_EQ(1, wide.Rows());
    EXPECT_EQ(L"c", wide.TextAt(0, 2));
    EXPECT_EQ(nullptr, wide.FormatAt(0, 3));

    std::string garbage;
    for (int i = 0; i < 4096; ++i) garbage.push_back(static_cast<char>((i * 7919) & 0xFF));
    CellEngine binary(0, 0);
    LoadGridFileBytes(garbage, binary, ColumnTypes());
    EXPECT_LE(binary.Rows(), 4096);
}

TEST_F(GridFileOnDisk, SavesThroughATemporaryFileAndKeepsTheOldOneOnFailure)
{
    CellEngine cells(1, 1);
    cells.SetTextMatrix(0, 0, L"new");
    const fs::path target = dir / fs::path(u8"grille \u00e9t\u00e9.txt"); // UTF-8 on POSIX, UTF-16 on Windows
    write(target, "old contents");

    EXPECT_THROW(ReplaceFileContents(target,
                                     [](std::ostream &out) {
                                         out << "half written";
                                         throw std::runtime_error("disk full");
                                     }),
                 std::runtime_error);
    EXPECT_EQ("old contents", read(target));
    EXPECT_EQ(1u, entries()); // no temporary file left behind

    SaveGridFile(target, cells, L"..x");
    EXPECT_EQ("1|..x\r\nnew\r\n", read(target));
    EXPECT_EQ(1u, entries());

    // A directory in the way, or a folder that is a file: nothing is written, nothing is lost.
    fs::create_directories(dir / "folder" / "inside");
    EXPECT_ANY_THROW(SaveGridFile(dir / "folder", cells, L"x"));
    EXPECT_TRUE(fs::exists(dir / "folder" / "inside"));
    EXPECT_ANY_THROW(SaveGridFile(target / "child.txt", cells, L"x"));
    EXPECT_EQ("1|..x\r\nnew\r\n", read(target));
    EXPECT_EQ(2u, entries());
}

TEST_F(GridFileOnDisk, ReadsOnlyRegularFiles)
{
    EXPECT_ANY_THROW(ReadFileBytes(dir / "missing.txt"));
    EXPECT_ANY_THROW(ReadFileBytes(dir));
    write(dir / "empty.txt", "");
    EXPECT_EQ("", ReadFileBytes(dir / "empty.txt"));
}
