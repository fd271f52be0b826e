// The grid's text file: a header line "count|header", then every cell's text on a line of
// its own, row by row, CR LF after each. Cells are written unquoted and read back with comma
// and double-quote field splitting, so a comma inside a cell splits it on the way back: the
// grid's editors refuse both characters for that reason.
//
// Files are written as UTF-8 without a byte order mark. A file is read as UTF-8 when all of
// it is valid UTF-8 (a leading byte order mark is skipped), otherwise as Windows-1252, the
// code page the files of older versions were written in.
#pragma once
#include "grid/engine/cell_engine.h"
#include "grid/column_types.h"

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

namespace tarn {

// Reads the fields of a grid file in order. A field ends at a comma or a line end (CR LF, CR
// or LF), which it consumes; blanks (spaces, tabs) before it are skipped. A field that starts
// with a double quote runs to the next double quote, commas and line ends included (to the
// end of the data when none follows); whatever stands between that quote and the next comma
// or line end is dropped. An empty line is one empty field.
class GridFieldReader {
public:
    explicit GridFieldReader(std::string_view bytes); // the bytes must outlive the reader

    bool AtEnd() const { return pos_ >= bytes_.size(); }
    // Reads the next field into `out`; throws std::out_of_range at the end of the data.
    void Next(std::wstring &out)
    {
        out.clear();
        AppendNext(out);
    }
    // The same, appending the field to `out`.
    void AppendNext(std::wstring &out);
    bool Utf8() const { return utf8_; }

private:
    void append_decoded(size_t begin, size_t end, std::wstring &out) const;

    std::string_view bytes_;
    size_t pos_ = 0;
    bool utf8_ = true;
};

// Loads a grid file's bytes into `cells`, which the caller has emptied (texts cleared, no
// rows), and returns the header text:
//  - the first field of the data is the header field; the column count is the numeric value
//    (leading number) of its text before the first "|" (0 when there is no "|"), set as the
//    column count in a step of its own: a negative count or one past the limit leaves the
//    count as it was, and one that does not fit 32 bits is a tarn::Overflow, skipped alike;
//  - the header text is the header field less its first three characters, whatever the
//    count's width (a one-digit count loses the header's first character; this is kept);
//  - while data remains, a row is added and filled column by column with the next fields,
//    each cell getting CellAlignment 1; a cell of a check-box column (type 3) gets " " and
//    its trimmed text, font "webdings", size 12. When the data ends inside a row, the rest
//    of that row stays empty and unformatted;
//  - with no columns nothing can be read into a row, so no row is added; rows stop at the
//    engine's row limit.
// Every read consumes at least one byte, so rows x columns filled is bounded by the size of
// the data and the load always ends.
std::wstring LoadGridFileBytes(std::string_view bytes, CellEngine &cells, const ColumnTypes &types);

// The whole content of a regular file; throws when it is missing, not a regular file (a
// directory, a device) or cannot be read.
std::string ReadFileBytes(const std::filesystem::path &path);

// Writes the grid file image of `cells` with the given header text to `out`, in pieces.
// Throws std::ios_base::failure when the stream fails.
void WriteGridFile(std::ostream &out, const CellEngine &cells, const std::wstring &header);

// Saves the grid file to `path`: written in full to a temporary file beside it, then put in
// its place, so a save that fails at any point leaves the previous file untouched (and no
// temporary file behind). Throws on failure.
void SaveGridFile(const std::filesystem::path &path, const CellEngine &cells, const std::wstring &header);

// The replace-when-complete writing SaveGridFile is built on: `write` fills the stream of a
// temporary file in the target's folder (throwing to abandon it); when it returns and the
// data reached the file, the temporary file replaces `path`. Throws on failure.
void ReplaceFileContents(const std::filesystem::path &path, const std::function<void(std::ostream &)> &write);

} // namespace tarn
