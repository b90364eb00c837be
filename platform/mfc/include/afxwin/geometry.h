// Points, sizes and rectangles in pixels. Sums and differences wrap where they leave 32 bits, so that any numbers may
// be put in; halves truncate toward zero.
#pragma once

#include <windows.h>

class CPoint;
class CRect;

namespace mfc {

constexpr LONG wrapping_add(LONG first, LONG second)
{
    return static_cast<LONG>(static_cast<ULONG>(first) + static_cast<ULONG>(second));
}
constexpr LONG wrapping_subtract(LONG first, LONG second)
{
    return static_cast<LONG>(static_cast<ULONG>(first) - static_cast<ULONG>(second));
}

} // namespace mfc

class CSize : public SIZE {
public:
    constexpr CSize() : SIZE{ 0, 0 } {}
    constexpr CSize(int initCX, int initCY) : SIZE{ initCX, initCY } {}
    constexpr CSize(SIZE initSize) : SIZE(initSize) {}
    constexpr explicit CSize(POINT initPt) : SIZE{ initPt.x, initPt.y } {}

    constexpr CSize& operator+=(SIZE size)
    {
        cx = mfc::wrapping_add(cx, size.cx);
        cy = mfc::wrapping_add(cy, size.cy);
        return *this;
    }
    constexpr CSize& operator-=(SIZE size)
    {
        cx = mfc::wrapping_subtract(cx, size.cx);
        cy = mfc::wrapping_subtract(cy, size.cy);
        return *this;
    }
    constexpr CSize operator-() const { return CSize() - *this; }

    friend constexpr CSize operator+(CSize first, const CSize& second) { return first += second; }
    friend constexpr CSize operator-(CSize first, const CSize& second) { return first -= second; }
    friend constexpr bool operator==(const CSize& first, const CSize& second)
    {
        return first.cx == second.cx && first.cy == second.cy;
    }
};

class CPoint : public POINT {
public:
    constexpr CPoint() : POINT{ 0, 0 } {}
    constexpr CPoint(int initX, int initY) : POINT{ initX, initY } {}
    constexpr CPoint(POINT initPt) : POINT(initPt) {}
    constexpr explicit CPoint(SIZE initSize) : POINT{ initSize.cx, initSize.cy } {}
    // Signed 16-bit halves, x in the low one: how mouse messages carry points.
    constexpr explicit CPoint(LPARAM dwPoint) : POINT{ GET_X_LPARAM(dwPoint), GET_Y_LPARAM(dwPoint) } {}

    constexpr void Offset(int xOffset, int yOffset) { *this += CSize(xOffset, yOffset); }
    constexpr void Offset(POINT point) { *this += CSize(point); }

    constexpr CPoint& operator+=(SIZE size)
    {
        x = mfc::wrapping_add(x, size.cx);
        y = mfc::wrapping_add(y, size.cy);
        return *this;
    }
    constexpr CPoint& operator-=(SIZE size)
    {
        x = mfc::wrapping_subtract(x, size.cx);
        y = mfc::wrapping_subtract(y, size.cy);
        return *this;
    }
    constexpr CPoint& operator+=(POINT point) { return *this += CSize(point); }
    constexpr CPoint& operator-=(POINT point) { return *this -= CSize(point); }

    friend constexpr CPoint operator+(CPoint point, SIZE size) { return point += size; }
    friend constexpr CPoint operator-(CPoint point, SIZE size) { return point -= size; }
    friend constexpr CPoint operator+(CPoint first, POINT second) { return first += second; }
    friend constexpr CSize operator-(const CPoint& first, POINT second) { return CSize(first) - CSize(second); }
    friend constexpr bool operator==(const CPoint& first, const CPoint& second)
    {
        return first.x == second.x && first.y == second.y;
    }
};

class CRect : public RECT {
public:
    constexpr CRect() : RECT{ 0, 0, 0, 0 } {}
    constexpr CRect(int l, int t, int r, int b) : RECT{ l, t, r, b } {}
    constexpr CRect(const RECT& srcRect) : RECT(srcRect) {}
    constexpr explicit CRect(LPCRECT lpSrcRect) : RECT(*lpSrcRect) {}
    constexpr CRect(POINT point, SIZE size) : CRect(point, CPoint(point) + size) {}
    constexpr CRect(POINT topLeft, POINT bottomRight) : RECT{ topLeft.x, topLeft.y, bottomRight.x, bottomRight.y } {}

    constexpr operator LPRECT() { return this; }
    constexpr operator LPCRECT() const { return this; }

