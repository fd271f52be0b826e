// The picture button through the real DLL: its keys (PICTURENORMAL read twice, BorderStyle
// written and never read), the picture each look shows under the mouse, the right button and
// the keys, and the disabled look with and without a disabled picture.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "buttons/button_test.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kPictureButton[] = L"TarnControls.pbtn";
constexpr COLORREF kNormal = RGB(200, 0, 0), kHLight = RGB(0, 180, 0), kPressed = RGB(0, 0, 220),
                   kDisabled = RGB(90, 90, 90);

void key(HWND w, UINT msg, WPARAM vk) { SendMessageW(w, msg, vk, msg == WM_KEYUP ? 0xC0000001 : 1); }

IUnknown *object_of(Hosted &h, const wchar_t *name)
{
    Variant v = h.get(name);
    return v.vt() == VT_DISPATCH ? V_DISPATCH(v.get()) : nullptr;
}

class PictureButtonTest : public ControlTest {
protected:
    Hosted &with_pictures(Hosted &b)
    {
        b.putref(L"PictureNormal", solid_picture(16, 16, kNormal).get());
        b.putref(L"PictureHLight", solid_picture(16, 16, kHLight).get());
        b.putref(L"PicturePressed", solid_picture(16, 16, kPressed).get());
        b.putref(L"PictureDisabled", solid_picture(16, 16, kDisabled).get());
        return b;
    }
};

} // namespace

TEST_F(PictureButtonTest, KeysReadTheNormalPictureTwiceAndWriteBorderStyleOneWay)
{
    ComPtr<Bag> empty = Bag::Create();
    Hosted &restored = place(kPictureButton, {10, 10, 50, 50}, Init::FromBag, empty.get());
    EXPECT_EQ((std::vector<std::wstring>{L"PICTURENORMAL", L"PICTURENORMAL", L"PICTUREHLIGHT", L"PICTUREDISABLED",
                                         L"PICTUREPRESSED", L"ENABLED", L"CAPTION"}),
              empty->reads);
    EXPECT_EQ(L"", as_string(restored.get(L"CAPTION")));
    EXPECT_EQ(as_string(Bool(true)), as_string(restored.get(L"Enabled")));
    EXPECT_FALSE(object_of(restored, L"PictureNormal"));

    Hosted &b = with_pictures(place(kPictureButton, {60, 10, 100, 50}));
    b.put(L"Enabled", Bool(false));
    b.log().allow(L"IOleControlSite::OnControlInfoChanged"); // a new access key
    b.put(L"CAPTION", Str(L"&Go"));
    EXPECT_EQ((std::vector<std::wstring>{L"PICTURENORMAL", L"PICTUREHLIGHT", L"PICTUREPRESSED", L"PICTUREDISABLED",
                                         L"ENABLED", L"CAPTION"}),
              b.log().changes);
    // The public names of the normal and disabled looks' pictures are the same objects.
    EXPECT_EQ(object_of(b, L"PictureNormal"), object_of(b, L"PICPNORMAL"));
    EXPECT_EQ(object_of(b, L"PictureDisabled"), object_of(b, L"PICDISABLED"));
    ComPtr<Bag> bag = b.save_bag();
    EXPECT_EQ((std::vector<std::wstring>{L"PICTURENORMAL", L"PICTUREHLIGHT", L"PICTUREPRESSED", L"PICTUREDISABLED",
                                         L"ENABLED", L"CAPTION", L"BorderStyle"}),
              bag->writes);
    std::vector<BYTE> bytes = stream_bytes(b.save_stream().get());
    Hosted &by_bag = place(kPictureButton, {110, 10, 150, 50}, Init::FromBag, bag.get());
    EXPECT_EQ(0, std::count(bag->reads.begin(), bag->reads.end(), L"BorderStyle"));
    Hosted &by_stream = place(kPictureButton, {160, 10, 200, 50}, Init::FromStream, stream_of(bytes).get());
    for (Hosted *h : {&by_bag, &by_stream}) {
        EXPECT_EQ(L"&Go", as_string(h->get(L"CAPTION")));
        EXPECT_EQ(as_string(Bool(false)), as_string(h->get(L"Enabled")));
        for (const wchar_t *pic : {L"PictureNormal", L"PictureHLight", L"PicturePressed", L"PictureDisabled"})
            EXPECT_TRUE(object_of(*h, pic)) << narrow(pic);
    }
    // Only pictures are taken; Nothing clears one.
    EXPECT_EQ(S_OK, b.put(L"PictureNormal", Str(L"C:\\missing.bmp")));
    EXPECT_EQ(S_OK, b.putref(L"PictureHLight", nullptr));
    EXPECT_FALSE(object_of(b, L"PictureHLight"));
}

