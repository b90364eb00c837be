// CWnd: a window. The object is attached to its window from the window's first message to its last and belongs to the
// window's thread. A window outlives no object: an object that goes destroys its window. FromHandle gives the object
// of a window, or a temporary one for a window that has none (another thread's too), which lives until the thread is
// next idle; do not keep it.
//
// A handler may destroy its window and, through PostNcDestroy, its object; the framework touches neither afterwards.
#pragma once

#include "../afx/afx_string.h"
#include "cmd_target.h"
#include "device_context.h"
#include "geometry.h"
#include "menu.h"
#include "message_macros.h"

#include <windows.h>

struct TOOLINFOA;

// m_nFlags of a window. WF_TOOLTIPS: EnableToolTips was called. A frame whose flag WF_STAYACTIVE is set is drawn active
// whatever is active.
inline constexpr UINT WF_TOOLTIPS = 0x0001;
inline constexpr UINT WF_TEMPHIDE = 0x0004;
inline constexpr UINT WF_STAYDISABLED = 0x0008;
inline constexpr UINT WF_MODALLOOP = 0x0010;
inline constexpr UINT WF_STAYACTIVE = 0x0020;

// Sent to the main window and those in it when nothing is left to do: time to show the state of commands. wParam:
// whether commands without a handler are disabled.
inline constexpr UINT WM_IDLEUPDATECMDUI = 0x0363;

// The child that a frame's RecalcLayout fills its client area with.
inline constexpr UINT AFX_IDW_PANE_FIRST = 0xE900;

class CWnd : public CCmdTarget {
    DECLARE_DYNCREATE(CWnd)

    CWnd() = default;
    ~CWnd() override;

    static CWnd* FromHandle(HWND hWnd);
    static CWnd* FromHandlePermanent(HWND hWnd); // null: no object owns the window on this thread
    static void DeleteTempMap();
    HWND GetSafeHwnd() const { return m_hWnd; }
    operator HWND() const { return m_hWnd; }

    BOOL Attach(HWND hWndNew); // the object owns the window, but does not see its messages
    HWND Detach();
    // Attaches and sees the messages from now on; those that are not handled go to the procedure before.
    BOOL SubclassWindow(HWND hWnd);
    HWND UnsubclassWindow();

    // Makes the window. FALSE: there is none, or no longer, and the object is still the caller's (PostNcDestroy is not
    // called for it). The object sees every message of a window whose class comes from
    // AfxRegisterWndClass; a window of another class is subclassed when the system has made it, so its WM_CREATE is
    // over by then. A null class is the framework's own.
    BOOL CreateEx(DWORD dwExStyle, LPCSTR lpszClassName, LPCSTR lpszWindowName, DWORD dwStyle, int x, int y, int nWidth,
                  int nHeight, HWND hWndParent, HMENU nIDorHMenu, LPVOID lpParam = nullptr);
    BOOL CreateEx(DWORD dwExStyle, LPCSTR lpszClassName, LPCSTR lpszWindowName, DWORD dwStyle, const RECT& rect,
                  CWnd* pParentWnd, UINT nID, LPVOID lpParam = nullptr);
    // A child window; WS_CHILD need not be given.
    BOOL Create(LPCSTR lpszClassName, LPCSTR lpszWindowName, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd,
                UINT nID);
    // The last word on how the window is made; FALSE: it is not made. Here: a class for those that named none.
    virtual BOOL PreCreateWindow(CREATESTRUCTA& cs);
    virtual BOOL DestroyWindow();

