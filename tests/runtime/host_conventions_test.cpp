// What hosts expect of every control, through the DLL: the General property page (created by
// its CLSID, built from the type information, applying through the control's puts), the pages
// a control names, the container's veto on an edit, per-property value names, what each
// class declares itself safe for, its misc status, and an accessible object for every visible
// control.
#include <gtest/gtest.h>

#include <oleacc.h>
#include <objsafe.h>

#include <algorithm>

#include "runtime/com_object.h"
#include "runtime/control_impl.h"
#include "runtime/property_page.h"
#include "support/control_test.h"
#include "tarnctls_h.h"

using namespace tarn;
using namespace tarn::test;

namespace {

// The frame's side of a page: records what the page tells it.
class PageSite final : public ComObject<IPropertyPageSite> {
public:
    STDMETHODIMP OnStatusChange(DWORD flags) override
    {
        status |= flags;
        return S_OK;
    }
    STDMETHODIMP GetLocaleID(LCID *lcid) override
    {
        if (lcid) *lcid = LOCALE_USER_DEFAULT;
        return S_OK;
    }
    STDMETHODIMP GetPageContainer(IUnknown **out) override
    {
        if (out) *out = nullptr;
        return E_NOTIMPL;
    }
    STDMETHODIMP TranslateAccelerator(MSG *) override { return S_FALSE; }
    DWORD status = 0;
};

// The General page, shown on `parent` for `objects`.
struct Page {
    ComPtr<IPropertyPage2> page;
    ComPtr<PageSite> site = ComPtr<PageSite>::attach(new PageSite);
    HWND window = nullptr;

    Page(HWND parent, std::vector<IUnknown *> objects)
    {
        EXPECT_EQ(S_OK, CoCreateInstance(CLSID_TarnGeneralPage, nullptr, CLSCTX_INPROC_SERVER, IID_IPropertyPage2,
                                         page.put_void()));
        if (!page) return;
        EXPECT_EQ(S_OK, page->SetPageSite(site.get()));
        EXPECT_EQ(S_OK, page->SetObjects(static_cast<ULONG>(objects.size()), objects.data()));
        RECT r{0, 0, 400, 300};
        EXPECT_EQ(S_OK, page->Activate(parent, &r, TRUE));
        window = FindWindowExW(parent, nullptr, L"TarnPropertyPage", nullptr);
        EXPECT_TRUE(window);
    }
    ~Page()
    {
        if (!page) return;
        page->Deactivate();
        page->SetObjects(0, nullptr);
        page->SetPageSite(nullptr);
    }
    // The editor of the row labelled `name`, or null.
    HWND editor(const std::wstring &name) const
    {
        for (HWND w = GetWindow(window, GW_CHILD); w; w = GetWindow(w, GW_HWNDNEXT)) {
            wchar_t cls[32] = {}, text[128] = {};
            GetClassNameW(w, cls, 32);
            GetWindowTextW(w, text, 128);
            if (!_wcsicmp(cls, L"Static") && name == text) return GetDlgItem(window, GetDlgCtrlID(w) - 2000);
        }
        return nullptr;
    }
    std::wstring text(const std::wstring &name) const
    {
        wchar_t buf[256] = {};
        GetWindowTextW(editor(name), buf, 256);
        return buf;
    }
    // Types into a text row, or picks the item of a list row that starts with `text`.
    void edit(const std::wstring &name, const std::wstring &text) const
    {
        HWND e = editor(name);
        ASSERT_TRUE(e) << "no row " << narrow(name);
        wchar_t cls[32] = {};
        GetClassNameW(e, cls, 32);
        if (_wcsicmp(cls, L"ComboBox") == 0) {
            LRESULT at = SendMessageW(e, CB_FINDSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text.c_str()));
            ASSERT_NE(CB_ERR, at) << narrow(text);
            SendMessageW(e, CB_SETCURSEL, static_cast<WPARAM>(at), 0);
            SendMessageW(window, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(e), CBN_SELCHANGE), reinterpret_cast<LPARAM>(e));
        } else {
            SetWindowTextW(e, text.c_str()); // the edit control says EN_CHANGE itself
        }
    }
};

class HostConventions : public ControlTest {};

constexpr DISPID kCaption = DISPID_CAPTION;

} // namespace

