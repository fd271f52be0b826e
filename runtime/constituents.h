// Windowless constituents: the line and the label a control places on its surface with fixed
// names and moves in its layout. The control draws them, in the order they were added, after
// its own background; a label also takes the mouse and reports it through its handlers, with
// coordinates relative to itself, as the control's constituent events.
#pragma once
#include <windows.h>
#include <olectl.h>

#include <functional>
#include <string>

#include "foundation/colors.h"
#include "runtime/com.h"
#include "runtime/units.h"

namespace tarn {

class Constituent {
public:
    explicit Constituent(std::wstring name) : Name(std::move(name)) {}
    virtual ~Constituent() = default;
    Constituent(const Constituent &) = delete;
    Constituent &operator=(const Constituent &) = delete;

    virtual void draw(HDC dc, const Scale &scale) const = 0;
    // True when the point (twips, control coordinates) is on a part that takes the mouse.
    virtual bool takes_mouse_at(float x, float y) const { return false; }
    // The constituent's origin, subtracted from control coordinates for its mouse events.
    virtual float origin_x() const { return 0; }
    virtual float origin_y() const { return 0; }

    using MouseHandler = std::function<void(int16_t button, int16_t shift, float x, float y)>;
    MouseHandler on_mouse_down, on_mouse_move, on_mouse_up;
    std::function<void()> on_click, on_dbl_click;

    std::wstring Name;
    bool Visible = true;
};

// A straight line from (X1, Y1) to (X2, Y2) in twips, one pixel wide, last point excluded.
class Line final : public Constituent {
public:
    Line(std::wstring name, float x1, float y1, float x2, float y2, OleColor color = syscolor::WindowText)
        : Constituent(std::move(name)), X1(x1), Y1(y1), X2(x2), Y2(y2), BorderColor(color)
    {
    }
    void draw(HDC dc, const Scale &scale) const override;

    float X1, Y1, X2, Y2;
    OleColor BorderColor;
    int BorderWidth = 1;
    // Twips across a horizontal or vertical line: it then covers the pixels of that band (at
    // least one), so lines drawn a design pixel apart stay touching at any DPI. 0: one pixel.
    float Thickness = 0;
};

// Colours the two lines of a 3-D divider from the system's version: above 4.99 shades of the
// button face (dark -25, light +25), so the divider blends with themed surfaces; otherwise the
// system's button shadow and 3-D highlight. A failing shade leaves that line its colour.
void ColourDividerLines(Line &dark, Line &light);

// A caption in a rectangle (twips). Transparent unless BackStyle is 1.
class Label final : public Constituent {
public:
    Label(std::wstring name, float left, float top, float width, float height)
        : Constituent(std::move(name)), Left(left), Top(top), Width(width), Height(height)
    {
    }
    void draw(HDC dc, const Scale &scale) const override;
    bool takes_mouse_at(float x, float y) const override;
    float origin_x() const override { return Left; }
    float origin_y() const override { return Top; }

    std::wstring Caption;
    int16_t Alignment = 0; // 0 left, 1 right, 2 centre
    ComPtr<IFontDisp> Font;
    float Left, Top, Width, Height;
    OleColor ForeColor = syscolor::ButtonText;
    OleColor BackColor = syscolor::ButtonFace;
    int16_t BackStyle = 0; // 0 transparent, 1 opaque
    bool Enabled = true;
    bool UseMnemonic = true;
    bool CentreVertically = false; // the text's lines in the middle of the rectangle, not at its top
};

} // namespace tarn
