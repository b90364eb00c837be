#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "look/WindowsVersion.h"
#include "tests/look/FakeLibrary.h"

using PelkGUI::GuiInterface;

namespace {

struct ColourCase {
    const char* pszName;
    COLORREF crSystem;    // mode 0
    COLORREF crSkin;      // another mode, the skin having set all base colours
    COLORREF crHighlight; // and having set "System.Base.Highlight" only, in an empty table
};

constexpr COLORREF kSkinWindow = 0xF0E0D0;
constexpr COLORREF kSkinMidtone = 0x204060;
constexpr COLORREF kSkinHighlight = 0x8040C0;

// Worked out apart from the code, from the system's colours: window FFFFFF, face C8D0D4, highlight 6A240A, shadow and
// grey text 808080, menu and tool-tip text 000000, tool-tip background E1FFFF.
constexpr ColourCase kColourCases[] = {
    { "System.Base.Window", 0xFFFFFF, 0xF0E0D0, 0xFFFFFF },
    { "System.Base.Midtone", 0xC8D0D4, 0x204060, 0xFFFFFF },
    { "System.Base.Highlight", 0x6A240A, 0x8040C0, 0x8040C0 },
    { "System.Base.Text", 0x000000, 0x010203, 0xFFFFFF },
    { "System.Base.Hitext", 0xFFFFFF, 0x040506, 0xFFFFFF },
    { "System.Back.Normal", 0xF6F7F8, 0xCFC6BE, 0xFFFFFF },
    { "System.Back.Selected", 0xD2BCB5, 0xCDAFCA, 0xD8C5EB },
    { "System.Back.Checked", 0xDECFCA, 0xD7BCCC, 0xE3D5F1 },
    { "System.Back.Checked.Selected", 0xB49184, 0xB78FC7, 0xBF9FDF },
    { "System.Margin", 0xD0D7DA, 0x3F5870, 0xFFFFFF },
    { "System.Shadow", 0x7A6B66, 0x7F718D, 0x7F718D },
    { "System.Border", 0x6A240A, 0x8040C0, 0x8040C0 },
    { "System.Text", 0x000000, 0x000000, 0x000000 },
    { "System.Text.Selected", 0x000000, 0x000000, 0x000000 },
    { "System.Disabled", 0x808080, 0x808080, 0x808080 },
    { "Tooltip.Back", 0xE1FFFF, 0xE1FFFF, 0xE1FFFF },
    { "Tooltip.Text", 0x000000, 0x000000, 0x000000 },
    { "Tooltip.Border", 0x889B9B, 0x889B9B, 0x889B9B },
    { "Tooltip.Warnings", 0x404040, 0x404040, 0x404040 },
};

void SetSkinColours(GuiInterface& store)
{
    store.SetColor("System.Base.Window", kSkinWindow);
    store.SetColor("System.Base.Midtone", kSkinMidtone);
    store.SetColor("System.Base.Highlight", kSkinHighlight);
    store.SetColor("System.Base.Text", 0x010203);
    store.SetColor("System.Base.Hitext", 0x040506);
}

void ExpectColours(const GuiInterface& store, COLORREF ColourCase::*pColour)
{
    for (const ColourCase& c : kColourCases) {
        SCOPED_TRACE(c.pszName);
        EXPECT_EQ(store.GetColor(c.pszName), c.*pColour);
    }
}

// The largest whole n with n * 255 <= product: what truncation leaves of a product that is not negative.
int DividedBy255(int nProduct)
{
    int n = nProduct / 256;
    while ((n + 1) * 255 <= nProduct)
        n++;
    return n;
}

} // namespace

TEST(GuiInterfaceColours, ComeFromTheSystemAtFirst)
{
    const GuiInterface store;
    EXPECT_EQ(store.m_mapColours.GetCount(), static_cast<int>(std::size(kColourCases)));
    ExpectColours(store, &ColourCase::crSystem);
}

TEST(GuiInterfaceColours, FollowTheSkinsBaseColours)
{
    GuiInterface store;
    SetSkinColours(store);
    store.SetColor("System.Margin", 0x123456);
    store.SetColor("Dialog.Back", 0x654321);
    store.CalculateColours(1);
    ExpectColours(store, &ColourCase::crSkin);
    EXPECT_EQ(store.GetColor("Dialog.Back"), 0x654321U) << "not a derived one";

    store.OnSysColourChange();
    ExpectColours(store, &ColourCase::crSkin);
    store.CalculateColours(0);
    ExpectColours(store, &ColourCase::crSystem);
    store.SetColor("System.Border", 0x123456);
    store.OnSysColourChange();
    ExpectColours(store, &ColourCase::crSystem);

    store.Clear();
    EXPECT_EQ(store.GetColor("Tooltip.Warnings"), GetSysColor(COLOR_WINDOW));
    store.SetColor("System.Base.Highlight", kSkinHighlight);
    store.CalculateColours(1);
    ExpectColours(store, &ColourCase::crHighlight);
}

