// The container's side of one hosted control: its client site (with in-place and control site
// and the ambient properties), the sinks for change notices and view changes, and the sink
// for the control's events. Every call the control makes is entered in the CallLog.
#pragma once
#include <ocidl.h>
#include <olectl.h>

#include <string>
#include <utility>
#include <vector>

#include "foundation/colors.h"
#include "host/call_log.h"
#include "runtime/change_key_sink.h"
#include "runtime/com.h"
#include "runtime/com_object.h"

namespace tarn::host {

struct AmbientSettings {
    bool supplied = true; // false: the site answers no ambient property at all
    bool user_mode = true;
    ComPtr<IFontDisp> font; // null: none offered
    OleColor back_color = syscolor::ButtonFace;
    OleColor fore_color = syscolor::ButtonText;
    std::wstring display_name = L"Control1";
    bool display_as_default = false; // the form's default button
};

class Site final : public ComObject<IOleClientSite, IOleInPlaceSite, IOleControlSite, IDispatch, IPropertyNotifySink,
                                     ITarnChangeKeySink, IAdviseSink, ISimpleFrameSite> {
public:
    Site(HWND window, IOleInPlaceFrame *frame, AmbientSettings &ambient, CallLog &log);

    void set_control(IUnknown *control);
    void set_position(const RECT &r) { pos_ = r; }
    const RECT &position() const { return pos_; }
    // Whether the site places the control where it asks (OnPosRectChange) or keeps its rectangle.
    bool honour_position_requests = true;

    // IUnknown: the ambient properties' IDispatch only when the settings supply them
    STDMETHODIMP QueryInterface(REFIID riid, void **ppv) override;

    // IOleClientSite
    STDMETHODIMP SaveObject() override;
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker **mk) override;
    STDMETHODIMP GetContainer(IOleContainer **c) override;
    STDMETHODIMP ShowObject() override;
    STDMETHODIMP OnShowWindow(BOOL) override;
    STDMETHODIMP RequestNewObjectLayout() override;

    // IOleWindow, IOleInPlaceSite
    STDMETHODIMP GetWindow(HWND *hwnd) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL) override;
    STDMETHODIMP CanInPlaceActivate() override;
    STDMETHODIMP OnInPlaceActivate() override;
    STDMETHODIMP OnUIActivate() override;
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame **frame, IOleInPlaceUIWindow **doc, LPRECT pos, LPRECT clip,
                                  LPOLEINPLACEFRAMEINFO info) override;
    STDMETHODIMP Scroll(SIZE) override;
    STDMETHODIMP OnUIDeactivate(BOOL) override;
    STDMETHODIMP OnInPlaceDeactivate() override;
    STDMETHODIMP DiscardUndoState() override;
    STDMETHODIMP DeactivateAndUndo() override;
    STDMETHODIMP OnPosRectChange(LPCRECT pos) override;

    // IOleControlSite
    STDMETHODIMP OnControlInfoChanged() override;
    STDMETHODIMP LockInPlaceActive(BOOL) override;
    STDMETHODIMP GetExtendedControl(IDispatch **disp) override;
    STDMETHODIMP TransformCoords(POINTL *himetric, POINTF *container, DWORD flags) override;
    STDMETHODIMP TranslateAccelerator(MSG *msg, DWORD modifiers) override;
    STDMETHODIMP OnFocus(BOOL got) override;
    STDMETHODIMP ShowPropertyFrame() override;

    // IDispatch: the ambient properties
    STDMETHODIMP GetTypeInfoCount(UINT *count) override;
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo **info) override;
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR *, UINT, LCID, DISPID *) override;
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS *params, VARIANT *result, EXCEPINFO *,
                        UINT *) override;

    // IPropertyNotifySink, ITarnChangeKeySink
    STDMETHODIMP OnChanged(DISPID id) override;
    STDMETHODIMP OnRequestEdit(DISPID) override;
    STDMETHODIMP OnChangedKey(LPCOLESTR key) override;

    // ISimpleFrameSite: what a simple frame (a panel) hands the site around its own handling
    STDMETHODIMP PreMessageFilter(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, LRESULT *result, DWORD *cookie) override;
    STDMETHODIMP PostMessageFilter(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, LRESULT *result, DWORD cookie) override;

    // IAdviseSink
    STDMETHODIMP_(void) OnDataChange(FORMATETC *, STGMEDIUM *) override {}
    STDMETHODIMP_(void) OnViewChange(DWORD, LONG) override { ++view_changes; }
    STDMETHODIMP_(void) OnRename(IMoniker *) override {}
    STDMETHODIMP_(void) OnSave() override {}
    STDMETHODIMP_(void) OnClose() override {}

    int view_changes = 0;
    int ambient_reads = 0;
    // The messages a simple frame passed through PreMessageFilter, and the PostMessageFilter
    // calls that matched no pending PreMessageFilter of the same message by cookie.
    std::vector<UINT> filtered_messages;
    int unpaired_filters = 0;
    // A message the site answers itself in PreMessageFilter (S_FALSE), so the frame never sees it.
    UINT answered_in_filter = 0;
    // What OnRequestEdit answers (S_FALSE refuses the change), and the DISPIDs it was asked for.
    HRESULT request_edit_answer = S_OK;
    std::vector<DISPID> edit_requests;
    // What ShowPropertyFrame answers (S_OK: the container showed its own frame).
    HRESULT property_frame_answer = E_NOTIMPL;

private:
    HWND window_;
    ComPtr<IOleInPlaceFrame> frame_;
    AmbientSettings &ambient_;
    CallLog &log_;
    RECT pos_{0, 0, 0, 0};
    DWORD next_cookie_ = 0;
    std::vector<std::pair<DWORD, UINT>> pending_filters_;
    ComPtr<IUnknown> control_; // cleared by set_control(nullptr) before the control goes
};

// Receives the control's events on its default source interface and records them by name.
class EventSink final : public ComObject<IDispatch> {
public:
    EventSink(ITypeInfo *events, CallLog &log) : events_(events), log_(log) {}

    STDMETHODIMP GetTypeInfoCount(UINT *count) override;
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo **info) override;
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR *, UINT, LCID, DISPID *) override;
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS *params, VARIANT *result, EXCEPINFO *,
                        UINT *) override;

    IID iid = IID_NULL; // the event interface, answered by QueryInterface

private:
    void *query_more(REFIID riid) override
    {
        return riid == iid && iid != IID_NULL ? static_cast<IDispatch *>(this) : nullptr;
    }

    ComPtr<ITypeInfo> events_;
    CallLog &log_;
};

} // namespace tarn::host
