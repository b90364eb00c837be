#include "client/window/ListPane.h"

#include "client/window/Drawing.h"
#include "skin/GuiSkinWindow.h"

#include <algorithm>

namespace client {

namespace {

constexpr int kRowHeight = 26;
constexpr int kMark = 16;
constexpr int kPadding = 10;
constexpr int kRailWidth = 8;
constexpr int kSmallestThumb = 20;
constexpr Pen kNamePen = { "Row", "Client.Value" };
constexpr Pen kNotePen = { "Row", "Client.Label" };

} // namespace

void ListPane::SetRows(std::vector<ListRow> rows)
{
    m_rows = std::move(rows);
    m_nTop = 0;
    m_bDragging = false;
}

std::size_t ListPane::PageRows() const
{
    return static_cast<std::size_t>(std::max(1, (m_rc.Height() - 2) / kRowHeight));
}

std::size_t ListPane::LastTop() const
{
    return m_rows.size() - std::min(m_rows.size(), PageRows());
}

bool ListPane::ScrollTo(std::ptrdiff_t nTop)
{
    m_nTop = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(nTop, 0, static_cast<std::ptrdiff_t>(LastTop())));
    return true;
}

// Empty: all rows are seen.
CRect ListPane::Rail() const
{
    if (LastTop() == 0)
        return {};
    return { m_rc.right - kRailWidth - 3, m_rc.top + 3, m_rc.right - 3, m_rc.bottom - 3 };
}

CRect ListPane::Thumb() const
{
    CRect rc = Rail();
    const int cyRail = rc.Height();
    const int cy = std::clamp(static_cast<int>(static_cast<std::size_t>(cyRail) * PageRows() / m_rows.size()),
                              std::min(kSmallestThumb, cyRail), cyRail);
    rc.top += static_cast<int>(static_cast<std::size_t>(cyRail - cy) * m_nTop / LastTop());
    rc.bottom = rc.top + cy;
    return rc;
}

void ListPane::Paint(CDC& dc, PelkGUI::GuiSkinWindow& skin, const CRect& rc)
{
    m_rc = rc;
    ScrollTo(static_cast<std::ptrdiff_t>(m_nTop)); // the window may have grown
    dc.FillSolidRect(rc, Colour("Client.Line"));
    CRect rcRows = rc;
    rcRows.DeflateRect(1, 1);
    dc.FillSolidRect(rcRows, Colour("System.Base.Window"));

    const int nSaved = dc.SaveDC();
    dc.IntersectClipRect(rcRows);
    const int nRight = rcRows.right - (Rail().IsRectEmpty() ? 0 : kRailWidth + 4);
    CRect rcRow(rcRows.left, rcRows.top, nRight, rcRows.top + kRowHeight);
    for (std::size_t i = m_nTop; i < m_rows.size() && rcRow.top < rcRows.bottom; i++) {
        PaintRow(dc, skin, rcRow, m_rows[i]);
        rcRow.OffsetRect(0, kRowHeight);
        dc.FillSolidRect(rcRow.left + kPadding, rcRow.top - 1, rcRow.Width() - kPadding, 1, Colour("Client.Row"));
    }
    dc.RestoreDC(nSaved);
    if (!Rail().IsRectEmpty()) {
        dc.FillSolidRect(Rail(), Colour("Client.Row"));
        dc.FillSolidRect(Thumb(), Colour("Client.Thumb"));
    }
}

void ListPane::PaintRow(CDC& dc, PelkGUI::GuiSkinWindow& skin, const CRect& rc, const ListRow& row) const
{
    const CPoint ptMark(rc.left + kPadding, rc.top + (rc.Height() - kMark) / 2);
    skin.PaintPart(&dc, CRect(ptMark, CSize(kMark, kMark)), row.pszMark, FALSE);
    const CRect rcNote(rc.left, rc.top, rc.right - kPadding, rc.bottom);
    const int cxNote = DrawLine(dc, rcNote, row.strNote, kNotePen, DT_RIGHT);
    const CRect rcName(ptMark.x + kMark + kPadding, rc.top, rcNote.right - cxNote - kPadding, rc.bottom);
    DrawPath(dc, rcName, row.strName, kNamePen);
}

bool ListPane::KeyDown(UINT nKey)
{
    const auto nTop = static_cast<std::ptrdiff_t>(m_nTop);
    const auto nPage = static_cast<std::ptrdiff_t>(PageRows());
    switch (nKey) {
    case VK_UP:
        return ScrollTo(nTop - 1);
    case VK_DOWN:
        return ScrollTo(nTop + 1);
    case VK_PRIOR:
        return ScrollTo(nTop - nPage);
    case VK_NEXT:
        return ScrollTo(nTop + nPage);
    case VK_HOME:
        return ScrollTo(0);
    case VK_END:
        return ScrollTo(static_cast<std::ptrdiff_t>(m_rows.size()));
    default:
        return false;
    }
}

bool ListPane::Wheel(int nDelta)
{
    constexpr int kRowsPerNotch = 3;
    return ScrollTo(static_cast<std::ptrdiff_t>(m_nTop) - nDelta * kRowsPerNotch / WHEEL_DELTA);
}

bool ListPane::Press(CPoint point)
{
    if (m_rows.empty() || !m_rc.PtInRect(point))
        return false;
    const CRect rcThumb = Thumb();
    if (!Rail().PtInRect(point))
        return true;
    if (!rcThumb.PtInRect(point))
        return KeyDown(point.y < rcThumb.top ? VK_PRIOR : VK_NEXT);
    m_bDragging = true;
    m_nGrip = point.y - rcThumb.top;
    return true;
}

bool ListPane::Drag(CPoint point)
{
    if (!m_bDragging)
        return false;
    const CRect rcRail = Rail();
    const int nRoom = std::max(1, rcRail.Height() - Thumb().Height());
    const auto nLast = static_cast<std::ptrdiff_t>(LastTop());
    return ScrollTo((point.y - m_nGrip - rcRail.top) * nLast / nRoom);
}

} // namespace client
