// The colour pop-up's pure logic: its geometry (the document colour label lblCbtn1 on top,
// the palette's cells, the place of the separator bar sepbar1, the custom entry lblCUSTOM at
// the bottom), what lies under a point, where the pop-up goes on the screen, and how the
// arrow keys move the active item. No platform calls; colour_popup.cpp draws with these.
#pragma once
#include <cstdint>

#include "buttons/cbtn_layout.h"

namespace tarn {

// An item of the pop-up: a cell's index (0 and up) or one of these.
namespace popup_item {
constexpr int32_t None = -1, Doc = -2, Custom = -3;
} // namespace popup_item

// Sizes in pixels at the screen's resolution.
struct PopupMetrics {
    int32_t cell = 18;      // one cell, the swatch and the room for its highlight
    int32_t margin = 4;     // round the whole and between the parts
    int32_t label = 21;     // height of lblCbtn1 and lblCUSTOM
    int32_t separator = 9;  // height of sepbar1's place
    int32_t min_width = 0;  // what the labels' texts need (without the margins)
};
// The metrics at `dpi` for a font whose line is `text_height` pixels high and whose longest
// label needs `text_width` pixels.
PopupMetrics PopupMetricsFor(int32_t dpi, int32_t text_height, int32_t text_width);

struct PopupLayout {
    int32_t width = 0, height = 0; // the client area
    int32_t columns = 0, rows = 0;
    int32_t cell = 0;
    PxRect doc;        // lblCbtn1
    PxRect doc_swatch; // the document colour inside it
    PxRect doc_text;
    PxRect grid;       // every cell
    PxRect separator;  // where sepbar1 stands
    PxRect custom;     // lblCUSTOM
    // The rectangle of an item (empty for None or a cell out of range).
    PxRect item(int32_t index) const;
    // The colour square inside a cell's rectangle.
    static PxRect swatch(const PxRect &cell);
};
PopupLayout LayoutPopup(int32_t columns, int32_t rows, const PopupMetrics &m);

// The item at client point (x, y), or None.
int32_t HitTest(const PopupLayout &layout, int32_t cells, int32_t x, int32_t y);

// Where the pop-up of w x h pixels opens for a button at `anchor` (screen pixels): below it,
// left edges together; above it when there is no room below; always inside `work`.
struct PopupPlace {
    int32_t x, y;
};
PopupPlace PlacePopup(const PxRect &anchor, int32_t w, int32_t h, const PxRect &work);

// The keyboard: the arrows walk the items in reading order (left and right run on through the
// rows to the labels, up and down keep the column and pass the labels on the way out),
// wrapping from lblCUSTOM round to lblCbtn1; Home and End take the first and last cell. From
// no active item any move lands on `start`.
enum class PopupMove { Left, Right, Up, Down, Home, End };
int32_t MoveActive(int32_t active, PopupMove move, int32_t columns, int32_t cells, int32_t start);

} // namespace tarn
