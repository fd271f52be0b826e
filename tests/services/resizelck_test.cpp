// The resize lock through the real DLL on a real form: the size query it answers (record
// fields and real resizing), its write rules and load sequence, hooking only at run time, its
// design-time icon, and a form and a lock that go in either order.
#include <gtest/gtest.h>

#include <tuple>

#include "service_test.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.resizelck";
constexpr wchar_t kGetWindow[] = L"IOleInPlaceSite::GetWindow";

// The screen's size as the host's screen object reports it: twips.
SIZE screen_twips()
{
    HDC dc = GetDC(nullptr);
    SIZE s{MulDiv(GetSystemMetrics(SM_CXSCREEN), 1440, GetDeviceCaps(dc, LOGPIXELSX)),
           MulDiv(GetSystemMetrics(SM_CYSCREEN), 1440, GetDeviceCaps(dc, LOGPIXELSY))};
    ReleaseDC(nullptr, dc);
    return s;
}

// MaxHeight, MaxWidth, MinHeight, MinWidth, compared as one; a point as a comparable pair.
using Limits = std::vector<long>;
using Point = std::pair<long, long>;
Point xy(POINT p) { return {p.x, p.y}; }

// A store holding `values`, as a form's saved properties.
ComPtr<Bag> bag_of(std::initializer_list<std::pair<const wchar_t *, Variant>> values)
{
    ComPtr<Bag> bag = Bag::Create();
    for (const auto &[key, value] : values) bag->set(key, value);
    return bag;
}

// The form's answer to WM_GETMINMAXINFO, from a record pre-filled with markers.
MINMAXINFO ask(HWND form)
{
    MINMAXINFO info;
    memset(&info, 0x5A, sizeof info);
    SendMessageW(form, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
    return info;
}

// A host's variable of type `vt`, passed by reference as hosts pass variables to properties.
Variant by_ref(VARTYPE vt, void *variable)
{
    Variant v;
    V_VT(v.put()) = vt | VT_BYREF;
    V_BYREF(v.get()) = variable;
    return v;
}

class ResizeLockTest : public ControlTest {
protected:
    // The lock looks for its form while it loads, before the test holds its log.
    void SetUp() override { form.allow_site_call(kGetWindow); }
    Hosted &lock(Init init = Init::New, IUnknown *bag = nullptr) { return place(kProgId, {0, 0, 32, 30}, init, bag); }
    long read(Hosted &h, const wchar_t *name) { return static_cast<long>(as_integer(h.get(name))); }
    Limits limits(Hosted &h)
    {
        Limits out;
        for (const wchar_t *name : {L"MaxHeight", L"MaxWidth", L"MinHeight", L"MinWidth"}) out.push_back(read(h, name));
        return out;
    }
    const SIZE screen = screen_twips();
};

} // namespace

