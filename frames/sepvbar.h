// sepvbar (TarnControls.sepvbar): the upright sibling of the separator bar, one group frame
// (framMAIN) collapsed to an etched vertical line. It has no members and no code of its own:
// the frame keeps its design place, near the left edge, and runs past any height.
#pragma once
#include "runtime/control_impl.h"
#include "runtime/group_frame.h"
#include "tarnctls_h.h"

namespace tarn {

class sepvbar final : public ControlImpl<sepvbar, Isepvbar> {
public:
    static const ControlClass Class;
    sepvbar();

protected:
    void Initialize() override;
    bool CanGetFocus() const override { return false; }
    long AccessibleRole() override { return ROLE_SYSTEM_SEPARATOR; }

private:
    GroupFrame framMAIN;
};

} // namespace tarn
