// Ambient properties: what the container tells its controls (user mode, font, colours). Read
// live from the site each time; without a site (a script's CreateObject, a test) every value
// falls back to its default: run mode, the system message font, the button colours.
#pragma once
#include <ocidl.h>
#include <olectl.h>

#include <string>

#include "foundation/colors.h"
#include "runtime/com.h"

namespace tarn {

class AmbientProperties {
public:
    void set_site(IOleClientSite *site) { site_ = site; }

    // The raw ambient value; false when there is no site or it does not supply the value.
    bool get(DISPID id, Variant &out) const;

    bool UserMode() const;
    // A font of the caller's own (never the container's object itself).
    ComPtr<IFontDisp> Font() const;
    OleColor BackColor() const;
    OleColor ForeColor() const;
    std::wstring DisplayName() const;

private:
    ComPtr<IOleClientSite> site_;
};

// The font a control uses when its container offers none: the system's message font.
ComPtr<IFontDisp> DefaultAmbientFont();

} // namespace tarn
