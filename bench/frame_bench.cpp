// Benchmark: controls through the test container, the way a form with many of them loads.
//
//   frame_bench.exe [count]      (default 1000)
//
// Phases, each timed over `count` frames: create (CoCreateInstance, site, InitNew, extent),
// activate in place (window), paint once, destroy (deactivate, close, release). Then painting
// alone: IViewObject::Draw into a bitmap and WM_PAINT of an active frame.
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <memory>
#include <vector>

#include "bench/bench_clock.h"
#include "host/container.h"

using namespace tarn;
using namespace tarn::host;
using tarn::bench::now_ms;

namespace {

void report(const char *what, int count, double ms)
{
    std::printf("%-40s %6d x  %9.2f ms total  %8.1f us each\n", what, count, ms, ms * 1000.0 / count);
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    int count = argc > 1 ? _wtoi(argv[1]) : 1000;
    if (count <= 0) count = 1000;
    if (FAILED(OleInitialize(nullptr))) return 2;
    {
        // A tall form: every frame has a place of its own, as on a real form (stacked
        // windows would measure the window manager's clipping instead).
        Container form(1024, 30 * ((count + 4) / 5) + 40);
        // Warm-up: the DLL, the type library and the window class load once.
        { Hosted warm(form, L"TarnControls.cframe", {0, 0, 200, 29}); warm.activate(); }

        std::vector<std::unique_ptr<Hosted>> frames;
        frames.reserve(count);
        double t0 = now_ms();
        for (int i = 0; i < count; ++i) {
            int x = (i % 5) * 204, y = (i / 5) * 30;
            frames.push_back(std::make_unique<Hosted>(form, L"TarnControls.cframe", RECT{x, y, x + 200, y + 29}));
        }
        double t1 = now_ms();
        for (auto &f : frames) f->activate();
        double t2 = now_ms();
        for (auto &f : frames) UpdateWindow(f->hwnd());
        double t3 = now_ms();
        frames.clear();
        pump();
        double t4 = now_ms();
        std::printf("frames: %d, twips per pixel from the screen\n", count);
        report("create (InitNew, site, extent)", count, t1 - t0);
        report("activate in place (window)", count, t2 - t1);
        report("first paint (WM_PAINT)", count, t3 - t2);
        report("destroy (deactivate, close, release)", count, t4 - t3);
        report("whole life of a frame", count, t4 - t0);

        Hosted f(form, L"TarnControls.cframe", {0, 0, 200, 29});
        f.put(L"CAPTION", Str(L"Benchmark"));
        Bitmap b(200, 29);
        ComPtr<IViewObject> view = f.as<IViewObject>(IID_IViewObject);
        RECTL bounds{0, 0, 200, 29};
        double p0 = now_ms();
        for (int i = 0; i < count; ++i)
            view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, b.dc(), &bounds, nullptr, nullptr, 0);
        double p1 = now_ms();
        report("IViewObject::Draw 200 x 29", count, p1 - p0);
        f.activate();
        double w0 = now_ms();
        for (int i = 0; i < count; ++i) {
            InvalidateRect(f.hwnd(), nullptr, FALSE);
            UpdateWindow(f.hwnd());
        }
        double w1 = now_ms();
        report("WM_PAINT 200 x 29 (double-buffered)", count, w1 - w0);
    }
    OleUninitialize();
    return 0;
}
