#include "tests/support/TestHome.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

namespace test {

namespace {

std::filesystem::path make_temp_dir()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "varnhal-test-XXXXXX").string();
    const char* made = ::mkdtemp(pattern.data());
    return made ? made : std::filesystem::path();
}

} // namespace

TempDir::TempDir() : path_(make_temp_dir())
{
    if (path_.empty())
        std::abort(); // a test without a place of its own must not run
}

TempDir::~TempDir()
{
    std::error_code ignored; // a test may leave a folder without permissions; the rest still goes
    for (const auto& entry : std::filesystem::recursive_directory_iterator(
             path_, std::filesystem::directory_options::skip_permission_denied, ignored)) {
        if (entry.is_directory(ignored) && !entry.is_symlink(ignored))
            std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all,
                                         std::filesystem::perm_options::add, ignored);
    }
    std::filesystem::remove_all(path_, ignored);
}

void use_home(const std::filesystem::path& home)
{
    const struct {
        const char* variable;
        const char* place;
    } kFolders[] = {
        { "HOME", "" },
        { "XDG_DATA_HOME", ".local/share" },
        { "XDG_STATE_HOME", ".local/state" },
        { "XDG_CONFIG_HOME", ".config" },
        { "XDG_CACHE_HOME", ".cache" },
        { "TMPDIR", "tmp" },
    };
    for (const auto& folder : kFolders) {
        const std::filesystem::path place = *folder.place ? home / folder.place : home;
        std::filesystem::create_directories(place);
        ::setenv(folder.variable, place.c_str(), 1);
    }
    ::setenv("SCREEN", "memory", 1);
    ::setenv("ACP", "936", 1);
    ::unsetenv("DISPLAY");
}

namespace {

const TempDir*& innermost_home()
{
    static const TempDir process;
    static const TempDir* innermost = &process;
    return innermost;
}

} // namespace

const TempDir& home()
{
    return *innermost_home();
}

FreshHome::FreshHome() : before_(std::exchange(innermost_home(), &dir_))
{
    use_home(dir_.path());
}

FreshHome::~FreshHome()
{
    innermost_home() = before_;
    use_home(before_->path());
}

std::string read_file(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

void write_file(const std::filesystem::path& path, const std::string& bytes)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

} // namespace test
