// The user's folders by their Windows numbers.
#include "platform/win32/kernel/desktop_folders.h"
#include "platform/win32/kernel/last_error.h"
#include "shlobj.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>

namespace win32 {

namespace {

struct FolderRow {
    int id;
    std::optional<std::string> (*base)();
    const char* below;
    bool always_exists;
};

constexpr FolderRow kFolders[] = {
    { CSIDL_PROGRAMS, data_folder, "/applications", false },
    { CSIDL_APPDATA, config_folder, "", true },
    { CSIDL_LOCAL_APPDATA, data_folder, "", true },
    { CSIDL_PROFILE, home_folder, "", false },
};

// A path under which nothing can be made: callers that go on after a failure come to no harm and do none.
constexpr const char* kNowhere = "/dev/null";

} // namespace

} // namespace win32

using namespace win32;

BOOL WINAPI SHGetSpecialFolderPathA(HWND, LPSTR path, int folder, BOOL create)
{
    if (!path)
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    *path = '\0';
    const auto* row = std::ranges::find(kFolders, folder & ~CSIDL_FLAG_CREATE, &FolderRow::id);
    if (row == std::end(kFolders))
        return fail(FALSE, ERROR_INVALID_PARAMETER);

    std::optional<std::string> found = row->base();
    if (found)
        found->append(row->below);
    // a `\` in the folder's name would read as a separator and lead somewhere else
    if (!found || found->size() >= static_cast<std::size_t>(MAX_PATH) || found->find('\\') != std::string::npos) {
        std::strcpy(path, kNowhere);
        return fail(FALSE, ERROR_PATH_NOT_FOUND);
    }
    std::memcpy(path, found->c_str(), found->size() + 1);
    if (!row->always_exists && !create && !(folder & CSIDL_FLAG_CREATE))
        return (GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES) ? TRUE : FALSE;
    if (const int error = make_folder_path(*found); error != 0)
        return fail(FALSE, error_from_errno(error));
    return TRUE;
}
