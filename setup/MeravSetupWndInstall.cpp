// The setup window's install job: the payload onto the disk, then the client out of it.
#include "setup/MeravSetupWnd.h"

#include "assets/Payload.h"

#include <shellapi.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <cstring>

namespace {

constexpr double kProgressWidth = 444.0; // of the bar, in pixels
constexpr double kPerPayloadByte = 1.0 / kPayloadBytes;

// TRUE if the folder exists or could be made. Somebody else making it meanwhile is as good.
BOOL EnsureFolder(const std::string& strFolder)
{
    if (PathFileExistsA(strFolder.c_str()))
        return TRUE;
    return CreateDirectoryA(strFolder.c_str(), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS;
}

// The local data folder's text; a missing folder shows when the next one is to be made in it.
std::string LocalDataFolder()
{
    char szFolder[MAX_PATH] = {};
    (void)SHGetSpecialFolderPathA(nullptr, szFolder, CSIDL_LOCAL_APPDATA, FALSE);
    return szFolder;
}

// Fills a zeroed buffer with the text. FALSE if it does not fit; the buffer is then empty, since a path that is cut off
// names another place.
template <std::size_t nSize>
bool CopyPath(char (&szBuffer)[nSize], const std::string& strPath)
{
    if (strPath.size() >= nSize)
        return false;
    std::memcpy(szBuffer, strPath.c_str(), strPath.size());
    return true;
}

const char* FileNameFromPath(const char* pszPath)
{
    const char* pszSeparator = std::strrchr(pszPath, '\\');
    return pszSeparator ? pszSeparator + 1 : pszPath;
}

} // namespace

void MeravSetupWnd::WritePayloadCabinet()
{
    const std::string strLocal = LocalDataFolder();
    const bool bEndsInSeparator = !strLocal.empty() && strLocal.back() == '\\';
    m_strInstallRoot = strLocal + (bEndsInSeparator ? "Varnhal" : "\\Varnhal");
    const BOOL bRoot = EnsureFolder(m_strInstallRoot);
    m_strUpdateDir = m_strInstallRoot + "\\Update";
    const BOOL bUpdate = EnsureFolder(m_strUpdateDir);
    if (!bRoot || !bUpdate) {
        m_nError = INSTALL_ERROR_FOLDERS;
        return;
    }

    const HMODULE hModule = AfxGetResourceHandle();
    const HRSRC hResource = FindResourceA(hModule, MAKEINTRESOURCEA(133), "STDA");
    const void* pPayload = LockResource(LoadResource(hModule, hResource));
    const std::string strCabinet = m_strUpdateDir + "\\TeskSetup";
    (void)DeleteFileA(strCabinet.c_str());
    const HANDLE hFile = CreateFileA(strCabinet.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD nWritten = 0;
    // A file that could not be created fails here too: nothing can be written to an invalid handle.
    if (!WriteFile(hFile, pPayload, SizeofResource(hModule, hResource), &nWritten, nullptr))
        m_nError = INSTALL_ERROR_PAYLOAD;
    (void)CloseHandle(hFile);
}

UINT MeravSetupWnd::InstallThreadProc(LPVOID pWindow)
{
    auto* pSetup = static_cast<MeravSetupWnd*>(pWindow);
    pSetup->RunInstallJob();
    pSetup->ReleaseOwner();
    return 0;
}

void MeravSetupWnd::OnInstall()
{
    ++m_nStage;
    ShowButtons({ 10001, 10002, 10003, 10004, 10005, 10006 }, FALSE);
    Invalidate(FALSE);
    ++m_nOwners; // the worker's
    if (AfxBeginThread(InstallThreadProc, this, 0, 0, 0, nullptr))
        return;
    // The system has no thread for us now: back to the page where the user may try again, or leave.
    --m_nOwners;
    --m_nStage;
    ShowButtons({ 10001, 10002 }, TRUE);
}

void MeravSetupWnd::RunInstallJob()
{
    m_extractor.SetNotifyWindow(m_hJobWnd);
    m_extractor.SetNotifyEnabled(TRUE);
    char szCabinet[256] = {};
    char szTarget[256] = {};
    if (CopyPath(szCabinet, m_strUpdateDir + "\\TeskSetup") && CopyPath(szTarget, m_strInstallRoot))
        (void)m_extractor.Extract(szCabinet, szTarget);
    WriteConnectionAndVersionDefaults();
    RunSetupConfigure();

    ++m_nStage;
    m_fProgress = 0.0F;
    ShowButtons({ 10001, 10002 }, FALSE);
    ShowButtons({ 10003, 10004, 10005, 10006 }, TRUE);
    ::InvalidateRect(m_hJobWnd, nullptr, FALSE);
}

LRESULT MeravSetupWnd::OnInstallProgress(WPARAM, LPARAM lParam)
{
    const auto* pInfo = reinterpret_cast<const FILE_IN_CABINET_INFO_A*>(lParam);
    const double fBytes = static_cast<double>(static_cast<ULONGLONG>(pInfo->FileSize));
    m_fProgress = static_cast<float>(m_fProgress + fBytes * kProgressWidth * kPerPayloadByte);
    m_strCurrentFile = FileNameFromPath(pInfo->NameInCabinet);
    Invalidate(FALSE);
    return 0;
}
