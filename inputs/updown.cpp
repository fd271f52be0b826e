#include "inputs/updown.h"

#include <stdexcept>

#include "foundation/checked.h"
#include "foundation/color_translate.h"
#include "foundation/themes.h"
#include "inputs/updown_layout.h"
#include "inputs/updown_text.h"

namespace tarn {

const ControlClass updown::Class = {
    L"updown",
    L"Tarn Controls numeric up-down box",
    &CLSID_updown,
    &IID_Iupdown,
    &DIID_IupdownEvents,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST,
    &updown::Create,
    true, // its own text box and arrows only: no file, no other window
};

namespace {

// The events in declaration order.
namespace ev {
constexpr DISPID Click = 1, Change = 2, DblClick = 3, KeyDown = 4, KeyPress = 5, KeyUp = 6, MouseDown = 7,
                 MouseMove = 8, MouseUp = 9, UpClick = 10, DownClick = 11;
}

constexpr int16_t kPageUp = 33, kUp = 38, kPageDown = 34, kDown = 40;
constexpr wchar_t kDefaultText[] = L"1";
constexpr int32_t kDefaultMax = 10;

VARIANT_BOOL vb(bool b) { return b ? VARIANT_TRUE : VARIANT_FALSE; }

} // namespace

updown::updown()
    : picframBOX(L"picframBOX", 0, 0, 1215, 315), lblBACK(L"lblBACK", 30, 30, 1155, 255),
      txtBORDER(L"txtBORDER", 0, 0, 1215, 315), txtUPDOWN(L"txtUPDOWN", 60, 15, 855, 285),
      udnCTRL(L"udnCTRL", 945, 30, 240, 255), cboHEIGHT(L"cboHEIGHT", 0, 0, 1215, 2000)
{
    add_constituent(lblBACK);
    add_constituent(picframBOX);
    add_constituent(txtBORDER);
    add_constituent(txtUPDOWN);
    add_constituent(udnCTRL);
    add_constituent(cboHEIGHT);
    SetFocusConstituent(&txtUPDOWN);

    txtUPDOWN.on_click = [this] { raise(ev::Click); };
    txtUPDOWN.on_change = [this] { raise(ev::Change); };
    txtUPDOWN.on_dbl_click = [this] { raise(ev::DblClick); };
    // Typing: through the key filter, then to the host, which may change the character further.
    txtUPDOWN.on_key_press = [this](int16_t &key_ascii) {
        step([&] { key_ascii = TypedKey(key_ascii, allow_dec_point_, txtUPDOWN.Text()); });
        raise(ev::KeyPress, EventArgs().ref(key_ascii));
    };
    // The key-down event steps the value; KeyDown and KeyUp are never raised.
    txtUPDOWN.on_key_down = [this](int16_t &key_code, int16_t) {
        if (key_code == kUp || key_code == kPageUp) step_value(true);
        else if (key_code == kDown || key_code == kPageDown) step_value(false);
    };
    txtUPDOWN.on_mouse_down = [this](int16_t b, int16_t s, float x, float y) {
        layout();
        raise_mouse(ev::MouseDown, b, s, x, y);
    };
    txtUPDOWN.on_mouse_move = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(ev::MouseMove, b, s, x, y); };
    txtUPDOWN.on_mouse_up = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(ev::MouseUp, b, s, x, y); };
    // Leaving the text box enforces the range in the text's own format.
    txtUPDOWN.on_lost_focus = [this] { clamp(decimals()); };
    // An arrow click steps, then the text box takes the focus (with its caret) again.
    udnCTRL.on_up_click = [this] {
        step_value(true);
        txtUPDOWN.SetFocus();
    };
    udnCTRL.on_down_click = [this] {
        step_value(false);
        txtUPDOWN.SetFocus();
    };
    udnCTRL.on_got_focus = [this] { txtUPDOWN.SetFocus(); };
}

