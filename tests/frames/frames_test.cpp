// The frame and the vertical divider through the real DLL in the test container: the frame's
// properties and keys, its persistence forms, bad input, the picture its eight lines make and
// its events; the divider's forced width, its line colours on either side of the version rule
// and a BACKCOLOR announced but never saved; and what repeated work and other threads leave.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <thread>

#include "foundation/colors.h"
#include "foundation/font_object.h"
#include "foundation/metrics.h"
#include "frames/frame_test_helpers.h"
#include "support/control_test.h"
#include "support/fake_machine_key.h"
#include "support/resource_counts.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kFrame[] = L"TarnControls.cframe", kDivider[] = L"TarnControls.lnev";

struct ColourProperty {
    const wchar_t *name;
    OleColor restore_default;
};
const ColourProperty kLines[] = {
    {L"LeftHighlightColor", 0x80000014}, {L"LeftLightShadowColor", 0x80000016}, {L"TopHighlightColor", 0x80000014},
    {L"TopLightShadowColor", 0x80000016}, {L"RightShadowColor", 0x80000010},   {L"RightDarkShadowColor", 0x80000015},
    {L"BottomShadowColor", 0x80000010},  {L"BottomDarkShadowColor", 0x80000015},
};

const std::vector<std::wstring> kSaveOrder = {
    L"ALIGNMENT", L"CAPTION", L"FORECOLOR", L"BACKCOLOR", L"LEFTHIGHLIGHTCOLOR", L"LEFTLIGHTSHADOWCOLOR",
    L"TOPHIGHLIGHTCOLOR", L"TOPLIGHTSHADOWCOLOR", L"RIGHTSHADOWCOLOR", L"RIGHTDARKSHADOWCOLOR", L"BOTTOMSHADOWCOLOR",
    L"BOTTOMDARKSHADOWCOLOR", L"FONT"};
const std::vector<std::wstring> kRestoreOrder = {
    L"FONT", L"FORECOLOR", L"BACKCOLOR", L"LEFTHIGHLIGHTCOLOR", L"LEFTLIGHTSHADOWCOLOR", L"TOPHIGHLIGHTCOLOR",
    L"TOPLIGHTSHADOWCOLOR", L"RIGHTSHADOWCOLOR", L"RIGHTDARKSHADOWCOLOR", L"BOTTOMSHADOWCOLOR",
    L"BOTTOMDARKSHADOWCOLOR", L"ALIGNMENT", L"CAPTION"};

int divider_px() { return static_cast<int>(std::lround(30 / TwipsPerPixelX())); }

// Every property set away from its defaults, written in save order.
void set_everything(Hosted &f)
{
    f.put(L"Alignment", I2(2));
    f.put(L"CAPTION", Str(L"Gr\u00fc\u00dfe \u65e5\u672c \u0416")); // outside any one code page
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
    FontSpec look = FontSpecOf(V_DISPATCH(f.get(L"Font").get()));
    EXPECT_EQ(L"Tahoma", look.name);
    EXPECT_DOUBLE_EQ(12, look.size);
    EXPECT_TRUE(look.bold);
}

class FrameTest : public ControlTest {
protected:
    // A new frame loaded from what `f` saves through a bag or a stream.
    Hosted &reload(Hosted &f, Init how)
    {
        ComPtr<IUnknown> saved = how == Init::FromBag ? ComPtr<IUnknown>(f.save_bag().get()) : f.save_stream().get();
        return place(kFrame, {10, 10, 210, 39}, how, saved.get());
    }
};

class DividerTest : public ControlTest {
protected:
    // The divider keeps its own width and tells its container so.
    DividerTest() { allow_self_sizing(form); }
    Hosted &divider(RECT pos = {10, 10, 30, 110}, Init init = Init::New, IUnknown *source = nullptr)
    {
        return place(kDivider, pos, init, source);
    }
};

} // namespace

// ---------------------------------------------------------------- the frame's properties and persistence

