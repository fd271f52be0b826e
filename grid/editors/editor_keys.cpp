#include "grid/editors/editor_keys.h"

namespace tarn {

CharFilter FilterEditorChar(int16_t key_ascii)
{
    CharFilter r{key_ascii, false};
    if (r.key_ascii == ',' || r.key_ascii == '"') {
        r.refused = true;
        r.key_ascii = 0;
    }
    if (r.key_ascii == keys::Tab || r.key_ascii == keys::Enter || r.key_ascii == keys::Escape) r.key_ascii = 0;
    return r;
}

bool EditorFiltersChars(EditorKind kind)
{
    return kind == EditorKind::Text || kind == EditorKind::Percent || kind == EditorKind::Date ||
           kind == EditorKind::Time;
}

namespace {
bool arrows_move_rows(EditorKind kind) { return kind == EditorKind::Text || kind == EditorKind::Check; }
} // namespace

KeySteps EditorKeyDown(EditorKind kind, int16_t key_code, int16_t shift, const KeyContext &ctx)
{
    KeySteps s;
    switch (key_code) {
    case keys::Down:
        if (arrows_move_rows(kind) && ctx.row < ctx.rows - 1) s.then(EditorStep::Commit).then(EditorStep::MoveRowDown);
        break;
    case keys::Up:
        if (arrows_move_rows(kind) && ctx.row > 0) s.then(EditorStep::Commit).then(EditorStep::MoveRowUp);
        break;
    case keys::Delete:
        if (shift == keys::ShiftCtrl && ctx.allow_edit) s.then(EditorStep::DeleteRow);
        break;
    case keys::Insert:
        if (ctx.allow_edit) s.then(EditorStep::AddRowBelow);
        break;
    case keys::Enter:
        s.then(EditorStep::Commit);
        break;
    case keys::Tab:
        s.then(EditorStep::Commit).then(EditorStep::SummaryCalc);
        if (ctx.col < ctx.cols - 1) s.then(EditorStep::NextColumn);
        break;
    case keys::Escape:
        s.then(EditorStep::ResetSelection).then(EditorStep::Commit);
        break;
    default: // the comma key, Right and every other key: nothing more than the grid's KeyDown
        break;
    }
    return s;
}

} // namespace tarn
