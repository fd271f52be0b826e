// The grid engine at 100,000 rows x 10 columns, each operation beside a baseline of plain
// standard-library work on the same data, measured in the same run; then the grid at scale:
// totals of alternating columns at 10k, 100k and 1M rows, RowDel and RowAdd in the middle of
// a million rows, and GridLoad of a million rows with the memory a cell costs (see
// bench/README.md).
#include "bench/bench_data.h"
#include "foundation/numbers.h"
#include "grid/grid_file.h"
#include "grid/grid_model.h"
#include "grid/engine/sort_compare.h"
#include "grid/text_codec.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

using namespace tarn;
namespace fs = std::filesystem;

namespace {

constexpr int32_t kRows = 100000;
constexpr int32_t kCols = 10;
constexpr int32_t kNumberCol = 1;

// Cell (r, c): even columns hold words ("Item 48213"), odd ones amounts ("4821.37").
std::wstring cell_text(int32_t r, int32_t c) { return tarn::bench::grid_cell_text(r, c); }

struct Data {
    std::vector<std::wstring> lines;           // each row's cells joined by tabs (RowAdd)
    std::vector<std::wstring> number_column;   // the texts of kNumberCol
    std::vector<std::string> number_column_8;  // the same as bytes (strtod)
    std::vector<std::string> file_lines;       // the grid file's lines, UTF-8 without line ends
    fs::path dir, file;

    Data()
    {
        for (int32_t r = 0; r < kRows; ++r) {
            std::wstring line;
            for (int32_t c = 0; c < kCols; ++c) {
                const std::wstring t = cell_text(r, c);
                if (c) line += L'\t';
                line += t;
                if (c == kNumberCol) {
                    number_column.push_back(t);
                    number_column_8.emplace_back(t.begin(), t.end());
                }
            }
            lines.push_back(std::move(line));
        }
        dir = fs::temp_directory_path() / "tarn_grid_bench";
        fs::create_directories(dir);
        std::atexit([] {
            std::error_code ec;
            fs::remove_all(fs::temp_directory_path() / "tarn_grid_bench", ec);
        });
        file = dir / "grid.txt";
        GridModel model;
        fill(model);
        model.GridSave(file, L"Benchmark");
        std::ifstream in(file, std::ios::binary);
        for (std::string line; std::getline(in, line);) {
            if (!line.empty() && line.back() == '\r') line.pop_back();
            file_lines.push_back(std::move(line));
        }
    }

    void fill(GridModel &model) const
    {
        model.ColsSet(kCols);
        model.RowsSet(0);
        for (int32_t r = 0; r < kRows; ++r) model.RowAdd(lines[static_cast<size_t>(r)], r);
    }
};

const Data &data()
{
    static const Data d;
    return d;
}

// ---------------------------------------------------------------- load

void BM_GridLoad(benchmark::State &state)
{
    const Data &d = data();
    GridModel model;
    for (auto _ : state) benchmark::DoNotOptimize(model.GridLoad(d.file));
    if (model.RowsCurrent() != kRows) state.SkipWithError("wrong row count");
}

void BM_Baseline_ReadLines(benchmark::State &state)
{
    const Data &d = data();
    for (auto _ : state) {
        std::ifstream in(d.file, std::ios::binary);
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);) lines.push_back(std::move(line));
        benchmark::DoNotOptimize(lines.data());
    }
}

// ---------------------------------------------------------------- save

void BM_GridSave(benchmark::State &state)
{
    const Data &d = data();
    GridModel model;
    d.fill(model);
    for (auto _ : state) benchmark::DoNotOptimize(model.GridSave(d.dir / "saved.txt", L"Benchmark"));
}

void BM_Baseline_WriteLines(benchmark::State &state)
{
    const Data &d = data();
    for (auto _ : state) {
        std::ofstream out(d.dir / "baseline.txt", std::ios::binary | std::ios::trunc);
        for (const std::string &line : d.file_lines) out << line << "\r\n";
    }
}

// ---------------------------------------------------------------- sort

