// Benchmark: the grid on the path hosts use, through the real DLL and IDispatch with the
// DISPIDs looked up once, each figure beside a baseline measured in the same run.
//
//   grid_scale_bench.exe [rows] [load_rows]      (defaults 100000 and 1000000)
//
// 1. Filling `rows` rows x 10 cells, as a host loop does (GridRedraw(False), then per row
//    RowAdd and 10 CellTextSet): on a grid in place on a form (its window active), on a grid
//    without a window, and, as the floor of a late-bound call, the same number of BarHeader
//    property gets. Then the one paint the active grid owes afterwards.
// 2. GridLoad of a file of `load_rows` rows x 10 columns through the DLL, against reading the
//    same file and splitting it into lines in this program; and the memory the loaded grid
//    takes (the heaps' busy blocks with their overhead), a cell, against its cells' UTF-16 text.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/bench_clock.h"
#include "bench/bench_data.h"
#include "host/container.h"
#include "host/dispatch.h"

using namespace tarn;
using namespace tarn::host;
using tarn::bench::now_ms;

namespace {

constexpr int kCols = 10;

using tarn::bench::grid_cell_text;

// One member called late-bound, as a script host or VB calls it: arguments in declaration
// order, strings made for the call.
class Member {
public:
    Member(IDispatch *object, const wchar_t *name) : object_(object), id_(dispid_of(object, name)) {}

    void call(std::initializer_list<VARIANT> args, WORD flags = DISPATCH_METHOD)
    {
        VARIANT reversed[4];
        UINT n = 0;
        for (auto it = args.end(); it != args.begin();) reversed[n++] = *--it;
        DISPPARAMS params{reversed, nullptr, n, 0};
        VARIANT result;
        VariantInit(&result);
        object_->Invoke(id_, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, &result, nullptr, nullptr);
        VariantClear(&result);
        for (UINT i = 0; i < n; ++i) VariantClear(&reversed[i]);
    }

private:
    IDispatch *object_;
    DISPID id_;
};

VARIANT i4(int v)
{
    VARIANT x;
    V_VT(&x) = VT_I4;
    V_I4(&x) = v;
    return x;
}
VARIANT boolean(bool v)
{
    VARIANT x;
    V_VT(&x) = VT_BOOL;
    V_BOOL(&x) = v ? VARIANT_TRUE : VARIANT_FALSE;
    return x;
}
VARIANT bstr(const std::wstring &s)
{
    VARIANT x;
    V_VT(&x) = VT_BSTR;
    V_BSTR(&x) = SysAllocStringLen(s.data(), static_cast<UINT>(s.size()));
    return x;
}

// The host loop: rows x (RowAdd + 10 CellTextSet); milliseconds.
double fill(IDispatch *grid, int rows)
{
    Member redraw(grid, L"GridRedraw"), add(grid, L"RowAdd"), set(grid, L"CellTextSet"), cols(grid, L"ColsSet"),
        count(grid, L"RowsSet");
    cols.call({i4(kCols)});
    count.call({i4(0)});
    const double t0 = now_ms();
    redraw.call({boolean(false)});
    for (int r = 0; r < rows; ++r) {
        add.call({bstr(L""), i4(r)});
        for (int c = 0; c < kCols; ++c) set.call({i4(r), i4(c), bstr(grid_cell_text(r, c))});
    }
    return now_ms() - t0;
}

// The floor: as many property gets of BarHeader as the fill makes calls.
double trivial_gets(IDispatch *grid, int calls)
{
    Member header(grid, L"BarHeader");
    const double t0 = now_ms();
    for (int i = 0; i < calls; ++i) header.call({}, DISPATCH_PROPERTYGET);
    return now_ms() - t0;
}

// The bytes the process's heaps hand out now: every busy block with its overhead (Wine
// reports no private bytes for a process).
size_t heap_bytes()
{
    HANDLE heaps[64];
    const DWORD n = GetProcessHeaps(64, heaps);
    size_t total = 0;
    for (DWORD i = 0; i < n && i < 64; ++i) {
        if (!HeapLock(heaps[i])) continue;
        PROCESS_HEAP_ENTRY e{};
        while (HeapWalk(heaps[i], &e))
            if (e.wFlags & PROCESS_HEAP_ENTRY_BUSY) total += e.cbData + e.cbOverhead;
        HeapUnlock(heaps[i]);
    }
    return total;
}

std::wstring windows_path(const std::filesystem::path &p) { return p.wstring(); }

} // namespace

