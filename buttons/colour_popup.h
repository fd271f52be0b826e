// The colour button's pop-up, picPOPUP: a top-level window owned by the form (so no form
// clips it), placed below the button and kept on the screen's work area. It holds the
// document colour lblCbtn1, the palette's cells, the separator bar sepbar1 and the custom
// entry lblCUSTOM. It never takes the activation or the focus: the button keeps the focus and
// passes its keys on (Key), and the pop-up holds the mouse capture while open, which is how a
// click outside it arrives. A cell's tooltip, its colour's name, is the library's tooltip
// window, shown when the pointer has rested on the cell for tmrHOVER's interval.
//
// Order of what it reports (ColourPopupSink):
//   pointer onto a colour item   ActiveChanged (again for each new item; not for lblCUSTOM)
//   left press and release on an item      window hidden, Closed(Chosen), ColourChosen
//       (lblCUSTOM: Closed(More), MoreChosen); a release needs its press inside the pop-up
//   arrow keys, Home, End        ActiveChanged
//   Enter or Space               as a release on the active item (nothing without one)
//   Escape                       Closed(Escape)
//   press outside the pop-up     Closed(ClickOutside); the press goes no further
//   capture or activation lost, the owner's focus lost (FocusLost)   Closed(FocusLost)
// The window is hidden before Closed, so a handler may open a dialog of its own.
#pragma once
#include <windows.h>

#include <memory>
#include <string>

#include "buttons/cbtnddp_palettes.h"
#include "buttons/clsCBTNDDP.h"
#include "buttons/clsCBTNDDP_clock.h"
#include "buttons/colour_popup_accessible.h"
#include "buttons/colour_popup_layout.h"
#include "foundation/colors.h"
#include "foundation/handles.h"
#include "foundation/object_window.h"
#include "runtime/group_frame.h"

namespace tarn {

enum class PopupClose { Chosen, More, Escape, ClickOutside, FocusLost, Hidden };

class ColourPopupSink {
public:
    virtual ~ColourPopupSink() = default;
    virtual void ActiveChanged(OleColor colour, const std::wstring &name) = 0;
    virtual void Closed(PopupClose why) = 0;
    virtual void ColourChosen(OleColor colour) = 0;
    virtual void MoreChosen() = 0;
};

class ColourPopup {
public:
    static constexpr int32_t kHoverMs = 500;

    explicit ColourPopup(ColourPopupSink &sink, TimerClock &clock = SystemTimerClock());
    ~ColourPopup();
    ColourPopup(const ColourPopup &) = delete;
    ColourPopup &operator=(const ColourPopup &) = delete;

    // Settings, at any time; an open pop-up repaints (and resizes for a new palette).
    void SetPalette(int32_t number); // 0 to 11, else std::out_of_range and no change
    const Palette &palette() const { return palette_; }
    // The panel's back colour, the fill behind the active item and the text colour.
    void SetColours(OleColor back, OleColor fill, OleColor fore);
    void SetSelectedColour(OleColor colour);
    void SetDocColour(OleColor colour);
    void SetCaptions(const std::wstring &doc, const std::wstring &custom);
    void SetFont(const LOGFONTW &font);

    // Opens for the control window `owner` below `anchor` (screen pixels); false when no
    // window could be made. Opening an open pop-up changes nothing.
    bool Show(HWND owner, const RECT &anchor);
    void Hide(PopupClose why = PopupClose::Hidden);
    bool IsOpen() const { return open_; }
    // A key the owner received while the pop-up is open; true when the pop-up used it.
    bool Key(UINT vk);
    // The owner lost the focus.
    void FocusLost() { Hide(PopupClose::FocusLost); }

    int32_t Active() const { return active_; }
    OleColor ActiveColour() const;
    std::wstring ActiveText() const;
    HWND hwnd() const { return hwnd_; }
    // For screen readers: an item's name, the cell of the selected colour (None without
    // one), whether an item is it, the item at a client point, and choosing as a click does.
    std::wstring ItemName(int32_t item) const { return name_of(item); }
    int32_t SelectedItem() const;
    bool IsSelected(int32_t item) const { return item >= 0 && item == SelectedItem(); }
    int32_t ItemAt(int32_t x, int32_t y);
    void Choose(int32_t item);
    // The client size and the geometry it holds.
    const PopupLayout &Layout();
    // The whole pop-up as it paints itself, into any DC (pictures, printing).
    void Draw(HDC dc);

    clsCBTNDDP tmrHOVER;

private:
    template <class T> friend LRESULT CALLBACK ObjectWindowProc(HWND, UINT, WPARAM, LPARAM);
    void attach_window(HWND hwnd);
    void detach_window(HWND hwnd);
    LRESULT on_message(UINT msg, WPARAM wp, LPARAM lp);
    void create(HWND owner_root);
    HFONT font();
    void relayout();
    void paint(HDC dc, const RECT &dirty);
    void invalidate(int32_t item);
    void on_move(int32_t x, int32_t y);
    void on_press(bool left, int32_t x, int32_t y);
    void on_release(int32_t x, int32_t y);
    void set_active(int32_t item, bool by_mouse);
    void choose(int32_t item);
    void on_hover();
    void close_tip();
    bool has_colour(int32_t item) const;
    OleColor colour_of(int32_t item) const;
    std::wstring name_of(int32_t item) const;
    bool inside(int32_t x, int32_t y) const;

    ColourPopupSink &sink_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    HWND hwnd_ = nullptr;
    HWND owner_root_ = nullptr;
    Palette palette_;
    OleColor back_ = syscolor::Window, fill_ = syscolor::Window, fore_ = syscolor::ButtonText;
    OleColor selected_ = 0, doc_ = 0;
    std::wstring doc_caption_ = L"Document Color", custom_caption_ = L"More Colors...";
    unique_font font_;
    PopupLayout layout_;
    bool layout_stale_ = true;
    bool open_ = false, hiding_ = false, pressed_ = false;
    int32_t active_ = popup_item::None; // highlighted: under the pointer or moved to by key
    int32_t hot_ = popup_item::None;    // under the pointer
    PopupAccessible accessible_;
    // The separator bar between the cells and lblCUSTOM, drawn as the library's separator
    // bar is: a group frame collapsed to a line (transparent, no caption).
    GroupFrame sepbar1{L"sepbar1", 0, 0, 0, 0};
};

// Removes the pop-up's window class when the DLL unloads.
void UnregisterColourPopupClass();

} // namespace tarn
