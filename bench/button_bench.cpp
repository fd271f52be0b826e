// Benchmark: painting the owner-drawn button, one face of each look, and the hover repaint a
// pointer move causes, beside plain GDI work of the same size as the baseline.
//
//   button_bench.exe [count]      (default 2000)
#include <windows.h>

#include <cstdio>
#include <cwchar>

#include "bench/bench_clock.h"
#include "host/container.h"

using namespace tarn;
using namespace tarn::host;
using tarn::bench::now_ms;

namespace {

void report(const wchar_t *what, int count, double ms)
{
    std::wprintf(L"%-44ls %6d x  %8.1f us each\n", what, count, ms * 1000.0 / count);
}

const wchar_t *const kTypes[] = {L"Button", L"Button Flat", L"Combo Box", L"Combo Box Flat", L"Toolbar",
                                 L"Toolbar Checked", L"Hyperlink", L"Hyperlink White", L"Spin Button",
                                 L"Spin Button Pressed", L"Windows XP", L"Toolbar Tab Select", L"Windows XP Pressed",
                                 L"Windows XP Toolbar"};

} // namespace

int wmain(int argc, wchar_t **argv)
{
    int count = argc > 1 ? _wtoi(argv[1]) : 2000;
    if (count <= 0) count = 2000;
    if (FAILED(OleInitialize(nullptr))) return 2;
    {
        Container form(400, 200);
        const int W = 100, H = 25;
        RECTL bounds{0, 0, W, H};
        Bitmap b(W, H);

        // Baseline: what any button costs at least: fill, a 3-D edge and a centred caption.
        {
            HFONT font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
            double t0 = now_ms();
            for (int i = 0; i < count; ++i) {
                RECT r{0, 0, W, H};
                FillRect(b.dc(), &r, GetSysColorBrush(COLOR_BTNFACE));
                DrawEdge(b.dc(), &r, EDGE_RAISED, BF_RECT);
                HGDIOBJ old = SelectObject(b.dc(), font);
                SetBkMode(b.dc(), TRANSPARENT);
                DrawTextW(b.dc(), L"Caption", -1, &r, DT_SINGLELINE | DT_VCENTER | DT_CENTER);
                SelectObject(b.dc(), old);
            }
            GdiFlush();
            report(L"baseline: FillRect+DrawEdge+DrawText", count, now_ms() - t0);
        }

        Hosted btn(form, L"TarnControls.cbtn", {0, 0, W, H});
        btn.put(L"CAPTION", Str(L"Caption"));
        ComPtr<IViewObject> view = btn.as<IViewObject>(IID_IViewObject);
        for (int t = 1; t <= 14; ++t) {
            btn.put(L"ButtonType", I4(t));
            view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, b.dc(), &bounds, nullptr, nullptr, 0);
            double t0 = now_ms();
            for (int i = 0; i < count; ++i)
                view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, b.dc(), &bounds, nullptr, nullptr, 0);
            GdiFlush();
            wchar_t what[80];
            std::swprintf(what, 80, L"Draw %2d %ls", t, kTypes[t - 1]);
            report(what, count, now_ms() - t0);
        }

        // A property write as a host makes it, through IDispatch: the container is asked
        // (OnRequestEdit) and told (OnChanged); the baseline is a read of the same property.
        {
            Variant tip = Str(L"Saves the file");
            btn.put(L"ToolTip", tip);
            double g0 = now_ms();
            for (int i = 0; i < count; ++i) btn.get(L"ToolTip");
            report(L"baseline: get ToolTip through IDispatch", count, now_ms() - g0);
            double q0 = now_ms();
            for (int i = 0; i < count; ++i) btn.put(L"ToolTip", tip);
            report(L"put ToolTip (edit request + change notice)", count, now_ms() - q0);
        }

        // Through the window: WM_PAINT, and the hover repaint of a pointer move inside.
        btn.put(L"ButtonType", I4(1));
        btn.activate();
        HWND w = btn.hwnd();
        double p0 = now_ms();
        for (int i = 0; i < count; ++i) {
            InvalidateRect(w, nullptr, FALSE);
            UpdateWindow(w);
        }
        report(L"WM_PAINT 100 x 25 (Button)", count, now_ms() - p0);
        for (int t : {1, 11}) {
            btn.put(L"ButtonType", I4(t));
            double m0 = now_ms();
            for (int i = 0; i < count; ++i) SendMessageW(w, WM_MOUSEMOVE, 0, MAKELPARAM(10 + i % 80, 12));
            wchar_t what[80];
            std::swprintf(what, 80, L"hover move (MouseMove+MouseOut+repaint) %d", t);
            report(what, count, now_ms() - m0);
        }
        // Baseline for the move: a plain child window repainted through the same round trip.
        HWND plain = CreateWindowExW(0, L"STATIC", L"Caption", WS_CHILD | WS_VISIBLE | SS_CENTER, 0, 40, W, H,
                                     form.hwnd(), nullptr, nullptr, nullptr);
        double s0 = now_ms();
        for (int i = 0; i < count; ++i) RedrawWindow(plain, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        report(L"baseline: STATIC RedrawWindow(UPDATENOW)", count, now_ms() - s0);
        DestroyWindow(plain);
        btn.close();
    }
    OleUninitialize();
    return 0;
}
