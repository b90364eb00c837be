// An open key of the current user's registry.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <windows.h>
#include <winreg.h>

namespace client {

inline constexpr char kConnectionKey[] = "Software\\Dalvor\\Varnhal\\Tesk\\Connection";
inline constexpr char kVersionKey[] = "Software\\Dalvor\\Varnhal\\Tesk\\Version";
inline constexpr char kRunKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Run"; // what starts with the system
inline constexpr char kRunValue[] = "Merav Conferencing";

class RegistryKey {
public:
    RegistryKey(const char* pszName, REGSAM nAccess)
        : m_nError(RegOpenKeyExA(HKEY_CURRENT_USER, pszName, 0, nAccess, &m_hKey))
    {}
    ~RegistryKey()
    {
        if (m_nError == ERROR_SUCCESS)
            RegCloseKey(m_hKey);
    }
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    HKEY Get() const { return m_hKey; }
    LSTATUS Error() const { return m_nError; }

    // Nothing: the key is not open, or has no value of that name and kind.
    std::optional<std::string> Text(const char* pszValue) const; // up to a zero byte
    std::optional<std::uint32_t> Number(const char* pszValue) const;

private:
    HKEY m_hKey = nullptr;
    LSTATUS m_nError;
};

// Whether the registry's path text names the client in the folder, by whatever spelling.
bool NamesClientIn(std::string strPath, const std::string& strFolder);

} // namespace client
