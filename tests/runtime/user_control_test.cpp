// The contract every control inherits from the runtime, exercised on the frame: connection
// points and their enumerators, class information, quick activation, the storage form, life
// without a site, dispatch errors, null arguments, and the class factory.
#include <gtest/gtest.h>

#include "foundation/font_object.h"
#include "runtime/change_key_sink.h"
#include "support/control_test.h"
#include "tarnctls_h.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.cframe";

// A frame of its own, with no container.
ComPtr<IUnknown> create()
{
    ComPtr<IUnknown> unk;
    CoCreateInstance(CLSID_cframe, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, unk.put_void());
    return unk;
}

// The interface a connection point serves; releases the reference the point came with.
IID served_by(IConnectionPoint *point)
{
    IID iid{};
    point->GetConnectionInterface(&iid);
    point->Release();
    return iid;
}

class RuntimeTest : public ControlTest {};

} // namespace

TEST_F(RuntimeTest, ConnectionPointsAndTheirEnumeratorsServeCountAndRefuse)
{
    Hosted &f = place(kProgId, {0, 0, 200, 29});
    ComPtr<IConnectionPointContainer> cpc = f.as<IConnectionPointContainer>(IID_IConnectionPointContainer);
    ComPtr<IConnectionPoint> cp;
    EXPECT_EQ(CONNECT_E_NOCONNECTION, cpc->FindConnectionPoint(IID_IDispatch, cp.put()));
    EXPECT_FALSE(cp);
    ASSERT_EQ(S_OK, cpc->FindConnectionPoint(DIID_IcframeEvents, cp.put()));
    ComPtr<IConnectionPointContainer> back;
    EXPECT_EQ(S_OK, cp->GetConnectionPointContainer(back.put()));
    EXPECT_EQ(cpc.get(), back.get());

    DWORD cookie = 0xdeadbeef;
    EXPECT_EQ(CONNECT_E_CANNOTCONNECT, cp->Advise(Bag::Create().get(), &cookie)); // no event sink
    EXPECT_EQ(0u, cookie);
    EXPECT_EQ(E_POINTER, cp->Advise(nullptr, &cookie));
    EXPECT_EQ(CONNECT_E_NOCONNECTION, cp->Unadvise(12345));

    // Two sinks; one unadvises itself while an event is being raised to both.
    CallLog first, second;
    ComPtr<EventSink> a = ComPtr<EventSink>::attach(new EventSink(nullptr, first));
    ComPtr<EventSink> b = ComPtr<EventSink>::attach(new EventSink(nullptr, second));
    DWORD a_cookie = 0, b_cookie = 0;
    ASSERT_EQ(S_OK, cp->Advise(a.get(), &a_cookie));
    ASSERT_EQ(S_OK, cp->Advise(b.get(), &b_cookie));
    EXPECT_NE(a_cookie, b_cookie);
    first.on_event = [&](const std::wstring &, DISPPARAMS *) { cp->Unadvise(a_cookie); };
    f.activate();
    click(f.hwnd(), 100, 20);
    EXPECT_EQ(1u, first.events.size()); // gone after its first event
    EXPECT_EQ((std::vector<std::wstring>{L"#3", L"#5", L"#1"}), second.event_names()); // MouseDown, MouseUp, Click
    EXPECT_EQ(S_OK, cp->Unadvise(b_cookie));
    EXPECT_EQ(0u, a.detach()->Release()); // the point holds neither any more
    EXPECT_EQ(0u, b.detach()->Release());

    // The enumerators hand out counted references.
    ComPtr<IEnumConnectionPoints> points;
    ASSERT_EQ(S_OK, cpc->EnumConnectionPoints(points.put()));
    IConnectionPoint *got[3] = {};
    ULONG fetched = 99;
    EXPECT_EQ(S_FALSE, points->Next(3, got, &fetched)); // events and property notices
    ASSERT_EQ(2u, fetched);
    EXPECT_EQ(DIID_IcframeEvents, served_by(got[0]));
    EXPECT_EQ(IID_IPropertyNotifySink, served_by(got[1]));
    EXPECT_EQ(S_OK, points->Reset());
    EXPECT_EQ(S_FALSE, points->Skip(5));
    EXPECT_EQ(E_POINTER, points->Next(2, got, nullptr)); // more than one needs a count
    ComPtr<IEnumConnectionPoints> clone;
    points->Reset();
    points->Skip(1);
    ASSERT_EQ(S_OK, points->Clone(clone.put()));
    IConnectionPoint *one = nullptr;
    EXPECT_EQ(S_OK, clone->Next(1, &one, nullptr)); // the clone continues where the original was
    EXPECT_EQ(IID_IPropertyNotifySink, served_by(one));

    // The sink list of a point: the container's own sinks, each reference counted.
    cpc->FindConnectionPoint(IID_IPropertyNotifySink, cp.put());
    ComPtr<IEnumConnections> conns;
    ASSERT_EQ(S_OK, cp->EnumConnections(conns.put()));
    CONNECTDATA data[2] = {};
    fetched = 0;
    EXPECT_EQ(S_FALSE, conns->Next(2, data, &fetched));
    ASSERT_EQ(1u, fetched);
    EXPECT_TRUE(ComPtr<IUnknown>(data[0].pUnk).as<ITarnChangeKeySink>(__uuidof(ITarnChangeKeySink)));
    data[0].pUnk->Release();
}

