// Accessibility for controls that draw themselves: an IAccessible object that answers a
// control window's WM_GETOBJECT, giving screen readers the control's name, role, state and
// default action. Everything else (location, navigation, hit testing) comes from the
// system's standard object for the window.
//
//   LRESULT OnMessage(...) { if (msg == WM_GETOBJECT) return accessible_.answer(hWnd(), wp, lp, *this, handled); }
#pragma once
#include <windows.h>
#include <oleacc.h>

#include <functional>
#include <string>

#include "runtime/com.h"

namespace tarn {

class AccessibleOwner {
public:
    virtual ~AccessibleOwner() = default;
    virtual std::wstring accessible_name() = 0;
    virtual long accessible_role() = 0;   // ROLE_SYSTEM_*
    virtual long accessible_state() = 0;  // STATE_SYSTEM_* flags
    virtual std::wstring accessible_default_action() = 0;
    virtual void accessible_do_default() = 0;
};

class AccessibleObject;

// Held by the control: creates the object on the first request and cuts it off from the
// control when the control goes (a screen reader may keep the object longer).
class AccessibleLink {
public:
    AccessibleLink() = default;
    ~AccessibleLink() { disconnect(); }
    AccessibleLink(const AccessibleLink &) = delete;
    AccessibleLink &operator=(const AccessibleLink &) = delete;

    // The answer to WM_GETOBJECT; `handled` false for object ids other than the client's.
    LRESULT answer(HWND hwnd, WPARAM wp, LPARAM lp, AccessibleOwner &owner, bool &handled);
    // Tells clients that hold the object that something they read changed.
    void notify(HWND hwnd, DWORD event);
    void disconnect();

private:
    AccessibleObject *object_ = nullptr; // one reference held
};

// What a control that only shows something tells a screen reader: its name, its role, whether
// it shows and can be used; it offers no default action. The control holds one and hands it
// its window's WM_GETOBJECT:
//
//   AccessibleDescription described_{ROLE_SYSTEM_SEPARATOR, [this] { return caption(); }};
//   if (msg == WM_GETOBJECT) return described_.answer(hWnd(), wp, lp, handled);
class AccessibleDescription final : public AccessibleOwner {
public:
    AccessibleDescription(long role, std::function<std::wstring()> name, std::function<bool()> enabled = nullptr)
        : role_(role), name_(std::move(name)), enabled_(std::move(enabled))
    {
    }
    LRESULT answer(HWND hwnd, WPARAM wp, LPARAM lp, bool &handled)
    {
        hwnd_ = hwnd;
        return link_.answer(hwnd, wp, lp, *this, handled);
    }
    void disconnect() { link_.disconnect(); }

    std::wstring accessible_name() override { return name_ ? name_() : std::wstring(); }
    long accessible_role() override { return role_; }
    long accessible_state() override;
    std::wstring accessible_default_action() override { return {}; }
    void accessible_do_default() override {}

private:
    long role_;
    std::function<std::wstring()> name_;
    std::function<bool()> enabled_;
    HWND hwnd_ = nullptr;
    AccessibleLink link_;
};

} // namespace tarn
