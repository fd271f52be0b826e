// timCONTROL: the editor of time cells (type 6), a date picker in time format; it commits the
// time of day as the environment's time text. Its pop-up menu is mnuTIMETOP.
#pragma once
#include "grid/editors/picker_editor.h"

namespace tarn {

class timCONTROL final : public PickerEditor {
public:
    timCONTROL();
};

} // namespace tarn