TEST_F(HostConventions, TheGeneralPageShowsEachVisibleControlsPropertiesAndAppliesThroughItsPuts)
{
    // Per control: a row edited on the page, what is typed or picked, the value the control then
    // has, and the key its change notice carries.
    struct Case {
        const wchar_t *progid, *property, *typed;
        long long value;
        const wchar_t *key;
    } cases[] = {
        {L"TarnControls.cframe", L"TopHighlightColor", L"&H00123456&", 0x123456, L"TOPHIGHLIGHTCOLOR"},
        {L"TarnControls.cbtn", L"BACKCOLOR", L"&H000000FF&", 0xFF, L"BACKCOLOR"},
        {L"TarnControls.cbtn", L"ButtonType", L"11 - ", 11, L"BTYPE"},
        {L"TarnControls.cbtn", L"Enabled", L"False", 0, L"ENABLED"},
        {L"TarnControls.lnev", L"BACKCOLOR", L"255", 255, L"BACKCOLOR"},
        {L"TarnControls.updown", L"ForeColor", L"0x00FF00", 0xFF00, L"ForeColor"},
        {L"TarnControls.grid", L"BorderStyle", L"0", 0, L"BorderStyle"},
        {L"TarnControls.grdchk", L"BACKCOLOR", L"&H0000FF00&", 0xFF00, L"BackColor"},
        {L"TarnControls.sepbar", L"BACKCOLOR", L"&H00FF0000&", 0xFF0000, L"BACKCOLOR"},
        {L"TarnControls.lneh", L"Alignment", L"2 - ", 2, L"ALIGNMENT"},
        {L"TarnControls.rsz", L"Enabled", L"False", 0, L"ENABLED"},
        {L"TarnControls.rszxp", L"BACKCOLOR", L"&H00654321&", 0x654321, L"BACKCOLOR"},
        {L"TarnControls.pnl", L"BorderStyle", L"3 - ", 3, L"BORDERSTYLE"},
        {L"TarnControls.pnl", L"FillStyle", L"1 - ", 1, L"FILLSTYLE"},
        {L"TarnControls.tbf", L"Style", L"2 - ", 2, L"STYLE"},
        {L"TarnControls.fontchars", L"CharCode", L"66", 66, L"CHARCODE"},
    };
    allow_self_sizing(form);
    for (const Case &c : cases) {
        SCOPED_TRACE(narrow(c.progid) + " " + narrow(c.property));
        Hosted &h = place(c.progid, {10, 10, 210, 60});
        Page p(form.hwnd(), {h.unknown()});
        ComPtr<IPropertyPage2> page = p.page;
        ASSERT_TRUE(page);
        PROPPAGEINFO info{};
        ASSERT_EQ(S_OK, page->GetPageInfo(&info));
        EXPECT_STREQ(L"General", info.pszTitle);
        EXPECT_GT(info.size.cx, 100);
        CoTaskMemFree(info.pszTitle);
        // Only readable and writable properties: the read-only window handle has no row.
        EXPECT_FALSE(p.editor(L"hwnd"));
        EXPECT_EQ(S_FALSE, page->IsPageDirty());

        h.log().changes.clear();
        h.log().changed_ids.clear();
        p.edit(c.property, c.typed);
        EXPECT_EQ(S_OK, page->IsPageDirty());
        EXPECT_TRUE(p.site->status & PROPPAGESTATUS_DIRTY);
        EXPECT_TRUE(h.log().changes.empty()); // nothing reaches the control before Apply
        ASSERT_EQ(S_OK, page->Apply());
        EXPECT_EQ(S_FALSE, page->IsPageDirty());
        EXPECT_EQ(c.value, as_integer(h.get(c.property)));
        // The host saw the change notice with the property's DISPID, whatever its key.
        EXPECT_EQ(std::vector<std::wstring>{c.key}, h.log().changes);
        ASSERT_EQ(1u, h.log().changed_ids.size());
        EXPECT_EQ(dispid_of(h.dispatch(), c.property), h.log().changed_ids[0]);
    }
}

