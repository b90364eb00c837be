// Uninstall [--yes]
// Removes the client that this program lies beside: its files, its settings, its menu entry and its start with the
// system. What the user changed or added stays, and is named. Asks first on a terminal; --yes is the answer for
// scripts.
//
// Exit codes: 0 everything that was installed and not changed is gone; 1 something that should have gone is still
// there, named on standard error; 2 an argument is unknown; 3 nothing was done: the answer was no, or there was no
// terminal and no --yes; 4 nothing was done: the list of installed files is missing or damaged.
#include "client/install/UserFolders.h"
#include "client/uninstall/InstalledFiles.h"
#include "client/uninstall/Settings.h"

#include <cstdio>
#include <string_view>

#include <unistd.h>

namespace {

enum ExitCode { kDone = 0, kSomeLeft = 1, kUsage = 2, kNotConfirmed = 3, kNoList = 4 };

bool Confirm(const std::string& strFolder)
{
    if (!::isatty(STDIN_FILENO)) {
        std::fprintf(stderr, "Uninstall: no terminal to ask on; give --yes to remove %s\n", strFolder.c_str());
        return false;
    }
    std::printf("Remove Merav Conferencing from %s? [y/N] ", strFolder.c_str());
    std::fflush(stdout);
    const int nAnswer = std::getchar();
    return nAnswer == 'y' || nAnswer == 'Y';
}

ExitCode Tell(const client::Report& report)
{
    std::printf("Removed %zu files.\n", report.nRemoved);
    for (const std::string& strKept : report.kept)
        std::printf("Kept %s\n", strKept.c_str());
    for (const std::string& strFailed : report.failed)
        std::fprintf(stderr, "Uninstall: %s\n", strFailed.c_str());
    return report.failed.empty() ? kDone : kSomeLeft;
}

} // namespace

int main(int argc, char** argv)
{
    const bool bYes = argc == 2 && std::string_view(argv[1]) == "--yes";
    if (argc > 1 && !bYes) {
        std::fprintf(stderr, "usage: Uninstall [--yes]\n");
        return kUsage;
    }
    const std::string strFolder = client::ProgramFolder();
    const auto files = client::ReadFileList(strFolder);
    if (!files) {
        std::fprintf(stderr, "Uninstall: %s/%s is missing or damaged; nothing was removed\n", strFolder.c_str(),
                     client::kFileListName);
        return kNoList;
    }
    if (!bYes && !Confirm(strFolder))
        return kNotConfirmed;
    client::Report report;
    client::RemoveSettings(strFolder, &report);
    client::RemoveInstalledFiles(strFolder, *files, &report);
    return Tell(report);
}
