#include "client/window/SkinnedWnd.h"

#include "assets/CarriedFont.h"
#include "client/window/Drawing.h"
#include "client/window/SkinMenu.h"
#include "look/GuiManager.h"
#include "skin/GuiSkin.h"
#include "skin/GuiSkinWindow.h"

#include <algorithm>

namespace client {

namespace {

constexpr UINT kSkin = 130; // resource "STID"
constexpr UINT kIcon = 1;
constexpr char kWindowSkin[] = "MeravClient";

constexpr int kBandHeight = 72;
constexpr int kFooterHeight = 52; // the frame's foot goes on in its colour
constexpr int kMargin = 24;
constexpr int kStateMark = 40;
constexpr int kSentenceLine = 20;

constexpr Pen kTitlePen = { "Title", "Client.Title" };
constexpr Pen kSubtitlePen = { "Text", "Client.Subtitle" };
constexpr Pen kSentencePen = { "Text", "Client.Label" };

} // namespace

void LoadSkin()
{
    (void)LoadCarriedFont(); // without it, the system's fonts have to do
    PelkGUI::GetGuiManager().InitManager();
    PelkGUI::GetGuiSkin().Apply(kSkin, "STID");
}

IMPLEMENT_DYNAMIC(SkinnedWnd, PelkGUI::GuiMiniFrameWnd)

BEGIN_MESSAGE_MAP(SkinnedWnd, PelkGUI::GuiMiniFrameWnd)
ON_WM_CREATE()
ON_WM_KEYDOWN()
ON_WM_LBUTTONDOWN()
ON_WM_MOUSEMOVE()
ON_WM_LBUTTONUP()
ON_WM_CAPTURECHANGED()
ON_WM_MEASUREITEM()
ON_WM_DRAWITEM()
ON_MESSAGE(WM_MOUSEWHEEL, &SkinnedWnd::OnMouseWheel)
END_MESSAGE_MAP()

BOOL SkinnedWnd::CreateAndShow(CSize size, int nShowCommand)
{
    constexpr DWORD kStyle =
        WS_POPUP | WS_CAPTION | WS_THICKFRAME | WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX | WS_CLIPCHILDREN;
    const LPCSTR pszClass = AfxRegisterWndClass(CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS, ::LoadCursorA(nullptr, IDC_ARROW),
                                                ::GetSysColorBrush(COLOR_BTNFACE));
    if (Create(pszClass, kWindowSkin, kStyle, CRect(CPoint(0, 0), size), nullptr, 0) != 1)
        return FALSE;
    SetWindowText(Text(m_nTitle));
    OnSkinChange();
    CenterWindow();
    ShowWindow(nShowCommand);
    UpdateWindow();
    return TRUE;
}

int SkinnedWnd::OnCreate(LPCREATESTRUCTA pCreate)
{
    if (GuiMiniFrameWnd::OnCreate(pCreate) == -1)
        return -1;
    EnableToolTips();
    m_pIcon.reset(::LoadIconA(AfxGetInstanceHandle(), MAKEINTRESOURCEA(kIcon)));
    SetIcon(m_pIcon.get(), TRUE);
    SetIcon(m_pIcon.get(), FALSE);
    return 0;
}

void SkinnedWnd::AddButton(const char* pszAnchor)
{
    m_listButtons.AddTail(new PelkGUI::GuiCmdButton(pszAnchor));
}

// ---- Painting ----

void SkinnedWnd::Paint(CDC* pDC, CRect rcClient)
{
    if (!m_pSkinWindow)
        return;
    CRect rcBand = rcClient;
    rcBand.bottom = rcBand.top + kBandHeight;
    CRect rcFooter = rcClient;
    rcFooter.top = rcFooter.bottom - kFooterHeight;
    CRect rcContent(rcClient.left, rcBand.bottom, rcClient.right, rcFooter.top);
    pDC->FillSolidRect(rcContent, Colour("System.Base.Window"));
    pDC->FillSolidRect(rcFooter, Colour("Client.Footer"));
    pDC->FillSolidRect(rcFooter.left, rcFooter.top, rcFooter.Width(), 1, Colour("Client.Line"));
    PaintBand(*pDC, rcBand);
    rcContent.DeflateRect(kMargin, kMargin - 4);
    PaintContent(*pDC, rcContent);
    PaintButtons(pDC, rcClient);
    PaintFocus(*pDC);
}

// Its two ends as they are, what is between them stretched.
void SkinnedWnd::PaintBand(CDC& dc, const CRect& rcBand)
{
    CRect rcLeft;
    CRect rcMiddle;
    CRect rcRight;
    if (!m_pSkinWindow->GetPart("BandLeft", rcLeft) || !m_pSkinWindow->GetPart("Band", rcMiddle) ||
        !m_pSkinWindow->GetPart("BandRight", rcRight))
        return;
    const int xRight = rcBand.right - rcRight.Width();
    const int cxMiddle = xRight - rcLeft.Width();
    m_pSkinWindow->PaintPart(&dc, CRect(rcBand.TopLeft(), rcLeft.Size()), "BandLeft", FALSE);
    if (cxMiddle > 0)
        dc.StretchBlt(rcLeft.Width(), rcBand.top, cxMiddle, rcBand.Height(), &m_pSkinWindow->m_dcSkin, rcMiddle.left,
                      rcMiddle.top, rcMiddle.Width(), rcMiddle.Height(), SRCCOPY);
    m_pSkinWindow->PaintPart(&dc, CRect(CPoint(xRight, rcBand.top), rcRight.Size()), "BandRight", FALSE);

    DrawLine(dc, CRect(kMargin, rcBand.top + 6, xRight, rcBand.top + 42), Text(m_nTitle), kTitlePen);
    DrawLine(dc, CRect(kMargin, rcBand.top + 40, xRight, rcBand.top + 64), Text(kTextTagline), kSubtitlePen);
}

// Around the button: white for what is dark behind it, blue for what is light.
void SkinnedWnd::PaintFocus(CDC& dc) const
{
    const PelkGUI::GuiCmdButton* const pButton = FocusedButton();
    if (!pButton)
        return;
    CRect rcRing = pButton->m_rcButton;
    rcRing.InflateRect(1, 1);
    for (const char* const pszColour : { "Client.Title", "System.Base.Highlight" }) {
        rcRing.InflateRect(1, 1);
        CBrush brush(Colour(pszColour));
        dc.FrameRect(rcRing, &brush);
    }
}

int SkinnedWnd::PaintState(CDC& dc, const CRect& rcContent, const char* pszMark, const CString& strHeading,
                           const char* pszColour, const CString& strSentence)
{
    m_pSkinWindow->PaintPart(&dc, CRect(rcContent.TopLeft(), CSize(kStateMark, kStateMark)), pszMark, FALSE);
    CRect rcText = rcContent;
    rcText.left += kStateMark + 16;
    rcText.bottom = rcText.top + 26;
    DrawLine(dc, rcText, strHeading, { "State", pszColour });
    rcText.top = rcText.bottom + 2;
    return DrawWrapped(dc, rcText, strSentence, kSentencePen, kSentenceLine);
}

void SkinnedWnd::OnMeasureItem(int /*nIDCtl*/, LPMEASUREITEMSTRUCT pItem)
{
    if (pItem->itemData != 0) // an item of ours
        SkinMenu::Measure(pItem);
}

void SkinnedWnd::OnDrawItem(int /*nIDCtl*/, LPDRAWITEMSTRUCT pItem)
{
    if (pItem->itemData != 0)
        SkinMenu::Draw(*pItem);
}

// ---- Input ----

void SkinnedWnd::OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags)
{
    if (!m_list.IsEmpty() && m_list.KeyDown(nChar)) {
        Invalidate(FALSE);
        return;
    }
    constexpr UINT kRepeated = 0x4000;
    const std::weak_ptr<const void> life = Life();
    if (!PressByKey(nChar, nFlags & kRepeated))
        KeyPressed(nChar);
    if (!life.expired())
        GuiMiniFrameWnd::OnKeyDown(nChar, nRepCnt, nFlags);
}

