#include "runtime/ambient.h"

#include "foundation/font_object.h"
#include "foundation/metrics.h"

namespace tarn {

bool AmbientProperties::get(DISPID id, Variant &out) const
{
    if (!site_) return false;
    ComPtr<IDispatch> disp = site_.as<IDispatch>(IID_IDispatch);
    if (!disp) return false;
    DISPPARAMS none{};
    HRESULT hr = disp->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, out.put(), nullptr, nullptr);
    return SUCCEEDED(hr) && !out.empty();
}

bool AmbientProperties::UserMode() const
{
    Variant v, b;
    if (!get(DISPID_AMBIENT_USERMODE, v) || !v.convert(VT_BOOL, b)) return true;
    return V_BOOL(b.get()) != VARIANT_FALSE;
}

ComPtr<IFontDisp> AmbientProperties::Font() const
{
    Variant v;
    if (get(DISPID_AMBIENT_FONT, v) && (v.vt() == VT_DISPATCH || v.vt() == VT_UNKNOWN) && V_UNKNOWN(v.get())) {
        if (IFontDisp *copy = CloneFontObject(V_UNKNOWN(v.get()))) return ComPtr<IFontDisp>::attach(copy);
    }
    return DefaultAmbientFont();
}

OleColor AmbientProperties::BackColor() const
{
    Variant v, c;
    if (!get(DISPID_AMBIENT_BACKCOLOR, v) || !v.convert(VT_I4, c)) return syscolor::ButtonFace;
    return static_cast<OleColor>(V_I4(c.get()));
}

OleColor AmbientProperties::ForeColor() const
{
    Variant v, c;
    if (!get(DISPID_AMBIENT_FORECOLOR, v) || !v.convert(VT_I4, c)) return syscolor::ButtonText;
    return static_cast<OleColor>(V_I4(c.get()));
}

std::wstring AmbientProperties::DisplayName() const
{
    Variant v, s;
    if (!get(DISPID_AMBIENT_DISPLAYNAME, v) || !v.convert(VT_BSTR, s)) return L"";
    return from_bstr(V_BSTR(s.get()));
}

ComPtr<IFontDisp> DefaultAmbientFont()
{
    MetricsRecord record{};
    FontSpec look; // MS Sans Serif 8.25 when even the system cannot say
    if (FillMetrics(record)) {
        const LOGFONTA &lf = record.nonclient.lfMessageFont;
        char narrow[LF_FACESIZE + 1] = {}; // the field need not hold a terminating zero
        memcpy(narrow, lf.lfFaceName, LF_FACESIZE);
        wchar_t face[LF_FACESIZE + 1] = {};
        MultiByteToWideChar(CP_ACP, 0, narrow, -1, face, LF_FACESIZE + 1);
        HDC dc = GetDC(nullptr);
        int dpi = dc ? GetDeviceCaps(dc, LOGPIXELSY) : 96;
        if (dc) ReleaseDC(nullptr, dc);
        look = FontSpecFromLogFont(face, lf.lfHeight, lf.lfWeight, lf.lfItalic, lf.lfUnderline, lf.lfStrikeOut,
                                   lf.lfCharSet, dpi);
    }
    return ComPtr<IFontDisp>::attach(CreateFontObject(look));
}

} // namespace tarn
