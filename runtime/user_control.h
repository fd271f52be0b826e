// UserControl: the base of every control in the library. It implements the ActiveX contract a
// container uses (OLE object, in-place activation with a window of its own, drawing into any DC,
// three persistence forms sharing one property bag, connection points, class information) and
// turns it into the host events a control handles:
//
//   Initialize                      after construction (Create<T>)
//   InitProperties | ReadProperties a new instance | one restored from a saved form
//   Resize, Paint                   sizing and drawing (Paint runs Resize unless a control says)
//   Click, DblClick, Mouse*, Key*   input on the control's own surface
//   GotFocus, LostFocus             the focus entering and leaving the control as a whole (its
//                                   window or any of its windowed constituents)
//   WriteProperties                 saving
//   Terminate                       before the object goes
//
// Every entry point a host can reach runs under the resume-next trap: a failing step is
// skipped and no failure or exception reaches the host.
//
// A control derives through ControlImpl<Self, Interface> (control_impl.h), which adds IUnknown
// and IDispatch over its dual interface from the type library.
#pragma once
#include <windows.h>
#include <ocidl.h>
#include <olectl.h>
#include <objsafe.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "foundation/colors.h"
#include "foundation/trap.h"
#include "runtime/accessible.h"
#include "runtime/ambient.h"
#include "runtime/com.h"
#include "runtime/connection_points.h"
#include "runtime/constituents.h"
#include "runtime/events.h"
#include "runtime/module.h"
#include "runtime/property_bag.h"
#include "runtime/units.h"
#include "runtime/windowed_constituent.h"

namespace tarn {

// What the server needs to know of a control class to create and register it.
struct ControlClass {
    const wchar_t *name;        // "cframe": ProgIDs TarnControls.cframe and TarnControls.cframe.1
    const wchar_t *description; // the class's display name
    const CLSID *clsid;
    const IID *iid;    // the control's dual interface
    const IID *events; // its event dispinterface (null when it raises none)
    DWORD misc_status; // OLEMISC_* flags (MiscStatusOf adds what follows from them)
    HRESULT (*create)(REFIID iid, void **out);
    // The control touches neither files nor other windows: it answers IObjectSafety and is
    // registered safe for scripting and for initialising. Off unless a control says so.
    bool safe = false;
};

// What a control of the class answers for its misc status, the registry's MiscStatus and the
// manifest's miscStatus alike: its own flags, and OLEMISC_ALWAYSRUN for a control invisible
// at run time (a service must run even where the container keeps controls inactive).
DWORD MiscStatusOf(const ControlClass &cls);
// Whether the class shows on a form (and so offers property pages and an accessible object).
inline bool IsVisibleClass(const ControlClass &cls) { return !(cls.misc_status & OLEMISC_INVISIBLEATRUNTIME); }

// A name a property sheet shows for one value of a property that is no enumeration.
struct NamedValue {
    std::wstring name;
    Variant value;
};

// Mouse buttons and shift state as the events carry them.
namespace mouse {
constexpr int16_t Left = 1, Right = 2, Middle = 4;
}
namespace shift {
constexpr int16_t Shift = 1, Ctrl = 2, Alt = 4;
// The keyboard's shift state now, as key events carry it.
int16_t Now();
}
// The events every control that offers them numbers the same way.
namespace events {
constexpr DISPID Click = 1, DblClick = 2, MouseDown = 3, MouseMove = 4, MouseUp = 5;
}

// Hears a control's events in C++. A control that holds another one as a part of itself
// (created in C++ and sited in no container) listens to it this way rather than through a
// connection point; by-reference arguments it changes reach the raiser as a host handler's
// would. The listener hears events even while the container froze them: it is part of the
// control, not of the container.
class EventListener {
public:
    virtual void OnEvent(DISPID id, EventArgs &args) = 0;

protected:
    ~EventListener() = default;
};

class UserControl : public IOleObject,
                    public IOleInPlaceObject,
                    public IOleInPlaceActiveObject,
                    public IOleControl,
                    public IViewObject2,
                    public IPersistStreamInit,
                    public IPersistPropertyBag,
                    public IPersistStorage,
                    public IProvideClassInfo2,
                    public IConnectionPointContainer,
                    public IQuickActivate,
                    public ISpecifyPropertyPages,
                    public IPerPropertyBrowsing,
                    public IObjectSafety,
                    private AccessibleOwner {
public:
    const ControlClass &Class() const { return class_; }
    // The one C++ listener to this control's events (null: none).
    void listen(EventListener *listener) { listener_ = listener; }

    // ---- IOleObject
    STDMETHODIMP SetClientSite(IOleClientSite *site) override;
    STDMETHODIMP GetClientSite(IOleClientSite **site) override;
    STDMETHODIMP SetHostNames(LPCOLESTR app, LPCOLESTR obj) override;
    STDMETHODIMP Close(DWORD save) override;
    STDMETHODIMP SetMoniker(DWORD which, IMoniker *mk) override;
    STDMETHODIMP GetMoniker(DWORD assign, DWORD which, IMoniker **mk) override;
    STDMETHODIMP InitFromData(IDataObject *data, BOOL creation, DWORD reserved) override;
    STDMETHODIMP GetClipboardData(DWORD reserved, IDataObject **data) override;
    STDMETHODIMP DoVerb(LONG verb, LPMSG msg, IOleClientSite *site, LONG index, HWND parent, LPCRECT pos) override;
    STDMETHODIMP EnumVerbs(IEnumOLEVERB **verbs) override;
    STDMETHODIMP Update() override;
    STDMETHODIMP IsUpToDate() override;
    STDMETHODIMP GetUserClassID(CLSID *clsid) override;
    STDMETHODIMP GetUserType(DWORD form, LPOLESTR *name) override;
    STDMETHODIMP SetExtent(DWORD aspect, SIZEL *size) override;
    STDMETHODIMP GetExtent(DWORD aspect, SIZEL *size) override;
    STDMETHODIMP Advise(IAdviseSink *sink, DWORD *cookie) override;
    STDMETHODIMP Unadvise(DWORD cookie) override;
    STDMETHODIMP EnumAdvise(IEnumSTATDATA **advise) override;
    STDMETHODIMP GetMiscStatus(DWORD aspect, DWORD *status) override;
    STDMETHODIMP SetColorScheme(LOGPALETTE *pal) override;

    // ---- IOleWindow, IOleInPlaceObject, IOleInPlaceActiveObject
    STDMETHODIMP GetWindow(HWND *hwnd) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL enter) override;
    STDMETHODIMP InPlaceDeactivate() override;
    STDMETHODIMP UIDeactivate() override;
    STDMETHODIMP SetObjectRects(LPCRECT pos, LPCRECT clip) override;
    STDMETHODIMP ReactivateAndUndo() override;
    STDMETHODIMP TranslateAccelerator(LPMSG msg) override;
    STDMETHODIMP OnFrameWindowActivate(BOOL activate) override;
    STDMETHODIMP OnDocWindowActivate(BOOL activate) override;
    STDMETHODIMP ResizeBorder(LPCRECT border, IOleInPlaceUIWindow *window, BOOL frame) override;
    STDMETHODIMP EnableModeless(BOOL enable) override;

