#include "platform/win32/kernel/desktop_folders.h"

#include "platform/win32/kernel/file_system.h"

#include <cerrno>
#include <cstdlib>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace win32 {

namespace {

constexpr mode_t kUserAlone = 0700;

std::optional<std::string> absolute_path(const char* text)
{
    if (!text || *text != '/')
        return std::nullopt; // the desktop's rules: what is not absolute is as good as unset
    std::string path = text;
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

std::optional<std::string> account_home()
{
    struct passwd account {};
    struct passwd* found = nullptr;
    char texts[4096];
    if (::getpwuid_r(::getuid(), &account, texts, sizeof texts, &found) != 0 || !found)
        return std::nullopt;
    return absolute_path(found->pw_dir);
}

std::optional<std::string> folder(const char* variable, const char* below_home)
{
    if (std::optional<std::string> path = absolute_path(std::getenv(variable)))
        return path;
    std::optional<std::string> path = home_folder();
    if (path)
        path->append(*path == "/" ? below_home + 1 : below_home);
    return path;
}

} // namespace

std::optional<std::string> home_folder()
{
    std::optional<std::string> path = absolute_path(std::getenv("HOME"));
    return path ? path : account_home();
}

std::optional<std::string> data_folder()
{
    return folder("XDG_DATA_HOME", "/.local/share");
}

std::optional<std::string> config_folder()
{
    return folder("XDG_CONFIG_HOME", "/.config");
}

int make_folder_path(const std::string& path)
{
    struct stat info {};
    if (file_system().status(path, info) == 0)
        return S_ISDIR(info.st_mode) ? 0 : -ENOTDIR;
    int result = 0;
    for (std::size_t end = path.find('/', 1); result == 0 || result == -EEXIST; end = path.find('/', end + 1)) {
        result = file_system().make_directory(path.substr(0, end), kUserAlone);
        if (end == std::string::npos)
            break;
    }
    if (file_system().status(path, info) == 0 && S_ISDIR(info.st_mode))
        return 0; // others may have made it meanwhile
    return result == 0 || result == -EEXIST ? -ENOTDIR : result;
}

} // namespace win32
