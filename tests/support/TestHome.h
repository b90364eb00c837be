// A home of its own for every test process: HOME and the desktop's folders point into a new temporary directory, and
// nothing a test does can reach the user's real files or another test.
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

// The home of this test process, made before the first test runs.
const TempDir& home();

// A home for one case of a table: everything points there while it lives, then back to the process's home.
class FreshHome {
public:
    FreshHome();
    ~FreshHome();

private:
    TempDir dir_; // within the process's home
};

} // namespace test