TEST_F(FrameTest, ANewFrameShowsItsDesignValuesSavesOnlyWhatDiffersAndRoundTripsEveryProperty)
{
    Hosted &f = place(kFrame);
    EXPECT_EQ(L"VBAR", as_string(f.get(L"CAPTION")));
    EXPECT_EQ(0, as_integer(f.get(L"Alignment")));
    EXPECT_EQ(0x8000000Fu, colour(f));
    EXPECT_EQ(0x80000008u, colour(f, L"ForeColor"));
    for (const ColourProperty &p : kLines) EXPECT_EQ(p.restore_default, colour(f, p.name)) << narrow(p.name);
    EXPECT_EQ(L"Tahoma", FontSpecOf(V_DISPATCH(f.get(L"Font").get())).name);
    // Only its fore colour (window text) differs from its save default (button face), so a
    // fore colour of button face is not saved and comes back as window text.
    EXPECT_EQ(std::vector<std::wstring>{L"FORECOLOR"}, f.save_bag()->keys());
    f.put(L"ForeColor", ole(0x8000000F));
    EXPECT_TRUE(f.save_bag()->keys().empty());
    for (Init how : {Init::FromBag, Init::FromStream}) EXPECT_EQ(0x80000008u, colour(reload(f, how), L"ForeColor"));

    ComPtr<IPersistStreamInit> p = f.as<IPersistStreamInit>(IID_IPersistStreamInit);
    EXPECT_EQ(E_UNEXPECTED, p->InitNew()); // already initialised
    EXPECT_EQ(S_FALSE, p->IsDirty());
    f.log().changes.clear();
    f.log().changed_ids.clear();
    set_everything(f);
    EXPECT_EQ(kSaveOrder, f.log().changes); // each write announces its key
    EXPECT_EQ(-518, f.log().changed_ids[1]); // and CAPTION's notice the standard caption's DISPID
    EXPECT_EQ(S_OK, p->IsDirty());
    ComPtr<Bag> bag = f.save_bag();
    EXPECT_EQ(kSaveOrder, bag->writes);
    expect_everything(place(kFrame, {10, 10, 210, 39}, Init::FromBag, bag.get()));
    // A bag that refuses every write still gets every step tried, and the save succeeds.
    ComPtr<Bag> refusing = Bag::Create();
    refusing->fail_writes = true;
    EXPECT_EQ(S_OK, f.as<IPersistPropertyBag>(IID_IPersistPropertyBag)->Save(refusing.get(), TRUE, FALSE));
    EXPECT_EQ(kSaveOrder, refusing->writes);

    ComPtr<IStream> stream = f.save_stream();
    EXPECT_EQ(S_FALSE, p->IsDirty());
    ULARGE_INTEGER max{}, pos{};
    p->GetSizeMax(&max);
    STATSTG st{};
    stream->Stat(&st, STATFLAG_NONAME);
    EXPECT_EQ(max.QuadPart, st.cbSize.QuadPart);
    expect_everything(place(kFrame, {10, 10, 210, 39}, Init::FromStream, stream.get()));
    // The load left the stream right after the frame's data, where a container's next object starts.
    stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_CUR, &pos);
    EXPECT_EQ(st.cbSize.QuadPart, pos.QuadPart);
}

// ---------------------------------------------------------------- bad input

