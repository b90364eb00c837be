// Frame windows: the top-level windows of a program. They are made on the heap and delete themselves when their window
// is gone.
#pragma once

#include "wnd.h"

class CFrameWnd : public CWnd {
    DECLARE_DYNCREATE(CFrameWnd)

    static const CRect rectDefault; // the system chooses place and size

    CFrameWnd() = default;
    BOOL Create(LPCSTR lpszClassName, LPCSTR lpszWindowName, DWORD dwStyle = WS_OVERLAPPEDWINDOW,
                const RECT& rect = rectDefault, CWnd* pParentWnd = nullptr);
    BOOL PreCreateWindow(CREATESTRUCTA& cs) override;

    // Fits the child AFX_IDW_PANE_FIRST, if there is one, into the client area.
    virtual void RecalcLayout(BOOL bNotify = TRUE);
    // This frame first, then the application.
    BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo) override;

    BOOL m_bAutoMenuEnable = TRUE; // menu items whose command nobody handles are disabled

protected:
    void PostNcDestroy() override { delete this; }

    afx_msg int OnCreate(LPCREATESTRUCTA lpCreateStruct);
    afx_msg void OnClose(); // destroys the window; the application's main window ends its loop
    afx_msg void OnEndSession(BOOL bEnding);
    afx_msg void OnSize(UINT nType, int cx, int cy);
    afx_msg BOOL OnNcActivate(BOOL bActive);
    // Asks for the state of every item; the system menu looks after itself.
    afx_msg void OnInitMenuPopup(CMenu* pPopupMenu, UINT nIndex, BOOL bSysMenu);

    DECLARE_MESSAGE_MAP()
};

// A frame with a small caption, for tools and for windows that draw their own frame.
class CMiniFrameWnd : public CFrameWnd {
    DECLARE_DYNCREATE(CMiniFrameWnd)

    CMiniFrameWnd() = default;
    virtual BOOL Create(LPCSTR lpClassName, LPCSTR lpWindowName, DWORD dwStyle, const RECT& rect = rectDefault,
                        CWnd* pParentWnd = nullptr, UINT nID = 0);
    virtual BOOL CreateEx(DWORD dwExStyle, LPCSTR lpClassName, LPCSTR lpWindowName, DWORD dwStyle,
                          const RECT& rect = rectDefault, CWnd* pParentWnd = nullptr, UINT nID = 0);
    BOOL PreCreateWindow(CREATESTRUCTA& cs) override;

protected:
    DECLARE_MESSAGE_MAP()
};
