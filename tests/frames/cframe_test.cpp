// The frame through the real DLL in the test container: its properties and keys, its three
// persistence forms, bad input, the picture its eight lines make, and its events.
#include <gtest/gtest.h>

#include "foundation/colors.h"
#include "foundation/font_object.h"
#include "support/control_test.h"
#include "support/resource_counts.h"

#include <thread>

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.cframe";

struct ColourProperty {
    const wchar_t *name;
    const wchar_t *key;
    OleColor restore_default;
};
const ColourProperty kLines[] = {
    {L"LeftHighlightColor", L"LEFTHIGHLIGHTCOLOR", 0x80000014}, {L"LeftLightShadowColor", L"LEFTLIGHTSHADOWCOLOR", 0x80000016},
    {L"TopHighlightColor", L"TOPHIGHLIGHTCOLOR", 0x80000014},   {L"TopLightShadowColor", L"TOPLIGHTSHADOWCOLOR", 0x80000016},
    {L"RightShadowColor", L"RIGHTSHADOWCOLOR", 0x80000010},     {L"RightDarkShadowColor", L"RIGHTDARKSHADOWCOLOR", 0x80000015},
    {L"BottomShadowColor", L"BOTTOMSHADOWCOLOR", 0x80000010},   {L"BottomDarkShadowColor", L"BOTTOMDARKSHADOWCOLOR", 0x80000015},
};

const std::vector<std::wstring> kSaveOrder = {
    L"ALIGNMENT", L"CAPTION", L"FORECOLOR", L"BACKCOLOR", L"LEFTHIGHLIGHTCOLOR", L"LEFTLIGHTSHADOWCOLOR",
    L"TOPHIGHLIGHTCOLOR", L"TOPLIGHTSHADOWCOLOR", L"RIGHTSHADOWCOLOR", L"RIGHTDARKSHADOWCOLOR", L"BOTTOMSHADOWCOLOR",
    L"BOTTOMDARKSHADOWCOLOR", L"FONT"};
const std::vector<std::wstring> kRestoreOrder = {
    L"FONT", L"FORECOLOR", L"BACKCOLOR", L"LEFTHIGHLIGHTCOLOR", L"LEFTLIGHTSHADOWCOLOR", L"TOPHIGHLIGHTCOLOR",
    L"TOPLIGHTSHADOWCOLOR", L"RIGHTSHADOWCOLOR", L"RIGHTDARKSHADOWCOLOR", L"BOTTOMSHADOWCOLOR",
    L"BOTTOMDARKSHADOWCOLOR", L"ALIGNMENT", L"CAPTION"};

OleColor colour(Hosted &h, const wchar_t *name) { return static_cast<OleColor>(as_integer(h.get(name))); }
Variant ole(OleColor c) { return I4(static_cast<int32_t>(c)); }
Rgb sys(int index) { return GetSysColor(index); }

// Every property set away from its defaults, with a caption outside any one code page.
void set_everything(Hosted &f)
{
    f.put(L"Alignment", I2(2));
    f.put(L"CAPTION", Str(L"Gr\u00fc\u00dfe \u65e5\u672c \u0416"));
    f.put(L"ForeColor", ole(0x000000FF));
    f.put(L"BACKCOLOR", ole(0x00C0FFEE));
    OleColor c = 0x00010203;
    for (const ColourProperty &p : kLines) f.put(p.name, ole(c += 0x00010101));
    f.putref(L"Font", make_font(L"Tahoma", 12, true).get());
}

void expect_everything(Hosted &f)
{
    EXPECT_EQ(2, as_integer(f.get(L"Alignment")));
    EXPECT_EQ(L"Gr\u00fc\u00dfe \u65e5\u672c \u0416", as_string(f.get(L"CAPTION")));
    EXPECT_EQ(0x000000FFu, colour(f, L"ForeColor"));
    EXPECT_EQ(0x00C0FFEEu, colour(f, L"BACKCOLOR"));
    OleColor c = 0x00010203;
    for (const ColourProperty &p : kLines) EXPECT_EQ(c += 0x00010101, colour(f, p.name)) << narrow(p.name);
    Variant fv = f.get(L"Font");
    ASSERT_EQ(VT_DISPATCH, fv.vt());
    FontSpec look = FontSpecOf(V_DISPATCH(fv.get()));
    EXPECT_EQ(L"Tahoma", look.name);
    EXPECT_DOUBLE_EQ(12, look.size);
    EXPECT_TRUE(look.bold);
}

