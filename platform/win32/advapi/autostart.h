// What makes a value under the Run key true on a Linux desktop: an entry in the user's autostart folder.
#pragma once

#include <string>
#include <string_view>

namespace win32 {

// Writes $XDG_CONFIG_HOME/autostart/<name>.desktop, whole or not at all, for a value's name and command line, both in
// the process's code page and ending at the first NUL. The command's program is a quoted text, or else the shortest
// beginning up to a blank that is a file, or else all of it; `\` in it separates like `/`. The entry keeps silent when
// the program is gone. 0 or -errno.
int write_autostart_entry(const std::string& name, std::string_view command);

// Removes the entry of that name; one that is not there is as good as removed. 0 or -errno.
int remove_autostart_entry(const std::string& name);

// The entry's file name: letters, digits, blanks and "-_." stand for themselves, every other byte for its "%XX", so
// that no two names meet in one file and none leaves the folder.
std::string autostart_file_name(std::string_view name);

} // namespace win32
