// UserControl as its own accessible object's owner: every control answers WM_GETOBJECT with
// the name and shortcut of its caption, its tooltip as description, and the role, state, value
// and default action its hooks give. A control overrides only the hooks that differ.
#include "runtime/mnemonic.h"
#include "runtime/user_control.h"

namespace tarn {

long UserControl::AccessibleState()
{
    long s = 0;
    if (!hwnd_ || !IsWindowVisible(hwnd_)) s |= STATE_SYSTEM_INVISIBLE;
    if (hwnd_ && !IsWindowEnabled(hwnd_)) s |= STATE_SYSTEM_UNAVAILABLE;
    else if (CanGetFocus()) s |= STATE_SYSTEM_FOCUSABLE;
    if (focus_within_) s |= STATE_SYSTEM_FOCUSED;
    return s;
}

void UserControl::AccessibleChanged(DWORD event, long child) { accessible_.notify(hwnd_, event, child); }

std::wstring UserControl::accessible_name() { return StripMnemonic(Caption()); }
std::wstring UserControl::accessible_shortcut() { return MnemonicShortcut(Caption()); }
std::wstring UserControl::accessible_description() { return ToolTipText(); }
std::wstring UserControl::accessible_value() { return AccessibleValue(); }
long UserControl::accessible_role() { return AccessibleRole(); }
long UserControl::accessible_state() { return AccessibleState(); }
std::wstring UserControl::accessible_default_action() { return DefaultAction(); }
void UserControl::accessible_do_default() { DoDefaultAction(); }

} // namespace tarn