class FrameTest : public ControlTest {};

} // namespace

TEST_F(FrameTest, NewFrameShowsItsDesignValues)
{
    Hosted &f = place(kProgId);
    EXPECT_EQ(L"VBAR", as_string(f.get(L"CAPTION")));
    EXPECT_EQ(0, as_integer(f.get(L"Alignment")));
    EXPECT_EQ(0x8000000Fu, colour(f, L"BACKCOLOR"));
    EXPECT_EQ(0x80000008u, colour(f, L"ForeColor"));
    for (const ColourProperty &p : kLines) EXPECT_EQ(p.restore_default, colour(f, p.name)) << narrow(p.name);
    EXPECT_EQ(L"Tahoma", FontSpecOf(V_DISPATCH(f.get(L"Font").get())).name);
}

TEST_F(FrameTest, EveryWriteStoresAndAnnouncesItsKey)
{
    Hosted &f = place(kProgId);
    f.put(L"CAPTION", Str(L"Totals"));
    f.put(L"Alignment", I2(1));
    f.put(L"BACKCOLOR", ole(0x123456));
    f.put(L"ForeColor", ole(0x654321));
    for (const ColourProperty &p : kLines) f.put(p.name, ole(0x0000AA00));
    f.putref(L"Font", make_font(L"Arial", 10).get());
    std::vector<std::wstring> expected = {L"CAPTION", L"ALIGNMENT", L"BACKCOLOR", L"FORECOLOR"};
    for (const ColourProperty &p : kLines) expected.push_back(p.key);
    expected.push_back(L"FONT");
    EXPECT_EQ(expected, f.log().changes);
    EXPECT_EQ(L"Totals", as_string(f.get(L"CAPTION")));
    EXPECT_EQ(0x123456u, colour(f, L"BACKCOLOR"));
    for (const ColourProperty &p : kLines) EXPECT_EQ(0x0000AA00u, colour(f, p.name));
    // The key names a member, so the plain notice carries the member's DISPID too.
    EXPECT_EQ(-518, f.log().changed_ids.front()); // CAPTION is the standard caption
}

TEST_F(FrameTest, AFontWriteCopiesTheHostsFont)
{
    Hosted &f = place(kProgId);
    ComPtr<IFontDisp> mine = make_font(L"Tahoma", 10);
    f.putref(L"Font", mine.get());
    ComPtr<IFont>(mine.as<IFont>(IID_IFont))->put_Bold(TRUE); // the host changes its own object later
    EXPECT_FALSE(FontSpecOf(V_DISPATCH(f.get(L"Font").get())).bold);
    // Something that is not a font changes nothing but is still announced (resume next).
    f.log().changes.clear();
    EXPECT_EQ(S_OK, f.put(L"Font", Variant()));
    EXPECT_EQ(L"Tahoma", FontSpecOf(V_DISPATCH(f.get(L"Font").get())).name);
}

TEST_F(FrameTest, SavesOnlyWhatDiffersFromTheSaveDefaultsInSaveOrder)
{
    Hosted &f = place(kProgId);
    // A new frame: only its fore colour (window text) differs from its save default (button face).
    EXPECT_EQ(std::vector<std::wstring>{L"FORECOLOR"}, f.save_bag()->keys());
    f.put(L"ForeColor", ole(0x8000000F));
    EXPECT_TRUE(f.save_bag()->keys().empty());
    set_everything(f);
    ComPtr<Bag> bag = f.save_bag();
    EXPECT_EQ(kSaveOrder, bag->writes);
    EXPECT_EQ(kSaveOrder, bag->keys());
}

