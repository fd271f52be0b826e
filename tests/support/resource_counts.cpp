#include "support/resource_counts.h"

#include <cstring>

namespace tarn::test {

namespace {

volatile LONG g_gdi = 0, g_dcs = 0;
bool g_installed = false;

void gdi_made(const void *h)
{
    if (h) InterlockedIncrement(&g_gdi);
}
void dc_made(const void *h)
{
    if (h) InterlockedIncrement(&g_dcs);
}

// The platform functions counted: what each returns, its parameters, and the count it moves.
// A region given to a window belongs to the system from then on.
#define COUNTED(X)                                                                                                     \
    X(HBRUSH, CreateSolidBrush, (COLORREF c), (c), gdi_made(r))                                                        \
    X(HBRUSH, CreateBrushIndirect, (const LOGBRUSH *b), (b), gdi_made(r))                                              \
    X(HBRUSH, CreatePatternBrush, (HBITMAP b), (b), gdi_made(r))                                                       \
    X(HBRUSH, CreateHatchBrush, (int s, COLORREF c), (s, c), gdi_made(r))                                              \
    X(HPEN, CreatePen, (int s, int w, COLORREF c), (s, w, c), gdi_made(r))                                             \
    X(HPEN, CreatePenIndirect, (const LOGPEN *p), (p), gdi_made(r))                                                    \
    X(HBITMAP, CreateBitmap, (int w, int h, UINT p, UINT b, const void *bits), (w, h, p, b, bits), gdi_made(r))        \
    X(HBITMAP, CreateCompatibleBitmap, (HDC dc, int w, int h), (dc, w, h), gdi_made(r))                                \
    X(HBITMAP, CreateDIBSection, (HDC dc, const BITMAPINFO *bi, UINT u, void **bits, HANDLE s, DWORD o),               \
      (dc, bi, u, bits, s, o), gdi_made(r))                                                                            \
    X(HFONT, CreateFontIndirectA, (const LOGFONTA *lf), (lf), gdi_made(r))                                             \
    X(HFONT, CreateFontIndirectW, (const LOGFONTW *lf), (lf), gdi_made(r))                                             \
    X(HRGN, CreateRectRgn, (int a, int b, int c, int d), (a, b, c, d), gdi_made(r))                                    \
    X(HRGN, CreateRectRgnIndirect, (const RECT *rc), (rc), gdi_made(r))                                                \
    X(HRGN, CreateRoundRectRgn, (int a, int b, int c, int d, int e, int f), (a, b, c, d, e, f), gdi_made(r))           \
    X(HRGN, CreateEllipticRgn, (int a, int b, int c, int d), (a, b, c, d), gdi_made(r))                                \
    X(HRGN, CreatePolygonRgn, (const POINT *p, int n, int m), (p, n, m), gdi_made(r))                                  \
    X(HRGN, ExtCreateRegion, (const XFORM *x, DWORD n, const RGNDATA *d), (x, n, d), gdi_made(r))                      \
    X(HDC, CreateCompatibleDC, (HDC dc), (dc), dc_made(r))                                                             \
    X(HDC, CreateDCW, (LPCWSTR a, LPCWSTR b, LPCWSTR c, const DEVMODEW *d), (a, b, c, d), dc_made(r))                  \
    X(HDC, CreateDCA, (LPCSTR a, LPCSTR b, LPCSTR c, const DEVMODEA *d), (a, b, c, d), dc_made(r))                     \
    X(BOOL, DeleteObject, (HGDIOBJ h), (h), if (r && h) InterlockedDecrement(&g_gdi))                                  \
    X(BOOL, DeleteDC, (HDC h), (h), if (r && h) InterlockedDecrement(&g_dcs))                                          \
    X(HDC, GetDC, (HWND w), (w), dc_made(r))                                                                           \
    X(HDC, GetWindowDC, (HWND w), (w), dc_made(r))                                                                     \
    X(int, ReleaseDC, (HWND w, HDC dc), (w, dc), if (r) InterlockedDecrement(&g_dcs))                                  \
    X(HDC, BeginPaint, (HWND w, LPPAINTSTRUCT ps), (w, ps), dc_made(r))                                                \
    X(BOOL, EndPaint, (HWND w, const PAINTSTRUCT *ps), (w, ps), if (r) InterlockedDecrement(&g_dcs))                   \
    X(int, SetWindowRgn, (HWND w, HRGN rgn, BOOL redraw), (w, rgn, redraw), if (r && rgn) InterlockedDecrement(&g_gdi))

// One counting wrapper per function: real_ holds the platform's entry point.
#define HOOK(ret, name, params, args, after)                                                                          \
    ret(WINAPI *real_##name) params = nullptr;                                                                         \
    ret WINAPI hook_##name params                                                                                      \
    {                                                                                                                  \
        ret r = real_##name args;                                                                                      \
        after;                                                                                                         \
        return r;                                                                                                      \
    }
COUNTED(HOOK)

struct Hook {
    const char *name;
    void *hook;
    void **real;
};

#define ENTRY(ret, name, ...) {#name, reinterpret_cast<void *>(&hook_##name), reinterpret_cast<void **>(&real_##name)},
const Hook kHooks[] = {COUNTED(ENTRY)};

// Replaces the module's import-table entries of the functions above with the wrappers.
bool patch_imports(HMODULE module)
{
    auto *base = reinterpret_cast<BYTE *>(module);
    auto *dos = reinterpret_cast<IMAGE_DOS_HEADER *>(base);
    auto *nt = reinterpret_cast<IMAGE_NT_HEADERS *>(base + dos->e_lfanew);
    IMAGE_DATA_DIRECTORY dir = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (!dir.VirtualAddress) return false;
    int patched = 0;
    for (auto *imp = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR *>(base + dir.VirtualAddress); imp->Name; ++imp) {
        auto *names = reinterpret_cast<IMAGE_THUNK_DATA *>(base + (imp->OriginalFirstThunk ? imp->OriginalFirstThunk
                                                                                             : imp->FirstThunk));
        auto *slots = reinterpret_cast<IMAGE_THUNK_DATA *>(base + imp->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            auto *by_name = reinterpret_cast<IMAGE_IMPORT_BY_NAME *>(base + names->u1.AddressOfData);
            for (const Hook &h : kHooks) {
                if (std::strcmp(reinterpret_cast<const char *>(by_name->Name), h.name) != 0) continue;
                DWORD old = 0;
                VirtualProtect(&slots->u1.Function, sizeof(void *), PAGE_READWRITE, &old);
                *h.real = reinterpret_cast<void *>(slots->u1.Function);
                slots->u1.Function = reinterpret_cast<ULONG_PTR>(h.hook);
                VirtualProtect(&slots->u1.Function, sizeof(void *), old, &old);
                ++patched;
            }
        }
    }
    return patched > 0;
}

BOOL CALLBACK count_child(HWND, LPARAM counter)
{
    ++*reinterpret_cast<long *>(counter);
    return TRUE;
}

BOOL CALLBACK count_top(HWND hwnd, LPARAM counter)
{
    DWORD pid = 0;
    GetWindowThreadProcessId(hwnd, &pid);
    if (pid != GetCurrentProcessId()) return TRUE;
    ++*reinterpret_cast<long *>(counter);
    EnumChildWindows(hwnd, count_child, counter);
    return TRUE;
}

} // namespace

DllResourceCounter::DllResourceCounter()
{
    if (g_installed) return;
    HMODULE dll = GetModuleHandleW(L"tarnctls.dll");
    if (!dll) {
        // Load it through COM's own path so the module is the one controls come from.
        CLSID clsid;
        IUnknown *unk = nullptr;
        if (SUCCEEDED(CLSIDFromProgID(L"TarnControls.cframe", &clsid)) &&
            SUCCEEDED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, reinterpret_cast<void **>(&unk))))
            unk->Release();
        dll = GetModuleHandleW(L"tarnctls.dll");
    }
    if (dll) {
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN, L"tarnctls.dll", &dll); // never unloaded while hooked
        g_installed = patch_imports(dll);
    }
}

