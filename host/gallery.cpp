// The gallery: a real host window showing every control of the library, each in its
// interesting states, placed by the test container and activated in place.
//
//   gallery.exe               opens the window and runs until it is closed
//   gallery.exe --png FILE    renders the same page off-screen into a PNG file and exits
//
// Each exhibit is a control plus the property writes that set it up; controls added to the
// library add their exhibits to kExhibits.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "foundation/color_translate.h"
#include "foundation/font_object.h"
#include "host/container.h"

using namespace tarn;
using namespace tarn::host;

namespace {

struct Setting {
    const wchar_t *property;
    Variant value;
};

struct Exhibit {
    const wchar_t *title;
    const wchar_t *progid;
    SIZE size; // pixels
    std::vector<Setting> settings;
};

Variant colour(OleColor c) { return I4(static_cast<int32_t>(c)); }

std::vector<Exhibit> exhibits()
{
    return {
        {L"cframe: raised (default colours)", L"TarnControls.cframe", {220, 40}, {{L"CAPTION", Str(L"Raised frame")}}},
        {L"cframe: sunken",
         L"TarnControls.cframe",
         {220, 40},
         {{L"CAPTION", Str(L"Sunken frame")},
          {L"LeftHighlightColor", colour(0x80000010)},
          {L"TopHighlightColor", colour(0x80000010)},
          {L"LeftLightShadowColor", colour(0x80000015)},
          {L"TopLightShadowColor", colour(0x80000015)},
          {L"RightDarkShadowColor", colour(0x80000014)},
          {L"BottomDarkShadowColor", colour(0x80000014)},
          {L"RightShadowColor", colour(0x80000016)},
          {L"BottomShadowColor", colour(0x80000016)}}},
        {L"cframe: etched, centred caption",
         L"TarnControls.cframe",
         {220, 40},
         {{L"CAPTION", Str(L"Etched")},
          {L"Alignment", I2(2)},
          {L"LeftHighlightColor", colour(0x80000010)},
          {L"TopHighlightColor", colour(0x80000010)},
          {L"LeftLightShadowColor", colour(0x80000014)},
          {L"TopLightShadowColor", colour(0x80000014)},
          {L"RightDarkShadowColor", colour(0x80000014)},
          {L"BottomDarkShadowColor", colour(0x80000014)},
          {L"RightShadowColor", colour(0x80000010)},
          {L"BottomShadowColor", colour(0x80000010)}}},
        {L"cframe: flat on a custom back colour",
         L"TarnControls.cframe",
         {220, 40},
         {{L"CAPTION", Str(L"Flat \u00b7 \u00dcnic\u00f6de \u0416\u0436 \u03a9\u03c9")},
          {L"BACKCOLOR", colour(0x00F0E0D0)},
          {L"LeftHighlightColor", colour(0x00404040)},
          {L"TopHighlightColor", colour(0x00404040)},
          {L"RightDarkShadowColor", colour(0x00404040)},
          {L"BottomDarkShadowColor", colour(0x00404040)},
          {L"LeftLightShadowColor", colour(0x00F0E0D0)},
          {L"TopLightShadowColor", colour(0x00F0E0D0)},
          {L"RightShadowColor", colour(0x00F0E0D0)},
          {L"BottomShadowColor", colour(0x00F0E0D0)}}},
    };
}

constexpr int kColumns = 2, kMargin = 16, kTitle = 18, kCellWidth = 260, kCellHeight = 80;

// The button wall: every look of cbtn (a row each) in every face (a column each).
const wchar_t *const kButtonTypes[] = {L"Button", L"Button Flat", L"Combo Box", L"Combo Box Flat", L"Toolbar",
                                       L"Toolbar Checked", L"Hyperlink", L"Hyperlink White", L"Spin Button",
                                       L"Spin Button Pressed", L"Windows XP", L"Toolbar Tab Select",
                                       L"Windows XP Pressed", L"Windows XP Toolbar"};
enum class Face { Normal, Hover, Pressed, Disabled };
const wchar_t *const kFaceNames[] = {L"normal", L"hover", L"pressed", L"disabled"};
constexpr int kWallLabel = 130, kWallCellWidth = 120, kWallCellHeight = 34, kWallButtonWidth = 108,
              kWallButtonHeight = 26;

struct Placed {
    std::wstring title;
    RECT pos;
    std::unique_ptr<Hosted> control;
    Face face = Face::Normal;
};

int wall_top(size_t exhibit_count)
{
    int rows = static_cast<int>((exhibit_count + kColumns - 1) / kColumns);
    return kMargin + rows * kCellHeight + kTitle;
}

// The wall's buttons, placed below the exhibits. Hover is set through MousePosn before any
// window exists (so it stays); the pressed face needs a window and is set while drawing.
void place_wall(Container &form, size_t exhibit_count, std::vector<Placed> &out)
{
    int top = wall_top(exhibit_count);
    for (int t = 0; t < 14; ++t)
        for (int f = 0; f < 4; ++f) {
            int x = kMargin + kWallLabel + f * kWallCellWidth, y = top + t * kWallCellHeight;
            RECT pos{x, y, x + kWallButtonWidth, y + kWallButtonHeight};
            auto h = std::make_unique<Hosted>(form, L"TarnControls.cbtn", pos);
            if (!h->ok()) return;
            h->put(L"ButtonType", I4(t + 1));
            h->put(L"CAPTION", Str(t == 7 ? L"Link on blue" : L"Caption"));
            h->put(L"FocusRect", Bool(false));
            if (t == 7) { // white text wants a dark page
                h->put(L"BACKCOLOR", colour(0x00A0502A));
            }
            Face face = static_cast<Face>(f);
            if (face == Face::Disabled) h->put(L"Enabled", Bool(false));
            if (face == Face::Hover) h->call(L"MousePosn", {I2(0), I2(0), R4(5), R4(5)});
            out.push_back({L"", pos, std::move(h), face});
        }
}

void draw_wall_labels(HDC dc, size_t exhibit_count)
{
    unique_font font(CreateFontW(-12, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0, ANTIALIASED_QUALITY, 0, L"Tahoma"));
    select_guard use(dc, font.get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    int top = wall_top(exhibit_count);
    RECT head{kMargin, top - kTitle, kMargin + kWallLabel, top - 2};
    DrawTextW(dc, L"cbtn: ButtonType", -1, &head, DT_SINGLELINE | DT_BOTTOM);
    for (int f = 0; f < 4; ++f) {
        int x = kMargin + kWallLabel + f * kWallCellWidth;
        RECT r{x, top - kTitle, x + kWallCellWidth, top - 2};
        DrawTextW(dc, kFaceNames[f], -1, &r, DT_SINGLELINE | DT_BOTTOM);
    }
    for (int t = 0; t < 14; ++t) {
        RECT r{kMargin, top + t * kWallCellHeight, kMargin + kWallLabel, top + t * kWallCellHeight + kWallButtonHeight};
        std::wstring label = std::to_wstring(t + 1) + L" " + kButtonTypes[t];
        DrawTextW(dc, label.c_str(), -1, &r, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
    }
}

std::vector<Placed> place_all(Container &form)
{
    std::vector<Placed> out;
    std::vector<Exhibit> list = exhibits();
    for (size_t i = 0; i < list.size(); ++i) {
        const Exhibit &e = list[i];
        int col = static_cast<int>(i % kColumns), row = static_cast<int>(i / kColumns);
        int x = kMargin + col * kCellWidth, y = kMargin + row * kCellHeight + kTitle;
        RECT pos{x, y, x + e.size.cx, y + e.size.cy};
        auto h = std::make_unique<Hosted>(form, e.progid, pos);
        if (!h->ok()) {
            std::fwprintf(stderr, L"gallery: cannot create %ls (0x%08lx)\n", e.progid, h->create_result());
            continue;
        }
        for (const Setting &s : e.settings) h->put(s.property, s.value);
        out.push_back({e.title, pos, std::move(h)});
    }
    place_wall(form, list.size(), out);
    return out;
}

SIZE page_size()
{
    int width = std::max(kMargin * 2 + kColumns * kCellWidth, kMargin * 2 + kWallLabel + 4 * kWallCellWidth);
    return {width, wall_top(exhibits().size()) + 14 * kWallCellHeight + kMargin};
}

void draw_titles(HDC dc, const std::vector<Placed> &placed)
{
    unique_font font(CreateFontW(-12, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0, ANTIALIASED_QUALITY, 0, L"Tahoma"));
    select_guard use(dc, font.get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    for (const Placed &p : placed) {
        if (p.title.empty()) continue;
        RECT r{p.pos.left, p.pos.top - kTitle, p.pos.left + kCellWidth - kMargin, p.pos.top - 2};
        DrawTextW(dc, p.title.c_str(), -1, &r, DT_SINGLELINE | DT_BOTTOM | DT_END_ELLIPSIS);
    }
}

int render_png(const std::wstring &path)
{
    SIZE size = page_size();
    Container form(size.cx, size.cy);
    std::vector<Placed> placed = place_all(form);
    Bitmap page(size.cx, size.cy, GetSysColor(COLOR_WINDOW));
    draw_titles(page.dc(), placed);
    draw_wall_labels(page.dc(), exhibits().size());
    for (Placed &p : placed) {
        ComPtr<IViewObject> view = p.control->as<IViewObject>(IID_IViewObject);
        RECTL bounds{p.pos.left, p.pos.top, p.pos.right, p.pos.bottom};
        // The pressed face: a real press on the button's window, held while it is drawn.
        HWND w = nullptr;
        if (p.face == Face::Pressed && SUCCEEDED(p.control->activate()) && (w = p.control->hwnd()))
            SendMessageW(w, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        if (view) view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, page.dc(), &bounds, nullptr, nullptr, 0);
        if (w) SendMessageW(w, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    }
    if (!page.save_png(path)) {
        std::fwprintf(stderr, L"gallery: cannot write %ls\n", path.c_str());
        return 1;
    }
    std::wprintf(L"gallery: %zu exhibits rendered to %ls\n", placed.size(), path.c_str());
    return 0;
}

std::vector<Placed> *g_placed = nullptr;

LRESULT CALLBACK page_proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp)
{
    if (msg == WM_PAINT && g_placed) {
        PAINTSTRUCT ps;
        HDC dc = BeginPaint(hwnd, &ps);
        draw_titles(dc, *g_placed);
        draw_wall_labels(dc, exhibits().size());
        EndPaint(hwnd, &ps);
        return 0;
    }
    if (msg == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcW(hwnd, msg, wp, lp);
}

int run_window()
{
    Container form(800, 600);
    SetWindowTextW(form.hwnd(), L"Tarn Controls gallery");
    SetWindowLongPtrW(form.hwnd(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&page_proc));
    std::vector<Placed> placed = place_all(form);
    g_placed = &placed;
    SIZE size = page_size();
    RECT r{0, 0, size.cx, size.cy};
    AdjustWindowRect(&r, WS_OVERLAPPEDWINDOW, FALSE);
    SetWindowPos(form.hwnd(), nullptr, 40, 40, r.right - r.left, r.bottom - r.top, SWP_NOZORDER);
    for (Placed &p : placed) p.control->activate();
    ShowWindow(form.hwnd(), SW_SHOW);
    MSG m;
    while (GetMessageW(&m, nullptr, 0, 0) > 0) {
        TranslateMessage(&m);
        DispatchMessageW(&m);
    }
    g_placed = nullptr;
    return 0;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    SetProcessDPIAware();
    if (FAILED(OleInitialize(nullptr))) return 2;
    int rc = (argc == 3 && std::wstring(argv[1]) == L"--png") ? render_png(argv[2]) : run_window();
    OleUninitialize();
    return rc;
}
