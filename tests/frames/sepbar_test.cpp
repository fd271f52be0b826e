// The separator bars through the real DLL: sepbar's title kept trimmed with two blanks, its
// differing caption defaults and restore order, BACKCOLOR reaching the surface and both
// frames, the font moving both frames' line alike, and the pictures of both looks at either
// DPI; sepvbar's upright line; what both tell a screen reader.
#include <gtest/gtest.h>

#include "foundation/font_object.h"
#include "foundation/themes.h"
#include "frames/frame_test_helpers.h"
#include "support/fake_machine_key.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kBar[] = L"TarnControls.sepbar", kUpright[] = L"TarnControls.sepvbar";

class SepbarTest : public ControlTest {
protected:
    // The look is chosen when a bar is created: the version text is set first.
    Hosted &bar(const wchar_t *version, RECT pos = {0, 0, 200, 17}, Init init = Init::New, IUnknown *source = nullptr)
    {
        machine.set(kWindowsNtKey, L"CurrentVersion", version);
        return place(kBar, pos, init, source);
    }
    // Where the frames' line runs with the bar's font: half a line down.
    static int line_row(Hosted &b) { return text_height(V_DISPATCH(b.get(L"Font").get())) / 2; }
    FakeMachineKey machine;
};

} // namespace

TEST_F(SepbarTest, TheTitleIsKeptTrimmedWithTwoBlanksAndAnnouncedOnEveryWrite)
{
    Hosted &b = bar(L"6.1");
    EXPECT_EQ(L"TEXT SEPARATOR  ", as_string(b.get(L"CAPTION"))); // the design title, which has no blanks
    const struct {
        const wchar_t *written, *read;
    } cases[] = {
        {L"  Options  ", L"Options  "}, {L"Options", L"Options  "}, {L"", L"  "}, {L"     ", L"  "},
        {L"\tTabs stay\t ", L"\tTabs stay\t  "}, {L"Gr\u00fc\u00dfe \u65e5\u672c", L"Gr\u00fc\u00dfe \u65e5\u672c  "},
    };
    for (const auto &c : cases) {
        b.put(L"CAPTION", Str(c.written));
        EXPECT_EQ(c.read, as_string(b.get(L"CAPTION"))) << narrow(c.written);
    }
    EXPECT_EQ(std::vector<std::wstring>(std::size(cases), L"CAPTION"), b.log().changes);
    // What framMAIN shows is the text read back, blanks and all: it is what is saved.
    b.put(L"CAPTION", Str(L"  Options  "));
    EXPECT_EQ(L"Options  ", as_string(b.save_bag()->get(L"CAPTION")));
    std::wstring huge(70000, L'x');
    EXPECT_EQ(S_OK, b.put(L"CAPTION", Str(L" " + huge + L" ")));
    EXPECT_EQ(huge + L"  ", as_string(b.get(L"CAPTION")));
    EXPECT_EQ(S_OK, b.put(L"CAPTION", Variant())); // Empty converts to ""
    EXPECT_EQ(L"  ", as_string(b.get(L"CAPTION")));
}

