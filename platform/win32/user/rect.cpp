// The rectangle functions. Sums wrap: a rectangle at the end of the numbers gives a wrong one, never undefined
// behaviour.
#include "platform/win32/screen/geometry.h"
#include "winuser.h"

#include <algorithm>

namespace {

LONG sum(LONG a, LONG b)
{
    return static_cast<LONG>(static_cast<ULONG>(a) + static_cast<ULONG>(b));
}

using win32::is_empty;

} // namespace

BOOL SetRect(LPRECT rect, int left, int top, int right, int bottom)
{
    if (!rect)
        return FALSE;
    *rect = { left, top, right, bottom };
    return TRUE;
}

BOOL SetRectEmpty(LPRECT rect)
{
    return SetRect(rect, 0, 0, 0, 0);
}

BOOL CopyRect(LPRECT destination, const RECT* source)
{
    if (!destination || !source)
        return FALSE;
    *destination = *source;
    return TRUE;
}

BOOL InflateRect(LPRECT rect, int dx, int dy)
{
    if (!rect)
        return FALSE;
    const LONG back_x = sum(0, static_cast<LONG>(0U - static_cast<ULONG>(dx)));
    const LONG back_y = sum(0, static_cast<LONG>(0U - static_cast<ULONG>(dy)));
    *rect = { sum(rect->left, back_x), sum(rect->top, back_y), sum(rect->right, dx), sum(rect->bottom, dy) };
    return TRUE;
}

BOOL OffsetRect(LPRECT rect, int dx, int dy)
{
    if (!rect)
        return FALSE;
    *rect = { sum(rect->left, dx), sum(rect->top, dy), sum(rect->right, dx), sum(rect->bottom, dy) };
    return TRUE;
}

// FALSE and an empty rectangle when the two have no pixel in common.
BOOL IntersectRect(LPRECT destination, const RECT* first, const RECT* second)
{
    if (!destination || !first || !second)
        return FALSE;
    const RECT shared{ std::max(first->left, second->left), std::max(first->top, second->top),
                       std::min(first->right, second->right), std::min(first->bottom, second->bottom) };
    const bool none = is_empty(*first) || is_empty(*second) || is_empty(shared);
    *destination = none ? RECT{} : shared;
    return !none;
}

// An empty rectangle counts for nothing; FALSE when both are.
BOOL UnionRect(LPRECT destination, const RECT* first, const RECT* second)
{
    if (!destination || !first || !second)
        return FALSE;
    if (is_empty(*first) && is_empty(*second)) {
        *destination = {};
        return FALSE;
    }
    if (is_empty(*first))
        *destination = *second;
    else if (is_empty(*second))
        *destination = *first;
    else
        *destination = { std::min(first->left, second->left), std::min(first->top, second->top),
                         std::max(first->right, second->right), std::max(first->bottom, second->bottom) };
    return TRUE;
}

// Only a rectangle that covers the first one from side to side is taken off it: the rest must be a rectangle.
BOOL SubtractRect(LPRECT destination, const RECT* first, const RECT* second)
{
    RECT shared;
    if (!destination || !first || !second)
        return FALSE;
    RECT rest = *first;
    if (IntersectRect(&shared, first, second)) {
        if (shared.top == first->top && shared.bottom == first->bottom) {
            if (shared.left == first->left)
                rest.left = shared.right;
            else if (shared.right == first->right)
                rest.right = shared.left;
        } else if (shared.left == first->left && shared.right == first->right) {
            if (shared.top == first->top)
                rest.top = shared.bottom;
            else if (shared.bottom == first->bottom)
                rest.bottom = shared.top;
        }
    }
    *destination = is_empty(rest) ? RECT{} : rest;
    return !is_empty(rest);
}

BOOL PtInRect(const RECT* rect, POINT point)
{
    return rect && point.x >= rect->left && point.x < rect->right && point.y >= rect->top && point.y < rect->bottom;
}

BOOL IsRectEmpty(const RECT* rect)
{
    return !rect || is_empty(*rect);
}

BOOL EqualRect(const RECT* first, const RECT* second)
{
    return first && second && first->left == second->left && first->top == second->top &&
           first->right == second->right && first->bottom == second->bottom;
}
