// dtpCONTROL: the editor of date cells (type 1), a date picker in the user's short date format;
// it commits the date as the user's short date text. Its pop-up menu is mnuDATETOP.
#pragma once
#include "grid/editors/picker_editor.h"

namespace tarn {

class dtpCONTROL final : public PickerEditor {
public:
    dtpCONTROL();
};

} // namespace tarn
