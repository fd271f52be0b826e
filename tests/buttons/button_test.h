// Shared by the button tests: the fixture (a button placed and, where asked, activated with
// the focus calls a focusable control makes on its site) and small picture helpers.
#pragma once
#include <olectl.h>

#include "support/control_test.h"

namespace tarn::test {

constexpr wchar_t kButton[] = L"TarnControls.cbtn";

class ButtonTest : public ControlTest {
protected:
    // A button in place, in its own window, ready for real input.
    Hosted &active(RECT pos = {10, 10, 110, 35})
    {
        Hosted &b = place(kButton, pos);
        b.activate();
        allow_focus(b);
        return b;
    }
    static void allow_focus(Hosted &b)
    {
        for (const wchar_t *call : {L"IOleInPlaceSite::OnUIActivate", L"IOleInPlaceSite::GetWindowContext",
                                    L"IOleControlSite::OnFocus(TRUE)", L"IOleControlSite::OnFocus(FALSE)"})
            b.log().allow(call);
    }
};

inline Variant ole_colour(uint32_t c) { return Variant::of_i4(static_cast<int32_t>(c)); }

// A picture object holding a w x h bitmap of one colour.
inline ComPtr<IPictureDisp> solid_picture(int w, int h, COLORREF colour)
{
    HDC screen = GetDC(nullptr);
    HBITMAP bmp = CreateCompatibleBitmap(screen, w, h);
    HDC mem = CreateCompatibleDC(screen);
    HGDIOBJ old = SelectObject(mem, bmp);
    RECT r{0, 0, w, h};
    HBRUSH brush = CreateSolidBrush(colour);
    FillRect(mem, &r, brush);
    DeleteObject(brush);
    SelectObject(mem, old);
    DeleteDC(mem);
    ReleaseDC(nullptr, screen);
    PICTDESC pd{};
    pd.cbSizeofstruct = sizeof pd;
    pd.picType = PICTYPE_BITMAP;
    pd.bmp.hbitmap = bmp;
    ComPtr<IPictureDisp> pic;
    OleCreatePictureIndirect(&pd, IID_IPictureDisp, TRUE, pic.put_void());
    return pic;
}

// The first column (from the left) with a pixel of a reddish colour in rows [y1, y2).
inline int first_red_column(const Bitmap &b, int y1, int y2)
{
    for (int x = 0; x < b.width(); ++x)
        for (int y = y1; y < y2; ++y) {
            Rgb p = b.pixel(x, y);
            if (red_of(p) > 150 && green_of(p) < 110 && blue_of(p) < 110) return x;
        }
    return -1;
}

} // namespace tarn::test