void updown::Initialize()
{
    // The design a new box shows until it is initialised or restored.
    SetDesignSize(1215, 315);
    lblBACK.BackStyle = 1;
    lblBACK.BackColor = syscolor::Window;
    step([&] { picframBOX.SetBorderStyle(0); });
    step([&] { picframBOX.SetAppearance(0); });
    step([&] { picframBOX.SetBackColor(syscolor::Window); });
    // The border box is only a frame: it shows no caret and takes no input.
    step([&] { txtBORDER.SetLocked(true); });
    step([&] { txtBORDER.SetEnabled(false); });
    step([&] { txtUPDOWN.SetBorderStyle(0); });
    step([&] { txtUPDOWN.SetText(kDefaultText); });
    step([&] { udnCTRL.SetMax(kDefaultMax); });
    step([&] { cboHEIGHT.SetVisible(false); });
    layout();
}

// ---------------------------------------------------------------- persistence

void updown::InitProperties()
{
    interval_ = 1.0;
    allow_dec_point_ = false;
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { apply_font(ambient.get()); });
    layout();
}

void updown::ReadProperties(PropertyBag &bag)
{
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { apply_font(bag.read_font(L"Font", ambient.get()).get()); });
    step([&] { txtUPDOWN.SetForeColor(bag.read_color(L"ForeColor", syscolor::WindowText)); });
    step([&] { apply_enabled(bag.read_bool(L"Enabled", true), false); });
    step([&] { apply_back_color(bag.read_color(L"BackColor", syscolor::Window)); });
    step([&] { txtBORDER.SetBorderStyle(bag.read_int(L"BorderStyle", 1)); });
    step([&] { txtUPDOWN.SetAlignment(bag.read_int(L"Alignment", 0)); });
    step([&] { udnCTRL.SetArrowKeys(bag.read_bool(L"AllowArrowKeys", true)); });
    step([&] { udnCTRL.SetBuddyAlignment(bag.read_int(L"BuddyAlignment", 0)); });
    step([&] { udnCTRL.SetMax(bag.read_long(L"Max", kDefaultMax)); });
    step([&] { interval_ = bag.read_double(L"Interval", 1.0); });
    step([&] { allow_dec_point_ = bag.read_bool(L"AllowDecPoint", false); });
    step([&] { txtUPDOWN.SetMaxLength(bag.read_int(L"MaxLength", 0)); });
    step([&] { udnCTRL.SetMin(bag.read_long(L"Min", 0)); });
    step([&] { udnCTRL.SetSyncBuddy(bag.read_bool(L"SyncBuddy", false)); });
    step([&] { udnCTRL.SetThousandsSeparator(bag.read_bool(L"ThousandsSeparator", true)); });
    step([&] { txtUPDOWN.SetText(bag.read_string(L"Text", kDefaultText)); });
    layout();
}

void updown::WriteProperties(PropertyBag &bag)
{
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { bag.write_font(L"Font", txtUPDOWN.Font().get(), ambient.get()); });
    step([&] { bag.write_color(L"ForeColor", txtUPDOWN.ForeColor(), syscolor::WindowText); });
    step([&] { bag.write_bool(L"Enabled", udnCTRL.Enabled(), true); });
    step([&] { bag.write_color(L"BackColor", txtUPDOWN.BackColor(), syscolor::Window); });
    step([&] { bag.write_int(L"BorderStyle", txtBORDER.BorderStyle(), 1); });
    step([&] { bag.write_int(L"Alignment", txtUPDOWN.Alignment(), 0); });
    step([&] { bag.write_bool(L"AllowArrowKeys", udnCTRL.ArrowKeys(), true); });
    step([&] { bag.write_int(L"BuddyAlignment", udnCTRL.BuddyAlignment(), 0); });
    step([&] { bag.write_long(L"Max", udnCTRL.Max(), kDefaultMax); });
    step([&] { bag.write_double(L"Interval", interval_, 1.0); });
    step([&] { bag.write_bool(L"AllowDecPoint", allow_dec_point_, false); });
    step([&] { bag.write_int(L"MaxLength", checked<int16_t>(txtUPDOWN.MaxLength()), 0); });
    step([&] { bag.write_long(L"Min", udnCTRL.Min(), 0); });
    step([&] { bag.write_bool(L"SyncBuddy", udnCTRL.SyncBuddy(), false); });
    step([&] { bag.write_bool(L"ThousandsSeparator", udnCTRL.ThousandsSeparator(), true); });
    step([&] { bag.write_string(L"Text", txtUPDOWN.Text(), std::wstring(kDefaultText)); });
}

