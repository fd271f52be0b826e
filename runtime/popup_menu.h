// PopupMenu: a pop-up menu constituent, as a host's menu editor makes one: items with names
// (mnuTIME30), captions ("-" makes a separator, "&" marks the access key) and a handler each.
// The menu is built for each showing and gone when it closes, so it holds no handle between.
//
//   menu.AddItem(L"mnuTIME30", L"30 minutes", [&] { ... });
//   menu.OpenOn(dtpCONTROL);   // a right click, the context-menu key or Shift+F10 shows it
//
// An item's handler runs after the menu has closed, as a host's Click of a menu item does.
#pragma once
#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace tarn {

class WindowedConstituent;

class PopupMenu {
public:
    explicit PopupMenu(std::wstring name) : Name(std::move(name)) {}
    PopupMenu(const PopupMenu &) = delete;
    PopupMenu &operator=(const PopupMenu &) = delete;

    const std::wstring Name;

    void AddItem(std::wstring name, std::wstring caption, std::function<void()> on_click = {});
    size_t Count() const { return items_.size(); }
    const std::wstring &ItemName(size_t index) const { return items_.at(index).name; }
    const std::wstring &ItemCaption(size_t index) const { return items_.at(index).caption; }
    bool IsSeparator(size_t index) const { return items_.at(index).caption == L"-"; }
    // A disabled item shows grey and cannot be chosen. Unknown names are refused.
    bool ItemEnabled(const std::wstring &name) const;
    void SetItemEnabled(const std::wstring &name, bool enabled);

    // Shows the menu at a screen point for `owner` and runs the chosen item's handler. The
    // chosen item's name, "" when the user chose none.
    std::wstring Popup(HWND owner, POINT screen);
    // Runs the named item's handler as a choice by the user does; false for a name that is
    // not an item, a separator or a disabled item.
    bool Choose(const std::wstring &name);
    // Shows the menu whenever `c` asks for its context menu, where it asked.
    void OpenOn(WindowedConstituent &c);

    // What shows the menu and waits for the user: TrackPopupMenuEx by default. Returns the
    // command id chosen (items are numbered from 1 in order), 0 for none. A test replaces it
    // to choose without the menu's modal loop; null puts the default back. Per thread.
    using Tracker = std::function<UINT(HMENU menu, HWND owner, POINT screen)>;
    static void SetTracker(Tracker tracker);

private:
    struct Item {
        std::wstring name, caption;
        std::function<void()> on_click;
        bool enabled = true;
    };
    Item *find(const std::wstring &name);
    const Item *find(const std::wstring &name) const;
    std::vector<Item> items_;
};

} // namespace tarn
