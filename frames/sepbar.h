// sepbar (TarnControls.sepbar): a captioned horizontal separator, the titled divider line that
// groups settings on a dialog. It draws nothing itself: two group frames, collapsed to lines,
// make it. framLEFTSPACER is the short piece of line left of the title; framMAIN carries the
// title and the rest of the line. There is no layout: the frames keep their design places and
// the host sizes the bar. It raises no events.
//
// The title is kept trimmed and followed by two blanks. A new bar shows "TEXT SEPARATOR",
// which is also the caption's save default while the restore default is the empty string: a
// caption of exactly "TEXT SEPARATOR" is not saved and comes back empty.
#pragma once
#include "runtime/control_impl.h"
#include "runtime/group_frame.h"
#include "tarnctls_h.h"

namespace tarn {

class sepbar final : public ControlImpl<sepbar, Isepbar> {
public:
    static const ControlClass Class;
    sepbar();

    // Isepbar
    STDMETHODIMP get_BACKCOLOR(OLE_COLOR *value) override;
    STDMETHODIMP put_BACKCOLOR(OLE_COLOR value) override;
    STDMETHODIMP get_CAPTION(BSTR *value) override;
    STDMETHODIMP put_CAPTION(BSTR value) override;
    STDMETHODIMP get_Font(IFontDisp **value) override;
    STDMETHODIMP put_Font(IFontDisp *value) override;
    STDMETHODIMP putref_Font(IFontDisp *value) override;
    STDMETHODIMP get__Default(BSTR *value) override { return get_CAPTION(value); }
    STDMETHODIMP put__Default(BSTR value) override { return put_CAPTION(value); }

protected:
    void Initialize() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    bool CanGetFocus() const override { return false; }
    std::wstring Caption() override;
    long AccessibleRole() override { return ROLE_SYSTEM_SEPARATOR; }

private:
    HRESULT set_font(IFontDisp *value);
    // The surface's font: framMAIN's, and the spacer's, whose line stays level with framMAIN's.
    void use_font(const ComPtr<IFontDisp> &font);

    GroupFrame framLEFTSPACER, framMAIN;
    ComPtr<IFontDisp> font_; // behind Font
};

} // namespace tarn
