#include "server/classes.h"

#include "frames/cframe.h"
#include "frames/lnev.h"
#include "grid/grdchk.h"
#include "inputs/updown.h"
#include "server/resource.h"

namespace tarn {

namespace {
const ServerClass kClasses[] = {
    {&cframe::Class, IDB_TOOLBOX_CFRAME},
    {&updown::Class, IDB_TOOLBOX_UPDOWN},
    {&lnev::Class, IDB_TOOLBOX_LNEV},
    {&grdchk::Class, 0}, // private: the grid places it
};
} // namespace

std::span<const ServerClass> ServerClasses() { return kClasses; }

const ControlClass *FindControlClass(REFCLSID clsid)
{
    for (const ServerClass &c : kClasses)
        if (*c.control->clsid == clsid) return c.control;
    return nullptr;
}

} // namespace tarn
