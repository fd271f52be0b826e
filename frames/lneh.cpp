#include "frames/lneh.h"

#include <stdexcept>

#include "foundation/color_translate.h"
#include "foundation/font_object.h"
#include "foundation/handles.h"
#include "frames/lneh_layout.h"

namespace tarn {

const ControlClass lneh::Class = {
    L"lneh",
    L"Tarn Controls horizontal line with a caption",
    &CLSID_lneh,
    &IID_Ilneh,
    &DIID_IlnehEvents,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_NOUIACTIVATE,
    &lneh::Create,
};

namespace {
constexpr float kGap = 60; // twips between the caption and the line

// The caption's width and the font's line height on the screen, pixels.
SIZE measure(const Label &label)
{
    window_dc screen(nullptr);
    if (!screen.get()) return {0, 0};
    HFONT hfont = nullptr;
    if (ComPtr<IFont> font = label.Font.as<IFont>(IID_IFont)) font->get_hFont(&hfont);
    select_guard use(screen.get(), hfont);
    TEXTMETRICW tm{};
    GetTextMetricsW(screen.get(), &tm);
    int width = 0;
    if (!label.Caption.empty()) {
        RECT r{0, 0, 0, 0};
        DrawTextW(screen.get(), label.Caption.c_str(), static_cast<int>(label.Caption.size()), &r,
                  DT_SINGLELINE | DT_CALCRECT | DT_EXPANDTABS);
        width = r.right - r.left;
    }
    return {width, tm.tmHeight};
}

void place_line(Line &dark, Line &light, const Span &span, int row, const Scale &s)
{
    bool shown = !span.empty();
    for (Line *l : {&dark, &light}) {
        l->Visible = shown;
        l->X1 = to_twips_x(span.from, s);
        l->X2 = to_twips_x(span.to, s);
    }
    dark.Y1 = dark.Y2 = to_twips_y(row, s);
    light.Y1 = light.Y2 = to_twips_y(row + 1, s);
}
} // namespace

lneh::lneh()
    : lblCAPTION(L"lblCAPTION", 0, 0, 0, 0), lneLEFTSHADOW(L"lneLEFTSHADOW", 0, 0, 0, 0),
      lneLEFTHIGHLIGHT(L"lneLEFTHIGHLIGHT", 0, 0, 0, 0), lneRIGHTSHADOW(L"lneRIGHTSHADOW", 0, 0, 0, 0),
      lneRIGHTHIGHLIGHT(L"lneRIGHTHIGHLIGHT", 0, 0, 0, 0),
      described_(ROLE_SYSTEM_SEPARATOR, [this] { return lblCAPTION.Caption; })
{
    for (Line *l : {&lneLEFTSHADOW, &lneLEFTHIGHLIGHT, &lneRIGHTSHADOW, &lneRIGHTHIGHLIGHT}) add_constituent(*l);
    add_constituent(lblCAPTION);
    // The caption's own mouse events are the line's, with its coordinates; its double click
    // raises nothing.
    lblCAPTION.on_click = [this] { raise(events::Click); };
    lblCAPTION.on_mouse_down = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseDown, b, s, x, y); };
    lblCAPTION.on_mouse_move = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseMove, b, s, x, y); };
    lblCAPTION.on_mouse_up = [this](int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseUp, b, s, x, y); };
}

void lneh::Initialize()
{
    SetDesignSize(3000, 255);
    SetForeColor(syscolor::ButtonText);
    lblCAPTION.ForeColor = syscolor::ButtonText;
    FontSpec design;
    design.name = L"Tahoma";
    design.size = 8.25;
    lblCAPTION.Font = ComPtr<IFontDisp>::attach(CreateFontObject(design));
    Resize();
}

void lneh::InitProperties()
{
    step([&] { lblCAPTION.Font = ComPtr<IFontDisp>::attach(CloneFontObject(Ambient().Font().get())); });
    step([&] { lblCAPTION.Caption = Ambient().DisplayName(); });
    relayout();
}

// ---------------------------------------------------------------- persistence

void lneh::ReadProperties(PropertyBag &bag)
{
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { lblCAPTION.Font = bag.read_font(L"FONT", ambient.get()); });
    step([&] {
        SetForeColor(bag.read_color(L"FORECOLOR", syscolor::ButtonText));
        lblCAPTION.ForeColor = ForeColor();
    });
    step([&] { SetBackColor(bag.read_color(L"BACKCOLOR", syscolor::ButtonFace)); });
    step([&] {
        int16_t a = bag.read_int(L"ALIGNMENT", 0);
        if (a >= 0 && a <= 2) lblCAPTION.Alignment = a;
    });
    step([&] { lblCAPTION.Caption = bag.read_string(L"CAPTION", L""); });
    relayout();
}

