// Uninstall's window: asks, removes while it shows how far it is, and names what it left. The removal runs on a worker
// thread of the window; closing in the middle stops it after the file it is at, from where Uninstall can be begun
// again.
#pragma once

#include "client/uninstall/Removal.h"
#include "client/window/SkinnedWnd.h"

#include <string>
#include <thread>

namespace client {

class UninstallWnd : public SkinnedWnd {
    DECLARE_DYNAMIC(UninstallWnd)

public:
    static constexpr CSize kSize{ 560, 440 };

    // For the installation in the folder; *pExitCode says at any time how it would end now, and outlives the window.
    UninstallWnd(std::string strFolder, ExitCode* pExitCode);

    void SkinChanging() override;

protected:
    void PaintContent(CDC& dc, const CRect& rcContent) override;
    void KeyPressed(UINT nKey) override;
    UINT DefaultCommand() const override;

    afx_msg void OnDestroy();
    afx_msg void OnRemove();
    afx_msg void OnCloseButton();
    LRESULT OnRemovalMoved(WPARAM wParam, LPARAM lParam);
    LRESULT OnRemovalEnded(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    enum class Stage { NoList, Asking, Removing, Ended };

    void ShowButtons();
    void ListLeftovers();
    int PaintStage(CDC& dc, const CRect& rcContent);
    int PaintEnd(CDC& dc, const CRect& rcContent);

    std::string m_strFolder;
    ExitCode* m_pExitCode; // borrowed
    std::optional<std::vector<ListedFile>> m_files;
    Stage m_stage;
    Progress m_progress;
    Report m_report; // the worker's while m_stage is Removing
    std::jthread m_worker;
};

} // namespace client
