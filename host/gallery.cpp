// The gallery: a real host window showing every control of the library, each in its
// interesting states, placed by the test container and activated in place.
//
//   gallery.exe               opens the window and runs until it is closed
//   gallery.exe --png FILE    renders the same page off-screen into a PNG file and exits
//   gallery.exe --editors DIR renders the grid with each in-cell editor open, one PNG each
//
// Each exhibit is a control plus the property writes that set it up; controls added to the
// library add their exhibits to kExhibits. Invisible controls show their design-time face from
// a second container in design mode. The form itself uses the window services: a resize lock
// keeps it from shrinking below 480 x 360 pixels, and a menu text reporter shows the caption of the
// menu item under the pointer in the status line at the bottom.
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
    bool design_time = false; // placed in the design-mode container and drawn, not activated
    bool on_face = false;     // in the middle of a button-face panel, the surface it is made for
    int popup_room = 0;       // pixels kept free below it for its pop-up, drawn open in the picture
};

Variant colour(OleColor c) { return I4(static_cast<int32_t>(c)); }

// A w x h picture: a sun of colour `sun` over a hill of colour `hill` on a sky of colour `sky`.
Variant landscape(int w, int h, COLORREF sky, COLORREF sun, COLORREF hill)
{
    window_dc screen(nullptr);
    HBITMAP art = CreateCompatibleBitmap(screen.get(), w, h);
    HDC dc = CreateCompatibleDC(screen.get());
    HGDIOBJ old_bitmap = SelectObject(dc, art);
    unique_brush sky_brush(CreateSolidBrush(sky)), sun_brush(CreateSolidBrush(sun)), hill_brush(CreateSolidBrush(hill));
    RECT all{0, 0, w, h};
    FillRect(dc, &all, sky_brush.get());
    HGDIOBJ old_pen = SelectObject(dc, GetStockObject(NULL_PEN));
    HGDIOBJ old_brush = SelectObject(dc, sun_brush.get());
    Ellipse(dc, w / 5, h / 6, w / 5 + w / 3, h / 6 + h / 3);
    SelectObject(dc, hill_brush.get());
    Ellipse(dc, -w / 2, h / 2, w + w / 2, h * 2);
    SelectObject(dc, old_brush);
    SelectObject(dc, old_pen);
    SelectObject(dc, old_bitmap);
    DeleteDC(dc);
    PICTDESC pd{};
    pd.cbSizeofstruct = sizeof pd;
    pd.picType = PICTYPE_BITMAP;
    pd.bmp.hbitmap = art;
    ComPtr<IPictureDisp> pic;
    OleCreatePictureIndirect(&pd, IID_IPictureDisp, TRUE, pic.put_void());
    return Variant::of_dispatch(pic.get());
}

Variant font(const wchar_t *name, double size, bool bold = false)
{
    FontSpec look;
    look.name = name;
    look.size = size;
    look.bold = bold;
    ComPtr<IFontDisp> f = ComPtr<IFontDisp>::attach(CreateFontObject(look));
    return Variant::of_dispatch(f.get());
}

// A tab strip of four tabs, the second selected, in look `style`.
std::vector<Setting> tab_settings(int style)
{
    return {{L"Tabs", I2(4)}, {L"SelectedTab", I2(1)}, {L"Style", I4(style)}};
}

constexpr int kPopupRoom = 170;

