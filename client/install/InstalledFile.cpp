#include "client/install/InstalledFile.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace client {

Descriptor OpenFolder(int nParent, const std::string& strName)
{
    return Descriptor(::openat(nParent, strName.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

Descriptor OpenFile(int nFolder, const std::string& strName)
{
    // O_NONBLOCK: something that is no file any more must not hold us
    return Descriptor(::openat(nFolder, strName.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
}

Place FindPlace(int nRoot, const std::string& strPath)
{
    Place place{ OpenFolder(nRoot, "."), strPath };
    for (std::size_t nEnd = 0; place.folder && (nEnd = place.strName.find('/')) != std::string::npos;) {
        place.folder = OpenFolder(place.folder.Get(), place.strName.substr(0, nEnd));
        place.strName.erase(0, nEnd + 1);
    }
    return place;
}

std::optional<std::vector<ListedFile>> ReadFileList(const std::string& strFolder)
{
    const Descriptor root = OpenFolder(AT_FDCWD, strFolder);
    if (!root)
        return std::nullopt;
    const Place place = FindPlace(root.Get(), kFileListName);
    const Descriptor file = place.folder ? OpenFile(place.folder.Get(), place.strName) : Descriptor();
    struct stat info {};
    if (!file || ::fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode) ||
        info.st_size > static_cast<off_t>(kMaxFileListBytes))
        return std::nullopt;
    std::string strText(static_cast<std::size_t>(info.st_size), '\0');
    std::size_t nRead = 0;
    while (nRead < strText.size()) {
        const ssize_t n = TEMP_FAILURE_RETRY(::read(file.Get(), strText.data() + nRead, strText.size() - nRead));
        if (n <= 0)
            return std::nullopt;
        nRead += static_cast<std::size_t>(n);
    }
    std::optional<std::vector<ListedFile>> files = ParseFileList(strText);
    return files && files->empty() ? std::nullopt : files;
}

Condition ConditionOf(const Place& place, const ListedFile& listed, const std::stop_token& stop)
{
    struct stat info {};
    if (!place.folder || ::fstatat(place.folder.Get(), place.strName.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0)
        return Condition::Gone;
    if (!S_ISREG(info.st_mode) || info.st_size < 0 || static_cast<std::uint64_t>(info.st_size) != listed.nSize)
        return Condition::Changed;
    const Descriptor file = OpenFile(place.folder.Get(), place.strName);
    const std::optional<std::string> strSha256 = file ? Sha256OfFile(file.Get(), stop) : std::nullopt;
    if (!strSha256)
        return Condition::Unreadable;
    return strSha256 == listed.strSha256 ? Condition::AsInstalled : Condition::Changed;
}

} // namespace client
