// cbtn (TarnControls.cbtn): the owner-drawn push button. It paints its whole face itself in one
// of fourteen looks (ButtonType), in the normal, hover, pressed or disabled face, through a
// memory DC; follows the pointer with the capture to show the hover face and the library's
// tooltip; clicks from the mouse and the space bar; moves the focus with the arrow keys. All of
// that is the button every owner-drawn button shares (button_control.h); cbtn adds its saved keys.
#pragma once
#include "buttons/button_control.h"
#include "tarnctls_h.h"

namespace tarn {

class cbtn final : public ButtonControl<cbtn, Icbtn> {
public:
    static const ControlClass Class;
    static constexpr wchar_t kButtonTypeKey[] = L"BTYPE";
    static constexpr wchar_t kPictureDisabledKey[] = L"PICTUREDIS";

protected:
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
};

} // namespace tarn