// ---------------------------------------------------------------- layout and behaviour

void updown::Resize() { layout(); }
void updown::Show() { layout(); }
void updown::AmbientChanged(DISPID) { layout(); }

void updown::layout()
{
    // The height of a one-line combo box in the box's font.
    step([&] {
        float height = UpdownHeight(cboHEIGHT.Height());
        if (height > 0) SetSizeTwips(ScaleWidth(), height);
    });
    bool themed = read_step<bool>([] { return WindowsVersionNumber() > 5.0; });
    UpdownGeometry g = UpdownLayout(ScaleWidth(), ScaleHeight(), themed, txtBORDER.BorderStyle());
    auto place = [](WindowedConstituent &c, const PartBox &b) { step([&] { c.Move(b.left, b.top, b.width, b.height); }); };
    place(picframBOX, g.background);
    step([&] { picframBOX.SetBorderStyle(g.background_border); });
    place(txtBORDER, g.border);
    step([&] { txtBORDER.SetVisible(g.border_shown); });
    lblBACK.Left = g.inner.left;
    lblBACK.Top = g.inner.top;
    lblBACK.Width = g.inner.width;
    lblBACK.Height = g.inner.height;
    place(txtUPDOWN, g.text);
    place(udnCTRL, g.arrows);
}

void updown::step_value(bool increase)
{
    raise(increase ? ev::DownClick : ev::UpClick);
    const int dec = decimals();
    step([&] { txtUPDOWN.SetText(SteppedText(txtUPDOWN.Text(), increase ? interval_ : -interval_, dec)); });
    step([&] {
        std::optional<std::wstring> bound = increase ? AboveMax(txtUPDOWN.Text(), udnCTRL.Max(), dec)
                                                     : BelowMin(txtUPDOWN.Text(), udnCTRL.Min(), dec);
        if (bound) txtUPDOWN.SetText(*bound);
    });
}

void updown::clamp(int dec)
{
    step([&] {
        if (std::optional<std::wstring> bound = AboveMax(txtUPDOWN.Text(), udnCTRL.Max(), dec))
            txtUPDOWN.SetText(*bound);
    });
    step([&] {
        if (std::optional<std::wstring> bound = BelowMin(txtUPDOWN.Text(), udnCTRL.Min(), dec))
            txtUPDOWN.SetText(*bound);
    });
}

void updown::LostFocus() { clamp(1); }

void updown::apply_back_color(OleColor color)
{
    if (TranslateColor(color) == kInvalidColor) throw std::invalid_argument("not a colour");
    step([&] { txtUPDOWN.SetBackColor(color); });
    lblBACK.BackColor = color;
    step([&] { txtBORDER.SetBackColor(color); });
    step([&] { picframBOX.SetBackColor(color); });
    Invalidate();
}

void updown::apply_enabled(bool enabled, bool announce)
{
    const OleColor color = enabled ? syscolor::Window : syscolor::ButtonFace;
    if (announce) put_BACKCOLOR(color);
    else step([&] { apply_back_color(color); });
    lblBACK.BackColor = color;
    step([&] { txtBORDER.SetBackColor(color); });
    step([&] { picframBOX.SetBackColor(color); });
    // Widening the border box and narrowing it again makes it draw its border anew.
    step([&] { txtBORDER.SetWidth(txtBORDER.Width() + 15); });
    step([&] { txtBORDER.SetWidth(txtBORDER.Width() - 15); });
    step([&] { udnCTRL.SetEnabled(enabled); });
    step([&] { txtUPDOWN.SetEnabled(enabled); });
    step([&] { cboHEIGHT.SetEnabled(enabled); });
    layout();
}

