#include "inputs/fontchars.h"

#include <cmath>
#include <cstdio>
#include <stdexcept>

#include "foundation/font_object.h"
#include "foundation/handles.h"
#include "foundation/metrics.h"
#include "foundation/modLIBTXT.h"

namespace tarn {

const ControlClass fontchars::Class = {
    L"fontchars",
    L"Tarn Controls font and character picker",
    &CLSID_fontchars,
    &IID_Ifontchars,
    &DIID_IfontcharsEvents,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST,
    &fontchars::Create,
    true, // reads the list of installed fonts and draws them; opens no file, touches no other window
};

namespace {

// The picker's own events beyond the common five.
constexpr DISPID kFontChange = 6, kCharSelect = 7;
constexpr uint32_t kDefaultChar = 'A';
constexpr float kDefaultSize = 12;

void solid(HDC dc, const RECT &r, COLORREF c)
{
    SetBkColor(dc, c);
    ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &r, nullptr, 0, nullptr);
}

std::wstring code_text(uint32_t cp)
{
    wchar_t buf[16];
    std::swprintf(buf, 16, L"U+%04X", cp);
    return buf;
}

} // namespace

fontchars::fontchars()
    : cboFONT(L"cboFONT", 60, 60, 3000, 2400, 2), cboBLOCK(L"cboBLOCK", 3120, 60, 2820, 2400, 2),
      vsbGRID(L"vsbGRID", 3600, 480, 255, 2700)
{
    add_constituent(cboFONT);
    add_constituent(cboBLOCK);
    add_constituent(vsbGRID);
    cboFONT.on_click = [this] {
        if (quiet_) return;
        int32_t i = cboFONT.ListIndex();
        if (i < 0) return;
        font_name_ = cboFONT.List(i);
        load_font(true);
    };
    // The first letters of a name pick a font; the list's own one-letter search stays out.
    cboFONT.on_key_press = [this](int16_t &ascii) {
        if (ascii < 32) return;
        std::wstring typed = typed_.Key(static_cast<wchar_t>(ascii), GetMessageTime());
        int i = FindByPrefix(fonts_, typed);
        if (i >= 0 && i != cboFONT.ListIndex()) step([&] { cboFONT.SetListIndex(i); });
        ascii = 0;
    };
    cboBLOCK.on_click = [this] {
        if (quiet_) return;
        int32_t b = cboBLOCK.ListIndex();
        if (b >= 0 && b < grid_.BlockCount()) choose(grid_.Chars(b).front(), true);
    };
    vsbGRID.on_change = [this] {
        top_row_ = vsbGRID.Value();
        Invalidate();
    };
}

void fontchars::Initialize()
{
    SetDesignSize(6000, 3600);
    step([&] { fill_fonts(); });
    step([&] { load_font(false); });
    layout();
}

// ---------------------------------------------------------------- persistence

void fontchars::InitProperties()
{
    font_name_.clear();
    char_code_ = kDefaultChar;
    font_size_ = kDefaultSize;
    step([&] { load_font(false); });
    layout();
}

void fontchars::ReadProperties(PropertyBag &bag)
{
    step([&] { font_name_ = bag.read_string(L"FONTNAME", L""); });
    step([&] {
        int32_t cp = bag.read_long(L"CHARCODE", static_cast<int32_t>(kDefaultChar));
        char_code_ = cp >= 0 && cp <= 0x10FFFF ? static_cast<uint32_t>(cp) : kDefaultChar;
    });
    step([&] {
        float size = bag.read_single(L"FONTSIZE", kDefaultSize);
        font_size_ = size > 0 && size <= 500 ? size : kDefaultSize;
    });
    step([&] { load_font(false); });
    layout();
}

void fontchars::WriteProperties(PropertyBag &bag)
{
    step([&] { bag.write_string(L"FONTNAME", font_name_, std::wstring()); });
    step([&] { bag.write_long(L"CHARCODE", static_cast<int32_t>(char_code_), static_cast<int32_t>(kDefaultChar)); });
    step([&] { bag.write_single(L"FONTSIZE", font_size_, kDefaultSize); });
}

// ---------------------------------------------------------------- fonts and blocks

