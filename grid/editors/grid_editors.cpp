#include "grid/editors/grid_editors.h"

#include "grid/editors/cell_values.h"
#include "grid/editors/grid_events.h"
#include "grid/editors/locale_text.h"

namespace tarn {

namespace ge = grid_events;

void GridEditorHost::ShowRefusal(HWND editor) { MessageBoxW(editor, kRefusedCharText, kRefusedCharTitle, MB_OK); }

GridEditors::GridEditors(GridEditorHost &host) : host_(host)
{
    clock_ = [] {
        SYSTEMTIME st{};
        GetLocalTime(&st);
        return st;
    };
    for (CellEditor *e : std::initializer_list<CellEditor *>{&txt_, &dtp_, &img_, &chk_, &cbo_, &udn_, &tim_}) wire(*e);
    cbo_.Combo().on_click = [this] { raise(ge::CboClick); };
    cbo_.Combo().on_drop_down = [this] { raise(ge::CboBoxClick); };
    img_.Combo().on_click = [this] { raise(ge::BtnBoxImgSelect); };
    chk_.Nested().on_event = [this](DISPID id, EventArgs &) {
        if (id == 1) raise(ge::BtnBoxClick); // the check box's Click
    };
    build_menu(mnuDATETOP, DateMenu());
    build_menu(mnuTIMETOP, TimeMenu());
    mnuDATETOP.OpenOn(dtp_.Window());
    mnuTIMETOP.OpenOn(tim_.Window());
}

std::vector<WindowedConstituent *> GridEditors::Windows()
{
    return {&txt_.Window(), &dtp_.Window(), &img_.Window(), &chk_.Window(),
            &cbo_.Window(), &udn_.Window(), &tim_.Window()};
}

CellEditor &GridEditors::Editor(EditorKind kind)
{
    switch (kind) {
    case EditorKind::Date: return dtp_;
    case EditorKind::ImageList: return img_;
    case EditorKind::Check: return chk_;
    case EditorKind::List: return cbo_;
    case EditorKind::Percent: return udn_;
    case EditorKind::Time: return tim_;
    case EditorKind::Text: break;
    }
    return txt_;
}

void GridEditors::SetFont(IFontDisp *font)
{
    for (WindowedConstituent *w : {&txt_.Window(), &dtp_.Window(), &img_.Window(), &cbo_.Window(), &tim_.Window()})
        step([&] { w->SetFont(font); });
    step([&] {
        if (ComPtr<Iupdown> b = udn_.Box()) b->putref_Font(font);
    });
}

void GridEditors::SetClock(std::function<SYSTEMTIME()> clock)
{
    clock_ = std::move(clock);
    dtp_.clock = clock_;
    tim_.clock = clock_;
}

// ---------------------------------------------------------------- opening and closing

void GridEditors::Show(EditorKind kind, const CellRect &cell)
{
    if (open_flag_) return;
    open_flag_ = true;
    CellEditor &e = Editor(kind);
    open_ = &e;
    step([&] { e.Place(cell); });
    step([&] { e.Load(host_.CurrentCellText()); });
    e.Window().SetVisible(true);
    if (host_.EditorTakesFocus()) step([&] { e.Window().SetFocus(); });
}

void GridEditors::Hide()
{
    open_flag_ = false;
    CellEditor *e = std::exchange(open_, nullptr);
    if (!e) return;
    const bool had_focus = e->Window().HasFocus();
    std::optional<std::wstring> value = read_step<std::optional<std::wstring>>([&] { return e->Value(); });
    e->Window().SetVisible(false);
    CommitOutcome c = DecideCommit(e->Kind(), value, read_step<std::wstring>([&] { return host_.CurrentCellText(); }));
    if (c.write) step([&] { host_.WriteCurrentCell(c.text); });
    if (c.set_check_font) step([&] { host_.SetCurrentCellFont(kCheckFont); });
    if (c.run_change) step([&] { host_.RunChange(); });
    if (c.write && c.changed) raise(ge::ChangeEdited);
    step([&] { host_.EditorClosed(had_focus); });
}

void GridEditors::Select()
{
    if (open_) step([&] { open_->Select(); });
}

// ---------------------------------------------------------------- keys

void GridEditors::wire(CellEditor &e)
{
    WindowedConstituent &w = e.Window();
    w.on_key_down = [this, &e](int16_t &code, int16_t shift) { key_down(e, code, shift); };
    w.on_key_press = [this, &e](int16_t &ascii) { key_press(e, ascii); };
    w.on_key_up = [this](int16_t &code, int16_t shift) { key_up(code, shift); };
}

void GridEditors::key_down(CellEditor &e, int16_t &key_code, int16_t shift)
{
    KeyContext ctx = read_step<KeyContext>([&] { return host_.EditorContext(); });
    KeySteps steps = EditorKeyDown(e.Kind(), key_code, shift, ctx);
    for (uint8_t i = 0; i < steps.count; ++i) {
        switch (steps.step[i]) {
        case EditorStep::Commit: Hide(); break;
        case EditorStep::ResetSelection: step([&] { e.Reset(); }); break;
        default: step([&] { host_.CarryOut(steps.step[i]); }); break;
        }
    }
    int16_t sh = shift;
    EventArgs args;
    args.ref(key_code).ref(sh);
    host_.RaiseEvent(ge::KeyDown, args);
}

void GridEditors::key_press(CellEditor &e, int16_t &key_ascii)
{
    if (EditorFiltersChars(e.Kind())) {
        CharFilter f = FilterEditorChar(key_ascii);
        key_ascii = f.key_ascii;
        if (f.refused) {
            step([&] { host_.ShowRefusal(e.Window().hWnd()); });
            step([&] { e.Window().SetFocus(); });
        }
    }
    EventArgs args;
    args.ref(key_ascii);
    host_.RaiseEvent(ge::KeyPress, args);
}

void GridEditors::key_up(int16_t &key_code, int16_t shift)
{
    int16_t sh = shift;
    EventArgs args;
    args.ref(key_code).ref(sh);
    host_.RaiseEvent(ge::KeyUp, args);
}

void GridEditors::raise(DISPID id)
{
    EventArgs args;
    step([&] { host_.RaiseEvent(id, args); });
}

// ---------------------------------------------------------------- menus

void GridEditors::build_menu(PopupMenu &menu, const EditorMenu &table)
{
    for (size_t i = 0; i < table.count; ++i) {
        const EditorMenuItem &item = table.items[i];
        if (item.separator()) menu.AddItem(item.name, L"-");
        else menu.AddItem(item.name, item.caption, [this, &item] { menu_choice(item); });
    }
}

void GridEditors::menu_choice(const EditorMenuItem &item)
{
    switch (item.action) {
    case MenuCellAction::WriteTimeNow:
        Hide();
        step([&] { host_.WriteCurrentCell(TimeText(clock_())); });
        break;
    case MenuCellAction::WriteEmpty:
        Hide();
        step([&] { host_.WriteCurrentCell(L""); });
        break;
    case MenuCellAction::None:
        break;
    }
    raise(item.event);
}

} // namespace tarn
