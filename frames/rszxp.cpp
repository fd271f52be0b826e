#include "frames/rszxp.h"

namespace tarn {

const ControlClass rszxp::Class = {
    L"rszxp",
    L"Tarn Controls size grip, XP look",
    &CLSID_rszxp,
    &IID_Irszxp,
    nullptr,
    OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_NOUIACTIVATE,
    &rszxp::Create,
    false, // hooks and resizes the form it sits on: not safe for scripting
};

} // namespace tarn
