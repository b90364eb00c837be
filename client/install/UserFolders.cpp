#include "client/install/UserFolders.h"

#include "client/install/Descriptor.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>

namespace client {

namespace {

std::string AbsoluteVariable(const char* pszName)
{
    const char* pszValue = std::getenv(pszName);
    return pszValue && *pszValue == '/' ? pszValue : ""; // a relative one is to be ignored (base directory rules)
}

std::string HomeFolder(const char* pszVariable, const char* pszBelowHome)
{
    if (std::string strFolder = AbsoluteVariable(pszVariable); !strFolder.empty())
        return strFolder;
    const std::string strHome = AbsoluteVariable("HOME");
    return strHome.empty() ? strHome : strHome + "/" + pszBelowHome;
}

} // namespace

std::string ConfigHome()
{
    return HomeFolder("XDG_CONFIG_HOME", ".config");
}

std::string DataHome()
{
    return HomeFolder("XDG_DATA_HOME", ".local/share");
}

std::string ProgramFolder()
{
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

std::vector<DesktopFolder> DesktopFolders()
{
    const std::string strConfigHome = ConfigHome();
    const std::string strDataHome = DataHome();
    std::vector<DesktopFolder> folders = {
        { "autostart", strConfigHome + "/autostart" },
        { "config", strConfigHome },
        { "applications", strDataHome + "/applications" },
        { "data", strDataHome },
    };
    const std::string strLocal = AbsoluteVariable("HOME") + "/.local";
    if (strDataHome == strLocal + "/share")
        folders.push_back({ "local", strLocal });
    return folders;
}

namespace {

// Whether the folder is not there, or holds nothing but entries of these names.
bool HoldsOnly(const std::string& strFolder, std::initializer_list<std::string_view> names)
{
    std::error_code error;
    for (auto it = std::filesystem::directory_iterator(strFolder, error); it != std::filesystem::directory_iterator();
         it.increment(error)) {
        if (std::find(names.begin(), names.end(), it->path().filename().string()) == names.end())
            return false;
    }
    return !error || error == std::errc::no_such_file_or_directory;
}

} // namespace

std::string MadeFolders()
{
    std::string strMade;
    for (const DesktopFolder& folder : DesktopFolders()) {
        const std::string_view strName = folder.pszName;
        std::error_code error;
        const bool bMade = strName == "config"  ? HoldsOnly(folder.strPath, { kRegistryFolder })
                           : strName == "data"  ? HoldsOnly(folder.strPath, { kRootFolder })
                           : strName == "local" ? HoldsOnly(folder.strPath, { "share" }) &&
                                                      HoldsOnly(folder.strPath + "/share", { kRootFolder })
                                                : !std::filesystem::exists(folder.strPath, error);
        if (bMade)
            strMade += (strMade.empty() ? "" : " ") + std::string(strName);
    }
    return strMade;
}

bool MakeFolders(const std::string& strFolder)
{
    std::error_code error;
    std::filesystem::create_directories(strFolder, error);
    return std::filesystem::is_directory(strFolder, error);
}

std::optional<std::string> ReadSettingsFile(const std::string& strPath)
{
    constexpr off_t kMostBytes = 1 << 16;
    // O_NONBLOCK: a pipe in the file's place must not hold us
    const Descriptor file(::open(strPath.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat info {};
    if (!file || ::fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode) || info.st_size > kMostBytes)
        return std::nullopt;
    std::string strText(static_cast<std::size_t>(info.st_size), '\0');
    const ssize_t nRead = TEMP_FAILURE_RETRY(::read(file.Get(), strText.data(), strText.size()));
    if (nRead < 0)
        return std::nullopt;
    strText.resize(static_cast<std::size_t>(nRead));
    return strText;
}

namespace {

bool WriteAll(int fd, const std::string& strText)
{
    for (std::size_t nWritten = 0; nWritten < strText.size();) {
        const ssize_t n = TEMP_FAILURE_RETRY(::write(fd, strText.data() + nWritten, strText.size() - nWritten));
        if (n < 0)
            return false;
        nWritten += static_cast<std::size_t>(n);
    }
    return true;
}

} // namespace

bool ReplaceFile(const std::string& strPath, const std::string& strText, std::string* pError)
{
    constexpr mode_t kMode = 0644;
    std::string strTemporary = strPath + ".XXXXXX";
    const Descriptor file(::mkostemp(strTemporary.data(), O_CLOEXEC));
    if (file && WriteAll(file.Get(), strText) && ::fchmod(file.Get(), kMode) == 0 && ::fsync(file.Get()) == 0 &&
        ::rename(strTemporary.c_str(), strPath.c_str()) == 0)
        return true;
    *pError = strPath + ": " + std::strerror(errno);
    if (file)
        (void)::unlink(strTemporary.c_str()); // the failure that is reported is the one before
    return false;
}

} // namespace client
