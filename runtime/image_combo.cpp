#include "runtime/image_combo.h"

#include <stdexcept>

#include "foundation/metrics.h"
#include "runtime/combo_box.h"

namespace tarn {

ImageCombo::ImageCombo(std::wstring name, float left, float top, float width, float height)
    : WindowedConstituent(std::move(name), CommonControlClass(ICC_USEREX_CLASSES, WC_COMBOBOXEXW),
                          WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, 0, left, top, width, height)
{
    if (!hwnd_) return;
    const int side = GetSystemMetrics(SM_CXSMICON);
    images_ = ImageList_Create(side, side, ILC_COLOR32 | ILC_MASK, 4, 4);
    if (images_) SendMessageW(hwnd_, CBEM_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images_));
    // The list field takes the keys and the focus: they are the image combo's.
    subclass_part(combo());
    apply_placement();
}

ImageCombo::~ImageCombo()
{
    if (hwnd_) SendMessageW(hwnd_, CBEM_SETIMAGELIST, 0, 0);
    if (images_) ImageList_Destroy(images_);
}

HWND ImageCombo::combo() const
{
    return hwnd_ ? reinterpret_cast<HWND>(SendMessageW(hwnd_, CBEM_GETCOMBOCONTROL, 0, 0)) : nullptr;
}

float ImageCombo::Height() const
{
    RECT r{};
    HWND c = combo();
    if (!c || !GetWindowRect(c, &r)) return 0;
    return static_cast<float>((r.bottom - r.top) * TwipsPerPixelY());
}

int ImageCombo::window_height(int height) const { return ComboWindowHeight(combo(), height); }

void ImageCombo::font_applied() { apply_placement(); }

int32_t ImageCombo::AddImage(HICON icon)
{
    if (!images_ || !icon) return -1;
    return ImageList_AddIcon(images_, icon);
}

int32_t ImageCombo::ImageCount() const { return images_ ? ImageList_GetImageCount(images_) : 0; }

void ImageCombo::AddItem(const std::wstring &item, int32_t index, int32_t image)
{
    if (index < -1 || index > ListCount()) throw std::out_of_range("index");
    if (image < -1 || image >= ImageCount()) throw std::out_of_range("image");
    if (!hwnd_) return;
    COMBOBOXEXITEMW it{};
    it.mask = CBEIF_TEXT | CBEIF_IMAGE | CBEIF_SELECTEDIMAGE;
    it.iItem = index;
    it.pszText = const_cast<wchar_t *>(item.c_str());
    it.iImage = it.iSelectedImage = image;
    SendMessageW(hwnd_, CBEM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&it));
}

void ImageCombo::RemoveItem(int32_t index)
{
    if (index < 0 || index >= ListCount()) throw std::out_of_range("index");
    SendMessageW(hwnd_, CBEM_DELETEITEM, static_cast<WPARAM>(index), 0);
}

void ImageCombo::Clear()
{
    if (hwnd_) SendMessageW(hwnd_, CB_RESETCONTENT, 0, 0);
}

int32_t ImageCombo::ListCount() const
{
    LRESULT n = hwnd_ ? SendMessageW(hwnd_, CB_GETCOUNT, 0, 0) : 0;
    return n > 0 ? static_cast<int32_t>(n) : 0;
}

std::wstring ImageCombo::List(int32_t index) const
{
    if (index < 0 || index >= ListCount()) return {};
    wchar_t buffer[1024] = {};
    COMBOBOXEXITEMW it{};
    it.mask = CBEIF_TEXT;
    it.iItem = index;
    it.pszText = buffer;
    it.cchTextMax = static_cast<int>(sizeof buffer / sizeof buffer[0]);
    if (!SendMessageW(hwnd_, CBEM_GETITEMW, 0, reinterpret_cast<LPARAM>(&it))) return {};
    return it.pszText ? std::wstring(it.pszText) : std::wstring();
}

int32_t ImageCombo::ItemImage(int32_t index) const
{
    if (index < 0 || index >= ListCount()) return -1;
    COMBOBOXEXITEMW it{};
    it.mask = CBEIF_IMAGE;
    it.iItem = index;
    if (!SendMessageW(hwnd_, CBEM_GETITEMW, 0, reinterpret_cast<LPARAM>(&it))) return -1;
    return it.iImage;
}

int32_t ImageCombo::ListIndex() const
{
    LRESULT i = hwnd_ ? SendMessageW(hwnd_, CB_GETCURSEL, 0, 0) : CB_ERR;
    return i < 0 ? -1 : static_cast<int32_t>(i);
}

void ImageCombo::SetListIndex(int32_t index)
{
    if (index < -1 || index >= ListCount()) throw std::out_of_range("index");
    if (index == ListIndex()) return;
    SendMessageW(hwnd_, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    fire(on_click);
}

bool ImageCombo::on_command(WORD code, LRESULT &result)
{
    if (code != CBN_SELCHANGE) return false;
    fire(on_click);
    result = 0;
    return true;
}

} // namespace tarn