TEST_F(FrameTest, WrongTypesInTheBagAndBrokenStreamsLoadAsDefaults)
{
    const auto of_type = [](VARTYPE vt) {
        Variant v;
        V_VT(v.put()) = vt;
        return v;
    };
    Variant array = of_type(VT_ARRAY | VT_I4);
    V_ARRAY(array.get()) = SafeArrayCreateVector(VT_I4, 0, 3);
    ComPtr<Bag> bag = Bag::Create();
    bag->set(L"CAPTION", I4(42));               // converts: a number is a fine caption
    bag->set(L"RIGHTSHADOWCOLOR", Str(L"255")); // and text that reads as a number a fine colour
    bag->set(L"BACKCOLOR", Str(L"red"));        // the rest cannot convert
    bag->set(L"ALIGNMENT", R8(1e10));           // overflows a 16-bit integer
    bag->set(L"FONT", Str(L"Arial"));           // not a font object
    bag->set(L"LEFTHIGHLIGHTCOLOR", of_type(VT_NULL));
    bag->set(L"TOPHIGHLIGHTCOLOR", array);
    bag->set(L"FORECOLOR", of_type(VT_DISPATCH)); // a null object
    Hosted &f = place(kFrame, {10, 10, 210, 39}, Init::FromBag, bag.get());
    EXPECT_EQ(S_OK, f.init_result());
    EXPECT_EQ(L"42", as_string(f.get(L"CAPTION")));
    EXPECT_EQ(0x8000000Fu, colour(f));
    EXPECT_EQ(0, as_integer(f.get(L"Alignment")));
    EXPECT_EQ(VT_DISPATCH, f.get(L"Font").vt());
    // Missing keys and wrong types both leave the restore defaults.
    EXPECT_EQ(kRestoreOrder, bag->reads);
    for (const ColourProperty &p : kLines)
        EXPECT_EQ(p.name == std::wstring(L"RightShadowColor") ? 255u : p.restore_default, colour(f, p.name))
            << narrow(p.name);
    EXPECT_EQ(0x80000008u, colour(f, L"ForeColor"));
    f.render(200, 29);

    set_everything(f);
    std::vector<BYTE> bytes = stream_bytes(f.save_stream().get());
    ASSERT_FALSE(bytes.empty());
    auto load = [&](const std::vector<BYTE> &data) {
        ComPtr<IStream> s = stream_of(data);
        Hosted g(form, kFrame, {0, 0, 200, 29}, Init::FromStream, s.get());
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

TEST_F(FrameTest, AFontWriteCopiesAndHugeCaptionsAndNegativeOrZeroSizesAreHarmless)
{
    Hosted &f = place(kFrame);
    ComPtr<IFontDisp> mine = make_font(L"Tahoma", 10);
    f.putref(L"Font", mine.get());
    ComPtr<IFont>(mine.as<IFont>(IID_IFont))->put_Bold(TRUE); // the host changes its own object later
    EXPECT_FALSE(FontSpecOf(V_DISPATCH(f.get(L"Font").get())).bold);
    // Something that is not a font changes nothing.
    EXPECT_EQ(S_OK, f.put(L"Font", Variant()));
    EXPECT_EQ(L"Tahoma", FontSpecOf(V_DISPATCH(f.get(L"Font").get())).name);
    std::wstring huge(100000, L'x');
    for (size_t i = 0; i < huge.size(); i += 97) huge[i] = L' ';
    huge[5] = L'\u20ac';
    EXPECT_EQ(S_OK, f.put(L"CAPTION", Str(huge)));
    EXPECT_EQ(huge, as_string(f.get(L"CAPTION")));
    for (Init how : {Init::FromBag, Init::FromStream}) EXPECT_EQ(huge, as_string(reload(f, how).get(L"CAPTION")));
    ComPtr<IOleObject> ole = f.as<IOleObject>(IID_IOleObject);
    SIZEL negative{-5000, -100}, extent{};
    EXPECT_EQ(S_OK, ole->SetExtent(DVASPECT_CONTENT, &negative));
    ole->GetExtent(DVASPECT_CONTENT, &extent);
    EXPECT_EQ(0, extent.cx);
    f.render(10, 10);
    f.move({50, 50, 10, 10}); // right and bottom before left and top
    f.activate();
    for (RECT r : {RECT{0, 0, 0, 0}, RECT{0, 0, 1, 1}, RECT{5, 5, -100, 3}, RECT{0, 0, 200, 29}}) {
        f.move(r);
        UpdateWindow(f.hwnd());
    }
    ComPtr<IViewObject> view = f.as<IViewObject>(IID_IViewObject);
    Bitmap b(20, 20);
    RECTL inverted{20, 20, 0, 0};
    EXPECT_EQ(S_OK, view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, b.dc(), &inverted, nullptr, nullptr, 0));
    EXPECT_EQ(E_INVALIDARG, view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, b.dc(), nullptr, nullptr, nullptr, 0));
    EXPECT_EQ(DV_E_DVASPECT, view->Draw(DVASPECT_ICON, -1, nullptr, nullptr, nullptr, b.dc(), &inverted, nullptr, nullptr, 0));
}

// ---------------------------------------------------------------- the picture