TEST_F(FrameTest, RestoresInItsOrderWithTheRestoreDefaults)
{
    ComPtr<Bag> empty = Bag::Create();
    Hosted &f = place(kProgId, {10, 10, 210, 39}, Init::FromBag, empty.get());
    EXPECT_EQ(kRestoreOrder, empty->reads);
    EXPECT_EQ(L"VBAR", as_string(f.get(L"CAPTION")));
    EXPECT_EQ(0x80000008u, colour(f, L"ForeColor"));
    for (const ColourProperty &p : kLines) EXPECT_EQ(p.restore_default, colour(f, p.name));
}

TEST_F(FrameTest, ForeColorOfButtonFaceComesBackAsWindowText)
{
    Hosted &f = place(kProgId);
    f.put(L"ForeColor", ole(0x8000000F));
    ComPtr<Bag> bag = f.save_bag();
    Hosted &g = place(kProgId, {10, 50, 210, 79}, Init::FromBag, bag.get());
    EXPECT_EQ(0x80000008u, colour(g, L"ForeColor"));
    ComPtr<IStream> stream = f.save_stream();
    Hosted &h = place(kProgId, {10, 90, 210, 119}, Init::FromStream, stream.get());
    EXPECT_EQ(0x80000008u, colour(h, L"ForeColor"));
}

TEST_F(FrameTest, RoundTripsThroughBagAndStream)
{
    Hosted &f = place(kProgId);
    set_everything(f);
    ComPtr<Bag> bag = f.save_bag();
    Hosted &from_bag = place(kProgId, {10, 50, 210, 79}, Init::FromBag, bag.get());
    expect_everything(from_bag);

    ComPtr<IStream> stream = f.save_stream();
    ULARGE_INTEGER max{};
    ComPtr<IPersistStreamInit>(f.as<IPersistStreamInit>(IID_IPersistStreamInit))->GetSizeMax(&max);
    STATSTG st{};
    stream->Stat(&st, STATFLAG_NONAME);
    EXPECT_EQ(max.QuadPart, st.cbSize.QuadPart);
    Hosted &from_stream = place(kProgId, {10, 90, 210, 119}, Init::FromStream, stream.get());
    expect_everything(from_stream);
    // The load left the stream right after the frame's data, where a container's next object starts.
    ULARGE_INTEGER pos{};
    LARGE_INTEGER zero{};
    stream->Seek(zero, STREAM_SEEK_CUR, &pos);
    EXPECT_EQ(st.cbSize.QuadPart, pos.QuadPart);
}

TEST_F(FrameTest, LoadingTwiceOrAfterInitNewIsRefused)
{
    Hosted &f = place(kProgId);
    ComPtr<IPersistStreamInit> p = f.as<IPersistStreamInit>(IID_IPersistStreamInit);
    EXPECT_EQ(E_UNEXPECTED, p->InitNew());
    EXPECT_EQ(S_FALSE, p->IsDirty());
    f.put(L"CAPTION", Str(L"x"));
    EXPECT_EQ(S_OK, p->IsDirty());
    f.save_stream();
    EXPECT_EQ(S_FALSE, p->IsDirty());
}

TEST_F(FrameTest, WrongTypesInTheBagFallBackToTheirDefaults)
{
    ComPtr<Bag> bag = Bag::Create();
    bag->set(L"CAPTION", I4(42));                  // converts: a number is a fine caption
    bag->set(L"BACKCOLOR", Str(L"red"));          // cannot convert
    bag->set(L"ALIGNMENT", R8(1e10));             // overflows a 16-bit integer
    bag->set(L"FONT", Str(L"Arial"));             // not a font object
    Variant null_value;
    V_VT(null_value.put()) = VT_NULL;
    bag->set(L"LEFTHIGHLIGHTCOLOR", null_value);
    SAFEARRAY *sa = SafeArrayCreateVector(VT_I4, 0, 3);
    Variant array;
    V_VT(array.put()) = VT_ARRAY | VT_I4;
    V_ARRAY(array.get()) = sa;
    bag->set(L"TOPHIGHLIGHTCOLOR", array);
    Variant no_object;
    V_VT(no_object.put()) = VT_DISPATCH; // a null object
    bag->set(L"FORECOLOR", no_object);
    bag->set(L"RIGHTSHADOWCOLOR", Str(L"255")); // text that reads as a number is taken
    Hosted &f = place(kProgId, {10, 10, 210, 39}, Init::FromBag, bag.get());
    EXPECT_EQ(S_OK, f.init_result());
    EXPECT_EQ(L"42", as_string(f.get(L"CAPTION")));
    EXPECT_EQ(0x8000000Fu, colour(f, L"BACKCOLOR"));
    EXPECT_EQ(0, as_integer(f.get(L"Alignment")));
    EXPECT_EQ(0x80000014u, colour(f, L"LeftHighlightColor"));
    EXPECT_EQ(0x80000014u, colour(f, L"TopHighlightColor"));
    EXPECT_EQ(0x80000008u, colour(f, L"ForeColor"));
    EXPECT_EQ(255u, colour(f, L"RightShadowColor"));
    EXPECT_EQ(VT_DISPATCH, f.get(L"Font").vt());
    f.render(200, 29);
}

