#include "skinwnd/GuiSkinCmdInterface.h"

#include <cstring>
#include <utility>

#include <commctrl.h>

#include "skin/GuiSkin.h"
#include "skin/GuiSkinWindow.h"

namespace PelkGUI {

namespace {

constexpr UINT kHoverMilliseconds = 200;

GuiCmdButton* NextButton(const CPtrList& list, POSITION& pos)
{
    return static_cast<GuiCmdButton*>(list.GetNext(pos));
}

// Gives a press or release that no button wants to the window's caption.
void SendToCaption(HWND hWnd, UINT nMessage, CPoint point)
{
    ::ClientToScreen(hWnd, &point);
    ::SendMessageA(hWnd, nMessage, HTCAPTION, MAKELPARAM(static_cast<WORD>(point.x), static_cast<WORD>(point.y)));
}

CString TipOf(const CString& strText)
{
    const int nLineFeed = strText.Find('\n');
    return nLineFeed >= 0 ? strText.Mid(nLineFeed + 1) : strText.SpanExcluding(".");
}

} // namespace

GuiSkinCmdInterface::~GuiSkinCmdInterface()
{
    DeleteButtons();
}

void GuiSkinCmdInterface::DeleteButtons()
{
    m_pHovered = m_pPressed = nullptr;
    for (POSITION pos = m_listButtons.GetHeadPosition(); pos;) {
        std::unique_ptr<GuiCmdButton> pButton(NextButton(m_listButtons, pos));
        if (m_pDeleted)
            m_pDeleted->push_back(std::move(pButton));
    }
    m_listButtons.RemoveAll();
}

void GuiSkinCmdInterface::UpdateCmdButtons()
{
    if (!m_pOwner)
        return;
    const std::weak_ptr<const void> life = Life();
    ButtonsDeleted deleted;
    const bool bOutermost = !m_pDeleted;
    if (bOutermost)
        m_pDeleted = &deleted;
    const ButtonsDeleted& gone = *m_pDeleted;
    const size_t nGone = gone.size();
    BOOL bChanged = FALSE;
    for (POSITION pos = m_listButtons.GetHeadPosition(); pos && gone.size() == nGone;) {
        GuiCmdButton* const pButton = NextButton(m_listButtons, pos);
        pButton->m_bChanged = FALSE;
        pButton->DoUpdate(m_pOwner, TRUE);
        if (life.expired())
            return;
        bChanged |= pButton->m_bChanged;
    }
    if (bOutermost)
        m_pDeleted = nullptr;
    if (bChanged)
        m_pOwner->Invalidate(FALSE);
}

void GuiSkinCmdInterface::ShowButton(UINT nID, int bShow)
{
    if (GuiCmdButton* const pButton = GetCmdButton(nID))
        pButton->Show(bShow);
}

void GuiSkinCmdInterface::EnableButton(UINT nID, int bEnable)
{
    if (GuiCmdButton* const pButton = GetCmdButton(nID))
        pButton->Enable(bEnable);
}

void GuiSkinCmdInterface::CheckButton(UINT nID, int nCheck)
{
    if (GuiCmdButton* const pButton = GetCmdButton(nID))
        pButton->SetCheck(nCheck);
}

GuiCmdButton* GuiSkinCmdInterface::GetCmdButton(UINT nID) const
{
    if (!m_pSkinWindow)
        return nullptr;
    for (POSITION pos = m_listButtons.GetHeadPosition(); pos;) {
        if (GuiCmdButton* const pButton = NextButton(m_listButtons, pos); pButton->m_nID == nID)
            return pButton;
    }
    return nullptr;
}

GuiCmdButton* GuiSkinCmdInterface::HitTestButtons(CPoint point, int bIncludeDisabled) const
{
    if (!m_pSkinWindow)
        return nullptr;
    for (POSITION pos = m_listButtons.GetHeadPosition(); pos;) {
        if (GuiCmdButton* const pButton = NextButton(m_listButtons, pos); pButton->HitTest(point, bIncludeDisabled))
            return pButton;
    }
    return nullptr;
}

void GuiSkinCmdInterface::PaintButtons(CDC* pDC, const CRect& rcClient)
{
    for (POSITION pos = m_listButtons.GetHeadPosition(); pos;)
        NextButton(m_listButtons, pos)->Paint(pDC, rcClient, m_pSkinWindow, m_pHovered, m_pPressed);
}

int GuiSkinCmdInterface::OnMouseMove(UINT /*nFlags*/, CPoint point)
{
    const std::weak_ptr<const void> life = Life();
    if (GuiCmdButton* const pHit = HitTestButtons(point, FALSE); pHit != m_pHovered) {
        m_pHovered = pHit;
        if (pHit)
            MouseMoveStype(1, pHit->m_nID);
        if (life.expired())
            return TRUE;
        if (m_pOwner)
            m_pOwner->Invalidate(FALSE);
    }
    const BOOL bFree = !m_pPressed;
    const HWND hWnd = m_pOwner ? m_pOwner->GetSafeHwnd() : nullptr; // null also when the hook ended the window alone
    if (!m_bHoverTimer && m_pHovered && hWnd) {
        ::SetTimer(hWnd, kHoverTimer, kHoverMilliseconds, nullptr);
        m_bHoverTimer = TRUE;
    } else if (m_bHoverTimer && !m_pHovered && hWnd) {
        ::KillTimer(hWnd, kHoverTimer);
        m_bHoverTimer = FALSE;
        MouseMoveStype(0, 0);
    }
    return bFree;
}

int GuiSkinCmdInterface::OnLButtonDown(UINT /*nFlags*/, CPoint point)
{
    if (!m_pOwner)
        return TRUE;
    const std::weak_ptr<const void> life = Life();
    const HWND hWnd = m_pOwner->GetSafeHwnd();
    ::SetActiveWindow(hWnd);
    ::SetFocus(hWnd);
    if (life.expired() || !::IsWindow(hWnd))
        return TRUE;
    GuiCmdButton* const pHit = HitTestButtons(point, FALSE);
    if (!pHit) {
        SendToCaption(hWnd, WM_NCLBUTTONDOWN, point);
        return TRUE;
    }
    m_pHovered = m_pPressed = pHit;
    ::InvalidateRect(hWnd, nullptr, FALSE);
    ::SetCapture(hWnd);
    return TRUE;
}

int GuiSkinCmdInterface::OnLButtonUp(UINT /*nFlags*/, CPoint point)
{
    if (!m_pOwner)
        return TRUE;
    const std::weak_ptr<const void> life = Life();
    const HWND hWnd = m_pOwner->GetSafeHwnd();
    GuiCmdButton* const pReleased = std::exchange(m_pPressed, nullptr);
    if (!pReleased) {
        SendToCaption(hWnd, WM_NCLBUTTONUP, point);
        return TRUE;
    }
    ::InvalidateRect(hWnd, nullptr, FALSE);
    ::ReleaseCapture();
    if (life.expired() || pReleased != m_pHovered)
        return TRUE;
    ::UpdateWindow(hWnd); // the released picture first: the command may take its time
    if (!life.expired() && m_pHovered && m_listButtons.Find(m_pHovered))
        m_pHovered->Execute(m_pOwner); // may be the end of all of this
    return TRUE;
}

void GuiSkinCmdInterface::OnTimer(UINT_PTR nTimer)
{
    if (nTimer != kHoverTimer || !m_pOwner)
        return;
    CRect rcClient;
    CPoint ptCursor;
    m_pOwner->GetClientRect(&rcClient);
    m_pOwner->ClientToScreen(&rcClient);
    ::GetCursorPos(&ptCursor);
    if (rcClient.PtInRect(ptCursor))
        return;
    m_pOwner->KillTimer(kHoverTimer);
    m_bHoverTimer = FALSE;
    m_pHovered = nullptr;
    m_pOwner->Invalidate(FALSE);
}

void GuiSkinCmdInterface::OnCaptureLost()
{
    if (std::exchange(m_pPressed, nullptr) && m_pOwner)
        m_pOwner->Invalidate(FALSE);
}

int GuiSkinCmdInterface::OnToolHitTest(CPoint point, TOOLINFOA* pInfo) const
{
    const GuiCmdButton* const pHit = HitTestButtons(point, FALSE);
    if (!pHit)
        return 0;
    const int nID = static_cast<int>(pHit->m_nID);
    if (!pInfo || nID < 0) // such a number is no tool's
        return nID;
    if (CString strText; GetGuiSkin().LoadStringA(strText, pHit->m_nID))
        pInfo->lpszText = ::strdup(TipOf(strText));
    pInfo->hwnd = m_pOwner ? m_pOwner->GetSafeHwnd() : nullptr;
    pInfo->uId = pHit->m_nID;
    pInfo->uFlags &= ~TTF_IDISHWND;
    pInfo->rect = pHit->m_rcButton;
    return nID;
}

} // namespace PelkGUI