    // ---- IOleControl
    STDMETHODIMP GetControlInfo(CONTROLINFO *info) override;
    STDMETHODIMP OnMnemonic(MSG *msg) override;
    STDMETHODIMP OnAmbientPropertyChange(DISPID id) override;
    STDMETHODIMP FreezeEvents(BOOL freeze) override;

    // ---- IViewObject2
    STDMETHODIMP Draw(DWORD aspect, LONG index, void *aspect_info, DVTARGETDEVICE *target, HDC target_dc, HDC dc,
                      LPCRECTL bounds, LPCRECTL wbounds, BOOL(STDMETHODCALLTYPE *cont)(ULONG_PTR),
                      ULONG_PTR cont_arg) override;
    STDMETHODIMP GetColorSet(DWORD aspect, LONG index, void *aspect_info, DVTARGETDEVICE *target, HDC target_dc,
                             LOGPALETTE **colors) override;
    STDMETHODIMP Freeze(DWORD aspect, LONG index, void *aspect_info, DWORD *cookie) override;
    STDMETHODIMP Unfreeze(DWORD cookie) override;
    STDMETHODIMP SetAdvise(DWORD aspects, DWORD flags, IAdviseSink *sink) override;
    STDMETHODIMP GetAdvise(DWORD *aspects, DWORD *flags, IAdviseSink **sink) override;
    STDMETHODIMP GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE *target, LPSIZEL size) override;

    // ---- IPersist, IPersistStreamInit, IPersistPropertyBag, IPersistStorage
    STDMETHODIMP GetClassID(CLSID *clsid) override;
    STDMETHODIMP IsDirty() override;
    STDMETHODIMP Load(IStream *stream) override;
    STDMETHODIMP Save(IStream *stream, BOOL clear_dirty) override;
    STDMETHODIMP GetSizeMax(ULARGE_INTEGER *size) override;
    STDMETHODIMP InitNew() override;
    STDMETHODIMP Load(IPropertyBag *bag, IErrorLog *log) override;
    STDMETHODIMP Save(IPropertyBag *bag, BOOL clear_dirty, BOOL save_all) override;
    STDMETHODIMP InitNew(IStorage *storage) override;
    STDMETHODIMP Load(IStorage *storage) override;
    STDMETHODIMP Save(IStorage *storage, BOOL same_as_load) override;
    STDMETHODIMP SaveCompleted(IStorage *storage) override;
    STDMETHODIMP HandsOffStorage() override;

    // ---- IProvideClassInfo2
    STDMETHODIMP GetClassInfo(ITypeInfo **info) override;
    STDMETHODIMP GetGUID(DWORD kind, GUID *guid) override;

    // ---- IConnectionPointContainer
    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints **points) override;
    STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint **point) override;

    // ---- IQuickActivate
    STDMETHODIMP QuickActivate(QACONTAINER *container, QACONTROL *control) override;
    STDMETHODIMP SetContentExtent(LPSIZEL size) override;
    STDMETHODIMP GetContentExtent(LPSIZEL size) override;

    // ---- ISpecifyPropertyPages (visible controls): the General page, and the stock colour,
    // font and picture pages where the control has such properties
    STDMETHODIMP GetPages(CAUUID *pages) override;

    // ---- IPerPropertyBrowsing: the names of PropertyValueNames, pages for properties
    STDMETHODIMP GetDisplayString(DISPID id, BSTR *text) override;
    STDMETHODIMP MapPropertyToPage(DISPID id, CLSID *page) override;
    STDMETHODIMP GetPredefinedStrings(DISPID id, CALPOLESTR *strings, CADWORD *cookies) override;
    STDMETHODIMP GetPredefinedValue(DISPID id, DWORD cookie, VARIANT *value) override;

    // ---- IObjectSafety (controls of a safe class only)
    STDMETHODIMP GetInterfaceSafetyOptions(REFIID iid, DWORD *supported, DWORD *enabled) override;
    STDMETHODIMP SetInterfaceSafetyOptions(REFIID iid, DWORD mask, DWORD enabled) override;

