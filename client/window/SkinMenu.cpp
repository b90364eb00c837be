#include "client/window/SkinMenu.h"

#include "client/window/Drawing.h"

namespace client {

namespace {

constexpr int kEntryHeight = 30;
constexpr int kLineMargin = 8;
constexpr int kTextLeft = 34; // the check mark lies left of it
constexpr int kRight = 16;
constexpr int kKeyGap = 40;
constexpr Pen kTextPen = { "Text", "Client.Value" };
constexpr Pen kDisabledPen = { "Text", "Client.Thumb" };
constexpr Pen kKeyPen = { "Row", "Client.Label" };

const MenuEntry& EntryOf(ULONG_PTR nData)
{
    return *reinterpret_cast<const MenuEntry*>(nData);
}

void DrawCheckMark(CDC& dc, CPoint ptCentre)
{
    CPen pen(PS_SOLID, 1, Colour("Client.Busy"));
    CPen* const pOldPen = dc.SelectObject(&pen);
    for (int i = 0; i < 2; i++) { // as thick
        dc.MoveTo(ptCentre.x - 5, ptCentre.y + i);
        dc.LineTo(ptCentre.x - 2, ptCentre.y + 3 + i);
        dc.LineTo(ptCentre.x + 6, ptCentre.y - 5 + i);
    }
    dc.SelectObject(pOldPen);
}

} // namespace

void SkinMenu::Track(CWnd* pOwner, CPoint point, UINT nAlign)
{
    CMenu menu;
    if (!menu.CreatePopupMenu())
        return;
    for (const MenuEntry& entry : m_entries)
        menu.AppendMenu(MF_OWNERDRAW | (entry.bEnabled ? MF_ENABLED : MF_GRAYED), entry.nCommand,
                        reinterpret_cast<LPCSTR>(&entry));
    menu.TrackPopupMenu(nAlign, point.x, point.y, pOwner);
}

void SkinMenu::Measure(MEASUREITEMSTRUCT* pItem)
{
    const MenuEntry& entry = EntryOf(pItem->itemData);
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    const int cxText = LineWidth(dc, entry.strText, kTextPen) + kKeyGap + LineWidth(dc, entry.pszKey, kKeyPen);
    pItem->itemWidth = static_cast<UINT>(kTextLeft + cxText + kRight);
    pItem->itemHeight = kEntryHeight;
}

void SkinMenu::Draw(const DRAWITEMSTRUCT& item)
{
    const MenuEntry& entry = EntryOf(item.itemData);
    CDC& dc = *CDC::FromHandle(item.hDC);
    CRect rc = item.rcItem;
    const bool bSelected = (item.itemState & ODS_SELECTED) != 0 && entry.bEnabled;
    dc.FillSolidRect(rc, Colour(bSelected ? "Client.Selected" : "System.Base.Window"));
    if (entry.bLineAbove)
        dc.FillSolidRect(rc.left + kLineMargin, rc.top, rc.Width() - 2 * kLineMargin, 1, Colour("Client.Line"));
    if (entry.bChecked)
        DrawCheckMark(dc, CPoint(rc.left + kTextLeft / 2, rc.top + rc.Height() / 2));
    rc.left += kTextLeft;
    rc.right -= kRight;
    DrawLine(dc, rc, entry.strText, entry.bEnabled ? kTextPen : kDisabledPen);
    DrawLine(dc, rc, entry.pszKey, kKeyPen, DT_RIGHT);
}

} // namespace client
