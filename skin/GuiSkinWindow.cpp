#include "skin/GuiSkinWindow.h"

#include "skin/SkinFormat.h"
#include "skin/WindowSkinPtr.h"

namespace PelkGUI {

GuiSkinWindow::GuiSkinWindow()
    : m_pPartPresent(new int[kFramePartCount]()), m_pPartMode(new int[kFramePartCount]()),
      m_pPartRect(new CRect[kFramePartCount]), m_pAnchorPresent(new int[kCaptionAnchorCount]()),
      m_pAnchorRect(new CRect[kCaptionAnchorCount]), m_rcMaximiseCrop(-1, 0, -1, -1)
{
    const int nFrame = ::GetSystemMetrics(SM_CXFRAME); // on all four sides
    m_rcResizeBorder.SetRect(nFrame, nFrame, nFrame, nFrame);
}

GuiSkinWindow::~GuiSkinWindow()
{
    WindowSkinPtr::Forget(this);
    if (m_dcSkin.GetSafeHdc()) {
        if (m_hOldBitmap)
            ::SelectObject(m_dcSkin.GetSafeHdc(), m_hOldBitmap);
        m_dcSkin.DeleteDC();
    }
    delete m_pRegion;
    DeleteRects(m_mapParts);
    DeleteRects(m_mapAnchors);
    delete[] m_pPartPresent;
    delete[] m_pPartMode;
    delete[] m_pPartRect;
    delete[] m_pAnchorPresent;
    delete[] m_pAnchorRect;
}

void GuiSkinWindow::DeleteRects(RectMap& map)
{
    for (POSITION pos = map.GetStartPosition(); pos;) {
        CString strName;
        CRect* pRect = nullptr;
        map.GetNextAssoc(pos, strName, pRect);
        delete pRect;
    }
    map.RemoveAll();
}

} // namespace PelkGUI
