// Short words for what tests do with the registry of the test's home.
#pragma once

#include "tests/support/TestHome.h"
#include "winbase.h"
#include "winreg.h"

#include <cstdlib>

namespace test {

constexpr const char* kRunKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";

inline std::filesystem::path config_folder()
{
    return std::getenv("XDG_CONFIG_HOME");
}
inline std::filesystem::path hive_file()
{
    return config_folder() / "registry/current-user.sqlite";
}

// An open key, closed with its owner; `status` is what opening said.
struct OpenedKey {
    HKEY handle = nullptr;
    LSTATUS status;

    explicit OpenedKey(const char* path, REGSAM access = KEY_ALL_ACCESS)
        : status(RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, access, &handle))
    {}
    ~OpenedKey() { RegCloseKey(handle); }
    OpenedKey(const OpenedKey&) = delete;
    OpenedKey& operator=(const OpenedKey&) = delete;

    LSTATUS set(const char* name, const std::string& bytes, DWORD type = REG_SZ) const
    {
        return RegSetValueExA(handle, name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                              static_cast<DWORD>(bytes.size()));
    }
    // The value's bytes; "missing" when there is none.
    std::string get(const char* name) const
    {
        DWORD size = 0;
        RegQueryValueExA(handle, name, nullptr, nullptr, nullptr, &size);
        std::string bytes(size, '?');
        const LSTATUS got =
            RegQueryValueExA(handle, name, nullptr, nullptr, reinterpret_cast<BYTE*>(bytes.data()), &size);
        return got == ERROR_SUCCESS ? bytes : "missing";
    }
};

// Makes a key where it is missing.
inline LSTATUS create_key(const char* path)
{
    HKEY made = nullptr;
    const LSTATUS status = RegCreateKeyA(HKEY_CURRENT_USER, path, &made);
    return status == ERROR_SUCCESS ? RegCloseKey(made) : status;
}

} // namespace test
