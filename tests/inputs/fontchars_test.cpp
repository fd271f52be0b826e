// The font and character picker through the real DLL: persistence, bad input, the grid holding
// only what the font has (checked against the platform's glyph look-up of the test's own), the
// keys and typing with real input, and its picture at the screen's resolution. The fonts come
// from the picker's own list, so no test depends on a font a machine may lack.
#include <gtest/gtest.h>

#include <windows.h>

#include <cmath>

#include "foundation/color_translate.h"
#include "support/control_test.h"
#include "support/real_input.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.fontchars";

// Whether `face` has a glyph of its own for `cp`, asked of the platform directly (and whether
// it is a font that scales).
bool has_glyph(const std::wstring &face, wchar_t cp, bool *scales = nullptr)
{
    HDC dc = GetDC(nullptr);
    HFONT f = CreateFontW(-20, 0, 0, 0, 0, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, face.c_str());
    HGDIOBJ old = SelectObject(dc, f);
    WORD glyph = 0xFFFF;
    GetGlyphIndicesW(dc, &cp, 1, &glyph, GGI_MARK_NONEXISTING_GLYPHS);
    TEXTMETRICW tm{};
    GetTextMetricsW(dc, &tm);
    if (scales) *scales = (tm.tmPitchAndFamily & (TMPF_TRUETYPE | TMPF_VECTOR)) != 0;
    SelectObject(dc, old);
    DeleteObject(f);
    ReleaseDC(nullptr, dc);
    return glyph != 0xFFFF;
}

class PickerTest : public ControlTest {
protected:
    Hosted &picker(bool active = false)
    {
        Hosted &h = place(kProgId, {10, 10, 410, 250});
        if (active) {
            EXPECT_EQ(S_OK, h.activate());
            allow_focus(h);
        }
        return h;
    }
    // The picker's font list as its combo box holds it.
    static std::vector<std::wstring> fonts(Hosted &h)
    {
        std::vector<std::wstring> out;
        HWND combo = font_list(h);
        for (LRESULT i = 0, n = SendMessageW(combo, CB_GETCOUNT, 0, 0); i < n; ++i) {
            wchar_t buf[LF_FACESIZE + 1] = {};
            SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(buf));
            out.push_back(buf);
        }
        return out;
    }
    // The font list: the left one of the picker's two lists.
    static HWND font_list(Hosted &h)
    {
        HWND best = nullptr;
        RECT best_r{};
        for (HWND c = FindWindowExW(h.hwnd(), nullptr, L"ComboBox", nullptr); c;
             c = FindWindowExW(h.hwnd(), c, L"ComboBox", nullptr)) {
            RECT r{};
            GetWindowRect(c, &r);
            if (!best || r.left < best_r.left) best = c, best_r = r;
        }
        return best;
    }
    // A font of the list that has the Latin letters and something after Basic Latin, one that
    // scales when there is one.
    static std::wstring latin_font(Hosted &h)
    {
        std::wstring any;
        for (const std::wstring &f : fonts(h)) {
            bool scales = false;
            if (!has_glyph(f, L'A', &scales) || !has_glyph(f, L'z') || !has_glyph(f, 0xE9)) continue;
            if (scales) return f;
            if (any.empty()) any = f;
        }
        return any;
    }
    static std::wstring events(Hosted &h)
    {
        std::wstring all;
        for (const std::wstring &e : h.log().event_names()) all += (all.empty() ? L"" : L" ") + e;
        h.log().clear_events();
        return all;
    }
    static long code(Hosted &h) { return static_cast<long>(as_integer(h.get(L"CharCode"))); }
    // The bottom of the font list, in the picker's window.
    static int font_list_bottom(Hosted &h)
    {
        RECT r{};
        GetWindowRect(font_list(h), &r);
        MapWindowPoints(nullptr, h.hwnd(), reinterpret_cast<POINT *>(&r), 2);
        return r.bottom;
    }
};

} // namespace

