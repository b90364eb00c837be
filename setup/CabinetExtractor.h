// Extracts the payload cabinet file by file, telling a window about each file before it is copied.
//
// The cabinet iterator's callback is registered without a context, so what it needs lies in class-wide state: it is set
// before an extraction starts and only read while one runs. One extraction at a time.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include <string>

// Sent, never posted, to the notify window before a file is copied; the answer is waited for.
// wParam 0; lParam the address of the FILE_IN_CABINET_INFO_A, valid only while the message is handled.
inline constexpr UINT WM_INSTALL_PROGRESS = 1747;

class CabinetExtractor {
public:
    CabinetExtractor() = default;
    virtual ~CabinetExtractor() = default;

    // The window that gets WM_INSTALL_PROGRESS; borrowed, may be gone by the time of a message.
    void SetNotifyWindow(HWND hWnd);

    // Whether progress is sent at all. Nothing switches it off again by itself.
    void SetNotifyEnabled(BOOL bEnabled);

    // Extracts every file of the cabinet under the target folder, pausing 20 ms before each so that the progress can be
    // seen. TRUE when the iteration ended well; a single file that could not be written does not make it FALSE.
    BOOL Extract(const char* pszCabinet, const char* pszTargetFolder);

    // Answers the cabinet iterator: builds the target path, makes its folders, reports progress and asks for the copy.
    static UINT CALLBACK CabinetFileCallback(PVOID pContext, UINT nNotification, UINT_PTR nParam1, UINT_PTR nParam2);

private:
    const char* m_pszCabinet = nullptr; // borrowed: the text last passed to Extract, kept but never read again

    static std::string s_strTargetFolder;
    static HWND s_hNotifyWnd;
    static BOOL s_bNotify;
};

// Creates every folder named in strRelative, below strBase, from the outermost in. The part behind the last "\" is a
// file name and is not created. Folders that exist are fine; a folder that cannot be made is found out by whoever
// writes there.
void MakeDirectoriesAlongPath(std::string strBase, std::string strRelative);