void BM_SortFlex(benchmark::State &state)
{
    const Data &d = data();
    GridModel model;
    d.fill(model);
    model.ColSetFocus(kNumberCol);
    for (auto _ : state) model.SortFlex(kNumberCol); // descending, ascending, ...
}

void BM_Baseline_StableSort(benchmark::State &state)
{
    const Data &d = data();
    std::vector<std::wstring> texts = d.number_column;
    bool descending = true;
    struct Item {
        SortKey key;
        size_t index;
    };
    for (auto _ : state) {
        std::vector<Item> items(texts.size());
        for (size_t i = 0; i < texts.size(); ++i) items[i] = {MakeSortKey(texts[i]), i};
        if (descending)
            std::stable_sort(items.begin(), items.end(), [](const Item &a, const Item &b) { return SortKeyLess(b.key, a.key); });
        else
            std::stable_sort(items.begin(), items.end(), [](const Item &a, const Item &b) { return SortKeyLess(a.key, b.key); });
        std::vector<std::wstring> sorted(texts.size());
        for (size_t i = 0; i < items.size(); ++i) sorted[i] = std::move(texts[items[i].index]);
        texts.swap(sorted);
        descending = !descending;
    }
}

// ---------------------------------------------------------------- summary

void BM_BarSummaryColCalc(benchmark::State &state)
{
    const Data &d = data();
    GridModel model;
    d.fill(model);
    bool odd = false;
    for (auto _ : state) {
        // A change in row 0 leaves no partial sum to start from: each read is a whole total.
        model.CellTextSet(0, kNumberCol, (odd = !odd) ? L"1.25" : L"2.5");
        model.BarSummaryColCalc(kNumberCol);
        benchmark::DoNotOptimize(model.BarSummaryColRead(kNumberCol)); // the total is computed here
    }
}

void BM_Baseline_Strtod(benchmark::State &state)
{
    const Data &d = data();
    for (auto _ : state) {
        double total = 0;
        for (const std::string &t : d.number_column_8) total += std::strtod(t.c_str(), nullptr);
        benchmark::DoNotOptimize(FormatFixed(total, 2));
    }
}

// ---------------------------------------------------------------- RowAdd

void BM_RowAdd(benchmark::State &state)
{
    const Data &d = data();
    for (auto _ : state) {
        GridModel model;
        d.fill(model);
        benchmark::DoNotOptimize(model.BarSummaryColRead(0));
    }
}

void BM_Baseline_VectorAppend(benchmark::State &state)
{
    const Data &d = data();
    for (auto _ : state) {
        std::vector<std::vector<std::wstring>> rows;
        for (const std::wstring &line : d.lines) {
            std::vector<std::wstring> row;
            size_t start = 0;
            for (;;) {
                size_t tab = line.find(L'\t', start);
                row.emplace_back(line, start, tab == std::wstring::npos ? std::wstring::npos : tab - start);
                if (tab == std::wstring::npos) break;
                start = tab + 1;
            }
            rows.push_back(std::move(row));
        }
        benchmark::DoNotOptimize(rows.data());
    }
}

// ---------------------------------------------------------------- at scale

// One row of the benchmark's data as RowAdd takes it.
std::wstring row_line(int32_t r)
{
    std::wstring line;
    for (int32_t c = 0; c < kCols; ++c) {
        if (c) line += L'\t';
        line += cell_text(r, c);
    }
    return line;
}

// The pattern that was quadratic: each row added (its Change recalculates the current
// column, 0) and column 3 recalculated, so two columns wait in turn; both read at the end.
void BM_AlternatingTotals(benchmark::State &state)
{
    const auto rows = static_cast<int32_t>(state.range(0));
    for (auto _ : state) {
        GridModel model;
        model.ColsSet(kCols);
        model.RowsSet(0);
        for (int32_t r = 0; r < rows; ++r) {
            model.RowAdd(row_line(r), r);
            model.BarSummaryColCalc(3);
        }
        benchmark::DoNotOptimize(model.BarSummaryColRead(0));
        benchmark::DoNotOptimize(model.BarSummaryColRead(3));
    }
    state.SetComplexityN(rows);
}

