// A page that fills from left to right and from the top down: headings, and cells with a picture and a label beneath.
#pragma once

#include "tools/skinview/Studio.h"

namespace skinview {

class SheetPage {
public:
    explicit SheetPage(int cx);

    void Title(const std::string& strText);
    void Heading(const std::string& strText);
    // The function draws the picture, whose top left corner it is given.
    using DrawPicture = std::function<void(CDC& dc, CPoint pt)>;
    void Cell(CSize size, const std::string& strLabel, DrawPicture draw);
    // A dashed place of that size for a picture that is not there.
    void EmptyCell(CSize size, const std::string& strLabel);
    // From here on cells are at least so wide, so that they stand in columns.
    void Columns(int cx) { m_cxCell = cx; }
    void NewRow();

    // Draws all of it.
    Picture Print();

private:
    struct Item {
        CPoint pt;
        DrawPicture draw;
    };

    CSize TextSize(const CFont& font, const std::string& strText);
    void AddText(const CFont& font, COLORREF crText, CPoint pt, const std::string& strText);

    int m_cx;
    CPoint m_pt;          // where the next cell goes
    int m_nRowHeight = 0; // of the row that is being filled
    int m_cxCell = 0;
    CFont m_fontTitle;
    CFont m_fontHeading;
    CFont m_fontLabel;
    CDC m_dcMeasure;
    std::vector<Item> m_items;
};

} // namespace skinview
