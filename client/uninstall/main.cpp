// Uninstall [--yes | --terminal | --version]
// Removes the client that this program lies beside: its files, its settings, its menu entry and its start with the
// system. What the user changed or added stays, and is named. Asks first: in a window where there is a display, on the
// terminal where there is none, and with --terminal; --yes is the answer for scripts. --version only tells the version.
//
// Exit codes: 0 everything that was installed and not changed is gone; 1 something that should have gone is still
// there, named in the window or on standard error; 2 an argument is unknown; 3 nothing was done: the answer was no, or
// there was neither display nor terminal and no --yes; 4 nothing was done: the list of installed files is missing or
// damaged.
#include "client/install/UserFolders.h"
#include "client/uninstall/Removal.h"
#include "version/Version.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <unistd.h>
#include <xcb/xcb.h>

namespace {

using namespace client;

// Whether the display answers: one that is only named, as after "su" or over a broken line, would end the window's
// program before it can ask anything.
bool HasDisplay()
{
    const char* pszDisplay = std::getenv("DISPLAY");
    if (!pszDisplay || !*pszDisplay)
        return false;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> pConnection(xcb_connect(pszDisplay, nullptr),
                                                                                   &xcb_disconnect);
    return xcb_connection_has_error(pConnection.get()) == 0;
}

// Returns only if the client's program cannot be started.
void BecomeTheWindow()
{
    const std::string strProgram = ProgramFolder() + "/" + kClientProgram;
    (void)::execl(strProgram.c_str(), strProgram.c_str(), kUninstallOption, nullptr);
}

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

ExitCode Tell(const Report& report)
{
    std::printf("Removed %zu files.\n", report.nRemoved);
    for (const Left& left : report.kept)
        std::printf("Kept %s\n", LineOf(left).c_str());
    for (const Left& left : report.failed)
        std::fprintf(stderr, "Uninstall: %s\n", LineOf(left).c_str());
    return ExitCodeOf(report);
}

ExitCode RunOnTerminal(bool bYes)
{
    const std::string strFolder = ProgramFolder();
    const auto files = ReadOwnFileList(strFolder);
    if (!files) {
        std::fprintf(stderr, "Uninstall: %s/%s is missing or damaged; nothing was removed\n", strFolder.c_str(),
                     kFileListName);
        return kNoList;
    }
    if (!bYes && !Confirm(strFolder))
        return kNotConfirmed;
    Progress progress;
    return Tell(RemoveInstallation(strFolder, *files, &progress, {}, [] {}));
}

ExitCode Run(int argc, char** argv)
{
    const std::string_view strOption = argc > 1 ? argv[1] : "";
    if (argc == 2 && strOption == "--version") {
        std::printf("Uninstall %s\n", kProgramVersion);
        return kDone;
    }
    if (argc > 2 || (argc == 2 && strOption != "--yes" && strOption != "--terminal")) {
        std::fprintf(stderr, "usage: Uninstall [--yes | --terminal | --version]\n");
        return kUsage;
    }
    if (argc == 1 && HasDisplay())
        BecomeTheWindow();
    return RunOnTerminal(strOption == "--yes");
}

} // namespace

int main(int argc, char** argv)
{
    return Run(argc, argv);
}
