#include "tools/skinview/ViewWnd.h"

#include <algorithm>

#include <shellapi.h>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/GuiSkin.h"
#include "skin/GuiSkinWindow.h"
#include "skin/SkinFormat.h"

namespace skinview {

using PelkGUI::GetGuiInterface;
using PelkGUI::GetGuiManager;
using PelkGUI::GetGuiSkin;
using PelkGUI::GuiCmdButton;

IMPLEMENT_DYNAMIC(ViewWnd, PelkGUI::GuiMiniFrameWnd)

BEGIN_MESSAGE_MAP(ViewWnd, PelkGUI::GuiMiniFrameWnd)
ON_WM_KEYDOWN()
ON_MESSAGE(ViewWnd::kReload, &ViewWnd::OnReload)
END_MESSAGE_MAP()

ViewWnd::ViewWnd(Callbacks callbacks) : m_callbacks(std::move(callbacks)) {}

bool ViewWnd::Make(const std::string& strName, CSize size)
{
    const int x = std::max(0, (::GetSystemMetrics(SM_CXSCREEN) - static_cast<int>(size.cx)) / 2);
    const int y = std::max(0, (::GetSystemMetrics(SM_CYSCREEN) - static_cast<int>(size.cy)) / 2);
    constexpr DWORD kStyle =
        WS_POPUP | WS_CAPTION | WS_THICKFRAME | WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX | WS_CLIPCHILDREN;
    const LPCSTR pszClass = AfxRegisterWndClass(CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS, ::LoadCursorA(nullptr, IDC_ARROW),
                                                ::GetSysColorBrush(COLOR_BTNFACE));
    if (Create(pszClass, strName.c_str(), kStyle, CRect(CPoint(x, y), size), nullptr, 0) != 1)
        return false;
    EnableToolTips();
    OnSkinChange();
    return true;
}

void ViewWnd::ShowIcon(const std::string& strFile)
{
    HICON hIcon = nullptr;
    if (::ExtractIconExA(strFile.c_str(), 0, nullptr, &hIcon, 1) == 0)
        return;
    SetIcon(hIcon, FALSE);
    m_pIcon.reset(hIcon);
}

// ---- Looks ----

void ViewWnd::RepaintFrame()
{
    if (m_pSkinWindow)
        m_pSkinWindow->OnNcPaint(this);
    if (m_pSkinWindow && m_bInactive)
        m_pSkinWindow->OnNcActivate(this, FALSE);
    Invalidate(FALSE);
}

void ViewWnd::ShowInactive(bool bInactive)
{
    m_bInactive = bInactive;
    RepaintFrame();
}

void ViewWnd::ShowRightToLeft(bool bRightToLeft)
{
    GetGuiManager().m_bRightToLeft = bRightToLeft;
    RepaintFrame();
}

GuiCmdButton* ViewWnd::ButtonNamed(const std::string& strName) const
{
    for (POSITION pos = m_listButtons.GetHeadPosition(); pos;) {
        auto* const pButton = static_cast<GuiCmdButton*>(m_listButtons.GetNext(pos));
        if (pButton->m_strName == strName.c_str())
            return pButton;
    }
    return nullptr;
}

bool ViewWnd::ShowHover(const std::string& strName, bool bPressed)
{
    if (!m_pSkinWindow)
        return strName.empty();
    const int nCaption = std::max(0, PelkGUI::FindName(PelkGUI::kCaptionAnchorNames, strName.c_str())); // 0 is the icon
    GuiCmdButton* const pButton = ButtonNamed(strName);
    m_pSkinWindow->m_nHoverHit = nCaption;
    m_pSkinWindow->m_nPressedHit = bPressed ? nCaption : 0;
    m_pHovered = pButton;
    m_pPressed = bPressed ? pButton : nullptr;
    RepaintFrame();
    return strName.empty() || pButton || nCaption > 0;
}

void ViewWnd::ShowDisabled(bool bDisabled)
{
    m_bDisabled = bDisabled;
    UpdateCmdButtons();
}

void ViewWnd::ShowChecked(bool bChecked)
{
    for (POSITION pos = m_listButtons.GetHeadPosition(); pos;)
        static_cast<GuiCmdButton*>(m_listButtons.GetNext(pos))->SetCheck(bChecked);
    Invalidate(FALSE);
}

std::vector<std::string> ViewWnd::Buttons() const
{
    std::vector<std::string> names;
    for (int i = 1; m_pSkinWindow && i < PelkGUI::kCaptionAnchorCount; i++) {
        if (m_pSkinWindow->m_pAnchorPresent[i])
            names.emplace_back(PelkGUI::kCaptionAnchorNames[i]);
    }
    for (POSITION pos = m_listButtons.GetHeadPosition(); pos;)
        names.emplace_back(static_cast<GuiCmdButton*>(m_listButtons.GetNext(pos))->m_strName);
    return names;
}

// ---- The skin ----

void ViewWnd::SkinChanging()
{
    DeleteButtons();
    m_nHoverStep = 0;
    if (!m_pSkinWindow)
        return;
    for (POSITION pos = m_pSkinWindow->m_mapAnchors.GetStartPosition(); pos;) {
        CString strName;
        CRect* pRect = nullptr;
        m_pSkinWindow->m_mapAnchors.GetNextAssoc(pos, strName, pRect);
        if (strName[0] == '_')
            m_listButtons.AddTail(new GuiCmdButton(strName));
    }
    UpdateCmdButtons();
}

LRESULT ViewWnd::OnReload(WPARAM /*wParam*/, LPARAM /*lParam*/)
{
    if (!m_callbacks.reload)
        return 0;
    m_pHovered = m_pPressed = nullptr;
    m_callbacks.reload();
    OnSkinChange();
    // A frame that came or went changes the client area even where the window skin has nothing more to say of it.
    SetWindowPos(nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    RepaintFrame();
    return 0;
}

// ---- Painting ----

CDC* ViewWnd::BeforePaint(CDC* pDC, CRect rcClient)
{
    if (m_pSkinWindow && !m_pSkinWindow->m_bmpWatermark.GetSafeHandle()) { // the ground that nothing else would cover
        CSize size = rcClient.Size();
        GetGuiInterface().GetBuffer(*pDC, size)->FillSolidRect(rcClient, GetGuiSkin().m_crDialogBack);
    }
    return GuiMiniFrameWnd::BeforePaint(pDC, rcClient);
}

void ViewWnd::Paint(CDC* pDC, CRect rcClient)
{
    if (!m_pSkinWindow) {
        pDC->FillSolidRect(rcClient, GetGuiSkin().m_crDialogBack);
        return;
    }
    PaintButtons(pDC, rcClient);
    if (CRect rcPart; m_pSkinWindow->GetPart("Background", rcPart))
        m_pSkinWindow->PaintPart(pDC, CRect(CPoint(0, 0), rcPart.Size()), "Background", FALSE);
    for (POSITION pos = m_pSkinWindow->m_mapAnchors.GetStartPosition(); pos;) {
        CString strName;
        CRect* pRect = nullptr;
        m_pSkinWindow->m_mapAnchors.GetNextAssoc(pos, strName, pRect);
        CRect rcPart;
        if (strName[0] == '_' || strName == "Background")
            continue;
        if (m_pSkinWindow->GetPart(strName, rcPart))
            PaintHanging(pDC, rcClient, strName, rcPart);
        else
            PaintText(pDC, rcClient, strName);
    }
}

void ViewWnd::PaintHanging(CDC* pDC, const CRect& rcClient, const char* pszName, const CRect& rcPart)
{
    CRect rcPlace;
    if (!m_pSkinWindow->GetAnchor(pszName, rcClient, rcPlace))
        return;
    const CSize size = rcPart.Size();
    CDC dcBlend;
    CBitmap bmp;
    if (!m_pSkinWindow->m_bmpAlpha.GetSafeHandle() || !dcBlend.CreateCompatibleDC(pDC) || size.cx <= 0 ||
        size.cy <= 0 || !bmp.CreateCompatibleBitmap(pDC, size.cx, size.cy)) {
        m_pSkinWindow->PaintPartOnAnchor(pDC, rcClient, pszName, pszName, FALSE);
        return;
    }
    const HGDIOBJ hOld = ::SelectObject(dcBlend.GetSafeHdc(), bmp.GetSafeHandle());
    dcBlend.BitBlt(0, 0, size.cx, size.cy, pDC, rcPlace.left, rcPlace.top, SRCCOPY);
    ::SelectObject(dcBlend.GetSafeHdc(), hOld); // blending wants the bitmap for itself
    m_pSkinWindow->PreBlend(&bmp, CRect(CPoint(0, 0), size), rcPart);
    ::SelectObject(dcBlend.GetSafeHdc(), bmp.GetSafeHandle());
    pDC->BitBlt(rcPlace.left, rcPlace.top, size.cx, size.cy, &dcBlend, 0, 0, SRCCOPY);
    ::SelectObject(dcBlend.GetSafeHdc(), hOld);
}

void ViewWnd::PaintText(CDC* pDC, const CRect& rcClient, const CString& strName)
{
    CRect rcPlace;
    CString strText;
    const UINT nID = GetGuiInterface().NameToID(strName);
    if (nID == 0 || !GetGuiSkin().LoadStringA(strText, nID) || !m_pSkinWindow->GetAnchor(strName, rcClient, rcPlace))
        return;
    COLORREF crText = GetGuiInterface().GetColor("System.Text");
    GetGuiInterface().m_mapColours.Lookup(strName, crText);
    // On a copy of the place: text from right to left wants a context that runs so, and the client area's does not.
    CDC dcText;
    CBitmap bmp;
    if (!dcText.CreateCompatibleDC(pDC) || !bmp.CreateCompatibleBitmap(pDC, rcPlace.Width(), rcPlace.Height()))
        return;
    const HGDIOBJ hOldBitmap = ::SelectObject(dcText.GetSafeHdc(), bmp.GetSafeHandle());
    dcText.BitBlt(0, 0, rcPlace.Width(), rcPlace.Height(), pDC, rcPlace.left, rcPlace.top, SRCCOPY);
    CFont* const pOldFont = dcText.SelectObject(GetGuiInterface().GetFont(strName));
    dcText.SetBkMode(TRANSPARENT);
    dcText.SetTextColor(crText);
    dcText.SetLayout(GetGuiManager().m_bRightToLeft ? LAYOUT_RTL : 0);
    CRect rcText(CPoint(0, 0), rcPlace.Size());
    GetGuiSkin().DrawWrappedText(&dcText, &rcText, strText, CPoint(0, 0), FALSE);
    dcText.SetLayout(0);
    dcText.SelectObject(pOldFont);
    pDC->BitBlt(rcPlace.left, rcPlace.top, rcPlace.Width(), rcPlace.Height(), &dcText, 0, 0, SRCCOPY);
    ::SelectObject(dcText.GetSafeHdc(), hOldBitmap);
}

// ---- Input ----

// The frame repaints itself for the state that it is in; the look that was asked for comes over it.
LRESULT ViewWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    const std::weak_ptr<const void> life = Life();
    const LRESULT nResult = GuiMiniFrameWnd::WindowProc(message, wParam, lParam);
    constexpr UINT kRepaints[] = { WM_NCPAINT, WM_NCACTIVATE, WM_NCMOUSEMOVE, WM_NCLBUTTONDOWN, WM_NCLBUTTONUP };
    const bool bRepainted = std::find(std::begin(kRepaints), std::end(kRepaints), message) != std::end(kRepaints);
    if (bRepainted && !life.expired() && m_bInactive && m_pSkinWindow && !m_bChild)
        m_pSkinWindow->OnNcActivate(this, FALSE);
    return nResult;
}

BOOL ViewWnd::OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo)
{
    GuiCmdButton* const pButton = GetCmdButton(nID);
    if (!pButton || (nCode != CN_COMMAND && nCode != CN_UPDATE_COMMAND_UI))
        return GuiMiniFrameWnd::OnCmdMsg(nID, nCode, pExtra, pHandlerInfo);
    if (pHandlerInfo)
        return TRUE;
    if (nCode == CN_UPDATE_COMMAND_UI) {
        static_cast<CCmdUI*>(pExtra)->Enable(!m_bDisabled);
        return TRUE;
    }
    pButton->SetCheck(!pButton->m_bChecked);
    Invalidate(FALSE);
    Say("command " + std::to_string(nID) + " of button " + static_cast<const char*>(pButton->m_strName));
    return TRUE;
}

