#include "foundation/font_names.h"

#include "foundation/strings.h"

namespace tarn {

namespace {
bool ends_with(const std::wstring &s, const wchar_t *tail)
{
    const std::wstring t(tail);
    return s.size() >= t.size() && s.compare(s.size() - t.size(), t.size(), t) == 0;
}
} // namespace

bool FontNameLeftOut(const std::wstring &name)
{
    if (name.compare(0, 1, L"@") == 0) return true;
    if (name.compare(0, 3, L"WST") == 0) return true;
    for (const wchar_t *variant : {L" TUR", L" Greek", L" Baltic", L" CE", L" CYR"})
        if (ends_with(name, variant)) return true;
    return name.empty();
}

void FillFontList(FontList &list, const std::vector<std::wstring> &screen_fonts)
{
    list.Clear();
    for (const std::wstring &font : screen_fonts) {
        std::wstring name = Trim(font);
        if (!FontNameLeftOut(name)) list.Add(name);
    }
}

void RemoveAtFonts(FontList &list)
{
    for (int32_t i = list.Count(); i >= 0; --i)
        if (list.Item(i).compare(0, 1, L"@") == 0) list.Remove(i);
}

} // namespace tarn
