#include "runtime/popup_menu.h"

#include <cmath>
#include <stdexcept>

#include "foundation/handles.h"
#include "foundation/metrics.h"
#include "foundation/trap.h"
#include "runtime/windowed_constituent.h"

namespace tarn {

namespace {

thread_local PopupMenu::Tracker t_tracker;

UINT track(HMENU menu, HWND owner, POINT at)
{
    if (t_tracker) return t_tracker(menu, owner, at);
    // The owner must be the foreground window's for the menu to close when the user clicks
    // elsewhere.
    return static_cast<UINT>(TrackPopupMenuEx(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON | TPM_NONOTIFY, at.x, at.y,
                                              owner, nullptr));
}

} // namespace

void PopupMenu::SetTracker(Tracker tracker) { t_tracker = std::move(tracker); }

void PopupMenu::AddItem(std::wstring name, std::wstring caption, std::function<void()> on_click)
{
    items_.push_back(Item{std::move(name), std::move(caption), std::move(on_click), true});
}

PopupMenu::Item *PopupMenu::find(const std::wstring &name)
{
    for (Item &i : items_)
        if (i.name == name) return &i;
    return nullptr;
}

const PopupMenu::Item *PopupMenu::find(const std::wstring &name) const
{
    return const_cast<PopupMenu *>(this)->find(name);
}

bool PopupMenu::ItemEnabled(const std::wstring &name) const
{
    const Item *i = find(name);
    if (!i) throw std::invalid_argument("no such item");
    return i->enabled;
}

void PopupMenu::SetItemEnabled(const std::wstring &name, bool enabled)
{
    Item *i = find(name);
    if (!i) throw std::invalid_argument("no such item");
    i->enabled = enabled;
}

bool PopupMenu::Choose(const std::wstring &name)
{
    Item *i = find(name);
    if (!i || i->caption == L"-" || !i->enabled) return false;
    // A copy: the handler may change the menu.
    std::function<void()> handler = i->on_click;
    if (handler) step([&] { handler(); });
    return true;
}

std::wstring PopupMenu::Popup(HWND owner, POINT screen)
{
    unique_menu menu(CreatePopupMenu());
    if (!menu) return {};
    for (size_t n = 0; n < items_.size(); ++n) {
        const Item &i = items_[n];
        if (i.caption == L"-") AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
        else AppendMenuW(menu.get(), MF_STRING | (i.enabled ? 0 : MF_GRAYED), n + 1, i.caption.c_str());
    }
    UINT chosen = track(menu.get(), owner, screen);
    menu.reset();
    if (chosen == 0 || chosen > items_.size()) return {};
    std::wstring name = items_[chosen - 1].name;
    return Choose(name) ? name : std::wstring();
}

void PopupMenu::OpenOn(WindowedConstituent &c)
{
    c.on_context_menu = [this, &c](float x, float y) {
        POINT at{static_cast<LONG>(std::floor(x / TwipsPerPixelX())), static_cast<LONG>(std::floor(y / TwipsPerPixelY()))};
        ClientToScreen(c.hWnd(), &at);
        Popup(c.hWnd(), at);
    };
}

} // namespace tarn
