// The client's window: its version and whether its files are all there, on a picture that the program carries.
#pragma once

#include <afxwin.h>

#include <string>

namespace client {

class ClientWnd : public CFrameWnd {
    DECLARE_DYNAMIC(ClientWnd)

    // For the client in strFolder. The window deletes itself when it is closed.
    explicit ClientWnd(const std::string& strFolder);

    // Makes the window in the middle of the screen and shows it. FALSE: there is none, the object is the caller's.
    BOOL CreateAndShow(int nShowCommand);

    BOOL PreCreateWindow(CREATESTRUCTA& cs) override;

protected:
    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* pDC);
    afx_msg LRESULT OnNcHitTest(CPoint point);
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point);
    afx_msg void OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags);

    DECLARE_MESSAGE_MAP()

private:
    void PaintVersion(CDC& dc, CDC& dcPictures) const;

    BOOL m_bComplete;
    std::string m_strVersion;
    CBitmap m_bmpPictures;
};

} // namespace client
