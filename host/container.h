// The test container: a real OLE control container for the tests and the gallery.
//
//   Container form(640, 480);                         // a top-level window and its frame
//   Hosted frame(form, L"TarnControls.cframe", {10, 10, 210, 39});
//   frame.activate();                                 // in place, in a window of its own
//   frame.put(L"CAPTION", Str(L"Totals"));
//   frame.log().changes                               // {"CAPTION"}
//   Bitmap picture = frame.render(200, 29);           // through IViewObject::Draw
//
// The container creates a control by ProgID, gives it a site with ambient properties (user
// mode switchable between design and run time), activates it in place in a real window,
// records its events, change notices and every call it makes on the site (strictly: calls
// not declared by the test are reported), saves and loads it through a property bag and a
// stream, and renders it into a bitmap.
#pragma once
#include <windows.h>
#include <ocidl.h>

#include <memory>
#include <string>
#include <vector>

#include "host/bag.h"
#include "host/bitmap.h"
#include "host/call_log.h"
#include "host/dispatch.h"
#include "host/site.h"
#include "runtime/com.h"

namespace tarn::host {

class Hosted;
class Frame;

class Container {
public:
    Container(int width = 640, int height = 480);
    ~Container();
    Container(const Container &) = delete;
    Container &operator=(const Container &) = delete;

    HWND hwnd() const { return hwnd_; }
    IOleInPlaceFrame *frame() const;
    AmbientSettings &ambient() { return ambient_; }
    // Switches between design time (false) and run time (true) and tells every control.
    void set_user_mode(bool user_mode);
    // Tells every control that an ambient property changed.
    void ambient_changed(DISPID id);
    // The frame's own calls (SetActiveObject...), strict like a site's.
    CallLog &frame_log() { return frame_log_; }
    // A site call every control placed from now on may make without its test declaring it
    // again: a call made while the control loads, before the test holds its log.
    void allow_site_call(const std::wstring &call) { site_calls_.push_back(call); }
    // The form's keyboard handling: a keystroke one of its controls asked for as its own key
    // goes to that control (IOleControl::OnMnemonic). True when it was taken.
    bool route_mnemonic(MSG &m);

private:
    friend class Hosted;
    HWND hwnd_ = nullptr;
    ComPtr<Frame> frame_;
    AmbientSettings ambient_;
    CallLog frame_log_;
    std::vector<Hosted *> hosted_;
    std::vector<std::wstring> site_calls_;
};

// How a hosted control is brought up.
enum class Init {
    New,        // IPersistStreamInit::InitNew, a control placed for the first time
    NewBag,     // IPersistPropertyBag::InitNew
    FromBag,    // IPersistPropertyBag::Load from `source` (an IPropertyBag)
    FromStream, // IPersistStreamInit::Load from `source` (an IStream, read from its position)
    Nothing,    // created and sited only
};

class Hosted {
public:
    Hosted(Container &container, const std::wstring &progid, RECT pos, Init init = Init::New,
           IUnknown *source = nullptr);
    // A control placed on a simple frame (a panel) that is active in place: its site's window
    // is the frame's, so its window lives in the frame's and `pos` is in the frame's client area.
    Hosted(Hosted &frame, const std::wstring &progid, RECT pos, Init init = Init::New);
    ~Hosted();
    Hosted(const Hosted &) = delete;
    Hosted &operator=(const Hosted &) = delete;

    bool ok() const { return static_cast<bool>(object_); }
    HRESULT create_result() const { return create_hr_; }
    HRESULT init_result() const { return init_hr_; }
    IUnknown *unknown() const { return object_.get(); }
    IDispatch *dispatch() const { return dispatch_.get(); }
    template <class I> ComPtr<I> as(REFIID iid) const { return object_.as<I>(iid); }
    CallLog &log() { return log_; }
    Site &site() { return *site_.get(); }

    // In-place activation with the protocol a control owes its site declared as expected.
    HRESULT activate();
    HRESULT deactivate();
    // Places the control (SetObjectRects when active, SetExtent otherwise).
    void move(const RECT &pos);
    HWND hwnd() const;
    RECT position() const { return site_->position(); }

    Variant get(const std::wstring &name, const std::vector<Variant> &args = {});
    HRESULT put(const std::wstring &name, const Variant &value, const std::vector<Variant> &args = {});
    HRESULT putref(const std::wstring &name, IUnknown *value);
    Variant call(const std::wstring &name, const std::vector<Variant> &args = {});
    HRESULT last_result() const { return last_hr_; }

    ComPtr<Bag> save_bag();
    ComPtr<IStream> save_stream(); // positioned at its start
    // Draws the control through IViewObject::Draw into a fresh bitmap of this size.
    Bitmap render(int width, int height, Rgb background = 0xFF00FF);
    // Copies the control's window through WM_PRINTCLIENT (the window's own painting).
    Bitmap capture();

    // Close, disconnect and release; returns the count the last Release left (0 when the
    // container held the last reference, as it must).
    ULONG close();

private:
    void create(const std::wstring &progid, RECT pos, Init init, IUnknown *source, HWND window);

    Container &container_;
    CallLog log_;
    ComPtr<Site> site_;
    ComPtr<EventSink> sink_;
    ComPtr<IUnknown> object_;
    ComPtr<IDispatch> dispatch_;
    DWORD event_cookie_ = 0, notify_cookie_ = 0;
    IID event_iid_ = IID_NULL;
    HRESULT create_hr_ = E_FAIL, init_hr_ = E_FAIL, last_hr_ = S_OK;
};

// Runs the thread's message loop for about `ms` milliseconds (at least one pass).
void pump(DWORD ms = 0);

} // namespace tarn::host