void fontchars::fill_fonts()
{
    FillFontList(cboFONT.hWnd());
    fonts_.clear();
    for (int32_t i = 0, n = cboFONT.ListCount(); i < n; ++i) fonts_.push_back(cboFONT.List(i));
}

std::wstring fontchars::shown_font() const
{
    if (!font_name_.empty()) return font_name_;
    // The form's font when the list has it, else the first of the list.
    std::wstring ambient = read_step<std::wstring>([&] {
        return FontSpecOf(const_cast<fontchars *>(this)->Ambient().Font().get()).name;
    });
    for (const std::wstring &f : fonts_)
        if (SameTextAnyCase(f, ambient)) return f;
    return fonts_.empty() ? ambient : fonts_.front();
}

void fontchars::load_font(bool user)
{
    const std::wstring face = shown_font();
    coverage_ = CoverageOf(face);
    grid_ = CharGrid(coverage_.code_points);
    hot_ = -1;
    quiet_ = true;
    step([&] {
        int found = -1;
        for (size_t i = 0; i < fonts_.size() && found < 0; ++i)
            if (SameTextAnyCase(fonts_[i], face)) found = static_cast<int>(i);
        cboFONT.SetListIndex(found);
    });
    quiet_ = false;
    fill_blocks();
    if (user) raise(kFontChange);
    // The chosen character stays when the new font has it; otherwise the font's first one.
    if (grid_.Find(char_code_).block < 0 && !grid_.empty()) choose(grid_.Chars(0).front(), user);
    else choose(char_code_, false);
    scroll_to_choice();
    AccessibleChanged(EVENT_OBJECT_VALUECHANGE);
    Invalidate();
}

void fontchars::fill_blocks()
{
    quiet_ = true;
    step([&] {
        cboBLOCK.Clear();
        for (int b = 0; b < grid_.BlockCount(); ++b) cboBLOCK.AddItem(grid_.BlockName(b));
    });
    quiet_ = false;
}

void fontchars::choose(uint32_t code_point, bool user)
{
    const bool changed = code_point != char_code_;
    char_code_ = code_point;
    const GridSpot spot = grid_.Find(code_point);
    quiet_ = true;
    step([&] {
        if (spot.block != cboBLOCK.ListIndex()) cboBLOCK.SetListIndex(spot.block);
    });
    quiet_ = false;
    scroll_to_choice();
    Invalidate();
    if (!changed) return;
    AccessibleChanged(EVENT_OBJECT_VALUECHANGE);
    if (user) raise(kCharSelect);
}

void fontchars::scroll_to_choice()
{
    const GridSpot spot = grid_.Find(char_code_);
    const Geometry g = geometry();
    top_row_ = spot.block < 0 ? 0 : RowInView(spot.index, g.columns, top_row_, g.rows);
    scroll_dirty_ = true; // the scroll bar follows when the grid next paints
}

// ---------------------------------------------------------------- layout

fontchars::Geometry fontchars::geometry() const
{
    Geometry g;
    const int dpi = ScreenDpiY(), w = PixelWidth(), h = PixelHeight();
    const int m = MulDiv(4, dpi, 96);
    const int combo = static_cast<int>(std::lround(cboFONT.Height() / TwipsPerPixelY()));
    const int top = m + combo + m;
    const int text_h = MulDiv(16, dpi, 96);
    const int side = std::max(0, std::min({MulDiv(96, dpi, 96), w / 3, h - top - m - text_h}));
    const int bar = GetSystemMetrics(SM_CXVSCROLL);
    g.preview = RECT{w - m - side, top, w - m, top + side};
    g.code = RECT{g.preview.left, g.preview.bottom + 2, g.preview.right, g.preview.bottom + 2 + text_h};
    g.grid = RECT{m, top, std::max(m, static_cast<int>(g.preview.left) - m - bar), std::max(top, h - m)};
    g.cell = std::max(static_cast<int>(std::ceil(font_size_ * dpi / 72.0 * 1.5)), MulDiv(16, dpi, 96));
    g.columns = std::max(1, static_cast<int>((g.grid.right - g.grid.left) / g.cell));
    g.rows = std::max(1, static_cast<int>((g.grid.bottom - g.grid.top) / g.cell));
    return g;
}

void fontchars::Resize() { layout(); }