protected:
    explicit UserControl(const ControlClass &cls);
    virtual ~UserControl();

    // The interfaces UserControl answers (all but IUnknown and IDispatch, which ControlImpl adds).
    void *find_interface(REFIID iid);
    // The identity IUnknown of the object.
    IUnknown *identity() { return static_cast<IOleObject *>(this); }
    // Last release: deactivate, Terminate, disconnect; the caller deletes.
    void final_release();
    // Run after construction by Create<T>.
    void initialize();

    // ---- host events, overridden by the controls
    virtual void Initialize() {}
    virtual void InitProperties() {}
    virtual void ReadProperties(PropertyBag &bag) {}
    virtual void WriteProperties(PropertyBag &bag) {}
    virtual void Resize() {}
    virtual void Paint() { Resize(); }
    virtual void Click() {}
    virtual void DblClick() {}
    virtual void MouseDown(int16_t button, int16_t shift, float x, float y) {}
    virtual void MouseMove(int16_t button, int16_t shift, float x, float y) {}
    virtual void MouseUp(int16_t button, int16_t shift, float x, float y) {}
    virtual void KeyDown(int16_t &key_code, int16_t shift) {}
    virtual void KeyPress(int16_t &key_ascii) {}
    virtual void KeyUp(int16_t &key_code, int16_t shift) {}
    // The pointer left the control's window (after TrackMouseLeave).
    virtual void MouseLeave() {}
    virtual void GotFocus() {}
    virtual void LostFocus() {}
    virtual void Show() {}
    virtual void Hide() {}
    virtual void AmbientChanged(DISPID id) {}
    virtual void Terminate() {}
    // Owner drawing on the surface, after the background and before the constituents.
    virtual void DrawSurface(HDC dc, const Scale &scale) {}
    // Messages beyond the ones the runtime handles (WM_GETOBJECT, timers...).
    virtual LRESULT OnMessage(UINT msg, WPARAM wp, LPARAM lp, bool &handled)
    {
        handled = false;
        return 0;
    }
    // Which keys the control wants from dialog navigation (WM_GETDLGCODE).
    virtual UINT DialogCode() const { return DLGC_WANTARROWS | DLGC_WANTCHARS; }
    // Whether the control takes the focus (a click activates it, Tab stops on it).
    virtual bool CanGetFocus() const { return true; }

    // ---- what hosts and screen readers learn of the control, beyond its properties
    // The caption the control shows, with its mnemonic ("&Save"): the accessible name (without
    // the "&"), the keyboard shortcut ("Alt+S") and the accelerator GetControlInfo reports come
    // from it. "" leaves the name to the system (which takes the label placed before the control).
    virtual std::wstring Caption() { return std::wstring(); }
    // The container found the caption's mnemonic pressed (IOleControl::OnMnemonic).
    virtual void Mnemonic() {}
    // Keys the control claims beyond its caption's mnemonic while the focus is elsewhere on its
    // form (a tab strip's Alt+letter for each tab, Ctrl+Tab): GetControlInfo reports them with
    // the caption's, and the container hands a matching keystroke to ControlKey. A control
    // whose keys change calls ControlInfoChanged.
    virtual std::vector<ACCEL> ControlKeys() { return {}; }
    virtual void ControlKey(const MSG &msg) {}
    // The accessible description: the control's tooltip.
    virtual std::wstring ToolTipText() { return std::wstring(); }
    virtual long AccessibleRole() { return ROLE_SYSTEM_CLIENT; }
    // Focusable, focused, unavailable and invisible from the window; a control adds its own
    // (pressed, checked) to what this returns.
    virtual long AccessibleState();
    // The value a screen reader reads (a number, a text); "" when the control has none.
    virtual std::wstring AccessibleValue() { return std::wstring(); }
    virtual std::wstring DefaultAction() { return std::wstring(); }
    virtual void DoDefaultAction() {}
    // Parts of the control as accessible children, numbered from 1 (accessible.h): those with
    // an object of their own (a table's rows) give it from AccessibleChildObject; the others
    // (a tab strip's tabs, which the control draws and a user picks one by one) are simple and
    // described by AccessibleChild.
    virtual long AccessibleChildCount() { return 0; }
    virtual ComPtr<IDispatch> AccessibleChildObject(long id) { return {}; }
    virtual bool AccessibleChild(long id, AccessibleElement &out) { return false; }
    virtual void DoChildDefaultAction(long id) {}
    // What has the keyboard focus where the control names it: a child's number (VT_I4) or a
    // deeper object (VT_DISPATCH); false leaves it to the window's standard object.
    virtual bool AccessibleFocus(VARIANT *out) { return false; }
    // The child that is selected (CHILDID_SELF: none).
    virtual long AccessibleSelectedChild() { return CHILDID_SELF; }
    // Names for the values of property `id` when it is no enumeration (palette numbers, column
    // types): the General page and hosts' property browsers offer them. Empty: none.
    virtual std::vector<NamedValue> PropertyValueNames(DISPID id) { return {}; }
    // Styles the control's window has beyond a child's (scroll bars, for instance). The
    // control's size is then its window's client area.
    virtual DWORD WindowStyle() const { return 0; }

    // ---- services for the controls
    // Tells the container a property changed (IPropertyNotifySink::OnChanged with the DISPID of
    // the member named `key`, or DISPID_UNKNOWN) and marks the control dirty.
    void PropertyChanged(const std::wstring &key);
    // Asks for MouseLeave when the pointer next leaves the control's window (for a hot look
    // that follows the pointer without holding the mouse capture).
    void TrackMouseLeave();
    // Tells screen readers holding the control's accessible object that something changed
    // (EVENT_OBJECT_NAMECHANGE, EVENT_OBJECT_STATECHANGE, EVENT_OBJECT_VALUECHANGE...), of the
    // control itself or of one of its accessible children.
    void AccessibleChanged(DWORD event, long child = CHILDID_SELF);
    // The caption's mnemonic or the control's own keys may have changed: the container asks
    // for GetControlInfo again.
    void ControlInfoChanged();
    // Raises event `id` to every advised sink (nothing while the container froze events).
    void raise(DISPID id, EventArgs &args);
    void raise(DISPID id, EventArgs &&args) { raise(id, args); }
    void raise(DISPID id) { raise(id, EventArgs()); }
    void raise_mouse(DISPID id, int16_t button, int16_t shift, float x, float y)
    {
        raise(id, EventArgs().val(button).val(shift).val(x).val(y));
    }
    // A constituent's own mouse input (a caption label's) raised as the control's Click,
    // MouseDown, MouseMove and MouseUp, with the constituent's coordinates; its double click
    // raises nothing.
    void RaiseMouseEventsOf(Constituent &part);
    AmbientProperties &Ambient() { return ambient_; }

    // Property bodies for the dual interface: a read whose step fails yields the type's empty
    // value; a write runs its step, then tells the container, whatever the step did.
    template <class T, class F> HRESULT get_value(T *out, F &&read) noexcept
    {
        if (!out) return E_POINTER;
        *out = read_step<T>(read, T());
        return S_OK;
    }
    template <class F> HRESULT get_string(BSTR *out, F &&read) noexcept
    {
        if (!out) return E_POINTER;
        *out = to_bstr(read_step<std::wstring>(read));
        return S_OK;
    }
    template <class I, class F> HRESULT get_object(I **out, F &&read) noexcept
    {
        if (!out) return E_POINTER;
        *out = read_step<ComPtr<I>>(read).detach();
        return S_OK;
    }
    // A container that binds the property may refuse the write first (OnRequestEdit answering
    // S_FALSE): the value then stays as it was and no change is announced.
    template <class F> HRESULT put_value(const wchar_t *key, F &&write) noexcept
    {
        if (!read_step<bool>([&] { return RequestEdit(key); }, true)) return S_OK;
        step(write);
        step([&] { PropertyChanged(key); });
        return S_OK;
    }
    // Asks every IPropertyNotifySink whether the property may change; false when one refuses.
    bool RequestEdit(const std::wstring &key);

    // The verb registered as "&Properties...": the property frame, as OLEIVERB_PROPERTIES.
    static constexpr LONG kPropertiesVerb = 1;

    // Windowless constituents, drawn in the order added (later ones on top).
    void add_constituent(Constituent &c) { constituents_.push_back(&c); }
    // Windowed constituents: in the control's window while it is in place, in the runtime's
    // holder otherwise; above every windowless one, later ones above earlier ones.
    void add_constituent(WindowedConstituent &c);
    // The constituent that takes the focus when the control gets it (null: the control's window).
    void SetFocusConstituent(WindowedConstituent *c) { focus_constituent_ = c; }

    // The surface's own colours (drawn by the runtime as the background).
    OleColor BackColor() const { return back_color_; }
    void SetBackColor(OleColor c);
    OleColor ForeColor() const { return fore_color_; }
    void SetForeColor(OleColor c) { fore_color_ = c; }
    // The surface's two-valued look, 0 flat or 1 three-dimensional, for controls that choose
    // it; the surface has no border of its own, so nothing drawn depends on it.
    int16_t Appearance() const { return appearance_; }
    void SetAppearance(int16_t a) { appearance_ = a ? 1 : 0; }

    HWND hWnd() const { return hwnd_; }
    // The top-level window of the form the control sits on: the site's window and its root.
    // Found through the site, not the control's own window, which an invisible control may
    // never get. Null without a site or when the site has no window.
    HWND ParentForm() const;
    // The inner size, in twips and in pixels.
    float ScaleWidth() const { return to_twips_x(size_.cx, scale()); }
    float ScaleHeight() const { return to_twips_y(size_.cy, scale()); }
    int PixelWidth() const { return size_.cx; }
    int PixelHeight() const { return size_.cy; }
    Scale scale() const;
    // The control asks for a new size (twips): the container is told and the control resized.
    void SetSizeTwips(float width, float height);
    // The control asks to be placed at `pos` (pixels, in its container window's client area)
    // while it is in place: the container is told (OnPosRectChange), and the window moves
    // itself when the container does not follow.
    void RequestPosition(const RECT &pos);
    // The size a new instance starts with, before any container sizes it (no events).
    void SetDesignSize(float width_twips, float height_twips);
    // Repaint the whole surface now (with a window) or tell the container the view changed.
    void Refresh();
    void Invalidate();
    bool UserMode() const { return ambient_.UserMode(); }
    bool is_in_place() const { return in_place_; }

    // Draws the whole surface into `dc` at the origin: background, owner drawing, constituents.
    void render(HDC dc);