std::vector<Exhibit> exhibits()
{
    std::vector<Exhibit> list = {
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
         {{L"CAPTION", Str(L"Flat \u00b7 \u00dcnic\u00f6de \u0416\u0436")},
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
         {160, 30},
         {{L"Font", font(L"Tahoma", 14, true)},
          {L"BACKCOLOR", colour(0x00E0FFFF)},
          {L"ForeColor", colour(0x00800000)},
          {L"Max", I4(2000)},
          {L"Text", Str(L"1024")}}},
        {L"lnev: divider, 30 twips wide", L"TarnControls.lnev", {2, 50}, {}, false, true},
        {L"sepbar: titled separator", L"TarnControls.sepbar", {220, 17}, {{L"CAPTION", Str(L"  Options ")}}, false, true},
        {L"sepvbar: upright separator", L"TarnControls.sepvbar", {8, 50}, {}, false, true},
        {L"lneh: caption at the left", L"TarnControls.lneh", {220, 17}, {{L"CAPTION", Str(L"Delivery address")}}, false,
         true},
        {L"lneh: centred caption, bold",
         L"TarnControls.lneh",
         {220, 20},
         {{L"CAPTION", Str(L"Totals")}, {L"Alignment", I4(2)}, {L"Font", font(L"Tahoma", 10, true)}},
         false,
         true},
        {L"downarrow: the drop-down glyph", L"TarnControls.downarrow", {13, 14}, {}, false, true},
        {L"rsz: size grip (drawn as at design time)", L"TarnControls.rsz", {17, 17}, {}, true},
        {L"rszxp: size grip, XP look", L"TarnControls.rszxp", {17, 17}, {}, true},
        {L"pnl: raised, centred caption", L"TarnControls.pnl", {220, 60}, {{L"CAPTION", Str(L"Raised panel")}}},
        {L"pnl: sunken, gradient (315 degrees)",
         L"TarnControls.pnl",
         {220, 60},
         {{L"BorderStyle", I4(2)}, {L"FillStyle", I4(1)}, {L"CAPTION", Str(L"Gradient")}, {L"ForeColor", colour(0x00800000)}}},
        {L"pnl: etched, dotted, caption at the left",
         L"TarnControls.pnl",
         {220, 60},
         {{L"BorderStyle", I4(3)}, {L"FillStyle", I4(2)}, {L"CAPTION", Str(L"Dotted")}, {L"Alignment", I4(0)}}},
        {L"pnl: single line, no caption", L"TarnControls.pnl", {220, 60}, {{L"BorderStyle", I4(4)}}},
        {L"grdchk: checked, window-coloured cell",
         L"TarnControls.grdchk",
         {120, 17},
         {{L"BACKCOLOR", colour(0x80000005)}, {L"Value", I2(1)}}},
        {L"grdchk: unchecked, disabled", L"TarnControls.grdchk", {120, 17}, {{L"Enabled", Bool(false)}}},
        {L"resizelck: its icon at design time", L"TarnControls.resizelck", {32, 30}, {}, true},
        {L"mnutxt: its icon at design time", L"TarnControls.mnutxt", {32, 30}, {}, true},
        {L"grid: typed columns, header and summary bars, sorted by amount",
         L"TarnControls.grid",
         {380, 170},
         {{L"BarSummary", Bool(true)}, {L"AllowGridEdit", Bool(true)}}},
        {L"dlst: the drives, C: opened", L"TarnControls.dlst", {260, 200}, {}},
        {L"fontchars: Tahoma, Latin-1, é chosen",
         L"TarnControls.fontchars",
         {380, 200},
         {{L"FontName", Str(L"Tahoma")}, {L"CharCode", I4(0xE9)}, {L"FontSize", R4(11)}}},
        {L"tbf: classic tabs", L"TarnControls.tbf", {380, 26}, tab_settings(0)},
        {L"tbf: flat buttons", L"TarnControls.tbf", {380, 26}, tab_settings(1)},
        {L"tbf: XP tabs", L"TarnControls.tbf", {380, 26}, tab_settings(2)},
        {L"pbtn: normal, hover and pressed pictures, a caption",
         L"TarnControls.pbtn",
         {64, 64},
         {{L"PictureNormal", landscape(40, 40, RGB(150, 200, 255), RGB(255, 220, 0), RGB(0, 150, 0))},
          {L"PictureHLight", landscape(40, 40, RGB(190, 230, 255), RGB(255, 240, 80), RGB(40, 190, 40))},
          {L"PicturePressed", landscape(40, 40, RGB(90, 130, 200), RGB(220, 180, 0), RGB(0, 110, 0))},
          {L"CAPTION", Str(L"Landscape")}}},
        {L"pbtn: disabled, the normal picture greyed",
         L"TarnControls.pbtn",
         {64, 64},
         {{L"PictureNormal", landscape(40, 40, RGB(150, 200, 255), RGB(255, 220, 0), RGB(0, 150, 0))},
          {L"CAPTION", Str(L"Landscape")},
          {L"Enabled", Bool(false)}}},
    };
    // The colour button, once per palette, its pop-up open below it.
    for (int32_t n = 0; n < 12; ++n) {
        static std::vector<std::wstring> titles(12);
        titles[static_cast<size_t>(n)] = L"cbtnddp: Palette " + std::to_wstring(n) + L", its pop-up open";
        list.push_back({titles[static_cast<size_t>(n)].c_str(),
                        L"TarnControls.cbtnddp",
                        {120, 26},
                        {{L"CAPTION", Str(L"Colour")}, {L"Palette", I4(n)}, {L"SelectedColor", colour(0x000080FF)},
                         {L"DocColor", colour(0x00336699)}},
                        false,
                        false,
                        kPopupRoom});
    }
    return list;
}

