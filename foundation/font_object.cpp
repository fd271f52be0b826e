#include "foundation/font_object.h"

#include <cmath>

namespace tarn {

IFontDisp *CreateFontObject(const FontSpec &spec)
{
    FONTDESC fd{};
    fd.cbSizeofstruct = sizeof fd;
    fd.lpstrName = const_cast<LPOLESTR>(spec.name.c_str());
    fd.cySize.int64 = static_cast<LONGLONG>(std::llround(spec.size * 10000.0));
    // Bold and weight agree: a bold spec is at least 401, a plain one at most 400.
    SHORT weight = spec.weight;
    if (spec.bold && weight < 401) weight = FW_BOLD;
    if (!spec.bold && weight > 400) weight = FW_NORMAL;
    fd.sWeight = weight;
    fd.sCharset = spec.charset;
    fd.fItalic = spec.italic;
    fd.fUnderline = spec.underline;
    fd.fStrikethrough = spec.strikethrough;
    IFontDisp *font = nullptr;
    if (FAILED(OleCreateFontIndirect(&fd, IID_IFontDisp, reinterpret_cast<void **>(&font)))) return nullptr;
    return font;
}

FontSpec FontSpecOf(IUnknown *unk)
{
    FontSpec spec;
    IFont *font = nullptr;
    if (!unk || FAILED(unk->QueryInterface(IID_IFont, reinterpret_cast<void **>(&font))) || !font) return spec;
    BSTR name = nullptr;
    if (SUCCEEDED(font->get_Name(&name)) && name) spec.name = name;
    SysFreeString(name);
    CY size{};
    if (SUCCEEDED(font->get_Size(&size))) spec.size = static_cast<double>(size.int64) / 10000.0;
    SHORT weight = 400, charset = 0;
    BOOL b = FALSE;
    if (SUCCEEDED(font->get_Weight(&weight))) spec.weight = weight;
    if (SUCCEEDED(font->get_Charset(&charset))) spec.charset = charset;
    if (SUCCEEDED(font->get_Bold(&b))) spec.bold = b;
    if (SUCCEEDED(font->get_Italic(&b))) spec.italic = b;
    if (SUCCEEDED(font->get_Underline(&b))) spec.underline = b;
    if (SUCCEEDED(font->get_Strikethrough(&b))) spec.strikethrough = b;
    font->Release();
    return spec;
}

IFontDisp *CloneFontObject(IUnknown *unk)
{
    IFont *font = nullptr;
    if (!unk || FAILED(unk->QueryInterface(IID_IFont, reinterpret_cast<void **>(&font))) || !font) return nullptr;
    IFont *copy = nullptr;
    HRESULT hr = font->Clone(&copy);
    font->Release();
    if (FAILED(hr) || !copy) return nullptr;
    IFontDisp *disp = nullptr;
    copy->QueryInterface(IID_IFontDisp, reinterpret_cast<void **>(&disp));
    copy->Release();
    return disp;
}

} // namespace tarn