TEST_F(ResizeLockTest, AFormWithALockAnswersMinimum200By200UntilTheLockCloses)
{
    LONG_PTR own = proc_of(form.hwnd());
    Hosted &l = lock();
    MINMAXINFO info = ask(form.hwnd());
    EXPECT_EQ(Point(200, 200), xy(info.ptMinTrackSize));
    // Without HasMaxSize the maximum is the screen's size in twips: far beyond the screen.
    EXPECT_EQ(Point(screen.cx, screen.cy), xy(info.ptMaxTrackSize));
    // Everything else stays as the window manager (here: the markers) filled it.
    MINMAXINFO markers;
    memset(&markers, 0x5A, sizeof markers);
    EXPECT_EQ(0, memcmp(&markers, &info, offsetof(MINMAXINFO, ptMinTrackSize)));
    // And the form cannot be made smaller than that.
    SetWindowPos(form.hwnd(), nullptr, 0, 0, 50, 60, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    RECT r{};
    GetWindowRect(form.hwnd(), &r);
    EXPECT_EQ(Point(200, 200), Point(r.right - r.left, r.bottom - r.top));
    // Closing the lock gives the form its own procedure back.
    close(l);
    EXPECT_EQ(own, proc_of(form.hwnd()));
    EXPECT_EQ(0x5A5A5A5A, ask(form.hwnd()).ptMinTrackSize.x);
}

TEST_F(ResizeLockTest, MaximaAreTheScreensSizeWithoutHasMaxSizeAndNeverBelowTheMinimaWithIt)
{
    Hosted &l = lock();
    // Without HasMaxSize a maximum is ignored, its variable left as it was.
    LONG height = 300;
    EXPECT_EQ(S_OK, l.put(L"MaxHeight", by_ref(VT_I4, &height)));
    EXPECT_EQ(300, height);
    EXPECT_EQ(screen.cy, read(l, L"MaxHeight"));
    // With it, a maximum below its minimum is raised, in the caller's variable too: a VB Long,
    // a script's Variant holding an Integer, a Double.
    l.put(L"HasMaxSize", Bool(true));
    l.put(L"MinWidth", I4(400));
    l.put(L"MinHeight", I4(250));
    LONG width = 300;
    Variant script_variable = I2(300);
    double real = 250.4;
    for (const Variant &v : {by_ref(VT_I4, &width), by_ref(VT_VARIANT, script_variable.get()), by_ref(VT_R8, &real)})
        EXPECT_EQ(S_OK, l.put(L"MaxWidth", v));
    EXPECT_EQ(std::tuple(400, VT_I2, 400LL, 400.0), std::tuple(width, script_variable.vt(), as_integer(script_variable), real));
    l.put(L"MaxHeight", I4(600));
    MINMAXINFO info = ask(form.hwnd());
    EXPECT_EQ(Point(400, 250), xy(info.ptMinTrackSize));
    EXPECT_EQ(Point(400, 600), xy(info.ptMaxTrackSize));
    // Clearing it resets the maxima to the screen's size. Minima are stored as they come, even
    // below zero, and do not move the maxima.
    l.put(L"HasMaxSize", Bool(false));
    l.put(L"MinHeight", I4(-5));
    EXPECT_EQ(Limits({screen.cy, screen.cx, -5, 400}), limits(l));
}

TEST_F(ResizeLockTest, LoadingReadsItsKeysInOrderSettlesTheLimitsAndSavingKeepsOnlyChanges)
{
    ComPtr<Bag> bag =
        bag_of({{L"HasMaxSize", Bool(true)}, {L"MaxWidth", I4(300)}, {L"MinWidth", I4(400)}, {L"MaxHeight", I4(900)}});
    Hosted &l = lock(Init::FromBag, bag.get());
    EXPECT_EQ((std::vector<std::wstring>{L"MaxHeight", L"MaxWidth", L"MinHeight", L"MinWidth", L"HasMaxSize"}), bag->reads);
    EXPECT_EQ(Limits({900, 400, 200, 400}), limits(l));
    // Saved: only what differs from the defaults (MinHeight stayed 200), and it comes back
    // the same through a stream.
    EXPECT_TRUE(lock().save_bag()->keys().empty());
    EXPECT_EQ((std::vector<std::wstring>{L"MaxHeight", L"MaxWidth", L"MinWidth", L"HasMaxSize"}), l.save_bag()->keys());
    Hosted &streamed = lock(Init::FromStream, l.save_stream().get());
    EXPECT_EQ(limits(l), limits(streamed));
    EXPECT_TRUE(as_integer(streamed.get(L"HasMaxSize")));
    // Without HasMaxSize the stored maxima give way to the screen's size.
    EXPECT_EQ(screen.cy, read(lock(Init::FromBag, bag_of({{L"MaxHeight", I4(300)}}).get()), L"MaxHeight"));
}

TEST_F(ResizeLockTest, WrongTypesInTheStoreAndOnThePropertiesAreHarmless)
{
    // MinWidth 1e12 does not fit a Long.
    ComPtr<Bag> bag = bag_of({{L"MaxHeight", Str(L"tall")}, {L"MinWidth", R8(1e12)}, {L"MinHeight", Str(L"250")},
                              {L"HasMaxSize", Str(L"perhaps")}});
    Hosted &l = lock(Init::FromBag, bag.get());
    EXPECT_EQ(S_OK, l.init_result());
    EXPECT_EQ(Limits({screen.cy, screen.cx, 250, 200}), limits(l));
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
    ComPtr<Bag> bag = bag_of({{L"HasMaxSize", Bool(true)}, {L"MaxHeight", I4(0)}, {L"MaxWidth", I4(0)},
                              {L"MinHeight", I4(0)}, {L"MinWidth", I4(0)}});
    Hosted &l = lock(Init::FromBag, bag.get());
    EXPECT_EQ(Limits({0, 0, 0, 0}), limits(l));
    l.activate();
    EXPECT_EQ(Limits({screen.cy, screen.cx, 200, 200}), limits(l));
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
    // The container placed it 200 x 29; it asked to be the size of its icon instead.
    EXPECT_EQ(1, std::count(l.log().calls().begin(), l.log().calls().end(), L"IOleClientSite::RequestNewObjectLayout"));
    expect_icon_face(l, L"resizelck-design.png");
    // At run time the same lock shows nothing but its background, and still hooks nothing:
    // the lock hooks once, when it loads.
    form.set_user_mode(true);
    Bitmap run = l.render(32, 30);
    EXPECT_EQ(run.width() * run.height(), run.count(GetSysColor(COLOR_BTNFACE)));
    EXPECT_EQ(own, proc_of(form.hwnd()));
}

TEST_F(ResizeLockTest, AFormDestroyedBeforeItsLocksTakesTheHookWithIt)
{
    Container other(300, 300);
    other.allow_site_call(kGetWindow);
    Hosted a(other, kProgId, {0, 0, 32, 30}), b(other, kProgId, {0, 0, 32, 30});
    EXPECT_EQ(200, ask(other.hwnd()).ptMinTrackSize.x);
    EXPECT_EQ(0u, a.close());
    DestroyWindow(other.hwnd());
    pump();
    EXPECT_EQ(0u, b.close());
}