// The tree: every drive, C: opened (its folders come in within a moment).
void fill_tree(Hosted &t)
{
    t.call(L"BuildDriveList");
    t.call(L"ExpandPath", {Str(L"C:\\")});
    DWORD start = GetTickCount();
    while (t.log().events.empty() && GetTickCount() - start < 3000) pump(10);
}

// What the gallery's grid holds: typed columns (text, check box, percentage), header captions,
// a total, and a sort by the amount column (the marker shows in its header).
void fill_grid(Hosted &g)
{
    g.call(L"ColsSet", {I4(4)});
    g.call(L"RowsSet", {I4(0)});
    const wchar_t *rows[] = {L"Apples\t12.50\t\t40 %", L"Pears\t3.20\t\t15 %", L"Plums\t27.00\t\t90 %",
                             L"Figs\t8.75\t\t5 %", L"Quinces\t15.10\t\t60 %"};
    for (int r = 0; r < 5; ++r) g.call(L"RowAdd", {Str(rows[r]), I4(r)});
    g.call(L"ColTypeSet", {I4(2), I4(3)});
    g.call(L"ColTypeSet", {I4(3), I4(5)});
    g.call(L"CellChkSet", {I4(0), I4(2), Str(L"TRUE")});
    g.call(L"CellChkSet", {I4(2), I4(2), Str(L"1")});
    g.call(L"CellChkSet", {I4(4), I4(2), Str(L" a")});
    for (int r = 0; r < 5; ++r)
        g.call(L"CellFontSet", {I4(r), I4(2), Str(L"webdings"), Str(L"10")});
    const wchar_t *captions[] = {L"Fruit", L"Amount", L"Ripe", L"Share"};
    for (int c = 0; c < 4; ++c) g.call(L"BarHeaderCaptionSet", {I4(c), Str(captions[c])});
    g.call(L"ColSetFocus", {I4(1)});
    g.call(L"SortFlex", {I4(1)});
    g.call(L"BarSummaryColCalc", {I4(1)});
    g.call(L"BarSummaryColSet", {I4(0), Str(L"Total"), I2(0)});
    g.call(L"CellColorSet", {I4(0x00D0F0FF), I4(0), I4(1)});
}

constexpr int kColumns = 2, kMargin = 16, kTitle = 18, kCellWidth = 400;
constexpr int kServicesHeight = 56; // the resize lock's line and the status line

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
    bool design_time = false;
    RECT panel{}; // the button-face panel under it; empty when there is none
    bool popup = false;
};

// The page: every control placed, its size, and where the button wall starts.
struct Page {
    std::vector<Placed> placed;
    SIZE size{};
    int wall_top = 0;
};

int screen_dpi(int index)
{
    window_dc screen(nullptr);
    int dpi = screen.get() ? GetDeviceCaps(screen.get(), index) : 96;
    return dpi > 0 ? dpi : 96;
}

// Exhibits go in rows of kColumns; each row is as tall as its tallest exhibit.
std::vector<RECT> layout(const std::vector<Exhibit> &list, SIZE &page)
{
    std::vector<RECT> out;
    int y = kMargin;
    for (size_t first = 0; first < list.size(); first += kColumns) {
        int row_height = 0;
        for (size_t i = first; i < list.size() && i < first + kColumns; ++i) {
            int x = kMargin + static_cast<int>(i - first) * kCellWidth;
            out.push_back({x, y + kTitle, x + list[i].size.cx, y + kTitle + list[i].size.cy});
            row_height = std::max<int>(row_height, kTitle + list[i].size.cy + list[i].popup_room);
        }
        y += row_height + kMargin;
    }
    page = {kMargin * 2 + kColumns * kCellWidth, y};
    return out;
}

