// The panel through the real DLL: every property through both persistence forms with equal
// defaults, bad values, its borders and backgrounds at either DPI, and a child control held
// on it in the test container through the simple-frame protocol.
#include <gtest/gtest.h>

#include <cstdlib>

#include "foundation/font_object.h"
#include "frames/frame_test_helpers.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kPanel[] = L"TarnControls.pnl";
// The caption's keys first, as the captioned line saves them, then the panel's own.
const std::vector<std::wstring> kSaveOrder = {L"ALIGNMENT",     L"CAPTION",       L"FORECOLOR", L"BACKCOLOR",
                                              L"FONT",          L"BORDERSTYLE",   L"FILLSTYLE", L"DOTCOLOR",
                                              L"GRADIENTCOLOR1", L"GRADIENTCOLOR2", L"GRADIENTANGLE"};

struct Setting {
    const wchar_t *name;
    Variant def, value;
};
std::vector<Setting> settings()
{
    return {{L"Alignment", I4(2), I4(0)},
            {L"CAPTION", Str(L""), Str(L"Gr\u00fc\u00dfe \u65e5\u672c")},
            {L"ForeColor", I4(0x80000012), I4(0x000000FF)},
            {L"BACKCOLOR", I4(0x8000000F), I4(0x00C0FFEE)},
            {L"BorderStyle", I4(1), I4(3)},
            {L"FillStyle", I4(0), I4(2)},
            {L"DotColor", I4(0x80000014), I4(0x00123456)},
            {L"GradientColor1", I4(0x00FFFFD0), I4(0x00010203)},
            {L"GradientColor2", I4(0x00400000), I4(0x00F0F0F0)},
            {L"GradientAngle", R4(315), R4(22.5f)}};
}

bool close_to(Rgb a, Rgb b, int tolerance = 6)
{
    return std::abs(red_of(a) - red_of(b)) <= tolerance && std::abs(green_of(a) - green_of(b)) <= tolerance &&
           std::abs(blue_of(a) - blue_of(b)) <= tolerance;
}

} // namespace

TEST_F(ControlTest, PanelEveryPropertySurvivesBothFormsAndDefaultsAreNotSaved)
{
    Hosted &p = place(kPanel, {0, 0, 200, 100});
    for (const Setting &s : settings()) EXPECT_EQ(as_double(s.def), as_double(p.get(s.name))) << narrow(s.name);
    EXPECT_TRUE(p.save_bag()->keys().empty());
    for (const Setting &s : settings()) p.put(s.name, s.value);
    p.putref(L"Font", make_font(L"Tahoma", 14, true).get());
    EXPECT_EQ(kSaveOrder.size(), p.log().changes.size());
    EXPECT_EQ(kSaveOrder, p.save_bag()->writes);
    for (Init how : {Init::FromBag, Init::FromStream}) {
        ComPtr<IUnknown> source = how == Init::FromBag ? ComPtr<IUnknown>(p.save_bag().get()) : p.save_stream().get();
        Hosted &again = place(kPanel, {0, 0, 200, 100}, how, source.get());
        for (const Setting &s : settings())
            EXPECT_EQ(as_string(s.value), as_string(again.get(s.name))) << narrow(s.name);
        EXPECT_EQ(L"Tahoma", FontSpecOf(V_DISPATCH(again.get(L"Font").get())).name);
    }
    // Values no panel can have are skipped, written or loaded.
    for (auto [name, bad] : {std::pair{L"BorderStyle", I4(5)}, std::pair{L"FillStyle", I4(-1)},
                             std::pair{L"Alignment", I4(3)}, std::pair{L"GradientAngle", R8(1e300)},
                             std::pair{L"DotColor", I4(0x7F000000)}})
        EXPECT_EQ(S_OK, p.put(name, bad)) << narrow(name);
    for (const Setting &s : settings()) EXPECT_EQ(as_string(s.value), as_string(p.get(s.name))) << narrow(s.name);
    ComPtr<Bag> wrong = Bag::Create();
    wrong->set(L"BORDERSTYLE", I2(77));
    wrong->set(L"GRADIENTANGLE", Str(L"north"));
    Hosted &w = place(kPanel, {0, 0, 200, 100}, Init::FromBag, wrong.get());
    EXPECT_EQ(1, as_integer(w.get(L"BorderStyle")));
    EXPECT_EQ(315, as_double(w.get(L"GradientAngle")));
}

