// Removing what was installed in the client's folder, and nothing else: no name and no symbolic link leads out of it.
#pragma once

#include "client/install/InstalledFile.h"
#include "client/uninstall/Report.h"

#include <functional>

namespace client {

// The list of files in the folder. Nothing: it is missing, damaged, or not the list of an installation that this
// program is part of.
std::optional<std::vector<ListedFile>> ReadOwnFileList(const std::string& strFolder);

// Removes every listed file that is as it was installed, the list, the folders that this leaves empty, the copy of the
// payload in the folder beside strFolder, and the folders above if nothing else is in them. What stays is named in the
// report: listed files that the user changed, and everything that was not installed. goOn is asked after each file;
// after a no, nothing more is removed.
void RemoveInstalledFiles(const std::string& strFolder, const std::vector<ListedFile>& files,
                          const std::function<bool()>& goOn, Report* pReport);

} // namespace client
