#include "skinwnd/GuiCmdButton.h"

#include <cstdio>

#include "look/GuiInterface.h"
#include "skin/GuiSkinWindow.h"

namespace PelkGUI {

namespace {

// The button's picture of that look. FALSE: the skin has none. Painting allocates nothing for names that are as short
// as names are.
BOOL PaintLook(CDC* pDC, const CRect& rcClient, GuiSkinWindow& skin, const CString& strName, const char* pszLook)
{
    char szPart[128];
    const int nLength = std::snprintf(szPart, sizeof(szPart), "%s%s", static_cast<const char*>(strName), pszLook);
    if (nLength < static_cast<int>(sizeof(szPart)))
        return skin.PaintPartOnAnchor(pDC, rcClient, szPart, strName, TRUE);
    return skin.PaintPartOnAnchor(pDC, rcClient, strName + pszLook, strName, TRUE);
}

} // namespace

GuiCmdButton::GuiCmdButton(const char* pszName) : m_strName(pszName), m_bVisible(TRUE), m_bEnabled(TRUE)
{
    m_nID = GetGuiInterface().NameToID(m_strName.Mid(1));
    if (m_nID == 0)
        m_nID = 1;
}

void GuiCmdButton::Enable(BOOL bOn)
{
    m_bEnableChanged = TRUE; // what the framework's update asks for
    if (m_bEnabled.Change(bOn))
        m_bChanged = TRUE;
}

void GuiCmdButton::SetCheck(int nCheck)
{
    if (m_bChecked.Change(nCheck != 0))
        m_bChanged = TRUE;
}

void GuiCmdButton::Show(int bShow)
{
    if (m_bVisible.Change(bShow))
        m_bChanged = TRUE;
}

void GuiCmdButton::Execute(CWnd* pOwner)
{
    if (m_bVisible && m_bEnabled && pOwner)
        pOwner->SendMessage(WM_COMMAND, m_nID, 0);
}

int GuiCmdButton::HitTest(CPoint point, int bIncludeDisabled) const
{
    if (!m_bEnabled && !bIncludeDisabled)
        return 0;
    return m_rcButton.PtInRect(point) ? static_cast<int>(m_bVisible) : 0;
}

void GuiCmdButton::Paint(CDC* pDC, const CRect& rcClient, GuiSkinWindow* pSkin, const GuiCmdButton* pHovered,
                         const GuiCmdButton* pPressed)
{
    if (!pSkin)
        return;
    pSkin->GetAnchor(m_strName, rcClient, m_rcButton); // resolved: where it is drawn it is pressed
    if (!m_bVisible)
        return;
    const auto Draw = [&](const char* pszLook) { return PaintLook(pDC, rcClient, *pSkin, m_strName, pszLook); };
    if (m_bChecked) {
        if (!Draw(".Checked"))
            Draw(".Down");
    } else if (!m_bEnabled) {
        Draw(".Disabled");
    } else if (pHovered == this && pPressed == this) {
        Draw(".Down");
    } else if (pPressed == this || (pHovered == this && !pPressed)) {
        Draw(".Hover");
    } else if (pHovered && pHovered != this) {
        if (!Draw(".Other"))
            Draw(".Up");
    } else {
        Draw(".Up");
    }
}

} // namespace PelkGUI
