// The outline that a window skin's "region" element gives a window.
#include "skin/GuiSkinWindow.h"

#include "skin/SkinText.h"

namespace PelkGUI {

namespace {

struct ShapeType {
    const char* pszName;
    HRGN (*pfnCreate)(const CRect& rc, CSize sizeCorner);
};
constexpr ShapeType kShapeTypes[] = {
    { "rectangle", [](const CRect& rc, CSize) { return ::CreateRectRgnIndirect(&rc); } },
    { "ellipse", [](const CRect& rc, CSize) { return ::CreateEllipticRgnIndirect(&rc); } },
    { "roundRect",
      [](const CRect& rc, CSize sizeCorner) {
          return ::CreateRoundRectRgn(rc.left, rc.top, rc.right, rc.bottom, sizeCorner.cx, sizeCorner.cy);
      } },
};

struct CombineMode {
    const char* pszName;
    int nMode;
};
constexpr CombineMode kCombineModes[] = {
    { "and", RGN_AND }, { "copy", RGN_COPY }, { "diff", RGN_DIFF }, { "or", RGN_OR }, { "xor", RGN_XOR },
};

// The entry of that name in whatever case, or null.
template <class Entry, size_t nCount>
const Entry* FindEntry(const Entry (&entries)[nCount], const CString& strName)
{
    for (const Entry& entry : entries) {
        if (strName.CompareNoCase(entry.pszName) == 0)
            return &entry;
    }
    return nullptr;
}

// Width and height, 0 where there is no number.
CSize CornerSize(const OvXMLElement* pShape)
{
    CSize size;
    const CString strSize = Value(pShape, "size");
    const char* psz = strSize;
    if (ReadInteger(psz, size.cx) && *psz++ == ',')
        ReadInteger(psz, size.cy);
    return size;
}

// What the outline becomes with a shape more. An unknown mode leaves it as it is.
void Combine(CRgn& rgnOutline, const CRgn& rgnShape, const CString& strCombine)
{
    const CombineMode* const pMode = FindEntry(kCombineModes, strCombine);
    if (pMode && pMode->nMode == RGN_COPY)
        rgnOutline.CombineRgn(&rgnShape, nullptr, RGN_COPY);
    else if (pMode)
        rgnOutline.CombineRgn(&rgnOutline, &rgnShape, pMode->nMode);
}

// Gives the region to the window.
void GiveOutline(CWnd& wnd, CRgn& rgnOutline)
{
    const HRGN hOutline = static_cast<HRGN>(rgnOutline.Detach());
    if (!wnd.SetWindowRgn(hOutline, TRUE) && hOutline)
        ::DeleteObject(hOutline);
}

} // namespace

CRect GuiSkinWindow::ShapeRect(OvXMLElement* pShape, const CSize& sizeWindow) const
{
    // A window's region has a row and a column more than the window: the numbers -1 mean its very edge.
    const CRect rcWindow(0, 0, mfc::wrapping_add(sizeWindow.cx, 1), mfc::wrapping_add(sizeWindow.cy, 1));
    CRect rc = rcWindow; // which a short entry leans on
    if (!ParseRect(pShape, &rc))
        return rcWindow;
    const auto fromEdge = [](int n, int nEdge) {
        return n < 0 ? mfc::wrapping_add(mfc::wrapping_add(nEdge, 1), n) : n;
    };
    // The third and fourth number are edges themselves.
    return { fromEdge(rc.left, rcWindow.right), fromEdge(rc.top, rcWindow.bottom), fromEdge(rc.Width(), rcWindow.right),
             fromEdge(rc.Height(), rcWindow.bottom) };
}

void GuiSkinWindow::SelectRegion(CWnd* pWnd)
{
    CRect rcWindow;
    pWnd->GetWindowRect(&rcWindow);
    CRgn rgnOutline;
    for (POSITION pos = m_pRegion->GetElementIterator(); pos;) {
        OvXMLElement* const pShape = m_pRegion->GetNextElement(pos);
        const ShapeType* const pType =
            pShape->IsNamed("shape") ? FindEntry(kShapeTypes, Value(pShape, "type")) : nullptr;
        if (!pType)
            continue;
        CRgn rgnShape;
        if (!rgnShape.Attach(pType->pfnCreate(ShapeRect(pShape, rcWindow.Size()), CornerSize(pShape)))) {
            pWnd->SetWindowRgn(nullptr, TRUE); // rather none than half an outline
            return;
        }
        if (rgnOutline.GetSafeHandle())
            Combine(rgnOutline, rgnShape, Value(pShape, "combine"));
        else
            rgnOutline.Attach(rgnShape.Detach()); // the first shape combines with nothing
    }
    if (rgnOutline.GetSafeHandle())
        GiveOutline(*pWnd, rgnOutline);
}

CSize GuiSkinWindow::GetRegionSize() const
{
    CRect rcAll;
    for (POSITION pos = m_pRegion ? m_pRegion->GetElementIterator() : nullptr; pos;) {
        OvXMLElement* const pShape = m_pRegion->GetNextElement(pos);
        CRect rc;
        if (pShape->IsNamed("shape") && ParseRect(pShape, &rc))
            rcAll |= rc;
    }
    return rcAll.Size();
}

} // namespace PelkGUI
