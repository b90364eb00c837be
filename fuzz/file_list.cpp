// Any bytes as the list of an installation's files: a list of names that stay in their folder and comes back as it was
// written, or none.
#include "client/install/FileList.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto files = client::ParseFileList({ reinterpret_cast<const char*>(data), size });
    if (!files)
        return 0;
    for (const client::ListedFile& file : *files) {
        const std::string strPath = "/" + file.strName + "/";
        if (strPath.find("/../") != std::string::npos || strPath.find("//") != std::string::npos)
            std::abort();
    }
    const auto again = client::ParseFileList(client::FormatFileList(*files));
    if (again ? again->size() != files->size() : client::FormatFileList(*files).size() <= client::kMaxFileListBytes)
        std::abort();
    return 0;
}
