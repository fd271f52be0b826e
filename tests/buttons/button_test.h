// Shared by the button tests: the fixture (a button placed and, where asked, activated with
// the focus calls a focusable control makes on its site) and small picture helpers.
#pragma once
#include <olectl.h>

#include <vector>

#include "support/control_test.h"

namespace tarn::test {

constexpr wchar_t kButton[] = L"TarnControls.cbtn";

class ButtonTest : public ControlTest {
protected:
    // A button (or another of the library's buttons) in place, in its own window, ready for
    // real input.
    Hosted &active(RECT pos = {10, 10, 110, 35}, const wchar_t *progid = kButton)
    {
        Hosted &b = place(progid, pos);
        b.activate();
        allow_focus(b);
        return b;
    }
};

inline Variant ole_colour(uint32_t c) { return Variant::of_i4(static_cast<int32_t>(c)); }
inline Rgb sys(int index) { return GetSysColor(index); }

// A picture object holding a w x h bitmap of one colour.
inline ComPtr<IPictureDisp> solid_picture(int w, int h, COLORREF colour)
{
    // A 32-bit bitmap's pixels are 0x00RRGGBB.
    std::vector<uint32_t> bits(static_cast<size_t>(w) * h, RGB(GetBValue(colour), GetGValue(colour), GetRValue(colour)));
    PICTDESC pd{};
    pd.cbSizeofstruct = sizeof pd;
    pd.picType = PICTYPE_BITMAP;
    pd.bmp.hbitmap = CreateBitmap(w, h, 1, 32, bits.data());
    ComPtr<IPictureDisp> pic;
    OleCreatePictureIndirect(&pd, IID_IPictureDisp, TRUE, pic.put_void());
    return pic;
}

// The first column (from the left) with a pixel of a reddish colour in rows [y1, y2).
inline int first_red_column(const Bitmap &b, int y1, int y2)
{
    for (int x = 0; x < b.width(); ++x)
        for (int y = y1; y < y2; ++y)
            if (Rgb p = b.pixel(x, y); red_of(p) > 150 && green_of(p) < 110 && blue_of(p) < 110) return x;
    return -1;
}

} // namespace tarn::test