void updown::apply_font(IFontDisp *font)
{
    step([&] { txtUPDOWN.SetFont(font); });
    step([&] { cboHEIGHT.SetFont(font); });
}

HRESULT updown::set_font(IFontDisp *font)
{
    return put_value(L"Font", [&] {
        apply_font(font);
        layout();
    });
}

// ---------------------------------------------------------------- properties

STDMETHODIMP updown::get_Alignment(Alignments *v)
{
    return get_value(v, [&] { return static_cast<Alignments>(txtUPDOWN.Alignment()); });
}
STDMETHODIMP updown::put_Alignment(Alignments v)
{
    if (!fits16(v)) return S_OK; // kept in 16 bits: a wider value is skipped
    return put_value(L"Alignment", [&] { txtUPDOWN.SetAlignment(static_cast<int16_t>(static_cast<int32_t>(v))); });
}

STDMETHODIMP updown::get_AllowArrowKeys(VARIANT_BOOL *v) { return get_value(v, [&] { return vb(udnCTRL.ArrowKeys()); }); }
STDMETHODIMP updown::put_AllowArrowKeys(VARIANT_BOOL v)
{
    return put_value(L"AllowArrowKeys", [&] { udnCTRL.SetArrowKeys(v != VARIANT_FALSE); });
}

STDMETHODIMP updown::get_AllowDecPoint(VARIANT_BOOL *v) { return get_value(v, [&] { return vb(allow_dec_point_); }); }
STDMETHODIMP updown::put_AllowDecPoint(VARIANT_BOOL v)
{
    return put_value(L"AllowDecPoint", [&] { allow_dec_point_ = v != VARIANT_FALSE; });
}

STDMETHODIMP updown::get_BACKCOLOR(OLE_COLOR *v) { return get_value(v, [&] { return txtUPDOWN.BackColor(); }); }
STDMETHODIMP updown::put_BACKCOLOR(OLE_COLOR v)
{
    return put_value(L"BackColor", [&] { apply_back_color(v); });
}

STDMETHODIMP updown::get_BorderStyle(BorderStyles *v)
{
    return get_value(v, [&] { return static_cast<BorderStyles>(txtBORDER.BorderStyle()); });
}
STDMETHODIMP updown::put_BorderStyle(BorderStyles v)
{
    if (!fits16(v)) return S_OK; // kept in 16 bits: a wider value is skipped
    // How the border shows depends on the layout's branch: it runs again.
    return put_value(L"BorderStyle", [&] {
        step([&] { txtBORDER.SetBorderStyle(static_cast<int16_t>(static_cast<int32_t>(v))); });
        layout();
    });
}

STDMETHODIMP updown::get_BuddyAlignment(BuddyAlignments *v)
{
    return get_value(v, [&] { return static_cast<BuddyAlignments>(udnCTRL.BuddyAlignment()); });
}
STDMETHODIMP updown::put_BuddyAlignment(BuddyAlignments v)
{
    if (!fits16(v)) return S_OK; // kept in 16 bits: a wider value is skipped
    return put_value(L"BuddyAlignment", [&] { udnCTRL.SetBuddyAlignment(static_cast<int16_t>(static_cast<int32_t>(v))); });
}

STDMETHODIMP updown::get_Enabled(VARIANT_BOOL *v) { return get_value(v, [&] { return vb(udnCTRL.Enabled()); }); }
STDMETHODIMP updown::put_Enabled(VARIANT_BOOL v)
{
    return put_value(L"Enabled", [&] { apply_enabled(v != VARIANT_FALSE, true); });
}

STDMETHODIMP updown::get_Font(IFontDisp **v) { return get_object(v, [&] { return txtUPDOWN.Font(); }); }
STDMETHODIMP updown::put_Font(IFontDisp *v) { return set_font(v); }
STDMETHODIMP updown::putref_Font(IFontDisp *v) { return set_font(v); }

