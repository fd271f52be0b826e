// The off-screen drawing objects: the memory DC that only grows, the dotted brush;
// nothing freed twice, nothing left behind.
#include <gtest/gtest.h>

#include "foundation/clsMEMDC.h"
#include "support/resource_counts.h"

using namespace tarn;

TEST(MemDC, GrowsOnlyAndKeepsItsDrawingUntilItGrows)
{
    clsMEMDC m;
    EXPECT_EQ(nullptr, m.hDC());
    m.Width(100);
    // w x 0: the platform's 1 x 1 bitmap stands in, the stored size is 100 x 0.
    EXPECT_EQ(100, m.Width());
    EXPECT_EQ(0, m.Height());
    m.Height(50);
    BITMAP bm{};
    GetObjectW(GetCurrentObject(m.hDC(), OBJ_BITMAP), sizeof bm, &bm);
    EXPECT_EQ(100, bm.bmWidth);
    EXPECT_EQ(50, bm.bmHeight);
    SetPixelV(m.hDC(), 5, 5, RGB(10, 200, 30));
    HDC dc = m.hDC();
    m.Width(20);  // smaller: nothing happens, the drawing stays
    m.Height(50); // equal: nothing either
    m.Width(-5);
    EXPECT_EQ(dc, m.hDC());
    EXPECT_EQ(100, m.Width());
    EXPECT_EQ(RGB(10, 200, 30), GetPixel(m.hDC(), 5, 5));
    m.Height(51); // larger: made again, the drawing is gone
    EXPECT_EQ(51, m.Height());
    EXPECT_NE(RGB(10, 200, 30), GetPixel(m.hDC(), 5, 5));
}

TEST(MemDC, AFailedCreationLeavesItEmptyAndNothingIsLeftOrFreedTwice)
{
    long before = test::ProcessGdiObjects();
    {
        clsMEMDC m;
        m.Width(50);
        m.Height(50);
        m.Width(1 << 30); // far beyond what the platform gives: the object ends up empty
        EXPECT_EQ(nullptr, m.hDC());
        EXPECT_EQ(0, m.Width());
        EXPECT_EQ(0, m.Height());
        m.Height(1 << 30); // 0 x h: the platform's 1 x 1 bitmap stands in again
        EXPECT_EQ(1 << 30, m.Height());
        m.Width(10); // and works again afterwards
        m.Height(10);
        EXPECT_EQ(10, m.Height());
        for (int i = 0; i < 200; ++i) m.Width(11 + i); // re-creating many times
    }
    // The dotted brush: made once, a one-pixel checkerboard, destroyed twice.
    {
        clsDOTBRUSH d;
        HBRUSH b = d.Brush();
        ASSERT_NE(nullptr, b);
        EXPECT_EQ(b, d.Brush());
        // In the DC's text and back colours.
        clsMEMDC m;
        m.Width(8);
        m.Height(8);
        SetTextColor(m.hDC(), RGB(0, 0, 0));
        SetBkColor(m.hDC(), RGB(255, 255, 255));
        RECT r{0, 0, 8, 8};
        FillRect(m.hDC(), &r, b);
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x)
                EXPECT_NE(GetPixel(m.hDC(), x, y), GetPixel(m.hDC(), (x + 1) % 8, y)) << x << "," << y;
        EXPECT_EQ(GetPixel(m.hDC(), 0, 0), GetPixel(m.hDC(), 1, 1));
        d.Destroy();
        d.Destroy();
    } // and once more when it goes
    if (before >= 0) {
        EXPECT_EQ(before, test::ProcessGdiObjects());
    }
}
