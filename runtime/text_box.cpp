#include "runtime/text_box.h"

#include <stdexcept>

namespace tarn {

namespace {
constexpr DWORD kAlignments[] = {ES_LEFT, ES_RIGHT, ES_CENTER};
constexpr LRESULT kNoLimit = 0x7FFFFFFE; // what the window reports for a limit of 0
}

TextBox::TextBox(std::wstring name, float left, float top, float width, float height)
    : ColoredConstituent(std::move(name), L"EDIT", WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL | ES_LEFT,
                         WS_EX_CLIENTEDGE, left, top, width, height, syscolor::Window, syscolor::WindowText)
{
    if (hwnd_) SendMessageW(hwnd_, EM_SETLIMITTEXT, 0, 0);
}

std::wstring TextBox::Text() const { return window_text(); }

void TextBox::SetText(const std::wstring &text)
{
    if (hwnd_) SetWindowTextW(hwnd_, text.c_str());
}

int16_t TextBox::Alignment() const
{
    LONG_PTR s = style();
    return (s & ES_CENTER) ? 2 : (s & ES_RIGHT) ? 1 : 0;
}

void TextBox::SetAlignment(int16_t alignment)
{
    if (alignment < 0 || alignment > 2) throw std::invalid_argument("alignment");
    if (alignment == Alignment()) return;
    // An edit window takes its alignment when it is made.
    recreate((style() & ~static_cast<LONG_PTR>(ES_RIGHT | ES_CENTER)) | kAlignments[alignment]);
}

int32_t TextBox::MaxLength() const
{
    LRESULT limit = hwnd_ ? SendMessageW(hwnd_, EM_GETLIMITTEXT, 0, 0) : 0;
    return limit >= kNoLimit || limit < 0 ? 0 : static_cast<int32_t>(limit);
}

void TextBox::SetMaxLength(int32_t length)
{
    if (length < 0) throw std::invalid_argument("length");
    if (hwnd_) SendMessageW(hwnd_, EM_SETLIMITTEXT, static_cast<WPARAM>(length), 0);
}

int32_t TextBox::SelStart() const
{
    DWORD start = 0, end = 0;
    if (hwnd_) SendMessageW(hwnd_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    return static_cast<int32_t>(start);
}

void TextBox::SetSelStart(int32_t start)
{
    if (start < 0) throw std::invalid_argument("start");
    if (hwnd_) SendMessageW(hwnd_, EM_SETSEL, static_cast<WPARAM>(start), static_cast<LPARAM>(start));
}

int32_t TextBox::SelLength() const
{
    DWORD start = 0, end = 0;
    if (hwnd_) SendMessageW(hwnd_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    return static_cast<int32_t>(end - start);
}

void TextBox::SetSelLength(int32_t length)
{
    if (length < 0) throw std::invalid_argument("length");
    int32_t start = SelStart();
    long long end = static_cast<long long>(start) + length;
    if (hwnd_) SendMessageW(hwnd_, EM_SETSEL, static_cast<WPARAM>(start), static_cast<LPARAM>(end > INT32_MAX ? INT32_MAX : end));
}

bool TextBox::Locked() const { return (style() & ES_READONLY) != 0; }

void TextBox::SetLocked(bool locked)
{
    if (hwnd_) SendMessageW(hwnd_, EM_SETREADONLY, locked, 0);
}

int16_t TextBox::BorderStyle() const
{
    return hwnd_ && (GetWindowLongPtrW(hwnd_, GWL_EXSTYLE) & WS_EX_CLIENTEDGE) ? 1 : 0;
}

void TextBox::SetBorderStyle(int16_t style)
{
    if (style < 0 || style > 1) throw std::invalid_argument("border style");
    set_ex_style_bits(WS_EX_CLIENTEDGE, style == 1);
}

void TextBox::carry_state(HWND from, HWND to)
{
    SendMessageW(to, EM_SETLIMITTEXT, static_cast<WPARAM>(SendMessageW(from, EM_GETLIMITTEXT, 0, 0)), 0);
    SetWindowTextW(to, window_text().c_str());
    DWORD start = 0, end = 0;
    SendMessageW(from, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    SendMessageW(to, EM_SETSEL, start, end);
}

bool TextBox::on_command(WORD code, LRESULT &result)
{
    if (code != EN_CHANGE) return false;
    fire(on_change);
    result = 0;
    return true;
}

} // namespace tarn
