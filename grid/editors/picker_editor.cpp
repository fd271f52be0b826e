#include "grid/editors/picker_editor.h"

#include "grid/editors/locale_text.h"

namespace tarn {

namespace {
SYSTEMTIME local_now()
{
    SYSTEMTIME st{};
    GetLocalTime(&st);
    return st;
}
} // namespace

PickerEditor::PickerEditor(EditorKind kind, const wchar_t *name, DatePicker::Format format, TextOf text_of)
    : CellEditor(kind), clock(local_now), picker_(name, format, 0, 0, 0, 0), text_of_(text_of)
{
    picker_.SetVisible(false);
    picker_.on_change = [this] {
        if (!loading_) changed_ = true;
    };
}

void PickerEditor::Load(const std::wstring &cell_text)
{
    std::optional<SYSTEMTIME> read = ReadDateTimeText(cell_text);
    had_value_ = read.has_value();
    opened_ = read ? *read : (clock ? clock() : local_now());
    loading_ = true;
    step([&] { picker_.SetParts(opened_); });
    loading_ = false;
    changed_ = false;
}

std::optional<std::wstring> PickerEditor::Value()
{
    if (!had_value_ && !changed_) return std::nullopt;
    return text_of_(picker_.Parts());
}

void PickerEditor::Reset()
{
    loading_ = true;
    step([&] { picker_.SetParts(opened_); });
    loading_ = false;
    changed_ = false;
}

} // namespace tarn