void fontchars::layout()
{
    const Geometry g = geometry();
    const Scale s = scale();
    const int dpi = ScreenDpiY(), m = MulDiv(4, dpi, 96), w = PixelWidth();
    const int font_w = std::max((w - 3 * m) * 3 / 5, 0);
    auto twx = [&](int px) { return static_cast<float>(px * s.tppx); };
    auto twy = [&](int px) { return static_cast<float>(px * s.tppy); };
    step([&] { cboFONT.Move(twx(m), twy(m), twx(font_w), twy(300)); });
    step([&] { cboBLOCK.Move(twx(2 * m + font_w), twy(m), twx(std::max(w - 3 * m - font_w, 0)), twy(300)); });
    step([&] {
        vsbGRID.Move(twx(g.grid.right), twy(g.grid.top), twx(GetSystemMetrics(SM_CXVSCROLL)),
                     twy(g.grid.bottom - g.grid.top));
    });
    scroll_to_choice();
    Invalidate();
}

// ---------------------------------------------------------------- drawing

HFONT fontchars::glyph_font(int pixels) const
{
    LOGFONTW lf{};
    lf.lfHeight = -std::max(pixels, 1);
    lf.lfCharSet = DEFAULT_CHARSET;
    lf.lfQuality = ANTIALIASED_QUALITY;
    std::wstring face = shown_font();
    face.copy(lf.lfFaceName, std::min<size_t>(face.size(), LF_FACESIZE - 1));
    return CreateFontIndirectW(&lf);
}

void fontchars::DrawSurface(HDC dc, const Scale &)
{
    const Geometry g = geometry();
    if (scroll_dirty_) {
        // Brought up to date here, when the grid paints, not in the property write that moved it.
        scroll_dirty_ = false;
        const GridSpot spot = grid_.Find(char_code_);
        const int count = spot.block >= 0 ? static_cast<int>(grid_.Chars(spot.block).size()) : 0;
        const int rows = (count + g.columns - 1) / g.columns;
        step([&] { vsbGRID.SetLargeChange(g.rows); });
        step([&] { vsbGRID.SetRange(0, std::max(rows - g.rows, 0)); });
        step([&] { vsbGRID.SetValue(top_row_); });
        top_row_ = vsbGRID.Value();
    }
    draw_grid(dc, g);
    draw_preview(dc, g);
}

