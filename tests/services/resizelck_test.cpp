// The resize lock through the real DLL on a real form: the size query it answers (record
// fields and real resizing), its write rules and load sequence, hooking only at run time, its
// design-time icon, and a form and a lock that go in either order.
#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "design_icon.h"
#include "support/control_test.h"
#include "support/test_windows.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.resizelck";
constexpr wchar_t kGetWindow[] = L"IOleInPlaceSite::GetWindow";

// The screen's size as the host's screen object reports it: twips.
LONG screen_twips(int metric, int dpi_index)
{
    HDC dc = GetDC(nullptr);
    int dpi = GetDeviceCaps(dc, dpi_index);
    ReleaseDC(nullptr, dc);
    return MulDiv(GetSystemMetrics(metric), 1440, dpi);
}
LONG screen_width() { return screen_twips(SM_CXSCREEN, LOGPIXELSX); }
LONG screen_height() { return screen_twips(SM_CYSCREEN, LOGPIXELSY); }

// The form's answer to WM_GETMINMAXINFO, from a record pre-filled with markers.
MINMAXINFO ask(HWND form)
{
    MINMAXINFO info;
    memset(&info, 0x5A, sizeof info);
    SendMessageW(form, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
    return info;
}

SIZE size_of(HWND w)
{
    RECT r{};
    GetWindowRect(w, &r);
    return {r.right - r.left, r.bottom - r.top};
}

// A property write with the argument exactly as given (by reference, as hosts pass variables).
HRESULT put_argument(Hosted &h, const wchar_t *name, VARIANT arg)
{
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS params{&arg, &named, 1, 1};
    return h.dispatch()->Invoke(dispid_of(h.dispatch(), name), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT,
                                &params, nullptr, nullptr, nullptr);
}

// A VB host's Long variable.
HRESULT put_by_reference(Hosted &h, const wchar_t *name, LONG &value)
{
    VARIANT arg;
    V_VT(&arg) = VT_I4 | VT_BYREF;
    V_I4REF(&arg) = &value;
    return put_argument(h, name, arg);
}

class ResizeLockTest : public ControlTest {
protected:
    // The lock looks for its form while it loads, before the test holds its log.
    void SetUp() override { form.allow_site_call(kGetWindow); }
    Hosted &lock(Init init = Init::New, IUnknown *bag = nullptr) { return place(kProgId, {0, 0, 32, 30}, init, bag); }
    long read(Hosted &h, const wchar_t *name) { return static_cast<long>(as_integer(h.get(name))); }
};

} // namespace

