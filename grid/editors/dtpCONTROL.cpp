#include "grid/editors/dtpCONTROL.h"

#include "grid/editors/locale_text.h"

namespace tarn {

dtpCONTROL::dtpCONTROL() : PickerEditor(EditorKind::Date, L"dtpCONTROL", DatePicker::ShortDate, &ShortDateText) {}

} // namespace tarn
