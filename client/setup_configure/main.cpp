// SetupConfigure [--version]
// Gives the user who runs it the client's settings file and its menu entry. The client is the one in this program's own
// folder. With --version it only tells its version.
//
// Exit code 0: both are there; 1, with the fault on standard error: at least one could not be written.
#include "client/install/UserFolders.h"
#include "client/setup_configure/Configure.h"
#include "version/Version.h"

#include <cstdio>
#include <string_view>

int main(int argc, char** argv)
{
    if (argc == 2 && argv[1] == std::string_view("--version")) {
        std::printf("SetupConfigure %s\n", kProgramVersion);
        return 0;
    }
    const std::string strFolder = client::ProgramFolder();
    std::string strError = "the program's own folder cannot be found";
    if (!strFolder.empty() && client::ConfigureClient(strFolder, &strError))
        return 0;
    std::fprintf(stderr, "SetupConfigure: %s\n", strError.c_str());
    return 1;
}