TEST_F(RuntimeTest, ClassInformationNamesTheClassAndItsEvents)
{
    Hosted &f = place(kProgId);
    ComPtr<IProvideClassInfo2> info = f.as<IProvideClassInfo2>(IID_IProvideClassInfo2);
    GUID g{};
    EXPECT_EQ(S_OK, info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &g));
    EXPECT_EQ(DIID_IcframeEvents, g);
    EXPECT_EQ(E_INVALIDARG, info->GetGUID(42, &g));
    ComPtr<ITypeInfo> cls;
    ASSERT_EQ(S_OK, info->GetClassInfo(cls.put()));
    Bstr name;
    cls->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
    EXPECT_EQ(L"cframe", name.str());
    CLSID clsid{};
    f.as<IPersist>(IID_IPersist)->GetClassID(&clsid);
    EXPECT_EQ(CLSID_cframe, clsid);
}

TEST_F(RuntimeTest, DispatchReportsUnknownMembersAndSkipsUnconvertibleArguments)
{
    Hosted &f = place(kProgId);
    IDispatch *d = f.dispatch();
    Variant out;
    EXPECT_EQ(DISP_E_UNKNOWNNAME, get_property(d, L"NoSuchMember", out));
    // A BSTR that is not a number cannot become a colour: the write is skipped, not failed.
    EXPECT_EQ(S_OK, f.put(L"BACKCOLOR", Str(L"green")));
    EXPECT_EQ(0x8000000F, static_cast<uint32_t>(as_integer(f.get(L"BACKCOLOR"))));
    // An object of the wrong kind where a font goes (here the frame itself): skipped as well.
    EXPECT_EQ(S_OK, f.putref(L"Font", f.dispatch()));
    EXPECT_EQ(S_OK, f.put(L"Font", Variant::of_dispatch(f.dispatch())));
    EXPECT_EQ(VT_DISPATCH, f.get(L"Font").vt());
    // Colours come back as Long, what automation clients expect.
    EXPECT_EQ(VT_I4, f.get(L"BACKCOLOR").vt());
    // Calling a property as a method, or with arguments it does not take, is the caller's error.
    EXPECT_EQ(DISP_E_MEMBERNOTFOUND, call_method(d, L"CAPTION", {I4(1), I4(2)}, &out));
    EXPECT_TRUE(FAILED(get_property(d, L"CAPTION", out, {I4(1), I4(2)})));
    ComPtr<ITypeInfo> ti;
    EXPECT_EQ(DISP_E_BADINDEX, d->GetTypeInfo(1, 0, ti.put()));
    LPOLESTR names[] = {const_cast<LPOLESTR>(L"CAPTION")};
    DISPID id = 0;
    EXPECT_EQ(DISP_E_UNKNOWNINTERFACE, d->GetIDsOfNames(IID_IDispatch, names, 1, 0, &id));
    EXPECT_EQ(S_OK, d->GetIDsOfNames(IID_NULL, names, 1, 0, &id));
    // A BYREF argument with a null pointer is refused by the dispatcher, not followed.
    VARIANT arg;
    V_VT(&arg) = VT_BSTR | VT_BYREF;
    V_BSTRREF(&arg) = nullptr;
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{&arg, &put, 1, 1};
    HRESULT hr = d->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr);
    EXPECT_TRUE(hr == S_OK || FAILED(hr));
    EXPECT_EQ(L"VBAR", as_string(f.get(L"CAPTION")));
}

