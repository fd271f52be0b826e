// The button under the mouse and the keyboard, through real window messages: the events and
// their order, the faces each step shows, the capture that ends the hover, the space bar, the
// arrow keys that move the focus, focus loss and double clicks.
#include <gtest/gtest.h>

#include "buttons/button_test.h"

using namespace tarn;
using namespace tarn::test;

namespace {

using Texts = std::vector<std::wstring>;

// A toolbar button shows its face in its corner pixel: face, highlight (hover), shadow (pressed).
Rgb corner(Hosted &b) { return b.capture().pixel(0, 0); }
Rgb sys(int i) { return GetSysColor(i); }

void key(HWND w, UINT msg, WPARAM vk) { SendMessageW(w, msg, vk, msg == WM_KEYUP ? 0xC0000001 : 1); }

} // namespace

TEST_F(ButtonTest, HoverThenLeftClickRaisesItsEventsInOrder)
{
    Hosted &b = active();
    HWND w = b.hwnd();
    b.put(L"ButtonType", I4(5));
    mouse(w, WM_MOUSEMOVE, 50, 12);
    EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), corner(b));
    EXPECT_EQ(w, GetCapture()); // the hover holds the capture
    mouse(w, WM_LBUTTONDOWN, 50, 12, MK_LBUTTON);
    EXPECT_EQ(sys(COLOR_BTNSHADOW), corner(b));
    mouse(w, WM_LBUTTONUP, 50, 12);
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b));
    EXPECT_EQ((Texts{L"MouseMove(0,0,50,12)", L"MouseOut(0,0,50,12)", L"MouseDown(1,0,50,12)", L"MouseUp(1,0,50,12)",
                     L"Click"}),
              b.log().event_texts());
    // The move outside arrives through the capture and ends the hover.
    b.log().clear_events();
    mouse(w, WM_MOUSEMOVE, 50, 12);
    mouse(w, WM_MOUSEMOVE, 150, 12);
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b));
    EXPECT_EQ((Texts{L"MouseMove(0,0,50,12)", L"MouseOut(0,0,50,12)", L"MouseMove(0,0,150,12)", L"MouseOut(0,0,150,12)"}),
              b.log().event_texts());
}

TEST_F(ButtonTest, RightAndMiddleButtonsPressButNeverClick)
{
    Hosted &b = active();
    HWND w = b.hwnd();
    b.put(L"ButtonType", I4(5));
    mouse(w, WM_RBUTTONDOWN, 20, 10, MK_RBUTTON);
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b)); // a right press never shows the pressed face
    mouse(w, WM_RBUTTONUP, 20, 10);
    EXPECT_EQ((Texts{L"MouseDown(2,0,20,10)", L"MouseUp(2,0,20,10)"}), b.log().event_texts());
    b.log().clear_events();
    mouse(w, WM_MBUTTONDOWN, 20, 10, MK_MBUTTON);
    EXPECT_EQ(sys(COLOR_BTNSHADOW), corner(b));
    mouse(w, WM_MBUTTONUP, 20, 10);
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b));
    EXPECT_EQ((Texts{L"MouseDown(4,0,20,10)", L"MouseUp(4,0,20,10)"}), b.log().event_texts());
    // Shift and Ctrl travel with the events.
    b.log().clear_events();
    mouse(w, WM_LBUTTONDOWN, 3, 4, MK_LBUTTON | MK_SHIFT | MK_CONTROL);
    mouse(w, WM_LBUTTONUP, 3, 4, MK_SHIFT | MK_CONTROL);
    EXPECT_EQ((Texts{L"MouseDown(1,3,3,4)", L"MouseUp(1,3,3,4)", L"Click"}), b.log().event_texts());
}

