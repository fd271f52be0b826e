// The text rules hosts see: mnemonics in captions (accelerators, accessible names and
// shortcuts) and the General page's colour and enumeration texts.
#include <gtest/gtest.h>

#include "runtime/mnemonic.h"
#include "runtime/page_text.h"

using namespace tarn;

TEST(Mnemonic, TheFirstSingleAmpersandNamesTheKeyAndTheNameDropsEveryMarker)
{
    struct Case {
        const wchar_t *caption;
        wchar_t key;
        const wchar_t *name, *shortcut;
    } cases[] = {
        {L"&Save", L'S', L"Save", L"Alt+S"},
        {L"Save &as", L'A', L"Save as", L"Alt+A"},
        {L"Fish && &Chips", L'C', L"Fish & Chips", L"Alt+C"},
        {L"&&Save", 0, L"&Save", L""},       // a literal ampersand only
        {L"Save&", 0, L"Save", L""},         // a trailing marker names nothing
        {L"&a&b", L'A', L"ab", L"Alt+A"},    // the first one counts
        {L"Go& now", 0, L"Go now", L""},     // Alt+Space is the window's menu
        {L"", 0, L"", L""},
        {L"&\u00e9t\u00e9", L'\u00e9', L"\u00e9t\u00e9", L"Alt+\u00e9"}, // as written: no locale's case tables
        {L"&save", L'S', L"save", L"Alt+S"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << "caption #" << (&c - cases));
        EXPECT_EQ(c.key, MnemonicOf(c.caption));
        EXPECT_EQ(c.name, StripMnemonic(c.caption));
        EXPECT_EQ(c.shortcut, MnemonicShortcut(c.caption));
    }
}

TEST(PageText, ColoursReadInEveryFormAPropertySheetWritesAndRoundTrip)
{
    struct Case {
        const wchar_t *text;
        bool ok;
        uint32_t value;
    } cases[] = {
        {L"&H8000000F&", true, 0x8000000Fu}, {L"&hff", true, 0xFFu},          {L" &H00C0C0C0& ", true, 0xC0C0C0u},
        {L"0x00FF00", true, 0x00FF00u},      {L"255", true, 255u},            {L"-1", true, 0xFFFFFFFFu},
        {L"-2147483648", true, 0x80000000u}, {L"-2147483649", false, 0},      {L"&H100000000&", false, 0},
        {L"4294967296", false, 0},           {L"", false, 0},                 {L"&H&", false, 0},
        {L"red", false, 0},                  {L"12a", false, 0},              {L"&HFFFFFFFFFFFFFFFFFFFFFF", false, 0},
    };
    for (const Case &c : cases) {
        uint32_t v = 0xdeadbeef;
        EXPECT_EQ(c.ok, ParseOleColor(c.text, v)) << testing::PrintToString(std::wstring(c.text));
        if (c.ok) EXPECT_EQ(c.value, v);
        else EXPECT_EQ(0xdeadbeefu, v); // untouched
    }
    for (uint32_t c : {0u, 0x8000000Fu, 0x00123456u, 0xFFFFFFFFu}) {
        uint32_t back = 0;
        EXPECT_TRUE(ParseOleColor(FormatOleColor(c), back));
        EXPECT_EQ(c, back);
    }
    EXPECT_EQ(L"&H8000000F&", FormatOleColor(0x8000000F));
    EXPECT_EQ(L"2 - Button Flat", EnumItemText(2, L"Button Flat"));
}