TEST_F(RuntimeTest, NullArgumentsAreRefusedNotFollowed)
{
    Hosted &f = place(kProgId);
    ComPtr<IOleObject> ole = f.as<IOleObject>(IID_IOleObject);
    EXPECT_EQ(E_POINTER, ole->GetExtent(DVASPECT_CONTENT, nullptr));
    EXPECT_EQ(E_POINTER, ole->SetExtent(DVASPECT_CONTENT, nullptr));
    EXPECT_EQ(E_POINTER, ole->GetMiscStatus(DVASPECT_CONTENT, nullptr));
    EXPECT_EQ(E_POINTER, ole->Advise(nullptr, nullptr));
    EXPECT_EQ(OLEOBJ_S_INVALIDVERB, ole->DoVerb(42, nullptr, nullptr, 0, nullptr, nullptr));
    EXPECT_EQ(E_POINTER, f.as<IPersistStreamInit>(IID_IPersistStreamInit)->Save(nullptr, TRUE));
    EXPECT_EQ(E_POINTER, f.as<IPersistStreamInit>(IID_IPersistStreamInit)->GetSizeMax(nullptr));
    EXPECT_EQ(E_POINTER, f.as<IPersistPropertyBag>(IID_IPersistPropertyBag)->Save(nullptr, TRUE, TRUE));
    EXPECT_EQ(E_POINTER, f.as<IOleInPlaceObject>(IID_IOleInPlaceObject)->SetObjectRects(nullptr, nullptr));
    EXPECT_EQ(E_POINTER, f.as<IConnectionPointContainer>(IID_IConnectionPointContainer)->FindConnectionPoint(IID_IDispatch, nullptr));
    EXPECT_EQ(E_POINTER, f.as<IProvideClassInfo2>(IID_IProvideClassInfo2)->GetClassInfo(nullptr));
    HWND w = reinterpret_cast<HWND>(1);
    EXPECT_EQ(E_FAIL, f.as<IOleWindow>(IID_IOleWindow)->GetWindow(&w)); // not active: no window
    EXPECT_EQ(nullptr, w);
    void *p = reinterpret_cast<void *>(1);
    EXPECT_EQ(E_NOINTERFACE, f.unknown()->QueryInterface(IID_IClassFactory, &p));
    EXPECT_EQ(nullptr, p);
}

TEST_F(RuntimeTest, QuickActivationSitesAndConnectsInOneCall)
{
    ComPtr<IUnknown> unk = create();
    ASSERT_TRUE(unk);
    CallLog log;
    ComPtr<Site> site = ComPtr<Site>::attach(new Site(form.hwnd(), form.frame(), form.ambient(), log));
    ComPtr<EventSink> sink = ComPtr<EventSink>::attach(new EventSink(nullptr, log));
    QACONTAINER qc{};
    qc.cbSize = sizeof qc;
    qc.pClientSite = site.get();
    qc.pUnkEventSink = static_cast<IDispatch *>(sink.get());
    qc.pPropertyNotifySink = site.get();
    QACONTROL qa{};
    qa.cbSize = sizeof qa;
    ComPtr<IQuickActivate> quick = unk.as<IQuickActivate>(IID_IQuickActivate);
    ASSERT_EQ(S_OK, quick->QuickActivate(&qc, &qa));
    EXPECT_NE(0u, qa.dwEventCookie);
    EXPECT_NE(0u, qa.dwPropNotifyCookie);
    EXPECT_TRUE(qa.dwMiscStatus & OLEMISC_SETCLIENTSITEFIRST);
    ComPtr<IOleClientSite> got;
    unk.as<IOleObject>(IID_IOleObject)->GetClientSite(got.put());
    EXPECT_EQ(static_cast<IOleClientSite *>(site.get()), got.get());
    put_property(unk.as<IDispatch>(IID_IDispatch).get(), L"CAPTION", Str(L"quick"));
    EXPECT_EQ(std::vector<std::wstring>{L"CAPTION"}, log.changes);
    QACONTAINER small{};
    small.cbSize = 4;
    EXPECT_EQ(E_INVALIDARG, quick->QuickActivate(&small, &qa));
    unk.as<IOleObject>(IID_IOleObject)->SetClientSite(nullptr);
    got.reset();
    quick.reset();
    EXPECT_EQ(0u, unk.detach()->Release());
    EXPECT_EQ(0u, sink.detach()->Release()); // the control kept no reference to it
}