    constexpr int Width() const { return mfc::wrapping_subtract(right, left); }
    constexpr int Height() const { return mfc::wrapping_subtract(bottom, top); }
    constexpr CSize Size() const { return { Width(), Height() }; }
    constexpr CPoint TopLeft() const { return { left, top }; }
    constexpr CPoint BottomRight() const { return { right, bottom }; }
    constexpr CPoint CenterPoint() const
    {
        return { mfc::wrapping_add(left, right) / 2, mfc::wrapping_add(top, bottom) / 2 };
    }

    constexpr BOOL IsRectEmpty() const { return left >= right || top >= bottom; }
    constexpr BOOL IsRectNull() const { return *this == CRect(); }
    // The right and bottom edges lie outside.
    constexpr BOOL PtInRect(POINT point) const
    {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }
    constexpr BOOL EqualRect(LPCRECT lpRect) const { return *this == *lpRect; }

    constexpr void SetRect(int x1, int y1, int x2, int y2) { *this = CRect(x1, y1, x2, y2); }
    constexpr void SetRect(POINT topLeft, POINT bottomRight) { *this = CRect(topLeft, bottomRight); }
    constexpr void SetRectEmpty() { *this = CRect(); }
    constexpr void CopyRect(LPCRECT lpSrcRect) { *this = *lpSrcRect; }
    constexpr void OffsetRect(int x, int y) { *this += CPoint(x, y); }
    constexpr void OffsetRect(POINT point) { *this += point; }
    constexpr void OffsetRect(SIZE size) { *this += size; }
    constexpr void InflateRect(int x, int y) { InflateRect(x, y, x, y); }
    constexpr void InflateRect(SIZE size) { InflateRect(size.cx, size.cy); }
    constexpr void InflateRect(int l, int t, int r, int b)
    {
        left = mfc::wrapping_subtract(left, l);
        top = mfc::wrapping_subtract(top, t);
        right = mfc::wrapping_add(right, r);
        bottom = mfc::wrapping_add(bottom, b);
    }
    constexpr void DeflateRect(int x, int y) { DeflateRect(x, y, x, y); }
    constexpr void DeflateRect(SIZE size) { DeflateRect(size.cx, size.cy); }
    constexpr void DeflateRect(int l, int t, int r, int b)
    {
        left = mfc::wrapping_add(left, l);
        top = mfc::wrapping_add(top, t);
        right = mfc::wrapping_subtract(right, r);
        bottom = mfc::wrapping_subtract(bottom, b);
    }
    void NormalizeRect(); // swaps edges that lie the wrong way round

    // FALSE: the result is empty (0, 0, 0, 0).
    BOOL IntersectRect(LPCRECT lpRect1, LPCRECT lpRect2) { return ::IntersectRect(this, lpRect1, lpRect2); }
    BOOL UnionRect(LPCRECT lpRect1, LPCRECT lpRect2) { return ::UnionRect(this, lpRect1, lpRect2); }
    BOOL SubtractRect(LPCRECT lpRect1, LPCRECT lpRect2) { return ::SubtractRect(this, lpRect1, lpRect2); }

    constexpr CRect& operator=(const RECT& srcRect)
    {
        static_cast<RECT&>(*this) = srcRect;
        return *this;
    }
    constexpr CRect& operator+=(POINT point) { return *this = CRect(TopLeft() + point, BottomRight() + point); }
    constexpr CRect& operator-=(POINT point) { return *this += -CSize(point); }
    constexpr CRect& operator+=(SIZE size) { return *this += CPoint(size); }
    constexpr CRect& operator-=(SIZE size) { return *this += -CSize(size); }
    void operator&=(const RECT& rect) { IntersectRect(this, &rect); }
    void operator|=(const RECT& rect) { UnionRect(this, &rect); }

    friend constexpr CRect operator+(CRect rect, POINT point) { return rect += point; }
    friend constexpr CRect operator-(CRect rect, POINT point) { return rect -= point; }
    friend constexpr CRect operator+(CRect rect, SIZE size) { return rect += size; }
    friend constexpr CRect operator-(CRect rect, SIZE size) { return rect -= size; }
    friend CRect operator&(CRect first, const RECT& second)
    {
        first &= second;
        return first;
    }
    friend CRect operator|(CRect first, const RECT& second)
    {
        first |= second;
        return first;
    }
    friend constexpr bool operator==(const CRect& first, const CRect& second)
    {
        return first.left == second.left && first.top == second.top && first.right == second.right &&
               first.bottom == second.bottom;
    }
};
