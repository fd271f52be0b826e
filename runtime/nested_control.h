// NestedControl: a control of the library placed inside another control as a constituent, as
// a host's form holds a user control (the grid's number box and check box editors). The inner
// control is in place in a window of the constituent's own, which moves, shows, hides and parks
// like any constituent's; the outer control uses it only through its public interface and
// hears its events through on_event, with by-reference arguments as a host handler has them.
//
// The inner control's windows are watched, not owned: their keys, mouse and focus reach the
// constituent's handlers first (a key handler that sets the key to 0 keeps it from the inner
// control), and the focus entering or leaving the inner control is the constituent's.
#pragma once
#include <vector>

#include "runtime/user_control.h"

namespace tarn {

class NestedControl final : public WindowedConstituent, private EventListener {
public:
    using CreateFn = HRESULT (*)(REFIID iid, void **out);
    // `create` makes the inner control (a control class's Create); it is then initialised as
    // new and activated in place.
    NestedControl(std::wstring name, CreateFn create, float left, float top, float width, float height);
    ~NestedControl() override;

    // The inner control through one of its interfaces; null when it could not be made.
    template <class I> ComPtr<I> As(REFIID iid) const { return control_.as<I>(iid); }
    // Its window (null when it could not be made or activated).
    HWND ControlWindow() const;

    std::function<void(DISPID id, EventArgs &args)> on_event;

protected:
    bool on_window_message(UINT msg, WPARAM wp, LPARAM lp, LRESULT &result) override;

private:
    class Site;
    void OnEvent(DISPID id, EventArgs &args) override;
    void fit();
    void watch_parts();
    void unwatch_parts();

    ComPtr<IUnknown> control_;
    UserControl *inner_ = nullptr;
    Site *site_ = nullptr; // one reference held
    std::vector<HWND> watched_;
};

} // namespace tarn