TEST_F(PictureButtonTest, EachLookShowsItsPictureForTheMouseTheKeysAndTheRightButton)
{
    Hosted &b = with_pictures(place(kPictureButton, {0, 0, 40, 40}));
    b.activate();
    allow_focus(b);
    HWND w = b.hwnd();
    auto shown = [&] { return b.capture().pixel(20, 20); };
    struct Step {
        const char *what;
        std::function<void()> act;
        COLORREF colour;
    };
    const Step steps[] = {
        {"at rest", [] {}, kNormal},
        {"pointer over", [&] { mouse(w, WM_MOUSEMOVE, 20, 20); }, kHLight},
        {"left press", [&] { mouse(w, WM_LBUTTONDOWN, 20, 20, MK_LBUTTON); }, kPressed},
        {"left release", [&] { mouse(w, WM_LBUTTONUP, 20, 20); }, kNormal},
        {"pointer over again", [&] { mouse(w, WM_MOUSEMOVE, 21, 20); }, kHLight},
        {"pointer out", [&] { mouse(w, WM_MOUSEMOVE, 60, 20); }, kNormal},
        {"right press", [&] { mouse(w, WM_RBUTTONDOWN, 20, 20, MK_RBUTTON); }, kNormal},
        {"right release", [&] { mouse(w, WM_RBUTTONUP, 20, 20); }, kNormal},
        {"middle press", [&] { mouse(w, WM_MBUTTONDOWN, 20, 20, MK_MBUTTON); }, kPressed},
        {"middle release", [&] { mouse(w, WM_MBUTTONUP, 20, 20); }, kNormal},
        {"space down", [&] { SetFocus(w), key(w, WM_KEYDOWN, VK_SPACE); }, kPressed},
        {"space up", [&] { key(w, WM_KEYUP, VK_SPACE); }, kNormal},
        {"host ends the hover", [&] { mouse(w, WM_MOUSEMOVE, 20, 20), b.call(L"MousePosnONOUT"); }, kNormal},
        {"disabled", [&] { b.put(L"Enabled", Bool(false)); }, kDisabled},
        {"disabled, pointer over", [&] { mouse(w, WM_MOUSEMOVE, 20, 20); }, kDisabled},
        {"disabled, pressed", [&] { mouse(w, WM_LBUTTONDOWN, 20, 20, MK_LBUTTON); }, kDisabled},
    };
    for (const Step &s : steps) {
        s.act();
        EXPECT_EQ(s.colour, shown()) << s.what;
    }
    mouse(w, WM_LBUTTONUP, 20, 20);
    // Without a disabled picture the normal one shows greyed.
    b.putref(L"PictureDisabled", nullptr);
    Rgb greyed = shown();
    EXPECT_NE(kNormal, greyed);
    EXPECT_EQ(red_of(greyed), green_of(greyed));
    EXPECT_EQ(green_of(greyed), blue_of(greyed));
    b.put(L"Enabled", Bool(true));
    b.call(L"UserControlMouseOut");
    EXPECT_EQ(kNormal, shown());

    // Only a left press and release clicks; the right one never shows the pressed picture.
    b.log().clear_events();
    click(w, 20, 20);
    mouse(w, WM_RBUTTONDOWN, 5, 6, MK_RBUTTON);
    mouse(w, WM_RBUTTONUP, 5, 6);
    std::vector<std::wstring> names = b.log().event_names();
    EXPECT_EQ(1, std::count(names.begin(), names.end(), L"Click"));
    EXPECT_EQ(2, std::count(names.begin(), names.end(), L"MouseDown"));
    EXPECT_EQ(2, std::count(names.begin(), names.end(), L"MouseUp"));

    // A caption sits under the picture in the caption's own font.
    b.put(L"CAPTION", Str(L"WWWW"));
    Bitmap captioned = b.capture();
    int text = 0;
    for (int y = 30; y < 40; ++y)
        for (int x = 0; x < 40; ++x) text += captioned.pixel(x, y) == sys(COLOR_BTNTEXT);
    EXPECT_GT(text, 5);
}