TEST_F(ControlTest, PanelDrawsItsBordersAndBackgroundsAtEitherDpi)
{
    const int k = screen_dpi() == 144 ? 3 : 2, width = 100 * k, height = 50 * k;
    Hosted &p = place(kPanel, {0, 0, width, height});
    const std::wstring dpi = std::to_wstring(screen_dpi()) + L"dpi.png";
    // Borders: the outermost pixel of the top left and of the bottom right.
    const struct {
        int style, top_left, bottom_right;
    } borders[] = {{0, COLOR_BTNFACE, COLOR_BTNFACE}, {1, COLOR_3DLIGHT, COLOR_3DDKSHADOW},
                   {2, COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT}, {3, COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT},
                   {4, COLOR_WINDOWFRAME, COLOR_WINDOWFRAME}};
    for (const auto &b : borders) {
        p.put(L"BorderStyle", I4(b.style));
        Bitmap picture = p.render(width, height);
        EXPECT_EQ(sys(b.top_left), picture.pixel(0, 0)) << b.style;
        EXPECT_EQ(sys(b.bottom_right), picture.pixel(width - 1, height - 1)) << b.style;
        EXPECT_EQ(sys(COLOR_BTNFACE), picture.pixel(width / 2, height / 2)) << b.style;
    }
    // The gradient: the first colour at the top left, the second at the bottom right (315).
    p.put(L"FillStyle", I4(1));
    p.put(L"CAPTION", Str(L"Gradient"));
    Bitmap gradient = p.render(width, height);
    gradient.save_png(output_path(L"pnl-gradient-" + dpi));
    EXPECT_TRUE(close_to(0x00FFFFD0, gradient.pixel(3, 3))) << std::hex << gradient.pixel(3, 3);
    EXPECT_TRUE(close_to(0x00400000, gradient.pixel(width - 4, height - 4), 12)) << std::hex << gradient.pixel(width - 4, height - 4);
    // The caption in the middle, in the fore colour.
    int text = 0;
    for (int x = width / 4; x < width * 3 / 4; ++x) text += gradient.count_column(x, sys(COLOR_BTNTEXT));
    EXPECT_GT(text, 20);
    // Dots: a one-pixel checkerboard of the dot colour and the back colour, the same from the
    // window as off-screen.
    p.put(L"FillStyle", I4(2));
    p.put(L"DotColor", ole(0x000000FF));
    p.put(L"CAPTION", Str(L""));
    Bitmap dots = p.render(width, height);
    dots.save_png(output_path(L"pnl-dotted-" + dpi));
    for (int x = 10; x < 14; ++x) {
        EXPECT_NE(dots.pixel(x, 10), dots.pixel(x + 1, 10));
        EXPECT_EQ(dots.pixel(x, 10), dots.pixel(x + 1, 11));
        EXPECT_TRUE(dots.pixel(x, 10) == 0x000000FFu || dots.pixel(x, 10) == sys(COLOR_BTNFACE));
    }
    p.activate();
    EXPECT_EQ(dots.hash(), p.capture().hash());
}

TEST_F(ControlTest, APanelHoldsAChildControlThatMovesWithItThroughTheSimpleFrameSite)
{
    Hosted &p = place(kPanel, {20, 20, 220, 120});
    DWORD misc = 0;
    p.as<IOleObject>(IID_IOleObject)->GetMiscStatus(DVASPECT_CONTENT, &misc);
    EXPECT_TRUE(misc & OLEMISC_SIMPLEFRAME);
    p.activate();
    auto child = std::make_unique<Hosted>(p, L"TarnControls.cframe", RECT{10, 10, 110, 39});
    ASSERT_TRUE(child->ok());
    child->activate();
    EXPECT_EQ(p.hwnd(), GetParent(child->hwnd()));
    RECT before{}, after{};
    GetWindowRect(child->hwnd(), &before);
    p.move({60, 50, 260, 150});
    GetWindowRect(child->hwnd(), &after);
    EXPECT_EQ(before.left + 40, after.left);
    EXPECT_EQ(before.top + 30, after.top);
    // The panel's messages went through the site's filters, each Pre with its Post.
    Site &site = p.site();
    EXPECT_FALSE(site.filtered_messages.empty());
    EXPECT_NE(site.filtered_messages.end(),
              std::find(site.filtered_messages.begin(), site.filtered_messages.end(), UINT(WM_WINDOWPOSCHANGED)));
    EXPECT_EQ(0, site.unpaired_filters);
    // A message the site answers itself never reaches the panel.
    site.answered_in_filter = WM_LBUTTONDOWN;
    p.log().clear_events();
    click(p.hwnd(), 150, 80);
    EXPECT_EQ(std::wstring::npos, joined(p.log().event_names()).find(L"MouseDown"));
    EXPECT_EQ(0, site.unpaired_filters);
    // A screen reader hears a grouping named by the caption.
    p.put(L"CAPTION", Str(L"Address"));
    Described d = described(p.hwnd());
    EXPECT_EQ(L"Address", d.name);
    EXPECT_EQ(ROLE_SYSTEM_GROUPING, d.role);
    EXPECT_EQ(0u, child->close());
}
