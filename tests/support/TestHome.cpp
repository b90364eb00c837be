#include "tests/support/TestHome.h"

#include <cstdlib>
#include <system_error>

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
    struct Folder {
        const char* variable;
        const char* place;
    };
    constexpr Folder kFolders[] = {
        { "HOME", "" },
        { "XDG_DATA_HOME", ".local/share" },
        { "XDG_STATE_HOME", ".local/state" },
        { "XDG_CONFIG_HOME", ".config" },
        { "XDG_CACHE_HOME", ".cache" },
        { "TMPDIR", "tmp" },
    };
    for (const Folder& folder : kFolders) {
        const std::filesystem::path place = *folder.place ? home / folder.place : home;
        std::filesystem::create_directories(place);
        ::setenv(folder.variable, place.c_str(), 1);
    }
    ::setenv("SCREEN", "memory", 1);
    ::setenv("ACP", "936", 1);
    ::unsetenv("DISPLAY");
}

const TempDir& home()
{
    static const TempDir dir;
    return dir;
}

FreshHome::FreshHome()
{
    use_home(dir_.path());
}

FreshHome::~FreshHome()
{
    use_home(home().path());
}

} // namespace test
