// The menu text reporter through the real DLL, on real windows with real menus: the captions
// MENUTEXT carries (highlighted items, separators, pop-ups by position, a closing menu, the
// 100-character buffer, the "Nada" sentinel), what reaches the window's own procedure, run
// time only, and hooks that are paired badly or outlive their window.
#include <gtest/gtest.h>

#include "service_test.h"

using namespace tarn;
using namespace tarn::test;

namespace {

constexpr wchar_t kProgId[] = L"TarnControls.mnutxt";
enum : UINT { kOpen = 101, kNada = 102, kLong = 103, kWide = 104 };

// A menu bar with a File menu (items, a separator, more items) and an empty Edit pop-up.
struct Menus {
    Menus()
    {
        AppendMenuW(file, MF_STRING, kOpen, L"&Open");
        AppendMenuW(file, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(file, MF_STRING, kNada, L"Nada");
        AppendMenuW(file, MF_STRING, kLong, long_caption.c_str());
        AppendMenuW(file, MF_STRING, kWide, L"\u00d6ffnen \u65e5\u672c");
        AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(file), L"&File");
        AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(edit), L"&Edit");
    }
    ~Menus() { DestroyMenu(bar); }
    HMENU bar = CreateMenu(), file = CreatePopupMenu(), edit = CreatePopupMenu();
    std::wstring long_caption = std::wstring(60, L'a') + std::wstring(60, L'b');
};

LRESULT select(HWND w, UINT item, UINT flags, HMENU menu)
{
    return SendMessageW(w, WM_MENUSELECT, MAKEWPARAM(item, flags), reinterpret_cast<LPARAM>(menu));
}

// The window destroyed at the end takes the hook with it (a rule tested below).
class MenuTextTest : public ServiceTest {
protected:
    Hosted &reporter(HWND w)
    {
        Hosted &m = place(kProgId, {0, 0, 0, 0});
        m.put(L"hwnd", handle(w));
        m.call(L"Subclass");
        return m;
    }
    // The captions of the MENUTEXT events since the last call, each followed by '|' (another
    // event would show by its name).
    std::wstring texts(Hosted &m)
    {
        std::wstring out;
        for (const EventRecord &e : m.log().events)
            out += (e.name == L"MENUTEXT" ? as_string(e.args.at(0)) : e.name) + L"|";
        m.log().clear_events();
        return out;
    }
    Menus menus;
};

} // namespace

TEST_F(MenuTextTest, EachMenuSelectRaisesMenuTextWithTheCaptionItsFlagsCallFor)
{
    HWND w = window();
    Hosted &m = reporter(w);
    const HMENU no_menu = reinterpret_cast<HMENU>(static_cast<LONG_PTR>(0x1234));
    struct Case {
        UINT item, flags;
        HMENU menu;
        std::wstring texts;
    } cases[] = {
        {kOpen, MF_HILITE | MF_MOUSESELECT, menus.file, L"&Open|"},
        {kWide, MF_HILITE, menus.file, L"\u00d6ffnen \u65e5\u672c|"},
        {1, MF_SEPARATOR, menus.file, L"C|"}, // pointing at the separator
        {0, 0, menus.file, L"|"},             // no highlight, no separator
        {0xFFFF, 0xFFFF, nullptr, L"|"},      // the system's "menu closed"
        {1, MF_HILITE | MF_POPUP, menus.bar, L"&Edit|"}, // a pop-up's item by its position
        {1, MF_HILITE, menus.bar, L"|"},      // without the flag a command: the bar has no command 1
        {kLong, MF_HILITE, menus.file, menus.long_caption.substr(0, 99) + L"|"}, // cut to the buffer
        {kNada, MF_HILITE, menus.file, L""},  // the sentinel: no event
        {5, MF_HILITE, no_menu, L"|"}, // a handle that is no menu reads nothing
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << "item " << c.item << ", flags 0x" << std::hex << c.flags);
        EXPECT_EQ(0, select(w, c.item, c.flags, c.menu));
        EXPECT_EQ(c.texts, texts(m));
    }
}

TEST_F(MenuTextTest, MenuMessagesStopHereOthersGoOnAndUnSubClassPutsBackWhatWasThere)
{
    HWND w = window();
    LONG_PTR own = proc_of(w);
    Hosted &m = reporter(w);
    m.call(L"Subclass"); // the same window again: no loop
    EXPECT_EQ(4242 + 6, SendMessageW(w, kAsk, 6, 0));
    // WM_MENUCHAR is answered 0 here (and reported with no highlight: an empty caption).
    EXPECT_EQ(0, SendMessageW(w, WM_MENUCHAR, MAKEWPARAM('x', MF_POPUP), reinterpret_cast<LPARAM>(menus.file)));
    EXPECT_EQ(L"|", texts(m));
    m.call(L"UnSubClass");
    EXPECT_EQ(own, proc_of(w));
    m.call(L"UnSubClass"); // again: nothing stored, nothing done
    EXPECT_EQ(own, proc_of(w));
}

