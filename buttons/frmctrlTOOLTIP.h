// frmctrlTOOLTIP: the library's one tooltip window per thread, shared by every button. A small
// borderless top-level window showing one line (its label lblTIP) near the pointer, framed
// in the window-frame colour. Its timers: tmrSTART (600 ms) from the start of a hover to the
// owner's check that shows the tip, tmrSHOW (ShowTime, 4000 ms) how long the tip stays up,
// tmrPARENT (100 ms) the watch on the owner window and the pointer while the tip is up.
//
// A close request while the tip is in use is cancelled (the tip only hides), so a host that
// closes every window cannot tear down a tip a button still owns; DestroyTip allows the close.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

#include "foundation/colors.h"
#include "foundation/handles.h"
#include "foundation/object_window.h"

namespace tarn {

class frmctrlTOOLTIP {
public:
    // The thread's tooltip, created (and its window loaded) on first use.
    static frmctrlTOOLTIP &Instance();
    // The thread's tooltip if it exists, else null; never creates one.
    static frmctrlTOOLTIP *Existing();
    // Buttons count themselves while they live; the last one to go destroys the tooltip, so no
    // window of the library outlives its controls.
    static void AddUser();
    static void RemoveUser();

    frmctrlTOOLTIP();
    ~frmctrlTOOLTIP();
    frmctrlTOOLTIP(const frmctrlTOOLTIP &) = delete;
    frmctrlTOOLTIP &operator=(const frmctrlTOOLTIP &) = delete;

    // Prepares the tip for an owner window: its text and colours.
    void CreateTip(HWND owner, const std::wstring &text, OleColor back, OleColor fore);
    // Clears the text, allows the close and closes the window; the next use loads it again.
    void DestroyTip();
    int32_t Margin() const { return margin_; }
    void Margin(int32_t pixels);
    int32_t ShowTime() const { return show_time_; }
    void ShowTime(int32_t ms);
    // Shows the window with the current text near the pointer and starts tmrSHOW and tmrPARENT.
    void ShowTip();
    const std::wstring &Text() const { return text_; }
    // Sets the text and fits the window to it.
    void Text(const std::wstring &text);
    OleColor ToolBackColor() const { return back_; }
    void ToolBackColor(OleColor c);
    OleColor ToolForeColor() const { return fore_; }
    void ToolForeColor(OleColor c);

    // What the buttons call. StartTiming starts tmrSTART for an owner unless it already runs or
    // the tip already shows for it; when it fires the owner gets the message TipStartMessage().
    void StartTiming(HWND owner);
    // A close request: hides the tip and stops every timer (cancelled as a close while in use).
    void Close();
    static UINT TipStartMessage();

    HWND hwnd() const { return hwnd_; }
    HWND owner() const { return owner_; }
    bool shown() const { return hwnd_ && IsWindowVisible(hwnd_); }

    static constexpr UINT kStartMs = 600, kParentMs = 100;
    static constexpr int32_t kDefaultShowMs = 4000;

private:
    static const wchar_t *window_class();
    template <class T> friend LRESULT CALLBACK ObjectWindowProc(HWND, UINT, WPARAM, LPARAM);
    void attach_window(HWND hwnd);
    void detach_window(HWND hwnd);
    LRESULT on_message(UINT msg, WPARAM wp, LPARAM lp);
    void load();
    void hide();
    void paint(HDC dc);
    void fit();
    void on_timer(UINT_PTR id);

    HWND hwnd_ = nullptr;
    HWND owner_ = nullptr;
    bool may_unload_ = false;
    bool start_pending_ = false;
    int32_t margin_ = 3;
    int32_t show_time_ = kDefaultShowMs;
    std::wstring text_;
    OleColor back_ = 0x80000018u; // info background
    OleColor fore_ = 0x80000017u; // info text
    RECT label_{0, 0, 0, 0};      // lblTIP inside the window
    unique_font font_;
};

// Removes the tooltip window class when the DLL unloads.
void UnregisterTooltipWindowClass();

} // namespace tarn
