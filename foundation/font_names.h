// The font-name rules of the font list: which of the screen's font names a list offers, and
// the removal of vertical ("@") names from a list. Pure: the list itself is reached through
// FontList, so the same walk serves a combo box window and a test's vector.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace tarn {

// A list of texts as a combo box holds them.
class FontList {
public:
    virtual ~FontList() = default;
    virtual void Clear() = 0;
    virtual void Add(const std::wstring &item) = 0;
    virtual int32_t Count() const = 0;
    // The item's text; "" for an index past the last item.
    virtual std::wstring Item(int32_t index) const = 0;
    virtual void Remove(int32_t index) = 0;
};

// Whether a font name (already trimmed) is left out of a font list. Tested in this order,
// case-sensitively: a vertical name ("@"), "WST" at the start, an ending " TUR", " Greek",
// " Baltic", " CE" or " CYR" (the script variants of one family), and the empty name.
bool FontNameLeftOut(const std::wstring &name);

// Clears the list and adds each of `screen_fonts`, trimmed, that FontNameLeftOut keeps.
void FillFontList(FontList &list, const std::vector<std::wstring> &screen_fonts);

// Removes every item that starts with "@", walking from one past the last item down to 0.
void RemoveAtFonts(FontList &list);

} // namespace tarn
