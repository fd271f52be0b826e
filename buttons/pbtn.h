// pbtn (TarnControls.pbtn): the picture button. Its face (picImage1a) shows one of four
// pictures, each kept in its holder: imgImage2 the normal look, imgImage3 the hover look,
// imgImage4 the pressed look, imgImage5 the disabled look (none set: the normal picture
// greyed). The caption label lblLabel1 under the picture is written in "Comic sans MS" where
// the system has that face, else in the container's font. The hover look follows the
// library's hover tracker; the keys are the library's buttons' keys.
#pragma once
#include "buttons/button_keys.h"
#include "buttons/hover_tracker.h"
#include "buttons/pbtn_layout.h"
#include "runtime/control_impl.h"
#include "tarnctls_h.h"

namespace tarn {

class pbtn final : public ControlImpl<pbtn, Ipbtn>, private ButtonHost {
public:
    static const ControlClass Class;

    pbtn();

    // Ipbtn
    STDMETHODIMP get_PictureNormal(IPictureDisp **value) override;
    STDMETHODIMP put_PictureNormal(IPictureDisp *value) override;
    STDMETHODIMP putref_PictureNormal(IPictureDisp *value) override;
    STDMETHODIMP get_PictureHLight(IPictureDisp **value) override;
    STDMETHODIMP put_PictureHLight(IPictureDisp *value) override;
    STDMETHODIMP putref_PictureHLight(IPictureDisp *value) override;
    STDMETHODIMP get_PicturePressed(IPictureDisp **value) override;
    STDMETHODIMP put_PicturePressed(IPictureDisp *value) override;
    STDMETHODIMP putref_PicturePressed(IPictureDisp *value) override;
    STDMETHODIMP get_PictureDisabled(IPictureDisp **value) override;
    STDMETHODIMP put_PictureDisabled(IPictureDisp *value) override;
    STDMETHODIMP putref_PictureDisabled(IPictureDisp *value) override;
    STDMETHODIMP get_Enabled(VARIANT_BOOL *value) override;
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) override;
    STDMETHODIMP get_CAPTION(BSTR *value) override;
    STDMETHODIMP put_CAPTION(BSTR value) override;
    STDMETHODIMP get_PICDISABLED(IPictureDisp **value) override;
    STDMETHODIMP get_PICPNORMAL(IPictureDisp **value) override;
    STDMETHODIMP get_hwnd(OLE_HANDLE *value) override;
    STDMETHODIMP MousePosnONOUT() override;
    STDMETHODIMP UserControlMouseOut() override;
    STDMETHODIMP get__Default(BSTR *value) override { return get_CAPTION(value); }
    STDMETHODIMP put__Default(BSTR value) override { return put_CAPTION(value); }

protected:
    void Initialize() override;
    void InitProperties() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Resize() override;
    void Paint() override {}
    void DrawSurface(HDC dc, const Scale &scale) override;
    void Click() override { tracker_.Click(); }
    void DblClick() override { tracker_.DblClick(); }
    void MouseDown(int16_t button, int16_t shift, float x, float y) override;
    void MouseMove(int16_t button, int16_t shift, float x, float y) override;
    void MouseUp(int16_t button, int16_t shift, float x, float y) override;
    void KeyDown(int16_t &key_code, int16_t shift) override { keys_.KeyDown(key_code, shift); }
    void KeyPress(int16_t &key_ascii) override { keys_.KeyPress(key_ascii); }
    void KeyUp(int16_t &key_code, int16_t shift) override { keys_.KeyUp(key_code, shift); }
    void GotFocus() override { Invalidate(); }
    void LostFocus() override { keys_.LostFocus(); }
    void AmbientChanged(DISPID id) override;
    void Terminate() override;
    LRESULT OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled) override;
    bool CanGetFocus() const override { return enabled_; }
    std::wstring Caption() override { return caption_; }
    void Mnemonic() override;
    long AccessibleRole() override { return ROLE_SYSTEM_PUSHBUTTON; }
    long AccessibleState() override;
    std::wstring DefaultAction() override { return L"Press"; }
    void DoDefaultAction() override;

private:
    // ButtonHost
    HWND ButtonWindow() const override { return hWnd(); }
    int ButtonWidth() const override { return PixelWidth(); }
    int ButtonHeight() const override { return PixelHeight(); }
    void PaintFace(int state) override;
    void RaiseButtonEvent(DISPID id, EventArgs &args) override { raise(id, args); }
    std::wstring TipText() const override { return std::wstring(); }
    bool ButtonEnabled() const override { return enabled_; }

    HRESULT set_picture(ComPtr<IPictureDisp> &holder, IPictureDisp *value, const wchar_t *key);
    // The caption label's font: "Comic sans MS" where the system has it, else the ambient font.
    void caption_font();
    float px(float twips, bool vertical) const;

    // picImage1a shows a look; the holders keep one picture each.
    ComPtr<IPictureDisp> picImage1a, imgImage2, imgImage3, imgImage4, imgImage5;
    bool enabled_ = true;
    std::wstring caption_;
    ComPtr<IFontDisp> lblLabel1_font_;
    int face_ = face::Normal;
    HoverTracker tracker_;
    ButtonKeys keys_;
};

} // namespace tarn
