#include "services/mnutxt.h"

#include "server/resource.h"
#include "services/modMENUTEXT.h"

namespace tarn {

const ControlClass mnutxt::Class = {
    L"mnutxt",
    L"Tarn Controls menu text reporter",
    &CLSID_mnutxt,
    &IID_Imnutxt,
    &DIID_ImnutxtEvents,
    OLEMISC_INVISIBLEATRUNTIME | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
        OLEMISC_SETCLIENTSITEFIRST | OLEMISC_NOUIACTIVATE,
    &mnutxt::Create,
};

mnutxt::mnutxt() : imgIcon(L"imgIcon", IDB_TOOLBOX_MNUTXT) { add_constituent(imgIcon); }

void mnutxt::Initialize() { SetDesignSize(imgIcon.Width, imgIcon.Height); }

void mnutxt::release_instance()
{
    if (menu_text_) menu_text_->MENUTEXT = nullptr;
    menu_text_.reset();
}

void mnutxt::Terminate()
{
    // The hook stays until the host's UnSubClass; the control only stops listening.
    release_instance();
}

// ---------------------------------------------------------------- persistence

// The handle is kept as a 32-bit Long, the same in both builds' saved forms: window handles
// have 32 significant bits, and a 64-bit one is its 32-bit value sign-extended.
void mnutxt::ReadProperties(PropertyBag &bag)
{
    step([&] { hwnd_ = static_cast<LONG_PTR>(bag.read_long(L"HWND", 0)); });
}

void mnutxt::WriteProperties(PropertyBag &bag)
{
    step([&] { bag.write_long(L"HWND", static_cast<int32_t>(hwnd_), 0); });
}

// ---------------------------------------------------------------- look

void mnutxt::Resize()
{
    bool design = !UserMode();
    imgIcon.Visible = design;
    if (design) SetSizeTwips(imgIcon.Width, imgIcon.Height);
}

void mnutxt::AmbientChanged(DISPID id)
{
    if (id != DISPID_AMBIENT_USERMODE) return;
    Resize();
    Invalidate();
}

// ---------------------------------------------------------------- Imnutxt

STDMETHODIMP mnutxt::get_hwnd(OLE_HANDLE *v)
{
    return get_value(v, [&] { return to_ole_handle(reinterpret_cast<HWND>(hwnd_)); });
}
STDMETHODIMP mnutxt::put_hwnd(OLE_HANDLE v)
{
    // Only stored: an existing hook stays on the window it was made for.
    return put_value(L"HWND", [&] { hwnd_ = reinterpret_cast<LONG_PTR>(from_ole_handle(v)); });
}

STDMETHODIMP mnutxt::Subclass()
{
    step([&] {
        if (!UserMode()) return;
        auto made = std::make_shared<clsMENUTEXT>();
        made->hwnd = reinterpret_cast<HWND>(hwnd_);
        made->MENUTEXT = [this](const std::wstring &text) { raise(mnutxt_events::MENUTEXT, EventArgs().val(text)); };
        release_instance();
        menu_text_ = made;
        modMENUTEXT::Hook(std::move(made));
    });
    return S_OK;
}

STDMETHODIMP mnutxt::UnSubClass()
{
    step([&] {
        if (!UserMode()) return;
        modMENUTEXT::Unhook();
        release_instance();
    });
    return S_OK;
}

} // namespace tarn
