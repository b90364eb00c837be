// FramePainter draws one of the two frames of a window skin. The outer frame is drawn around a window, the inner one
// around its client area; both are made of the same pieces in the same way. Pieces come in this order: corners, the
// pieces next to them, then the edges, which fill what those left of each side.
//
// Rectangles come from the skin and hold any numbers. Sums of them wrap, and what lies outside the image or the context
// is not drawn.
#pragma once

#include <cstdint>

#include "skinwnd/FramePart.h"

namespace PelkGUI {

class FramePainter {
public:
    enum class Frame { Outer, Inner };

    // The top corners and the top edge go to dcTop, the rest to dcRest. The window skin's painting context is prepared.
    FramePainter(GuiSkinWindow& skin, Frame frame, CDC& dcTop, CDC& dcRest, const CRect& rcFrame,
                 const CSize& sizeImage);
    static constexpr int kPatchExtent = 256; // pixels each way of the window skin's context for tiles

    // Parts are those of the outer frame; the inner one draws its own of that name.
    void DrawTopLeft(int nPart);
    void DrawTopRight(int nPart);
    // The bottom corners, and the pieces next to corners at the left and the right.
    void DrawOtherCorners();

    // An edge is drawn when its side has room. Each takes its ornament in its middle along, except that "CBottomMiddle"
    // comes also where there is no "CBottom".
    void DrawLeftEdge();
    void DrawTopEdge(int nPart, int nMiddlePart);
    void DrawRightEdge();
    void DrawBottomEdge();

private:
    const CRect* Find(int nOuterPart) const;
    int ModeOf(int nOuterPart) const;

    void Copy(CDC& dc, int x, int y, const CRect& rcPart);
    void FillRow(CDC& dc, int y, int nLeft, int nRight, const CRect& rcPart, int nMode);
    void FillColumn(CDC& dc, int x, int nTop, int nBottom, const CRect& rcPart, int nMode);
    bool GrowTiles(CDC& dc, const CRect& rcRun, const CRect& rcPart, const CSize& sizeAlong);
    // Tiles side by side, to be copied together: many small copies take longer than the pixels in them.
    struct Patch {
        CDC* pDC;
        CPoint pt;
        int nTiles;
    };
    Patch PatchOf(const CRect& rcPart, const CSize& sizeStep, std::int64_t nWanted);
    void Stretch(CDC& dc, const CRect& rcRun, const CRect& rcPart);
    void DrawMiddleAcross(CDC& dc, const CRect& rcPart, int y);
    void DrawMiddleDown(const CRect& rcPart, int x);

    GuiSkinWindow& m_skin;
    const Frame m_frame;
    CDC& m_dcTop;
    CDC& m_dcRest;
    const CRect m_rcFrame;
    const CSize m_sizeImage;

    CRect m_rcLeft; // what is left of each side
    CRect m_rcTop;
    CRect m_rcRight;
    CRect m_rcBottom;
};

} // namespace PelkGUI
