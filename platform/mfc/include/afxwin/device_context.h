// Device contexts. A CDC owns its context and deletes it; CPaintDC, CClientDC and CWindowDC give theirs back to the
// window; what FromHandle makes for a context that no object owns is temporary, as in gdi_object.h. Coordinates are
// logical units, which are pixels.
#pragma once

#include "../afx/afx_string.h"
#include "../afx/object.h"
#include "gdi_object.h"
#include "geometry.h"

#include <windows.h>

class CWnd;

class CDC : public CObject {
    DECLARE_DYNCREATE(CDC)

    CDC() = default;
    ~CDC() override;

    static CDC* FromHandle(HDC hDC);
    static void DeleteTempMap();

    HDC GetSafeHdc() const { return m_hDC; }
    BOOL Attach(HDC hDC);
    HDC Detach();
    // A memory context; null: compatible with the screen. FALSE if this object has a context already.
    BOOL CreateCompatibleDC(CDC* pDC);
    BOOL DeleteDC();
    CWnd* GetWindow() const;

    // The object selected before, or null: nothing changed.
    CPen* SelectObject(CPen* pPen);
    CBrush* SelectObject(CBrush* pBrush);
    CFont* SelectObject(CFont* pFont);
    CBitmap* SelectObject(CBitmap* pBitmap);
    int SelectObject(CRgn* pRgn); // the kind of region
    CGdiObject* SelectStockObject(int nIndex);
    int SaveDC() { return ::SaveDC(m_hDC); }
    BOOL RestoreDC(int nSavedDC) { return ::RestoreDC(m_hDC, nSavedDC); }
    int GetDeviceCaps(int nIndex) const { return ::GetDeviceCaps(m_hAttribDC, nIndex); }

    // The value before.
    int SetBkMode(int nBkMode) { return ::SetBkMode(m_hDC, nBkMode); }
    int GetBkMode() const { return ::GetBkMode(m_hAttribDC); }
    int SetROP2(int nDrawMode) { return ::SetROP2(m_hDC, nDrawMode); }
    int GetROP2() const { return ::GetROP2(m_hAttribDC); }
    COLORREF SetTextColor(COLORREF crColor) { return ::SetTextColor(m_hDC, crColor); }
    COLORREF GetTextColor() const { return ::GetTextColor(m_hAttribDC); }
    COLORREF SetBkColor(COLORREF crColor) { return ::SetBkColor(m_hDC, crColor); }
    COLORREF GetBkColor() const { return ::GetBkColor(m_hAttribDC); }
    int SetStretchBltMode(int nStretchMode) { return ::SetStretchBltMode(m_hDC, nStretchMode); }
    int GetStretchBltMode() const { return ::GetStretchBltMode(m_hAttribDC); }
    DWORD SetLayout(DWORD dwLayout) { return ::SetLayout(m_hDC, dwLayout); }
    DWORD GetLayout() const { return ::GetLayout(m_hAttribDC); }

    CPoint SetWindowOrg(int x, int y);
    CPoint GetWindowOrg() const;
    CPoint SetViewportOrg(int x, int y);
    CPoint SetViewportOrg(POINT point) { return SetViewportOrg(point.x, point.y); }
    CPoint GetViewportOrg() const;
    CPoint OffsetViewportOrg(int nWidth, int nHeight);
    void DPtoLP(LPPOINT lpPoints, int nCount = 1) const { ::DPtoLP(m_hAttribDC, lpPoints, nCount); }
    void LPtoDP(LPPOINT lpPoints, int nCount = 1) const { ::LPtoDP(m_hAttribDC, lpPoints, nCount); }

    // The kind of the clipping region that results.
    int GetClipBox(LPRECT lpRect) const { return ::GetClipBox(m_hAttribDC, lpRect); }
    int SelectClipRgn(CRgn* pRgn); // null: no clipping
    int SelectClipRgn(CRgn* pRgn, int nMode);
    int IntersectClipRect(LPCRECT lpRect)
    {
        return IntersectClipRect(lpRect->left, lpRect->top, lpRect->right, lpRect->bottom);
    }
    int IntersectClipRect(int x1, int y1, int x2, int y2) { return ::IntersectClipRect(m_hDC, x1, y1, x2, y2); }
    int ExcludeClipRect(LPCRECT lpRect)
    {
        return ExcludeClipRect(lpRect->left, lpRect->top, lpRect->right, lpRect->bottom);
    }
    int ExcludeClipRect(int x1, int y1, int x2, int y2) { return ::ExcludeClipRect(m_hDC, x1, y1, x2, y2); }
    int OffsetClipRgn(int x, int y) { return ::OffsetClipRgn(m_hDC, x, y); }
    BOOL RectVisible(LPCRECT lpRect) const { return ::RectVisible(m_hDC, lpRect); }
    BOOL PtVisible(POINT point) const { return ::PtVisible(m_hDC, point.x, point.y); }

