// fontchars (TarnControls.fontchars): a font and character picker. A list of the screen's
// fonts (filled by FillFontList: no vertical or script-variant names), a list of the Unicode
// blocks the chosen font has characters in, a grid of those characters only (drawn with the
// font's own glyphs, so nothing another font supplies shows), and a large preview of the
// character under the pointer or, without one, of the chosen character with its code point.
//
// The arrow keys and Page Up and Page Down move through the grid and on into the next or the
// previous block (Ctrl+Page Up and Ctrl+Page Down by whole blocks); typing a character in the
// grid picks it; typing the first letters of a name in the font list picks that font.
// FontChange and CharSelect tell the host of the user's choices.
#pragma once
#include "inputs/font_coverage.h"
#include "inputs/fontchars_model.h"
#include "runtime/combo_box.h"
#include "runtime/control_impl.h"
#include "runtime/scroll_bar.h"
#include "tarnctls_h.h"

namespace tarn {

class fontchars final : public ControlImpl<fontchars, Ifontchars> {
public:
    static const ControlClass Class;
    fontchars();

    // Ifontchars
    STDMETHODIMP get_CharCode(long *value) override;
    STDMETHODIMP put_CharCode(long value) override;
    STDMETHODIMP get_Character(BSTR *value) override;
    STDMETHODIMP put_Character(BSTR value) override;
    STDMETHODIMP get_FontName(BSTR *value) override;
    STDMETHODIMP put_FontName(BSTR value) override;
    STDMETHODIMP get_FontSize(float *value) override;
    STDMETHODIMP put_FontSize(float value) override;
    STDMETHODIMP RefreshFonts() override;
    STDMETHODIMP get_hwnd(OLE_HANDLE *value) override;
    STDMETHODIMP get__Default(BSTR *value) override { return get_Character(value); }
    STDMETHODIMP put__Default(BSTR value) override { return put_Character(value); }

protected:
    void Initialize() override;
    void InitProperties() override;
    void ReadProperties(PropertyBag &bag) override;
    void WriteProperties(PropertyBag &bag) override;
    void Resize() override;
    void Paint() override {}
    void DrawSurface(HDC dc, const Scale &scale) override;
    void Click() override;
    void DblClick() override;
    void MouseDown(int16_t button, int16_t shift, float x, float y) override;
    void MouseMove(int16_t button, int16_t shift, float x, float y) override;
    void MouseUp(int16_t button, int16_t shift, float x, float y) override;
    void MouseLeave() override { set_hot(-1); }
    void KeyDown(int16_t &key_code, int16_t shift) override;
    void KeyPress(int16_t &key_ascii) override;
    void GotFocus() override { Invalidate(); }
    void LostFocus() override { Invalidate(); }
    LRESULT OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled) override;
    // A list of characters; what a screen reader reads as its value is the chosen one.
    long AccessibleRole() override { return ROLE_SYSTEM_LIST; }
    std::wstring AccessibleValue() override;

private:
    // Where the parts go, in pixels.
    struct Geometry {
        RECT grid{}, preview{}, code{};
        int cell = 16, columns = 1, rows = 1;
    };
    Geometry geometry() const;
    void layout();
    void fill_fonts();
    // The font shown: the one named, or the default while none is.
    std::wstring shown_font() const;
    void load_font(bool user);
    void fill_blocks();
    // Makes `code_point` the chosen character (CharSelect when the user chose it).
    void choose(uint32_t code_point, bool user);
    void scroll_to_choice();
    // The character in the grid at a point (pixels), or -1.
    int32_t char_at(int x, int y) const;
    void set_hot(int32_t code_point);
    void draw_grid(HDC dc, const Geometry &g);
    void draw_preview(HDC dc, const Geometry &g);
    HFONT glyph_font(int pixels) const;
    bool focused() const;

    ComboBox cboFONT, cboBLOCK;
    ScrollBar vsbGRID;
    std::vector<std::wstring> fonts_; // the font list's names, in its order
    std::wstring font_name_;          // as set ("" : the default font)
    uint32_t char_code_ = 'A';
    float font_size_ = 12;
    FontCoverage coverage_;
    CharGrid grid_;
    int top_row_ = 0;
    int32_t hot_ = -1;
    bool quiet_ = false;       // a list changed by code: not the user's choice
    bool scroll_dirty_ = true; // the scroll bar is set again when the grid next paints
    TypeAhead typed_;
};

} // namespace tarn
