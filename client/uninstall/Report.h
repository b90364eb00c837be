// What an uninstallation did and what it left, for the user to read.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace client {

enum class Reason {
    NotInstalled, // left on purpose, like the next two
    Changed,      // since it was installed
    OtherClient,  // strDetail is the other's folder
    Failed,       // should have gone, like the next; strDetail is the fault and nError its number
    NoHome,       // HOME is not set to a folder
};

struct Left {
    std::string strName; // a path, or what it is
    Reason reason;
    std::string strDetail = {};
    int nError = 0;
};

// A line for the terminal.
std::string LineOf(const Left& left);

struct Report {
    std::size_t nRemoved = 0; // files
    bool bStopped = false;    // before everything was dealt with
    std::vector<Left> kept;
    std::vector<Left> failed;
};

// What an exit code says; documented in main.cpp.
enum ExitCode { kDone = 0, kSomeLeft = 1, kUsage = 2, kNotConfirmed = 3, kNoList = 4 };

inline ExitCode ExitCodeOf(const Report& report)
{
    return report.failed.empty() && !report.bStopped ? kDone : kSomeLeft;
}

} // namespace client
