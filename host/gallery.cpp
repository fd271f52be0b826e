// The gallery: a real host window showing every control of the library, each in its
// interesting states, placed by the test container and activated in place.
//
//   gallery.exe               opens the window and runs until it is closed
//   gallery.exe --png FILE    renders the same page off-screen into a PNG file and exits
//
// Each exhibit is a control plus the property writes that set it up; controls added to the
// library add their exhibits to kExhibits.
#include <windows.h>

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
    // Shown in the middle of a button-face panel, the surface it is made for.
    bool on_face = false;
};

Variant colour(OleColor c) { return I4(static_cast<int32_t>(c)); }

Variant font(const wchar_t *name, double size, bool bold = false)
{
    FontSpec spec;
    spec.name = name;
    spec.size = size;
    spec.bold = bold;
    ComPtr<IFontDisp> f = ComPtr<IFontDisp>::attach(CreateFontObject(spec));
    return Variant::of_dispatch(f.get());
}

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
        {L"updown: default (1, range 0 to 10)", L"TarnControls.updown", {120, 21}, {}},
        {L"updown: decimals, right-aligned",
         L"TarnControls.updown",
         {120, 21},
         {{L"AllowDecPoint", Bool(true)}, {L"Max", I4(100)}, {L"Alignment", I2(1)}, {L"Text", Str(L"12.5")}}},
        {L"updown: disabled", L"TarnControls.updown", {120, 21}, {{L"Text", Str(L"7")}, {L"Enabled", Bool(false)}}},
        {L"updown: large bold font, own colours",
         L"TarnControls.updown",
         {160, 21},
         {{L"Font", font(L"Tahoma", 14, true)},
          {L"BACKCOLOR", colour(0x00E0FFFF)},
          {L"ForeColor", colour(0x00800000)},
          {L"Max", I4(2000)},
          {L"Text", Str(L"1024")}}},
        {L"lnev: divider, 30 twips wide", L"TarnControls.lnev", {2, 50}, {}, true},
        {L"grdchk: checked, window-coloured cell",
         L"TarnControls.grdchk",
         {120, 17},
         {{L"BACKCOLOR", colour(0x80000005)}, {L"Value", I2(1)}}},
        {L"grdchk: unchecked, disabled", L"TarnControls.grdchk", {120, 17}, {{L"Enabled", Bool(false)}}},
    };
}

int screen_dpi(int index)
{
    window_dc screen(nullptr);
    int dpi = screen.get() ? GetDeviceCaps(screen.get(), index) : 96;
    return dpi > 0 ? dpi : 96;
}

constexpr int kColumns = 2, kMargin = 16, kTitle = 18, kCellWidth = 260, kCellHeight = 80;

struct Placed {
    std::wstring title;
    RECT pos;
    std::unique_ptr<Hosted> control;
    RECT panel; // empty when there is none
};

std::vector<Placed> place_all(Container &form)
{
    std::vector<Placed> out;
    std::vector<Exhibit> list = exhibits();
    for (size_t i = 0; i < list.size(); ++i) {
        const Exhibit &e = list[i];
        int col = static_cast<int>(i % kColumns), row = static_cast<int>(i / kColumns);
        int x = kMargin + col * kCellWidth, y = kMargin + row * kCellHeight + kTitle;
        RECT panel{};
        if (e.on_face) {
            panel = {x, y, x + kCellWidth - kMargin, y + e.size.cy};
            x += (kCellWidth - kMargin - e.size.cx) / 2;
        }
        RECT pos{x, y, x + e.size.cx, y + e.size.cy};
        auto h = std::make_unique<Hosted>(form, e.progid, pos);
        if (!h->ok()) {
            std::fwprintf(stderr, L"gallery: cannot create %ls (0x%08lx)\n", e.progid, h->create_result());
            continue;
        }
        for (const Setting &s : e.settings) h->put(s.property, s.value);
        // Controls that size themselves (a box to its font's height, a divider to its width)
        // are shown at the size they took.
        SIZEL extent{};
        if (ComPtr<IOleObject> ole = h->as<IOleObject>(IID_IOleObject);
            ole && SUCCEEDED(ole->GetExtent(DVASPECT_CONTENT, &extent)) && extent.cx > 0 && extent.cy > 0) {
            pos.right = pos.left + MulDiv(extent.cx, screen_dpi(LOGPIXELSX), 2540);
            pos.bottom = pos.top + MulDiv(extent.cy, screen_dpi(LOGPIXELSY), 2540);
        }
        if (e.on_face) panel.bottom = pos.bottom;
        out.push_back({e.title, pos, std::move(h), panel});
    }
    return out;
}

SIZE page_size(size_t count)
{
    int rows = static_cast<int>((count + kColumns - 1) / kColumns);
    return {kMargin * 2 + kColumns * kCellWidth, kMargin * 2 + rows * kCellHeight};
}

// The page under the controls: panels and titles.
void draw_page(HDC dc, const std::vector<Placed> &placed)
{
    unique_font font(CreateFontW(-12, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0, ANTIALIASED_QUALITY, 0, L"Tahoma"));
    select_guard use(dc, font.get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    for (const Placed &p : placed) {
        if (!IsRectEmpty(&p.panel)) FillRect(dc, &p.panel, GetSysColorBrush(COLOR_BTNFACE));
        LONG left = IsRectEmpty(&p.panel) ? p.pos.left : p.panel.left;
        RECT r{left, p.pos.top - kTitle, left + kCellWidth - kMargin, p.pos.top - 2};
        DrawTextW(dc, p.title.c_str(), -1, &r, DT_SINGLELINE | DT_BOTTOM | DT_END_ELLIPSIS);
    }
}

int render_png(const std::wstring &path)
{
    Container form(800, 600);
    std::vector<Placed> placed = place_all(form);
    SIZE size = page_size(placed.size());
    Bitmap page(size.cx, size.cy, GetSysColor(COLOR_WINDOW));
    draw_page(page.dc(), placed);
    for (Placed &p : placed) {
        ComPtr<IViewObject> view = p.control->as<IViewObject>(IID_IViewObject);
        RECTL bounds{p.pos.left, p.pos.top, p.pos.right, p.pos.bottom};
        if (view) view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, page.dc(), &bounds, nullptr, nullptr, 0);
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
        draw_page(dc, *g_placed);
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
    SIZE size = page_size(placed.size());
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
