#include "client/uninstall/InstalledFiles.h"

#include "client/install/UserFolders.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <set>

#include <fcntl.h>
#include <sys/stat.h>

namespace client {

namespace {

constexpr char kUpdateFolder[] = "Update";
constexpr char kPayloadCopy[] = "TeskSetup";

} // namespace

std::optional<std::vector<ListedFile>> ReadOwnFileList(const std::string& strFolder)
{
    std::optional<std::vector<ListedFile>> files = ReadFileList(strFolder);
    const auto bOurs = [](const ListedFile& listed) { return listed.strName == kUninstallProgram; };
    if (files && std::none_of(files->begin(), files->end(), bOurs))
        return std::nullopt; // we would not know where we are
    return files;
}

namespace {

// Removes a file, or with AT_REMOVEDIR a folder; a folder that is not empty stays without complaint.
bool Remove(int nFolder, const std::string& strName, int nFlags, const std::string& strPath, Report* pReport)
{
    if (::unlinkat(nFolder, strName.c_str(), nFlags) == 0)
        return true;
    if (errno != ENOENT && errno != ENOTEMPTY && errno != EEXIST)
        pReport->failed.push_back({ strPath, Reason::Failed, std::strerror(errno), errno });
    return false;
}

void RemoveFile(int nRoot, const ListedFile& listed, std::set<std::string>* pChanged, Report* pReport)
{
    const Place place = FindPlace(nRoot, listed.strName);
    switch (ConditionOf(place, listed)) {
    case Condition::AsInstalled:
        pReport->nRemoved += Remove(place.folder.Get(), place.strName, 0, listed.strName, pReport) ? 1 : 0;
        break;
    case Condition::Changed:
    case Condition::Unreadable: // whether it was changed cannot be told
        pChanged->insert(listed.strName);
        break;
    case Condition::Gone:
        break; // the user was faster
    }
}

// The folders that the list and its files lie in, and those above them; the deepest first.
std::vector<std::string> FoldersOf(const std::vector<ListedFile>& files)
{
    std::set<std::string> folders;
    const auto addFoldersOf = [&](const std::string& strName) {
        for (std::size_t n = strName.rfind('/'); n != std::string::npos && n > 0; n = strName.rfind('/', n - 1))
            folders.insert(strName.substr(0, n));
    };
    addFoldersOf(kFileListName);
    for (const ListedFile& file : files)
        addFoldersOf(file.strName);
    return { folders.rbegin(), folders.rend() }; // "a/b" sorts behind "a"
}

// Names everything that is left below the folder, files of the installation apart from what was never part of it.
void NameLeftovers(const std::string& strFolder, const std::set<std::string>& changed, Report* pReport)
{
    std::vector<std::string> left;
    std::error_code error;
    const std::filesystem::path root = strFolder;
    for (auto it = std::filesystem::recursive_directory_iterator(root, error);
         it != std::filesystem::recursive_directory_iterator(); it.increment(error)) {
        if (error)
            break; // an unreadable folder: what was found so far is still true
        const bool bFolder = it->is_directory(error) && !it->is_symlink(error);
        if (!bFolder || std::filesystem::is_empty(it->path(), error))
            left.push_back(it->path().string());
    }
    std::sort(left.begin(), left.end());
    for (const std::string& strPath : left) {
        const bool bChanged = changed.contains(strPath.substr(strFolder.size() + 1));
        pReport->kept.push_back({ strPath, bChanged ? Reason::Changed : Reason::NotInstalled });
    }
}

// The installer's copy of the payload beside the client's folder: a cabinet, else it is not ours.
void RemovePayloadCopy(int nParent, const std::string& strParent, Report* pReport)
{
    const Descriptor folder = OpenFolder(nParent, kUpdateFolder);
    if (!folder)
        return;
    const std::string strPath = strParent + "/" + kUpdateFolder + "/" + kPayloadCopy;
    char signature[4] = {};
    const Descriptor file = OpenFile(folder.Get(), kPayloadCopy);
    if (file && ::read(file.Get(), signature, sizeof signature) == sizeof signature &&
        std::memcmp(signature, "MSCF", sizeof signature) == 0)
        (void)Remove(folder.Get(), kPayloadCopy, 0, strPath, pReport); // a failure stands in the report
    if (!Remove(nParent, kUpdateFolder, AT_REMOVEDIR, strParent + "/" + kUpdateFolder, pReport))
        NameLeftovers(strParent + "/" + kUpdateFolder, {}, pReport);
}

} // namespace

void RemoveInstalledFiles(const std::string& strFolder, const std::vector<ListedFile>& files,
                          const std::function<bool()>& goOn, Report* pReport)
{
    const Descriptor root = OpenFolder(AT_FDCWD, strFolder);
    if (!root) {
        pReport->failed.push_back({ strFolder, Reason::Failed, std::strerror(errno), errno });
        return;
    }
    // The program and its list go last: until then, what was broken off can be begun again.
    std::vector<ListedFile> ordered = files;
    std::stable_partition(ordered.begin(), ordered.end(),
                          [](const ListedFile& file) { return file.strName != kUninstallProgram; });
    std::set<std::string> changed;
    for (const ListedFile& file : ordered) {
        RemoveFile(root.Get(), file, &changed, pReport);
        if (!goOn() && &file != &ordered.back()) {
            pReport->bStopped = true;
            return;
        }
    }
    if (const Place list = FindPlace(root.Get(), kFileListName); list.folder)
        pReport->nRemoved += Remove(list.folder.Get(), list.strName, 0, kFileListName, pReport) ? 1 : 0;
    for (const std::string& strName : FoldersOf(files)) {
        if (const Place place = FindPlace(root.Get(), strName); place.folder)
            (void)Remove(place.folder.Get(), place.strName, AT_REMOVEDIR, strName, pReport); // may hold what is kept
    }

    const std::filesystem::path path = strFolder;
    const std::string strParent = path.parent_path().string();
    const Descriptor parent = OpenFolder(AT_FDCWD, strParent);
    if (!parent)
        return;
    if (!Remove(parent.Get(), path.filename().string(), AT_REMOVEDIR, strFolder, pReport))
        NameLeftovers(strFolder, changed, pReport);
    if (path.parent_path().filename() != kRootFolder)
        return; // the client was moved: what lies around it is not ours
    RemovePayloadCopy(parent.Get(), strParent, pReport);
    (void)::rmdir(strParent.c_str()); // stays when anything is left in it
}

} // namespace client