TEST_F(HostConventions, OnePageEditsSeveralControlsAndTheContainerMayRefuseAnEdit)
{
    Hosted &a = place(L"TarnControls.cbtn", {10, 10, 110, 35});
    Hosted &b = place(L"TarnControls.cbtn", {10, 40, 110, 65});
    Hosted &frame = place(L"TarnControls.cframe", {10, 70, 210, 120});
    a.put(L"CAPTION", Str(L"One"));
    b.put(L"CAPTION", Str(L"Two"));
    a.put(L"ToolTip", Str(L"Same"));
    b.put(L"ToolTip", Str(L"Same"));
    {
        Page p(form.hwnd(), {a.unknown(), b.unknown(), frame.unknown()});
        // Only what all three have; values shown where they agree.
        EXPECT_TRUE(p.editor(L"CAPTION"));
        EXPECT_FALSE(p.editor(L"ToolTip"));
        EXPECT_EQ(L"", p.text(L"CAPTION"));
    }
    Page p(form.hwnd(), {a.unknown(), b.unknown()});
    EXPECT_EQ(L"Same", p.text(L"ToolTip"));
    EXPECT_EQ(L"", p.text(L"CAPTION"));
    // The first button's container binds CAPTION and refuses the edit: that button keeps its
    // caption and announces nothing; the other one takes it.
    a.site().request_edit_answer = S_FALSE;
    a.log().changes.clear();
    a.site().edit_requests.clear();
    p.edit(L"CAPTION", L"Both");
    ASSERT_EQ(S_OK, p.page->Apply());
    EXPECT_EQ(L"One", as_string(a.get(L"CAPTION")));
    EXPECT_TRUE(a.log().changes.empty());
    EXPECT_EQ(std::vector<DISPID>{kCaption}, a.site().edit_requests);
    EXPECT_EQ(L"Both", as_string(b.get(L"CAPTION")));
    // Refused by script too, and a value that does not convert is skipped without a failure.
    EXPECT_EQ(S_OK, a.put(L"CAPTION", Str(L"Script")));
    EXPECT_EQ(L"One", as_string(a.get(L"CAPTION")));
    a.site().request_edit_answer = S_OK;
    p.edit(L"BACKCOLOR", L"not a colour");
    p.edit(L"ToolTip", L"Applied");
    EXPECT_EQ(S_OK, p.page->Apply());
    EXPECT_EQ(L"Applied", as_string(a.get(L"ToolTip")));
    // Bad calls are refused, never crash.
    EXPECT_EQ(E_POINTER, p.page->SetObjects(2, nullptr));
    EXPECT_EQ(E_POINTER, p.page->GetPageInfo(nullptr));
    EXPECT_EQ(E_INVALIDARG, p.page->EditProperty(12345));
    EXPECT_EQ(S_OK, p.page->EditProperty(kCaption));
    // The properties verb opens the container's own frame where it has one.
    frame.site().property_frame_answer = S_OK;
    frame.log().expect(L"IOleControlSite::ShowPropertyFrame");
    ComPtr<IOleObject> ole = frame.as<IOleObject>(IID_IOleObject);
    EXPECT_EQ(S_OK, ole->DoVerb(1, nullptr, &frame.site(), 0, form.hwnd(), nullptr));
    EXPECT_EQ(S_OK, ole->DoVerb(OLEIVERB_PROPERTIES, nullptr, &frame.site(), 0, form.hwnd(), nullptr));
    EXPECT_TRUE(frame.log().check().empty());
}

