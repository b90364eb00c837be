// The user's folders by the desktop's own rules. Absolute paths of the file system, without a trailing separator; read
// from the environment at each call. Nothing when there is none: no home at all.
#pragma once

#include <optional>
#include <string>

namespace win32 {

// $HOME when it is absolute, else the home in the user's account.
std::optional<std::string> home_folder();
// $XDG_DATA_HOME when it is absolute, else $HOME/.local/share.
std::optional<std::string> data_folder();
// $XDG_CONFIG_HOME when it is absolute, else $HOME/.config.
std::optional<std::string> config_folder();

// Makes the folder and those above it that are missing, for the user alone as the desktop's rules say. 0 when it is a
// folder afterwards, else -errno.
int make_folder_path(const std::string& path);

} // namespace win32
