// A thousand lives of every creatable class: created, sited, activated in place, deactivated,
// closed and released, with the process's GDI objects, windows, kernel handles and heap counted
// after a warm-up and again at the end. Whatever a cycle leaves behind shows a thousandfold.
// Once everything is released the DLL may be unloaded.
#include <gtest/gtest.h>

#include <windows.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "host/container.h"
#include "support/control_test.h"
#include "support/registered_classes.h"
#include "support/resource_counts.h"

using namespace tarn;
using namespace tarn::host;
using namespace tarn::test;

namespace {

constexpr int kWarmUp = 30, kCycles = 1000;
// The heap grows by what the system keeps for itself (COM's and the window manager's caches,
// fragmentation); a leak of one small object per cycle is well beyond this.
constexpr long long kHeapSlack = 48 * 1024;
constexpr long kHandleSlack = 4;

void life(Container &form, const std::wstring &progid)
{
    Hosted h(form, progid, {10, 10, 210, 60});
    if (!h.ok()) return;
    h.activate();
    h.deactivate();
    // Hosted's destructor closes and releases the control.
}

struct Counts {
    long gdi = 0, windows = 0, handles = 0;
    long long heap = 0;
};

// TARN_SOAK_CLASSES picks the classes of one ctest entry, so the slow ones run side by side:
// "a,b" only those, "-a,b" every class but those (names without "TarnControls."). Unset: all.
bool picked(const std::wstring &progid)
{
    wchar_t buf[512] = {};
    DWORD n = GetEnvironmentVariableW(L"TARN_SOAK_CLASSES", buf, 512);
    if (n == 0 || n >= 512) return true;
    std::wstring list = buf;
    bool except = list[0] == L'-';
    if (except) list.erase(0, 1);
    std::wstring name = progid.substr(progid.find(L'.') + 1);
    name = name.substr(0, name.find(L'.'));
    bool listed = (L"," + list + L",").find(L"," + name + L",") != std::wstring::npos;
    return listed != except;
}

Counts counts()
{
    pump();
    return {ProcessGdiObjects(), ProcessWindows(), ProcessHandles(), ProcessHeapBytes()};
}

} // namespace

TEST(Soak, EveryClassLivesAThousandTimesWithoutGrowthAndTheDllMayUnloadAfterwards)
{
    ASSERT_TRUE(DllResourceCounter().installed()); // counting from before the controls exist
    std::vector<RegisteredClass> classes = RegisteredClasses();
    ASSERT_GE(classes.size(), 9u);
    Container form;
    std::printf("%-24s %8s %12s %12s %10s %12s\n", "class (1,000 lives)", "seconds", "process GDI", "windows",
                "handles", "heap bytes");
    for (const RegisteredClass &cls : classes) {
        if (!picked(cls.progid)) continue;
        SCOPED_TRACE(narrow(cls.progid));
        for (int i = 0; i < kWarmUp; ++i) life(form, cls.progid);
        ResourceSnapshot before;
        Counts was = counts();
        auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < kCycles; ++i) life(form, cls.progid);
        double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        Counts now = counts();
        EXPECT_EQ(std::vector<std::string>{}, before.changes());
        if (was.handles >= 0) {
            EXPECT_LE(now.handles, was.handles + kHandleSlack) << "kernel handles";
        }
        if (was.heap >= 0) {
            EXPECT_LE(now.heap, was.heap + kHeapSlack) << "heap bytes";
        }
        std::printf("%-24s %8.2f %5ld -> %-4ld %5ld -> %-4ld %4ld -> %-4ld %+12lld\n", narrow(cls.progid).c_str(),
                    seconds, was.gdi, now.gdi, was.windows, now.windows, was.handles, now.handles, now.heap - was.heap);
    }
    CoFreeUnusedLibraries();
    EXPECT_EQ(S_OK, dll_can_unload_now());
}