TEST_F(HostConventions, EachClassDeclaresItsPagesSafetyAndStatus)
{
    struct Case {
        const wchar_t *progid;
        bool visible, safe;
        DWORD must, must_not;
        bool colour = true; // has a colour property: the stock colour page is listed
    } cases[] = {
        {L"TarnControls.cframe", true, true, 0, OLEMISC_ALWAYSRUN},
        {L"TarnControls.lnev", true, true, 0, OLEMISC_ACTSLIKEBUTTON},
        {L"TarnControls.cbtn", true, true, OLEMISC_ACTSLIKEBUTTON, OLEMISC_INVISIBLEATRUNTIME},
        {L"TarnControls.updown", true, true, 0, OLEMISC_ALWAYSRUN},
        {L"TarnControls.grid", true, false, 0, 0, false}, // reads and writes files
        {L"TarnControls.dlst", true, false, 0, 0, false}, // lists the machine's folders
        {L"TarnControls.grdchk", true, true, 0, 0},
        {L"TarnControls.tbf", true, true, 0, OLEMISC_ACTSLIKEBUTTON},
        {L"TarnControls.fontchars", true, true, 0, 0, false},
        {L"TarnControls.Subclass", false, false, OLEMISC_INVISIBLEATRUNTIME | OLEMISC_ALWAYSRUN, 0}, // other windows
        {L"TarnControls.resizelck", false, false, OLEMISC_INVISIBLEATRUNTIME | OLEMISC_ALWAYSRUN, 0},
        {L"TarnControls.mnutxt", false, false, OLEMISC_INVISIBLEATRUNTIME | OLEMISC_ALWAYSRUN, 0},
        {L"TarnControls.sepbar", true, true, 0, OLEMISC_ACTSLIKEBUTTON},
        {L"TarnControls.sepvbar", true, true, 0, OLEMISC_ALWAYSRUN, false},
        {L"TarnControls.downarrow", true, true, 0, OLEMISC_ACTSLIKEBUTTON, false},
        {L"TarnControls.lneh", true, true, 0, OLEMISC_SIMPLEFRAME},
        {L"TarnControls.rsz", true, false, 0, OLEMISC_ALWAYSRUN}, // hooks and sizes its form
        {L"TarnControls.rszxp", true, false, 0, OLEMISC_ALWAYSRUN},
        {L"TarnControls.pnl", true, true, OLEMISC_SIMPLEFRAME, OLEMISC_ACTSLIKEBUTTON}, // holds other controls
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(narrow(c.progid));
        CLSID clsid{};
        ASSERT_EQ(S_OK, CLSIDFromProgID(c.progid, &clsid));
        ComPtr<IOleObject> ole;
        ASSERT_EQ(S_OK, CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IOleObject, ole.put_void()));
        DWORD misc = 0;
        ASSERT_EQ(S_OK, ole->GetMiscStatus(DVASPECT_CONTENT, &misc));
        EXPECT_EQ(c.must, misc & c.must);
        EXPECT_EQ(0u, misc & c.must_not);

        ComPtr<ISpecifyPropertyPages> specify = ole.as<ISpecifyPropertyPages>(IID_ISpecifyPropertyPages);
        EXPECT_EQ(c.visible, static_cast<bool>(specify));
        if (specify) {
            CAUUID pages{};
            ASSERT_EQ(S_OK, specify->GetPages(&pages));
            ASSERT_LE(1u, pages.cElems);
            EXPECT_EQ(CLSID_TarnGeneralPage, pages.pElems[0]);
            bool colour = std::find(pages.pElems, pages.pElems + pages.cElems, CLSID_CColorPropPage) != pages.pElems + pages.cElems;
            EXPECT_EQ(c.colour, colour);
            CoTaskMemFree(pages.pElems);
            EXPECT_EQ(E_POINTER, specify->GetPages(nullptr));
        }

        ComPtr<IObjectSafety> safety = ole.as<IObjectSafety>(IID_IObjectSafety);
        EXPECT_EQ(c.safe, static_cast<bool>(safety));
        if (safety) {
            DWORD supported = 0, enabled = 0;
            EXPECT_EQ(S_OK, safety->GetInterfaceSafetyOptions(IID_IDispatch, &supported, &enabled));
            EXPECT_EQ(DWORD(INTERFACESAFE_FOR_UNTRUSTED_CALLER), supported);
            EXPECT_EQ(0u, enabled);
            EXPECT_EQ(S_OK, safety->SetInterfaceSafetyOptions(IID_IDispatch, INTERFACESAFE_FOR_UNTRUSTED_CALLER,
                                                               INTERFACESAFE_FOR_UNTRUSTED_CALLER));
            EXPECT_EQ(S_OK, safety->GetInterfaceSafetyOptions(IID_IDispatch, &supported, &enabled));
            EXPECT_EQ(DWORD(INTERFACESAFE_FOR_UNTRUSTED_CALLER), enabled);
            EXPECT_EQ(S_OK, safety->SetInterfaceSafetyOptions(IID_IPersistPropertyBag, INTERFACESAFE_FOR_UNTRUSTED_DATA,
                                                               INTERFACESAFE_FOR_UNTRUSTED_DATA));
            // Nothing it is not: data safety asked of the dispatch interface, an interface it lacks.
            EXPECT_EQ(E_FAIL, safety->SetInterfaceSafetyOptions(IID_IDispatch, INTERFACESAFE_FOR_UNTRUSTED_DATA,
                                                                INTERFACESAFE_FOR_UNTRUSTED_DATA));
            EXPECT_EQ(E_NOINTERFACE, safety->SetInterfaceSafetyOptions(IID_IStream, 1, 1));
            EXPECT_EQ(E_POINTER, safety->GetInterfaceSafetyOptions(IID_IDispatch, nullptr, &enabled));
        }

        // Verbs from the registration: the properties verb where there are pages.
        ComPtr<IEnumOLEVERB> verbs;
        ASSERT_EQ(S_OK, ole->EnumVerbs(verbs.put()));
        OLEVERB v[4] = {};
        ULONG got = 0;
        verbs->Next(4, v, &got);
        bool properties = false;
        for (ULONG i = 0; i < got; ++i) {
            properties |= v[i].lVerb == 1;
            CoTaskMemFree(v[i].lpszVerbName);
        }
        EXPECT_EQ(c.visible, properties);
        if (!c.visible) {
            EXPECT_EQ(OLEOBJ_S_INVALIDVERB, ole->DoVerb(1, nullptr, nullptr, 0, nullptr, nullptr));
        }
    }
}