TEST_F(SepbarTest, TheDesignTitleIsNotSavedAndComesBackEmptyAndRestoringDoesNotTrim)
{
    Hosted &b = bar(L"6.1");
    ComPtr<Bag> saved = b.save_bag();
    // "TEXT SEPARATOR" is the save default: only the font, which is always written, is stored.
    EXPECT_EQ(std::vector<std::wstring>{L"FONT"}, saved->keys());
    for (Init how : {Init::FromBag, Init::FromStream}) {
        ComPtr<IUnknown> source = how == Init::FromBag ? ComPtr<IUnknown>(saved.get()) : b.save_stream().get();
        Hosted &again = bar(L"6.1", {0, 20, 200, 37}, how, source.get());
        EXPECT_EQ(L"  ", as_string(again.get(L"CAPTION")));
        EXPECT_EQ(L"Tahoma", FontSpecOf(V_DISPATCH(again.get(L"Font").get())).name);
    }
    EXPECT_EQ((std::vector<std::wstring>{L"FONT", L"CAPTION", L"BACKCOLOR"}), saved->reads);

    // A stored caption comes back as it stands, without trimming or the two blanks; the next
    // save writes it unchanged.
    ComPtr<Bag> padded = Bag::Create();
    padded->set(L"CAPTION", Str(L"   Options"));
    Hosted &p = bar(L"6.1", {0, 40, 200, 57}, Init::FromBag, padded.get());
    EXPECT_EQ(L"Options  ", as_string(p.get(L"CAPTION")));
    EXPECT_EQ(L"   Options", as_string(p.save_bag()->get(L"CAPTION")));

    // Everything set survives both forms.
    b.put(L"CAPTION", Str(L"Totals"));
    b.put(L"BACKCOLOR", ole(0x00C0FFEE));
    b.putref(L"Font", make_font(L"Tahoma", 12, true).get());
    EXPECT_EQ((std::vector<std::wstring>{L"CAPTION", L"BACKCOLOR", L"FONT"}), b.save_bag()->writes);
    for (Init how : {Init::FromBag, Init::FromStream}) {
        ComPtr<IUnknown> source = how == Init::FromBag ? ComPtr<IUnknown>(b.save_bag().get()) : b.save_stream().get();
        Hosted &again = bar(L"6.1", {0, 60, 200, 77}, how, source.get());
        EXPECT_EQ(L"Totals  ", as_string(again.get(L"CAPTION")));
        EXPECT_EQ(0x00C0FFEEu, colour(again));
        FontSpec look = FontSpecOf(V_DISPATCH(again.get(L"Font").get()));
        EXPECT_EQ(L"Tahoma", look.name);
        EXPECT_DOUBLE_EQ(12, look.size);
        EXPECT_TRUE(look.bold);
    }
}

TEST_F(SepbarTest, BackColorReachesTheSurfaceAndBothFramesAndBadValuesAreSkipped)
{
    Hosted &b = bar(L"4.0");
    b.put(L"CAPTION", Str(L"Options"));
    const int line = line_row(b);
    b.put(L"BACKCOLOR", ole(0x000000FF));
    Bitmap red = b.render(200, 17);
    // Above the line: the spacer's area, the title's gap and framMAIN's; below it the surface.
    for (auto [x, y] : {std::pair{2, 1}, std::pair{10, 1}, std::pair{150, 1}, std::pair{150, line + 4}})
        EXPECT_EQ(0x000000FFu, red.pixel(x, y)) << x << "," << y;
    EXPECT_EQ(0x000000FFu, colour(b));
    // A value that is no colour changes nothing but is still announced.
    b.log().changes.clear();
    EXPECT_EQ(S_OK, b.put(L"BACKCOLOR", ole(0x7F000000)));
    EXPECT_EQ(S_OK, b.put(L"BACKCOLOR", Str(L"red")));
    EXPECT_EQ(0x000000FFu, colour(b));
    EXPECT_EQ(L"BACKCOLOR", joined(b.log().changes)); // the string never reached the property
    EXPECT_EQ(red.hash(), b.render(200, 17).hash());
}

