#include "platform/win32/gdi/font_files.h"

#include "platform/win32/gdi/text_library.h"
#include "platform/win32/kernel/never_destroyed.h"
#include "platform/win32/kernel/unique_fd.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <mutex>

#include <sys/mman.h>
#include <sys/stat.h>

namespace win32 {

namespace {

struct Store {
    std::mutex mutex;
    std::vector<std::string> paths;
    std::vector<UniqueFd> unnamed; // what /proc/self/fd/ paths stand for
    std::atomic<std::uint64_t> version = 0;
};

Store& store()
{
    static NeverDestroyed<Store> instance;
    return instance.get();
}

int count_faces(const std::string& path)
{
    struct stat info {};
    const TextLibrary* library = TextLibrary::get();
    if (!library || ::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode))
        return 0;
    int count = 0;
    FcPattern* pattern = library->FcFreeTypeQuery(reinterpret_cast<const FcChar8*>(path.c_str()), 0, nullptr, &count);
    if (!pattern)
        return 0;
    library->FcPatternDestroy(pattern);
    return count;
}

// The current folder may be another one when the file is used.
std::string whole_path(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path whole = std::filesystem::absolute(path, error).lexically_normal();
    return error ? path : whole.string();
}

void remember(const std::string& path)
{
    store().paths.push_back(path);
    store().version++;
}

} // namespace

int add_font_file(const std::string& path)
{
    const std::lock_guard lock(store().mutex);
    const std::string whole = whole_path(path);
    const int faces = count_faces(whole);
    if (faces > 0)
        remember(whole);
    return faces;
}

bool remove_font_file(const std::string& path)
{
    const std::lock_guard lock(store().mutex);
    std::vector<std::string>& paths = store().paths;
    const auto found = std::find(paths.begin(), paths.end(), whole_path(path));
    if (found == paths.end())
        return false;
    paths.erase(found);
    store().version++;
    return true;
}

int add_font_bytes(std::span<const std::byte> bytes)
{
    UniqueFd file(::memfd_create("font", MFD_CLOEXEC));
    for (std::size_t done = 0; file && done < bytes.size();) {
        const ssize_t written = ::write(file.get(), bytes.data() + done, bytes.size() - done);
        if (written <= 0)
            return 0;
        done += static_cast<std::size_t>(written);
    }
    const std::lock_guard lock(store().mutex);
    const std::string path = "/proc/self/fd/" + std::to_string(file.get());
    const int faces = file ? count_faces(path) : 0;
    if (faces > 0) {
        remember(path);
        store().unnamed.push_back(std::move(file));
    }
    return faces;
}

AddedFonts added_fonts()
{
    const std::lock_guard lock(store().mutex);
    return { store().paths, store().version };
}

std::uint64_t added_fonts_version()
{
    return store().version;
}

} // namespace win32
