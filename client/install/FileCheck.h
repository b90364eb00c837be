// The client's look at its own files.
#pragma once

#include "client/install/InstalledFile.h"
#include "client/install/Progress.h"

#include <functional>

namespace client {

struct Finding {
    std::string strName;
    Condition condition; // not AsInstalled
};

struct CheckResult {
    bool bHasList = false;
    std::size_t nFiles = 0;
    std::vector<Finding> findings; // in the list's order

    std::size_t Count(Condition condition) const;
};

// Compares every file of the list in the folder with it. moved is called after each, on the thread that calls this. A
// stop ends the check before the next file, and leaves its findings incomplete.
CheckResult CheckFiles(const std::string& strFolder, Progress* pProgress, const std::stop_token& stop,
                       const std::function<void()>& moved);

} // namespace client