void ViewWnd::Say(const std::string& strLine)
{
    if (m_callbacks.report)
        m_callbacks.report(strLine);
}

// Every button hovered, then pressed, then the next.
void ViewWnd::NextHover()
{
    const std::vector<std::string> names = Buttons();
    m_nHoverStep = (m_nHoverStep + 1) % (2 * names.size() + 1);
    if (m_nHoverStep == 0) {
        ShowHover("", false);
        Say("no button is hovered");
        return;
    }
    const std::string& strName = names[(m_nHoverStep - 1) / 2];
    const bool bPressed = m_nHoverStep % 2 == 0;
    ShowHover(strName, bPressed);
    Say(strName + (bPressed ? " is pressed" : " is hovered"));
}

void ViewWnd::OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags)
{
    switch (nChar) {
    case 'A':
        ShowInactive(!m_bInactive);
        Say(m_bInactive ? "inactive" : "as active as the window is");
        break;
    case 'L':
        ShowRightToLeft(!GetGuiManager().m_bRightToLeft);
        Say(GetGuiManager().m_bRightToLeft ? "from right to left" : "from left to right");
        break;
    case 'M':
        ShowWindow(IsZoomed() ? SW_RESTORE : SW_MAXIMIZE);
        break;
    case 'H':
        NextHover();
        break;
    case 'D':
        ShowDisabled(!m_bDisabled);
        Say(m_bDisabled ? "buttons disabled" : "buttons enabled");
        break;
    case 'R':
        PostMessage(kReload);
        break;
    case VK_ESCAPE:
        PostMessage(WM_CLOSE);
        break;
    default:
        GuiMiniFrameWnd::OnKeyDown(nChar, nRepCnt, nFlags);
    }
}

} // namespace skinview
