// PickerEditor: what the date and the time editors share: a date-and-time picker that reads
// the cell text in the user's format, and commits its value as text in the editor's format.
// A cell whose text is no date opens on the clock's time, and commits nothing unless the user
// changes the value.
#pragma once
#include <functional>

#include "grid/editors/cell_editor.h"
#include "runtime/date_picker.h"

namespace tarn {

class PickerEditor : public CellEditor {
public:
    WindowedConstituent &Window() override { return picker_; }
    DatePicker &Picker() { return picker_; }

    void Load(const std::wstring &cell_text) override;
    std::optional<std::wstring> Value() override;
    void Reset() override;

    // The time now (the local time by default; tests set their own).
    std::function<SYSTEMTIME()> clock;

protected:
    using TextOf = std::wstring (*)(const SYSTEMTIME &);
    PickerEditor(EditorKind kind, const wchar_t *name, DatePicker::Format format, TextOf text_of);

private:
    DatePicker picker_;
    TextOf text_of_;
    SYSTEMTIME opened_{};
    bool had_value_ = false; // the cell held a date or time
    bool changed_ = false;   // the user changed the value since it opened
    bool loading_ = false;
};

} // namespace tarn
