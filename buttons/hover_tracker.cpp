#include "buttons/hover_tracker.h"

#include <oleacc.h>

#include "buttons/cbtn_layout.h"
#include "buttons/frmctrlTOOLTIP.h"
#include "foundation/trap.h"
#include "runtime/user_control.h"

namespace tarn {

namespace {
constexpr OleColor kInfoBack = 0x80000018u, kInfoText = 0x80000017u;
}

HoverTracker::HoverTracker(ButtonHost &host) : host_(host) { frmctrlTOOLTIP::AddUser(); }

HoverTracker::~HoverTracker() { frmctrlTOOLTIP::RemoveUser(); }

void HoverTracker::paint(int state)
{
    step([&] { host_.PaintFace(state); });
}

void HoverTracker::raise_mouse(DISPID id, int16_t button, int16_t shift, float x, float y)
{
    EventArgs args;
    args.val(button).val(shift).val(x).val(y);
    host_.RaiseButtonEvent(id, args);
}

void HoverTracker::MouseDown(int16_t button, int16_t shift, float x, float y)
{
    down_in_progress_ = true;
    last_button_ = button;
    step([&] { TipClose(); });
    tip_armed_ = false;
    mouse_down_ = true;
    if (button == mouse::Right) {
        // A right press never shows the pressed face.
        paint(face::Normal);
        mouse_down_ = false;
    } else {
        paint(face::Pressed);
    }
    raise_mouse(events::MouseDown, button, shift, x, y);
}

void HoverTracker::MouseMove(int16_t button, int16_t shift, float x, float y)
{
    step([&] { tip_check(); });
    raise_mouse(events::MouseMove, button, shift, x, y);
    if (button < 2) {
        bool inside = x >= 0 && y >= 0 && x < host_.ButtonWidth() && y < host_.ButtonHeight();
        // Pressed and captured: dragging out raises the face, dragging back presses it again.
        if (!inside) paint(face::Hover);
        else if (button == mouse::Left) paint(face::Pressed);
    }
    if (!mouse_down_) {
        captured_ = false;
        Posn(button, shift, x, y);
    }
}

void HoverTracker::Posn(int16_t button, int16_t shift, float x, float y)
{
    captured_ = false; // every call starts uncaptured, so the captured branch below never runs
    float W = static_cast<float>(host_.ButtonWidth()), H = static_cast<float>(host_.ButtonHeight());
    HWND w = host_.ButtonWindow();
    in_posn_ = true;
    if (x < 0 || x >= W || y < 0 || y >= H) {
        captured_ = false;
        if (w && GetCapture() == w) step([&] { ReleaseCapture(); });
        paint(face::Normal);
        tip_armed_ = hover_ = false;
        tip_shown_ = false;
        step([&] { TipClose(); });
    } else if (captured_) {
        captured_ = false;
        if (w && GetCapture() == w) step([&] { ReleaseCapture(); });
        tip_armed_ = false;
        paint(face::Normal);
        hover_ = false;
    } else {
        step([&] { tip_timing(); });
        tip_armed_ = false;
        captured_ = true;
        if (w) step([&] { SetCapture(w); });
        paint(face::Hover);
        hover_ = true;
    }
    in_posn_ = false;
    raise_mouse(button_events::MouseOut, button, shift, x, y);
}

void HoverTracker::MouseUp(int16_t button, int16_t shift, float x, float y, bool any_button)
{
    if (button != mouse::Right || any_button) paint(face::Normal);
    mouse_down_ = false;
    raise_mouse(events::MouseUp, button, shift, x, y);
}

void HoverTracker::Click()
{
    if (last_button_ != mouse::Left || !host_.ButtonEnabled()) return;
    paint(face::None);
    EventArgs none;
    host_.RaiseButtonEvent(events::Click, none);
    host_.Clicked();
}

void HoverTracker::DblClick()
{
    // A fast second click still shows the pressed face.
    if (last_button_ != mouse::Left) return;
    MouseDown(mouse::Left, 0, 1, 1);
    EventArgs none;
    host_.RaiseButtonEvent(events::DblClick, none);
}

void HoverTracker::EndHover()
{
    captured_ = false;
    HWND w = host_.ButtonWindow();
    in_posn_ = true;
    if (w && GetCapture() == w && !mouse_down_) step([&] { ReleaseCapture(); });
    in_posn_ = false;
    paint(face::Normal);
    step([&] { TipClose(); });
    tip_armed_ = hover_ = tip_shown_ = false;
}

// ---------------------------------------------------------------- the tooltip

void HoverTracker::tip_timing()
{
    HWND w = host_.ButtonWindow();
    if (w && !tip_shown_) frmctrlTOOLTIP::Instance().StartTiming(w);
}

void HoverTracker::tip_check()
{
    if (!tip_armed_) return;
    std::wstring text = host_.TipText();
    if (text.empty()) return;
    frmctrlTOOLTIP &tip = frmctrlTOOLTIP::Instance();
    tip.CreateTip(host_.ButtonWindow(), text, kInfoBack, kInfoText);
    tip.ShowTip();
    tip_shown_ = true;
}

void HoverTracker::KeyUpTip()
{
    step([&] {
        if (hover_) tip_timing();
    });
    step([&] { tip_check(); });
}

void HoverTracker::TipClose()
{
    frmctrlTOOLTIP *tip = frmctrlTOOLTIP::Existing();
    HWND w = host_.ButtonWindow();
    if (tip && (tip->owner() == w || !tip->owner())) tip->Close();
}

void HoverTracker::on_tip_start()
{
    // tmrSTART fired: arm the tip if the pointer still rests here, then show it.
    if (!hover_ || mouse_down_) return;
    tip_armed_ = true;
    tip_check();
    tip_armed_ = false; // shown once: the moves that follow do not restart its show time
}

bool HoverTracker::OnMessage(UINT msg, WPARAM, LPARAM lp)
{
    if (msg == frmctrlTOOLTIP::TipStartMessage()) {
        step([&] { on_tip_start(); });
        return true;
    }
    // Someone else took the mouse (a menu, a message box): the hover ends here.
    if (msg == WM_CAPTURECHANGED && reinterpret_cast<HWND>(lp) != host_.ButtonWindow() && hover_ && !in_posn_ &&
        !mouse_down_)
        step([&] { EndHover(); });
    return false; // the runtime sees a lost capture too
}

long PushButtonState(long s, bool enabled, bool pressed, bool hot, bool is_default)
{
    if (!enabled) s = (s & ~STATE_SYSTEM_FOCUSABLE) | STATE_SYSTEM_UNAVAILABLE;
    if (pressed) s |= STATE_SYSTEM_PRESSED;
    if (hot) s |= STATE_SYSTEM_HOTTRACKED;
    if (is_default) s |= STATE_SYSTEM_DEFAULT;
    return s;
}

} // namespace tarn
