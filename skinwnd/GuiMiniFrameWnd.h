// GuiMiniFrameWnd: a frame window that its skin draws, shapes and lays out: frame and caption by its window skin,
// buttons by GuiSkinCmdInterface, the client area by the hooks of GuiSkinInterface. Programs derive their windows from
// it:
//
//     auto* const pWnd = new MainWnd;
//     if (pWnd->Create(pszClass, "MainWnd", WS_POPUP | WS_CAPTION, CRect(0, 0, 510, 349), nullptr, 0) == 1) {
//         pWnd->OnSkinChange(); // the window skin whose target is "MainWnd"
//         pWnd->ShowWindow(SW_SHOW);
//     }
//
// Made on the heap; deletes itself, and its buttons, when its window is gone. Without a window skin, and as a child
// window, it is as plain as CMiniFrameWnd. Used on the user-interface thread.
#pragma once

#include "skinwnd/GuiSkinCmdInterface.h"

namespace PelkGUI {

class PELKGUI_API GuiMiniFrameWnd : public CMiniFrameWnd, public GuiSkinCmdInterface {
    DECLARE_DYNCREATE(GuiMiniFrameWnd)

public:
    GuiMiniFrameWnd() = default;

    // Make the window; its name is the name of its window skin. 1, or -1: there is no window, and the object is still
    // the caller's.
    BOOL Create(LPCSTR lpClassName, LPCSTR lpWindowName, DWORD dwStyle, const RECT& rect = rectDefault,
                CWnd* pParentWnd = nullptr, UINT nID = 0) override;
    BOOL CreateEx(DWORD dwExStyle, LPCSTR lpClassName, LPCSTR lpWindowName, DWORD dwStyle,
                  const RECT& rect = rectDefault, CWnd* pParentWnd = nullptr, UINT nID = 0) override;

    // This frame first, then its owner (of a child window: its parent).
    BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo) override;
    // The skinned buttons are tools.
    int OnToolHitTest(CPoint point, TOOLINFOA* pTI) const override;

protected:
    afx_msg void OnGetMinMaxInfo(MINMAXINFO* pInfo);
    afx_msg void OnSize(UINT nType, int cx, int cy);
    afx_msg void OnNcLButtonDblClk(UINT nHitTest, CPoint point);
    afx_msg void OnNcCalcSize(BOOL bCalcValidRects, NCCALCSIZE_PARAMS* pParams);
    afx_msg UINT OnNcHitTest(CPoint point);
    afx_msg void OnNcPaint();
    afx_msg BOOL OnNcActivate(BOOL bActive);
    afx_msg void OnNcMouseMove(UINT nHitTest, CPoint point);
    afx_msg void OnNcLButtonDown(UINT nHitTest, CPoint point);
    afx_msg void OnNcLButtonUp(UINT nHitTest, CPoint point);
    afx_msg void OnMouseMove(UINT nFlags, CPoint point);
    afx_msg void OnLButtonDown(UINT nFlags, CPoint point);
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point);
    afx_msg void OnTimer(UINT_PTR nIDEvent);
    afx_msg void OnWindowPosChanging(WINDOWPOS* pPos);
    afx_msg void OnMeasureItem(int nIDCtl, LPMEASUREITEMSTRUCT pItem);
    afx_msg void OnDrawItem(int nIDCtl, LPDRAWITEMSTRUCT pItem);
    afx_msg void OnInitMenuPopup(CMenu* pMenu, UINT nIndex, BOOL bSysMenu);
    afx_msg void OnPaint();
    afx_msg BOOL OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message);
    afx_msg void OnIdleUpdateCmdUI();
    afx_msg void OnCaptureChanged(CWnd* pWnd);
    BOOL OnEraseBkgnd(CDC* pDC); // for classes that put it into their map: TRUE
    DECLARE_MESSAGE_MAP()

private:
    void TakeCreation(LPCSTR lpWindowName, const CRect& rc);
    // The window skin that runs the frame, null: the system does.
    GuiSkinWindow* FrameSkin() const;
};

} // namespace PelkGUI
