// Benchmark: editing in the grid, through the real DLL in the test container.
//
//  1. Opening and committing an editor 1,000 times: for each column type, GridSetFocus on a
//     cell of that type (which opens its editor) and BoxHide (which closes it, writing the
//     cell), through IDispatch as a host calls them. Baseline in the same run: the floor of
//     the same two dispatch calls (RowsCurrent twice), and what a minimal editor costs the
//     platform (a plain EDIT child window moved over the cell, given the text, shown, read
//     back and hidden).
//  2. Moving the current cell with the keyboard across a 1,000,000-cell grid (1,000 x 1,000):
//     Down, Right, Page Down, Home, End, Ctrl+End... through the grid's window, each move
//     painted at once as a user sees it; baseline: the same keys on a 100-cell grid (10 x 10)
//     of the same size on screen, which paints the same number of cells.
//
//   grid_edit_bench.exe [cycles] [moves] [rounds]     (defaults 1000, 1000 and 1; the best
//   round of each figure counts)
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>

#include "bench/bench_clock.h"
#include "host/container.h"

using namespace tarn;
using namespace tarn::host;
using tarn::bench::now_ms;

namespace {

constexpr int kWidth = 644, kHeight = 244;

void fill(Hosted &g, int rows, int cols)
{
    g.call(L"GridRedraw", {Bool(false)});
    g.call(L"ColsSet", {I4(cols)});
    g.call(L"RowsSet", {I4(rows)});
    for (int c = 0; c < std::min(cols, 7); ++c) g.call(L"ColTypeSet", {I4(c), I4(c)});
    for (int r = 0; r < std::min(rows, 50); ++r)
        for (int c = 0; c < std::min(cols, 7); ++c) g.call(L"CellTextSet", {I4(r), I4(c), Str(std::to_wstring(r))});
    g.call(L"CellTextSet", {I4(0), I4(0), Str(L"")});
    g.call(L"GridRedraw", {Bool(true)});
    g.put(L"AllowGridEdit", Bool(true));
}

// Open-and-commit of the editor of column `col`, `cycles` times (rows 1.. alternate).
double edit_cycles(Hosted &g, int col, int cycles)
{
    double t0 = now_ms();
    for (int i = 0; i < cycles; ++i) {
        g.call(L"GridSetFocus", {I4(col), I4(1 + i % 40)});
        g.call(L"BoxHide");
    }
    return (now_ms() - t0) / cycles;
}

double dispatch_floor(Hosted &g, int cycles)
{
    double t0 = now_ms();
    for (int i = 0; i < cycles; ++i) {
        g.call(L"RowsCurrent");
        g.call(L"RowsCurrent");
    }
    return (now_ms() - t0) / cycles;
}

double plain_edit(HWND parent, int cycles)
{
    HWND edit = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | ES_AUTOHSCROLL, 0, 0, 10, 10, parent, nullptr,
                                GetModuleHandleW(nullptr), nullptr);
    wchar_t buffer[64];
    double t0 = now_ms();
    for (int i = 0; i < cycles; ++i) {
        SetWindowPos(edit, HWND_TOP, 64 * (i % 7), 16 * (1 + i % 10), 64, 16, SWP_NOACTIVATE);
        SetWindowTextW(edit, std::to_wstring(i).c_str());
        ShowWindow(edit, SW_SHOWNA);
        GetWindowTextW(edit, buffer, 64);
        ShowWindow(edit, SW_HIDE);
    }
    double t = (now_ms() - t0) / cycles;
    DestroyWindow(edit);
    return t;
}

