#include "grid/grid_file.h"

#include "foundation/checked.h"
#include "foundation/numbers.h"
#include "foundation/strings.h"
#include "grid/text_codec.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <cstdint>
#include <fstream>
#include <stdexcept>

namespace tarn {

namespace fs = std::filesystem;

// ---------------------------------------------------------------- reading fields

GridFieldReader::GridFieldReader(std::string_view bytes) : bytes_(bytes)
{
    utf8_ = IsValidUtf8(bytes_);
    if (utf8_ && bytes_.substr(0, 3) == "\xEF\xBB\xBF") pos_ = 3;
}

void GridFieldReader::append_decoded(size_t begin, size_t end, std::wstring &out) const
{
    std::string_view piece = bytes_.substr(begin, end - begin);
    bool ascii = true;
    for (char c : piece)
        if (static_cast<unsigned char>(c) >= 0x80) {
            ascii = false;
            break;
        }
    if (ascii) {
        const size_t at = out.size();
        out.resize(at + piece.size());
        for (size_t i = 0; i < piece.size(); ++i) out[at + i] = static_cast<wchar_t>(piece[i]);
    } else if (utf8_) {
        DecodeUtf8(piece, out);
    } else {
        DecodeWindows1252(piece, out);
    }
}

void GridFieldReader::AppendNext(std::wstring &out)
{
    const size_t n = bytes_.size();
    if (pos_ >= n) throw std::out_of_range("end of the grid file");
    auto is_end = [](char c) { return c == ',' || c == '\r' || c == '\n'; };
    while (pos_ < n && (bytes_[pos_] == ' ' || bytes_[pos_] == '\t')) ++pos_;
    if (pos_ < n && bytes_[pos_] == '"') {
        const size_t begin = pos_ + 1;
        size_t close = bytes_.find('"', begin);
        if (close == std::string_view::npos) close = n;
        append_decoded(begin, close, out);
        pos_ = close < n ? close + 1 : n;
        while (pos_ < n && !is_end(bytes_[pos_])) ++pos_;
    } else {
        const size_t begin = pos_;
        while (pos_ < n && !is_end(bytes_[pos_])) ++pos_;
        append_decoded(begin, pos_, out);
    }
    if (pos_ < n) {
        if (bytes_[pos_] == '\r' && pos_ + 1 < n && bytes_[pos_ + 1] == '\n') ++pos_;
        ++pos_;
    }
}

// ---------------------------------------------------------------- loading

namespace {

// The column count of a header field: the number before its first "|", 0 without one.
int32_t header_count(const std::wstring &field)
{
    size_t bar = field.find(L'|');
    if (bar == std::wstring::npos) return 0;
    return to_int32(LeadingNumber(field.substr(0, bar)));
}

} // namespace

std::wstring LoadGridFileBytes(std::string_view bytes, CellEngine &cells, const ColumnTypes &types)
{
    GridFieldReader reader(bytes);
    std::wstring field;
    if (!reader.AtEnd()) reader.Next(field);
    try {
        cells.SetCols(header_count(field));
    } catch (...) {
        // A count the grid cannot take leaves the columns as they are; the load goes on.
    }
    std::wstring header = field.size() > 3 ? field.substr(3) : std::wstring();

    const int32_t cols = cells.Cols();
    if (cols == 0) return header;

    // Every loaded cell gets alignment 1, check-box cells their font too: one row style that
    // all the rows share, not a format per cell.
    CellFormat loaded;
    loaded.set = CellFormat::kAlign;
    loaded.alignment = kAlignLeftCenter;
    CellFormat check = loaded;
    check.set |= CellFormat::kFont | CellFormat::kSize;
    check.font = cells.FontIndex(L"webdings");
    check.size = 12;
    // Every field takes a byte at least, so no row reaches past the data's size in cells.
    const size_t reach = std::min(static_cast<size_t>(cols), bytes.size());
    std::vector<CellFormat> formats(reach, loaded);
    std::vector<bool> checks(reach, false);
    for (size_t col = 0; col < reach; ++col)
        if (types.Get(static_cast<int32_t>(col)) == kColCheck) {
            formats[col] = check;
            checks[col] = true;
        }
    const uint32_t style = cells.MakeRowStyle(formats);

    // Each row is put together on its own and handed to the grid whole.
    std::wstring chars;
    std::vector<uint32_t> ends;
    ends.reserve(static_cast<size_t>(std::min(cols, 4096)));
    try {
        while (!reader.AtEnd() && cells.Rows() < CellEngine::kMaxRows) {
            chars.clear();
            ends.clear();
            for (size_t col = 0; col < reach && !reader.AtEnd(); ++col) {
                if (checks[col]) {
                    reader.Next(field);
                    chars += L' ';
                    chars += Trim(field);
                } else {
                    reader.AppendNext(chars);
                }
                if (chars.size() > UINT32_MAX) throw std::length_error("row text");
                ends.push_back(static_cast<uint32_t>(chars.size()));
            }
            cells.InsertRow(cells.Rows(), chars, ends, style);
        }
    } catch (...) {
        // Out of memory part way: what was read stays, and the header is still the header.
    }
    return header;
}

std::string ReadFileBytes(const fs::path &path)
{
    if (!fs::is_regular_file(path)) throw std::runtime_error("not a readable file");
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot open");
    std::string bytes;
    char buf[1 << 16];
    while (in.read(buf, sizeof buf) || in.gcount() > 0) bytes.append(buf, static_cast<size_t>(in.gcount()));
    if (in.bad()) throw std::runtime_error("read failed");
    return bytes;
}

// ---------------------------------------------------------------- saving

void WriteGridFile(std::ostream &out, const CellEngine &cells, const std::wstring &header)
{
    out.exceptions(std::ios::badbit | std::ios::failbit);
    constexpr size_t kPiece = 1 << 20;
    std::string buf;
    buf.reserve(kPiece + 4096);
    auto flush = [&] {
        out.write(buf.data(), static_cast<std::streamsize>(buf.size()));
        buf.clear();
    };
    AppendUtf8(buf, std::to_wstring(cells.Cols()) + L"|" + header);
    buf += "\r\n";
    const int32_t rows = cells.Rows(), cols = cells.Cols();
    std::wstring text;
    for (int32_t r = 0; r < rows; ++r) {
        for (int32_t c = 0; c < cols; ++c) {
            cells.TextRef(r, c).AssignTo(text);
            AppendUtf8(buf, text);
            buf += "\r\n";
            if (buf.size() >= kPiece) flush();
        }
    }
    flush();
    out.flush();
}

void ReplaceFileContents(const fs::path &path, const std::function<void(std::ostream &)> &write)
{
    if (path.filename().empty()) throw std::invalid_argument("no file name");
    // A name nobody else uses, beside the target so the final rename stays on one volume.
    static std::atomic<unsigned> counter{0}; // grids on several UI threads may save at once
    const auto stamp = static_cast<unsigned long long>(std::chrono::steady_clock::now().time_since_epoch().count());
    fs::path temp;
    std::error_code ec;
    for (int attempt = 0;; ++attempt) {
        std::string suffix(".");
        suffix += std::to_string((stamp + ++counter) % 1000000007ull);
        suffix += ".tmp";
        temp = path;
        temp += suffix;
        if (!fs::exists(temp, ec)) break;
        if (attempt == 100) throw std::runtime_error("no free temporary name");
    }
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    if (!out) throw std::runtime_error("cannot create the file");
    try {
        write(out);
        out.flush();
        out.close();
        if (out.fail()) throw std::runtime_error("write failed");
        auto old = fs::status(path, ec);
        if (!ec && fs::is_regular_file(old)) fs::permissions(temp, old.permissions(), ec);
        fs::rename(temp, path);
    } catch (...) {
        if (out.is_open()) out.close();
        fs::remove(temp, ec);
        throw;
    }
}

void SaveGridFile(const fs::path &path, const CellEngine &cells, const std::wstring &header)
{
    ReplaceFileContents(path, [&](std::ostream &out) { WriteGridFile(out, cells, header); });
}

} // namespace tarn
