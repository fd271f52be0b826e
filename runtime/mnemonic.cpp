#include "runtime/mnemonic.h"

#include <cwctype>

namespace tarn {

wchar_t MnemonicOf(std::wstring_view caption)
{
    for (size_t i = 0; i + 1 < caption.size(); ++i) {
        if (caption[i] != L'&') continue;
        wchar_t next = caption[i + 1];
        if (next == L'&') {
            ++i; // a literal ampersand
            continue;
        }
        if (std::iswspace(static_cast<wint_t>(next))) return 0; // Alt+Space is the window's menu
        // ASCII letters in upper case, as keys are named; other letters as written (the
        // C library's case tables depend on the locale).
        return next >= L'a' && next <= L'z' ? static_cast<wchar_t>(next - L'a' + L'A') : next;
    }
    return 0;
}

std::wstring StripMnemonic(std::wstring_view caption)
{
    std::wstring out;
    out.reserve(caption.size());
    for (size_t i = 0; i < caption.size(); ++i) {
        if (caption[i] != L'&') {
            out += caption[i];
        } else if (i + 1 < caption.size() && caption[i + 1] == L'&') {
            out += L'&';
            ++i;
        }
    }
    return out;
}

std::wstring MnemonicShortcut(std::wstring_view caption)
{
    wchar_t c = MnemonicOf(caption);
    if (!c) return std::wstring();
    return std::wstring(L"Alt+") + c;
}

} // namespace tarn
