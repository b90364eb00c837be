// The client's window: it shows that the installation works: versions, connection and place, and whether all files are
// as they were installed. The files are looked at by a worker thread of the window, which ends with the window; what is
// missing or changed is then listed.
#pragma once

#include "client/install/FileCheck.h"
#include "client/pelk_varnhal/Installation.h"
#include "client/window/SkinnedWnd.h"

#include <string>
#include <thread>

namespace client {

class ClientWnd : public SkinnedWnd {
    DECLARE_DYNAMIC(ClientWnd)

public:
    static constexpr CSize kSize{ 620, 500 };

    // For the client in strFolder. The window deletes itself when it is closed.
    explicit ClientWnd(std::string strFolder);

    BOOL IsChecking() const { return m_bChecking; }
    const CheckResult& Result() const { return m_result; } // of the last check that ended

    void SkinChanging() override;

protected:
    void PaintContent(CDC& dc, const CRect& rcContent) override;
    void KeyPressed(UINT nKey) override;
    UINT DefaultCommand() const override { return kCommandClose; }

    afx_msg int OnCreate(LPCREATESTRUCTA pCreate);
    afx_msg void OnDestroy();
    afx_msg void OnCheck();
    afx_msg void OnUpdateCheck(CCmdUI* pCmdUI);
    afx_msg void OnCloseButton();
    afx_msg void OnMenu();
    afx_msg void OnAutoStart();
    afx_msg void OnUninstall();
    afx_msg void OnContextMenu(CWnd* pWnd, CPoint point);
    LRESULT OnSysKeyDown(WPARAM wParam, LPARAM lParam);
    LRESULT OnCheckMoved(WPARAM wParam, LPARAM lParam);
    LRESULT OnCheckEnded(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    int PaintCheck(CDC& dc, const CRect& rcContent);
    int PaintFacts(CDC& dc, const CRect& rcFacts);
    void TrackMenu(CPoint point, UINT nAlign);
    CString ConnectionText() const;

    std::string m_strFolder;
    InstalledSettings m_settings;
    BOOL m_bChecking = FALSE;
    Progress m_progress;
    CheckResult m_result; // the worker's while m_bChecking
    std::jthread m_worker;
};

} // namespace client