TEST_F(FrameTest, ABagThatRefusesEveryWriteStillSavesWithoutFailing)
{
    Hosted &f = place(kProgId);
    set_everything(f);
    ComPtr<Bag> bag = Bag::Create();
    bag->fail_writes = true;
    ComPtr<IPersistPropertyBag> p = f.as<IPersistPropertyBag>(IID_IPersistPropertyBag);
    EXPECT_EQ(S_OK, p->Save(bag.get(), TRUE, FALSE));
    EXPECT_EQ(kSaveOrder, bag->writes); // every step was still tried
}

TEST_F(FrameTest, GarbageAndTruncatedStreamsLoadAsDefaults)
{
    Hosted &f = place(kProgId);
    set_everything(f);
    std::vector<BYTE> bytes = stream_bytes(f.save_stream().get());
    ASSERT_FALSE(bytes.empty());

    auto load = [&](const std::vector<BYTE> &data) {
        ComPtr<IStream> s = stream_of(data);
        Hosted g(form, kProgId, {0, 0, 200, 29}, Init::FromStream, s.get());
        EXPECT_EQ(S_OK, g.init_result());
        std::wstring caption = as_string(g.get(L"CAPTION"));
        g.render(50, 20);
        EXPECT_EQ(0u, g.close());
        return caption;
    };
    // Cut at every length: the frame always comes up, with what was readable.
    for (size_t cut = 0; cut < bytes.size(); cut += 7)
        load(std::vector<BYTE>(bytes.begin(), bytes.begin() + static_cast<long>(cut)));
    EXPECT_EQ(L"VBAR", load({}));
    std::vector<BYTE> garbage(500);
    for (size_t i = 0; i < garbage.size(); ++i) garbage[i] = static_cast<BYTE>(i * 7919 >> 3);
    EXPECT_EQ(L"VBAR", load(garbage));
    std::vector<BYTE> lying = bytes; // a header that claims a body far larger than the stream
    lying[8] = lying[9] = lying[10] = 0xFF;
    lying[11] = 0x01;
    load(lying);
}

TEST_F(FrameTest, HugeCaptionsSurviveEveryPath)
{
    Hosted &f = place(kProgId);
    f.activate();
    std::wstring huge(100000, L'x');
    for (size_t i = 0; i < huge.size(); i += 97) huge[i] = L' ';
    huge[5] = L'\u20ac';
    EXPECT_EQ(S_OK, f.put(L"CAPTION", Str(huge)));
    EXPECT_EQ(huge, as_string(f.get(L"CAPTION")));
    ComPtr<Bag> bag = f.save_bag();
    Hosted &g = place(kProgId, {10, 50, 210, 79}, Init::FromBag, bag.get());
    EXPECT_EQ(huge, as_string(g.get(L"CAPTION")));
    ComPtr<IStream> stream = f.save_stream();
    Hosted &h = place(kProgId, {10, 90, 210, 119}, Init::FromStream, stream.get());
    EXPECT_EQ(huge, as_string(h.get(L"CAPTION")));
    f.render(200, 29);
    UpdateWindow(f.hwnd());
}

