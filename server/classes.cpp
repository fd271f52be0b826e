#include "server/classes.h"

#include "buttons/cbtn.h"
#include "frames/cframe.h"
#include "grid/grid.h"
#include "server/resource.h"

namespace tarn {

namespace {
const ServerClass kClasses[] = {
    {&cframe::Class, IDB_TOOLBOX_CFRAME},
    {&grid::Class, IDB_TOOLBOX_GRID},
    {&cbtn::Class, IDB_TOOLBOX_CBTN},
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
