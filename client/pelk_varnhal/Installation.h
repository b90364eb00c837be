// What the client knows of its own installation.
#pragma once

#include <string>

namespace client {

// Whether every file of the list is there with its size. FALSE also without a list.
bool IsComplete(const std::string& strFolder);

// The version that the installer wrote into the registry, "4.0.0.1"; empty when there is none.
std::string InstalledVersion();

} // namespace client
