#include "afxwin/geometry.h"

#include <utility>

void CRect::NormalizeRect()
{
    if (left > right)
        std::swap(left, right);
    if (top > bottom)
        std::swap(top, bottom);
}