TEST_F(HostConventions, EveryVisibleControlAnswersScreenReadersWithItsRole)
{
    struct Case {
        const wchar_t *progid;
        long role;
    } cases[] = {
        {L"TarnControls.cframe", ROLE_SYSTEM_GROUPING},   {L"TarnControls.lnev", ROLE_SYSTEM_SEPARATOR},
        {L"TarnControls.cbtn", ROLE_SYSTEM_PUSHBUTTON},   {L"TarnControls.updown", ROLE_SYSTEM_SPINBUTTON},
        {L"TarnControls.grid", ROLE_SYSTEM_TABLE},        {L"TarnControls.grdchk", ROLE_SYSTEM_CHECKBUTTON},
        {L"TarnControls.sepbar", ROLE_SYSTEM_SEPARATOR},  {L"TarnControls.sepvbar", ROLE_SYSTEM_SEPARATOR},
        {L"TarnControls.lneh", ROLE_SYSTEM_SEPARATOR},    {L"TarnControls.downarrow", ROLE_SYSTEM_GRAPHIC},
        {L"TarnControls.rsz", ROLE_SYSTEM_GRIP},          {L"TarnControls.rszxp", ROLE_SYSTEM_GRIP},
        {L"TarnControls.pnl", ROLE_SYSTEM_GROUPING},
        {L"TarnControls.dlst", ROLE_SYSTEM_GROUPING},     {L"TarnControls.tbf", ROLE_SYSTEM_PAGETABLIST},
        {L"TarnControls.fontchars", ROLE_SYSTEM_LIST},
    };
    allow_self_sizing(form);
    int y = 10;
    for (const Case &c : cases) {
        SCOPED_TRACE(narrow(c.progid));
        Hosted &h = place(c.progid, {10, y, 210, y + 40});
        y += 45;
        ASSERT_EQ(S_OK, h.activate());
        ComPtr<IAccessible> acc;
        ASSERT_EQ(S_OK, AccessibleObjectFromWindow(h.hwnd(), OBJID_CLIENT, IID_IAccessible, acc.put_void()));
        Variant self = Variant::of_i4(CHILDID_SELF), role, state;
        ASSERT_EQ(S_OK, acc->get_accRole(*self.get(), role.put()));
        EXPECT_EQ(c.role, V_I4(role.get()));
        ASSERT_EQ(S_OK, acc->get_accState(*self.get(), state.put()));
        EXPECT_EQ(0, V_I4(state.get()) & STATE_SYSTEM_INVISIBLE);
        // The rest from the window's standard object: where it is.
        long x = 0, top = 0, w = 0, hgt = 0;
        RECT client{};
        GetClientRect(h.hwnd(), &client);
        EXPECT_EQ(S_OK, acc->accLocation(&x, &top, &w, &hgt, *self.get()));
        EXPECT_EQ(client.right, w);
    }
    // The up-down box reads out its value, the check box whether it is checked.
    Hosted &u = *controls_[3];
    u.put(L"Text", Str(L"42"));
    ComPtr<IAccessible> acc;
    ASSERT_EQ(S_OK, AccessibleObjectFromWindow(u.hwnd(), OBJID_CLIENT, IID_IAccessible, acc.put_void()));
    Variant self = Variant::of_i4(CHILDID_SELF), state;
    Bstr value;
    EXPECT_EQ(S_OK, acc->get_accValue(*self.get(), value.put()));
    EXPECT_EQ(L"42", value.str());
    Hosted &check = *controls_[5];
    check.put(L"Value", I2(1));
    ASSERT_EQ(S_OK, AccessibleObjectFromWindow(check.hwnd(), OBJID_CLIENT, IID_IAccessible, acc.put_void()));
    ASSERT_EQ(S_OK, acc->get_accState(*self.get(), state.put()));
    EXPECT_TRUE(V_I4(state.get()) & STATE_SYSTEM_CHECKED);
}

