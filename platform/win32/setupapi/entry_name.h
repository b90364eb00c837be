// Which names of a cabinet's entries stay inside the folder they are unpacked to.
#pragma once

#include <string_view>

namespace win32 {

// Whether a name, put behind any folder, names a file in that folder or below. Every `\` and `/` separates, as in path
// texts; a component may not be empty, "." or "..", nor hold a ':', so a leading separator, a drive and a name that
// ends as a folder are refused with the rest.
bool is_inside_name(std::string_view name);

} // namespace win32