// The wall's buttons, placed below the exhibits. Hover is set through MousePosn before any
// window exists (so it stays); the pressed face needs a window and is set while drawing.
void place_wall(Container &form, int top, std::vector<Placed> &out)
{
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

void draw_wall_labels(HDC dc, int top)
{
    unique_font font(CreateFontW(-12, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0, ANTIALIASED_QUALITY, 0, L"Tahoma"));
    select_guard use(dc, font.get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
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

Page place_all(Container &form, Container &designer)
{
    Page page;
    std::vector<Exhibit> list = exhibits();
    std::vector<RECT> places = layout(list, page.size);
    for (size_t i = 0; i < list.size(); ++i) {
        const Exhibit &e = list[i];
        RECT pos = places[i], panel{};
        if (e.on_face) {
            panel = {pos.left, pos.top, pos.left + kCellWidth - kMargin, pos.bottom};
            OffsetRect(&pos, (panel.right - panel.left - e.size.cx) / 2, 0);
        }
        auto h = std::make_unique<Hosted>(e.design_time ? designer : form, e.progid, pos);
        if (!h->ok()) {
            std::fwprintf(stderr, L"gallery: cannot create %ls (0x%08lx)\n", e.progid, h->create_result());
            continue;
        }
        for (const Setting &s : e.settings) h->put(s.property, s.value);
        if (std::wstring(e.progid) == L"TarnControls.grid") fill_grid(*h);
        if (std::wstring(e.progid) == L"TarnControls.dlst") fill_tree(*h);
        if (std::wstring(e.progid) == L"TarnControls.tbf") {
            h->put(L"TabCaption", Str(L"&General"), {I2(0)});
            h->put(L"TabCaption", Str(L"&Layout"), {I2(1)});
            h->put(L"TabCaption", Str(L"&Colours"), {I2(2)});
            h->put(L"TabCaption", Str(L"&Advanced"), {I2(3)});
        }
        // Controls that size themselves (a box to its font's height, a divider to its width)
        // are shown at the size they took.
        SIZEL extent{};
        if (ComPtr<IOleObject> ole = h->as<IOleObject>(IID_IOleObject);
            ole && SUCCEEDED(ole->GetExtent(DVASPECT_CONTENT, &extent)) && extent.cx > 0 && extent.cy > 0) {
            pos.right = pos.left + MulDiv(extent.cx, screen_dpi(LOGPIXELSX), 2540);
            pos.bottom = pos.top + MulDiv(extent.cy, screen_dpi(LOGPIXELSY), 2540);
        }
        page.placed.push_back({e.title, pos, std::move(h), Face::Normal, e.design_time, panel, e.popup_room > 0});
    }
    // The button wall below the exhibits: 14 looks in 4 faces.
    page.wall_top = page.size.cy + kTitle;
    place_wall(form, page.wall_top, page.placed);
    page.size.cx = std::max<int>(page.size.cx, kMargin * 2 + kWallLabel + 4 * kWallCellWidth);
    page.size.cy = page.wall_top + 14 * kWallCellHeight + kMargin + kServicesHeight;
    return page;
}

// Draws the exhibits that are not activated (the design-time faces) through IViewObject.
void draw_design_time(HDC dc, const std::vector<Placed> &placed)
{
    for (const Placed &p : placed) {
        if (!p.design_time) continue;
        ComPtr<IViewObject> view = p.control->as<IViewObject>(IID_IViewObject);
        RECTL bounds{p.pos.left, p.pos.top, p.pos.right, p.pos.bottom};
        if (view) view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr, nullptr, 0);
    }
}

// ---------------------------------------------------------------- the form's window services

enum : UINT { kOpen = 1, kSaveAs, kExit, kRefresh, kZoom100, kZoom200, kAbout };

// The form's menu bar, its resize lock and its menu text reporter, and what they report.
struct Services {
    HMENU bar = nullptr, file = nullptr;
    std::unique_ptr<Hosted> lock, menu_text;
    std::wstring status = L"Point at a menu item: its caption shows here.";
    SIZE minimum{480, 360}; // what the lock is told: the form never gets smaller
    MINMAXINFO answer{}; // what the form answers when asked for its limits
    HWND form = nullptr;
    RECT status_area{0, 0, 0, 0};
};

Services *g_services = nullptr;

HMENU make_menus(HMENU &file)
{
    file = CreatePopupMenu();
    AppendMenuW(file, MF_STRING, kOpen, L"&Open...");
    AppendMenuW(file, MF_STRING, kSaveAs, L"Save &as...");
    AppendMenuW(file, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(file, MF_STRING, kExit, L"E&xit");
    HMENU zoom = CreatePopupMenu();
    AppendMenuW(zoom, MF_STRING, kZoom100, L"&100 %");
    AppendMenuW(zoom, MF_STRING, kZoom200, L"&200 %");
    HMENU view = CreatePopupMenu();
    AppendMenuW(view, MF_STRING, kRefresh, L"&Refresh");
    AppendMenuW(view, MF_POPUP, reinterpret_cast<UINT_PTR>(zoom), L"&Zoom");
    HMENU help = CreatePopupMenu();
    AppendMenuW(help, MF_STRING, kAbout, L"&About Tarn Controls");
    HMENU bar = CreateMenu();
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(file), L"&File");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(view), L"&View");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(help), L"&Help");
    return bar;
}