void lneh::WriteProperties(PropertyBag &bag)
{
    step([&] { bag.write_int(L"ALIGNMENT", lblCAPTION.Alignment, 0); });
    step([&] { bag.write_string(L"CAPTION", lblCAPTION.Caption, std::wstring()); });
    step([&] { bag.write_color(L"FORECOLOR", ForeColor(), syscolor::ButtonText); });
    step([&] { bag.write_color(L"BACKCOLOR", BackColor(), syscolor::ButtonFace); });
    ComPtr<IFontDisp> ambient = Ambient().Font();
    step([&] { bag.write_font(L"FONT", lblCAPTION.Font.get(), ambient.get()); });
}

// ---------------------------------------------------------------- layout and events

void lneh::Resize()
{
    Scale s = scale();
    SIZE text = read_step<SIZE>([&] { return measure(lblCAPTION); });
    CaptionLineLayout l = LayOutCaptionLine(PixelWidth(), text.cx, text.cy, lblCAPTION.Alignment,
                                            to_px_x(kGap, s));
    // The label gets a pixel more than its text, so the text never wraps; the caption is one line.
    lblCAPTION.Visible = !l.caption.empty();
    lblCAPTION.Left = to_twips_x(l.caption.from, s);
    lblCAPTION.Width = to_twips_x(l.caption.to - l.caption.from + 1, s);
    lblCAPTION.Top = 0;
    lblCAPTION.Height = to_twips_y(text.cy, s);
    place_line(lneLEFTSHADOW, lneLEFTHIGHLIGHT, l.left, l.dark_row, s);
    place_line(lneRIGHTSHADOW, lneRIGHTHIGHLIGHT, l.right, l.dark_row, s);
    ColourDividerLines(lneLEFTSHADOW, lneLEFTHIGHLIGHT);
    ColourDividerLines(lneRIGHTSHADOW, lneRIGHTHIGHLIGHT);
}

void lneh::relayout()
{
    step([&] { Resize(); });
    Invalidate();
}

void lneh::Click() { raise(events::Click); }
void lneh::DblClick() { raise(events::DblClick); }
void lneh::MouseDown(int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseDown, b, s, x, y); }
void lneh::MouseMove(int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseMove, b, s, x, y); }
void lneh::MouseUp(int16_t b, int16_t s, float x, float y) { raise_mouse(events::MouseUp, b, s, x, y); }

LRESULT lneh::OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled)
{
    handled = false;
    if (msg == WM_GETOBJECT) return described_.answer(hWnd(), wp, lp, handled);
    return 0;
}

// ---------------------------------------------------------------- properties

STDMETHODIMP lneh::get_Alignment(enum CaptionAlignments *v)
{
    return get_value(v, [&] { return static_cast<enum CaptionAlignments>(lblCAPTION.Alignment); });
}
STDMETHODIMP lneh::put_Alignment(enum CaptionAlignments v)
{
    return put_value(L"ALIGNMENT", [&] {
        if (v < captionLeft || v > captionCentre) throw std::out_of_range("no such alignment");
        lblCAPTION.Alignment = static_cast<int16_t>(v);
        relayout();
    });
}

STDMETHODIMP lneh::get_BACKCOLOR(OLE_COLOR *v) { return get_value(v, [&] { return BackColor(); }); }
STDMETHODIMP lneh::put_BACKCOLOR(OLE_COLOR v)
{
    return put_value(L"BACKCOLOR", [&] {
        if (TranslateColor(v) == kInvalidColor) throw std::invalid_argument("not a colour");
        SetBackColor(v);
    });
}

STDMETHODIMP lneh::get_CAPTION(BSTR *v) { return get_string(v, [&] { return lblCAPTION.Caption; }); }
STDMETHODIMP lneh::put_CAPTION(BSTR v)
{
    return put_value(L"CAPTION", [&] {
        lblCAPTION.Caption = from_bstr(v);
        relayout();
    });
}

STDMETHODIMP lneh::get_Font(IFontDisp **v) { return get_object(v, [&] { return lblCAPTION.Font; }); }
STDMETHODIMP lneh::put_Font(IFontDisp *v) { return set_font(v); }
STDMETHODIMP lneh::putref_Font(IFontDisp *v) { return set_font(v); }
HRESULT lneh::set_font(IFontDisp *v)
{
    return put_value(L"FONT", [&] {
        ComPtr<IFontDisp> copy = ComPtr<IFontDisp>::attach(CloneFontObject(v));
        if (!copy) throw std::invalid_argument("not a font");
        lblCAPTION.Font = copy;
        relayout();
    });
}

STDMETHODIMP lneh::get_ForeColor(OLE_COLOR *v) { return get_value(v, [&] { return ForeColor(); }); }
STDMETHODIMP lneh::put_ForeColor(OLE_COLOR v)
{
    return put_value(L"FORECOLOR", [&] {
        if (TranslateColor(v) == kInvalidColor) throw std::invalid_argument("not a colour");
        SetForeColor(v);
        lblCAPTION.ForeColor = v;
        Invalidate();
    });
}

} // namespace tarn
