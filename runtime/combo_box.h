// ComboBox: the combo box constituent (a system COMBOBOX). Its items, selection and text live
// in the window. Its height follows its font, as a host's combo box does: Height reads the
// height the window took, and the height given in the placement is the drop-down list's.
//
//   on_click      the selection changed, by the user or through ListIndex or Text
//   on_change     the text of the edit field changed, typed or written through Text
//   on_dbl_click  a double click on a list that is always shown
//   on_drop_down  the list is about to drop down (its button clicked, Alt+Down, F4)
// Keys and the mouse over the edit field arrive as the combo box's own.
#pragma once
#include "runtime/windowed_constituent.h"

namespace tarn {

class ComboBox final : public ColoredConstituent {
public:
    // `style`: 0 drop-down combo (an edit field and a list), 2 drop-down list (a list only).
    ComboBox(std::wstring name, float left, float top, float width, float height, int16_t style = 0);

    float Height() const override;

    // Adds an item at `index` (at the end when -1).
    void AddItem(const std::wstring &item, int32_t index = -1);
    void RemoveItem(int32_t index);
    void Clear();
    int32_t ListCount() const;
    // The item's text; "" for an index with no item.
    std::wstring List(int32_t index) const;
    // The selected item, -1 for none.
    int32_t ListIndex() const;
    void SetListIndex(int32_t index);
    std::wstring Text() const { return window_text(); }
    // A drop-down list takes only the text of one of its items.
    void SetText(const std::wstring &text);

    std::function<void()> on_drop_down;

protected:
    bool on_command(WORD code, LRESULT &result) override;
    int window_height(int height) const override;
    void font_applied() override;
    void print_client(HDC dc) override;

private:
    bool is_list() const;
};

// The window height a combo box (or a control that holds one) takes for a placement `height`
// pixels high: its field, and below it the drop-down list, at least a few items long.
int ComboWindowHeight(HWND combo, int height);

} // namespace tarn