TEST_F(FrameTest, NegativeAndZeroSizesAreHarmless)
{
    Hosted &f = place(kProgId);
    ComPtr<IOleObject> ole = f.as<IOleObject>(IID_IOleObject);
    SIZEL negative{-5000, -100};
    EXPECT_EQ(S_OK, ole->SetExtent(DVASPECT_CONTENT, &negative));
    SIZEL extent{};
    ole->GetExtent(DVASPECT_CONTENT, &extent);
    EXPECT_EQ(0, extent.cx);
    f.render(10, 10);
    f.move({50, 50, 10, 10}); // right and bottom before left and top
    f.activate();
    f.move({0, 0, 0, 0});
    f.move({0, 0, 1, 1});
    f.move({5, 5, -100, 3});
    UpdateWindow(f.hwnd());
    ComPtr<IViewObject> view = f.as<IViewObject>(IID_IViewObject);
    Bitmap b(20, 20);
    RECTL inverted{20, 20, 0, 0};
    EXPECT_EQ(S_OK, view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, b.dc(), &inverted, nullptr, nullptr, 0));
    EXPECT_EQ(E_INVALIDARG, view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, b.dc(), nullptr, nullptr, nullptr, 0));
    EXPECT_EQ(DV_E_DVASPECT, view->Draw(DVASPECT_ICON, -1, nullptr, nullptr, nullptr, b.dc(), &inverted, nullptr, nullptr, 0));
    f.move({0, 0, 200, 29});
    EXPECT_EQ(L"VBAR", as_string(f.get(L"CAPTION")));
}

// ---------------------------------------------------------------- the picture

namespace {

struct Expected {
    int x, y;
    int sys_index;
};

// At 96 DPI a 200 x 29 frame (3000 x 435 twips, T = 25, Int(T/2) = 12) draws its raised border
// in the outermost two pixel rings; later lines cover earlier ones where they cross.
const Expected kRaisedBorder[] = {
    {0, 0, COLOR_3DHILIGHT},   {100, 0, COLOR_3DHILIGHT},  {198, 0, COLOR_3DHILIGHT},  {199, 0, COLOR_3DDKSHADOW},
    {0, 14, COLOR_3DHILIGHT},  {0, 27, COLOR_3DHILIGHT},   {0, 28, COLOR_3DDKSHADOW},  {100, 28, COLOR_3DDKSHADOW},
    {199, 28, COLOR_3DDKSHADOW}, {199, 14, COLOR_3DDKSHADOW}, {1, 1, COLOR_3DLIGHT}, {100, 1, COLOR_3DLIGHT},
    {197, 1, COLOR_3DLIGHT},   {198, 1, COLOR_BTNSHADOW},  {1, 14, COLOR_3DLIGHT},     {1, 26, COLOR_3DLIGHT},
    {1, 27, COLOR_BTNSHADOW},  {100, 27, COLOR_BTNSHADOW}, {198, 27, COLOR_BTNSHADOW}, {198, 14, COLOR_BTNSHADOW},
    {100, 20, COLOR_BTNFACE},  {2, 26, COLOR_BTNFACE},     {197, 26, COLOR_BTNFACE},
};

} // namespace

TEST_F(FrameTest, DrawsItsEightLinesWhereTheLayoutPutsThemAt96Dpi)
{
    HDC screen = GetDC(nullptr);
    int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    if (dpi != 96) GTEST_SKIP() << "the screen is at " << dpi << " DPI";
    Hosted &f = place(kProgId, {0, 0, 200, 29});
    f.put(L"CAPTION", Str(L""));
    Bitmap picture = f.render(200, 29);
    picture.save_png(output_path(L"cframe-96dpi.png"));
    for (const Expected &e : kRaisedBorder)
        EXPECT_EQ(sys(e.sys_index), picture.pixel(e.x, e.y)) << "pixel (" << e.x << ", " << e.y << ")";
    // The same picture from the frame's own window (the one draw path).
    f.activate();
    Bitmap window = f.capture();
    EXPECT_EQ(picture.hash(), window.hash());
}