void pump()
{
    MSG m;
    while (PeekMessageW(&m, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&m);
}

// `moves` keyboard moves through the grid's window, each painted at once.
double key_moves(Hosted &g, int moves)
{
    struct Move {
        UINT vk;
        bool ctrl;
    };
    static const Move kTour[] = {{VK_DOWN, false}, {VK_RIGHT, false}, {VK_NEXT, false}, {VK_END, false},
                                 {VK_NEXT, false}, {VK_HOME, false},  {VK_DOWN, false}, {VK_END, true},
                                 {VK_UP, false},   {VK_LEFT, false},  {VK_PRIOR, false}, {VK_HOME, true}};
    HWND w = g.hwnd();
    BYTE keys[256] = {};
    double t0 = now_ms();
    for (int i = 0; i < moves; ++i) {
        const Move &m = kTour[i % (sizeof kTour / sizeof kTour[0])];
        GetKeyboardState(keys);
        keys[VK_CONTROL] = m.ctrl ? 0x80 : 0;
        SetKeyboardState(keys);
        SendMessageW(w, WM_KEYDOWN, m.vk, 1);
        SendMessageW(w, WM_KEYUP, m.vk, 0xC0000001);
        UpdateWindow(w);
    }
    keys[VK_CONTROL] = 0;
    SetKeyboardState(keys);
    pump();
    return (now_ms() - t0) / moves;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    int cycles = argc > 1 ? _wtoi(argv[1]) : 1000;
    int moves = argc > 2 ? _wtoi(argv[2]) : 1000;
    int rounds = argc > 3 ? _wtoi(argv[3]) : 1;
    if (cycles <= 0) cycles = 1000;
    if (moves <= 0) moves = 1000;
    if (rounds <= 0) rounds = 1;
    if (FAILED(OleInitialize(nullptr))) return 2;
    {
        Container form(700, 600);
        Hosted g(form, L"TarnControls.grid", {0, 0, kWidth, kHeight});
        fill(g, 60, 7);
        g.activate();
        SetFocus(g.hwnd());
        static const wchar_t *kNames[] = {L"text", L"date", L"image combo", L"check box", L"combo", L"percentage",
                                          L"time"};
        std::printf("open and commit, %d cycles, best of %d rounds (per cycle):\n", cycles, rounds);
        for (int col = 0; col < 7; ++col) {
            double best = 1e9;
            for (int round = 0; round < rounds; ++round) best = std::min(best, edit_cycles(g, col, cycles));
            std::printf("  %-12ls %8.1f us\n", kNames[col], best * 1000);
        }
        // The grid's own part of a cycle: the same two calls on a column whose type opens no editor.
        g.call(L"ColTypeSet", {I4(6), I4(7)});
        double own = 1e9;
        for (int round = 0; round < rounds; ++round) own = std::min(own, edit_cycles(g, 6, cycles));
        std::printf("  no editor    %8.1f us (a column type without an editor: the grid's own part)\n", own * 1000);
        g.call(L"ColTypeSet", {I4(6), I4(6)});
        double floor = 1e9, plain = 1e9;
        for (int round = 0; round < rounds; ++round) {
            floor = std::min(floor, dispatch_floor(g, cycles));
            plain = std::min(plain, plain_edit(g.hwnd(), cycles));
        }
        std::printf("  baseline: two dispatch calls %8.1f us; a plain EDIT placed, filled, shown, read, hidden %8.1f us\n",
                    floor * 1000, plain * 1000);

        Hosted big(form, L"TarnControls.grid", {0, 250, kWidth, 250 + kHeight});
        Hosted small(form, L"TarnControls.grid", {0, 0, kWidth, kHeight});
        double f0 = now_ms();
        big.call(L"GridRedraw", {Bool(false)});
        big.call(L"ColsSet", {I4(1000)});
        big.call(L"RowsSet", {I4(1000)});
        for (int r = 0; r < 1000; r += 7) big.call(L"CellTextSet", {I4(r), I4(r), Str(std::to_wstring(r))});
        big.call(L"CellTextSet", {I4(0), I4(0), Str(L"0")});
        big.call(L"GridRedraw", {Bool(true)});
        std::printf("filling the 1,000 x 1,000 grid: %.0f ms\n", now_ms() - f0);
        small.call(L"ColsSet", {I4(10)});
        small.call(L"RowsSet", {I4(10)});
        small.call(L"CellTextSet", {I4(0), I4(0), Str(L"0")});
        big.activate();
        small.activate();
        double big_ms = 1e9, small_ms = 1e9;
        for (int round = 0; round < rounds; ++round) {
            SetFocus(big.hwnd());
            big_ms = std::min(big_ms, key_moves(big, moves));
            SetFocus(small.hwnd());
            small_ms = std::min(small_ms, key_moves(small, moves));
        }
        std::printf("keyboard move, painted, 1,000,000 cells: %8.1f us\n", big_ms * 1000);
        std::printf("keyboard move, painted,       100 cells: %8.1f us\n", small_ms * 1000);
        std::printf("ratio: %.2f\n", big_ms / small_ms);
    }
    OleUninitialize();
    return 0;
}
