// Homes for tests: HOME and the desktop's folders point into a temporary directory, and nothing a test does can reach
// the user's real files or another test. Every test has a fresh one, whether its process runs one test or all.
#pragma once

#include <filesystem>
#include <string>

namespace test {

// A directory that is removed, with everything in it, when its owner goes.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::string operator/(const char* name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

// Sets HOME, XDG_DATA_HOME, XDG_CONFIG_HOME, XDG_STATE_HOME, XDG_CACHE_HOME and TMPDIR to folders under `home`, creates
// them, selects the memory screen, code page 936 and no DISPLAY.
void use_home(const std::filesystem::path& home);

// The home of this test; of this process while it runs none.
const TempDir& home();

// A home for one case of a table: everything points there while it lives, then back to the home before.
class FreshHome {
public:
    FreshHome();
    ~FreshHome();
    FreshHome(const FreshHome&) = delete;
    FreshHome& operator=(const FreshHome&) = delete;

    const std::filesystem::path& path() const { return dir_.path(); }

private:
    const TempDir dir_; // within the home before
    const TempDir* const before_;
};

// All bytes of a file; none if it cannot be read.
std::string read_file(const std::filesystem::path& path);
// Makes the folders above the file, too.
void write_file(const std::filesystem::path& path, const std::string& bytes);

} // namespace test