// Puts the lock and the reporter on `form`, whose page is `page` pixels.
void start_services(Services &sv, Container &form, SIZE page)
{
    sv.form = form.hwnd();
    sv.bar = make_menus(sv.file);
    SetMenu(form.hwnd(), sv.bar);
    sv.status_area = {kMargin, page.cy - kMargin - 22, page.cx - kMargin, page.cy - kMargin};

    form.allow_site_call(L"IOleInPlaceSite::GetWindow"); // the lock finds its form as it loads
    sv.lock = std::make_unique<Hosted>(form, L"TarnControls.resizelck", RECT{0, 0, 0, 0});
    sv.lock->put(L"MinWidth", I4(sv.minimum.cx));
    sv.lock->put(L"MinHeight", I4(sv.minimum.cy));

    sv.menu_text = std::make_unique<Hosted>(form, L"TarnControls.mnutxt", RECT{0, 0, 0, 0});
    sv.menu_text->log().on_event = [&sv](const std::wstring &name, DISPPARAMS *params) {
        if (name != L"MENUTEXT" || !params || params->cArgs != 1) return;
        Variant text;
        VariantCopyInd(text.put(), &params->rgvarg[0]);
        sv.status = as_string(text).empty() ? L"Ready" : as_string(text);
        InvalidateRect(sv.form, &sv.status_area, TRUE);
    };
    Variant hwnd;
    V_VT(hwnd.put()) = sizeof(void *) == 8 ? VT_I8 : VT_I4;
    if (sizeof(void *) == 8) V_I8(hwnd.get()) = reinterpret_cast<LONG_PTR>(form.hwnd());
    else V_I4(hwnd.get()) = static_cast<LONG>(reinterpret_cast<LONG_PTR>(form.hwnd()));
    sv.menu_text->put(L"hwnd", hwnd);
    sv.menu_text->call(L"Subclass");

    memset(&sv.answer, 0, sizeof sv.answer);
    SendMessageW(form.hwnd(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&sv.answer));
}

void stop_services(Services &sv)
{
    if (sv.menu_text) sv.menu_text->call(L"UnSubClass"); // the host pairs Subclass and UnSubClass
    sv.menu_text.reset();
    sv.lock.reset();
    if (sv.form && IsWindow(sv.form)) SetMenu(sv.form, nullptr);
    if (sv.bar) DestroyMenu(sv.bar);
    sv.bar = nullptr;
}

