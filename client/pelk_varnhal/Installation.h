// What the client knows of its own installation from the registry, and its start with the system.
#pragma once

#include <cstdint>
#include <string>

namespace client {

struct InstalledSettings {
    std::string strVersion;    // "4.0.0.1"; empty: the registry has none
    std::string strComponents; // the version of its components, likewise
    bool bHasConnection = false;
    std::string strProxyHost; // empty: the connection is direct
    std::uint32_t nProxyPort = 0;
};

InstalledSettings ReadInstalledSettings();

// Whether the system starts the client in the folder.
bool StartsWithSystem(const std::string& strFolder);
// Has it done so, or no longer. FALSE: the registry refuses.
bool SetStartWithSystem(const std::string& strFolder, bool bStart);

} // namespace client
