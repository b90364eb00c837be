#include "platform/win32/advapi/hive.h"
#include "platform/win32/advapi/key_path.h"
#include "platform/win32/kernel/handle_table.h"
#include "platform/win32/kernel/never_destroyed.h"
#include "winbase.h"
#include "winreg.h"

#include <memory>
#include <string>
#include <utility>

namespace win32 {

namespace {

constexpr std::uint8_t kKeyTag = 0x30;

struct OpenKey {
    std::string path; // folded
    REGSAM access = KEY_ALL_ACCESS;
};

HandleTable<OpenKey>& keys()
{
    static NeverDestroyed<HandleTable<OpenKey>> table(kKeyTag);
    return table.get();
}

// The key behind a handle, or null.
std::shared_ptr<const OpenKey> key_of(HKEY handle)
{
    if (handle == HKEY_CURRENT_USER)
        return std::make_shared<OpenKey>();
    return keys().find(reinterpret_cast<std::uintptr_t>(handle));
}

// The same if the handle may do what is asked; else `status` says why not.
std::shared_ptr<const OpenKey> key_with(HKEY handle, REGSAM access, LSTATUS& status)
{
    std::shared_ptr<const OpenKey> key = key_of(handle);
    if (key && (key->access & access) == access)
        return key;
    status = key ? ERROR_ACCESS_DENIED : ERROR_INVALID_HANDLE;
    return nullptr;
}

std::string below(const std::string& path, const std::vector<std::string>& components)
{
    std::string result = path;
    for (const std::string& component : components) {
        if (!result.empty())
            result += '\\';
        result += folded(component);
    }
    return result;
}

LSTATUS open_handle(std::string path, REGSAM access, PHKEY result)
{
    *result = reinterpret_cast<HKEY>(keys().add(std::make_shared<OpenKey>(OpenKey{ std::move(path), access })));
    return ERROR_SUCCESS;
}

std::string text_of(LPCSTR text)
{
    return text ? text : "";
}

// Hands a value out as the registry does: type and size always, bytes if asked for and there is room.
LSTATUS give_value(const RegistryValue& value, LPDWORD type, LPBYTE data, LPDWORD size)
{
    if (type)
        *type = value.type;
    if (!size)
        return ERROR_SUCCESS;
    const DWORD room = std::exchange(*size, static_cast<DWORD>(value.bytes.size()));
    if (!data)
        return ERROR_SUCCESS;
    if (room < value.bytes.size())
        return ERROR_MORE_DATA;
    value.bytes.copy(reinterpret_cast<char*>(data), room);
    return ERROR_SUCCESS;
}

// Copies a name with its terminator; *size counts without it on return. Too small a buffer is left alone.
LSTATUS give_name(const std::string& given, LPSTR name, LPDWORD size)
{
    if (*size <= given.size())
        return ERROR_MORE_DATA;
    given.copy(name, given.size());
    name[given.size()] = '\0';
    *size = static_cast<DWORD>(given.size());
    return ERROR_SUCCESS;
}

} // namespace

} // namespace win32

using namespace win32;

LSTATUS WINAPI RegOpenKeyExA(HKEY key, LPCSTR sub_key, DWORD options, REGSAM access, PHKEY result)
{
    if (!result || options != 0)
        return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    const auto from = key_of(key);
    if (!from)
        return ERROR_INVALID_HANDLE;
    const auto components = split_key_path(sub_key);
    if (!components)
        return ERROR_BAD_PATHNAME;
    std::string path = below(from->path, *components);
    const LSTATUS status = current_user_hive().find_key(path);
    return status == ERROR_SUCCESS ? open_handle(std::move(path), access, result) : status;
}

LSTATUS WINAPI RegCreateKeyA(HKEY key, LPCSTR sub_key, PHKEY result)
{
    if (!result)
        return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    const auto components = split_key_path(sub_key);
    if (!components)
        return ERROR_BAD_PATHNAME;
    LSTATUS status = ERROR_SUCCESS;
    const auto from = key_with(key, components->empty() ? 0 : KEY_CREATE_SUB_KEY, status);
    if (from)
        status = current_user_hive().create_key(from->path, *components);
    return status == ERROR_SUCCESS ? open_handle(below(from->path, *components), KEY_ALL_ACCESS, result) : status;
}

