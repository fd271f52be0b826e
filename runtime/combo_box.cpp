#include "runtime/combo_box.h"

#include <stdexcept>

#include "foundation/handles.h"
#include "foundation/metrics.h"

namespace tarn {

namespace {
constexpr int kListItems = 8; // a placement lower than the field still drops this many items
}

ComboBox::ComboBox(std::wstring name, float left, float top, float width, float height, int16_t style)
    : ColoredConstituent(std::move(name), L"COMBOBOX",
                         WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | CBS_AUTOHSCROLL |
                             (style == 2 ? CBS_DROPDOWNLIST : CBS_DROPDOWN),
                         0, left, top, width, height, syscolor::Window, syscolor::WindowText)
{
    if (!hwnd_) return;
    // Typing goes to the edit field: its keys, mouse and focus are the combo box's.
    subclass_part(FindWindowExW(hwnd_, nullptr, L"EDIT", nullptr));
    apply_placement();
}

bool ComboBox::is_list() const { return (style() & 3) == CBS_DROPDOWNLIST; }

float ComboBox::Height() const
{
    RECT r{};
    if (!hwnd_ || !GetWindowRect(hwnd_, &r)) return 0;
    return static_cast<float>((r.bottom - r.top) * TwipsPerPixelY());
}

int ComboWindowHeight(HWND combo, int height)
{
    LRESULT item = combo ? SendMessageW(combo, CB_GETITEMHEIGHT, 0, 0) : 0;
    if (item <= 0 || item > 1000) item = 16;
    RECT r{};
    if (combo) GetWindowRect(combo, &r);
    int field = r.bottom - r.top;
    int list = height > field ? height - field : static_cast<int>(item) * kListItems;
    return field + list;
}

int ComboBox::window_height(int height) const { return ComboWindowHeight(hwnd_, height); }

void ComboBox::font_applied() { apply_placement(); }

void ComboBox::print_client(HDC dc)
{
    WindowedConstituent::print_client(dc);
    // A drop-down list prints its frame and arrow but not the chosen item's text: drawn here,
    // where the field shows it.
    if (!is_list() || ListIndex() < 0) return;
    RECT field{};
    GetClientRect(hwnd_, &field);
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    if (GetComboBoxInfo(hwnd_, &info)) field = info.rcItem;
    saved_dc keep(dc);
    if (HBRUSH back = paint_colors(dc)) FillRect(dc, &field, back);
    if (HFONT font = reinterpret_cast<HFONT>(SendMessageW(hwnd_, WM_GETFONT, 0, 0))) SelectObject(dc, font);
    SetBkMode(dc, TRANSPARENT);
    const std::wstring text = List(ListIndex());
    InflateRect(&field, -2, 0);
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &field, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
}

void ComboBox::AddItem(const std::wstring &item, int32_t index)
{
    if (index < -1 || index > ListCount()) throw std::out_of_range("index");
    if (!hwnd_) return;
    SendMessageW(hwnd_, index == -1 ? CB_ADDSTRING : CB_INSERTSTRING, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(item.c_str()));
}

void ComboBox::RemoveItem(int32_t index)
{
    if (index < 0 || index >= ListCount()) throw std::out_of_range("index");
    SendMessageW(hwnd_, CB_DELETESTRING, static_cast<WPARAM>(index), 0);
}

void ComboBox::Clear()
{
    if (hwnd_) SendMessageW(hwnd_, CB_RESETCONTENT, 0, 0);
}

int32_t ComboBox::ListCount() const
{
    LRESULT n = hwnd_ ? SendMessageW(hwnd_, CB_GETCOUNT, 0, 0) : 0;
    return n > 0 ? static_cast<int32_t>(n) : 0;
}

std::wstring ComboBox::List(int32_t index) const
{
    if (index < 0 || index >= ListCount()) return {};
    LRESULT n = SendMessageW(hwnd_, CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0);
    if (n <= 0) return {};
    std::wstring text(static_cast<size_t>(n) + 1, L'\0');
    LRESULT got = SendMessageW(hwnd_, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    text.resize(got > 0 ? static_cast<size_t>(got) : 0);
    return text;
}

int32_t ComboBox::ListIndex() const
{
    LRESULT i = hwnd_ ? SendMessageW(hwnd_, CB_GETCURSEL, 0, 0) : CB_ERR;
    return i < 0 ? -1 : static_cast<int32_t>(i);
}

void ComboBox::SetListIndex(int32_t index)
{
    if (index < -1 || index >= ListCount()) throw std::out_of_range("index");
    if (index == ListIndex()) return;
    SendMessageW(hwnd_, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    fire(on_click);
}

void ComboBox::SetText(const std::wstring &text)
{
    if (!hwnd_) return;
    if (is_list()) {
        LRESULT i = SendMessageW(hwnd_, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text.c_str()));
        if (i == CB_ERR) throw std::invalid_argument("not an item");
        SetListIndex(static_cast<int32_t>(i));
        return;
    }
    SetWindowTextW(hwnd_, text.c_str());
    fire(on_change);
}

bool ComboBox::on_command(WORD code, LRESULT &result)
{
    switch (code) {
    case CBN_SELCHANGE: fire(on_click); break;
    case CBN_EDITCHANGE: fire(on_change); break;
    case CBN_DBLCLK: fire(on_dbl_click); break;
    case CBN_DROPDOWN: fire(on_drop_down); break;
    default: return false;
    }
    result = 0;
    return true;
}

} // namespace tarn
