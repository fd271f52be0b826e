// TextBox: the single-line text box constituent (a system EDIT window). Its text, alignment,
// length limit, selection, read-only state and border live in the window.
//
//   on_change     the text changed, typed or written by code
//   on_click      a left-button release after a press in it; on_dbl_click the second press
#pragma once
#include "runtime/windowed_constituent.h"

namespace tarn {

class TextBox final : public ColoredConstituent {
public:
    TextBox(std::wstring name, float left, float top, float width, float height);

    std::wstring Text() const;
    void SetText(const std::wstring &text);
    // 0 left, 1 right, 2 centre.
    int16_t Alignment() const;
    void SetAlignment(int16_t alignment);
    // The most characters typing may enter; 0 for no limit.
    int32_t MaxLength() const;
    void SetMaxLength(int32_t length);
    // Selection in characters; a new start clears the selection's length, as hosts do.
    int32_t SelStart() const;
    void SetSelStart(int32_t start);
    int32_t SelLength() const;
    void SetSelLength(int32_t length);
    // A locked text box shows its text and lets it be selected, but not changed by typing.
    bool Locked() const;
    void SetLocked(bool locked);
    // 0 none, 1 fixed single (the sunken 3-D edge).
    int16_t BorderStyle() const;
    void SetBorderStyle(int16_t style);

protected:
    bool on_command(WORD code, LRESULT &result) override;
    bool clicks_from_mouse() const override { return true; }
    void carry_state(HWND from, HWND to) override;
};

} // namespace tarn
