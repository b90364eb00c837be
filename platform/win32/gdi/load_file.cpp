#include "platform/win32/gdi/load_file.h"

#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

#include <memory>

namespace win32 {

namespace {

constexpr DWORD kLargestFile = DWORD{ 256 } << 20;

struct Close {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using UniqueHandle = std::unique_ptr<void, Close>;

} // namespace

std::optional<std::vector<std::byte>> load_file(LPCSTR path)
{
    const HANDLE opened =
        CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return std::nullopt;
    const UniqueHandle file(opened);
    DWORD high = 0;
    const DWORD size = GetFileSize(file.get(), &high);
    if (high != 0 || size > kLargestFile)
        return fail(std::nullopt, ERROR_FILE_TOO_LARGE);
    std::vector<std::byte> bytes(size);
    DWORD read = 0;
    if (!ReadFile(file.get(), bytes.data(), size, &read, nullptr))
        return std::nullopt;
    bytes.resize(read);
    return bytes;
}

std::span<const std::byte> find_resource(HINSTANCE module, LPCSTR name, LPCSTR type)
{
    const HRSRC resource = FindResourceA(module, name, type);
    if (!resource)
        return {};
    const void* bytes = LockResource(LoadResource(module, resource));
    if (!bytes)
        return {};
    return { static_cast<const std::byte*>(bytes), SizeofResource(module, resource) };
}

} // namespace win32
