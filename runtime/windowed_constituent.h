// Windowed constituents: child controls with a real window of their own (text box, check box,
// combo box, up-down arrows, picture box) that a control places on its surface with fixed names
// and moves in its layout, as a host's intrinsic controls sit on a user control.
//
// A constituent's window is created with it and lives as long as it does, so its state (text,
// value, enabled, font, colours) always lives in the window and every non-visual member works
// whether or not the control is shown. While the control is in place the window is a child of
// the control's window; otherwise (no site, a script's CreateObject, before activation, after
// deactivation) it is parked in a hidden holder window the runtime keeps per thread. The
// control registers each one with UserControl::add_constituent, which does the moving.
//
// Placement is in twips relative to the control's surface; a position falls in the pixel that
// contains it, as for the windowless constituents. Events reach the control through the
// std::function handlers below with the host's semantics:
//
//   on_key_down(KeyCode&, Shift), on_key_up   a handler that sets KeyCode to 0 swallows the key
//   on_key_press(KeyAscii&)                   0 swallows the character, another value replaces it
//   on_mouse_down/move/up(Button, Shift, X, Y) X and Y in twips relative to the constituent
//   on_got_focus, on_lost_focus               when the focus enters or leaves the constituent
//   on_click, on_dbl_click, on_change         as each kind defines them (text box: a left-button
//                                             release after a press in it; check box: its value
//                                             changing, by the user or by code; and so on)
//
// When the focus leaves the whole control from a constituent, the control hears it (its
// LostFocus) before the constituent's on_lost_focus runs; on entering, the control first too.
//
// Property writes that a real control of the kind would refuse (a negative width, an invalid
// colour, an alignment out of range, something that is not a font) throw; the control's
// resume-next step skips them and the constituent keeps its previous state.
#pragma once
#include <windows.h>
#include <olectl.h>

#include <functional>
#include <string>

#include "foundation/colors.h"
#include "foundation/handles.h"
#include "runtime/com.h"
#include "runtime/constituents.h"
#include "runtime/units.h"

namespace tarn {

class WindowedConstituent {
public:
    virtual ~WindowedConstituent();
    WindowedConstituent(const WindowedConstituent &) = delete;
    WindowedConstituent &operator=(const WindowedConstituent &) = delete;

    const std::wstring Name;
    HWND hWnd() const { return hwnd_; }

    // ---- placement, twips
    float Left() const { return left_; }
    float Top() const { return top_; }
    virtual float Width() const { return width_; }
    virtual float Height() const { return height_; }
    void SetLeft(float v) { Move(v, top_, width_, height_); }
    void SetTop(float v) { Move(left_, v, width_, height_); }
    void SetWidth(float v) { Move(left_, top_, v, height_); }
    void SetHeight(float v) { Move(left_, top_, width_, v); }
    // Negative sizes and values that are not numbers are refused.
    void Move(float left, float top, float width, float height);

    // ---- state kept in the window
    bool Visible() const;
    void SetVisible(bool visible);
    bool Enabled() const;
    void SetEnabled(bool enabled);
    // The constituent's own font object: a write keeps a copy of the font given, and changes
    // made later through the object returned here (Font.Bold = True) reach the window at once.
    ComPtr<IFontDisp> Font() const { return font_; }
    void SetFont(IFontDisp *font);

    // Takes the focus when the window can (its control in place, visible, enabled).
    void SetFocus();
    bool HasFocus() const;
    // Repaints the window now.
    void Refresh();

    // ---- events
    using MouseHandler = Constituent::MouseHandler;
    using KeyHandler = std::function<void(int16_t &key_code, int16_t shift)>;
    std::function<void()> on_click, on_dbl_click, on_change, on_got_focus, on_lost_focus;
    KeyHandler on_key_down, on_key_up;
    std::function<void(int16_t &key_ascii)> on_key_press;
    MouseHandler on_mouse_down, on_mouse_move, on_mouse_up;
    // The user asks for the constituent's context menu: a right-button release in it, the
    // context-menu key or Shift+F10. X and Y in twips relative to the constituent (from the
    // keyboard: its top-left corner). Set, it takes those inputs from the window.
    std::function<void(float x, float y)> on_context_menu;
    // The pointer shown over the window; null (or no handler) leaves it to the window.
    std::function<HCURSOR()> cursor;

    // ---- for the runtime (UserControl)
    // Moves the window into `parent` (the control's window), above the constituents before it.
    void attach(HWND parent);
    // Moves the window back into the thread's holder.
    void park();
    // Draws the window and its children into `dc`, whose origin is its parent's client origin.
    void print(HDC dc);
    // Told of the focus entering (true) or leaving the constituent, with the other window.
    std::function<void(bool gained, HWND other)> focus_hook;
    // Holds the control alive while one of its constituent's messages is handled (a host may
    // release the control from inside an event).
    std::function<ComPtr<IUnknown>()> keep_alive;
    // The parent's side of a child's message (WM_COMMAND, WM_NOTIFY, WM_*SCROLL, WM_CTLCOLOR*): handled
    // by the constituent the child belongs to. False when no constituent takes it.
    static bool reflect(UINT msg, WPARAM wp, LPARAM lp, LRESULT &result);
    // The constituent that `child` (its window or a part of it) belongs to, or null.
    static WindowedConstituent *of_window(HWND child);
    // The thread's holder window (created on first use while constituents exist).
    static HWND holder();

protected:
    WindowedConstituent(std::wstring name, const wchar_t *window_class, DWORD style, DWORD ex_style, float left,
                        float top, float width, float height);

