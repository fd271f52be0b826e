// PictureBox: a plain box constituent (a system STATIC window with no text) in its back colour,
// with or without a border; it also keeps a fore colour for its control's use.
//
//   on_click      a left-button release after a press in it; on_dbl_click the second press
#pragma once
#include "runtime/windowed_constituent.h"

namespace tarn {

class PictureBox final : public ColoredConstituent {
public:
    PictureBox(std::wstring name, float left, float top, float width, float height);

    // 0 none, 1 fixed single.
    int16_t BorderStyle() const;
    void SetBorderStyle(int16_t style);
    // How a fixed single border looks: 0 flat (a one-pixel line), 1 3-D (sunken).
    int16_t Appearance() const { return appearance_; }
    void SetAppearance(int16_t appearance);

protected:
    bool clicks_from_mouse() const override { return true; }
    bool on_window_message(UINT msg, WPARAM wp, LPARAM lp, LRESULT &result) override;
    void print_client(HDC dc) override;

private:
    void apply_border(bool border);
    void fill(HDC dc);
    int16_t appearance_ = 1;
};

} // namespace tarn
