// The grid benchmarks' data, the same natively and under Wine: even columns hold words
// ("Item 48213"), odd ones amounts ("4821.37"), about 8.4 characters a cell.
#pragma once
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

namespace tarn::bench {

inline std::wstring grid_cell_text(int32_t r, int32_t c)
{
    uint32_t x = static_cast<uint32_t>(r) * 2654435761u + static_cast<uint32_t>(c) * 40503u;
    x ^= x >> 13;
    if (c % 2 == 0) return (c == 0 ? L"Item " : L"Name ") + std::to_wstring(x % 100000);
    return std::to_wstring(x % 10000) + L"." + std::to_wstring(10 + x % 90);
}

// Writes the grid file of rows x cols of that data (header "cols|Benchmark"); returns the
// bytes its cells' texts take in UTF-16.
inline double write_grid_file(const std::filesystem::path &file, int32_t rows, int32_t cols)
{
    std::ofstream out(file, std::ios::binary);
    std::string buf = std::to_string(cols) + "|Benchmark\r\n";
    double utf16 = 0;
    for (int32_t r = 0; r < rows; ++r)
        for (int32_t c = 0; c < cols; ++c) {
            const std::wstring t = grid_cell_text(r, c);
            utf16 += 2.0 * static_cast<double>(t.size());
            buf.append(t.begin(), t.end()); // ASCII
            buf += "\r\n";
            if (buf.size() > (1u << 20)) {
                out << buf;
                buf.clear();
            }
        }
    out << buf;
    return utf16;
}

} // namespace tarn::bench
