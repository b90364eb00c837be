#include "client/pelk_varnhal/UninstallWnd.h"

#include "client/window/Drawing.h"

#include <cerrno>

namespace client {

namespace {

// Posted by the worker.
constexpr UINT kRemovalMoved = WM_APP + 1;
constexpr UINT kRemovalEnded = WM_APP + 2;

constexpr Pen kFolderPen = { "Row", "Client.Label" };

CString NoteOf(const Left& left)
{
    switch (left.reason) {
    case Reason::NotInstalled:
        return Text(kTextNotInstalled);
    case Reason::Changed:
        return Text(kTextChangedByUser);
    case Reason::OtherClient:
        return Text(kTextOtherClient);
    case Reason::NoHome:
        return Text(kTextNoHome);
    case Reason::Failed:
        break;
    }
    if (left.nError == EACCES || left.nError == EPERM || left.nError == EROFS)
        return Text(kTextNoPermission);
    CString strNote;
    strNote.Format(Text(kTextErrorNumber), left.nError);
    return strNote;
}

} // namespace

IMPLEMENT_DYNAMIC(UninstallWnd, SkinnedWnd)

BEGIN_MESSAGE_MAP(UninstallWnd, SkinnedWnd)
ON_WM_DESTROY()
ON_COMMAND(kCommandRemove, &UninstallWnd::OnRemove)
ON_COMMAND(kCommandCancel, &UninstallWnd::OnCloseButton)
ON_COMMAND(kCommandClose, &UninstallWnd::OnCloseButton)
ON_MESSAGE(kRemovalMoved, &UninstallWnd::OnRemovalMoved)
ON_MESSAGE(kRemovalEnded, &UninstallWnd::OnRemovalEnded)
END_MESSAGE_MAP()

UninstallWnd::UninstallWnd(std::string strFolder, ExitCode* pExitCode)
    : SkinnedWnd(kTextUninstall), m_strFolder(std::move(strFolder)), m_pExitCode(pExitCode),
      m_files(ReadOwnFileList(m_strFolder)), m_stage(m_files ? Stage::Asking : Stage::NoList)
{
    *m_pExitCode = m_files ? kNotConfirmed : kNoList;
}

void UninstallWnd::SkinChanging()
{
    DeleteButtons();
    for (const char* pszAnchor : { "_Remove", "_Cancel", "_Close" })
        AddButton(pszAnchor);
    ShowButtons();
}

void UninstallWnd::ShowButtons()
{
    const bool bAsking = m_stage == Stage::Asking;
    ShowButton(kCommandRemove, bAsking);
    ShowButton(kCommandCancel, bAsking || m_stage == Stage::Removing);
    ShowButton(kCommandClose, m_stage == Stage::NoList || m_stage == Stage::Ended);
    Invalidate(FALSE);
}

// ---- The removal ----

void UninstallWnd::OnRemove()
{
    if (m_stage != Stage::Asking)
        return;
    m_stage = Stage::Removing;
    *m_pExitCode = kSomeLeft;
    ShowButtons();
    m_worker = std::jthread([this, hWnd = m_hWnd](const std::stop_token& stop) {
        m_report = RemoveInstallation(m_strFolder, *m_files, &m_progress, stop,
                                      [hWnd] { ::PostMessageA(hWnd, kRemovalMoved, 0, 0); });
        ::PostMessageA(hWnd, kRemovalEnded, 0, 0);
    });
}

LRESULT UninstallWnd::OnRemovalMoved(WPARAM /*wParam*/, LPARAM /*lParam*/)
{
    Invalidate(FALSE);
    return 0;
}

LRESULT UninstallWnd::OnRemovalEnded(WPARAM /*wParam*/, LPARAM /*lParam*/)
{
    if (!m_worker.joinable())
        return 0;
    m_worker.join();
    m_stage = Stage::Ended;
    *m_pExitCode = ExitCodeOf(m_report);
    ListLeftovers();
    ShowButtons();
    return 0;
}

void UninstallWnd::OnDestroy()
{
    if (m_worker.joinable()) {
        m_worker.request_stop();
        m_worker.join();
        *m_pExitCode = ExitCodeOf(m_report);
    }
    SkinnedWnd::OnDestroy();
}

void UninstallWnd::ListLeftovers()
{
    std::vector<ListRow> rows;
    for (const Left& left : m_report.failed)
        rows.push_back({ "RowMissing", left.strName, NoteOf(left) });
    for (const Left& left : m_report.kept)
        rows.push_back({ left.reason == Reason::Changed ? "RowChanged" : "RowKept", left.strName, NoteOf(left) });
    m_list.SetRows(std::move(rows));
}

// ---- Painting ----

void UninstallWnd::PaintContent(CDC& dc, const CRect& rcContent)
{
    CRect rc = rcContent;
    rc.top = PaintStage(dc, rc) + kGap;
    if (!m_list.IsEmpty())
        m_list.Paint(dc, *m_pSkinWindow, rc);
}

int UninstallWnd::PaintStage(CDC& dc, const CRect& rcContent)
{
    CString strSentence;
    int nBottom = 0;
    switch (m_stage) {
    case Stage::NoList:
        return PaintState(dc, rcContent, "Bad", Text(kTextCannotRemove), "Client.Bad", Text(kTextNoListToRemove));
    case Stage::Asking:
        nBottom = PaintState(dc, rcContent, "Question", Text(kTextAsk), "Client.Value", Text(kTextWhatGoes));
        DrawPath(dc, CRect(rcContent.left + 56, nBottom + kGap, rcContent.right, nBottom + kGap + 20), m_strFolder,
                 kFolderPen);
        return nBottom + kGap + 20;
    case Stage::Removing:
        strSentence.Format(Text(kTextRemovedSoFar), AsInt(m_progress.nDone), AsInt(m_progress.nAll));
        nBottom = PaintState(dc, rcContent, "Busy", Text(kTextRemoving), "Client.Busy", strSentence);
        DrawProgress(dc, CRect(rcContent.left, nBottom + 8, rcContent.right, nBottom + 14), m_progress.nDone,
                     m_progress.nAll);
        return nBottom + 14;
    case Stage::Ended:
        break;
    }
    return PaintEnd(dc, rcContent);
}

int UninstallWnd::PaintEnd(CDC& dc, const CRect& rcContent)
{
    const int nRemoved = AsInt(m_report.nRemoved);
    const int nKept = AsInt(m_report.kept.size());
    CString strSentence;
    if (!m_report.failed.empty()) {
        strSentence.Format(Text(kTextSomeFailed), nRemoved, AsInt(m_report.failed.size()), nKept);
        return PaintState(dc, rcContent, "Bad", Text(kTextNotDone), "Client.Bad", strSentence);
    }
    if (nKept > 0)
        strSentence.Format(Text(kTextSomeKept), nRemoved, nKept);
    else
        strSentence.Format(Text(kTextNothingLeft), nRemoved);
    return PaintState(dc, rcContent, "Good", Text(kTextRemoved), "Client.Good", strSentence);
}

// ---- Commands ----

void UninstallWnd::KeyPressed(UINT nKey)
{
    if (nKey == VK_ESCAPE)
        PostMessage(WM_CLOSE);
    else if (nKey == 'Y')
        OnRemove();
}

// What removes nothing: whoever only pressed Enter has not read the question.
UINT UninstallWnd::DefaultCommand() const
{
    return m_stage == Stage::Asking ? kCommandCancel : kCommandClose;
}

void UninstallWnd::OnCloseButton()
{
    PostMessage(WM_CLOSE);
}

} // namespace client
