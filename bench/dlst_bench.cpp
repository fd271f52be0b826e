// Benchmark: the directory tree opening a folder of many sub-folders, against the platform's
// own enumeration of the same folder in the same run.
//
//   dlst_bench.exe [sub-folders] [rounds]      (default 10000 and 5)
//
// The folder (under the temporary folder; made once and kept for later runs) holds
// `sub-folders` folders, every third with a folder of its own. Each round:
//   baseline   FindFirstFileExW / FindNextFileW over the folder, the names kept in a vector;
//   expand     BuildDriveList(folder, "Big"), then NodeExpand(1) through IDispatch until the
//              tree holds every sub-folder and Expand was raised;
//   settled    until only the sub-folders with something in them show an expand button (the
//              background probes are in; looked at every 200 ms), with the longest the UI
//              thread spent on one message from NodeExpand on (NodeExpand's own call aside).
// The medians over the rounds are printed.
#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/bench_clock.h"
#include "host/container.h"

using namespace tarn;
using namespace tarn::host;
using tarn::bench::now_ms;

namespace {

std::wstring long_form(const std::wstring &p) { return L"\\\\?\\" + p; }

void make_folder(const std::wstring &dir, int count)
{
    std::wstring marker = dir + L"\\made " + std::to_wstring(count);
    if (GetFileAttributesW(long_form(marker).c_str()) != INVALID_FILE_ATTRIBUTES) return;
    CreateDirectoryW(long_form(dir).c_str(), nullptr);
    for (int i = 0; i < count; ++i) {
        wchar_t name[32];
        std::swprintf(name, 32, L"\\folder %05d", i);
        std::wstring sub = dir + name;
        CreateDirectoryW(long_form(sub).c_str(), nullptr);
        if (i % 3 == 0) CreateDirectoryW(long_form(sub + L"\\inner").c_str(), nullptr);
    }
    CreateDirectoryW(long_form(marker).c_str(), nullptr);
}

size_t list_folder(const std::wstring &dir)
{
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW fd;
    HANDLE h = FindFirstFileExW(long_form(dir + L"\\*").c_str(), FindExInfoBasic, &fd, FindExSearchNameMatch, nullptr,
                                FIND_FIRST_EX_LARGE_FETCH);
    if (h == INVALID_HANDLE_VALUE) return 0;
    do {
        if (fd.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) names.emplace_back(fd.cFileName);
    } while (FindNextFileW(h, &fd));
    FindClose(h);
    return names.size();
}

// Handles one message if there is one (false when the queue is empty), keeping the longest
// time one message held the thread.
bool one_message(double &longest)
{
    MSG m;
    if (!PeekMessageW(&m, nullptr, 0, 0, PM_REMOVE)) return false;
    double a = now_ms();
    TranslateMessage(&m);
    DispatchMessageW(&m);
    longest = std::max(longest, now_ms() - a);
    return true;
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

// The children of `parent`, and how many of them show an expand button.
size_t child_count(HWND tree, HTREEITEM parent, size_t &buttons)
{
    size_t n = 0;
    buttons = 0;
    for (HTREEITEM c = TreeView_GetChild(tree, parent); c; c = TreeView_GetNextSibling(tree, c)) {
        ++n;
        TVITEMW it{};
        it.mask = TVIF_CHILDREN | TVIF_HANDLE;
        it.hItem = c;
        TreeView_GetItem(tree, &it);
        if (it.cChildren) ++buttons;
    }
    return n;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    int count = argc > 1 ? _wtoi(argv[1]) : 10000;
    int rounds = argc > 2 ? _wtoi(argv[2]) : 5;
    if (count <= 0) count = 10000;
    if (rounds <= 0) rounds = 5;
    if (FAILED(OleInitialize(nullptr))) return 2;
    wchar_t temp[MAX_PATH];
    GetTempPathW(MAX_PATH, temp);
    const std::wstring dir = std::wstring(temp) + L"tarn dlst bench " + std::to_wstring(count);
    make_folder(dir, count);
    std::vector<double> baseline, call, expand, settled, stall;
    {
        Container form(400, 600);
        Hosted h(form, L"TarnControls.dlst", {0, 0, 380, 580});
        h.activate();
        HWND tree = reinterpret_cast<HWND>(static_cast<LONG_PTR>(as_integer(h.get(L"hwnd"))));
        list_folder(dir); // warm the platform's caches before either is timed
        for (int r = 0; r < rounds; ++r) {
            double b0 = now_ms();
            size_t listed = list_folder(dir);
            baseline.push_back(now_ms() - b0);

            h.call(L"BuildDriveList", {Str(dir), Str(L"Big")});
            h.log().clear_events();
            HTREEITEM top = TreeView_GetRoot(tree);
            const size_t with_entries = static_cast<size_t>((count + 2) / 3);
            size_t buttons = 0;
            double t0 = now_ms(), longest = 0;
            h.call(L"NodeExpand", {I4(1)});
            call.push_back(now_ms() - t0);
            while (h.log().events.empty())
                if (!one_message(longest)) Sleep(0);
            double t1 = now_ms();
            size_t shown = child_count(tree, top, buttons);
            // Counting the buttons walks the whole tree: only now and then, between messages.
            double next_look = now_ms() + 200;
            while (buttons > with_entries && now_ms() - t0 < 120000) {
                if (one_message(longest)) continue;
                if (now_ms() < next_look) {
                    Sleep(1);
                    continue;
                }
                child_count(tree, top, buttons);
                next_look = now_ms() + 200;
            }
            double t2 = now_ms();
            expand.push_back(t1 - t0);
            settled.push_back(t2 - t0);
            stall.push_back(longest);
            std::printf("round %d: listed %zu in %.1f ms; NodeExpand returned after %.1f ms, tree shows %zu after "
                        "%.1f ms, all settled after %.1f ms (longest message %.1f ms)\n",
                        r + 1, listed, baseline.back(), call.back(), shown, expand.back(), settled.back(), longest);
        }
    }
    std::printf("\nmedians over %d rounds, %d sub-folders:\n", rounds, count);
    std::printf("  platform enumeration (baseline)      %8.1f ms\n", median(baseline));
    std::printf("  NodeExpand call (holds the UI thread) %8.1f ms\n", median(call));
    std::printf("  NodeExpand until Expand (shown)      %8.1f ms  %.1fx\n", median(expand), median(expand) / median(baseline));
    std::printf("  until every expand button is known   %8.1f ms  %.1fx\n", median(settled), median(settled) / median(baseline));
    std::printf("  longest single message meanwhile    %8.1f ms\n", median(stall));
    OleUninitialize();
    return 0;
}