// ---------------------------------------------------------------- value names

namespace {

// {0C5E8E57-4D3A-4F0C-9B2B-3E1B7A6F2C11}
const CLSID CLSID_Palette = {0x0c5e8e57, 0x4d3a, 0x4f0c, {0x9b, 0x2b, 0x3e, 0x1b, 0x7a, 0x6f, 0x2c, 0x11}};

// A control whose property 1 takes palette numbers, named for property sheets.
class Palette final : public ControlImpl<Palette, IDispatch> {
public:
    static const ControlClass Class;
    LONG number = 2;

    // Property 1 read through IDispatch, as GetDisplayString reads it.
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS *, VARIANT *result, EXCEPINFO *,
                        UINT *) override
    {
        if (id != 1 || !(flags & DISPATCH_PROPERTYGET) || !result) return DISP_E_MEMBERNOTFOUND;
        V_VT(result) = VT_I4;
        V_I4(result) = number;
        return S_OK;
    }

protected:
    std::vector<NamedValue> PropertyValueNames(DISPID id) override
    {
        if (id != 1) return {};
        return {{L"Office", Variant::of_i4(1)}, {L"Web safe", Variant::of_i4(2)}, {L"Grey", Variant::of_i4(7)}};
    }
};

const ControlClass Palette::Class = {L"palette",         L"Palette test control", &CLSID_Palette, &IID_IDispatch,
                                     nullptr,            OLEMISC_SETCLIENTSITEFIRST, &Palette::Create};

} // namespace

TEST(ValueNames, AControlNamesTheValuesOfAPropertyThatIsNoEnumeration)
{
    ComPtr<IUnknown> unk;
    ASSERT_EQ(S_OK, Palette::Create(IID_IUnknown, unk.put_void()));
    ComPtr<IPerPropertyBrowsing> browse = unk.as<IPerPropertyBrowsing>(IID_IPerPropertyBrowsing);
    ASSERT_TRUE(browse);
    CALPOLESTR names{};
    CADWORD cookies{};
    ASSERT_EQ(S_OK, browse->GetPredefinedStrings(1, &names, &cookies));
    ASSERT_EQ(3u, names.cElems);
    ASSERT_EQ(3u, cookies.cElems);
    EXPECT_STREQ(L"Web safe", names.pElems[1]);
    Variant value;
    ASSERT_EQ(S_OK, browse->GetPredefinedValue(1, cookies.pElems[2], value.put()));
    EXPECT_EQ(7, V_I4(value.get()));
    for (ULONG i = 0; i < names.cElems; ++i) CoTaskMemFree(names.pElems[i]);
    CoTaskMemFree(names.pElems);
    CoTaskMemFree(cookies.pElems);
    // The current value by its name; a value without one is left to the browser.
    Bstr shown;
    EXPECT_EQ(S_OK, browse->GetDisplayString(1, shown.put()));
    EXPECT_EQ(L"Web safe", shown.str());
    static_cast<Palette *>(static_cast<IDispatch *>(unk.as<IDispatch>(IID_IDispatch).get()))->number = 5;
    EXPECT_EQ(S_FALSE, browse->GetDisplayString(1, shown.put()));
    // Other properties have no names; bad cookies and pointers are refused.
    EXPECT_EQ(E_NOTIMPL, browse->GetPredefinedStrings(2, &names, &cookies));
    EXPECT_EQ(E_INVALIDARG, browse->GetPredefinedValue(1, 99, value.put()));
    EXPECT_EQ(E_POINTER, browse->GetPredefinedStrings(1, nullptr, &cookies));
    EXPECT_EQ(E_POINTER, browse->GetDisplayString(1, nullptr));
}
