#include "afxwin/device_context.h"

#include "afxwin/wnd.h"
#include "thread_state.h"

#include <utility>

IMPLEMENT_DYNCREATE(CDC, CObject)
IMPLEMENT_DYNAMIC(CPaintDC, CDC)
IMPLEMENT_DYNAMIC(CClientDC, CDC)
IMPLEMENT_DYNAMIC(CWindowDC, CDC)

CDC::~CDC()
{
    DeleteDC();
}

CDC* CDC::FromHandle(HDC hDC)
{
    if (!hDC)
        return nullptr;
    const auto make = [=] {
        auto context = std::make_unique<CDC>();
        context->m_hDC = context->m_hAttribDC = hDC;
        return context;
    };
    return mfc::thread_state().contexts.find(hDC, RUNTIME_CLASS(CDC), make);
}

void CDC::DeleteTempMap()
{
    mfc::thread_state().contexts.delete_temporaries();
}

BOOL CDC::Attach(HDC hDC)
{
    if (!hDC)
        return FALSE;
    DeleteDC();
    m_hDC = m_hAttribDC = hDC;
    mfc::thread_state().contexts.set_permanent(hDC, this);
    return TRUE;
}

HDC CDC::Detach()
{
    if (m_hDC)
        mfc::thread_state().contexts.remove(m_hDC, this);
    m_hAttribDC = nullptr;
    return std::exchange(m_hDC, nullptr);
}

BOOL CDC::CreateCompatibleDC(CDC* pDC)
{
    return !m_hDC && Attach(::CreateCompatibleDC(handle_of(pDC)));
}

BOOL CDC::DeleteDC()
{
    return m_hDC ? ::DeleteDC(Detach()) : FALSE;
}

CWnd* CDC::GetWindow() const
{
    return CWnd::FromHandle(::WindowFromDC(m_hDC));
}

HGDIOBJ CDC::select(const CGdiObject* pObject)
{
    return pObject ? ::SelectObject(m_hDC, pObject->m_hObject) : nullptr;
}

CPen* CDC::SelectObject(CPen* pPen)
{
    return CPen::FromHandle(static_cast<HPEN>(select(pPen)));
}

CBrush* CDC::SelectObject(CBrush* pBrush)
{
    return CBrush::FromHandle(static_cast<HBRUSH>(select(pBrush)));
}

CFont* CDC::SelectObject(CFont* pFont)
{
    return CFont::FromHandle(static_cast<HFONT>(select(pFont)));
}

CBitmap* CDC::SelectObject(CBitmap* pBitmap)
{
    return CBitmap::FromHandle(static_cast<HBITMAP>(select(pBitmap)));
}

int CDC::SelectObject(CRgn* pRgn)
{
    return static_cast<int>(reinterpret_cast<INT_PTR>(select(pRgn)));
}

CGdiObject* CDC::SelectStockObject(int nIndex)
{
    return CGdiObject::FromHandle(::SelectObject(m_hDC, ::GetStockObject(nIndex)));
}

CPoint CDC::SetWindowOrg(int x, int y)
{
    CPoint previous;
    ::SetWindowOrgEx(m_hDC, x, y, &previous);
    return previous;
}

CPoint CDC::GetWindowOrg() const
{
    CPoint origin;
    ::GetWindowOrgEx(m_hAttribDC, &origin);
    return origin;
}

CPoint CDC::SetViewportOrg(int x, int y)
{
    CPoint previous;
    ::SetViewportOrgEx(m_hDC, x, y, &previous);
    return previous;
}

CPoint CDC::GetViewportOrg() const
{
    CPoint origin;
    ::GetViewportOrgEx(m_hAttribDC, &origin);
    return origin;
}

CPoint CDC::OffsetViewportOrg(int nWidth, int nHeight)
{
    CPoint previous;
    ::OffsetViewportOrgEx(m_hDC, nWidth, nHeight, &previous);
    return previous;
}

int CDC::SelectClipRgn(CRgn* pRgn)
{
    return ::SelectClipRgn(m_hDC, pRgn ? static_cast<HRGN>(*pRgn) : nullptr);
}

int CDC::SelectClipRgn(CRgn* pRgn, int nMode)
{
    return ::ExtSelectClipRgn(m_hDC, pRgn ? static_cast<HRGN>(*pRgn) : nullptr, nMode);
}

void CDC::FillSolidRect(LPCRECT lpRect, COLORREF clr)
{
    CBrush brush(clr);
    FillRect(lpRect, &brush);
}

void CDC::FillSolidRect(int x, int y, int cx, int cy, COLORREF clr)
{
    const CRect rect(CPoint(x, y), CSize(cx, cy));
    FillSolidRect(&rect, clr);
}

CPoint CDC::MoveTo(int x, int y)
{
    CPoint previous;
    ::MoveToEx(m_hDC, x, y, &previous);
    return previous;
}

CSize CDC::GetTextExtent(LPCSTR lpszString, int nCount) const
{
    CSize size;
    ::GetTextExtentPoint32A(m_hAttribDC, lpszString, nCount, &size);
    return size;
}

CPaintDC::CPaintDC(CWnd* pWnd) : m_hWnd(pWnd->m_hWnd)
{
    Attach(::BeginPaint(m_hWnd, &m_ps));
}

CPaintDC::~CPaintDC()
{
    Detach();
    ::EndPaint(m_hWnd, &m_ps);
}

CClientDC::CClientDC(CWnd* pWnd) : m_hWnd(pWnd ? pWnd->m_hWnd : nullptr)
{
    Attach(::GetDC(m_hWnd));
}

CClientDC::~CClientDC()
{
    if (m_hDC)
        ::ReleaseDC(m_hWnd, Detach());
}

CWindowDC::CWindowDC(CWnd* pWnd) : m_hWnd(pWnd ? pWnd->m_hWnd : nullptr)
{
    Attach(::GetWindowDC(m_hWnd));
}

CWindowDC::~CWindowDC()
{
    if (m_hDC)
        ::ReleaseDC(m_hWnd, Detach());
}
