#include "host/bitmap.h"

#include "runtime/com.h"

#include <wincodec.h>

namespace tarn::host {

Bitmap::Bitmap(int width, int height, Rgb fill_color) : width_(width > 0 ? width : 1), height_(height > 0 ? height : 1)
{
    BITMAPINFO bi{};
    bi.bmiHeader.biSize = sizeof bi.bmiHeader;
    bi.bmiHeader.biWidth = width_;
    bi.bmiHeader.biHeight = -height_;
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    bi.bmiHeader.biCompression = BI_RGB;
    dc_.reset(CreateCompatibleDC(nullptr));
    void *bits = nullptr;
    bitmap_.reset(CreateDIBSection(dc_.get(), &bi, DIB_RGB_COLORS, &bits, nullptr, 0));
    bits_ = static_cast<uint32_t *>(bits);
    SelectObject(dc_.get(), bitmap_.get());
    fill(fill_color);
}

Rgb Bitmap::pixel(int x, int y) const
{
    if (!bits_ || x < 0 || y < 0 || x >= width_ || y >= height_) return kInvalidColor;
    GdiFlush();
    uint32_t v = bits_[y * width_ + x]; // 0x00RRGGBB in memory order B, G, R
    return make_rgb((v >> 16) & 0xFF, (v >> 8) & 0xFF, v & 0xFF);
}

void Bitmap::fill(Rgb color)
{
    RECT r{0, 0, width_, height_};
    unique_brush brush(CreateSolidBrush(color));
    FillRect(dc_.get(), &r, brush.get());
    GdiFlush();
}

int Bitmap::count_row(int y, Rgb color) const
{
    int n = 0;
    for (int x = 0; x < width_; ++x) n += pixel(x, y) == color;
    return n;
}

int Bitmap::count_column(int x, Rgb color) const
{
    int n = 0;
    for (int y = 0; y < height_; ++y) n += pixel(x, y) == color;
    return n;
}

int Bitmap::count(Rgb color) const
{
    int n = 0;
    for (int y = 0; y < height_; ++y) n += count_row(y, color);
    return n;
}

uint32_t Bitmap::hash() const
{
    GdiFlush();
    uint32_t h = 2166136261u;
    for (int i = 0; bits_ && i < width_ * height_; ++i) {
        h ^= bits_[i] & 0xFFFFFF;
        h *= 16777619u;
    }
    return h;
}

bool Bitmap::save_png(const std::wstring &path) const
{
    if (!bits_) return false;
    GdiFlush();
    ComPtr<IWICImagingFactory> factory;
    ComPtr<IWICStream> stream;
    ComPtr<IWICBitmapEncoder> encoder;
    ComPtr<IWICBitmapFrameEncode> frame;
    HRESULT hr = CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                  factory.put_void());
    if (SUCCEEDED(hr)) hr = factory->CreateStream(stream.put());
    if (SUCCEEDED(hr)) hr = stream->InitializeFromFilename(path.c_str(), GENERIC_WRITE);
    if (SUCCEEDED(hr)) hr = factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.put());
    if (SUCCEEDED(hr)) hr = encoder->Initialize(stream.get(), WICBitmapEncoderNoCache);
    if (SUCCEEDED(hr)) hr = encoder->CreateNewFrame(frame.put(), nullptr);
    if (SUCCEEDED(hr)) hr = frame->Initialize(nullptr);
    if (SUCCEEDED(hr)) hr = frame->SetSize(width_, height_);
    WICPixelFormatGUID format = GUID_WICPixelFormat32bppBGR;
    if (SUCCEEDED(hr)) hr = frame->SetPixelFormat(&format);
    if (SUCCEEDED(hr))
        hr = frame->WritePixels(height_, width_ * 4, width_ * height_ * 4, reinterpret_cast<BYTE *>(bits_));
    if (SUCCEEDED(hr)) hr = frame->Commit();
    if (SUCCEEDED(hr)) hr = encoder->Commit();
    return SUCCEEDED(hr);
}

} // namespace tarn::host
