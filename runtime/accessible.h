// Accessibility for controls that draw themselves: an IAccessible object that answers a
// control window's WM_GETOBJECT, giving screen readers the control's name, keyboard shortcut,
// description, role, state, value and default action. A control with parts of its own gives
// them as children, numbered from 1, each either simple or an object of its own. A simple child
// (the tabs of a tab strip) is described by the control: name, role, state, shortcut, default
// action and where it is; the object answers for it (location, hit testing, navigation among
// the children, focus and selection). A child with an object (a table's row holding its cells)
// answers for itself: the control's object hands it out and passes questions about it on to it.
// What the owner leaves empty, and everything else, comes from the system's standard object
// for the window. UserControl is the owner for every control (user_control.h); a control only
// overrides the few answers that differ.
#pragma once
#include <windows.h>
#include <oleacc.h>

#include <string>

#include "runtime/com.h"

namespace tarn {

// A part of a control that has no object of its own.
struct AccessibleElement {
    std::wstring name, shortcut, default_action;
    long role = 0;   // ROLE_SYSTEM_*
    long state = 0;  // STATE_SYSTEM_* flags
    RECT rect{};     // in the control window's client pixels
};

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

    // Children, 1 to the count: those with an object of their own give it (null: a simple
    // child, described by accessible_child).
    virtual long accessible_child_count() { return 0; }
    virtual ComPtr<IDispatch> accessible_child_object(long id) { return {}; }
    virtual bool accessible_child(long id, AccessibleElement &out) { return false; }
    virtual void accessible_child_do_default(long id) {}
    // What has the keyboard focus when the control names it: a child's number (VT_I4) or a
    // deeper object (VT_DISPATCH: a cell, an editor's window's object). False leaves the answer
    // to the standard object.
    virtual bool accessible_focus(VARIANT *out) { return false; }
    // The child that is selected (CHILDID_SELF: none of them).
    virtual long accessible_selected_child() { return CHILDID_SELF; }
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
    // Tells clients that hold the object that something they read changed (of the control
    // itself, or of one of its children).
    void notify(HWND hwnd, DWORD event, long child = CHILDID_SELF);
    void disconnect();

private:
    AccessibleObject *object_ = nullptr; // one reference held
};

} // namespace tarn
