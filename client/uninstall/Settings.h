// Removing what an installation has outside its folder: the settings, the menu entry, the start with the system.
#pragma once

#include "client/uninstall/Report.h"

#include <string>

namespace client {

// Removes the autostart value and the menu entry if they start the client in strFolder, and the settings file and the
// registry keys unless the settings file names another folder: they belong to the client that was configured last. The
// registry itself goes when nothing is left in it, and so do folders that become empty. To be called while the client's
// files are still there, by which a path is recognised.
void RemoveSettings(const std::string& strFolder, Report* pReport);

} // namespace client
