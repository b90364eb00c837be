// What an uninstallation did and what it left, for the user to read.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace client {

struct Report {
    std::size_t nRemoved = 0;        // files
    std::vector<std::string> kept;   // "name: why", left on purpose
    std::vector<std::string> failed; // "name: why", should have gone
};

} // namespace client