    // Messages.
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return ::SendMessageA(m_hWnd, message, wParam, lParam);
    }
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return ::PostMessageA(m_hWnd, message, wParam, lParam);
    }
    // To every window in this one, at any depth; to those with an object of this thread alone when bOnlyPerm.
    void SendMessageToDescendants(UINT message, WPARAM wParam = 0, LPARAM lParam = 0, BOOL bDeep = TRUE,
                                  BOOL bOnlyPerm = FALSE);
    // TRUE: the message was dealt with and goes no further.
    virtual BOOL PreTranslateMessage(MSG* pMsg);
    // Asks the target for the state of every control in this window.
    void UpdateDialogControls(CCmdTarget* pTarget, BOOL bDisableIfNoHndler);

    // Text and styles.
    void SetWindowText(LPCSTR lpszString) { ::SetWindowTextA(m_hWnd, lpszString); }
    void GetWindowText(CString& rString) const;
    int GetWindowTextLength() const { return ::GetWindowTextLengthA(m_hWnd); }
    DWORD GetStyle() const { return static_cast<DWORD>(::GetWindowLongA(m_hWnd, GWL_STYLE)); }
    DWORD GetExStyle() const { return static_cast<DWORD>(::GetWindowLongA(m_hWnd, GWL_EXSTYLE)); }
    // FALSE: nothing would change. nFlags: SWP_ flags for the SetWindowPos that follows, 0 for none.
    BOOL ModifyStyle(DWORD dwRemove, DWORD dwAdd, UINT nFlags = 0);
    BOOL ModifyStyleEx(DWORD dwRemove, DWORD dwAdd, UINT nFlags = 0);
    int GetDlgCtrlID() const { return ::GetDlgCtrlID(m_hWnd); }

    // Place and order.
    BOOL ShowWindow(int nCmdShow) { return ::ShowWindow(m_hWnd, nCmdShow); }
    BOOL SetWindowPos(const CWnd* pWndInsertAfter, int x, int y, int cx, int cy, UINT nFlags)
    {
        return ::SetWindowPos(m_hWnd, pWndInsertAfter ? pWndInsertAfter->m_hWnd : nullptr, x, y, cx, cy, nFlags);
    }
    void MoveWindow(int x, int y, int nWidth, int nHeight, BOOL bRepaint = TRUE)
    {
        ::MoveWindow(m_hWnd, x, y, nWidth, nHeight, bRepaint);
    }
    void MoveWindow(LPCRECT lpRect, BOOL bRepaint = TRUE);
    void BringWindowToTop() { ::BringWindowToTop(m_hWnd); }
    void GetWindowRect(LPRECT lpRect) const { ::GetWindowRect(m_hWnd, lpRect); }
    void GetClientRect(LPRECT lpRect) const { ::GetClientRect(m_hWnd, lpRect); }
    void ClientToScreen(LPPOINT lpPoint) const { ::ClientToScreen(m_hWnd, lpPoint); }
    void ClientToScreen(LPRECT lpRect) const;
    void ScreenToClient(LPPOINT lpPoint) const { ::ScreenToClient(m_hWnd, lpPoint); }
    void ScreenToClient(LPRECT lpRect) const;
    // The window owns the region from now on.
    int SetWindowRgn(HRGN hRgn, BOOL bRedraw) { return ::SetWindowRgn(m_hWnd, hRgn, bRedraw); }
    int GetWindowRgn(HRGN hRgn) const { return ::GetWindowRgn(m_hWnd, hRgn); }
    // Over the window it belongs to, else in the work area of its monitor, and within that in any case; a child window
    // in its parent.
    void CenterWindow(CWnd* pAlternateOwner = nullptr);
    BOOL IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }
    BOOL IsIconic() const { return ::IsIconic(m_hWnd); }
    BOOL IsZoomed() const { return ::IsZoomed(m_hWnd); }

    // State.
    BOOL IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd); }
    BOOL EnableWindow(BOOL bEnable = TRUE) { return ::EnableWindow(m_hWnd, bEnable); }
    CWnd* SetFocus() { return FromHandle(::SetFocus(m_hWnd)); }
    static CWnd* GetFocus() { return FromHandle(::GetFocus()); }
    CWnd* SetCapture() { return FromHandle(::SetCapture(m_hWnd)); }
    static CWnd* GetCapture() { return FromHandle(::GetCapture()); }
    CWnd* SetActiveWindow() { return FromHandle(::SetActiveWindow(m_hWnd)); }
    static CWnd* GetActiveWindow() { return FromHandle(::GetActiveWindow()); }
    BOOL SetForegroundWindow() { return ::SetForegroundWindow(m_hWnd); }
    static CWnd* GetForegroundWindow() { return FromHandle(::GetForegroundWindow()); }
    HICON GetIcon(BOOL bBigIcon) const;
    HICON SetIcon(HICON hIcon, BOOL bBigIcon);

    // Relations.
    CWnd* GetParent() const { return FromHandle(::GetParent(m_hWnd)); }
    CWnd* GetOwner() const;
    CWnd* GetTopLevelParent() const;
    CWnd* GetDlgItem(int nID) const { return FromHandle(::GetDlgItem(m_hWnd, nID)); }
    CMenu* GetSystemMenu(BOOL bRevert) const { return CMenu::FromHandle(::GetSystemMenu(m_hWnd, bRevert)); }
    CWnd* GetWindow(UINT nCmd) const { return FromHandle(::GetWindow(m_hWnd, nCmd)); }
    static CWnd* GetDesktopWindow() { return FromHandle(::GetDesktopWindow()); }
    static CWnd* WindowFromPoint(POINT point) { return FromHandle(::WindowFromPoint(point)); }
    BOOL IsChild(const CWnd* pWnd) const { return ::IsChild(m_hWnd, pWnd->m_hWnd); }

    // Painting.
    CDC* BeginPaint(LPPAINTSTRUCT lpPaint) { return CDC::FromHandle(::BeginPaint(m_hWnd, lpPaint)); }
    void EndPaint(LPPAINTSTRUCT lpPaint) { ::EndPaint(m_hWnd, lpPaint); }
    CDC* GetDC() { return CDC::FromHandle(::GetDC(m_hWnd)); }
    CDC* GetWindowDC() { return CDC::FromHandle(::GetWindowDC(m_hWnd)); }
    int ReleaseDC(CDC* pDC) { return ::ReleaseDC(m_hWnd, pDC->m_hDC); }
    void Invalidate(BOOL bErase = TRUE) { ::InvalidateRect(m_hWnd, nullptr, bErase); }
    void InvalidateRect(LPCRECT lpRect, BOOL bErase = TRUE) { ::InvalidateRect(m_hWnd, lpRect, bErase); }
    void ValidateRect(LPCRECT lpRect) { ::ValidateRect(m_hWnd, lpRect); }
    BOOL GetUpdateRect(LPRECT lpRect, BOOL bErase = FALSE) { return ::GetUpdateRect(m_hWnd, lpRect, bErase); }
    void UpdateWindow() { ::UpdateWindow(m_hWnd); }
    BOOL RedrawWindow(LPCRECT lpRectUpdate = nullptr, CRgn* prgnUpdate = nullptr,
                      UINT flags = RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE);

    // Milliseconds.
    UINT_PTR SetTimer(UINT_PTR nIDEvent, UINT nElapse, TIMERPROC lpfnTimer)
    {
        return ::SetTimer(m_hWnd, nIDEvent, nElapse, lpfnTimer);
    }
    BOOL KillTimer(UINT_PTR nIDEvent) { return ::KillTimer(m_hWnd, nIDEvent); }

    BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo) override;

    // From now on a tip shows the text of what OnToolHitTest finds under the resting pointer, in this window and in
    // those within it that have none of their own, while the top-level window is active; a press or key hides it.
    BOOL EnableToolTips(BOOL bEnable = TRUE);
    // Which tool lies at a point of the client area: its number, -1 for none. Fills in *pTI: window, number and area of
    // the tool and its text, which the framework frees (free). Here the child windows are tools, whose texts come by
    // TTN_NEEDTEXTA.
    virtual int OnToolHitTest(CPoint point, TOOLINFOA* pTI) const;
    // Called by PreTranslateMessage with every message.
    void FilterToolTipMessage(MSG* pMsg);

    HWND m_hWnd = nullptr; // owned
    UINT m_nFlags = 0;     // WF_

