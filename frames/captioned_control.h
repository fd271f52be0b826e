// CaptionedControl<Self, Interface>: what the captioned line (lneh) and the panel (pnl) share,
// a control whose caption is one label constituent, lblCAPTION. It gives them the properties
// CAPTION (also the default member), Alignment, Font, ForeColor and BACKCOLOR with their
// checks, saves them under "ALIGNMENT", "CAPTION", "FORECOLOR", "BACKCOLOR" and "FONT" with
// equal save and restore defaults, raises Click, DblClick, MouseDown, MouseMove and MouseUp
// for the surface and (but DblClick) for the caption, and names the control after its caption
// for screen readers.
//
// The control adds lblCAPTION where it belongs among its constituents, lays it out in Resize,
// and hears CaptionChanged after every change to the caption's text, font or alignment.
// Values no caption can have (an alignment outside Alignments, a colour that names none) are
// skipped, written or restored.
#pragma once
#include <stdexcept>

#include "runtime/control_impl.h"
#include "runtime/property_values.h"
#include "tarnctls_h.h"

namespace tarn {

template <class Self, class Interface> class CaptionedControl : public ControlImpl<Self, Interface> {
public:
    STDMETHODIMP get_Alignment(Alignments *v) override
    {
        return this->get_value(v, [&] { return static_cast<Alignments>(lblCAPTION.Alignment); });
    }
    STDMETHODIMP put_Alignment(Alignments v) override
    {
        return this->put_value(L"ALIGNMENT", [&] {
            lblCAPTION.Alignment = known_alignment(static_cast<int32_t>(v));
            CaptionChanged();
        });
    }
    STDMETHODIMP get_BACKCOLOR(OLE_COLOR *v) override { return this->get_value(v, [&] { return this->BackColor(); }); }
    STDMETHODIMP put_BACKCOLOR(OLE_COLOR v) override
    {
        return this->put_value(L"BACKCOLOR", [&] {
            RequireColour(v);
            this->SetBackColor(v);
        });
    }
    STDMETHODIMP get_CAPTION(BSTR *v) override { return this->get_string(v, [&] { return lblCAPTION.Caption; }); }
    STDMETHODIMP put_CAPTION(BSTR v) override
    {
        return this->put_value(L"CAPTION", [&] {
            lblCAPTION.Caption = from_bstr(v);
            CaptionChanged();
            this->AccessibleChanged(EVENT_OBJECT_NAMECHANGE);
            this->ControlInfoChanged();
        });
    }
    STDMETHODIMP get__Default(BSTR *v) override { return get_CAPTION(v); }
    STDMETHODIMP put__Default(BSTR v) override { return put_CAPTION(v); }
    STDMETHODIMP get_Font(IFontDisp **v) override { return this->get_object(v, [&] { return lblCAPTION.Font; }); }
    STDMETHODIMP put_Font(IFontDisp *v) override { return set_font(v); }
    STDMETHODIMP putref_Font(IFontDisp *v) override { return set_font(v); }
    STDMETHODIMP get_ForeColor(OLE_COLOR *v) override { return this->get_value(v, [&] { return this->ForeColor(); }); }
    STDMETHODIMP put_ForeColor(OLE_COLOR v) override
    {
        return this->put_value(L"FORECOLOR", [&] {
            RequireColour(v);
            set_fore_colour(v);
        });
    }

protected:
    // `alignment`: where a new control's caption sits, also the key's default.
    explicit CaptionedControl(int16_t alignment) : lblCAPTION(L"lblCAPTION", 0, 0, 0, 0), default_alignment_(alignment)
    {
        lblCAPTION.Alignment = alignment;
        this->RaiseMouseEventsOf(lblCAPTION);
    }

    // The caption's text, font or alignment changed: lay out again where that moves anything.
    virtual void CaptionChanged() { this->Invalidate(); }

    // From Initialize: the look of a new control until InitProperties or a restore.
    void InitializeCaption()
    {
        set_fore_colour(syscolor::ButtonText);
        lblCAPTION.Font = DesignFont();
    }
    void InitProperties() override
    {
        step([&] { lblCAPTION.Font = CopyOfFont(this->Ambient().Font().get()); });
        CaptionChanged();
    }
    void ReadCaption(PropertyBag &bag)
    {
        ComPtr<IFontDisp> ambient = this->Ambient().Font();
        step([&] { lblCAPTION.Font = bag.read_font(L"FONT", ambient.get()); });
        step([&] { set_fore_colour(bag.read_color(L"FORECOLOR", syscolor::ButtonText)); });
        step([&] { this->SetBackColor(bag.read_color(L"BACKCOLOR", syscolor::ButtonFace)); });
        step([&] { lblCAPTION.Alignment = known_alignment(bag.read_int(L"ALIGNMENT", default_alignment_)); });
        step([&] { lblCAPTION.Caption = bag.read_string(L"CAPTION", L""); });
        CaptionChanged();
    }
    void WriteCaption(PropertyBag &bag)
    {
        step([&] { bag.write_int(L"ALIGNMENT", lblCAPTION.Alignment, default_alignment_); });
        step([&] { bag.write_string(L"CAPTION", lblCAPTION.Caption, std::wstring()); });
        step([&] { bag.write_color(L"FORECOLOR", this->ForeColor(), syscolor::ButtonText); });
        step([&] { bag.write_color(L"BACKCOLOR", this->BackColor(), syscolor::ButtonFace); });
        ComPtr<IFontDisp> ambient = this->Ambient().Font();
        step([&] { bag.write_font(L"FONT", lblCAPTION.Font.get(), ambient.get()); });
    }

    void Click() override { this->raise(events::Click); }
    void DblClick() override { this->raise(events::DblClick); }
    void MouseDown(int16_t b, int16_t s, float x, float y) override { this->raise_mouse(events::MouseDown, b, s, x, y); }
    void MouseMove(int16_t b, int16_t s, float x, float y) override { this->raise_mouse(events::MouseMove, b, s, x, y); }
    void MouseUp(int16_t b, int16_t s, float x, float y) override { this->raise_mouse(events::MouseUp, b, s, x, y); }
    // Captions draw with mnemonics: "&Options" is named "Options", shortcut Alt+O.
    std::wstring Caption() override { return lblCAPTION.Caption; }
    // Decorations and containers: the focus goes to the controls around or inside them.
    bool CanGetFocus() const override { return false; }

    Label lblCAPTION;

private:
    static int16_t known_alignment(int32_t a)
    {
        if (a < Left_Justify || a > Centre) throw std::out_of_range("no such alignment");
        return static_cast<int16_t>(a);
    }
    void set_fore_colour(OleColor c)
    {
        this->SetForeColor(c);
        lblCAPTION.ForeColor = c;
        this->Invalidate();
    }
    HRESULT set_font(IFontDisp *v)
    {
        return this->put_value(L"FONT", [&] {
            lblCAPTION.Font = CopyOfFont(v);
            CaptionChanged();
        });
    }

    int16_t default_alignment_;
};

} // namespace tarn