TEST_F(FrameTest, DrawsItsEightLinesWhereTheLayoutPutsThemAtEitherDpi)
{
    const int dpi = screen_dpi();
    if (dpi != 96 && dpi != 144) GTEST_SKIP() << "the screen is at " << dpi << " DPI";
    // Pixels {x, y, colour}: highlight, light, shadow, dark shadow, button face.
    const int H = COLOR_3DHILIGHT, L = COLOR_3DLIGHT, S = COLOR_BTNSHADOW, D = COLOR_3DDKSHADOW, F = COLOR_BTNFACE;
    // At 96 DPI a 200 x 29 frame (3000 x 435 twips, T = 25, Int(T/2) = 12) draws its raised
    // border in the outermost two pixel rings; later lines cover earlier ones where they cross.
    const std::vector<std::array<int, 3>> at96 = {
        {0, 0, H}, {100, 0, H}, {198, 0, H}, {199, 0, D}, {0, 14, H}, {0, 27, H}, {0, 28, D}, {100, 28, D},
        {199, 28, D}, {199, 14, D}, {1, 1, L}, {100, 1, L}, {197, 1, L}, {198, 1, S}, {1, 14, L}, {1, 26, L},
        {1, 27, S}, {100, 27, S}, {198, 27, S}, {198, 14, S}, {100, 20, F}, {2, 26, F}, {197, 26, F},
    };
    // At 144 DPI 300 x 45 pixels are 3000 x 450 twips at 10 twips per pixel: T is still 25
    // twips, which now falls 2.5 and 1.2 pixels from the edges, so the lines sit one pixel
    // further in and leave the last column and row to the background.
    const std::vector<std::array<int, 3>> at144 = {
        {0, 0, H}, {297, 0, H}, {298, 0, D}, {0, 42, H}, {0, 43, D}, {299, 43, D}, {298, 20, D}, {1, 1, L},
        {297, 1, S}, {1, 41, L}, {1, 42, S}, {297, 42, S}, {299, 20, F}, {150, 44, F}, {299, 0, H},
    };
    const int width = dpi == 96 ? 200 : 300, height = dpi == 96 ? 29 : 45;
    Hosted &f = place(kFrame, {0, 0, width, height});
    f.put(L"CAPTION", Str(L""));
    Bitmap picture = f.render(width, height);
    picture.save_png(output_path(dpi == 96 ? L"cframe-96dpi.png" : L"cframe-144dpi.png"));
    for (const auto &[x, y, index] : dpi == 96 ? at96 : at144)
        EXPECT_EQ(sys(index), picture.pixel(x, y)) << "pixel (" << x << ", " << y << ")";
    // The same picture from the frame's own window (the one draw path).
    f.activate();
    EXPECT_EQ(picture.hash(), f.capture().hash());
}

TEST_F(FrameTest, WritingALineColourRunsTheVisibilityRuleAndRestoringOnlyForOuterLines)
{
    Hosted &f = place(kFrame);
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

    // A line's colour first, the back colour after: the line stays visible although its colour
    // now equals the back colour, covering the end of the line below it. Restoring hides an
    // outer line but leaves an inner one as designed (visible); writing its colour hides either.
    const struct {
        const wchar_t *line;
        int x, y, below;
        bool restoring_hides;
    } cases[] = {{L"RightDarkShadowColor", 199, 0, COLOR_3DHILIGHT, true},
                 {L"RightShadowColor", 198, 1, COLOR_3DLIGHT, false}};
    for (const auto &c : cases) {
        SCOPED_TRACE(narrow(c.line));
        Hosted &shown = place(kFrame);
        shown.put(L"CAPTION", Str(L""));
        shown.put(c.line, ole(0x000000FF));
        shown.put(L"BACKCOLOR", ole(0x000000FF));
        EXPECT_EQ(0x000000FFu, shown.render(200, 29).pixel(c.x, c.y));
        ComPtr<Bag> bag = shown.save_bag();
        Hosted &again = place(kFrame, {10, 10, 210, 39}, Init::FromBag, bag.get());
        again.put(L"CAPTION", Str(L""));
        EXPECT_EQ(c.restoring_hides ? sys(c.below) : 0x000000FFu, again.render(200, 29).pixel(c.x, c.y));
        again.put(c.line, ole(0x000000FF));
        EXPECT_EQ(sys(c.below), again.render(200, 29).pixel(c.x, c.y));
    }
}

// ---------------------------------------------------------------- events

