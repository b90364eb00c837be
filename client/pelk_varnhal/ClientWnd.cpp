#include "client/pelk_varnhal/ClientWnd.h"

#include "client/pelk_varnhal/Installation.h"

#include <string_view>

namespace client {

namespace {

constexpr UINT kPictures = 131; // of client.rc
constexpr int kWidth = 420;
constexpr int kHeight = 300;

// Where the bitmap holds what: the window when complete, beneath it when not, beneath both the characters of a version.
constexpr int kIncompleteTop = kHeight;
constexpr int kCharactersTop = 2 * kHeight;
constexpr std::string_view kCharacters = "0123456789.";
constexpr CSize kCharacter(8, 16);

constexpr int kHeaderHeight = 96; // the window is dragged by it
constexpr CPoint kVersionAt(96, 121);
constexpr RECT kCloseButton = { 312, 252, 390, 282 };

constexpr char kTitle[] = "Merav \xBB\xE1\xD2\xE9"; // 会议, in code page 936

} // namespace

IMPLEMENT_DYNAMIC(ClientWnd, CFrameWnd)

BEGIN_MESSAGE_MAP(ClientWnd, CFrameWnd)
ON_WM_PAINT()
ON_WM_ERASEBKGND()
ON_WM_NCHITTEST()
ON_WM_LBUTTONUP()
ON_WM_KEYDOWN()
END_MESSAGE_MAP()

ClientWnd::ClientWnd(const std::string& strFolder)
    : m_bComplete(IsComplete(strFolder)), m_strVersion(InstalledVersion())
{
    m_bmpPictures.LoadBitmap(kPictures);
}

BOOL ClientWnd::CreateAndShow(int nShowCommand)
{
    const int x = (GetSystemMetrics(SM_CXSCREEN) - kWidth) / 2;
    const int y = (GetSystemMetrics(SM_CYSCREEN) - kHeight) / 2;
    const std::string strTitle = m_strVersion.empty() ? kTitle : kTitle + (" " + m_strVersion);
    if (!Create(AfxRegisterWndClass(0), strTitle.c_str(), WS_POPUP | WS_SYSMENU | WS_MINIMIZEBOX,
                CRect(x, y, x + kWidth, y + kHeight)))
        return FALSE;
    ShowWindow(nShowCommand);
    UpdateWindow();
    return TRUE;
}

BOOL ClientWnd::PreCreateWindow(CREATESTRUCTA& cs)
{
    const BOOL bMade = CFrameWnd::PreCreateWindow(cs);
    cs.dwExStyle &= ~WS_EX_CLIENTEDGE; // the picture is as large as the window
    return bMade;
}

void ClientWnd::OnPaint()
{
    CPaintDC dc(this);
    CDC dcPictures;
    dcPictures.CreateCompatibleDC(&dc);
    CBitmap* pOldBitmap = dcPictures.SelectObject(&m_bmpPictures);
    dc.BitBlt(0, 0, kWidth, kHeight, &dcPictures, 0, m_bComplete ? 0 : kIncompleteTop, SRCCOPY);
    PaintVersion(dc, dcPictures);
    dcPictures.SelectObject(pOldBitmap);
}

// Writes the version with the bitmap's characters; one that is not among them leaves a gap.
void ClientWnd::PaintVersion(CDC& dc, CDC& dcPictures) const
{
    CPoint point = kVersionAt;
    for (const char c : m_strVersion) {
        if (const std::size_t n = kCharacters.find(c); n != std::string_view::npos)
            dc.BitBlt(point.x, point.y, kCharacter.cx, kCharacter.cy, &dcPictures, static_cast<int>(n) * kCharacter.cx,
                      kCharactersTop, SRCCOPY);
        point.x += kCharacter.cx;
    }
}

BOOL ClientWnd::OnEraseBkgnd(CDC*)
{
    return TRUE; // the picture covers everything
}

LRESULT ClientWnd::OnNcHitTest(CPoint point)
{
    CPoint ptClient = point;
    ScreenToClient(&ptClient);
    const LRESULT nHit = CFrameWnd::OnNcHitTest(point);
    return nHit == HTCLIENT && ptClient.y < kHeaderHeight ? HTCAPTION : nHit;
}

void ClientWnd::OnLButtonUp(UINT nFlags, CPoint point)
{
    if (PtInRect(&kCloseButton, point))
        PostMessage(WM_CLOSE);
    else
        CFrameWnd::OnLButtonUp(nFlags, point);
}

void ClientWnd::OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags)
{
    if (nChar == VK_ESCAPE)
        PostMessage(WM_CLOSE);
    else
        CFrameWnd::OnKeyDown(nChar, nRepCnt, nFlags);
}

} // namespace client