TEST_F(FrameTest, DrawsItsEightLinesWhereTheLayoutPutsThemAt144Dpi)
{
    HDC screen = GetDC(nullptr);
    int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    if (dpi != 144) GTEST_SKIP() << "the screen is at " << dpi << " DPI";
    // 300 x 45 pixels are 3000 x 450 twips at 10 twips per pixel: T is still 25 twips, which
    // now falls 2.5 and 1.2 pixels from the edges, so the lines sit one pixel further in and
    // leave the last column and row to the background.
    Hosted &f = place(kProgId, {0, 0, 300, 45});
    f.put(L"CAPTION", Str(L"Totals"));
    Bitmap picture = f.render(300, 45);
    picture.save_png(output_path(L"cframe-144dpi.png"));
    const Expected lines[] = {
        {0, 0, COLOR_3DHILIGHT},   {297, 0, COLOR_3DHILIGHT},  {298, 0, COLOR_3DDKSHADOW}, {0, 42, COLOR_3DHILIGHT},
        {0, 43, COLOR_3DDKSHADOW}, {299, 43, COLOR_3DDKSHADOW}, {298, 20, COLOR_3DDKSHADOW}, {1, 1, COLOR_3DLIGHT},
        {297, 1, COLOR_BTNSHADOW}, {1, 41, COLOR_3DLIGHT},      {1, 42, COLOR_BTNSHADOW},   {297, 42, COLOR_BTNSHADOW},
        {299, 20, COLOR_BTNFACE},  {150, 44, COLOR_BTNFACE},    {299, 0, COLOR_3DHILIGHT},
    };
    for (const Expected &e : lines)
        EXPECT_EQ(sys(e.sys_index), picture.pixel(e.x, e.y)) << "pixel (" << e.x << ", " << e.y << ")";
}

TEST_F(FrameTest, WritingALineColourRunsTheVisibilityRuleButBackColorDoesNot)
{
    Hosted &f = place(kProgId, {0, 0, 200, 29});
    f.put(L"CAPTION", Str(L""));
    // Equal to the back colour: the left outer line is hidden, and stays hidden when the back
    // colour changes afterwards, so the left column shows the new back colour.
    f.put(L"LeftHighlightColor", ole(0x8000000F));
    f.put(L"BACKCOLOR", ole(0x000000FF));
    Bitmap hidden = f.render(200, 29);
    EXPECT_EQ(0x000000FFu, hidden.pixel(0, 14));
    // ...and the top inner line starts at T (25 twips, pixel 1) instead of 15 (also pixel 1 at
    // this scale: both land in the same pixel, the line still starts there).
    EXPECT_EQ(sys(COLOR_3DLIGHT), hidden.pixel(1, 1));
    // Different from the back colour: shown.
    f.put(L"LeftHighlightColor", ole(0x0000FF00));
    EXPECT_EQ(0x0000FF00u, f.render(200, 29).pixel(0, 14));
}

TEST_F(FrameTest, RestoringRunsTheRuleForTheOuterLinesOnly)
{
    // Each colour first, the back colour after: the lines stay visible although their colour
    // now equals the back colour.
    Hosted &outer = place(kProgId, {0, 0, 200, 29});
    outer.put(L"CAPTION", Str(L""));
    outer.put(L"RightDarkShadowColor", ole(0x000000FF));
    outer.put(L"BACKCOLOR", ole(0x000000FF));
    EXPECT_EQ(0x000000FFu, outer.render(200, 29).pixel(199, 0)); // the right outer line covers the top line's end
    ComPtr<Bag> outer_bag = outer.save_bag();
    Hosted &outer_again = place(kProgId, {0, 0, 200, 29}, Init::FromBag, outer_bag.get());
    outer_again.put(L"CAPTION", Str(L""));
    // Restoring hid it: the top line shows through.
    EXPECT_EQ(sys(COLOR_3DHILIGHT), outer_again.render(200, 29).pixel(199, 0));

    Hosted &inner = place(kProgId, {0, 0, 200, 29});
    inner.put(L"CAPTION", Str(L""));
    inner.put(L"RightShadowColor", ole(0x000000FF));
    inner.put(L"BACKCOLOR", ole(0x000000FF));
    EXPECT_EQ(0x000000FFu, inner.render(200, 29).pixel(198, 1)); // the right inner line covers the top inner line's end
    ComPtr<Bag> inner_bag = inner.save_bag();
    Hosted &inner_again = place(kProgId, {0, 0, 200, 29}, Init::FromBag, inner_bag.get());
    inner_again.put(L"CAPTION", Str(L""));
    // Restoring leaves the right inner line as designed (visible)...
    EXPECT_EQ(0x000000FFu, inner_again.render(200, 29).pixel(198, 1));
    // ...while writing its colour runs the rule and hides it.
    inner_again.put(L"RightShadowColor", ole(0x000000FF));
    EXPECT_EQ(sys(COLOR_3DLIGHT), inner_again.render(200, 29).pixel(198, 1));
}

