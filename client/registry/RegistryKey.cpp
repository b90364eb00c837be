#include "client/registry/RegistryKey.h"

#include "client/install/UserFolders.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace client {

std::optional<std::string> RegistryKey::Text(const char* pszValue) const
{
    std::array<BYTE, 4096> text{};
    DWORD nType = REG_NONE;
    DWORD nSize = static_cast<DWORD>(text.size());
    if (m_nError != ERROR_SUCCESS ||
        RegQueryValueExA(m_hKey, pszValue, nullptr, &nType, text.data(), &nSize) != ERROR_SUCCESS || nType != REG_SZ)
        return std::nullopt;
    const std::string strText(reinterpret_cast<const char*>(text.data()), nSize);
    return strText.substr(0, strText.find('\0'));
}

std::optional<std::uint32_t> RegistryKey::Number(const char* pszValue) const
{
    DWORD nNumber = 0;
    DWORD nType = REG_NONE;
    DWORD nSize = sizeof nNumber;
    if (m_nError != ERROR_SUCCESS ||
        RegQueryValueExA(m_hKey, pszValue, nullptr, &nType, reinterpret_cast<BYTE*>(&nNumber), &nSize) !=
            ERROR_SUCCESS ||
        nType != REG_DWORD || nSize != sizeof nNumber)
        return std::nullopt;
    return nNumber;
}

bool NamesClientIn(std::string strPath, const std::string& strFolder)
{
    std::replace(strPath.begin(), strPath.end(), '\\', '/');
    const std::filesystem::path path = strPath;
    std::error_code error;
    return path.filename() == kClientProgram && std::filesystem::equivalent(path.parent_path(), strFolder, error);
}

} // namespace client