LSTATUS WINAPI RegCloseKey(HKEY key)
{
    const bool known = key == HKEY_CURRENT_USER || keys().remove(reinterpret_cast<std::uintptr_t>(key));
    return known ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

LSTATUS WINAPI RegSetValueExA(HKEY key, LPCSTR name, DWORD, DWORD type, const BYTE* data, DWORD size)
{
    LSTATUS status = ERROR_SUCCESS;
    const auto opened = key_with(key, KEY_SET_VALUE, status);
    if (!opened)
        return status;
    RegistryValue value{ text_of(name), type, {} };
    if ((!data && size > 0) || value.name.size() > kMostValueNameBytes)
        return ERROR_INVALID_PARAMETER;
    value.bytes.assign(reinterpret_cast<const char*>(data), size);
    return current_user_hive().set_value(opened->path, value);
}

LSTATUS WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size)
{
    if (data && !size)
        return ERROR_INVALID_PARAMETER;
    LSTATUS status = ERROR_SUCCESS;
    const auto opened = key_with(key, KEY_QUERY_VALUE, status);
    RegistryValue value;
    if (opened)
        status = current_user_hive().find_value(opened->path, text_of(name), value);
    return status == ERROR_SUCCESS ? give_value(value, type, data, size) : status;
}

LSTATUS WINAPI RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD name_size, LPDWORD, LPDWORD type, LPBYTE data,
                             LPDWORD size)
{
    if (!name || !name_size || (data && !size))
        return ERROR_INVALID_PARAMETER;
    LSTATUS status = ERROR_SUCCESS;
    const auto opened = key_with(key, KEY_QUERY_VALUE, status);
    RegistryValue value;
    if (opened)
        status = current_user_hive().value_at(opened->path, index, value);
    if (status == ERROR_SUCCESS)
        status = give_name(value.name, name, name_size);
    return status == ERROR_SUCCESS ? give_value(value, type, data, size) : status;
}

LSTATUS WINAPI RegEnumKeyExA(HKEY key, DWORD index, LPSTR name, LPDWORD name_size, LPDWORD, LPSTR class_name,
                             LPDWORD class_size, PFILETIME last_write)
{
    if (!name || !name_size || (class_name && !class_size))
        return ERROR_INVALID_PARAMETER;
    LSTATUS status = ERROR_SUCCESS;
    const auto opened = key_with(key, KEY_ENUMERATE_SUB_KEYS, status);
    RegistrySubKey sub_key;
    if (opened)
        status = current_user_hive().sub_key_at(opened->path, index, sub_key);
    if (status == ERROR_SUCCESS)
        status = give_name(sub_key.name, name, name_size);
    if (status == ERROR_SUCCESS && class_name)
        status = give_name("", class_name, class_size);
    else if (status == ERROR_SUCCESS && class_size)
        *class_size = 0;
    if (status == ERROR_SUCCESS && last_write)
        *last_write = { static_cast<DWORD>(sub_key.written), static_cast<DWORD>(sub_key.written >> 32) };
    return status;
}

LSTATUS WINAPI RegDeleteValueA(HKEY key, LPCSTR name)
{
    LSTATUS status = ERROR_SUCCESS;
    const auto opened = key_with(key, KEY_SET_VALUE, status);
    return opened ? current_user_hive().delete_value(opened->path, text_of(name)) : status;
}

LSTATUS WINAPI RegDeleteKeyA(HKEY key, LPCSTR sub_key)
{
    const auto from = key_of(key);
    if (!from)
        return ERROR_INVALID_HANDLE;
    const auto components = split_key_path(sub_key);
    if (!components)
        return ERROR_BAD_PATHNAME;
    if (components->empty())
        return ERROR_INVALID_PARAMETER;
    return current_user_hive().delete_key(below(from->path, *components));
}
