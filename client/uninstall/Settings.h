// Removing what an installation has outside its folder: the settings, the menu entry, the start with the system.
#pragma once

#include "client/uninstall/Report.h"

#include <string>
#include <vector>

namespace client {

// The folders of the desktop's that the installation in strFolder has made, those within others first. To be asked
// before the settings are removed; the folders may go, when they are empty, after everything else.
std::vector<std::string> FoldersToRemove(const std::string& strFolder);

// Removes the autostart value and the menu entry if they start the client in strFolder, and the settings file and the
// registry keys unless the settings file names another folder: they belong to the client that was configured last. The
// registry itself goes when nothing is left in it. To be called while the client's folder is still there, by which a
// path is recognised.
void RemoveSettings(const std::string& strFolder, Report* pReport);

} // namespace client