TEST_F(ResizeLockTest, AFormWithALockAnswersMinimum200By200WhenNothingElseIsSet)
{
    LONG_PTR own = proc_of(form.hwnd());
    Hosted &l = lock();
    EXPECT_NE(own, proc_of(form.hwnd()));
    EXPECT_EQ(1, std::count(l.log().calls().begin(), l.log().calls().end(), kGetWindow));
    MINMAXINFO info = ask(form.hwnd());
    EXPECT_EQ(200, info.ptMinTrackSize.x);
    EXPECT_EQ(200, info.ptMinTrackSize.y);
    // Without HasMaxSize the maximum is the screen's size in twips: far beyond the screen.
    EXPECT_EQ(screen_width(), info.ptMaxTrackSize.x);
    EXPECT_EQ(screen_height(), info.ptMaxTrackSize.y);
    // Everything else stays as the window manager (here: the markers) filled it.
    MINMAXINFO markers;
    memset(&markers, 0x5A, sizeof markers);
    EXPECT_EQ(0, memcmp(&markers, &info, offsetof(MINMAXINFO, ptMinTrackSize)));
    // And the form cannot be made smaller than that.
    SetWindowPos(form.hwnd(), nullptr, 0, 0, 50, 60, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(200, size_of(form.hwnd()).cx);
    EXPECT_EQ(200, size_of(form.hwnd()).cy);
    SetWindowPos(form.hwnd(), nullptr, 0, 0, 700, 500, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(700, size_of(form.hwnd()).cx);
}

TEST_F(ResizeLockTest, WithHasMaxSizeAMaximumBelowItsMinimumIsRaised)
{
    Hosted &l = lock();
    l.put(L"HasMaxSize", Bool(true));
    l.put(L"MinWidth", I4(400));
    l.put(L"MinHeight", I4(250));
    LONG width = 300;
    EXPECT_EQ(S_OK, put_by_reference(l, L"MaxWidth", width));
    EXPECT_EQ(400, width); // the caller's variable receives the raised value
    EXPECT_EQ(400, read(l, L"MaxWidth"));
    EXPECT_EQ((std::vector<std::wstring>{L"HasMaxSize", L"MinWidth", L"MinHeight", L"MaxWidth"}), l.log().changes);
    // A script's variable (a Variant holding an Integer) and a Double variable are raised too.
    VARIANT script_variable;
    V_VT(&script_variable) = VT_I2;
    V_I2(&script_variable) = 300;
    VARIANT by_variant;
    V_VT(&by_variant) = VT_VARIANT | VT_BYREF;
    V_VARIANTREF(&by_variant) = &script_variable;
    EXPECT_EQ(S_OK, put_argument(l, L"MaxWidth", by_variant));
    EXPECT_EQ(VT_I2, V_VT(&script_variable));
    EXPECT_EQ(400, V_I2(&script_variable));
    double real = 250.4;
    VARIANT by_double;
    V_VT(&by_double) = VT_R8 | VT_BYREF;
    V_R8REF(&by_double) = &real;
    EXPECT_EQ(S_OK, put_argument(l, L"MaxWidth", by_double));
    EXPECT_EQ(400.0, real);
    // A value above the minimum is stored and the variable left as it was.
    width = 1234;
    EXPECT_EQ(S_OK, put_by_reference(l, L"MaxWidth", width));
    EXPECT_EQ(1234, width);
    l.put(L"MaxWidth", I4(300)); // by value: only stored
    EXPECT_EQ(400, read(l, L"MaxWidth"));
    l.put(L"MaxHeight", I4(600));
    EXPECT_EQ(600, read(l, L"MaxHeight"));
    MINMAXINFO info = ask(form.hwnd());
    EXPECT_EQ(400, info.ptMinTrackSize.x);
    EXPECT_EQ(250, info.ptMinTrackSize.y);
    EXPECT_EQ(400, info.ptMaxTrackSize.x);
    EXPECT_EQ(600, info.ptMaxTrackSize.y);
    SetWindowPos(form.hwnd(), nullptr, 0, 0, 1000, 1000, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(400, size_of(form.hwnd()).cx);
    EXPECT_EQ(600, size_of(form.hwnd()).cy);
}

TEST_F(ResizeLockTest, WithoutHasMaxSizeAMaximumReadsBackAsTheScreensSize)
{
    Hosted &l = lock();
    LONG height = 300;
    EXPECT_EQ(S_OK, put_by_reference(l, L"MaxHeight", height));
    EXPECT_EQ(300, height); // ignored, and left as it was
    EXPECT_EQ(screen_height(), read(l, L"MaxHeight"));
    l.put(L"MaxWidth", I4(10));
    EXPECT_EQ(screen_width(), read(l, L"MaxWidth"));
    // Setting HasMaxSize lets maxima through; clearing it resets them to the screen's size.
    l.put(L"HasMaxSize", Bool(true));
    l.put(L"MaxHeight", I4(700));
    l.put(L"MaxWidth", I4(800));
    EXPECT_EQ(700, read(l, L"MaxHeight"));
    l.put(L"HasMaxSize", Bool(false));
    EXPECT_EQ(screen_height(), read(l, L"MaxHeight"));
    EXPECT_EQ(screen_width(), read(l, L"MaxWidth"));
    EXPECT_FALSE(as_integer(l.get(L"HasMaxSize")));
    // Minima are stored as they come, even below zero; they do not move the maxima.
    l.put(L"MinHeight", I4(-5));
    EXPECT_EQ(-5, read(l, L"MinHeight"));
    EXPECT_EQ(screen_height(), read(l, L"MaxHeight"));
}

TEST_F(ResizeLockTest, LoadingReadsItsKeysInOrderAndSettlesTheLimits)
{
    ComPtr<Bag> bag = Bag::Create();
    bag->set(L"HasMaxSize", Bool(true));
    bag->set(L"MaxWidth", I4(300));
    bag->set(L"MinWidth", I4(400));
    bag->set(L"MaxHeight", I4(900));
    Hosted &l = lock(Init::FromBag, bag.get());
    EXPECT_EQ((std::vector<std::wstring>{L"MaxHeight", L"MaxWidth", L"MinHeight", L"MinWidth", L"HasMaxSize"}), bag->reads);
    EXPECT_EQ(400, read(l, L"MaxWidth"));
    EXPECT_EQ(900, read(l, L"MaxHeight"));
    EXPECT_EQ(200, read(l, L"MinHeight"));
    EXPECT_EQ(400, ask(form.hwnd()).ptMaxTrackSize.x);

    // Without HasMaxSize the stored maxima give way to the screen's size.
    ComPtr<Bag> plain = Bag::Create();
    plain->set(L"MaxHeight", I4(300));
    Hosted &m = lock(Init::FromBag, plain.get());
    EXPECT_EQ(screen_height(), read(m, L"MaxHeight"));
}

TEST_F(ResizeLockTest, SavesOnlyWhatDiffersFromItsDefaultsAndComesBackTheSame)
{
    Hosted &l = lock();
    EXPECT_TRUE(l.save_bag()->keys().empty());
    l.put(L"HasMaxSize", Bool(true));
    l.put(L"MinWidth", I4(320));
    l.put(L"MaxHeight", I4(480));
    ComPtr<Bag> bag = l.save_bag();
    EXPECT_EQ((std::vector<std::wstring>{L"MaxHeight", L"MinWidth", L"HasMaxSize"}), bag->keys());
    Hosted &again = lock(Init::FromBag, bag.get());
    EXPECT_EQ(480, read(again, L"MaxHeight"));
    EXPECT_EQ(320, read(again, L"MinWidth"));
    EXPECT_EQ(screen_width(), read(again, L"MaxWidth"));
    ComPtr<IStream> stream = l.save_stream();
    Hosted &streamed = lock(Init::FromStream, stream.get());
    EXPECT_EQ(480, read(streamed, L"MaxHeight"));
    EXPECT_TRUE(as_integer(streamed.get(L"HasMaxSize")));
}

TEST_F(ResizeLockTest, WrongTypesInTheStoreAndOnThePropertiesAreHarmless)
{
    ComPtr<Bag> bag = Bag::Create();
    bag->set(L"MaxHeight", Str(L"tall"));
    bag->set(L"MinWidth", R8(1e12)); // does not fit a Long
    bag->set(L"MinHeight", Str(L"250"));
    bag->set(L"HasMaxSize", Str(L"perhaps"));
    Hosted &l = lock(Init::FromBag, bag.get());
    EXPECT_EQ(S_OK, l.init_result());
    EXPECT_EQ(screen_height(), read(l, L"MaxHeight"));
    EXPECT_EQ(200, read(l, L"MinWidth"));
    EXPECT_EQ(250, read(l, L"MinHeight"));
    EXPECT_FALSE(as_integer(l.get(L"HasMaxSize")));
    EXPECT_EQ(S_OK, l.put(L"MinWidth", Str(L"wide")));
    EXPECT_EQ(S_OK, l.put(L"MaxWidth", Variant()));
    EXPECT_EQ(S_OK, l.put(L"HasMaxSize", R8(1e300)));
    EXPECT_EQ(200, read(l, L"MinWidth"));
    l.put(L"MinWidth", I4(0x7FFFFFFF));
    EXPECT_EQ(0x7FFFFFFF, ask(form.hwnd()).ptMinTrackSize.x);
    // A size query without a record is answered without touching one.
    EXPECT_EQ(0, SendMessageW(form.hwnd(), WM_GETMINMAXINFO, 0, 0));
}

TEST_F(ResizeLockTest, FirstDisplayFillsLimitsThatAreStillZero)
{
    ComPtr<Bag> bag = Bag::Create();
    bag->set(L"HasMaxSize", Bool(true));
    for (const wchar_t *key : {L"MaxHeight", L"MaxWidth", L"MinHeight", L"MinWidth"}) bag->set(key, I4(0));
    Hosted &l = lock(Init::FromBag, bag.get());
    EXPECT_EQ(0, read(l, L"MaxHeight"));
    EXPECT_EQ(0, read(l, L"MinWidth"));
    l.activate();
    EXPECT_EQ(screen_height(), read(l, L"MaxHeight"));
    EXPECT_EQ(screen_width(), read(l, L"MaxWidth"));
    EXPECT_EQ(200, read(l, L"MinHeight"));
    EXPECT_EQ(200, read(l, L"MinWidth"));
    // Only the first display.
    l.put(L"MinWidth", I4(0));
    l.deactivate();
    l.activate();
    EXPECT_EQ(0, read(l, L"MinWidth"));
}

TEST_F(ResizeLockTest, AtDesignTimeNothingIsHookedAndTheLockIsItsIcon)
{
    form.set_user_mode(false);
    form.allow_site_call(L"IOleClientSite::RequestNewObjectLayout");
    LONG_PTR own = proc_of(form.hwnd());
    Hosted &l = place(kProgId, {10, 10, 210, 39});
    EXPECT_EQ(own, proc_of(form.hwnd()));
    EXPECT_EQ(0, std::count(l.log().calls().begin(), l.log().calls().end(), kGetWindow));
    MINMAXINFO info = ask(form.hwnd());
    EXPECT_EQ(0x5A5A5A5A, info.ptMinTrackSize.x);
    // The container placed it 200 x 29; it asked to be the size of its icon instead.
    EXPECT_EQ(1, std::count(l.log().calls().begin(), l.log().calls().end(), L"IOleClientSite::RequestNewObjectLayout"));
    expect_icon_face(l, L"resizelck-design.png");
    // At run time the same lock shows nothing but its background.
    form.set_user_mode(true);
    Bitmap run = l.render(32, 30);
    EXPECT_EQ(run.width() * run.height(), run.count(GetSysColor(COLOR_BTNFACE)));
    // Switching to run time does not hook: the lock hooks once, when it loads.
    EXPECT_EQ(own, proc_of(form.hwnd()));
}

TEST_F(ResizeLockTest, ClosingTheLockGivesTheFormItsOwnProcedureBack)
{
    LONG_PTR own = proc_of(form.hwnd());
    Hosted &l = lock();
    close(l);
    EXPECT_EQ(own, proc_of(form.hwnd()));
    EXPECT_EQ(0x5A5A5A5A, ask(form.hwnd()).ptMinTrackSize.x);
}

TEST_F(ResizeLockTest, AFormDestroyedBeforeItsLockTakesTheHookWithIt)
{
    auto other = std::make_unique<Container>(300, 300);
    other->allow_site_call(kGetWindow);
    Hosted l(*other, kProgId, {0, 0, 32, 30});
    ASSERT_NE(0, ask(other->hwnd()).ptMinTrackSize.x);
    DestroyWindow(other->hwnd());
    pump();
    EXPECT_EQ(0u, l.close());
    // Two locks on one form, the form destroyed between them.
    Container third(300, 300);
    third.allow_site_call(kGetWindow);
    Hosted a(third, kProgId, {0, 0, 32, 30}), b(third, kProgId, {0, 0, 32, 30});
    EXPECT_EQ(200, ask(third.hwnd()).ptMinTrackSize.x);
    EXPECT_EQ(0u, a.close());
    DestroyWindow(third.hwnd());
    EXPECT_EQ(0u, b.close());
}

TEST_F(ResizeLockTest, ALockOnAnotherThreadsFormWorksThere)
{
    LONG answer = 0;
    LONG_PTR own = proc_of(form.hwnd());
    std::thread t([&] {
        OleInitialize(nullptr);
        {
            Container there(300, 300);
            there.allow_site_call(kGetWindow);
            Hosted l(there, kProgId, {0, 0, 32, 30});
            l.put(L"MinWidth", I4(321));
            answer = ask(there.hwnd()).ptMinTrackSize.x;
            l.close();
        }
        OleUninitialize();
    });
    t.join();
    EXPECT_EQ(321, answer);
    EXPECT_EQ(own, proc_of(form.hwnd()));
}
