// The General property page: one page class for every control, built from the type
// information of the objects it is given (IPropertyPage2). Each editable property gets a row:
// a text box for texts and numbers, an OLE colour as "&H...&" text, a list of members for an
// enumeration, True and False for a Boolean, the names a control offers through
// IPerPropertyBrowsing for a property that is no enumeration; fonts and pictures are shown
// (the stock font and picture pages edit them). Apply writes the changed rows through each
// object's IDispatch, so the control's own puts run: change notices, repaint rules and the
// container's OnRequestEdit all hold. With several objects, the page edits the properties they
// share and shows a value only where all agree.
#pragma once
#include <ocidl.h>

namespace tarn {

// {496AC3C4-F251-479F-81D2-4654766F5FC4}
inline constexpr CLSID CLSID_TarnGeneralPage = {
    0x496ac3c4, 0xf251, 0x479f, {0x81, 0xd2, 0x46, 0x54, 0x76, 0x6f, 0x5f, 0xc4}};

// The class factory's creation function for the page.
HRESULT CreateGeneralPage(REFIID iid, void **out);

// The page window's class goes when the DLL unloads.
void UnregisterPropertyPageWindowClass();

} // namespace tarn