TEST_F(PickerTest, ItsListHoldsTheFilteredScreenFontsAndItsChoicesAreSavedAndRestored)
{
    Hosted &h = picker(true);
    std::vector<std::wstring> list = fonts(h);
    ASSERT_FALSE(list.empty());
    for (const std::wstring &f : list) {
        EXPECT_NE(L'@', f[0]);
        EXPECT_NE(L" CYR", f.size() > 4 ? f.substr(f.size() - 4) : L"");
    }
    EXPECT_EQ(65, code(h));
    EXPECT_EQ(L"A", as_string(h.get(L"Character")));
    EXPECT_FLOAT_EQ(12, static_cast<float>(as_double(h.get(L"FontSize"))));
    EXPECT_TRUE(h.save_bag()->keys().empty()); // the default font is no choice of the user's
    const std::wstring font = latin_font(h);
    ASSERT_FALSE(font.empty());
    h.put(L"FontName", Str(font));
    h.put(L"Character", Str(L"\u00e9"));
    h.put(L"FontSize", R4(20));
    EXPECT_EQ((std::vector<std::wstring>{L"FONTNAME", L"CHARCODE", L"FONTSIZE"}), h.log().changes);
    EXPECT_EQ(L"", events(h)); // code's writes raise no events
    ComPtr<Bag> bag = h.save_bag();
    EXPECT_EQ((std::vector<std::wstring>{L"FONTNAME", L"CHARCODE", L"FONTSIZE"}), bag->writes);
    ComPtr<IStream> stream = h.save_stream();
    for (Hosted *loaded : {&place(kProgId, {10, 260, 410, 500}, Init::FromBag, bag.get()),
                           &place(kProgId, {420, 10, 820, 250}, Init::FromStream, stream.get())}) {
        EXPECT_EQ(font, as_string(loaded->get(L"FontName")));
        EXPECT_EQ(0xE9, code(*loaded));
        EXPECT_FLOAT_EQ(20, static_cast<float>(as_double(loaded->get(L"FontSize"))));
    }
}

TEST_F(PickerTest, ValuesThatAreNoCharacterOrSizeAreRefused)
{
    Hosted &h = picker();
    for (long bad : {-1L, 0x110000L, static_cast<long>(INT32_MIN)}) h.put(L"CharCode", I4(bad));
    h.put(L"Character", Str(L""));
    h.put(L"Character", Str(std::wstring(1, static_cast<wchar_t>(0xDC00))));
    EXPECT_EQ(65, code(h));
    for (float bad : {0.0f, -5.0f, 1e9f, NAN}) h.put(L"FontSize", R4(bad));
    EXPECT_FLOAT_EQ(12, static_cast<float>(as_double(h.get(L"FontSize"))));
    // Beyond the fonts' plane, a character is kept as chosen text all the same.
    h.put(L"Character", Str(L"\U0001F600"));
    EXPECT_EQ(0x1F600, code(h));
    EXPECT_EQ(L"\U0001F600", as_string(h.get(L"Character")));
    // A font the screen does not have: kept by name, nothing in the grid, still drawn.
    h.put(L"FontName", Str(L"No Such Font Anywhere"));
    EXPECT_EQ(L"No Such Font Anywhere", as_string(h.get(L"FontName")));
    h.render(400, 240);
    h.put(L"FontName", Str(std::wstring(5000, L'f')));
    h.call(L"RefreshFonts");
    h.render(400, 240);
}

