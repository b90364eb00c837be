// The setup window's system settings: registry defaults, the configuration program, auto-start and the client itself.
#include "setup/MeravSetupWnd.h"

#include <shellapi.h>

#include <cstring>

namespace {

constexpr const char* kConnectionKey = "Software\\Dalvor\\Varnhal\\Tesk\\Connection";
constexpr const char* kVersionKey = "Software\\Dalvor\\Varnhal\\Tesk\\Version";
constexpr const char* kRunKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr DWORD kConfigureTimeout = 5000; // milliseconds

// A value of the client's defaults: a text when pszText is set, else a number.
struct DefaultValue {
    const char* pszName;
    const char* pszText;
    DWORD nNumber;
};

constexpr DefaultValue kConnectionValues[] = {
    { "ProxyPassword", "", 0 },  { "ProxyUser", "", 0 },      { "ProxyDomain", "", 0 },   { "ProxyHost", "", 0 },
    { "ProxyPort", nullptr, 0 }, { "ProxyType", nullptr, 0 }, { "ProxyUse", nullptr, 1 }, // 1 without a host: the
                                                                                          // shipped default, kept on
                                                                                          // purpose
};

constexpr DefaultValue kVersionValues[] = {
    { "MAINVER", "4.0.0.1", 0 },
    { "QDFVER", "0", 0 },
    { "QDFPRTVER", "0", 0 },
    { "DLLVER", "15", 0 },
};

// FALSE if the key can be neither opened nor created.
template <std::size_t nCount>
BOOL WriteDefaults(const char* pszKey, const DefaultValue (&values)[nCount])
{
    HKEY hKey = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, pszKey, 0, KEY_QUERY_VALUE | KEY_SET_VALUE, &hKey) != ERROR_SUCCESS &&
        RegCreateKeyA(HKEY_CURRENT_USER, pszKey, &hKey) != ERROR_SUCCESS)
        return FALSE;
    for (const DefaultValue& value : values) {
        // The size leaves the terminator out, unlike the Run value's: kept on purpose.
        if (value.pszText)
            (void)RegSetValueExA(hKey, value.pszName, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.pszText),
                                 static_cast<DWORD>(std::strlen(value.pszText)));
        else
            (void)RegSetValueExA(hKey, value.pszName, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value.nNumber),
                                 sizeof value.nNumber);
    }
    (void)RegCloseKey(hKey);
    return TRUE;
}

// Starts a program by its path alone, with everything else inherited. FALSE if it does not start; else the process
// handle in info.hProcess, which the caller may leave open: the process ends soon after.
BOOL Start(SHELLEXECUTEINFOA& info, const std::string& strFile)
{
    info = {};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_NOCLOSEPROCESS;
    info.lpFile = strFile.c_str();
    info.nShow = SW_SHOW;
    return ShellExecuteExA(&info);
}

} // namespace

void MeravSetupWnd::WriteConnectionAndVersionDefaults()
{
    if (WriteDefaults(kConnectionKey, kConnectionValues))
        (void)WriteDefaults(kVersionKey, kVersionValues);
}

void MeravSetupWnd::RunSetupConfigure()
{
    const std::string strFolder = m_strInstallRoot + "\\Tesk";
    (void)SetCurrentDirectoryA(strFolder.c_str()); // the whole process's: the client inherits it
    SHELLEXECUTEINFOA info;
    const std::string strFile = strFolder + "\\SetupConfigure.exe";
    if (!Start(info, strFile))
        return;
    // Whether it ended, and how, changes nothing: the installation goes on.
    (void)WaitForSingleObject(info.hProcess, kConfigureTimeout);
    DWORD nExitCode = 0;
    (void)GetExitCodeProcess(info.hProcess, &nExitCode);
}

void MeravSetupWnd::RegisterAutoStart()
{
    HKEY hKey = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, kRunKey, 0, KEY_WRITE, &hKey) != ERROR_SUCCESS)
        return;
    const std::string strClient = m_strInstallRoot + "\\Tesk\\PelkVarnhal.exe";
    (void)RegSetValueExA(hKey, "Merav Conferencing", 0, REG_SZ, reinterpret_cast<const BYTE*>(strClient.c_str()),
                         static_cast<DWORD>(strClient.size() + 1));
    (void)RegCloseKey(hKey);
}

void MeravSetupWnd::LaunchClient()
{
    SHELLEXECUTEINFOA info;
    (void)Start(info, m_strInstallRoot + "\\Tesk" + "\\PelkVarnhal.exe");
}
