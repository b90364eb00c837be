// What SetupConfigure does for a user: the client's settings file and its entry in the desktop's menu.
#pragma once

#include <string>

namespace client {

// The text of the settings file for a client installed in strFolder, which made those folders (UserFolders.h). What the
// user's own file strOld says of anything but the client's folder stays; settings it does not have are added with their
// defaults.
std::string ConfigText(const std::string& strFolder, const std::string& strMadeFolders, const std::string& strOld);

// The text of the menu entry that starts the client in strFolder, and falls silent when the client is gone. Empty: the
// folder's name holds a control character, which no entry can say.
std::string MenuEntryText(const std::string& strFolder);

// Writes both for the client in strFolder. FALSE, with the fault in *pError: at least one of them is as it was before.
[[nodiscard]] bool ConfigureClient(const std::string& strFolder, std::string* pError);

} // namespace client
