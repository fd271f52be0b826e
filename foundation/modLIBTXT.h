// The text utilities' Win32 side: the screen's font names, and the font-list routines over a
// combo box window (the rules themselves are in font_names.h).
#pragma once
#include <windows.h>

#include <string>
#include <vector>

namespace tarn {

// Texts in the order a user reads them (letters without regard to case, then the exact text),
// and texts that are the same without regard to case.
bool ReaderLess(const std::wstring &a, const std::wstring &b);
bool SameTextAnyCase(const std::wstring &a, const std::wstring &b);

// The names of the fonts the screen offers, each once, sorted as a user reads them. Enumerated
// once for the process (a font list is filled by every picker a form makes); ForgetScreenFonts
// makes the next call enumerate again, after fonts were installed or removed.
std::vector<std::wstring> ScreenFonts();
void ForgetScreenFonts();

// Fills a combo box with the screen's font names that a font list offers.
void FillFontList(HWND combo);
// Removes the vertical ("@") font names from a combo box.
void RemoveAtFonts(HWND combo);

} // namespace tarn