TEST_F(ButtonTest, DraggingOutAndBackWhilePressedRaisesAndPressesTheFace)
{
    Hosted &b = active();
    HWND w = b.hwnd();
    b.put(L"ButtonType", I4(5));
    mouse(w, WM_LBUTTONDOWN, 50, 12, MK_LBUTTON);
    mouse(w, WM_MOUSEMOVE, 150, 12, MK_LBUTTON);
    EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), corner(b)); // the hover look while out
    EXPECT_EQ(w, GetCapture());
    mouse(w, WM_MOUSEMOVE, 60, 12, MK_LBUTTON);
    EXPECT_EQ(sys(COLOR_BTNSHADOW), corner(b)); // pressed again
    mouse(w, WM_LBUTTONUP, 60, 12);
    // No hover tracking while pressed: no MouseOut between.
    EXPECT_EQ((Texts{L"MouseDown(1,0,50,12)", L"MouseMove(1,0,150,12)", L"MouseMove(1,0,60,12)", L"MouseUp(1,0,60,12)",
                     L"Click"}),
              b.log().event_texts());
    // Released outside: no click.
    b.log().clear_events();
    mouse(w, WM_LBUTTONDOWN, 50, 12, MK_LBUTTON);
    mouse(w, WM_MOUSEMOVE, -20, 12, MK_LBUTTON);
    mouse(w, WM_LBUTTONUP, -20, 12);
    EXPECT_EQ((Texts{L"MouseDown", L"MouseMove", L"MouseUp"}), b.log().event_names());
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b));
}

TEST_F(ButtonTest, ADisabledButtonRaisesNoClick)
{
    Hosted &b = active();
    b.put(L"Enabled", Bool(false));
    click(b.hwnd(), 10, 10);
    EXPECT_EQ((Texts{L"MouseDown", L"MouseUp"}), b.log().event_names());
    b.put(L"Enabled", Bool(true));
    b.log().clear_events();
    click(b.hwnd(), 10, 10);
    EXPECT_EQ((Texts{L"MouseDown", L"MouseUp", L"Click"}), b.log().event_names());
}

TEST_F(ButtonTest, ADoubleClickIsASecondPressWithThePressedFace)
{
    Hosted &b = active();
    HWND w = b.hwnd();
    b.put(L"ButtonType", I4(5));
    click(w, 30, 10);
    mouse(w, WM_LBUTTONDBLCLK, 30, 10, MK_LBUTTON);
    EXPECT_EQ(sys(COLOR_BTNSHADOW), corner(b));
    mouse(w, WM_LBUTTONUP, 30, 10);
    EXPECT_EQ((Texts{L"MouseDown(1,0,30,10)", L"MouseUp(1,0,30,10)", L"Click", L"MouseDown(1,0,1,1)", L"DblClick",
                     L"MouseUp(1,0,30,10)"}),
              b.log().event_texts());
    // After a right press the double click is not turned into anything.
    b.log().clear_events();
    mouse(w, WM_RBUTTONDOWN, 30, 10, MK_RBUTTON);
    mouse(w, WM_RBUTTONUP, 30, 10);
    mouse(w, WM_RBUTTONDBLCLK, 30, 10, MK_RBUTTON);
    mouse(w, WM_RBUTTONUP, 30, 10);
    EXPECT_EQ((Texts{L"MouseDown", L"MouseUp", L"MouseUp"}), b.log().event_names());
}

TEST_F(ButtonTest, TheSpaceBarClicksOnlyWhenItsPressAndReleaseBothReachTheButton)
{
    Hosted &b = active();
    HWND w = b.hwnd();
    b.put(L"ButtonType", I4(5));
    SetFocus(w);
    key(w, WM_KEYDOWN, VK_SPACE);
    EXPECT_EQ(sys(COLOR_BTNSHADOW), corner(b));
    key(w, WM_CHAR, L' ');
    key(w, WM_KEYUP, VK_SPACE);
    EXPECT_EQ((Texts{L"KeyDown(32,0)", L"MouseDown(1,0,1,1)", L"KeyPress(32)", L"KeyUp(32,0)", L"MouseUp(1,0,1,1)",
                     L"Click"}),
              b.log().event_texts());
    // A release whose press went elsewhere (another key was the last to come down): no click.
    b.log().clear_events();
    key(w, WM_KEYDOWN, 'A');
    key(w, WM_KEYUP, VK_SPACE);
    EXPECT_EQ((Texts{L"KeyDown(65,0)", L"KeyUp(32,0)"}), b.log().event_texts());
    // A host that swallows the key code in KeyDown stops the click too.
    b.log().clear_events();
    b.log().on_event = [](const std::wstring &name, DISPPARAMS *params) {
        if (name == L"KeyDown" && params->cArgs == 2 && (V_VT(&params->rgvarg[1]) & VT_BYREF))
            *V_I2REF(&params->rgvarg[1]) = 0;
    };
    key(w, WM_KEYDOWN, VK_SPACE);
    key(w, WM_KEYUP, VK_SPACE);
    EXPECT_EQ((Texts{L"KeyDown(0,0)", L"KeyUp(32,0)"}), b.log().event_texts());
}