int wmain(int argc, wchar_t **argv)
{
    int rows = argc > 1 ? _wtoi(argv[1]) : 100000;
    int load_rows = argc > 2 ? _wtoi(argv[2]) : 1000000;
    if (rows <= 0) rows = 100000;
    if (load_rows <= 0) load_rows = 1000000;
    if (FAILED(OleInitialize(nullptr))) return 2;
    {
        Container form(800, 600);
        const int calls = rows * (1 + kCols);

        // ---- 1. the fill, three ways (the grids are made first, so each run meets the same heap)
        Hosted active(form, L"TarnControls.grid", {0, 0, 640, 400});
        Hosted windowless(form, L"TarnControls.grid", {0, 410, 640, 590});
        Hosted floor(form, L"TarnControls.grid", {650, 0, 790, 100});
        active.activate();
        pump();
        const double t_windowless = fill(windowless.dispatch(), rows);
        const double t_active = fill(active.dispatch(), rows);
        const double p0 = now_ms();
        pump();
        const double t_paint = now_ms() - p0;
        const double t_gets = trivial_gets(floor.dispatch(), calls);
        std::printf("fill %d rows x %d cells through IDispatch (%d calls each):\n", rows, kCols, calls);
        std::printf("  in place (active window)  %9.0f ms  %6.2f us a call\n", t_active, t_active * 1000 / calls);
        std::printf("  without a window          %9.0f ms  %6.2f us a call\n", t_windowless, t_windowless * 1000 / calls);
        std::printf("  BarHeader gets (floor)    %9.0f ms  %6.2f us a call\n", t_gets, t_gets * 1000 / calls);
        std::printf("  active / windowless %.2f, active / floor %.2f, windowless / floor %.2f\n", t_active / t_windowless,
                    t_active / t_gets, t_windowless / t_gets);
        std::printf("  the paint and scroll bars afterwards (message loop): %.1f ms\n", t_paint);
    }
    {
        // ---- 2. GridLoad of a big file, and what the loaded grid takes
        const std::filesystem::path file = std::filesystem::temp_directory_path() / "tarn_grid_scale_bench.txt";
        const double utf16 = tarn::bench::write_grid_file(file, load_rows, kCols);
        Container form(800, 600);
        // Baseline first, so its lines are gone before the grid's memory is measured.
        double t_lines = 1e30;
        size_t line_count = 0;
        for (int round = 0; round < 3; ++round) {
            const double t0 = now_ms();
            std::ifstream in(file, std::ios::binary);
            std::vector<std::string> lines;
            for (std::string line; std::getline(in, line);) lines.push_back(std::move(line));
            t_lines = std::min(t_lines, now_ms() - t0);
            line_count = lines.size();
        }
        double t_load = 1e30, bytes_per_cell = 0;
        for (int round = 0; round < 3; ++round) {
            Hosted g(form, L"TarnControls.grid", {0, 0, 640, 400});
            Member load(g.dispatch(), L"GridLoad");
            // The first round meets heaps that never held a grid; later ones reuse its memory.
            const size_t heap_before = round == 0 ? heap_bytes() : 0;
            const double t0 = now_ms();
            load.call({bstr(windows_path(file))});
            t_load = std::min(t_load, now_ms() - t0);
            if (round == 0) {
                const double cells = static_cast<double>(load_rows) * kCols;
                bytes_per_cell = static_cast<double>(heap_bytes() - heap_before) / cells;
            }
            Variant count;
            call_method(g.dispatch(), L"RowsCurrent", {}, &count);
            if (as_integer(count) != load_rows) std::printf("  (the grid loaded %lld rows)\n", as_integer(count));
        }
        std::printf("GridLoad of %d rows x %d (%zu lines), best of 3:\n", load_rows, kCols, line_count);
        std::printf("  GridLoad through the DLL             %8.0f ms\n", t_load);
        std::printf("  reading and splitting into lines     %8.0f ms\n", t_lines);
        std::printf("  ratio %.2f\n", t_load / t_lines);
        std::printf("  memory a cell: %.1f bytes of heap blocks, its UTF-16 text %.1f bytes, ratio %.2f\n", bytes_per_cell,
                    utf16 / (static_cast<double>(load_rows) * kCols),
                    bytes_per_cell * load_rows * kCols / utf16);
        std::error_code ec;
        std::filesystem::remove(file, ec);
    }
    OleUninitialize();
    return 0;
}
