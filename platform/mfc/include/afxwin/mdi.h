// Frames that hold windows of documents. A client window fills the frame's client area; the children lie in that one,
// with frames and captions of their own. One of them is active: it lies on top, is drawn active while the frame is, has
// the focus and is asked for commands before the frame. A press anywhere on a child makes it active; when the active
// one is destroyed, the topmost visible one of the others is.
#pragma once

#include "frame.h"

#include <memory>

class CMDIChildWnd;

class CMDIFrameWnd : public CFrameWnd {
    DECLARE_DYNCREATE(CMDIFrameWnd)

    CMDIFrameWnd() = default;
    BOOL PreCreateWindow(CREATESTRUCTA& cs) override;

    // Null: none is. *pbMaximized: whether it is maximised.
    CMDIChildWnd* MDIGetActive(BOOL* pbMaximized = nullptr) const;
    void MDIActivate(CWnd* pWndActivate); // a child of this frame
    // The active child first, then as in any frame.
    BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo) override;

    HWND m_hWndMDIClient = nullptr; // in which the children lie

protected:
    afx_msg int OnCreate(LPCREATESTRUCTA lpCreateStruct);
    afx_msg void OnDestroy();
    afx_msg BOOL OnNcActivate(BOOL bActive);

    DECLARE_MESSAGE_MAP()

private:
    friend class CMDIChildWnd;
    void activate(HWND child);
    void forget(HWND child); // it goes
    bool is_drawn_active() const;
    CRect next_place(); // of a child that leaves it to us

    std::unique_ptr<CWnd> client_;
    HWND active_ = nullptr;
    int placed_ = 0;
};

class CMDIChildWnd : public CFrameWnd {
    DECLARE_DYNCREATE(CMDIChildWnd)

    CMDIChildWnd() = default;
    // The child becomes the active one if the style says that it is visible. A null parent: the program's main window.
    virtual BOOL Create(LPCSTR lpszClassName, LPCSTR lpszWindowName,
                        DWORD dwStyle = WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, const RECT& rect = rectDefault,
                        CMDIFrameWnd* pParentWnd = nullptr);
    BOOL PreCreateWindow(CREATESTRUCTA& cs) override;
    BOOL PreTranslateMessage(MSG* pMsg) override;

    CMDIFrameWnd* GetMDIFrame() const;
    void MDIActivate() { GetMDIFrame()->MDIActivate(this); }
    void MDIDestroy() { DestroyWindow(); }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    afx_msg void OnNcPaint();
    afx_msg BOOL OnNcActivate(BOOL bActive);

    DECLARE_MESSAGE_MAP()
};