TEST_F(PickerTest, RealKeysAndTypingMoveThroughOnlyTheCharactersTheFontHas)
{
    Hosted &h = picker(true);
    const std::wstring font = latin_font(h);
    ASSERT_FALSE(font.empty());
    h.put(L"FontName", Str(font));
    h.put(L"CharCode", I4('A'));
    // A click on the grid's first cell picks the character shown there and gives the grid the
    // focus; Ctrl+Home goes to the font's first character, the space.
    h.log().clear_events();
    real_click(h.hwnd(), {12, font_list_bottom(h) + 12});
    ASSERT_TRUE(pump_until([&] { return GetFocus() == h.hwnd(); }));
    EXPECT_EQ(code(h) == 'A' ? L"MouseMove MouseDown MouseUp Click" : L"MouseMove MouseDown CharSelect MouseUp Click",
              events(h));
    real_keys({VK_CONTROL, VK_HOME});
    pump_until([&] { return code(h) == 0x20; });
    ASSERT_EQ(0x20, code(h));
    // The character after Basic Latin is the next one the font really has (the test asks the
    // platform itself, skipping the control characters).
    wchar_t after = 0x7F;
    while (after < 0xFFFF && (after <= 0x9F || !has_glyph(font, after))) ++after;
    const struct {
        std::initializer_list<WORD> keys;
        long expected;
    } moves[] = {{{VK_RIGHT}, 0x21}, {{VK_END}, 0x7E}, {{VK_RIGHT}, after}, {{VK_LEFT}, 0x7E},
                 {{VK_HOME}, 0x20},  {{VK_CONTROL, VK_NEXT}, after}, {{VK_CONTROL, VK_PRIOR}, 0x20}};
    h.log().clear_events();
    for (const auto &m : moves) {
        real_keys(m.keys);
        pump_until([&] { return code(h) == m.expected; }, 2000);
        EXPECT_EQ(m.expected, code(h));
    }
    EXPECT_EQ(L"CharSelect CharSelect CharSelect CharSelect CharSelect CharSelect CharSelect", events(h));
    real_text(L"Z");
    pump_until([&] { return code(h) == 'Z'; }, 2000);
    EXPECT_EQ('Z', code(h));
    // Typing a name's first letters in the font list picks that font.
    std::vector<std::wstring> list = fonts(h);
    size_t target = 0;
    while (target < list.size() && (list[target].size() < 2 || list[target] == font)) ++target;
    ASSERT_LT(target, list.size());
    const std::wstring prefix = list[target].substr(0, 2);
    size_t expected = 0;
    while (expected < list.size() && CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, list[expected].c_str(), 2,
                                                    prefix.c_str(), 2) != CSTR_EQUAL)
        ++expected;
    SetFocus(font_list(h));
    h.log().clear_events();
    real_text(prefix);
    pump_until([&] { return as_string(h.get(L"FontName")) == list[expected]; }, 2000);
    EXPECT_EQ(list[expected], as_string(h.get(L"FontName")));
    EXPECT_EQ(0, events(h).find(L"FontChange"));
}

TEST_F(PickerTest, PicturesShowTheChosenCellAndThePreviewAtTheScreensResolution)
{
    const int dpi = [] {
        HDC dc = GetDC(nullptr);
        int d = GetDeviceCaps(dc, LOGPIXELSY);
        ReleaseDC(nullptr, dc);
        return d;
    }();
    Hosted &h = place(kProgId, {10, 10, 10 + MulDiv(400, dpi, 96), 10 + MulDiv(240, dpi, 96)});
    ASSERT_EQ(S_OK, h.activate());
    const std::wstring font = latin_font(h);
    ASSERT_FALSE(font.empty());
    h.put(L"FontName", Str(font));
    h.put(L"CharCode", I4('M'));
    Bitmap pic = h.render(MulDiv(400, dpi, 96), MulDiv(240, dpi, 96));
    pic.save_png(output_path(L"fontchars-" + std::to_wstring(dpi) + L"dpi.png"));
    // The chosen cell in the highlight colour: at least a cell of the smallest size.
    const int cell = MulDiv(16, dpi, 96) - 2;
    EXPECT_GE(pic.count(GetSysColor(COLOR_HIGHLIGHT)), cell * cell / 2);
    // The preview's glyph: ink in the right third, below the lists.
    int ink = 0;
    for (int y = MulDiv(40, dpi, 96); y < pic.height(); ++y)
        for (int x = pic.width() * 2 / 3; x < pic.width(); ++x)
            if (pic.pixel(x, y) == GetSysColor(COLOR_WINDOWTEXT)) ++ink;
    EXPECT_GT(ink, MulDiv(40, dpi, 96));
}
