// A user's home with a registry of its own, and short words for what is done with it.
#pragma once

#include "tests/support/TestHome.h"
#include "winbase.h"
#include "winreg.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace test {

constexpr const char* kRunKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";

inline std::string read_file(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

inline void write_file(const std::filesystem::path& path, const std::string& bytes)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

struct RegistryHome {
    TempDir dir;
    std::filesystem::path hive = dir.path() / ".config/registry/current-user.sqlite";
    std::filesystem::path autostart = dir.path() / ".config/autostart";

    RegistryHome() { enter(); }
    ~RegistryHome() { ::setenv("XDG_CONFIG_HOME", before_.c_str(), 1); }
    RegistryHome(const RegistryHome&) = delete;
    RegistryHome& operator=(const RegistryHome&) = delete;

    // From now on this is the user's home; the registry of the one before is let go of with the next call.
    void enter() const { ::setenv("XDG_CONFIG_HOME", (dir / ".config").c_str(), 1); }

private:
    const std::string before_ = std::getenv("XDG_CONFIG_HOME");
};

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
        if (RegQueryValueExA(handle, name, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS)
            return "missing";
        std::string bytes(size, '?');
        const LSTATUS got =
            RegQueryValueExA(handle, name, nullptr, nullptr, reinterpret_cast<BYTE*>(bytes.data()), &size);
        return got == ERROR_SUCCESS ? bytes : "missing";
    }
};

// The same for a key that is made where it is missing.
inline LSTATUS create_key(const char* path)
{
    HKEY made = nullptr;
    const LSTATUS status = RegCreateKeyA(HKEY_CURRENT_USER, path, &made);
    return status == ERROR_SUCCESS ? RegCloseKey(made) : status;
}

} // namespace test
