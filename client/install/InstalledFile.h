// The files of an installation as they stand on the disk, compared with its list. No name and no symbolic link leads
// out of the installation's folder. The client checks itself by this, and Uninstall knows by it what is its own.
#pragma once

#include "client/install/Descriptor.h"
#include "client/install/FileList.h"

#include <stop_token>

namespace client {

// Both are empty when there is no such thing, or it is a link; a file may turn out to be something else.
Descriptor OpenFolder(int nParent, const std::string& strName);
Descriptor OpenFile(int nFolder, const std::string& strName);

// A file of the installation: its folder, opened without following a link, and its name in it.
struct Place {
    Descriptor folder; // empty: the folder is not there, or is a link
    std::string strName;
};
Place FindPlace(int nRoot, const std::string& strPath);

// The list of files in the folder. Nothing: it is missing or damaged, or names no file.
std::optional<std::vector<ListedFile>> ReadFileList(const std::string& strFolder);

enum class Condition { AsInstalled, Changed, Gone, Unreadable };

// By size and SHA-256. Something that is no file counts as changed; a stop while reading as unreadable.
Condition ConditionOf(const Place& place, const ListedFile& listed, const std::stop_token& stop = {});

} // namespace client
