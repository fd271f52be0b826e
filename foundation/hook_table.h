// The table of hooked windows: which window is hooked, by which owner, and the procedure that
// was installed before the hook. Pure bookkeeping and the hook, unhook and dispatch steps; the
// platform's window-procedure slot is reached through WindowProcs, so all of it runs natively
// with fakes, and foundation/window_hooks.h binds it to real windows.
//
//   table.Hook(procs, window, owner, shared_proc);   // owner now sees the window's messages
//   table.Dispatch(procs, window, msg, wp, lp);      // what the shared procedure does
//   table.Unhook(procs, window);                     // the saved procedure is back
//
// Besides its one owner, which answers the messages it watches, a window may have observers:
// controls that only follow what happens to it (a size grip following the form's size). They
// hear every message after it was answered and change nothing, so an owner hooking the same
// window (a resize lock) neither displaces them nor is displaced by them.
#pragma once
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace tarn {

using WindowId = std::uintptr_t;   // a window handle
using ProcAddress = std::uintptr_t; // a window procedure's address
using HookResult = std::intptr_t;   // LRESULT

constexpr std::uint32_t kMsgNcDestroy = 0x82;

// Who hooked a window, as the table sees it. The table keeps a counted reference to each owner
// while its entry lives, so an owner stays alive as long as its window is hooked.
class HookOwner {
public:
    virtual void HookAddRef() = 0;
    virtual void HookRelease() = 0;
    // Whether the owner watches this message number.
    virtual bool HookWatches(std::uint32_t msg) = 0;
    // A watched message: the owner's answer is what the window procedure returns.
    virtual HookResult HookMessage(std::uint32_t msg, std::uintptr_t wp, std::intptr_t lp) = 0;
    // The window is being destroyed (WM_NCDESTROY): the owner lets go of it.
    virtual void HookWindowGone() = 0;

protected:
    ~HookOwner() = default;
};

// One counted reference to an owner.
class HookOwnerRef {
public:
    HookOwnerRef() = default;
    explicit HookOwnerRef(HookOwner *o) : o_(o)
    {
        if (o_) o_->HookAddRef();
    }
    HookOwnerRef(const HookOwnerRef &other) : HookOwnerRef(other.o_) {}
    HookOwnerRef(HookOwnerRef &&other) noexcept : o_(other.o_) { other.o_ = nullptr; }
    HookOwnerRef &operator=(HookOwnerRef other) noexcept
    {
        HookOwner *t = o_;
        o_ = other.o_;
        other.o_ = t;
        return *this;
    }
    ~HookOwnerRef()
    {
        if (o_) o_->HookRelease();
    }
    HookOwner *get() const { return o_; }
    HookOwner *operator->() const { return o_; }
    explicit operator bool() const { return o_ != nullptr; }

private:
    HookOwner *o_ = nullptr;
};

// Follows a window's messages without answering them. The table does not count references to
// observers: an observer stops observing before it goes.
class HookObserver {
public:
    // A message the window has just handled, with the answer it gave.
    virtual void HookObserved(std::uint32_t msg, std::uintptr_t wp, std::intptr_t lp, HookResult result) = 0;
    // The window is being destroyed (WM_NCDESTROY): the observer is no longer observing.
    virtual void HookObserverGone() = 0;

protected:
    ~HookObserver() = default;
};

// The platform's window-procedure slot of a window.
class WindowProcs {
public:
    // Whether the window can be hooked from here (it exists and belongs to the calling thread).
    virtual bool Hookable(WindowId window) = 0;
    virtual ProcAddress Get(WindowId window) = 0;
    // Installs `proc`; false when the platform refused.
    virtual bool Set(WindowId window, ProcAddress proc) = 0;
    virtual HookResult Call(ProcAddress proc, WindowId window, std::uint32_t msg, std::uintptr_t wp, std::intptr_t lp) = 0;

protected:
    ~WindowProcs() = default;
};

struct HookEntry {
    WindowId window = 0;
    HookOwnerRef owner; // may be empty while observers keep the hook
    ProcAddress previous = 0;
    std::vector<HookObserver *> observers;
};

class HookTable {
public:
    // Hooks `window` for `owner`: a window already in the table is unhooked first, so it is
    // never in the table twice and the saved procedure is always the window's own. False (and
    // nothing changed but that unhook) when the window cannot be hooked.
    bool Hook(WindowProcs &procs, WindowId window, HookOwner *owner, ProcAddress shared_proc);
    // Puts back the procedure saved for `window` and drops its entry (and the owner's
    // reference); nothing when the window is not in the table. While observers follow the
    // window only the owner goes: the hook stays for them.
    void Unhook(WindowProcs &procs, WindowId window);
    // `observer` hears the window's messages from now on (the window is hooked for it if no
    // one hooked it yet); false when the window cannot be hooked.
    bool Observe(WindowProcs &procs, WindowId window, HookObserver *observer, ProcAddress shared_proc);
    // `observer` hears no more; the hook ends when nobody else needs it.
    void Unobserve(WindowProcs &procs, WindowId window, HookObserver *observer);
    // The shared procedure: the owner's answer for a watched message, the saved procedure's for
    // any other; 0 for a window not in the table. WM_NCDESTROY ends the hook.
    HookResult Dispatch(WindowProcs &procs, WindowId window, std::uint32_t msg, std::uintptr_t wp, std::intptr_t lp);
    // The saved procedure's answer to a message (0 when the window is not in the table).
    HookResult CallPrevious(WindowProcs &procs, WindowId window, std::uint32_t msg, std::uintptr_t wp, std::intptr_t lp);

    std::size_t count() const { return entries_.size(); }
    // Entry `index`, counted from 1 in hooking order.
    const HookEntry &entry(std::size_t index) const { return entries_.at(index - 1); }
    // The entry of `window`, or null. Constant time: a message costs the same however many
    // windows are hooked.
    const HookEntry *find(WindowId window) const;

private:
    HookEntry *find_entry(WindowId window);
    void remove_at(std::size_t index, HookEntry &out);
    // Drops the entry whatever it holds and puts back the saved procedure.
    void drop(WindowProcs &procs, WindowId window);
    bool observing(WindowId window, HookObserver *observer) const;

    std::vector<HookEntry> entries_;                      // hooking order
    std::unordered_map<WindowId, std::size_t> positions_; // window -> index into entries_
};

} // namespace tarn
