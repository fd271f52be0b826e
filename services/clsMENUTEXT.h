// clsMENUTEXT: what the menu hook (modMENUTEXT) holds while a window is hooked: the window's
// handle, and the way a caption becomes an event. The mnutxt control that made the instance
// listens to its MENUTEXT; the text "Nada" raises nothing.
#pragma once
#include <windows.h>

#include <functional>
#include <string>

#include "services/menu_caption.h"

namespace tarn {

class clsMENUTEXT {
public:
    // The hooked window (read and written by the module and the control only).
    HWND hwnd = nullptr;
    // The event, heard by the control that made the instance (empty: nobody listens).
    std::function<void(const std::wstring &text)> MENUTEXT;

    // Raises MENUTEXT with `text` unless it is the sentinel "Nada".
    void Caption(const std::wstring &text) const
    {
        if (text == kNoMenuText || !MENUTEXT) return;
        MENUTEXT(text);
    }
};

} // namespace tarn
