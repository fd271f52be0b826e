// The design-time face of the invisible service controls (resizelck, mnutxt): their toolbox
// picture at twice its size. The controls size themselves to it at design time and hide it at
// run time, when hosts do not show them anyway.
#pragma once
#include "runtime/constituents.h"

namespace tarn {

class ServiceIcon final : public Constituent {
public:
    // `bitmap`: the 16 x 15 toolbox bitmap resource of the DLL.
    ServiceIcon(std::wstring name, int bitmap) : Constituent(std::move(name)), bitmap_(bitmap) {}
    void draw(HDC dc, const Scale &scale) const override;

    // Twice the toolbox picture at 96 DPI, in twips.
    float Left = 0, Top = 0, Width = 480, Height = 450;

private:
    int bitmap_;
};

} // namespace tarn
