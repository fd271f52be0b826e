// Benchmark: the panel's backgrounds and the size grip's following of its form, each beside a
// baseline of plain platform work of the same size measured in the same run.
//
//   panel_bench.exe [count]      (default 2000)
//
// Panel: IViewObject::Draw of a 300 x 200 raised panel with a caption, solid, gradient and
// dotted; baseline: FillRect + DrawEdge + DrawText of the same size, and the same with a
// GradientFill of two triangles. Grip: SetWindowPos of the form to a new size, with a size
// grip following it (its WM_SIZE observed through the hook table, the grip moved through its
// container) and without one.
#include <windows.h>

#include <cstdio>
#include <cwchar>

#include "bench/bench_clock.h"
#include "host/container.h"

using namespace tarn;
using namespace tarn::host;
using tarn::bench::now_ms;

namespace {

void report(const char *what, int count, double ms)
{
    std::printf("%-52s %6d x  %9.2f ms total  %8.1f us each\n", what, count, ms, ms * 1000.0 / count);
}

template <class F> double timed(int count, F &&f)
{
    double t0 = now_ms();
    for (int i = 0; i < count; ++i) f(i);
    return now_ms() - t0;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    int count = argc > 1 ? _wtoi(argv[1]) : 2000;
    if (count <= 0) count = 2000;
    if (FAILED(OleInitialize(nullptr))) return 2;
    {
        Container form(640, 480);
        const int w = 300, h = 200;
        Bitmap b(w, h);
        RECTL bounds{0, 0, w, h};
        RECT all{0, 0, w, h};

        // Baselines: the same amount of plain GDI work.
        double base = timed(count, [&](int) {
            FillRect(b.dc(), &all, GetSysColorBrush(COLOR_BTNFACE));
            DrawEdge(b.dc(), &all, EDGE_RAISED, BF_RECT);
            DrawTextW(b.dc(), L"Panel", 5, &all, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
        });
        report("baseline: FillRect + DrawEdge + DrawText", count, base);
        double base_gradient = timed(count, [&](int) {
            TRIVERTEX v[4] = {{0, 0, 0xFF00, 0xFF00, 0xD000, 0}, {w, 0, 0x8000, 0x8000, 0x6800, 0},
                              {w, h, 0x0000, 0x0000, 0x4000, 0}, {0, h, 0x8000, 0x8000, 0x6800, 0}};
            GRADIENT_TRIANGLE t[2] = {{0, 1, 2}, {0, 2, 3}};
            GradientFill(b.dc(), v, 4, t, 2, GRADIENT_FILL_TRIANGLE);
            DrawEdge(b.dc(), &all, EDGE_RAISED, BF_RECT);
            DrawTextW(b.dc(), L"Panel", 5, &all, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
        });
        report("baseline: GradientFill + DrawEdge + DrawText", count, base_gradient);

        Hosted panel(form, L"TarnControls.pnl", {0, 0, w, h});
        panel.put(L"CAPTION", Str(L"Panel"));
        ComPtr<IViewObject> view = panel.as<IViewObject>(IID_IViewObject);
        const char *names[] = {"pnl Draw 300 x 200, solid", "pnl Draw 300 x 200, gradient", "pnl Draw 300 x 200, dotted"};
        for (int fill = 0; fill < 3; ++fill) {
            panel.put(L"FillStyle", I4(fill));
            double t = timed(count, [&](int) {
                view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, b.dc(), &bounds, nullptr, nullptr, 0);
            });
            report(names[fill], count, t);
        }

        // The form resized by code, without and with a grip following it.
        auto resize = [&](int i) {
            SetWindowPos(form.hwnd(), nullptr, 0, 0, 500 + i % 100, 400 + i % 80, SWP_NOZORDER | SWP_NOACTIVATE);
        };
        double bare = timed(count, resize);
        report("baseline: SetWindowPos of the form", count, bare);
        form.allow_site_call(L"IOleInPlaceSite::OnPosRectChange");
        Hosted grip(form, L"TarnControls.rsz", {0, 0, 17, 17});
        grip.activate();
        double followed = timed(count, resize);
        report("SetWindowPos of the form, size grip following", count, followed);
    }
    OleUninitialize();
    return 0;
}
