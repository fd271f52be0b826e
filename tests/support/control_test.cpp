#include "support/control_test.h"

#include <windowsx.h>

#include <cmath>

#include "foundation/font_object.h"
#include "foundation/metrics.h"

namespace tarn::test {

void mouse(HWND hwnd, UINT msg, int x, int y, WPARAM keys)
{
    SendMessageW(hwnd, msg, keys, MAKELPARAM(x, y));
}

void click(HWND hwnd, int x, int y)
{
    mouse(hwnd, WM_LBUTTONDOWN, x, y, MK_LBUTTON);
    mouse(hwnd, WM_LBUTTONUP, x, y, 0);
}

ComPtr<IFontDisp> make_font(const wchar_t *name, double size, bool bold)
{
    FontSpec look;
    look.name = name;
    look.size = size;
    look.bold = bold;
    return ComPtr<IFontDisp>::attach(CreateFontObject(look));
}

SIZE extent_px(Hosted &h)
{
    SIZEL himetric{};
    if (ComPtr<IOleObject> ole = h.as<IOleObject>(IID_IOleObject)) ole->GetExtent(DVASPECT_CONTENT, &himetric);
    HDC dc = GetDC(nullptr);
    SIZE px{MulDiv(himetric.cx, GetDeviceCaps(dc, LOGPIXELSX), 2540), MulDiv(himetric.cy, GetDeviceCaps(dc, LOGPIXELSY), 2540)};
    ReleaseDC(nullptr, dc);
    return px;
}

RECT placement(HWND w)
{
    RECT r{};
    GetWindowRect(w, &r);
    MapWindowPoints(HWND_DESKTOP, GetParent(w), reinterpret_cast<POINT *>(&r), 2);
    return r;
}

std::vector<BYTE> stream_bytes(IStream *stream)
{
    STATSTG st{};
    if (!stream || FAILED(stream->Stat(&st, STATFLAG_NONAME))) return {};
    std::vector<BYTE> bytes(static_cast<size_t>(st.cbSize.QuadPart));
    LARGE_INTEGER zero{};
    stream->Seek(zero, STREAM_SEEK_SET, nullptr);
    ULONG got = 0;
    if (!bytes.empty()) stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &got);
    bytes.resize(got);
    stream->Seek(zero, STREAM_SEEK_SET, nullptr);
    return bytes;
}

ComPtr<IStream> stream_of(const std::vector<BYTE> &bytes)
{
    ComPtr<IStream> s;
    CreateStreamOnHGlobal(nullptr, TRUE, s.put());
    ULONG written = 0;
    if (s && !bytes.empty()) s->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written);
    LARGE_INTEGER zero{};
    if (s) s->Seek(zero, STREAM_SEEK_SET, nullptr);
    return s;
}

std::wstring twips_text(int x, int y)
{
    return std::to_wstring(std::lround(x * TwipsPerPixelX())) + L"," + std::to_wstring(std::lround(y * TwipsPerPixelY()));
}

void allow_self_sizing(Container &form)
{
    form.allow_site_call(L"IOleClientSite::RequestNewObjectLayout");
    form.allow_site_call(L"IOleInPlaceSite::OnPosRectChange");
}

bool pump_until(const std::function<bool()> &done, DWORD limit_ms)
{
    DWORD start = GetTickCount();
    for (;;) {
        pump();
        if (done()) return true;
        if (GetTickCount() - start >= limit_ms) return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
}

HRESULT dll_can_unload_now()
{
    HMODULE dll = GetModuleHandleW(L"tarnctls.dll");
    if (!dll) return S_OK; // never loaded, or already unloaded
    auto fn = reinterpret_cast<HRESULT(WINAPI *)()>(GetProcAddress(dll, "DllCanUnloadNow"));
    return fn ? fn() : E_FAIL;
}

std::wstring output_path(const std::wstring &name)
{
    wchar_t exe[MAX_PATH];
    GetModuleFileNameW(nullptr, exe, MAX_PATH);
    std::wstring dir(exe);
    dir = dir.substr(0, dir.find_last_of(L'\\')) + L"\\test-output";
    CreateDirectoryW(dir.c_str(), nullptr);
    return dir + L"\\" + name;
}

} // namespace tarn::test