TEST_F(RuntimeTest, TheStorageFormRoundTripsLikeTheStream)
{
    Hosted &f = place(kProgId);
    f.put(L"CAPTION", Str(L"in a storage"));
    ComPtr<ILockBytes> bytes;
    ASSERT_EQ(S_OK, CreateILockBytesOnHGlobal(nullptr, TRUE, bytes.put()));
    ComPtr<IStorage> storage;
    ASSERT_EQ(S_OK, StgCreateDocfileOnILockBytes(bytes.get(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0,
                                                 storage.put()));
    ComPtr<IPersistStorage> ps = f.as<IPersistStorage>(IID_IPersistStorage);
    ASSERT_EQ(S_OK, ps->Save(storage.get(), TRUE));
    EXPECT_EQ(S_OK, ps->SaveCompleted(nullptr));
    storage->Commit(STGC_DEFAULT);

    ComPtr<IUnknown> other = create();
    ComPtr<IPersistStorage> load = other.as<IPersistStorage>(IID_IPersistStorage);
    ASSERT_EQ(S_OK, load->Load(storage.get()));
    Variant v;
    get_property(other.as<IDispatch>(IID_IDispatch).get(), L"CAPTION", v);
    EXPECT_EQ(L"in a storage", as_string(v));
    EXPECT_EQ(E_UNEXPECTED, load->Load(storage.get()));
    // A storage without the control's stream: the control comes up with its defaults.
    ComPtr<IStorage> empty;
    StgCreateDocfileOnILockBytes(bytes.get(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, empty.put());
    ComPtr<IUnknown> third = create();
    EXPECT_EQ(S_OK, third.as<IPersistStorage>(IID_IPersistStorage)->Load(empty.get()));
}

TEST(RuntimeWithoutSite, AControlWorksWithoutAnyContainer)
{
    ComPtr<IUnknown> unk = create();
    ASSERT_TRUE(unk);
    ComPtr<IDispatch> d = unk.as<IDispatch>(IID_IDispatch);
    EXPECT_EQ(S_OK, put_property(d.get(), L"CAPTION", Str(L"no site")));
    Variant v;
    EXPECT_EQ(S_OK, get_property(d.get(), L"CAPTION", v));
    EXPECT_EQ(L"no site", as_string(v));
    // Drawn at the size it is drawn at, never sized by a container.
    Bitmap b(120, 30, 0xFF00FF);
    RECTL bounds{0, 0, 120, 30};
    EXPECT_EQ(S_OK, unk.as<IViewObject>(IID_IViewObject)->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, b.dc(),
                                                               &bounds, nullptr, nullptr, 0));
    EXPECT_EQ(GetSysColor(COLOR_3DHILIGHT), b.pixel(0, 0));
    // Saving and loading need no site either; the default font is the system's.
    ComPtr<IStream> s;
    CreateStreamOnHGlobal(nullptr, TRUE, s.put());
    EXPECT_EQ(S_OK, unk.as<IPersistStreamInit>(IID_IPersistStreamInit)->Save(s.get(), TRUE));
    // In-place activation needs a site to ask: refused, nothing else happens.
    EXPECT_EQ(E_UNEXPECTED, unk.as<IOleObject>(IID_IOleObject)->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, nullptr, 0,
                                                                       nullptr, nullptr));
    d.reset();
    EXPECT_EQ(0u, unk.detach()->Release());
}

TEST_F(RuntimeTest, AmbientFontIsTheDefaultForRestoreAndSave)
{
    FontSpec look;
    look.name = L"Tahoma";
    look.size = 12;
    form.ambient().font = ComPtr<IFontDisp>::attach(CreateFontObject(look));
    ComPtr<Bag> empty = Bag::Create();
    Hosted &f = place(kProgId, {0, 0, 200, 29}, Init::FromBag, empty.get());
    EXPECT_DOUBLE_EQ(12, FontSpecOf(V_DISPATCH(f.get(L"Font").get())).size);
    EXPECT_FALSE(f.save_bag()->has(L"FONT")); // equal to the ambient font: not stored
    form.ambient().font.reset();
    EXPECT_TRUE(f.save_bag()->has(L"FONT")); // the container's font changed: now it differs
}

TEST(ClassFactory, RefusesUnknownClassesAndAggregationAndCountsLocks)
{
    create(); // loads the DLL
    HMODULE dll = GetModuleHandleW(L"tarnctls.dll");
    ASSERT_TRUE(dll);
    auto get_class = reinterpret_cast<HRESULT(WINAPI *)(REFCLSID, REFIID, void **)>(GetProcAddress(dll, "DllGetClassObject"));
    ASSERT_TRUE(get_class);
    void *out = reinterpret_cast<void *>(1);
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, get_class(IID_IDispatch, IID_IClassFactory, &out));
    EXPECT_EQ(nullptr, out);
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(S_OK, get_class(CLSID_cframe, IID_IClassFactory, factory.put_void()));
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(Bag::Create().get(), IID_IUnknown, &out));
    EXPECT_EQ(E_NOINTERFACE, factory->CreateInstance(nullptr, IID_IClassFactory, &out));
    EXPECT_EQ(S_FALSE, dll_can_unload_now()); // the factory itself is alive
    factory->LockServer(TRUE);
    factory.reset();
    EXPECT_EQ(S_FALSE, dll_can_unload_now()); // locked
    ComPtr<IClassFactory> again;
    get_class(CLSID_cframe, IID_IClassFactory, again.put_void());
    again->LockServer(FALSE);
    again.reset();
    EXPECT_EQ(S_OK, dll_can_unload_now());
}
