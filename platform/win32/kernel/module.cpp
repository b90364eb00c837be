// The program as a module, and the floor's libraries as modules to be asked for at run time.
#include "platform/win32/kernel/module.h"
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/module_exports.h"
#include "winbase.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

#include <unistd.h>

namespace win32 {

namespace {

// Filled while the program's static objects are made, by one thread, and only read from then on.
constinit const ModuleExports* first_module = nullptr;

char lower(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool begins_with_any_case(std::string_view text, std::string_view lower_case)
{
    return text.size() <= lower_case.size() &&
           std::equal(text.begin(), text.end(), lower_case.begin(), [](char a, char b) { return lower(a) == b; });
}

} // namespace

ModuleExports::ModuleExports(std::string_view name, std::span<const Export> exports)
    : name_(name), exports_(exports), next_(std::exchange(first_module, this))
{}

FARPROC ModuleExports::find(std::string_view function) const
{
    const auto found = std::ranges::find(exports_, function, &Export::name);
    return found == exports_.end() ? nullptr : found->function;
}

HMODULE ModuleExports::handle() const
{
    return reinterpret_cast<HMODULE>(const_cast<ModuleExports*>(this));
}

const ModuleExports* ModuleExports::named(std::string_view name)
{
    constexpr std::string_view kEnding = ".dll";
    for (const ModuleExports* module = first_module; module; module = module->next_) {
        if (begins_with_any_case(name, module->name_) &&
            (name.size() == module->name_.size() || name.size() + kEnding.size() == module->name_.size()))
            return module;
    }
    return nullptr;
}

const ModuleExports* ModuleExports::of(HMODULE handle)
{
    for (const ModuleExports* module = first_module; module; module = module->next_) {
        if (module->handle() == handle)
            return module;
    }
    return nullptr;
}

HMODULE program_module()
{
    return reinterpret_cast<HMODULE>(std::uintptr_t{ 0x400000 });
}

bool is_program_module(HMODULE module)
{
    return !module || module == program_module();
}

} // namespace win32

using namespace win32;

HMODULE WINAPI GetModuleHandleA(LPCSTR name)
{
    return name ? LoadLibraryA(name) : program_module();
}

DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD size)
{
    if (!is_program_module(module) || !buffer || size == 0)
        return fail(DWORD{ 0 }, is_program_module(module) ? ERROR_INVALID_PARAMETER : ERROR_INVALID_HANDLE);
    char path[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
    if (length < 0)
        return fail(DWORD{ 0 }, error_from_errno(errno));
    const std::size_t copied = std::min<std::size_t>(static_cast<std::size_t>(length), size - 1);
    std::memcpy(buffer, path, copied);
    buffer[copied] = '\0';
    if (copied < static_cast<std::size_t>(length))
        return fail(size, ERROR_INSUFFICIENT_BUFFER);
    return static_cast<DWORD>(copied);
}

HMODULE WINAPI LoadLibraryA(LPCSTR name)
{
    const ModuleExports* module = name ? ModuleExports::named(name) : nullptr;
    return module ? module->handle() : fail(HMODULE{}, name ? ERROR_MOD_NOT_FOUND : ERROR_INVALID_PARAMETER);
}

BOOL WINAPI FreeLibrary(HMODULE module)
{
    // the libraries are part of the program: there is nothing to unload and nothing to count
    return ModuleExports::of(module) ? TRUE : fail(FALSE, ERROR_MOD_NOT_FOUND);
}

FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name)
{
    const ModuleExports* exports = ModuleExports::of(module);
    if (!exports)
        return fail(FARPROC{}, ERROR_MOD_NOT_FOUND);
    const FARPROC function = name && !IS_INTRESOURCE(name) ? exports->find(name) : nullptr;
    return function ? function : fail(function, ERROR_PROC_NOT_FOUND);
}
