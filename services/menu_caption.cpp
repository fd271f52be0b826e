#include "services/menu_caption.h"

#include <algorithm>

#include "foundation/strings.h"

namespace tarn {

std::wstring MenuCaption(std::uint16_t item, std::uint16_t flags, const MenuStringReader &read)
{
    std::wstring buffer;
    int count = 0;
    if (!(flags & menuflag::Highlight)) {
        if (!(flags & menuflag::Separator)) return L"";
        // A separator leaves a buffer of three Cs of which one counts: its caption is "C".
        buffer = L"CCC";
        count = 1;
    } else {
        // A pop-up's item number is its position in the menu; any other item's is its command.
        bool by_position = (flags & menuflag::Popup) != 0;
        buffer.assign(kMenuCaptionBuffer, L' ');
        count = read ? read(item, buffer.data(), kMenuCaptionBuffer, by_position) : 0;
    }
    if (count <= 0) return L"";
    count = std::min(count, static_cast<int>(buffer.size()));
    return Trim(buffer.substr(0, static_cast<size_t>(count)));
}

} // namespace tarn