TEST_F(MenuTextTest, HwndIsOnlyStoredAndSavedAndHandlesItCannotHookAreHarmless)
{
    HWND w = window(), v = window();
    LONG_PTR own = proc_of(v);
    Hosted &m = reporter(w);
    m.put(L"hwnd", handle(v));
    EXPECT_EQ(own, proc_of(v)); // the hook stays on the first window
    select(w, kOpen, MF_HILITE, menus.file);
    EXPECT_EQ(L"&Open|", texts(m));
    ComPtr<Bag> bag = m.save_bag();
    EXPECT_EQ(std::vector<std::wstring>{L"HWND"}, bag->keys());
    Hosted &again = place(kProgId, {0, 0, 0, 0}, Init::FromBag, bag.get());
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(v), as_integer(again.get(L"hwnd")));
    // A reporter with nothing set saves nothing; given handles it cannot hook, it hooks nothing.
    Hosted &fresh = place(kProgId, {0, 0, 0, 0});
    EXPECT_TRUE(fresh.save_bag()->keys().empty());
    HWND dead = make_window();
    DestroyWindow(dead);
    ForeignWindow foreign;
    LONG_PTR foreign_proc = proc_of(foreign.hwnd());
    const HWND bad = reinterpret_cast<HWND>(static_cast<LONG_PTR>(-1));
    for (HWND h : {static_cast<HWND>(nullptr), dead, foreign.hwnd(), bad}) {
        fresh.put(L"hwnd", handle(h));
        fresh.call(L"Subclass");
        EXPECT_EQ(S_OK, fresh.last_result());
        fresh.call(L"UnSubClass");
    }
    EXPECT_EQ(foreign_proc, proc_of(foreign.hwnd()));
    EXPECT_EQ(S_OK, fresh.put(L"hwnd", Str(L"the form")));
    EXPECT_EQ(S_OK, fresh.put(L"hwnd", R8(1e300)));
}

TEST_F(MenuTextTest, AtDesignTimeSubclassAndUnSubClassDoNothing)
{
    HWND w = window();
    LONG_PTR own = proc_of(w);
    form.set_user_mode(false);
    form.allow_site_call(L"IOleClientSite::RequestNewObjectLayout");
    Hosted &m = place(kProgId, {0, 0, 100, 100});
    m.put(L"hwnd", handle(w));
    m.call(L"Subclass");
    EXPECT_EQ(own, proc_of(w));
    // Hooked at run time, a design-time UnSubClass leaves the hook alone.
    form.set_user_mode(true);
    m.call(L"Subclass");
    EXPECT_NE(own, proc_of(w));
    form.set_user_mode(false);
    m.call(L"UnSubClass");
    EXPECT_NE(own, proc_of(w));
    form.set_user_mode(true);
    m.call(L"UnSubClass");
    EXPECT_EQ(own, proc_of(w));
    // At design time it is its icon, whatever size the container gave it.
    form.set_user_mode(false);
    expect_icon_face(m, L"mnutxt-design.png");
}

TEST_F(MenuTextTest, TheOneHookIsTheModulesWhicheverReporterMadeIt)
{
    HWND a = window(), b = window();
    LONG_PTR own_a = proc_of(a), own_b = proc_of(b);
    Hosted &first = reporter(a);
    Hosted &second = place(kProgId, {0, 0, 0, 0});
    second.put(L"hwnd", handle(b));
    second.call(L"Subclass"); // not paired: the hook moves to b, and a gets its own back
    EXPECT_EQ(own_a, proc_of(a));
    select(b, kOpen, MF_HILITE, menus.file);
    EXPECT_EQ(L"", texts(first));
    EXPECT_EQ(L"&Open|", texts(second));
    // Closed while hooked (the host forgot UnSubClass), the second leaves the hook silent.
    close(second);
    select(b, kOpen, MF_HILITE, menus.file);
    EXPECT_EQ(4242, SendMessageW(b, kAsk, 0, 0));
    // Any reporter's UnSubClass ends it.
    first.call(L"UnSubClass");
    EXPECT_EQ(own_b, proc_of(b));
}

TEST_F(MenuTextTest, AWindowDestroyedWhileHookedEvenByAHandlerTakesTheHookWithIt)
{
    HWND w = make_window();
    Hosted &m = reporter(w);
    // The handler destroys the window, then unhooks: too late, nothing to put back.
    m.log().on_event = [&](const std::wstring &, DISPPARAMS *) {
        DestroyWindow(w);
        m.call(L"UnSubClass");
    };
    EXPECT_EQ(0, select(w, kOpen, MF_HILITE, menus.file));
    EXPECT_FALSE(IsWindow(w));
    EXPECT_EQ(L"&Open|", texts(m));
    // A new window is not touched by a later UnSubClass, whatever its handle.
    HWND v = window();
    LONG_PTR own = proc_of(v);
    m.call(L"UnSubClass");
    EXPECT_EQ(own, proc_of(v));
}
