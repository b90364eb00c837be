// Any bytes as a cabinet: the whole walk, with every entry copied to a file system that keeps nothing.
#include "platform/win32/kernel/file_system.h"
#include "platform/win32/kernel/unique_fd.h"
#include "setupapi.h"
#include "winbase.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>

#include <fcntl.h>
#include <sys/mman.h>

namespace {

constexpr const char* kTarget = "/target";

// Takes files for any place below the target and forgets them; one for any other place is what we look for.
class Nowhere : public win32::FileSystem {
public:
    int open(const std::string& path, int flags, mode_t mode) override
    {
        const bool writes = (flags & O_ACCMODE) != O_RDONLY || (flags & O_DIRECTORY) != 0;
        return writes ? FileSystem::open("/dev/null", O_WRONLY, 0) : FileSystem::open(path, flags, mode);
    }
    int sync(int) override { return 0; }
    int change_time(int, const struct timespec&) override { return 0; }
    int status(const std::string&, struct stat&) override { return -ENOENT; }
    int link_descriptor(int, const std::string& path) override
    {
        if (path.rfind(std::string(kTarget) + "/", 0) != 0 || (path + "/").find("/../") != std::string::npos)
            std::abort();
        return 0;
    }
};

UINT CALLBACK copy_all(PVOID, UINT notification, UINT_PTR param1, UINT_PTR)
{
    if (notification != SPFILENOTIFY_FILEINCABINET)
        return NO_ERROR;
    auto& info = *reinterpret_cast<FILE_IN_CABINET_INFO_A*>(param1);
    lstrcpyA(info.FullTargetName, (std::string(kTarget) + "\\" + info.NameInCabinet).c_str());
    return FILEOP_DOCOPY;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    [[maybe_unused]] static const auto before = win32::exchange_file_system(std::make_shared<Nowhere>());
    const win32::UniqueFd file(::memfd_create("cabinet", MFD_CLOEXEC));
    if (!file || ::write(file.get(), data, size) != static_cast<ssize_t>(size))
        return 0;
    const std::string path = "/proc/self/fd/" + std::to_string(file.get());
    (void)SetupIterateCabinetA(path.c_str(), 0, copy_all, nullptr); // any result will do
    return 0;
}