    // ---- what each kind adds
    // A notification from its window through WM_COMMAND or WM_NOTIFY.
    virtual bool on_command(WORD code, LRESULT &result) { return false; }
    virtual bool on_notify(NMHDR *header, LRESULT &result) { return false; }
    // A scroll bar's request through WM_VSCROLL or WM_HSCROLL (SB_* code).
    virtual bool on_scroll(int code, LRESULT &result) { return false; }
    // Whether a left-button release after a press in the window raises on_click (and a double
    // click on_dbl_click); kinds whose window reports clicks itself say no.
    virtual bool clicks_from_mouse() const { return false; }
    // The window height to give the window for a placement `height` pixels high.
    virtual int window_height(int height) const { return height; }
    // Runs after the font reached the window.
    virtual void font_applied() {}
    // A message to the kind's window before its own handling; true when the kind answered it.
    virtual bool on_window_message(UINT msg, WPARAM wp, LPARAM lp, LRESULT &result) { return false; }
    // Paints the client area into `dc` (origin at the client's corner): by default the window
    // paints itself (WM_PRINTCLIENT).
    virtual void print_client(HDC dc);
    // Also routes the keys, mouse and focus of `part` (a child window of the kind's own, such
    // as a combo box's edit field) through this constituent.
    void subclass_part(HWND part);
    // The same for a window that belongs to someone else inside this constituent's window (a
    // nested control's parts): its keys, mouse and focus are seen first, without claiming it.
    void watch_part(HWND part);
    void unwatch_part(HWND part);

    // Sets the DC's colours for painting the window and returns its background brush; null
    // for kinds without colours of their own (the system's colours then apply).
    virtual HBRUSH paint_colors(HDC dc) { return nullptr; }

    // Places the window where the twips say (kinds whose window height depends on more than the
    // placement call it again once they are built).
    void apply_placement();
    LONG_PTR style() const { return GetWindowLongPtrW(hwnd_, GWL_STYLE); }
    std::wstring window_text() const;
    void set_style_bits(LONG_PTR bits, bool on);
    // Extended style bits change the window's frame, which is then drawn again.
    void set_ex_style_bits(LONG_PTR bits, bool on);
    // Makes the window again with `style`, for styles a window reads only when it is created
    // (a text box's alignment); the kind carries its state over (carry_state), the placement,
    // parent, stacking, font and focus come along.
    void recreate(LONG_PTR style);
    virtual void carry_state(HWND from, HWND to) {}
    // Raises a handler under the trap.
    static void fire(const std::function<void()> &handler);

    HWND hwnd_ = nullptr;

private:
    class FontWatch;
    static LRESULT CALLBACK subclass_proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id, DWORD_PTR ref);
    LRESULT on_message(HWND window, UINT msg, WPARAM wp, LPARAM lp);
    void on_mouse(HWND window, UINT msg, WPARAM wp, LPARAM lp);
    bool context_menu(HWND window, UINT msg, WPARAM wp, LPARAM lp);
    void apply_font();
    void watch_font();
    void unwatch_font();
    bool within(HWND other) const;

    float left_, top_, width_, height_;
    ComPtr<IFontDisp> font_;
    FontWatch *font_watch_ = nullptr;
    DWORD font_cookie_ = 0;
    bool pressed_ = false, double_click_ = false;
    bool dying_ = false;
};

// The kinds with a back and a fore colour of their own, answered when the window asks its
// parent for them (WM_CTLCOLOR*). Colours are OLE colours; one that is none is refused.
class ColoredConstituent : public WindowedConstituent {
public:
    OleColor BackColor() const { return back_color_; }
    void SetBackColor(OleColor color);
    OleColor ForeColor() const { return fore_color_; }
    void SetForeColor(OleColor color);

protected:
    ColoredConstituent(std::wstring name, const wchar_t *window_class, DWORD style, DWORD ex_style, float left,
                       float top, float width, float height, OleColor back, OleColor fore)
        : WindowedConstituent(std::move(name), window_class, style, ex_style, left, top, width, height),
          back_color_(back), fore_color_(fore)
    {
    }
    HBRUSH paint_colors(HDC dc) override;

private:
    OleColor back_color_, fore_color_;
    unique_brush brush_; // made again only when the colour it stands for changes
    Rgb brush_rgb_ = kInvalidColor;
};

// True when `window` is `root`, one of its descendants, or a pop-up owned by one of them (a
// combo box's drop-down list).
bool WindowWithin(HWND root, HWND window);

// The window class of a common control, its classes `icc` (ICC_*) registered first.
const wchar_t *CommonControlClass(DWORD icc, const wchar_t *class_name);

// Removes the holder's window class when the DLL unloads.
void UnregisterHolderWindowClass();

} // namespace tarn