TEST_F(FrameTest, TheCaptionLabelRaisesTheFramesEventsWithItsOwnCoordinates)
{
    Hosted &f = place(kFrame);
    f.activate();
    HWND w = f.hwnd();
    const auto double_click = [&](int x, int y) {
        f.log().clear_events();
        click(w, x, y);
        mouse(w, WM_LBUTTONDBLCLK, x, y, MK_LBUTTON);
        mouse(w, WM_LBUTTONUP, x, y);
        return joined(f.log().event_texts());
    };
    // The label sits at (60, 30) twips = pixel (4, 2) after layout and reports its own
    // coordinates; a double click on it raises nothing of its own.
    EXPECT_EQ(L"MouseDown(1,0,90,45) MouseUp(1,0,90,45) Click MouseUp(1,0,90,45)", double_click(10, 5));
    // On the frame's own surface: control coordinates; the second press is DblClick, its
    // release no Click.
    EXPECT_EQ(L"MouseDown(1,0,1500,300) MouseUp(1,0,1500,300) Click DblClick MouseUp(1,0,1500,300)",
              double_click(100, 20));
    // Right button and moves go the same way; a move with no button held reports 0.
    f.log().clear_events();
    mouse(w, WM_MOUSEMOVE, 12, 6);
    mouse(w, WM_RBUTTONDOWN, 12, 6, MK_RBUTTON);
    mouse(w, WM_RBUTTONUP, 12, 6);
    EXPECT_EQ(L"MouseMove(0,0,120,60) MouseDown(2,0,120,60) MouseUp(2,0,120,60) Click", joined(f.log().event_texts()));
    // A press that ends outside raises no Click (the frame holds the capture: the move outside
    // still arrives), and a press on the label belongs to it until released, wherever.
    f.log().clear_events();
    mouse(w, WM_LBUTTONDOWN, 100, 20, MK_LBUTTON);
    mouse(w, WM_MOUSEMOVE, 300, 20, MK_LBUTTON);
    mouse(w, WM_LBUTTONUP, 300, 20);
    mouse(w, WM_LBUTTONDOWN, 10, 5, MK_LBUTTON);
    mouse(w, WM_LBUTTONUP, 100, 25);
    EXPECT_EQ(L"MouseDown(1,0,1500,300) MouseMove(1,0,4500,300) MouseUp(1,0,4500,300) MouseDown(1,0,90,45) "
              L"MouseUp(1,0,1440,345)",
              joined(f.log().event_texts()));
    // Frozen events are not raised.
    ComPtr<IOleControl> c = f.as<IOleControl>(IID_IOleControl);
    c->FreezeEvents(TRUE);
    f.log().clear_events();
    click(w, 100, 20);
    EXPECT_TRUE(f.log().events.empty());
    c->FreezeEvents(FALSE);
    click(w, 100, 20);
    EXPECT_EQ(L"MouseDown MouseUp Click", joined(f.log().event_names()));
}

// ---------------------------------------------------------------- the divider

TEST_F(DividerTest, EveryLayoutKeepsItThirtyTwipsWideAndItsColoursToTheVersion)
{
    Hosted &d = divider({10, 10, 30, 110});
    EXPECT_EQ(divider_px(), extent_px(d).cx);
    d.activate();
    RECT r{};
    for (RECT asked : {RECT{0, 0, 0, 0}, RECT{5, 5, -100, 3}, RECT{0, 0, 400, 60}}) {
        d.move(asked);
        UpdateWindow(d.hwnd());
        GetWindowRect(d.hwnd(), &r);
        EXPECT_EQ(divider_px(), r.right - r.left) << asked.right - asked.left << " pixels asked";
    }
    EXPECT_EQ(60, r.bottom - r.top); // the height is the host's
    FakeMachineKey machine;
    // Above 4.99 both lines come from the button face; otherwise they are the system shadow and
    // highlight. The first key wins over the NT one, and any text above 4.99 counts.
    const struct {
        const wchar_t *windows, *nt;
        bool newer;
    } versions[] = {
        {nullptr, L"5.1", true}, {L"4.995 beta", L"5.1", true}, {L"4.0", L"4.0", false},
        {L"4.99", L"4.99", false}, {L"not a number", L"not a number", false}, {L"", L"", false},
        {L"6.0", L"", true},
    };
    const Rgb face = GetSysColor(COLOR_BTNFACE);
    for (const auto &v : versions) {
        if (v.windows) machine.set(kWindowsKey, L"VersionNumber", v.windows);
        machine.set(kWindowsNtKey, L"CurrentVersion", v.nt);
        d.move({10, 10, 60, 110}); // any layout reads the version again
        Bitmap b = d.render(divider_px(), 100);
        SCOPED_TRACE(narrow(v.windows ? v.windows : L"(none)") + " / " + narrow(v.nt));
        EXPECT_EQ(b.height(), b.count_column(0, v.newer ? AdjustColor(face, -25, true) : sys(COLOR_BTNSHADOW)));
        EXPECT_EQ(b.height(), b.count_column(1, v.newer ? AdjustColor(face, 25, true) : sys(COLOR_3DHILIGHT)));
    }
}