long DllResourceCounter::gdi_objects() const { return g_gdi; }
long DllResourceCounter::dcs() const { return g_dcs; }
bool DllResourceCounter::installed() const { return g_installed; }

long ProcessGdiObjects()
{
    if (DWORD n = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)) return static_cast<long>(n);
#ifdef _WIN64
    // Wine maps its GDI handle table into 64-bit programs (PEB->GdiSharedHandleTable): entries
    // of 24 bytes whose type byte (offset 14) is set while the handle lives.
    auto *peb = reinterpret_cast<BYTE *>(__readgsqword(0x60));
    auto *table = *reinterpret_cast<BYTE **>(peb + 0xF8);
    if (!table) return -1;
    long n = 0;
    for (int i = 0; i < 0x10000; ++i) n += table[i * 24 + 14] != 0;
    return n;
#else
    return -1;
#endif
}

ResourceSnapshot::ResourceSnapshot()
    : gdi_(dll_.gdi_objects()), dcs_(dll_.dcs()), process_gdi_(ProcessGdiObjects()), windows_(ProcessWindows())
{
}

std::vector<std::string> ResourceSnapshot::changes() const
{
    std::vector<std::string> out;
    auto check = [&](const char *name, long before, long now) {
        if (before != now) out.push_back(std::string(name) + ": " + std::to_string(before) + " -> " + std::to_string(now));
    };
    check("DLL GDI objects", gdi_, dll_.gdi_objects());
    check("DLL DCs", dcs_, dll_.dcs());
    check("process windows", windows_, ProcessWindows());
    // The system keeps a few objects of its own in the process (a caret, update regions), made
    // at moments another process causes (focus, activation); a leak in a repeated cycle shows
    // once per cycle, far beyond this.
    constexpr long kSystemSlack = 8;
    long process_gdi = ProcessGdiObjects();
    if (process_gdi_ >= 0 && (process_gdi < process_gdi_ || process_gdi > process_gdi_ + kSystemSlack))
        check("process GDI objects", process_gdi_, process_gdi);
    return out;
}

