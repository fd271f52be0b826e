#include "inputs/tbf_layout.h"

#include <algorithm>

#include "runtime/mnemonic.h"

namespace tarn {

namespace {
constexpr int kTab = 9, kPageUp = 33, kPageDown = 34, kEnd = 35, kHome = 36, kLeft = 37, kUp = 38, kRight = 39,
              kDown = 40;
constexpr int kFirstLeft = 2; // room for the selected tab to stand out on the left
constexpr int kButtonGap = 3;
} // namespace

std::vector<TabBox> TabLayout(const std::vector<int> &text_widths, int width, int height, int16_t style,
                              int selected, int pad)
{
    const int n = static_cast<int>(text_widths.size());
    std::vector<TabBox> tabs(static_cast<size_t>(n));
    if (n == 0) return tabs;
    pad = std::max(pad, 0);
    const bool buttons = style == tabstyle::FlatButtons;
    const int gap = buttons ? kButtonGap : 0;
    std::vector<long long> wanted(static_cast<size_t>(n));
    long long total = 0;
    for (int i = 0; i < n; ++i) {
        wanted[static_cast<size_t>(i)] = std::max(text_widths[static_cast<size_t>(i)], 0) + 2LL * pad;
        total += wanted[static_cast<size_t>(i)];
    }
    const long long room = std::max<long long>(static_cast<long long>(width) - 2 * kFirstLeft - gap * (n - 1), 0);
    int x = kFirstLeft;
    for (int i = 0; i < n; ++i) {
        long long w = wanted[static_cast<size_t>(i)];
        if (total > room && total > 0) w = std::max<long long>(w * room / total, 2LL * pad);
        TabBox &t = tabs[static_cast<size_t>(i)];
        t.left = x;
        t.right = static_cast<int>(std::min<long long>(x + w, 1 << 24));
        x = t.right + gap;
        if (buttons) {
            t.top = 1;
            t.bottom = height - 1;
        } else {
            t.top = 2;
            t.bottom = height - 1; // the strip's bottom line runs under the tabs
        }
    }
    if (!buttons && selected >= 0 && selected < n) {
        TabBox &s = tabs[static_cast<size_t>(selected)];
        s.left -= 2;
        s.right += 2;
        s.top = 0;
        s.bottom = height; // over the bottom line: the tab opens onto the page below
    }
    return tabs;
}

int TabAt(const std::vector<TabBox> &tabs, int selected, int x, int y)
{
    const int n = static_cast<int>(tabs.size());
    if (selected >= 0 && selected < n && tabs[static_cast<size_t>(selected)].contains(x, y)) return selected;
    for (int i = 0; i < n; ++i)
        if (tabs[static_cast<size_t>(i)].contains(x, y)) return i;
    return -1;
}

int TabKeyTarget(int key, bool ctrl, bool shift, int count, int current)
{
    if (count <= 0) return -1;
    const int cur = std::clamp(current, 0, count - 1);
    int to = -1;
    if (ctrl && (key == kTab || key == kPageDown || key == kPageUp)) {
        bool back = key == kPageUp || (key == kTab && shift);
        to = back ? (cur + count - 1) % count : (cur + 1) % count;
    } else if (ctrl) {
        return -1;
    } else if (key == kLeft || key == kUp) {
        to = std::max(cur - 1, 0);
    } else if (key == kRight || key == kDown) {
        to = std::min(cur + 1, count - 1);
    } else if (key == kHome) {
        to = 0;
    } else if (key == kEnd) {
        to = count - 1;
    }
    return to == current ? -1 : to;
}

int TabWithMnemonic(const std::vector<std::wstring> &captions, wchar_t key)
{
    // The key named as a caption names it, so that both sides compare alike.
    const wchar_t wanted = MnemonicOf(std::wstring{L'&', key});
    if (!wanted) return -1;
    for (size_t i = 0; i < captions.size(); ++i)
        if (MnemonicOf(captions[i]) == wanted) return static_cast<int>(i);
    return -1;
}

} // namespace tarn
