// The tab strip's pure rules: where each tab goes in each look, which tab a point or a key
// picks, and the access keys its captions mark with "&".
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace tarn {

namespace tabstyle {
constexpr int16_t Classic = 0, FlatButtons = 1, XP = 2;
}

struct TabBox {
    int left = 0, top = 0, right = 0, bottom = 0;
    bool contains(int x, int y) const { return x >= left && x < right && y >= top && y < bottom; }
};

// The tabs of a strip `width` x `height` pixels whose captions are `text_widths` pixels wide,
// each with `pad` pixels on either side, in one row from the left. Tabs that do not fit all
// narrow alike (never below the padding). In the classic and XP looks the tabs stand on the
// strip's bottom line and the selected one is taller and wider, in front of its neighbours; flat
// buttons keep a gap between them.
std::vector<TabBox> TabLayout(const std::vector<int> &text_widths, int width, int height, int16_t style,
                              int selected, int pad);

// The tab at a point, the selected one first (it overlaps its neighbours); -1 for none.
int TabAt(const std::vector<TabBox> &tabs, int selected, int x, int y);

// The tab a key moves to, or -1 when the key is not the strip's: Ctrl+Tab and Ctrl+Page Down
// the next (round to the first), Ctrl+Shift+Tab and Ctrl+Page Up the previous (round to the
// last), Left and Up the previous, Right and Down the next (stopping at the ends), Home the
// first, End the last. Key codes are the platform's virtual keys.
int TabKeyTarget(int key, bool ctrl, bool shift, int count, int current);

// The first tab whose access key (runtime/mnemonic.h) is `key`, in either case; -1 for none.
int TabWithMnemonic(const std::vector<std::wstring> &captions, wchar_t key);

} // namespace tarn