void fontchars::draw_grid(HDC dc, const Geometry &g)
{
    saved_dc keep(dc);
    solid(dc, g.grid, GetSysColor(COLOR_WINDOW));
    IntersectClipRect(dc, g.grid.left, g.grid.top, g.grid.right, g.grid.bottom);
    const GridSpot spot = grid_.Find(char_code_);
    if (spot.block < 0) {
        std::wstring note = coverage_.installed ? L"" : L"The font \"" + shown_font() + L"\" is not installed.";
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
        RECT r = g.grid;
        DrawTextW(dc, note.c_str(), -1, &r, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS);
        return;
    }
    unique_font font(glyph_font(g.cell * 2 / 3));
    select_guard use(dc, font.get());
    SetBkMode(dc, TRANSPARENT);
    const std::vector<uint32_t> &chars = grid_.Chars(spot.block);
    const int first = top_row_ * g.columns;
    const int last = std::min(static_cast<int>(chars.size()), first + (g.rows + 1) * g.columns);
    const COLORREF line = GetSysColor(COLOR_3DLIGHT);
    // Only the rows on screen are drawn.
    for (int i = std::max(first, 0); i < last; ++i) {
        const int col = (i - first) % g.columns, row = (i - first) / g.columns;
        RECT cell{g.grid.left + col * g.cell, g.grid.top + row * g.cell, g.grid.left + (col + 1) * g.cell,
                  g.grid.top + (row + 1) * g.cell};
        const uint32_t cp = chars[static_cast<size_t>(i)];
        const bool chosen = cp == char_code_;
        if (chosen) solid(dc, RECT{cell.left, cell.top, cell.right - 1, cell.bottom - 1}, GetSysColor(COLOR_HIGHLIGHT));
        solid(dc, RECT{cell.right - 1, cell.top, cell.right, cell.bottom}, line);
        solid(dc, RECT{cell.left, cell.bottom - 1, cell.right, cell.bottom}, line);
        WORD glyph = coverage_.GlyphOf(cp);
        SIZE size{};
        GetTextExtentPointI(dc, &glyph, 1, &size);
        SetTextColor(dc, GetSysColor(chosen ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
        ExtTextOutW(dc, (cell.left + cell.right - 1 - size.cx) / 2, (cell.top + cell.bottom - 1 - size.cy) / 2,
                    ETO_GLYPH_INDEX | ETO_CLIPPED, &cell, reinterpret_cast<LPCWSTR>(&glyph), 1, nullptr);
        if (chosen && focused()) {
            RECT f{cell.left + 1, cell.top + 1, cell.right - 2, cell.bottom - 2};
            SetTextColor(dc, GetSysColor(COLOR_HIGHLIGHTTEXT));
            SetBkColor(dc, GetSysColor(COLOR_HIGHLIGHT));
            DrawFocusRect(dc, &f);
        }
        if (static_cast<int32_t>(cp) == hot_ && !chosen) {
            unique_brush hot(CreateSolidBrush(GetSysColor(COLOR_HOTLIGHT)));
            RECT f{cell.left, cell.top, cell.right - 1, cell.bottom - 1};
            FrameRect(dc, &f, hot.get());
        }
    }
}

void fontchars::draw_preview(HDC dc, const Geometry &g)
{
    if (g.preview.right <= g.preview.left || g.preview.bottom <= g.preview.top) return;
    saved_dc keep(dc);
    solid(dc, g.preview, GetSysColor(COLOR_WINDOW));
    unique_brush frame(CreateSolidBrush(GetSysColor(COLOR_BTNSHADOW)));
    FrameRect(dc, &g.preview, frame.get());
    const uint32_t cp = hot_ >= 0 ? static_cast<uint32_t>(hot_) : char_code_;
    WORD glyph = coverage_.GlyphOf(cp);
    SetBkMode(dc, TRANSPARENT);
    if (glyph != 0xFFFF) {
        unique_font big(glyph_font((g.preview.bottom - g.preview.top) * 3 / 4));
        select_guard use(dc, big.get());
        SIZE size{};
        GetTextExtentPointI(dc, &glyph, 1, &size);
        SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
        ExtTextOutW(dc, (g.preview.left + g.preview.right - size.cx) / 2, (g.preview.top + g.preview.bottom - size.cy) / 2,
                    ETO_GLYPH_INDEX | ETO_CLIPPED, &g.preview, reinterpret_cast<LPCWSTR>(&glyph), 1, nullptr);
    }
    HFONT label = nullptr;
    if (ComPtr<IFont> f = cboFONT.Font().as<IFont>(IID_IFont)) f->get_hFont(&label);
    if (label) SelectObject(dc, label);
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    RECT r = g.code;
    const std::wstring text = code_text(cp);
    DrawTextW(dc, text.c_str(), -1, &r, DT_CENTER | DT_TOP | DT_SINGLELINE);
}

// ---------------------------------------------------------------- the mouse and the keys

int32_t fontchars::char_at(int x, int y) const
{
    const Geometry g = geometry();
    POINT p{x, y};
    if (!PtInRect(&g.grid, p)) return -1;
    const GridSpot spot = grid_.Find(char_code_);
    if (spot.block < 0) return -1;
    const int col = (x - g.grid.left) / g.cell, row = (y - g.grid.top) / g.cell;
    if (col >= g.columns) return -1;
    const int i = (top_row_ + row) * g.columns + col;
    const std::vector<uint32_t> &chars = grid_.Chars(spot.block);
    return i >= 0 && i < static_cast<int>(chars.size()) ? static_cast<int32_t>(chars[static_cast<size_t>(i)]) : -1;
}

void fontchars::set_hot(int32_t cp)
{
    if (cp == hot_) return;
    hot_ = cp;
    Invalidate();
}

void fontchars::MouseDown(int16_t button, int16_t sh, float x, float y)
{
    raise_mouse(events::MouseDown, button, sh, x, y);
    if (button != mouse::Left) return;
    const Scale s = scale();
    int32_t cp = char_at(static_cast<int>(x / s.tppx), static_cast<int>(y / s.tppy));
    if (cp >= 0) choose(static_cast<uint32_t>(cp), true);
}

void fontchars::MouseMove(int16_t button, int16_t sh, float x, float y)
{
    raise_mouse(events::MouseMove, button, sh, x, y);
    const Scale s = scale();
    set_hot(char_at(static_cast<int>(x / s.tppx), static_cast<int>(y / s.tppy)));
    TrackMouseLeave();
}

void fontchars::MouseUp(int16_t button, int16_t sh, float x, float y) { raise_mouse(events::MouseUp, button, sh, x, y); }
void fontchars::Click() { raise(events::Click); }
void fontchars::DblClick() { raise(events::DblClick); }

void fontchars::KeyDown(int16_t &code, int16_t sh)
{
    const GridSpot spot = grid_.Find(char_code_);
    if (spot.block < 0) return;
    const Geometry g = geometry();
    const GridSpot to = grid_.Move(spot, code, (sh & shift::Ctrl) != 0, g.columns, g.rows);
    if (to == spot) return;
    hot_ = -1; // the keys' choice shows in the preview
    choose(grid_.At(to), true);
}

void fontchars::KeyPress(int16_t &ascii)
{
    // A character typed on the grid picks it, when the font has it.
    if (ascii < 32) return;
    const uint32_t cp = static_cast<uint16_t>(ascii);
    if (grid_.Find(cp).block >= 0) choose(cp, true);
}

LRESULT fontchars::OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled)
{
    handled = false;
    switch (msg) {
    case WM_MOUSEWHEEL: {
        const int notches = GET_WHEEL_DELTA_WPARAM(wp) / WHEEL_DELTA;
        step([&] { vsbGRID.SetValue(vsbGRID.Value() - 3 * notches); });
        handled = true;
        return 0;
    }
    default:
        return 0;
    }
}

bool fontchars::focused() const
{
    HWND w = hWnd();
    return w && GetFocus() == w;
}

// ---------------------------------------------------------------- accessibility

std::wstring fontchars::AccessibleValue()
{
    return CodePointText(char_code_) + L" (" + code_text(char_code_) + L"), " + shown_font();
}

// ---------------------------------------------------------------- properties and methods

STDMETHODIMP fontchars::get_CharCode(long *v) { return get_value(v, [&] { return static_cast<long>(char_code_); }); }
STDMETHODIMP fontchars::put_CharCode(long v)
{
    return put_value(L"CHARCODE", [&] {
        if (v < 0 || v > 0x10FFFF) throw std::out_of_range("not a code point");
        choose(static_cast<uint32_t>(v), false);
    });
}

STDMETHODIMP fontchars::get_Character(BSTR *v) { return get_string(v, [&] { return CodePointText(char_code_); }); }
STDMETHODIMP fontchars::put_Character(BSTR v)
{
    // Saved through CHARCODE: the character is the code point as text.
    return put_value(L"CHARCODE", [&] {
        int32_t cp = FirstCodePoint(from_bstr(v));
        if (cp < 0) throw std::invalid_argument("no character");
        choose(static_cast<uint32_t>(cp), false);
    });
}

STDMETHODIMP fontchars::get_FontName(BSTR *v) { return get_string(v, [&] { return shown_font(); }); }
STDMETHODIMP fontchars::put_FontName(BSTR v)
{
    return put_value(L"FONTNAME", [&] {
        font_name_ = from_bstr(v);
        load_font(false);
    });
}

STDMETHODIMP fontchars::get_FontSize(float *v) { return get_value(v, [&] { return font_size_; }); }
STDMETHODIMP fontchars::put_FontSize(float v)
{
    return put_value(L"FONTSIZE", [&] {
        if (!(v > 0 && v <= 500)) throw std::out_of_range("size");
        font_size_ = v;
        scroll_to_choice();
        Invalidate();
    });
}

STDMETHODIMP fontchars::RefreshFonts()
{
    ForgetScreenFonts(); // fonts may have been installed since the list was made
    step([&] { fill_fonts(); });
    step([&] { load_font(false); });
    return S_OK;
}

STDMETHODIMP fontchars::get_hwnd(OLE_HANDLE *v) { return get_value(v, [&] { return to_ole_handle(hWnd()); }); }

} // namespace tarn