TEST_F(FrameTest, ANarrowFrameKeepsItsCaptionWidth)
{
    Hosted &f = place(kProgId, {0, 0, 200, 29});
    f.put(L"CAPTION", Str(L"WWWWWWWWWWWWWWWWWWWW"));
    Bitmap wide = f.render(200, 29);
    f.move({0, 0, 8, 29}); // 120 twips: W - 125 is not above 0
    Bitmap narrow = f.render(8, 29);
    // The caption still starts at 60 twips (pixel 4) and is cut by the frame's edge, not wrapped away.
    int dark_wide = 0, dark_narrow = 0;
    for (int y = 2; y < 15; ++y) {
        dark_wide += wide.pixel(5, y) != sys(COLOR_BTNFACE);
        dark_narrow += narrow.pixel(5, y) != sys(COLOR_BTNFACE);
    }
    EXPECT_GT(dark_wide, 0);
    EXPECT_EQ(dark_wide, dark_narrow);
}

// ---------------------------------------------------------------- events

TEST_F(FrameTest, TheCaptionLabelRaisesTheFramesEventsWithItsOwnCoordinates)
{
    Hosted &f = place(kProgId, {0, 0, 200, 29});
    f.activate();
    HWND w = f.hwnd();
    ASSERT_TRUE(w);
    // The label sits at (60, 30) twips = pixel (4, 2) after layout.
    click(w, 10, 5);
    EXPECT_EQ((std::vector<std::wstring>{L"MouseDown(1,0,90,45)", L"MouseUp(1,0,90,45)", L"Click"}), f.log().event_texts());
    f.log().clear_events();
    // On the frame's own surface, below the label: control coordinates.
    click(w, 100, 20);
    EXPECT_EQ((std::vector<std::wstring>{L"MouseDown(1,0,1500,300)", L"MouseUp(1,0,1500,300)", L"Click"}),
              f.log().event_texts());
    f.log().clear_events();
    // A double click on the surface: the second press is DblClick, its release no Click.
    click(w, 100, 20);
    mouse(w, WM_LBUTTONDBLCLK, 100, 20, MK_LBUTTON);
    mouse(w, WM_LBUTTONUP, 100, 20);
    EXPECT_EQ((std::vector<std::wstring>{L"MouseDown", L"MouseUp", L"Click", L"DblClick", L"MouseUp"}),
              f.log().event_names());
    f.log().clear_events();
    // On the label a double click raises nothing of its own.
    click(w, 10, 5);
    mouse(w, WM_LBUTTONDBLCLK, 10, 5, MK_LBUTTON);
    mouse(w, WM_LBUTTONUP, 10, 5);
    EXPECT_EQ((std::vector<std::wstring>{L"MouseDown", L"MouseUp", L"Click", L"MouseUp"}), f.log().event_names());
    f.log().clear_events();
    // Right button and moves go the same way; a move with no button held reports 0.
    mouse(w, WM_MOUSEMOVE, 12, 6);
    mouse(w, WM_RBUTTONDOWN, 12, 6, MK_RBUTTON);
    mouse(w, WM_RBUTTONUP, 12, 6);
    EXPECT_EQ((std::vector<std::wstring>{L"MouseMove(0,0,120,60)", L"MouseDown(2,0,120,60)", L"MouseUp(2,0,120,60)",
                                         L"Click"}),
              f.log().event_texts());
}

