// ITarnChangeKeySink: an optional companion of IPropertyNotifySink. A change notice carries a
// DISPID, which cannot name keys that are not member names ("TEXT", "BACKCOLORCUST"); a sink
// that also implements this interface is told the exact key as well. The test container uses it.
#pragma once
#include <unknwn.h>

// {5B0A2D4E-7C1F-4E8B-9A3D-2F6E1C0B7A91}
MIDL_INTERFACE("5B0A2D4E-7C1F-4E8B-9A3D-2F6E1C0B7A91")
ITarnChangeKeySink : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE OnChangedKey(LPCOLESTR key) = 0;
};
__CRT_UUID_DECL(ITarnChangeKeySink, 0x5b0a2d4e, 0x7c1f, 0x4e8b, 0x9a, 0x3d, 0x2f, 0x6e, 0x1c, 0x0b, 0x7a, 0x91)