private:
    template <class, class> friend class ControlImpl;
    // The DISPID of the property `key` names: the member of that name, else the property put
    // being invoked through IDispatch (keys that differ from their property's name).
    DISPID dispid_of_key(const std::wstring &key);
    // AccessibleOwner, answered from the hooks above.
    std::wstring accessible_name() override;
    std::wstring accessible_shortcut() override;
    std::wstring accessible_description() override;
    std::wstring accessible_value() override;
    long accessible_role() override;
    long accessible_state() override;
    std::wstring accessible_default_action() override;
    void accessible_do_default() override;
    long accessible_child_count() override { return AccessibleChildCount(); }
    ComPtr<IDispatch> accessible_child_object(long id) override { return AccessibleChildObject(id); }
    bool accessible_child(long id, AccessibleElement &out) override { return AccessibleChild(id, out); }
    void accessible_child_do_default(long id) override { DoChildDefaultAction(id); }
    bool accessible_focus(VARIANT *out) override { return AccessibleFocus(out); }
    long accessible_selected_child() override { return AccessibleSelectedChild(); }
    // The caption's Alt+mnemonic (command 0) and the control's own keys (command 1).
    std::vector<ACCEL> keys_claimed();
    // Whether `msg` is one of the control's own keys rather than its caption's mnemonic.
    bool is_control_key(const MSG &msg);

    static const wchar_t *window_class();
    static LRESULT CALLBACK window_proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp);
    // A simple frame's messages go through its site's filters around its own handling.
    LRESULT filtered_message(UINT msg, WPARAM wp, LPARAM lp);
    LRESULT on_message(UINT msg, WPARAM wp, LPARAM lp);
    void on_paint();
    void on_mouse(UINT msg, WPARAM wp, LPARAM lp);
    void on_focus(bool gained, HWND other);
    // Moves the windowed constituents into the holder (the control's window is going).
    void park_constituents();
    HRESULT activate(LONG verb, HWND parent_hint, LPCRECT pos_hint);
    // The container's property frame when it has one, else the system's over `parent`.
    HRESULT show_property_frame(HWND parent);
    HRESULT ui_activate();
    // Tells the site's frame and document window that this object is (or no longer is) UI-active.
    void announce_active(bool active);
    void set_size_px(int cx, int cy, bool from_host);
    void run_resize();
    void view_changed();
    void load_from_bag(PropertyBag &bag);
    void init_new();
    Constituent *mouse_target_at(float x, float y) const;

    const ControlClass &class_;
    module::ObjectCount count_;

    ComPtr<IOleClientSite> site_;
    ComPtr<IOleInPlaceSite> inplace_site_;
    ComPtr<ISimpleFrameSite> simple_frame_site_; // only for classes that are simple frames
    ComPtr<IOleAdviseHolder> advise_holder_;
    ComPtr<IAdviseSink> view_sink_;
    DWORD view_aspects_ = 0, view_flags_ = 0;
    AmbientProperties ambient_;
    ConnectionPoint events_cp_;
    EventListener *listener_ = nullptr;
    ConnectionPoint notify_cp_;

    HWND hwnd_ = nullptr;
    bool in_place_ = false;
    bool ui_active_ = false;
    bool initialized_ = false; // InitNew or Load ran
    bool dirty_ = false;
    int freeze_count_ = 0;
    int resize_depth_ = 0;
    SIZE size_{0, 0}; // pixels

    OleColor back_color_ = syscolor::ButtonFace;
    OleColor fore_color_ = syscolor::ButtonText;
    int16_t appearance_ = 1;
    std::vector<Constituent *> constituents_;
    std::vector<WindowedConstituent *> windowed_;
    WindowedConstituent *focus_constituent_ = nullptr;
    bool focus_within_ = false; // the focus is on the control's window or a constituent's

    // Mouse state: where the current press went, and the second press of a double click.
    Constituent *press_target_ = nullptr;
    bool press_on_surface_ = false;
    int16_t buttons_down_ = 0;
    bool double_click_ = false;
    bool tracking_leave_ = false;

    DISPID invoked_put_ = DISPID_UNKNOWN; // the property put IDispatch::Invoke is running
    std::map<std::wstring, DISPID> key_ids_; // keys looked up by name (DISPID_UNKNOWN: none)
    HACCEL accel_ = nullptr;              // the keys' table, handed out by GetControlInfo
    std::vector<ACCEL> accel_keys_;       // what it holds
    DWORD safety_enabled_ = 0;
    AccessibleLink accessible_;
};

// Removes the runtime's window classes (the control's and the constituents' holder) when the
// DLL unloads.
void UnregisterControlWindowClass();

} // namespace tarn
