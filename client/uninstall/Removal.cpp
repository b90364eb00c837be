#include "client/uninstall/Removal.h"

#include "client/uninstall/Settings.h"

namespace client {

Report RemoveInstallation(const std::string& strFolder, const std::vector<ListedFile>& files, Progress* pProgress,
                          const std::stop_token& stop, const std::function<void()>& moved)
{
    Report report;
    pProgress->nAll = files.size();
    RemoveSettings(strFolder, &report);
    RemoveInstalledFiles(
        strFolder, files,
        [&] {
            pProgress->nDone++;
            moved();
            return !stop.stop_requested();
        },
        &report);
    return report;
}

} // namespace client
