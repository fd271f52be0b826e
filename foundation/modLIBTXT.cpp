#include "foundation/modLIBTXT.h"

#include <algorithm>
#include <mutex>

#include "foundation/font_names.h"
#include "foundation/handles.h"

namespace tarn {

namespace {

// The process's font names, shared by the apartments' threads.
std::mutex screen_fonts_lock;
std::vector<std::wstring> screen_fonts;
bool screen_fonts_known = false;

int CALLBACK collect_font(const LOGFONTW *font, const TEXTMETRICW *, DWORD, LPARAM out)
{
    reinterpret_cast<std::vector<std::wstring> *>(out)->push_back(font->lfFaceName);
    return 1;
}

// A combo box window as a font list.
class ComboFontList final : public FontList {
public:
    explicit ComboFontList(HWND combo) : combo_(combo) {}
    void Clear() override { SendMessageW(combo_, CB_RESETCONTENT, 0, 0); }
    void Add(const std::wstring &item) override
    {
        // Appended as given: a sorted combo box would put it in its own place.
        SendMessageW(combo_, CB_INSERTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(item.c_str()));
    }
    int32_t Count() const override
    {
        LRESULT n = SendMessageW(combo_, CB_GETCOUNT, 0, 0);
        return n > 0 ? static_cast<int32_t>(n) : 0;
    }
    std::wstring Item(int32_t index) const override
    {
        if (index < 0 || index >= Count()) return {};
        LRESULT n = SendMessageW(combo_, CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0);
        if (n <= 0) return {};
        std::wstring text(static_cast<size_t>(n) + 1, L'\0');
        LRESULT got = SendMessageW(combo_, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
        text.resize(got > 0 ? static_cast<size_t>(got) : 0);
        return text;
    }
    void Remove(int32_t index) override { SendMessageW(combo_, CB_DELETESTRING, static_cast<WPARAM>(index), 0); }

private:
    HWND combo_;
};

} // namespace

bool ReaderLess(const std::wstring &a, const std::wstring &b)
{
    int order = CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, a.c_str(), static_cast<int>(a.size()), b.c_str(),
                               static_cast<int>(b.size()));
    return order == CSTR_LESS_THAN || (order == CSTR_EQUAL && a < b);
}

bool SameTextAnyCase(const std::wstring &a, const std::wstring &b)
{
    return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, a.c_str(), static_cast<int>(a.size()), b.c_str(),
                          static_cast<int>(b.size())) == CSTR_EQUAL;
}

std::vector<std::wstring> ScreenFonts()
{
    {
        std::lock_guard<std::mutex> hold(screen_fonts_lock);
        if (screen_fonts_known) return screen_fonts;
    }
    std::vector<std::wstring> names;
    window_dc screen(nullptr);
    if (!screen.get()) return names;
    LOGFONTW all{};
    all.lfCharSet = DEFAULT_CHARSET; // every family once per script it covers
    EnumFontFamiliesExW(screen.get(), &all, collect_font, reinterpret_cast<LPARAM>(&names), 0);
    std::sort(names.begin(), names.end(), ReaderLess);
    names.erase(std::unique(names.begin(), names.end()), names.end());
    std::lock_guard<std::mutex> hold(screen_fonts_lock);
    screen_fonts = names;
    screen_fonts_known = true;
    return names;
}

void ForgetScreenFonts()
{
    std::lock_guard<std::mutex> hold(screen_fonts_lock);
    screen_fonts.clear();
    screen_fonts_known = false;
}

void FillFontList(HWND combo)
{
    if (!combo) return;
    ComboFontList list(combo);
    tarn::FillFontList(list, ScreenFonts());
}

void RemoveAtFonts(HWND combo)
{
    if (!combo) return;
    ComboFontList list(combo);
    tarn::RemoveAtFonts(list);
}

} // namespace tarn