void draw_services(HDC dc, const Services &sv)
{
    unique_font font(CreateFontW(-12, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, ANTIALIASED_QUALITY, 0, L"Tahoma"));
    select_guard use(dc, font.get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    wchar_t line[200];
    std::swprintf(line, 200, L"Resize lock: the form answers WM_GETMINMAXINFO with a minimum of %ld x %ld pixels.",
                  sv.answer.ptMinTrackSize.x, sv.answer.ptMinTrackSize.y);
    RECT text{sv.status_area.left, sv.status_area.top - 24, sv.status_area.right, sv.status_area.top - 4};
    DrawTextW(dc, line, -1, &text, DT_SINGLELINE | DT_BOTTOM | DT_END_ELLIPSIS);
    RECT bar = sv.status_area;
    FillRect(dc, &bar, GetSysColorBrush(COLOR_BTNFACE));
    FrameRect(dc, &bar, GetSysColorBrush(COLOR_BTNSHADOW));
    RECT inside{bar.left + 6, bar.top + 2, bar.right - 6, bar.bottom - 2};
    std::wstring shown = L"MENUTEXT: " + sv.status;
    DrawTextW(dc, shown.c_str(), -1, &inside, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
}

// Titles, and the panels some exhibits sit on.
void draw_titles(HDC dc, const std::vector<Placed> &placed)
{
    unique_font font(CreateFontW(-12, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0, ANTIALIASED_QUALITY, 0, L"Tahoma"));
    select_guard use(dc, font.get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    for (const Placed &p : placed) {
        if (!IsRectEmpty(&p.panel)) FillRect(dc, &p.panel, GetSysColorBrush(COLOR_BTNFACE));
        if (p.title.empty()) continue;
        LONG left = IsRectEmpty(&p.panel) ? p.pos.left : p.panel.left;
        RECT r{left, p.pos.top - kTitle, left + kCellWidth - kMargin, p.pos.top - 2};
        DrawTextW(dc, p.title.c_str(), -1, &r, DT_SINGLELINE | DT_BOTTOM | DT_END_ELLIPSIS);
    }
}

// The colour pop-up on the screen (a visible top-level window of this thread).
BOOL CALLBACK find_popup(HWND w, LPARAM out)
{
    wchar_t name[64] = {};
    GetClassNameW(w, name, 64);
    if (!IsWindowVisible(w) || std::wstring(name) != L"TarnControlsColourPopup") return TRUE;
    *reinterpret_cast<HWND *>(out) = w;
    return FALSE;
}

// The colour button's pop-up, opened and drawn below the button as the screen shows it.
void draw_popup(HDC dc, Placed &p)
{
    if (FAILED(p.control->activate())) return;
    p.control->call(L"ShowPopUp");
    HWND popup = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), &find_popup, reinterpret_cast<LPARAM>(&popup));
    if (popup) {
        RECT client{};
        GetClientRect(popup, &client);
        int x = p.pos.left, y = p.pos.bottom + 1;
        saved_dc keep(dc);
        SetViewportOrgEx(dc, x, y, nullptr);
        IntersectClipRect(dc, 0, 0, client.right, std::min<int>(client.bottom, kPopupRoom - 4));
        SendMessageW(popup, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT | PRF_ERASEBKGND);
        SelectClipRgn(dc, nullptr);
        RECT edge{-1, -1, client.right + 1, client.bottom + 1};
        FrameRect(dc, &edge, GetSysColorBrush(COLOR_WINDOWFRAME));
    }
    p.control->call(L"HidePopUp");
}

// The grid with the editor of each column type open over cell (1, 1): one picture each, every
// grid alone on its form (an editor closes when its grid loses the focus).
int render_editors(const std::wstring &dir)
{
    const struct {
        int code;
        const wchar_t *name, *text;
    } kinds[] = {{0, L"text", L"Plums"},        {1, L"date", L"05/03/2024"}, {2, L"imagelist", L"Pears"},
                 {3, L"check", L" a"},          {4, L"list", L"Figs"},       {5, L"percent", L"40 %"},
                 {6, L"time", L"09:41:07"}};
    int written = 0;
    for (const auto &k : kinds) {
        Container form(420, 160);
        ShowWindow(form.hwnd(), SW_SHOW);
        RECT pos{10, 10, 390, 130};
        Hosted g(form, L"TarnControls.grid", pos);
        if (!g.ok() || FAILED(g.activate())) return 1;
        fill_grid(g);
        for (const wchar_t *item : {L"Apples", L"Pears", L"Plums", L"Figs"}) {
            g.call(L"ComboAdd", {Str(item)});
            g.call(L"imgComboAdd", {Str(item)});
        }
        g.call(L"ColTypeSet", {I4(1), I4(k.code)});
        g.call(L"CellTextSet", {I4(1), I4(1), Str(k.text)});
        g.put(L"AllowGridEdit", Bool(true));
        g.call(L"GridSetFocus", {I4(1), I4(1)});
        Bitmap picture(pos.right - pos.left, pos.bottom - pos.top, GetSysColor(COLOR_WINDOW));
        RECTL bounds{0, 0, pos.right - pos.left, pos.bottom - pos.top};
        if (ComPtr<IViewObject> view = g.as<IViewObject>(IID_IViewObject))
            view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, picture.dc(), &bounds, nullptr, nullptr, 0);
        g.call(L"BoxHide");
        const std::wstring path = dir + L"\\grid-editor-" + k.name + L".png";
        if (!picture.save_png(path)) {
            std::fwprintf(stderr, L"gallery: cannot write %ls\n", path.c_str());
            return 1;
        }
        ++written;
    }
    std::wprintf(L"gallery: %d editor pictures written to %ls\n", written, dir.c_str());
    return 0;
}

