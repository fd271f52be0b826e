// Accessibility for controls that draw themselves: an IAccessible object that answers a
// control window's WM_GETOBJECT, giving screen readers the control's name, keyboard shortcut,
// description, role, state, value and default action. What the owner leaves empty, and
// everything else (location, navigation, hit testing), comes from the system's standard
// object for the window. UserControl is the owner for every control (user_control.h); a
// control only overrides the few answers that differ. A control that shows a table gives its
// rows and cells as children (accessible_table.h).
#pragma once
#include <windows.h>
#include <oleacc.h>

#include <string>

#include "runtime/com.h"

namespace tarn {

class AccessibleOwner {
public:
    virtual ~AccessibleOwner() = default;
    // "" for a text: the standard object's answer.
    virtual std::wstring accessible_name() = 0;
    virtual std::wstring accessible_shortcut() = 0; // "Alt+S"
    virtual std::wstring accessible_description() = 0;
    virtual std::wstring accessible_value() = 0; // "" : the control has no value
    virtual long accessible_role() = 0;   // ROLE_SYSTEM_*
    virtual long accessible_state() = 0;  // STATE_SYSTEM_* flags
    virtual std::wstring accessible_default_action() = 0;
    virtual void accessible_do_default() = 0;
    // Children of its own (a table's rows), numbered from 1; none by default.
    virtual long accessible_child_count() { return 0; }
    virtual ComPtr<IDispatch> accessible_child(long id) { return {}; }
    // The focused object when the control names it itself (a cell, an editor's window's
    // object); false leaves the answer to the standard object.
    virtual bool accessible_focus(VARIANT *out) { return false; }
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

} // namespace tarn
