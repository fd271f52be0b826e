// downarrow (TarnControls.downarrow): the small downward arrow of a drop-down button. It draws
// nothing itself: six horizontal line constituents, one design pixel apart and each a pixel
// narrower at both ends than the one above, make the arrow (the top two stay hidden, as
// designed). It is always 185 x 210 twips: every notice that can change its size forces that
// size back. Its surface's look (flat or 3-D) follows the system version, read once when it is
// created; hosts can read it through the stock Appearance property, which is hidden.
#pragma once
#include "runtime/control_impl.h"
#include "tarnctls_h.h"

namespace tarn {

class downarrow final : public ControlImpl<downarrow, Idownarrow> {
public:
    static const ControlClass Class;
    downarrow();

    // Idownarrow
    STDMETHODIMP get_Appearance(short *value) override;

protected:
    void Initialize() override;
    void InitProperties() override { force_size(); }
    void ReadProperties(PropertyBag &) override { force_size(); }
    void Resize() override { force_size(); }
    void AmbientChanged(DISPID) override { force_size(); }
    bool CanGetFocus() const override { return false; }
    long AccessibleRole() override { return ROLE_SYSTEM_GRAPHIC; }

private:
    void force_size();

    Line lneARROW1, lneARROW2, lneARROW3, lneARROW4, lneARROW5, lneARROW6;
};

} // namespace tarn
