// The button under the mouse and the keyboard, through real window messages: the events and
// their order, the faces each step shows, the capture that ends the hover, the space bar, the
// arrow keys that move the focus, focus loss and double clicks.
#include <gtest/gtest.h>

#include "buttons/button_test.h"

using namespace tarn;
using namespace tarn::test;

namespace {

// A toolbar button shows its face in its corner pixel: face, highlight (hover), shadow (pressed).
Rgb corner(Hosted &b) { return b.capture().pixel(0, 0); }

void key(HWND w, UINT msg, WPARAM vk) { SendMessageW(w, msg, vk, msg == WM_KEYUP ? 0xC0000001 : 1); }

// The events raised since the last look, in one line: "MouseDown(1,0,50,12) MouseUp(1,0,50,12)"
// (or their names only).
std::wstring events(Hosted &b, bool args = true)
{
    std::wstring all;
    for (const EventRecord &e : b.log().events) all += (all.empty() ? L"" : L" ") + (args ? e.text() : e.name);
    b.log().clear_events();
    return all;
}

} // namespace

TEST_F(ButtonTest, MouseEventsComeInOrderAndOnlyALeftPressOnAnEnabledButtonClicks)
{
    Hosted &b = active();
    b.put(L"ButtonType", I4(5));
    HWND w = b.hwnd();
    mouse(w, WM_MOUSEMOVE, 50, 12);
    EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), corner(b));
    EXPECT_EQ(w, GetCapture()); // the hover holds the capture
    mouse(w, WM_LBUTTONDOWN, 50, 12, MK_LBUTTON);
    EXPECT_EQ(sys(COLOR_BTNSHADOW), corner(b));
    mouse(w, WM_LBUTTONUP, 50, 12);
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b));
    EXPECT_EQ(L"MouseMove(0,0,50,12) MouseOut(0,0,50,12) MouseDown(1,0,50,12) MouseUp(1,0,50,12) Click",
              events(b));
    // The move outside arrives through the capture and ends the hover.
    mouse(w, WM_MOUSEMOVE, 50, 12);
    mouse(w, WM_MOUSEMOVE, 150, 12);
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b));
    EXPECT_EQ(L"MouseMove(0,0,50,12) MouseOut(0,0,50,12) MouseMove(0,0,150,12) MouseOut(0,0,150,12)",
              events(b));
    // The right and middle buttons press but never click.
    mouse(w, WM_RBUTTONDOWN, 20, 10, MK_RBUTTON);
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b)); // a right press never shows the pressed face
    mouse(w, WM_RBUTTONUP, 20, 10);
    EXPECT_EQ(L"MouseDown(2,0,20,10) MouseUp(2,0,20,10)", events(b));
    mouse(w, WM_MBUTTONDOWN, 20, 10, MK_MBUTTON);
    EXPECT_EQ(sys(COLOR_BTNSHADOW), corner(b));
    mouse(w, WM_MBUTTONUP, 20, 10);
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b));
    EXPECT_EQ(L"MouseDown(4,0,20,10) MouseUp(4,0,20,10)", events(b));
    // Shift and Ctrl travel with the events.
    mouse(w, WM_LBUTTONDOWN, 3, 4, MK_LBUTTON | MK_SHIFT | MK_CONTROL);
    mouse(w, WM_LBUTTONUP, 3, 4, MK_SHIFT | MK_CONTROL);
    EXPECT_EQ(L"MouseDown(1,3,3,4) MouseUp(1,3,3,4) Click", events(b));
    // Disabled: no click.
    b.put(L"Enabled", Bool(false));
    click(w, 10, 10);
    EXPECT_EQ(L"MouseDown(1,0,10,10) MouseUp(1,0,10,10)", events(b));
}

