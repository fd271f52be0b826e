// Draws the grid: the visible cells of its engine (texts, formats, grid lines), the header
// bar with the column captions and the sort marker, and the summary bar with its totals. Fonts of the cells are made once and kept; brushes are never made (DC brush).
#pragma once
#include <windows.h>

#include <map>
#include <tuple>

#include "foundation/colors.h"
#include "foundation/handles.h"
#include "grid/grid_model.h"
#include "grid/grid_view.h"

namespace tarn {

struct GridColours {
    OleColor text = syscolor::ButtonText;        // barColTEXT: the bars' captions
    OleColor bar = syscolor::ButtonFace;         // barCol: the bars' background
    OleColor lines = 0x00C0C0C0;                 // GRIDCOLR: the lines between cells
    OleColor highlight = syscolor::Highlight3D;  // barColHL: the bar boxes' outer light edge
    OleColor shadow = syscolor::ButtonShadow;    // barColSH: their inner dark edge
    OleColor light = syscolor::Light3D;          // barColHLLIGHT: their inner light edge
    OleColor dark = syscolor::DarkShadow3D;      // barColSHDARK: their outer dark edge
};

class GridPainter {
public:
    // Paints everything `view` shows into `dc` (window coordinates); `bar_font` writes the
    // bars' captions, `dpi` sizes the cells' fonts.
    void Paint(HDC dc, GridModel &model, const GridView &view, const GridColours &colours, HFONT bar_font, int dpi);
    // Drops the kept fonts (the grid's font changed).
    void ForgetFonts() { fonts_.clear(); }

private:
    void paint_cells(HDC dc, const CellEngine &cells, const GridView &view, const GridColours &colours, int dpi);
    void paint_header(HDC dc, GridModel &model, const GridView &view, const GridColours &colours, HFONT font);
    void paint_summary(HDC dc, GridModel &model, const GridView &view, const GridColours &colours, HFONT font);
    HFONT cell_font(const CellEngine::CellStyle &style, int dpi);

    using FontKey = std::tuple<std::wstring, int, bool, bool>; // face, height in pixels, bold, strike
    std::map<FontKey, unique_font> fonts_;
};

} // namespace tarn
