#include "foundation/font_object.h"

#include <cmath>

namespace tarn {

IFontDisp *CreateFontObject(const FontSpec &look)
{
    FONTDESC fd{};
    fd.cbSizeofstruct = sizeof fd;
    fd.lpstrName = const_cast<LPOLESTR>(look.name.c_str());
    fd.cySize.int64 = static_cast<LONGLONG>(std::llround(look.size * 10000.0));
    // Bold and weight agree: a bold look is at least 401, a plain one at most 400.
    SHORT weight = look.weight;
    if (look.bold && weight < 401) weight = FW_BOLD;
    if (!look.bold && weight > 400) weight = FW_NORMAL;
    fd.sWeight = weight;
    fd.sCharset = look.charset;
    fd.fItalic = look.italic;
    fd.fUnderline = look.underline;
    fd.fStrikethrough = look.strikethrough;
    IFontDisp *font = nullptr;
    if (FAILED(OleCreateFontIndirect(&fd, IID_IFontDisp, reinterpret_cast<void **>(&font)))) return nullptr;
    return font;
}

FontSpec FontSpecOf(IUnknown *unk)
{
    FontSpec look;
    IFont *font = nullptr;
    if (!unk || FAILED(unk->QueryInterface(IID_IFont, reinterpret_cast<void **>(&font))) || !font) return look;
    BSTR name = nullptr;
    if (SUCCEEDED(font->get_Name(&name)) && name) look.name = name;
    SysFreeString(name);
    CY size{};
    if (SUCCEEDED(font->get_Size(&size))) look.size = static_cast<double>(size.int64) / 10000.0;
    SHORT weight = 400, charset = 0;
    BOOL b = FALSE;
    if (SUCCEEDED(font->get_Weight(&weight))) look.weight = weight;
    if (SUCCEEDED(font->get_Charset(&charset))) look.charset = charset;
    if (SUCCEEDED(font->get_Bold(&b))) look.bold = b;
    if (SUCCEEDED(font->get_Italic(&b))) look.italic = b;
    if (SUCCEEDED(font->get_Underline(&b))) look.underline = b;
    if (SUCCEEDED(font->get_Strikethrough(&b))) look.strikethrough = b;
    font->Release();
    return look;
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
