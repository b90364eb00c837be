// Pens, brushes, fonts, bitmaps and regions. An object owns its handle and deletes it, except a temporary one: what
// FromHandle makes for a handle that no object owns. Temporary objects live until the thread is next idle; do not keep
// them. Objects belong to the thread that uses them.
#pragma once

#include "../afx/object.h"
#include "geometry.h"

#include <windows.h>

class CDC;

class CGdiObject : public CObject {
    DECLARE_DYNAMIC(CGdiObject)

    CGdiObject() = default;
    ~CGdiObject() override;

    // Null for a null handle. The object that owns the handle, or else a temporary one.
    static CGdiObject* FromHandle(HGDIOBJ hObject);
    static void DeleteTempMap();

    HGDIOBJ GetSafeHandle() const { return m_hObject; }
    // TRUE: the handle is this object's from now on. FALSE for a null handle.
    BOOL Attach(HGDIOBJ hObject);
    HGDIOBJ Detach(); // the caller's from now on
    BOOL DeleteObject();
    BOOL CreateStockObject(int nIndex) { return Attach(GetStockObject(nIndex)); }
    int GetObject(int nCount, LPVOID lpObject) const { return ::GetObjectA(m_hObject, nCount, lpObject); }

    HGDIOBJ m_hObject = nullptr;

protected:
    // FromHandle of a derived class.
    template <class Object>
    static Object* from_handle(HGDIOBJ hObject);
};

class CPen : public CGdiObject {
    DECLARE_DYNCREATE(CPen)

    CPen() = default;
    CPen(int nPenStyle, int nWidth, COLORREF crColor) { CreatePen(nPenStyle, nWidth, crColor); }
    static CPen* FromHandle(HPEN hPen);
    operator HPEN() const { return static_cast<HPEN>(m_hObject); }

    BOOL CreatePen(int nPenStyle, int nWidth, COLORREF crColor)
    {
        return Attach(::CreatePen(nPenStyle, nWidth, crColor));
    }
};

class CBrush : public CGdiObject {
    DECLARE_DYNCREATE(CBrush)

    CBrush() = default;
    explicit CBrush(COLORREF crColor) { CreateSolidBrush(crColor); }
    static CBrush* FromHandle(HBRUSH hBrush);
    operator HBRUSH() const { return static_cast<HBRUSH>(m_hObject); }

    BOOL CreateSolidBrush(COLORREF crColor) { return Attach(::CreateSolidBrush(crColor)); }
};

class CFont : public CGdiObject {
    DECLARE_DYNCREATE(CFont)

    CFont() = default;
    static CFont* FromHandle(HFONT hFont);
    operator HFONT() const { return static_cast<HFONT>(m_hObject); }

    BOOL CreateFontIndirect(const LOGFONTA* lpLogFont) { return Attach(::CreateFontIndirectA(lpLogFont)); }
    BOOL CreateFont(int nHeight, int nWidth, int nEscapement, int nOrientation, int nWeight, BYTE bItalic,
                    BYTE bUnderline, BYTE cStrikeOut, BYTE nCharSet, BYTE nOutPrecision, BYTE nClipPrecision,
                    BYTE nQuality, BYTE nPitchAndFamily, LPCSTR lpszFacename)
    {
        return Attach(::CreateFontA(nHeight, nWidth, nEscapement, nOrientation, nWeight, bItalic, bUnderline,
                                    cStrikeOut, nCharSet, nOutPrecision, nClipPrecision, nQuality, nPitchAndFamily,
                                    lpszFacename));
    }
    // The height is in tenths of a point, for the context or (null) the screen; it is the em, whatever its sign.
    BOOL CreatePointFontIndirect(const LOGFONTA* lpLogFont, CDC* pDC = nullptr);
    BOOL CreatePointFont(int nPointSize, LPCSTR lpszFaceName, CDC* pDC = nullptr);
    int GetLogFont(LOGFONTA* pLogFont) const { return GetObject(sizeof(LOGFONTA), pLogFont); }
};

class CBitmap : public CGdiObject {
    DECLARE_DYNCREATE(CBitmap)

    CBitmap() = default;
    static CBitmap* FromHandle(HBITMAP hBitmap);
    operator HBITMAP() const { return static_cast<HBITMAP>(m_hObject); }

    // From the program's resources.
    BOOL LoadBitmap(LPCSTR lpszResourceName);
    BOOL LoadBitmap(UINT nIDResource) { return LoadBitmap(MAKEINTRESOURCEA(nIDResource)); }
    BOOL CreateBitmap(int nWidth, int nHeight, UINT nPlanes, UINT nBitcount, const void* lpBits)
    {
        return Attach(::CreateBitmap(nWidth, nHeight, nPlanes, nBitcount, lpBits));
    }
    BOOL CreateCompatibleBitmap(CDC* pDC, int nWidth, int nHeight);
    int GetBitmap(BITMAP* pBitMap) const { return GetObject(sizeof(BITMAP), pBitMap); }
};

class CRgn : public CGdiObject {
    DECLARE_DYNCREATE(CRgn)

    CRgn() = default;
    static CRgn* FromHandle(HRGN hRgn);
    operator HRGN() const { return static_cast<HRGN>(m_hObject); }

    BOOL CreateRectRgn(int x1, int y1, int x2, int y2) { return Attach(::CreateRectRgn(x1, y1, x2, y2)); }
    BOOL CreateRectRgnIndirect(LPCRECT lpRect) { return Attach(::CreateRectRgnIndirect(lpRect)); }
    BOOL CreateEllipticRgn(int x1, int y1, int x2, int y2) { return Attach(::CreateEllipticRgn(x1, y1, x2, y2)); }
    BOOL CreateRoundRectRgn(int x1, int y1, int x2, int y2, int x3, int y3)
    {
        return Attach(::CreateRoundRectRgn(x1, y1, x2, y2, x3, y3));
    }

    void SetRectRgn(LPCRECT lpRect) { ::SetRectRgn(*this, lpRect->left, lpRect->top, lpRect->right, lpRect->bottom); }
    int CombineRgn(const CRgn* pRgn1, const CRgn* pRgn2, int nCombineMode)
    {
        return ::CombineRgn(*this, *pRgn1, pRgn2 ? static_cast<HRGN>(*pRgn2) : nullptr, nCombineMode);
    }
    int OffsetRgn(int x, int y) { return ::OffsetRgn(*this, x, y); }
    int GetRgnBox(LPRECT lpRect) const { return ::GetRgnBox(*this, lpRect); }
    BOOL EqualRgn(const CRgn* pRgn) const { return ::EqualRgn(*this, *pRgn); }
    BOOL PtInRegion(POINT point) const { return ::PtInRegion(*this, point.x, point.y); }
    BOOL RectInRegion(LPCRECT lpRect) const { return ::RectInRegion(*this, lpRect); }
};
