// The named colours, and how they follow from a few base colours and the system's.
#include "look/GuiInterface.h"

#include <cstdint>

namespace PelkGUI {

namespace {

constexpr char kWindow[] = "System.Base.Window";
constexpr char kMidtone[] = "System.Base.Midtone";
constexpr char kHighlight[] = "System.Base.Highlight";

struct BaseColour {
    const char* pszName;
    int nSystem; // COLOR_ number
};

constexpr BaseColour kBaseColours[] = {
    { kWindow, COLOR_WINDOW },
    { kMidtone, COLOR_BTNFACE },
    { kHighlight, COLOR_HIGHLIGHT },
    { "System.Base.Text", COLOR_WINDOWTEXT },
    { "System.Base.Hitext", COLOR_HIGHLIGHTTEXT },
};

// Where a colour comes from: the store, the system, or itself.
struct Source {
    constexpr Source(const char* pszName) : m_pszName(pszName) {}
    constexpr Source(int nSystemColour) : m_nSystem(nSystemColour) {}
    static constexpr Source Constant(COLORREF cr)
    {
        Source source(0);
        source.m_nSystem = -1;
        source.m_cr = cr;
        return source;
    }

    const char* m_pszName = nullptr;
    int m_nSystem = -1;
    COLORREF m_cr = 0;
};

COLORREF ColourOf(const Source& source, const GuiInterface& store)
{
    if (source.m_pszName)
        return store.GetColor(source.m_pszName);
    return source.m_nSystem >= 0 ? ::GetSysColor(source.m_nSystem) : source.m_cr;
}

constexpr int kUnblended = -1;

struct DerivedColour {
    const char* pszName;
    Source first;
    Source second = Source::Constant(0);
    int nWeight = kUnblended;
};

// What stands here as COLOR_ is the system's in a skin's colours as well.
constexpr DerivedColour kDerivedColours[] = {
    { "System.Back.Normal", kMidtone, kWindow, 215 },
    { "System.Back.Selected", kHighlight, kWindow, 178 },
    { "System.Back.Checked", kHighlight, kWindow, 200 },
    { "System.Back.Checked.Selected", kHighlight, kWindow, 127 },
    { "System.Margin", kMidtone, kWindow, 39 },
    { "System.Shadow", kHighlight, COLOR_BTNSHADOW, 200 },
    { "System.Border", kHighlight },
    { "System.Text", COLOR_MENUTEXT },
    { "System.Text.Selected", COLOR_MENUTEXT },
    { "System.Disabled", COLOR_GRAYTEXT },
    { "Tooltip.Back", COLOR_INFOBK },
    { "Tooltip.Text", COLOR_INFOTEXT },
    { "Tooltip.Border", COLOR_INFOBK, Source::Constant(RGB(0, 0, 0)), 100 },
    { "Tooltip.Warnings", Source::Constant(RGB(64, 64, 64)) },
};

// In 64 bits, so that no weight overflows.
BYTE BlendChannel(int nFirst, int nSecond, std::int64_t nWeight)
{
    return static_cast<BYTE>(nFirst * (255 - nWeight) / 255 + nSecond * nWeight / 255);
}

} // namespace

COLORREF GuiInterface::CalculateColour(COLORREF crFirst, COLORREF crSecond, int nWeight)
{
    return RGB(BlendChannel(GetRValue(crFirst), GetRValue(crSecond), nWeight),
               BlendChannel(GetGValue(crFirst), GetGValue(crSecond), nWeight),
               BlendChannel(GetBValue(crFirst), GetBValue(crSecond), nWeight));
}

void GuiInterface::CalculateColours(int nMode)
{
    m_nColourMode = nMode;
    if (nMode == 0) {
        for (const BaseColour& base : kBaseColours)
            SetColor(base.pszName, ::GetSysColor(base.nSystem));
    }
    for (const DerivedColour& derived : kDerivedColours) {
        const COLORREF crFirst = ColourOf(derived.first, *this);
        SetColor(derived.pszName, derived.nWeight == kUnblended
                                      ? crFirst
                                      : CalculateColour(crFirst, ColourOf(derived.second, *this), derived.nWeight));
    }
}

COLORREF GuiInterface::GetColor(CString strName) const
{
    COLORREF crColour = 0;
    return m_mapColours.Lookup(strName, crColour) ? crColour : ::GetSysColor(COLOR_WINDOW);
}

void GuiInterface::SetColor(CString strName, COLORREF crColour)
{
    m_mapColours.SetAt(strName, crColour);
}

void GuiInterface::OnSysColourChange()
{
    if (m_nColourMode == 0)
        CalculateColours(0);
}

COLORREF GuiInterface::GetDialogBkColor()
{
    return CalculateColour(::GetSysColor(COLOR_BTNFACE), ::GetSysColor(COLOR_WINDOW), 200);
}

} // namespace PelkGUI
