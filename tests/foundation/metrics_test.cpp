// Metrics, version and colour routines that need the platform.
#include <gtest/gtest.h>

#include <windows.h>

#include <thread>

#include "foundation/clsMETRICS.h"
#include "foundation/color_translate.h"
#include "foundation/font_object.h"
#include "foundation/metrics.h"
#include "foundation/registry.h"
#include "foundation/themes.h"
#include "runtime/com.h"
#include "support/fake_machine_key.h"

using namespace tarn;

TEST(Metrics, TheRecordIsZeroUntilTheThreadsFirstRefresh)
{
    // A thread of its own: the test thread may have refreshed its record already.
    std::thread([] {
        EXPECT_EQ(0u, ThreadMetrics().nonclient.cbSize);
        EXPECT_EQ(-315, MetricOffset()); // reads the record before ScaledMetric refreshes it
        EXPECT_EQ(340u, ThreadMetrics().nonclient.cbSize);
        EXPECT_EQ(25, MetricOffset());
    }).join();
}

TEST(Metrics, ScaledMetricConvertsPixelsToTwipsHalvesToEven)
{
    const double tpp = TwipsPerPixelX();
    EXPECT_DOUBLE_EQ(1440.0 / GetDeviceCaps(GetDC(nullptr), LOGPIXELSX), tpp);
    EXPECT_EQ(static_cast<int32_t>(340 * tpp), ScaledMetric(340));
    EXPECT_EQ(0, ScaledMetric(INT32_MAX)); // does not fit 32 bits: the step fails, 0
}

TEST(Metrics, SizeComboDropDownWidensTheListOnlyForAnItemMoreThanElevenLonger)
{
    EXPECT_EQ(16, DropDownWidthFor({5, 10, 15, 0}));
    EXPECT_EQ(31, DropDownWidthFor({5, 10, 20, 0}));
    EXPECT_EQ(0, DropDownWidthFor({0}));
    HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 300, 300, nullptr, nullptr, nullptr, nullptr);
    HWND combo = CreateWindowExW(0, L"COMBOBOX", L"", WS_CHILD | CBS_DROPDOWNLIST, 10, 10, 12, 200, parent, nullptr,
                                 nullptr, nullptr);
    for (const wchar_t *item : {L"aaaaa", L"aaaaaaaaaa", L"aaaaaaaaaaaaaaa"})
        SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item));
    SizeComboDropDown(combo, 5);
    // The combo is 12 pixels wide, narrower than the 16 asked for, so the list takes 16.
    EXPECT_EQ(16, SendMessageW(combo, CB_GETDROPPEDWIDTH, 0, 0));
    // Bad input: no window, no items, a negative count.
    SizeComboDropDown(nullptr, 5);
    HWND empty = CreateWindowExW(0, L"COMBOBOX", L"", WS_CHILD | CBS_DROPDOWNLIST, 0, 100, 50, 200, parent, nullptr,
                                 nullptr, nullptr);
    SizeComboDropDown(empty, -7);
    SizeComboDropDown(empty, INT32_MAX);
    DestroyWindow(parent);
}

TEST(Colors, TranslateColorResolvesSystemColoursAndRefusesTheInvalid)
{
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), TranslateColor(0x8000000F));
    EXPECT_EQ(0x00123456u, TranslateColor(0x00123456));
    EXPECT_EQ(kInvalidColor, TranslateColor(0x7F000000));
    EXPECT_EQ(kInvalidColor, TranslateColor(0x800000FF)); // no system colour 255
    EXPECT_EQ(0u, BlendColors(0x00FFFFFF, 0, 100000000)); // overflow: the routine yields 0
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), BlendColors(0x80000005, 0x80000008, 255));
}

TEST(Version, VersionNumberFirstThenTheNtCurrentVersionAndOnlyStringsThatFit)
{
    test::FakeMachineKey machine;
    const wchar_t *const kNt = test::kWindowsNtKey, *const kWindows = test::kWindowsKey;
    EXPECT_EQ(L"", WindowsVersion());
    machine.set(kNt, L"CurrentVersion", L"6.1");
    EXPECT_EQ(L"6.1", WindowsVersion());
    EXPECT_DOUBLE_EQ(6.1, WindowsVersionNumber());
    machine.set(kWindows, L"VersionNumber", L"4.0");
    EXPECT_EQ(L"4.0", WindowsVersion());
    machine.set(kWindows, L"VersionNumber", L"");
    EXPECT_EQ(L"6.1", WindowsVersion()); // empty counts as missing
    // A string is read only when it is one and fits the 255-character buffer: else the default.
    machine.set_dword(kNt, L"Number", 5);
    machine.set(kNt, L"Text", L"hello");
    machine.set(kNt, L"Long", std::wstring(300, L'v').c_str());
    struct Case {
        const wchar_t *hive, *key, *name, *expected;
    } cases[] = {
        {kHiveLocalMachine, kNt, L"Text", L"hello"},
        {kHiveLocalMachine, kNt, L"Number", L"dflt"},
        {kHiveLocalMachine, kNt, L"Long", L"dflt"},
        {kHiveLocalMachine, L"SOFTWARE\\NO\\SUCH\\KEY", L"Text", L"dflt"},
        {L"not a hive", kNt, L"Text", L"dflt"},
    };
    for (const Case &c : cases) {
        std::wstring result = L"unchanged";
        clsREGISTRY().StringLoad(c.hive, c.key, c.name, L"dflt", result);
        EXPECT_EQ(c.expected, result) << c.key << L":" << c.name;
    }
}

TEST(ClsMetrics, MenuFontAndHandlesComeAndGo)
{
    clsMETRICS m;
    EXPECT_TRUE(m.GetMetrics());
    EXPECT_EQ(340u, m.Record().nonclient.cbSize);
    HDC dc = GetDC(nullptr);
    ComPtr<IFontDisp> font = ComPtr<IFontDisp>::attach(m.Font(dc));
    ReleaseDC(nullptr, dc);
    ASSERT_TRUE(font);
    FontSpec look = FontSpecOf(font.get());
    EXPECT_FALSE(look.name.empty());
    EXPECT_GT(look.size, 0);
    HFONT menu = m.FontHandle(3);
    EXPECT_NE(nullptr, menu);
    EXPECT_EQ(menu, m.FontHandle(3)); // held in its slot
    EXPECT_EQ(nullptr, m.FontHandle(0));
    EXPECT_EQ(nullptr, m.FontHandle(7));
    m.ClearUp();
    m.ClearUp(); // nothing is deleted twice
    EXPECT_EQ(static_cast<DWORD>(OBJ_FONT), GetObjectType(m.FontHandle(6)));
}
