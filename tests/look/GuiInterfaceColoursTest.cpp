#include <iterator>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"

using PelkGUI::GuiInterface;

namespace {

struct ColourCase {
    const char* pszName;
    COLORREF crSystem;    // mode 0
    COLORREF crSkin;      // another mode, the skin having set all base colours
    COLORREF crHighlight; // and having set "System.Base.Highlight" only, in an empty table
};

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

void ExpectColours(const GuiInterface& store, COLORREF ColourCase::*pColour)
{
    for (const ColourCase& c : kColourCases)
        EXPECT_EQ(store.GetColor(c.pszName), c.*pColour) << c.pszName;
}

} // namespace

TEST(GuiInterfaceColours, FollowTheSystemOrTheSkinsBaseColours)
{
    GuiInterface store;
    EXPECT_EQ(store.m_mapColours.GetCount(), static_cast<int>(std::size(kColourCases)));
    ExpectColours(store, &ColourCase::crSystem);

    for (int i = 0; i < 5; i++) // the base colours come first
        store.SetColor(kColourCases[i].pszName, kColourCases[i].crSkin);
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
    EXPECT_EQ(store.GetColor("Tooltip.Warnings"), 0xFFFFFFU);
    store.SetColor("System.Base.Highlight", 0x8040C0);
    store.CalculateColours(1);
    ExpectColours(store, &ColourCase::crHighlight);
}

TEST(GuiInterfaceColours, AreNamedWithCase)
{
    GuiInterface store;
    EXPECT_EQ(store.GetColor("system.border"), 0xFFFFFFU);
    store.SetColor("system.border", 1);
    EXPECT_EQ(store.GetColor("system.border"), 1U);
    EXPECT_EQ(store.GetColor("System.Border"), 0x6A240AU);
    EXPECT_EQ(GuiInterface::GetDialogBkColor(), 0xF3F4F5U);
}

TEST(GuiInterfaceColours, BlendEveryPairByTheRule)
{
    for (const int nWeight : { 0, 39, 100, 127, 178, 200, 215, 255 }) {
        // What truncation leaves of each share, counted up.
        int nFirst[256] = {};
        int nSecond[256] = {};
        for (int n = 0; n < 256; n++) {
            while ((nFirst[n] + 1) * 255 <= n * (255 - nWeight))
                nFirst[n]++;
            while ((nSecond[n] + 1) * 255 <= n * nWeight)
                nSecond[n]++;
        }
        for (int a = 0; a < 256; a++) {
            for (int b = 0; b < 256; b++) {
                // Another pair in each channel, and rubbish in the top byte.
                const COLORREF crFirst = RGB(a, b, 255 - a) | 0xAB000000;
                const COLORREF crSecond = RGB(b, a, b) | 0xCD000000;
                ASSERT_EQ(GuiInterface::CalculateColour(crFirst, crSecond, nWeight),
                          RGB(nFirst[a] + nSecond[b], nFirst[b] + nSecond[a], nFirst[255 - a] + nSecond[b]))
                    << a << ' ' << b << ' ' << nWeight;
            }
        }
    }
    EXPECT_EQ(GuiInterface::CalculateColour(0x0A0A0A, 0x0A0A0A, 100), 0x090909U) << "one lower";
    EXPECT_EQ(GuiInterface::CalculateColour(10, 20, -51), 8U) << "12 - 4";
    EXPECT_EQ(GuiInterface::CalculateColour(255, 255, -255), 255U) << "510 - 255";
    EXPECT_EQ(GuiInterface::CalculateColour(255, 0, 510), 1U) << "-255 modulo 256";
}
