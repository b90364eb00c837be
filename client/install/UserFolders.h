// Where the client's programs find and leave things in the user's home, by the desktop's own rules.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace client {

// What an installation has outside its own folder.
inline constexpr char kConfigFolder[] = "Varnhal";                              // in ConfigHome()
inline constexpr char kConfigFile[] = "client.conf";                            // in the config folder
inline constexpr char kMadeFoldersSetting[] = "MadeFolders";                    // in the config file
inline constexpr char kRootFolder[] = "Varnhal";                                // in DataHome()
inline constexpr char kRegistryFolder[] = "registry";                           // in ConfigHome()
inline constexpr char kMenuEntry[] = "applications/merav-conferencing.desktop"; // in DataHome()

// In the installation's folder.
inline constexpr char kClientProgram[] = "PelkVarnhal.exe";
inline constexpr char kUninstallProgram[] = "Uninstall.exe";
inline constexpr char kUninstallOption[] = "--uninstall"; // has the client's program show Uninstall's window

// $XDG_CONFIG_HOME, else $HOME/.config. Empty: neither variable holds an absolute path.
std::string ConfigHome();

// $XDG_DATA_HOME, else $HOME/.local/share. Empty likewise.
std::string DataHome();

// The folder of the running program, without a separator at its end. Empty: the system does not tell.
std::string ProgramFolder();

// A folder of the desktop's that an installation makes when it is not there.
struct DesktopFolder {
    const char* pszName; // in the settings file
    std::string strPath;
};

// Those within others first.
std::vector<DesktopFolder> DesktopFolders();

// Names, with a space between, those of them that are not there, or hold nothing but what the installer has made by the
// time it runs SetupConfigure. Uninstall takes away no others.
std::string MadeFolders();

// Makes the folder and those above it. FALSE: one of them cannot be made.
[[nodiscard]] bool MakeFolders(const std::string& strFolder);

// The text of a settings file; nothing when it cannot be read, is no file or is far larger than any settings are.
std::optional<std::string> ReadSettingsFile(const std::string& strPath);

// Puts the text in the file, whole or not at all: it is written beside it, flushed and renamed over it. FALSE, with the
// fault in *pError: the old file, or none, is still there.
[[nodiscard]] bool ReplaceFile(const std::string& strPath, const std::string& strText, std::string* pError);

} // namespace client
