// ImageCombo: the image combo constituent (the common control ComboBoxEx32 as a drop-down list
// with an image list): items with a text and a picture. Its items, selection and images live in
// the window and its image list. Its height follows its font, as a combo box's does.
//
//   on_click   the selection changed, by the user or through ListIndex
// Keys and the mouse over the inner list field arrive as the image combo's own.
#pragma once
#include "runtime/windowed_constituent.h"

#include <commctrl.h>

namespace tarn {

class ImageCombo final : public WindowedConstituent {
public:
    ImageCombo(std::wstring name, float left, float top, float width, float height);
    ~ImageCombo() override;

    float Height() const override;

    // Adds a picture to the image list (the icon is copied); its index, -1 when it could not.
    int32_t AddImage(HICON icon);
    int32_t ImageCount() const;
    // Adds an item at `index` (at the end when -1) showing picture `image` (-1: none).
    void AddItem(const std::wstring &item, int32_t index = -1, int32_t image = -1);
    void RemoveItem(int32_t index);
    void Clear();
    int32_t ListCount() const;
    // The item's text and picture; "" and -1 for an index with no item.
    std::wstring List(int32_t index) const;
    int32_t ItemImage(int32_t index) const;
    // The selected item, -1 for none.
    int32_t ListIndex() const;
    void SetListIndex(int32_t index);
    // The selected item's text, "" when none is selected.
    std::wstring Text() const { return List(ListIndex()); }

protected:
    bool on_command(WORD code, LRESULT &result) override;
    int window_height(int height) const override;
    void font_applied() override;

private:
    HWND combo() const;
    HIMAGELIST images_ = nullptr;
};

} // namespace tarn
