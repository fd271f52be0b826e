#include "buttons/cbtnddp.h"

#include <string>

namespace tarn {

const ControlClass cbtnddp::Class = {
    L"cbtnddp",
    L"Tarn Controls colour button",
    &CLSID_cbtnddp,
    &IID_Icbtnddp,
    &DIID_IcbtnddpEvents,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_ACTSLIKEBUTTON,
    &cbtnddp::Create,
    true, // its pop-up is a window of its own, owned by the form; it touches no file and no other window
};

namespace {

// The colour button's events beyond the button's.
constexpr DISPID kChange = 11, kChangeActiveCol = 12, kChangeSelectedCol = 13, kFocusHidden = 14, kMoreClick = 15,
                 kPopUp = 16;
constexpr DISPID kPaletteId = 15;
// The pop-up panel's colours when the saved form holds none (the first reads of the keys).
constexpr OleColor kPanelBack = syscolor::Window;
// The face's fore colour when the saved form holds none (the second read of "FORECOLOR").
constexpr OleColor kFaceFore = syscolor::ButtonText;

} // namespace

cbtnddp::cbtnddp() : popup_(static_cast<ColourPopupSink &>(*this))
{
    face_.bar_on = true;
    fill_ = GetSysColor(COLOR_WINDOW);
    popup_fore_ = GetSysColor(COLOR_BTNTEXT);
    popup_colours();
}

// ---------------------------------------------------------------- persistence

void cbtnddp::InitProperties()
{
    ButtonControl::InitProperties();
    step([&] { popup_.SetPalette(kDefaultPalette); });
    palette_ = kDefaultPalette;
    popup_enabled_ = true;
    set_selected(0);
    face_.bar_on = true;
    fill_ = GetSysColor(COLOR_WINDOW);
    popup_back_ = kPanelBack;
    popup_fore_ = GetSysColor(COLOR_BTNTEXT);
    popup_colours();
}

void cbtnddp::ReadProperties(PropertyBag &bag)
{
    read_face_keys(bag);
    // Each colour read twice with different defaults: the first for the pop-up's panel, the
    // second for the face. Only a saved value gives both the same colour.
    step([&] { popup_back_ = bag.read_color(L"BACKCOLOR", kPanelBack); });
    step([&] { face_.back = bag.read_color(L"BACKCOLOR", GetSysColor(COLOR_BTNFACE)); });
    step([&] { SetBackColor(face_.back); });
    step([&] { popup_fore_ = bag.read_color(L"FORECOLOR", GetSysColor(COLOR_BTNTEXT)); });
    step([&] { face_.fore = bag.read_color(L"FORECOLOR", kFaceFore); });
    step([&] { face_.picBOXdis.Picture = bag.read_picture(L"PICTUREDISABLED", nullptr); });
    read_mouse_keys(bag);
    step([&] {
        int32_t n = bag.read_long(L"Palette", kDefaultPalette);
        popup_.SetPalette(n); // a number outside 0 to 11 is refused: the palette stays
        palette_ = n;
    });
    step([&] { popup_enabled_ = bag.read_bool(L"POPUPENABLED", true); });
    step([&] { set_selected(bag.read_color(L"SELECTEDCOLOR", 0)); });
    step([&] { face_.bar_on = bag.read_bool(L"ShowButtonCLR", true); });
    step([&] { fill_ = bag.read_color(L"FILLCOLOR", GetSysColor(COLOR_WINDOW)); });
    step([&] { popup_colours(); });
}

void cbtnddp::WriteProperties(PropertyBag &bag)
{
    step([&] { bag.write_color(L"MASKHLIGHT", face_.mask, syscolor::ButtonFace); });
    step([&] { bag.write_picture(L"PICTURE", face_.picBOX.Picture.get(), true); });
    step([&] { bag.write_picture(L"PICTUREDISABLED", face_.picBOXdis.Picture.get(), true); });
    step([&] { bag.write_int(L"BUTTONTYPE", face_.type, btype::Button); });
    step([&] { bag.write_string(L"TOOLTIP", tooltip_, std::wstring()); });
    step([&] { bag.write_string(L"TEXT", face_.caption, std::wstring(kDefaultCaption)); });
    step([&] { bag.write_bool(L"ENABLED", face_.enabled, true); });
    step([&] { bag.write_bool(L"BACKCOLORCUST", face_.back_custom, false); });
    step([&] { bag.write_font(L"FONT", face_.font.get()); });
    step([&] { bag.write_bool(L"FOCUSRECT", face_.focus_rect, true); });
    step([&] { bag.write_bool(L"SHOWPICTURE", face_.picture_visible, false); });
    // The face's colours, against the face's defaults (the second reads).
    step([&] { bag.write_color(L"BACKCOLOR", face_.back, GetSysColor(COLOR_BTNFACE)); });
    step([&] { bag.write_color(L"FORECOLOR", face_.fore, kFaceFore); });
    step([&] { bag.write_picture(L"MouseIcon", face_.mouse_icon.get(), true); });
    step([&] { bag.write_int(L"MousePointer", face_.mouse_pointer, 0); });
    step([&] { bag.write_long(L"Palette", palette_, kDefaultPalette); });
    step([&] { bag.write_bool(L"POPUPENABLED", popup_enabled_, true); });
    step([&] { bag.write_color(L"SELECTEDCOLOR", selected_, 0); });
    step([&] { bag.write_bool(L"ShowButtonCLR", face_.bar_on, true); });
    step([&] { bag.write_color(L"FILLCOLOR", fill_, GetSysColor(COLOR_WINDOW)); });
}

void cbtnddp::Terminate()
{
    ButtonControl::Terminate();
    step([&] { popup_.Hide(); });
}

// ---------------------------------------------------------------- the pop-up

void cbtnddp::popup_colours() { popup_.SetColours(popup_back_, fill_, popup_fore_); }

void cbtnddp::show_popup()
{
    HWND w = hWnd();
    if (!popup_enabled_ || !w || popup_.IsOpen()) return;
    popup_colours();
    popup_.SetSelectedColour(selected_);
    popup_.SetDocColour(doc_);
    step([&] {
        // The caption's font, in the pop-up's own size.
        ComPtr<IFont> f = face_.font.as<IFont>(IID_IFont);
        HFONT h = nullptr;
        LOGFONTW lf{};
        if (f && SUCCEEDED(f->get_hFont(&h)) && h && GetObjectW(h, sizeof lf, &lf)) popup_.SetFont(lf);
    });
    RECT at{};
    GetWindowRect(w, &at);
    if (popup_.Show(w, at)) raise(kPopUp);
}

void cbtnddp::Clicked() { step([&] { show_popup(); }); }

void cbtnddp::KeyDown(int16_t &code, int16_t shift)
{
    // An open pop-up has the keys after KeyDown; what it uses goes no further (the arrows would
    // move the focus, and a Space taken by it must not click the button open again on its way up).
    keys_.KeyDown(code, shift, [&](int16_t k) {
        return popup_.IsOpen() && read_step<bool>([&] { return popup_.Key(static_cast<UINT>(static_cast<uint16_t>(k))); });
    });
}

void cbtnddp::LostFocus()
{
    step([&] { popup_.FocusLost(); });
    ButtonControl::LostFocus();
}

void cbtnddp::ActiveChanged(OleColor colour, const std::wstring &name)
{
    active_colour_ = colour;
    active_text_ = name;
    step([&] { PropertyChanged(L"ACTIVECOLOR"); });
    step([&] { PropertyChanged(L"ACTIVETEXT"); });
    raise(kChangeActiveCol);
}

void cbtnddp::Closed(PopupClose why)
{
    if (why == PopupClose::FocusLost) raise(kFocusHidden);
}

void cbtnddp::ColourChosen(OleColor colour)
{
    set_selected(colour);
    step([&] { PropertyChanged(L"SELECTEDCOLOR"); });
    raise(kChangeSelectedCol);
    raise(kChange);
}

void cbtnddp::MoreChosen() { raise(kMoreClick); }

void cbtnddp::set_selected(OleColor colour)
{
    selected_ = colour;
    face_.bar_colour = colour;
    popup_.SetSelectedColour(colour);
    Invalidate();
}

std::vector<NamedValue> cbtnddp::PropertyValueNames(DISPID id)
{
    std::vector<NamedValue> names;
    if (id != kPaletteId) return names;
    for (int32_t i = 0; i < kPaletteCount; ++i)
        names.push_back({std::to_wstring(i) + L" - " + PaletteName(i), Variant::of_i4(i)});
    return names;
}

// ---------------------------------------------------------------- properties

STDMETHODIMP cbtnddp::put_BACKCOLOR(OLE_COLOR v)
{
    // The face and the panel alike, as a saved value restores them.
    HRESULT hr = ButtonControl::put_BACKCOLOR(v);
    if (face_.back == v) {
        popup_back_ = v;
        step([&] { popup_colours(); });
    }
    return hr;
}

STDMETHODIMP cbtnddp::put_ForeColor(OLE_COLOR v)
{
    HRESULT hr = ButtonControl::put_ForeColor(v);
    if (face_.fore == v) {
        popup_fore_ = v;
        step([&] { popup_colours(); });
    }
    return hr;
}

STDMETHODIMP cbtnddp::get_Palette(long *v) { return get_value(v, [&] { return static_cast<long>(palette_); }); }
STDMETHODIMP cbtnddp::put_Palette(long v)
{
    return put_value(L"Palette", [&] {
        popup_.SetPalette(v); // 0 to 11; another number is a failed step and changes nothing
        palette_ = v;
    });
}

STDMETHODIMP cbtnddp::get_PopupEnabled(VARIANT_BOOL *v) { return get_value(v, [&] { return vbool(popup_enabled_); }); }
STDMETHODIMP cbtnddp::put_PopupEnabled(VARIANT_BOOL v)
{
    return put_value(L"POPUPENABLED", [&] {
        popup_enabled_ = is_true(v);
        if (!popup_enabled_) popup_.Hide();
    });
}

STDMETHODIMP cbtnddp::get_SelectedColor(OLE_COLOR *v) { return get_value(v, [&] { return OLE_COLOR(selected_); }); }
STDMETHODIMP cbtnddp::put_SelectedColor(OLE_COLOR v)
{
    return put_value(L"SELECTEDCOLOR", [&] { set_selected(v); });
}

STDMETHODIMP cbtnddp::get_ShowButtonColor(VARIANT_BOOL *v) { return get_value(v, [&] { return vbool(face_.bar_on); }); }
STDMETHODIMP cbtnddp::put_ShowButtonColor(VARIANT_BOOL v)
{
    return put_value(L"ShowButtonCLR", [&] {
        face_.bar_on = is_true(v);
        step([&] { layout(); });
        Invalidate();
    });
}

STDMETHODIMP cbtnddp::get_FillColor(OLE_COLOR *v) { return get_value(v, [&] { return OLE_COLOR(fill_); }); }
STDMETHODIMP cbtnddp::put_FillColor(OLE_COLOR v)
{
    return put_value(L"FILLCOLOR", [&] {
        fill_ = v;
        popup_colours();
    });
}

STDMETHODIMP cbtnddp::get_ActiveColor(OLE_COLOR *v) { return get_value(v, [&] { return OLE_COLOR(active_colour_); }); }
STDMETHODIMP cbtnddp::get_ActiveText(BSTR *v) { return get_string(v, [&] { return active_text_; }); }

STDMETHODIMP cbtnddp::get_DocColor(OLE_COLOR *v) { return get_value(v, [&] { return OLE_COLOR(doc_); }); }
STDMETHODIMP cbtnddp::put_DocColor(OLE_COLOR v)
{
    // Not saved: the document's colour of the moment.
    doc_ = v;
    step([&] { popup_.SetDocColour(v); });
    return S_OK;
}

STDMETHODIMP cbtnddp::ShowPopUp()
{
    step([&] { show_popup(); });
    return S_OK;
}

STDMETHODIMP cbtnddp::HidePopUp()
{
    step([&] { popup_.Hide(); });
    return S_OK;
}

STDMETHODIMP cbtnddp::Refresh()
{
    step([&] { UserControl::Refresh(); });
    step([&] {
        if (HWND p = popup_.hwnd()) InvalidateRect(p, nullptr, FALSE);
    });
    return S_OK;
}

} // namespace tarn
