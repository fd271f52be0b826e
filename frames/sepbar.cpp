#include "frames/sepbar.h"

#include "foundation/strings.h"
#include "foundation/themes.h"
#include "runtime/property_values.h"

namespace tarn {

const ControlClass sepbar::Class = {
    L"sepbar",
    L"Tarn Controls separator bar",
    &CLSID_sepbar,
    &IID_Isepbar,
    nullptr,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_NOUIACTIVATE,
    &sepbar::Create,
    true, // draws itself, touches no file and no other window
};

namespace {
constexpr wchar_t kDesignCaption[] = L"TEXT SEPARATOR"; // framMAIN's design caption and the save default
constexpr wchar_t kTitleEnd[] = L"  ";
} // namespace

// Design places (twips): the spacer is the first 120 twips of the line; framMAIN starts there
// with its title at once and runs past any width a bar is given. Both are collapsed to a line
// (no height), so their sides and bottoms never show.
sepbar::sepbar()
    : framLEFTSPACER(L"framLEFTSPACER", 0, 0, 120, 0), framMAIN(L"framMAIN", 120, 0, 60000, 0)
{
    framMAIN.CaptionIndent = 0;
    add_constituent(framLEFTSPACER);
    add_constituent(framMAIN);
}

void sepbar::Initialize()
{
    SetDesignSize(3000, 255);
    framMAIN.Caption = kDesignCaption;
    use_font(DesignFont());
    bool themed = ThemedLook();
    framLEFTSPACER.Themed = framMAIN.Themed = themed;
}

void sepbar::use_font(const ComPtr<IFontDisp> &font)
{
    font_ = font;
    framMAIN.Font = font;
    framLEFTSPACER.Font = font;
    Invalidate();
}

// ---------------------------------------------------------------- persistence

void sepbar::ReadProperties(PropertyBag &bag)
{
    step([&] { use_font(bag.read_font(L"FONT", font_.get())); });
    // Restored as it stands: neither trimmed nor given its two blanks.
    step([&] { framMAIN.Caption = bag.read_string(L"CAPTION", L""); });
    step([&] {
        SetBackColor(bag.read_color(L"BACKCOLOR", syscolor::ButtonFace));
        framLEFTSPACER.BackColor = BackColor();
        framMAIN.BackColor = BackColor();
    });
}

void sepbar::WriteProperties(PropertyBag &bag)
{
    step([&] { bag.write_string(L"CAPTION", framMAIN.Caption, std::wstring(kDesignCaption)); });
    step([&] { bag.write_color(L"BACKCOLOR", BackColor(), syscolor::ButtonFace); });
    step([&] { bag.write_font(L"FONT", font_.get()); });
}

// The title as a screen reader reads it, without the blanks that end it.
std::wstring sepbar::Caption() { return Trim(framMAIN.Caption); }

// ---------------------------------------------------------------- properties

STDMETHODIMP sepbar::get_BACKCOLOR(OLE_COLOR *v) { return get_value(v, [&] { return BackColor(); }); }
STDMETHODIMP sepbar::put_BACKCOLOR(OLE_COLOR v)
{
    return put_value(L"BACKCOLOR", [&] {
        RequireColour(v);
        SetBackColor(v);
        framLEFTSPACER.BackColor = v;
        framMAIN.BackColor = v;
    });
}

STDMETHODIMP sepbar::get_CAPTION(BSTR *v) { return get_string(v, [&] { return Trim(framMAIN.Caption) + kTitleEnd; }); }
STDMETHODIMP sepbar::put_CAPTION(BSTR v)
{
    return put_value(L"CAPTION", [&] {
        framMAIN.Caption = Trim(from_bstr(v)) + kTitleEnd;
        Invalidate();
        AccessibleChanged(EVENT_OBJECT_NAMECHANGE);
        ControlInfoChanged();
    });
}

STDMETHODIMP sepbar::get_Font(IFontDisp **v) { return get_object(v, [&] { return font_; }); }
STDMETHODIMP sepbar::put_Font(IFontDisp *v) { return set_font(v); }
STDMETHODIMP sepbar::putref_Font(IFontDisp *v) { return set_font(v); }
HRESULT sepbar::set_font(IFontDisp *v)
{
    return put_value(L"FONT", [&] { use_font(CopyOfFont(v)); });
}

} // namespace tarn
