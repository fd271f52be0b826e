// clsMETRICS: an instance's own copy of the system's non-client metrics, and the system
// fonts in it as font objects and font handles.
#pragma once
#include <windows.h>
#include <olectl.h>

#include "foundation/metrics.h"

namespace tarn {

class clsMETRICS {
public:
    clsMETRICS() = default;
    clsMETRICS(const clsMETRICS &) = delete;
    clsMETRICS &operator=(const clsMETRICS &) = delete;
    ~clsMETRICS() { ClearUp(); }

    // ClearUp, then fill the instance's record; true when both platform calls succeed.
    bool GetMetrics();
    // A new font object of the record's menu font, sized for `dc`'s vertical resolution.
    IFontDisp *Font(HDC dc) const;
    // Deletes every held font handle, slot 1 to 6, and empties the slots.
    void ClearUp();

    // The GDI font of one of the record's fonts, made on first use and held in its slot until
    // ClearUp: 1 caption, 2 small caption, 3 menu, 4 status, 5 message, 6 icon title.
    HFONT FontHandle(int slot);

    const MetricsRecord &Record() const { return record_; }

private:
    const LOGFONTA *logfont(int slot) const;

    MetricsRecord record_{};
    HGDIOBJ handles_[6]{};
};

} // namespace tarn