// TRUE: the key is one of the buttons'. A key that is held presses once: the next press would be of what comes after.
bool SkinnedWnd::PressByKey(UINT nKey, bool bRepeated)
{
    if (nKey == VK_TAB) {
        MoveFocus(::GetKeyState(VK_SHIFT) < 0);
        return true;
    }
    if (nKey != VK_RETURN && nKey != VK_SPACE)
        return false;
    PelkGUI::GuiCmdButton* pButton = FocusedButton();
    if (!pButton && nKey == VK_RETURN)
        pButton = GetCmdButton(DefaultCommand());
    if (pButton && !bRepeated)
        pButton->Execute(this); // may be the end of this window
    return true;
}

std::vector<PelkGUI::GuiCmdButton*> SkinnedWnd::UsableButtons() const
{
    std::vector<PelkGUI::GuiCmdButton*> buttons;
    for (POSITION pos = m_listButtons.GetHeadPosition(); pos;) {
        auto* const pButton = static_cast<PelkGUI::GuiCmdButton*>(m_listButtons.GetNext(pos));
        if (pButton->m_bVisible && pButton->m_bEnabled)
            buttons.push_back(pButton);
    }
    return buttons;
}

PelkGUI::GuiCmdButton* SkinnedWnd::FocusedButton() const
{
    PelkGUI::GuiCmdButton* const pButton = GetCmdButton(m_nFocus);
    return pButton && pButton->m_bVisible && pButton->m_bEnabled ? pButton : nullptr;
}

