// The captioned line through the real DLL: every property through both persistence forms with
// equal defaults, the caption and the 3-D line where each alignment puts them at either DPI in
// both looks, the caption's events, bad values, and its accessible name.
#include <gtest/gtest.h>

#include "foundation/font_object.h"
#include "foundation/themes.h"
#include "frames/frame_test_helpers.h"
#include "support/fake_machine_key.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kLine[] = L"TarnControls.lneh";
const std::vector<std::wstring> kSaveOrder = {L"ALIGNMENT", L"CAPTION", L"FORECOLOR", L"BACKCOLOR", L"FONT"};

class LnehTest : public ControlTest {
protected:
    Hosted &line(RECT pos = {0, 0, 200, 17}, Init init = Init::New, IUnknown *source = nullptr)
    {
        return place(kLine, pos, init, source);
    }
    FakeMachineKey machine;
};

} // namespace

TEST_F(LnehTest, EveryPropertySurvivesBothFormsAndDefaultsAreNotSaved)
{
    // A new line takes its container's name for a caption: the only thing that differs from
    // the defaults, which restore and save alike.
    Hosted &l = line();
    EXPECT_EQ(L"Control1", as_string(l.get(L"CAPTION")));
    EXPECT_EQ(std::vector<std::wstring>{L"CAPTION"}, l.save_bag()->keys());
    Hosted &empty = line({0, 20, 200, 37}, Init::FromBag, Bag::Create().get());
    EXPECT_EQ(L"", as_string(empty.get(L"CAPTION")));
    EXPECT_TRUE(empty.save_bag()->keys().empty());

    l.log().changes.clear();
    l.put(L"Alignment", I4(2));
    l.put(L"CAPTION", Str(L"Totals \u00b7 \u65e5\u672c"));
    l.put(L"ForeColor", ole(0x000000FF));
    l.put(L"BACKCOLOR", ole(0x00C0FFEE));
    l.putref(L"Font", make_font(L"Tahoma", 11, true).get());
    EXPECT_EQ(kSaveOrder, l.log().changes);
    EXPECT_EQ(kSaveOrder, l.save_bag()->writes);
    for (Init how : {Init::FromBag, Init::FromStream}) {
        ComPtr<IUnknown> source = how == Init::FromBag ? ComPtr<IUnknown>(l.save_bag().get()) : l.save_stream().get();
        Hosted &again = line({0, 40, 200, 57}, how, source.get());
        EXPECT_EQ(2, as_integer(again.get(L"Alignment")));
        EXPECT_EQ(L"Totals \u00b7 \u65e5\u672c", as_string(again.get(L"CAPTION")));
        EXPECT_EQ(0x000000FFu, colour(again, L"ForeColor"));
        EXPECT_EQ(0x00C0FFEEu, colour(again));
        FontSpec look = FontSpecOf(V_DISPATCH(again.get(L"Font").get()));
        EXPECT_EQ(L"Tahoma", look.name);
        EXPECT_TRUE(look.bold);
    }
    // Values that cannot be are skipped, in a write and in a load alike, but still announced.
    l.log().changes.clear();
    for (const Variant &bad : {I4(3), I4(-1)}) l.put(L"Alignment", bad);
    l.put(L"ForeColor", ole(0x7F000000));
    EXPECT_EQ(L"ALIGNMENT ALIGNMENT FORECOLOR", joined(l.log().changes));
    EXPECT_EQ(2, as_integer(l.get(L"Alignment")));
    EXPECT_EQ(0x000000FFu, colour(l, L"ForeColor"));
    ComPtr<Bag> wrong = Bag::Create();
    wrong->set(L"ALIGNMENT", I2(9));
    wrong->set(L"CAPTION", I4(7));
    Hosted &w = line({0, 60, 200, 77}, Init::FromBag, wrong.get());
    EXPECT_EQ(0, as_integer(w.get(L"Alignment")));
    EXPECT_EQ(L"7", as_string(w.get(L"CAPTION")));
}