TEST(GuiInterfaceColours, AreNamedWithCase)
{
    GuiInterface store;
    EXPECT_EQ(store.GetColor("system.border"), 0xFFFFFFU);
    EXPECT_EQ(store.GetColor(""), 0xFFFFFFU);
    store.SetColor("system.border", 1);
    EXPECT_EQ(store.GetColor("system.border"), 1U);
    EXPECT_EQ(store.GetColor("System.Border"), 0x6A240AU);
    EXPECT_EQ(GuiInterface::GetDialogBkColor(), 0xF3F4F5U);
}

TEST(GuiInterfaceColours, BlendEveryPairByTheRule)
{
    for (const int nWeight : { 0, 39, 100, 127, 178, 200, 215, 255 }) {
        for (int a = 0; a < 256; a++) {
            for (int b = 0; b < 256; b++) {
                const auto blend = [=](int nFirst, int nSecond) {
                    return static_cast<unsigned>(DividedBy255(nFirst * (255 - nWeight)) +
                                                 DividedBy255(nSecond * nWeight));
                };
                // Another pair in each channel, and rubbish in the top byte.
                const COLORREF crFirst = RGB(a, b, 255 - a) | 0xAB000000;
                const COLORREF crSecond = RGB(b, a, b) | 0xCD000000;
                ASSERT_EQ(GuiInterface::CalculateColour(crFirst, crSecond, nWeight),
                          RGB(blend(a, b), blend(b, a), blend(255 - a, b)))
                    << a << ' ' << b << ' ' << nWeight;
            }
        }
    }
    EXPECT_EQ(GuiInterface::CalculateColour(0x0000FF, 0x00FF00, 128), 0x00807FU);
    EXPECT_EQ(GuiInterface::CalculateColour(0x0A0A0A, 0x0A0A0A, 100), 0x090909U) << "one lower";
    EXPECT_EQ(GuiInterface::CalculateColour(10, 20, -51), 8U) << "12 - 4";
    EXPECT_EQ(GuiInterface::CalculateColour(255, 255, -255), 255U) << "510 - 255";
    EXPECT_EQ(GuiInterface::CalculateColour(255, 0, 510), 1U) << "-255 modulo 256";
}

TEST(GuiInterfaceSystem, CallsVersionsNewFrom51On)
{
    EXPECT_FALSE(PelkGUI::IsNewVersion(4, 90));
    EXPECT_FALSE(PelkGUI::IsNewVersion(5, 0));
    EXPECT_TRUE(PelkGUI::IsNewVersion(5, 1));
    EXPECT_TRUE(PelkGUI::IsNewVersion(5, 2));
    EXPECT_TRUE(PelkGUI::IsNewVersion(6, 0));
    EXPECT_TRUE(GuiInterface::IsNewWindows());
}

namespace {

struct ThemeCall {
    HWND hWnd;
    std::u16string strApplication;
    std::u16string strClasses;
};
std::vector<ThemeCall> themeCalls;
HRESULT themeResult = 0;

HRESULT FakeSetWindowTheme(HWND hWnd, LPCWSTR pszApplication, LPCWSTR pszClasses)
{
    themeCalls.push_back({ hWnd, pszApplication ? pszApplication : u"null", pszClasses ? pszClasses : u"null" });
    return themeResult;
}

} // namespace

TEST(GuiInterfaceSystem, HasNoThemesToSwitch)
{
    EXPECT_FALSE(GuiInterface::EnableTheme(nullptr, TRUE));
    const test::FakeLibrary empty("uxtheme.dll");
    EXPECT_FALSE(GuiInterface::EnableTheme(nullptr, TRUE)) << "no such function";
}

TEST(GuiInterfaceSystem, SwitchesThemesThatThereAre)
{
    const test::FakeLibrary theme("uxtheme.dll", win32::exported("SetWindowTheme", FakeSetWindowTheme));
    CWnd wnd;
    wnd.m_hWnd = reinterpret_cast<HWND>(0x1234);
    themeCalls.clear();
    themeResult = 1;
    EXPECT_TRUE(GuiInterface::EnableTheme(&wnd, TRUE));
    EXPECT_TRUE(GuiInterface::EnableTheme(nullptr, FALSE));
    themeResult = -1;
    EXPECT_FALSE(GuiInterface::EnableTheme(nullptr, FALSE));
    ASSERT_EQ(themeCalls.size(), 3U);
    EXPECT_EQ(themeCalls[0].hWnd, wnd.m_hWnd);
    EXPECT_EQ(themeCalls[0].strApplication, u"null");
    EXPECT_EQ(themeCalls[0].strClasses, u"null");
    EXPECT_EQ(themeCalls[1].hWnd, nullptr);
    EXPECT_EQ(themeCalls[1].strApplication, u" ");
    EXPECT_EQ(themeCalls[1].strClasses, u" ");
    wnd.m_hWnd = nullptr;
}