// Round; from none to the first or, backwards, to the last.
void SkinnedWnd::MoveFocus(bool bBack)
{
    std::vector<PelkGUI::GuiCmdButton*> buttons = UsableButtons();
    if (buttons.empty())
        return;
    if (bBack)
        std::reverse(buttons.begin(), buttons.end());
    auto it = std::find(buttons.begin(), buttons.end(), FocusedButton());
    if (it == buttons.end() || ++it == buttons.end())
        it = buttons.begin();
    m_nFocus = (*it)->m_nID;
    Invalidate(FALSE);
}

void SkinnedWnd::OnLButtonDown(UINT nFlags, CPoint point)
{
    if (!m_list.Press(point)) {
        GuiMiniFrameWnd::OnLButtonDown(nFlags, point);
        return;
    }
    m_bListPressed = TRUE;
    SetCapture();
    Invalidate(FALSE);
}

void SkinnedWnd::OnMouseMove(UINT nFlags, CPoint point)
{
    if (!m_bListPressed)
        GuiMiniFrameWnd::OnMouseMove(nFlags, point);
    else if (m_list.Drag(point))
        Invalidate(FALSE);
}

void SkinnedWnd::OnLButtonUp(UINT nFlags, CPoint point)
{
    if (m_bListPressed)
        ::ReleaseCapture();
    else
        GuiMiniFrameWnd::OnLButtonUp(nFlags, point);
}

void SkinnedWnd::OnCaptureChanged(CWnd* pWnd)
{
    m_bListPressed = FALSE;
    m_list.EndDrag();
    GuiMiniFrameWnd::OnCaptureChanged(pWnd);
}

LRESULT SkinnedWnd::OnMouseWheel(WPARAM wParam, LPARAM /*lParam*/)
{
    const auto nDelta = static_cast<short>(HIWORD(static_cast<DWORD>(wParam)));
    if (!m_list.IsEmpty() && m_list.Wheel(nDelta))
        Invalidate(FALSE);
    return 0;
}

} // namespace client
