// cbtnddp (TarnControls.cbtnddp): the colour button. It is the owner-drawn button (the same
// looks, hover, tooltip and keys, button_control.h) that opens the pop-up picPOPUP
// (colour_popup.h) of named colour cells when clicked; the colour chosen becomes SelectedColor
// and shows as a bar on the face (ShowButtonColor). While the pop-up is open the button keeps
// the focus and hands its keys to the pop-up first.
#pragma once
#include "buttons/button_control.h"
#include "buttons/colour_popup.h"
#include "tarnctls_h.h"

namespace tarn {

class cbtnddp final : public ButtonControl<cbtnddp, Icbtnddp>, private ColourPopupSink {
public:
    static const ControlClass Class;
    static constexpr wchar_t kButtonTypeKey[] = L"BUTTONTYPE";
    static constexpr wchar_t kPictureDisabledKey[] = L"PICTUREDISABLED";

    cbtnddp();

    // Icbtnddp beyond the button
    STDMETHODIMP put_BACKCOLOR(OLE_COLOR value) override;
    STDMETHODIMP put_ForeColor(OLE_COLOR value) override;
    STDMETHODIMP get_Palette(long *value) override;
    STDMETHODIMP put_Palette(long value) override;
    STDMETHODIMP get_PopupEnabled(VARIANT_BOOL *value) override;
    STDMETHODIMP put_PopupEnabled(VARIANT_BOOL value) override;
    STDMETHODIMP get_SelectedColor(OLE_COLOR *value) override;
    STDMETHODIMP put_SelectedColor(OLE_COLOR value) override;
    STDMETHODIMP get_ShowButtonColor(VARIANT_BOOL *value) override;
    STDMETHODIMP put_ShowButtonColor(VARIANT_BOOL value) override;
    STDMETHODIMP get_FillColor(OLE_COLOR *value) override;
    STDMETHODIMP put_FillColor(OLE_COLOR value) override;
    STDMETHODIMP get_ActiveColor(OLE_COLOR *value) override;
    STDMETHODIMP get_ActiveText(BSTR *value) override;
    STDMETHODIMP get_DocColor(OLE_COLOR *value) override;
    STDMETHODIMP put_DocColor(OLE_COLOR value) override;
    STDMETHODIMP ShowPopUp() override;
    STDMETHODIMP HidePopUp() override;
    STDMETHODIMP Refresh() override;

    // The pop-up, for the tests and the gallery's picture of it.
    ColourPopup &popup() { return popup_; }

protected:
    void InitProperties() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Terminate() override;
    void Clicked() override;
    void KeyDown(int16_t &key_code, int16_t shift) override;
    void LostFocus() override;
    std::vector<NamedValue> PropertyValueNames(DISPID id) override;

private:
    // ColourPopupSink
    void ActiveChanged(OleColor colour, const std::wstring &name) override;
    void Closed(PopupClose why) override;
    void ColourChosen(OleColor colour) override;
    void MoreChosen() override;

    void show_popup();
    void set_selected(OleColor colour);
    void popup_colours();

    int32_t palette_ = kDefaultPalette;
    bool popup_enabled_ = true;
    OleColor selected_ = 0;
    OleColor fill_ = 0;
    OleColor popup_back_ = syscolor::Window, popup_fore_ = 0; // the first reads of BACKCOLOR, FORECOLOR
    OleColor active_colour_ = 0;
    std::wstring active_text_;
    OleColor doc_ = 0;
    ColourPopup popup_;
};

} // namespace tarn
