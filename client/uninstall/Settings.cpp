#include "client/uninstall/Settings.h"

#include "client/install/UserFolders.h"
#include "client/registry/RegistryKey.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <sstream>
#include <string_view>

#include <sqlite3.h>
#include <windows.h>
#include <winreg.h>

namespace client {

namespace {

constexpr char kRegistryFile[] = "current-user.sqlite";

// Removed with their values, in this order.
constexpr const char* kSettingsKeys[] = {
    kConnectionKey,
    kVersionKey,
};

// Removed in this order when nothing is left in them.
constexpr const char* kParentKeys[] = {
    "Software\\Dalvor\\Varnhal\\Tesk",
    "Software\\Dalvor\\Varnhal",
    "Software\\Dalvor",
};

void NoteFailure(const std::string& strWhat, LSTATUS nError, Report* pReport)
{
    if (nError != ERROR_SUCCESS && nError != ERROR_FILE_NOT_FOUND)
        pReport->failed.push_back({ strWhat, Reason::Failed, "registry error " + std::to_string(nError), nError });
}

void RemoveAutoStart(const std::string& strFolder, Report* pReport)
{
    const RegistryKey key(kRunKey, KEY_QUERY_VALUE | KEY_SET_VALUE);
    if (key.Error() != ERROR_SUCCESS)
        return NoteFailure(kRunKey, key.Error(), pReport);
    const std::optional<std::string> text = key.Text(kRunValue);
    if (text && NamesClientIn(*text, strFolder))
        NoteFailure(kRunValue, RegDeleteValueA(key.Get(), kRunValue), pReport);
}

bool HasValues(const char* pszKey)
{
    const RegistryKey key(pszKey, KEY_QUERY_VALUE);
    std::array<char, 256> name{};
    DWORD nNameSize = static_cast<DWORD>(name.size());
    return key.Error() == ERROR_SUCCESS && RegEnumValueA(key.Get(), 0, name.data(), &nNameSize, nullptr, nullptr,
                                                         nullptr, nullptr) != ERROR_NO_MORE_ITEMS;
}

void RemoveSettingsKeys(Report* pReport)
{
    for (const char* pszKey : kSettingsKeys)
        NoteFailure(pszKey, RegDeleteKeyA(HKEY_CURRENT_USER, pszKey), pReport);
    for (const char* pszKey : kParentKeys) {
        if (!HasValues(pszKey))
            (void)RegDeleteKeyA(HKEY_CURRENT_USER, pszKey); // a key with other keys in it stays
    }
}

bool HasKey(const std::string& strKey, DWORD nIndex, std::string* pName)
{
    const RegistryKey key(strKey.c_str(), KEY_ENUMERATE_SUB_KEYS);
    std::array<char, 256> name{};
    DWORD nNameSize = static_cast<DWORD>(name.size());
    const bool bThere = key.Error() == ERROR_SUCCESS &&
                        RegEnumKeyExA(key.Get(), nIndex, name.data(), &nNameSize, nullptr, nullptr, nullptr, nullptr) !=
                            ERROR_NO_MORE_ITEMS;
    *pName = name.data();
    return bThere;
}

// Whether the registry holds nothing but what a new one has: the Run key and those above it.
bool IsRegistryAsNew()
{
    std::string strKey;
    std::string strName;
    while (strKey != kRunKey) {
        if (HasValues(strKey.c_str()) || HasKey(strKey, 1, &strName) || !HasKey(strKey, 0, &strName))
            return false;
        strKey += (strKey.empty() ? "" : "\\") + strName;
        if (std::string_view(kRunKey).substr(0, strKey.size()) != strKey)
            return false;
    }
    return !HasValues(kRunKey) && !HasKey(strKey, 0, &strName);
}

// What follows "pszName=" in a line of the file. Nothing: the file or the line is not there.
std::optional<std::string> SettingIn(const std::string& strPath, const std::string& strName)
{
    std::istringstream stream(ReadSettingsFile(strPath).value_or(""));
    std::string strLine;
    while (std::getline(stream, strLine)) {
        if (strLine.starts_with(strName + "="))
            return strLine.substr(strName.size() + 1);
    }
    return std::nullopt;
}

void RemoveOwnFile(const std::string& strPath, Report* pReport)
{
    std::error_code error;
    std::filesystem::remove(strPath, error);
    if (error)
        pReport->failed.push_back({ strPath, Reason::Failed, error.message(), error.value() });
}

// The registry's file, which others may write to at any time.
class RegistryFile {
public:
    explicit RegistryFile(const std::string& strPath)
    {
        sqlite3* pOpened = nullptr;
        m_nResult = sqlite3_open_v2(strPath.c_str(), &pOpened, SQLITE_OPEN_READWRITE, nullptr);
        m_pDatabase.reset(pOpened);
        sqlite3_busy_timeout(pOpened, 2000);
    }