int render_png(const std::wstring &path)
{
    Container form(800, 600), designer(100, 100);
    designer.set_user_mode(false);
    ShowWindow(designer.hwnd(), SW_HIDE);
    Page page = place_all(form, designer);
    Services services;
    start_services(services, form, page.size);
    // What a user pointing at File > Save as... makes the reporter say.
    SendMessageW(form.hwnd(), WM_MENUSELECT, MAKEWPARAM(kSaveAs, MF_HILITE | MF_MOUSESELECT),
                 reinterpret_cast<LPARAM>(services.file));
    Bitmap picture(page.size.cx, page.size.cy, GetSysColor(COLOR_WINDOW));
    draw_titles(picture.dc(), page.placed);
    draw_wall_labels(picture.dc(), page.wall_top);
    draw_services(picture.dc(), services);
    stop_services(services);
    for (Placed &p : page.placed) {
        ComPtr<IViewObject> view = p.control->as<IViewObject>(IID_IViewObject);
        RECTL bounds{p.pos.left, p.pos.top, p.pos.right, p.pos.bottom};
        // The pressed face: a real press on the button's window, held while it is drawn.
        HWND w = nullptr;
        if (p.face == Face::Pressed && SUCCEEDED(p.control->activate()) && (w = p.control->hwnd()))
            SendMessageW(w, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        if (view) view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, picture.dc(), &bounds, nullptr, nullptr, 0);
        if (w) SendMessageW(w, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
        if (p.popup) draw_popup(picture.dc(), p);
    }
    if (!picture.save_png(path)) {
        std::fwprintf(stderr, L"gallery: cannot write %ls\n", path.c_str());
        return 1;
    }
    std::wprintf(L"gallery: %zu controls rendered to %ls\n", page.placed.size(), path.c_str());
    return 0;
}

Page *g_page = nullptr;

LRESULT CALLBACK page_proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp)
{
    if (msg == WM_PAINT && g_page) {
        PAINTSTRUCT ps;
        HDC dc = BeginPaint(hwnd, &ps);
        draw_titles(dc, g_page->placed);
        draw_wall_labels(dc, g_page->wall_top);
        draw_design_time(dc, g_page->placed);
        if (g_services) draw_services(dc, *g_services);
        EndPaint(hwnd, &ps);
        return 0;
    }
    if (msg == WM_COMMAND && LOWORD(wp) == kExit) PostMessageW(hwnd, WM_CLOSE, 0, 0);
    if (msg == WM_CLOSE && g_services) stop_services(*g_services); // before the form goes
    if (msg == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcW(hwnd, msg, wp, lp);
}

int run_window()
{
    Container form(800, 600), designer(100, 100);
    designer.set_user_mode(false);
    ShowWindow(designer.hwnd(), SW_HIDE);
    SetWindowTextW(form.hwnd(), L"Tarn Controls gallery");
    // The page's own procedure goes in first: the window services hook over it.
    SetWindowLongPtrW(form.hwnd(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&page_proc));
    Page page = place_all(form, designer);
    g_page = &page;
    Services services;
    start_services(services, form, page.size);
    g_services = &services;
    RECT r{0, 0, page.size.cx, page.size.cy};
    AdjustWindowRect(&r, WS_OVERLAPPEDWINDOW, TRUE);
    SetWindowPos(form.hwnd(), nullptr, 40, 40, r.right - r.left, r.bottom - r.top, SWP_NOZORDER);
    for (Placed &p : page.placed)
        if (!p.design_time) p.control->activate();
    ShowWindow(form.hwnd(), SW_SHOW);
    MSG m;
    while (GetMessageW(&m, nullptr, 0, 0) > 0) {
        TranslateMessage(&m);
        DispatchMessageW(&m);
    }
    stop_services(services);
    g_services = nullptr;
    g_page = nullptr;
    return 0;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    SetProcessDPIAware();
    if (FAILED(OleInitialize(nullptr))) return 2;
    int rc = argc == 3 && std::wstring(argv[1]) == L"--png"       ? render_png(argv[2])
             : argc == 3 && std::wstring(argv[1]) == L"--editors" ? render_editors(argv[2])
                                                                  : run_window();
    OleUninitialize();
    return rc;
}
