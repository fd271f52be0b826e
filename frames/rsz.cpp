#include "frames/rsz.h"

namespace tarn {

const ControlClass rsz::Class = {
    L"rsz",
    L"Tarn Controls size grip",
    &CLSID_rsz,
    &IID_Irsz,
    nullptr,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_NOUIACTIVATE,
    &rsz::Create,
    false, // hooks and resizes the form it sits on: not safe for scripting
};

} // namespace tarn
