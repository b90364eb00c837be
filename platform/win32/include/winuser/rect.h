// user: rectangles. A null pointer gives FALSE.
#pragma once

#include "windef.h"

BOOL SetRect(LPRECT rect, int left, int top, int right, int bottom);
BOOL SetRectEmpty(LPRECT rect);
BOOL CopyRect(LPRECT destination, const RECT* source);
BOOL InflateRect(LPRECT rect, int dx, int dy);
BOOL OffsetRect(LPRECT rect, int dx, int dy);
BOOL IntersectRect(LPRECT destination, const RECT* first, const RECT* second);
BOOL UnionRect(LPRECT destination, const RECT* first, const RECT* second);
BOOL SubtractRect(LPRECT destination, const RECT* first, const RECT* second);
BOOL PtInRect(const RECT* rect, POINT point);
BOOL IsRectEmpty(const RECT* rect);
BOOL EqualRect(const RECT* first, const RECT* second);
