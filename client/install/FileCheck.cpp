#include "client/install/FileCheck.h"

#include <algorithm>

#include <fcntl.h>

namespace client {

std::size_t CheckResult::Count(Condition condition) const
{
    return static_cast<std::size_t>(std::count_if(
        findings.begin(), findings.end(), [&](const Finding& finding) { return finding.condition == condition; }));
}

CheckResult CheckFiles(const std::string& strFolder, Progress* pProgress, const std::stop_token& stop,
                       const std::function<void()>& moved)
{
    CheckResult result;
    const Descriptor root = OpenFolder(AT_FDCWD, strFolder);
    const std::optional<std::vector<ListedFile>> files = root ? ReadFileList(strFolder) : std::nullopt;
    if (!files)
        return result;
    result.bHasList = true;
    result.nFiles = files->size();
    pProgress->nAll = files->size();
    for (const ListedFile& file : *files) {
        if (stop.stop_requested())
            break;
        const Condition condition = ConditionOf(FindPlace(root.Get(), file.strName), file, stop);
        if (condition != Condition::AsInstalled)
            result.findings.push_back({ file.strName, condition });
        pProgress->nDone++;
        moved();
    }
    return result;
}

} // namespace client
