// Starting programs.
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/native_path.h"
#include "platform/win32/kernel/process.h"
#include "shellapi.h"

#include <algorithm>
#include <climits>
#include <string_view>

#include <strings.h>
#include <unistd.h>

namespace win32 {

namespace {

struct InstanceRow {
    DWORD error;
    int instance;
};

// What the older result in hInstApp says for a last error; 0, out of resources, for the rest.
constexpr InstanceRow kInstances[] = {
    { ERROR_FILE_NOT_FOUND, SE_ERR_FNF },
    { ERROR_PATH_NOT_FOUND, SE_ERR_PNF },
    { ERROR_FILENAME_EXCED_RANGE, SE_ERR_PNF },
    { ERROR_DIRECTORY, SE_ERR_PNF },
    { ERROR_ACCESS_DENIED, SE_ERR_ACCESSDENIED },
    { ERROR_NOT_ENOUGH_MEMORY, SE_ERR_OOM },
    { ERROR_BAD_EXE_FORMAT, static_cast<int>(ERROR_BAD_FORMAT) },
    { ERROR_SHARING_VIOLATION, SE_ERR_SHARE },
    { ERROR_NO_ASSOCIATION, SE_ERR_NOASSOC },
};

constexpr std::uintptr_t kStarted = 42; // anything above 32

int instance_for(DWORD error)
{
    const auto* row = std::ranges::find(kInstances, error, &InstanceRow::error);
    return row == std::end(kInstances) ? 0 : row->instance;
}

// Divides a parameter text at blanks and tabs; quotation marks keep a stretch together and are dropped.
std::vector<std::string> divide_parameters(std::string_view text)
{
    std::vector<std::string> arguments;
    bool quoted = false;
    bool inside = false; // also an empty quoted one is an argument
    for (const char letter : text) {
        const bool divides = !quoted && (letter == ' ' || letter == '\t');
        if (!divides && !inside)
            arguments.emplace_back();
        inside = !divides;
        if (letter == '"')
            quoted = !quoted;
        else if (inside)
            arguments.back() += letter;
    }
    return arguments;
}

// The path as it means now, before the program's own folder is entered.
std::string absolute(const std::string& path)
{
    char current[PATH_MAX];
    if (path.front() == '/' || !::getcwd(current, sizeof current))
        return path;
    return std::string(current) + "/" + path;
}

DWORD describe(const SHELLEXECUTEINFOA& info, ProgramStart& start)
{
    if (info.lpVerb && *info.lpVerb && ::strcasecmp(info.lpVerb, "open") != 0)
        return ERROR_NO_ASSOCIATION;
    if (const DWORD error = native_path(info.lpFile, start.path); error != ERROR_SUCCESS)
        return error;
    if (info.lpParameters)
        start.arguments = divide_parameters(info.lpParameters);
    if (!info.lpDirectory || !*info.lpDirectory)
        return ERROR_SUCCESS;
    start.path = absolute(start.path);
    if (const DWORD error = native_path(info.lpDirectory, start.directory); error != ERROR_SUCCESS)
        return error;
    const DWORD attributes = GetFileAttributesA(info.lpDirectory);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) ? ERROR_SUCCESS
                                                                                            : ERROR_DIRECTORY;
}

DWORD execute(const SHELLEXECUTEINFOA& info, std::shared_ptr<ProcessObject>& process)
{
    ProgramStart start;
    if (const DWORD error = describe(info, start); error != ERROR_SUCCESS)
        return error;
    const int error = start_program(start, process);
    return error == 0 ? ERROR_SUCCESS : error_for_path(error, start.path);
}

} // namespace

} // namespace win32

using namespace win32;

BOOL WINAPI ShellExecuteExA(SHELLEXECUTEINFOA* info)
{
    if (!info || info->cbSize != sizeof(SHELLEXECUTEINFOA))
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    info->hProcess = nullptr;
    std::shared_ptr<ProcessObject> process;
    if (const DWORD error = execute(*info, process); error != ERROR_SUCCESS) {
        info->hInstApp = reinterpret_cast<HINSTANCE>(static_cast<std::uintptr_t>(instance_for(error)));
        return fail(FALSE, error);
    }
    info->hInstApp = reinterpret_cast<HINSTANCE>(kStarted);
    if (info->fMask & SEE_MASK_NOCLOSEPROCESS)
        info->hProcess = open_handle(std::move(process));
    return TRUE;
}