TEST_F(SepbarTest, DrawsAnEtchedOrThemedLineBesideItsTitleAtEitherDpi)
{
    const Rgb face = sys(COLOR_BTNFACE), shadow = sys(COLOR_BTNSHADOW), light = sys(COLOR_BTNHIGHLIGHT);
    const int scale = screen_dpi() == 144 ? 3 : 2; // pixels per 15 twips, doubled
    for (bool themed : {false, true}) {
        SCOPED_TRACE(themed ? "themed" : "classic");
        const int width = 100 * scale, height = 17 * scale / 2;
        Hosted &b = bar(themed ? L"5.1" : L"4.0", {0, 0, width, height});
        b.put(L"CAPTION", Str(L"Options"));
        const int line = line_row(b);
        Bitmap p = b.render(width, height);
        p.save_png(output_path(std::wstring(L"sepbar-") + (themed ? L"themed-" : L"classic-") +
                               std::to_wstring(screen_dpi()) + L"dpi.png"));
        const Rgb top = themed ? FaceShade(-25) : shadow, bottom = themed ? top : light;
        // The spacer's piece of line left of the title, then the title, then the rest.
        const int spacer_end = 120 * scale / 30;
        for (int x : {0, spacer_end - 1, width - 1}) {
            EXPECT_EQ(top, p.pixel(x, line)) << x;
            EXPECT_EQ(bottom, p.pixel(x, line + 1)) << x;
            EXPECT_EQ(face, p.pixel(x, line + 2)) << x;
            EXPECT_EQ(face, p.pixel(x, line - 1)) << x;
        }
        // The title's gap interrupts the line; its text is drawn there.
        int gap_line = 0, text = 0;
        for (int x = spacer_end; x < spacer_end + 40 * scale / 2; ++x) {
            if (p.pixel(x, line) == face) ++gap_line;
            for (int y = 0; y < height; ++y) text += p.pixel(x, y) == sys(COLOR_BTNTEXT);
        }
        EXPECT_GT(gap_line, 5);
        EXPECT_GT(text, 20);
        // The same picture from the bar's own window.
        b.activate();
        EXPECT_EQ(p.hash(), b.capture().hash());
    }
}

TEST_F(SepbarTest, ABiggerFontMovesBothFramesLinesAlike)
{
    Hosted &b = bar(L"4.0", {0, 0, 200, 40});
    b.put(L"CAPTION", Str(L"Big"));
    b.putref(L"Font", make_font(L"Tahoma", 20).get());
    EXPECT_EQ(L"CAPTION FONT", joined(b.log().changes));
    const int line = line_row(b);
    ASSERT_GT(line, 10);
    Bitmap p = b.render(200, 40);
    for (int x : {1, 199}) EXPECT_EQ(sys(COLOR_BTNSHADOW), p.pixel(x, line)) << x;
    // Something that is not a font leaves the font as it was.
    EXPECT_EQ(S_OK, b.put(L"Font", Str(L"Arial")));
    EXPECT_EQ(L"Tahoma", FontSpecOf(V_DISPATCH(b.get(L"Font").get())).name);
}

TEST_F(SepbarTest, TheUprightBarIsAnEtchedLineTheFullHeightAndHasNothingToSave)
{
    machine.set(kWindowsNtKey, L"CurrentVersion", L"4.0");
    Hosted &v = place(kUpright, {0, 0, 8 * screen_dpi() / 96, 60});
    const int x = screen_dpi() == 144 ? 4 : 3; // 45 twips in
    Bitmap p = v.render(8 * screen_dpi() / 96, 60);
    p.save_png(output_path(L"sepvbar-" + std::to_wstring(screen_dpi()) + L"dpi.png"));
    EXPECT_EQ(60, p.count_column(x, sys(COLOR_BTNSHADOW)));
    EXPECT_EQ(60, p.count_column(x + 1, sys(COLOR_BTNHIGHLIGHT)));
    EXPECT_EQ(60, p.count_column(x + 2, sys(COLOR_BTNFACE)));
    EXPECT_TRUE(v.save_bag()->writes.empty());
    EXPECT_EQ(DISPID_UNKNOWN, dispid_of(v.dispatch(), L"BACKCOLOR"));
}

TEST_F(SepbarTest, ScreenReadersHearTheTitleOfASeparator)
{
    Hosted &b = bar(L"6.1");
    b.put(L"CAPTION", Str(L"  Options "));
    Hosted &v = place(kUpright, {0, 30, 8, 90});
    for (Hosted *h : {&b, &v}) h->activate();
    Described d = described(b.hwnd());
    EXPECT_EQ(L"Options", d.name);
    EXPECT_EQ(ROLE_SYSTEM_SEPARATOR, d.role);
    EXPECT_EQ(0, d.state);
    EXPECT_EQ(ROLE_SYSTEM_SEPARATOR, described(v.hwnd()).role);
    EXPECT_EQ(L"", described(v.hwnd()).name);
}
