// The caption routine of the menu text reporter: what MENUTEXT says for a WM_MENUSELECT (or
// WM_MENUCHAR) with a given item and flags. The menu itself is read through a callback, so the
// rules run natively; modMENUTEXT binds the callback to GetMenuStringW.
#pragma once
#include <cstdint>
#include <functional>
#include <string>

namespace tarn {

namespace menuflag {
constexpr std::uint16_t Popup = 0x10;      // MF_POPUP: the item is a pop-up, numbered by position
constexpr std::uint16_t Highlight = 0x80;  // MF_HILITE
constexpr std::uint16_t Separator = 0x800; // MF_SEPARATOR
} // namespace menuflag

// The caption buffer's size in characters, terminating zero included.
constexpr int kMenuCaptionBuffer = 100;

// Fills `buffer` (`size` characters) with the item's text as GetMenuStringW does, looking the
// item up by position or by command, and returns the number of characters copied.
using MenuStringReader = std::function<int(std::uint32_t item, wchar_t *buffer, int size, bool by_position)>;

// The caption reported for `item` with `flags`: a highlighted item's text cut to the buffer
// and trimmed of spaces; "C" for a separator that is not highlighted; "" otherwise.
std::wstring MenuCaption(std::uint16_t item, std::uint16_t flags, const MenuStringReader &read);

// The text that suppresses the MENUTEXT event.
constexpr wchar_t kNoMenuText[] = L"Nada";

} // namespace tarn