// Baseline: the same rows added, nothing else recalculated.
void BM_Baseline_RowAddOnly(benchmark::State &state)
{
    const auto rows = static_cast<int32_t>(state.range(0));
    for (auto _ : state) {
        GridModel model;
        model.ColsSet(kCols);
        model.RowsSet(0);
        for (int32_t r = 0; r < rows; ++r) model.RowAdd(row_line(r), r);
        benchmark::DoNotOptimize(model.BarSummaryColRead(0));
    }
    state.SetComplexityN(rows);
}

constexpr int32_t kMillion = 1000000;

// A grid of a million rows, made once.
GridModel &million()
{
    static GridModel *model = [] {
        auto *m = new GridModel;
        m->ColsSet(kCols);
        m->RowsSet(0);
        for (int32_t r = 0; r < kMillion; ++r) m->RowAdd(row_line(r), r);
        (void)m->BarSummaryColRead(0);
        return m;
    }();
    return *model;
}

// RowDel and RowAdd (each a whole operation: BoxHide, the change, Change and its total) in the
// middle of a million rows; per iteration one of each.
void BM_MiddleRowDelAdd(benchmark::State &state)
{
    GridModel &model = million();
    const std::wstring line = row_line(42);
    for (auto _ : state) {
        model.RowDel(kMillion / 2);
        model.RowAdd(line, kMillion / 2);
    }
}

// Baseline: the same at the end of the same grid.
void BM_Baseline_EndRowDelAdd(benchmark::State &state)
{
    GridModel &model = million();
    const std::wstring line = row_line(42);
    for (auto _ : state) {
        model.RowDel(kMillion - 1);
        model.RowAdd(line, kMillion - 1);
    }
}

double million_utf16 = 0; // the UTF-16 bytes of the file's cell texts

// The grid file of a million rows x 10 columns (about 100 MB), written once.
const fs::path &million_file()
{
    static const fs::path file = [] {
        data(); // makes the folder and its removal at exit
        fs::path f = fs::temp_directory_path() / "tarn_grid_bench" / "million.txt";
        million_utf16 = tarn::bench::write_grid_file(f, kMillion, kCols);
        return f;
    }();
    return file;
}

// GridLoad of a million rows into an empty grid; the heap it takes, a cell, against the UTF-16
// size of the cells' texts.
void BM_GridLoadMillion(benchmark::State &state)
{
    const fs::path &file = million_file();
    double bytes_per_cell = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto model = std::make_unique<GridModel>();
        const size_t before = mallinfo2().uordblks;
        state.ResumeTiming();
        benchmark::DoNotOptimize(model->GridLoad(file));
        state.PauseTiming();
        bytes_per_cell = static_cast<double>(mallinfo2().uordblks - before) / (kMillion * 10.0);
        if (model->RowsCurrent() != kMillion) state.SkipWithError("wrong row count");
        model.reset();
        state.ResumeTiming();
    }
    state.counters["heap_bytes_per_cell"] = bytes_per_cell;
    state.counters["utf16_bytes_per_cell"] = million_utf16 / (kMillion * 10.0);
}

void BM_Baseline_ReadLinesMillion(benchmark::State &state)
{
    const fs::path &file = million_file();
    for (auto _ : state) {
        std::ifstream in(file, std::ios::binary);
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);) lines.push_back(std::move(line));
        benchmark::DoNotOptimize(lines.data());
    }
}

} // namespace

BENCHMARK(BM_GridLoad)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Baseline_ReadLines)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GridSave)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Baseline_WriteLines)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SortFlex)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Baseline_StableSort)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BarSummaryColCalc)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Baseline_Strtod)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RowAdd)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Baseline_VectorAppend)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AlternatingTotals)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(BM_Baseline_RowAddOnly)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(BM_MiddleRowDelAdd)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Baseline_EndRowDelAdd)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_GridLoadMillion)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Baseline_ReadLinesMillion)->Unit(benchmark::kMillisecond)->Iterations(3);

BENCHMARK_MAIN();