    BOOL BitBlt(int x, int y, int nWidth, int nHeight, CDC* pSrcDC, int xSrc, int ySrc, DWORD dwRop)
    {
        return ::BitBlt(m_hDC, x, y, nWidth, nHeight, handle_of(pSrcDC), xSrc, ySrc, dwRop);
    }
    BOOL StretchBlt(int x, int y, int nWidth, int nHeight, CDC* pSrcDC, int xSrc, int ySrc, int nSrcWidth,
                    int nSrcHeight, DWORD dwRop)
    {
        return ::StretchBlt(m_hDC, x, y, nWidth, nHeight, handle_of(pSrcDC), xSrc, ySrc, nSrcWidth, nSrcHeight, dwRop);
    }
    BOOL PatBlt(int x, int y, int nWidth, int nHeight, DWORD dwRop)
    {
        return ::PatBlt(m_hDC, x, y, nWidth, nHeight, dwRop);
    }

    BOOL Rectangle(int x1, int y1, int x2, int y2) { return ::Rectangle(m_hDC, x1, y1, x2, y2); }
    BOOL Rectangle(LPCRECT lpRect) { return Rectangle(lpRect->left, lpRect->top, lpRect->right, lpRect->bottom); }
    void FillRect(LPCRECT lpRect, CBrush* pBrush) { ::FillRect(m_hDC, lpRect, *pBrush); }
    void FrameRect(LPCRECT lpRect, CBrush* pBrush) { ::FrameRect(m_hDC, lpRect, *pBrush); }
    void InvertRect(LPCRECT lpRect) { ::InvertRect(m_hDC, lpRect); }
    BOOL FillRgn(CRgn* pRgn, CBrush* pBrush) { return ::FillRgn(m_hDC, *pRgn, *pBrush); }
    // Both leave the brush and the colours of the context as they were.
    void FillSolidRect(LPCRECT lpRect, COLORREF clr);
    void FillSolidRect(int x, int y, int cx, int cy, COLORREF clr);
    COLORREF SetPixel(int x, int y, COLORREF crColor) { return ::SetPixel(m_hDC, x, y, crColor); }
    COLORREF GetPixel(int x, int y) const { return ::GetPixel(m_hDC, x, y); }
    COLORREF GetPixel(POINT point) const { return GetPixel(point.x, point.y); }
    CPoint MoveTo(int x, int y);
    CPoint MoveTo(POINT point) { return MoveTo(point.x, point.y); }
    BOOL LineTo(int x, int y) { return ::LineTo(m_hDC, x, y); }
    BOOL LineTo(POINT point) { return LineTo(point.x, point.y); }

    // Text in the selected font and the text colour.
    BOOL TextOut(int x, int y, LPCSTR lpszString, int nCount) { return ::TextOutA(m_hDC, x, y, lpszString, nCount); }
    BOOL TextOut(int x, int y, const CString& str) { return TextOut(x, y, str, str.GetLength()); }
    BOOL ExtTextOut(int x, int y, UINT nOptions, LPCRECT lpRect, LPCSTR lpszString, UINT nCount, const INT* lpDxWidths)
    {
        return ::ExtTextOutA(m_hDC, x, y, nOptions, lpRect, lpszString, nCount, lpDxWidths);
    }
    BOOL ExtTextOut(int x, int y, UINT nOptions, LPCRECT lpRect, const CString& str, const INT* lpDxWidths)
    {
        return ExtTextOut(x, y, nOptions, lpRect, str, static_cast<UINT>(str.GetLength()), lpDxWidths);
    }
    int DrawText(LPCSTR lpszString, int nCount, LPRECT lpRect, UINT nFormat)
    {
        return ::DrawTextA(m_hDC, lpszString, nCount, lpRect, nFormat);
    }
    int DrawText(const CString& str, LPRECT lpRect, UINT nFormat)
    {
        return DrawText(str, str.GetLength(), lpRect, nFormat);
    }
    CSize GetTextExtent(LPCSTR lpszString, int nCount) const;
    CSize GetTextExtent(const CString& str) const { return GetTextExtent(str, str.GetLength()); }
    BOOL GetTextMetrics(TEXTMETRICA* lpMetrics) const { return ::GetTextMetricsA(m_hAttribDC, lpMetrics); }
    UINT SetTextAlign(UINT nFlags) { return ::SetTextAlign(m_hDC, nFlags); }
    UINT GetTextAlign() const { return ::GetTextAlign(m_hAttribDC); }

    HDC m_hDC = nullptr;       // drawing goes here
    HDC m_hAttribDC = nullptr; // questions are asked here: the same context

private:
    static HDC handle_of(const CDC* pDC) { return pDC ? pDC->m_hDC : nullptr; }
    HGDIOBJ select(const CGdiObject* pObject);
};

// Painting in WM_PAINT: BeginPaint to EndPaint.
class CPaintDC : public CDC {
    DECLARE_DYNAMIC(CPaintDC)

    explicit CPaintDC(CWnd* pWnd);
    ~CPaintDC() override;

    PAINTSTRUCT m_ps = {};

protected:
    HWND m_hWnd;
};

// The window's client area; null: the screen.
class CClientDC : public CDC {
    DECLARE_DYNAMIC(CClientDC)

    explicit CClientDC(CWnd* pWnd);
    ~CClientDC() override;

protected:
    HWND m_hWnd;
};

// The whole window, frame included.
class CWindowDC : public CDC {
    DECLARE_DYNAMIC(CWindowDC)

    explicit CWindowDC(CWnd* pWnd);
    ~CWindowDC() override;

protected:
    HWND m_hWnd;
};