protected:
    // Called by the framework for every message of an attached window.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    // TRUE: a handler took the message, and *pResult is its answer. The object may be gone then.
    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    // The system's treatment of the message being handled.
    LRESULT Default();
    // A command or a control's notification. TRUE: handled.
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    // The last call of all, when the window is gone and detached, unless CreateEx is still running. A class whose
    // objects live on the heap deletes them here.
    virtual void PostNcDestroy() {}

    // Default treatment. Classes declare members of these names for what they handle and call the base's.
    afx_msg int OnCreate(LPCREATESTRUCTA lpCreateStruct); // -1: the window is not made
    afx_msg BOOL OnNcCreate(LPCREATESTRUCTA lpCreateStruct);
    afx_msg void OnDestroy();
    afx_msg void OnNcDestroy();
    afx_msg void OnClose();
    afx_msg BOOL OnQueryEndSession();
    afx_msg void OnEndSession(BOOL bEnding);
    afx_msg void OnMove(int x, int y);
    afx_msg void OnSize(UINT nType, int cx, int cy);
    afx_msg void OnShowWindow(BOOL bShow, UINT nStatus);
    afx_msg void OnEnable(BOOL bEnable);
    afx_msg void OnActivate(UINT nState, CWnd* pWndOther, BOOL bMinimized);
    afx_msg void OnSetFocus(CWnd* pOldWnd);
    afx_msg void OnKillFocus(CWnd* pNewWnd);
    afx_msg void OnCaptureChanged(CWnd* pWnd);
    afx_msg void OnGetMinMaxInfo(MINMAXINFO* lpMMI);
    afx_msg void OnWindowPosChanging(WINDOWPOS* lpwndpos);
    afx_msg void OnWindowPosChanged(WINDOWPOS* lpwndpos);
    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* pDC);
    afx_msg void OnNcPaint();
    afx_msg BOOL OnNcActivate(BOOL bActive);
    afx_msg void OnNcCalcSize(BOOL bCalcValidRects, NCCALCSIZE_PARAMS* lpncsp);
    afx_msg UINT OnNcHitTest(CPoint point); // HTERROR and HTTRANSPARENT come as the unsigned of their bits
    afx_msg BOOL OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message);
    afx_msg void OnNcMouseMove(UINT nHitTest, CPoint point);
    afx_msg void OnNcLButtonDown(UINT nHitTest, CPoint point);
    afx_msg void OnNcLButtonUp(UINT nHitTest, CPoint point);
    afx_msg void OnNcLButtonDblClk(UINT nHitTest, CPoint point);
    afx_msg void OnMouseMove(UINT nFlags, CPoint point);
    afx_msg void OnLButtonDown(UINT nFlags, CPoint point);
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point);
    afx_msg void OnLButtonDblClk(UINT nFlags, CPoint point);
    afx_msg void OnRButtonDown(UINT nFlags, CPoint point);
    afx_msg void OnRButtonUp(UINT nFlags, CPoint point);
    afx_msg void OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags);
    afx_msg void OnKeyUp(UINT nChar, UINT nRepCnt, UINT nFlags);
    afx_msg void OnChar(UINT nChar, UINT nRepCnt, UINT nFlags);
    afx_msg void OnMeasureItem(int nIDCtl, LPMEASUREITEMSTRUCT lpMeasureItemStruct);
    afx_msg void OnDrawItem(int nIDCtl, LPDRAWITEMSTRUCT lpDrawItemStruct);
    afx_msg void OnInitMenu(CMenu* pMenu);
    afx_msg void OnInitMenuPopup(CMenu* pPopupMenu, UINT nIndex, BOOL bSysMenu);
    afx_msg void OnContextMenu(CWnd* pWnd, CPoint pos); // on the screen; (-1,-1): by the keyboard
    afx_msg void OnCancelMode();
    afx_msg void OnMDIActivate(BOOL bActivate, CWnd* pActivateWnd, CWnd* pDeactivateWnd); // either may be null
    afx_msg void OnTimer(UINT_PTR nIDEvent);
    afx_msg void OnSysCommand(UINT nID, LPARAM lParam);

    DECLARE_MESSAGE_MAP()

private:
    friend LRESULT CALLBACK AfxWndProc(HWND hWnd, UINT nMsg, WPARAM wParam, LPARAM lParam);
    void attach_as(HWND window);
    void follow_pointer(const MSG& message);
    BOOL modify_style(int index, DWORD remove, DWORD add, UINT flags);

    WNDPROC super_ = nullptr;  // the procedure before SubclassWindow; null: the system's default
    bool is_creating_ = false; // CreateEx runs and still owes the caller its answer
};