STDMETHODIMP updown::get_ForeColor(OLE_COLOR *v) { return get_value(v, [&] { return txtUPDOWN.ForeColor(); }); }
STDMETHODIMP updown::put_ForeColor(OLE_COLOR v)
{
    return put_value(L"ForeColor", [&] { txtUPDOWN.SetForeColor(v); });
}

STDMETHODIMP updown::get_Interval(double *v) { return get_value(v, [&] { return interval_; }); }
STDMETHODIMP updown::put_Interval(double v)
{
    return put_value(L"Interval", [&] { interval_ = v; });
}

STDMETHODIMP updown::get_Max(long *v) { return get_value(v, [&] { return static_cast<long>(udnCTRL.Max()); }); }
STDMETHODIMP updown::put_Max(long v)
{
    return put_value(L"Max", [&] { udnCTRL.SetMax(v); });
}

STDMETHODIMP updown::get_MaxLength(short *v)
{
    return get_value(v, [&] { return checked<int16_t>(txtUPDOWN.MaxLength()); });
}
STDMETHODIMP updown::put_MaxLength(short v)
{
    return put_value(L"MaxLength", [&] { txtUPDOWN.SetMaxLength(v); });
}

STDMETHODIMP updown::get_Min(long *v) { return get_value(v, [&] { return static_cast<long>(udnCTRL.Min()); }); }
STDMETHODIMP updown::put_Min(long v)
{
    return put_value(L"Min", [&] { udnCTRL.SetMin(v); });
}

STDMETHODIMP updown::get_SyncBuddy(VARIANT_BOOL *v) { return get_value(v, [&] { return vb(udnCTRL.SyncBuddy()); }); }
STDMETHODIMP updown::put_SyncBuddy(VARIANT_BOOL v)
{
    return put_value(L"SyncBuddy", [&] { udnCTRL.SetSyncBuddy(v != VARIANT_FALSE); });
}

STDMETHODIMP updown::get_Text(BSTR *v) { return get_string(v, [&] { return txtUPDOWN.Text(); }); }
STDMETHODIMP updown::put_Text(BSTR v)
{
    return put_value(L"Text", [&] { txtUPDOWN.SetText(from_bstr(v)); });
}

STDMETHODIMP updown::get_ThousandsSeparator(VARIANT_BOOL *v)
{
    return get_value(v, [&] { return vb(udnCTRL.ThousandsSeparator()); });
}
STDMETHODIMP updown::put_ThousandsSeparator(VARIANT_BOOL v)
{
    return put_value(L"ThousandsSeparator", [&] { udnCTRL.SetThousandsSeparator(v != VARIANT_FALSE); });
}

// ---------------------------------------------------------------- methods

STDMETHODIMP updown::Refresh()
{
    layout();
    step([&] { udnCTRL.Refresh(); });
    return S_OK;
}

STDMETHODIMP updown::RefreshFont()
{
    step([&] { cboHEIGHT.SetFont(txtUPDOWN.Font().get()); });
    layout();
    return S_OK;
}

STDMETHODIMP updown::DecimalPointCheck(BSTR number, short *result)
{
    return get_value(result, [&] { return tarn::DecimalPointCheck(from_bstr(number)); });
}

STDMETHODIMP updown::KeyLock(short key_ascii, VARIANT_BOOL extra_check, BSTR extra_text, unsigned char *result)
{
    return get_value(result, [&] { return tarn::KeyLock(key_ascii, extra_check != VARIANT_FALSE, from_bstr(extra_text)); });
}

STDMETHODIMP updown::ShiftColor(OLE_COLOR color, long value, VARIANT_BOOL is_xp, OLE_COLOR *result)
{
    return get_value(result, [&] {
        return static_cast<OLE_COLOR>(tarn::ShiftColor(static_cast<int32_t>(color), value, is_xp != VARIANT_FALSE));
    });
}

} // namespace tarn