TEST_F(LnehTest, TheLineFillsTheWidthBesideTheCaptionAsEachAlignmentSaysAtEitherDpi)
{
    const int width = screen_dpi() == 144 ? 300 : 200, height = screen_dpi() == 144 ? 26 : 17;
    const Rgb face = sys(COLOR_BTNFACE);
    for (bool themed : {false, true}) {
        machine.set(kWindowsNtKey, L"CurrentVersion", themed ? L"6.1" : L"4.0");
        const Rgb dark = themed ? FaceShade(-25) : sys(COLOR_BTNSHADOW), light = themed ? FaceShade(25) : sys(COLOR_3DHILIGHT);
        for (int alignment : {0, 1, 2}) {
            SCOPED_TRACE(std::string(themed ? "themed" : "classic") + ", alignment " + std::to_string(alignment));
            Hosted &l = line({0, 0, width, height});
            l.put(L"CAPTION", Str(L"Options"));
            l.put(L"Alignment", I4(alignment));
            const int row = (text_height(V_DISPATCH(l.get(L"Font").get())) - 2) / 2;
            Bitmap p = l.render(width, height);
            p.save_png(output_path(L"lneh-" + std::wstring(themed ? L"themed-" : L"classic-") +
                                   std::to_wstring(alignment) + L"-" + std::to_wstring(screen_dpi()) + L"dpi.png"));
            // The line's ends: where the caption is not.
            const bool line_left = alignment != 0, line_right = alignment != 1;
            EXPECT_EQ(line_left, p.pixel(0, row) == dark);
            EXPECT_EQ(line_left, p.pixel(0, row + 1) == light);
            EXPECT_EQ(line_right, p.pixel(width - 1, row) == dark);
            EXPECT_EQ(line_right, p.pixel(width - 1, row + 1) == light);
            EXPECT_EQ(face, p.pixel(width / 4, row + 4));
            // The line covers most of the width less the caption; the caption's text is drawn.
            int line_px = p.count_row(row, dark);
            EXPECT_GT(line_px, width / 2);
            EXPECT_LT(line_px, width - 30);
            EXPECT_GT(p.count(sys(COLOR_BTNTEXT)), 20);
            close(l);
            controls_.pop_back();
        }
    }
    // Without a caption the line runs the whole width.
    Hosted &bare = line({0, 0, width, height});
    bare.put(L"CAPTION", Str(L""));
    const int row = (text_height(V_DISPATCH(bare.get(L"Font").get())) - 2) / 2;
    EXPECT_EQ(width, bare.render(width, height).count_row(row, FaceShade(-25)));
}

TEST_F(LnehTest, TheCaptionRaisesTheLinesEventsAndIsItsAccessibleName)
{
    Hosted &l = line();
    l.put(L"CAPTION", Str(L"Totals"));
    l.activate();
    HWND w = l.hwnd();
    l.log().clear_events();
    click(w, 3, 5);      // on the caption: its own coordinates (it starts at 0, 0)
    click(w, 150, 12);   // on the line's surface
    mouse(w, WM_LBUTTONDBLCLK, 150, 12, MK_LBUTTON);
    mouse(w, WM_LBUTTONUP, 150, 12);
    EXPECT_EQ(L"MouseDown(1,0," + twips_text(3, 5) + L") MouseUp(1,0," + twips_text(3, 5) + L") Click MouseDown(1,0," +
                  twips_text(150, 12) + L") MouseUp(1,0," + twips_text(150, 12) + L") Click DblClick MouseUp(1,0," +
                  twips_text(150, 12) + L")",
              joined(l.log().event_texts()));
    Described d = described(w);
    EXPECT_EQ(L"Totals", d.name);
    EXPECT_EQ(ROLE_SYSTEM_SEPARATOR, d.role);
}