TEST_F(ButtonTest, LosingTheFocusEndsThePress)
{
    Hosted &b = active({10, 10, 110, 35});
    Hosted &other = active({10, 50, 110, 75});
    SetFocus(b.hwnd());
    key(b.hwnd(), WM_KEYDOWN, VK_SPACE);
    b.log().clear_events();
    SetFocus(other.hwnd());
    EXPECT_EQ((Texts{L"FocusLost", L"MouseUp(1,0,0,0)"}), b.log().event_texts());
    // The space's release now goes to the other button, which saw no press: no click anywhere.
    key(other.hwnd(), WM_KEYUP, VK_SPACE);
    EXPECT_EQ((Texts{L"KeyUp(32,0)"}), other.log().event_texts());
}

TEST_F(ButtonTest, ArrowKeysMoveTheFocusAfterKeyDownIsRaised)
{
    Hosted &a = active({10, 10, 110, 35});
    Hosted &b = active({10, 50, 110, 75});
    Hosted &c = active({10, 90, 110, 115});
    SetForegroundWindow(form.hwnd());
    SetFocus(a.hwnd());
    a.log().clear_events();
    key(a.hwnd(), WM_KEYDOWN, VK_RIGHT);
    pump(50);
    EXPECT_EQ(b.hwnd(), GetFocus());
    EXPECT_EQ(L"KeyDown(39,0)", a.log().event_texts().at(0));
    key(b.hwnd(), WM_KEYDOWN, VK_DOWN);
    pump(50);
    EXPECT_EQ(c.hwnd(), GetFocus());
    key(c.hwnd(), WM_KEYDOWN, VK_UP);
    pump(50);
    EXPECT_EQ(b.hwnd(), GetFocus());
    key(b.hwnd(), WM_KEYDOWN, VK_LEFT);
    pump(50);
    EXPECT_EQ(a.hwnd(), GetFocus());
    // Even when the host handles KeyDown.
    a.log().on_event = [](const std::wstring &, DISPPARAMS *) {};
    key(a.hwnd(), WM_KEYDOWN, VK_DOWN);
    pump(50);
    EXPECT_EQ(b.hwnd(), GetFocus());
}

TEST_F(ButtonTest, MovesInsideRepaintTheHoverFaceEveryTime)
{
    Hosted &b = active();
    HWND w = b.hwnd();
    b.put(L"ButtonType", I4(5));
    for (int x = 5; x < 95; x += 10) mouse(w, WM_MOUSEMOVE, x, 12);
    EXPECT_EQ(9u, b.log().event_names().size() / 2); // MouseMove and MouseOut per move
    int outs = 0;
    for (const std::wstring &n : b.log().event_names()) outs += n == L"MouseOut";
    EXPECT_EQ(9, outs);
    EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), corner(b));
    // Ended from outside: normal face, capture released.
    b.call(L"UserControlMouseOut");
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b));
    EXPECT_EQ(nullptr, GetCapture());
    b.call(L"MousePosn", {I2(0), I2(0), R4(10), R4(10)});
    EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), corner(b));
    b.call(L"CFm_MousePosnONOUT");
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b));
    b.call(L"MousePosn", {I2(0), I2(0), R4(10), R4(10)});
    b.call(L"MousePosnONOUT");
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b));
}

TEST_F(ButtonTest, LosingTheCaptureToAnotherWindowEndsTheHover)
{
    Hosted &b = active();
    Hosted &other = active({10, 50, 110, 75});
    b.put(L"ButtonType", I4(5));
    mouse(b.hwnd(), WM_MOUSEMOVE, 50, 12);
    EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), corner(b));
    SetCapture(other.hwnd());
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b));
    ReleaseCapture();
}

TEST_F(ButtonTest, WithoutAWindowTheHostCanStillDriveTheHover)
{
    Hosted &b = place(kButton, {0, 0, 100, 25});
    b.put(L"ButtonType", I4(5));
    b.call(L"MousePosn", {I2(0), I2(0), R4(10), R4(10)});
    EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), b.render(100, 25).pixel(0, 0));
    EXPECT_EQ((Texts{L"MouseOut(0,0,10,10)"}), b.log().event_texts());
    b.call(L"MousePosnONOUT");
    EXPECT_EQ(sys(COLOR_BTNFACE), b.render(100, 25).pixel(0, 0));
}
