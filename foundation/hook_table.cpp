#include "foundation/hook_table.h"

#include <algorithm>
#include <utility>

namespace tarn {

const HookEntry *HookTable::find(WindowId window) const
{
    auto it = positions_.find(window);
    return it == positions_.end() ? nullptr : &entries_[it->second];
}

HookEntry *HookTable::find_entry(WindowId window)
{
    auto it = positions_.find(window);
    return it == positions_.end() ? nullptr : &entries_[it->second];
}

bool HookTable::observing(WindowId window, HookObserver *observer) const
{
    const HookEntry *e = find(window);
    return e && std::find(e->observers.begin(), e->observers.end(), observer) != e->observers.end();
}

void HookTable::remove_at(std::size_t index, HookEntry &out)
{
    out = std::move(entries_[index]);
    positions_.erase(out.window);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
    for (std::size_t i = index; i < entries_.size(); ++i) positions_[entries_[i].window] = i;
}

void HookTable::drop(WindowProcs &procs, WindowId window)
{
    auto it = positions_.find(window);
    if (it == positions_.end()) return;
    // The entry leaves the table before the owner's reference goes: a release that ends the
    // owner may unhook again, and must find the table already consistent.
    HookEntry gone;
    remove_at(it->second, gone);
    procs.Set(window, gone.previous);
}

bool HookTable::Hook(WindowProcs &procs, WindowId window, HookOwner *owner, ProcAddress shared_proc)
{
    Unhook(procs, window);
    if (HookEntry *kept = find_entry(window)) {
        // Observers hold the hook: the saved procedure is already the window's own, and the
        // new owner takes the empty place.
        if (!owner || !procs.Hookable(window)) return false;
        kept->owner = HookOwnerRef(owner);
        return true;
    }
    if (!window || !owner || !procs.Hookable(window)) return false;
    ProcAddress previous = procs.Get(window);
    // A window that carries the shared procedure without an entry (someone put it back after
    // we left) would hand its messages to itself for ever.
    if (!previous || previous == shared_proc) return false;
    entries_.push_back(HookEntry{window, HookOwnerRef(owner), previous, {}});
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
    HookEntry *e = find_entry(window);
    if (!e) return;
    if (e->observers.empty()) {
        drop(procs, window);
        return;
    }
    HookOwnerRef gone = std::move(e->owner); // released after the entry is consistent
    e->owner = HookOwnerRef();
}

bool HookTable::Observe(WindowProcs &procs, WindowId window, HookObserver *observer, ProcAddress shared_proc)
{
    if (!observer) return false;
    if (HookEntry *e = find_entry(window)) {
        if (!observing(window, observer)) e->observers.push_back(observer);
        return true;
    }
    if (!window || !procs.Hookable(window)) return false;
    ProcAddress previous = procs.Get(window);
    if (!previous || previous == shared_proc) return false;
    entries_.push_back(HookEntry{window, HookOwnerRef(), previous, {observer}});
    positions_[window] = entries_.size() - 1;
    if (!procs.Set(window, shared_proc)) {
        HookEntry dropped;
        remove_at(entries_.size() - 1, dropped);
        return false;
    }
    return true;
}

void HookTable::Unobserve(WindowProcs &procs, WindowId window, HookObserver *observer)
{
    HookEntry *e = find_entry(window);
    if (!e) return;
    e->observers.erase(std::remove(e->observers.begin(), e->observers.end(), observer), e->observers.end());
    if (e->observers.empty() && !e->owner) drop(procs, window);
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
    std::vector<HookObserver *> observers = e->observers;
    HookResult result = 0;
    try {
        result = owner && owner->HookWatches(msg) ? owner->HookMessage(msg, wp, lp)
                                                  : procs.Call(previous, window, msg, wp, lp);
    } catch (...) {
        result = 0; // a failing handler answers 0, as its result stood
    }
    // Each observer hears the answer, unless an earlier one (or the answer) made it stop.
    for (HookObserver *o : observers) {
        if (!observing(window, o)) continue;
        try {
            o->HookObserved(msg, wp, lp, result);
        } catch (...) {
        }
    }
    if (msg == kMsgNcDestroy) {
        if (owner) {
            try {
                owner->HookWindowGone();
            } catch (...) {
            }
        }
        for (HookObserver *o : observers) {
            if (!observing(window, o)) continue;
            try {
                o->HookObserverGone();
            } catch (...) {
            }
        }
        // Whatever they did, no hook outlives its window.
        drop(procs, window);
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
