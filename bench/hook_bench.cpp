// Benchmark: what a message costs a window hooked through the library's shared hook table, with
// one hooked window and with many, through the real DLL (TarnControls.Subclass).
//
//   hook_bench.exe [windows] [messages]      (defaults 1000 and 200000)
//
// Each Subclass instance hooks a message-only window of its own and watches one message. A
// message is sent with SendMessageW to the first and to the last window hooked, both a watched
// one (WndProc raised, nobody advised) and one that goes on to the window's own procedure.
// Baseline: the same message to a window that is not hooked. The two table sizes alternate
// round by round (the other windows are unhooked and hooked again), and each figure is the
// median of its rounds, so a change in the machine's load touches both sizes alike.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <vector>

#include "bench/bench_clock.h"
#include "runtime/com.h"
#include "tarnctls_h.h"

using namespace tarn;

namespace {

constexpr UINT kPass = WM_APP + 1, kWatched = WM_APP + 2;

LRESULT CALLBACK own_proc(HWND h, UINT msg, WPARAM wp, LPARAM lp)
{
    if (msg == kPass) return static_cast<LRESULT>(wp) + 1;
    return DefWindowProcW(h, msg, wp, lp);
}

HWND make_window()
{
    static ATOM atom = [] {
        WNDCLASSW wc{};
        wc.lpfnWndProc = own_proc;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.lpszClassName = L"TarnHookBench";
        return RegisterClassW(&wc);
    }();
    (void)atom;
    return CreateWindowExW(0, L"TarnHookBench", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, GetModuleHandleW(nullptr),
                           nullptr);
}

// Nanoseconds per message over one run of `messages`.
double per_message(HWND w, UINT msg, int messages)
{
    double t0 = bench::now_ms();
    LRESULT sum = 0;
    for (int i = 0; i < messages; ++i) sum += SendMessageW(w, msg, static_cast<WPARAM>(i), 0);
    double t1 = bench::now_ms();
    if (sum == -1) std::printf("?"); // keeps the loop
    return (t1 - t0) * 1e6 / messages;
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// Owners and their message-only windows. The first stays hooked; the others are hooked and
// unhooked again between rounds, so both table sizes are measured side by side as the
// machine's load changes.
struct Hooks {
    std::vector<HWND> windows;
    std::vector<ComPtr<ISubclass>> owners;

    bool create(int count)
    {
        for (int i = 0; i < count; ++i) {
            HWND w = make_window();
            ComPtr<ISubclass> s;
            if (!w || FAILED(CoCreateInstance(CLSID_Subclass, nullptr, CLSCTX_INPROC_SERVER, IID_ISubclass, s.put_void())))
                return false;
            s->put_Messages(kWatched, VARIANT_TRUE);
            windows.push_back(w);
            owners.push_back(s);
        }
        return true;
    }
    // Hooks the first `count` windows and unhooks the rest.
    void hook(size_t count)
    {
        for (size_t i = 0; i < owners.size(); ++i)
            owners[i]->put_hwnd(i < count ? to_ole_handle(windows[i]) : 0);
    }
    ~Hooks()
    {
        for (HWND w : windows) DestroyWindow(w); // WM_NCDESTROY ends each hook
    }
};

void row(const char *what, double one, double many)
{
    std::printf("%-44s %9.0f ns %9.0f ns   x%.2f\n", what, one, many, many / one);
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    int count = argc > 1 ? _wtoi(argv[1]) : 1000;
    int messages = argc > 2 ? _wtoi(argv[2]) : 200000;
    if (count < 1) count = 1000;
    if (messages < 1) messages = 200000;
    if (FAILED(OleInitialize(nullptr))) return 2;
    int rc = 0;
    {
        HWND plain = make_window();
        Hooks hooks;
        if (!hooks.create(count)) {
            std::printf("hook_bench: cannot create TarnControls.Subclass (is tarnctls.dll registered?)\n");
            rc = 1;
        } else {
            // Per table size: not hooked, passed on, watched; to the first and the last window.
            enum { Plain, PassFirst, PassLast, WatchFirst, WatchLast, Kinds };
            std::vector<double> one[Kinds], many[Kinds];
            const int rounds = 9;
            for (int r = 0; r < rounds; ++r) {
                for (int size = 0; size < 2; ++size) {
                    hooks.hook(size == 0 ? 1 : hooks.windows.size());
                    std::vector<double> *out = size == 0 ? one : many;
                    // With one window hooked, "last" is that same window.
                    HWND first = hooks.windows.front(), last = size == 0 ? first : hooks.windows.back();
                    out[Plain].push_back(per_message(plain, kPass, messages));
                    out[PassFirst].push_back(per_message(first, kPass, messages));
                    out[PassLast].push_back(per_message(last, kPass, messages));
                    out[WatchFirst].push_back(per_message(first, kWatched, messages));
                    out[WatchLast].push_back(per_message(last, kWatched, messages));
                }
            }
            std::printf("hooked windows: 1 and %d; %d messages a run; medians of %d rounds, the two table sizes "
                        "alternating\n",
                        count, messages, rounds);
            std::printf("%-44s %12s %12s   %s\n", "per message (SendMessageW)", "1 hooked", "many hooked", "ratio");
            const char *names[Kinds] = {"not hooked (baseline)", "passed on, first window hooked",
                                        "passed on, last window hooked", "watched (WndProc), first window hooked",
                                        "watched (WndProc), last window hooked"};
            for (int k = 0; k < Kinds; ++k) row(names[k], median(one[k]), median(many[k]));
        }
        DestroyWindow(plain);
    }
    OleUninitialize();
    return rc;
}