TEST_F(DividerTest, BackColorIsAnnouncedButNeverSavedAndBadColoursAreSkipped)
{
    Hosted &d = divider();
    EXPECT_EQ(S_OK, d.put(L"BACKCOLOR", ole(0x7F000000)));
    EXPECT_EQ(0x8000000Fu, colour(d));
    d.put(L"BACKCOLOR", ole(0x000000FF));
    EXPECT_EQ(L"BACKCOLOR BACKCOLOR", joined(d.log().changes)); // the bad one too
    EXPECT_EQ(0x000000FFu, colour(d));
    ComPtr<Bag> bag = d.save_bag();
    EXPECT_TRUE(bag->writes.empty());
    Hosted &again = divider({40, 10, 60, 110}, Init::FromBag, bag.get());
    EXPECT_TRUE(bag->reads.empty()); // restoring reads nothing either
    EXPECT_EQ(0x8000000Fu, colour(again));
    ComPtr<IStream> stream = d.save_stream();
    EXPECT_EQ(0x8000000Fu, colour(divider({70, 10, 90, 110}, Init::FromStream, stream.get())));
    // ColBACK changes nothing that shows and announces nothing, whatever it is given; a
    // missing argument is the caller's error.
    d.log().changes.clear();
    for (const Variant &arg : {ole(0x0000FF00), ole(0x800000FF), Str(L"red")}) {
        d.call(L"ColBACK", {arg});
        EXPECT_EQ(S_OK, d.last_result());
    }
    EXPECT_TRUE(d.log().changes.empty());
    EXPECT_EQ(0x000000FFu, colour(d));
    d.call(L"ColBACK", {});
    EXPECT_TRUE(FAILED(d.last_result()));
    d.render(divider_px(), 100);
}

// ---------------------------------------------------------------- resources and threads

TEST_F(FrameTest, TenThousandResizeAndPaintCyclesLeaveNoObjectsBehind)
{
    ASSERT_TRUE(DllResourceCounter().installed()); // counting from before the controls exist
    allow_self_sizing(form);                       // the divider keeps its own width
    Hosted &f = place(kFrame), &d = place(kDivider, {300, 0, 302, 100});
    f.put(L"CAPTION", Str(L"Totals"));
    const auto cycle = [&](int i) {
        f.move({0, 0, 100 + i % 150, 20 + i % 40});
        d.move({300, 0, 302 + i % 40, 20 + i % 300}); // beside the frame, not over it
        for (Hosted *h : {&f, &d}) {
            InvalidateRect(h->hwnd(), nullptr, FALSE);
            UpdateWindow(h->hwnd());
        }
    };
    for (Hosted *h : {&f, &d}) h->activate();
    cycle(0); // the system keeps a few objects of its own for the windows from their first resize on
    pump();
    ResourceSnapshot before;
    for (int i = 1; i < 10000; ++i) cycle(i);
    pump();
    EXPECT_EQ(std::vector<std::string>{}, before.changes());
}

TEST(FramesOnAnotherThread, WorkThereAndOnceReleasedLetTheDllUnload)
{
    // Each thread has its own metrics and frames: a frame made on a second apartment thread
    // works there on its own. An enumerator holds its frame: the container's release is not
    // the last one, and only the enumerator's lets the DLL unload.
    std::thread([] {
        OleInitialize(nullptr);
        {
            Container form;
            Hosted f(form, kFrame, {0, 0, 200, 29});
            f.activate();
            f.render(200, 29);
            ComPtr<IEnumConnectionPoints> points;
            ASSERT_EQ(S_OK, f.as<IConnectionPointContainer>(IID_IConnectionPointContainer)->EnumConnectionPoints(points.put()));
            EXPECT_GT(f.close(), 0u);
            EXPECT_EQ(S_FALSE, dll_can_unload_now());
            points.reset();
        }
        OleUninitialize();
    }).join();
    CoFreeUnusedLibraries();
    EXPECT_EQ(S_OK, dll_can_unload_now());
}
