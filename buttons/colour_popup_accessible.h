// The colour pop-up as screen readers see it: a list whose items, in reading order, are
// lblCbtn1, the cells by their colours' names and lblCUSTOM. The active item has the focus
// (announced as it moves), the selected colour's cell is selected, and an item's default
// action chooses it as a click would.
#pragma once
#include <windows.h>

#include <cstdint>

namespace tarn {

class ColourPopup;
class PopupAccessibleObject;

// Held by the pop-up: the object is made on the first request and cut off from the pop-up
// when the pop-up goes (a screen reader may keep it longer).
class PopupAccessible {
public:
    PopupAccessible() = default;
    ~PopupAccessible() { disconnect(); }
    PopupAccessible(const PopupAccessible &) = delete;
    PopupAccessible &operator=(const PopupAccessible &) = delete;

    // The answer to WM_GETOBJECT; `handled` false for object ids other than the client's.
    LRESULT answer(HWND hwnd, WPARAM wp, LPARAM lp, ColourPopup &popup, bool &handled);
    // The active item moved to `item` (a popup_item or a cell).
    void focus_moved(HWND hwnd, int32_t item, int32_t cells);
    void disconnect();

private:
    PopupAccessibleObject *object_ = nullptr; // one reference held
};

} // namespace tarn
