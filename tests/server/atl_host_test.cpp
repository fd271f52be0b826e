// The frame in Wine's own container: atl.dll's AtlAxWin window class creates it by ProgID,
// activates it in place in its window, and the frame draws there.
#include <gtest/gtest.h>

#include <windows.h>
#include <ocidl.h>

#include "host/bitmap.h"
#include "host/container.h"
#include "runtime/com.h"

using namespace tarn;

TEST(AtlAxWin, HostsActivatesAndPaintsAFrame)
{
    HMODULE atl = LoadLibraryW(L"atl.dll");
    ASSERT_TRUE(atl);
    auto init = reinterpret_cast<BOOL(WINAPI *)()>(GetProcAddress(atl, "AtlAxWinInit"));
    auto get_control = reinterpret_cast<HRESULT(WINAPI *)(HWND, IUnknown **)>(GetProcAddress(atl, "AtlAxGetControl"));
    ASSERT_TRUE(init && get_control);
    ASSERT_TRUE(init());

    host::Container form(400, 200);
    HWND ax = CreateWindowExW(0, L"AtlAxWin", L"TarnControls.cframe", WS_CHILD | WS_VISIBLE, 10, 10, 200, 30,
                              form.hwnd(), nullptr, nullptr, nullptr);
    ASSERT_TRUE(ax);
    host::pump(50);
    ComPtr<IUnknown> control;
    ASSERT_EQ(S_OK, get_control(ax, control.put()));

    // In place, in a window of its own inside the container's window.
    HWND own = nullptr;
    ComPtr<IOleWindow> window = control.as<IOleWindow>(IID_IOleWindow);
    ASSERT_TRUE(window);
    ASSERT_EQ(S_OK, window->GetWindow(&own));
    EXPECT_EQ(ax, GetParent(own));
    EXPECT_TRUE(IsWindowVisible(own));

    // Driven through IDispatch as the container's host would.
    ComPtr<IDispatch> disp = control.as<IDispatch>(IID_IDispatch);
    EXPECT_EQ(S_OK, host::put_property(disp.get(), L"CAPTION", host::Str(L"In AtlAxWin")));

    // The frame paints its window: its top-left pixel is the 3-D highlight of its border.
    RECT r{};
    GetClientRect(own, &r);
    ASSERT_GT(r.right, 2);
    host::Bitmap picture(r.right, r.bottom, 0xFF00FF);
    SendMessageW(own, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.dc()), PRF_CLIENT);
    EXPECT_EQ(GetSysColor(COLOR_3DHILIGHT), picture.pixel(0, 0));
    EXPECT_EQ(GetSysColor(COLOR_3DDKSHADOW), picture.pixel(r.right - 1, r.bottom - 1));
    // Resizing the container's window resizes the control's.
    MoveWindow(ax, 10, 10, 300, 40, TRUE);
    host::pump(50);
    GetClientRect(own, &r);
    EXPECT_EQ(300, r.right);
    control.reset();
    window.reset();
    disp.reset();
    DestroyWindow(ax);
    host::pump(50);
}
