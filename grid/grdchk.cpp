#include "foundation/checked.h"
#include "grid/grdchk.h"

#include <stdexcept>

#include "foundation/color_translate.h"

namespace tarn {

const ControlClass grdchk::Class = {
    L"grdchk",
    L"Tarn Controls grid check box",
    &CLSID_grdchk,
    &IID_Igrdchk,
    &DIID_IgrdchkEvents,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST,
    &grdchk::Create,
    true, // one check box of its own: no file, no other window
};

namespace {

// The events in declaration order.
namespace ev {
constexpr DISPID Click = 1, KeyDown = 2, KeyPress = 3, KeyUp = 4, MouseDown = 5, MouseMove = 6, MouseUp = 7;
}

// The check box's own size: the box with a little room around it.
constexpr float kBoxWidth = 225, kBoxHeight = 240;
constexpr float kLeftOfCentre = 60;

VARIANT_BOOL vb(bool b) { return b ? VARIANT_TRUE : VARIANT_FALSE; }

} // namespace

grdchk::grdchk() : chkBOX(L"chkBOX", 0, 0, kBoxWidth, kBoxHeight)
{
    add_constituent(chkBOX);
    SetFocusConstituent(&chkBOX);
    chkBOX.on_click = [this] { raise(ev::Click); };
    chkBOX.on_key_down = [this](int16_t &code, int16_t shift) { raise(ev::KeyDown, EventArgs().ref(code).val(shift)); };
    chkBOX.on_key_press = [this](int16_t &ascii) { raise(ev::KeyPress, EventArgs().ref(ascii)); };
    chkBOX.on_key_up = [this](int16_t &code, int16_t shift) { raise(ev::KeyUp, EventArgs().ref(code).val(shift)); };
    chkBOX.on_mouse_down = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(ev::MouseDown, b, s, x, y); };
    chkBOX.on_mouse_move = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(ev::MouseMove, b, s, x, y); };
    chkBOX.on_mouse_up = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(ev::MouseUp, b, s, x, y); };
}

void grdchk::Initialize()
{
    SetDesignSize(495, 255);
    step([&] { apply_back_color(syscolor::ButtonFace); });
}

// ---------------------------------------------------------------- persistence

void grdchk::InitProperties()
{
    step([&] { apply_back_color(syscolor::ButtonFace); });
    step([&] { chkBOX.SetValue(0); });
    step([&] { chkBOX.SetEnabled(true); });
}

void grdchk::ReadProperties(PropertyBag &bag)
{
    step([&] { chkBOX.SetEnabled(bag.read_bool(L"ENABLED", true)); });
    step([&] { chkBOX.SetValue(bag.read_int(L"VALUE", 0)); });
    step([&] { chkBOX.SetValue(bag.read_int(L"Value", 0)); });
    step([&] { apply_back_color(bag.read_color(L"BackColor", syscolor::ButtonFace)); });
}

void grdchk::WriteProperties(PropertyBag &bag)
{
    // Every key is stored, defaults included: a grid reading a saved cell finds all four.
    step([&] { bag.write_bool(L"ENABLED", chkBOX.Enabled()); });
    step([&] { bag.write_int(L"VALUE", chkBOX.Value()); });
    step([&] { bag.write_int(L"Value", chkBOX.Value()); });
    step([&] { bag.write_color(L"BackColor", chkBOX.BackColor()); });
}

// ---------------------------------------------------------------- layout

void grdchk::Resize()
{
    // A little left of the centre; a cell narrower than the box puts it partly outside.
    step([&] { chkBOX.SetLeft((ScaleWidth() - chkBOX.Width() - kLeftOfCentre) * 0.5f); });
}

// ---------------------------------------------------------------- properties

void grdchk::apply_back_color(OleColor color)
{
    if (TranslateColor(color) == kInvalidColor) throw std::invalid_argument("not a colour");
    chkBOX.SetBackColor(color);
    SetBackColor(color);
}

STDMETHODIMP grdchk::get_BACKCOLOR(OLE_COLOR *v) { return get_value(v, [&] { return chkBOX.BackColor(); }); }
STDMETHODIMP grdchk::put_BACKCOLOR(OLE_COLOR v)
{
    return put_value(L"BackColor", [&] { apply_back_color(v); });
}

STDMETHODIMP grdchk::get_Enabled(VARIANT_BOOL *v) { return get_value(v, [&] { return vb(chkBOX.Enabled()); }); }
STDMETHODIMP grdchk::put_Enabled(VARIANT_BOOL v)
{
    return put_value(L"ENABLED", [&] { chkBOX.SetEnabled(v != VARIANT_FALSE); });
}

STDMETHODIMP grdchk::get_Value(CheckValues *v) { return get_value(v, [&] { return static_cast<CheckValues>(chkBOX.Value()); }); }
STDMETHODIMP grdchk::put_Value(CheckValues v)
{
    if (!fits16(v)) return S_OK; // kept in 16 bits: a wider value is skipped
    return put_value(L"Value", [&] { chkBOX.SetValue(static_cast<int16_t>(static_cast<int32_t>(v))); });
}

long grdchk::AccessibleState()
{
    long s = UserControl::AccessibleState();
    int16_t v = read_step<int16_t>([&] { return chkBOX.Value(); });
    if (v == 1) s |= STATE_SYSTEM_CHECKED;
    else if (v == 2) s |= STATE_SYSTEM_MIXED;
    return s;
}

} // namespace tarn
