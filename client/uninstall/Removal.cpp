#include "client/uninstall/Removal.h"

#include "client/uninstall/Settings.h"

#include <unistd.h>

namespace client {

Report RemoveInstallation(const std::string& strFolder, const std::vector<ListedFile>& files, Progress* pProgress,
                          const std::stop_token& stop, const std::function<void()>& moved)
{
    Report report;
    pProgress->nAll = files.size();
    const std::vector<std::string> folders = FoldersToRemove(strFolder);
    // When only the program itself is left: until then, what was broken off can be begun again with nothing forgotten.
    const auto removeSettings = [&] {
        if (pProgress->nDone + 1 == files.size() && !stop.stop_requested())
            RemoveSettings(strFolder, &report);
    };
    removeSettings();
    RemoveInstalledFiles(
        strFolder, files,
        [&] {
            pProgress->nDone++;
            removeSettings();
            moved();
            return !stop.stop_requested();
        },
        &report);
    if (report.bStopped)
        return report;
    for (const std::string& strMade : folders)
        (void)::rmdir(strMade.c_str()); // stays when anything is in it
    return report;
}

} // namespace client
