#include "client/pelk_varnhal/Installation.h"

#include "client/install/FileList.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <windows.h>
#include <winreg.h>

namespace client {

bool IsComplete(const std::string& strFolder)
{
    const std::filesystem::path folder = strFolder;
    std::error_code error;
    if (std::filesystem::file_size(folder / kFileListName, error) > kMaxFileListBytes || error)
        return false;
    std::ifstream stream(folder / kFileListName, std::ios::binary);
    const auto files =
        ParseFileList(std::string{ std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>() });
    return files && !files->empty() && std::all_of(files->begin(), files->end(), [&](const ListedFile& file) {
               std::error_code fileError;
               return std::filesystem::file_size(folder / file.strName, fileError) == file.nSize && !fileError;
           });
}

std::string InstalledVersion()
{
    HKEY hKey = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Dalvor\\Varnhal\\Tesk\\Version", 0, KEY_QUERY_VALUE, &hKey) !=
        ERROR_SUCCESS)
        return {};
    BYTE text[64] = {};
    DWORD nType = REG_NONE;
    DWORD nSize = sizeof text;
    const LSTATUS nError = RegQueryValueExA(hKey, "MAINVER", nullptr, &nType, text, &nSize);
    RegCloseKey(hKey);
    if (nError != ERROR_SUCCESS || nType != REG_SZ)
        return {};
    const std::string strVersion(reinterpret_cast<const char*>(text), nSize); // written without a terminator
    return strVersion.substr(0, strVersion.find('\0'));
}

} // namespace client