    bool IsOpen() const { return m_nResult == SQLITE_OK; }

    // Keeps all others from reading and writing as long as this lives.
    bool Lock() { return sqlite3_exec(m_pDatabase.get(), "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr) == SQLITE_OK; }

    // Another number than before: somebody else has written meanwhile.
    std::optional<int> Version()
    {
        sqlite3_stmt* pPrepared = nullptr;
        if (sqlite3_prepare_v2(m_pDatabase.get(), "PRAGMA data_version", -1, &pPrepared, nullptr) != SQLITE_OK)
            return std::nullopt;
        const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> pStatement(pPrepared, &sqlite3_finalize);
        if (sqlite3_step(pPrepared) != SQLITE_ROW)
            return std::nullopt;
        return sqlite3_column_int(pPrepared, 0);
    }

private:
    std::unique_ptr<sqlite3, decltype(&sqlite3_close)> m_pDatabase{ nullptr, &sqlite3_close };
    int m_nResult;
};

// A registry that nobody has anything in goes with the installation that brought it: under the lock that every writer
// takes, so that no value goes with it. Whoever waits for that lock finds the file gone, and makes a new one.
void RemoveEmptyRegistry(Report* pReport)
{
    const std::string strFolder = ConfigHome() + "/" + kRegistryFolder;
    RegistryFile file(strFolder + "/" + kRegistryFile);
    if (!file.IsOpen())
        return;
    const std::optional<int> version = file.Version();
    if (!version || !IsRegistryAsNew() || !file.Lock() || file.Version() != version)
        return;
    RemoveOwnFile(strFolder + "/" + kRegistryFile, pReport);
    std::error_code error;
    std::filesystem::remove(strFolder, error); // stays when it is not empty
}

void RemoveConfigFolder(const std::string& strConfigFolder, Report* pReport)
{
    RemoveOwnFile(strConfigFolder + "/" + kConfigFile, pReport);
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(strConfigFolder, error))
        pReport->kept.push_back({ entry.path().string(), Reason::NotInstalled });
    std::filesystem::remove(strConfigFolder, error); // stays when it is not empty
}

} // namespace

std::vector<std::string> FoldersToRemove(const std::string& strFolder)
{
    const std::string strConfigFile = ConfigHome() + "/" + kConfigFolder + "/" + kConfigFile;
    std::vector<std::string> folders;
    if (SettingIn(strConfigFile, "Folder") != strFolder)
        return folders;
    const std::string strMade = " " + SettingIn(strConfigFile, kMadeFoldersSetting).value_or("") + " ";
    for (const DesktopFolder& folder : DesktopFolders()) {
        if (strMade.find(std::string(" ") + folder.pszName + " ") != std::string::npos)
            folders.push_back(folder.strPath);
    }
    return folders;
}

void RemoveSettings(const std::string& strFolder, Report* pReport)
{
    RemoveAutoStart(strFolder, pReport);
    if (ConfigHome().empty() || DataHome().empty()) {
        pReport->failed.push_back({ "HOME", Reason::NoHome });
        return;
    }

    const std::string strMenuEntry = DataHome() + "/" + kMenuEntry;
    if (const auto program = SettingIn(strMenuEntry, "TryExec"); program && NamesClientIn(*program, strFolder))
        RemoveOwnFile(strMenuEntry, pReport);

    const std::string strConfigFolder = ConfigHome() + "/" + kConfigFolder;
    const std::string strConfigFile = strConfigFolder + "/" + kConfigFile;
    if (const auto folder = SettingIn(strConfigFile, "Folder"); folder && *folder != strFolder) {
        pReport->kept.push_back({ strConfigFile, Reason::OtherClient, *folder });
        return;
    }
    RemoveConfigFolder(strConfigFolder, pReport);
    RemoveSettingsKeys(pReport);
    RemoveEmptyRegistry(pReport);
}

} // namespace client
