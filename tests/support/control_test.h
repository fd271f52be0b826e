// The fixture of the control tests: a container form, controls placed on it, and the checks
// every test gets for free when it ends: no site call the test did not declare, and the
// container's release of each control is the last one (nothing keeps a control alive).
#pragma once
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/container.h"

namespace tarn::test {

using namespace tarn::host;

class ControlTest : public ::testing::Test {
protected:
    Hosted &place(const std::wstring &progid, RECT pos = {10, 10, 210, 39}, Init init = Init::New,
                  IUnknown *source = nullptr)
    {
        controls_.push_back(std::make_unique<Hosted>(form, progid, pos, init, source));
        Hosted &h = *controls_.back();
        EXPECT_TRUE(h.ok()) << "cannot create " << std::string(progid.begin(), progid.end()) << ": 0x" << std::hex
                            << h.create_result();
        return h;
    }

    // Declares the calls a control makes on its site when it takes the focus (a click on a
    // focusable control, Tab): UI activation and the focus notices.
    static void allow_focus(Hosted &h)
    {
        for (const wchar_t *call : {L"IOleInPlaceSite::OnUIActivate", L"IOleInPlaceSite::GetWindowContext",
                                    L"IOleControlSite::OnFocus(TRUE)", L"IOleControlSite::OnFocus(FALSE)"})
            h.log().allow(call);
    }

    // Closes one control now, checking that the container's reference was the last.
    void close(Hosted &h)
    {
        EXPECT_EQ(0u, h.close()) << "the control outlived its container's last reference";
    }

    void TearDown() override
    {
        for (auto &h : controls_) {
            EXPECT_EQ(0u, h->close()) << "the control outlived its container's last reference";
            for (const std::wstring &call : h->log().unexpected())
                ADD_FAILURE() << "unexpected call on the site: " << std::string(call.begin(), call.end());
        }
        controls_.clear();
        for (const std::wstring &call : form.frame_log().unexpected())
            ADD_FAILURE() << "unexpected call on the frame: " << std::string(call.begin(), call.end());
    }

    Container form;
    std::vector<std::unique_ptr<Hosted>> controls_;
};

// A font object of the test's own.
ComPtr<IFontDisp> make_font(const wchar_t *name, double size, bool bold = false);
// The control's extent in pixels: the size it has (or took itself).
SIZE extent_px(Hosted &h);
// Where a window sits in its parent's client area, in pixels.
RECT placement(HWND w);
// The bytes a saved stream holds, and a stream at its start that holds `bytes`.
std::vector<BYTE> stream_bytes(IStream *stream);
ComPtr<IStream> stream_of(const std::vector<BYTE> &bytes);
// A pixel position as the twips an event carries: "90,45".
std::wstring twips_text(int x, int y);
// A control that sizes itself (to its font's height, to a fixed width) asks its container to
// lay it out again, also while it loads: the calls every control placed on `form` may make.
void allow_self_sizing(Container &form);

// Narrow text for gtest messages.
inline std::string narrow(const std::wstring &w) { return std::string(w.begin(), w.end()); }

// Sends a mouse message to a window at pixel (x, y), as the system delivers them.
void mouse(HWND hwnd, UINT msg, int x, int y, WPARAM keys = 0);
// A full click (down and up) with the left button at (x, y).
void click(HWND hwnd, int x, int y);

// Runs the message loop until `done` holds (true) or `limit_ms` passed (false): for what
// arrives through the system's queues (injected input), never a fixed wait.
bool pump_until(const std::function<bool()> &done, DWORD limit_ms = 10000);

// The DLL's own entry point, for DllCanUnloadNow checks.
HRESULT dll_can_unload_now();

// Windows path of a file in the test output folder (created on first use).
std::wstring output_path(const std::wstring &name);

} // namespace tarn::test
