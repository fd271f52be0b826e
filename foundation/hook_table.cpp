#include "foundation/hook_table.h"

#include <utility>

namespace tarn {

const HookEntry *HookTable::find(WindowId window) const
{
    auto it = positions_.find(window);
    return it == positions_.end() ? nullptr : &entries_[it->second];
}

void HookTable::remove_at(std::size_t index, HookEntry &out)
{
    out = std::move(entries_[index]);
    positions_.erase(out.window);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
    for (std::size_t i = index; i < entries_.size(); ++i) positions_[entries_[i].window] = i;
}

bool HookTable::Hook(WindowProcs &procs, WindowId window, HookOwner *owner, ProcAddress shared_proc)
{
    Unhook(procs, window);
    if (!window || !owner || !procs.Hookable(window)) return false;
    ProcAddress previous = procs.Get(window);
    // A window that carries the shared procedure without an entry (someone put it back after
    // we left) would hand its messages to itself for ever.
    if (!previous || previous == shared_proc) return false;
    entries_.push_back(HookEntry{window, HookOwnerRef(owner), previous});
    positions_[window] = entries_.size() - 1;
    if (!procs.Set(window, shared_proc)) {
        HookEntry dropped;
        remove_at(entries_.size() - 1, dropped);
        return false;
    }
    return true;
}

void HookTable::Unhook(WindowProcs &procs, WindowId window)
{
    auto it = positions_.find(window);
    if (it == positions_.end()) return;
    // The entry leaves the table before the owner's reference goes: a release that ends the
    // owner may unhook again, and must find the table already consistent.
    HookEntry gone;
    remove_at(it->second, gone);
    procs.Set(window, gone.previous);
}

HookResult HookTable::Dispatch(WindowProcs &procs, WindowId window, std::uint32_t msg, std::uintptr_t wp,
                               std::intptr_t lp)
{
    const HookEntry *e = find(window);
    if (!e) return 0;
    // The handler may unhook or hook windows (the table changes under us) or drop the last
    // other reference to its owner: work from copies, the owner held for the call.
    HookOwnerRef owner = e->owner;
    ProcAddress previous = e->previous;
    HookResult result = 0;
    try {
        result = owner->HookWatches(msg) ? owner->HookMessage(msg, wp, lp) : procs.Call(previous, window, msg, wp, lp);
    } catch (...) {
        result = 0; // a failing handler answers 0, as its result stood
    }
    if (msg == kMsgNcDestroy) {
        try {
            owner->HookWindowGone();
        } catch (...) {
        }
        // Whatever the owner did, no hook outlives its window.
        Unhook(procs, window);
    }
    return result;
}

HookResult HookTable::CallPrevious(WindowProcs &procs, WindowId window, std::uint32_t msg, std::uintptr_t wp,
                                   std::intptr_t lp)
{
    const HookEntry *e = find(window);
    if (!e) return 0;
    ProcAddress previous = e->previous;
    return procs.Call(previous, window, msg, wp, lp);
}

} // namespace tarn
