// What the tests of the frames, lines and bars share: colours as hosts pass them, the system's
// colours, a font's line height, the look chosen by the version text, and a control's
// accessible name and role.
#pragma once
#include <oleacc.h>

#include <cmath>
#include <string>
#include <vector>

#include "foundation/colors.h"
#include "foundation/metrics.h"
#include "support/control_test.h"

namespace tarn::test {

inline OleColor colour(Hosted &h, const wchar_t *p = L"BACKCOLOR") { return static_cast<OleColor>(as_integer(h.get(p))); }
inline Variant ole(OleColor c) { return I4(static_cast<int32_t>(c)); }
inline Rgb sys(int index) { return GetSysColor(index); }

// Events or keys as one line, to compare with the expected order.
inline std::wstring joined(const std::vector<std::wstring> &items)
{
    std::wstring all;
    for (const std::wstring &item : items) all += (all.empty() ? L"" : L" ") + item;
    return all;
}

// The line height (tmHeight, pixels) of a font object on the screen.
inline int text_height(IUnknown *font)
{
    HFONT h = nullptr;
    if (ComPtr<IFont> f = ComPtr<IUnknown>(font).as<IFont>(IID_IFont)) f->get_hFont(&h);
    HDC dc = GetDC(nullptr);
    HGDIOBJ old = SelectObject(dc, h ? static_cast<HGDIOBJ>(h) : GetStockObject(SYSTEM_FONT));
    TEXTMETRICW tm{};
    GetTextMetricsW(dc, &tm);
    SelectObject(dc, old);
    ReleaseDC(nullptr, dc);
    return tm.tmHeight;
}

// The name and role a screen reader gets from a control's window.
struct Described {
    std::wstring name;
    long role = 0, state = 0;
};
inline Described described(HWND w)
{
    Described d;
    ComPtr<IAccessible> acc;
    if (FAILED(AccessibleObjectFromWindow(w, OBJID_CLIENT, IID_IAccessible, acc.put_void())) || !acc) return d;
    const VARIANT self = *I4(CHILDID_SELF).get();
    Bstr name;
    if (acc->get_accName(self, name.put()) == S_OK) d.name = name.str();
    Variant role, state;
    if (SUCCEEDED(acc->get_accRole(self, role.put()))) d.role = V_I4(role.get());
    if (SUCCEEDED(acc->get_accState(self, state.put()))) d.state = V_I4(state.get());
    return d;
}

// The screen's DPI, from its twips per pixel.
inline int screen_dpi() { return static_cast<int>(std::lround(1440 / TwipsPerPixelX())); }

} // namespace tarn::test
