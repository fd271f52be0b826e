#include "inputs/dlst_images.h"

#include <cmath>

#include "foundation/handles.h"
#include "foundation/metrics.h"

namespace tarn {

namespace {

constexpr COLORREF kKey = RGB(255, 0, 255); // transparent
constexpr COLORREF kFolderFace = RGB(244, 204, 92), kFolderLight = RGB(252, 228, 150), kFolderEdge = RGB(168, 124, 28);
constexpr COLORREF kMetal = RGB(200, 200, 204), kMetalEdge = RGB(96, 96, 104), kLed = RGB(40, 200, 60);
constexpr COLORREF kDiskette = RGB(40, 60, 140), kLabel = RGB(250, 250, 250);

// Draws in a 16 x 16 grid scaled to the picture's size, at picture `index` of the strip.
class Painter {
public:
    Painter(HDC dc, int size, int index) : dc_(dc), scale_(size / 16.0), left_(index * size) {}

    int x(double v) const { return left_ + static_cast<int>(std::lround(v * scale_)); }
    int y(double v) const { return static_cast<int>(std::lround(v * scale_)); }

    void box(double x0, double y0, double x1, double y1, COLORREF fill, COLORREF edge)
    {
        unique_brush brush(CreateSolidBrush(fill));
        unique_pen pen(CreatePen(PS_SOLID, pen_width(), edge));
        select_guard b(dc_, brush.get()), p(dc_, pen.get());
        Rectangle(dc_, x(x0), y(y0), x(x1), y(y1));
    }
    void fill(double x0, double y0, double x1, double y1, COLORREF colour)
    {
        RECT r{x(x0), y(y0), x(x1), y(y1)};
        unique_brush brush(CreateSolidBrush(colour));
        FillRect(dc_, &r, brush.get());
    }
    void polygon(std::initializer_list<POINT> grid, COLORREF fill, COLORREF edge)
    {
        POINT pts[8];
        int n = 0;
        for (POINT g : grid) pts[n++] = POINT{x(g.x), y(g.y)};
        unique_brush brush(CreateSolidBrush(fill));
        unique_pen pen(CreatePen(PS_SOLID, pen_width(), edge));
        select_guard b(dc_, brush.get()), p(dc_, pen.get());
        Polygon(dc_, pts, n);
    }
    void disc(double x0, double y0, double x1, double y1, COLORREF fill, COLORREF edge)
    {
        unique_brush brush(CreateSolidBrush(fill));
        unique_pen pen(CreatePen(PS_SOLID, pen_width(), edge));
        select_guard b(dc_, brush.get()), p(dc_, pen.get());
        Ellipse(dc_, x(x0), y(y0), x(x1), y(y1));
    }

private:
    int pen_width() const { return scale_ >= 2 ? 2 : 1; }
    HDC dc_;
    double scale_;
    int left_;
};

void draw_diskette(Painter p)
{
    p.box(2, 2, 15, 15, kDiskette, RGB(20, 30, 80));
    p.box(5, 2, 12, 7, kMetal, kMetalEdge);
    p.fill(9, 3, 10.5, 6, kMetalEdge);
    p.box(4, 9, 13, 15, kLabel, RGB(20, 30, 80));
}

void draw_disk(Painter p)
{
    p.box(1, 5, 16, 12, kMetal, kMetalEdge);
    p.fill(2, 10, 15, 11, RGB(160, 160, 168));
    p.fill(12, 7, 14, 9, kLed);
}

void draw_optical(Painter p)
{
    p.disc(1, 1, 16, 16, RGB(224, 226, 236), kMetalEdge);
    p.disc(3.5, 3.5, 13.5, 13.5, RGB(200, 214, 240), RGB(200, 214, 240));
    p.disc(6.5, 6.5, 10.5, 10.5, kKey, kMetalEdge);
}

void draw_folder(Painter p)
{
    p.polygon({{1, 3}, {6, 3}, {7, 5}, {15, 5}, {15, 14}, {1, 14}}, kFolderFace, kFolderEdge);
    p.fill(2, 6, 14, 7, kFolderLight);
}

void draw_open_folder(Painter p)
{
    p.polygon({{1, 3}, {6, 3}, {7, 5}, {13, 5}, {13, 14}, {1, 14}}, kFolderFace, kFolderEdge);
    p.polygon({{4, 8}, {16, 8}, {13, 14}, {1, 14}}, kFolderLight, kFolderEdge);
}


} // namespace

HIMAGELIST MakeDirectoryImages()
{
    const int size = MulDiv(16, ScreenDpiY(), 96);
    constexpr int kCount = 5;
    HIMAGELIST list = ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, kCount, 0);
    if (!list) return nullptr;
    window_dc screen(nullptr);
    unique_dc dc(CreateCompatibleDC(screen.get()));
    unique_bitmap strip(CreateCompatibleBitmap(screen.get(), size * kCount, size));
    if (!dc || !strip) return list;
    {
        select_guard use(dc.get(), strip.get());
        RECT all{0, 0, size * kCount, size};
        unique_brush key(CreateSolidBrush(kKey));
        FillRect(dc.get(), &all, key.get());
        draw_diskette(Painter(dc.get(), size, kImageDiskette - 1));
        draw_disk(Painter(dc.get(), size, kImageDisk - 1));
        draw_optical(Painter(dc.get(), size, kImageOptical - 1));
        draw_folder(Painter(dc.get(), size, kImageFolder - 1));
        draw_open_folder(Painter(dc.get(), size, kImageOpenFolder - 1));
    }
    ImageList_AddMasked(list, strip.get(), kKey);
    return list;
}

} // namespace tarn
