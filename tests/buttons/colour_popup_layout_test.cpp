// The colour pop-up's pure logic: its parts stacked without overlap at any resolution, what
// lies under each point, where it opens on the screen, and how the keys move the active item.
#include <gtest/gtest.h>

#include "buttons/colour_popup_layout.h"

using namespace tarn;
using namespace tarn::popup_item;

namespace {

PxRect centre(const PxRect &r) { return {(r.left + r.right) / 2, (r.top + r.bottom) / 2, 0, 0}; }

} // namespace

TEST(PopupLayout, PartsStackInOrderAndEveryPointFindsItsItem)
{
    for (int32_t dpi : {96, 144}) {
        for (auto [cols, rows, text_w] : {std::tuple{7, 5, 60}, std::tuple{15, 5, 60}, std::tuple{4, 3, 300}}) {
            SCOPED_TRACE(testing::Message() << dpi << " dpi, " << cols << "x" << rows << ", text " << text_w);
            PopupMetrics m = PopupMetricsFor(dpi, dpi == 96 ? 13 : 19, text_w);
            EXPECT_EQ(dpi == 96 ? 18 : 27, m.cell);
            PopupLayout L = LayoutPopup(cols, rows, m);
            // Top to bottom: lblCbtn1, the cells, sepbar1's place, lblCUSTOM, inside the client.
            EXPECT_LE(0, L.doc.top);
            EXPECT_LE(L.doc.bottom, L.grid.top);
            EXPECT_LE(L.grid.bottom, L.separator.top);
            EXPECT_LE(L.separator.bottom, L.custom.top);
            EXPECT_LE(L.custom.bottom, L.height);
            EXPECT_EQ(cols * m.cell, L.grid.width());
            EXPECT_EQ(rows * m.cell, L.grid.height());
            for (const PxRect &r : {L.doc, L.grid, L.separator, L.custom}) {
                EXPECT_GE(r.left, 0);
                EXPECT_LE(r.right, L.width);
            }
            // The labels hold their text and the document colour's square.
            EXPECT_GE(L.doc_text.width(), text_w);
            EXPECT_LE(L.doc.left, L.doc_swatch.left);
            EXPECT_LE(L.doc_swatch.right, L.doc_text.left);
            EXPECT_LE(L.doc_swatch.bottom, L.doc.bottom);
            const int32_t cells = cols * rows;
            for (int32_t i = 0; i < cells; ++i) {
                PxRect c = L.item(i), mid = centre(c);
                ASSERT_EQ(i, HitTest(L, cells, mid.left, mid.top)) << i;
                ASSERT_EQ(i, HitTest(L, cells, c.right - 1, c.bottom - 1)) << i;
            }
            PxRect d = centre(L.doc), u = centre(L.custom), s = centre(L.separator);
            EXPECT_EQ(Doc, HitTest(L, cells, d.left, d.top));
            EXPECT_EQ(Custom, HitTest(L, cells, u.left, u.top));
            EXPECT_EQ(None, HitTest(L, cells, s.left, s.top));
            EXPECT_EQ(None, HitTest(L, cells, 0, 0));
            EXPECT_EQ(None, HitTest(L, cells, L.grid.right, L.grid.top));
            EXPECT_EQ(None, HitTest(L, cells, -1, -1));
            // A short last row: the empty places are no cells.
            EXPECT_EQ(None, HitTest(L, cells - 1, L.item(cells - 1).left, L.item(cells - 1).top));
            EXPECT_EQ(0, L.item(cells).width());
            EXPECT_EQ(0, L.item(None).width());
        }
    }
}

TEST(PopupLayout, DegenerateInputsStayHarmless)
{
    PopupLayout L = LayoutPopup(-3, 1 << 30, PopupMetricsFor(-1, -100, 1 << 30));
    EXPECT_GE(L.width, 0);
    EXPECT_GE(L.height, 0);
    EXPECT_EQ(None, HitTest(LayoutPopup(0, 0, PopupMetrics{}), 0, 5, 30));
}

TEST(PopupLayout, OpensBelowTheButtonElseAboveAlwaysOnTheWorkArea)
{
    const PxRect work{0, 0, 1000, 700};
    struct Case {
        PxRect anchor;
        int32_t w, h;
        PopupPlace at;
    } cases[] = {
        {{100, 100, 180, 125}, 150, 200, {100, 125}}, // below, left edges together
        {{100, 600, 180, 625}, 150, 200, {100, 400}}, // no room below: above
        {{900, 100, 980, 125}, 150, 200, {850, 125}}, // kept off the right edge
        {{-50, 100, 30, 125}, 150, 200, {0, 125}},    // and the left
        {{100, 300, 180, 325}, 150, 400, {100, 300}}, // room neither below nor above: the bottom
        {{100, 300, 180, 325}, 150, 900, {100, 0}},   // taller than the work area: the top
    };
    for (const Case &c : cases) {
        PopupPlace at = PlacePopup(c.anchor, c.w, c.h, work);
        EXPECT_EQ(c.at.x, at.x) << c.anchor.left << "," << c.anchor.top;
        EXPECT_EQ(c.at.y, at.y) << c.anchor.left << "," << c.anchor.top;
    }
    // A monitor whose work area does not start at 0.
    PopupPlace at = PlacePopup({-1900, 1040, -1800, 1065}, 150, 200, {-1920, 0, 0, 1050});
    EXPECT_EQ(-1900, at.x);
    EXPECT_EQ(840, at.y);
}

TEST(PopupLayout, KeysWalkTheCellsAndTheLabels)
{
    // Three columns, eight cells: 0 1 2 / 3 4 5 / 6 7.
    using M = PopupMove;
    struct Case {
        int32_t from;
        M move;
        int32_t to;
    } cases[] = {
        {None, M::Right, 4}, {None, M::Up, 4},     {None, M::Home, 0},   {None, M::End, 7},
        {0, M::Right, 1},    {2, M::Right, 3},     {7, M::Right, Custom}, {Custom, M::Right, Doc},
        {Doc, M::Right, 0},  {0, M::Left, Doc},    {Doc, M::Left, Custom}, {Custom, M::Left, 7},
        {4, M::Left, 3},     {1, M::Down, 4},      {4, M::Down, 7},      {5, M::Down, Custom},
        {7, M::Down, Custom}, {Custom, M::Down, Doc}, {Doc, M::Down, 0},  {1, M::Up, Doc},
        {4, M::Up, 1},       {Doc, M::Up, Custom}, {Custom, M::Up, 6},   {5, M::Home, 0},
        {Doc, M::End, 7},    {99, M::Left, 4},
    };
    for (const Case &c : cases) EXPECT_EQ(c.to, MoveActive(c.from, c.move, 3, 8, 4)) << c.from << " " << int(c.move);
    // Without cells the keys go between the two labels.
    EXPECT_EQ(Custom, MoveActive(Doc, M::Down, 3, 0, 0));
    EXPECT_EQ(Doc, MoveActive(Custom, M::Right, 3, 0, 0));
    EXPECT_EQ(Doc, MoveActive(None, M::Left, 0, 5, 0));
}
