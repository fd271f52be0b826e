#include "frames/lneh.h"

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
    true, // draws itself, touches no file and no other window
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
    : CaptionedControl(Left_Justify), lneLEFTSHADOW(L"lneLEFTSHADOW", 0, 0, 0, 0),
      lneLEFTHIGHLIGHT(L"lneLEFTHIGHLIGHT", 0, 0, 0, 0), lneRIGHTSHADOW(L"lneRIGHTSHADOW", 0, 0, 0, 0),
      lneRIGHTHIGHLIGHT(L"lneRIGHTHIGHLIGHT", 0, 0, 0, 0)
{
    for (Line *l : {&lneLEFTSHADOW, &lneLEFTHIGHLIGHT, &lneRIGHTSHADOW, &lneRIGHTHIGHLIGHT}) add_constituent(*l);
    add_constituent(lblCAPTION);
}

void lneh::Initialize()
{
    SetDesignSize(3000, 255);
    InitializeCaption();
    Resize();
}

void lneh::InitProperties()
{
    step([&] { lblCAPTION.Caption = Ambient().DisplayName(); });
    CaptionedControl::InitProperties(); // the ambient font, and the layout for both
}

// ---------------------------------------------------------------- layout

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

void lneh::CaptionChanged()
{
    step([&] { Resize(); });
    Invalidate();
}

} // namespace tarn
