#include "setup/CabinetExtractor.h"

std::string CabinetExtractor::s_strTargetFolder;
HWND CabinetExtractor::s_hNotifyWnd = nullptr;
BOOL CabinetExtractor::s_bNotify = FALSE;

namespace {

constexpr DWORD kPaceMilliseconds = 20; // per file, so that a person can follow the progress

} // namespace

void CabinetExtractor::SetNotifyWindow(HWND hWnd)
{
    s_hNotifyWnd = hWnd;
}

void CabinetExtractor::SetNotifyEnabled(BOOL bEnabled)
{
    s_bNotify = bEnabled;
}

BOOL CabinetExtractor::Extract(const char* pszCabinet, const char* pszTargetFolder)
{
    s_strTargetFolder = pszTargetFolder;
    m_pszCabinet = pszCabinet;
    return SetupIterateCabinetA(pszCabinet, 0, CabinetFileCallback, nullptr) != FALSE;
}

UINT CALLBACK CabinetExtractor::CabinetFileCallback(PVOID, UINT nNotification, UINT_PTR nParam1, UINT_PTR)
{
    if (nNotification != SPFILENOTIFY_FILEINCABINET)
        return NO_ERROR; // also for a file that failed: the installation goes on with the next one

    auto* pInfo = reinterpret_cast<FILE_IN_CABINET_INFO_A*>(nParam1);
    const std::string strTarget = s_strTargetFolder + "\\" + pInfo->NameInCabinet;
    // A path that does not fit would name another file if it were cut off; such a file is left out.
    const bool bFits = strTarget.size() < sizeof(pInfo->FullTargetName);
    if (bFits) {
        MakeDirectoriesAlongPath(s_strTargetFolder, pInfo->NameInCabinet);
        lstrcpyA(pInfo->FullTargetName, strTarget.c_str());
    }
    if (s_bNotify)
        SendMessageA(s_hNotifyWnd, WM_INSTALL_PROGRESS, 0, static_cast<LPARAM>(nParam1));
    Sleep(kPaceMilliseconds);
    return bFits ? FILEOP_DOCOPY : FILEOP_SKIP;
}

void MakeDirectoriesAlongPath(std::string strBase, std::string strRelative)
{
    for (;;) {
        const std::size_t nSeparator = strRelative.find('\\');
        if (nSeparator == std::string::npos)
            return;
        strBase.append("\\").append(strRelative, 0, nSeparator);
        (void)CreateDirectoryA(strBase.c_str(), nullptr); // most exist already
        strRelative.erase(0, nSeparator + 1);
    }
}
