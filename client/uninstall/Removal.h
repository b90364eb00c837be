// The whole of an uninstallation, whoever asked for it.
#pragma once

#include "client/install/Progress.h"
#include "client/uninstall/InstalledFiles.h"
#include "client/uninstall/Report.h"

#include <functional>

namespace client {

// Removes settings and files of the installation in the folder. moved is called after each file, on the thread that
// calls this. A stop ends it before the next file; the settings go last but for the program itself, so that it can be
// begun again.
Report RemoveInstallation(const std::string& strFolder, const std::vector<ListedFile>& files, Progress* pProgress,
                          const std::stop_token& stop, const std::function<void()>& moved);

} // namespace client