TEST_F(ButtonTest, DragsDoubleClicksAndTheHoverShowTheirFacesInTurn)
{
    Hosted &b = active();
    b.put(L"ButtonType", I4(5));
    HWND w = b.hwnd();
    mouse(w, WM_LBUTTONDOWN, 50, 12, MK_LBUTTON);
    mouse(w, WM_MOUSEMOVE, 150, 12, MK_LBUTTON);
    EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), corner(b)); // the hover look while out
    EXPECT_EQ(w, GetCapture());
    mouse(w, WM_MOUSEMOVE, 60, 12, MK_LBUTTON);
    EXPECT_EQ(sys(COLOR_BTNSHADOW), corner(b)); // pressed again
    mouse(w, WM_LBUTTONUP, 60, 12);
    // No hover tracking while pressed: no MouseOut between.
    EXPECT_EQ(L"MouseDown(1,0,50,12) MouseMove(1,0,150,12) MouseMove(1,0,60,12) MouseUp(1,0,60,12) Click",
              events(b));
    // Released outside: no click.
    mouse(w, WM_LBUTTONDOWN, 50, 12, MK_LBUTTON);
    mouse(w, WM_MOUSEMOVE, -20, 12, MK_LBUTTON);
    mouse(w, WM_LBUTTONUP, -20, 12);
    EXPECT_EQ(L"MouseDown MouseMove MouseUp", events(b, false));
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b));
    // A double click is a second press with the pressed face.
    click(w, 30, 10);
    mouse(w, WM_LBUTTONDBLCLK, 30, 10, MK_LBUTTON);
    EXPECT_EQ(sys(COLOR_BTNSHADOW), corner(b));
    mouse(w, WM_LBUTTONUP, 30, 10);
    EXPECT_EQ(L"MouseDown(1,0,30,10) MouseUp(1,0,30,10) Click MouseDown(1,0,1,1) DblClick MouseUp(1,0,30,10)",
              events(b));
    // After a right press the double click is not turned into anything.
    mouse(w, WM_RBUTTONDOWN, 30, 10, MK_RBUTTON);
    mouse(w, WM_RBUTTONUP, 30, 10);
    mouse(w, WM_RBUTTONDBLCLK, 30, 10, MK_RBUTTON);
    mouse(w, WM_RBUTTONUP, 30, 10);
    EXPECT_EQ(L"MouseDown MouseUp MouseUp", events(b, false));

    // Every move inside repaints the hover; each of its ends restores the face.
    for (int x = 5; x < 95; x += 10) mouse(w, WM_MOUSEMOVE, x, 12);
    std::wstring pairs = L"MouseMove MouseOut";
    for (int i = 1; i < 9; ++i) pairs += L" MouseMove MouseOut";
    EXPECT_EQ(pairs, events(b, false));
    // Ended by the host: normal face, capture released; the host starts the next hover.
    for (const wchar_t *end : {L"UserControlMouseOut", L"CFm_MousePosnONOUT", L"MousePosnONOUT"}) {
        EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), corner(b)) << narrow(end);
        b.call(end);
        EXPECT_EQ(sys(COLOR_BTNFACE), corner(b)) << narrow(end);
        EXPECT_EQ(nullptr, GetCapture()) << narrow(end);
        b.call(L"MousePosn", {I2(0), I2(0), R4(10), R4(10)});
    }
    // Ended by another window taking the capture.
    Hosted &other = active({10, 50, 110, 75});
    mouse(w, WM_MOUSEMOVE, 50, 12);
    SetCapture(other.hwnd());
    EXPECT_EQ(sys(COLOR_BTNFACE), corner(b));
    ReleaseCapture();
    // Without a window the host still drives it.
    Hosted &still = place(kButton, {10, 90, 110, 115});
    still.put(L"ButtonType", I4(5));
    still.call(L"MousePosn", {I2(0), I2(0), R4(10), R4(10)});
    EXPECT_EQ(sys(COLOR_BTNHIGHLIGHT), still.render(100, 25).pixel(0, 0));
    EXPECT_EQ(L"MouseOut(0,0,10,10)", events(still));
    still.call(L"MousePosnONOUT");
    EXPECT_EQ(sys(COLOR_BTNFACE), still.render(100, 25).pixel(0, 0));
}

TEST_F(ButtonTest, TheSpaceBarClicksOnlyWhenItsPressAndReleaseBothReachTheButtonAndArrowsMoveTheFocus)
{
    Hosted &b = active();
    b.put(L"ButtonType", I4(5));
    HWND w = b.hwnd();
    SetFocus(w);
    key(w, WM_KEYDOWN, VK_SPACE);
    EXPECT_EQ(sys(COLOR_BTNSHADOW), corner(b));
    key(w, WM_CHAR, L' ');
    key(w, WM_KEYUP, VK_SPACE);
    EXPECT_EQ(L"KeyDown(32,0) MouseDown(1,0,1,1) KeyPress(32) KeyUp(32,0) MouseUp(1,0,1,1) Click", events(b));
    // A release whose press went elsewhere (another key was the last to come down): no click.
    key(w, WM_KEYDOWN, 'A');
    key(w, WM_KEYUP, VK_SPACE);
    EXPECT_EQ(L"KeyDown(65,0) KeyUp(32,0)", events(b));
    // A host that swallows the key code in KeyDown stops the click too.
    b.log().on_event = [](const std::wstring &name, DISPPARAMS *params) {
        if (name == L"KeyDown" && params->cArgs == 2 && (V_VT(&params->rgvarg[1]) & VT_BYREF))
            *V_I2REF(&params->rgvarg[1]) = 0;
    };
    key(w, WM_KEYDOWN, VK_SPACE);
    key(w, WM_KEYUP, VK_SPACE);
    EXPECT_EQ(L"KeyDown(0,0) KeyUp(32,0)", events(b));
    // Losing the focus ends a press; its release then reaches the other button, which saw none.
    Hosted &other = active({10, 50, 110, 75});
    b.log().on_event = nullptr;
    key(w, WM_KEYDOWN, VK_SPACE);
    events(b);
    SetFocus(other.hwnd());
    EXPECT_EQ(L"FocusLost MouseUp(1,0,0,0)", events(b));
    key(other.hwnd(), WM_KEYUP, VK_SPACE);
    EXPECT_EQ(L"KeyUp(32,0)", events(other));

    // The arrows move the focus on (as Tab and Shift+Tab would) after KeyDown is raised.
    Hosted &third = active({10, 90, 110, 115});
    SetForegroundWindow(form.hwnd());
    SetFocus(w);
    events(b);
    auto arrow = [](Hosted &from, WPARAM vk) {
        key(from.hwnd(), WM_KEYDOWN, vk);
        pump_until([&] { return GetFocus() != from.hwnd(); }); // the Tab it sends arrives through the input queue
        return GetFocus();
    };
    EXPECT_EQ(other.hwnd(), arrow(b, VK_RIGHT));
    EXPECT_EQ(0u, events(b).find(L"KeyDown(39,0)"));
    EXPECT_EQ(third.hwnd(), arrow(other, VK_DOWN));
    EXPECT_EQ(other.hwnd(), arrow(third, VK_UP));
    EXPECT_EQ(w, arrow(other, VK_LEFT));
    // Even when the host handles KeyDown.
    b.log().on_event = [](const std::wstring &, DISPPARAMS *) {};
    EXPECT_EQ(other.hwnd(), arrow(b, VK_DOWN));
}