TEST_F(FrameTest, APressThatEndsOutsideRaisesNoClick)
{
    Hosted &f = place(kProgId, {0, 0, 200, 29});
    f.activate();
    HWND w = f.hwnd();
    mouse(w, WM_LBUTTONDOWN, 100, 20, MK_LBUTTON);
    mouse(w, WM_MOUSEMOVE, 300, 20, MK_LBUTTON); // captured: the move outside still arrives
    mouse(w, WM_LBUTTONUP, 300, 20);
    EXPECT_EQ((std::vector<std::wstring>{L"MouseDown", L"MouseMove", L"MouseUp"}), f.log().event_names());
    // A press on the label belongs to the label until it is released, wherever the pointer goes.
    f.log().clear_events();
    mouse(w, WM_LBUTTONDOWN, 10, 5, MK_LBUTTON);
    mouse(w, WM_LBUTTONUP, 100, 25);
    EXPECT_EQ((std::vector<std::wstring>{L"MouseDown(1,0,90,45)", L"MouseUp(1,0,1440,345)"}), f.log().event_texts());
}

TEST_F(FrameTest, FrozenEventsAreNotRaised)
{
    Hosted &f = place(kProgId, {0, 0, 200, 29});
    f.activate();
    ComPtr<IOleControl> c = f.as<IOleControl>(IID_IOleControl);
    c->FreezeEvents(TRUE);
    click(f.hwnd(), 100, 20);
    EXPECT_TRUE(f.log().events.empty());
    c->FreezeEvents(FALSE);
    click(f.hwnd(), 100, 20);
    EXPECT_EQ(3u, f.log().events.size());
}

// ---------------------------------------------------------------- resources

TEST_F(FrameTest, TenThousandResizeAndPaintCyclesLeaveNoObjectsBehind)
{
    DllResourceCounter dll;
    ASSERT_TRUE(dll.installed());
    Hosted &f = place(kProgId, {0, 0, 200, 29});
    f.activate();
    f.put(L"CAPTION", Str(L"Totals"));
    UpdateWindow(f.hwnd());
    pump();
    ResourceSnapshot before;
    for (int i = 0; i < 10000; ++i) {
        f.move({0, 0, 100 + i % 150, 20 + i % 40});
        InvalidateRect(f.hwnd(), nullptr, FALSE);
        UpdateWindow(f.hwnd());
    }
    pump();
    EXPECT_EQ(std::vector<std::string>{}, before.changes());
}

TEST(FrameLifetime, AfterEverythingIsReleasedTheDllCanUnload)
{
    {
        Container form;
        Hosted f(form, kProgId, {0, 0, 200, 29});
        f.activate();
        ComPtr<IEnumConnectionPoints> points;
        ASSERT_EQ(S_OK, f.as<IConnectionPointContainer>(IID_IConnectionPointContainer)->EnumConnectionPoints(points.put()));
        EXPECT_EQ(S_FALSE, dll_can_unload_now());
        f.render(200, 29);
        // The enumerator holds the frame: the container's release is not the last one...
        EXPECT_GT(f.close(), 0u);
        // ...and the enumerator's own release ends it.
        EXPECT_EQ(S_FALSE, dll_can_unload_now());
        points.reset();
    }
    CoFreeUnusedLibraries();
    EXPECT_EQ(S_OK, dll_can_unload_now());
}

TEST(FrameThreads, EachThreadHasItsOwnMetricsAndFrames)
{
    // A frame created on a second apartment thread works there on its own.
    std::wstring caption;
    std::thread t([&] {
        OleInitialize(nullptr);
        {
            Container form;
            Hosted f(form, kProgId, {0, 0, 200, 29});
            f.put(L"CAPTION", Str(L"thread"));
            caption = as_string(f.get(L"CAPTION"));
            f.render(200, 29);
        }
        OleUninitialize();
    });
    t.join();
    EXPECT_EQ(L"thread", caption);
}
