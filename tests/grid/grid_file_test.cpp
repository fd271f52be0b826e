#include "grid/grid_file.h"

#include "grid/grid_model.h"
#include "grid/text_codec.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <sstream>

using namespace tarn;
namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::wstring>;

Texts fields(std::string_view bytes)
{
    GridFieldReader reader(bytes);
    Texts out;
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
    void SetUp() override { fs::create_directories(dir); }
    void TearDown() override { fs::remove_all(dir); }
    void write(const fs::path &p, const std::string &bytes) { std::ofstream(p, std::ios::binary) << bytes; }
    size_t entries() { return static_cast<size_t>(std::distance(fs::directory_iterator(dir), fs::directory_iterator())); }

    const fs::path dir = fs::temp_directory_path() /
                         ("tarn_grid_file_" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
};

} // namespace

TEST(GridFieldReader, SplitsAtCommasAndLineEndsHonoursQuotesAndFallsBackToWindows1252)
{
    EXPECT_EQ((Texts{L"a", L"b", L"", L"c"}), fields("a,b\r\n\r\nc\r\n"));
    EXPECT_EQ((Texts{L"x", L"y", L"z"}), fields("x\ry\nz"));
    EXPECT_EQ((Texts{L"lead", L"trail  "}), fields("  \tlead\r\ntrail  \r\n"));
    EXPECT_EQ((Texts{L"a, b", L"next"}), fields("\"a, b\"\r\nnext\r\n"));
    EXPECT_EQ((Texts{L"q", L"after"}), fields("\"q\"dropped\r\nafter"));
    EXPECT_EQ((Texts{L"two\r\nlines"}), fields("\"two\r\nlines\"\r\n"));
    EXPECT_EQ((Texts{L"open to the end\r\n"}), fields("\"open to the end\r\n"));
    EXPECT_EQ((Texts{L"a", L""}), fields("a,\r\n"));
    EXPECT_EQ((Texts{L""}), fields("   "));
    GridFieldReader empty("");
    std::wstring f;
    EXPECT_THROW(empty.Next(f), std::out_of_range);

    EXPECT_EQ((Texts{L"\u00e9t\u00e9", L"\u20ac"}), fields("\xC3\xA9t\xC3\xA9\r\n\xE2\x82\xAC\r\n"));
    EXPECT_EQ((Texts{L"BOM"}), fields("\xEF\xBB\xBF" "BOM"));
    // One byte that is not UTF-8 makes the whole file Windows-1252.
    EXPECT_EQ((Texts{L"\u00e9t\u00e9", L"\u20ac\u201c\u0081"}), fields("\xE9t\xE9\r\n\x80\x93\x81"));
    // Overlong, a surrogate, past U+10FFFF, cut short.
    for (const char *bad : {"\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "abc\xE2\x82"}) EXPECT_FALSE(IsValidUtf8(bad));
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

TEST(GridFile, RoundTripsTextsAndUnicodeButACommaSplitsItsCell)
{
    CellEngine cells(2, 3);
    cells.SetTextMatrix(0, 0, L"Gr\u00fc\u00dfe");
    cells.SetTextMatrix(0, 2, L"\u65e5\u672c \U0001F600");
    cells.SetTextMatrix(1, 1, L"42.5");
    cells.SetTextMatrix(1, 2, L"Acme, Inc");
    std::string image = saved(cells, L"xxT");
    EXPECT_EQ("3|xxT\r\nGr\xC3\xBC\xC3\x9F" "e\r\n\r\n", image.substr(0, 18));

    CellEngine back(0, 0);
    EXPECT_EQ(L"xT", LoadGridFileBytes(image, back, ColumnTypes()));
    ASSERT_EQ(3, back.Rows());
    for (int r = 0; r < 2; ++r)
        for (int c = 0; c < 3; ++c) {
            EXPECT_EQ(r == 1 && c == 2 ? std::wstring_view(L"Acme") : cells.TextAt(r, c), back.TextAt(r, c));
            EXPECT_EQ(kAlignLeftCenter, back.StyleAt(r, c).alignment);
        }
    // The rest of the split cell, less its leading blank, starts a row that stays empty and
    // unformatted past the data.
    EXPECT_EQ(L"Inc", back.TextAt(2, 0));
    EXPECT_EQ(nullptr, back.FormatAt(2, 1));
}

TEST(GridFile, BadDataLoadsWithoutHarm)
{
    // No header field, or no "|": a count of 0, and nothing can fill a row, so none is added
    // (and no endless loop).
    for (const char *image : {"", "12\r\nx\r\ny\r\n"}) {
        CellEngine none(0, 4);
        EXPECT_EQ(L"", LoadGridFileBytes(image, none, ColumnTypes()));
        EXPECT_EQ(0, none.Cols());
        EXPECT_EQ(0, none.Rows());
    }
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
    EXPECT_EQ("old contents", ReadFileBytes(target));
    EXPECT_EQ(1u, entries()); // no temporary file left behind

    SaveGridFile(target, cells, L"..x");
    EXPECT_EQ("1|..x\r\nnew\r\n", ReadFileBytes(target));
    EXPECT_EQ(1u, entries());

    // A directory in the way, or a folder that is a file: nothing is written, nothing is lost.
    fs::create_directories(dir / "folder" / "inside");
    EXPECT_ANY_THROW(SaveGridFile(dir / "folder", cells, L"x"));
    EXPECT_TRUE(fs::exists(dir / "folder" / "inside"));
    EXPECT_ANY_THROW(SaveGridFile(target / "child.txt", cells, L"x"));
    EXPECT_EQ("1|..x\r\nnew\r\n", ReadFileBytes(target));
    EXPECT_EQ(2u, entries());
}

TEST_F(GridFileOnDisk, TheGridSavesAndLoadsWithTheHourglassAndCheckCellsComeBackInWebdings)
{
    struct : GridModelHost {
        std::vector<int16_t> pointers;
        int font_updates = 0;
        void SetMousePointer(int16_t p) override { pointers.push_back(p); }
        void FontUpdate() override { ++font_updates; }
    } host;
    GridModel grid(&host);
    grid.ColsSet(12);
    grid.RowsSet(3);
    for (int32_t r = 0; r < 3; ++r)
        for (int32_t c = 0; c < 12; ++c) grid.CellTextSet(r, c, std::to_wstring(r) + L":" + std::to_wstring(c));
    grid.ColTypeSet(11, kColCheck);
    grid.CellChkSet(1, 11, L"TRUE");
    grid.CellChkSet(0, 11, L"no");
    grid.CellTextSet(2, 11, L"  x ");
    grid.RowSetFocus(2);
    grid.ColSetFocus(5);
    grid.GridRedraw(false);
    EXPECT_TRUE(grid.GridSave(dir / "g.txt", L"Stock"));
    EXPECT_EQ(std::pair(2, 5), std::pair(grid.RowCurrent(), grid.ColCurrent()));
    EXPECT_TRUE(grid.Cells().Redraw());

    GridModel other(&host);
    other.ColTypeSet(11, kColCheck);
    EXPECT_EQ(L"Stock", other.GridLoad(dir / "g.txt"));
    EXPECT_EQ((std::vector<int16_t>{11, 0}), host.pointers);
    EXPECT_EQ(1, host.font_updates);
    EXPECT_EQ(3, other.RowsCurrent());
    EXPECT_EQ(12, other.ColsCurrent());
    EXPECT_EQ(L"2:10", other.CellTextRead(2, 10));
    // A check cell comes back as a blank and its trimmed text.
    EXPECT_EQ((Texts{L" ", L" a", L" x"}), (Texts{other.CellTextRead(0, 11), other.CellTextRead(1, 11),
                                                   other.CellTextRead(2, 11)}));
    const CellEngine::CellStyle s = other.Cells().StyleAt(0, 11);
    EXPECT_EQ(L"webdings", *s.font_name);
    EXPECT_FLOAT_EQ(12, s.font_size);
    EXPECT_EQ(L"MS Sans Serif", *other.Cells().StyleAt(0, 10).font_name);
    EXPECT_EQ(std::pair(0, 0), std::pair(other.RowCurrent(), other.ColCurrent()));
    EXPECT_TRUE(other.Visible());
}

TEST_F(GridFileOnDisk, MissingEmptyBinaryAndFolderFilesLoadAsAnEmptyUsableGrid)
{
    GridModel grid;
    EXPECT_FALSE(grid.GridSave(dir, L"x")); // a folder
    EXPECT_TRUE(grid.Visible());
    EXPECT_TRUE(grid.Cells().Redraw());
    EXPECT_TRUE(fs::is_directory(dir));

    write(dir / "empty.txt", "");
    write(dir / "bin.dat", std::string("\0\xff\x01,\"\r", 6));
    for (const fs::path &file : {dir / "missing.txt", dir / "empty.txt", dir / "bin.dat", dir}) {
        grid.ColsSet(2);
        EXPECT_EQ(L"", grid.GridLoad(file)) << file;
        EXPECT_EQ(0, grid.ColsCurrent()) << file;
    }
    EXPECT_EQ(0, grid.RowsCurrent());
    EXPECT_EQ(L"", grid.CellTextRead(0, 0));
    EXPECT_EQ(0, grid.CellCurrentLeft());
    grid.SortFlex(0);
    grid.BarHeaderSort();
    grid.RowAdd(L"x", 0); // no columns: an empty row
    EXPECT_EQ(1, grid.RowsCurrent());
    EXPECT_EQ(L"0.00", grid.BarSummaryColRead(0));
}
