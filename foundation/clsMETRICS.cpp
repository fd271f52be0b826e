#include "foundation/clsMETRICS.h"

#include "foundation/font_object.h"

#include <string>

namespace tarn {

bool clsMETRICS::GetMetrics()
{
    ClearUp();
    return FillMetrics(record_);
}

IFontDisp *clsMETRICS::Font(HDC dc) const
{
    const LOGFONTA &lf = record_.nonclient.lfMenuFont;
    char face[LF_FACESIZE + 1] = {};
    memcpy(face, lf.lfFaceName, LF_FACESIZE);
    wchar_t wide[LF_FACESIZE + 1] = {};
    MultiByteToWideChar(CP_ACP, 0, face, -1, wide, LF_FACESIZE + 1);
    int dpi = dc ? GetDeviceCaps(dc, LOGPIXELSY) : 96;
    return CreateFontObject(FontSpecFromLogFont(wide, lf.lfHeight, lf.lfWeight, lf.lfItalic, lf.lfUnderline,
                                                lf.lfStrikeOut, lf.lfCharSet, dpi));
}

void clsMETRICS::ClearUp()
{
    for (HGDIOBJ &h : handles_) {
        if (h) DeleteObject(h);
        h = nullptr;
    }
}

const LOGFONTA *clsMETRICS::logfont(int slot) const
{
    const NONCLIENTMETRICSA &m = record_.nonclient;
    switch (slot) {
    case 1: return &m.lfCaptionFont;
    case 2: return &m.lfSmCaptionFont;
    case 3: return &m.lfMenuFont;
    case 4: return &m.lfStatusFont;
    case 5: return &m.lfMessageFont;
    case 6: return &record_.icon_title;
    default: return nullptr;
    }
}

HFONT clsMETRICS::FontHandle(int slot)
{
    const LOGFONTA *lf = logfont(slot);
    if (!lf) return nullptr;
    HGDIOBJ &h = handles_[slot - 1];
    if (!h) h = CreateFontIndirectA(lf);
    return static_cast<HFONT>(h);
}

} // namespace tarn
