// SizeGrip<Self, Interface>: what the two size grips (rsz, rszxp) share; they differ only in
// their class record and their look.
//
// At run time (user mode), while it is in place, a grip follows its form through the
// library's hook table as an observer of the form's messages, so a resize lock or any other
// owner of the form's hook keeps working beside it: after each WM_SIZE it moves itself into
// the form's bottom-right corner (asking its container, OnPosRectChange), hides while the form
// is maximised and shows again when it is restored. A left-button press on it hands the drag
// to the system's own sizing of the form from its bottom-right corner (WM_SYSCOMMAND, SC_SIZE
// with WMSZ_BOTTOMRIGHT), so the form sizes exactly as when its corner is dragged: its
// tracking limits (a resize lock's), WM_SIZING, WM_ENTERSIZEMOVE and WM_EXITSIZEMOVE, Esc
// putting the size back. Over the grip the pointer is the diagonal sizing arrow. A disabled
// grip, a grip at design time and a grip on a form that cannot be resized only draw themselves.
//
// BACKCOLOR and Enabled are saved under "BACKCOLOR" and "ENABLED".
#pragma once
#include "foundation/window_hooks.h"
#include "runtime/control_impl.h"
#include "runtime/property_values.h"
#include "tarnctls_h.h"

namespace tarn {

enum class GripLook { Classic, Xp };

// The grip's picture in the bottom-right corner of a w x h surface.
void DrawGrip(HDC dc, int w, int h, const Scale &scale, GripLook look);
// The system's size grip in twips: a new grip's size.
SIZE GripDesignTwips();
// Where the grip goes for the form's current client area, in `grip`'s parent's coordinates.
RECT GripCornerPlace(HWND form, HWND grip, int width, int height);
// Hands a drag that starts at `pointer` (screen) to the system's sizing of `form` from its
// bottom-right corner; returns when the button is released. False, doing nothing, when the
// form cannot be sized that way (no sizing border, maximised).
bool SizeFormFromCorner(HWND form, POINT pointer);

template <class Self, class Interface> class SizeGrip : public ControlImpl<Self, Interface>, private HookObserver {
    using Base = ControlImpl<Self, Interface>;

public:
    STDMETHODIMP get_BACKCOLOR(OLE_COLOR *v) override { return this->get_value(v, [&] { return this->BackColor(); }); }
    STDMETHODIMP put_BACKCOLOR(OLE_COLOR v) override
    {
        return this->put_value(L"BACKCOLOR", [&] {
            RequireColour(v);
            this->SetBackColor(v);
        });
    }
    STDMETHODIMP get_Enabled(VARIANT_BOOL *v) override
    {
        return this->get_value(v, [&]() -> VARIANT_BOOL { return enabled_ ? VARIANT_TRUE : VARIANT_FALSE; });
    }
    STDMETHODIMP put_Enabled(VARIANT_BOOL v) override
    {
        return this->put_value(L"ENABLED", [&] { enabled_ = v != VARIANT_FALSE; });
    }

protected:
    explicit SizeGrip(GripLook look) : look_(look) {}

    void Initialize() override
    {
        SIZE design = GripDesignTwips();
        this->SetDesignSize(static_cast<float>(design.cx), static_cast<float>(design.cy));
    }
    void ReadProperties(PropertyBag &bag) override
    {
        step([&] { this->SetBackColor(bag.read_color(L"BACKCOLOR", syscolor::ButtonFace)); });
        step([&] { enabled_ = bag.read_bool(L"ENABLED", true); });
    }
    void WriteProperties(PropertyBag &bag) override
    {
        step([&] { bag.write_color(L"BACKCOLOR", this->BackColor(), syscolor::ButtonFace); });
        step([&] { bag.write_bool(L"ENABLED", enabled_, true); });
    }
    void DrawSurface(HDC dc, const Scale &scale) override { DrawGrip(dc, this->PixelWidth(), this->PixelHeight(), scale, look_); }
    // In place (a window now exists) or no more: follow the form only meanwhile, at run time.
    void Show() override { follow(this->UserMode()); }
    void Hide() override { follow(false); }
    void Terminate() override { follow(false); }
    void AmbientChanged(DISPID id) override
    {
        if (id == DISPID_AMBIENT_USERMODE) follow(this->UserMode() && this->hWnd());
    }
    bool CanGetFocus() const override { return false; }
    long AccessibleRole() override { return ROLE_SYSTEM_GRIP; }
    long AccessibleState() override
    {
        return Base::AccessibleState() | (enabled_ ? 0 : STATE_SYSTEM_UNAVAILABLE);
    }

    LRESULT OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled) override
    {
        handled = false;
        if (!form_ || !enabled_) return 0;
        if (msg == WM_SETCURSOR && LOWORD(lp) == HTCLIENT) {
            handled = true;
            SetCursor(LoadCursorW(nullptr, IDC_SIZENWSE));
            return TRUE;
        }
        if (msg == WM_LBUTTONDOWN) {
            ComPtr<IUnknown> alive(this->identity()); // the form may close it while sizing
            handled = SizeFormFromCorner(form_, pointer());
        }
        return 0;
    }

private:
    static POINT pointer()
    {
        DWORD at = GetMessagePos();
        return {static_cast<short>(LOWORD(at)), static_cast<short>(HIWORD(at))};
    }
    void follow(bool on)
    {
        HWND form = on ? this->ParentForm() : nullptr;
        if (form == form_) return;
        if (form_) UnobserveWindow(form_, this);
        form_ = nullptr;
        if (form && ObserveWindow(form, this)) {
            form_ = form;
            keep_to_corner();
        }
    }
    void keep_to_corner()
    {
        HWND w = this->hWnd();
        if (!w || !form_) return;
        if (IsZoomed(form_)) {
            ShowWindow(w, SW_HIDE);
            return;
        }
        this->RequestPosition(GripCornerPlace(form_, w, this->PixelWidth(), this->PixelHeight()));
        if (!IsWindowVisible(w)) ShowWindow(w, SW_SHOWNA);
    }
    // HookObserver: the form was resized, or is going.
    void HookObserved(uint32_t msg, uintptr_t wp, intptr_t, HookResult) override
    {
        if (msg != WM_SIZE || wp == SIZE_MINIMIZED) return;
        ComPtr<IUnknown> alive(this->identity());
        step([&] { keep_to_corner(); });
    }
    void HookObserverGone() override { form_ = nullptr; }

    GripLook look_;
    bool enabled_ = true;
    HWND form_ = nullptr; // the form followed, while in place at run time
};

} // namespace tarn