long ProcessWindows()
{
    long n = 0;
    EnumWindows(count_top, reinterpret_cast<LPARAM>(&n));
    return n;
}

long ProcessHandles()
{
    DWORD n = 0;
    if (GetProcessHandleCount(GetCurrentProcess(), &n) && n > 0) return static_cast<long>(n);
    // Wine answers 0: count the handle values that name an object instead. Handles are
    // multiples of 4 handed out from the bottom, so the search stops well past the last one.
    long valid = 0;
    ULONG_PTR last = 0;
    for (ULONG_PTR h = 4; h < last + 0x2000 && h < 0x1000000; h += 4) {
        DWORD flags = 0;
        if (GetHandleInformation(reinterpret_cast<HANDLE>(h), &flags)) {
            ++valid;
            last = h;
        }
    }
    return valid;
}

long long ProcessHeapBytes()
{
    HANDLE heaps[256];
    DWORD count = GetProcessHeaps(256, heaps);
    if (count == 0 || count > 256) return -1;
    long long used = 0;
    for (DWORD i = 0; i < count; ++i) {
        if (!HeapLock(heaps[i])) continue;
        PROCESS_HEAP_ENTRY e{};
        while (HeapWalk(heaps[i], &e))
            if (e.wFlags & PROCESS_HEAP_ENTRY_BUSY) used += e.cbData;
        HeapUnlock(heaps[i]);
    }
    return used;
}

} // namespace tarn::test
