#include "grid/editors/timCONTROL.h"

#include "grid/editors/locale_text.h"

namespace tarn {

timCONTROL::timCONTROL() : PickerEditor(EditorKind::Time, L"timCONTROL", DatePicker::Time, &TimeText) {}

} // namespace tarn
