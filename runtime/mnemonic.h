// Mnemonics in captions: "&Save" underlines S and answers Alt+S; "&&" is a literal ampersand.
// Pure logic shared by the controls' accelerator tables and their accessible names.
#pragma once
#include <string>
#include <string_view>

namespace tarn {

// The mnemonic character of `caption` (the character after the first single '&'; an ASCII
// letter in upper case), or 0 when it has none. A trailing '&' or one before a space names
// nothing.
wchar_t MnemonicOf(std::wstring_view caption);
// The caption as it reads: each "&&" becomes "&", every other '&' goes.
std::wstring StripMnemonic(std::wstring_view caption);
// The shortcut as screen readers say it ("Alt+S"), or "" when the caption has no mnemonic.
std::wstring MnemonicShortcut(std::wstring_view caption);

} // namespace tarn
