// A list that scrolls: a row has a mark, a name and a note. Part of a skinned window, which passes it the mouse and the
// keys. User-interface thread.
#pragma once

#include "client/window/Commands.h"

#include <afxwin.h>

#include <string>
#include <vector>

namespace PelkGUI {
class GuiSkinWindow;
}

namespace client {

struct ListRow {
    const char* pszMark; // a part of the window skin
    std::string strName; // UTF-8
    CString strNote;
};

class ListPane {
public:
    void SetRows(std::vector<ListRow> rows); // from the top
    bool IsEmpty() const { return m_rows.empty(); }
    std::size_t TopRow() const { return m_nTop; }

    // Draws the rows into the rectangle, which is the pane's place from now on.
    void Paint(CDC& dc, PelkGUI::GuiSkinWindow& skin, const CRect& rc);

    // True: the list took it, and wants to be drawn.
    bool KeyDown(UINT nKey);
    bool Wheel(int nDelta); // WHEEL_DELTA a notch, away from the person is positive
    // A press in the list is taken; the scroll bar's thumb then follows the pointer until EndDrag.
    bool Press(CPoint point);
    bool Drag(CPoint point);
    void EndDrag() { m_bDragging = false; }

private:
    std::size_t PageRows() const;
    std::size_t LastTop() const;
    bool ScrollTo(std::ptrdiff_t nTop);
    CRect Rail() const;
    CRect Thumb() const;
    void PaintRow(CDC& dc, PelkGUI::GuiSkinWindow& skin, const CRect& rc, const ListRow& row) const;

    std::vector<ListRow> m_rows;
    std::size_t m_nTop = 0;
    CRect m_rc;
    bool m_bDragging = false;
    int m_nGrip = 0; // of the thumb, where it was taken
};

} // namespace client
