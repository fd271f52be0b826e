#include "server/classes.h"

#include "buttons/cbtn.h"
#include "frames/cframe.h"
#include "frames/lnev.h"
#include "frames/downarrow.h"
#include "frames/lneh.h"
#include "frames/pnl.h"
#include "frames/rsz.h"
#include "frames/rszxp.h"
#include "frames/sepbar.h"
#include "frames/sepvbar.h"
#include "grid/grdchk.h"
#include "grid/grid.h"
#include "inputs/dlst.h"
#include "inputs/fontchars.h"
#include "inputs/tbf.h"
#include "inputs/updown.h"
#include "runtime/property_page.h"
#include "server/resource.h"
#include "services/Subclass.h"
#include "services/mnutxt.h"
#include "services/resizelck.h"

namespace tarn {

namespace {
const ServerClass kClasses[] = {
    {&cframe::Class, IDB_TOOLBOX_CFRAME},
    {&lnev::Class, IDB_TOOLBOX_LNEV},
    {&sepbar::Class, IDB_TOOLBOX_SEPBAR},
    {&sepvbar::Class, IDB_TOOLBOX_SEPVBAR},
    {&downarrow::Class, IDB_TOOLBOX_DOWNARROW},
    {&lneh::Class, IDB_TOOLBOX_LNEH},
    {&rsz::Class, IDB_TOOLBOX_RSZ},
    {&rszxp::Class, IDB_TOOLBOX_RSZXP},
    {&pnl::Class, IDB_TOOLBOX_PNL},
    {&grid::Class, IDB_TOOLBOX_GRID},
    {&grdchk::Class, 0}, // private: the grid places it
    {&cbtn::Class, IDB_TOOLBOX_CBTN},
    {&updown::Class, IDB_TOOLBOX_UPDOWN},
    {&dlst::Class, IDB_TOOLBOX_DLST},
    {&tbf::Class, IDB_TOOLBOX_TBF},
    {&fontchars::Class, IDB_TOOLBOX_FONTCHARS},
    {&Subclass::Class, 0}, // private: the resize lock's part, created by tests by ProgID
    {&resizelck::Class, IDB_TOOLBOX_RESIZELCK},
    {&mnutxt::Class, IDB_TOOLBOX_MNUTXT},
};

const SupportClass kSupport[] = {
    {&CLSID_TarnGeneralPage, L"Tarn Controls General property page", &CreateGeneralPage},
};
} // namespace

std::span<const SupportClass> SupportClasses() { return kSupport; }

HRESULT (*CreatorOf(REFCLSID clsid))(REFIID, void **)
{
    if (const ControlClass *c = FindControlClass(clsid)) return c->create;
    for (const SupportClass &s : kSupport)
        if (*s.clsid == clsid) return s.create;
    return nullptr;
}

std::span<const ServerClass> ServerClasses() { return kClasses; }

const ControlClass *FindControlClass(REFCLSID clsid)
{
    for (const ServerClass &c : kClasses)
        if (*c.control->clsid == clsid) return c.control;
    return nullptr;
}

} // namespace tarn
