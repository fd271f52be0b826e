// What the library's buttons share of the mouse: the hover and capture tracker with the
// tooltip's timing, the press, release, click and double click, and the state a screen reader
// hears. A button hands it the mouse in pixels; it paints through the button (ButtonHost) and
// raises the button's events there.
//
// The pointer inside takes the capture and shows the hover face on every move (MousePosn); the
// capture brings the move outside, which ends the hover. The tooltip's timing starts with the
// hover; when tmrSTART fires and the pointer still rests here the tip shows the button's text.
#pragma once
#include <windows.h>

#include <string>

#include "runtime/events.h"

namespace tarn {

// The buttons' events beyond the common five, numbered alike in every button.
namespace button_events {
constexpr DISPID FocusLost = 6, KeyDown = 7, KeyPress = 8, KeyUp = 9, MouseOut = 10;
}

class ButtonHost {
public:
    virtual HWND ButtonWindow() const = 0;
    virtual int ButtonWidth() const = 0;
    virtual int ButtonHeight() const = 0;
    // Shows face `state` (face::Normal, Hover, Pressed; face::None: the one shown) at once.
    virtual void PaintFace(int state) = 0;
    virtual void RaiseButtonEvent(DISPID id, EventArgs &args) = 0;
    virtual std::wstring TipText() const = 0;
    virtual bool ButtonEnabled() const = 0;
    // After Click was raised (the colour button opens its pop-up here).
    virtual void Clicked() {}

protected:
    ~ButtonHost() = default;
};

class HoverTracker {
public:
    explicit HoverTracker(ButtonHost &host);
    ~HoverTracker();
    HoverTracker(const HoverTracker &) = delete;
    HoverTracker &operator=(const HoverTracker &) = delete;

    // The mouse, in pixels.
    void MouseDown(int16_t button, int16_t shift, float x, float y);
    void MouseMove(int16_t button, int16_t shift, float x, float y);
    // The normal face comes back on a release of any button but the right one, or of any
    // button at all with `any_button` (the picture button's rule).
    void MouseUp(int16_t button, int16_t shift, float x, float y, bool any_button = false);
    // The hover tracker itself (MousePosn), which a container may drive.
    void Posn(int16_t button, int16_t shift, float x, float y);
    // Raises Click when the last press was the left button's and the button is enabled.
    void Click();
    void DblClick();
    // Ends the hover from outside: normal face, capture released, tooltip closed.
    void EndHover();
    // The focus went: the press in progress ends.
    void PressEnded() { down_in_progress_ = mouse_down_ = false; }
    // The keys' share: the tooltip's timing and check on a key-up.
    void KeyUpTip();
    void TipClose();
    // The tooltip's start message and a lost capture; true when the message was the tracker's.
    bool OnMessage(UINT msg, WPARAM wp, LPARAM lp);

    bool hover() const { return hover_; }
    bool mouse_down() const { return mouse_down_; }
    int32_t last_button() const { return last_button_; }
    void set_last_button(int32_t b) { last_button_ = b; }

private:
    void paint(int state);
    void raise_mouse(DISPID id, int16_t button, int16_t shift, float x, float y);
    void tip_check();
    void tip_timing();
    void on_tip_start();

    ButtonHost &host_;
    bool tip_armed_ = false, hover_ = false, captured_ = false, mouse_down_ = false, down_in_progress_ = false;
    bool tip_shown_ = false; // the tip came up during this hover: not again until the pointer leaves
    bool in_posn_ = false;
    int32_t last_button_ = 0;
};

// A push button's accessible state: the runtime's `base` with unavailable, pressed, hot and
// default added as they apply.
long PushButtonState(long base, bool enabled, bool pressed, bool hot, bool is_default);

} // namespace tarn
