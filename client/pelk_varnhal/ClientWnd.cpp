#include "client/pelk_varnhal/ClientWnd.h"

#include "client/install/UserFolders.h"
#include "client/window/Drawing.h"
#include "client/window/SkinMenu.h"

#include <shellapi.h>

namespace client {

namespace {

// Posted by the worker.
constexpr UINT kCheckMoved = WM_APP + 1;
constexpr UINT kCheckEnded = WM_APP + 2;

constexpr int kFactHeight = 24;
constexpr int kLabelWidth = 92;
constexpr Pen kLabelPen = { "Text", "Client.Label" };
constexpr Pen kValuePen = { "Text", "Client.Value" };

} // namespace

IMPLEMENT_DYNAMIC(ClientWnd, SkinnedWnd)

BEGIN_MESSAGE_MAP(ClientWnd, SkinnedWnd)
ON_WM_CREATE()
ON_WM_DESTROY()
ON_WM_CONTEXTMENU()
ON_COMMAND(kCommandCheck, &ClientWnd::OnCheck)
ON_UPDATE_COMMAND_UI(kCommandCheck, &ClientWnd::OnUpdateCheck)
ON_COMMAND(kCommandClose, &ClientWnd::OnCloseButton)
ON_COMMAND(kCommandMenu, &ClientWnd::OnMenu)
ON_COMMAND(kCommandAutoStart, &ClientWnd::OnAutoStart)
ON_COMMAND(kCommandUninstall, &ClientWnd::OnUninstall)
ON_MESSAGE(WM_SYSKEYDOWN, &ClientWnd::OnSysKeyDown)
ON_MESSAGE(kCheckMoved, &ClientWnd::OnCheckMoved)
ON_MESSAGE(kCheckEnded, &ClientWnd::OnCheckEnded)
END_MESSAGE_MAP()

ClientWnd::ClientWnd(std::string strFolder)
    : SkinnedWnd(kTextProduct), m_strFolder(std::move(strFolder)), m_settings(ReadInstalledSettings())
{}

int ClientWnd::OnCreate(LPCREATESTRUCTA pCreate)
{
    if (SkinnedWnd::OnCreate(pCreate) == -1)
        return -1;
    OnCheck();
    return 0;
}

void ClientWnd::OnDestroy()
{
    m_worker = {}; // asks it to stop, and waits
    SkinnedWnd::OnDestroy();
}

void ClientWnd::SkinChanging()
{
    DeleteButtons();
    for (const char* pszAnchor : { "_Menu", "_Check", "_Close" })
        AddButton(pszAnchor);
}

// ---- The check ----

void ClientWnd::OnCheck()
{
    if (m_bChecking)
        return;
    m_bChecking = TRUE;
    m_settings = ReadInstalledSettings();
    m_list.SetRows({});
    m_progress.nDone = 0;
    m_progress.nAll = 0;
    m_worker = std::jthread([this, hWnd = m_hWnd](const std::stop_token& stop) {
        m_result = CheckFiles(m_strFolder, &m_progress, stop, [hWnd] { ::PostMessageA(hWnd, kCheckMoved, 0, 0); });
        ::PostMessageA(hWnd, kCheckEnded, 0, 0);
    });
    Invalidate(FALSE);
}

LRESULT ClientWnd::OnCheckMoved(WPARAM /*wParam*/, LPARAM /*lParam*/)
{
    Invalidate(FALSE);
    return 0;
}

LRESULT ClientWnd::OnCheckEnded(WPARAM /*wParam*/, LPARAM /*lParam*/)
{
    if (!m_worker.joinable())
        return 0;
    m_worker.join();
    m_bChecking = FALSE;
    std::vector<ListRow> rows;
    for (const Finding& finding : m_result.findings) {
        const bool bGone = finding.condition == Condition::Gone;
        const TextId nNote = bGone                                     ? kTextMissing
                             : finding.condition == Condition::Changed ? kTextChanged
                                                                       : kTextUnreadable;
        rows.push_back({ bGone ? "RowMissing" : "RowChanged", finding.strName, Text(nNote) });
    }
    m_list.SetRows(std::move(rows));
    Invalidate(FALSE);
    return 0;
}

void ClientWnd::OnUpdateCheck(CCmdUI* pCmdUI)
{
    pCmdUI->Enable(!m_bChecking);
}

// ---- Painting ----

void ClientWnd::PaintContent(CDC& dc, const CRect& rcContent)
{
    CRect rc = rcContent;
    rc.top = PaintCheck(dc, rc) + kGap;
    dc.FillSolidRect(rc.left, rc.top, rc.Width(), 1, Colour("Client.Line"));
    rc.top = PaintFacts(dc, CRect(rc.left, rc.top + kGap, rc.right, rc.bottom)) + kGap;
    if (!m_list.IsEmpty())
        m_list.Paint(dc, *m_pSkinWindow, rc);
}

int ClientWnd::PaintCheck(CDC& dc, const CRect& rcContent)
{
    CString strSentence;
    if (m_bChecking) {
        const std::size_t nDone = m_progress.nDone;
        const std::size_t nAll = m_progress.nAll;
        strSentence.Format(Text(kTextCheckedSoFar), AsInt(nDone), AsInt(nAll));
        const int nBottom = PaintState(dc, rcContent, "Busy", Text(kTextChecking), "Client.Busy", strSentence);
        DrawProgress(dc, CRect(rcContent.left, nBottom + 8, rcContent.right, nBottom + 14), nDone, nAll);
        return nBottom + 14;
    }
    if (!m_result.bHasList)
        return PaintState(dc, rcContent, "Bad", Text(kTextNotChecked), "Client.Bad", Text(kTextNoList));
    if (m_result.findings.empty()) {
        strSentence.Format(Text(kTextAllThere), AsInt(m_result.nFiles));
        return PaintState(dc, rcContent, "Good", Text(kTextWhole), "Client.Good", strSentence);
    }
    const std::size_t nMissing = m_result.Count(Condition::Gone);
    strSentence.Format(Text(kTextDamage), AsInt(nMissing), AsInt(m_result.findings.size() - nMissing),
                       AsInt(m_result.nFiles));
    return PaintState(dc, rcContent, "Bad", Text(kTextIncomplete), "Client.Bad", strSentence);
}

int ClientWnd::PaintFacts(CDC& dc, const CRect& rcFacts)
{
    CString strVersion = Text(kTextNotFound);
    if (!m_settings.strVersion.empty())
        strVersion.Format(Text(kTextVersions), m_settings.strVersion.c_str(), m_settings.strComponents.c_str());

    CRect rc(rcFacts.left, rcFacts.top, rcFacts.right, rcFacts.top + kFactHeight);
    const auto valuePlace = [&] { return CRect(rc.left + kLabelWidth, rc.top, rc.right, rc.bottom); };
    DrawLine(dc, rc, Text(kTextVersion), kLabelPen);
    DrawLine(dc, valuePlace(), strVersion, kValuePen);
    rc.OffsetRect(0, kFactHeight);
    DrawLine(dc, rc, Text(kTextConnection), kLabelPen);
    DrawLine(dc, valuePlace(), ConnectionText(), kValuePen);
    rc.OffsetRect(0, kFactHeight);
    DrawLine(dc, rc, Text(kTextFolder), kLabelPen);
    DrawPath(dc, valuePlace(), m_strFolder, kValuePen);
    return rc.bottom;
}

CString ClientWnd::ConnectionText() const
{
    if (!m_settings.bHasConnection)
        return Text(kTextNotFound);
    if (m_settings.strProxyHost.empty())
        return Text(kTextDirect);
    CString strText;
    strText.Format(Text(kTextProxy), m_settings.strProxyHost.c_str(), static_cast<int>(m_settings.nProxyPort));
    return strText;
}

// ---- Commands ----

void ClientWnd::KeyPressed(UINT nKey)
{
    switch (nKey) {
    case VK_ESCAPE:
        PostMessage(WM_CLOSE);
        break;
    case VK_F5:
        OnCheck();
        break;
    default:
        break;
    }
}

// F10 is the system's key.
LRESULT ClientWnd::OnSysKeyDown(WPARAM wParam, LPARAM /*lParam*/)
{
    if (wParam != VK_F10)
        return Default();
    OnMenu();
    return 0;
}

void ClientWnd::OnCloseButton()
{
    PostMessage(WM_CLOSE);
}

// Beneath its button.
void ClientWnd::OnMenu()
{
    CPoint point(0, 0);
    if (const PelkGUI::GuiCmdButton* pButton = GetCmdButton(kCommandMenu))
        point = CPoint(pButton->m_rcButton.right, pButton->m_rcButton.bottom + 2);
    ClientToScreen(&point);
    TrackMenu(point, TPM_RIGHTALIGN);
}

void ClientWnd::OnContextMenu(CWnd* /*pWnd*/, CPoint point)
{
    if (point == CPoint(-1, -1))
        OnMenu();
    else
        TrackMenu(point, TPM_LEFTALIGN);
}

void ClientWnd::TrackMenu(CPoint point, UINT nAlign)
{
    SkinMenu menu({
        { kCommandCheck, Text(kTextMenuCheck), "F5", false, !m_bChecking },
        { kCommandAutoStart, Text(kTextMenuAutoStart), "", StartsWithSystem(m_strFolder) },
        { kCommandUninstall, Text(kTextMenuUninstall), "", false, true, true },
        { kCommandClose, Text(kTextMenuExit), "Esc" },
    });
    menu.Track(this, point, nAlign);
}

void ClientWnd::OnAutoStart()
{
    (void)SetStartWithSystem(m_strFolder, !StartsWithSystem(m_strFolder)); // the menu shows what it came to
}

// Uninstall asks, and this window would only stand in its way.
void ClientWnd::OnUninstall()
{
    const std::string strProgram = m_strFolder + "/" + kUninstallProgram;
    SHELLEXECUTEINFOA info{};
    info.cbSize = sizeof info;
    info.lpFile = strProgram.c_str();
    info.nShow = SW_SHOW;
    if (ShellExecuteExA(&info))
        PostMessage(WM_CLOSE);
}

} // namespace client
