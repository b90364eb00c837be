#include "client/pelk_varnhal/Installation.h"

#include "client/install/UserFolders.h"
#include "client/registry/RegistryKey.h"

namespace client {

InstalledSettings ReadInstalledSettings()
{
    InstalledSettings settings;
    const RegistryKey version(kVersionKey, KEY_QUERY_VALUE);
    settings.strVersion = version.Text("MAINVER").value_or("");
    settings.strComponents = version.Text("DLLVER").value_or("");
    const RegistryKey connection(kConnectionKey, KEY_QUERY_VALUE);
    const auto use = connection.Number("ProxyUse");
    settings.bHasConnection = use.has_value();
    if (use.value_or(0) != 0)
        settings.strProxyHost = connection.Text("ProxyHost").value_or("");
    settings.nProxyPort = connection.Number("ProxyPort").value_or(0);
    return settings;
}

bool StartsWithSystem(const std::string& strFolder)
{
    const auto text = RegistryKey(kRunKey, KEY_QUERY_VALUE).Text(kRunValue);
    return text && NamesClientIn(*text, strFolder);
}

bool SetStartWithSystem(const std::string& strFolder, bool bStart)
{
    const RegistryKey key(kRunKey, KEY_QUERY_VALUE | KEY_SET_VALUE);
    if (key.Error() != ERROR_SUCCESS)
        return false;
    if (!bStart)
        return RegDeleteValueA(key.Get(), kRunValue) == ERROR_SUCCESS;
    const std::string strProgram = strFolder + "/" + kClientProgram;
    return RegSetValueExA(key.Get(), kRunValue, 0, REG_SZ, reinterpret_cast<const BYTE*>(strProgram.c_str()),
                          static_cast<DWORD>(strProgram.size() + 1)) == ERROR_SUCCESS;
}

} // namespace client
